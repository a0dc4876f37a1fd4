#include "processes.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace brenlow::test {

pid_t start_brenlow(const std::string& url, const std::vector<std::string>& words) {
    std::vector<std::string> args = {BRENLOW_PROGRAM, "--db", url};
    args.insert(args.end(), words.begin(), words.end());
    std::vector<char*> argv;
    for (auto& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    const pid_t pid = ::fork();
    if (pid < 0) throw std::runtime_error("fork failed");
    if (pid == 0) {
        // The child: its output is of no interest to the test, its exit code is.
        const int null = ::open("/dev/null", O_WRONLY);
        if (null >= 0) {
            ::dup2(null, 1);
            ::dup2(null, 2);
        }
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    return pid;
}

int wait_for(pid_t pid) {
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
    }
    if (WIFEXITED(status)) return WEXITSTATUS(status);
    if (WIFSIGNALED(status)) return 128 + WTERMSIG(status);
    return -1;
}

int run_brenlow(const std::string& url, const std::vector<std::string>& words) {
    return wait_for(start_brenlow(url, words));
}

std::vector<int> run_together(const std::string& url, const std::vector<std::vector<std::string>>& commands) {
    std::vector<pid_t> pids;
    for (const auto& c : commands) pids.push_back(start_brenlow(url, c));
    std::vector<int> codes;
    for (const pid_t p : pids) codes.push_back(wait_for(p));
    return codes;
}

std::map<std::string, std::string> database_state(store::Database& db) {
    std::map<std::string, std::string> state;
    for (const auto& table : db.table_names()) {
        std::vector<std::string> rows;
        db.for_each_row("select * from " + table, [&](const store::Row& r) {
            std::string line;
            for (std::size_t i = 0; i < r.size(); ++i)
                line += (r[i].is_null() ? std::string("NULL") : r[i].as_text()) + '\x1f';
            rows.push_back(std::move(line));
        });
        std::sort(rows.begin(), rows.end());
        std::string text;
        for (const auto& r : rows) text += r + '\n';
        std::string name = table;
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return std::tolower(c); });
        state[name] = std::move(text);
    }
    return state;
}

std::string tables_that_differ(const std::map<std::string, std::string>& a,
                               const std::map<std::string, std::string>& b) {
    std::string out;
    for (const auto& [t, rows] : a) {
        const auto other = b.find(t);
        if (other == b.end() || other->second != rows) out += " " + t;
    }
    for (const auto& [t, rows] : b)
        if (!a.count(t)) out += " " + t;
    return out;
}

int count_from_environment(const char* name, int fallback) {
    const char* v = std::getenv(name);
    if (!v || !*v) return fallback;
    const int n = std::atoi(v);
    return n > 0 ? n : fallback;
}

ScratchFolder::ScratchFolder() {
    static std::atomic<int> serial{0};
    folder_ = (std::filesystem::temp_directory_path() /
               ("brenlow-processes-" + std::to_string(::getpid()) + "-" + std::to_string(++serial)))
                  .string();
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
}

ScratchFolder::~ScratchFolder() {
    std::error_code ec;
    std::filesystem::remove_all(folder_, ec);
}

void ScratchFolder::write(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
}

std::string ScratchFolder::read(const std::string& name) const {
    return read_text(path(name));
}

std::string read_text(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

}  // namespace brenlow::test
