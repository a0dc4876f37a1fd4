#include <gtest/gtest.h>

#include "depreciation/income_tax.h"
#include "depreciation/income_tax_sheet.h"

namespace brenlow::depreciation {
namespace {

ItEntry opening(std::string block, double wdv) {
    ItEntry e;
    e.kind = EntryKind::Opening;
    e.block_id = std::move(block);
    e.wdv_cost = wdv;
    return e;
}

ItEntry addition(std::string block, double cost, std::string put_date, double addl_rate = 0) {
    ItEntry e;
    e.kind = EntryKind::Addition;
    e.block_id = std::move(block);
    e.wdv_cost = cost;
    e.put_date = std::move(put_date);
    e.addl_rate = addl_rate;
    return e;
}

ItEntry sold(ItEntry e, double amount, std::string date, double expenses = 0) {
    e.sale_amt = amount;
    e.sale_date = std::move(date);
    e.sale_exp = expenses;
    return e;
}

ItRunInput run_of(int year, std::vector<ItEntry> entries, bool interactive = true) {
    ItRunInput in;
    in.year = year;
    in.entries = std::move(entries);
    in.blocks = {
        {"3", "MACHINERY AND PLANT", 15}, {"2", "FURNITURE AND FITTINGS", 10}, {"10", "BUILDING", 10}};
    in.interactive = interactive;
    return in;
}

const ItBlockResult& only_block(const ItRunResult& r) {
    EXPECT_EQ(r.blocks.size(), 1u);
    return r.blocks.front();
}

// --- Half-rate line -----------------------------------------------------------------

TEST(IncomeTaxBlock, PlacesAnAdditionByTheHalfRateLineOfItsYear) {
    struct Case {
        const char* why;
        int year;
        double opening;
        const char* put;
        const char* line;
        double add1, add2, full, half;
    };
    const Case cases[] = {
        // F.Y. 2015-16: February 2016 has 29 days, the line is 05/10/2015.
        // 1,00,000 x 15% = 15,000; 40,000 x 7.5% = 3,000.
        {"on the line: half rate", 2016, 100000, "05/10/2015", "05/10/2015", 0, 40000, 15000, 3000},
        // 1,40,000 x 15% = 21,000.
        {"the day before the line: full rate", 2016, 100000, "04/10/2015", "05/10/2015", 40000, 0, 21000, 0},
        // F.Y. 2016-17: 04/10/2016 is already half rate. 1,000 x 7.5% = 75.
        {"04/10 in an ordinary year", 2017, 0, "04/10/2016", "04/10/2016", 0, 1000, 0, 75},
        {"a year that began in 2003 keeps 04/10 though February 2004 has 29 days", 2004, 0, "04/10/2003",
         "04/10/2003", 0, 1000, 0, 75},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        std::vector<ItEntry> entries;
        if (c.opening != 0) entries.push_back(opening("3", c.opening));
        entries.push_back(addition("3", c.add1 + c.add2, c.put));
        const auto r = calculate_income_tax(run_of(c.year, entries));
        const auto& b = only_block(r);
        EXPECT_EQ(r.half_rate_line.text(), c.line);
        EXPECT_EQ(b.addition1, c.add1);
        EXPECT_EQ(b.addition2, c.add2);
        EXPECT_EQ(b.depr_full, c.full);
        EXPECT_EQ(b.depr_half, c.half);
        EXPECT_EQ(r.rows.back().part, c.add2 != 0 ? BlockPart::HalfRate : BlockPart::FullRate);
    }
    const auto r =
        calculate_income_tax(run_of(2016, {opening("3", 100000), addition("3", 40000, "05/10/2015")}));
    EXPECT_EQ(only_block(r).DeprCalcDet,
              "WDV 1,00,000 x 15% = 15,000; addition 40,000 used < 180 days x 7.5% = 3,000");
}

// --- Rounding -----------------------------------------------------------------------

TEST(IncomeTaxBlock, RoundsHalfRupeesAwayFromZeroNotToEven) {
    // Full: 1,030 x 15% = 154.50 -> 155 (half-even would give 154).
    // Half: 1,020 x 7.5% = 76.50 -> 77 (half-even would give 76).
    const auto r =
        calculate_income_tax(run_of(2017, {opening("3", 1030), addition("3", 1020, "01/01/2017")}));
    const auto& b = only_block(r);
    EXPECT_EQ(b.depr_full, 155);
    EXPECT_EQ(b.depr_half, 77);
    EXPECT_DOUBLE_EQ(b.DeprN_RND_Adj, 1.0);   // 232 - 231
    EXPECT_DOUBLE_EQ(b.ClWDV_NoRND, 1819.0);  // 2,050 - 231
    EXPECT_DOUBLE_EQ(b.RndWdv, 1818.0);       // 2,050 - 232
}

// --- Deductions -----------------------------------------------------------------------

TEST(IncomeTaxBlock, SetsDeductionsAgainstTheFullRatePartFirstAndOnlyTheExcessAgainstHalfRateAdditions) {
    // Opening 50,000 + full-rate 20,000 = 70,000 and a half-rate 30,000.
    struct Case {
        double sale, ded1, ded2, full, half;
    };
    const Case cases[] = {
        // Sale 60,000 leaves 10,000 at 15% = 1,500; the half-rate 30,000 stays whole: 2,250.
        {60000, 60000, 0, 1500, 2250},
        // Sale 80,000 against 70,000: the excess 10,000 reduces the half-rate part to 20,000,
        // 20,000 x 7.5% = 1,500; nothing at full rate.
        {80000, 70000, 10000, 0, 1500},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sale);
        const auto r = calculate_income_tax(
            run_of(2017, {sold(opening("3", 50000), c.sale, "10/06/2016"), addition("3", 20000, "01/06/2016"),
                          addition("3", 30000, "01/12/2016")}));
        const auto& b = only_block(r);
        EXPECT_EQ(b.deduction1, c.ded1);
        EXPECT_EQ(b.deduction2, c.ded2);
        EXPECT_EQ(b.depr_full, c.full);
        EXPECT_EQ(b.depr_half, c.half);
        EXPECT_EQ(b.MaxDedDt, "10/06/2016");
    }
}

// --- Additional depreciation ---------------------------------------------------------

TEST(IncomeTaxBlock, ChargesAdditionalDepreciationAtFullAndHalfRateAndCarriesTheOtherHalf) {
    // F.Y. 2017-18, line 04/10/2017. Full 1,00,000: 15,000 normal + 20,000 additional.
    // Half 50,000: 3,750 normal + 5,000 additional; 5,000 more goes to next year.
    const auto r = calculate_income_tax(
        run_of(2018, {addition("3", 100000, "01/05/2017", 20), addition("3", 50000, "01/11/2017", 20)}));
    const auto& b = only_block(r);
    EXPECT_EQ(b.addl_full, 20000);
    EXPECT_EQ(b.addl_half, 5000);
    EXPECT_EQ(b.carried_half_out, 5000);
    EXPECT_EQ(b.TotDepr, 15000 + 3750 + 20000 + 5000);
    EXPECT_EQ(b.RndWdv, 150000 - 43750);
    EXPECT_EQ(r.rows[1].AddlDepOnNext, 50000);
    EXPECT_EQ(r.rows[0].AddlDepOnNext, 0);
}

TEST(IncomeTaxBlock, ChargesTheCarriedHalfBroughtFromLastYearWithItsNote) {
    // 1,06,250 x 15% = 15,937.50 -> 15,938; carried half 50,000 x 10% = 5,000.
    ItEntry e = opening("3", 106250);
    e.addl_dep_on = 50000;
    e.addl_rate = 20;
    const auto r = calculate_income_tax(run_of(2019, {e}));
    const auto& b = only_block(r);
    EXPECT_EQ(b.ADeprOpH, 5000);
    EXPECT_EQ(b.depr_full, 15938);
    EXPECT_EQ(b.TotDepr, 20938);
    EXPECT_EQ(
        b.carried_note,
        "Note: Additional depreciation of Rs. 5,000 relating to addition of assets during immediately "
        "preceding year put to use for less than 180 days is included in Col. 'Depreciation @ Normal Rate'.");
    EXPECT_TRUE(r.warnings.empty());
}

TEST(IncomeTaxBlock, LeavesTheCarriedHalfAsInputOnlyIn2016AndWarnsOnce) {
    ItEntry machine = opening("3", 10000);
    machine.addl_dep_on = 50000;
    machine.addl_rate = 20;
    ItEntry furniture = opening("2", 10000);
    furniture.addl_dep_on = 1000;
    furniture.addl_rate = 20;
    const auto r = calculate_income_tax(run_of(2016, {machine, furniture}));
    ASSERT_EQ(r.blocks.size(), 2u);
    EXPECT_EQ(r.blocks[1].DeprHalfOnOP, 5000);  // 50,000 x 10%
    EXPECT_EQ(r.rows[1].DeprHalfOnOP, 5000);
    for (const auto& b : r.blocks) {
        EXPECT_GT(b.DeprHalfOnOP, 0);
        EXPECT_EQ(b.ADeprOpH, 0);
    }
    ASSERT_EQ(r.warnings.size(), 1u);
    EXPECT_EQ(r.warnings[0].kind, WarningKind::CarriedHalfNotCalculated);
    EXPECT_TRUE(r.warnings[0].show);
    EXPECT_EQ(
        r.warnings[0].text,
        "Additional Depreciation (Remaining Half from Addition in Previous F.Y. used for less than 180 days) "
        "will not be calculated ! Only available for Input as Clarification is required from ITD for the "
        "applicability for A.Y. 2016-17 !");
}

TEST(IncomeTaxBlock, CarriesNoHalfForwardBeforeTheYearClosingIn2015) {
    // F.Y. 2013-14: half of 20% on 50,000 = 5,000 is charged, the rest is lost.
    const auto r = calculate_income_tax(run_of(2014, {addition("3", 50000, "01/11/2013", 20)}));
    const auto& b = only_block(r);
    EXPECT_EQ(b.addl_half, 5000);
    EXPECT_EQ(b.carried_half_out, 0);
    EXPECT_EQ(r.rows[0].AddlDepOnNext, 0);
}

TEST(IncomeTaxBlock, NeverWritesABlockBelowNilWithAdditionalDepreciation) {
    // A 100% block: 10,000 normal leaves nothing for the 20% additional.
    ItRunInput in = run_of(2017, {addition("P", 10000, "01/05/2016", 20)});
    in.blocks.push_back({"P", "MACHINERY AND PLANT", 100});
    const auto r = calculate_income_tax(in);
    const auto& b = only_block(r);
    EXPECT_EQ(b.depr_full, 10000);
    EXPECT_EQ(b.addl_full, 0);
    EXPECT_EQ(b.RndWdv, 0);
}

TEST(IncomeTaxBlock, GivesNoAdditionalDepreciationOnAnAdditionSoldInTheYear) {
    const auto r = calculate_income_tax(run_of(
        2018, {opening("3", 100000), sold(addition("3", 50000, "01/05/2017", 20), 10000, "01/02/2018")}));
    EXPECT_EQ(only_block(r).addl_full, 0);
}

// --- Warnings -------------------------------------------------------------------------

TEST(IncomeTaxBlock, WarnsOfNegativeOpeningWdvOnceAndGoesOn) {
    const auto r =
        calculate_income_tax(run_of(2017, {opening("3", -100), opening("3", -200), opening("3", 10000)}));
    ASSERT_EQ(r.warnings.size(), 1u);
    EXPECT_EQ(r.warnings[0].text, "Please check Entries with Negative Opening WDV !");
    EXPECT_EQ(only_block(r).depr_full, 1455);  // 9,700 x 15%
}

TEST(IncomeTaxBlock, MarksWarningsNotToBeShownWhenTheRunIsNotInteractive) {
    const auto r = calculate_income_tax(run_of(2017, {opening("3", -100)}, false));
    ASSERT_EQ(r.warnings.size(), 1u);
    EXPECT_FALSE(r.warnings[0].show);
}

TEST(IncomeTaxBlock, EndsWithNoAssetsAvailableWhenNothingCountsUnderTheAct) {
    const auto r = calculate_income_tax(run_of(2017, {opening("-1", 5000), opening("99", 5000)}));
    EXPECT_TRUE(r.no_assets);
    EXPECT_TRUE(r.blocks.empty());
    ASSERT_EQ(r.warnings.size(), 1u);
    EXPECT_EQ(r.warnings[0].text, "No Assets Available !");
}

// --- Block nil ------------------------------------------------------------------------

TEST(IncomeTaxBlock, TurnsSalesAboveTheBlockIntoACapitalGainLessExpenses) {
    // 10,000 - 25,000 = (15,000); gain 15,000 - expenses 1,000 = 14,000.
    const auto r = calculate_income_tax(
        run_of(2017, {sold(opening("3", 10000), 25000, "01/09/2016", 1000), opening("3", 0)}));
    const auto& b = only_block(r);
    EXPECT_TRUE(b.block_nil);
    EXPECT_EQ(b.status, "BLOCKNIL");
    EXPECT_EQ(b.TotDepr, 0);
    EXPECT_EQ(b.RndWdv, 0);
    EXPECT_EQ(b.profit_loss, 14000);
    const auto summary = block_wise_summary(r);
    EXPECT_EQ(summary.rows[0].status, "Block Nil");
    EXPECT_EQ(summary.rows[0].gain_text, "14,000");
    EXPECT_EQ(summary.total_label, "Net Capital Gain / (Loss)");
}

TEST(IncomeTaxBlock, EndsABlockWithEveryAssetSoldAsACapitalLossInBrackets) {
    // 1,00,000 sold for 30,000 with 500 expenses: the block ceases, loss (70,500).
    const auto r = calculate_income_tax(run_of(2017, {sold(opening("2", 100000), 30000, "01/09/2016", 500)}));
    const auto& b = only_block(r);
    EXPECT_TRUE(b.block_nil);
    EXPECT_EQ(b.profit_loss, -70500);
    EXPECT_EQ(b.TotDepr, 0);
    EXPECT_EQ(block_wise_summary(r).rows[0].gain_text, "(70,500)");
}

TEST(IncomeTaxBlock, KeepsAnAdditionWithoutDateOfPutToUseInTheBlockWithoutDepreciation) {
    // 10,000 x 15% = 1,500; the 5,000 not put to use goes to the closing WDV untouched.
    const auto r = calculate_income_tax(run_of(2017, {opening("3", 10000), addition("3", 5000, "")}));
    const auto& b = only_block(r);
    EXPECT_EQ(b.addition3, 5000);
    EXPECT_EQ(b.TotDepr, 1500);
    EXPECT_EQ(b.RndWdv, 13500);
}

// --- Grid and order ---------------------------------------------------------------------

TEST(IncomeTaxBlock, OrdersBlocksByBlockIdAndKeepsRowsWithTheirBlock) {
    const auto r = calculate_income_tax(
        run_of(2017, {opening("10", 1), opening("3", 2), opening("2", 3), opening("3", 4)}));
    ASSERT_EQ(r.blocks.size(), 3u);
    EXPECT_EQ(r.blocks[0].block_id, "2");
    EXPECT_EQ(r.blocks[1].block_id, "3");
    EXPECT_EQ(r.blocks[2].block_id, "10");
    EXPECT_EQ(r.rows[1].entry, 1u);
    EXPECT_EQ(r.rows[2].entry, 3u);
    EXPECT_EQ(r.rows[2].block, 1u);
}

TEST(IncomeTaxBlock, GroupsRowsByBlockAlsoWhenTheBlocksComeInOrder) {
    const auto r = calculate_income_tax(run_of(2017, {opening("2", 1), opening("3", 2), opening("2", 3)}));
    ASSERT_EQ(r.rows.size(), 3u);
    EXPECT_EQ(r.rows[0].entry, 0u);
    EXPECT_EQ(r.rows[1].entry, 2u);
    EXPECT_EQ(r.rows[2].entry, 1u);
    EXPECT_EQ(r.rows[2].block, 1u);
}

TEST(IncomeTaxBlock, KeepsRowsInRegisterOrderInsideOneBlock) {
    const auto r = calculate_income_tax(
        run_of(2017, {opening("3", 1), addition("3", 2, "01/05/2016"), opening("3", 3)}));
    ASSERT_EQ(r.rows.size(), 3u);
    for (std::size_t i = 0; i < r.rows.size(); ++i) {
        EXPECT_EQ(r.rows[i].entry, i);
        EXPECT_EQ(r.rows[i].block, 0u);
    }
}

TEST(IncomeTaxBlock, ARunForTheBlocksAloneGivesTheSameBlocksAndNoRows) {
    const std::vector<ItEntry> entries = {opening("10", 5000), opening("3", 200000),
                                          addition("3", 40000, "05/10/2016", 20),
                                          sold(opening("2", 3000), 5000, "01/06/2016", 100)};
    const auto kept = calculate_income_tax(run_of(2017, entries));
    auto in = run_of(2017, entries);
    in.keep_rows = false;
    const auto alone = calculate_income_tax(in);
    EXPECT_TRUE(alone.rows.empty());
    EXPECT_EQ(kept.rows.size(), 4u);
    EXPECT_FALSE(alone.no_assets);
    ASSERT_EQ(alone.blocks.size(), kept.blocks.size());
    for (std::size_t k = 0; k < kept.blocks.size(); ++k) {
        EXPECT_EQ(alone.blocks[k].block_id, kept.blocks[k].block_id);
        EXPECT_EQ(alone.blocks[k].TotDepr, kept.blocks[k].TotDepr);
        EXPECT_EQ(alone.blocks[k].RndWdv, kept.blocks[k].RndWdv);
        EXPECT_EQ(alone.blocks[k].profit_loss, kept.blocks[k].profit_loss);
        EXPECT_EQ(alone.blocks[k].DeprCalcDet, kept.blocks[k].DeprCalcDet);
    }
    EXPECT_EQ(alone.net_capital_gain, kept.net_capital_gain);
}

TEST(IncomeTaxBlock, ARunForTheBlocksAloneStillSaysWhenNothingCounts) {
    auto in = run_of(2017, {opening("-1", 1000)});
    in.keep_rows = false;
    const auto r = calculate_income_tax(in);
    EXPECT_TRUE(r.no_assets);
    ASSERT_EQ(r.warnings.size(), 1u);
    EXPECT_EQ(r.warnings[0].text, "No Assets Available !");
}

TEST(IncomeTaxBlock, AnswersBlockFiguresUnderTheGridKeys) {
    const auto r =
        calculate_income_tax(run_of(2017, {opening("3", 10000), addition("3", 2000, "01/05/2016")}));
    const auto& b = only_block(r);
    EXPECT_EQ(block_figure(b, "Opening WDV"), 10000);
    EXPECT_EQ(block_figure(b, "Addition1"), 2000);
    EXPECT_EQ(block_figure(b, "Balance1"), 12000);
    EXPECT_EQ(block_figure(b, "Closing WDV"), 10200);
    EXPECT_EQ(block_figure(b, "No. of Assets Not Sold/Deducted"), 2);
}

TEST(IncomeTaxBlock, WorksOutProfitOnSalePerAssetBeforeTheBlock) {
    const auto r = calculate_income_tax(
        run_of(2017, {sold(opening("3", 10000), 12000, "01/06/2016", 300), opening("3", 1)}));
    EXPECT_EQ(r.rows[0].ProfitOnSale, 1700);
}

}  // namespace
}  // namespace brenlow::depreciation

namespace brenlow::depreciation {
namespace {

TEST(IncomeTaxSheet, PrintsTheBlockLinesInSheetOrderWithTheCarriedHalfInsideNormal) {
    // WDV 1,00,000 (carried half on 50,000 at 20% = 5,000), addition 40,000 on 01/12/2018,
    // sale 10,000. Full part 90,000 x 15% = 13,500; half 40,000 x 7.5% = 3,000.
    ItEntry e = opening("3", 100000);
    e.addl_dep_on = 50000;
    e.addl_rate = 20;
    const auto r = calculate_income_tax(
        run_of(2019, {sold(e, 10000, "01/06/2018"), addition("3", 40000, "01/12/2018")}));
    const auto lines = block_sheet_lines(only_block(r));
    ASSERT_EQ(lines.size(), 11u);
    EXPECT_EQ(lines[0].label, "Written Down Value");
    EXPECT_EQ(lines[5].label, "Balance");
    EXPECT_EQ(lines[5].amount, 130000);
    EXPECT_EQ(lines[7].label, "Amount on which Depreciation to be Calculated");
    EXPECT_EQ(lines[7].amount, 130000);
    EXPECT_EQ(lines[8].label, "Depreciation @ Normal Rate");
    EXPECT_EQ(lines[8].amount, 13500 + 3000 + 5000);
    EXPECT_EQ(lines[10].label, "Written Down Value After Adjustments");
    EXPECT_EQ(lines[10].amount, 130000 - 21500);
}

TEST(IncomeTaxSheet, LabelsFullAndHalfRates) {
    EXPECT_EQ(normal_rate_label(15, false), "Normal @ 15% Full Rate");
    EXPECT_EQ(normal_rate_label(15, true), "Normal @ Half Rate [7.5%]");
    EXPECT_EQ(additional_rate_label(20, true), "Additional @ Half Rate [10%]");
}

}  // namespace
}  // namespace brenlow::depreciation
