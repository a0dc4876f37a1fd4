#pragma once
// The desktop face of the report object: a print preview of a prepared report,
// from which the person prints it or saves it as PDF.

#include <QWidget>

#include "suite/report.h"

class QPagedPaintDevice;
class QPainter;

namespace brenlow::ui {

// Paints the report's pages on a printer or PDF device, the heading block repeated
// on every page. Returns the number of pages.
int paint_report(const Ostikreport::ReportDocument& doc, QPagedPaintDevice& device, QPainter& painter);

// A modal print preview of the report.
void show_report_preview(const Ostikreport::ReportDocument& doc, QWidget* parent);

// Makes the report object show its reports in the print preview.
void preview_reports_on_desktop(Ostikreport::ClsMain& report, QWidget* parent);

}  // namespace brenlow::ui
