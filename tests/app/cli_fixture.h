#pragma once
// Running the command line inside a test: the exit code and both streams, on the
// test's own database of its backend.

#include <sstream>
#include <string>
#include <vector>

#include "app/cli/cli.h"
#include "support/test_databases.h"

namespace brenlow::cli {

struct CliRun {
    int code;
    std::string out, err;
};

inline CliRun run_cli(const std::vector<std::string>& args) {
    std::ostringstream out, err;
    const int code = run(args, out, err);
    return {code, out.str(), err.str()};
}

class CliTest : public test::BackendTest {
protected:
    // `brenlow --db <the test's database> WORDS...`
    CliRun cli(const std::vector<std::string>& words) {
        std::vector<std::string> args = {"--db", temp().url()};
        args.insert(args.end(), words.begin(), words.end());
        return run_cli(args);
    }
};

}  // namespace brenlow::cli
