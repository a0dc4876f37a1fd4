#pragma once
// The real `brenlow` program run as its own process, as a person or a script runs it:
// its exit, its standard error, and a way to stop it dead part-way.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace brenlow::cli {

struct ProgramRun {
    bool exited = false;  // false: ended by a signal
    int code = -1;        // the exit code, or the signal
    std::string err;
};

// A started `brenlow ARGS...`; standard output is dropped, standard error kept in
// `err_file`. `file_size_limit` caps every file it writes (a full disk, as it were).
class Program {
public:
    Program(const std::vector<std::string>& args, const std::string& err_file,
            std::optional<rlim_t> file_size_limit = std::nullopt)
        : err_file_(err_file) {
        std::vector<std::string> words = {BRENLOW_PROGRAM};
        words.insert(words.end(), args.begin(), args.end());
        pid_ = ::fork();
        if (pid_ != 0) return;
        const int null = ::open("/dev/null", O_WRONLY);
        const int err = ::open(err_file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (null < 0 || err < 0) ::_exit(126);
        ::dup2(null, 1);
        ::dup2(err, 2);
        if (file_size_limit) {
            // Past the limit a write fails, as on a full disk, instead of ending the program.
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{*file_size_limit, *file_size_limit};
            ::setrlimit(RLIMIT_FSIZE, &limit);
        }
        std::vector<char*> argv;
        for (auto& w : words) argv.push_back(w.data());
        argv.push_back(nullptr);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() {
        if (!waited_) {
            ::kill(pid_, SIGKILL);
            wait();
        }
    }

    pid_t pid() const { return pid_; }
    void kill() { ::kill(pid_, SIGKILL); }
    ProgramRun wait() {
        int status = 0;
        ::waitpid(pid_, &status, 0);
        waited_ = true;
        ProgramRun r;
        r.exited = WIFEXITED(status);
        r.code = r.exited ? WEXITSTATUS(status) : WTERMSIG(status);
        std::ifstream f(err_file_);
        std::ostringstream s;
        s << f.rdbuf();
        r.err = s.str();
        return r;
    }

private:
    std::string err_file_;
    pid_t pid_ = -1;
    bool waited_ = false;
};

inline ProgramRun run_program(const std::vector<std::string>& args, const std::string& err_file,
                              std::optional<rlim_t> file_size_limit = std::nullopt) {
    Program p(args, err_file, file_size_limit);
    return p.wait();
}

}  // namespace brenlow::cli
