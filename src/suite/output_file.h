#pragma once
// Every file the program writes (register documents, printed charts, workbooks) is
// written whole or not at all: the bytes go to a new file beside the target, which is
// renamed over the target only when every byte is on disk. A full disk, a missing
// permission or a crash half-way leaves the earlier file as it was.
//
// And every file the program writes passes one rule first: never over a file this
// program has open (the database, its journal), never over anything but a plain file,
// and never over an existing file the person did not agree to replace.

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace brenlow::suite {

// Whether a file already at the target may be replaced: `replace` only when the
// person said so (--yes on the command line, the save box's own question on the
// desktop).
enum class Existing { keep, replace };

// The target was refused before a byte was written; what() says why, naming the file.
class TargetRefused : public std::runtime_error {
public:
    enum class Reason {
        in_use,      // the database or another file this program has open, or its journal
        exists,      // a file is there and replacing it was not agreed
        not_a_file,  // a folder, a device, a pipe
    };
    TargetRefused(Reason reason, const std::string& path);
    Reason reason() const { return reason_; }
    const std::string& path() const { return path_; }

private:
    Reason reason_;
    std::string path_;
};

// The question a file already at `path` puts to the person; also what() of
// TargetRefused::Reason::exists.
std::string replace_question(const std::string& path);

// The rule: throws TargetRefused when `path` may not be written. Every writer below
// applies it; callers apply it early only to stop before work that would be wasted.
void check_target(const std::string& path, Existing existing);

// Throws TargetRefused as check_target, else std::runtime_error "Cannot write PATH:
// REASON", and leaves no temporary file behind. A file that already exists keeps its
// permissions.
void write_file_whole(const std::string& path, std::string_view bytes, Existing existing);

// The same for a file made piece by piece (a register of a million rows is never held
// whole): write() appends, finish() puts the file in place. A writer dropped before
// finish(), an exception on the way included, leaves the earlier file as it was.
// Errors as write_file_whole's, thrown by whichever call meets them.
//
// The temporary is named ".NAME.brenlow-tmp-PID-XXXXXX" beside the target; one left by
// a process that was killed is removed by the next writer of the same target.
class WholeFileWriter {
public:
    WholeFileWriter(std::string path, Existing existing);
    ~WholeFileWriter();
    WholeFileWriter(const WholeFileWriter&) = delete;
    WholeFileWriter& operator=(const WholeFileWriter&) = delete;

    void write(std::string_view bytes);
    // For a library that writes a file by its name (the .xlsx writer): it writes the
    // temporary itself, and finish() puts that in place. Nothing may be written through
    // write() then.
    const char* temporary_name() const;
    void finish();

private:
    struct Temp;
    std::string path_;
    Existing existing_;
    std::unique_ptr<Temp> temp_;
    std::string buffer_;
    void flush();
};

}  // namespace brenlow::suite
