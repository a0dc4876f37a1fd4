// Where the error log goes: the program folder when this user may write there, else
// the user's state folder; a log that cannot be written is said once on standard error.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>

#include "frame/error_log.h"

namespace brenlow::frame {
namespace {

namespace fs = std::filesystem;

// Sets an environment variable for the test's length, or clears it.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const std::optional<std::string>& value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old;
        if (value)
            ::setenv(name, value->c_str(), 1);
        else
            ::unsetenv(name);
    }
    ~ScopedEnv() {
        if (old_)
            ::setenv(name_, old_->c_str(), 1);
        else
            ::unsetenv(name_);
    }

private:
    const char* name_;
    std::optional<std::string> old_;
};

std::string read(const fs::path& p) {
    std::ifstream f(p, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

class ErrorLogPlace : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/brenlow-logplace-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern), nullptr);
        root_ = pattern;
        // Another user (below) must reach the folders within.
        ::chmod(root_.c_str(), 0755);
    }
    void TearDown() override {
        std::error_code ec;
        fs::remove_all(root_, ec);
    }
    fs::path root_;
};

constexpr const char* kLine = "-1\tThe register could not be read\tBrenlow\t\tfrmNewFATR\tForm_Load\n";

void log_one(ErrorLog& log) {
    log.set_context("frmNewFATR", "Form_Load");
    log.log(-1, "The register could not be read", "Brenlow");
}

struct PlaceCase {
    const char* what;
    bool program_folder_exists;
    std::optional<std::string> xdg;   // relative to the test's folder; nullopt: unset
    std::optional<std::string> home;  // likewise
    const char* expected;             // relative to the test's folder
};

TEST_F(ErrorLogPlace, TheLogGoesToTheProgramFolderWhenWritableElseToTheStateFolder) {
    const PlaceCase cases[] = {
        {"writable program folder", true, "state", "home", "prog/TarrowLog.log"},
        {"no program folder", false, "state", "home", "state/tarrow/TarrowLog.log"},
        {"no program folder, no XDG_STATE_HOME", false, std::nullopt, "home",
         "home/.local/state/tarrow/TarrowLog.log"},
        // Only an absolute state folder counts.
        {"no program folder, a relative XDG_STATE_HOME", false, "", "home",
         "home/.local/state/tarrow/TarrowLog.log"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        fs::remove_all(root_ / "prog");
        fs::remove_all(root_ / "state");
        fs::remove_all(root_ / "home");
        if (c.program_folder_exists) fs::create_directories(root_ / "prog");
        fs::create_directories(root_ / "home");
        const auto under = [&](const std::optional<std::string>& p) -> std::optional<std::string> {
            if (!p) return std::nullopt;
            return p->empty() ? std::string("state") : (root_ / *p).string();
        };
        ScopedEnv xdg("XDG_STATE_HOME", under(c.xdg));
        ScopedEnv home("HOME", under(c.home));
        ErrorLog log((root_ / "prog").string());
        EXPECT_EQ(log.path(), (root_ / c.expected).string());
        log_one(log);
        EXPECT_EQ(read(root_ / c.expected), kLine);
    }
}

// The installed program's folder belongs to root. The log is written by an ordinary
// user (root is made one in a child process), who may not write there.
TEST_F(ErrorLogPlace, AProgramFolderTheUserMayNotWriteSendsTheLogToTheStateFolder) {
    const auto prog = root_ / "usr-lib-brenlow";
    const auto state = root_ / "state";
    fs::create_directories(prog);
    fs::create_directories(state);
    ::chmod(prog.c_str(), 0555);
    ::chmod(state.c_str(), 0777);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) ::_exit(3);
        ::setenv("XDG_STATE_HOME", state.c_str(), 1);
        ErrorLog log(prog.string());
        if (log.path() != (state / "tarrow" / "TarrowLog.log").string()) ::_exit(4);
        log_one(log);
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    ASSERT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(read(state / "tarrow" / "TarrowLog.log"), kLine);
    EXPECT_FALSE(fs::exists(prog / "TarrowLog.log"));
}

TEST_F(ErrorLogPlace, ALogThatCannotBeWrittenIsSaidOnceOnStandardError) {
    // A file where the folders would be: no one, root included, can make them.
    std::ofstream(root_ / "plain-file") << "x";
    ScopedEnv xdg("XDG_STATE_HOME", (root_ / "plain-file" / "state").string());
    ErrorLog log((root_ / "plain-file" / "prog").string());
    const std::string place = (root_ / "plain-file" / "state" / "tarrow" / "TarrowLog.log").string();
    ::testing::internal::CaptureStderr();
    log_one(log);
    log_one(log);
    const std::string said = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(said, "The error log " + place +
                        " cannot be written (Not a directory); the errors of this session are not kept.\n");
    EXPECT_EQ(log.logged(), 2);
}

}  // namespace
}  // namespace brenlow::frame
