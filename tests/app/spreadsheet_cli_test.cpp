// brenlow register export|import with workbooks (.xls, .xlsx) on both backends: the
// demonstration register goes out and back in unchanged, independent readers open
// what was written, and an existing file is never overwritten without --yes.

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/cli/cli.h"
#include "support/test_databases.h"

namespace brenlow::cli {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

struct Result {
    int code;
    std::string out, err;
};

Result run_cli(const std::vector<std::string>& args) {
    std::ostringstream out, err;
    const int code = run(args, out, err);
    return {code, out.str(), err.str()};
}

std::string read_all(const fs::path& p) {
    std::ifstream f(p, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

// The entries of a register document without what differs between clients.
Json entries_of(const std::string& json) {
    Json d = Json::parse(json);
    for (const char* t : {"NewFATRo", "NewFATRa"})
        for (auto& r : d[t]) {
            r.erase("SrNoFATR");
            r.erase("Code_No");
        }
    return Json{{"NewFATRo", d["NewFATRo"]}, {"NewFATRa", d["NewFATRa"]}, {"NewFAGM", d["NewFAGM"]}};
}

// An independent reader (python3-xlrd for .xls, python3-openpyxl for .xlsx) turns the
// workbook into JSON: sheet names, header rows 2 and 3, row 4, and row 4's date format.
constexpr const char* kReader = R"PY(
import json, sys, datetime
path = sys.argv[1]
out = {}
def text(v):
    if isinstance(v, datetime.datetime): return v.strftime('%d/%m/%Y')
    if isinstance(v, float) and v == int(v): return str(int(v))
    return '' if v is None else str(v)
if path.endswith('.xls'):
    import xlrd
    b = xlrd.open_workbook(path, formatting_info=True)
    out['sheets'] = b.sheet_names()
    for s in b.sheets():
        rows = []
        for r in range(1, 4):
            row = []
            for c in range(s.ncols):
                v = s.cell_value(r, c)
                if s.cell_type(r, c) == xlrd.XL_CELL_DATE:
                    v = datetime.datetime(*xlrd.xldate_as_tuple(v, b.datemode))
                row.append(text(v))
            rows.append(row)
        out[s.name] = rows
        out[s.name + ' D4 format'] = b.format_map[b.xf_list[s.cell_xf_index(3, 3)].format_key].format_str
else:
    import openpyxl
    b = openpyxl.load_workbook(path)
    out['sheets'] = b.sheetnames
    for s in b.worksheets:
        out[s.title] = [[text(v) for v in row] for row in s.iter_rows(min_row=2, max_row=4, values_only=True)]
        out[s.title + ' D4 format'] = s['D4'].number_format
print(json.dumps(out))
)PY";

class SpreadsheetCli : public test::BackendTest {
protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped()) return;
        dir_ =
            fs::temp_directory_path() /
            ("brenlow-sheet-cli-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "-" +
             std::to_string(
                 std::hash<std::string>{}(::testing::UnitTest::GetInstance()->current_test_info()->name())));
        fs::remove_all(dir_);
        fs::create_directories(dir_);
        const auto r = run_cli({"--db", temp().url(), "demo", "--out", dir_.string()});
        ASSERT_EQ(r.code, 0) << r.err;
    }
    void TearDown() override {
        if (!dir_.empty()) fs::remove_all(dir_);
        BackendTest::TearDown();
    }
    Result cli(std::vector<std::string> words) {
        words.insert(words.begin(), {"--db", temp().url()});
        return run_cli(words);
    }
    std::string file(const std::string& name) const { return (dir_ / name).string(); }
    Result export_demo(const std::string& path, std::vector<std::string> extra = {}) {
        std::vector<std::string> w = {"register", "export", path, "--client", "DEMO01", "--year", "2025"};
        w.insert(w.end(), extra.begin(), extra.end());
        return cli(w);
    }

    fs::path dir_;
};

TEST_P(SpreadsheetCli, TheDemoRegisterRoundTripsThroughBothWorkbookFormats) {
    ASSERT_EQ(export_demo(file("original.json")).code, 0);
    const Json original = entries_of(read_all(file("original.json")));
    for (const std::string ext : {".xls", ".xlsx"}) {
        SCOPED_TRACE(ext);
        const std::string book = file("demo" + ext), client = ext == ".xls" ? "XLS01" : "XLSX01";
        auto r = export_demo(book);
        ASSERT_EQ(r.code, 0) << r.err;
        // The screen's progress, to its end, and closing message, on standard error.
        for (const std::string& line : std::vector<std::string>{
                 "Exporting to " + book + " ...", "Exporting 'Opening' Details ...",
                 "Exporting 'Addition' Details ... 100%", "Data Successfully Exported to File : " + book})
            EXPECT_NE(r.err.find(line), std::string::npos) << line << "\n" << r.err;
        ASSERT_EQ(cli({"init", "--client", client, "--year", "2025", "--status", "3"}).code, 0);
        // The demo holds furniture put to use before 01/04/2014 with no carrying-amount
        // year: the entry rules ask about it, and without --yes the import stops there.
        r = cli({"register", "import", book, "--client", client, "--year", "2025"});
        EXPECT_EQ(r.code, 1);
        EXPECT_NE(r.err.find("Opening row 3 (sheet row 6), column "), std::string::npos) << r.err;
        r = cli({"register", "import", book, "--client", client, "--year", "2025", "--yes"});
        ASSERT_EQ(r.code, 0) << r.err;
        EXPECT_NE(r.out.find("7 opening entries, 7 additions; asset groups 5 matched, 0 created"),
                  std::string::npos)
            << r.out;
        ASSERT_EQ(
            cli({"register", "export", file(client + ".json"), "--client", client, "--year", "2025"}).code,
            0);
        EXPECT_EQ(entries_of(read_all(file(client + ".json"))), original);
    }
}

TEST_P(SpreadsheetCli, IndependentReadersOpenTheWorkbooksWithTheirHeadingsAndWords) {
    if (!fs::exists("/usr/bin/python3")) GTEST_SKIP() << "no /usr/bin/python3";
    std::ofstream(file("reader.py")) << kReader;
    for (const std::string ext : {".xls", ".xlsx"}) {
        SCOPED_TRACE(ext);
        const std::string book = file("demo" + ext);
        ASSERT_EQ(export_demo(book).code, 0);
        const std::string out = file("read" + ext + ".json");
        ASSERT_EQ(std::system(("/usr/bin/python3 " + file("reader.py") + " " + book + " > " + out).c_str()),
                  0);
        const Json j = Json::parse(read_all(out));
        EXPECT_EQ(j["sheets"], Json::array({"Opening", "Addition"}));
        const Json& o = j["Opening"];
        // Row 2 bands the columns (a company: "As per Companies Act"), row 3 names them.
        EXPECT_EQ(o[0][4], "As per Companies Act");
        EXPECT_EQ(o[0][16], "As per Income-Tax Act");
        EXPECT_EQ(o[0][23], "Details of Sale/Deduction");
        EXPECT_EQ(o[1][0], "SN");
        EXPECT_EQ(o[1][2], "Particulars");
        EXPECT_EQ(o[1][5], "Depreciation upto 31/03/2024");
        EXPECT_EQ(o[1].size(), 28u);  // A to AB
        // Row 4: the first entry, its date a real date in the template's format, its
        // options in words.
        EXPECT_EQ(o[2][0], "1");
        EXPECT_EQ(o[2][1], "FACTORY BUILDING");
        EXPECT_EQ(o[2][2], "Factory shed, Plot 14 MIDC");
        EXPECT_EQ(o[2][3], "12/07/2018");
        EXPECT_EQ(o[2][4], "2400000");
        EXPECT_EQ(o[2][9], "5% of Cost");
        EXPECT_EQ(o[2][11], "Useful Life (As per Master)");
        EXPECT_EQ(o[2][14], "SLM");
        EXPECT_EQ(j["Opening D4 format"], "dd/mm/yyyy");
        const Json& a = j["Addition"];
        EXPECT_EQ(a[1].size(), 26u);  // A to Z
        EXPECT_EQ(a[0][11], "As per Companies Act");
        EXPECT_EQ(a[2][2], "Packaging machine");
        EXPECT_EQ(a[2][8], "50000");
        EXPECT_EQ(a[2][10], "750000");  // net amount
        EXPECT_EQ(a[2][12], "5% of Net Amount");
        EXPECT_EQ(a[2][16], "Auto Calculate (Formula[No Rounding Limit])");
        EXPECT_EQ(a[2][17], "WDV");
        EXPECT_EQ(j["Addition D4 format"], "dd/mm/yyyy");
    }
}

TEST_P(SpreadsheetCli, AnExistingWorkbookIsOverwrittenOnlyWhenTheQuestionIsAnsweredYes) {
    for (const std::string ext : {".xls", ".xlsx"}) {
        SCOPED_TRACE(ext);
        const std::string book = file("kept" + ext);
        const std::string before = "not a workbook, and kept as it is";
        std::ofstream(book, std::ios::binary) << before;
        auto r = export_demo(book);
        EXPECT_EQ(r.code, 2);
        EXPECT_NE(r.err.find("File [" + book + "] already exists. Do you want to overwrite it?"),
                  std::string::npos)
            << r.err;
        EXPECT_EQ(read_all(book), before);
        r = export_demo(book, {"--yes"});
        EXPECT_EQ(r.code, 0) << r.err;
        EXPECT_NE(read_all(book), before);
    }
}

TEST_P(SpreadsheetCli, AMissingWorkbookIsNamedAndNothingIsImported) {
    const auto r = cli({"register", "import", file("absent.xls"), "--client", "DEMO01", "--year", "2025"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("Missing File [" + file("absent.xls") + "]."), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("Nothing was imported."), std::string::npos);
}

// A printed chart to a workbook: the same reader finds the print's headings and its
// amounts as numbers in the print's mask, not as text.
constexpr const char* kChartReader = R"PY(
import json, sys
path = sys.argv[1]
out = {'numbers': 0, 'texts': [], 'masks': []}
if path.endswith('.xls'):
    import xlrd
    b = xlrd.open_workbook(path, formatting_info=True)
    out['sheets'] = b.sheet_names()
    s = b.sheet_by_index(0)
    for r in range(s.nrows):
        for c in range(s.ncols):
            if s.cell_type(r, c) == xlrd.XL_CELL_NUMBER:
                out['numbers'] += 1
                out['masks'].append(b.format_map[b.xf_list[s.cell_xf_index(r, c)].format_key].format_str)
            elif s.cell_type(r, c) == xlrd.XL_CELL_TEXT:
                out['texts'].append(s.cell_value(r, c))
else:
    import openpyxl
    b = openpyxl.load_workbook(path)
    out['sheets'] = b.sheetnames
    for row in b.worksheets[0].iter_rows():
        for cell in row:
            if isinstance(cell.value, (int, float)):
                out['numbers'] += 1
                out['masks'].append(cell.number_format)
            elif isinstance(cell.value, str):
                out['texts'].append(cell.value)
out['masks'] = sorted(set(out['masks']))
print(json.dumps(out))
)PY";

TEST_P(SpreadsheetCli, ThePrintedChartsGoToWorkbooksOfNumbers) {
    if (!fs::exists("/usr/bin/python3")) GTEST_SKIP() << "no /usr/bin/python3";
    std::ofstream(file("chart.py")) << kChartReader;
    for (const std::string ext : {".xls", ".xlsx"}) {
        for (const std::string chart : {"--it", "--books"}) {
            SCOPED_TRACE(ext + " " + chart);
            const std::string book = file("chart" + chart + ext);
            const auto r = cli({"chart", "--client", "DEMO01", "--year", "2025", chart, "--" + ext.substr(1),
                                book, "--yes"});
            ASSERT_EQ(r.code, 0) << r.err;
            const std::string out = file("chart" + chart + ext + ".json");
            ASSERT_EQ(
                std::system(("/usr/bin/python3 " + file("chart.py") + " " + book + " > " + out).c_str()), 0);
            const Json j = Json::parse(read_all(out));
            EXPECT_GT(j["numbers"].get<int>(), 20);
            EXPECT_EQ(j["masks"].size() >= 1, true);
            for (const auto& m : j["masks"]) EXPECT_TRUE(m == "#,##0" || m == "#,##0.00") << m;
            const auto& texts = j["texts"];
            const auto has = [&](const std::string& t) {
                for (const auto& x : texts)
                    if (x.get<std::string>().find(t) != std::string::npos) return true;
                return false;
            };
            EXPECT_TRUE(has("FIXED ASSETS") || has("F.Y.")) << texts.dump();
            EXPECT_TRUE(has(chart == "--it" ? "Block" : "Asset Group")) << texts.dump();
            if (chart == "--it") {
                EXPECT_EQ(j["sheets"].size(), 2u);  // the block-wise summary follows
            }
        }
    }
}

BRENLOW_INSTANTIATE_BACKENDS(SpreadsheetCli);

}  // namespace
}  // namespace brenlow::cli
