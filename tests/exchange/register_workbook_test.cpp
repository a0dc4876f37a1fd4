#include "exchange/register_workbook.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "store/client_store.h"
#include "store/register_bulk.h"
#include "store/register_store.h"
#include "support/scripted_ui.h"
#include "support/test_databases.h"

namespace brenlow::exchange {
namespace {

namespace fs = std::filesystem;

std::string read_all(const fs::path& p) {
    std::ifstream f(p, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

// The test program's folder: the build puts the templates in "Databases" beside it.
std::string program_folder() {
    return fs::read_symlink("/proc/self/exe").parent_path().string();
}

// A workbook typed by a person in the template, written by another program (xlwt for
// .xls, openpyxl for .xlsx): headings of their own, a blank row, trailing spaces,
// numbers stored as text with Indian grouping, dates as text and as real dates.
// argv: path, variant ("good", "bad-date", "bad-cost").
constexpr const char* kTyped = R"PY(
import sys, datetime
path, variant = sys.argv[1], sys.argv[2]
opening = [
    ['1', 'plant and machinery ', '  Lathe  ', '15/06/2020', '1,00,000', '25,000.50', 'N/A', '', '', '',
     '15', '', '18.10', '', 'wdv', '', '85,000', '', '15', '', '', '', '', '', '', '', '', ''],
    None,
    [2, 'OFFICE FURNITURE', 'Tables', datetime.datetime(2019, 5, 1), 5000, 1500, None, None, None, None,
     10, None, 25.89, None, 'WDV', None, '4,000', 'Other', 10, None, None, None, None, None, None, None],
]
addition = [
    [' 1 ', 'OFFICE FURNITURE', 'Chairs', datetime.datetime(2024, 10, 5), '05/10/2024', '12,500', '', '',
     '500', '', '', '', '', '10', '', '', '', 'SLM', '10'],
]
if variant == 'bad-date': opening[0][3] = '31/02/2020'
if variant == 'bad-cost': addition[0][5] = 'abc'
heads = {'Opening': opening, 'Addition': addition}
if path.endswith('.xls'):
    import xlwt
    book = xlwt.Workbook()
    date = xlwt.easyxf(num_format_str='dd/mm/yyyy')
    for name, rows in heads.items():
        s = book.add_sheet(name)
        s.write(0, 0, 'My own heading for ' + name)
        s.write(2, 0, 'SN')
        for r, row in enumerate(rows):
            for c, v in enumerate(row or []):
                if v is None: continue
                if isinstance(v, datetime.datetime): s.write(3 + r, c, v, date)
                else: s.write(3 + r, c, v)
    book.save(path)
else:
    import openpyxl
    book = openpyxl.Workbook()
    book.remove(book.active)
    for name, rows in heads.items():
        s = book.create_sheet(name)
        s['A1'] = 'My own heading for ' + name
        s['A3'] = 'SN'
        for r, row in enumerate(rows):
            for c, v in enumerate(row or []):
                if v is None: continue
                cell = s.cell(row=4 + r, column=1 + c, value=v)
                if isinstance(v, datetime.datetime): cell.number_format = 'dd/mm/yyyy'
    book.save(path)
)PY";

class RegisterWorkbookTest : public test::BackendTest {
protected:
    void SetUp() override {
        test::BackendTest::SetUp();
        if (IsSkipped()) return;
        store::ensure_schema(db(), BRENLOW_TEST_DATA_DIR);
        store::create_client_year(db(), "C001", 2025, "ACME", 3);
        dir_ =
            fs::temp_directory_path() /
            ("brenlow-workbook-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "-" +
             std::to_string(
                 std::hash<std::string>{}(::testing::UnitTest::GetInstance()->current_test_info()->name())));
        fs::remove_all(dir_);
        fs::create_directories(dir_);
        store::RegisterStore reg(db(), "C001", 2025);
        plant_ = reg.find_or_create_group(
            {0, 2025, "PLANT AND MACHINERY", "3-15", 15, 20, 0, 0, "4.1", 15, 6.33, 18.1});
        furniture_ = reg.find_or_create_group(
            {0, 2025, "OFFICE FURNITURE", "2-10", 10, 0, 0, 0, "5.1", 10, 9.5, 25.89});
    }
    void TearDown() override {
        if (!dir_.empty()) fs::remove_all(dir_);
        test::BackendTest::TearDown();
    }

    void fill() {
        std::vector<store::OpeningRow> o(1);
        o[0].IdFAGM = plant_;
        o[0].Part = "LATHE";
        o[0].CostWdv = 100000;
        o[0].PutDate = "15/06/2020";
        store::insert_openings(db(), "C001", 2025, o);
    }

    WorkbookTarget target(const std::string& file, bool company = true) const {
        WorkbookTarget t;
        t.code = "C001";
        t.year = 2025;
        t.company = company;
        t.exe_path = program_folder();
        if (!file.empty()) t.path = (dir_ / file).string();
        return t;
    }

    // The typed workbook of the variant, made by the other program.
    std::string typed(const std::string& name, const std::string& variant) {
        if (!fs::exists("/usr/bin/python3")) return {};
        const fs::path script = dir_ / "typed.py";
        std::ofstream(script) << kTyped;
        const std::string path = (dir_ / name).string();
        const std::string cmd = "/usr/bin/python3 " + script.string() + " " + path + " " + variant;
        if (std::system(cmd.c_str()) != 0) return {};
        return path;
    }

    fs::path dir_;
    long plant_ = 0, furniture_ = 0;
};

TEST_P(RegisterWorkbookTest, AnEmptyRegisterHasNoAssetToExport) {
    test::ScriptedUi ui;
    EXPECT_FALSE(export_workbook(db(), target(""), ui));
    ui.expect_message("No Asset !");
    ui.expect_nothing_more();
}

TEST_P(RegisterWorkbookTest, AMissingTemplateIsNamedAndNoFileIsMade) {
    fill();
    auto t = target("out.xls");
    t.exe_path = (dir_ / "program").string();
    test::ScriptedUi ui;
    EXPECT_FALSE(export_workbook(db(), t, ui));
    ui.expect_message("Missing Source File [" +
                      (dir_ / "program" / "Databases" / "AssetWiseDepChartCompv2.19.9.xls").string() + "].");
    EXPECT_FALSE(fs::exists(dir_ / "out.xls"));
}

TEST_P(RegisterWorkbookTest, NoToTheOverwriteQuestionLeavesTheFileByteForByte) {
    fill();
    const fs::path file = dir_ / "chart.xls";
    std::ofstream(file, std::ios::binary) << std::string("\xD0\xCF\x11\xE0 an older chart\n\x01\x02", 20);
    const std::string before = read_all(file);
    test::ScriptedUi ui;
    ui.answer_save_file(file.string()).answer_no();
    EXPECT_FALSE(export_workbook(db(), target(""), ui));
    ASSERT_EQ(ui.questions().size(), 1u);
    EXPECT_EQ(ui.questions()[0], "File [" + file.string() + "] already exists. Do you want to overwrite it?");
    EXPECT_EQ(ui.shown()[1].default_button, "No");
    EXPECT_TRUE(ui.messages().empty());
    EXPECT_EQ(read_all(file), before);
}

TEST_P(RegisterWorkbookTest, AFileThatCannotBeWrittenEndsWithTheErrorMessage) {
    fill();
    test::ScriptedUi ui;
    const std::string path = (dir_ / "no such folder" / "chart.xlsx").string();
    ui.answer_save_file(path);
    EXPECT_FALSE(export_workbook(db(), target(""), ui));
    ui.expect_message("Error ! Data Exported to File : " + path);
    EXPECT_FALSE(ui.progress_visible());
}

// A sheet has rows for 65,533 entries under its three heading rows; one more is refused
// in either kind rather than written over the first.
TEST_P(RegisterWorkbookTest, ASheetOfMoreEntriesThanItsRowsIsRefusedAndNoFileIsMade) {
    std::vector<store::OpeningRow> o(65534);
    for (auto& r : o) {
        r.IdFAGM = plant_;
        r.Part = "LATHE";
        r.CostWdv = 1000;
        r.PutDate = "15/06/2020";
    }
    store::insert_openings(db(), "C001", 2025, o);
    for (const char* file : {"many.xls", "many.xlsx"}) {
        test::ScriptedUi ui;
        EXPECT_FALSE(export_workbook(db(), target(file), ui));
        ASSERT_EQ(ui.messages().size(), 1u);
        EXPECT_NE(ui.messages()[0].find("at most 65533 entries"), std::string::npos) << ui.messages()[0];
        EXPECT_FALSE(fs::exists(dir_ / file));
    }
}

TEST_P(RegisterWorkbookTest, WithAGroupChosenOnlyThatGroupsEntriesGoOut) {
    fill();
    std::vector<store::OpeningRow> o(1);
    o[0].IdFAGM = furniture_;
    o[0].Part = "TABLES";
    o[0].CostWdv = 5000;
    o[0].PutDate = "01/05/2019";
    store::insert_openings(db(), "C001", 2025, o);
    auto t = target("furniture.xls");
    t.group = furniture_;
    test::ScriptedUi ui;
    ASSERT_TRUE(export_workbook(db(), t, ui));
    const auto book = xls::read(read_all(dir_ / "furniture.xls"));
    ASSERT_TRUE(book);
    const auto& rows = book->sheets[0].rows;
    ASSERT_EQ(rows.size(), 4u);  // three heading rows and the one furniture entry
    EXPECT_EQ(rows[3].cells[0].number, 1);
    EXPECT_EQ(rows[3].cells[2].text, "TABLES");
}

TEST_P(RegisterWorkbookTest, TheOtherClientsTemplateBandsTheBooksColumnsAsPerBooks) {
    fill();
    test::ScriptedUi ui;
    ASSERT_TRUE(export_workbook(db(), target("oth.xls", false), ui));
    ui.expect_message("Data Successfully Exported to File : " + (dir_ / "oth.xls").string());
    const auto book = xls::read(read_all(dir_ / "oth.xls"));
    ASSERT_TRUE(book);
    const auto& band = book->sheets[0].rows[1].cells;
    EXPECT_EQ(band[4].text, "As per Books");
    EXPECT_EQ(book->sheets[0].rows[3].cells[2].text, "LATHE");
    // Row 4 carries the template's formats: the date column's cell format is the
    // template's own.
    const auto template_book = xls::read(read_all(template_path(program_folder(), false)));
    ASSERT_TRUE(template_book);
    EXPECT_EQ(book->sheets[0].rows[3].cells[3].xf, template_book->sheets[0].rows[3].cells[3].xf);
    EXPECT_EQ(xls::format_of(*book, book->sheets[0].rows[3].cells[3].xf).number_format, "dd/mm/yyyy");
}

TEST_P(RegisterWorkbookTest, AWorkbookTypedByHandImports) {
    for (const std::string ext : {".xls", ".xlsx"}) {
        SCOPED_TRACE(ext);
        store::create_client_year(db(), "C00" + std::to_string(ext.size()), 2025, "TYPED", 3);
        const std::string path = typed("typed" + ext, "good");
        ASSERT_FALSE(path.empty()) << "the fixture writer failed";
        auto t = target("");
        t.code = "C00" + std::to_string(ext.size());
        test::ScriptedUi ui;
        ui.answer_open_file(path).answer_yes();
        const auto r = import_workbook(db(), t, {}, ui);
        ASSERT_TRUE(r);
        ASSERT_TRUE(r->errors.empty()) << r->errors.front();
        EXPECT_EQ(ui.questions(), std::vector<std::string>{"Confirm Import from \"" + path + "\"."});
        EXPECT_EQ(r->file, path);
        EXPECT_EQ(r->openings, 2);
        EXPECT_EQ(r->additions, 1);
        EXPECT_EQ(r->groups_matched, 2);
        store::RegisterStore reg(db(), t.code, 2025);
        const auto o = reg.opening_entries();
        ASSERT_EQ(o.size(), 2u);
        EXPECT_EQ(o[0].Part, "Lathe");
        EXPECT_EQ(o[0].IdFAGM, plant_);
        EXPECT_EQ(o[0].PutDate, "15/06/2020");
        EXPECT_DOUBLE_EQ(o[0].CostWdv, 100000);
        EXPECT_DOUBLE_EQ(o[0].OpDepr, 25000.5);
        EXPECT_DOUBLE_EQ(o[0].RateFACL, 18.1);
        EXPECT_DOUBLE_EQ(o[0].WdvIT, 85000);
        EXPECT_EQ(o[1].PutDate, "01/05/2019");
        EXPECT_EQ(o[1].IdFAGM, furniture_);
        const auto a = reg.addition_entries();
        ASSERT_EQ(a.size(), 1u);
        EXPECT_EQ(a[0].PutDate, "05/10/2024");
        EXPECT_EQ(a[0].AccDate, "05/10/2024");
        EXPECT_DOUBLE_EQ(a[0].PurAmt, 12500);
        EXPECT_DOUBLE_EQ(a[0].Subsidy, 500);
        EXPECT_EQ(a[0].OthOpts.substr(0, 4), "SLM|");
    }
}

TEST_P(RegisterWorkbookTest, ABadDateOrACostOfTextIsRefusedByRowAndColumnAndNothingIsWritten) {
    struct Case {
        const char* variant;
        const char* ext;
        std::string line;
    };
    const Case cases[] = {
        {"bad-date", ".xls", "Opening row 1 (sheet row 4), column D 'Date of Put to Use': Invalid Value !"},
        {"bad-date", ".xlsx", "Opening row 1 (sheet row 4), column D 'Date of Put to Use': Invalid Value !"},
        {"bad-cost", ".xls", "Addition row 1 (sheet row 4), column F 'Cost': Invalid Value !"},
        {"bad-cost", ".xlsx", "Addition row 1 (sheet row 4), column F 'Cost': Invalid Value !"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.variant) + c.ext);
        const std::string path = typed(std::string(c.variant) + c.ext, c.variant);
        ASSERT_FALSE(path.empty());
        auto t = target("");
        t.path = path;
        t.confirmed = true;
        test::ScriptedUi ui;
        const auto r = import_workbook(db(), t, {}, ui);
        ASSERT_TRUE(r);
        EXPECT_EQ(r->errors, std::vector<std::string>{c.line});
        EXPECT_EQ(r->unanswered, 0);
        store::RegisterStore reg(db(), "C001", 2025);
        EXPECT_TRUE(reg.opening_entries().empty());
        EXPECT_TRUE(reg.addition_entries().empty());
    }
}

TEST_P(RegisterWorkbookTest, AnEntryThatAsksIsCountedApartAndYesTakesIt) {
    std::vector<store::OpeningRow> o(1);
    o[0].IdFAGM = plant_;
    o[0].Part = "OLD LATHE";
    o[0].CostWdv = 100000;
    o[0].PutDate = "15/06/2010";  // before 01/04/2014 with no carrying-amount year: a question
    store::insert_openings(db(), "C001", 2025, o);
    test::ScriptedUi ui;
    ASSERT_TRUE(export_workbook(db(), target("old.xlsx"), ui));
    store::create_client_year(db(), "C002", 2025, "OTHER", 3);
    auto t = target("old.xlsx");
    t.code = "C002";
    t.confirmed = true;
    auto r = import_workbook(db(), t, {}, ui);
    ASSERT_TRUE(r);
    ASSERT_EQ(r->errors.size(), 1u);
    EXPECT_EQ(r->unanswered, 1);
    EXPECT_EQ(r->errors[0].rfind("Opening row 1 (sheet row 4), column G ", 0), 0u) << r->errors[0];
    EXPECT_TRUE(store::RegisterStore(db(), "C002", 2025).opening_entries().empty());
    r = import_workbook(db(), t, {.yes = true}, ui);
    ASSERT_TRUE(r);
    EXPECT_TRUE(r->errors.empty());
    EXPECT_EQ(store::RegisterStore(db(), "C002", 2025).opening_entries().size(), 1u);
}

TEST_P(RegisterWorkbookTest, ImportAsksFirstAndNoWritesNothing) {
    const std::string path = typed("typed.xlsx", "good");
    ASSERT_FALSE(path.empty());
    test::ScriptedUi ui;
    ui.answer_open_file(path).answer_no();
    EXPECT_FALSE(import_workbook(db(), target(""), {}, ui));
    EXPECT_TRUE(store::RegisterStore(db(), "C001", 2025).opening_entries().empty());
    test::ScriptedUi missing;
    missing.answer_open_file((dir_ / "gone.xls").string());
    EXPECT_FALSE(import_workbook(db(), target(""), {}, missing));
    missing.expect_message("Missing File [" + (dir_ / "gone.xls").string() + "].");
}

BRENLOW_INSTANTIATE_BACKENDS(RegisterWorkbookTest);

}  // namespace
}  // namespace brenlow::exchange
