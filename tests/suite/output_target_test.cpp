// The rule every written file passes: never over a file the program has open (the
// database, its journal and write-ahead log), never over a folder, never over an
// existing file unasked; and the temporaries a killed writer left are cleared.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

#include "suite/output_file.h"

namespace brenlow::suite {
namespace {

namespace fs = std::filesystem;

class OutputTarget : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/brenlow-target-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern), nullptr);
        folder_ = pattern;
    }
    void TearDown() override {
        std::error_code ec;
        fs::remove_all(folder_, ec);
    }
    static std::string read(const fs::path& p) {
        std::ifstream f(p, std::ios::binary);
        std::ostringstream s;
        s << f.rdbuf();
        return s.str();
    }
    static void put(const fs::path& p, const std::string& bytes) {
        std::ofstream(p, std::ios::binary) << bytes;
    }
    std::vector<std::string> names() const {
        std::vector<std::string> out;
        for (const auto& e : fs::directory_iterator(folder_)) out.push_back(e.path().filename().string());
        std::sort(out.begin(), out.end());
        return out;
    }
    // What write_file_whole refused with, or "written".
    static std::string attempt(const fs::path& target, Existing existing) {
        try {
            write_file_whole(target.string(), "NEW", existing);
        } catch (const TargetRefused& e) {
            return e.what();
        }
        return "written";
    }
    fs::path folder_;
};

// A process that has ended and been reaped: its number names no process now.
pid_t ended_process() {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(0);
    int status = 0;
    ::waitpid(child, &status, 0);
    return child;
}

TEST_F(OutputTarget, AFileThisProgramHasOpenIsNeverWrittenOverEvenWhenReplacingWasAgreed) {
    const auto db = folder_ / "practice.db";
    put(db, "SQLite format 3");
    const int fd = ::open(db.c_str(), O_RDWR);
    ASSERT_GE(fd, 0);
    const std::string refused =
        "Cannot write PATH: it is the database or another file the program has open; "
        "nothing was written.";
    const auto expected = [&](const fs::path& p) {
        return std::string(refused).replace(refused.find("PATH"), 4, p.string());
    };
    // The file itself, a second name of it, and its journal and logs beside it.
    const auto link = folder_ / "other-name.json";
    fs::create_hard_link(db, link);
    for (const auto& target : {db, link, folder_ / "practice.db-journal", folder_ / "practice.db-wal",
                               folder_ / "practice.db-shm"}) {
        EXPECT_EQ(attempt(target, Existing::replace), expected(target));
        EXPECT_EQ(attempt(target, Existing::keep), expected(target));
    }
    ::close(fd);
    EXPECT_EQ(read(db), "SQLite format 3");
    EXPECT_EQ(names(), (std::vector<std::string>{"other-name.json", "practice.db"}));
    // Closed, it is an ordinary file again.
    EXPECT_EQ(attempt(db, Existing::replace), "written");
    EXPECT_EQ(read(db), "NEW");
}

TEST_F(OutputTarget, AnExistingFileIsReplacedOnlyWhenThePersonAgreed) {
    const auto target = folder_ / "capital.json";
    put(target, "EARLIER");
    EXPECT_EQ(attempt(target, Existing::keep),
              "File [" + target.string() + "] already exists. Do you want to overwrite it?");
    EXPECT_EQ(read(target), "EARLIER");
    EXPECT_EQ(attempt(target, Existing::replace), "written");
    EXPECT_EQ(read(target), "NEW");
    EXPECT_EQ(attempt(folder_ / "new.json", Existing::keep), "written");
    EXPECT_EQ(names(), (std::vector<std::string>{"capital.json", "new.json"}));
}

TEST_F(OutputTarget, AFolderIsNotAFileToWriteOver) {
    fs::create_directory(folder_ / "charts.pdf");
    EXPECT_EQ(
        attempt(folder_ / "charts.pdf", Existing::replace),
        "Cannot write " + (folder_ / "charts.pdf").string() + ": it is not a file; nothing was written.");
    EXPECT_TRUE(fs::is_directory(folder_ / "charts.pdf"));
}

// The file appears while the writer works (another process): unasked, it stays.
TEST_F(OutputTarget, AFileThatAppearsWhileWritingIsNotReplacedUnasked) {
    const auto target = folder_ / "register.json";
    {
        WholeFileWriter out(target.string(), Existing::keep);
        out.write("NEW");
        put(target, "MADE MEANWHILE");
        EXPECT_THROW(out.finish(), TargetRefused);
    }
    EXPECT_EQ(read(target), "MADE MEANWHILE");
    EXPECT_EQ(names(), std::vector<std::string>{"register.json"});
}

TEST_F(OutputTarget, TheTemporariesOfAWriterThatIsGoneAreRemovedByTheNextWriterOfTheSameFile) {
    const std::string gone = std::to_string(ended_process());
    const std::string alive = std::to_string(::getppid());
    // Ours, left by an ended process: removed. One of a running process, one beside
    // another file, and a file that only looks alike: kept.
    const std::vector<std::string> left = {".register.json.brenlow-tmp-" + gone + "-a1B2c3",
                                           ".register.json.brenlow-tmp-" + alive + "-d4E5f6",
                                           ".capital.json.brenlow-tmp-" + gone + "-g7H8i9",
                                           ".register.json.brenlow-tmp-x-j0K1l2", "register.json.bak"};
    for (const auto& n : left) put(folder_ / n, std::string(1000, 'T'));
    write_file_whole((folder_ / "register.json").string(), "NEW", Existing::keep);
    EXPECT_EQ(names(), (std::vector<std::string>{".capital.json.brenlow-tmp-" + gone + "-g7H8i9",
                                                 ".register.json.brenlow-tmp-" + alive + "-d4E5f6",
                                                 ".register.json.brenlow-tmp-x-j0K1l2", "register.json",
                                                 "register.json.bak"}));
}

// A writer's temporary carries its process number, so that the next run can tell.
TEST_F(OutputTarget, AWritersTemporaryIsNamedAfterItsTargetAndItsProcess) {
    const auto target = folder_ / "chart.xlsx";
    WholeFileWriter out(target.string(), Existing::keep);
    const std::string name = fs::path(out.temporary_name()).filename().string();
    const std::string prefix = ".chart.xlsx.brenlow-tmp-" + std::to_string(::getpid()) + "-";
    EXPECT_EQ(name.substr(0, prefix.size()), prefix);
    EXPECT_EQ(name.size(), prefix.size() + 6);
    // A library writing the temporary by its name: finish() puts that in place.
    put(out.temporary_name(), "WRITTEN BY NAME");
    out.finish();
    EXPECT_EQ(read(target), "WRITTEN BY NAME");
    EXPECT_EQ(names(), std::vector<std::string>{"chart.xlsx"});
}

}  // namespace
}  // namespace brenlow::suite
