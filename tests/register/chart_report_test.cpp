// The printed charts: titles, banded headings around the half-rate line, amounts and
// the summary and sheet around them.

#include "register/chart_report.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "controls/number_format.h"

namespace brenlow::reg {
namespace {

using Ostikreport::ReportDocument;

std::vector<std::string> headings(const ReportDocument& doc) {
    std::vector<std::string> out;
    for (const auto& c : doc.columns) out.push_back(c.heading);
    return out;
}

const Ostikreport::ReportColumn& column(const ReportDocument& doc, std::size_t i) {
    return doc.columns.at(i);
}

depreciation::ItBlockResult block(const std::string& id, const std::string& name, double rate) {
    depreciation::ItBlockResult b;
    b.block_id = id;
    b.block_name = name;
    b.rate = rate;
    return b;
}

CalculationResult income_tax_run(int year) {
    CalculationResult run;
    run.code = "C001";
    run.year = year;
    run.mode = Mode::DEP_IT;
    run.income_tax.blocks = {block("2-10", "FURNITURE AND FITTINGS", 10),
                             block("3-15", "MACHINERY AND PLANT", 15)};
    depreciation::ChartRow furniture;
    furniture.Grp = 2;
    furniture.Rate = 10;
    furniture.Wdv = 1000000;
    furniture.Add1 = 234567.5;
    furniture.DeprF = 123456;
    furniture.WdvCl = 1111111;
    depreciation::ChartRow plant;
    plant.Grp = 3;
    plant.Rate = 15;
    plant.Wdv = 200000;
    plant.Add1 = 10000;
    plant.Add2 = 40000;
    plant.Cons1 = 5000;
    plant.Cons2 = 1000;
    plant.DeprF = 30750;
    plant.DeprH = 2925;
    plant.ADeprF = 2000;
    plant.ADeprH = 3900;
    plant.ADeprOpH = 6000;
    plant.WdvCl = 205425;          // 2,44,000 + the 7,000 kept apart - 45,575
    depreciation::ChartRow apart;  // the plant block's part kept apart
    apart.Grp = 3;
    apart.Rate = -40;
    apart.Wdv = 7000;
    run.chart = {furniture, plant, apart};
    return run;
}

TEST(IncomeTaxChartReport, CarriesTheTitlesOfTheFinancialAndAssessmentYear) {
    const auto doc = income_tax_chart_report(income_tax_run(2025));
    ASSERT_GE(doc.titles.size(), 4u);
    EXPECT_EQ(doc.titles[0], "FIXED ASSETS");
    EXPECT_EQ(doc.titles[1], "Client: C001");
    EXPECT_EQ(doc.titles[2], "F.Y. 2024-25");
    EXPECT_EQ(doc.titles[3], "A.Y. 2025-26");
}

TEST(IncomeTaxChartReport, IsFollowedByTheBlockWiseSummaryForItsPdf) {
    auto run = income_tax_run(2025);
    run.block_summary.title = "BLOCK WISE SUMMARY";
    run.block_summary.rows = {{"MACHINERY AND PLANT", "40", "Block Nil", "33,000"}};
    run.block_summary.total_label = "Net Capital Gain / (Loss)";
    run.block_summary.total_text = "33,000";
    const auto doc = income_tax_chart_report(run, {"C001", "ACME ENGINEERS"});
    ASSERT_EQ(doc.follows.size(), 1u);
    EXPECT_EQ(doc.follows[0].titles.at(0), "BLOCK WISE SUMMARY");
    EXPECT_EQ(doc.follows[0].titles.at(1), "Client: C001 - ACME ENGINEERS");
    EXPECT_EQ(doc.follows[0].rows.at(1).at(3), "33,000");
    // The text of the chart leaves the summary to its own place.
    EXPECT_EQ(Ostikreport::render_text(doc).find("BLOCK WISE SUMMARY"), std::string::npos);
    EXPECT_TRUE(books_chart_report(run).follows.empty());
}

TEST(CalculationSheetReport, TheIncomeTaxSheetShowsEachRateStepUnderTheAmountItIsChargedOn) {
    auto run = income_tax_run(2025);
    auto& plant = run.income_tax.blocks[1];
    plant.full_on_bal1 = 205000;
    plant.depr_full = 30750;
    plant.full_on_bal2 = 39000;
    plant.depr_half = 2925;
    plant.addl_rate = 20;
    plant.addl_on_bal1 = 10000;
    plant.addl_full = 2000;
    plant.addl_on_bal2 = 39000;
    plant.addl_half = 3900;
    run.income_tax_sheet = {{"MACHINERY AND PLANT",
                             15,
                             {{"Balance", 244000},
                              {"Amount on which Depreciation to be Calculated", 244000},
                              {"Depreciation @ Normal Rate", 33675}}}};
    const auto doc = calculation_sheet_report(run);
    const auto whole = [](double v) { return format_mask(v, "#,##0"); };
    std::vector<std::pair<std::string, std::string>> lines;
    for (const auto& r : doc.rows)
        if (!r.at(0).empty()) lines.push_back({r.at(0), r.at(1)});
    EXPECT_EQ(lines, (std::vector<std::pair<std::string, std::string>>{
                         {"MACHINERY AND PLANT @ 15.00%", ""},
                         {"  Balance", whole(244000)},
                         {"  Amount on which Depreciation to be Calculated", whole(244000)},
                         {"    Normal @ 15% Full Rate", whole(30750)},
                         {"    Normal @ Half Rate [7.5%]", whole(2925)},
                         {"    Additional @ 20% Full Rate", whole(2000)},
                         {"    Additional @ Half Rate [10%]", whole(3900)},
                         {"  Depreciation @ Normal Rate", whole(33675)}}));
}

TEST(IncomeTaxChartReport, SplitsAdditionsAtTheHalfRateLineOfAnOrdinaryYear) {
    const auto doc = income_tax_chart_report(income_tax_run(2025));
    EXPECT_EQ(headings(doc),
              (std::vector<std::string>{"Block", "Rate\n(%)", "WDV as on 01/04/2024",
                                        "180 Days or More\n(Before 04/10/24)",
                                        "Less than 180 Days\n(On or After 04/10/24)", "Deduction", "Total",
                                        "Normal", "Additional", "WDV as on 31/03/2025"}));
    EXPECT_EQ(column(doc, 3).band, "Addition");
    EXPECT_EQ(column(doc, 4).band, "Addition");
    EXPECT_EQ(column(doc, 7).band, "Depreciation for the Year");
    EXPECT_EQ(column(doc, 8).band, "Depreciation for the Year");
    EXPECT_EQ(column(doc, 2).band, "");
}

TEST(IncomeTaxChartReport, MovesTheLineToTheFifthOfOctoberWhenFebruaryHasTwentyNineDays) {
    // F.Y. 2023-24 closes in a leap year: 31/03/2024 less 178 days is 05/10/2023.
    const auto doc = income_tax_chart_report(income_tax_run(2024));
    EXPECT_EQ(column(doc, 3).heading, "180 Days or More\n(Before 05/10/23)");
    EXPECT_EQ(column(doc, 4).heading, "Less than 180 Days\n(On or After 05/10/23)");
    EXPECT_EQ(doc.titles[2], "F.Y. 2023-24");
}

TEST(IncomeTaxChartReport, KeepsTheFourthOfOctoberForAYearThatBeganIn2005OrEarlierEvenBeforeALeapFebruary) {
    const auto doc = income_tax_chart_report(income_tax_run(2004));
    EXPECT_EQ(column(doc, 3).heading, "180 Days or More\n(Before 04/10/03)");
    EXPECT_EQ(column(doc, 4).heading, "Less than 180 Days\n(On or After 04/10/03)");
}

TEST(IncomeTaxChartReport, PrintsWholeRupeesRoundedHalfAwayFromZeroInLakhs) {
    const auto doc = income_tax_chart_report(income_tax_run(2025));
    ASSERT_EQ(doc.rows.size(), 3u);  // two blocks and the total; the part kept apart has no line
    const auto& furniture = doc.rows[0];
    EXPECT_EQ(furniture[0], "FURNITURE AND FITTINGS");
    EXPECT_EQ(furniture[2], "10,00,000");
    EXPECT_EQ(furniture[3], "2,34,568");  // 2,34,567.50: a half rounds up, not to even
    EXPECT_EQ(furniture[6], "12,34,568");
}

TEST(IncomeTaxChartReport, SetsDeductionsAgainstBothPartsAndShowsTheCarriedHalfWithAdditionalDepreciation) {
    const auto doc = income_tax_chart_report(income_tax_run(2025));
    const auto& plant = doc.rows[1];
    EXPECT_EQ(plant[0], "MACHINERY AND PLANT");
    EXPECT_EQ(plant[1], "15.00");
    EXPECT_EQ(plant[3], "17,000");    // 10,000 and the 7,000 not yet put to use
    EXPECT_EQ(plant[5], "6,000");     // Cons1 + Cons2
    EXPECT_EQ(plant[6], "2,51,000");  // 2,00,000 + 17,000 + 40,000 - 6,000
    EXPECT_EQ(plant[7], "33,675");    // 30,750 + 2,925
    EXPECT_EQ(plant[8], "11,900");    // 2,000 + 3,900 + the carried 6,000
    EXPECT_EQ(plant[9], "2,05,425");  // 2,51,000 - 33,675 - 11,900
    const auto& total = doc.rows[2];
    EXPECT_EQ(total[0], "Total");
    EXPECT_EQ(total[9], "13,16,536");
    EXPECT_TRUE(doc.bold_rows.at(2));
}

TEST(IncomeTaxChartReport, NamesTheRowsOfAHandEditedChartByTheirBlocks) {
    auto run = income_tax_run(2025);
    run.chart_hand_edited = true;
    std::swap(run.chart[0], run.chart[1]);  // hand-edited rows may come in any order
    const auto lines = chart_lines(run);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0].block, "MACHINERY AND PLANT");
    EXPECT_EQ(lines[1].block, "FURNITURE AND FITTINGS");
}

TEST(IncomeTaxChartReport, AFullLineOfTextCarriesEveryHeading) {
    const auto text = Ostikreport::render_text(income_tax_chart_report(income_tax_run(2025)));
    for (const char* h :
         {"FIXED ASSETS", "Addition", "180 Days or More", "(Before 04/10/24)", "Less than 180 Days",
          "(On or After 04/10/24)", "Depreciation for the Year", "WDV as on 31/03/2025"})
        EXPECT_NE(text.find(h), std::string::npos) << h;
}

CalculationResult books_run() {
    CalculationResult run;
    run.code = "C001";
    run.year = 2025;
    run.mode = Mode::DEP_FA;
    BooksAsset a;
    a.IdFAGM = 7;
    a.Opening = 100000;
    a.DepFY = 18100;
    a.ClBal = 81900;
    a.Rate = 18.1;
    BooksAsset full = a;
    full.kind = depreciation::EntryKind::Addition;
    full.Opening = 0;
    full.Addition = 50000;
    full.DepFY = 4000;
    full.ClBal = 46000;
    BooksAsset half = full;
    half.half_year = true;
    half.Addition = 20000;
    half.DepFY = 1000;
    half.ClBal = 19000;
    BooksAsset old;
    old.IdFAGM = 9;
    old.Opening = 20000;
    old.DepAdjRemLife0_PL = 15000;
    old.ClBal = 5000;
    old.Rate = 25.89;
    run.books_assets = {a, full, half, old};
    run.asset_groups = {{7, "PLANT"}, {9, "FURNITURE"}};
    return run;
}

TEST(BooksChartReport, ListsAssetGroupsWithAdditionsOnEachSideOfTheLine) {
    const auto doc = books_chart_report(books_run());
    EXPECT_EQ(doc.titles[0], "FIXED ASSETS");
    EXPECT_EQ(column(doc, 0).heading, "Asset Group");
    EXPECT_EQ(column(doc, 3).heading, "More than 180 Days\n(Before 04/10/24)");
    EXPECT_EQ(column(doc, 4).heading, "Less than 180 Days\n(On or After 04/10/24)");
    ASSERT_EQ(doc.rows.size(), 3u);
    const auto& plant = doc.rows[0];
    EXPECT_EQ(plant[0], "PLANT");
    EXPECT_EQ(plant[1], "18.10");
    EXPECT_EQ(plant[2], "1,00,000.00");
    EXPECT_EQ(plant[3], "50,000.00");
    EXPECT_EQ(plant[4], "20,000.00");
    EXPECT_EQ(plant[7], "23,100.00");
    EXPECT_EQ(plant[9], "1,46,900.00");
}

TEST(BooksChartReport, AnAssetWhoseLifeIsOverLeavesWithTheDeductionsSoTheLineAddsUp) {
    const auto doc = books_chart_report(books_run());
    const auto& furniture = doc.rows[1];
    EXPECT_EQ(furniture[5], "15,000.00");
    EXPECT_EQ(furniture[6], "5,000.00");
    EXPECT_EQ(furniture[9], "5,000.00");
    EXPECT_EQ(doc.notes.size(), 1u);
}

TEST(BlockSummaryReport, ShowsNilBlocksAndTheNetGainWithLossesInBrackets) {
    auto run = income_tax_run(2025);
    auto& s = run.block_summary;
    s.title = "BLOCK WISE SUMMARY";
    s.rows = {{"MACHINERY AND PLANT", "40", "Block Nil", "(1,000)"}};
    s.total_label = "Net Capital Gain / (Loss)";
    s.total_text = "(1,000)";
    const auto doc = block_summary_report(run);
    EXPECT_EQ(doc.titles[0], "BLOCK WISE SUMMARY");
    EXPECT_EQ(column(doc, 3).heading, "Capital Gain / (Loss)");
    ASSERT_EQ(doc.rows.size(), 2u);
    EXPECT_EQ(doc.rows[0][2], "Block Nil");
    EXPECT_EQ(doc.rows[1][0], "Net Capital Gain / (Loss)");
    EXPECT_EQ(doc.rows[1][3], "(1,000)");
}

TEST(CalculationSheetReport, TheBooksSheetEndsWithItsGrandTotal) {
    auto run = books_run();
    using depreciation::CaSheetRowKind;
    run.books_sheet = {{CaSheetRowKind::Title, {"CALCULATION SHEET FOR DEPRECIATION ON FIXED ASSETS"}},
                       {CaSheetRowKind::ColumnHeadings, {"Particulars", "Date of Put to Use", "Cost"}},
                       {CaSheetRowKind::Figures, {"Lathe", "01/04/2020", "1,000.00"}},
                       {CaSheetRowKind::GrandTotal, {"Grand Total", "", "1,000.00"}}};
    const auto doc = calculation_sheet_report(run);
    EXPECT_EQ(doc.titles.at(0), "CALCULATION SHEET FOR DEPRECIATION ON FIXED ASSETS");
    EXPECT_EQ(headings(doc), (std::vector<std::string>{"Particulars", "Date of Put to Use", "Cost"}));
    ASSERT_EQ(doc.rows.size(), 2u);
    EXPECT_EQ(doc.rows[1][0], "Grand Total");
    EXPECT_TRUE(doc.bold_rows.at(1));
}

TEST(PrintedClient, EveryChartSheetAndSummaryCarriesTheClientsCodeAndName) {
    const PrintedClient client{"C001", "ACME ENGINEERS"};
    auto it = income_tax_run(2025);
    it.block_summary.title = "BLOCK WISE SUMMARY";
    auto books = books_run();
    books.books_sheet = {
        {depreciation::CaSheetRowKind::Title, {"CALCULATION SHEET FOR DEPRECIATION ON FIXED ASSETS"}}};
    const std::pair<std::string, ReportDocument> prints[] = {
        {"income-tax chart", income_tax_chart_report(it, client)},
        {"books chart", books_chart_report(books, client)},
        {"block-wise summary", block_summary_report(it, client)},
        {"income-tax sheet", calculation_sheet_report(it, client)},
        {"books sheet", calculation_sheet_report(books, client)},
    };
    for (const auto& [what, doc] : prints) {
        const auto& t = doc.titles;
        EXPECT_NE(std::find(t.begin(), t.end(), "Client: C001 - ACME ENGINEERS"), t.end()) << what;
    }
}

TEST(YearSpan, NamesTheFinancialYearByBothCalendarYears) {
    EXPECT_EQ(year_span(2025), "2024-25");
    EXPECT_EQ(year_span(2000), "1999-00");
    EXPECT_EQ(year_span(2010), "2009-10");
}

}  // namespace
}  // namespace brenlow::reg
