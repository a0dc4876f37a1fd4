#pragma once
// Ostikreport.ClsMain — the report object: screens hand it a prepared report
// (titles, banded column headings, formatted rows) and it shows or writes it.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "suite/output_file.h"

namespace brenlow::Ostikreport {

struct ReportColumn {
    std::string band;      // top heading spanning the columns that share it ("" for none)
    std::string heading;   // the column's own heading; "\n" separates its lines
    bool numeric = false;  // right-aligned
    bool bold = false;
    int width = 10;  // in characters
};

struct ReportDocument {
    std::vector<std::string> titles;  // centred lines above the table
    std::vector<ReportColumn> columns;
    std::vector<std::vector<std::string>> rows;  // cells already formatted
    std::vector<bool> bold_rows;                 // parallel to rows (may be shorter)
    std::vector<std::string> notes;              // lines below the table
    std::string font_name = "Verdana";
    int font_size = 9;
    bool landscape = true;
    // Documents printed after this one, each from a new page, in the same PDF file
    // (the block-wise summary after the income-tax chart). The text rendering leaves
    // them out: the command line prints them in their own place.
    std::vector<ReportDocument> follows;
};

class ClsMain {
public:
    virtual ~ClsMain() = default;
    // Prepares the report that showreport will show.
    virtual void WriteToReport(const ReportDocument& doc) = 0;
    // Starts an empty report work table of the given name and column count.
    virtual void createtable(std::string_view name, int columns) = 0;
    // Colours one row of the prepared report (colours as 0xRRGGBB).
    virtual void RowBackForeColorMain(int row, long back_color, long fore_color) = 0;
    // Adds a free text line below the table.
    virtual void PrintText(std::string_view text) = 0;
    // Shows the prepared report through the viewer the host set (a print preview in
    // the desktop, a file on the command line).
    virtual void showreport() = 0;

    virtual const ReportDocument& prepared() const = 0;
    using Viewer = std::function<void(const ReportDocument&)>;
    virtual void set_viewer(Viewer viewer) = 0;
};

// A report laid out on a grid of characters: the heading block (titles, rule,
// bands, column headings, rule) that every page repeats, the body lines, and the
// closing rule with the notes.
struct ReportLine {
    std::string text;
    bool bold = false;
};
struct ReportLayout {
    std::vector<std::string> header;
    std::vector<ReportLine> body;
    std::vector<std::string> footer;
    std::size_t width = 0;  // characters
};
ReportLayout lay_out(const ReportDocument& doc);

// The lines of a heading ("\n" between them); one empty line for an empty text.
std::vector<std::string> split_lines(const std::string& text);

// Plain-text rendering of a report: fixed-width columns with the banded headings.
std::string render_text(const ReportDocument& doc);

// The report as a PDF file, landscape or portrait A4, in the document's face where
// it is installed (else DejaVu Sans, see report_face), the heading block repeated
// on every page and the pages numbered. Throws std::runtime_error when the file
// cannot be written, suite::TargetRefused when it may not be (see output_file.h).
void write_pdf(const ReportDocument& doc, const std::string& path, suite::Existing existing);

}  // namespace brenlow::Ostikreport
