// Damaged workbooks made from a good export (by damaged_workbooks.py) are refused whole,
// in the program's words, and leave the register as it was; numbers in a workbook are
// read as a typed amount is.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "exchange/register_workbook.h"
#include "exchange/sheet_limits.h"
#include "store/client_store.h"
#include "store/register_bulk.h"
#include "store/register_store.h"
#include "support/scripted_ui.h"
#include "support/test_databases.h"

namespace brenlow::exchange {
namespace {

namespace fs = std::filesystem;

const std::string kScript = std::string(BRENLOW_TEST_FILES_DIR) + "/../exchange/damaged_workbooks.py";

std::string program_folder() {
    return fs::read_symlink("/proc/self/exe").parent_path().string();
}

// Every column of the register's rows, one line each, to compare whole registers.
std::string register_text(store::Database& db, const std::string& code) {
    store::RegisterStore reg(db, code, 2025);
    std::ostringstream s;
    s.precision(17);
    for (const auto& o : reg.opening_entries())
        s << "O " << o.SrNoFATR << ' ' << o.IdFAGM << ' ' << o.Part << ' ' << o.PutDate << ' ' << o.CostWdv
          << ' ' << o.OpDepr << ' ' << o.RateFACL << ' ' << o.WdvIT << ' ' << o.OthOpts << '\n';
    for (const auto& a : reg.addition_entries())
        s << "A " << a.SrNoFATR << ' ' << a.IdFAGM << ' ' << a.Part << ' ' << a.PutDate << ' ' << a.AccDate
          << ' ' << a.PurAmt << ' ' << a.RateFACL << ' ' << a.OthOpts << '\n';
    return s.str();
}

class WorkbookDamageTest : public test::BackendTest {
protected:
    void SetUp() override {
        test::BackendTest::SetUp();
        if (IsSkipped()) return;
        store::ensure_schema(db(), BRENLOW_TEST_DATA_DIR);
        store::create_client_year(db(), "C001", 2025, "ACME", 3);
        dir_ = fs::temp_directory_path() /
               ("brenlow-damage-" + std::to_string(::getpid()) + "-" +
                std::to_string(std::hash<std::string>{}(
                    ::testing::UnitTest::GetInstance()->current_test_info()->name())));
        fs::remove_all(dir_);
        fs::create_directories(dir_);
        store::RegisterStore reg(db(), "C001", 2025);
        const long plant = reg.find_or_create_group(
            {0, 2025, "PLANT AND MACHINERY", "3-15", 15, 20, 0, 0, "4.1", 15, 6.33, 18.1});
        // Seven entries on each side, as the register a damaged file once emptied.
        std::vector<store::OpeningRow> o(7);
        std::vector<store::AdditionRow> a(7);
        for (int i = 0; i < 7; ++i) {
            o[i].IdFAGM = plant;
            o[i].Part = "LATHE " + std::to_string(i + 1);
            o[i].CostWdv = 100000 + i;
            o[i].PutDate = "15/06/2020";
            a[i].IdFAGM = plant;
            a[i].Part = "DRILL " + std::to_string(i + 1);
            a[i].PurAmt = 50000 + i;
            a[i].PutDate = a[i].AccDate = "05/10/2024";
        }
        store::insert_openings(db(), "C001", 2025, o);
        store::insert_additions(db(), "C001", 2025, a);
    }
    void TearDown() override {
        if (!dir_.empty()) fs::remove_all(dir_);
        test::BackendTest::TearDown();
    }

    WorkbookTarget target(const std::string& path, const std::string& code = "C001") const {
        WorkbookTarget t;
        t.code = code;
        t.year = 2025;
        t.company = true;
        t.exe_path = program_folder();
        t.path = path;
        t.confirmed = true;
        return t;
    }

    // The client's register exported, then damaged by the script's kind.
    std::string damaged(const std::string& ext, const std::string& kind, const std::string& arg = "") {
        const std::string good = (dir_ / ("good" + ext)).string();
        if (!fs::exists(good)) {
            test::ScriptedUi ui;
            if (!export_workbook(db(), target(good), ui)) return {};
        }
        const std::string out = (dir_ / ("damaged-" + std::to_string(++made_) + ext)).string();
        const std::string cmd =
            "/usr/bin/python3 " + kScript + " one " + kind + " " + good + " " + out + " '" + arg + "'";
        return std::system(cmd.c_str()) == 0 ? out : std::string();
    }

    // Imports with --replace: a refusal leaves the register byte for byte.
    void expect_refused(const std::string& path, const std::string& reason) {
        ASSERT_FALSE(path.empty()) << "the damaged workbook was not made";
        const std::string before = register_text(db(), "C001");
        test::ScriptedUi ui;
        ImportOptions options;
        options.replace = options.yes = true;
        EXPECT_FALSE(import_workbook(db(), target(path), options, ui));
        EXPECT_EQ(ui.messages(),
                  std::vector<std::string>{"Can't Import from File : " + path + " (" + reason + ")"});
        EXPECT_EQ(register_text(db(), "C001"), before);
    }

    fs::path dir_;
    int made_ = 0;
};

TEST_P(WorkbookDamageTest, AnXlsWithALabelsLengthChangedIsRefusedAndTheRegisterKept) {
    expect_refused(damaged(".xls", "label-length-0"),
                   "the sheet \"Opening\" is damaged after row 4, column A");
    expect_refused(damaged(".xls", "label-length-0", "9"),
                   "the sheet \"Opening\" is damaged after row 4, column A");
    expect_refused(damaged(".xls", "label-length-0", "11"), "the sheet \"Opening\" is cut short");
}

// Another program's workbook goes to freexl only once its records are found whole.
TEST_P(WorkbookDamageTest, AnotherProgramsXlsWithALabelsLengthChangedIsRefusedToo) {
    expect_refused(damaged(".xls", "other-label-length-0"),
                   "the sheet \"Opening\" is damaged after row 4, column A");
}

TEST_P(WorkbookDamageTest, AnXlsWhoseChainOfSectorsLoopsIsRefused) {
    expect_refused(damaged(".xls", "fat-loop"),
                   "the file is damaged: the chain of sectors of the workbook runs in a loop");
    expect_refused(damaged(".xls", "fat-loop-huge"),
                   "the file is damaged: the workbook is larger than the file");
}

TEST_P(WorkbookDamageTest, AnXlsxWhosePartFailsItsCheckSumIsRefused) {
    expect_refused(damaged(".xlsx", "crc"),
                   "its part \"xl/worksheets/sheet1.xml\" is damaged: its check sum does not match");
}

TEST_P(WorkbookDamageTest, ACellReferencePastTheSheetIsRefusedNamingItsSheet) {
    const std::pair<const char*, const char*> cases[] = {
        {"ZZZZZZ4", "the sheet \"Opening\" has a cell \"ZZZZZZ4\" past the last column XFD"},
        {"XFE4", "the sheet \"Opening\" has a cell \"XFE4\" past the last column XFD"},
        {"AAAAAAAAAAAAAAAAAAAAAAAA4",
         "the sheet \"Opening\" has a cell \"AAAAAAAAAAAAAAAA\" past the last column XFD"},
        {"B1048577", "the sheet \"Opening\" has a cell \"B1048577\" past the last row 1048576"},
        {"B99999999999999999999",
         "the sheet \"Opening\" has a cell \"B999999999999999\" past the last row 1048576"},
        {"B-4", "the sheet \"Opening\" has a cell \"B-4\" that names no row and column"},
        {"B0", "the sheet \"Opening\" has a cell \"B0\" that names no row and column"},
    };
    for (const auto& [ref, reason] : cases) {
        SCOPED_TRACE(ref);
        expect_refused(damaged(".xlsx", "ref", ref), reason);
    }
}

TEST_P(WorkbookDamageTest, APartThatWouldUnpackPastItsFilesShareIsRefused) {
    const std::string path = damaged(".xlsx", "bomb", "40");
    ASSERT_FALSE(path.empty());
    const auto cap = fs::file_size(path) * limits::kUnpackRatio + limits::kUnpackFloor;
    EXPECT_LT(fs::file_size(path), 200000u);  // a small file that would unpack to 40 MB
    expect_refused(path, "its part \"xl/sharedStrings.xml\" would unpack to more than " +
                             std::to_string(cap) + " bytes, more than a workbook of this size holds");
}

TEST_P(WorkbookDamageTest, AnXlsNumberThatIsNoFiniteNumberIsRefusedByItsCell) {
    for (const char* value : {"inf", "-inf", "nan"}) {
        SCOPED_TRACE(value);
        expect_refused(damaged(".xls", "xls-number", value),
                       "the sheet \"Opening\", row 4, column E holds a number that is no number");
    }
}

// A workbook's number is read as a typed amount is: the same reader, the same refusals.
TEST_P(WorkbookDamageTest, WorkbookNumbersAreReadAsTypedAmounts) {
    // A text refused as the field refuses it, in the sheet's caption; a number past every
    // field's reach refused by the entry rules, in the field's caption.
    const std::string cost =
        "Opening row 1 (sheet row 4), column E 'Written Down Value (or Cost)': Invalid Value !";
    const std::string past = "Opening row 1 (sheet row 4), column E 'Cost': Invalid Value !";
    const std::pair<const char*, std::string> cases[] = {
        {"inf", cost},      {"1e400", cost}, {"0x1p20", cost}, {"8,0,0000", cost},
        {"Infinity", cost}, {"nan", cost},   {"1e308", past},  {"-1e18", past},
    };
    store::create_client_year(db(), "C002", 2025, "OTHER", 3);
    for (const auto& [text, line] : cases) {
        SCOPED_TRACE(text);
        const std::string path = damaged(".xlsx", "number", text);
        ASSERT_FALSE(path.empty());
        test::ScriptedUi ui;
        const auto r = import_workbook(db(), target(path, "C002"), {.yes = true}, ui);
        ASSERT_TRUE(r);
        ASSERT_FALSE(r->errors.empty());
        EXPECT_EQ(r->errors.front(), line);
        EXPECT_EQ(register_text(db(), "C002"), "");
    }
    // A grouping the screen takes is taken here too.
    for (const auto& [text, amount] :
         {std::pair<const char*, double>{"8,00,000", 800000}, {"800,000", 800000}, {"1.5E+5", 150000}}) {
        SCOPED_TRACE(text);
        const std::string path = damaged(".xlsx", "number", text);
        test::ScriptedUi ui;
        const auto r = import_workbook(db(), target(path, "C002"), {.replace = true, .yes = true}, ui);
        ASSERT_TRUE(r);
        ASSERT_TRUE(r->errors.empty()) << r->errors.front();
        const auto o = store::RegisterStore(db(), "C002", 2025).opening_entries();
        ASSERT_EQ(o.size(), 7u);
        EXPECT_EQ(o[0].CostWdv, amount);
    }
}

BRENLOW_INSTANTIATE_BACKENDS(WorkbookDamageTest);

}  // namespace
}  // namespace brenlow::exchange
