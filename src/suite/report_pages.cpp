#include "suite/report_pages.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cctype>
#include <memory>

namespace brenlow::Ostikreport {

std::string report_face(std::string_view wanted) {
    if (wanted.empty()) return kFallbackFace;
    static const bool ready = FcInit() == FcTrue;
    if (!ready) return kFallbackFace;
    const std::string name(wanted);
    std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)> pattern(
        FcNameParse(reinterpret_cast<const FcChar8*>(name.c_str())), FcPatternDestroy);
    if (!pattern) return kFallbackFace;
    FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    FcResult result = FcResultNoMatch;
    std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)> match(
        FcFontMatch(nullptr, pattern.get(), &result), FcPatternDestroy);
    FcChar8* family = nullptr;
    if (!match || FcPatternGetString(match.get(), FC_FAMILY, 0, &family) != FcResultMatch || !family)
        return kFallbackFace;
    // Fontconfig always answers with some face; only the face itself counts as installed.
    const std::string found(reinterpret_cast<const char*>(family));
    const auto lower = [](std::string s) {
        for (auto& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        return s;
    };
    return lower(found) == lower(name) ? name : std::string(kFallbackFace);
}

namespace {

constexpr double kMargin = 30;  // points on every side
constexpr double kGap = 0.9;    // between columns, in ems
constexpr double kLead = 1.3;   // line spacing, in ems

// One document's table measured at one point: column widths and where the bands run.
struct Measured {
    std::vector<double> widths;
    std::size_t heading_lines = 1;
    bool any_band = false;
    double total = 0;
};

Measured measure(const ReportDocument& doc, const TextWidth& width) {
    Measured m;
    const std::size_t n = doc.columns.size();
    const double digit = width("0", false);
    m.widths.assign(n, 0);
    for (std::size_t c = 0; c < n; ++c) {
        const auto& col = doc.columns[c];
        double w = std::max(1, col.width) * digit;
        const auto lines = split_lines(col.heading);
        m.heading_lines = std::max(m.heading_lines, lines.size());
        for (const auto& l : lines) w = std::max(w, width(l, false));
        for (std::size_t r = 0; r < doc.rows.size(); ++r) {
            const bool bold = r < doc.bold_rows.size() && doc.bold_rows[r];
            if (c < doc.rows[r].size()) w = std::max(w, width(doc.rows[r][c], bold || col.bold));
        }
        m.widths[c] = w;
        m.any_band = m.any_band || !col.band.empty();
    }
    // A band wider than the columns under it widens the last of them.
    for (std::size_t c = 0; c < n;) {
        std::size_t e = c + 1;
        double span = m.widths[c];
        while (e < n && !doc.columns[c].band.empty() && doc.columns[e].band == doc.columns[c].band)
            span += kGap + m.widths[e++];
        const double band = doc.columns[c].band.empty() ? 0 : width(doc.columns[c].band, false);
        if (band > span) m.widths[e - 1] += band - span;
        c = e;
    }
    for (double w : m.widths) m.total += w;
    if (n > 1) m.total += kGap * static_cast<double>(n - 1);
    return m;
}

class Placer {
public:
    Placer(const ReportDocument& doc, const TextWidth& width, std::vector<PlacedPage>& pages)
        : doc_(doc), width_(width), pages_(pages), m_(measure(doc, width)) {
        page_w_ = doc.landscape ? 842 : 595;
        page_h_ = doc.landscape ? 595 : 842;
        const double content = page_w_ - 2 * kMargin;
        fs_ = doc.font_size > 0 ? doc.font_size : 9;
        if (m_.total * fs_ > content) fs_ = std::max(4.0, content / m_.total);
        lead_ = fs_ * kLead;
        x0_ = kMargin + std::max(0.0, (content - m_.total * fs_) / 2);
        double x = x0_;
        for (double w : m_.widths) {
            col_x_.push_back(x);
            x += (w + kGap) * fs_;
        }
        table_end_ = x0_ + m_.total * fs_;
    }

    void place() {
        new_page();
        for (std::size_t r = 0; r < doc_.rows.size(); ++r) {
            if (top_ + lead_ > bottom()) new_page();
            const bool bold = r < doc_.bold_rows.size() && doc_.bold_rows[r];
            const auto& row = doc_.rows[r];
            for (std::size_t c = 0; c < doc_.columns.size() && c < row.size(); ++c) {
                const auto& col = doc_.columns[c];
                cell(c, row[c], bold || col.bold, col.numeric);
            }
            top_ += lead_;
        }
        if (top_ + rule_height() + lead_ * static_cast<double>(doc_.notes.size()) > bottom() &&
            !doc_.rows.empty())
            new_page();
        rule(x0_, table_end_);
        for (const auto& note : doc_.notes) {
            if (top_ + lead_ > bottom()) new_page();
            text(x0_, note, false);
            top_ += lead_;
        }
    }

private:
    double bottom() const { return page_h_ - kMargin - lead_; }
    double rule_height() const { return lead_ * 0.6; }
    double baseline() const { return top_ + fs_; }
    PlacedPage& page() { return pages_.back(); }

    void text(double x, const std::string& s, bool bold) {
        if (!s.empty()) page().texts.push_back({x, baseline(), s, bold});
    }
    void centred(double from, double to, const std::string& s, bool bold) {
        text(from + (to - from - width_(s, bold) * fs_) / 2, s, bold);
    }
    void cell(std::size_t c, const std::string& s, bool bold, bool right) {
        const double x = right ? col_x_[c] + (m_.widths[c] - width_(s, bold)) * fs_ : col_x_[c];
        text(x, s, bold);
    }
    void rule(double from, double to) {
        page().rules.push_back({from, to, top_ + rule_height() / 2});
        top_ += rule_height();
    }

    // A new page with the heading block.
    void new_page() {
        pages_.push_back({page_w_, page_h_, fs_, {}, {}});
        top_ = kMargin;
        for (std::size_t t = 0; t < doc_.titles.size(); ++t) {
            centred(kMargin, page_w_ - kMargin, doc_.titles[t], t == 0);
            top_ += lead_;
        }
        rule(x0_, table_end_);
        const std::size_t n = doc_.columns.size();
        if (m_.any_band) {
            for (std::size_t c = 0; c < n;) {
                std::size_t e = c + 1;
                while (e < n && !doc_.columns[c].band.empty() && doc_.columns[e].band == doc_.columns[c].band)
                    ++e;
                const double to = col_x_[e - 1] + m_.widths[e - 1] * fs_;
                if (!doc_.columns[c].band.empty()) {
                    centred(col_x_[c], to, doc_.columns[c].band, false);
                    // A short rule under the band shows which columns it spans.
                    page().rules.push_back({col_x_[c], to, top_ + lead_ * 1.05});
                }
                c = e;
            }
            top_ += lead_ * 1.15;
        }
        for (std::size_t l = 0; l < m_.heading_lines; ++l) {
            for (std::size_t c = 0; c < n; ++c) {
                const auto parts = split_lines(doc_.columns[c].heading);
                if (l < parts.size()) centred(col_x_[c], col_x_[c] + m_.widths[c] * fs_, parts[l], false);
            }
            top_ += lead_;
        }
        rule(x0_, table_end_);
    }

    const ReportDocument& doc_;
    const TextWidth& width_;
    std::vector<PlacedPage>& pages_;
    Measured m_;
    double page_w_ = 0, page_h_ = 0, fs_ = 9, lead_ = 0, x0_ = 0, table_end_ = 0, top_ = 0;
    std::vector<double> col_x_;
};

void place_all(const ReportDocument& doc, const TextWidth& width, std::vector<PlacedPage>& pages) {
    Placer(doc, width, pages).place();
    for (const auto& next : doc.follows) place_all(next, width, pages);
}

}  // namespace

std::vector<PlacedPage> place_report(const ReportDocument& doc, const TextWidth& width) {
    std::vector<PlacedPage> pages;
    place_all(doc, width, pages);
    for (std::size_t p = 0; p < pages.size(); ++p) {
        auto& page = pages[p];
        const std::string no = "Page " + std::to_string(p + 1) + " of " + std::to_string(pages.size());
        page.texts.push_back(
            {page.width - kMargin - width(no, false) * page.font_size, page.height - kMargin / 2, no, false});
    }
    return pages;
}

}  // namespace brenlow::Ostikreport
