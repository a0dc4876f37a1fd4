#include "suite/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <vector>

#include "suite/output_temporary.h"

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
        const std::string pattern = (folder / (detail::temporary_prefix(p.filename().string()) +
                                               std::to_string(::getpid()) + "-XXXXXX"))
                                        .string();
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

// The finished temporary takes the target's name. Unless replacing was agreed, a file
// that appeared at the target since the check is not replaced either.
void put_in_place(const char* temporary, const std::string& path, Existing existing) {
    check_target(path, existing);
    if (existing == Existing::replace) {
        if (::rename(temporary, path.c_str()) != 0) throw cannot_write(path, errno);
        return;
    }
    if (::renameat2(AT_FDCWD, temporary, AT_FDCWD, path.c_str(), RENAME_NOREPLACE) == 0) return;
    if (errno == EEXIST) throw TargetRefused(TargetRefused::Reason::exists, path);
    if (errno != EINVAL && errno != ENOSYS) throw cannot_write(path, errno);
    // A file system without the exclusive rename: a link is exclusive too.
    if (::link(temporary, path.c_str()) != 0) {
        if (errno == EEXIST) throw TargetRefused(TargetRefused::Reason::exists, path);
        throw cannot_write(path, errno);
    }
    ::unlink(temporary);
}

// The rename itself on disk, so a power cut after the command said "Wrote" keeps the file.
void sync_folder(const std::string& path) {
    const std::filesystem::path p(path);
    const auto folder = p.has_parent_path() ? p.parent_path() : std::filesystem::path(".");
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    ::fsync(fd);
    ::close(fd);
}

// Pieces are gathered up to this size before they go to the file.
constexpr std::size_t kBufferBytes = std::size_t{1} << 20;

}  // namespace

struct WholeFileWriter::Temp : Beside {
    using Beside::Beside;
};

WholeFileWriter::WholeFileWriter(std::string path, Existing existing)
    : path_(std::move(path)), existing_(existing) {
    check_target(path_, existing_);
    detail::remove_stale_temporaries(path_);
    temp_ = std::make_unique<Temp>(path_);
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
    put_in_place(temp_->name(), path_, existing_);
    temp_->kept();
    sync_folder(path_);
}

const char* WholeFileWriter::temporary_name() const {
    return temp_->name();
}

void write_file_whole(const std::string& path, std::string_view bytes, Existing existing) {
    WholeFileWriter out(path, existing);
    out.write(bytes);
    out.finish();
}

}  // namespace brenlow::suite
