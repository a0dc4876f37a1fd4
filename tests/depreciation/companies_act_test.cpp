#include "depreciation/companies_act.h"

#include <gtest/gtest.h>

#include "depreciation/companies_act_sheet.h"

namespace brenlow::depreciation {
namespace {

// --- Auto-calculated rate -----------------------------------------------------------

TEST(CompaniesActRate, WorksWdvOnCostToTwoDecimals) {
    // (1 - (5,000 / 1,00,000)^(1/10)) x 100 = 25.8866...
    const auto r = auto_rate(100000, 5000, 10, CaMethod::WDV, ResidualBasis::Cost);
    ASSERT_TRUE(r);
    EXPECT_EQ(r->text, "25.89");
}

TEST(CompaniesActRate, WorksWdvOnCarryingAmountToFourDecimals) {
    const auto r = auto_rate(100000, 5000, 10, CaMethod::WDV, ResidualBasis::CarryingAmount);
    ASSERT_TRUE(r);
    EXPECT_EQ(r->text, "25.8866");
    EXPECT_DOUBLE_EQ(r->value, 25.8866);
}

TEST(CompaniesActRate, WorksSlmAsCostLessResidualOverLife) {
    // (1,00,000 - 5,000) / 1,00,000 x 100 / 10 = 9.50
    const auto r = auto_rate(100000, 5000, 10, CaMethod::SLM, ResidualBasis::Cost);
    ASSERT_TRUE(r);
    EXPECT_EQ(r->text, "9.50");
}

TEST(CompaniesActRate, ComputesNoWdvRateWithoutResidualValueButAnSlmOne) {
    EXPECT_FALSE(auto_rate(100000, 0, 10, CaMethod::WDV, ResidualBasis::Cost));
    const auto slm = auto_rate(100000, 0, 10, CaMethod::SLM, ResidualBasis::Cost);
    ASSERT_TRUE(slm);
    EXPECT_EQ(slm->text, "10.00");
}

TEST(CompaniesActRate, ComputesNothingWithoutCostOrLifeOrWithResidualAtCost) {
    EXPECT_FALSE(auto_rate(0, 0, 10, CaMethod::SLM, ResidualBasis::Cost));
    EXPECT_FALSE(auto_rate(100000, 5000, 0, CaMethod::SLM, ResidualBasis::Cost));
    EXPECT_FALSE(auto_rate(100000, 100000, 10, CaMethod::SLM, ResidualBasis::Cost));
}

// --- Days -----------------------------------------------------------------------------

TEST(CompaniesActDays, CountsTheFirstDayOfTheYearAndAllOfALeapYear) {
    EXPECT_EQ(depreciation_days(2016, Date{2015, 4, 1}, std::nullopt), 366);  // F.Y. 2015-16
    EXPECT_EQ(depreciation_days(2017, Date{2016, 4, 1}, std::nullopt), 365);
    EXPECT_EQ(depreciation_days(2017, Date{2010, 6, 15}, std::nullopt), 365);  // held from before the year
}

TEST(CompaniesActDays, CountsOneDayForAnAdditionPutToUseOnTheLastDay) {
    EXPECT_EQ(depreciation_days(2016, Date{2016, 3, 31}, std::nullopt), 1);
    EXPECT_EQ(days_text(1), "Calculated for 1 Day");
    EXPECT_EQ(days_text(2), "Calculated for 2 Days");
}

TEST(CompaniesActDays, NamesTheShiftOfAShiftRow) {
    EXPECT_EQ(shift_days_text(91, 2), "Calculated for 91 Days (Double Shift)");
    EXPECT_EQ(shift_days_text(1, 3), "Calculated for 1 Day (Triple Shift)");
}

TEST(CompaniesActDays, LeavesTheDayOfSaleToTheBuyer) {
    EXPECT_EQ(depreciation_days(2016, Date{2015, 4, 1}, Date{2015, 4, 1}), 0);
    EXPECT_EQ(depreciation_days(2016, Date{2015, 4, 1}, Date{2015, 4, 2}), 1);
    // 01/04/2015 to 29/02/2016 held, sold 01/03/2016: 366 - 31 = 335.
    EXPECT_EQ(depreciation_days(2016, Date{2015, 4, 1}, Date{2016, 3, 1}), 335);
}

TEST(CompaniesActDays, GivesNoDaysToAnAdditionWithoutDateOfPutToUse) {
    EXPECT_EQ(depreciation_days(2016, std::nullopt, std::nullopt), 0);
}

// --- One asset ------------------------------------------------------------------------

CaEntry slm_addition(double cost, double rate, std::string put) {
    CaEntry e;
    e.kind = EntryKind::Addition;
    e.particulars = "Lathe";
    e.method = CaMethod::SLM;
    e.cost = cost;
    e.life_yrs = 10;
    e.rate_auto = false;
    e.rate = rate;
    e.put_date = std::move(put);
    return e;
}

CaEntry slm_opening(double cost, double op_dep, double rate) {
    CaEntry e = slm_addition(cost, rate, "01/04/2012");
    e.kind = EntryKind::Opening;
    e.op_dep = op_dep;
    return e;
}

CaRunInput options(int year) {
    CaRunInput in;
    in.year = year;
    in.interactive = true;
    return in;
}

CaAssetResult one(const CaEntry& e, const CaRunInput& opt) {
    WarningLog log(true);
    return calculate_asset(e, opt, log);
}

TEST(CompaniesActAsset, ProratesAnAdditionByItsDaysInTheYear) {
    // 1,00,000 x 9.5% = 9,500 a year; 01/10/2016 to 31/03/2017 is 182 of 365 days:
    // 9,500 x 182 / 365 = 4,736.9863 -> 4,736.99.
    const auto r = one(slm_addition(100000, 9.5, "01/10/2016"), options(2017));
    EXPECT_EQ(r.days, 182);
    EXPECT_DOUBLE_EQ(r.depreciation, 4736.99);
    EXPECT_DOUBLE_EQ(r.closing, 100000 - 4736.99);
    EXPECT_EQ(r.DeprDet, "SLM 1,00,000.00 x 9.5% x 182/365 days = 4,736.99");
}

TEST(CompaniesActAsset, RoundsPaiseHalvesToEven) {
    // 1,001 x 12.5% = 125.125 exactly: to even gives 125.12 (away from zero would be 125.13).
    const auto r = one(slm_addition(1001, 12.5, "01/04/2016"), options(2017));
    EXPECT_DOUBLE_EQ(r.depreciation, 125.12);
}

TEST(CompaniesActAsset, RoundsToWholeRupeesHalvesAwayFromZeroWhenAsked) {
    auto opt = options(2017);
    opt.round_to_rupees = true;
    // 1,005 x 10% = 100.50 -> 101.
    EXPECT_DOUBLE_EQ(one(slm_addition(1005, 10, "01/04/2016"), opt).depreciation, 101);
}

TEST(CompaniesActAsset, WritesAnOlderAssetOffOverItsRemainingLife) {
    // Put to use 15/06/2010, life 10: 6 years left on 01/04/2014. Carrying amount basis:
    // 1,00,000 - 40,000 = 60,000, residual 3,000; SLM (60,000 - 3,000) / 60,000 x 100 / 6
    // = 15.8333%; 60,000 x 15.8333% = 9,499.98.
    CaEntry e = slm_opening(100000, 40000, 0);
    e.rate_auto = true;
    e.put_date = "15/06/2010";
    e.basis = ResidualBasis::CarryingAmount;
    e.dep_calc_ca = 40000;
    const auto r = one(e, options(2015));
    EXPECT_EQ(r.remaining_life, 6);
    EXPECT_EQ(r.rate_text, "15.8333");
    EXPECT_DOUBLE_EQ(r.residual, 3000);
    EXPECT_DOUBLE_EQ(r.depreciation, 9499.98);
}

TEST(CompaniesActAsset, AdjustsTheCarryingAmountAboveResidualToProfitAndLossWhenNoLifeRemains) {
    // Put to use 2000 with a life of 10: nothing left. 1,00,000 - 90,000 = 10,000 carried,
    // residual 5,000: 5,000 adjusted, none depreciated.
    CaEntry e = slm_opening(100000, 90000, 10);
    e.put_date = "15/06/2000";
    const auto r = one(e, options(2016));
    EXPECT_EQ(r.depreciation, 0);
    EXPECT_DOUBLE_EQ(r.adj_pl, 5000);
    EXPECT_EQ(r.adj_rs, 0);
    EXPECT_DOUBLE_EQ(r.closing, 5000);
}

TEST(CompaniesActAsset, TakesTheNilLifeAdjustmentToRetainedEarningsOnlyInTheTransitionYear) {
    CaEntry e = slm_opening(100000, 90000, 10);
    e.put_date = "15/06/2000";
    auto opt = options(2015);
    opt.nil_life_to = RemLifeNilTo::RetainedEarnings;
    EXPECT_DOUBLE_EQ(one(e, opt).adj_rs, 5000);
    opt.year = 2016;
    EXPECT_DOUBLE_EQ(one(e, opt).adj_pl, 5000);
}

TEST(CompaniesActAsset, AddsHalfAgainForDoubleShiftDays) {
    // 1,00,000 x 10% = 10,000; double shift 01/04 to 30/06/2016 = 91 days:
    // 10,000 x 50% x 91 / 365 = 1,246.5753 -> 1,246.58.
    CaEntry e = slm_opening(100000, 0, 10);
    e.shift_det = "01/04/2016,30/06/2016,2|01/07/2016,31/03/2017,1";
    const auto r = one(e, options(2017));
    EXPECT_DOUBLE_EQ(r.extra_shift, 1246.58);
    EXPECT_DOUBLE_EQ(r.depreciation, 11246.58);
}

TEST(CompaniesActAsset, RefusesExtraShiftForAnNesdGroupOncePerRun) {
    CaEntry e = slm_opening(100000, 0, 10);
    e.shift_det = "01/04/2016,30/06/2016,3";
    e.nesd = true;
    auto in = options(2017);
    in.entries = {e, e};
    const auto run = calculate_companies_act(in);
    EXPECT_DOUBLE_EQ(run.assets[0].depreciation, 10000);
    ASSERT_EQ(run.warnings.size(), 1u);
    EXPECT_EQ(run.warnings[0].text,
              "'No Extra Shift Depreciation' is permitted for selected 'Asset Group' !");
}

TEST(CompaniesActAsset, ChargesDepreciationUpToTheSaleAndWorksOutProfit) {
    // Held 01/04 to 30/09/2016 = 183 days: 10,000 x 183 / 365 = 5,013.70.
    // Carrying at sale 94,986.30; 97,000 - 1,000 - 94,986.30 = 1,013.70 profit.
    CaEntry e = slm_opening(100000, 0, 10);
    e.sale_date = "01/10/2016";
    e.sale_amt = 97000;
    e.sale_exp = 1000;
    const auto r = one(e, options(2017));
    EXPECT_DOUBLE_EQ(r.dep_on_deduction, 5013.70);
    EXPECT_DOUBLE_EQ(r.profit_loss, 1013.70);
    EXPECT_EQ(r.closing, 0);
}

TEST(CompaniesActAsset, NeverDepreciatesBelowTheResidualValue) {
    // Carrying 6,000, residual 5% of 1,00,000 = 5,000: only 1,000 is left to charge.
    const auto r = one(slm_opening(100000, 94000, 10), options(2017));
    EXPECT_DOUBLE_EQ(r.depreciation, 1000);
}

TEST(CompaniesActAsset, KeepsTheDepreciationTypedInByHand) {
    CaEntry e = slm_opening(100000, 0, 10);
    e.auto_depr = false;
    e.manual_depr = 1234;
    const auto r = one(e, options(2017));
    EXPECT_TRUE(r.manual);
    EXPECT_EQ(r.depreciation, 1234);
}

// --- Run and sheet ----------------------------------------------------------------------

TEST(CompaniesActSheet, ShowsNoAssetsAvailableForAnEmptyRegister) {
    const auto in = options(2017);
    const auto sheet = companies_act_sheet(in, calculate_companies_act(in));
    EXPECT_EQ(sheet.back().cells[0], "No Assets Available.");
}

TEST(CompaniesActSheet, GroupsEntriesAndEndsWithGrandTotal) {
    auto in = options(2017);
    CaEntry land = slm_opening(500000, 0, 0);
    land.asset_class = AssetClass::NonDepreciable;
    land.method = CaMethod::None;
    in.entries = {land, slm_addition(100000, 9.5, "01/10/2016")};
    const auto run = calculate_companies_act(in);
    EXPECT_DOUBLE_EQ(run.totals.depreciation, 4736.99);
    const auto sheet = companies_act_sheet(in, run);
    EXPECT_EQ(sheet[0].cells[0], "CALCULATION SHEET FOR DEPRECIATION ON FIXED ASSETS");
    EXPECT_EQ(sheet[1].cells[1], "F.Y. 2016-17");
    EXPECT_EQ(sheet[3].cells[0], "Tangible Assets");  // tangible first, whatever the entry order
    EXPECT_EQ(sheet[4].cells[3], "Useful Life (Years): 10; Rate (SLM): 9.50");
    EXPECT_EQ(sheet[6].cells[0], "Non-Depreciable Assets");
    EXPECT_EQ(sheet.back().kind, CaSheetRowKind::GrandTotal);
    EXPECT_EQ(sheet.back().cells[0], "Grand Total");
}

TEST(CompaniesActRemainingLife, CaptionsTheRemainingLifeAtTheYearStart) {
    EXPECT_EQ(remaining_life_text(2015, 10), "Remaining Life As on 01/04/2014 out of Total Life: 10 Years");
}

}  // namespace
}  // namespace brenlow::depreciation
