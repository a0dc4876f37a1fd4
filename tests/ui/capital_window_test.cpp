#include "ui/capital_window.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include "store/capital_store.h"
#include "support/component_fixture.h"
#include "ui/grid_table_model.h"
#include "ui/ledger_master_window.h"
#include "ui/qt_app.h"

namespace brenlow::ui {
namespace {

class CapitalWindows : public brenlow::test::ComponentTest {
protected:
    void SetUp() override {
        brenlow::test::ensure_qt_app();
        brenlow::test::ComponentTest::SetUp();
        if (IsSkipped()) return;
        auto& d = db();
        // A firm of three: two listed partners and one entered by hand, opening
        // balances in the trial balance, and a year's result of 90,000 less tax.
        for (const auto& [f, l] :
             std::vector<std::pair<std::string, std::string>>{{"ANIL", "SHAH"}, {"BINA", "MEHTA"}})
            store::add_listed_partner(d, "C001", f, "", l);
        store::RatioRow other;
        other.other = true;
        other.name = "RAVI KUMAR";
        other.rat = 33.34;
        store::RatioRow a, b;
        a.code = 1;
        a.rat = 33.33;
        b.code = 2;
        b.rat = 33.33;
        store::rewrite_ratios(d, "C001", base_->CYrInd(), {a, b, other});
        suffix_ = base_->GetTbName(base_->CYrInd());
        store::write_year_result(d, suffix_, "C001", {{1, 125000}, {2, -20000}}, 5000);
        const long anil = base_->GetMax_MastPartId("ANIL SHAH"),
                   bina = base_->GetMax_MastPartId("BINA MEHTA");
        d.execute("insert into TAB_" + suffix_ + " values (1,'C001',1," + std::to_string(anil) +
                  ",2,250000)");
        d.execute("insert into TAB_" + suffix_ + " values (2,'C001',101," + std::to_string(bina) +
                  ",1,12000)");
    }

    void save_picture(QWidget& window, const std::string& name) {
        if (GetParam() == store::Backend::sqlite) {
            EXPECT_TRUE(brenlow::test::save_picture(window, name));
        }
    }

    std::string suffix_;
};

TEST_P(CapitalWindows, ThreePartnersAfterAProfitShare) {
    auto* window = static_cast<CapitalWindow*>(make_capital_window(component_, nullptr));
    std::unique_ptr<QWidget> owner(window);
    window->show();
    auto& s = window->screen();
    EXPECT_EQ(window->windowTitle(), "CAPITAL SCHEDULE - ACME");
    EXPECT_EQ(s.net_profit(), 100000);
    window->run([&] { s.cmdShare_Click(); });
    EXPECT_EQ(window->vsfC()->model()->rowCount(), 5);
    EXPECT_EQ(window->vsPL()->model()->index(0, capital::capital::kPLCapital).data().toString(),
              "283330.00 Cr.");
    EXPECT_EQ(window->vsPL()->model()->index(1, capital::capital::kPLCurrent).data().toString(),
              "12000.00 Dr.");
    EXPECT_FALSE(window->fraRatio()->isVisible());
    save_picture(*window, "capital_three_partners_after_profit_share");
    // The ratio frame opens over the partners.
    window->run([&] { s.cmdProfitDet_Click(); });
    EXPECT_TRUE(window->fraRatio()->isVisible());
    EXPECT_EQ(window->vsfR()->model()->rowCount(), 3);
    save_picture(*window, "capital_profit_sharing_ratio");
    window->run([&] { s.cmdsave_Click(); });
    EXPECT_EQ(store::capital_lines(db(), suffix_, "C001").size(), 5u);
}

// Anil a working partner at 15% on his 2,50,000 (7,500 above 12%) and paid 60,000;
// Bina at 18% on nothing. Posted, then the rest shared: the partners' and the firm's
// totals show.
TEST_P(CapitalWindows, InterestAndRemunerationPostedWithTheTotals) {
    auto* window = static_cast<CapitalWindow*>(make_capital_window(component_, nullptr));
    std::unique_ptr<QWidget> owner(window);
    window->show();
    auto& s = window->screen();
    window->run([&] {
        s.vsIR.set_text_matrix(1, capital::capital::kIRWorking, "1");
        s.vsIR.set_value_matrix(1, capital::capital::kIRRate, 15);
        s.vsIR.set_value_matrix(1, capital::capital::kIRRemuneration, 60000);
        s.vsIR.set_value_matrix(2, capital::capital::kIRRate, 18);
        s.vsIR_AfterEdit(2, capital::capital::kIRRate);
    });
    EXPECT_EQ(window->vsIR()->model()->index(0, capital::capital::kIRInterest).data().toString(),
              "37,500.00");
    EXPECT_EQ(window->vsIR()->model()->index(0, capital::capital::kIRDisallowed).data().toString(),
              "7,500.00");
    // The question before posting is answered Yes.
    QTimer yes;
    QObject::connect(&yes, &QTimer::timeout, [] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            box->done(QMessageBox::Yes);
    });
    yes.start(20);
    window->run([&] {
        s.cmdIntRem_Click();
        s.cmdShare_Click();
    });
    yes.stop();
    // 1,00,000 less 37,500 of interest and 60,000 of remuneration: 2,500 shared.
    EXPECT_EQ(s.shareable_profit(), 2500);
    auto* pl = window->vsPL()->model();
    ASSERT_EQ(pl->rowCount(), 4);
    EXPECT_EQ(pl->index(0, capital::capital::kPLTotal).data().toString(), "348333.25 Cr.");
    EXPECT_EQ(pl->index(3, capital::capital::kPLName).data().toString(), "Total");
    EXPECT_EQ(pl->index(3, capital::capital::kPLTotal).data().toString(), "338000.00 Cr.");
    EXPECT_EQ(window->findChild<QLabel*>("lblRemuneration")->text(),
              "Book Profit 70,000.00   Limit u/s 40(b) 3,00,000.00   Remuneration Paid 60,000.00   "
              "Disallowed 0.00   Interest Disallowed 7,500.00");
    save_picture(*window, "capital_interest_and_remuneration_posted");
}

TEST_P(CapitalWindows, TheLedgerMasterMarksWhatIsInUse) {
    {
        std::unique_ptr<QWidget> capital_window(make_capital_window(component_, nullptr));
        auto* w = static_cast<CapitalWindow*>(capital_window.get());
        w->run([&] {
            w->screen().cmdShare_Click();
            w->screen().cmdsave_Click();
        });
    }
    for (const char* name : {"DRAWINGS", "INTEREST ON CAPITAL", "SALARY TO PARTNERS"})
        store::ledger_insert(db(), store::Ledger::capital, name);
    LedgerMasterWindow window(component_);
    window.show();
    EXPECT_EQ(window.windowTitle(), "Capital Ledger Master");
    auto* model = window.vsf()->model();
    ASSERT_EQ(model->rowCount(), 5);
    int in_use = 0;
    for (int r = 0; r < model->rowCount(); ++r)
        in_use += model->index(r, capital::frmcapledmas::kColInUse).data().toString() == "Yes";
    EXPECT_EQ(in_use, 2);  // the opening balances and the profit shares
    // A click on the tick cell ticks the row.
    const QRect tick = window.vsf()->visualRect(model->index(0, capital::frmcapledmas::kColTick));
    QTest::mouseClick(window.vsf()->viewport(), Qt::LeftButton, {}, tick.center());
    EXPECT_TRUE(window.screen().ticked(1));
    save_picture(window, "capital_ledger_master");
    window.cboMaster()->setCurrentIndex(1);
    emit window.cboMaster()->activated(1);
    EXPECT_EQ(model->rowCount(), 2);  // the partners' particulars of the trial balance
}

BRENLOW_INSTANTIATE_BACKENDS(CapitalWindows);

}  // namespace
}  // namespace brenlow::ui
