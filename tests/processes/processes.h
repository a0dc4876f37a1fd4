#pragma once
// The built `brenlow` run as real processes on a test database: several at once,
// or one stopped with SIGKILL at a random moment; and the whole database as text,
// to say that it is the state before a command or the state after it.

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

#include "store/database.h"

namespace brenlow::test {

// `brenlow --db URL WORDS...` started; its output goes to a file of the run.
pid_t start_brenlow(const std::string& url, const std::vector<std::string>& words);
// The exit code, or 128 + the signal that ended it.
int wait_for(pid_t pid);
// Runs to the end; the exit code.
int run_brenlow(const std::string& url, const std::vector<std::string>& words);
// Starts every command at once and waits for them all; their exit codes in order.
std::vector<int> run_together(const std::string& url, const std::vector<std::vector<std::string>>& commands);

// Every table's rows as text, the rows of each table sorted: two databases with the
// same state give the same map.
std::map<std::string, std::string> database_state(store::Database& db);
// The names of the tables whose rows differ, for a failure's message.
std::string tables_that_differ(const std::map<std::string, std::string>& a,
                               const std::map<std::string, std::string>& b);

// A count from the environment (BRENLOW_KILL_RUNS, BRENLOW_RACE_ROUNDS), else `fallback`.
int count_from_environment(const char* name, int fallback);

// A file's whole text ("" when it cannot be read).
std::string read_text(const std::string& path);

// A folder of the test's own, removed with it.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    std::string path(const std::string& name) const { return folder_ + "/" + name; }
    void write(const std::string& name, const std::string& text) const;
    std::string read(const std::string& name) const;

private:
    std::string folder_;
};

}  // namespace brenlow::test
