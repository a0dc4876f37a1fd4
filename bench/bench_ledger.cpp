// The capital ledger master opened over a practice's data on SQLite: 20 years of 200
// clients, each client's year with 12 capital lines and 40 trial-balance rows, and
// the in-use search of both masters across every year's tables.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <memory>

#include "bench_ui.h"
#include "capital/ledger_master.h"
#include "controls/ui_port.h"
#include "frame/component.h"
#include "store/capital_store.h"
#include "store/seed.h"
#include "suite/defaults.h"

namespace {

using namespace brenlow;

using SilentUi = bench::AnsweringUi;

struct Practice {
    std::filesystem::path dir;
    std::shared_ptr<suite::BaseServices> base;
    frame::Component comp;

    Practice() {
        dir = std::filesystem::temp_directory_path() / ("brenlow-bench-ledger-" + std::to_string(::getpid()));
        std::filesystem::remove_all(dir);
        std::filesystem::create_directories(dir);
        base =
            std::make_shared<suite::BaseServices>(store::open_database("sqlite:" + (dir / "t.db").string()),
                                                  dir.string(), store::reference_data_dir());
        auto& db = base->dbobj();
        for (int p = 1; p <= 500; ++p) {
            store::ledger_insert(db, store::Ledger::capital, "CAPITAL PARTICULAR " + std::to_string(p));
            store::ledger_insert(db, store::Ledger::trial_balance, "LEDGER " + std::to_string(p));
        }
        for (int year = 2006; year < 2026; ++year) {
            store::Transaction tx(db);
            for (int c = 1; c <= 200; ++c) {
                const auto cy =
                    base->create_client_year("C" + std::to_string(c), year, "CLIENT", 2).client_year;
                const std::string code = "'" + cy.code_no + "'";
                for (int l = 0; l < 12; ++l)
                    db.execute("insert into CAPITAL_" + cy.tbl_nm + " values (" + code + ",'1'," +
                               std::to_string(l) + "," + std::to_string(1 + (c * 7 + l) % 400) + ",100,2,0)");
                for (int l = 0; l < 40; ++l)
                    db.execute("insert into TAB_" + cy.tbl_nm + " values (" + std::to_string(l) + "," + code +
                               ",1," + std::to_string(1 + (c * 11 + l) % 450) + ",1,10)");
            }
            tx.commit();
        }
        comp.base = base;
        comp.log.set_exe_path(dir.string());
    }
    ~Practice() {
        comp.base.reset();
        base.reset();
        std::filesystem::remove_all(dir);
    }
};

Practice& practice() {
    static Practice p;
    return p;
}

void BM_LedgerMasterOpens(benchmark::State& state) {
    auto& p = practice();
    SilentUi ui;
    for (auto _ : state) {
        capital::frmcapledmas s(p.comp, ui);
        s.cboMaster.select_id(state.range(0) == 1 ? "1" : "2");
        s.Form_Load();
        benchmark::DoNotOptimize(s.vsf.rows());
    }
    state.SetLabel(state.range(0) == 1 ? "Mast_Capital over 20 CAPITAL_ tables"
                                       : "Mast_Part over 20 TAB_, JRNL_ and TRADE_ tables");
}
BENCHMARK(BM_LedgerMasterOpens)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
