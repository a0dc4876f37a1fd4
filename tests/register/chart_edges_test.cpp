// The income-tax chart at its edges, run as the register's calculate button and the
// command line run it (the stored register, the calculation, the stored chart, the
// printed lines), on both backends, against figures worked by hand.

#include <gtest/gtest.h>

#include "register/calculation.h"
#include "register/chart_report.h"
#include "register/hand_edited_chart.h"
#include "register/register_options.h"
#include "register/transfers.h"
#include "store/chart_store.h"
#include "store/client_store.h"
#include "store/masters_store.h"
#include "store/register_store.h"
#include "support/test_databases.h"

namespace brenlow::reg {
namespace {

constexpr const char* kCode = "C001";

class ChartEdges : public test::BackendTest {
protected:
    int year_ = 2025;  // F.Y. 2024-25: the half-rate line is 04/10/2024

    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped()) return;
        store::ensure_schema(db(), BRENLOW_TEST_DATA_DIR);
        open_year(2025);
    }
    void open_year(int year) {
        year_ = year;
        store::create_client_year(db(), kCode, year, "ACME", 3);
        rs().ensure_tables();
    }
    store::RegisterStore rs() { return store::RegisterStore(db(), kCode, year_); }

    long group(const std::string& name, const std::string& block_it, double rate, double addl = 0,
               const std::string& block_cl = "-1") {
        store::AssetGroupRow g;
        g.Yr = year_;
        g.Part = name;
        g.BlockIdIT = block_it;
        g.RateIT = rate;
        g.AddlRateIT = addl;
        g.BlockFA = -1;
        g.BlockIdCL = block_cl;
        g.LifeYrs = 10;
        g.RateSLM = 9.5;
        g.RateWDV = 25.89;
        return store::add_asset_group(db(), g);
    }
    store::OpeningRow opening_row(long grp, double wdv) {
        store::OpeningRow o;
        o.IdFAGM = grp;
        o.Part = "Opening asset";
        o.PutDate = "01/04/" + std::to_string(year_ - 5);
        o.CostWdv = wdv;
        o.WdvIT = wdv;
        return o;
    }
    void opening(long grp, double wdv) { rs().insert_opening(opening_row(grp, wdv)); }
    void addition(long grp, const std::string& put, double cost, double addl = 0) {
        store::AdditionRow a;
        a.IdFAGM = grp;
        a.Part = "Addition";
        a.PutDate = put;
        a.AccDate = put.empty() ? "01/06/2024" : put;
        a.PurAmt = cost;
        a.AddlDepRT = addl;
        rs().insert_addition(a);
    }
    CalculationResult run(Mode mode = Mode::DEP_IT) {
        CalculationOptions o;
        o.keep_entries = false;
        return run_calculation(db(), kCode, year_, mode, false, o);
    }
    static const depreciation::ItBlockResult& only_block(const CalculationResult& r) {
        EXPECT_EQ(r.income_tax.blocks.size(), 1u);
        return r.income_tax.blocks.at(0);
    }
    static IncomeTaxChartLine only_line(const CalculationResult& r) {
        const auto lines = income_tax_chart_lines(r);
        EXPECT_EQ(lines.size(), 1u);
        return lines.at(0);
    }
    static std::vector<std::string> notes(const CalculationResult& r) {
        return income_tax_chart_report(r).notes;
    }
    static bool has_note(const CalculationResult& r, const std::string& text) {
        std::string all;
        for (const auto& n : notes(r)) all += n + " ";
        return all.find(text) != std::string::npos;
    }
};

// What a printed line shows, in its columns.
struct Printed {
    double opening, full, half, deduction, total, normal, additional, closing;
    friend bool operator==(const Printed&, const Printed&) = default;
};
Printed printed(const IncomeTaxChartLine& l) {
    const auto& f = l.figures;
    return {f.opening, f.full, f.half, f.deduction, f.total(), f.normal, f.additional, f.closing};
}
std::ostream& operator<<(std::ostream& os, const Printed& p) {
    return os << p.opening << " + " << p.full << " + " << p.half << " - " << p.deduction << " = " << p.total
              << "; normal " << p.normal << ", additional " << p.additional << "; closing " << p.closing;
}

TEST_P(ChartEdges, TheCarriedHalfNeverTakesTheBlockBelowNil) {
    // Plant at 15%: opening WDV 1,80,000 carrying the remaining half of last year's 20% on
    // 2,00,000 (20,000); another machine of the block, at nil WDV, sold for 1,75,000.
    // Balance 5,000: normal 5,000 x 15% = 750; the carried half bears only the 4,250 left;
    // closing nil. (Charged whole, the block would close at 5,000 - 20,750 = -15,750.)
    const long plant = group("PLANT", "3-15", 15, 20);
    auto held = opening_row(plant, 180000);
    held.AddlDepRT = 20;
    held.AddlDepOn = 200000;
    OpeningOpts opts;
    opts.AddlDepOn = true;
    held.OthOpts = opts.compose();
    rs().insert_opening(held);
    auto sold = opening_row(plant, 0);
    sold.SaleDate = "10/06/2024";
    sold.SaleAmt = 175000;
    rs().insert_opening(sold);

    const auto r = run();
    const auto& row = r.chart.at(0);
    EXPECT_EQ(row.DeprF, 750);
    EXPECT_EQ(row.ADeprOpH, 4250);
    EXPECT_EQ(row.TotDep, 5000);
    EXPECT_EQ(row.WdvCl, 0);
    EXPECT_EQ(store::read_chart(db(), store::ChartTable::TmpDepChart, kCode, year_), r.chart);
    EXPECT_EQ(printed(only_line(r)), (Printed{180000, 0, 0, 175000, 5000, 750, 4250, 0}));
    EXPECT_EQ(only_block(r).carried_half_lost, 15750);
    EXPECT_TRUE(has_note(r, "Rs. 15,750 of the remaining half"));
}

TEST_P(ChartEdges, AnAdditionNotYetPutToUseShowsWithTheAdditionsSoTheRowAddsUp) {
    // Opening 1,00,000 and a crane of 50,000 without a date of put to use: depreciation
    // 1,00,000 x 15% = 15,000 and the crane carried whole: 1,00,000 + 50,000 - 15,000 = 1,35,000.
    const long plant = group("PLANT", "3-15", 15);
    opening(plant, 100000);
    addition(plant, "", 50000);
    const auto r = run();
    EXPECT_EQ(printed(only_line(r)), (Printed{100000, 50000, 0, 0, 150000, 15000, 0, 135000}));
    EXPECT_TRUE(has_note(r, "Addition of Rs. 50,000 not yet put to use"));
    ASSERT_EQ(r.chart.size(), 2u);
    EXPECT_EQ(r.chart[1].Rate, -40);
    EXPECT_EQ(r.chart[1].Wdv, 50000);
}

TEST_P(ChartEdges, ABlockAtNilWdvWithAssetsHeldIsNilWdvAndAnEmptyOneHasNoAsset) {
    // Computers at 40%: two machines held at nil WDV. Furniture: its one asset no longer
    // exists for the Act.
    const long computers = group("COMPUTERS", "3-40", 40);
    for (int i = 0; i < 2; ++i) {
        auto o = opening_row(computers, 0);
        OpeningOpts opts;
        opts.WdvIT = "Y";
        o.OthOpts = opts.compose();
        rs().insert_opening(o);
    }
    const long furniture = group("FURNITURE", "2-10", 10);
    auto gone = opening_row(furniture, 0);
    OpeningOpts opts;
    opts.WdvIT = "N";
    gone.OthOpts = opts.compose();
    rs().insert_opening(gone);

    const auto r = run();
    std::vector<std::pair<std::string, std::string>> summary;
    for (const auto& s : r.block_summary.rows) summary.emplace_back(s.block, s.status);
    EXPECT_EQ(summary, (std::vector<std::pair<std::string, std::string>>{
                           {"FURNITURE AND FITTINGS", "(No Asset)"}, {"MACHINERY AND PLANT", "(Nil WDV)"}}));
}

TEST_P(ChartEdges, ANegativeBalanceWithoutATransferEndsTheBlockNilWithItsGain) {
    // An opening WDV of -10,000 and nothing sold: the block cannot stand below nil; the
    // 10,000 is a gain, and the block is nil.
    const long plant = group("PLANT", "3-15", 15);
    opening(plant, -10000);
    const auto r = run();
    const auto& b = only_block(r);
    EXPECT_EQ(b.status, "BLOCKNIL");
    EXPECT_EQ(b.profit_loss, 10000);
    EXPECT_EQ(b.RndWdv, 0);
    ASSERT_EQ(r.block_summary.rows.size(), 1u);
    EXPECT_EQ(r.block_summary.rows[0].status, "Block Nil");
    EXPECT_EQ(r.block_summary.rows[0].gain_text, "10,000");
    EXPECT_EQ(r.block_summary.total_text, "10,000");
    EXPECT_EQ(printed(only_line(r)), (Printed{-10000, 0, 0, 0, -10000, 0, 0, 0}));
}

TEST_P(ChartEdges, WhatSection38OrAProportionateShareDisallowsStaysInTheWdv) {
    // Hand-edited rows at 10% on 1,00,000: depreciation 10,000. Section 38 disallows 4,000:
    // 6,000 allowed, closing 94,000. Furniture's proportionate share is 7,000 of its
    // 10,000: closing 93,000.
    opening(group("FURNITURE", "2-10", 10), 100000);
    depreciation::ChartRow plant;
    plant.Grp = 3;
    plant.Rate = 10;
    plant.Wdv = plant.FullAmt = 100000;
    plant.DeprF = 10000;
    plant.Dep38 = 4000;
    depreciation::ChartRow furniture = plant;
    furniture.Grp = 2;
    furniture.Dep38 = 0;
    furniture.PropDep = 7000;
    auto rows = settle_chart_rows({plant, furniture});
    for (auto& row : rows) {
        row.Code_No = kCode;
        row.FYr = year_;
    }
    store::rewrite_hand_edited_chart(db(), kCode, year_, rows);
    store::set_misc_info(db(), kCode, "31/03/2025", "MANDEP", "1", "chart edited by hand");

    const auto r = run();
    ASSERT_TRUE(r.chart_hand_edited);
    ASSERT_EQ(r.chart.size(), 2u);
    EXPECT_EQ(r.chart[0].TotDep, 10000);
    EXPECT_EQ(r.chart[0].WdvCl, 94000);
    EXPECT_EQ(r.chart[1].WdvCl, 93000);
    const auto lines = income_tax_chart_lines(r);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(printed(lines[0]), (Printed{100000, 0, 0, 0, 100000, 6000, 0, 94000}));
    EXPECT_EQ(printed(lines[1]), (Printed{100000, 0, 0, 0, 100000, 7000, 0, 93000}));
}

TEST_P(ChartEdges, TheYear2018PutsPlantAbove40PercentIntoThe40PercentBlockAndKeepsItsOpeningApart) {
    // F.Y. 2017-18: computers (last year's 60% block, 50,000) and a machine brought at 80%
    // (20,000) join the 40% block whose own machine opens at 30,000. Opening 1,00,000, of
    // which 70,000 came from a higher rate; 40% of 1,00,000 = 40,000; closing 60,000.
    open_year(2018);
    const long computers = group("COMPUTERS", "3-60", 60);
    const long vehicles = group("VEHICLES", "3-40", 40);
    auto c = opening_row(computers, 50000);
    c.RateIT = 60;
    rs().insert_opening(c);
    auto v = opening_row(vehicles, 30000);
    v.RateIT = 40;
    rs().insert_opening(v);
    auto moved = opening_row(vehicles, 20000);
    moved.RateIT = 80;
    rs().insert_opening(moved);

    const auto r = run();
    const auto& b = only_block(r);
    EXPECT_EQ(b.rate, 40);
    EXPECT_EQ(b.OpWdvHR40PM, 70000);
    EXPECT_EQ(b.OpWdvUK40PM, 30000);
    ASSERT_EQ(r.chart.size(), 1u);
    EXPECT_EQ(r.chart[0].Grp, 3);
    EXPECT_EQ(r.chart[0].Wdv, 100000);
    EXPECT_EQ(r.chart[0].WdvOpHR, 70000);
    EXPECT_EQ(r.chart[0].DeprF, 40000);
    EXPECT_EQ(r.chart[0].WdvCl, 60000);
}

TEST_P(ChartEdges, TheYear2018PrintsPlantFromTwoHigherRatesAndThe40PercentBlockAsOneSummaryRow) {
    // F.Y. 2017-18: computers of last year's 60% block (50,000, sold for 1,30,000) and a
    // machine of the 80% block (20,000) join the 40% block of a vehicle (30,000); furniture
    // stays at 10%. The chart and the block-wise summary have one line per block: the 40%
    // block ends nil with a gain of 1,30,000 - 1,00,000 = 30,000.
    open_year(2018);
    const long computers = group("COMPUTERS", "3-60", 60);
    const long machines = group("PRESSES", "3-80", 80);
    const long vehicles = group("VEHICLES", "3-40", 40);
    const long furniture = group("FURNITURE", "2-10", 10);
    auto c = opening_row(computers, 50000);
    c.RateIT = 60;
    c.SaleDate = "01/12/2017";
    c.SaleAmt = 130000;
    rs().insert_opening(c);
    auto m = opening_row(machines, 20000);
    m.RateIT = 80;
    rs().insert_opening(m);
    auto v = opening_row(vehicles, 30000);
    v.RateIT = 40;
    rs().insert_opening(v);
    opening(furniture, 10000);

    const auto r = run();
    ASSERT_EQ(r.income_tax.blocks.size(), 2u);
    ASSERT_EQ(r.chart.size(), 2u);
    EXPECT_EQ(r.chart[1].Grp, 3);
    EXPECT_EQ(r.chart[1].Rate, 40);
    EXPECT_EQ(r.chart[1].WdvOpHR, 70000);
    const auto& s = r.block_summary;
    std::vector<std::vector<std::string>> rows;
    for (const auto& row : s.rows) rows.push_back({row.block, row.rate, row.status, row.gain_text});
    EXPECT_EQ(rows,
              (std::vector<std::vector<std::string>>{{"FURNITURE AND FITTINGS", "10", "", "0"},
                                                     {"MACHINERY AND PLANT", "40", "Block Nil", "30,000"}}));
    EXPECT_EQ(s.total_text, "30,000");
}

TEST_P(ChartEdges, SwitchingTheResidualBasisWorksRateAndResidualOnTheNewBasis) {
    // SLM, cost 1,00,000, 40,000 written off to 31/03/2024, 6 of 10 years left. On cost:
    // residual 5,000, rate (95,000 / 1,00,000) x 100 / 6 = 15.83%, 15,830 for the year.
    // On the carrying amount 60,000: residual 3,000, rate (57,000 / 60,000) x 100 / 6 =
    // 15.8333%, 60,000 x 15.8333% = 9,499.98.
    const long plant = group("PLANT", "3-15", 15, 0, "4.1");
    store::OpeningRow o = opening_row(plant, 100000);
    o.PutDate = "01/04/2020";
    o.OpDepr = 40000;
    o.YrCalcCA = 2024;
    o.DepCalcCA = 40000;
    o.ResValue = 5000;
    o.LifeYrs = 10;
    o.RateFACL = 15.83;
    OpeningOpts opts;
    opts.MOD = "SLM";
    o.OthOpts = opts.compose();
    rs().insert_opening(o);
    RegisterOptions common;
    rs().rewrite_options_row(common.compose());
    CalculationOptions keep;
    keep.keep_entries = true;
    const auto on_cost = run_calculation(db(), kCode, year_, Mode::DEP_FA, false, keep);
    ASSERT_EQ(on_cost.books.assets.size(), 1u);
    EXPECT_EQ(on_cost.books.assets[0].residual, 5000);
    EXPECT_EQ(on_cost.books.assets[0].depreciation, 15830);

    common.optResValOf = "CA";
    rs().rewrite_options_row(common.compose());
    const auto on_carrying = run_calculation(db(), kCode, year_, Mode::DEP_FA, false, keep);
    ASSERT_EQ(on_carrying.books.assets.size(), 1u);
    EXPECT_EQ(on_carrying.books.assets[0].residual, 3000);
    EXPECT_DOUBLE_EQ(on_carrying.books.assets[0].rate, 15.8333);
    EXPECT_DOUBLE_EQ(on_carrying.books.assets[0].depreciation, 9499.98);
}

TEST_P(ChartEdges, AnAdjustmentDatedInsideTheYearIsTheCurrentYearsAndOneBeforeItTheEarlierYears) {
    // Opening 1,00,000 with two adjustments: 4,000 of an excess of 2023 (earlier years)
    // and 10,000 of one of 01/06/2024 (this year). WDV after the earlier years 96,000;
    // balance after this year's 86,000; 15% = 12,900; closing 73,100.
    const long plant = group("PLANT", "3-15", 15);
    auto o = opening_row(plant, 100000);
    o.DetESA =
        "OLD LATHE\xC2\xA6"
        "0\xC2\xA6"
        "01/05/2023\xC2\xA6"
        "9000\xC2\xA6"
        "4000\xC2\xA6"
        "4000|"
        "OLD PRESS\xC2\xA6"
        "0\xC2\xA6"
        "01/06/2024\xC2\xA6"
        "15000\xC2\xA6"
        "10000\xC2\xA6"
        "10000|";
    rs().insert_opening(o);
    CalculationOptions sheets;
    const auto r = run_calculation(db(), kCode, year_, Mode::DEP_IT, false, sheets);
    ASSERT_EQ(r.income_tax_sheet.size(), 1u);
    std::vector<std::pair<std::string, double>> lines;
    for (const auto& l : r.income_tax_sheet[0].lines) lines.emplace_back(l.label, l.amount);
    EXPECT_EQ(lines, (std::vector<std::pair<std::string, double>>{
                         {"Written Down Value", 100000},
                         {"Other Assets Adjustment of Earlier Years", 4000},
                         {"Written Down Value After Earlier Years Adjustments", 96000},
                         {"Addition", 0},
                         {"Deduction", 0},
                         {"Balance", 96000},
                         {"Adj. Other Assets (Current Year)", 10000},
                         {"Amount on which Depreciation to be Calculated", 86000},
                         {"Depreciation @ Normal Rate", 12900},
                         {"Depreciation @ Additional Rate", 0},
                         {"Written Down Value After Adjustments", 73100},
                     }));
    EXPECT_EQ(printed(only_line(r)), (Printed{96000, 0, 0, 10000, 86000, 12900, 0, 73100}));
}

TEST_P(ChartEdges, TheCapitalGainsRowOfANilBlockReconcilesWithItsGain) {
    // Opening 60,000 less an earlier years' adjustment of 5,000: WDV 55,000. Sold for
    // 95,000 with 2,000 expenses: gain 95,000 - 55,000 - 2,000 = 38,000.
    const long computers = group("COMPUTERS", "3-40", 40);
    auto o = opening_row(computers, 60000);
    o.DetESA =
        "OLD PC\xC2\xA6"
        "0\xC2\xA6"
        "01/05/2023\xC2\xA6"
        "7000\xC2\xA6"
        "5000\xC2\xA6"
        "5000|";
    o.SaleDate = "18/11/2024";
    o.SaleAmt = 95000;
    o.SaleExp = 2000;
    rs().insert_opening(o);
    const auto r = run();
    const auto t = block_transfer(only_block(r));
    EXPECT_EQ(t.sales_cons, 95000);
    EXPECT_EQ(t.wdv, 55000);
    EXPECT_EQ(t.addition, 0);
    EXPECT_EQ(t.trans_expen, 2000);
    EXPECT_EQ(t.assets_trans, 38000);
    EXPECT_EQ(t.sales_cons - t.wdv - t.addition - t.trans_expen, t.assets_trans);
    EXPECT_EQ(r.chart.at(0).CG, 38000);
}

TEST_P(ChartEdges, LastYearsRemainingHalfShowsAsAdditionalAndThisYearsHalfIsCarriedOn) {
    // Opening 85,000 carrying the remaining half of 20% on 1,00,000 (10,000): normal
    // 85,000 x 15% = 12,750, additional 10,000. A press of 1,00,000 put to use 01/12/2024
    // with 20%: normal 7.5% = 7,500, additional 10% = 10,000, and 10,000 carried to next
    // year. Closing 1,85,000 - 12,750 - 7,500 - 10,000 - 10,000 = 1,44,750.
    const long plant = group("PLANT", "3-15", 15, 20);
    auto o = opening_row(plant, 85000);
    o.AddlDepRT = 20;
    o.AddlDepOn = 100000;
    OpeningOpts opts;
    opts.AddlDepOn = true;
    o.OthOpts = opts.compose();
    rs().insert_opening(o);
    addition(plant, "01/12/2024", 100000, 20);
    const auto r = run();
    EXPECT_EQ(printed(only_line(r)), (Printed{85000, 0, 100000, 0, 185000, 20250, 20000, 144750}));
    EXPECT_TRUE(has_note(r,
                         "Additional depreciation of Rs. 10,000 relating to addition of assets during "
                         "immediately preceding year put to use for less than 180 days is included in "
                         "Col. 'Additional'."));
    EXPECT_TRUE(has_note(r,
                         "Additional depreciation of Rs. 10,000 (the remaining half on additions put to use "
                         "for less than 180 days) is carried to next year."));
    // The chart's columns are those the note names.
    const auto doc = income_tax_chart_report(r);
    EXPECT_EQ(doc.columns.at(7).heading, "Normal");
    EXPECT_EQ(doc.columns.at(8).heading, "Additional");
}

BRENLOW_INSTANTIATE_BACKENDS(ChartEdges);

}  // namespace
}  // namespace brenlow::reg
