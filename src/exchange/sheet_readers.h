#pragma once
// The two readers behind read_spreadsheet, and what they share: the cells of a sheet
// gathered within the limits of sheet_limits.h, each refusal naming the sheet, row and
// column.

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "exchange/spreadsheet_files.h"

namespace brenlow::exchange {

// A sheet's cells as they are read, in any order.
class SheetBuilder {
public:
    explicit SheetBuilder(std::string name) : name_(std::move(name)) {}
    // Keeps the value of the cell at sheet row `row` (from 1) and column `col` (from 0);
    // false with `error` set when it lies past the limits or holds what no cell may.
    bool put(long row, long col, SheetValue v, std::string& error);
    SheetCells finish();
    const std::string& name() const { return name_; }
    // "the sheet "Opening", row 4, column B"
    std::string where(long row, long col) const;

private:
    std::string name_;
    std::map<int, SheetRow> rows_;
};

// Characters of UTF-8 text.
std::size_t char_count(std::string_view utf8);

std::optional<std::vector<SheetCells>> read_xls_file(const std::string& path, std::string& error);
std::optional<std::vector<SheetCells>> read_xlsx_file(const std::string& path, std::string& error);

}  // namespace brenlow::exchange
