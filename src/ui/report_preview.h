#pragma once
// The desktop face of the report object: a print preview of a prepared report,
// from which the person prints it or saves it as PDF.

#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "suite/report.h"

class QPagedPaintDevice;
class QPainter;

namespace brenlow::ui {

// Paints the report's pages on a printer or PDF device, the heading block repeated
// on every page. Returns the number of pages.
int paint_report(const Ostikreport::ReportDocument& doc, QPagedPaintDevice& device, QPainter& painter);

// Writes a report as a spreadsheet at the path, by its extension (the print's target
// "EXCEL"); the host hands it in. Throws when the file cannot be written.
using WorkbookWriter = std::function<void(const Ostikreport::ReportDocument&, const std::string& path)>;

// A further file the preview's Export menu writes for the report it shows (the return's
// documents from the income-tax chart): its caption, the save box's filter, or for a
// folder (the CSVs) an empty filter, and the writer. The writer returns what refused
// the file in the program's own words (nothing written), or an empty text when it
// wrote it; it throws as the workbook writer does.
struct PreviewExport {
    std::string caption;
    std::string filter;
    std::function<std::string(const std::string& path)> write;
};
// The entries of the Export menu for a report; none for most reports.
using PreviewExports = std::function<std::vector<PreviewExport>(const Ostikreport::ReportDocument&)>;

// A modal print preview of the report; with a writer its tool bar also exports the
// report to Excel, and with exports for the report it has an Export menu.
void show_report_preview(const Ostikreport::ReportDocument& doc, QWidget* parent,
                         const WorkbookWriter& workbook = {}, const PreviewExports& exports = {});

// Makes the report object show its reports in the print preview.
void preview_reports_on_desktop(Ostikreport::ClsMain& report, QWidget* parent, WorkbookWriter workbook = {},
                                PreviewExports exports = {});

}  // namespace brenlow::ui
