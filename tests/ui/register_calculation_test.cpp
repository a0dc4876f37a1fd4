#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <sstream>

#include "app/cli/cli.h"
#include "controls/number_format.h"
#include "register/frm_new_fatr.h"
#include "store/chart_store.h"
#include "store/register_store.h"
#include "suite/defaults.h"
#include "ui/chart_editor_window.h"
#include "ui/grid_view.h"
#include "ui/qt_app.h"
#include "ui/register_window.h"

namespace brenlow::ui {
namespace {

// The demonstration register, calculated from its window as the person does it.
TEST(RegisterWindowCalculation, ShowsTheSheetTheSummaryAndTheChartUnderTheGrids) {
    test::ensure_qt_app();
    QTemporaryDir dir;
    const std::string url = "sqlite:" + dir.filePath("demo.db").toStdString();
    std::ostringstream out, err;
    ASSERT_EQ(cli::run({"--db", url, "demo", "--out", dir.path().toStdString()}, out, err), 0) << err.str();

    auto base = std::make_shared<suite::BaseServices>(store::open_database(url), dir.path().toStdString(),
                                                      BRENLOW_TEST_DATA_DIR);
    ASSERT_TRUE(base->select_client_year("DEMO01", 2025));
    frame::Component comp;
    comp.base = base;
    comp.forms = std::make_shared<suite::BaseForms>(base);
    comp.report = std::make_shared<suite::ReportObject>();
    std::vector<std::string> previews;
    comp.report->set_viewer(
        [&](const Ostikreport::ReportDocument& d) { previews.push_back(d.titles.front()); });

    RegisterWindow window(comp);
    window.show();
    window.screen().cboDepMode_Click(reg::Mode::DEP_IT);
    window.run([&] { window.screen().cmdDeprCalc_Click(); });
    window.show_calculation();

    EXPECT_EQ(previews.size(), 3u);
    ASSERT_TRUE(window.findChild<QPlainTextEdit*>("calculation")->isVisible());
    const std::string text = window.findChild<QPlainTextEdit*>("calculation")->toPlainText().toStdString();
    EXPECT_NE(text.find("BLOCK WISE SUMMARY"), std::string::npos);
    EXPECT_NE(text.find("(Before 04/10/24)"), std::string::npos);
    EXPECT_NE(text.find("33,000"), std::string::npos) << "the nil block's capital gain";
    EXPECT_TRUE(test::save_picture(window, "register_after_calculation"));

    // An addition deleted after the calculation: the pane no longer shows figures that
    // disagree with the register, it says they are out of date.
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            box->button(QMessageBox::Yes)->click();
    });
    answer.start(10);
    auto& sc = window.screen();
    const int additions = sc.vsA.data_rows();
    ASSERT_GT(additions, 0);
    sc.vsA_Row = sc.vsA.fixed_rows();
    window.run([&] { sc.cmdDelA_Click(); });
    answer.stop();
    ASSERT_EQ(sc.vsA.data_rows(), additions - 1);
    const QString stale = window.findChild<QPlainTextEdit*>("calculation")->toPlainText();
    EXPECT_TRUE(stale.startsWith("The register has changed since this calculation.")) << stale.toStdString();
    EXPECT_FALSE(stale.contains("BLOCK WISE SUMMARY"));
}

// The demonstration client's year, open in a component, for the windows below.
struct DemoYear {
    QTemporaryDir dir;
    std::shared_ptr<suite::BaseServices> base;
    frame::Component comp;

    DemoYear() {
        test::ensure_qt_app();
        const std::string url = "sqlite:" + dir.filePath("demo.db").toStdString();
        std::ostringstream out, err;
        EXPECT_EQ(cli::run({"--db", url, "demo", "--out", dir.path().toStdString()}, out, err), 0)
            << err.str();
        base = std::make_shared<suite::BaseServices>(store::open_database(url), dir.path().toStdString(),
                                                     BRENLOW_TEST_DATA_DIR);
        EXPECT_TRUE(base->select_client_year("DEMO01", 2025));
        comp.base = base;
        comp.forms = std::make_shared<suite::BaseForms>(base);
        comp.report = std::make_shared<suite::ReportObject>();
        comp.report->set_viewer([](const Ostikreport::ReportDocument&) {});
    }
};

TEST(ChartEditorWindow, OpensOnTheBuiltChartAndSavesTheEditedOneAsTheYearsChart) {
    DemoYear demo;
    ChartEditorWindow window(demo.comp);
    ASSERT_TRUE(window.load());
    window.show();
    auto& s = window.screen();
    EXPECT_EQ(s.Layout(), depreciation::ChartEditor::From2020);
    ASSERT_GT(s.vsChart.data_rows(), 0);
    // The first row's normal depreciation at full rate typed lower: its total follows.
    int col = -1;
    for (int c = 0; c < s.vsChart.cols(); ++c)
        if (s.vsChart.text_matrix(0, c) == "Normal (Full)") col = c;
    ASSERT_GE(col, 0);
    const int row = s.vsChart.fixed_rows();
    const double before = s.Rows()[0].TotDep;
    const double typed = s.Rows()[0].DeprF - 100;
    window.run([&] { s.vsChart_ValidateEdit(row, col, plain_number(typed)); });
    EXPECT_DOUBLE_EQ(s.Rows()[0].TotDep, before - 100);
    EXPECT_TRUE(test::save_picture(window, "chart_editor"));
    window.run([&] { s.cmdSave_Click(); });
    const auto stored = store::read_chart(demo.base->dbobj(), store::ChartTable::DeprChart, "DEMO01", 2025);
    ASSERT_FALSE(stored.empty());
    EXPECT_DOUBLE_EQ(stored[0].DeprF, typed);
    EXPECT_EQ(demo.base->GetMiscOthInf("MANDEP", demo.base->SecondDate(), "DEMO01"), "1");
}

TEST(RegisterWindowManualDepreciation, TheDialogListsTheGroupsAndSavesWhatIsTyped) {
    DemoYear demo;
    RegisterWindow window(demo.comp);
    window.show();
    // The dialog is modal: look at it, type into the screen's grid, save, once it is up.
    bool seen = false;
    QTimer::singleShot(0, [&] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        auto* view = dialog->findChild<GridView*>("vsEditFA");
        ASSERT_NE(view, nullptr);
        seen = view->model()->rowCount() == static_cast<int>(window.screen().AssetGroups().size());
        EXPECT_TRUE(test::save_picture(*dialog, "register_manual_depreciation"));
        window.run(
            [&] { window.screen().vsEditFA_ValidateEdit(window.screen().vsEditFA.fixed_rows(), "2500"); });
        for (auto* b : dialog->findChildren<QPushButton*>())
            if (b->text() == "&Save") b->click();
    });
    window.edit_manual_depreciation();
    EXPECT_TRUE(seen);
    store::RegisterStore rs(demo.base->dbobj(), "DEMO01", 2025);
    const auto rows = rs.manual_depreciation();
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_DOUBLE_EQ(rows[0].second, 2500);
}

}  // namespace
}  // namespace brenlow::ui
