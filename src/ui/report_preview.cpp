#include "ui/report_preview.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QPointer>
#include <QPrintPreviewDialog>
#include <QPrinter>

namespace brenlow::ui {
namespace {

// The report is laid out on a grid of characters, so it is drawn in a fixed-pitch
// face, scaled until the widest line fits the page.
QFont report_font(const Ostikreport::ReportDocument& doc, std::size_t width_chars, double page_width_px,
                  QPaintDevice* device) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    double size = doc.font_size > 0 ? doc.font_size : 9;
    for (; size > 4; size -= 0.5) {
        font.setPointSizeF(size);
        const QFontMetricsF fm(font, device);
        if (fm.horizontalAdvance(QString(static_cast<int>(std::max<std::size_t>(width_chars, 1)), 'M')) <=
            page_width_px)
            break;
    }
    font.setPointSizeF(size);
    return font;
}

}  // namespace

int paint_report(const Ostikreport::ReportDocument& doc, QPagedPaintDevice& device, QPainter& painter) {
    const auto lay = Ostikreport::lay_out(doc);
    const QRectF page = QRectF(0, 0, device.width(), device.height());
    QFont font = report_font(doc, lay.width, page.width(), &device);
    QFont bold = font;
    bold.setBold(true);
    const QFontMetricsF fm(font, &device);
    const double lead = fm.lineSpacing();
    const int per_page = std::max(5, static_cast<int>((page.height() - lead) / lead));
    const int room = std::max(1, per_page - static_cast<int>(lay.header.size()));

    std::vector<Ostikreport::ReportLine> rest(lay.body.begin(), lay.body.end());
    for (const auto& f : lay.footer) rest.push_back({f, false});
    const int pages = std::max(1, static_cast<int>((rest.size() + static_cast<std::size_t>(room) - 1) /
                                                   static_cast<std::size_t>(room)));
    std::size_t at = 0;
    for (int p = 0; p < pages; ++p) {
        if (p > 0) device.newPage();
        double y = fm.ascent();
        painter.setFont(font);
        for (const auto& h : lay.header) {
            painter.drawText(QPointF(0, y), QString::fromStdString(h));
            y += lead;
        }
        for (int k = 0; k < room && at < rest.size(); ++k, ++at) {
            painter.setFont(rest[at].bold ? bold : font);
            painter.drawText(QPointF(0, y), QString::fromStdString(rest[at].text));
            y += lead;
        }
        painter.setFont(font);
        const QString page_no = QString("Page %1 of %2").arg(p + 1).arg(pages);
        painter.drawText(QRectF(0, page.height() - lead, page.width(), lead), Qt::AlignRight, page_no);
    }
    return pages;
}

void show_report_preview(const Ostikreport::ReportDocument& doc, QWidget* parent) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(doc.landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    printer.setPageSize(QPageSize(QPageSize::A4));
    QPrintPreviewDialog dialog(&printer, parent);
    dialog.setWindowTitle(doc.titles.empty() ? QString("Print Preview")
                                             : QString::fromStdString(doc.titles.front()));
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, [&doc](QPrinter* p) {
        QPainter painter(p);
        paint_report(doc, *p, painter);
    });
    dialog.resize(1100, 760);
    dialog.exec();
}

void preview_reports_on_desktop(Ostikreport::ClsMain& report, QWidget* parent) {
    QPointer<QWidget> owner(parent);
    report.set_viewer([owner](const Ostikreport::ReportDocument& doc) { show_report_preview(doc, owner); });
}

}  // namespace brenlow::ui
