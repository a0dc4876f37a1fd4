#pragma once
// Every file the program writes (register documents, printed charts) is written
// whole or not at all: the bytes go to a new file beside the target, which is
// renamed over the target only when every byte is on disk. A full disk, a missing
// permission or a crash half-way leaves the earlier file as it was.

#include <string>
#include <string_view>

namespace brenlow::suite {

// Throws std::runtime_error "Cannot write PATH: REASON" and leaves no temporary file
// behind. A file that already exists keeps its permissions.
void write_file_whole(const std::string& path, std::string_view bytes);

}  // namespace brenlow::suite
