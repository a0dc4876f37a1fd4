// One gate for every way a register row comes in, on both backends: the same refused
// row gives the same message through `register add-opening` (the screen's Update), the
// JSON and spreadsheet imports, a merge and the carry-forward; a year that keeps the
// old chart takes no row from any of them nor from the import of last year's schedule;
// a document's group is matched on its classification; typed values are refused, never
// cut.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "cli_fixture.h"

namespace brenlow::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kResidual = "Residual Value is more than 5% of Cost i.e. Rs. 5000 !";
constexpr const char* kOldChart = "The client keeps the old depreciation chart for this year.";

class EntryGateCli : public CliTest {
protected:
    void SetUp() override {
        CliTest::SetUp();
        if (IsSkipped()) return;
        for (const char* client : {"C001", "C002"})
            for (const char* year : {"2024", "2025"})
                ASSERT_EQ(cli({"init", "--client", client, "--year", year, "--status", "3"}).code, 0);
        for (const char* year : {"2024", "2025"}) {
            const auto r = cli({"masters", "group", "add", "--client", "C001", "--year", year, "--name",
                                "LATHES", "--it-block", "3-15", "--books-block", "-1", "--classification",
                                "4.1", "--addl-rate", "20", "--yes"});
            ASSERT_EQ(r.code, 0) << r.err;
        }
        group_ = group_of(2025);
        dir_ = std::filesystem::temp_directory_path() / ("brenlow-gate-" + std::to_string(::getpid()) + "-" +
                                                         std::to_string(GetParam() == store::Backend::mysql));
        std::filesystem::create_directories(dir_);
    }
    void TearDown() override {
        std::error_code ec;
        std::filesystem::remove_all(dir_, ec);
        CliTest::TearDown();
    }
    long long group_of(int year) {
        return db()
            .query("select SrNoFAGM from NewFAGM where Part='LATHES' and Yr=" + std::to_string(year))
            .first("SrNoFAGM")
            .as_int();
    }
    long long openings(const std::string& client, int year = 2025) {
        return db()
            .query("select count(*) as n from NewFATRo" + std::to_string(year) + " where Code_No='" + client +
                   "' and SrNoFATR>0")
            .first("n")
            .as_int();
    }
    CliRun add_opening(const std::string& client, int year, const std::string& cost,
                       const std::string& residual, bool yes) {
        std::vector<std::string> words = {"register",   "add-opening",
                                          "--client",   client,
                                          "--year",     std::to_string(year),
                                          "--group",    std::to_string(group_of(year)),
                                          "--part",     "LATHE",
                                          "--put-date", "01/04/" + std::to_string(year - 1),
                                          "--cost",     cost,
                                          "--wdv-it",   cost,
                                          "--residual", residual};
        if (yes) words.push_back("--yes");
        return cli(words);
    }
    // A document of 2025 with one opening entry of the LATHES group (and the group).
    std::string document(double cost, double residual, Json group = Json()) {
        if (group.is_null())
            group = {{"SrNoFAGM", group_}, {"Yr", 2025},       {"Part", "LATHES"}, {"BlockIdIT", "3-15"},
                     {"RateIT", 15},       {"AddlRateIT", 20}, {"BlockFA", -1},    {"RateFA", 0},
                     {"BlockIdCL", "4.1"}, {"LifeYrs", 15},    {"RateSLM", 6.33},  {"RateWDV", 18.1}};
        const Json row = {
            {"IdFAGM", group["SrNoFAGM"]}, {"Part", "LATHE"},        {"CostWdv", cost}, {"WdvIT", cost},
            {"ResValue", residual},        {"PutDate", "01/04/2024"}};
        const Json doc = {
            {"format", "brenlow-register"}, {"version", 1},      {"client", "C001"},         {"year", 2025},
            {"NewFAGM", {group}},           {"NewFATRo", {row}}, {"NewFATRa", Json::array()}};
        const auto file = (dir_ / "one.json").string();
        std::ofstream(file) << doc.dump();
        return file;
    }
    long long group_ = 0;
    std::filesystem::path dir_;
};

TEST_P(EntryGateCli, TheSameRefusedRowGivesTheSameMessageThroughEveryWayIn) {
    const std::string asked = std::string(kResidual) + " Continue ?";
    // The screen's Update, from the command line: stopped at the question.
    auto r = add_opening("C001", 2025, "100000", "20000", false);
    EXPECT_EQ(r.code, 2) << r.err;
    EXPECT_NE(r.err.find(kResidual), std::string::npos) << r.err;
    EXPECT_EQ(openings("C001"), 0);

    // The JSON import.
    r = cli({"register", "import", document(100000, 20000), "--client", "C001", "--year", "2025"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("NewFATRo row 1, field ResValue: " + asked + " (answered No; --yes answers Yes)"),
              std::string::npos)
        << r.err;
    EXPECT_EQ(openings("C001"), 0);

    // The spreadsheet import: the entry written elsewhere with its question answered,
    // exported, and read back into C001.
    r = add_opening("C002", 2025, "100000", "20000", true);
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.err.find(std::string(kResidual) + "\n\nContinue ? Yes"), std::string::npos) << r.err;
    const auto sheet = (dir_ / "c002.xlsx").string();
    r = cli({"register", "export", sheet, "--client", "C002", "--year", "2025"});
    ASSERT_EQ(r.code, 0) << r.err;
    r = cli({"register", "import", sheet, "--client", "C001", "--year", "2025"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find(asked + " (answered No; --yes answers Yes)"), std::string::npos) << r.err;
    EXPECT_EQ(openings("C001"), 0);

    // A merge: two entries each within 5% of their own cost and above it together.
    db().execute("delete from NewFATRo2025 where Code_No='C002'");
    ASSERT_EQ(add_opening("C002", 2025, "50000", "2000", false).code, 0);
    ASSERT_EQ(add_opening("C002", 2025, "50000", "4000", true).code, 0);
    // Without --yes the merge stops at its first question and merges nothing.
    r = cli({"register", "merge", "--client", "C002", "--year", "2025", "1", "2"});
    EXPECT_EQ(r.code, 2) << r.err;
    EXPECT_NE(r.err.find("stopped at the question: Do you want to Merge Selected Assets?"), std::string::npos)
        << r.err;
    EXPECT_EQ(openings("C002"), 2);
    r = cli({"register", "merge", "--client", "C002", "--year", "2025", "1", "2", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    // The command names each question its --yes answered, in the screen's order.
    const auto merge_asked = r.err.find("Do you want to Merge Selected Assets? Yes\n");
    const auto residual_asked = r.err.find(std::string(kResidual) + "\n\nContinue ? Yes\n");
    EXPECT_NE(merge_asked, std::string::npos) << r.err;
    EXPECT_NE(residual_asked, std::string::npos) << r.err;
    EXPECT_LT(merge_asked, residual_asked) << r.err;
    EXPECT_EQ(openings("C002"), 1);

    // The carry-forward of last year's entry.
    ASSERT_EQ(add_opening("C001", 2024, "100000", "20000", true).code, 0);
    r = cli({"register", "carry-forward", "--client", "C001", "--year", "2025"});
    EXPECT_EQ(r.code, 2) << r.err;
    EXPECT_NE(r.err.find(kResidual), std::string::npos) << r.err;
    EXPECT_EQ(openings("C001"), 0);
    r = cli({"register", "carry-forward", "--client", "C001", "--year", "2025", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.err.find(asked + " Yes"), std::string::npos) << r.err;
    EXPECT_EQ(openings("C001"), 1);
}

TEST_P(EntryGateCli, TheCarriedRemainingHalfOfAdditionalDepreciationIsTold) {
    // Put to use for less than 180 days last year: half its additional depreciation remains.
    auto r = cli({"register", "add-addition", "--client", "C001", "--year", "2024", "--group",
                  std::to_string(group_of(2024)), "--part", "PRESS", "--put-date", "05/10/2023", "--acc-date",
                  "05/10/2023", "--cost", "100000", "--addl-dep", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    r = cli({"register", "carry-forward", "--client", "C001", "--year", "2025", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(
        r.err.find("Additional Depreciation (Remaining Half from Addition in Previous F.Y. used for less "
                   "than 180 days) will not be calculated !"),
        std::string::npos)
        << r.err;
    EXPECT_EQ(openings("C001"), 1);
}

TEST_P(EntryGateCli, AYearThatKeepsTheOldChartTakesNoRowFromAnyWay) {
    // Last year's entry (to carry or merge) and a sheet of this year (to import).
    ASSERT_EQ(add_opening("C001", 2024, "100000", "0", false).code, 0);
    ASSERT_EQ(add_opening("C002", 2025, "100000", "0", false).code, 0);
    const auto sheet = (dir_ / "c002.xls").string();
    ASSERT_EQ(cli({"register", "export", sheet, "--client", "C002", "--year", "2025"}).code, 0);
    db().execute(
        "INSERT INTO NewFATRo2025 Values ('C001',-1,-1,'',0,0,0,0,0,0,0,0,'',0,0,0,0,0,'',0,'','',0)");

    const std::vector<std::vector<std::string>> ways = {
        {"register", "add-opening", "--group", std::to_string(group_), "--part", "LATHE", "--cost", "5000"},
        {"register", "import", document(1000, 0)},
        {"register", "import", sheet},
        {"register", "import-schedule", "--yes"},
        {"register", "merge", "1", "2", "--yes"},
        {"register", "carry-forward", "--yes"},
    };
    for (auto words : ways) {
        SCOPED_TRACE(words[1]);
        for (const char* w : {"--client", "C001", "--year", "2025"}) words.push_back(w);
        const auto r = cli(words);
        EXPECT_EQ(r.code, 1) << r.err;
        EXPECT_NE(r.err.find(kOldChart), std::string::npos) << r.err;
        EXPECT_EQ(openings("C001"), 0);
    }
}

TEST_P(EntryGateCli, ADocumentsGroupIsMatchedOnItsClassificationOrRefused) {
    // Classified alike: matched, no group made.
    auto r = cli({"register", "import", document(1000, 0), "--client", "C001", "--year", "2025"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("asset groups 1 matched, 0 created"), std::string::npos) << r.out;

    // The same name under another income-tax block: refused by row and field.
    Json other = {{"SrNoFAGM", 900},    {"Yr", 2025},       {"Part", "lathes"}, {"BlockIdIT", "3-40"},
                  {"RateIT", 40},       {"AddlRateIT", 20}, {"BlockFA", -1},    {"RateFA", 0},
                  {"BlockIdCL", "4.1"}, {"LifeYrs", 15},    {"RateSLM", 6.33},  {"RateWDV", 18.1}};
    r = cli({"register", "import", document(1000, 0, other), "--client", "C001", "--year", "2025"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("NewFAGM row 900, field BlockIdIT: the year's asset group \"LATHES\" is classified "
                         "otherwise (--new-groups makes a group of its own)"),
              std::string::npos)
        << r.err;
    EXPECT_EQ(openings("C001"), 1);

    // Made anew when asked, and the row lands in it.
    r = cli({"register", "import", document(1000, 0, other), "--client", "C001", "--year", "2025",
             "--new-groups"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("asset groups 0 matched, 1 created"), std::string::npos) << r.out;
    EXPECT_EQ(db().query("select count(*) as n from NewFATRo2025 f join NewFAGM g on g.SrNoFAGM=f.IdFAGM "
                         "where g.BlockIdIT='3-40'")
                  .first("n")
                  .as_int(),
              1);
}

TEST_P(EntryGateCli, AnExtraShiftIsCheckedAgainstTheGroupTheRowIsWrittenTo) {
    // The year's LATHES group is a factory building (no extra shift); the document's
    // group of that name says otherwise only in its Companies Act block.
    db().execute("UPDATE NewFAGM SET BlockIdCL='1.3' WHERE SrNoFAGM=" + std::to_string(group_));
    Json doc = Json::parse(std::ifstream(document(1000, 0)));
    doc["NewFAGM"][0]["BlockIdCL"] = "1.3";
    doc["NewFATRo"][0]["ShiftDet"] = "01/04/2024,30/09/2024,2";
    const auto file = (dir_ / "shift.json").string();
    std::ofstream(file) << doc.dump();
    const auto r = cli({"register", "import", file, "--client", "C001", "--year", "2025"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("NewFATRo row 1, field ShiftDet: 'No Extra Shift Depreciation' is permitted for "
                         "selected 'Asset Group' !"),
              std::string::npos)
        << r.err;
}

struct TypedValue {
    const char* name;
    std::vector<std::string> words;
    const char* refusal;
};

TEST_P(EntryGateCli, TypedValuesAreRefusedNamingTheOptionNeverCut) {
    const std::string group = std::to_string(group_);
    const std::vector<std::string> add = {"register", "add-opening", "--client", "C001",  "--year", "2025",
                                          "--group",  group,         "--part",   "LATHE", "--yes"};
    const auto with = [&](std::vector<std::string> more) {
        auto w = add;
        w.insert(w.end(), more.begin(), more.end());
        return w;
    };
    const std::string name(256, 'N');
    const TypedValue cases[] = {
        {"LeadingZerosPastTheField", with({"--cost", "00000000000000000005"}),
         "Option --cost was refused: \"00000000000000000005\" is longer than 18 characters, the length of "
         "its "
         "field."},
        {"MoreDigitsThanTheField", with({"--cost", "1234567890123456789012345"}),
         "Option --cost was refused: \"1234567890123456789012345\" is longer than 18 characters"},
        {"ADateWithATail", with({"--cost", "5000", "--put-date", "05/10/2024xyz"}),
         "Option --put-date was refused: \"05/10/2024xyz\" is longer than 10 characters"},
        {"ALedgerNameLongerThanItsField",
         {"ledger", "add", name, "--master", "capital"},
         "The name was refused"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto r = cli(c.words);
        EXPECT_EQ(r.code, 1) << r.err;
        EXPECT_NE(r.err.find(c.refusal), std::string::npos) << r.err;
        EXPECT_EQ(openings("C001"), 0);
    }
    EXPECT_EQ(
        db().query("select count(*) as n from Mast_Capital where Part like 'NNNN%'").first("n").as_int(), 0);
}

BRENLOW_INSTANTIATE_BACKENDS(EntryGateCli);

}  // namespace
}  // namespace brenlow::cli
