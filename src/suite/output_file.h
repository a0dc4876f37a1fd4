#pragma once
// Every file the program writes (register documents, printed charts) is written
// whole or not at all: the bytes go to a new file beside the target, which is
// renamed over the target only when every byte is on disk. A full disk, a missing
// permission or a crash half-way leaves the earlier file as it was.

#include <memory>
#include <string>
#include <string_view>

namespace brenlow::suite {

// Throws std::runtime_error "Cannot write PATH: REASON" and leaves no temporary file
// behind. A file that already exists keeps its permissions.
void write_file_whole(const std::string& path, std::string_view bytes);

// The same for a file made piece by piece (a register of a million rows is never held
// whole): write() appends, finish() puts the file in place. A writer dropped before
// finish(), an exception on the way included, leaves the earlier file as it was.
// Errors as write_file_whole's, thrown by whichever call meets them.
class WholeFileWriter {
public:
    explicit WholeFileWriter(std::string path);
    ~WholeFileWriter();
    WholeFileWriter(const WholeFileWriter&) = delete;
    WholeFileWriter& operator=(const WholeFileWriter&) = delete;

    void write(std::string_view bytes);
    void finish();

private:
    struct Temp;
    std::string path_;
    std::unique_ptr<Temp> temp_;
    std::string buffer_;
    void flush();
};

}  // namespace brenlow::suite
