#pragma once
// The command line: brenlow [--db URL] COMMAND [options]. Each command prints what
// it did to `out`, a failure as one clear line to `err`, and returns the exit code:
// 0 done, 1 failed, 2 stopped at a question that the options did not answer.

#include <ostream>
#include <string>
#include <vector>

namespace brenlow::cli {

int run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace brenlow::cli
