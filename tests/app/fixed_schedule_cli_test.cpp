// brenlow schedules fixed|transfer and brenlow register import-schedule|merge on both
// backends: a schedule saved from a document, shown, transferred, carried forward and
// brought into the next year's register.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "cli_fixture.h"
#include "store/database.h"

namespace brenlow::cli {
namespace {

class FixedScheduleCli : public CliTest {
protected:
    void SetUp() override {
        CliTest::SetUp();
        if (IsSkipped()) return;
        for (const char* year : {"2016", "2017"})
            ASSERT_EQ(cli({"init", "--client", "ACME", "--year", year, "--status", "2"}).code, 0);
        db().execute("INSERT INTO BlockGroup Values (21,'PLANT AND MACHINARY',2,3)");
        db().execute("INSERT INTO BlockGroup Values (11,'PLANT AND MACHINERY',1,0)");
        file_ = std::filesystem::temp_directory_path() /
                ("brenlow-fixed-cli-" + std::to_string(::getpid()) + "-" +
                 std::to_string(GetParam() == store::Backend::mysql) + ".json");
        std::ofstream(file_) << R"({"format":"brenlow-fixed-schedule","version":1,
            "FIXED_":[{"PART_NM":"LATHES","OP_BAL":300000,"op_bal_dep":100000,
            "RATE_DEP":15,"method_id":1,"CGrpId":11,"wdv":180000,"compit_rate":15,"IGrpId":21,"ref_id":1}],
            "FDA_":[{"srno":1,"ad_ded_id":1,"ref_id":1,"cost":50000,"ad_date":"15/06/2015",
            "dtpur":"15/06/2015"}]})";
    }
    void TearDown() override {
        std::error_code ec;
        std::filesystem::remove(file_, ec);
        CliTest::TearDown();
    }
    store::Database& db() { return temp().db(); }
    std::filesystem::path file_;
};

TEST_P(FixedScheduleCli, AScheduleGoesFromDocumentToTrialBalanceAndRegister) {
    // The reconciliation question stops the save without --yes; nothing is written.
    auto r = cli({"schedules", "fixed", "import", file_.string(), "--client", "ACME", "--year", "2016"});
    EXPECT_EQ(r.code, 2) << r.err;
    EXPECT_NE(r.err.find("There is difference between Figures as per Trial Balance"), std::string::npos);
    r = cli({"schedules", "fixed", "import", file_.string(), "--client", "ACME", "--year", "2016", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;

    r = cli({"schedules", "fixed", "show", "--client", "ACME", "--year", "2016", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    const auto shown = nlohmann::json::parse(r.out)["particulars"][0];
    EXPECT_EQ(shown["particular"], "LATHES");
    EXPECT_DOUBLE_EQ(shown["ClosingWDV"].get<double>(), 230000 - 34500);  // 180000 + 50000 less 15%

    r = cli({"schedules", "transfer", "trial-balance", "--client", "ACME", "--year", "2016", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    r = cli({"trial-balance", "--client", "ACME", "--year", "2016", "--json"});
    const auto rows = nlohmann::json::parse(r.out)["rows"];
    ASSERT_EQ(rows.size(), 2u);
    // The head named as its books block.
    EXPECT_EQ(rows[0]["group"], "PLANT AND MACHINERY");
    EXPECT_EQ(rows[0]["particular"], "LATHES");
    EXPECT_EQ(rows[1]["group"], "DEPRECIATION");

    r = cli({"register", "import-schedule", "--client", "ACME", "--year", "2017"});
    ASSERT_EQ(r.code, 0) << r.err;
    r = cli({"chart", "--client", "ACME", "--year", "2017", "--it", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("195500"), std::string::npos);

    r = cli({"schedules", "fixed", "carry-forward", "--client", "ACME", "--year", "2017"});
    ASSERT_EQ(r.code, 0) << r.err;
    r = cli({"schedules", "fixed", "show", "--client", "ACME", "--year", "2017", "--json"});
    EXPECT_DOUBLE_EQ(nlohmann::json::parse(r.out)["particulars"][0]["OpeningWDV"].get<double>(), 195500);
}

// The year's schedules document carries the fixed-asset schedule too: imported through
// the schedule screen's save (its questions stop the whole import), exported back.
TEST_P(FixedScheduleCli, TheSchedulesDocumentCarriesTheFixedAssetSchedule) {
    std::ifstream in(file_);
    auto doc = nlohmann::ordered_json::parse(in);
    doc["format"] = "brenlow-schedules";
    doc["version"] = 1;
    for (const char* stem : {"SHARE_", "RESV_", "SECUR_", "INVEST_", "LOAN_ADV_", "MiscExpAsst_", "SUNDEB_"})
        doc[stem] = nlohmann::ordered_json::array();
    doc["BANK_"] = nlohmann::ordered_json::parse(R"([{"CASH": 1500}])");
    std::ofstream(file_) << doc.dump();
    auto r = cli({"schedules", "import", file_.string(), "--client", "ACME", "--year", "2016"});
    EXPECT_EQ(r.code, 2) << r.err;
    EXPECT_EQ(db().query("select count(*) as n from FIXED_2016 where code_no='ACME'").first("n").as_int(), 0);
    EXPECT_EQ(db().query("select count(*) as n from BANK_2016 where code_no='ACME'").first("n").as_int(), 0);
    r = cli({"schedules", "import", file_.string(), "--client", "ACME", "--year", "2016", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(db().query("select count(*) as n from BANK_2016 where code_no='ACME'").first("n").as_int(), 1);
    const auto out = std::filesystem::path(file_).replace_extension(".out.json");
    r = cli({"schedules", "export", out.string(), "--client", "ACME", "--year", "2016"});
    ASSERT_EQ(r.code, 0) << r.err;
    std::ifstream back(out);
    const auto exported = nlohmann::json::parse(back);
    std::filesystem::remove(out);
    ASSERT_EQ(exported["FIXED_"].size(), 1u);
    EXPECT_EQ(exported["FIXED_"][0]["PART_NM"], "LATHES");
    EXPECT_DOUBLE_EQ(exported["FIXED_"][0]["OP_BAL"].get<double>(), 300000);
    // The addition, beside the particular's marker row (ad_ded_id 100) that the save writes.
    int additions = 0;
    for (const auto& row : exported["FDA_"]) {
        if (row["ad_ded_id"] != 1) continue;
        ++additions;
        EXPECT_DOUBLE_EQ(row["cost"].get<double>(), 50000);
        EXPECT_EQ(row["dtpur"], "15/06/2015");
    }
    EXPECT_EQ(additions, 1);
}

TEST_P(FixedScheduleCli, BadInputIsNamedAndChangesNothing) {
    std::ofstream(file_) << R"({"format":"brenlow-fixed-schedule","version":1,
              "FIXED_":[{"PART_NM":"LATHES","method_id":9}],"FDA_":[{"ad_date":"32/13/2015"}]})";
    auto r =
        cli({"schedules", "fixed", "import", file_.string(), "--client", "ACME", "--year", "2016", "--yes"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("FIXED_ row 1, field method_id: is not a method 1 to 4"), std::string::npos)
        << r.err;
    EXPECT_NE(r.err.find("FDA_ row 1, field ad_date:"), std::string::npos) << r.err;
    r = cli({"register", "merge", "--client", "ACME", "--year", "2016", "x1", "--yes"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("SERIAL \"x1\" is not a serial number."), std::string::npos) << r.err;
    r = cli({"register", "import-schedule", "--client", "ACME", "--year", "2017"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("no particulars"), std::string::npos) << r.err;
    EXPECT_EQ(cli({"schedules", "--help"}).code, 0);
    EXPECT_EQ(cli({"register", "merge", "--help"}).code, 0);
}

// Entries that change the year's figures ask first; --yes answers, without it nothing is
// written and the command ends with 2.
TEST_P(FixedScheduleCli, EntriesAskBeforeTheyChangeTheFigures) {
    ASSERT_EQ(
        cli({"schedules", "fixed", "import", file_.string(), "--client", "ACME", "--year", "2016", "--yes"})
            .code,
        0);
    const auto lines = [&] {
        return db()
            .query("select count(*) as n from FDA_2016 where code_no='ACME' and ad_ded_id=1")
            .first("n")
            .as_int();
    };
    const std::vector<std::string> del = {"schedules", "fixed",      "delete", "--client",
                                          "ACME",      "--year",     "2016",   "--particular",
                                          "lathes",    "--addition", "1"};
    auto r = cli(del);
    EXPECT_EQ(r.code, 2) << r.err;
    EXPECT_NE(r.err.find("Do you want to delele the selected item?"), std::string::npos) << r.err;
    EXPECT_EQ(lines(), 1);
    auto with_yes = del;
    with_yes.push_back("--yes");
    r = cli(with_yes);
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(lines(), 0);

    r = cli({"schedules", "fixed", "depreciation", "--client", "ACME", "--year", "2016", "--particular",
             "LATHES", "--amount", "12,000", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    const auto row = db().query("select method_id, deptick, depamt from FIXED_2016 where code_no='ACME'");
    EXPECT_EQ(row.first("method_id").as_int(), 1);
    EXPECT_EQ(row.first("deptick").as_int(), 1);
    EXPECT_DOUBLE_EQ(row.first("depamt").as_double(), 12000);

    r = cli({"schedules", "fixed", "options", "--client", "ACME", "--year", "2016", "--on", "stopdep"});
    EXPECT_EQ(r.code, 2) << r.err;
    r = cli(
        {"schedules", "fixed", "options", "--client", "ACME", "--year", "2016", "--on", "stopdep", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.out, "SEPDEP on, ADDDEP on, STOPDEP on, BADEP off\n");
    r = cli({"schedules", "fixed", "show", "--client", "ACME", "--year", "2016", "--json"});
    EXPECT_DOUBLE_EQ(nlohmann::json::parse(r.out)["particulars"][0]["Depreciation"].get<double>(), 0);
}

BRENLOW_INSTANTIATE_BACKENDS(FixedScheduleCli);

}  // namespace
}  // namespace brenlow::cli
