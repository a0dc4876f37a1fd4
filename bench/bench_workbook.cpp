// The register to a workbook and back at 10,000 and 100,000 entries (half opening
// assets, half additions) on SQLite, for each format: the export from the template
// as the register screen's "Export to Excel" does it, and the import with every
// row through the entry rules and the writes in one transaction.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <memory>

#include "bench_entries.h"
#include "bench_ui.h"
#include "controls/ui_port.h"
#include "exchange/register_workbook.h"
#include "store/client_store.h"
#include "store/database.h"
#include "store/register_store.h"
#include "store/seed.h"
#include "suite/output_file.h"

namespace {

using namespace brenlow;

// Every question is answered Yes (the file is overwritten, the import confirmed).
struct YesUi : bench::AnsweringUi {
    YesUi() : AnsweringUi(true) {}
};

struct Register {
    std::filesystem::path dir;
    std::unique_ptr<store::Database> db;

    explicit Register(int entries) {
        dir = std::filesystem::temp_directory_path() /
              ("brenlow-bench-workbook-" + std::to_string(::getpid()) + "-" + std::to_string(entries));
        std::filesystem::remove_all(dir);
        std::filesystem::create_directories(dir / "Databases");
        for (const bool company : {true, false})
            suite::write_file_whole(exchange::template_path(dir.string(), company),
                                    exchange::xls::write(exchange::register_template(company)),
                                    suite::Existing::replace);
        db = store::open_database("sqlite:" + (dir / "t.db").string());
        store::ensure_schema(*db, store::reference_data_dir());
        store::create_client_year(*db, "C001", 2016, "BENCH", 3);
        store::create_client_year(*db, "C002", 2016, "TARGET", 3);
        bench::add_groups(*db, 2016);
        bench::fill_register(*db, "C001", 2016, entries);
    }
    ~Register() {
        db.reset();
        std::filesystem::remove_all(dir);
    }
    exchange::WorkbookTarget target(const char* code, const std::string& file) const {
        exchange::WorkbookTarget t;
        t.code = code;
        t.year = 2016;
        t.company = true;
        t.exe_path = dir.string();
        t.path = (dir / file).string();
        t.confirmed = true;
        return t;
    }
};

const char* extension(int64_t kind) {
    return kind == 0 ? "chart.xls" : "chart.xlsx";
}

void BM_ExportWorkbook(benchmark::State& state) {
    Register reg(static_cast<int>(state.range(0)));
    YesUi ui;
    const auto t = reg.target("C001", extension(state.range(1)));
    for (auto _ : state)
        if (!exchange::export_workbook(*reg.db, t, ui)) state.SkipWithError("the export failed");
    state.counters["entries"] = static_cast<double>(state.range(0));
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(*t.path));
    state.SetLabel(state.range(1) == 0 ? ".xls" : ".xlsx");
}

void BM_ImportWorkbook(benchmark::State& state) {
    Register reg(static_cast<int>(state.range(0)));
    YesUi ui;
    if (!exchange::export_workbook(*reg.db, reg.target("C001", extension(state.range(1))), ui))
        state.SkipWithError("the export failed");
    const auto t = reg.target("C002", extension(state.range(1)));
    for (auto _ : state) {
        const auto r = exchange::import_workbook(*reg.db, t, {.replace = true, .yes = true}, ui);
        if (!r || !r->errors.empty() || r->openings + r->additions != state.range(0))
            state.SkipWithError(r && !r->errors.empty() ? r->errors.front().c_str() : "the import failed");
    }
    state.counters["entries"] = static_cast<double>(state.range(0));
    state.SetLabel(state.range(1) == 0 ? ".xls" : ".xlsx");
}

// Arguments: entries, format (0 .xls, 1 .xlsx).
BENCHMARK(BM_ExportWorkbook)
    ->ArgsProduct({{10000, 100000}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);
BENCHMARK(BM_ImportWorkbook)
    ->ArgsProduct({{10000, 100000}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(2);

}  // namespace

BENCHMARK_MAIN();
