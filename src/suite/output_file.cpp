#include "suite/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <vector>

namespace brenlow::suite {
namespace {

std::runtime_error cannot_write(const std::string& path, int error) {
    return std::runtime_error("Cannot write " + path + ": " + std::strerror(error));
}

// The temporary file, removed unless it was renamed into place.
class Beside {
public:
    explicit Beside(const std::string& target) {
        const std::filesystem::path p(target);
        const auto folder = p.has_parent_path() ? p.parent_path() : std::filesystem::path(".");
        const std::string pattern = (folder / ("." + p.filename().string() + ".XXXXXX")).string();
        name_.assign(pattern.begin(), pattern.end());
        name_.push_back('\0');
        fd_ = ::mkstemp(name_.data());
        made_ = fd_ >= 0;
    }
    ~Beside() {
        if (fd_ >= 0) ::close(fd_);
        if (made_ && !kept_) ::unlink(name_.data());
    }
    Beside(const Beside&) = delete;
    Beside& operator=(const Beside&) = delete;

    bool made() const { return made_; }
    int fd() const { return fd_; }
    const char* name() const { return name_.data(); }
    int close() {
        const int rc = ::close(fd_);
        fd_ = -1;
        return rc;
    }
    void kept() { kept_ = true; }

private:
    std::vector<char> name_;
    int fd_ = -1;
    bool made_ = false;
    bool kept_ = false;
};

// Every byte of `bytes` into the file, however many calls write() takes for them.
void write_all(const std::string& path, int fd, std::string_view bytes) {
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            throw cannot_write(path, errno);
        }
        done += static_cast<std::size_t>(n);
    }
}

// Pieces are gathered up to this size before they go to the file.
constexpr std::size_t kBufferBytes = std::size_t{1} << 20;

}  // namespace

struct WholeFileWriter::Temp : Beside {
    using Beside::Beside;
};

WholeFileWriter::WholeFileWriter(std::string path)
    : path_(std::move(path)), temp_(std::make_unique<Temp>(path_)) {
    if (!temp_->made()) throw cannot_write(path_, errno);

    // mkstemp makes the file private; the finished file gets the earlier file's
    // permissions, or those of any new file.
    struct stat earlier {};
    mode_t mode = 0;
    if (::stat(path_.c_str(), &earlier) == 0) {
        mode = earlier.st_mode & 07777;
    } else {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        mode = 0666 & ~mask;
    }
    if (::fchmod(temp_->fd(), mode) != 0) throw cannot_write(path_, errno);
}

WholeFileWriter::~WholeFileWriter() = default;

void WholeFileWriter::write(std::string_view bytes) {
    if (buffer_.size() + bytes.size() <= kBufferBytes) {
        if (buffer_.capacity() < kBufferBytes) buffer_.reserve(kBufferBytes);
        buffer_.append(bytes);
        return;
    }
    flush();
    if (bytes.size() >= kBufferBytes)
        write_all(path_, temp_->fd(), bytes);
    else
        buffer_.append(bytes);
}

void WholeFileWriter::flush() {
    write_all(path_, temp_->fd(), buffer_);
    buffer_.clear();
}

void WholeFileWriter::finish() {
    flush();
    if (::fsync(temp_->fd()) != 0) throw cannot_write(path_, errno);
    if (temp_->close() != 0) throw cannot_write(path_, errno);
    if (::rename(temp_->name(), path_.c_str()) != 0) throw cannot_write(path_, errno);
    temp_->kept();
}

void write_file_whole(const std::string& path, std::string_view bytes) {
    WholeFileWriter out(path);
    out.write(bytes);
    out.finish();
}

}  // namespace brenlow::suite
