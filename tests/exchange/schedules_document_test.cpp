#include "exchange/schedules_document.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <sstream>

#include "store/client_store.h"
#include "store/fixed_schedule_store.h"
#include "store/schedule_store.h"
#include "support/test_databases.h"

namespace brenlow::exchange {
namespace {

using Json = nlohmann::ordered_json;

std::string year_document() {
    std::ifstream f(std::string(BRENLOW_TEST_FILES_DIR) + "/schedules-year.json");
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

class SchedulesDocument : public test::BackendTest {
protected:
    void SetUp() override {
        test::BackendTest::SetUp();
        if (IsSkipped()) return;
        store::prepare_schema(db(), BRENLOW_TEST_DATA_DIR);
        store::create_client_year(db(), "ACME", 2025, "ACME LTD", 3);
        store::create_client_year(db(), "COPY", 2025, "COPY LTD", 3);
        // The companies the year's document names (comp_id 1 to 3).
        for (const char* c : {"TATA STEEL LTD", "ACME COMPONENTS PVT LTD", "GOVERNMENT OF INDIA"})
            store::find_or_add_company(db(), c);
    }
    long long count(const std::string& table, const std::string& code) {
        return db()
            .query("select count(*) as n from " + table + "2025 where code_no='" + code + "'")
            .first("n")
            .as_int();
    }
};

TEST_P(SchedulesDocument, AYearWithEverySchedulesRoundTripsUnchanged) {
    const std::string doc = year_document();
    const auto r = import_schedules(db(), "ACME", 2025, doc, false);
    ASSERT_TRUE(r.errors.empty()) << r.errors.front();
    EXPECT_EQ(r.tables, 8);
    Json exported = Json::parse(export_schedules(db(), "ACME", 2025));
    // The year has no per-particular fixed-asset schedule: its tables are there, empty.
    EXPECT_EQ(exported["FIXED_"], Json::array());
    EXPECT_EQ(exported["FDA_"], Json::array());
    exported.erase("FIXED_");
    exported.erase("FDA_");
    EXPECT_EQ(exported, Json::parse(doc));
    // Into another client and out again: the same document under its own code.
    ASSERT_TRUE(import_schedules(db(), "COPY", 2025, exported.dump(), false).errors.empty());
    Json again = Json::parse(export_schedules(db(), "COPY", 2025));
    EXPECT_EQ(again["client"], "COPY");
    again["client"] = "ACME";
    again.erase("FIXED_");
    again.erase("FDA_");
    EXPECT_EQ(again, exported);
    EXPECT_EQ(count("SUNDEB_", "COPY"), 1);
    EXPECT_EQ(count("SECUR_", "COPY"), 5);
    // The share application money is a row of its own without a serial.
    EXPECT_TRUE(
        db().query("select * from SHARE_2025 where code_no='COPY' and sam=25000").first("srno").is_null());
}

// A whole document: every schedule table, empty but for the ones given.
std::string document_with(const std::vector<std::pair<std::string, std::string>>& tables) {
    Json doc = {{"format", "brenlow-schedules"}, {"version", 1}};
    for (const auto& stem : store::schedule_stems()) doc[stem] = Json::array();
    for (const auto& [stem, rows] : tables) doc[stem] = Json::parse(rows);
    return doc.dump();
}

struct Refused {
    const char* name;
    const char* table;
    const char* rows;
    const char* error;
};

TEST_P(SchedulesDocument, ARefusedRowNamesTableRowAndFieldAndNothingIsWritten) {
    const std::vector<Refused> cases = {
        {"no reserve", "RESV_", R"([{"srno":1,"resv_id":4,"OP_BL":1},{"srno":2,"OP_BL":5}])",
         "RESV_ row 2: Please specify a item. (field resv_id)"},
        {"issued above authorised", "SHARE_",
         R"([{"four_id":1,"ref_ep":"E","no_share":10,"RS_SHARE":10},{"four_id":4,"ref_ep":"E","no_share":11,"RS_SHARE":10}])",
         "SHARE_ row 2: Nos. of Authorised Shares cannot be Lesser than Issued Shares. (field no_share)"},
        {"no such share", "SHARE_", R"([{"four_id":4,"ref_ep":"E","no_share":11,"RS_SHARE":10}])",
         "SHARE_ row 1: Share of Rs. 10 is not available. (field RS_SHARE)"},
        {"investment without company", "INVEST_", R"([{"INVEST_ID":1,"Amount":5}])",
         "INVEST_ row 1: Each field is required (field comp_id)"},
        {"unknown loan kind", "SECUR_", R"([{"loan_id":3,"DEB_OTH_ID":2,"head_id":1,"Amount":5}])",
         "SECUR_ row 1: field loan_id must be 1 (secured) or 2 (unsecured)"},
        {"text for a number", "BANK_", R"([{"CASH":"lots"}])", "BANK_ row 1, field CASH: is not a number"},
        {"unknown column", "RESV_", R"([{"resv_id":4,"Colour":"red"}])",
         "RESV_ row 1, field Colour: is not a column of the table"},
        {"two bank rows", "BANK_", R"([{"CASH":1},{"CASH":2}])",
         "BANK_: a client has one row of it, the document 2"},
        // Ids the screen's lists would never offer.
        {"no such reserve", "RESV_",
         R"([{"srno":1,"resv_id":4,"OP_BL":1},{"srno":2,"resv_id":99,"OP_BL":5}])",
         "RESV_ row 2: 'Specify Item' has no entry 99 (field resv_id)"},
        {"no such head of loan", "SECUR_", R"([{"loan_id":1,"DEB_OTH_ID":2,"head_id":999,"Amount":5}])",
         "SECUR_ row 1: 'Specify Item' has no entry 999 (field head_id)"},
        {"no such type of investment", "INVEST_", R"([{"INVEST_ID":77,"Amount":5}])",
         "INVEST_ row 1: Please specify a item (field INVEST_ID)"},
        // The limits of a typed entry.
        {"a reserve between two", "RESV_", R"([{"srno":1,"resv_id":4.5,"OP_BL":1}])",
         "RESV_ row 1, field resv_id: is not a whole number"},
        {"an amount beyond fifteen digits", "BANK_", R"([{"CASH":1e308}])",
         "BANK_ row 1, field CASH: has more than 15 digits before the point"},
        {"a misc. expense of no master item", "MiscExpAsst_",
         R"([{"srno":1,"ExpID":99,"OpBal":10,"Amount":1}])",
         "MiscExpAsst_ row 1: 'Particulars' has no entry 99 (field ExpID)"},
        {"no such kind of share", "SHARE_", R"([{"four_id":1,"ref_ep":"X","no_share":10,"RS_SHARE":10}])",
         "SHARE_ row 1: 'Type of Share' has no entry X (field ref_ep)"},
        // A company the company master does not have.
        {"an investment in no company of the master", "INVEST_",
         R"([{"INVEST_ID":8,"no_shares":1,"Amount":5000,"comp_id":3},{"INVEST_ID":8,"Amount":5,"comp_id":44}])",
         "INVEST_ row 2: 'Name of Company' has no entry 44 (field comp_id)"},
        {"an advance to no company of the master", "LOAN_ADV_", R"([{"LDAD_ID":1,"comp_id":9,"Amount":5}])",
         "LOAN_ADV_ row 1: 'Name' has no entry 9 (field comp_id)"},
    };
    for (const auto& c : cases) {
        const std::string doc = document_with(
            {{"MiscExpAsst_", R"([{"srno":1,"ExpID":1,"OpBal":10,"Amount":1}])"}, {c.table, c.rows}});
        const auto r = import_schedules(db(), "ACME", 2025, doc, true);
        ASSERT_EQ(r.errors.size(), 1u) << c.name;
        EXPECT_EQ(r.errors[0], c.error) << c.name;
        EXPECT_EQ(count("MiscExpAsst_", "ACME"), 0) << c.name;
        EXPECT_EQ(count(c.table, "ACME"), 0) << c.name;
    }
}

TEST_P(SchedulesDocument, ATableWithRowsNeedsReplace) {
    const std::string doc = document_with({{"RESV_", R"([{"srno":1,"resv_id":4,"OP_BL":1}])"}});
    ASSERT_TRUE(import_schedules(db(), "ACME", 2025, doc, false).errors.empty());
    const auto again = import_schedules(db(), "ACME", 2025, doc, false);
    ASSERT_EQ(again.errors.size(), 1u);
    EXPECT_EQ(again.errors[0], "RESV_: the client's year already has rows (use --replace to replace them)");
    EXPECT_TRUE(import_schedules(db(), "ACME", 2025, doc, true).errors.empty());
    EXPECT_EQ(count("RESV_", "ACME"), 1);
}

TEST_P(SchedulesDocument, ADocumentWithoutATableOrWithAnotherKeyIsRefusedAndWritesNothing) {
    ASSERT_TRUE(import_schedules(db(), "ACME", 2025, year_document(), false).errors.empty());
    const std::string before = export_schedules(db(), "ACME", 2025);
    Json whole = Json::parse(year_document());
    struct Case {
        const char* name;
        std::function<void(Json&)> change;
        std::vector<std::string> errors;
    };
    const std::vector<Case> cases = {
        {"no reserves",
         [](Json& d) { d.erase("RESV_"); },
         {"The document has no table RESV_ (an empty one is written [])"}},
        {"reserves misspelt",
         [](Json& d) {
             d["RSEV_"] = d["RESV_"];
             d.erase("RESV_");
         },
         {"The table \"RSEV_\" is not one of a schedules document: is it RESV_?"}},
        {"an unknown key",
         [](Json& d) { d["notes"] = 1; },
         {"The table \"notes\" is not one of a schedules document"}},
        {"version as text",
         [](Json& d) { d["version"] = "1"; },
         {"The schedules document is of a version this program does not read: \"version\" must be 1, not "
          "\"1\""}},
        {"the fixed schedule without its additions",
         [](Json& d) { d["FIXED_"] = Json::array(); },
         {"The document has no table FDA_ (an empty one is written [])"}},
        {"the year as text",
         [](Json& d) { d["year"] = "2025"; },
         {"\"year\" must be a year such as 2025, not \"2025\""}},
    };
    for (const auto& c : cases) {
        Json doc = whole;
        doc["BANK_"][0]["CASH"] = 1;  // what would change, were it imported
        c.change(doc);
        const auto r = import_schedules(db(), "ACME", 2025, doc.dump(), true);
        EXPECT_EQ(r.errors, c.errors) << c.name;
        EXPECT_EQ(export_schedules(db(), "ACME", 2025), before) << c.name;
    }
}

TEST_P(SchedulesDocument, TheFixedScheduleIsSavedInTheSameGroupAsTheOtherTables) {
    ASSERT_TRUE(import_schedules(db(), "ACME", 2025, year_document(), false).errors.empty());
    const std::string before = export_schedules(db(), "ACME", 2025);
    Json doc = Json::parse(year_document());
    doc["BANK_"][0]["CASH"] = 1;
    doc["FIXED_"] = Json::parse(R"([{"PART_NM":"LATHES","OP_BAL":300000,"method_id":1,"RATE_DEP":15}])");
    doc["FDA_"] = Json::array();
    // The fixed schedule's save writes its rows and then refuses: nothing of the
    // document stays, its own rows neither.
    const auto r =
        import_schedules(db(), "ACME", 2025, doc.dump(), true,
                         [&](const store::FixedScheduleRows& rows, std::vector<std::string>& errors) {
                             store::FixedScheduleStore fixed(db(), "2025", "ACME");
                             fixed.replace_all_rows(rows);
                             errors.push_back("FIXED_: refused after writing");
                             return false;
                         });
    ASSERT_EQ(r.errors, std::vector<std::string>{"FIXED_: refused after writing"});
    EXPECT_EQ(export_schedules(db(), "ACME", 2025), before);
}

TEST_P(SchedulesDocument, AFirmsDocumentTakesNoSubsidiaries) {
    store::create_client_year(db(), "FIRM", 2025, "SHAH AND MEHTA", 2);
    struct Case {
        const char* table;
        const char* rows;
        const char* error;  // "" when taken
    };
    const std::vector<Case> cases = {
        {"LOAN_ADV_", R"([{"OTH_LOAN_ID":2,"Amount":5},{"LDAD_ID":1,"comp_id":1,"Amount":5}])",
         "LOAN_ADV_ row 2: loans to subsidiary companies are a company's only (field LDAD_ID)"},
        {"INVEST_", R"([{"INVEST_ID":4,"SHARE_ID":1,"no_shares":10,"Amount":5,"comp_id":1}])",
         "INVEST_ row 1: shares in subsidiary companies are a company's only (field INVEST_ID)"},
        {"INVEST_", R"([{"INVEST_ID":8,"no_shares":1,"Amount":5000,"comp_id":2}])", ""},
    };
    for (const auto& c : cases) {
        const auto r = import_schedules(db(), "FIRM", 2025, document_with({{c.table, c.rows}}), true);
        EXPECT_EQ(r.errors, std::string(c.error).empty() ? std::vector<std::string>{}
                                                         : std::vector<std::string>{c.error})
            << c.table;
        EXPECT_EQ(count(c.table, "FIRM"), std::string(c.error).empty() ? 1 : 0) << c.table;
    }
}

BRENLOW_INSTANTIATE_BACKENDS(SchedulesDocument);

}  // namespace
}  // namespace brenlow::exchange
