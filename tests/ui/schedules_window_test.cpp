#include "ui/schedules_window.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <fstream>
#include <sstream>

#include "exchange/schedules_document.h"
#include "schedules/schedule_grids.h"
#include "store/schedule_store.h"
#include "support/component_fixture.h"
#include "support/scripted_ui.h"
#include "ui/grid_table_model.h"
#include "ui/qt_app.h"

namespace brenlow::ui {
namespace {

using schedules::formatsch;

class SchedulesWindowTest : public brenlow::test::ComponentTest {
protected:
    void SetUp() override {
        brenlow::test::ensure_qt_app();
        brenlow::test::ComponentTest::SetUp();
        if (IsSkipped()) return;
        base_->create_client_year("ACME", kComponentYear, "ACME ENGINEERING LTD", 3);
        auto& db = base_->dbobj();
        for (const char* c : {"TATA STEEL LTD", "ACME COMPONENTS PVT LTD", "GOVERNMENT OF INDIA"})
            store::find_or_add_company(db, c);
        std::ifstream f(std::string(BRENLOW_TEST_FILES_DIR) + "/schedules-year.json");
        std::ostringstream doc;
        doc << f.rdbuf();
        const auto r = exchange::import_schedules(db, "ACME", kComponentYear, doc.str(), false);
        ASSERT_TRUE(r.errors.empty()) << r.errors.front();
    }

    brenlow::test::ScriptedUi scripted_;
};

TEST_P(SchedulesWindowTest, EachScheduleWithItsLinesIsDrawn) {
    const long gr = base_->GetMax_MastPartId("GENERAL RESERVE");
    const long pl = base_->GetMax_MastPartId("PROFIT AND LOSS ACCOUNT");
    base_->dbobj().execute("insert into TAB_2025 values (1,'ACME',2," + std::to_string(gr) + ",2,200000)");
    base_->dbobj().execute("insert into TAB_2025 values (2,'ACME',2," + std::to_string(pl) + ",2,346651.25)");
    auto screen = std::make_shared<formatsch>(component_, scripted_);
    SchedulesWindow window(screen);
    window.show();
    EXPECT_EQ(window.windowTitle(), "Balance Sheet Schedules");
    ASSERT_NE(screen->current(), nullptr);
    const std::vector<std::pair<int, std::string>> shots = {
        {schedules::kShareCapital, "share_capital"}, {schedules::kReserves, "reserve_and_surplus"},
        {schedules::kSecured, "secured_loans"},      {schedules::kUnsecured, "unsecured_loans"},
        {schedules::kInvestments, "investments"},    {schedules::kSundryDebtors, "sundry_debtors"},
        {schedules::kCashBank, "cash_and_bank"},     {schedules::kLoansAdvances, "loans_and_advances"},
        {schedules::kMiscExp, "misc_expenses"}};
    for (const auto& [group, name] : shots) {
        window.run([&, g = group] { screen->cmd_Click(g); });
        ASSERT_EQ(screen->current()->group, group) << name;
        EXPECT_GT(window.grid()->model()->rowCount(), 0) << name;
        if (group == schedules::kReserves) {
            window.run([&] { screen->cmdshtb_Click(); });
            EXPECT_TRUE(window.findChild<GridView*>("vsTB")->isVisible());
            EXPECT_EQ(window.findChild<GridView*>("vsTB")->model()->rowCount(), 3);
        }
        QApplication::processEvents();
        EXPECT_TRUE(brenlow::test::save_picture(window, "schedules_" + name)) << name;
        // The grid's lines are drawn, letters and all, not only its background and rules.
        EXPECT_GT(brenlow::test::drawn_colours(*window.grid()->viewport()), 10) << name;
        if (group == schedules::kReserves) window.run([&] { screen->cmdshtb_Click(); });
    }
    const auto* grid = window.grid();
    EXPECT_EQ(grid->model()->data(grid->model()->index(0, 0)).toString(), "PRELIMINARY EXPENSES");
    scripted_.expect_nothing_more();
}

TEST_P(SchedulesWindowTest, ATypedCellGoesThroughTheScreensChecks) {
    auto screen = std::make_shared<formatsch>(component_, scripted_);
    SchedulesWindow window(screen);
    ASSERT_EQ(screen->current()->group, schedules::kShareCapital);
    const int paid = screen->vsf1.col_index("RS_SHARE1");
    window.edit_cell(1, paid, "12");  // Rs. 10 shares
    scripted_.expect_message("Paid up Rate per Share Should be Less than Per Share Amount.");
    EXPECT_EQ(screen->vsf1.value_matrix(1, paid), 0);
    window.edit_cell(1, screen->vsf1.col_index("no_share"), "200000");
    EXPECT_EQ(screen->vsf1.display_text(1, screen->vsf1.col_index(schedules::kAmountKey)), "2000000.00");
    // A company has every schedule's button.
    EXPECT_TRUE(window.findChild<QPushButton*>("cmd_unsecured_loans")->isVisibleTo(&window));
}

TEST_P(SchedulesWindowTest, TheTotalsLineUnderTheGridShowsWhatTheScheduleAddsUp) {
    auto screen = std::make_shared<formatsch>(component_, scripted_);
    SchedulesWindow window(screen);
    window.resize(1366, 768);
    window.show();
    auto* totals = window.findChild<QWidget*>("vsf1Totals");
    ASSERT_NE(totals, nullptr);
    window.run([&] { screen->cmd_Click(schedules::kSundryDebtors); });
    QApplication::processEvents();
    EXPECT_TRUE(totals->isVisible());
    // Below the grid's last line, never over it.
    EXPECT_GE(totals->geometry().top(), window.grid()->geometry().bottom());
    EXPECT_EQ(screen->totals(), (std::vector<std::string>{schedules::kDebtorsTotalLabel, "9,50,800.50"}));
    EXPECT_GT(brenlow::test::drawn_colours(*totals), 2);
    EXPECT_TRUE(brenlow::test::save_picture(window, "schedules_totals_sundry_debtors"));
    window.run([&] { screen->cmd_Click(schedules::kMiscExp); });
    QApplication::processEvents();
    EXPECT_TRUE(brenlow::test::save_picture(window, "schedules_totals_misc_expenses"));
    scripted_.expect_nothing_more();
}

BRENLOW_INSTANTIATE_BACKENDS(SchedulesWindowTest);

}  // namespace
}  // namespace brenlow::ui
