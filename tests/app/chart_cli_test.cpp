// brenlow demo, chart and register export/import on both backends.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "app/cli/cli.h"
#include "support/pdf_text.h"
#include "support/test_databases.h"

namespace brenlow::cli {
namespace {

struct Result {
    int code;
    std::string out, err;
};

Result run_cli(const std::vector<std::string>& args) {
    std::ostringstream out, err;
    const int code = run(args, out, err);
    return {code, out.str(), err.str()};
}

std::string slurp(const std::filesystem::path& p) {
    std::ifstream f(p, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

class ChartCli : public test::BackendTest {
protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped()) return;
        dir_ = std::filesystem::temp_directory_path() /
               ("brenlow-chart-cli-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                "-" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::remove_all(dir_);
        std::filesystem::create_directories(dir_);
        const auto r = run_cli({"--db", temp().url(), "demo", "--out", dir_.string()});
        ASSERT_EQ(r.code, 0) << r.err;
        demo_out_ = r.out;
    }
    void TearDown() override {
        if (!dir_.empty()) std::filesystem::remove_all(dir_);
        BackendTest::TearDown();
    }
    Result chart(std::vector<std::string> extra) {
        std::vector<std::string> args = {"--db",   temp().url(), "chart", "--client",
                                         "DEMO01", "--year",     "2025"};
        args.insert(args.end(), extra.begin(), extra.end());
        return run_cli(args);
    }
    Result register_io(const std::string& sub, std::vector<std::string> args) {
        args.insert(args.begin(), {"--db", temp().url(), "register", sub});
        return run_cli(args);
    }

    std::filesystem::path dir_;
    std::string demo_out_;
};

TEST_P(ChartCli, TheDemoPrintsBothChartsAndWritesTheirPdfs) {
    EXPECT_NE(demo_out_.find("Block"), std::string::npos);
    EXPECT_NE(demo_out_.find("Asset Group"), std::string::npos);
    EXPECT_NE(demo_out_.find("BLOCK WISE SUMMARY"), std::string::npos);
    EXPECT_NE(demo_out_.find("(Before 04/10/24)"), std::string::npos);
    for (const char* f : {"demo-income-tax-chart.pdf", "demo-books-chart.pdf"})
        EXPECT_EQ(slurp(dir_ / f).rfind("%PDF-", 0), 0u) << f;
}

TEST_P(ChartCli, RunningTheDemoAgainRebuildsTheSameRegister) {
    const auto first = chart({"--books", "--json"});
    const auto again = run_cli({"--db", temp().url(), "demo", "--out", dir_.string(), "--yes"});
    ASSERT_EQ(again.code, 0) << again.err;
    const auto second = chart({"--books", "--json"});
    EXPECT_EQ(first.out, second.out);
    EXPECT_EQ(again.out, demo_out_);
}

TEST_P(ChartCli, TheIncomeTaxJsonListsEveryBlockUnderTheChartColumnsWithItsNameAndGain) {
    const auto r = chart({"--it", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    const auto doc = nlohmann::json::parse(r.out);
    EXPECT_EQ(doc["half_rate_line"], "04/10/2024");
    EXPECT_EQ(doc["hand_edited"], false);
    EXPECT_EQ(doc["net_capital_gain"], 33000);
    const auto& rows = doc["DeprChart"];
    ASSERT_EQ(rows.size(), 5u);
    for (const auto& row : rows)
        for (const char* k : {"Block",   "CapitalGain", "Code_No", "FYr",     "Grp",      "Rate",   "Wdv",
                              "WdvOpHR", "Add1",        "Cons1",   "FullAmt", "Add2",     "Cons2",  "HalfAmt",
                              "DeprF",   "DeprH",       "ADeprF",  "ADeprH",  "ADeprOpH", "TotDep", "Dep38",
                              "PropDep", "Exp",         "CG",      "WdvCl"})
            EXPECT_TRUE(row.contains(k)) << k;
    const auto& plant = rows[2];
    EXPECT_EQ(plant["Block"], "MACHINERY AND PLANT");
    EXPECT_EQ(plant["Grp"], 3);
    EXPECT_EQ(plant["Rate"], 15);
    EXPECT_EQ(plant["Add1"], 1000000);  // packaging machine net of subsidy, conveyor on 03/10/2024
    EXPECT_EQ(plant["Add2"], 592000);   // compressor on the line, boiler with its currency difference
    EXPECT_EQ(plant["ADeprOpH"], 60000);
    const auto& computers = rows[3];
    EXPECT_EQ(computers["Rate"], 40);
    EXPECT_EQ(computers["CapitalGain"], 33000);
    EXPECT_EQ(computers["WdvCl"], 0);
}

TEST_P(ChartCli, TheBooksJsonGivesEachAssetItsFigures) {
    const auto r = chart({"--books", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    const auto doc = nlohmann::json::parse(r.out);
    const auto& assets = doc["assets"];
    ASSERT_EQ(assets.size(), 14u);
    for (const char* k : {"Particulars", "Cost", "OpDep", "Addition", "DedAmt", "DepFY", "ClBal",
                          "ProfitLoss", "Rate", "RemLife", "Days"})
        EXPECT_TRUE(assets[0].contains(k)) << k;
    bool life_over = false;
    for (const auto& a : assets)
        if (a["Particulars"] == "Reception furniture (life over)") {
            life_over = true;
            EXPECT_EQ(a["RemLife"], 0);
            EXPECT_GT(a["DepAdjRemLife0_PL"].get<double>(), 0);
        }
    EXPECT_TRUE(life_over);
}

TEST_P(ChartCli, TheBooksJsonWrittenAssetByAssetIsTheWholeDocumentsOwnLayout) {
    // The books chart is written one asset at a time; read back whole and printed the way
    // the whole document always was, it must give the very same bytes.
    const auto r = chart({"--books", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    const auto doc = nlohmann::ordered_json::parse(r.out);
    EXPECT_EQ(doc.dump(2) + "\n", r.out);
    std::vector<std::string> keys;
    for (const auto& [key, value] : doc.items()) keys.push_back(key);
    EXPECT_EQ(keys, (std::vector<std::string>{"client", "year", "mode", "assets", "totals"}));
    EXPECT_EQ(doc["assets"].size(), 14u);
}

TEST_P(ChartCli, TheTextChartAndThePdfComeFromTheSameCalculation) {
    auto r = chart({"--it"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("FIXED ASSETS"), std::string::npos);
    EXPECT_NE(r.out.find("A.Y. 2025-26"), std::string::npos);
    EXPECT_NE(r.out.find("Net Capital Gain / (Loss)"), std::string::npos);
    const auto pdf = (dir_ / "books.pdf").string();
    r = chart({"--books", "--pdf", pdf});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(slurp(pdf).rfind("%PDF-", 0), 0u);
}

TEST_P(ChartCli, AChartNeedsOneKindAndAYearThatExists) {
    auto r = chart({"--it", "--books"});
    EXPECT_EQ(r.code, 1);
    r = run_cli({"--db", temp().url(), "chart", "--client", "DEMO01", "--year", "2019", "--it"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("2018-19"), std::string::npos) << r.err;
}

TEST_P(ChartCli, ARegisterDocumentComesBackUnchangedThroughExportAndImport) {
    const auto file = (dir_ / "register.json").string();
    auto r = register_io("export", {file, "--client", "DEMO01", "--year", "2025"});
    ASSERT_EQ(r.code, 0) << r.err;
    const std::string exported = slurp(file);
    r = register_io("import", {file, "--client", "DEMO01", "--year", "2025", "--replace", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    const auto again = (dir_ / "again.json").string();
    r = register_io("export", {again, "--client", "DEMO01", "--year", "2025"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(slurp(again), exported);
}

TEST_P(ChartCli, AnImportWithErrorsNamesThemAndWritesNothing) {
    const auto file = (dir_ / "bad.json").string();
    std::ofstream(file)
        << R"({"format":"brenlow-register","version":1,"NewFAGM":[],"NewFATRo":[{"IdFAGM":"x"}]})";
    const auto before = chart({"--books", "--json"});
    const auto r =
        register_io("import", {file, "--client", "DEMO01", "--year", "2025", "--replace", "--yes"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("NewFATRo"), std::string::npos) << r.err;
    EXPECT_EQ(chart({"--books", "--json"}).out, before.out);
}

// Every sheet of a workbook, read by an independent reader (python3-xlrd for .xls,
// python3-openpyxl for .xlsx): its name and its cells, row by row, numbers as numbers.
constexpr const char* kSheetsReader = R"PY(
import json, sys
path = sys.argv[1]
out = []
if path.endswith('.xls'):
    import xlrd
    b = xlrd.open_workbook(path)
    for s in b.sheets():
        rows = [[s.cell_value(r, c) for c in range(s.ncols)] for r in range(s.nrows)]
        out.append({'name': s.name, 'rows': rows})
else:
    import openpyxl
    b = openpyxl.load_workbook(path)
    for s in b.worksheets:
        rows = [['' if c.value is None else c.value for c in row] for row in s.iter_rows()]
        out.append({'name': s.title, 'rows': rows})
print(json.dumps(out))
)PY";

TEST_P(ChartCli, EveryFileOfTheIncomeTaxChartCarriesTheBlockWiseSummaryWithItsGainAndNet) {
    // The demo's computers are sold beyond their block: block nil, gain 33,000, the net
    // of the summary 33,000.
    const auto pdf = (dir_ / "it.pdf").string();
    ASSERT_EQ(chart({"--it", "--pdf", pdf, "--yes"}).code, 0);
    if (test::have_pdf_tools()) {
        const std::string text = test::pdf_text(pdf);
        const auto summary = text.find("BLOCK WISE SUMMARY");
        ASSERT_NE(summary, std::string::npos) << text;
        const std::string page = text.substr(summary);
        EXPECT_NE(page.find("Block Nil"), std::string::npos) << page;
        EXPECT_NE(page.find("33,000"), std::string::npos) << page;
        const auto net = page.find("Net Capital Gain / (Loss)");
        ASSERT_NE(net, std::string::npos) << page;
        EXPECT_NE(page.find("33,000", net), std::string::npos) << page;
    }
    if (!std::filesystem::exists("/usr/bin/python3")) GTEST_SKIP() << "no /usr/bin/python3";
    std::ofstream((dir_ / "sheets.py").string()) << kSheetsReader;
    for (const std::string ext : {"xls", "xlsx"}) {
        SCOPED_TRACE(ext);
        const auto book = (dir_ / ("it." + ext)).string();
        ASSERT_EQ(chart({"--it", "--" + ext, book, "--yes"}).code, 0);
        const auto json = (dir_ / ("it-" + ext + ".json")).string();
        ASSERT_EQ(
            std::system(
                ("/usr/bin/python3 " + (dir_ / "sheets.py").string() + " " + book + " > " + json).c_str()),
            0);
        const auto sheets = nlohmann::json::parse(slurp(json));
        ASSERT_EQ(sheets.size(), 2u) << sheets.dump();
        EXPECT_EQ(sheets[0]["name"], "Income-Tax Chart");
        EXPECT_EQ(sheets[1]["name"], "BLOCK WISE SUMMARY");
        bool nil_row = false, net_row = false;
        for (const auto& row : sheets[1]["rows"]) {
            const auto cell = [&](std::size_t i) { return i < row.size() ? row[i] : nlohmann::json(); };
            if (cell(2) == "Block Nil" && cell(3) == 33000) nil_row = true;
            if (cell(0) == "Net Capital Gain / (Loss)" && cell(3) == 33000) net_row = true;
        }
        EXPECT_TRUE(nil_row) << sheets[1].dump();
        EXPECT_TRUE(net_row) << sheets[1].dump();
    }
}

TEST_P(ChartCli, InitRecordsTheKindOfAssesseeForEveryYearOfTheClient) {
    auto r = run_cli({"--db", temp().url(), "init", "--client", "COOP1", "--year", "2025", "--status", "1",
                      "--kind", "co-operative"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("kind of assessee: Co-operative Society\n"), std::string::npos) << r.out;
    r = run_cli({"--db", temp().url(), "init", "--client", "COOP1", "--year", "2024"});
    EXPECT_NE(r.out.find("kind of assessee: Co-operative Society\n"), std::string::npos) << r.out;
    r = run_cli({"--db", temp().url(), "init", "--client", "PLAIN", "--year", "2025", "--status", "2"});
    EXPECT_NE(r.out.find("kind of assessee: Partnership Firm (from its status)\n"), std::string::npos)
        << r.out;
    r = run_cli({"--db", temp().url(), "init", "--client", "PLAIN", "--year", "2025", "--kind", "trust"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("--kind takes one of individual, huf, firm, llp, aop, boi, ajp, company, "
                         "co-operative, local-authority, other; found \"trust\"."),
              std::string::npos)
        << r.err;
}

BRENLOW_INSTANTIATE_BACKENDS(ChartCli);

}  // namespace
}  // namespace brenlow::cli
