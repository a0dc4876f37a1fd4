#pragma once
// The desktop face of the report object: a print preview of a prepared report,
// from which the person prints it or saves it as PDF.

#include <QWidget>
#include <functional>
#include <string>

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

// A modal print preview of the report; with a writer its tool bar also exports the
// report to Excel.
void show_report_preview(const Ostikreport::ReportDocument& doc, QWidget* parent,
                         const WorkbookWriter& workbook = {});

// Makes the report object show its reports in the print preview.
void preview_reports_on_desktop(Ostikreport::ClsMain& report, QWidget* parent, WorkbookWriter workbook = {});

}  // namespace brenlow::ui
