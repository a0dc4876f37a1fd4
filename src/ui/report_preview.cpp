#include "ui/report_preview.h"

#include <QAction>
#include <QFileDialog>
#include <QFontMetricsF>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QPen>
#include <QPointer>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QToolBar>
#include <QToolButton>

#include "suite/report_pages.h"

namespace brenlow::ui {

// Draws what the report's page placement gives, in points, on the device's pixels:
// the preview shows the same lines, in the same face, as the PDF file.
int paint_report(const Ostikreport::ReportDocument& doc, QPagedPaintDevice& device, QPainter& painter) {
    const QString face = QString::fromStdString(Ostikreport::report_face(doc.font_name));
    const double px = device.logicalDpiX() / 72.0;  // device pixels per point
    QFont regular(face), bold(face);
    bold.setBold(true);
    regular.setPointSizeF(100);
    bold.setPointSizeF(100);
    const QFontMetricsF regular_m(regular, &device), bold_m(bold, &device);
    const auto width = [&](std::string_view text, bool b) {
        const QString s = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
        return (b ? bold_m : regular_m).horizontalAdvance(s) / px / 100;
    };
    const auto pages = Ostikreport::place_report(doc, width);
    // The printer's page may be smaller than A4 less nothing: fit the placed page to it.
    const double scale = pages.empty() ? 1.0
                                       : std::min(device.width() / (pages[0].width * px),
                                                  device.height() / (pages[0].height * px));
    for (std::size_t p = 0; p < pages.size(); ++p) {
        const auto& page = pages[p];
        if (p > 0) device.newPage();
        painter.save();
        painter.scale(scale, scale);
        painter.setPen(QPen(Qt::black, 0.5 * px));
        for (const auto& r : page.rules)
            painter.drawLine(QPointF(r.x1 * px, r.y * px), QPointF(r.x2 * px, r.y * px));
        QFont f(face), fb(face);
        fb.setBold(true);
        f.setPointSizeF(page.font_size);
        fb.setPointSizeF(page.font_size);
        for (const auto& t : page.texts) {
            painter.setFont(t.bold ? fb : f);
            painter.drawText(QPointF(t.x * px, t.y * px), QString::fromStdString(t.text));
        }
        painter.restore();
    }
    return static_cast<int>(pages.size());
}

void show_report_preview(const Ostikreport::ReportDocument& doc, QWidget* parent,
                         const WorkbookWriter& workbook, const PreviewExports& exports) {
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
            } catch (const suite::TargetRefused& e) {
                // The database itself, a folder: said as it is.
                QMessageBox::information(&dialog, dialog.windowTitle(), QString::fromStdString(e.what()));
            } catch (const std::exception&) {
                QMessageBox::information(&dialog, dialog.windowTitle(),
                                         "Error ! Data Exported to File : " + path);
            }
        });
    }
    const auto entries = exports ? exports(doc) : std::vector<PreviewExport>{};
    if (auto* tools = dialog.findChild<QToolBar*>(); tools && !entries.empty()) {
        auto* button = new QToolButton(tools);
        button->setObjectName("exportMenu");
        button->setText("Export");
        button->setPopupMode(QToolButton::InstantPopup);
        auto* menu = new QMenu(button);
        for (std::size_t i = 0; i < entries.size(); ++i) {
            QAction* action = menu->addAction(QString::fromStdString(entries[i].caption));
            action->setObjectName(QString("export%1").arg(i));
            QObject::connect(action, &QAction::triggered, &dialog, [&dialog, &entries, i] {
                const auto& e = entries[i];
                const QString caption = QString::fromStdString(e.caption);
                const QString path = e.filter.empty()
                                         ? QFileDialog::getExistingDirectory(&dialog, caption)
                                         : QFileDialog::getSaveFileName(&dialog, caption, QString(),
                                                                        QString::fromStdString(e.filter));
                if (path.isEmpty()) return;
                try {
                    // The return's own checks refuse with each breaking figure.
                    const std::string refused = e.write(path.toStdString());
                    QMessageBox::information(&dialog, dialog.windowTitle(),
                                             refused.empty() ? "Data Successfully Exported to File : " + path
                                                             : QString::fromStdString(refused));
                } catch (const suite::TargetRefused& refused) {
                    QMessageBox::information(&dialog, dialog.windowTitle(),
                                             QString::fromStdString(refused.what()));
                } catch (const std::exception&) {
                    QMessageBox::information(&dialog, dialog.windowTitle(),
                                             "Error ! Data Exported to File : " + path);
                }
            });
        }
        button->setMenu(menu);
        tools->addSeparator();
        tools->addWidget(button);
    }
    dialog.resize(1100, 760);
    dialog.exec();
}

void preview_reports_on_desktop(Ostikreport::ClsMain& report, QWidget* parent, WorkbookWriter workbook,
                                PreviewExports exports) {
    QPointer<QWidget> owner(parent);
    report.set_viewer([owner, workbook, exports](const Ostikreport::ReportDocument& doc) {
        show_report_preview(doc, owner, workbook, exports);
    });
}

}  // namespace brenlow::ui
