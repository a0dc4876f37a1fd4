#pragma once
// The register's two sheets, "Opening" and "Addition": which value sits in which
// column, the words written in place of the option codes, and the reading of a sheet
// back into entries. Header rows 1 to 3, entries from row 4; the layout is in the
// README. Nothing here knows the file format: cells are plain values.

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "exchange/register_import.h"
#include "register/register_options.h"
#include "store/masters_store.h"
#include "store/register_store.h"

namespace brenlow::exchange {

struct SheetValue {
    enum class Kind { Empty, Number, Text, Date };
    Kind kind = Kind::Empty;
    double number = 0;  // a Date is a day number of the spreadsheet's 1900 system
    std::string text;

    static SheetValue of(double v) { return {Kind::Number, v, {}}; }
    static SheetValue of(std::string t) { return {t.empty() ? Kind::Empty : Kind::Text, 0, std::move(t)}; }
};
using SheetRow = std::vector<SheetValue>;  // from column A

enum class ColumnKind { Serial, Text, Date, Amount, Rate, Years, Word };

struct SheetColumn {
    const char* letter;
    const char* band;  // the upper header row; "" for none
    const char* caption;
    ColumnKind kind;
};

inline constexpr int kFirstEntryRow = 4;  // sheet rows count from 1
inline constexpr const char* kOpeningSheet = "Opening";
inline constexpr const char* kAdditionSheet = "Addition";

// A to AB, and A to Z. The band of the books columns reads "As per Companies Act" in
// the companies' template and "As per Books" in the other; "####" in a caption is
// the year before the register's year.
const std::vector<SheetColumn>& opening_columns(bool company);
const std::vector<SheetColumn>& addition_columns(bool company);
// The sheet's title in row 1.
const char* sheet_title(reg::EntrySide side);

// The day number of a stored dd/mm/yyyy date; nullopt when it is not one.
std::optional<double> day_number(const std::string& date);

// One entry as the cells of its sheet row; `sn` numbers the rows shown.
SheetRow opening_cells(const store::OpeningRow& o, int sn, const store::AssetGroupRow* group,
                       const reg::RegisterOptions& common);
SheetRow addition_cells(const store::AdditionRow& a, int sn, const store::AssetGroupRow* group,
                        const reg::RegisterOptions& common);

// The entry rows of both sheets, each with its sheet row number.
struct SheetEntries {
    std::vector<std::pair<int, SheetRow>> opening, addition;
};

// Reads the sheets into entries for the year, groups matched by name among
// `year_groups` or made new; errors name the sheet row and column. `place_out`
// receives how a finding of the entry rules is named.
RegisterData entries_of(const SheetEntries& sheets, int year, bool company,
                        const std::vector<store::AssetGroupRow>& year_groups,
                        const reg::RegisterOptions& common, std::vector<std::string>& errors,
                        FindingPlace& place_out);

}  // namespace brenlow::exchange
