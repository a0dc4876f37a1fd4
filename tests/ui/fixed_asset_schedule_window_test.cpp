#include "ui/fixed_asset_schedule_window.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "support/component_fixture.h"
#include "support/scripted_ui.h"
#include "ui/qt_app.h"

namespace brenlow::ui {
namespace {

class FixedAssetScheduleWindowTest : public brenlow::test::ComponentTest {
protected:
    void SetUp() override {
        brenlow::test::ensure_qt_app();
        brenlow::test::ComponentTest::SetUp();
        if (IsSkipped()) return;
        auto& db = base_->dbobj();
        db.execute("INSERT INTO BlockGroup Values (11,'PLANT AND MACHINERY',1,0)");
        db.execute("INSERT INTO BlockGroup Values (21,'PLANT AND MACHINARY',2,3)");
        db.execute("INSERT INTO BlockGroup Values (22,'FURNITURE AND FITTINGS',2,2)");
        // Two particulars saved through the screen, with an addition and a deduction.
        brenlow::test::ScriptedUi ui;
        sched::FixedAssetSchedule s(component_, ui);
        ASSERT_TRUE(s.Form_Load());
        sched::FixedLine plant, furniture;
        plant.row = {
            0, 0, 0, 300000, 100000, 15, 1, 0, 0, 0, 11, 180000, 15, 21, 0, 20, "PLANT AND MACHINERY"};
        plant.old_table = 0;
        store::FdaRow add;
        add.ad_ded_id = store::kFdaAddition;
        add.particular = "CNC LATHE";
        add.cost = 50000;
        add.ad_date = "15/06/24";
        add.dtpur = "10/06/24";
        add.adddepapp = "1";
        plant.additions = {add};
        furniture.row = {0, 0, 0, 80000, 16000, 10, 1, 0, 0, 0, 11, 60000, 10, 22, 0, 0, "FURNITURE"};
        store::FdaRow ded;
        ded.ad_ded_id = store::kFdaDeduction;
        ded.particular = "OLD TABLES";
        ded.cost = 8000;
        ded.dep = 2000;
        ded.AMT = 5000;
        ded.ad_date = "01/09/24";
        furniture.deductions = {ded};
        s.vsFixed = {plant, furniture};
        ui.answer_yes();  // the trial balance holds nothing yet
        ASSERT_TRUE(s.cmdSave_Click());
    }
};

TEST_P(FixedAssetScheduleWindowTest, ShowsTheParticularsWithTheirHeadingsAndLists) {
    FixedAssetScheduleWindow w(component_);
    ASSERT_TRUE(w.load());
    auto* grid = w.grid();
    ASSERT_EQ(grid->rowCount(), 2);
    EXPECT_EQ(grid->horizontalHeaderItem(1)->text(), "As per Books\nCost");
    EXPECT_EQ(grid->horizontalHeaderItem(7)->text(), "As per IT\nOpening WDV");
    EXPECT_EQ(grid->item(0, 0)->text(), "PLANT AND MACHINERY");
    EXPECT_EQ(grid->item(0, 1)->text(), "300000.00");
    EXPECT_EQ(qobject_cast<QComboBox*>(grid->cellWidget(0, 4))->currentText(), "WRITTEN DOWN VALUE");
    EXPECT_EQ(qobject_cast<QComboBox*>(grid->cellWidget(1, 9))->currentText(), "FURNITURE AND FITTINGS");
    w.show_sub_view(1, sched::SubView::Deductions);
    ASSERT_EQ(w.lines()->rowCount(), 1);
    EXPECT_EQ(w.lines()->horizontalHeaderItem(5)->text(), "Sales Amount");
    EXPECT_EQ(w.lines()->item(0, 5)->text(), "5000.00");
    w.show_sub_view(0, sched::SubView::Additions);
    EXPECT_EQ(w.lines()->item(0, 0)->text(), "CNC LATHE");
    w.show();
    EXPECT_TRUE(brenlow::test::save_picture(w, "fixed-asset-schedule"));
    // The particulars are drawn in the grid, not only its background and rules.
    EXPECT_GT(brenlow::test::drawn_colours(*grid->viewport()), 10);
}

// Boxes the window shows, read and answered Yes (or OK) as they come up.
class AnsweredBoxes {
public:
    AnsweredBoxes() {
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                shown_.push_back(box->text().toStdString());
                if (auto* yes = box->button(QMessageBox::Yes))
                    yes->click();
                else if (auto* ok = box->button(QMessageBox::Ok))
                    ok->click();
            }
        });
        timer_.start(20);
    }
    const std::vector<std::string>& shown() const { return shown_; }

private:
    QTimer timer_;
    std::vector<std::string> shown_;
};

QPushButton* button(QWidget& w, const QString& caption) {
    for (auto* b : w.findChildren<QPushButton*>())
        if (b->text() == caption) return b;
    return nullptr;
}

TEST_P(FixedAssetScheduleWindowTest, AStraightLineRowSurvivesAddRowAndSave) {
    // The client keeps books as a non-company, whose method list is the short one.
    auto& db = base_->dbobj();
    const auto suffix = base_->GetTbName(base_->CYrInd());
    db.execute("Update FIXED_" + suffix + " set method_id=2 where srno=1");
    store::FixedScheduleStore st(db, suffix, base_->Temp_Code());
    const auto before = st.particulars();
    FixedAssetScheduleWindow w(component_);
    ASSERT_TRUE(w.load());
    auto* method = qobject_cast<QComboBox*>(w.grid()->cellWidget(0, sched::colMethod));
    EXPECT_EQ(method->currentText(), "STRAIGHT LINE METHOD");
    AnsweredBoxes boxes;
    button(w, "&Add Row")->click();
    ASSERT_EQ(w.grid()->rowCount(), 3);
    button(w, "&Save")->click();
    const auto after = st.particulars();
    ASSERT_EQ(after.size(), before.size());
    EXPECT_EQ(after[0].method_id, 2);
    EXPECT_EQ(after[0].deptick, 0);
    EXPECT_DOUBLE_EQ(after[0].OTH_DEP, before[0].OTH_DEP);
    EXPECT_DOUBLE_EQ(after[0].depamt, before[0].depamt);
}

TEST_P(FixedAssetScheduleWindowTest, ADeletedDeductionLeavesTheGridWithTheFiguresThatFollow) {
    FixedAssetScheduleWindow w(component_);
    ASSERT_TRUE(w.load());
    const QString depreciation_before = w.grid()->item(1, sched::colDepYear)->text();
    w.show_sub_view(1, sched::SubView::Deductions);
    ASSERT_EQ(w.lines()->rowCount(), 1);
    // The source is a combo of the particular's additions (it has none).
    auto* source = qobject_cast<QComboBox*>(w.lines()->cellWidget(0, 10));
    ASSERT_NE(source, nullptr);
    EXPECT_EQ(source->count(), 1);
    EXPECT_EQ(source->currentText(), "(Opening)");
    w.lines()->setCurrentCell(0, 0);
    AnsweredBoxes boxes;
    button(w, "Delete L&ine")->click();
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.shown()[0], "Do you want to delele the selected item?");
    EXPECT_EQ(w.lines()->rowCount(), 0);
    EXPECT_EQ(w.grid()->item(1, sched::colDeductions)->text(), "(0) ...");
    // 10% of 80000 - 16000, no longer of what the deduction took away.
    EXPECT_EQ(w.grid()->item(1, sched::colDepYear)->text(), "6400.00");
    EXPECT_NE(w.grid()->item(1, sched::colDepYear)->text(), depreciation_before);
    w.show();
    if (GetParam() == store::Backend::sqlite) {
        EXPECT_TRUE(brenlow::test::save_picture(w, "fixed-asset-schedule-after-delete"));
    }
}

BRENLOW_INSTANTIATE_BACKENDS(FixedAssetScheduleWindowTest);

}  // namespace
}  // namespace brenlow::ui
