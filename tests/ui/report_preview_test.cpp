#include "ui/report_preview.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>

#include "qt_app.h"
#include "support/pdf_text.h"

namespace brenlow::ui {
namespace {

Ostikreport::ReportDocument rows_report(int rows) {
    Ostikreport::ReportDocument doc;
    doc.titles = {"FIXED ASSETS"};
    doc.columns = {{"", "Block", false, false, 20}, {"Addition", "180 Days\nor More", true, false, 12}};
    for (int i = 0; i < rows; ++i) doc.rows.push_back({"BLOCK " + std::to_string(i), "1,00,000"});
    return doc;
}

TEST(ReportPreview, PaintsEveryRowOnAsManyPagesAsItNeeds) {
    test::ensure_qt_app();
    QTemporaryDir dir;
    auto pages_for = [&](int rows) {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(dir.filePath(QString("r%1.pdf").arg(rows)));
        printer.setPageOrientation(QPageLayout::Landscape);
        QPainter painter(&printer);
        const int pages = paint_report(rows_report(rows), printer, painter);
        painter.end();
        EXPECT_GT(QFile(dir.filePath(QString("r%1.pdf").arg(rows))).size(), 0);
        return pages;
    };
    EXPECT_EQ(pages_for(3), 1);
    const int many = pages_for(400);
    EXPECT_GT(many, 1);
    // Twice the rows take about twice the pages: the heading block repeats, rows are not lost.
    EXPECT_GE(pages_for(800), 2 * many - 1);
    // The preview and the PDF file place the same pages: what is previewed is what is filed.
    const std::string file = dir.filePath("written.pdf").toStdString();
    Ostikreport::write_pdf(rows_report(400), file, suite::Existing::replace);
    EXPECT_NE(test::pdf_info(file).find("Pages:           " + std::to_string(many) + "\n"), std::string::npos)
        << test::pdf_info(file);
#ifdef BRENLOW_ARTIFACTS_DIR
    QFile::remove(QString(BRENLOW_ARTIFACTS_DIR) + "/report-preview.pdf");
    QFile::copy(dir.filePath("r400.pdf"), QString(BRENLOW_ARTIFACTS_DIR) + "/report-preview.pdf");
#endif
}

TEST(ReportPreview, TheReportObjectShowsThroughTheViewerItWasGiven) {
    test::ensure_qt_app();
    struct Report : Ostikreport::ClsMain {
        void WriteToReport(const Ostikreport::ReportDocument& d) override { doc = d; }
        void createtable(std::string_view, int) override {}
        void RowBackForeColorMain(int, long, long) override {}
        void PrintText(std::string_view) override {}
        void showreport() override {
            if (viewer) viewer(doc);
        }
        const Ostikreport::ReportDocument& prepared() const override { return doc; }
        void set_viewer(Viewer v) override { viewer = std::move(v); }
        Ostikreport::ReportDocument doc;
        Viewer viewer;
    } report;
    QWidget owner;
    preview_reports_on_desktop(report, &owner);
    EXPECT_TRUE(static_cast<bool>(report.viewer));
}

// The preview's tool bar exports its report through the writer the host handed in:
// the person names the file and is told it was written.
TEST(ReportPreview, ThePreviewExportsItsReportToExcel) {
    test::ensure_qt_app();
    QTemporaryDir dir;
    const QString path = dir.filePath("chart.xlsx");
    std::string written;
    std::vector<std::string> boxes;
    int step = 0, file_ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        QWidget* modal = QApplication::activeModalWidget();
        if (auto* preview = qobject_cast<QPrintPreviewDialog*>(modal)) {
            if (step == 0) {
                auto* excel = preview->findChild<QAction*>("exportExcel");
                ASSERT_NE(excel, nullptr);
                test::save_picture(*preview, "report_preview_with_excel");
                step = 1;
                QTimer::singleShot(0, excel, &QAction::trigger);  // after this tick returns
            } else if (step == 2) {
                preview->reject();
            }
        } else if (auto* files = qobject_cast<QFileDialog*>(modal)) {
            // The name is typed into the dialog's own field, as a person would.
            if (++file_ticks < 2) return;
            files->setDirectory(dir.path());
            auto* name = files->findChild<QLineEdit*>("fileNameEdit");
            ASSERT_NE(name, nullptr);
            name->setText("chart.xlsx");
            static_cast<QDialog*>(files)->done(QDialog::Accepted);
        } else if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            boxes.push_back(box->text().toStdString());
            box->button(QMessageBox::Ok)->click();
            step = 2;
        }
    });
    timer.start(50);
    show_report_preview(rows_report(3), nullptr,
                        [&](const Ostikreport::ReportDocument& doc, const std::string& file) {
                            written = file + " " + doc.titles.front();
                        });
    timer.stop();
    EXPECT_EQ(written, path.toStdString() + " FIXED ASSETS");
    EXPECT_EQ(boxes, std::vector<std::string>{"Data Successfully Exported to File : " + path.toStdString()});
}

// The Export menu writes the further files of a report (the return's documents of the
// income-tax chart) and says what refused one in the program's own words.
TEST(ReportPreview, TheExportMenuWritesTheReportsFurtherFilesAndSaysWhatRefusedOne) {
    test::ensure_qt_app();
    QTemporaryDir dir;
    std::vector<std::string> written, boxes;
    int step = 0, file_ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        QWidget* modal = QApplication::activeModalWidget();
        if (auto* preview = qobject_cast<QPrintPreviewDialog*>(modal)) {
            if (step == 0) {
                ASSERT_NE(preview->findChild<QToolButton*>("exportMenu"), nullptr);
                auto* action = preview->findChild<QAction*>("export0");
                ASSERT_NE(action, nullptr);
                EXPECT_EQ(action->text().toStdString(), "ITR Depreciation Schedules (JSON)...");
                step = 1;
                QTimer::singleShot(0, action, &QAction::trigger);
            } else if (step == 2) {
                preview->reject();
            }
        } else if (auto* files = qobject_cast<QFileDialog*>(modal)) {
            if (++file_ticks < 2) return;
            files->setDirectory(dir.path());
            auto* name = files->findChild<QLineEdit*>("fileNameEdit");
            ASSERT_NE(name, nullptr);
            name->setText("itr.json");
            static_cast<QDialog*>(files)->done(QDialog::Accepted);
        } else if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            boxes.push_back(box->text().toStdString());
            box->button(QMessageBox::Ok)->click();
            step = 2;
        }
    });
    timer.start(50);
    show_report_preview(rows_report(3), nullptr, {}, [&](const Ostikreport::ReportDocument&) {
        return std::vector<PreviewExport>{
            {"ITR Depreciation Schedules (JSON)...", "JSON (*.json)", [&](const std::string& file) {
                 written.push_back(file);
                 return std::string("Nothing was written.");
             }}};
    });
    timer.stop();
    EXPECT_EQ(written, std::vector<std::string>{dir.filePath("itr.json").toStdString()});
    EXPECT_EQ(boxes, std::vector<std::string>{"Nothing was written."});
}

}  // namespace
}  // namespace brenlow::ui
