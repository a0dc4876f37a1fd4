#pragma once
// The register to a spreadsheet and back, as the register screen's "Export to Excel"
// (cmdExportXls) and "Import from Excel" (cmdImportXls) do it: the shipped template
// workbook copied and filled from row 4 with its first row's formats, and the same
// layout read back through the register's entry rules. ".xls" or ".xlsx" by the
// file's extension. The questions, messages and progress go to the person through
// the Ui port, so the desktop and the command line show the same.

#include <optional>
#include <string>

#include "controls/ui_port.h"
#include "exchange/register_document.h"
#include "exchange/xls_workbook.h"
#include "store/database.h"

namespace brenlow::exchange {

inline constexpr const char* kXlsFilter = "Excel 97-2003 Workbook(*.xls)|*.xls";

// "<ExePath>/Databases/AssetWiseDepChartCompv2.19.9.xls" for a company, else
// ".../AssetWiseDepChartOth.xls".
std::string template_path(const std::string& exe_path, bool company);

// The template workbook as shipped: sheets "Opening" and "Addition", header rows 1 to
// 3 and a formatted first data row at row 4.
xls::Workbook register_template(bool company);

struct WorkbookTarget {
    std::string code;
    int year = 0;
    bool company = false;  // picks the template and the books band
    std::string exe_path;  // the program folder, where "Databases" is
    // The export writes the grids' rows: those of the group filter's group, when one is chosen.
    std::optional<long> group;
    std::optional<std::string> path;  // asked for when not given
    bool confirmed = false;           // the import was confirmed beforehand (the command line names its file)
};

// cmdExportXls: true when the file was written whole.
bool export_workbook(store::Database& db, const WorkbookTarget& target, Ui& ui);

// cmdImportXls: reads the file into the client's year. `result.errors` lists every
// refusal (nothing was written); nullopt when the person stopped or the file could
// not be read (the message was shown).
std::optional<ImportResult> import_workbook(store::Database& db, const WorkbookTarget& target,
                                            const ImportOptions& options, Ui& ui);

}  // namespace brenlow::exchange
