// A register of 100,000 entries (half opening assets, half additions) loaded into
// the register screen on SQLite: the options, masters, both tables and both grids.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <memory>

#include "bench_ui.h"
#include "controls/ui_port.h"
#include "frame/component.h"
#include "register/frm_new_fatr.h"
#include "store/database.h"
#include "store/register_store.h"
#include "store/seed.h"
#include "suite/defaults.h"

namespace {

using namespace brenlow;

// Nobody answers: the loading of a register with entries asks nothing.
using SilentUi = bench::AnsweringUi;

struct Register {
    std::filesystem::path dir;
    std::shared_ptr<suite::BaseServices> base;
    frame::Component comp;

    explicit Register(int entries) {
        dir =
            std::filesystem::temp_directory_path() / ("brenlow-bench-register-" + std::to_string(::getpid()));
        std::filesystem::remove_all(dir);
        std::filesystem::create_directories(dir);
        const std::string data = store::reference_data_dir();
        base = std::make_shared<suite::BaseServices>(
            store::open_database("sqlite:" + (dir / "t.db").string()), dir.string(), data);
        base->create_client_year("C001", 2016, "BENCH", 1);
        comp.base = base;
        comp.log.set_exe_path(dir.string());
        auto& db = base->dbobj();
        for (int g = 1; g <= 20; ++g)
            db.execute("INSERT INTO NewFAGM Values (" + std::to_string(g) + ",2016,'GROUP " +
                       std::to_string(g) + "','3-15',15,20,0,15,'4.1',15,6.33,18.1)");
        store::RegisterStore rs(db, "C001", 2016);
        store::Transaction tx(db);
        for (int i = 0; i < entries; ++i) {
            if (i % 2 == 0) {
                store::OpeningRow o;
                o.IdFAGM = 1 + i % 20;
                o.Part = "MACHINE NUMBER " + std::to_string(i);
                o.CostWdv = 100000 + i;
                o.OpDepr = 25000.5;
                o.ResValue = 5000;
                o.LifeYrs = 15;
                o.RateFACL = 18.1;
                o.WdvIT = 61234.25;
                o.RateIT = 15;
                o.PutDate = "01/04/2012";
                o.OthOpts = "||||Y|Y|Y|Y|Y|Y|N|N";
                rs.insert_opening(o);
            } else {
                store::AdditionRow a;
                a.IdFAGM = 1 + i % 20;
                a.Part = "ADDITION NUMBER " + std::to_string(i);
                a.PutDate = "15/06/2015";
                a.AccDate = "10/06/2015";
                a.PurAmt = 50000 + i;
                a.ExciseCr = 500;
                a.ResValue = 2500;
                a.LifeYrs = 15;
                a.RateFACL = 18.1;
                a.RateIT = 15;
                a.AddlDepRT = 20;
                a.OthOpts = "|OLD|Y|Y|Y|Y|Y|Y";
                rs.insert_addition(a);
            }
        }
        tx.commit();
    }
    ~Register() {
        comp.base.reset();
        base.reset();
        std::filesystem::remove_all(dir);
    }
};

void BM_LoadRegisterOf100000Entries(benchmark::State& state) {
    Register reg(static_cast<int>(state.range(0)));
    SilentUi ui;
    for (auto _ : state) {
        reg::frmNewFATR screen(reg.comp, ui);
        if (!screen.Form_Load()) state.SkipWithError("the register did not load");
        benchmark::DoNotOptimize(screen.vsO.rows() + screen.vsA.rows());
    }
    state.counters["entries"] = static_cast<double>(state.range(0));
}
BENCHMARK(BM_LoadRegisterOf100000Entries)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

BENCHMARK_MAIN();
