// One set of entry rules for every way in: an addition refused by the register import
// is refused by `register add-addition` with the same message, and neither writes.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>

#include "cli_fixture.h"

namespace brenlow::cli {
namespace {

using Json = nlohmann::ordered_json;

struct BadAddition {
    const char* name;
    std::vector<std::pair<const char*, std::string>> fields;  // option name, value
    const char* column;                                       // the import names it
    const char* message;                                      // the screen's own text
    bool question;                                            // "Continue ?": --yes goes on
};

const BadAddition kCases[] = {
    {"PutToUseInAnEarlierYear",
     {{"put-date", "12/06/2019"}, {"cost", "500000"}},
     "PutDate",
     "'Date of Put to Use' should be on or after 01/04/2024 !",
     false},
    {"AccountedAfterTheYear",
     {{"put-date", "12/06/2024"}, {"acc-date", "01/01/2030"}, {"cost", "500000"}},
     "AccDate",
     "'Date of Accounting' should be between 01/04/2024 and 31/03/2025 !",
     false},
    {"NegativeCost",
     {{"put-date", "12/06/2024"}, {"cost", "-500000"}},
     "PurAmt",
     "Please specify valid 'Cost' !",
     false},
    {"SoldBeforePutToUse",
     {{"put-date", "01/10/2024"}, {"cost", "500000"}, {"sale-date", "01/06/2024"}, {"sale-amount", "1000"}},
     "SaleDate",
     "Date of Sale/Deduction should be on or after Date of Put to Use of New Addition i.e. 01/10/2024",
     false},
    {"ResidualValueAboveFivePerCent",
     {{"put-date", "12/06/2024"}, {"cost", "100000"}, {"residual", "20000"}},
     "ResValue",
     "Residual Value is more than 5% of Cost i.e. Rs. 5000 !",
     true},
};

// The column and its value in the document, for each option.
const std::map<std::string, std::pair<const char*, bool>> kColumns = {
    {"put-date", {"PutDate", false}}, {"acc-date", {"AccDate", false}},   {"cost", {"PurAmt", true}},
    {"residual", {"ResValue", true}}, {"sale-date", {"SaleDate", false}}, {"sale-amount", {"SaleAmt", true}},
};

class RegisterRulesCli : public CliTest {
protected:
    void SetUp() override {
        CliTest::SetUp();
        if (IsSkipped()) return;
        ASSERT_EQ(cli({"init", "--client", "C001", "--year", "2025"}).code, 0);
        const auto r =
            cli({"masters", "group", "add", "--client", "C001", "--year", "2025", "--name", "LATHES",
                 "--it-block", "3-15", "--books-block", "-1", "--classification", "4.1"});
        ASSERT_EQ(r.code, 0) << r.err;
        group_ = db().query("select SrNoFAGM from NewFAGM where Part='LATHES'").first("SrNoFAGM").as_int();
        dir_ = std::filesystem::temp_directory_path() / ("brenlow-rules-" + std::to_string(::getpid()));
        std::filesystem::create_directories(dir_);
    }
    void TearDown() override {
        std::error_code ec;
        std::filesystem::remove_all(dir_, ec);
        CliTest::TearDown();
    }
    long long additions() {
        return db().query("select count(*) as n from NewFATRa2025 where Code_No='C001'").first("n").as_int();
    }
    // A document of the year with one addition holding the case's fields.
    std::string document(const BadAddition& c, int year) {
        Json row = {{"IdFAGM", group_}, {"Part", "PRESS"}};
        for (const auto& [option, value] : c.fields) {
            const auto& [column, number] = kColumns.at(option);
            row[column] = number ? Json(std::stod(value)) : Json(value);
        }
        const Json doc = {{"format", "brenlow-register"},
                          {"version", 1},
                          {"client", "C001"},
                          {"year", year},
                          {"NewFAGM", Json::array()},
                          {"NewFATRo", Json::array()},
                          {"NewFATRa", {row}}};
        const auto file = (dir_ / "one.json").string();
        std::ofstream(file) << doc.dump();
        return file;
    }
    long long group_ = 0;
    std::filesystem::path dir_;
};

TEST_P(RegisterRulesCli, ImportAndAddRefuseTheSameAdditionWithTheSameMessage) {
    for (const BadAddition& c : kCases) {
        SCOPED_TRACE(c.name);
        const std::string line = std::string("NewFATRa row 1, field ") + c.column + ": " + c.message;

        auto r = cli({"register", "import", document(c, 2025), "--client", "C001", "--year", "2025"});
        EXPECT_EQ(r.code, 1);
        EXPECT_NE(r.err.find(line + (c.question ? " Continue ? (answered No; --yes answers Yes)\n" : "\n")),
                  std::string::npos)
            << r.err;
        EXPECT_NE(r.err.find("Nothing was imported."), std::string::npos) << r.err;
        EXPECT_EQ(additions(), 0);

        std::vector<std::string> add = {"register", "add-addition", "--client", "C001",
                                        "--year",   "2025",         "--group",  std::to_string(group_),
                                        "--part",   "PRESS"};
        for (const auto& [option, value] : c.fields) {
            add.push_back(std::string("--") + option);
            add.push_back(value);
        }
        r = cli(add);
        EXPECT_EQ(r.code, c.question ? 2 : 1) << r.err;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << r.err;
        EXPECT_EQ(additions(), 0);

        if (c.question) {
            // Answered Yes, both ways in take the entry.
            r = cli({"register", "import", document(c, 2025), "--client", "C001", "--year", "2025", "--yes"});
            EXPECT_EQ(r.code, 0) << r.err;
            add.push_back("--yes");
            r = cli(add);
            EXPECT_EQ(r.code, 0) << r.err;
            EXPECT_EQ(additions(), 2);
            db().execute("delete from NewFATRa2025 where Code_No='C001'");
        }
    }
}

TEST_P(RegisterRulesCli, AnotherYearsDocumentIsRefusedBeforeItsRows) {
    const BadAddition& c = kCases[0];
    const auto r = cli({"register", "import", document(c, 2024), "--client", "C001", "--year", "2025"});
    EXPECT_EQ(r.code, 1);
    // The year's refusal comes first, before any row's.
    const auto year_line = r.err.find(
        "The document is the register of F.Y. 2023-24, not of F.Y. 2024-25; its dates are not rewritten "
        "(--yes "
        "imports it all the same)\n");
    EXPECT_NE(year_line, std::string::npos) << r.err;
    EXPECT_LT(year_line, r.err.find("NewFATRa row 1")) << r.err;
    EXPECT_EQ(additions(), 0);
}

BRENLOW_INSTANTIATE_BACKENDS(RegisterRulesCli);

}  // namespace
}  // namespace brenlow::cli
