// An .xls read for import: a workbook of this writer by its own reader, any other by
// freexl, once the container and the records have been found sound and within limits.

#include <freexl.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "controls/vb_date.h"
#include "exchange/sheet_limits.h"
#include "exchange/sheet_readers.h"
#include "exchange/xls_workbook.h"

namespace brenlow::exchange {
namespace {

std::optional<std::vector<SheetCells>> own_cells(const xls::Workbook& book, std::string& error) {
    std::vector<SheetCells> sheets;
    for (const auto& s : book.sheets) {
        SheetBuilder sheet(s.name);
        for (const auto& r : s.rows)
            for (const auto& c : r.cells) {
                if (c.kind == xls::Cell::Kind::Blank) continue;
                SheetValue v =
                    c.kind == xls::Cell::Kind::Number ? SheetValue::of(c.number) : SheetValue::of(c.text);
                if (v.kind == SheetValue::Kind::Empty) continue;
                if (!sheet.put(r.index + 1L, c.col, std::move(v), error)) return std::nullopt;
            }
        sheets.push_back(sheet.finish());
    }
    return sheets;
}

std::optional<SheetValue> freexl_value(const FreeXL_CellValue& v) {
    const auto text = [&] { return std::string(v.value.text_value ? v.value.text_value : ""); };
    switch (v.type) {
        case FREEXL_CELL_INT:
            return SheetValue::of(static_cast<double>(v.value.int_value));
        case FREEXL_CELL_DOUBLE:
            return SheetValue::of(v.value.double_value);
        case FREEXL_CELL_TEXT:
        case FREEXL_CELL_SST_TEXT:
        case FREEXL_CELL_TIME:
            return SheetValue::of(text());
        case FREEXL_CELL_DATE:
        case FREEXL_CELL_DATETIME: {
            // "yyyy-mm-dd[ hh:mm:ss]"
            const std::string t = text();
            int y = 0, m = 0, d = 0;
            if (std::sscanf(t.c_str(), "%d-%d-%d", &y, &m, &d) == 3 && Date::valid(y, m, d))
                return SheetValue{
                    SheetValue::Kind::Date, static_cast<double>(Date{y, m, d}.serial() + 25569), {}};
            return SheetValue::of(t);
        }
        default:
            return std::nullopt;
    }
}

std::optional<std::vector<SheetCells>> freexl_cells(const std::string& path, std::string& error) {
    const void* handle = nullptr;
    if (freexl_open(path.c_str(), &handle) != FREEXL_OK) {
        if (handle) freexl_close(handle);
        error = "it is not an Excel 97-2003 workbook";
        return std::nullopt;
    }
    std::unique_ptr<const void, void (*)(const void*)> guard(handle, [](const void* h) { freexl_close(h); });
    unsigned int count = 0;
    if (freexl_get_info(handle, FREEXL_BIFF_SHEET_COUNT, &count) != FREEXL_OK || count > limits::kSheets) {
        error = "its list of sheets cannot be read";
        return std::nullopt;
    }
    std::vector<SheetCells> sheets;
    for (unsigned short s = 0; s < count; ++s) {
        const char* name = nullptr;
        freexl_get_worksheet_name(handle, s, &name);
        SheetBuilder sheet(name ? name : "");
        unsigned int rows = 0;
        unsigned short cols = 0;
        if (freexl_select_active_worksheet(handle, s) != FREEXL_OK ||
            freexl_worksheet_dimensions(handle, &rows, &cols) != FREEXL_OK) {
            error = "the sheet \"" + sheet.name() + "\" cannot be read";
            return std::nullopt;
        }
        const unsigned short kept = std::min<unsigned short>(cols, limits::kKeptColumns);
        for (unsigned int r = 0; r < rows; ++r) {
            for (unsigned short c = 0; c < kept; ++c) {
                FreeXL_CellValue v;
                if (freexl_get_cell_value(handle, r, c, &v) != FREEXL_OK) {
                    error = sheet.where(r + 1L, c) + " cannot be read";
                    return std::nullopt;
                }
                auto value = freexl_value(v);
                if (!value || value->kind == SheetValue::Kind::Empty) continue;
                if (!sheet.put(r + 1L, c, std::move(*value), error)) return std::nullopt;
            }
        }
        sheets.push_back(sheet.finish());
    }
    return sheets;
}

}  // namespace

std::optional<std::vector<SheetCells>> read_xls_file(const std::string& path, std::string& error) {
    std::error_code ec;
    const auto size = std::filesystem::file_size(path, ec);
    if (ec) {
        error = "the file cannot be read";
        return std::nullopt;
    }
    if (size > limits::kFileBytes) {
        error = "it is larger than " + std::to_string(limits::kFileBytes >> 20) + " MiB";
        return std::nullopt;
    }
    std::ifstream in(path, std::ios::binary);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    if (!in.read(bytes.data(), static_cast<std::streamsize>(size)) ||
        in.gcount() != static_cast<std::streamsize>(size)) {
        error = "the file cannot be read";
        return std::nullopt;
    }
    // A workbook this program wrote and nobody saved since is read by its own reader:
    // freexl takes many seconds over a sheet of 50,000 rows.
    std::string damage;
    const auto book = xls::read(bytes, damage);
    if (!damage.empty()) {
        error = damage;
        return std::nullopt;
    }
    if (book) return own_cells(*book, error);
    return freexl_cells(path, error);
}

}  // namespace brenlow::exchange
