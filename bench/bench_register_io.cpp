// `brenlow register export` and `register import` of a JSON document as a person runs
// them, on a SQLite register of 100,000 entries (and of 1,000,000 when
// BRENLOW_BENCH_MILLION=1 asks for it): the wall time of each command and the peak
// resident memory of the process that ran it, beside the floor of the same work (the rows
// read from or written to the database, the file's bytes, nothing in between). Each runs
// in a child process of its own, so that its peak is its own and not the benchmark's or
// the generator's.

#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "app/cli/cli.h"
#include "bench_entries.h"
#include "store/client_store.h"
#include "store/database.h"
#include "store/register_bulk.h"
#include "store/register_store.h"
#include "store/seed.h"
#include "suite/output_file.h"

namespace {

using namespace brenlow;

constexpr int kYear = 2016;

struct ChildRun {
    int status = -1;
    double seconds = 0;
    double peak_mb = 0;
};

// Runs `work` in a child process; its exit status, wall time and peak resident size.
ChildRun in_child(const std::function<int()>& work) {
    const auto start = std::chrono::steady_clock::now();
    const pid_t pid = ::fork();
    if (pid == 0) {
        int rc = 1;
        try {
            rc = work();
        } catch (...) {
        }
        std::_Exit(rc);
    }
    ChildRun run;
    struct rusage usage {};
    int status = 0;
    if (pid > 0 && ::wait4(pid, &status, 0, &usage) == pid) {
        run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        run.peak_mb = static_cast<double>(usage.ru_maxrss) / 1024.0;  // kilobytes on Linux
    }
    run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return run;
}

// Entries `from` to `to` (not included) of the generated register, written to `code`.
void insert_rows(store::Database& db, const char* code, int from, int to) {
    std::vector<store::OpeningRow> openings;
    std::vector<store::AdditionRow> additions;
    for (int i = from; i < to; ++i) {
        if (i % 10 < 7)
            openings.push_back(bench::opening_entry(i));
        else
            additions.push_back(bench::addition_entry(i));
    }
    store::insert_openings(db, code, kYear, openings);
    store::insert_additions(db, code, kYear, additions);
}

// A register of `entries` rows (seven in ten opening assets, the rest additions) over
// twenty asset groups, for client C001; C002 is the empty year the import goes into,
// C003 the one the floor of the import writes.
// Generated once per size, in a child, and kept for the whole run.
class Register {
public:
    explicit Register(int entries) {
        dir_ = std::filesystem::temp_directory_path() /
               ("brenlow-bench-register-io-" + std::to_string(::getpid()) + "-" + std::to_string(entries));
        std::filesystem::remove_all(dir_);
        std::filesystem::create_directories(dir_);
        const auto made = in_child([&] {
            generate(entries);
            return 0;
        });
        ok_ = made.status == 0;
    }
    ~Register() { std::filesystem::remove_all(dir_); }
    Register(const Register&) = delete;
    Register& operator=(const Register&) = delete;

    bool ok() const { return ok_; }
    std::string url() const { return "sqlite:" + (dir_ / "register.db").string(); }
    std::string file(const std::string& name) const { return (dir_ / name).string(); }

private:
    void generate(int entries) const {
        auto db = store::open_database(url());
        store::ensure_schema(*db, store::reference_data_dir());
        store::create_client_year(*db, "C001", kYear, "BENCH", 3);
        store::create_client_year(*db, "C002", kYear, "TARGET", 3);
        store::create_client_year(*db, "C003", kYear, "FLOOR", 3);
        bench::add_groups(*db, kYear);
        constexpr int kBatch = 50000;
        for (int from = 0; from < entries; from += kBatch)
            insert_rows(*db, "C001", from, std::min(entries, from + kBatch));
    }

    std::filesystem::path dir_;
    bool ok_ = false;
};

Register& prepared(int entries) {
    static std::map<int, std::unique_ptr<Register>> registers;
    auto& r = registers[entries];
    if (!r) r = std::make_unique<Register>(entries);
    return *r;
}

int run_cli(const std::vector<std::string>& args) {
    std::ofstream out("/dev/null");
    std::ostringstream err;
    const int rc = brenlow::cli::run(args, out, err);
    if (rc != 0) std::fputs(err.str().c_str(), stderr);
    return rc;
}

std::vector<std::string> export_args(const Register& reg) {
    return {"--db",
            reg.url(),
            "register",
            "export",
            reg.file("register.json"),
            "--client",
            "C001",
            "--year",
            std::to_string(kYear),
            "--yes"};
}

// Time and peak memory of the command, per iteration, beside its floor: what the same
// work costs without the command's own (reading or writing the rows in the database and
// the file's bytes, nothing in between). The peak counter is the highest of the
// iterations; floor_ms the floor's mean, ratio ours over the floor.
void measure(benchmark::State& state, const std::vector<std::string>& args,
             const std::function<int()>& floor) {
    double peak = 0, ours = 0, floor_total = 0, floor_peak = 0;
    for (auto _ : state) {
        const ChildRun run = in_child([&] { return run_cli(args); });
        const ChildRun base = in_child(floor);
        if (run.status != 0 || base.status != 0) {
            state.SkipWithError(run.status != 0 ? "the command failed" : "the floor failed");
            break;
        }
        state.SetIterationTime(run.seconds);
        peak = std::max(peak, run.peak_mb);
        ours += run.seconds;
        floor_total += base.seconds;
        floor_peak = std::max(floor_peak, base.peak_mb);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["peak_rss_MB"] = peak;
    state.counters["floor_ms"] =
        floor_total * 1000.0 / static_cast<double>(std::max<std::int64_t>(state.iterations(), 1));
    state.counters["floor_peak_MB"] = floor_peak;
    state.counters["ratio"] = floor_total > 0 ? ours / floor_total : 0;
}

// Every row read from the database with all its columns, and as many bytes as the
// document has written whole to a file.
int export_floor(const Register& reg) {
    auto db = store::open_database(reg.url());
    store::RegisterStore rs(*db, "C001", kYear);
    std::size_t text = 0;
    rs.for_each_opening(std::nullopt,
                        [&](store::OpeningRow&& o) { text += o.Part.size() + o.OthOpts.size(); });
    rs.for_each_addition(std::nullopt,
                         [&](store::AdditionRow&& a) { text += a.Part.size() + a.OthOpts.size(); });
    const auto bytes = std::filesystem::file_size(reg.file("register.json"));
    suite::WholeFileWriter out(reg.file("floor.json"), suite::Existing::replace);
    const std::string block(std::size_t{1} << 20, text % 2 ? ' ' : '\n');
    for (std::uintmax_t done = 0; done < bytes; done += block.size())
        out.write(std::string_view(block).substr(
            0, static_cast<std::size_t>(std::min<std::uintmax_t>(block.size(), bytes - done))));
    out.finish();
    return 0;
}

// The document's bytes read through, and the same rows written in one group of writes
// in place of the ones written before.
int import_floor(const Register& reg, int entries) {
    std::ifstream in(reg.file("register.json"), std::ios::binary);
    std::vector<char> buffer(std::size_t{1} << 20);
    std::size_t spaces = 0;
    while (in.read(buffer.data(), static_cast<std::streamsize>(buffer.size())) || in.gcount() > 0)
        spaces += static_cast<std::size_t>(std::count(buffer.data(), buffer.data() + in.gcount(), ' '));
    auto db = store::open_database(reg.url());
    store::RegisterStore rs(*db, "C003", kYear);
    store::Transaction tx(*db);
    rs.delete_all_openings(std::nullopt);
    rs.delete_all_additions(std::nullopt);
    constexpr int kBatch = 10000;
    for (int from = 0; from < entries; from += kBatch)
        insert_rows(*db, "C003", from, std::min(entries, from + kBatch));
    tx.commit();
    return spaces > 0 ? 0 : 1;
}

void export_json(benchmark::State& state) {
    auto& reg = prepared(static_cast<int>(state.range(0)));
    if (!reg.ok()) return state.SkipWithError("the register was not generated");
    measure(state, export_args(reg), [&reg] { return export_floor(reg); });
    state.counters["file_MB"] =
        static_cast<double>(std::filesystem::file_size(reg.file("register.json"))) / 1e6;
}

// Into the empty client, replacing what the iteration before wrote.
void import_json(benchmark::State& state) {
    auto& reg = prepared(static_cast<int>(state.range(0)));
    if (!reg.ok()) return state.SkipWithError("the register was not generated");
    if (!std::filesystem::exists(reg.file("register.json")) &&
        in_child([&] { return run_cli(export_args(reg)); }).status != 0)
        return state.SkipWithError("the export failed");
    const int entries = static_cast<int>(state.range(0));
    measure(state,
            {"--db", reg.url(), "register", "import", reg.file("register.json"), "--client", "C002", "--year",
             std::to_string(kYear), "--replace", "--yes"},
            [&reg, entries] { return import_floor(reg, entries); });
}

void register_all() {
    std::vector<int> sizes = {100000};
    if (const char* million = std::getenv("BRENLOW_BENCH_MILLION"); million && std::string(million) == "1")
        sizes.push_back(1000000);
    const auto min_of = [](const std::vector<double>& v) { return *std::min_element(v.begin(), v.end()); };
    using Fn = void (*)(benchmark::State&);
    for (const auto& [name, fn] : {std::pair<const char*, Fn>{"RegisterExport/json", export_json},
                                   std::pair<const char*, Fn>{"RegisterImport/json", import_json}}) {
        auto* b = benchmark::RegisterBenchmark(name, fn)
                      ->Unit(benchmark::kMillisecond)
                      ->UseManualTime()
                      ->Iterations(1)
                      ->Repetitions(3)
                      ->ComputeStatistics("min", min_of);
        for (const int n : sizes) b->Arg(n);
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
