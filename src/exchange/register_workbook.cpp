#include "exchange/register_workbook.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "exchange/register_import.h"
#include "exchange/register_sheets.h"
#include "exchange/spreadsheet_files.h"
#include "register/register_options.h"
#include "store/masters_store.h"
#include "store/register_store.h"
#include "suite/output_file.h"

namespace brenlow::exchange {
namespace {

namespace fs = std::filesystem;
using reg::EntrySide;

constexpr const char* kFilter = "Excel 97-2003 Workbook(*.xls)|*.xls|Excel Workbook(*.xlsx)|*.xlsx";
// Rows 1 to 3 are the headings: an .xls sheet has room for this many entries.
constexpr std::size_t kXlsEntries = 65536 - (kFirstEntryRow - 1);

std::optional<std::string> file_bytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return std::nullopt;
    std::ostringstream s;
    s << in.rdbuf();
    if (in.bad()) return std::nullopt;
    return s.str();
}

std::uint16_t width_of(const SheetColumn& c) {
    const std::string caption = c.caption;
    int chars = 14;
    switch (c.kind) {
        case ColumnKind::Serial:
            chars = 6;
            break;
        case ColumnKind::Text:
            chars = caption == "Particulars" || caption == "Other Options" ? 36 : 28;
            break;
        case ColumnKind::Date:
            chars = 12;
            break;
        case ColumnKind::Rate:
        case ColumnKind::Years:
            chars = 10;
            break;
        case ColumnKind::Word:
            chars = 26;
            break;
        case ColumnKind::Amount:
            break;
    }
    return static_cast<std::uint16_t>(chars * 256);
}

xls::Sheet template_sheet(const char* name, const char* title, const std::vector<SheetColumn>& columns,
                          xls::StyleSheet& styles) {
    xls::CellFormat heading;
    heading.bold = heading.centred = heading.wrap = heading.bordered = true;
    xls::CellFormat title_format;
    title_format.bold = true;
    const auto title_xf = styles.add(title_format);
    const auto head_xf = styles.add(heading);
    xls::Sheet s;
    s.name = name;
    xls::Row title_row{0, {}}, band_row{1, {}}, caption_row{2, {}}, first_row{3, {}};
    title_row.cells.push_back({0, title_xf, xls::Cell::Kind::Text, 0, title});
    for (std::uint16_t i = 0; i < columns.size(); ++i) {
        const auto& c = columns[i];
        s.widths[i] = width_of(c);
        // A band spans its run of columns, written once over the first of them.
        const std::string band = c.band;
        const bool band_starts = !band.empty() && (i == 0 || columns[i - 1].band != band);
        band_row.cells.push_back({i, head_xf, band_starts ? xls::Cell::Kind::Text : xls::Cell::Kind::Blank, 0,
                                  band_starts ? band : ""});
        caption_row.cells.push_back({i, head_xf, xls::Cell::Kind::Text, 0, c.caption});
        if (band_starts) {
            std::uint16_t last = i;
            while (last + 1u < columns.size() && columns[last + 1].band == band) ++last;
            if (last > i) s.merges.push_back({1, 1, i, last});
        }
        xls::CellFormat f;
        f.bordered = true;
        switch (c.kind) {
            case ColumnKind::Serial:
            case ColumnKind::Years:
                f.number_format = "0";
                break;
            case ColumnKind::Date:
                f.number_format = "dd/mm/yyyy";
                break;
            case ColumnKind::Amount:
            case ColumnKind::Rate:
                f.number_format = "0.00";
                break;
            case ColumnKind::Text:
            case ColumnKind::Word:
                break;
        }
        first_row.cells.push_back({i, styles.add(f), xls::Cell::Kind::Blank, 0, {}});
    }
    s.rows = {title_row, band_row, caption_row, first_row};
    return s;
}

// One sheet of the copy: the template's headings, then one row per entry from row
// 4 in the formats of the template's row 4.
void fill_sheet(xls::Sheet& sheet, int year, const std::vector<SheetRow>& rows, const std::string& caption,
                std::size_t done_before, std::size_t total, Ui& ui) {
    std::map<std::uint16_t, std::uint16_t> formats;  // column -> cell format of row 4
    std::vector<xls::Row> head;
    for (auto& r : sheet.rows) {
        if (r.index == kFirstEntryRow - 1)
            for (const auto& c : r.cells) formats[c.col] = c.xf;
        if (r.index >= kFirstEntryRow - 1) continue;
        for (auto& c : r.cells)
            if (const auto p = c.text.find("####"); p != std::string::npos)
                c.text.replace(p, 4, std::to_string(year - 1));
        head.push_back(std::move(r));
    }
    sheet.rows = std::move(head);
    sheet.rows.reserve(sheet.rows.size() + rows.size());
    ui.progress(caption, total ? static_cast<double>(done_before) / total : 0.0);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        xls::Row out{static_cast<std::uint16_t>(kFirstEntryRow - 1 + i), {}};
        out.cells.reserve(rows[i].size());
        for (std::uint16_t c = 0; c < rows[i].size(); ++c) {
            const SheetValue& v = rows[i][c];
            xls::Cell cell;
            cell.col = c;
            cell.xf = formats.count(c) ? formats[c] : 15;
            if (v.kind == SheetValue::Kind::Number || v.kind == SheetValue::Kind::Date) {
                cell.kind = xls::Cell::Kind::Number;
                cell.number = v.number;
            } else if (v.kind == SheetValue::Kind::Text) {
                cell.kind = xls::Cell::Kind::Text;
                cell.text = v.text;
            }
            out.cells.push_back(std::move(cell));
        }
        sheet.rows.push_back(std::move(out));
        if ((i & 1023) == 1023) ui.progress(caption, static_cast<double>(done_before + i + 1) / total);
    }
    // The sheet's last rows are counted too: the last sheet ends at 100%.
    if (total) ui.progress(caption, static_cast<double>(done_before + rows.size()) / total);
}

xls::Sheet* sheet_named(xls::Workbook& book, const char* name) {
    for (auto& s : book.sheets)
        if (s.name == name) return &s;
    return nullptr;
}

bool blank_row(const SheetRow& row) {
    for (const auto& v : row) {
        if (v.kind == SheetValue::Kind::Number || v.kind == SheetValue::Kind::Date) return false;
        if (v.kind == SheetValue::Kind::Text &&
            v.text.find_first_not_of(" \t\r\n\xC2\xA0") != std::string::npos)
            return false;
    }
    return true;
}

std::string upper_trimmed(std::string s) {
    while (!s.empty() && s.back() == ' ') s.pop_back();
    while (!s.empty() && s.front() == ' ') s.erase(0, 1);
    for (auto& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

}  // namespace

std::string template_path(const std::string& exe_path, bool company) {
    const fs::path dir = fs::path(exe_path.empty() ? "." : exe_path) / "Databases";
    return (dir / (std::string("AssetWiseDepChart") + (company ? "Compv2.19.9" : "Oth") + ".xls")).string();
}

xls::Workbook register_template(bool company) {
    xls::StyleSheet styles;
    xls::Workbook book;
    book.sheets.push_back(
        template_sheet(kOpeningSheet, sheet_title(EntrySide::Opening), opening_columns(company), styles));
    book.sheets.push_back(
        template_sheet(kAdditionSheet, sheet_title(EntrySide::Addition), addition_columns(company), styles));
    book.styles = styles.records();
    return book;
}

bool export_workbook(store::Database& db, const WorkbookTarget& target, Ui& ui) {
    store::RegisterStore reg(db, target.code, target.year);
    std::vector<store::OpeningRow> openings;
    std::vector<store::AdditionRow> additions;
    reg.for_each_opening(target.group, [&](store::OpeningRow&& o) {
        if (o.IdFAGM == -1 && o.SrNoFATR == -1) return;  // the old chart's marker
        openings.push_back(std::move(o));
    });
    reg.for_each_addition(target.group, [&](store::AdditionRow&& a) { additions.push_back(std::move(a)); });
    if (openings.empty() && additions.empty()) {
        ui.info("No Asset !");
        return false;
    }
    std::string path;
    if (target.path) {
        path = *target.path;
    } else {
        const auto chosen = ui.choose_save_file("Export to Excel", "", kFilter);
        if (!chosen) return false;
        path = *chosen;
    }
    const auto kind = spreadsheet_kind(path).value_or(SpreadsheetKind::Xls);
    // The database, a folder: refused before the question, which could only be answered No.
    try {
        suite::check_target(path, suite::Existing::replace);
    } catch (const suite::TargetRefused& e) {
        ui.info(e.what());
        return false;
    }
    std::error_code ec;
    const bool there = fs::exists(path, ec);
    if (there && !ui.ask_yes_no(suite::replace_question(path), MsgIcon::question, false)) return false;
    // Yes replaces the file asked about; a file that appears meanwhile is kept.
    const auto existing = there ? suite::Existing::replace : suite::Existing::keep;
    const std::string source = template_path(target.exe_path, target.company);
    const auto template_bytes = file_bytes(source);
    if (!template_bytes) {
        ui.info("Missing Source File [" + source + "].");
        return false;
    }
    if (kind == SpreadsheetKind::Xls && (openings.size() > kXlsEntries || additions.size() > kXlsEntries)) {
        ui.info("An Excel 97-2003 sheet holds at most " + std::to_string(kXlsEntries) +
                " entries: export to an .xlsx file instead.");
        return false;
    }
    // The sheets are made in the same rows of 65,536 for either kind: past them, entries
    // would overwrite the ones before.
    if (openings.size() > kXlsEntries || additions.size() > kXlsEntries) {
        ui.info("A sheet of the register's workbook holds at most " + std::to_string(kXlsEntries) +
                " entries: export the register to a JSON document instead.");
        return false;
    }
    const std::string failed = "Error ! Data Exported to File : " + path;
    try {
        // The template is filled in memory and written beside the target, which it
        // replaces only when whole: until then the earlier workbook stays as it was.
        auto book = xls::read(*template_bytes);
        xls::Sheet* o_sheet = book ? sheet_named(*book, kOpeningSheet) : nullptr;
        xls::Sheet* a_sheet = book ? sheet_named(*book, kAdditionSheet) : nullptr;
        if (!o_sheet || !a_sheet) {
            ui.info(failed);
            return false;
        }
        ui.progress("Exporting to " + path + " ...", 0.0);
        std::map<long, store::AssetGroupRow> groups;
        for (auto& g : reg.asset_groups()) groups[g.SrNoFAGM] = std::move(g);
        const auto group_of = [&](long id) -> const store::AssetGroupRow* {
            const auto it = groups.find(id);
            return it == groups.end() ? nullptr : &it->second;
        };
        const auto common = reg::RegisterOptions::parse(reg.options_row().value_or(""));
        const std::size_t total = openings.size() + additions.size();
        std::vector<SheetRow> rows;
        rows.reserve(openings.size());
        for (std::size_t i = 0; i < openings.size(); ++i)
            rows.push_back(
                opening_cells(openings[i], static_cast<int>(i + 1), group_of(openings[i].IdFAGM), common));
        fill_sheet(*o_sheet, target.year, rows, "Exporting 'Opening' Details ...", 0, total, ui);
        rows.clear();
        for (std::size_t i = 0; i < additions.size(); ++i)
            rows.push_back(
                addition_cells(additions[i], static_cast<int>(i + 1), group_of(additions[i].IdFAGM), common));
        fill_sheet(*a_sheet, target.year, rows, "Exporting 'Addition' Details ...", openings.size(), total,
                   ui);
        write_spreadsheet(*book, kind, path, existing);
        ui.progress_done();
    } catch (const suite::TargetRefused& e) {
        // Taken or made in the meantime: said as it is.
        ui.progress_done();
        ui.info(e.what());
        return false;
    } catch (const std::exception&) {
        ui.progress_done();
        ui.info(failed);
        return false;
    }
    ui.info("Data Successfully Exported to File : " + path);
    return true;
}

std::optional<ImportResult> import_workbook(store::Database& db, const WorkbookTarget& target,
                                            const ImportOptions& options, Ui& ui) {
    std::string path;
    if (target.path) {
        path = *target.path;
    } else {
        const auto chosen = ui.choose_open_file("Import from Excel", kFilter);
        if (!chosen) return std::nullopt;
        path = *chosen;
    }
    std::error_code ec;
    if (!fs::is_regular_file(path, ec)) {
        ui.info("Missing File [" + path + "].");
        return std::nullopt;
    }
    if (!target.confirmed && !ui.ask_yes_no("Confirm Import from \"" + path + "\".")) return std::nullopt;
    ui.progress("Importing from " + path + " ...", 0.0);
    std::string error;
    const auto sheets = read_spreadsheet(path, error);
    if (!sheets) {
        ui.progress_done();
        ui.info("Can't Import from File : " + path + " (" + error + ")");
        return std::nullopt;
    }
    SheetEntries entries;
    bool found = false;
    for (const auto& s : *sheets) {
        const std::string name = upper_trimmed(s.name);
        auto* into = name == "OPENING" ? &entries.opening : name == "ADDITION" ? &entries.addition : nullptr;
        if (!into) continue;
        found = true;
        for (const auto& [row, cells] : s.rows)
            if (row >= kFirstEntryRow && !blank_row(cells)) into->emplace_back(row, cells);
    }
    if (!found) {
        ui.progress_done();
        ui.info("Can't Import from File : " + path + " (it has no sheet 'Opening' or 'Addition')");
        return std::nullopt;
    }
    store::RegisterStore reg(db, target.code, target.year);
    const auto common = reg::RegisterOptions::parse(reg.options_row().value_or(""));
    std::vector<std::string> errors;
    FindingPlace place;
    auto data = entries_of(entries, target.year, target.company, reg.asset_groups(), common, errors, place);
    ui.progress("Importing from " + path + " ...", 0.5);
    auto result =
        check_and_write(db, target.code, target.year, std::move(data), options, place, std::move(errors));
    result.file = path;
    ui.progress("Importing from " + path + " ...", 1.0);
    ui.progress_done();
    return result;
}

}  // namespace brenlow::exchange
