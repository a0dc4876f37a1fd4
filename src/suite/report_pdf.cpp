#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "suite/output_file.h"
#include "suite/report.h"

namespace brenlow::Ostikreport {
namespace {

// PDF text in the fonts' WinAnsi encoding: Latin-1 passes, the rupee sign becomes
// "Rs.", anything else a question mark.
std::string to_win_ansi(std::string_view utf8) {
    std::string out;
    for (std::size_t i = 0; i < utf8.size();) {
        const auto c = static_cast<unsigned char>(utf8[i]);
        unsigned cp = 0;
        int len = 1;
        if (c < 0x80) {
            cp = c;
        } else if ((c & 0xE0) == 0xC0 && i + 1 < utf8.size()) {
            cp = ((c & 0x1Fu) << 6) | (static_cast<unsigned char>(utf8[i + 1]) & 0x3Fu);
            len = 2;
        } else if ((c & 0xF0) == 0xE0 && i + 2 < utf8.size()) {
            cp = ((c & 0x0Fu) << 12) | ((static_cast<unsigned char>(utf8[i + 1]) & 0x3Fu) << 6) |
                 (static_cast<unsigned char>(utf8[i + 2]) & 0x3Fu);
            len = 3;
        } else {
            cp = '?';
            len = (c & 0xF8) == 0xF0 ? 4 : 1;
        }
        i += static_cast<std::size_t>(len);
        if (cp == 0x20B9) {
            out += "Rs.";
        } else if (cp == 0xA6) {
            out += static_cast<char>(0xA6);
        } else if (cp < 0x100) {
            out += static_cast<char>(cp);
        } else {
            out += '?';
        }
    }
    return out;
}

std::string pdf_string(std::string_view text) {
    std::string out = "(";
    for (char ch : to_win_ansi(text)) {
        if (ch == '(' || ch == ')' || ch == '\\') out += '\\';
        out += ch;
    }
    out += ')';
    return out;
}

std::string num(double v) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.2f", v);  // page geometry, not money
    return buf;
}

struct PageLine {
    std::string text;
    bool bold;
};

struct Page {
    std::vector<PageLine> lines;
    double width = 0, height = 0, font_size = 0, lead = 0;
};

// A document's pages: the heading block, then as many body lines as fit; the
// footer follows the last body line.
void paginate(const ReportDocument& doc, std::vector<Page>& pages) {
    const ReportLayout lay = lay_out(doc);
    const double page_w = doc.landscape ? 842 : 595, page_h = doc.landscape ? 595 : 842;
    const double margin = 30;
    // Courier is 0.6 em wide per character: shrink the face until the widest line fits.
    const double width_chars = static_cast<double>(std::max<std::size_t>(lay.width, 20));
    const double fs = std::clamp((page_w - 2 * margin) / (width_chars * 0.6), 4.0,
                                 static_cast<double>(std::max(doc.font_size, 4)));
    const double lead = fs * 1.25;
    const int per_page = std::max(5, static_cast<int>((page_h - 2 * margin - lead) / lead));
    const int room = std::max(1, per_page - static_cast<int>(lay.header.size()));
    std::vector<PageLine> rest;
    for (const auto& b : lay.body) rest.push_back({b.text, b.bold});
    for (const auto& f : lay.footer) rest.push_back({f, false});
    std::size_t at = 0;
    do {
        Page page{{}, page_w, page_h, fs, lead};
        for (const auto& h : lay.header) page.lines.push_back({h, false});
        for (int k = 0; k < room && at < rest.size(); ++k) page.lines.push_back(rest[at++]);
        pages.push_back(std::move(page));
    } while (at < rest.size());
    for (const auto& next : doc.follows) paginate(next, pages);
}

}  // namespace

void write_pdf(const ReportDocument& doc, const std::string& path) {
    const double margin = 30;
    std::vector<Page> pages;
    paginate(doc, pages);
    std::vector<std::string> objects;  // object n is objects[n-1]
    objects.push_back("<< /Type /Catalog /Pages 2 0 R >>");
    objects.push_back("");  // pages, filled below
    objects.push_back("<< /Type /Font /Subtype /Type1 /BaseFont /Courier /Encoding /WinAnsiEncoding >>");
    objects.push_back("<< /Type /Font /Subtype /Type1 /BaseFont /Courier-Bold /Encoding /WinAnsiEncoding >>");
    std::string kids;
    for (std::size_t p = 0; p < pages.size(); ++p) {
        const double page_w = pages[p].width, page_h = pages[p].height, fs = pages[p].font_size,
                     lead = pages[p].lead;
        std::string content = "BT\n";
        double y = page_h - margin - fs;
        bool bold = false;
        content += "/F1 " + num(fs) + " Tf\n";
        for (const auto& line : pages[p].lines) {
            if (line.bold != bold) {
                bold = line.bold;
                content += std::string(bold ? "/F2 " : "/F1 ") + num(fs) + " Tf\n";
            }
            content += "1 0 0 1 " + num(margin) + " " + num(y) + " Tm " + pdf_string(line.text) + " Tj\n";
            y -= lead;
        }
        const std::string page_no = "Page " + std::to_string(p + 1) + " of " + std::to_string(pages.size());
        content += "/F1 " + num(fs) + " Tf 1 0 0 1 " +
                   num(page_w - margin - static_cast<double>(page_no.size()) * fs * 0.6) + " " +
                   num(margin / 2) + " Tm " + pdf_string(page_no) + " Tj\nET\n";
        const std::size_t content_obj = objects.size() + 2;
        objects.push_back("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 " + num(page_w) + " " + num(page_h) +
                          "] /Resources << /Font << /F1 3 0 R /F2 4 0 R >> >> /Contents " +
                          std::to_string(content_obj) + " 0 R >>");
        kids += std::to_string(objects.size()) + " 0 R ";
        objects.push_back("<< /Length " + std::to_string(content.size()) + " >>\nstream\n" + content +
                          "endstream");
    }
    objects[1] = "<< /Type /Pages /Kids [" + kids + "] /Count " + std::to_string(pages.size()) + " >>";

    std::string pdf = "%PDF-1.4\n%\xE2\xE3\xCF\xD3\n";
    std::vector<std::size_t> offsets;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        offsets.push_back(pdf.size());
        pdf += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const std::size_t xref = pdf.size();
    pdf += "xref\n0 " + std::to_string(objects.size() + 1) + "\n0000000000 65535 f \n";
    for (auto off : offsets) {
        char buf[24];
        std::snprintf(buf, sizeof buf, "%010zu 00000 n \n", off);
        pdf += buf;
    }
    pdf += "trailer\n<< /Size " + std::to_string(objects.size() + 1) + " /Root 1 0 R >>\nstartxref\n" +
           std::to_string(xref) + "\n%%EOF\n";

    suite::write_file_whole(path, pdf);
}

}  // namespace brenlow::Ostikreport
