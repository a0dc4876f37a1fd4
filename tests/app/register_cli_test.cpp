#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "cli_fixture.h"

namespace brenlow::cli {
namespace {

// The register's commands run the register screen's own events; these tests look
// at what the person at the command line gets and what the tables hold.
class RegisterCli : public CliTest {
protected:
    void SetUp() override {
        CliTest::SetUp();
        if (IsSkipped()) return;
        ASSERT_EQ(cli({"init", "--client", "C001", "--year", "2025"}).code, 0);
        const auto r =
            cli({"masters", "group", "add", "--client", "C001", "--year", "2025", "--name", "LATHES",
                 "--it-block", "3-15", "--books-block", "-1", "--classification", "4.1"});
        ASSERT_EQ(r.code, 0) << r.err;
        group_ = std::to_string(
            db().query("select SrNoFAGM from NewFAGM where Part='LATHES'").first("SrNoFAGM").as_int());
    }
    long long count(const std::string& table) {
        return db().query("select count(*) as n from " + table + " where Code_No='C001'").first("n").as_int();
    }
    std::string group_;
};

TEST_P(RegisterCli, AddsAnAdditionAndListsIt) {
    auto r =
        cli({"register", "add-addition", "--client", "C001", "--year", "2025", "--group", group_, "--part",
             "CNC LATHE", "--put-date", "05/10/2024", "--acc-date", "05/10/2024", "--cost", "250000"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(count("NewFATRa2025"), 1);
    r = cli({"register", "list", "--client", "C001", "--year", "2025", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("CNC LATHE"), std::string::npos) << r.out;
}

TEST_P(RegisterCli, ARefusedEntryNamesTheCheckAndWritesNothing) {
    // An opening entry put to use after the year began is refused by the screen's checks.
    const auto r =
        cli({"register", "add-opening", "--client", "C001", "--year", "2025", "--group", group_, "--part",
             "LATE LATHE", "--put-date", "02/04/2024", "--cost", "1000", "--wdv-it", "900"});
    EXPECT_NE(r.code, 0);
    EXPECT_FALSE(r.err.empty());
    EXPECT_EQ(count("NewFATRo2025"), 0);
}

TEST_P(RegisterCli, DeletingAllStopsAtTheQuestionWithoutYes) {
    ASSERT_EQ(
        cli({"register", "add-addition", "--client", "C001", "--year", "2025", "--group", group_, "--part",
             "DRILL", "--put-date", "01/06/2024", "--acc-date", "01/06/2024", "--cost", "5000"})
            .code,
        0);
    auto r = cli({"register", "delete", "--addition", "--all", "--client", "C001", "--year", "2025"});
    EXPECT_EQ(r.code, 2) << r.err;
    EXPECT_EQ(count("NewFATRa2025"), 1);
    r = cli({"register", "delete", "--addition", "--all", "--client", "C001", "--year", "2025", "--yes"});
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(count("NewFATRa2025"), 0);
}

TEST_P(RegisterCli, TheListingAsJsonHoldsNumbersAndFourDigitYears) {
    ASSERT_EQ(
        cli({"register", "add-addition", "--client", "C001", "--year", "2025", "--group", group_, "--part",
             "DRILL", "--put-date", "01/06/2024", "--acc-date", "01/06/2024", "--cost", "914.92"})
            .code,
        0);
    const auto r = cli({"register", "list", "--client", "C001", "--year", "2025", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("\"Cost\": 914.92,"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\"PutDate\": \"01/06/2024\""), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\"SrNoFATR\": 1,"), std::string::npos) << r.out;
    EXPECT_EQ(r.out.find("\"Cost\": \""), std::string::npos) << r.out;
}

TEST_P(RegisterCli, DepreciationTypedInByGroupIsKeptAndTravelsWithTheRegister) {
    auto r = cli({"register", "manual-depreciation", "--client", "C001", "--year", "2025", "--set",
                  group_ + "=12500.5"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_DOUBLE_EQ(
        db().query("select DepAmt from NewFAMD where Code_No='C001' and Yr=2025").first("DepAmt").as_double(),
        12500.5);
    r = cli({"register", "manual-depreciation", "--client", "C001", "--year", "2025", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("\"AssetGroup\": \"LATHES\", \"DepAmt\": 12500.50"), std::string::npos) << r.out;
    // Not a number: refused with the screen's message, nothing changes.
    r = cli(
        {"register", "manual-depreciation", "--client", "C001", "--year", "2025", "--set", group_ + "=lots"});
    EXPECT_NE(r.code, 0);
    EXPECT_NE(r.err.find("Invalid Value !"), std::string::npos) << r.err;
    // The register document carries it (version 2) into another client of the year.
    const auto file =
        (std::filesystem::temp_directory_path() / ("brenlow-famd-" + std::to_string(::getpid()) + ".json"))
            .string();
    ASSERT_EQ(cli({"register", "export", file, "--client", "C001", "--year", "2025"}).code, 0);
    ASSERT_EQ(cli({"init", "--client", "C002", "--year", "2025"}).code, 0);
    r = cli({"register", "import", file, "--client", "C002", "--year", "2025"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_DOUBLE_EQ(
        db().query("select DepAmt from NewFAMD where Code_No='C002' and Yr=2025").first("DepAmt").as_double(),
        12500.5);
    std::filesystem::remove(file);
    // Cleared again.
    r = cli({"register", "manual-depreciation", "--client", "C001", "--year", "2025", "--set", group_ + "="});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(count("NewFAMD"), 0);
}

TEST(CliReads, AReadingCommandNeverCreatesADatabase) {
    const auto folder =
        std::filesystem::temp_directory_path() / ("brenlow-no-db-" + std::to_string(::getpid()));
    const auto file = folder / "none.db";
    for (const std::vector<std::string>& words : {std::vector<std::string>{"register", "list"},
                                                  {"chart", "--it"},
                                                  {"register", "export", "x.json"}}) {
        std::vector<std::string> args = {"--db", "sqlite:" + file.string()};
        args.insert(args.end(), words.begin(), words.end());
        args.insert(args.end(), {"--client", "C001", "--year", "2025"});
        const auto r = run_cli(args);
        SCOPED_TRACE(words[0] + " " + words[1]);
        EXPECT_EQ(r.code, 1);
        EXPECT_NE(r.err.find("there is no database at " + file.string() + " (brenlow init creates it)"),
                  std::string::npos)
            << r.err;
        EXPECT_FALSE(std::filesystem::exists(folder));
    }
}

TEST(CliHelp, EveryCommandAndSubCommandPrintsItsHelp) {
    for (const std::vector<std::string>& words : {std::vector<std::string>{"init", "--help"},
                                                  {"chart", "--help"},
                                                  {"demo", "--help"},
                                                  {"register", "--help"},
                                                  {"register", "add-opening", "--help"},
                                                  {"register", "carry-forward", "-h"},
                                                  {"masters", "--help"},
                                                  {"masters", "group", "add", "--help"},
                                                  {"register", "import", "--help"}}) {
        const auto r = run_cli(words);
        SCOPED_TRACE(words[0] + " " + words[1]);
        EXPECT_EQ(r.code, 0) << r.err;
        EXPECT_EQ(r.out.rfind("Usage: brenlow", 0), 0u) << r.out;
    }
}

// Amounts typed grouped in lakhs or in thousands are read; a grouping that is neither is
// refused with the screen's message and the option that gave it, and writes nothing.
TEST_P(RegisterCli, ReadsGroupedAmountsAndNamesTheOptionOfARefusedOne) {
    struct Case {
        const char* cost;
        double stored;  // 0: refused
    };
    const Case cases[] = {{"8,50,000", 850000}, {"15,00,000.50", 1500000.5},
                          {"850,000", 850000},  {"8,5,0", 0},
                          {"85,0000", 0},       {"abc", 0}};
    for (const Case& c : cases) {
        const auto r = cli({"register", "add-addition", "--client", "C001", "--year", "2025", "--group",
                            group_, "--part", "LATHE", "--put-date", "05/10/2024", "--acc-date", "05/10/2024",
                            "--cost", c.cost});
        const auto rows = db().query("select PurAmt from NewFATRa2025 where Code_No='C001'");
        if (c.stored == 0) {
            EXPECT_EQ(r.code, 1) << c.cost;
            EXPECT_NE(r.err.find("Invalid Value !"), std::string::npos) << r.err;
            EXPECT_NE(r.err.find("Option --cost was refused: \"" + std::string(c.cost) + "\""),
                      std::string::npos)
                << r.err;
            EXPECT_EQ(rows.size(), 0u) << c.cost;
        } else {
            ASSERT_EQ(r.code, 0) << c.cost << r.err;
            ASSERT_EQ(rows.size(), 1u);
            EXPECT_DOUBLE_EQ(rows.first("PurAmt").as_double(), c.stored) << c.cost;
            db().execute("delete from NewFATRa2025 where Code_No='C001'");
        }
    }
}

// The practice's grouping is kept in the database: every later command prints by it.
TEST_P(RegisterCli, PrintsAmountsInLakhsUntilThePracticeAsksForThousands) {
    ASSERT_EQ(
        cli({"register", "add-addition", "--client", "C001", "--year", "2025", "--group", group_, "--part",
             "PRESS", "--put-date", "01/05/2024", "--acc-date", "01/05/2024", "--cost", "18,34,42,000"})
            .code,
        0);
    const std::vector<std::string> chart = {"chart", "--client", "C001", "--year", "2025", "--it"};
    auto r = cli(chart);
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("18,34,42,000"), std::string::npos) << r.out;
    EXPECT_EQ(cli({"settings"}).out, "digit-grouping indian\n");
    ASSERT_EQ(cli({"settings", "digit-grouping", "western"}).code, 0);
    r = cli(chart);
    EXPECT_NE(r.out.find("183,442,000"), std::string::npos) << r.out;
    EXPECT_EQ(r.out.find("18,34,42,000"), std::string::npos) << r.out;
    EXPECT_EQ(cli({"settings", "digit-grouping", "lakhs"}).code, 1);
    ASSERT_EQ(cli({"settings", "digit-grouping", "indian"}).code, 0);
}

BRENLOW_INSTANTIATE_BACKENDS(RegisterCli);

}  // namespace
}  // namespace brenlow::cli
