// Times the calculate command end to end — read the register, compute, write the chart
// of the year — on generated registers of 10,000, 100,000 and 1,000,000 entries, on
// SQLite and, when BRENLOW_TEST_MYSQL names a server (scripts/with-test-mariadb.sh), on
// MariaDB. The registers are written once per size and backend before timing.
// The counter peak_rss_MB is the peak resident memory of the timed runs alone: the
// peak is reset (/proc/self/clear_refs) after the register has been written.
//
// Beside each calculate the same iteration times the floor: a raw read of both
// register tables through the server's own C interface (SQLite's, MariaDB's), every
// column of every row read, nothing else done. floor_ms is that time, ratio is ours over the floor in the
// same iteration. Each case is repeated; the report gives mean, median, min and spread.
//
// OneOfTenClients times one client's calculate in a database of ten clients with
// registers of the same size, beside that client alone.
//
// ChartBooksJson runs `brenlow chart --books --json` on the SQLite register, its
// output thrown away, for the command's time and peak memory.
#include <benchmark/benchmark.h>
#include <mysql.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "app/cli/cli.h"
#include "controls/vb_date.h"
#include "register/calculation.h"
#include "register/register_options.h"
#include "store/client_store.h"
#include "store/masters_store.h"
#include "store/mysql_database.h"
#include "store/register_bulk.h"
#include "store/schema.h"
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

// The year's asset groups, shared by every client of the database.
std::vector<long> add_groups(store::Database& db) {
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
    return groups;
}

// Writes a client's register of n entries (seven in ten opening, the rest additions;
// one in twenty sold) in batches.
void write_register(store::Database& db, const std::string& code, int n, const std::vector<long>& groups) {
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
        store::insert_openings(db, code, kYear, openings);
        store::insert_additions(db, code, kYear, additions);
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

// One prepared database per backend, size and number of clients, kept for the whole
// run. The client timed is always BENCH1; the others have registers of the same size.
class Prepared {
public:
    Prepared(store::Backend backend, int n, int clients) {
        const std::string name = "brenlow_bench_" + std::to_string(getpid()) + "_" + std::to_string(n) + "_" +
                                 std::to_string(clients);
        if (backend == store::Backend::sqlite) {
            folder_ = (std::filesystem::temp_directory_path() / name).string();
            std::filesystem::create_directories(folder_);
            db_ = store::open_database("sqlite:" + folder_ + "/bench.db");
        } else {
            const std::string server = std::getenv("BRENLOW_TEST_MYSQL");
            server_ = store::open_database(with_database(server, ""));
            server_->execute("CREATE DATABASE " + name);
            mysql_name_ = name;
            mysql_url_ = with_database(server, name);
            db_ = store::open_database(mysql_url_);
        }
        store::ensure_schema(*db_, store::reference_data_dir());
        const auto groups = add_groups(*db_);
        for (int c = 1; c <= clients; ++c) {
            const std::string code = c == 1 ? std::string(kCode) : "BENCH" + std::to_string(c);
            store::create_client_year(*db_, code, kYear, "BENCH CLIENT " + std::to_string(c), 3);
            write_register(*db_, code, n, groups);
        }
    }
    ~Prepared() {
        db_.reset();
        if (server_) server_->execute("DROP DATABASE IF EXISTS " + mysql_name_);
        if (!folder_.empty()) std::filesystem::remove_all(folder_);
    }
    store::Database& db() { return *db_; }
    // The SQLite file, empty on MariaDB.
    std::string sqlite_file() const { return folder_.empty() ? std::string() : folder_ + "/bench.db"; }
    // The MariaDB address with the database named, empty on SQLite.
    const std::string& mysql_url() const { return mysql_url_; }

private:
    std::string folder_, mysql_name_, mysql_url_;
    std::unique_ptr<store::Database> server_;
    std::unique_ptr<store::Database> db_;
};

Prepared& prepared(store::Backend backend, int n, int clients = 1) {
    static std::map<std::tuple<int, int, int>, std::unique_ptr<Prepared>> cache;
    auto& p = cache[{static_cast<int>(backend), n, clients}];
    if (!p) p = std::make_unique<Prepared>(backend, n, clients);
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

// The floor: every column of every row of both register tables, read through the C
// interface on a connection of its own, as fast as SQLite hands them over.
std::uint64_t raw_read(sqlite3* db, const std::string& table) {
    sqlite3_stmt* st = nullptr;
    const std::string sql = "SELECT * FROM " + table;
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &st, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(db));
    std::uint64_t seen = 0;
    const int columns = sqlite3_column_count(st);
    while (sqlite3_step(st) == SQLITE_ROW) {
        for (int c = 0; c < columns; ++c) {
            switch (sqlite3_column_type(st, c)) {
                case SQLITE_INTEGER:
                    seen += static_cast<std::uint64_t>(sqlite3_column_int64(st, c));
                    break;
                case SQLITE_FLOAT:
                    seen += static_cast<std::uint64_t>(sqlite3_column_double(st, c));
                    break;
                case SQLITE_TEXT: {
                    const auto* text = sqlite3_column_text(st, c);
                    seen += static_cast<std::uint64_t>(sqlite3_column_bytes(st, c)) + (text ? text[0] : 0);
                    break;
                }
                default:
                    break;
            }
        }
    }
    sqlite3_finalize(st);
    return seen;
}

class Floor {
public:
    virtual ~Floor() = default;
    virtual std::uint64_t read() = 0;
};

class SqliteFloor final : public Floor {
public:
    explicit SqliteFloor(const std::string& file) {
        if (sqlite3_open_v2(file.c_str(), &db_, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, nullptr) !=
            SQLITE_OK)
            throw std::runtime_error("cannot open " + file);
    }
    ~SqliteFloor() override { sqlite3_close_v2(db_); }
    SqliteFloor(const SqliteFloor&) = delete;
    SqliteFloor& operator=(const SqliteFloor&) = delete;
    std::uint64_t read() override {
        return raw_read(db_, store::register_opening_table(kYear)) +
               raw_read(db_, store::register_addition_table(kYear));
    }

private:
    sqlite3* db_ = nullptr;
};

// Rows streamed as the server sends them (mysql_use_result), every field touched.
class MysqlFloor final : public Floor {
public:
    explicit MysqlFloor(const std::string& url) {
        const auto a = store::MysqlAddress::parse(url);
        conn_ = mysql_init(nullptr);
        mysql_options(conn_, MYSQL_SET_CHARSET_NAME, "utf8mb4");
        const auto text = [](const std::string& s) { return s.empty() ? nullptr : s.c_str(); };
        if (!mysql_real_connect(conn_, a.host.c_str(), text(a.user), text(a.password), text(a.database),
                                a.port, text(a.socket), 0))
            throw std::runtime_error(std::string("cannot connect: ") + mysql_error(conn_));
    }
    ~MysqlFloor() override { mysql_close(conn_); }
    MysqlFloor(const MysqlFloor&) = delete;
    MysqlFloor& operator=(const MysqlFloor&) = delete;
    std::uint64_t read() override {
        return read_table(store::register_opening_table(kYear)) +
               read_table(store::register_addition_table(kYear));
    }

private:
    std::uint64_t read_table(const std::string& table) {
        const std::string sql = "SELECT * FROM " + table;
        if (mysql_real_query(conn_, sql.data(), static_cast<unsigned long>(sql.size())) != 0)
            throw std::runtime_error(mysql_error(conn_));
        MYSQL_RES* result = mysql_use_result(conn_);
        const unsigned columns = mysql_num_fields(result);
        std::uint64_t seen = 0;
        while (MYSQL_ROW row = mysql_fetch_row(result)) {
            const unsigned long* lengths = mysql_fetch_lengths(result);
            for (unsigned c = 0; c < columns; ++c)
                seen += lengths[c] + (row[c] ? static_cast<unsigned char>(row[c][0]) : 0);
        }
        mysql_free_result(result);
        return seen;
    }

    MYSQL* conn_ = nullptr;
};

std::unique_ptr<Floor> floor_of(const Prepared& p) {
    if (!p.sqlite_file().empty()) return std::make_unique<SqliteFloor>(p.sqlite_file());
    return std::make_unique<MysqlFloor>(p.mysql_url());
}

double seconds_since(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void calculate(benchmark::State& state, store::Backend backend, reg::Mode mode) {
    const int n = static_cast<int>(state.range(0));
    auto& p = prepared(backend, n);
    reg::CalculationOptions options;
    options.keep_entries = false;
    options.sheets = false;
    const std::unique_ptr<Floor> floor = floor_of(p);
    double ours_total = 0, floor_total = 0;
    reset_peak_rss();
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        auto r = reg::run_calculation(p.db(), kCode, kYear, mode, false, options);
        benchmark::DoNotOptimize(r.chart.data());
        benchmark::DoNotOptimize(r.books_assets.data());
        const double ours = seconds_since(start);
        state.SetIterationTime(ours);
        ours_total += ours;
        const auto floor_start = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(floor->read());
        floor_total += seconds_since(floor_start);
    }
    state.SetItemsProcessed(state.iterations() * n);
    state.counters["peak_rss_MB"] = peak_rss_mb();
    state.counters["floor_ms"] = floor_total * 1000.0 / static_cast<double>(state.iterations());
    state.counters["ratio"] = ours_total / floor_total;
}

// One client of ten in one database, beside the same client alone in a database of
// its own, in the same iteration: alone_ms and ratio show what the other clients'
// rows cost the one being calculated.
void one_of_ten_clients(benchmark::State& state, store::Backend backend) {
    const int n = static_cast<int>(state.range(0));
    auto& alone = prepared(backend, n);
    auto& shared = prepared(backend, n, 10);
    reg::CalculationOptions options;
    options.keep_entries = false;
    options.sheets = false;
    double ours_total = 0, alone_total = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        auto r = reg::run_calculation(shared.db(), kCode, kYear, reg::Mode::DEP_IT, false, options);
        benchmark::DoNotOptimize(r.chart.data());
        const double ours = seconds_since(start);
        state.SetIterationTime(ours);
        ours_total += ours;
        const auto alone_start = std::chrono::steady_clock::now();
        auto a = reg::run_calculation(alone.db(), kCode, kYear, reg::Mode::DEP_IT, false, options);
        benchmark::DoNotOptimize(a.chart.data());
        alone_total += seconds_since(alone_start);
    }
    state.SetItemsProcessed(state.iterations() * n);
    state.counters["alone_ms"] = alone_total * 1000.0 / static_cast<double>(state.iterations());
    state.counters["ratio"] = ours_total / alone_total;
}

void chart_books_json(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    auto& p = prepared(store::Backend::sqlite, n);
    std::ofstream sink("/dev/null");
    const std::vector<std::string> args = {
        "--db",   "sqlite:" + p.sqlite_file(), "chart",   "--client", kCode,
        "--year", std::to_string(kYear),       "--books", "--json"};
    reset_peak_rss();
    for (auto _ : state) {
        std::ostringstream err;
        if (cli::run(args, sink, err) != 0) state.SkipWithError(err.str().c_str());
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
                ->UseManualTime()
                ->Iterations(3)
                ->Repetitions(3)
                ->ComputeStatistics("min", [](const std::vector<double>& v) {
                    return *std::min_element(v.begin(), v.end());
                });
        }
        benchmark::RegisterBenchmark(
            (std::string("OneOfTenClients/IncomeTaxChart/") + name).c_str(),
            [backend = backend](benchmark::State& s) { one_of_ten_clients(s, backend); })
            ->Arg(10000)
            ->Arg(100000)
            ->Unit(benchmark::kMillisecond)
            ->UseManualTime()
            ->Iterations(3)
            ->Repetitions(3)
            ->ComputeStatistics(
                "min", [](const std::vector<double>& v) { return *std::min_element(v.begin(), v.end()); });
    }
    benchmark::RegisterBenchmark("ChartBooksJson/sqlite", chart_books_json)
        ->Arg(10000)
        ->Arg(100000)
        ->Arg(1000000)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1)
        ->Repetitions(3)
        ->ComputeStatistics(
            "min", [](const std::vector<double>& v) { return *std::min_element(v.begin(), v.end()); });
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
