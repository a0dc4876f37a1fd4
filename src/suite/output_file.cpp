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

}  // namespace

void write_file_whole(const std::string& path, std::string_view bytes) {
    Beside tmp(path);
    if (!tmp.made()) throw cannot_write(path, errno);

    // mkstemp makes the file private; the finished file gets the earlier file's
    // permissions, or those of any new file.
    struct stat earlier {};
    mode_t mode = 0;
    if (::stat(path.c_str(), &earlier) == 0) {
        mode = earlier.st_mode & 07777;
    } else {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        mode = 0666 & ~mask;
    }
    if (::fchmod(tmp.fd(), mode) != 0) throw cannot_write(path, errno);

    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t n = ::write(tmp.fd(), bytes.data() + done, bytes.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            throw cannot_write(path, errno);
        }
        done += static_cast<std::size_t>(n);
    }
    if (::fsync(tmp.fd()) != 0) throw cannot_write(path, errno);
    if (tmp.close() != 0) throw cannot_write(path, errno);
    if (::rename(tmp.name(), path.c_str()) != 0) throw cannot_write(path, errno);
    tmp.kept();
}

}  // namespace brenlow::suite
