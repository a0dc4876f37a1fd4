// The schedules screen on SQLite with a long investments schedule: a switch away and
// back saves it whole (delete, insert every line) and reads it into the grid again.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <memory>

#include "bench_ui.h"
#include "controls/ui_port.h"
#include "frame/component.h"
#include "schedules/formatsch.h"
#include "store/database.h"
#include "store/seed.h"
#include "suite/defaults.h"

namespace {

using namespace brenlow;

// Nobody answers: no question is asked without a previous year.
using SilentUi = bench::AnsweringUi;

void BM_SwitchAwayAndBackToInvestments(benchmark::State& state) {
    const auto dir =
        std::filesystem::temp_directory_path() / ("brenlow-bench-sched-" + std::to_string(::getpid()));
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    auto base = std::make_shared<suite::BaseServices>(
        store::open_database("sqlite:" + (dir / "t.db").string()), dir.string(), store::reference_data_dir());
    base->create_client_year("CO", 2025, "BENCH LTD", 3);
    auto& db = base->dbobj();
    db.execute("insert into mast_company values (1,'TATA STEEL LTD')");
    {
        store::Transaction tx(db);
        for (int i = 1; i <= state.range(0); ++i)
            db.execute("insert into INVEST_2025 values (" + std::to_string(i) +
                       ",'CO',3,1,500,10,10,61250.5,42000,1,1,2,NULL)");
        tx.commit();
    }
    frame::Component comp;
    comp.base = base;
    comp.SchDef = schedules::kInvestments;
    SilentUi ui;
    schedules::formatsch screen(comp, ui);
    screen.Form_Load();
    for (auto _ : state) {
        screen.cmd_Click(schedules::kMiscExp);
        screen.cmd_Click(schedules::kInvestments);
        if (screen.vsf1.data_rows() != state.range(0)) state.SkipWithError("lines lost");
    }
    state.counters["lines"] = static_cast<double>(state.range(0));
    comp.base.reset();
    base.reset();
    std::filesystem::remove_all(dir);
}
BENCHMARK(BM_SwitchAwayAndBackToInvestments)->Arg(1000)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

BENCHMARK_MAIN();
