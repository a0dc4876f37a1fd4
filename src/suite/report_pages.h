#pragma once
// A report placed on printed pages in a proportional face: every title, band,
// heading and cell at its own position in points, the rules as lines. The PDF
// writer and the desktop's print preview both draw what this places, so the two
// agree line for line.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "suite/report.h"

namespace brenlow::Ostikreport {

// The face reports print in: the document's face ("Verdana") where it is installed,
// else DejaVu Sans, the free face closest to it in width and build.
std::string report_face(std::string_view wanted);
constexpr const char* kFallbackFace = "DejaVu Sans";

struct PlacedText {
    double x = 0;  // left end of the text, in points from the page's left edge
    double y = 0;  // baseline, in points from the page's top edge
    std::string text;
    bool bold = false;
};

struct PlacedRule {
    double x1 = 0, x2 = 0, y = 0;
};

struct PlacedPage {
    double width = 0, height = 0;  // points: A4, landscape or portrait
    double font_size = 0;          // points; the face shrinks (to 4 at least) until the table fits
    std::vector<PlacedText> texts;
    std::vector<PlacedRule> rules;
};

// How wide a text is in the report's face at one point ("bold" in the bold face).
using TextWidth = std::function<double(std::string_view text, bool bold)>;

// The pages of a document and of those that follow it, each from a new page: the
// heading block (titles, rule, bands, column headings, rule) repeated on every
// page, the rows, the closing rule and the notes after the last row, and
// "Page n of m" at the foot of each.
std::vector<PlacedPage> place_report(const ReportDocument& doc, const TextWidth& width);

}  // namespace brenlow::Ostikreport
