#pragma once
// Spreadsheet files in and out, by their extension: ".xls" (Excel 97-2003) and
// ".xlsx". Reading gives every sheet's cells as plain values whatever program wrote
// the file (freexl reads .xls; .xlsx is a zip of XML parts, read with minizip and
// expat). Writing takes a workbook built on a template (xls::Workbook) and writes it
// as .xls by hand or as .xlsx with libxlsxwriter, the template's formats carried over.

#include <optional>
#include <string>
#include <vector>

#include "exchange/register_sheets.h"
#include "exchange/xls_workbook.h"
#include "suite/output_file.h"

namespace brenlow::exchange {

enum class SpreadsheetKind { Xls, Xlsx };

// By the file's extension, in any case; nullopt for any other.
std::optional<SpreadsheetKind> spreadsheet_kind(const std::string& path);

struct SheetCells {
    std::string name;
    std::vector<std::pair<int, SheetRow>> rows;  // sheet row number (from 1), cells from column A
};

// Every sheet of the workbook; nullopt with `error` set when the file cannot be read
// as one.
std::optional<std::vector<SheetCells>> read_spreadsheet(const std::string& path, std::string& error);

// The workbook written whole to `path` in the file's format (as output_file's writers
// do, under the same rule and with the same errors).
void write_spreadsheet(const xls::Workbook& book, SpreadsheetKind kind, const std::string& path,
                       suite::Existing existing);

}  // namespace brenlow::exchange
