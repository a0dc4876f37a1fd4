#pragma once
// The temporaries the writers of output_file make beside their targets:
// ".NAME.brenlow-tmp-PID-XXXXXX", so that the next writer of NAME can tell one left by
// a process that no longer runs and remove it.

#include <string>

namespace brenlow::suite::detail {

// ".NAME.brenlow-tmp-" (NAME cut to leave room for the rest).
std::string temporary_prefix(const std::string& target_name);

// Removes the temporaries beside `target` whose process is gone.
void remove_stale_temporaries(const std::string& target);

}  // namespace brenlow::suite::detail
