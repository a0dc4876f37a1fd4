#include "exchange/register_document.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string_view>
#include <tuple>

#include "exchange/register_import.h"
#include "store/client_store.h"
#include "store/register_bulk.h"
#include "store/register_store.h"
#include "support/test_databases.h"

namespace brenlow::exchange {
namespace {

using Json = nlohmann::ordered_json;

class RegisterDocumentTest : public test::BackendTest {
protected:
    void SetUp() override {
        test::BackendTest::SetUp();
        if (IsSkipped()) return;
        store::ensure_schema(db(), BRENLOW_TEST_DATA_DIR);
        store::create_client_year(db(), "C001", 2025, "ACME", 3);
    }

    // A small register: two groups, openings with a sale, an addition with shifts and
    // hostile text, and an options row.
    void fill() {
        store::RegisterStore reg(db(), "C001", 2025);
        store::AssetGroupRow plant{0,    2025, "PLANT AND MACHINERY", "3-15", 15, 20, 0, 0, "4.1", 15,
                                   6.33, 18.1};
        store::AssetGroupRow furniture{0, 2025, "FURNITURE", "2-10", 10, 0, 0, 0, "5.1", 10, 9.5, 25.89};
        const long p = reg.find_or_create_group(plant);
        const long f = reg.find_or_create_group(furniture);
        std::vector<store::OpeningRow> o(2);
        o[0].IdFAGM = p;
        o[0].Part = "LATHE 'A' ¦ \\ ₹";
        o[0].CostWdv = 100000;
        o[0].WdvIT = 85000.5;
        o[0].RateIT = 15;
        o[0].PutDate = "15/06/2010";
        o[0].OthOpts = "0|COST|WDV|";
        o[1].IdFAGM = f;
        o[1].Part = "TABLES";
        o[1].CostWdv = 5000;
        o[1].SaleDate = "10/10/2024";
        o[1].SaleAmt = 7000;
        o[1].WdvIT = 4000;
        o[1].DetESA = "OLD CHAIR¦1000¦01/05/2023¦1500¦500¦500|";
        store::insert_openings(db(), "C001", 2025, o);
        std::vector<store::AdditionRow> a(1);
        a[0].IdFAGM = p;
        a[0].Part = "CNC MACHINE";
        a[0].PutDate = "05/10/2024";
        a[0].AccDate = "01/10/2024";
        a[0].PurAmt = 250000;
        a[0].Subsidy = 1234.56;
        a[0].AddlDepRT = 20;
        a[0].ShiftDet = "05/10/2024,31/03/2025,2|";
        store::insert_additions(db(), "C001", 2025, a);
        reg.rewrite_options_row("WDV|Y|0|0|0|0|COST|0|0|0|0");
    }
};

TEST_P(RegisterDocumentTest, ARegisterRoundTripsThroughExportAndImportUnchanged) {
    fill();
    const std::string first = export_register(db(), "C001", 2025);
    const auto doc = Json::parse(first);
    ASSERT_EQ(doc["NewFATRo"].size(), 2u);
    EXPECT_EQ(doc["NewFATRo"][0]["Part"], "LATHE 'A' ¦ \\ ₹");
    EXPECT_EQ(doc["NewFATRa"][0]["Subsidy"], 1234.56);
    EXPECT_EQ(doc["NewFAMI"][0]["MiscInf"], "WDV|Y|0|0|0|0|COST|0|0|0|0");
    // Keys in the tables' column order.
    EXPECT_EQ(doc["NewFATRo"][0].begin().key(), "Code_No");

    // The lathe was put to use before 01/04/2014 with no carrying-amount year: a
    // question the person answered Yes when it was entered, and answers again here.
    const auto asked = import_register(db(), "C001", 2025, first, {.replace = true});
    ASSERT_EQ(asked.errors.size(), 1u);
    EXPECT_EQ(
        asked.errors[0],
        "NewFATRo row 1, field YrCalcCA: 'For Calculation of Carrying Amount, Consider Depreciation Upto "
        "31/03/' Year should be selected as Date of Put to Use '15/06/2010' is prior to '01/04/2014' ! "
        "Continue ? (answered No; --yes answers Yes)");
    EXPECT_EQ(export_register(db(), "C001", 2025), first);
    const auto result = import_register(db(), "C001", 2025, first, {.replace = true, .yes = true});
    ASSERT_TRUE(result.errors.empty()) << result.errors.front();
    EXPECT_EQ(result.groups_matched, 2);
    EXPECT_EQ(result.groups_created, 0);
    EXPECT_EQ(result.openings, 2);
    EXPECT_EQ(result.additions, 1);
    EXPECT_EQ(export_register(db(), "C001", 2025), first);
}

TEST_P(RegisterDocumentTest, ImportIntoAnotherClientMatchesOrCreatesGroupsAndTakesNewSerials) {
    fill();
    auto doc = Json::parse(export_register(db(), "C001", 2025));
    doc["NewFAGM"][1]["Part"] = "OFFICE FURNITURE";
    store::create_client_year(db(), "C002", 2025, "OTHER", 1);
    const auto result = import_register(db(), "C002", 2025, doc.dump(), {.yes = true});
    ASSERT_TRUE(result.errors.empty()) << result.errors.front();
    EXPECT_EQ(result.groups_matched, 1);
    EXPECT_EQ(result.groups_created, 1);
    // Importing again without --replace adds after the client's largest serial.
    import_register(db(), "C002", 2025, doc.dump(), {.yes = true});
    store::RegisterStore reg(db(), "C002", 2025);
    const auto rows = reg.opening_entries();
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[3].SrNoFATR, 4);
    const auto groups = reg.asset_groups();
    ASSERT_EQ(groups.size(), 3u);
    // Entries point at the year's groups by name, not at the document's numbers.
    const auto furniture =
        std::find_if(groups.begin(), groups.end(), [](auto& g) { return g.Part == "OFFICE FURNITURE"; });
    ASSERT_NE(furniture, groups.end());
    EXPECT_EQ(rows[1].IdFAGM, furniture->SrNoFAGM);
    EXPECT_EQ(rows[3].IdFAGM, furniture->SrNoFAGM);
}

TEST_P(RegisterDocumentTest, AnotherYearsRegisterIsRefusedAndItsRowsFailTheEntryRules) {
    fill();
    const std::string doc = export_register(db(), "C001", 2025);
    store::create_client_year(db(), "C001", 2026, "ACME", 3);
    auto result = import_register(db(), "C001", 2026, doc, {});
    ASSERT_FALSE(result.errors.empty());
    EXPECT_EQ(result.errors[0],
              "The document is the register of F.Y. 2024-25, not of F.Y. 2025-26; its dates are "
              "not rewritten (--yes imports it all the same)");
    // Told to go on, last year's addition and sale are still not this year's.
    result = import_register(db(), "C001", 2026, doc, {.yes = true});
    ASSERT_EQ(result.errors.size(), 2u);
    EXPECT_EQ(result.errors[0],
              "NewFATRo row 2, field SaleDate: Please specify valid 'Date of Sale/Deduction' "
              "between 01/04/2025 and 31/03/2026 !");
    // The addition's shift rows are checked as they are entered, before its dates on update.
    EXPECT_EQ(result.errors[1],
              "NewFATRa row 1, field ShiftDet: 'From Date' should be between 01/04/2025 and 31/03/2026 !");
    EXPECT_TRUE(store::RegisterStore(db(), "C001", 2026).opening_entries().empty());
}

TEST_P(RegisterDocumentTest, EveryBadRowIsNamedAndNothingIsWritten) {
    fill();
    auto doc = Json::parse(export_register(db(), "C001", 2025));
    doc["NewFATRo"][1]["CostWdv"] = "five thousand";
    doc["NewFATRa"][0]["PutDate"] = "31/02/2025";
    doc["NewFATRa"][0]["Colour"] = "red";
    doc["NewFATRo"][0]["IdFAGM"] = 999;
    const auto before = export_register(db(), "C001", 2025);
    const auto result = import_register(db(), "C001", 2025, doc.dump(), {.replace = true});
    ASSERT_EQ(result.errors.size(), 4u);
    EXPECT_EQ(result.errors[0], "NewFATRo row 1, field IdFAGM: no asset group 999");
    EXPECT_EQ(result.errors[1], "NewFATRo row 2, field CostWdv: expected a number, found \"five thousand\"");
    EXPECT_EQ(result.errors[2], "NewFATRa row 1, field Colour: is not a column of this table");
    EXPECT_EQ(result.errors[3],
              "NewFATRa row 1, field PutDate: expected a date dd/mm/yyyy, found \"31/02/2025\"");
    EXPECT_EQ(export_register(db(), "C001", 2025), before);
}

TEST_P(RegisterDocumentTest, TextThatIsNotARegisterDocumentIsRefused) {
    EXPECT_FALSE(import_register(db(), "C001", 2025, "{not json", {}).errors.empty());
    EXPECT_FALSE(import_register(db(), "C001", 2025, "{\"format\": \"other\"}", {}).errors.empty());
    EXPECT_FALSE(
        import_register(db(), "C001", 2025, "{\"format\": \"brenlow-register\", \"NewFATRo\": 5}", {})
            .errors.empty());
}

// The document goes out a row at a time, and is still the text the whole document's
// two-space dump prints; from a stream it reads as from its text.
TEST_P(RegisterDocumentTest, TheDocumentWrittenByPiecesIsTheWholeDumpAndReadsBackFromAStream) {
    fill();
    store::RegisterStore(db(), "C001", 2025).rewrite_manual_depreciation({{1, 500.5}, {-1, 20}});
    std::vector<std::string> pieces;
    export_register(db(), "C001", 2025, [&](std::string_view p) { pieces.emplace_back(p); });
    EXPECT_GT(pieces.size(), 5u);
    std::string text;
    for (const auto& p : pieces) text += p;
    EXPECT_EQ(text, Json::parse(text).dump(2) + "\n");
    EXPECT_EQ(text, export_register(db(), "C001", 2025));

    store::create_client_year(db(), "C002", 2025, "OTHER", 1);
    std::istringstream in(text);
    const auto result = import_register(db(), "C002", 2025, in, {.yes = true});
    ASSERT_TRUE(result.errors.empty()) << result.errors.front();
    EXPECT_EQ(result.openings, 2);
    EXPECT_EQ(result.additions, 1);
    auto copied = Json::parse(export_register(db(), "C002", 2025));
    auto original = Json::parse(text);
    for (auto* d : {&copied, &original}) {
        (*d)["client"] = "";
        for (const char* t : {"NewFATRo", "NewFATRa", "NewFAMI", "NewFAMD"})
            for (auto& row : (*d)[t]) row["Code_No"] = "";
    }
    EXPECT_EQ(copied, original);
}

// A stream is read in pieces: a character cut between two pieces is still one
// character, and a broken one past the first piece is still found.
TEST_P(RegisterDocumentTest, AStreamThatIsNotJsonIsToldAsItsTextWouldBe) {
    std::string long_text;
    for (int i = 0; i < 50000; ++i) long_text += "\xc3\xa9";  // é, over several pieces
    const std::string head = R"({"format": "brenlow-register", "note": ")" + long_text + "\"";
    for (const std::string& bad :
         {head + ", ", head + ", \"x\": \"\xff\"", std::string(" \n "), std::string(70000, ' ') + "x",
          std::string(R"({"NewFATRo": [{"Part": 1e999}]})")}) {
        std::istringstream in(bad);
        const auto from_stream = import_register(db(), "C001", 2025, in, {});
        const auto from_text = import_register(db(), "C001", 2025, bad, {});
        ASSERT_EQ(from_stream.errors.size(), 1u);
        EXPECT_EQ(from_stream.errors, from_text.errors);
    }
    std::istringstream cut(head + ", ");
    EXPECT_NE(import_register(db(), "C001", 2025, cut, {}).errors[0].find("it stops being JSON near byte"),
              std::string::npos);
    std::istringstream broken(head + ", \"x\": \"\xff\"");
    EXPECT_NE(import_register(db(), "C001", 2025, broken, {}).errors[0].find("not UTF-8"), std::string::npos);
}

BRENLOW_INSTANTIATE_BACKENDS(RegisterDocumentTest);

// The rows an import holds for its checks come back as they went in: texts of any
// length, nil, minus nil and the largest amounts.
TEST(PackedRows, GiveBackEveryRowAsItWasPut) {
    PackedRows<store::AdditionRow> rows;
    const auto made = [](int i) {
        store::AdditionRow a;
        a.Code_No = "C" + std::to_string(i % 10);
        a.SrNoFATR = i;
        a.IdFAGM = -i;
        a.Part = std::string(static_cast<std::size_t>(i % 600), static_cast<char>('a' + i % 26));
        a.PutDate = "01/04/2014";
        a.PurAmt = i * 0.1;
        a.Subsidy = i % 3 == 0 ? -0.0 : 1.7976931348623157e308;
        a.ShiftDet = i % 500 == 7 ? std::string(70000, 's') : "";
        a.OthOpts = "|OLD|Y";
        return a;
    };
    for (int i = 0; i < 5000; ++i) rows.push_back(made(i));
    ASSERT_EQ(rows.size(), 5000u);
    for (int i = 0; i < 5000; ++i) {
        const auto want = made(i);
        const auto got = rows[static_cast<std::size_t>(i)];
        EXPECT_EQ(std::tie(got.Code_No, got.SrNoFATR, got.IdFAGM, got.Part, got.PutDate, got.AccDate,
                           got.PurAmt, got.ShiftDet, got.OthOpts, got.ExciseCr),
                  std::tie(want.Code_No, want.SrNoFATR, want.IdFAGM, want.Part, want.PutDate, want.AccDate,
                           want.PurAmt, want.ShiftDet, want.OthOpts, want.ExciseCr));
        EXPECT_EQ(std::signbit(got.Subsidy), std::signbit(want.Subsidy));
        EXPECT_EQ(got.Subsidy, want.Subsidy);
    }
}

}  // namespace
}  // namespace brenlow::exchange
