#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
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
    // The companies the year's document names (comp_id 1 to 3).
    void add_documents_companies() {
        for (const char* c : {"TATA STEEL LTD", "ACME COMPONENTS PVT LTD", "GOVERNMENT OF INDIA"})
            ASSERT_EQ(cli({"schedules", "company", "add", "--name", c, "--yes"}).code, 0);
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
    add_documents_companies();
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
    // The import's progress starts before the document is read through.
    const std::string progress = "Importing the schedules from " + file("bad.json") + " ... 0%\n";
    EXPECT_EQ(r.err, progress + file("bad.json") +
                         ": RESV_ row 1: Please specify a item. (field resv_id)\nNothing was imported.\n");
    // A table left out or misspelt is refused, not taken as empty; the version is read
    // in the program's own words.
    std::ofstream(file("bad.json")) << R"({"format":"brenlow-schedules","version":"1","RESV_":[]})";
    r = cli({"schedules", "import", file("bad.json"), "--client", "ACME", "--year", "2025"});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.err,
              progress + file("bad.json") +
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
    add_documents_companies();
    const std::string doc = std::string(BRENLOW_TEST_FILES_DIR) + "/schedules-year.json";
    ASSERT_EQ(cli({"schedules", "import", doc, "--client", "ACME", "--year", "2025"}).code, 0);
    const auto r = cli({"schedules", "show", "Investments", "--client", "ACME", "--year", "2025", "--pdf",
                        file("invest.pdf")});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(read(file("invest.pdf")).rfind("%PDF", 0), 0u);
}

TEST_P(SchedulesCli, ListsGiveEveryIdADocumentTakesAsJson) {
    ASSERT_EQ(cli({"schedules", "company", "add", "--name", "Tata Steel Ltd", "--yes"}).code, 0);
    ASSERT_EQ(cli({"capital", "result", "--client", "ACME", "--year", "2025", "3=125000", "--yes"}).code, 0);
    const auto r = cli({"schedules", "lists", "--client", "ACME", "--year", "2025", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    const auto doc = nlohmann::ordered_json::parse(r.out);
    const auto names = [&](const char* key) {
        std::map<std::string, std::string> out;
        for (const auto& item : doc.at(key)) out[item.at("id").dump()] = item.value("name", "");
        return out;
    };
    std::vector<std::string> keys;
    for (const auto& [key, value] : doc.items()) keys.push_back(key);
    EXPECT_EQ(keys, (std::vector<std::string>{"head_id", "OTH_LOAN_ID", "LDAD_ID", "resv_id", "INVEST_ID",
                                              "four_id", "ref_ep", "SHARE_ID", "qu_ID", "TNT_ID", "ExpID",
                                              "comp_id", "result_items"}));
    EXPECT_EQ(names("INVEST_ID").at("8"), "NATIONAL SAVINGS CERTIFICATES");
    EXPECT_EQ(names("OTH_LOAN_ID").at("2"), "SECURITY DEPOSITS");
    EXPECT_EQ(names("resv_id").at("5"), "Profit and Loss Account");
    EXPECT_EQ(names("four_id").at("4"), "Issued, Subscribed and Paid up");
    EXPECT_EQ(names("ref_ep").at("\"E\""), "Equity Share");
    EXPECT_EQ(names("comp_id"), (std::map<std::string, std::string>{{"1", "Tata Steel Ltd"}}));
    for (const auto& head : doc.at("head_id"))
        if (head.at("id") == 5) {
            EXPECT_EQ(head.at("loan_id"), 2);
        }
    EXPECT_EQ(doc.at("result_items"), nlohmann::ordered_json::parse(R"([{"id":3,"amount":125000.0}])"));
    // As text, without a client: the same lists under their fields.
    const auto text = cli({"schedules", "lists"});
    ASSERT_EQ(text.code, 0) << text.err;
    EXPECT_NE(text.out.find("Types of investment (INVEST_ID)\n"), std::string::npos) << text.out;
    EXPECT_NE(text.out.find("     8  NATIONAL SAVINGS CERTIFICATES\n"), std::string::npos);
}

TEST_P(SchedulesCli, AnInvestmentInACompanyAddedToTheMasterIsImported) {
    std::ofstream(file("nsc.json")) << R"({"format":"brenlow-schedules","version":1,"SHARE_":[],"RESV_":[],
        "SECUR_":[],"INVEST_":[{"INVEST_ID":8,"no_shares":4,"per_share_amt":5000,"Amount":20000,"comp_id":1}],
        "LOAN_ADV_":[],"MiscExpAsst_":[],"SUNDEB_":[],"BANK_":[]})";
    const std::vector<std::string> import = {"schedules", "import", file("nsc.json"), "--client", "ACME",
                                             "--year",    "2025"};
    auto r = cli(import);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(
        r.err,
        "Importing the schedules from " + file("nsc.json") + " ... 0%\n" + file("nsc.json") +
            ": INVEST_ row 1: 'Name of Company' has no entry 1 (field comp_id)\nNothing was imported.\n");
    // Adding asks; without --yes nothing is written.
    r = cli({"schedules", "company", "add", "--name", "POST OFFICE"});
    EXPECT_EQ(r.code, 2);
    EXPECT_NE(r.err.find("Do you want to add the company \"POST OFFICE\" to the company master ?"),
              std::string::npos);
    EXPECT_EQ(cli({"schedules", "company", "list"}).out, "The company master is empty.\n");
    r = cli({"schedules", "company", "add", "--name", "POST OFFICE", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.out, "Added \"POST OFFICE\" to the company master: comp_id 1\n");
    r = cli({"schedules", "company", "add", "--name", "post office", "--yes"});
    EXPECT_EQ(r.out, "The company master has \"post office\" already: comp_id 1\n");
    EXPECT_EQ(cli({"schedules", "company", "list"}).out, "   1  POST OFFICE\n");
    r = cli(import);
    ASSERT_EQ(r.code, 0) << r.err;
    r = cli({"schedules", "show", "Investments", "--client", "ACME", "--year", "2025", "--json"});
    const auto rows = nlohmann::json::parse(r.out);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].at("INVEST_ID"), 8);
    EXPECT_EQ(rows[0].at("comp_id"), 1);
    EXPECT_EQ(rows[0].at("Amount"), 20000);

    // Sundry debtors shown carry their total: the debts less the provisions.
    std::ofstream(file("deb.json")) << R"({"format":"brenlow-schedules","version":1,"SHARE_":[],"RESV_":[],
        "SECUR_":[],"INVEST_":[],"LOAN_ADV_":[],"MiscExpAsst_":[],"BANK_":[],
        "SUNDEB_":[{"more_amt":40000,"OTH_AMT":160000,"PROV_AMT":5000,"good_amt":195000}]})";
    ASSERT_EQ(
        cli({"schedules", "import", file("deb.json"), "--client", "ACME", "--year", "2025", "--replace"})
            .code,
        0);
    r = cli({"schedules", "show", "Sundry Debtors", "--client", "ACME", "--year", "2025"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("Total (net of provisions)"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("1,95,000.00"), std::string::npos) << r.out;
}

BRENLOW_INSTANTIATE_BACKENDS(SchedulesCli);

}  // namespace
}  // namespace brenlow::cli
