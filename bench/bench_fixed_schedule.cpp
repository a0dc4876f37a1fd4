// Times the per-particular schedule's figures (the register's engine run with each
// particular as a block of one line) for schedules of 100, 1,000 and 10,000
// particulars, each with five additions and a deduction. Inputs are built before timing.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "schedules/fixed_asset_figures.h"

namespace {

using brenlow::sched::ParticularInput;

std::vector<ParticularInput> schedule_of(int particulars) {
    std::vector<ParticularInput> out;
    for (int i = 0; i < particulars; ++i) {
        ParticularInput p;
        p.row.PART_NM = "PARTICULAR " + std::to_string(i + 1);
        p.row.OP_BAL = 100000 + 137 * i;
        p.row.op_bal_dep = 20000 + 11 * i;
        p.row.RATE_DEP = i % 3 == 0 ? 10 : 15;
        p.row.method_id = i % 4 == 0 ? 2 : 1;
        p.row.wdv = 70000 + 91 * i;
        p.row.compit_rate = i % 2 == 0 ? 15 : 10;
        p.row.AddDepRt = i % 2 == 0 ? 20 : 0;
        for (int k = 0; k < 5; ++k) {
            brenlow::store::FdaRow a;
            a.srno = k + 1;
            a.ad_ded_id = brenlow::store::kFdaAddition;
            a.cost = 5000 + 250 * k;
            a.ad_date = std::to_string(10 + k) + "/0" + std::to_string(4 + k) + "/2024";
            a.adddepapp = k % 2 == 0 ? "1" : "0";
            p.lines.push_back(a);
        }
        brenlow::store::FdaRow d;
        d.ad_ded_id = brenlow::store::kFdaDeduction;
        d.cost = 3000;
        d.dep = 1000;
        d.AMT = 2500;
        d.ad_date = "01/12/2024";
        p.lines.push_back(d);
        out.push_back(std::move(p));
    }
    return out;
}

void BM_ScheduleFigures(benchmark::State& state) {
    const auto input = schedule_of(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(brenlow::sched::particular_figures(input, 2025));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ScheduleFigures)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
