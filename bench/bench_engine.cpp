// Times the depreciation engine alone on generated registers of 10,000, 100,000 and
// 1,000,000 assets spread over realistic blocks. Inputs are built before timing.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "depreciation/chart.h"
#include "depreciation/companies_act.h"
#include "depreciation/income_tax.h"

namespace {

using namespace brenlow::depreciation;

struct Lcg {
    std::uint64_t state = 20260401;
    std::uint32_t next() {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<std::uint32_t>(state >> 33);
    }
    int below(int n) { return static_cast<int>(next() % static_cast<std::uint32_t>(n)); }
};

const std::vector<ItBlockMaster> kBlocks = {
    {"1", "LAND", 0},
    {"2", "BUILDING", 5},
    {"3", "BUILDING", 10},
    {"4", "BUILDING", 40},
    {"5", "FURNITURE AND FITTINGS", 10},
    {"6", "MACHINERY AND PLANT", 15},
    {"7", "MACHINERY AND PLANT", 30},
    {"8", "MACHINERY AND PLANT", 40},
    {"9", "INTANGIBLE ASSETS", 25},
    {"10", "SHIPS", 20},
};
// Most registers are plant and furniture; land and ships are rare.
const int kBlockWeights[] = {1, 4, 8, 1, 15, 40, 8, 15, 6, 2};

std::string date_in_year(Lcg& rng, int closing_year) {
    const Date d = fy_first_day(closing_year).plus_days(rng.below(365));
    return d.text();
}

int pick_block(Lcg& rng) {
    int roll = rng.below(100);
    for (int i = 0; i < 10; ++i) {
        if (roll < kBlockWeights[i]) return i;
        roll -= kBlockWeights[i];
    }
    return 5;
}

ItRunInput income_tax_register(int n, bool explain) {
    Lcg rng;
    ItRunInput in;
    in.year = 2024;
    in.blocks = kBlocks;
    in.explain = explain;
    in.entries.reserve(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        const int b = pick_block(rng);
        ItEntry e;
        e.sr_no = i + 1;
        e.group_id = b + 1;
        e.particulars = "Asset " + std::to_string(i % 1000);
        e.block_id = kBlocks[static_cast<std::size_t>(b)].id;
        e.kind = rng.below(10) < 7 ? EntryKind::Opening : EntryKind::Addition;
        e.wdv_cost = 1000 + rng.below(500000);
        if (e.kind == EntryKind::Addition) {
            e.put_date = date_in_year(rng, in.year);
            if (kBlocks[static_cast<std::size_t>(b)].name == "MACHINERY AND PLANT" && rng.below(2) == 0)
                e.addl_rate = 20;
        }
        if (rng.below(20) == 0) {
            e.sale_date = date_in_year(rng, in.year);
            e.sale_amt = e.wdv_cost * 0.8;
            e.sale_exp = 100;
        }
        in.entries.push_back(std::move(e));
    }
    return in;
}

CaRunInput books_register(int n, bool explain) {
    Lcg rng;
    CaRunInput in;
    in.year = 2024;
    in.explain = explain;
    in.entries.reserve(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        CaEntry e;
        e.sr_no = i + 1;
        e.particulars = "Asset " + std::to_string(i % 1000);
        e.kind = rng.below(10) < 7 ? EntryKind::Opening : EntryKind::Addition;
        e.method = rng.below(2) == 0 ? CaMethod::WDV : CaMethod::SLM;
        e.basis = rng.below(3) == 0 ? ResidualBasis::CarryingAmount : ResidualBasis::Cost;
        e.cost = 1000 + rng.below(500000);
        e.life_yrs = 3 + rng.below(58);
        if (e.kind == EntryKind::Opening) {
            e.op_dep = e.cost * 0.3;
            e.dep_calc_ca = e.op_dep;
            e.put_date = Date{2005 + rng.below(18), 1 + rng.below(12), 1 + rng.below(28)}.text();
        } else {
            e.put_date = date_in_year(rng, in.year);
        }
        if (rng.below(20) == 0) {
            e.sale_date = date_in_year(rng, in.year);
            e.sale_amt = e.cost * 0.5;
        }
        if (rng.below(50) == 0) e.shift_det = "01/04/2023,30/09/2023,2";
        in.entries.push_back(std::move(e));
    }
    return in;
}

void BM_IncomeTaxByBlock(benchmark::State& state) {
    const ItRunInput in = income_tax_register(static_cast<int>(state.range(0)), state.range(1) != 0);
    for (auto _ : state) {
        ItRunResult r = calculate_income_tax(in);
        benchmark::DoNotOptimize(r.net_capital_gain);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_IncomeTaxChart(benchmark::State& state) {
    const ItRunInput in = income_tax_register(static_cast<int>(state.range(0)), false);
    for (auto _ : state) {
        ItRunResult r = calculate_income_tax(in);
        auto rows = chart_rows_from_blocks("C001", in.year, r);
        benchmark::DoNotOptimize(rows.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_CompaniesActPerAsset(benchmark::State& state) {
    const CaRunInput in = books_register(static_cast<int>(state.range(0)), state.range(1) != 0);
    for (auto _ : state) {
        CaRunResult r = calculate_companies_act(in);
        benchmark::DoNotOptimize(r.totals.depreciation);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

}  // namespace

// Second argument: 1 builds the explanation texts (DeprCalcDet / DeprDet), 0 leaves them out.
BENCHMARK(BM_IncomeTaxByBlock)
    ->ArgsProduct({{10000, 100000, 1000000}, {0, 1}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IncomeTaxChart)->Args({1000000, 0})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CompaniesActPerAsset)
    ->ArgsProduct({{10000, 100000, 1000000}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
