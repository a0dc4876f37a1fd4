#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli_fixture.h"

namespace brenlow::cli {
namespace {

namespace fs = std::filesystem;

class SchedulesCli : public CliTest {
protected:
    void SetUp() override {
        CliTest::SetUp();
        if (IsSkipped()) return;
        folder_ = fs::temp_directory_path() / ("brenlow-schedcli-" + std::to_string(::getpid()) + "-" +
                                               std::to_string(reinterpret_cast<std::uintptr_t>(this)));
        fs::create_directories(folder_);
        ASSERT_EQ(
            cli({"init", "--client", "ACME", "--year", "2024", "--name", "ACME LTD", "--status", "3"}).code,
            0);
        ASSERT_EQ(cli({"init", "--client", "ACME", "--year", "2025"}).code, 0);
    }
    void TearDown() override {
        if (!folder_.empty()) fs::remove_all(folder_);
        CliTest::TearDown();
    }
    std::string file(const std::string& name) { return (folder_ / name).string(); }
    static std::string read(const std::string& path) {
        std::ifstream f(path);
        std::ostringstream s;
        s << f.rdbuf();
        return s.str();
    }
    fs::path folder_;
};

TEST_P(SchedulesCli, ImportShowExportAndCarryForward) {
    const std::string doc = std::string(BRENLOW_TEST_FILES_DIR) + "/schedules-year.json";
    auto r = cli({"schedules", "import", doc, "--client", "ACME", "--year", "2024"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.out, "Imported into ACME for F.Y. 2023-24: 24 rows of 8 schedules\n");

    r = cli({"schedules", "show", "Reserve and Surplus", "--client", "ACME", "--year", "2024"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("Client: ACME - ACME LTD"), std::string::npos);
    EXPECT_NE(r.out.find("F.Y. 2023-24"), std::string::npos);
    EXPECT_NE(r.out.find("Profit and Loss Account"), std::string::npos);
    EXPECT_NE(r.out.find("3,46,651.25"), std::string::npos) << r.out;  // its closing balance

    r = cli({"schedules", "show", "Loans", "--unsecured", "--client", "ACME", "--year", "2024", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("MR. R. SHARMA"), std::string::npos);
    EXPECT_EQ(r.out.find("SECURED DEBENTURES"), std::string::npos);

    // Carry-forward asks; without --yes the command stops at the question.
    r = cli({"schedules", "carry-forward", "--client", "ACME", "--year", "2025"});
    EXPECT_EQ(r.code, 2);
    EXPECT_NE(r.err.find("Do you want to carry forward previous year particulars ?"), std::string::npos);
    r = cli({"schedules", "carry-forward", "--client", "ACME", "--year", "2025", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("Reserve and Surplus       3 rows carried forward"), std::string::npos) << r.out;
    r = cli({"schedules", "export", file("2025.json"), "--client", "ACME", "--year", "2025"});
    ASSERT_EQ(r.code, 0) << r.err;
    const std::string exported = read(file("2025.json"));
    EXPECT_NE(exported.find("\"OP_BL\": 200000,\n      \"ADD_AMT\": 0"),
              std::string::npos);                                        // 150000 + 50000
    EXPECT_EQ(exported.find("SUNDEB_\": [\n    {"), std::string::npos);  // not carried
    // Again: every schedule has rows now, nothing is asked.
    r = cli({"schedules", "carry-forward", "--client", "ACME", "--year", "2025"});
    EXPECT_EQ(r.code, 0) << r.err;
}

TEST_P(SchedulesCli, RefusalsNameWhatIsWrong) {
    std::ofstream(file("bad.json")) << R"({"format":"brenlow-schedules","version":1,"SHARE_":[],
        "RESV_":[{"OP_BL":5}],"SECUR_":[],"INVEST_":[],"LOAN_ADV_":[],"MiscExpAsst_":[],"SUNDEB_":[],"BANK_":[]})";
    auto r = cli({"schedules", "import", file("bad.json"), "--client", "ACME", "--year", "2025"});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.err, file("bad.json") +
                         ": RESV_ row 1: Please specify a item. (field resv_id)\nNothing was imported.\n");
    // A table left out or misspelt is refused, not taken as empty; the version is read
    // in the program's own words.
    std::ofstream(file("bad.json")) << R"({"format":"brenlow-schedules","version":"1","RESV_":[]})";
    r = cli({"schedules", "import", file("bad.json"), "--client", "ACME", "--year", "2025"});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.err,
              file("bad.json") +
                  ": The schedules document is of a version this program does not read: \"version\" must "
                  "be 1, not \"1\"\nNothing was imported.\n");
    std::ofstream(file("bad.json")) << R"({"format":"brenlow-schedules","version":1,"RSEV_":[]})";
    r = cli({"schedules", "import", file("bad.json"), "--client", "ACME", "--year", "2025"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("The table \"RSEV_\" is not one of a schedules document: is it RESV_?"),
              std::string::npos)
        << r.err;
    EXPECT_NE(r.err.find("The document has no table SHARE_ (an empty one is written [])"), std::string::npos);
    EXPECT_EQ(r.err.find("json.exception"), std::string::npos);
    r = cli({"schedules", "show", "Goodwill", "--client", "ACME", "--year", "2025"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("no schedule is called \"Goodwill\""), std::string::npos);
    r = cli({"schedules", "show", "Investments", "--secured", "--client", "ACME", "--year", "2025"});
    EXPECT_NE(r.err.find("--secured and --unsecured go with \"Loans\" only."), std::string::npos);
    r = cli({"schedules", "--help"});
    EXPECT_EQ(r.code, 0);
    EXPECT_NE(r.out.find("schedules carry-forward"), std::string::npos);
}

TEST_P(SchedulesCli, APrintedScheduleIsWrittenAsPdf) {
    const std::string doc = std::string(BRENLOW_TEST_FILES_DIR) + "/schedules-year.json";
    ASSERT_EQ(cli({"schedules", "import", doc, "--client", "ACME", "--year", "2025"}).code, 0);
    const auto r = cli({"schedules", "show", "Investments", "--client", "ACME", "--year", "2025", "--pdf",
                        file("invest.pdf")});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(read(file("invest.pdf")).rfind("%PDF", 0), 0u);
}

BRENLOW_INSTANTIATE_BACKENDS(SchedulesCli);

}  // namespace
}  // namespace brenlow::cli
