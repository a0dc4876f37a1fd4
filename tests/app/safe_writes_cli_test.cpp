// Every command that writes a file, on both backends: never over the database (the
// real program, its database open as a person's would be), never over an existing
// file without --yes; a workbook export that fails half-way keeps the old workbook; a
// slip in init's options or an empty --db writes nothing.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/cli/cli.h"
#include "program_run.h"
#include "store/client_store.h"
#include "support/test_databases.h"

namespace brenlow::cli {
namespace {

namespace fs = std::filesystem;

std::string read_all(const fs::path& p) {
    std::ifstream f(p, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

struct CliResult {
    int code;
    std::string out, err;
};

// One command that writes a file; FILE stands for the file.
struct Writer {
    const char* what;
    std::vector<std::string> words;
    const char* extension;
    const char* command;  // as the error lines name it
};

const std::vector<Writer>& writers() {
    static const std::vector<Writer> all = {
        {"register export (JSON)",
         {"register", "export", "FILE", "--client", "DEMO01", "--year", "2025"},
         ".json",
         "register"},
        {"register export (.xls)",
         {"register", "export", "FILE", "--client", "DEMO01", "--year", "2025"},
         ".xls",
         "register"},
        {"register export (.xlsx)",
         {"register", "export", "FILE", "--client", "DEMO01", "--year", "2025"},
         ".xlsx",
         "register"},
        {"schedules export",
         {"schedules", "export", "FILE", "--client", "DEMO01", "--year", "2025"},
         ".json",
         "schedules"},
        {"schedules show --pdf",
         {"schedules", "show", "Reserve and Surplus", "--client", "DEMO01", "--year", "2025", "--pdf",
          "FILE"},
         ".pdf",
         "schedules"},
        {"schedules fixed export",
         {"schedules", "fixed", "export", "FILE", "--client", "DEMO01", "--year", "2025"},
         ".json",
         "schedules"},
        {"schedules fixed chart --pdf",
         {"schedules", "fixed", "chart", "--it", "--client", "DEMO01", "--year", "2025", "--pdf", "FILE"},
         ".pdf",
         "schedules"},
        {"capital export",
         {"capital", "export", "FILE", "--client", "FIRM1", "--year", "2025"},
         ".json",
         "capital"},
        {"capital show --pdf",
         {"capital", "show", "--client", "FIRM1", "--year", "2025", "--pdf", "FILE"},
         ".pdf",
         "capital"},
        {"chart --pdf",
         {"chart", "--client", "DEMO01", "--year", "2025", "--it", "--pdf", "FILE"},
         ".pdf",
         "chart"},
        {"chart --xls",
         {"chart", "--client", "DEMO01", "--year", "2025", "--books", "--xls", "FILE"},
         ".xls",
         "chart"},
        {"chart --xlsx",
         {"chart", "--client", "DEMO01", "--year", "2025", "--books", "--xlsx", "FILE"},
         ".xlsx",
         "chart"},
        {"chart --3cd --csv",
         {"chart", "--3cd", "--client", "DEMO01", "--year", "2025", "--csv", "FILE"},
         ".csv",
         "chart"},
        {"chart --3cd --pdf",
         {"chart", "--3cd", "--client", "DEMO01", "--year", "2025", "--pdf", "FILE"},
         ".pdf",
         "chart"},
        {"chart --3cd --json",
         {"chart", "--3cd", "--client", "DEMO01", "--year", "2025", "--json", "FILE"},
         ".json",
         "chart"},
        {"itr schedules",
         {"itr", "schedules", "--client", "DEMO01", "--year", "2025", "FILE"},
         ".json",
         "itr"},
    };
    return all;
}

std::vector<std::string> with_file(const Writer& w, const std::string& file, bool yes) {
    std::vector<std::string> words = w.words;
    for (auto& x : words)
        if (x == "FILE") x = file;
    if (yes) words.push_back("--yes");
    return words;
}

class SafeWritesCli : public test::BackendTest {
protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped()) return;
        char pattern[] = "/tmp/brenlow-safe-writes-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern), nullptr);
        dir_ = pattern;
        for (const auto& words : std::vector<std::vector<std::string>>{
                 {"demo", "--out", (dir_ / "demo").string()},
                 {"init", "--client", "FIRM1", "--year", "2025", "--name", "SHAH AND MEHTA", "--status", "2"},
                 {"capital", "partners", "--client", "FIRM1", "--add", "ANIL K SHAH"}}) {
            const auto r = cli(words);
            ASSERT_EQ(r.code, 0) << r.err;
        }
    }
    void TearDown() override {
        std::error_code ec;
        if (!dir_.empty()) fs::remove_all(dir_, ec);
        BackendTest::TearDown();
    }
    CliResult cli(std::vector<std::string> words) {
        words.insert(words.begin(), {"--db", temp().url()});
        std::ostringstream out, err;
        const int code = run(words, out, err);
        return {code, out.str(), err.str()};
    }
    // What a person sees of the practice's data: every register entry of the demonstration.
    std::string register_listing() {
        const auto r = cli({"register", "list", "--client", "DEMO01", "--year", "2025", "--json"});
        EXPECT_EQ(r.code, 0) << r.err;
        return r.out;
    }
    fs::path dir_;
};

TEST_P(SafeWritesCli, NoCommandWritesOverTheDatabaseOrItsJournal) {
    if (GetParam() != store::Backend::sqlite) GTEST_SKIP() << "the database is a file of the server's";
    const std::string db = temp().url().substr(std::string("sqlite:").size());
    const std::string listing = register_listing();
    const std::string refused =
        ": it is the database or another file the program has open; nothing was written.";
    for (const auto& w : writers()) {
        for (const std::string& target : {db, db + "-journal", db + "-wal"}) {
            for (const bool yes : {false, true}) {
                SCOPED_TRACE(std::string(w.what) + " onto " + target + (yes ? " --yes" : ""));
                std::vector<std::string> args = {"--db", temp().url()};
                const auto words = with_file(w, target, yes);
                args.insert(args.end(), words.begin(), words.end());
                const auto r = run_program(args, (dir_ / "err.txt").string());
                EXPECT_TRUE(r.exited);
                EXPECT_EQ(r.code, 1);
                EXPECT_EQ(r.err,
                          std::string("brenlow ") + w.command + ": Cannot write " + target + refused + "\n");
            }
        }
    }
    // Still the database (the charts' runs store their chart in it: its bytes may move),
    // with every entry; its log still a log.
    EXPECT_EQ(read_all(db).substr(0, 16), std::string("SQLite format 3\0", 16));
    EXPECT_EQ(register_listing(), listing);
    if (fs::exists(db + "-wal") && fs::file_size(db + "-wal") > 0) {
        EXPECT_EQ(read_all(db + "-wal").substr(0, 3), "\x37\x7f\x06");
    }
}

TEST_P(SafeWritesCli, AnExistingFileIsReplacedOnlyWithYes) {
    for (const auto& w : writers()) {
        SCOPED_TRACE(w.what);
        const auto target = dir_ / (std::string("earlier") + w.extension);
        const std::string earlier = "an earlier file, kept as it is";
        std::ofstream(target, std::ios::binary) << earlier;
        auto r = cli(with_file(w, target.string(), false));
        EXPECT_EQ(r.code, 2);
        EXPECT_EQ(r.err.substr(r.err.find("brenlow: stopped")),
                  "brenlow: stopped at the question: unanswered question: File [" + target.string() +
                      "] already exists. Do you want to overwrite it?\n");
        EXPECT_EQ(read_all(target), earlier);
        r = cli(with_file(w, target.string(), true));
        EXPECT_EQ(r.code, 0) << r.err;
        const std::string ext = w.extension;
        const auto expect_whole = [&ext](const std::string& text) {
            const std::map<std::string, std::string> magic = {
                {".pdf", "%PDF-"}, {".xls", "\xD0\xCF\x11\xE0"}, {".xlsx", "PK"}, {".csv", ""}};
            if (ext == ".json") {
                EXPECT_TRUE(nlohmann::json::accept(text));
            } else {
                EXPECT_EQ(text.substr(0, magic.at(ext).size()), magic.at(ext));
            }
        };
        const std::string now = read_all(target);
        EXPECT_NE(now, earlier);
        expect_whole(now);
        fs::remove(target);
        // A new file needs no answer. (A PDF or .xlsx carries the second it was made, so
        // only the files without a time are compared byte for byte.)
        r = cli(with_file(w, target.string(), false));
        EXPECT_EQ(r.code, 0) << r.err;
        const std::string again = read_all(target);
        expect_whole(again);
        if (ext != ".pdf" && ext != ".xlsx") {
            EXPECT_EQ(again, now);
        }
    }
    // Nothing else was left in the folder: no temporaries.
    std::vector<std::string> left;
    for (const auto& e : fs::directory_iterator(dir_)) left.push_back(e.path().filename().string());
    std::sort(left.begin(), left.end());
    EXPECT_EQ(left, (std::vector<std::string>{"demo", "earlier.csv", "earlier.json", "earlier.pdf",
                                              "earlier.xls", "earlier.xlsx"}));
}

// The disk fills while the workbook is written: a file-size limit between the size of
// the blank template and that of the filled workbook fails the write part-way, as a
// full disk does (for root too). The old workbook stays as it was, byte for byte.
TEST_P(SafeWritesCli, AWorkbookExportThatFailsHalfWayKeepsTheOldWorkbook) {
    const auto templ =
        fs::path(BRENLOW_PROGRAM).parent_path() / "Databases" / "AssetWiseDepChartCompv2.19.9.xls";
    ASSERT_TRUE(fs::exists(templ)) << templ;
    // A register whose workbook is far larger than the database's shared-memory file
    // (32 KB), which the limit must leave room for.
    const auto doc_file = dir_ / "demo.json";
    ASSERT_EQ(cli({"register", "export", doc_file.string(), "--client", "DEMO01", "--year", "2025"}).code, 0);
    auto doc = nlohmann::json::parse(read_all(doc_file));
    for (const char* table : {"NewFATRo", "NewFATRa"}) {
        auto many = nlohmann::json::array();
        for (int copy = 0; copy < 60; ++copy)
            for (const auto& row : doc[table]) many.push_back(row);
        doc[table] = many;
    }
    std::ofstream(doc_file, std::ios::trunc) << doc.dump();
    ASSERT_EQ(cli({"init", "--client", "BIG", "--year", "2025", "--status", "3"}).code, 0);
    ASSERT_EQ(
        cli({"register", "import", doc_file.string(), "--client", "BIG", "--year", "2025", "--yes"}).code, 0);
    const auto whole = dir_ / "whole.xls";
    ASSERT_EQ(cli({"register", "export", whole.string(), "--client", "BIG", "--year", "2025"}).code, 0);
    const auto template_size = fs::file_size(templ), workbook_size = fs::file_size(whole);
    const rlim_t limit = workbook_size / 2;
    ASSERT_GT(limit, std::max<std::uintmax_t>(template_size, 65536));

    const auto target = dir_ / "register.xls";
    std::string old;
    for (int i = 0; i < 2000; ++i) old += "OLD WORKBOOK ROW " + std::to_string(i) + "\n";
    std::ofstream(target, std::ios::binary) << old;
    const auto r = run_program({"--db", temp().url(), "register", "export", target.string(), "--client",
                                "BIG", "--year", "2025", "--yes"},
                               (dir_ / "err.txt").string(), limit);
    EXPECT_TRUE(r.exited);
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("Error ! Data Exported to File : " + target.string()), std::string::npos) << r.err;
    EXPECT_EQ(read_all(target), old);
    for (const auto& e : fs::directory_iterator(dir_))
        EXPECT_EQ(e.path().filename().string().find(".register.xls."), std::string::npos) << e.path();
}

TEST_P(SafeWritesCli, AnUnknownRegimeCreatesNoClient) {
    const auto r =
        cli({"init", "--client", "NEWCO", "--year", "2025", "--status", "3", "--regime", "115XYZ"});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(
        r.err,
        "brenlow init: --regime takes 115BA, 115BAA, 115BAB, 115BAC, 115BAD, 115BAE (comma-separated) or "
        "none; found \"115XYZ\".\n");
    EXPECT_EQ(r.out, "");
    EXPECT_FALSE(store::find_client_year(db(), "NEWCO", 2025).has_value());
}

TEST(SafeWritesCliStart, AnEmptyDatabaseAddressIsRefusedNamingTheOption) {
    for (const auto& args :
         {std::vector<std::string>{"--db", "", "settings"}, std::vector<std::string>{"--db=", "settings"}}) {
        std::ostringstream out, err;
        EXPECT_EQ(run(args, out, err), 1);
        EXPECT_EQ(
            err.str(),
            "brenlow: option --db is empty: give sqlite:PATH or mysql://USER@HOST/DB, or leave --db out for "
            "the embedded database.\n");
        EXPECT_EQ(out.str(), "");
    }
}

BRENLOW_INSTANTIATE_BACKENDS(SafeWritesCli);

}  // namespace
}  // namespace brenlow::cli
