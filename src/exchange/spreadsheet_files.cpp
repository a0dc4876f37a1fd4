#include "exchange/spreadsheet_files.h"

#include <expat.h>
#include <freexl.h>
#include <minizip/unzip.h>
#include <xlsxwriter.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <sstream>
#include <tuple>

#include "controls/vb_date.h"
#include "suite/output_file.h"

namespace brenlow::exchange {
namespace {

std::string lower(std::string s) {
    for (auto& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

void put(std::vector<std::pair<int, SheetRow>>& rows, int row, int col, SheetValue v) {
    // Cells come row by row in both formats: a new row goes to the end; a row seen
    // before (out of order) is looked up.
    SheetRow* cells = nullptr;
    if (rows.empty() || rows.back().first < row) {
        rows.emplace_back(row, SheetRow{});
        cells = &rows.back().second;
    } else {
        auto it = std::lower_bound(rows.begin(), rows.end(), row,
                                   [](const auto& r, int wanted) { return r.first < wanted; });
        if (it == rows.end() || it->first != row) it = rows.insert(it, {row, SheetRow{}});
        cells = &it->second;
    }
    if (static_cast<int>(cells->size()) <= col) cells->resize(col + 1);
    (*cells)[col] = std::move(v);
}

// ---- .xls through freexl ----

// A workbook this program wrote and nobody saved since is read by its own reader:
// freexl takes many seconds over a sheet of 50,000 rows.
std::optional<std::vector<SheetCells>> read_own_xls(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    const auto book = xls::read(bytes.str());
    if (!book || !book->written_here) return std::nullopt;
    std::vector<SheetCells> sheets;
    for (const auto& s : book->sheets) {
        SheetCells sheet;
        sheet.name = s.name;
        sheet.rows.reserve(s.rows.size());
        for (const auto& r : s.rows) {
            SheetRow cells;
            for (const auto& c : r.cells) {
                if (c.kind == xls::Cell::Kind::Blank) continue;
                if (cells.size() <= c.col) cells.resize(c.col + 1u);
                cells[c.col] =
                    c.kind == xls::Cell::Kind::Number ? SheetValue::of(c.number) : SheetValue::of(c.text);
            }
            if (!cells.empty()) sheet.rows.emplace_back(r.index + 1, std::move(cells));
        }
        sheets.push_back(std::move(sheet));
    }
    return sheets;
}

std::optional<std::vector<SheetCells>> read_xls(const std::string& path, std::string& error) {
    if (auto own = read_own_xls(path)) return own;
    const void* handle = nullptr;
    if (freexl_open(path.c_str(), &handle) != FREEXL_OK) {
        if (handle) freexl_close(handle);
        error = "it is not an Excel 97-2003 workbook";
        return std::nullopt;
    }
    std::unique_ptr<const void, void (*)(const void*)> guard(handle, [](const void* h) { freexl_close(h); });
    unsigned int count = 0;
    freexl_get_info(handle, FREEXL_BIFF_SHEET_COUNT, &count);
    std::vector<SheetCells> sheets;
    for (unsigned short s = 0; s < count; ++s) {
        SheetCells sheet;
        const char* name = nullptr;
        freexl_get_worksheet_name(handle, s, &name);
        sheet.name = name ? name : "";
        unsigned int rows = 0;
        unsigned short cols = 0;
        if (freexl_select_active_worksheet(handle, s) != FREEXL_OK ||
            freexl_worksheet_dimensions(handle, &rows, &cols) != FREEXL_OK) {
            error = "the sheet \"" + sheet.name + "\" cannot be read";
            return std::nullopt;
        }
        for (unsigned int r = 0; r < rows; ++r) {
            for (unsigned short c = 0; c < cols; ++c) {
                FreeXL_CellValue v;
                if (freexl_get_cell_value(handle, r, c, &v) != FREEXL_OK) continue;
                SheetValue out;
                switch (v.type) {
                    case FREEXL_CELL_INT:
                        out = SheetValue::of(static_cast<double>(v.value.int_value));
                        break;
                    case FREEXL_CELL_DOUBLE:
                        out = SheetValue::of(v.value.double_value);
                        break;
                    case FREEXL_CELL_TEXT:
                    case FREEXL_CELL_SST_TEXT:
                        out = SheetValue::of(std::string(v.value.text_value ? v.value.text_value : ""));
                        break;
                    case FREEXL_CELL_DATE:
                    case FREEXL_CELL_DATETIME: {
                        // "yyyy-mm-dd[ hh:mm:ss]"
                        const std::string t = v.value.text_value ? v.value.text_value : "";
                        int y = 0, m = 0, d = 0;
                        if (std::sscanf(t.c_str(), "%d-%d-%d", &y, &m, &d) == 3 && Date::valid(y, m, d))
                            out = {SheetValue::Kind::Date,
                                   static_cast<double>(Date{y, m, d}.serial() + 25569),
                                   {}};
                        else
                            out = SheetValue::of(t);
                        break;
                    }
                    case FREEXL_CELL_TIME:
                        out = SheetValue::of(std::string(v.value.text_value ? v.value.text_value : ""));
                        break;
                    default:
                        continue;
                }
                if (out.kind != SheetValue::Kind::Empty)
                    put(sheet.rows, static_cast<int>(r) + 1, c, std::move(out));
            }
        }
        sheets.push_back(std::move(sheet));
    }
    return sheets;
}

// ---- .xlsx through minizip and expat ----

std::optional<std::string> zip_part(unzFile zip, const std::string& name) {
    if (unzLocateFile(zip, name.c_str(), 2) != UNZ_OK || unzOpenCurrentFile(zip) != UNZ_OK)
        return std::nullopt;
    std::string out;
    char buf[65536];
    for (int n; (n = unzReadCurrentFile(zip, buf, sizeof buf)) > 0;)
        out.append(buf, static_cast<std::size_t>(n));
    unzCloseCurrentFile(zip);
    return out;
}

// An XML part read element by element; names lose their namespace prefix. A sheet of
// 100,000 rows has millions of elements: names and attributes stay views.
class XmlReader {
public:
    virtual ~XmlReader() = default;
    bool parse(const std::string& xml) {
        XML_Parser p = XML_ParserCreate("UTF-8");
        XML_SetUserData(p, this);
        XML_SetElementHandler(
            p,
            [](void* self, const XML_Char* name, const XML_Char** attrs) {
                static_cast<XmlReader*>(self)->start(local(name), attrs);
            },
            [](void* self, const XML_Char* name) { static_cast<XmlReader*>(self)->end(local(name)); });
        XML_SetCharacterDataHandler(p, [](void* self, const XML_Char* s, int len) {
            static_cast<XmlReader*>(self)->text(std::string_view(s, static_cast<std::size_t>(len)));
        });
        const bool ok = XML_Parse(p, xml.data(), static_cast<int>(xml.size()), 1) == XML_STATUS_OK;
        XML_ParserFree(p);
        return ok;
    }

protected:
    virtual void start(std::string_view name, const char** attrs) = 0;
    virtual void end(std::string_view name) = 0;
    virtual void text(std::string_view) {}

    // The attribute of that local name, or nullptr.
    static const char* attr(const char** attrs, std::string_view name) {
        for (int i = 0; attrs[i]; i += 2)
            if (local(attrs[i]) == name) return attrs[i + 1];
        return nullptr;
    }

private:
    static std::string_view local(const char* name) {
        const char* colon = std::strrchr(name, ':');
        return colon ? colon + 1 : name;
    }
};

// xl/workbook.xml: sheet names and their relationship ids.
struct WorkbookPart : XmlReader {
    std::vector<std::pair<std::string, std::string>> sheets;
    void start(std::string_view name, const char** a) override {
        const char *n = attr(a, "name"), *id = attr(a, "id");
        if (name == "sheet" && n && id) sheets.emplace_back(n, id);
    }
    void end(std::string_view) override {}
};

struct RelsPart : XmlReader {
    std::map<std::string, std::string> targets;
    void start(std::string_view name, const char** a) override {
        const char *id = attr(a, "Id"), *target = attr(a, "Target");
        if (name == "Relationship" && id && target) targets[id] = target;
    }
    void end(std::string_view) override {}
};

// xl/sharedStrings.xml: each <si>'s text runs joined (phonetic runs left out).
struct StringsPart : XmlReader {
    std::vector<std::string> strings;
    bool in_t = false, in_phonetic = false;
    void start(std::string_view name, const char**) override {
        if (name == "si") strings.emplace_back();
        if (name == "rPh") in_phonetic = true;
        if (name == "t") in_t = !in_phonetic;
    }
    void end(std::string_view name) override {
        if (name == "t") in_t = false;
        if (name == "rPh") in_phonetic = false;
    }
    void text(std::string_view s) override {
        if (in_t && !strings.empty()) strings.back().append(s);
    }
};

// "AB12" -> column 27 (from 0), row 12.
bool cell_ref(std::string_view ref, int& col, int& row) {
    col = 0;
    std::size_t i = 0;
    for (; i < ref.size() && std::isalpha(static_cast<unsigned char>(ref[i])); ++i)
        col = col * 26 + (std::toupper(static_cast<unsigned char>(ref[i])) - 'A' + 1);
    if (i == 0 || i == ref.size()) return false;
    row = 0;
    for (; i < ref.size() && std::isdigit(static_cast<unsigned char>(ref[i])); ++i)
        row = row * 10 + (ref[i] - '0');
    --col;
    return row > 0;
}

struct SheetPart : XmlReader {
    const std::vector<std::string>& strings;
    SheetCells& sheet;
    int row = 0, col = -1, next_col = 0;
    std::string type, value;
    bool in_v = false, in_t = false;
    SheetPart(const std::vector<std::string>& s, SheetCells& out) : strings(s), sheet(out) {}

    void start(std::string_view name, const char** a) override {
        if (name == "row") {
            const char* r = attr(a, "r");
            row = r ? std::atoi(r) : row + 1;
            next_col = 0;
        } else if (name == "c") {
            int r = row;
            col = next_col;
            if (const char* ref = attr(a, "r")) cell_ref(ref, col, r);
            row = r;
            next_col = col + 1;
            const char* t = attr(a, "t");
            type = t ? t : "n";
            value.clear();
        } else if (name == "v") {
            in_v = true;
        } else if (name == "t" && type == "inlineStr") {
            in_t = true;
        }
    }
    void end(std::string_view name) override {
        if (name == "v") in_v = false;
        if (name == "t") in_t = false;
        if (name != "c" || col < 0) return;
        SheetValue v;
        if (type == "s") {
            const auto k = static_cast<std::size_t>(std::atol(value.c_str()));
            if (k < strings.size()) v = SheetValue::of(strings[k]);
        } else if (type == "str" || type == "inlineStr") {
            v = SheetValue::of(value);
        } else if (type == "n" && !value.empty()) {
            v = SheetValue::of(std::strtod(value.c_str(), nullptr));
        } else if (type == "d") {
            int y = 0, m = 0, d = 0;
            if (std::sscanf(value.c_str(), "%d-%d-%d", &y, &m, &d) == 3 && Date::valid(y, m, d))
                v = {SheetValue::Kind::Date, static_cast<double>(Date{y, m, d}.serial() + 25569), {}};
        } else if (type == "b") {
            v = SheetValue::of(value == "1" ? "TRUE" : "FALSE");
        }
        if (v.kind != SheetValue::Kind::Empty) put(sheet.rows, row, col, std::move(v));
        col = -1;
    }
    void text(std::string_view s) override {
        if (in_v || in_t) value.append(s);
    }
};

std::optional<std::vector<SheetCells>> read_xlsx(const std::string& path, std::string& error) {
    unzFile zip = unzOpen64(path.c_str());
    if (!zip) {
        error = "it is not an Excel workbook (.xlsx)";
        return std::nullopt;
    }
    std::unique_ptr<void, int (*)(unzFile)> guard(zip, unzClose);
    const auto book_xml = zip_part(zip, "xl/workbook.xml");
    const auto rels_xml = zip_part(zip, "xl/_rels/workbook.xml.rels");
    WorkbookPart book;
    RelsPart rels;
    if (!book_xml || !rels_xml || !book.parse(*book_xml) || !rels.parse(*rels_xml)) {
        error = "it is not an Excel workbook (.xlsx)";
        return std::nullopt;
    }
    StringsPart strings;
    if (const auto s = zip_part(zip, "xl/sharedStrings.xml"); s && !strings.parse(*s)) {
        error = "its shared strings cannot be read";
        return std::nullopt;
    }
    std::vector<SheetCells> sheets;
    for (const auto& [name, id] : book.sheets) {
        SheetCells sheet;
        sheet.name = name;
        std::string target = rels.targets.count(id) ? rels.targets.at(id) : "";
        target = target.rfind('/', 0) == 0 ? target.substr(1) : "xl/" + target;
        const auto xml = zip_part(zip, target);
        SheetPart part(strings.strings, sheet);
        if (!xml || !part.parse(*xml)) {
            error = "the sheet \"" + name + "\" cannot be read";
            return std::nullopt;
        }
        std::sort(sheet.rows.begin(), sheet.rows.end(),
                  [](const auto& a, const auto& b) { return a.first < b.first; });
        sheets.push_back(std::move(sheet));
    }
    return sheets;
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
    if (magic[0] == 'P' && magic[1] == 'K') return read_xlsx(path, error);
    return read_xls(path, error);
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
