// brenlow transfer and trial-balance on the demonstration client, on both backends:
// what each transfer replaces, what it leaves alone, and that a No changes nothing.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "cli_fixture.h"

namespace brenlow::cli {
namespace {

struct BooksTotals {
    double closing = 0, depreciation = 0;
};

BooksTotals nlohmann_totals(const std::string& json) {
    const auto doc = nlohmann::json::parse(json);
    return {doc["totals"]["ClBal"].get<double>(), doc["totals"]["DepFY"].get<double>()};
}

class TransferCli : public CliTest {
protected:
    void SetUp() override {
        CliTest::SetUp();
        if (IsSkipped()) return;
        out_ = std::filesystem::temp_directory_path() / ("brenlow-transfer-" + std::to_string(::getpid()));
        std::filesystem::create_directories(out_);
        const auto r = cli({"demo", "--out", out_.string()});
        ASSERT_EQ(r.code, 0) << r.err;
    }
    void TearDown() override {
        std::error_code ec;
        std::filesystem::remove_all(out_, ec);
        CliTest::TearDown();
    }
    CliRun transfer(const std::string& what, bool yes = true) {
        std::vector<std::string> words = {"transfer", what, "--client", "DEMO01", "--year", "2025"};
        if (yes) words.push_back("--yes");
        return cli(words);
    }
    long long count(const std::string& sql) { return db().query(sql).first("n").as_int(); }
    double sum(const std::string& sql) { return db().query(sql).first("n").as_double(); }
    std::string tab() {
        return "TAB_" +
               db().query("select tbl_nm from master where code_no='DEMO01'").first("tbl_nm").as_text();
    }
    long group(const std::string& name) {
        return static_cast<long>(
            db().query("select AllId from Mast_AllGrp where allgrp='" + name + "'").first("AllId").as_int());
    }
    std::filesystem::path out_;
};

TEST_P(TransferCli, CapitalGainsReplaceOnlyTheirOwnRows) {
    // The computer block ended nil with a gain of 33,000: one row and its head.
    auto r = transfer("capital-gains");
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(count("select count(*) as n from capital_depr where code_no='DEMO01' and trblock='Y'"), 1);
    EXPECT_DOUBLE_EQ(sum("select assets_trans as n from capital_depr where code_no='DEMO01'"), 33000);
    EXPECT_EQ(db().query("select assets_name from capital_depr where code_no='DEMO01'")
                  .first("assets_name")
                  .as_text(),
              "MACHINERY AND PLANT @ 40%");
    // The person's own row stays through a second transfer, which numbers on after it.
    db().execute(
        "insert into Capital (code_no,ass_year,Capital_no,cap_desc,cap_type) values ('DEMO01',2025,7,'LAND "
        "AT PUNE','N')");
    db().execute(
        "insert into capital_depr values ('DEMO01',2025,7,'LAND AT PUNE','01/01/2025',1,2,3,4,5,'N')");
    r = transfer("capital-gains");
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(count("select count(*) as n from capital_depr where code_no='DEMO01'"), 2);
    EXPECT_EQ(count("select count(*) as n from capital_depr where code_no='DEMO01' and trblock='N'"), 1);
    EXPECT_EQ(count("select capital_no as n from capital_depr where code_no='DEMO01' and trblock='Y'"), 8);
    EXPECT_EQ(count("select count(*) as n from Capital where code_no='DEMO01'"), 2);
}

TEST_P(TransferCli, TheTrialBalanceTakesTheBooksFiguresAndLosesTheHandTypedOnes) {
    const std::string t = tab();
    const long depreciation = group("DEPRECIATION");
    db().execute("insert into " + t + " values (1,'DEMO01'," + std::to_string(depreciation) +
                 ",9999,1,1234.5)");
    db().execute("insert into " + t + " values (2,'DEMO01'," + std::to_string(group("CASH AND BANK")) +
                 ",9998,1,50)");
    // Without --yes the first question stops it and nothing changes.
    auto r = transfer("trial-balance", false);
    EXPECT_EQ(r.code, 2);
    EXPECT_EQ(count("select count(*) as n from " + t + " where code_no='DEMO01'"), 2);

    r = transfer("trial-balance");
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.err.find("Transferred !"), std::string::npos) << r.err;
    // The trial balance did not agree with the schedule, and said so first.
    EXPECT_NE(
        r.err.find(
            "There is difference between Figures as per Trial Balance and as per Fixed Asset Schedule."),
        std::string::npos)
        << r.err;
    // The hand-typed depreciation is gone, the cash row stays.
    EXPECT_EQ(count("select count(*) as n from " + t + " where PartId=9999"), 0);
    EXPECT_EQ(count("select count(*) as n from " + t + " where PartId=9998"), 1);
    // The group totals are the books chart's.
    const auto books = cli({"chart", "--client", "DEMO01", "--year", "2025", "--books", "--json"});
    ASSERT_EQ(books.code, 0) << books.err;
    const auto totals = nlohmann_totals(books.out);
    EXPECT_NEAR(sum("select sum(Amt) as n from " + t + " where allid=" + std::to_string(depreciation)),
                totals.depreciation, 0.005);
    EXPECT_NEAR(sum("select sum(Amt) as n from " + t +
                    " t join Mast_AllGrp g on g.AllId=t.allid where g.GID=5 and "
                    "g.AllId<>5"),
                totals.closing, 0.005);
    // Transferred again, the two agree and nothing is asked about them.
    r = transfer("trial-balance");
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.err.find("There is difference"), std::string::npos) << r.err;
    // A company: its residual-value adjustments have their group.
    EXPECT_GT(count("select count(*) as n from " + t +
                    " where allid=" + std::to_string(group("FIXED ASSETS RESIDUAL VALUE ADJUSTMENTS"))),
              0);
    r = cli({"trial-balance", "--client", "DEMO01", "--year", "2025", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("\"group\": \"DEPRECIATION\""), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\"group\": \"PROFIT ON SALE OF FIXED ASSETS\""), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\"side\": \"CR\""), std::string::npos) << r.out;
}

TEST_P(TransferCli, AClientThatIsNotACompanyIsAskedOfThreeGroupsAndGetsNoResidualRows) {
    ASSERT_EQ(cli({"init", "--client", "DEMO01", "--year", "2025", "--status", "2"}).code, 0);
    const auto r = transfer("trial-balance");
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(
        r.err.find("Particulars under Group 'Fixed Assets', 'Depreciation' and 'Profit on Sale of Fixed "
                   "Assets'' will be Updated with Particulars 'As Per Books'. Do you want to Continue?"),
        std::string::npos)
        << r.err;
    EXPECT_EQ(count("select count(*) as n from " + tab() +
                    " where allid=" + std::to_string(group("FIXED ASSETS RESIDUAL VALUE ADJUSTMENTS"))),
              0);
}

TEST_P(TransferCli, AChartEditedByHandIsTheYearsChartUntilCleared) {
    auto r = cli({"chart", "--client", "DEMO01", "--year", "2025", "--it", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    auto doc = nlohmann::json::parse(r.out);
    auto& rows = doc["DeprChart"];
    ASSERT_FALSE(rows.empty());
    // The first block's normal depreciation typed lower by 1,000: its total and closing
    // WDV follow.
    const double depr = rows[0]["DeprF"].get<double>(), total = rows[0]["TotDep"].get<double>(),
                 closing = rows[0]["WdvCl"].get<double>();
    rows[0]["DeprF"] = depr - 1000;
    rows[0]["TotDep"] = 0;  // worked out again whatever the document says
    const auto file = (out_ / "edited.json").string();
    std::ofstream(file) << doc.dump();
    r = cli({"chart", "edit", file, "--client", "DEMO01", "--year", "2025"});
    ASSERT_EQ(r.code, 0) << r.err;
    r = cli({"chart", "--client", "DEMO01", "--year", "2025", "--it", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    auto after = nlohmann::json::parse(r.out);
    EXPECT_TRUE(after["hand_edited"].get<bool>());
    EXPECT_DOUBLE_EQ(after["DeprChart"][0]["DeprF"].get<double>(), depr - 1000);
    EXPECT_DOUBLE_EQ(after["DeprChart"][0]["TotDep"].get<double>(), total - 1000);
    EXPECT_DOUBLE_EQ(after["DeprChart"][0]["WdvCl"].get<double>(), closing + 1000);
    EXPECT_EQ(sum("select count(*) as n from DeprChart where Code_No='DEMO01'"),
              static_cast<double>(rows.size()));

    // A row that is not a chart row is refused, naming it, and nothing changes.
    std::ofstream(file) << R"({"DeprChart":[{"Grp":3,"Rate":15,"DeprF":"many"}]})";
    r = cli({"chart", "edit", file, "--client", "DEMO01", "--year", "2025"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("DeprChart row 1, field DeprF: expected a number, found \"many\""),
              std::string::npos)
        << r.err;

    r = cli({"chart", "edit", "--clear", "--client", "DEMO01", "--year", "2025"});
    ASSERT_EQ(r.code, 0) << r.err;
    r = cli({"chart", "--client", "DEMO01", "--year", "2025", "--it", "--json"});
    EXPECT_FALSE(nlohmann::json::parse(r.out)["hand_edited"].get<bool>());

    // The year gate: no chart is edited by hand for A.Y. 2026-27 on.
    ASSERT_EQ(cli({"init", "--client", "DEMO01", "--year", "2026"}).code, 0);
    r = cli({"chart", "edit", "--clear", "--client", "DEMO01", "--year", "2026"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("Not Available as ITR Forms for A.Y. 2026-27 have not been notified yet."),
              std::string::npos)
        << r.err;
}

TEST_P(TransferCli, TheTaxAuditListingGivesEachAdditionsDetailsAndEachDeduction) {
    const auto file = (out_ / "3cd.csv").string();
    const auto r = cli({"chart", "--3cd", "--client", "DEMO01", "--year", "2025", "--csv", file});
    ASSERT_EQ(r.code, 0) << r.err;
    std::ifstream in(file);
    const std::string csv((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(
        csv.rfind(
            "Block,Kind,Particulars,Date of Purchase,Date Put to Use,Cost,Excise Credit (CENVAT),Change in "
            "Rate of Exchange,Subsidy or Grant,Total Value,Date of Deduction,Amount of Deduction\n",
            0),
        0u)
        << csv;
    // Whole rupees, dd/mm/yyyy, the net amount as the total value.
    EXPECT_NE(
        csv.find(
            "MACHINERY AND PLANT @ 15%,Addition,Packaging machine,12/06/2024,12/06/2024,800000,0,0,50000,"
            "750000,,\n"),
        std::string::npos)
        << csv;
    EXPECT_NE(csv.find("MACHINERY AND PLANT @ 40%,Deduction,Desktops and printers,,,,,,,,18/11/2024,95000\n"),
              std::string::npos)
        << csv;
}

BRENLOW_INSTANTIATE_BACKENDS(TransferCli);

}  // namespace
}  // namespace brenlow::cli
