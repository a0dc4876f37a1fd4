#include "depreciation/chart.h"

#include <gtest/gtest.h>

namespace brenlow::depreciation {
namespace {

TEST(ChartGroup, PlacesEachBlockByItsGroupNameAndRate) {
    EXPECT_EQ(chart_group("MACHINERY AND PLANT", 15), 3);
    EXPECT_EQ(chart_group("MACHINERY AND PLANT", 60), 3);  // an older rate
    EXPECT_EQ(chart_group("PLANT AND MACHINARY", 30), 3);  // the block master's spelling
    EXPECT_EQ(chart_group("FURNITURE AND FITTINGS", 10), 2);
    EXPECT_EQ(chart_group("BUILDING", 5), 1);
    EXPECT_EQ(chart_group("BUILDING", 100), 1);
    EXPECT_EQ(chart_group("INTANGIBLE ASSETS", 25), 4);
    EXPECT_EQ(chart_group("SHIPS", 20), 5);
    EXPECT_EQ(chart_group("COMPUTERS", 40), 6);
}

TEST(ChartGroup, SendsARateOutsideTheGroupsListToOtherBlocks) {
    EXPECT_EQ(chart_group("BUILDING", 7), 6);
    EXPECT_EQ(chart_group("MACHINERY AND PLANT", 35), 6);
}

TEST(ChartGroup, RecognisesLandFirstAndGivesItNoGroup) {
    EXPECT_EQ(chart_group("LAND", 0), 0);
    EXPECT_EQ(chart_group(" land ", 0), 0);
}

ItRunResult run_with(std::vector<ItEntry> entries) {
    ItRunInput in;
    in.year = 2018;
    in.blocks = {{"1", "LAND", 0}, {"3", "MACHINERY AND PLANT", 15}, {"9", "FURNITURE AND FITTINGS", 10}};
    in.entries = std::move(entries);
    return calculate_income_tax(in);
}

ItEntry entry(EntryKind kind, std::string block, double amount, std::string put = "", double addl = 0) {
    ItEntry e;
    e.kind = kind;
    e.block_id = std::move(block);
    e.wdv_cost = amount;
    e.put_date = std::move(put);
    e.addl_rate = addl;
    return e;
}

TEST(IncomeTaxChart, WritesOneRowPerBlockInTheTableColumnsAndLeavesLandOut) {
    // F.Y. 2017-18, line 04/10/2017. Machinery: WDV 1,00,000; full 50,000 with 20% additional;
    // half 20,000 with 20% additional.
    // DeprF 1,50,000 x 15% = 22,500; DeprH 20,000 x 7.5% = 1,500;
    // ADeprF 50,000 x 20% = 10,000; ADeprH 20,000 x 10% = 2,000; total 36,000.
    const auto run = run_with({entry(EntryKind::Opening, "1", 900000), entry(EntryKind::Opening, "3", 100000),
                               entry(EntryKind::Addition, "3", 50000, "01/05/2017", 20),
                               entry(EntryKind::Addition, "3", 20000, "01/01/2018", 20)});
    const auto rows = chart_rows_from_blocks("C001", 2018, run);
    ASSERT_EQ(rows.size(), 1u);
    const ChartRow& r = rows[0];
    EXPECT_EQ(r.Code_No, "C001");
    EXPECT_EQ(r.FYr, 2018);
    EXPECT_EQ(r.Grp, 3);
    EXPECT_EQ(r.Rate, 15);
    EXPECT_EQ(r.Wdv, 100000);
    EXPECT_EQ(r.Add1, 50000);
    EXPECT_EQ(r.FullAmt, 150000);
    EXPECT_EQ(r.Add2, 20000);
    EXPECT_EQ(r.HalfAmt, 20000);
    EXPECT_EQ(r.DeprF, 22500);
    EXPECT_EQ(r.DeprH, 1500);
    EXPECT_EQ(r.ADeprF, 10000);
    EXPECT_EQ(r.ADeprH, 2000);
    EXPECT_EQ(r.TotDep, 36000);
    EXPECT_EQ(r.WdvCl, 170000 - 36000);
}

TEST(IncomeTaxChart, PutsTheRemainingHalfBroughtForwardInADeprOpHAndCountsItAsAdditional) {
    // Last year's half-rate addition of 50,000 at 20%: 50,000 x 10% = 5,000 this year.
    ItEntry e = entry(EntryKind::Opening, "3", 100000);
    e.addl_dep_on = 50000;
    e.addl_rate = 20;
    const auto rows = chart_rows_from_blocks("C001", 2018, run_with({e}));
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].ADeprOpH, 5000);
    EXPECT_EQ(rows[0].TotDep, 15000 + 5000);
}

TEST(IncomeTaxChart, CarriesTheCapitalGainOfANilBlock) {
    ItEntry sold = entry(EntryKind::Opening, "9", 10000);
    sold.sale_amt = 16000;
    sold.sale_date = "01/06/2017";
    sold.sale_exp = 500;
    const auto rows = chart_rows_from_blocks("C001", 2018, run_with({sold}));
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].Grp, 2);
    EXPECT_EQ(rows[0].Cons1, 16000);
    EXPECT_EQ(rows[0].CG, 5500);
    EXPECT_EQ(rows[0].Exp, 500);
    EXPECT_EQ(rows[0].WdvCl, 0);
    EXPECT_EQ(rows[0].TotDep, 0);
}

TEST(IncomeTaxChart, FollowsABlockWithItsRateMinus40RowForAdditionsNotPutToUse) {
    const auto rows = chart_rows_from_blocks(
        "C001", 2018,
        run_with({entry(EntryKind::Opening, "3", 10000), entry(EntryKind::Addition, "3", 7000, "")}));
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].WdvCl, 10000 - 1500 + 7000);
    ChartRow apart;
    apart.Code_No = "C001";
    apart.FYr = 2018;
    apart.Grp = 3;
    apart.Rate = -40;
    apart.Wdv = 7000;
    EXPECT_EQ(rows[1], apart);  // the amount in Wdv, nil in every other column
}

TEST(IncomeTaxChart, TheHandEditedChartIsUsedOnlyWhenAllowedAndMandepIsOne) {
    EXPECT_TRUE(use_hand_edited_chart(true, "1"));
    EXPECT_FALSE(use_hand_edited_chart(true, ""));
    EXPECT_FALSE(use_hand_edited_chart(true, "0"));
    EXPECT_FALSE(use_hand_edited_chart(false, "1"));
}

}  // namespace
}  // namespace brenlow::depreciation
