#include "suite/report.h"

#include <algorithm>
#include <sstream>

namespace brenlow::Ostikreport {
namespace {

// Width of a UTF-8 text in characters (continuation bytes do not count).
std::size_t text_width(std::string_view s) {
    return static_cast<std::size_t>(std::count_if(
        s.begin(), s.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string pad(std::string_view s, std::size_t width, bool right) {
    const std::size_t w = text_width(s);
    if (w >= width) return std::string(s);
    const std::string fill(width - w, ' ');
    return right ? fill + std::string(s) : std::string(s) + fill;
}

std::string centre(std::string_view s, std::size_t width) {
    const std::size_t w = text_width(s);
    if (w >= width) return std::string(s);
    const std::size_t left = (width - w) / 2;
    return std::string(left, ' ') + std::string(s) + std::string(width - w - left, ' ');
}

}  // namespace

std::vector<std::string> split_lines(const std::string& text) {
    std::vector<std::string> out;
    std::stringstream ss(text);
    std::string line;
    while (std::getline(ss, line)) out.push_back(line);
    if (out.empty()) out.emplace_back();
    return out;
}

ReportLayout lay_out(const ReportDocument& doc) {
    ReportLayout lay;
    const std::size_t n = doc.columns.size();
    std::vector<std::size_t> widths(n);
    std::size_t heading_lines = 1;
    for (std::size_t c = 0; c < n; ++c) {
        widths[c] = static_cast<std::size_t>(std::max(1, doc.columns[c].width));
        for (const auto& l : split_lines(doc.columns[c].heading))
            widths[c] = std::max(widths[c], text_width(l));
        heading_lines = std::max(heading_lines, split_lines(doc.columns[c].heading).size());
        for (const auto& row : doc.rows)
            if (c < row.size()) widths[c] = std::max(widths[c], text_width(row[c]));
    }
    std::size_t total = 0;
    for (auto w : widths) total += w + 1;
    if (total) total -= 1;

    lay.width = total;
    for (const auto& t : doc.titles) lay.header.push_back(centre(t, total));
    const std::string rule(total, '-');
    lay.header.push_back(rule);

    // Band line: runs of columns with the same non-empty band share one centred caption.
    bool any_band =
        std::any_of(doc.columns.begin(), doc.columns.end(), [](auto& c) { return !c.band.empty(); });
    if (any_band) {
        std::string line;
        for (std::size_t c = 0; c < n;) {
            std::size_t e = c + 1, span = widths[c];
            while (e < n && !doc.columns[c].band.empty() && doc.columns[e].band == doc.columns[c].band)
                span += widths[e++] + 1;
            line += centre(doc.columns[c].band, span);
            if (e < n) line += ' ';
            c = e;
        }
        lay.header.push_back(line);
    }
    for (std::size_t l = 0; l < heading_lines; ++l) {
        std::string line;
        for (std::size_t c = 0; c < n; ++c) {
            const auto parts = split_lines(doc.columns[c].heading);
            line += centre(l < parts.size() ? parts[l] : "", widths[c]);
            if (c + 1 < n) line += ' ';
        }
        lay.header.push_back(line);
    }
    lay.header.push_back(rule);
    for (std::size_t r = 0; r < doc.rows.size(); ++r) {
        const auto& row = doc.rows[r];
        std::string line;
        for (std::size_t c = 0; c < n; ++c) {
            line += pad(c < row.size() ? row[c] : "", widths[c], doc.columns[c].numeric);
            if (c + 1 < n) line += ' ';
        }
        while (!line.empty() && line.back() == ' ') line.pop_back();
        lay.body.push_back({line, r < doc.bold_rows.size() && doc.bold_rows[r]});
    }
    lay.footer.push_back(rule);
    for (const auto& note : doc.notes) lay.footer.push_back(note);
    return lay;
}

std::string render_text(const ReportDocument& doc) {
    const auto lay = lay_out(doc);
    std::string out;
    for (const auto& l : lay.header) out += l + '\n';
    for (const auto& l : lay.body) out += l.text + '\n';
    for (const auto& l : lay.footer) out += l + '\n';
    return out;
}

}  // namespace brenlow::Ostikreport
