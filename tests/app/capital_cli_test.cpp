// brenlow capital and brenlow ledger on both backends: the ratios' check, the share
// of a typed net profit, the schedule as JSON, the lines out and back in, and the
// ledger master's refusal, list and replace.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "cli_fixture.h"

namespace brenlow::cli {
namespace {

// The share line a command printed for a partner: "  NAME ... 3.33 Cr." read as "3.33 Cr.".
std::string share_of(const std::string& out, const std::string& name) {
    const auto at = out.find("  " + name + " ");
    if (at == std::string::npos) return {};
    const auto end = out.find('\n', at);
    std::string line = out.substr(at + 2 + name.size(), end - at - 2 - name.size());
    return line.substr(line.find_first_not_of(' '));
}

class CapitalCli : public CliTest {
protected:
    void SetUp() override {
        CliTest::SetUp();
        if (IsSkipped()) return;
        for (const auto& words : std::vector<std::vector<std::string>>{
                 {"init", "--client", "FIRM", "--year", "2025", "--name", "SHAH AND CO", "--status", "2"},
                 {"init", "--client", "OTHER", "--year", "2024", "--name", "OTHER TRADERS", "--status", "2"},
                 {"capital", "partners", "--client", "FIRM", "--add", "ANIL SHAH"},
                 {"capital", "partners", "--client", "FIRM", "--add", "BINA MEHTA"},
                 {"capital", "partners", "--client", "OTHER", "--add", "OM RAO"}}) {
            const auto r = cli(words);
            ASSERT_EQ(r.code, 0) << r.err;
        }
        file_ = std::filesystem::temp_directory_path() /
                ("brenlow-capital-" + std::to_string(::getpid()) + "-" +
                 std::to_string(reinterpret_cast<std::uintptr_t>(this)) + ".json");
    }
    void TearDown() override {
        std::error_code ec;
        std::filesystem::remove(file_, ec);
        CliTest::TearDown();
    }
    CliRun capital(std::vector<std::string> words, const std::string& client = "FIRM",
                   const std::string& year = "2025") {
        words.insert(words.begin(), "capital");
        for (const auto& w : {std::string("--client"), client, std::string("--year"), year})
            words.push_back(w);
        return cli(words);
    }
    std::filesystem::path file_;
};

TEST_P(CapitalCli, RatiosMustTotalOneHundredAndTheShareFollowsThem) {
    auto r = capital({"ratios", "1=50"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("Total Profit (%) should be 100%."), std::string::npos) << r.err;
    r = capital({"ratios", "1=33.33", "2=33.33", "RAVI KUMAR=33.34"});
    ASSERT_EQ(r.code, 0) << r.err;
    r = capital({"share", "--net-profit", "10", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(share_of(r.out, "ANIL SHAH"), "3.33 Cr.");
    EXPECT_EQ(share_of(r.out, "RAVI KUMAR"), "3.34 Cr.");
    r = capital({"show", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    const auto doc = nlohmann::json::parse(r.out);
    EXPECT_EQ(doc["title"], "CAPITAL SCHEDULE - SHAH AND CO");
    ASSERT_EQ(doc["partners"].size(), 3u);
    EXPECT_EQ(doc["partners"][2]["code"], "~~[OTHER]RAVI KUMAR");
    EXPECT_EQ(doc["partners"][1]["capital_balance"], 3.33);
    // A loss from the year's result: debited.
    ASSERT_EQ(capital({"result", "1=100", "2=-150", "--yes"}).code, 0);
    r = capital({"share", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    // -16.665 is half-way: to the even -16.66; the last takes the remainder.
    EXPECT_EQ(share_of(r.out, "BINA MEHTA"), "16.66 Dr.");
    EXPECT_EQ(share_of(r.out, "RAVI KUMAR"), "16.68 Dr.");
}

TEST_P(CapitalCli, ShareAndResultWriteNothingUntilTheirQuestionIsAnswered) {
    ASSERT_EQ(capital({"ratios", "1=60", "2=40"}).code, 0);
    auto r = capital({"share", "--net-profit", "1000"});
    EXPECT_EQ(r.code, 2) << r.err;
    EXPECT_NE(r.err.find("Do you want to Share the Net Profit/Loss among the Partners and Save ?"),
              std::string::npos)
        << r.err;
    r = capital({"show", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(nlohmann::json::parse(r.out)["partners"][0]["capital_balance"], 0) << r.out;

    r = capital({"result", "1=100", "2=-150"});
    EXPECT_EQ(r.code, 2) << r.err;
    EXPECT_NE(r.err.find("Do you want to Replace the Result of the Year ?"), std::string::npos) << r.err;
    // Nothing recorded: the nil result is named before the question, and no line is written.
    r = capital({"share", "--yes"});
    EXPECT_EQ(r.code, 1) << r.err;
    EXPECT_EQ(
        r.err,
        "information: Net Profit/Loss is nil: the year's result is not recorded. Nothing was shared.\n");
    EXPECT_EQ(r.out, "");
    r = capital({"export", file_.string()});
    ASSERT_EQ(r.code, 0) << r.err;
    std::ifstream in(file_);
    EXPECT_TRUE(nlohmann::json::parse(in)["CAPITAL_"].empty());
}

// Without --yes the share asks, writes nothing (not even its particulars) and stops.
TEST_P(CapitalCli, ShareWithoutYesWritesNothingAndExitsTwo) {
    ASSERT_EQ(capital({"ratios", "1=60", "2=40"}).code, 0);
    ASSERT_EQ(capital({"result", "1=5000", "--yes"}).code, 0);
    const auto before = cli({"ledger", "list", "--master", "capital", "--json"});
    const auto r = capital({"share"});
    EXPECT_EQ(r.code, 2) << r.err;
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(cli({"ledger", "list", "--master", "capital", "--json"}).out, before.out);
    ASSERT_EQ(capital({"export", file_.string()}).code, 0);
    std::ifstream in(file_);
    EXPECT_TRUE(nlohmann::json::parse(in)["CAPITAL_"].empty());
}

// Given no items and no tax, the result recorded stands and is shown.
TEST_P(CapitalCli, ResultWithoutItemsChangesNothing) {
    ASSERT_EQ(capital({"result", "1=125000", "2=-20000", "--tax", "5000", "--yes"}).code, 0);
    auto r = capital({"result", "--yes"});
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.err,
              "brenlow capital: no items of the result and no --tax were given; nothing was changed.\n");
    EXPECT_EQ(r.out,
              "The result recorded of FIRM for F.Y. 2024-25: 2 items, tax 5000.00, net profit 100000.00\n");
    // The tax alone replaces the tax and keeps the items.
    r = capital({"result", "--tax", "15000", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.out, "The result of FIRM for F.Y. 2024-25: 2 items, tax 15000.00, net profit 90000.00\n");
}

TEST_P(CapitalCli, ShowPrintsTheNetProfitThatWasSharedAndThePartnersRow) {
    ASSERT_EQ(capital({"ratios", "1=60", "2=40"}).code, 0);
    ASSERT_EQ(capital({"share-account", "current"}).code, 0);
    ASSERT_EQ(capital({"terms", "1", "--working", "yes", "--rate", "12", "--remuneration", "300000"}).code,
              0);
    auto r = capital({"interest", "--post", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    r = capital({"share", "--net-profit", "400000", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("Shared after the partners' interest and remuneration: 100000.00"),
              std::string::npos)
        << r.out;
    r = capital({"show", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    const auto doc = nlohmann::json::parse(r.out);
    EXPECT_EQ(doc["net_profit"], 400000);
    EXPECT_EQ(doc["share_account"], "Current A/c");
    EXPECT_EQ(doc["current_total"], 400000);
    r = capital({"partner-if", "ANIL SHAH"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(
        nlohmann::json::parse(r.out)["PartnerFirmDetails"],
        nlohmann::json::parse(R"({"FirmName": "SHAH AND CO", "FirmPAN": null, "PartnerName": "ANIL SHAH",
                  "ProfitSharePercent": 60, "ProfitShareAmount": 60000, "CapitalBalanceOn31March": 360000,
                  "InterestReceived": 0, "RemunerationReceived": 300000})"));
}

TEST_P(CapitalCli, TheLinesGoOutAndComeBackInCheckedFirst) {
    ASSERT_EQ(capital({"ratios", "1=60", "2=40"}).code, 0);
    ASSERT_EQ(capital({"share", "--net-profit", "1000", "--yes"}).code, 0);
    auto r = capital({"export", file_.string()});
    ASSERT_EQ(r.code, 0) << r.err;
    std::ifstream in(file_);
    auto doc = nlohmann::json::parse(in);
    ASSERT_EQ(doc["CAPITAL_"].size(), 2u);
    doc["CAPITAL_"].push_back(
        {{"code", "1"}, {"actyp", 1}, {"nid", 1}, {"Particular", "DRAWINGS"}, {"AMT", 50}});
    doc["CAPITAL_"].push_back({{"code", "2"}, {"actyp", 0}, {"nid", 0}, {"Particular", "X"}, {"AMT", 5}});
    doc["CAPITAL_"].push_back({{"code", "9"}, {"actyp", 0}, {"nid", 2}, {"Particular", "X"}, {"AMT", 5}});
    std::ofstream(file_) << doc.dump();
    r = capital({"import", file_.string()});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("CAPITAL_ row 4: Please Specify DR/CR."), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("CAPITAL_ row 5, field code: the client has no partner 9"), std::string::npos)
        << r.err;
    EXPECT_NE(r.err.find("Nothing was imported."), std::string::npos);
    doc["CAPITAL_"].erase(4);
    doc["CAPITAL_"].erase(3);
    std::ofstream(file_) << doc.dump();
    r = capital({"import", file_.string()});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("3 lines, 1 particulars created"), std::string::npos) << r.out;
    r = capital({"show"});
    EXPECT_NE(r.out.find("DRAWINGS"), std::string::npos) << r.out;
}

TEST_P(CapitalCli, TheLedgerRefusesAParticularInUseElsewhereAndReplacesEverywhere) {
    ASSERT_EQ(capital({"ratios", "1=100"}, "OTHER", "2024").code, 0);
    ASSERT_EQ(capital({"share", "--net-profit", "5", "--yes"}, "OTHER", "2024").code, 0);
    auto r = cli({"ledger", "delete", "profit share (00711)", "--master", "capital", "--yes"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("Particulars already in use. You can not delete this Particulars."),
              std::string::npos);
    EXPECT_NE(
        r.err.find("List of Clients/F.Y. using Particulars \"PROFIT SHARE (00711)\": OTHER  OTHER TRADERS  "
                   "F.Y. 2023-24"),
        std::string::npos)
        << r.err;
    ASSERT_EQ(cli({"ledger", "add", "SHARE OF PROFIT", "--master", "capital"}).code, 0);
    r = cli(
        {"ledger", "replace", "PROFIT SHARE (00711)", "--with", "SHARE OF PROFIT", "--master", "capital"});
    EXPECT_EQ(r.code, 2);
    r = cli({"ledger", "replace", "PROFIT SHARE (00711)", "--with", "SHARE OF PROFIT", "--master", "capital",
             "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    r = cli({"ledger", "list", "--master", "capital", "--json"});
    const auto doc = nlohmann::json::parse(r.out);
    ASSERT_EQ(doc["particulars"].size(), 2u);
    EXPECT_EQ(doc["particulars"][1]["name"], "SHARE OF PROFIT");
    EXPECT_EQ(doc["particulars"][1]["in_use"], true);
}

BRENLOW_INSTANTIATE_BACKENDS(CapitalCli);

}  // namespace
}  // namespace brenlow::cli
