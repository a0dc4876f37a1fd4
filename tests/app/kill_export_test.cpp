// The real program stopped dead (kill -9) at random moments while it writes a file:
// the file is then either the old one, byte for byte, or the new one whole; and the
// next run leaves no temporary of the killed ones behind. A few runs per command here;
// BRENLOW_KILL_RUNS asks for more.

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>
#include <thread>

#include "app/cli/cli.h"
#include "exchange/spreadsheet_files.h"
#include "program_run.h"
#include "support/test_databases.h"

namespace brenlow::cli {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

std::string read_all(const fs::path& p) {
    std::ifstream f(p, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

int kill_runs() {
    if (const char* n = std::getenv("BRENLOW_KILL_RUNS"); n && std::atoi(n) > 0) return std::atoi(n);
    return 3;
}

// The rows of each sheet, as read back; empty when the file is not a workbook.
std::vector<std::size_t> sheet_rows(const fs::path& file) {
    std::string error;
    const auto sheets = exchange::read_spreadsheet(file.string(), error);
    std::vector<std::size_t> rows;
    if (sheets)
        for (const auto& s : *sheets) rows.push_back(s.rows.size());
    return rows;
}

// Whether `file` is the new file whole, as the complete run `reference` wrote it: the
// same bytes where a run writes the same bytes; the same sheets and rows of a workbook
// that carries the time it was made; a PDF read to its end.
bool whole_new(const fs::path& file, const std::string& reference, const std::vector<std::size_t>& rows) {
    const std::string ext = file.extension().string();
    const std::string bytes = read_all(file);
    if (ext == ".json" || ext == ".xls") return bytes == reference;
    if (ext == ".pdf")
        return bytes.size() > 64 && bytes.rfind("%PDF-", 0) == 0 &&
               bytes.find("%%EOF", bytes.size() - 64) != std::string::npos;
    return !rows.empty() && sheet_rows(file) == rows;
}

// Temporaries of ours beside the target.
std::vector<std::string> temporaries(const fs::path& folder) {
    std::vector<std::string> out;
    for (const auto& e : fs::directory_iterator(folder))
        if (e.path().filename().string().find(".brenlow-tmp-") != std::string::npos)
            out.push_back(e.path().filename().string());
    return out;
}

class KillExport : public test::BackendTest {
protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped()) return;
        char pattern[] = "/tmp/brenlow-kill-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern), nullptr);
        dir_ = pattern;
        fs::create_directories(dir_ / "out");
        // A register large enough that writing it takes a while: the demonstration's
        // entries many times over, in a company of its own.
        ASSERT_EQ(cli({"demo", "--out", (dir_ / "demo").string()}).code, 0);
        const auto doc_file = dir_ / "demo.json";
        ASSERT_EQ(cli({"register", "export", doc_file.string(), "--client", "DEMO01", "--year", "2025"}).code,
                  0);
        Json doc = Json::parse(read_all(doc_file));
        for (const char* table : {"NewFATRo", "NewFATRa"}) {
            const Json rows = doc[table];
            Json many = Json::array();
            for (int copy = 0; copy < 300; ++copy)
                for (Json row : rows) many.push_back(row);
            doc[table] = many;
        }
        std::ofstream(dir_ / "big.json") << doc.dump();
        ASSERT_EQ(cli({"init", "--client", "BIG", "--year", "2025", "--status", "3"}).code, 0);
        const auto r = cli({"register", "import", (dir_ / "big.json").string(), "--client", "BIG", "--year",
                            "2025", "--yes"});
        ASSERT_EQ(r.code, 0) << r.err;
    }
    void TearDown() override {
        std::error_code ec;
        if (!dir_.empty()) fs::remove_all(dir_, ec);
        BackendTest::TearDown();
    }
    struct CliResult {
        int code;
        std::string err;
    };
    CliResult cli(std::vector<std::string> words) {
        words.insert(words.begin(), {"--db", temp().url()});
        std::ostringstream out, err;
        const int code = run(words, out, err);
        return {code, err.str()};
    }
    std::vector<std::string> program_args(const std::vector<std::string>& words) {
        std::vector<std::string> args = {"--db", temp().url()};
        args.insert(args.end(), words.begin(), words.end());
        return args;
    }
    fs::path dir_;
};

struct Export {
    const char* file;
    std::vector<std::string> words;  // FILE stands for the file
};

TEST_P(KillExport, AKilledExportLeavesTheOldFileOrTheWholeNewOneAndTheNextRunNoTemporary) {
    const std::vector<Export> exports = {
        {"register.json", {"register", "export", "FILE", "--client", "BIG", "--year", "2025", "--yes"}},
        {"register.xls", {"register", "export", "FILE", "--client", "BIG", "--year", "2025", "--yes"}},
        {"register.xlsx", {"register", "export", "FILE", "--client", "BIG", "--year", "2025", "--yes"}},
        {"chart.pdf", {"chart", "--client", "BIG", "--year", "2025", "--books", "--pdf", "FILE", "--yes"}},
        {"chart.xlsx", {"chart", "--client", "BIG", "--year", "2025", "--books", "--xlsx", "FILE", "--yes"}},
    };
    const unsigned seed = static_cast<unsigned>(::testing::UnitTest::GetInstance()->random_seed());
    std::mt19937 random(seed);
    const std::string old = "the old file, which must stay whole\n";
    for (const auto& e : exports) {
        const auto target = dir_ / "out" / e.file;
        auto words = e.words;
        for (auto& w : words)
            if (w == "FILE") w = target.string();
        const auto args = program_args(words);
        SCOPED_TRACE(std::string(e.file) + ", seed " + std::to_string(seed));

        // How long a whole run takes: the kills fall anywhere within it.
        const auto start = std::chrono::steady_clock::now();
        const auto full = run_program(args, (dir_ / "err.txt").string());
        const auto length =
            std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
        ASSERT_TRUE(full.exited && full.code == 0) << full.err;
        const std::string reference = read_all(target);
        const auto rows = sheet_rows(target);
        ASSERT_TRUE(whole_new(target, reference, rows));
        std::uniform_int_distribution<long> moment(0, length.count() + length.count() / 10);

        int kept_old = 0, made_new = 0;
        for (int i = 0; i < kill_runs(); ++i) {
            std::ofstream(target, std::ios::binary | std::ios::trunc) << old;
            Program p(args, (dir_ / "err.txt").string());
            std::this_thread::sleep_for(std::chrono::microseconds(moment(random)));
            p.kill();
            p.wait();
            if (read_all(target) == old) {
                ++kept_old;
            } else {
                EXPECT_TRUE(whole_new(target, reference, rows))
                    << "run " << i << ": neither the old file nor a whole new one";
                ++made_new;
            }
        }
        RecordProperty(std::string(e.file) + " kept old", kept_old);
        RecordProperty(std::string(e.file) + " made new", made_new);

        // The next run clears what the killed ones left.
        const auto after = run_program(args, (dir_ / "err.txt").string());
        EXPECT_TRUE(after.exited && after.code == 0) << after.err;
        EXPECT_TRUE(whole_new(target, reference, rows));
        EXPECT_EQ(temporaries(dir_ / "out"), std::vector<std::string>{});
    }
}

BRENLOW_INSTANTIATE_BACKENDS(KillExport);

}  // namespace
}  // namespace brenlow::cli
