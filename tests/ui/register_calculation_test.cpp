#include <gtest/gtest.h>

#include <QDir>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <sstream>

#include "app/cli/cli.h"
#include "register/frm_new_fatr.h"
#include "suite/defaults.h"
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
}

}  // namespace
}  // namespace brenlow::ui
