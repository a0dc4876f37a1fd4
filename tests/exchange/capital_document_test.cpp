#include "exchange/capital_document.h"

#include <gtest/gtest.h>

#include <functional>
#include <nlohmann/json.hpp>

#include "store/capital_store.h"
#include "store/client_store.h"
#include "support/test_databases.h"

namespace brenlow::exchange {
namespace {

using Json = nlohmann::ordered_json;

class CapitalDocument : public test::BackendTest {
protected:
    void SetUp() override {
        test::BackendTest::SetUp();
        if (IsSkipped()) return;
        store::prepare_schema(db(), BRENLOW_TEST_DATA_DIR);
        store::create_client_year(db(), "FIRM", 2025, "SHAH AND CO", 2);
        store::add_listed_partner(db(), "FIRM", "ANIL", "", "SHAH");
        store::add_listed_partner(db(), "FIRM", "BINA", "", "MEHTA");
        const auto r = import_capital(db(), "FIRM", 2025, good().dump());
        ASSERT_TRUE(r.errors.empty()) << r.errors.front();
    }
    // The year as the tests begin it: 60:40, one line each.
    static Json good() {
        return Json::parse(R"({"format":"brenlow-capital","version":1,"client":"FIRM","year":2025,
            "ratios":[{"code":"1","name":"ANIL SHAH","rat":60},{"code":"2","name":"BINA MEHTA","rat":40}],
            "CAPITAL_":[{"code":"1","srno":1,"actyp":0,"nid":2,"Particular":"OPENING BALANCE","AMT":1000},
                        {"code":"2","srno":2,"actyp":1,"nid":1,"Particular":"DRAWINGS","AMT":250.5}]})");
    }
    // Everything the import may change, as text: ratios, lines and the ledger.
    std::string year_state() {
        const auto cy = store::find_client_year(db(), "FIRM", 2025);
        std::string s;
        for (const auto& r : store::ratio_rows(db(), "FIRM", cy->count))
            s += r.name + "=" + std::to_string(r.rat) + (r.other ? " other" : "") + "\n";
        for (const auto& l : store::capital_lines(db(), cy->tbl_nm, "FIRM"))
            s += l.code + "|" + std::to_string(l.srno) + "|" + std::to_string(l.particular_id) + "|" +
                 std::to_string(l.amt) + "|" + std::to_string(l.nid) + "|" + std::to_string(l.actyp) + "\n";
        for (const auto& p : store::ledger_particulars(db(), store::Ledger::capital))
            s += std::to_string(p.id) + " " + p.name + "\n";
        for (const auto& t : store::partner_terms(db(), "FIRM", cy->count))
            s += "terms " + t.code + "|" + std::to_string(t.working) + "|" + std::to_string(t.int_rate) +
                 "|" + std::to_string(t.remun) + "\n";
        for (const auto& m : store::partner_moves(db(), "FIRM", cy->count))
            s += "move " + m.code + "|" + m.dt + "|" + std::to_string(m.amt) + "\n";
        return s;
    }
};

TEST_P(CapitalDocument, TheRatiosAndLinesComeBackAsExported) {
    const Json exported = Json::parse(export_capital(db(), "FIRM", 2025));
    EXPECT_EQ(exported["ratios"].size(), 2u);
    EXPECT_EQ(exported["ratios"][0]["rat"], 60);
    Json changed = exported;
    changed["ratios"][0]["rat"] = 45;
    changed["ratios"][1]["rat"] = 55;
    const auto r = import_capital(db(), "FIRM", 2025, changed.dump());
    ASSERT_TRUE(r.errors.empty()) << r.errors.front();
    EXPECT_EQ(r.ratios, 2);
    EXPECT_EQ(r.lines, 2);
    EXPECT_EQ(Json::parse(export_capital(db(), "FIRM", 2025)), changed);
}

// The deed's terms and the dated moves of capital, as a partner's interest is worked
// from them.
Json with_terms(Json d) {
    d["PRTN_TERMS"] = Json::parse(R"([{"code":"1","working":1,"int_rate":15,"remun":240000},
                                      {"code":"2","working":0,"int_rate":10,"remun":0}])");
    d["PRTN_MOVES"] = Json::parse(R"([{"code":"1","dt":"15/10/2024","amt":-50000},
                                      {"code":"2","dt":"01/01/2025","amt":25000.5}])");
    return d;
}

TEST_P(CapitalDocument, TheDeedsTermsAndDatedMovesComeBackAsExportedAndAreKeptByADocumentWithoutThem) {
    const Json doc = with_terms(good());
    const auto r = import_capital(db(), "FIRM", 2025, doc.dump());
    ASSERT_TRUE(r.errors.empty()) << r.errors.front();
    const Json exported = Json::parse(export_capital(db(), "FIRM", 2025));
    EXPECT_EQ(exported["PRTN_TERMS"], doc["PRTN_TERMS"]);
    EXPECT_EQ(exported["PRTN_MOVES"], doc["PRTN_MOVES"]);

    // An older document, written before the terms were kept, changes lines, not terms.
    Json older = good();
    older["CAPITAL_"][0]["AMT"] = 2000;
    ASSERT_TRUE(import_capital(db(), "FIRM", 2025, older.dump()).errors.empty());
    const Json after = Json::parse(export_capital(db(), "FIRM", 2025));
    EXPECT_EQ(after["CAPITAL_"][0]["AMT"], 2000);
    EXPECT_EQ(after["PRTN_TERMS"], doc["PRTN_TERMS"]);
    EXPECT_EQ(after["PRTN_MOVES"], doc["PRTN_MOVES"]);

    // Empty tables given empty the year's terms.
    Json emptied = good();
    emptied["PRTN_TERMS"] = Json::array();
    emptied["PRTN_MOVES"] = Json::array();
    ASSERT_TRUE(import_capital(db(), "FIRM", 2025, emptied.dump()).errors.empty());
    const Json none = Json::parse(export_capital(db(), "FIRM", 2025));
    EXPECT_EQ(none["PRTN_TERMS"], Json::array());
    EXPECT_EQ(none["PRTN_MOVES"], Json::array());
}

TEST_P(CapitalDocument, TermsAndMovesAreCheckedAsTheTermsGridChecksThemBeforeAnythingIsWritten) {
    const std::vector<std::pair<std::function<void(Json&)>, std::vector<std::string>>> cases = {
        {[](Json& d) { d["PRTN_TERMS"][0]["int_rate"] = 120; },
         {"PRTN_TERMS row 1: Interest (%) must be from 0 to 100."}},
        {[](Json& d) { d["PRTN_TERMS"][1]["remun"] = 1000; },
         {"PRTN_TERMS row 2: Remuneration is paid to working partners only."}},
        {[](Json& d) { d["PRTN_TERMS"][1]["code"] = "1"; },
         {"PRTN_TERMS row 2, field code: This Partner already exists."}},
        {[](Json& d) { d["PRTN_TERMS"][0]["working"] = 2; },
         {"PRTN_TERMS row 1, field working: 1 (a working partner) or 0, not 2"}},
        {[](Json& d) { d["PRTN_MOVES"][0]["code"] = "9"; },
         {"PRTN_MOVES row 1, field code: the client has no partner 9"}},
        {[](Json& d) { d["PRTN_MOVES"][1]["dt"] = "01/04/2025"; },
         {"PRTN_MOVES row 2, field dt: \"01/04/2025\" is outside the financial year"}},
        {[](Json& d) { d["PRTN_MOVES"][1]["dt"] = "31/02/2025"; },
         {"PRTN_MOVES row 2, field dt: \"31/02/2025\" is not a date dd/mm/yyyy"}},
        {[](Json& d) { d["PRTN_MOVES"][0]["amt"] = -1e300; },
         {"PRTN_MOVES row 1, field amt: Amount cannot have more than 15 digits before the point."}},
    };
    ASSERT_TRUE(import_capital(db(), "FIRM", 2025, with_terms(good()).dump()).errors.empty());
    const std::string before = year_state();
    for (std::size_t i = 0; i < cases.size(); ++i) {
        Json doc = with_terms(good());
        doc["CAPITAL_"][0]["AMT"] = 5;  // what would change, were it imported
        cases[i].first(doc);
        const auto r = import_capital(db(), "FIRM", 2025, doc.dump());
        EXPECT_EQ(r.errors, cases[i].second) << "case " << i;
        EXPECT_EQ(year_state(), before) << "case " << i;
    }
}

struct Refused {
    const char* name;
    std::function<void(Json&)> change;
    std::vector<std::string> errors;
};

TEST_P(CapitalDocument, ADocumentThatIsNotWholeIsRefusedInTheProgramsWordsAndChangesNothing) {
    const std::vector<Refused> cases = {
        {"no lines table",
         [](Json& d) { d.erase("CAPITAL_"); },
         {"The document has no table CAPITAL_ (an empty one is written [])"}},
        {"lines table misspelt",
         [](Json& d) {
             d["CAPTIAL_"] = d["CAPITAL_"];
             d.erase("CAPITAL_");
         },
         {"The table \"CAPTIAL_\" is not one of a capital document: is it CAPITAL_?"}},
        {"no ratios",
         [](Json& d) { d.erase("ratios"); },
         {"The document has no table ratios (an empty one is written [])"}},
        {"an unknown key",
         [](Json& d) { d["notes"] = "x"; },
         {"The table \"notes\" is not one of a capital document"}},
        {"lines not a list",
         [](Json& d) { d["CAPITAL_"] = 5; },
         {"CAPITAL_: a table is a list of rows, not 5"}},
        {"version as text",
         [](Json& d) { d["version"] = "1"; },
         {"The capital document is of a version this program does not read: \"version\" must be 1, not "
          "\"1\""}},
        {"ratio above a hundred",
         [](Json& d) {
             d["ratios"][0]["rat"] = 150;
             d["ratios"][1]["rat"] = -50;
         },
         {"ratios row 1, field rat: Profit (%) must be from 0 to 100.",
          "ratios row 2, field rat: Profit (%) must be from 0 to 100."}},
        {"ratio beyond any number",
         [](Json& d) { d["ratios"][0]["rat"] = 1e308; },
         {"ratios row 1, field rat: Profit (%) must be from 0 to 100."}},
        {"ratios short of a hundred",
         [](Json& d) { d["ratios"][0]["rat"] = 50; },
         {"ratios: Total Profit (%) should be 100%. (Total Profit (%) = 90.00%)"}},
        {"a partner twice",
         [](Json& d) { d["ratios"][1]["code"] = "1"; },
         {"ratios row 2, field code: This Partner already exists."}},
        {"a ratio of no partner",
         [](Json& d) { d["ratios"][1]["code"] = "7"; },
         {"ratios row 2, field code: the client has no partner 7"}},
        {"a negative amount",
         [](Json& d) { d["CAPITAL_"][0]["AMT"] = -100; },
         {"CAPITAL_ row 1, field AMT: Amount cannot be negative."}},
        {"an amount beyond fifteen digits",
         [](Json& d) { d["CAPITAL_"][1]["AMT"] = 1e308; },
         {"CAPITAL_ row 2, field AMT: has more than 15 digits before the point"}},
        {"a null amount",
         [](Json& d) { d["CAPITAL_"][1]["AMT"] = nullptr; },
         {"CAPITAL_ row 2, field AMT: is null: it needs a number"}},
        {"a side of text",
         [](Json& d) { d["CAPITAL_"][0]["nid"] = "CR"; },
         {"CAPITAL_ row 1, field nid: is not a number"}},
        {"an unknown column",
         [](Json& d) { d["CAPITAL_"][0]["Colour"] = "red"; },
         {"CAPITAL_ row 1, field Colour: is not a column of the table"}},
    };
    const std::string before = year_state();
    for (const auto& c : cases) {
        Json doc = good();
        doc["CAPITAL_"][0]["AMT"] = 5;  // what would change, were it imported
        c.change(doc);
        const auto r = import_capital(db(), "FIRM", 2025, doc.dump());
        EXPECT_EQ(r.errors, c.errors) << c.name;
        EXPECT_EQ(r.lines, 0) << c.name;
        EXPECT_EQ(year_state(), before) << c.name;
    }
}

TEST_P(CapitalDocument, TextThatIsNotJsonIsRefusedWithoutTheLibrarysWords) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"", "Not a JSON document: it is empty"},
        {"{\"format\": ", "Not a JSON document: it stops being JSON near byte 12"},
        {"{\"format\": \"brenlow-capital\", \"version\": 1, \"x\": 1e400}",
         "Not a JSON document: it holds a number too large for any amount"},
        {"[1, 2]", "Not a capital document: \"format\" must be \"brenlow-capital\""},
        {"{\"format\": 7}", "Not a capital document: \"format\" must be \"brenlow-capital\""},
    };
    const std::string before = year_state();
    for (const auto& [text, error] : cases) {
        const auto r = import_capital(db(), "FIRM", 2025, text);
        ASSERT_EQ(r.errors.size(), 1u) << text;
        EXPECT_EQ(r.errors[0], error) << text;
        EXPECT_EQ(r.errors[0].find("json.exception"), std::string::npos);
    }
    EXPECT_EQ(year_state(), before);
}

BRENLOW_INSTANTIATE_BACKENDS(CapitalDocument);

}  // namespace
}  // namespace brenlow::exchange
