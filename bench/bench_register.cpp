// A register of 100,000 or 1,000,000 entries (half opening assets, half additions)
// opened on SQLite: the register screen alone (options, masters, the serials of both
// tables and the first screen of both grids), and the desktop's register window shown
// with its first screen drawn. Beside them the floor: the same window over an empty
// register, and a plain read of every column of both tables.
//
// 1M registers take a while to make; BRENLOW_BENCH_MILLION=1 asks for them.

#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QAbstractItemModel>
#include <QApplication>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>

#include "bench_entries.h"
#include "bench_ui.h"
#include "controls/ui_port.h"
#include "frame/component.h"
#include "register/frm_new_fatr.h"
#include "store/database.h"
#include "store/register_store.h"
#include "store/seed.h"
#include "suite/defaults.h"
#include "ui/grid_view.h"
#include "ui/register_window.h"

namespace {

using namespace brenlow;
using ui::RegisterWindow;

// Nobody answers: the loading of a register with entries asks nothing.
using SilentUi = bench::AnsweringUi;

struct Register {
    std::filesystem::path dir;
    std::shared_ptr<suite::BaseServices> base;
    frame::Component comp;

    explicit Register(int entries) {
        dir = std::filesystem::temp_directory_path() /
              ("brenlow-bench-register-" + std::to_string(::getpid()) + "-" + std::to_string(entries));
        std::filesystem::remove_all(dir);
        std::filesystem::create_directories(dir);
        const std::string data = store::reference_data_dir();
        base = std::make_shared<suite::BaseServices>(
            store::open_database("sqlite:" + (dir / "t.db").string()), dir.string(), data);
        base->create_client_year("C001", 2016, "BENCH", 1);
        comp.base = base;
        comp.log.set_exe_path(dir.string());
        auto& db = base->dbobj();
        bench::add_groups(db, 2016);
        bench::fill_register(db, "C001", 2016, entries);
    }
    ~Register() {
        comp.base.reset();
        base.reset();
        std::filesystem::remove_all(dir);
    }
};

// One register of each size for the whole run.
Register& register_of(int entries) {
    static std::map<int, std::unique_ptr<Register>> made;
    auto& r = made[entries];
    if (!r) r = std::make_unique<Register>(entries);
    return *r;
}

bool million_asked() {
    const char* v = std::getenv("BRENLOW_BENCH_MILLION");
    return v && *v && *v != '0';
}

void sizes(benchmark::internal::Benchmark* b) {
    b->Arg(0)->Arg(100000);
    if (million_asked()) b->Arg(1000000);
}

double peak_rss_mb() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return static_cast<double>(u.ru_maxrss) / 1024.0;
}

// What a person sees first: the rows of a screenful, as the grid shows them.
std::size_t read_first_screen(const Grid& g) {
    std::size_t chars = 0;
    for (int r = g.fixed_rows(); r < std::min(g.rows(), g.fixed_rows() + 40); ++r)
        for (int c = 0; c < g.cols(); ++c) chars += g.display_text(r, c).size();
    return chars;
}

void BM_RegisterScreenFirstScreen(benchmark::State& state) {
    Register& reg = register_of(static_cast<int>(state.range(0)));
    SilentUi ui;
    for (auto _ : state) {
        reg::frmNewFATR screen(reg.comp, ui);
        if (!screen.Form_Load()) state.SkipWithError("the register did not load");
        benchmark::DoNotOptimize(read_first_screen(screen.vsO) + read_first_screen(screen.vsA));
    }
    state.counters["entries"] = static_cast<double>(state.range(0));
    state.counters["peak_rss_MB"] = peak_rss_mb();
}
BENCHMARK(BM_RegisterScreenFirstScreen)->Apply(sizes)->Unit(benchmark::kMillisecond)->Iterations(5);

// The floor of the screen: every column of both tables read once.
void BM_FloorReadBothTables(benchmark::State& state) {
    Register& reg = register_of(static_cast<int>(state.range(0)));
    auto& db = reg.base->dbobj();
    for (auto _ : state) {
        std::size_t cells = 0;
        for (const char* t : {"NewFATRo2016", "NewFATRa2016"})
            db.for_each_row(std::string("SELECT * FROM ") + t + " WHERE Code_No='C001' ORDER BY SrNoFATR",
                            [&](const store::Row& r) { cells += r.size(); });
        benchmark::DoNotOptimize(cells);
    }
    state.counters["entries"] = static_cast<double>(state.range(0));
}
BENCHMARK(BM_FloorReadBothTables)->Apply(sizes)->Unit(benchmark::kMillisecond)->Iterations(5);

// The desktop's register window made, shown and drawn, and its first rows read
// through the view's model as the view paints them; 0 entries is the floor.
void BM_RegisterWindowFirstScreen(benchmark::State& state) {
    Register& reg = register_of(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        RegisterWindow window(reg.comp);
        window.show();
        QApplication::processEvents();
        auto* view = window.findChild<GridView*>("vsO");
        std::size_t chars = 0;
        if (view && view->model()->rowCount() > 0)
            for (int c = 0; c < view->model()->columnCount(); ++c)
                chars += static_cast<std::size_t>(view->model()->index(0, c).data().toString().size());
        benchmark::DoNotOptimize(chars);
        window.close();
    }
    state.counters["entries"] = static_cast<double>(state.range(0));
    state.counters["peak_rss_MB"] = peak_rss_mb();
}
BENCHMARK(BM_RegisterWindowFirstScreen)->Apply(sizes)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", QByteArrayLiteral("offscreen"));
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
