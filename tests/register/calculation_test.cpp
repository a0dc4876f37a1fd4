// The calculation run of a client's year on both backends, against figures worked by
// hand. F.Y. 2024-25 (register year 2025): the half-rate line is 04/10/2024.

#include "register/calculation.h"

#include <gtest/gtest.h>

#include "register/register_options.h"
#include "store/chart_store.h"
#include "store/client_store.h"
#include "store/masters_store.h"
#include "store/register_store.h"
#include "support/test_databases.h"

namespace brenlow::reg {
namespace {

constexpr const char* kCode = "C001";
constexpr int kYear = 2025;

class Calculation : public test::BackendTest {
protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped()) return;
        store::ensure_schema(db(), BRENLOW_TEST_DATA_DIR);
        store::create_client_year(db(), kCode, kYear, "ACME", 3);
        store::RegisterStore(db(), kCode, kYear).ensure_tables();
    }

    long group(const std::string& name, const std::string& block_it, double rate, double addl = 0) {
        store::AssetGroupRow g;
        g.Yr = kYear;
        g.Part = name;
        g.BlockIdIT = block_it;
        g.RateIT = rate;
        g.AddlRateIT = addl;
        g.BlockFA = -1;
        g.BlockIdCL = "-1";
        g.LifeYrs = 10;
        g.RateSLM = 9.5;
        g.RateWDV = 25.89;
        return store::add_asset_group(db(), g);
    }
    void opening(long grp, double wdv_it, const std::string& sale_date = "", double sale = 0,
                 double exp = 0) {
        store::OpeningRow o;
        o.IdFAGM = grp;
        o.Part = "Opening asset";
        o.PutDate = "01/04/2015";
        o.CostWdv = wdv_it;
        o.WdvIT = wdv_it;
        o.SaleDate = sale_date;
        o.SaleAmt = sale;
        o.SaleExp = exp;
        store::RegisterStore(db(), kCode, kYear).insert_opening(o);
    }
    void addition(long grp, const std::string& put, double cost, double addl = 0) {
        store::AdditionRow a;
        a.IdFAGM = grp;
        a.Part = "Addition put to use " + put;
        a.PutDate = put;
        a.AccDate = put;
        a.PurAmt = cost;
        a.AddlDepRT = addl;
        store::RegisterStore(db(), kCode, kYear).insert_addition(a);
    }
    CalculationResult run(Mode mode = Mode::DEP_IT, CalculationOptions options = {}) {
        return run_calculation(db(), kCode, kYear, mode, false, options);
    }
    std::vector<depreciation::ChartRow> stored(store::ChartTable t = store::ChartTable::TmpDepChart) {
        return store::read_chart(db(), t, kCode, kYear);
    }
    static depreciation::ChartRow only_row(const std::vector<depreciation::ChartRow>& rows, int grp,
                                           double rate) {
        const depreciation::ChartRow* found = nullptr;
        for (const auto& r : rows)
            if (r.Grp == grp && r.Rate == rate) {
                EXPECT_EQ(found, nullptr) << "two rows of group " << grp << " at " << rate;
                found = &r;
            }
        if (!found) throw std::runtime_error("no chart row of group " + std::to_string(grp));
        return *found;
    }
};

TEST_P(Calculation, AnAdditionOnTheLineTakesHalfTheRateAndOneTheDayBeforeTakesTheFullRate) {
    const long plant = group("PLANT", "3-15", 15);
    opening(plant, 100000);
    addition(plant, "03/10/2024", 10000);
    addition(plant, "04/10/2024", 1000);
    run();
    const auto& r = only_row(stored(), 3, 15);
    EXPECT_EQ(r.Wdv, 100000);
    EXPECT_EQ(r.Add1, 10000);
    EXPECT_EQ(r.Add2, 1000);
    EXPECT_EQ(r.DeprF, 16500);  // 1,10,000 x 15%
    EXPECT_EQ(r.DeprH, 75);     // 1,000 x 7.5%
    EXPECT_EQ(r.WdvCl, 111000 - 16575);
}

TEST_P(Calculation, AnAdditionPartlyDeductedKeepsItsAdditionalDepreciationAndItsBooksValue) {
    // 1,00,000 put to use 01/06/2024 with additional depreciation at 20%; 30,000 of it
    // deducted (a subsidy received later): the block loses 30,000 at full rate, and the
    // asset, still held, keeps its additional depreciation on what is left of it (a sale
    // would have taken it away).
    const long plant = group("PLANT", "3-15", 15, 20);
    store::AdditionRow a;
    a.IdFAGM = plant;
    a.Part = "Press";
    a.PutDate = a.AccDate = "01/06/2024";
    a.PurAmt = 100000;
    a.AddlDepRT = 20;
    a.LifeYrs = 15;
    a.RateFACL = 10;
    a.SaleDate = "01/12/2024";
    a.SaleAmt = 30000;
    AdditionOpts opts;
    opts.PartDed = true;
    a.OthOpts = opts.compose();
    store::RegisterStore(db(), kCode, kYear).insert_addition(a);
    run();
    const auto& r = only_row(stored(), 3, 15);
    EXPECT_EQ(r.DeprF, 10500);   // 70,000 x 15%
    EXPECT_EQ(r.ADeprF, 14000);  // 70,000 x 20%
    EXPECT_EQ(r.WdvCl, 70000 - 24500);
    CalculationOptions keep;
    keep.keep_entries = true;
    const auto books = run(Mode::DEP_FA, keep);
    ASSERT_EQ(books.books_assets.size(), 1u);
    EXPECT_EQ(books.books_assets[0].DedAmt, 0);  // the books keep the asset whole
    EXPECT_GT(books.books_assets[0].ClBal, 0);
}

TEST_P(Calculation, AnAdditionCountsAtItsNetAmountAfterCreditsDifferencesAndSubsidy) {
    const long plant = group("PLANT", "3-15", 15);
    store::AdditionRow a;
    a.IdFAGM = plant;
    a.Part = "Imported press";
    a.PutDate = a.AccDate = "01/06/2024";
    a.PurAmt = 12000;
    a.ExciseCr = 1000;
    a.CurrDiff = 500;
    a.Subsidy = 1500;
    store::RegisterStore(db(), kCode, kYear).insert_addition(a);
    run();
    const auto& r = only_row(stored(), 3, 15);
    EXPECT_EQ(r.Add1, 10000);
    EXPECT_EQ(r.DeprF, 1500);
}

TEST_P(Calculation, DepreciationRoundsHalfRupeesAwayFromZeroNotToEven) {
    const long soft = group("SOFTWARE", "4-25", 25);
    opening(soft, 281250);  // 25% is 70,312.50
    run();
    const auto& r = only_row(stored(), 4, 25);
    EXPECT_EQ(r.DeprF, 70313);
    EXPECT_EQ(r.WdvCl, 210937);
}

TEST_P(Calculation, DeductionsEatTheFullRatePartFirstAndOnlyTheExcessReducesHalfRateAdditions) {
    const long plant = group("PLANT", "3-15", 15);
    opening(plant, 50000, "15/11/2024", 80000);
    addition(plant, "01/06/2024", 20000);
    addition(plant, "01/12/2024", 40000);
    run();
    const auto& r = only_row(stored(), 3, 15);
    // Full-rate part: 50,000 + 20,000 - 80,000 leaves 10,000 over, taken off the
    // half-rate additions: 40,000 - 10,000 = 30,000 at 7.5%.
    EXPECT_EQ(r.DeprF, 0);
    EXPECT_EQ(r.DeprH, 2250);
    EXPECT_EQ(r.WdvCl, 27750);
}

TEST_P(Calculation, TheRemainingHalfOfLastYearsAdditionalDepreciationIsChargedThisYear) {
    const long plant = group("PLANT", "3-15", 15, 20);
    store::OpeningRow o;
    o.IdFAGM = plant;
    o.Part = "Machine added after the line last year";
    o.PutDate = "10/01/2024";
    o.WdvIT = 85000;
    o.AddlDepRT = 20;
    o.AddlDepOn = 100000;
    OpeningOpts opts;
    opts.AddlDepOn = true;
    o.OthOpts = opts.compose();
    store::RegisterStore(db(), kCode, kYear).insert_opening(o);
    run();
    const auto& r = only_row(stored(), 3, 15);
    EXPECT_EQ(r.DeprF, 12750);
    EXPECT_EQ(r.ADeprOpH, 10000);  // 1,00,000 x 20% / 2
    EXPECT_EQ(r.TotDep, 22750);
}

TEST_P(Calculation, ASaleBeyondTheBlockLeavesItNilWithACapitalGain) {
    const long computers = group("COMPUTERS", "3-40", 40);
    opening(computers, 60000, "18/11/2024", 95000, 2000);
    const auto result = run();
    const auto& r = only_row(stored(), 3, 40);
    EXPECT_EQ(r.TotDep, 0);
    EXPECT_EQ(r.WdvCl, 0);
    EXPECT_EQ(r.CG, 33000);
    EXPECT_EQ(r.Exp, 2000);
    EXPECT_EQ(result.income_tax.net_capital_gain, 33000);
    bool nil_shown = false;
    for (const auto& s : result.block_summary.rows)
        nil_shown |= s.status == "Block Nil" && s.gain_text == "33,000";
    EXPECT_TRUE(nil_shown);
}

TEST_P(Calculation, AnAdditionNotYetPutToUseIsListedApartOnARowAtRateMinusForty) {
    const long plant = group("PLANT", "3-15", 15);
    opening(plant, 100000);
    addition(plant, "", 5000);
    run();
    const auto rows = stored();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].Rate, 15);
    EXPECT_EQ(rows[0].DeprF, 15000);
    EXPECT_EQ(rows[1].Grp, 3);
    EXPECT_EQ(rows[1].Rate, -40);
    EXPECT_EQ(rows[1].Wdv, 5000);
    EXPECT_EQ(rows[1].TotDep, 0);
}

TEST_P(Calculation, TheEarlierYearsAdjustmentOfAnOpeningAssetComesOffTheBlockBeforeDepreciation) {
    const long plant = group("PLANT", "3-15", 15);
    store::OpeningRow o;
    o.IdFAGM = plant;
    o.Part = "Press with a part scrapped";
    o.PutDate = "01/04/2015";
    o.WdvIT = 100000;
    o.DetESA =
        "Scrapped part\xC2\xA6"
        "20000\xC2\xA6"
        "01/05/2023\xC2\xA6"
        "0\xC2\xA6"
        "0\xC2\xA6"
        "10000";
    store::RegisterStore(db(), kCode, kYear).insert_opening(o);
    run();
    const auto& r = only_row(stored(), 3, 15);
    EXPECT_EQ(r.Wdv, 90000);
    EXPECT_EQ(r.DeprF, 13500);
}

TEST_P(Calculation, WorkingBlockByBlockGivesWhatOneRunOverTheWholeRegisterGives) {
    const long plant = group("PLANT", "3-15", 15, 20);
    const long lorries = group("LORRIES", "3-30", 30);
    const long furniture = group("FURNITURE", "2-10", 10);
    const long fittings = group("FITTINGS", "2-10", 10);  // a second group of the same block
    const long building = group("BUILDINGS", "1-10", 10);
    opening(plant, 400000);
    opening(lorries, 90000, "01/01/2025", 150000, 1000);
    opening(furniture, 50000);
    opening(fittings, 20000);
    opening(building, 1000000);
    addition(plant, "03/10/2024", 100000, 20);
    addition(fittings, "04/10/2024", 30000);
    addition(building, "", 70000);
    addition(furniture, "31/03/2025", 1000);
    CalculationOptions keep;
    keep.keep_entries = true;
    const auto result = run(Mode::DEP_IT, keep);

    depreciation::ItRunInput whole;
    whole.year = kYear;
    whole.entries = result.it_entries;
    for (const auto& b : store::RegisterStore(db(), kCode, kYear).income_tax_blocks())
        whole.blocks.push_back({b.ID, b.Part, b.Rate});
    const auto once = depreciation::calculate_income_tax(whole);
    EXPECT_EQ(result.chart, depreciation::chart_rows_from_blocks(kCode, kYear, once));
    EXPECT_EQ(result.income_tax.net_capital_gain, once.net_capital_gain);
    ASSERT_EQ(result.income_tax.rows.size(), once.rows.size());
    for (std::size_t i = 0; i < once.rows.size(); ++i) {
        EXPECT_EQ(result.income_tax.rows[i].entry, once.rows[i].entry);
        EXPECT_EQ(result.income_tax.rows[i].block, once.rows[i].block);
    }
    EXPECT_EQ(result.it_entries.size(), 9u);
    EXPECT_EQ(result.profit_on_sale.size(), 9u);
}

TEST_P(Calculation, EachBlockGoesToTheChartGroupOfItsNameAndRate) {
    opening(group("BUILDINGS", "1-10", 10), 1000);
    opening(group("FURNITURE", "2-10", 10), 1000);
    opening(group("PLANT", "3-15", 15), 1000);
    opening(group("SOFTWARE", "4-25", 25), 1000);
    run();
    const auto rows = stored();
    EXPECT_EQ(only_row(rows, 1, 10).Wdv, 1000);
    EXPECT_EQ(only_row(rows, 2, 10).Wdv, 1000);
    EXPECT_EQ(only_row(rows, 3, 15).Wdv, 1000);
    EXPECT_EQ(only_row(rows, 4, 25).Wdv, 1000);
}

TEST_P(Calculation, AnotherRunRewritesTheChartOfTheYearWhole) {
    const long plant = group("PLANT", "3-15", 15);
    opening(plant, 1000);
    run();
    const auto first = stored();
    opening(plant, 3000);
    run();
    const auto second = stored();
    EXPECT_EQ(second.size(), first.size());
    EXPECT_EQ(only_row(second, 3, 15).Wdv, 4000);
}

TEST_P(Calculation, WithMandepSetTheChartIsTheHandEditedOneRowForRow) {
    opening(group("PLANT", "3-15", 15), 100000);
    depreciation::ChartRow a;
    a.Code_No = kCode;
    a.FYr = kYear;
    a.Grp = 3;
    a.Rate = 15;
    a.Wdv = 123;
    a.DeprF = 7;
    a.WdvCl = 116;
    depreciation::ChartRow b = a;
    b.Grp = 6;
    b.Rate = 60;
    b.Wdv = 999;
    store::rewrite_hand_edited_chart(db(), kCode, kYear, {a, b});
    store::set_misc_info(db(), kCode, "31/03/2025", "MANDEP", "1", "Depreciation chart edited by hand");

    const auto result = run();
    EXPECT_TRUE(result.chart_hand_edited);
    EXPECT_EQ(stored(), stored(store::ChartTable::DeprChart));
    EXPECT_EQ(result.chart, stored(store::ChartTable::DeprChart));

    CalculationOptions built_only;
    built_only.allow_hand_edited = false;
    run(Mode::DEP_IT, built_only);
    EXPECT_EQ(only_row(stored(), 3, 15).Wdv, 100000);

    store::set_misc_info(db(), kCode, "31/03/2025", "MANDEP", "0", "Depreciation chart edited by hand");
    const auto again = run();
    EXPECT_FALSE(again.chart_hand_edited);
    EXPECT_EQ(only_row(stored(), 3, 15).Wdv, 100000);
}

TEST_P(Calculation, ABooksRunLeavesTheIncomeTaxChartAlone) {
    const long plant = group("PLANT", "3-15", 15);
    opening(plant, 1000);
    run();
    const auto before = stored();
    opening(plant, 5000);
    run(Mode::DEP_FA);
    EXPECT_EQ(stored(), before);
}

TEST_P(Calculation, TheBooksRunGivesEachAssetItsFiguresAndAdjustsAnAssetWhoseLifeIsOver) {
    const long furniture = group("FURNITURE", "2-10", 10);
    store::RegisterStore rs(db(), kCode, kYear);
    store::OpeningRow o;
    o.IdFAGM = furniture;
    o.Part = "Office tables";
    o.PutDate = "01/04/2020";
    o.CostWdv = 100000;
    o.OpDepr = 38000;
    o.ResValue = 5000;
    o.LifeYrs = 10;
    o.RateFACL = 9.5;
    OpeningOpts slm;
    slm.MOD = "SLM";
    o.OthOpts = slm.compose();
    rs.insert_opening(o);
    store::OpeningRow old = o;
    old.Part = "Reception sofa";
    old.PutDate = "15/04/2013";
    old.OpDepr = 80000;
    rs.insert_opening(old);

    const auto result = run(Mode::DEP_FA);
    ASSERT_EQ(result.books_assets.size(), 2u);
    const auto& t = result.books_assets[0];
    EXPECT_EQ(t.Particulars, "Office tables");
    EXPECT_EQ(result.asset_groups.at(t.IdFAGM), "FURNITURE");
    EXPECT_EQ(t.Cost, 100000);
    EXPECT_EQ(t.OpDep, 38000);
    EXPECT_EQ(t.Opening, 62000);
    EXPECT_EQ(t.DepFY, 9500);  // 9.5% of cost for the whole year
    EXPECT_EQ(t.ClBal, 52500);
    EXPECT_EQ(t.Days, 365);
    EXPECT_EQ(t.RemLife, 6);
    const auto& s = result.books_assets[1];
    EXPECT_EQ(s.RemLife, 0);
    EXPECT_EQ(s.DepFY, 0);
    EXPECT_EQ(s.DepAdjRemLife0_PL, 20000 - 5000);
    EXPECT_EQ(s.ClBal, 5000);
}

TEST_P(Calculation, AnEmptyRegisterEndsWithNoAssetsAndWritesNoChart) {
    group("PLANT", "3-15", 15);
    const auto result = run_calculation(db(), kCode, kYear, Mode::DEP_IT, true);
    EXPECT_TRUE(result.no_assets);
    ASSERT_EQ(result.warnings.size(), 1u);
    EXPECT_EQ(result.warnings[0].text, "No Assets Available !");
    EXPECT_TRUE(result.warnings[0].show);
    EXPECT_TRUE(stored().empty());
}

BRENLOW_INSTANTIATE_BACKENDS(Calculation);

TEST(CalculationModes, TheIncomeTaxModesAreThoseOfTheBlockCalculation) {
    for (const char* name :
         {"DEP_IT", "DEP_CAL_IT", "DEP_3CD_IT", "DEP_SCH_IT_FROM_IT", "DEP_SCH_IT_FROM_FA"})
        EXPECT_TRUE(is_income_tax_mode(*mode_from_name(name))) << name;
    for (const char* name : {"DEP_FA", "DEP_CAL_FA", "DEP_REP_FA", "DEP_SCH_FA"})
        EXPECT_FALSE(is_income_tax_mode(*mode_from_name(name))) << name;
    EXPECT_FALSE(mode_from_name("DEP_XX").has_value());
}

TEST(CalculationInputs, TheEarlierYearsAdjustmentIsTheSumOfTheAmountsToBeAdjusted) {
    const std::string bar = "\xC2\xA6";
    const std::string two = "Scrapped press" + bar + "5000" + bar + "01/05/2024" + bar + "1000" + bar + "0" +
                            bar + "4000|Old tools" + bar + "" + bar + "" + bar + "" + bar + "" + bar +
                            "250.5|";
    EXPECT_DOUBLE_EQ(det_esa_adjustment(two), 4250.5);
    EXPECT_DOUBLE_EQ(det_esa_adjustment(""), 0);
}

}  // namespace
}  // namespace brenlow::reg
