// Every long command tells its progress on standard error and ends at 100%: the
// calculation, the chart's files, the carry-forwards, the schedules' and the capital
// accounts' documents out and in (the register's workbook is followed to its end with
// the spreadsheet commands).

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <sstream>

#include "cli_fixture.h"

namespace brenlow::cli {
namespace {

namespace fs = std::filesystem;

class ProgressCli : public CliTest {
protected:
    void SetUp() override {
        CliTest::SetUp();
        if (IsSkipped()) return;
        dir_ = fs::temp_directory_path() / ("brenlow-progress-" + std::to_string(::getpid()) + "-" +
                                            std::to_string(reinterpret_cast<std::uintptr_t>(this)));
        fs::create_directories(dir_);
        for (const char* client : {"C001", "C002"})
            ASSERT_EQ(cli({"init", "--client", client, "--year", "2025", "--status", "3"}).code, 0);
        ASSERT_EQ(cli({"init", "--client", "C001", "--year", "2026"}).code, 0);
        auto r = cli({"masters", "group", "add", "--client", "C001", "--year", "2025", "--name", "PLANT",
                      "--it-block", "3-15", "--books-block", "-1", "--classification", "4.1"});
        ASSERT_EQ(r.code, 0) << r.err;
        const std::string group =
            std::to_string(db().query("select SrNoFAGM from NewFAGM where Part='PLANT' and Yr=2025")
                               .first("SrNoFAGM")
                               .as_int());
        r = cli({"register", "add-opening", "--client", "C001", "--year", "2025", "--group", group, "--part",
                 "LATHE", "--put-date", "01/04/2020", "--cost", "100000", "--wdv-it", "100000", "--rate",
                 "10"});
        ASSERT_EQ(r.code, 0) << r.err;
        for (const char* code : {"FIRM1", "FIRM2"})
            ASSERT_EQ(cli({"init", "--client", code, "--year", "2025", "--status", "2"}).code, 0);
        ASSERT_EQ(cli({"capital", "partners", "--client", "FIRM1", "--add", "ANIL K SHAH"}).code, 0);
    }
    void TearDown() override {
        if (!dir_.empty()) fs::remove_all(dir_);
        CliTest::TearDown();
    }
    std::string file(const std::string& name) const { return (dir_ / name).string(); }

    fs::path dir_;
};

// The progress lines of a command's standard error ("caption NN%"), in order.
std::vector<std::string> progress_lines(const std::string& err) {
    static const std::regex line(R"(.* (\d+)%)");
    std::vector<std::string> out;
    std::istringstream in(err);
    for (std::string l; std::getline(in, l);)
        if (std::regex_match(l, line)) out.push_back(l);
    return out;
}

struct LongCommand {
    const char* what;
    std::vector<std::string> words;  // "@name" stands for a file in the test's folder
    const char* last;                // the last progress line, without the folder
};

TEST_P(ProgressCli, EveryLongCommandEndsItsProgressAt100PerCent) {
    const LongCommand commands[] = {
        {"the income-tax calculation",
         {"chart", "--client", "C001", "--year", "2025", "--it"},
         "Calculating Depreciation ... 100%"},
        {"the income-tax chart as PDF",
         {"chart", "--client", "C001", "--year", "2025", "--it", "--pdf", "@it.pdf"},
         "Writing @it.pdf ... 100%"},
        {"the books chart as a workbook",
         {"chart", "--client", "C001", "--year", "2025", "--books", "--xlsx", "@books.xlsx"},
         "Writing @books.xlsx ... 100%"},
        {"the register's carry-forward",
         {"register", "carry-forward", "--client", "C001", "--year", "2026"},
         "Carrying Forward Previous Year Particulars ... 100%"},
        {"the schedules' export",
         {"schedules", "export", "@schedules.json", "--client", "C001", "--year", "2025"},
         "Exporting the schedules to @schedules.json ... 100%"},
        {"the schedules' import",
         {"schedules", "import", "@schedules.json", "--client", "C002", "--year", "2025"},
         "Importing the schedules from @schedules.json ... 100%"},
        {"the schedules' carry-forward",
         {"schedules", "carry-forward", "--client", "C001", "--year", "2026"},
         "Carrying Forward the Schedules ... 100%"},
        {"the capital accounts' export",
         {"capital", "export", "@capital.json", "--client", "FIRM1", "--year", "2025"},
         "Exporting the capital accounts to @capital.json ... 100%"},
        {"the capital accounts' import",
         {"capital", "import", "@capital.json", "--client", "FIRM2", "--year", "2025"},
         "Importing the capital accounts from @capital.json ... 100%"},
    };
    const auto in_folder = [&](std::string text) {
        for (std::size_t at; (at = text.find('@')) != std::string::npos;)
            text.replace(at, 1, (dir_ / "").string());
        return text;
    };
    for (const auto& c : commands) {
        SCOPED_TRACE(c.what);
        std::vector<std::string> words;
        for (const auto& w : c.words) words.push_back(in_folder(w));
        const auto r = cli(words);
        ASSERT_EQ(r.code, 0) << r.err;
        const auto lines = progress_lines(r.err);
        ASSERT_FALSE(lines.empty()) << r.err;
        EXPECT_EQ(lines.back(), in_folder(c.last)) << r.err;
    }
}

BRENLOW_INSTANTIATE_BACKENDS(ProgressCli);

}  // namespace
}  // namespace brenlow::cli
