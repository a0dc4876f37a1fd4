// The rule every file the program writes passes before its first byte, and the
// naming of the temporaries the writers make beside their targets.

#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "suite/output_file.h"
#include "suite/output_temporary.h"

namespace brenlow::suite {
namespace {

namespace fs = std::filesystem;

std::string refusal_text(TargetRefused::Reason reason, const std::string& path) {
    switch (reason) {
        case TargetRefused::Reason::in_use:
            return "Cannot write " + path +
                   ": it is the database or another file the program has open; nothing was written.";
        case TargetRefused::Reason::exists:
            return replace_question(path);
        case TargetRefused::Reason::not_a_file:
            return "Cannot write " + path + ": it is not a file; nothing was written.";
    }
    return "Cannot write " + path;
}

bool same_file(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// Whether this process holds the file open: the database the store opened, its
// write-ahead log, a document being read.
bool open_here(const struct stat& file) {
    std::error_code ec;
    for (fs::directory_iterator it("/proc/self/fd", ec), end; !ec && it != end; it.increment(ec)) {
        char* rest = nullptr;
        const std::string name = it->path().filename().string();
        const long fd = std::strtol(name.c_str(), &rest, 10);
        if (rest == name.c_str() || *rest != '\0') continue;
        struct stat held {};
        if (::fstat(static_cast<int>(fd), &held) == 0 && same_file(held, file)) return true;
    }
    return false;
}

// The embedded database keeps its journal and its write-ahead log beside itself under
// its own name and these endings; writing over one of them loses the changes it holds.
constexpr const char* kDatabaseSiblings[] = {"-journal", "-wal", "-shm"};

bool sibling_of_open_file(const std::string& path) {
    for (const std::string ending : kDatabaseSiblings) {
        if (path.size() <= ending.size() ||
            path.compare(path.size() - ending.size(), ending.size(), ending) != 0)
            continue;
        struct stat base {};
        if (::stat(path.substr(0, path.size() - ending.size()).c_str(), &base) == 0 && open_here(base))
            return true;
    }
    return false;
}

}  // namespace

TargetRefused::TargetRefused(Reason reason, const std::string& path)
    : std::runtime_error(refusal_text(reason, path)), reason_(reason), path_(path) {}

std::string replace_question(const std::string& path) {
    return "File [" + path + "] already exists. Do you want to overwrite it?";
}

void check_target(const std::string& path, Existing existing) {
    if (sibling_of_open_file(path)) throw TargetRefused(TargetRefused::Reason::in_use, path);
    struct stat there {};
    // A link is followed: what would change is the file it names.
    if (::stat(path.c_str(), &there) != 0) {
        struct stat link {};
        // A link to nowhere: replacing it is still replacing something the person made.
        if (::lstat(path.c_str(), &link) == 0 && existing == Existing::keep)
            throw TargetRefused(TargetRefused::Reason::exists, path);
        return;
    }
    if (open_here(there)) throw TargetRefused(TargetRefused::Reason::in_use, path);
    if (!S_ISREG(there.st_mode)) throw TargetRefused(TargetRefused::Reason::not_a_file, path);
    if (existing == Existing::keep) throw TargetRefused(TargetRefused::Reason::exists, path);
}

namespace detail {

std::string temporary_prefix(const std::string& target_name) {
    // Room is left for the ending within a name's 255 bytes.
    return "." + target_name.substr(0, 200) + ".brenlow-tmp-";
}

void remove_stale_temporaries(const std::string& target) {
    const fs::path p(target);
    const fs::path folder = p.has_parent_path() ? p.parent_path() : fs::path(".");
    const std::string prefix = temporary_prefix(p.filename().string());
    std::error_code ec;
    for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        const std::string name = it->path().filename().string();
        if (name.compare(0, prefix.size(), prefix) != 0) continue;
        char* rest = nullptr;
        const long pid = std::strtol(name.c_str() + prefix.size(), &rest, 10);
        if (pid <= 0 || *rest != '-' || pid == ::getpid()) continue;
        // Only a writer that is gone leaves its temporary for good.
        if (::kill(static_cast<pid_t>(pid), 0) == 0 || errno != ESRCH) continue;
        std::error_code gone;
        fs::remove(it->path(), gone);
    }
}

}  // namespace detail
}  // namespace brenlow::suite
