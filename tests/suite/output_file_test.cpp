#include "suite/output_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace brenlow::suite {
namespace {

namespace fs = std::filesystem;

class OutputFile : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/brenlow-output-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern), nullptr);
        folder_ = pattern;
    }
    void TearDown() override {
        std::error_code ec;
        fs::remove_all(folder_, ec);
    }
    std::string read(const fs::path& p) {
        std::ifstream f(p, std::ios::binary);
        std::ostringstream s;
        s << f.rdbuf();
        return s.str();
    }
    std::size_t files() {
        std::size_t n = 0;
        for ([[maybe_unused]] const auto& e : fs::directory_iterator(folder_)) ++n;
        return n;
    }
    fs::path folder_;
};

TEST_F(OutputFile, ReplacesTheEarlierFileAndKeepsItsPermissions) {
    const auto target = folder_ / "backup.json";
    write_file_whole(target.string(), "first", Existing::keep);
    ::chmod(target.c_str(), 0640);
    write_file_whole(target.string(), "second, longer", Existing::replace);
    EXPECT_EQ(read(target), "second, longer");
    EXPECT_EQ(fs::status(target).permissions() & fs::perms::all,
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    EXPECT_EQ(files(), 1u);
}

TEST_F(OutputFile, AMissingFolderIsRefusedNamingTheFile) {
    const auto target = folder_ / "no-such-folder" / "backup.json";
    try {
        write_file_whole(target.string(), "x", Existing::keep);
        FAIL();
    } catch (const std::runtime_error& e) {
        EXPECT_EQ(std::string(e.what()).rfind("Cannot write " + target.string() + ": ", 0), 0u) << e.what();
    }
}

// The disk fills half-way: a file-size limit makes the write fail as a full disk
// does (and does so for root too, whom a read-only folder does not stop).
TEST_F(OutputFile, AWriteThatFailsHalfWayLeavesTheEarlierFileWhole) {
    const auto target = folder_ / "backup.json";
    const std::string earlier(3000, 'E');
    write_file_whole(target.string(), earlier, Existing::keep);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{4096, 4096};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        try {
            write_file_whole(target.string(), std::string(100000, 'N'), Existing::replace);
        } catch (const std::runtime_error&) {
            ::_exit(0);
        }
        ::_exit(1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0) << "the failed write was not reported";
    EXPECT_EQ(read(target), earlier);
    EXPECT_EQ(files(), 1u) << "a temporary file was left behind";
}

// Pieces small and large (past the writer's own gathering) come out in their order,
// and nothing is in place until the writer finishes.
TEST_F(OutputFile, APieceByPieceFileAppearsWholeOnlyWhenFinished) {
    const auto target = folder_ / "register.json";
    write_file_whole(target.string(), "earlier", Existing::keep);
    std::string expected;
    {
        WholeFileWriter out(target.string(), Existing::replace);
        for (int i = 0; i < 3000; ++i) {
            const std::string piece = std::string(static_cast<std::size_t>(1 + i % 7), 'a' + i % 26) + "\n";
            out.write(piece);
            expected += piece;
        }
        const std::string big(3 << 20, 'B');
        out.write(big);
        expected += big;
        out.write("end");
        expected += "end";
        EXPECT_EQ(read(target), "earlier");
        out.finish();
    }
    EXPECT_EQ(read(target), expected);
    EXPECT_EQ(files(), 1u);

    // Dropped before finishing, as when the reading behind it fails: the file stays.
    {
        WholeFileWriter out(target.string(), Existing::replace);
        out.write(std::string(5 << 20, 'X'));
    }
    EXPECT_EQ(read(target), expected);
    EXPECT_EQ(files(), 1u) << "a temporary file was left behind";
}

}  // namespace
}  // namespace brenlow::suite
