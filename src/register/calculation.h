#pragma once
// The calculation run of a client's year: what cmdDeprCalc does and what the command
// line's chart command runs. It reads the year's asset groups, blocks and entries
// (streamed, one query a table), builds the engine's inputs, runs the income-tax block
// calculation or the Companies Act calculation by mode, and in the income-tax modes
// writes the chart of the year to TmpDepChart (or copies the hand-edited DeprChart when
// that is allowed and the client's MANDEP setting is "1").
//
// The result is plain data: the screen and the command line show it, print it through
// chart_report.h, and show each warning marked `show` once.

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "depreciation/chart.h"
#include "depreciation/companies_act.h"
#include "depreciation/companies_act_sheet.h"
#include "depreciation/income_tax.h"
#include "depreciation/income_tax_sheet.h"
#include "depreciation/warnings.h"
#include "register/entry_rules.h"
#include "store/database.h"
#include "store/register_store.h"

namespace brenlow::reg {

// The register's display modes; the calculate button dispatches on them.
enum class Mode {
    DEP_IT,
    DEP_CAL_IT,
    DEP_3CD_IT,
    DEP_SCH_IT_FROM_IT,
    DEP_SCH_IT_FROM_FA,
    DEP_FA,
    DEP_CAL_FA,
    DEP_REP_FA,
    DEP_SCH_FA,
};

bool is_income_tax_mode(Mode mode);
const char* mode_name(Mode mode);
std::optional<Mode> mode_from_name(std::string_view name);

struct CalculationOptions {
    bool allow_hand_edited = true;  // the hand-edited chart may replace the built one
    bool keep_entries = true;       // keep the engine inputs in the result (the screen's working grid)
    bool sheets = true;             // build the calculation sheets and the block summary
    bool write_chart = true;        // write the year's chart to TmpDepChart; off, the run only reads
};

// One asset of the books chart, under the names the books schedule uses.
struct BooksAsset {
    depreciation::EntryKind kind = depreciation::EntryKind::Opening;
    long SrNoFATR = 0;
    long IdFAGM = 0;
    std::string Particulars;
    double Cost = 0;     // opening: cost or WDV as per books; addition: its net amount
    double OpDep = 0;    // depreciation up to the start of the year
    double Opening = 0;  // carrying amount on 01/04
    double Addition = 0;
    double DedAmt = 0;
    double DepFY = 0;
    double ClBal = 0;
    double ProfitLoss = 0;
    double DepAdjRemLife0_PL = 0;  // carrying amount above the residual value of a nil remaining life,
    double DepAdjRemLife0_RS = 0;  // to profit and loss or to reserves
    double Rate = 0;
    double RemLife = 0;
    int Days = 0;
    bool half_year = false;  // an addition put to use on or after the half-rate line
};

struct IncomeTaxBlockSheet {
    std::string block_name;
    double rate = 0;
    std::vector<depreciation::ItSheetLine> lines;
};

struct CalculationResult {
    std::string code;
    int year = 0;  // closing calendar year
    Mode mode = Mode::DEP_IT;
    bool no_assets = false;
    std::vector<depreciation::Warning> warnings;
    std::map<long, std::string> asset_groups;  // SrNoFAGM -> Part, the groups of the year

    // Income-tax modes.
    depreciation::ItRunResult income_tax;           // blocks, working rows, half-rate line
    std::vector<depreciation::ItEntry> it_entries;  // when kept
    std::vector<double> profit_on_sale;             // per kept entry, before the block calculation
    std::vector<depreciation::ChartRow> chart;      // as written to TmpDepChart
    bool chart_hand_edited = false;                 // copied from DeprChart
    std::vector<IncomeTaxBlockSheet> income_tax_sheet;
    depreciation::ItSummary block_summary;

    // Books modes.
    depreciation::CaRunResult books;
    std::vector<BooksAsset> books_assets;
    std::vector<depreciation::CaSheetRow> books_sheet;
};

// Runs the calculation of the client's year in the given mode. Throws store::DbError
// when the database fails; the chart of the year is then left as it was.
CalculationResult run_calculation(store::Database& db, const std::string& code, int year, Mode mode,
                                  bool interactive, const CalculationOptions& options = {});

// ---- The engine's inputs from register rows (also what the carry-forward reads) ----

depreciation::ItEntry income_tax_entry(const store::OpeningRow& o, const store::AssetGroupRow* group);
depreciation::ItEntry income_tax_entry(const store::AdditionRow& a, const store::AssetGroupRow* group);

}  // namespace brenlow::reg
