#include "ui/report_preview.h"

#include <QAction>
#include <QFileDialog>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QMessageBox>
#include <QPainter>
#include <QPointer>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QToolBar>

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

void show_report_preview(const Ostikreport::ReportDocument& doc, QWidget* parent,
                         const WorkbookWriter& workbook) {
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
    if (auto* tools = dialog.findChild<QToolBar*>(); tools && workbook) {
        tools->addSeparator();
        QAction* excel = tools->addAction("Export to Excel");
        excel->setObjectName("exportExcel");
        QObject::connect(excel, &QAction::triggered, &dialog, [&] {
            const QString path =
                QFileDialog::getSaveFileName(&dialog, "Export to Excel", QString(),
                                             "Excel 97-2003 Workbook (*.xls);;Excel Workbook (*.xlsx)");
            if (path.isEmpty()) return;
            try {
                workbook(doc, path.toStdString());
                QMessageBox::information(&dialog, dialog.windowTitle(),
                                         "Data Successfully Exported to File : " + path);
            } catch (const std::exception&) {
                QMessageBox::information(&dialog, dialog.windowTitle(),
                                         "Error ! Data Exported to File : " + path);
            }
        });
    }
    dialog.resize(1100, 760);
    dialog.exec();
}

void preview_reports_on_desktop(Ostikreport::ClsMain& report, QWidget* parent, WorkbookWriter workbook) {
    QPointer<QWidget> owner(parent);
    report.set_viewer([owner, workbook](const Ostikreport::ReportDocument& doc) {
        show_report_preview(doc, owner, workbook);
    });
}

}  // namespace brenlow::ui
