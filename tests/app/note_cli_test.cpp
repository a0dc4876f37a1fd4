// brenlow note: the PPE note and the deferred-tax working of a company over two years,
// and the practice's rate table, on both backends.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "app/cli_fixture.h"
#include "controls/number_format.h"
#include "support/pdf_text.h"

namespace brenlow::cli {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

std::string slurp(const fs::path& p) {
    std::ifstream f(p, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

// To the paisa, as the prints show it.
std::string paise(double x) {
    return format_mask(x, "###0.00");
}

// A company with land, a shed, two machines, laptops and a van in F.Y. 2023-24, carried
// into F.Y. 2024-25, where a machine is bought, another sold and the laptops' life ends.
class NoteCli : public CliTest {
protected:
    void SetUp() override {
        CliTest::SetUp();
        if (IsSkipped()) return;
        dir_ = fs::temp_directory_path() /
               ("brenlow-note-cli-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                "-" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir_);
        fs::create_directories(dir_);
        ok({"init", "--client", "CO", "--year", "2024", "--name", "CO LTD", "--status", "3"});
        for (const auto& [name, it, cl] : std::vector<std::tuple<std::string, std::string, std::string>>{
                 {"LAND", "100-0", "-1"},
                 {"FACTORY-BUILDING", "1-10", "1.3"},
                 {"PLANT", "3-15", "4.1"},
                 {"LAPTOPS", "3-40", "12.2"},
                 {"CARS", "3-15", "6.3"}})
            ok({"masters", "group", "add", "--client", "CO", "--year", "2024", "--name", name, "--it-block",
                it, "--books-block", "-1", "--classification", cl, "--yes"});
        const auto opening = [&](const char* group, const char* part, const char* put, const char* cost,
                                 const char* dep, const char* wdv) {
            ok({"register", "add-opening", "--client", "CO", "--year", "2024", "--group", group, "--part",
                part, "--put-date", put, "--cost", cost, "--dep-to-date", dep, "--wdv-it", wdv, "--yes"});
        };
        opening("1", "FACTORY LAND", "01/04/2015", "20,00,000", "0", "20,00,000");
        opening("2", "FACTORY SHED", "01/04/2015", "12,00,000", "2,40,000", "7,50,000");
        opening("3", "CNC LATHE", "01/04/2020", "8,00,000", "2,00,000", "4,20,000");
        opening("3", "DRILL PRESS", "01/04/2019", "3,00,000", "1,20,000", "1,30,000");
        opening("4", "LAPTOPS", "01/10/2022", "1,80,000", "60,000", "40,000");
        ok({"register", "add-addition", "--client", "CO", "--year", "2024", "--group", "5", "--part",
            "DELIVERY VAN", "--put-date", "10/05/2023", "--acc-date", "10/05/2023", "--cost", "9,00,000",
            "--yes"});
        ok({"init", "--client", "CO", "--year", "2025", "--status", "3"});
        ok({"register", "carry-forward", "--client", "CO", "--year", "2025", "--yes"});
        ok({"register", "edit", "--opening", "--serial", "4", "--client", "CO", "--year", "2025",
            "--sale-date", "15/12/2024", "--sale-amount", "1,20,000", "--yes"});
        ok({"register", "add-addition", "--client", "CO", "--year", "2025", "--group", "8", "--part",
            "PRESS BRAKE", "--put-date", "12/06/2024", "--acc-date", "12/06/2024", "--cost", "4,50,000",
            "--yes"});
    }
    void TearDown() override {
        if (!dir_.empty()) fs::remove_all(dir_);
        CliTest::TearDown();
    }
    CliRun ok(const std::vector<std::string>& words) {
        auto r = cli(words);
        EXPECT_EQ(r.code, 0) << words[0] << " " << words[1] << "\n" << r.err;
        return r;
    }
    Json books_chart(const char* year) {
        return Json::parse(ok({"chart", "--client", "CO", "--year", year, "--books", "--json"}).out);
    }
    Json ppe_json() {
        const auto file = (dir_ / "ppe.json").string();
        ok({"note", "ppe", "--client", "CO", "--year", "2025", "--json", file});
        return Json::parse(slurp(file));
    }
    // Each setting-up of the company costs a dozen commands: the tests share one.
    void first_year_says_its_previous_year_is_not_kept();
    void prints_to_pdf_and_workbook();
    void rate_table_starts_seeded_and_takes_an_edit();
    fs::path dir_;
};

TEST_P(NoteCli, ThePpeNoteTiesToTheBooksChartAndToLastYearsClosingAndPrints) {
    const auto note = ppe_json();
    const auto chart = books_chart("2025");
    const auto last = books_chart("2024");
    const auto& total = note["current"]["total"];
    // The net block and the year's depreciation are the books chart's, to the paisa.
    EXPECT_EQ(paise(total["net_block"]["closing"]), paise(chart["totals"]["ClBal"]));
    EXPECT_EQ(paise(total["accumulated_depreciation"]["for_the_year"]), paise(chart["totals"]["DepFY"]));
    double opening = 0, additions = 0;
    for (const auto& a : chart["assets"]) {
        opening += a["Opening"].get<double>();
        additions += a["Addition"].get<double>();
    }
    EXPECT_EQ(paise(total["gross_block"]["additions"]), paise(additions));
    // Last year's column is last year's closing, and this year opened there.
    EXPECT_EQ(paise(total["net_block"]["previous_year"]), paise(last["totals"]["ClBal"]));
    EXPECT_EQ(paise(note["previous"]["total"]["net_block"]["closing"]), paise(last["totals"]["ClBal"]));
    EXPECT_EQ(paise(opening), paise(last["totals"]["ClBal"]));

    // Class by class: the press brake bought, the drill press sold at cost 3,00,000
    // (written off to its sale: 3,00,000 less the 1,12,000.45 it left at), the laptops
    // down to their residual value of 9,000 as their life ends.
    std::map<std::string, Json> by_class;
    for (const auto& c : note["current"]["classes"]) by_class[c["class"]] = c;
    ASSERT_EQ(by_class.size(), 5u);
    const auto& plant = by_class["plant-and-equipment"];
    EXPECT_EQ(plant["gross_block"], Json::parse(R"({"opening": 1100000, "additions": 450000,
                                                    "disposals": 300000, "closing": 1250000})"));
    EXPECT_EQ(paise(plant["accumulated_depreciation"]["on_disposals"]), "187999.55");
    EXPECT_EQ(paise(by_class["computers"]["net_block"]["closing"]), "9000.00");
    EXPECT_EQ(paise(by_class["computers"]["net_block"]["previous_year"]), "26832.00");
    EXPECT_EQ(paise(by_class["land"]["net_block"]["closing"]), "2000000.00");
    for (const auto& [key, c] : by_class) {
        const auto& g = c["gross_block"];
        const auto& d = c["accumulated_depreciation"];
        EXPECT_EQ(
            paise(g["opening"].get<double>() + g["additions"].get<double>() - g["disposals"].get<double>()),
            paise(g["closing"]))
            << key;
        EXPECT_EQ(paise(g["closing"].get<double>() - d["closing"].get<double>()),
                  paise(c["net_block"]["closing"]))
            << key;
    }
    first_year_says_its_previous_year_is_not_kept();
    prints_to_pdf_and_workbook();
}

void NoteCli::first_year_says_its_previous_year_is_not_kept() {
    const auto r = ok({"note", "ppe", "--client", "CO", "--year", "2024"});
    EXPECT_NE(r.out.find("F.Y. 2022-23 is not kept here"), std::string::npos) << r.out;
    EXPECT_EQ(r.out.find("Year ended 31/03/2023"), std::string::npos);
}

void NoteCli::prints_to_pdf_and_workbook() {
    const auto pdf = (dir_ / "ppe.pdf").string(), xlsx = (dir_ / "ppe.xlsx").string();
    ok({"note", "ppe", "--client", "CO", "--year", "2025", "--pdf", pdf});
    ok({"note", "ppe", "--client", "CO", "--year", "2025", "--xlsx", xlsx});
    EXPECT_GT(fs::file_size(xlsx), 0u);
    // A file already there stays unless --yes answers the question.
    EXPECT_EQ(cli({"note", "ppe", "--client", "CO", "--year", "2025", "--pdf", pdf}).code, 2);
    if (!test::have_pdf_tools()) return;  // poppler's tools are not installed
    const auto text = test::pdf_text(pdf, 1);
    EXPECT_NE(text.find("PROPERTY, PLANT AND EQUIPMENT"), std::string::npos);
    EXPECT_NE(text.find("39,35,190.85"), std::string::npos) << text;  // the books chart's closing
    // The picture of the page goes with the build's artifacts, to be looked at.
    if (GetParam() == store::Backend::sqlite) {
        fs::create_directories(BRENLOW_ARTIFACTS_DIR);
        const std::string png = std::string(BRENLOW_ARTIFACTS_DIR) + "/ppe-note";
        test::command_output("pdftoppm -png -r 110 -f 1 -l 1 -singlefile '" + pdf + "' '" + png + "'");
        EXPECT_TRUE(fs::exists(png + ".png"));
    }
}

TEST_P(NoteCli, TheDeferredTaxWorkingSetsTheBooksAgainstTheBlocksAtThePracticesRate) {
    const auto r = ok({"note", "deferred-tax", "--client", "CO", "--year", "2025", "--rate", "25.168"});
    // Books net block without land 21,18,052.08 / 19,35,190.85 against the blocks'
    // 19,31,500 / 19,50,025 at 25.168%: a liability of 46,951.43 (1,86,552.08 x 25.168% =
    // 46,951.427) turns into an asset of 3,733.46 (14,834.15 x 25.168% = 3,733.459), a credit
    // of 50,684.89.
    for (const char* line :
         {"21,18,052.08", "19,35,190.85", "19,31,500.00", "19,50,025.00", "1,86,552.08", "(14,834.15)",
          "46,951.43", "(3,733.46)", "(50,684.89)", "virtual certainty", "nothing has been posted"})
        EXPECT_NE(r.out.find(line), std::string::npos) << line << "\n" << r.out;
    // Without --rate the practice's rate of a company: 26% for one that opted for nothing.
    const auto usual = ok({"note", "deferred-tax", "--client", "CO", "--year", "2025"});
    EXPECT_NE(usual.out.find("company, 25% up to 1 crore, 26.000%"), std::string::npos) << usual.out;
    EXPECT_EQ(cli({"note", "deferred-tax", "--client", "CO", "--year", "2025", "--rate", "abc"}).err,
              "brenlow note: Option --rate must be a rate in per cent above 0 and below 100, not \"abc\".\n");
    rate_table_starts_seeded_and_takes_an_edit();
}

void NoteCli::rate_table_starts_seeded_and_takes_an_edit() {
    const auto list = Json::parse(ok({"note", "tax-rates", "list", "--json"}).out);
    ASSERT_EQ(list.size(), 11u);
    EXPECT_EQ(list[0], Json::parse(R"({"kind": "company", "regime": "115BAA", "rate": 25.168})"));
    EXPECT_EQ(list[6], Json::parse(R"({"kind": "company", "regime": "30% above 10 crore", "rate": 34.944})"));
    ok({"note", "tax-rates", "set", "--kind", "company", "--regime", "25% up to 1 crore", "--rate", "25.5"});
    const auto edited = Json::parse(ok({"note", "tax-rates", "list", "--json"}).out);
    EXPECT_EQ(edited[1]["rate"], 25.5);
    const auto usual = ok({"note", "deferred-tax", "--client", "CO", "--year", "2025"});
    EXPECT_NE(usual.out.find("company, 25% up to 1 crore, 25.500%"), std::string::npos) << usual.out;
    EXPECT_EQ(
        cli({"note", "tax-rates", "set", "--kind", "partnership", "--regime", "x", "--rate", "30"}).code, 1);
}

BRENLOW_INSTANTIATE_BACKENDS(NoteCli);

}  // namespace
}  // namespace brenlow::cli
