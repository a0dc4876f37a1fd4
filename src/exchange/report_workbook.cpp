#include "exchange/report_workbook.h"

#include <map>

#include "register/register_entry_math.h"

namespace brenlow::exchange {
namespace {

// A printed amount read back: "1,23,456.50", "(1,200)" and "-500" are numbers; a
// blank or "-" or text stays text. `decimals` tells the mask.
std::optional<double> amount_of(const std::string& printed, bool& decimals) {
    std::string t;
    bool negative = false;
    for (const char c : printed) {
        if (c == ',' || c == ' ') continue;
        if (c == '(' || c == ')') {
            negative = true;
            continue;
        }
        t += c;
    }
    if (t.empty() || t == "-") return std::nullopt;
    const auto v = reg::parse_number(t);
    if (!v) return std::nullopt;
    decimals = t.find('.') != std::string::npos;
    return negative ? -*v : *v;
}

std::string heading_text(const std::string& h) {
    std::string out = h;
    for (auto& c : out)
        if (c == '\n') c = ' ';
    return out;
}

class Formats {
public:
    explicit Formats(xls::StyleSheet& styles) : styles_(styles) {}
    std::uint16_t get(const std::string& mask, bool bold, bool heading = false) {
        const auto key = std::make_tuple(mask, bold, heading);
        if (const auto it = ids_.find(key); it != ids_.end()) return it->second;
        xls::CellFormat f;
        f.number_format = mask;
        f.bold = bold || heading;
        f.wrap = f.centred = f.bordered = heading;
        return ids_[key] = styles_.add(f);
    }

private:
    xls::StyleSheet& styles_;
    std::map<std::tuple<std::string, bool, bool>, std::uint16_t> ids_;
};

xls::Sheet sheet_of(const Ostikreport::ReportDocument& doc, const std::string& name, Formats& formats) {
    xls::Sheet s;
    s.name = name.substr(0, 31);
    std::uint16_t row = 0;
    for (const auto& t : doc.titles)
        s.rows.push_back({row++, {{0, formats.get("General", true), xls::Cell::Kind::Text, 0, t}}});
    bool banded = false;
    for (const auto& c : doc.columns) banded = banded || !c.band.empty();
    const auto head = formats.get("General", true, true);
    if (banded) {
        xls::Row bands{row, {}};
        for (std::uint16_t i = 0; i < doc.columns.size(); ++i) {
            const std::string& band = doc.columns[i].band;
            const bool starts = !band.empty() && (i == 0 || doc.columns[i - 1].band != band);
            bands.cells.push_back({i, head, starts ? xls::Cell::Kind::Text : xls::Cell::Kind::Blank, 0,
                                   starts ? heading_text(band) : ""});
            if (starts) {
                std::uint16_t last = i;
                while (last + 1u < doc.columns.size() && doc.columns[last + 1].band == band) ++last;
                if (last > i) s.merges.push_back({row, row, i, last});
            }
        }
        s.rows.push_back(std::move(bands));
        ++row;
    }
    xls::Row headings{row++, {}};
    for (std::uint16_t i = 0; i < doc.columns.size(); ++i) {
        headings.cells.push_back({i, head, xls::Cell::Kind::Text, 0, heading_text(doc.columns[i].heading)});
        s.widths[i] = static_cast<std::uint16_t>(std::max(doc.columns[i].width, 6) * 256 + 512);
    }
    s.rows.push_back(std::move(headings));
    for (std::size_t r = 0; r < doc.rows.size(); ++r) {
        const bool bold_row = r < doc.bold_rows.size() && doc.bold_rows[r];
        xls::Row out{row++, {}};
        for (std::uint16_t c = 0; c < doc.rows[r].size() && c < doc.columns.size(); ++c) {
            const std::string& text = doc.rows[r][c];
            const bool bold = bold_row || doc.columns[c].bold;
            bool decimals = false;
            const auto v = doc.columns[c].numeric ? amount_of(text, decimals) : std::nullopt;
            if (v)
                out.cells.push_back(
                    {c, formats.get(decimals ? "#,##0.00" : "#,##0", bold), xls::Cell::Kind::Number, *v, {}});
            else if (!text.empty())
                out.cells.push_back({c, formats.get("General", bold), xls::Cell::Kind::Text, 0, text});
        }
        s.rows.push_back(std::move(out));
    }
    for (const auto& n : doc.notes)
        s.rows.push_back({row++, {{0, formats.get("General", false), xls::Cell::Kind::Text, 0, n}}});
    return s;
}

}  // namespace

xls::Workbook report_workbook(const Ostikreport::ReportDocument& doc, const std::string& sheet) {
    xls::StyleSheet styles;
    Formats formats(styles);
    xls::Workbook book;
    book.sheets.push_back(sheet_of(doc, sheet, formats));
    for (std::size_t i = 0; i < doc.follows.size(); ++i) {
        const auto& f = doc.follows[i];
        std::string name = f.titles.empty() ? "Sheet " + std::to_string(i + 2) : f.titles.front();
        for (auto& c : name)
            if (std::string_view("[]:*?/\\").find(c) != std::string_view::npos) c = ' ';
        book.sheets.push_back(sheet_of(f, name, formats));
    }
    book.styles = styles.records();
    return book;
}

}  // namespace brenlow::exchange
