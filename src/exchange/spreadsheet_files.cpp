#include "exchange/spreadsheet_files.h"

#include <xlsxwriter.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <tuple>

#include "exchange/sheet_limits.h"
#include "exchange/sheet_readers.h"
#include "suite/output_file.h"

namespace brenlow::exchange {
namespace {

std::string lower(std::string s) {
    for (auto& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

// ---- .xlsx out through libxlsxwriter ----

// The library writes the file by its name: the writer's temporary beside the target.
void write_xlsx(const xls::Workbook& book, const char* file) {
    lxw_workbook_options options = {};
    options.constant_memory = LXW_TRUE;
    lxw_workbook* wb = workbook_new_opt(file, &options);
    if (!wb) throw std::runtime_error("the workbook cannot be made");
    // One library format per distinct look: the library finds a format equal to one it
    // has by hashing it again on every cell.
    std::map<std::uint16_t, lxw_format*> formats;
    std::map<std::tuple<std::string, bool, bool, bool, bool>, lxw_format*> looks;
    const auto format = [&](std::uint16_t xf) {
        if (const auto it = formats.find(xf); it != formats.end()) return it->second;
        const xls::CellFormat f = xls::format_of(book, xf);
        const auto look = std::make_tuple(f.number_format, f.bold, f.wrap, f.centred, f.bordered);
        if (const auto it = looks.find(look); it != looks.end()) return formats[xf] = it->second;
        lxw_format* lf = workbook_add_format(wb);
        looks[look] = lf;
        if (f.number_format != "General") format_set_num_format(lf, f.number_format.c_str());
        if (f.bold) format_set_bold(lf);
        if (f.wrap) format_set_text_wrap(lf);
        if (f.centred) format_set_align(lf, LXW_ALIGN_CENTER);
        if (f.bordered) format_set_border(lf, LXW_BORDER_THIN);
        return formats[xf] = lf;
    };
    for (const auto& s : book.sheets) {
        lxw_worksheet* ws = workbook_add_worksheet(wb, s.name.c_str());
        for (const auto& [col, width] : s.widths) worksheet_set_column(ws, col, col, width / 256.0, nullptr);
        // Merges lie within one row here: the library writes a merge's cells itself.
        std::map<std::pair<int, int>, const xls::Merge*> merged;  // first cell -> range
        std::set<std::pair<int, int>> covered;
        for (const auto& m : s.merges) {
            merged[{m.first_row, m.first_col}] = &m;
            for (int r = m.first_row; r <= m.last_row; ++r)
                for (int c = m.first_col; c <= m.last_col; ++c)
                    if (r != m.first_row || c != m.first_col) covered.insert({r, c});
        }
        for (const auto& r : s.rows) {
            for (const auto& c : r.cells) {
                if (!covered.empty() && covered.count({r.index, c.col})) continue;
                lxw_format* f = format(c.xf);
                if (const auto m = merged.find({r.index, c.col});
                    m != merged.end() && c.kind == xls::Cell::Kind::Text) {
                    const auto* x = m->second;
                    worksheet_merge_range(ws, x->first_row, x->first_col, x->last_row, x->last_col,
                                          c.text.c_str(), f);
                    continue;
                }
                switch (c.kind) {
                    case xls::Cell::Kind::Text:
                        worksheet_write_string(ws, r.index, c.col, c.text.c_str(), f);
                        break;
                    case xls::Cell::Kind::Number:
                        worksheet_write_number(ws, r.index, c.col, c.number, f);
                        break;
                    case xls::Cell::Kind::Blank:
                        worksheet_write_blank(ws, r.index, c.col, f);
                        break;
                }
            }
        }
    }
    const lxw_error e = workbook_close(wb);
    if (e != LXW_NO_ERROR) throw std::runtime_error(lxw_strerror(e));
}

}  // namespace

std::size_t char_count(std::string_view utf8) {
    std::size_t n = 0;
    for (const char c : utf8) n += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    return n;
}

std::string SheetBuilder::where(long row, long col) const {
    return "the sheet \"" + name_ + "\", row " + std::to_string(row) + ", column " + limits::column_name(col);
}

bool SheetBuilder::put(long row, long col, SheetValue v, std::string& error) {
    if (row < 1 || row > limits::kRows || col < 0 || col >= limits::kColumns) {
        error = "the sheet \"" + name_ + "\" has a cell past its last row or column";
        return false;
    }
    if (col >= limits::kKeptColumns) return true;
    if (v.kind == SheetValue::Kind::Text && char_count(v.text) > limits::kCellChars) {
        error = where(row, col) + " holds more than " + std::to_string(limits::kCellChars) + " characters";
        return false;
    }
    if ((v.kind == SheetValue::Kind::Number || v.kind == SheetValue::Kind::Date) &&
        !std::isfinite(v.number)) {
        error = where(row, col) + " holds a number that is no number";
        return false;
    }
    auto it = rows_.find(static_cast<int>(row));
    if (it == rows_.end()) {
        if (rows_.size() == limits::kRowsWithCells) {
            error = "the sheet \"" + name_ + "\" has more than " + std::to_string(limits::kRowsWithCells) +
                    " rows with cells";
            return false;
        }
        it = rows_.emplace(static_cast<int>(row), SheetRow{}).first;
    }
    SheetRow& cells = it->second;
    if (static_cast<long>(cells.size()) <= col) cells.resize(static_cast<std::size_t>(col) + 1);
    cells[static_cast<std::size_t>(col)] = std::move(v);
    return true;
}

SheetCells SheetBuilder::finish() {
    SheetCells out;
    out.name = std::move(name_);
    out.rows.reserve(rows_.size());
    for (auto& [row, cells] : rows_) out.rows.emplace_back(row, std::move(cells));
    rows_.clear();
    return out;
}

std::optional<SpreadsheetKind> spreadsheet_kind(const std::string& path) {
    const std::string ext = lower(std::filesystem::path(path).extension().string());
    if (ext == ".xls") return SpreadsheetKind::Xls;
    if (ext == ".xlsx") return SpreadsheetKind::Xlsx;
    return std::nullopt;
}

std::optional<std::vector<SheetCells>> read_spreadsheet(const std::string& path, std::string& error) {
    const auto kind = spreadsheet_kind(path);
    if (!kind) {
        error = "not a spreadsheet (.xls or .xlsx)";
        return std::nullopt;
    }
    // A workbook saved under the other extension still reads: the first bytes say.
    std::ifstream in(path, std::ios::binary);
    char magic[4] = {};
    in.read(magic, 4);
    if (magic[0] == 'P' && magic[1] == 'K') return read_xlsx_file(path, error);
    return read_xls_file(path, error);
}

void write_spreadsheet(const xls::Workbook& book, SpreadsheetKind kind, const std::string& path,
                       suite::Existing existing) {
    suite::WholeFileWriter file(path, existing);
    if (kind == SpreadsheetKind::Xls)
        file.write(xls::write(book));
    else
        write_xlsx(book, file.temporary_name());
    file.finish();
}

}  // namespace brenlow::exchange
