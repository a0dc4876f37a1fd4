// Times the calculate command end to end — read the register, compute, write the chart
// of the year — on generated registers of 10,000, 100,000 and 1,000,000 entries, on
// SQLite and, when BRENLOW_TEST_MYSQL names a server (scripts/with-test-mariadb.sh), on
// MariaDB. The registers are written once per size and backend before timing.
// The counter peak_rss_MB is the peak resident memory of the timed runs alone: the
// peak is reset (/proc/self/clear_refs) after the register has been written.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "controls/vb_date.h"
#include "register/calculation.h"
#include "register/register_options.h"
#include "store/client_store.h"
#include "store/masters_store.h"
#include "store/register_bulk.h"
#include "store/seed.h"

namespace {

using namespace brenlow;

constexpr int kYear = 2025;
constexpr const char* kCode = "BENCH1";

struct Lcg {
    std::uint64_t state = 20250401;
    std::uint32_t next() {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<std::uint32_t>(state >> 33);
    }
    int below(int n) { return static_cast<int>(next() % static_cast<std::uint32_t>(n)); }
};

struct GroupSpec {
    const char* name;
    const char* block_it;
    double rate_it, addl;
    const char* block_cl;
    double life, slm, wdv;
    int weight;  // per cent of the entries
};
// A register is mostly plant and furniture; buildings and intangibles are fewer.
const GroupSpec kGroups[] = {
    {"BUILDINGS", "1-10", 10, 0, "1.3", 30, 3.17, 9.50, 8},
    {"RESIDENTIAL FLATS", "1-5", 5, 0, "1.1", 60, 1.58, 4.87, 3},
    {"FURNITURE", "2-10", 10, 0, "5.1", 10, 9.50, 25.89, 20},
    {"PLANT", "3-15", 15, 20, "4.1", 15, 6.33, 18.10, 35},
    {"MOTOR LORRIES", "3-30", 30, 0, "4.1", 8, 11.88, 31.23, 6},
    {"COMPUTERS", "3-40", 40, 0, "12.2", 3, 31.67, 63.16, 20},
    {"SOFTWARE", "4-25", 25, 0, "-1", 6, 16.67, 0, 8},
};

std::string random_date(Lcg& rng, int from_year, int years) {
    return Date{from_year, 4, 1}.add_days(rng.below(365 * years)).text();
}

std::size_t pick(Lcg& rng) {
    int roll = rng.below(100);
    for (std::size_t i = 0; i < std::size(kGroups); ++i) {
        if (roll < kGroups[i].weight) return i;
        roll -= kGroups[i].weight;
    }
    return 3;
}

// Writes a register of n entries (seven in ten opening, the rest additions; one in
// twenty sold) in batches.
void write_register(store::Database& db, int n) {
    std::vector<long> groups;
    for (const auto& g : kGroups) {
        store::AssetGroupRow a;
        a.Yr = kYear;
        a.Part = g.name;
        a.BlockIdIT = g.block_it;
        a.RateIT = g.rate_it;
        a.AddlRateIT = g.addl;
        a.BlockFA = -1;
        a.BlockIdCL = g.block_cl;
        a.LifeYrs = g.life;
        a.RateSLM = g.slm;
        a.RateWDV = g.wdv;
        groups.push_back(store::add_asset_group(db, a));
    }
    const std::string opening_opts = reg::OpeningOpts{}.compose();
    reg::AdditionOpts addl_opts;
    addl_opts.AddlDep = true;
    const std::string addition_opts = reg::AdditionOpts{}.compose(), addition_addl_opts = addl_opts.compose();
    Lcg rng;
    constexpr int kBatch = 20000;
    for (int done = 0; done < n;) {
        std::vector<store::OpeningRow> openings;
        std::vector<store::AdditionRow> additions;
        for (int i = 0; i < kBatch && done < n; ++i, ++done) {
            const std::size_t gi = pick(rng);
            const auto& g = kGroups[gi];
            const double cost = 5000 + rng.below(900000);
            const bool sold = rng.below(20) == 0;
            if (rng.below(10) < 7) {
                store::OpeningRow o;
                o.IdFAGM = groups[gi];
                o.Part = "Asset " + std::to_string(done);
                o.PutDate = random_date(rng, 2008, 16);
                o.CostWdv = cost;
                o.OpDepr = cost * 0.35;
                o.ResValue = cost * 0.05;
                o.LifeYrs = g.life;
                o.RateFACL = g.wdv > 0 ? g.wdv : g.slm;
                o.WdvIT = cost * 0.6;
                o.RateIT = g.rate_it;
                o.OthOpts = opening_opts;
                if (sold) {
                    o.SaleDate = random_date(rng, kYear - 1, 1);
                    o.SaleAmt = cost * 0.4;
                    o.SaleExp = 500;
                }
                if (rng.below(100) == 0)
                    o.DetESA =
                        "Old part\xC2\xA6"
                        "1000\xC2\xA6\xC2\xA6"
                        "0\xC2\xA6"
                        "0\xC2\xA6"
                        "250";
                openings.push_back(std::move(o));
            } else {
                store::AdditionRow a;
                a.IdFAGM = groups[gi];
                a.Part = "Addition " + std::to_string(done);
                a.PutDate = random_date(rng, kYear - 1, 1);
                a.AccDate = a.PutDate;
                a.PurAmt = cost;
                if (rng.below(10) == 0) a.Subsidy = cost * 0.1;
                a.ResValue = cost * 0.05;
                a.LifeYrs = g.life;
                a.RateFACL = g.wdv > 0 ? g.wdv : g.slm;
                a.RateIT = g.rate_it;
                a.AddlDepRT = g.addl;
                a.OthOpts = g.addl > 0 ? addition_addl_opts : addition_opts;
                if (sold) {
                    a.SaleDate = random_date(rng, kYear - 1, 1);
                    a.SaleAmt = cost * 0.7;
                }
                additions.push_back(std::move(a));
            }
        }
        store::insert_openings(db, kCode, kYear, openings);
        store::insert_additions(db, kCode, kYear, additions);
    }
}

// "mysql://u@h/?socket=s" with the database named.
std::string with_database(const std::string& server_url, const std::string& name) {
    const auto authority = server_url.find("://");
    const auto query = server_url.find('?');
    const auto path_end = query == std::string::npos ? server_url.size() : query;
    const auto slash = server_url.find('/', authority == std::string::npos ? 0 : authority + 3);
    if (slash == std::string::npos || slash > path_end)
        return server_url.substr(0, path_end) + "/" + name + server_url.substr(path_end);
    return server_url.substr(0, slash + 1) + name + server_url.substr(path_end);
}

// One prepared database per backend and size, kept for the whole run.
class Prepared {
public:
    Prepared(store::Backend backend, int n) {
        const std::string name = "brenlow_bench_" + std::to_string(getpid()) + "_" + std::to_string(n);
        if (backend == store::Backend::sqlite) {
            folder_ = (std::filesystem::temp_directory_path() / name).string();
            std::filesystem::create_directories(folder_);
            db_ = store::open_database("sqlite:" + folder_ + "/bench.db");
        } else {
            const std::string server = std::getenv("BRENLOW_TEST_MYSQL");
            server_ = store::open_database(with_database(server, ""));
            server_->execute("CREATE DATABASE " + name);
            mysql_name_ = name;
            db_ = store::open_database(with_database(server, name));
        }
        store::ensure_schema(*db_, store::reference_data_dir());
        store::create_client_year(*db_, kCode, kYear, "BENCH CLIENT", 3);
        write_register(*db_, n);
    }
    ~Prepared() {
        db_.reset();
        if (server_) server_->execute("DROP DATABASE IF EXISTS " + mysql_name_);
        if (!folder_.empty()) std::filesystem::remove_all(folder_);
    }
    store::Database& db() { return *db_; }

private:
    std::string folder_, mysql_name_;
    std::unique_ptr<store::Database> server_;
    std::unique_ptr<store::Database> db_;
};

Prepared& prepared(store::Backend backend, int n) {
    static std::map<std::pair<int, int>, std::unique_ptr<Prepared>> cache;
    auto& p = cache[{static_cast<int>(backend), n}];
    if (!p) p = std::make_unique<Prepared>(backend, n);
    return *p;
}

void reset_peak_rss() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

// VmHWM of /proc/self/status, else the process's peak from getrusage.
double peak_rss_mb() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmHWM:", 0) == 0) return std::stod(line.substr(6)) / 1024.0;
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return static_cast<double>(u.ru_maxrss) / 1024.0;  // kilobytes on Linux
}

void calculate(benchmark::State& state, store::Backend backend, reg::Mode mode) {
    const int n = static_cast<int>(state.range(0));
    auto& p = prepared(backend, n);
    reg::CalculationOptions options;
    options.keep_entries = false;
    options.sheets = false;
    reset_peak_rss();
    for (auto _ : state) {
        auto r = reg::run_calculation(p.db(), kCode, kYear, mode, false, options);
        benchmark::DoNotOptimize(r.chart.data());
        benchmark::DoNotOptimize(r.books_assets.data());
    }
    state.SetItemsProcessed(state.iterations() * n);
    state.counters["peak_rss_MB"] = peak_rss_mb();
}

void register_all() {
    std::vector<std::pair<store::Backend, const char*>> backends = {{store::Backend::sqlite, "sqlite"}};
    if (std::getenv("BRENLOW_TEST_MYSQL")) backends.push_back({store::Backend::mysql, "mysql"});
    for (const auto& [backend, name] : backends) {
        for (const auto& [mode, mode_name] :
             {std::pair{reg::Mode::DEP_IT, "IncomeTaxChart"}, std::pair{reg::Mode::DEP_FA, "BooksChart"}}) {
            benchmark::RegisterBenchmark(
                (std::string("Calculate/") + mode_name + "/" + name).c_str(),
                [backend = backend, mode = mode](benchmark::State& s) { calculate(s, backend, mode); })
                ->Arg(10000)
                ->Arg(100000)
                ->Arg(1000000)
                ->Unit(benchmark::kMillisecond)
                ->Iterations(3);
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    register_all();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
