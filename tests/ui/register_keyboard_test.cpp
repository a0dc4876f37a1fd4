// The register window by keyboard: Tab goes down the entry panel as it stands on the
// screen, and a refused update sends the person to the field it names.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "register/frm_new_fatr.h"
#include "store/register_store.h"
#include "support/component_fixture.h"
#include "ui/qt_app.h"
#include "ui/register_window.h"
#include "ui/vtxt_edit.h"

namespace brenlow::ui {
namespace {

using S = reg::frmNewFATR;

class RegisterKeyboardTest : public brenlow::test::ComponentTest {
protected:
    void SetUp() override {
        brenlow::test::ensure_qt_app();
        brenlow::test::ComponentTest::SetUp();
        if (IsSkipped()) return;
        db().execute(
            "INSERT INTO NewFAGM Values (1,2025,'PLANT AND MACHINERY','3-15',15,20,0,15,'4.1',15,6.33,18.1)");
        store::RegisterStore rs(db(), "C001", 2025);
        store::OpeningRow o;
        o.IdFAGM = 1;
        o.Part = "LATHE MACHINE";
        o.CostWdv = 150000;
        o.OpDepr = 42000;
        o.ResValue = 7500;
        o.LifeYrs = 15;
        o.RateFACL = 18.10;
        o.WdvIT = 90000;
        o.RateIT = 15;
        o.PutDate = "01/04/2019";
        rs.insert_opening(o);
        store::AdditionRow a;
        a.IdFAGM = 1;
        a.Part = "COMPRESSOR";
        a.PutDate = "15/07/2024";
        a.AccDate = "10/07/2024";
        a.PurAmt = 85000;
        a.ResValue = 4250;
        a.LifeYrs = 15;
        a.RateFACL = 18.1;
        a.RateIT = 15;
        rs.insert_addition(a);
        // Every box is noted and answered OK (or Yes).
        QObject::connect(&boxes_, &QTimer::timeout, [this] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                shown_.push_back(box->text().toStdString());
                box->done(box->button(QMessageBox::Ok) ? QMessageBox::Ok : QMessageBox::Yes);
            }
        });
        boxes_.start(20);
    }

    void open(RegisterWindow& window) {
        window.resize(1366, 768);
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    // The controls Tab stops at from `first` on, as a person meets them: visible,
    // enabled, taking the focus by Tab; named by object name, else by caption.
    static std::vector<std::string> tab_chain(QWidget* first, QWidget* within) {
        std::vector<std::string> names;
        QWidget* w = first;
        do {
            if (w->isVisible() && w->isEnabled() && (w->focusPolicy() & Qt::TabFocus) &&
                within->isAncestorOf(w)) {
                QString name = w->objectName();
                if (name.isEmpty())
                    if (auto* b = qobject_cast<QAbstractButton*>(w)) name = b->text();
                names.push_back(name.toStdString());
            }
            w = w->nextInFocusChain();
        } while (w != first);
        return names;
    }

    static std::string joined(const std::vector<std::string>& names) {
        std::string out;
        for (const auto& n : names) out += "\"" + n + "\", ";
        return out;
    }

    QTimer boxes_;
    std::vector<std::string> shown_;
};

// Tab goes down the opening entry as it stands: the group and particulars, the books
// half top to bottom with its combo boxes where they stand, then the income-tax half,
// the adjustments, the sale, the extra shifts, the year's depreciation, Update.
TEST_P(RegisterKeyboardTest, TabFollowsTheOpeningEntryPanelTopToBottom) {
    RegisterWindow window(component_);
    open(window);
    window.run([&] {
        window.screen().vsO_Row = window.screen().vsO.fixed_rows();
        window.screen().cmdEditO_Click();
    });
    ASSERT_TRUE(window.screen().Entering());
    QApplication::processEvents();
    auto* group = window.findChild<QComboBox*>("txtAssetGroup");
    ASSERT_NE(group, nullptr);
    // The fields whose "Default" is ticked are passed over (they are disabled).
    const std::vector<std::string> expected = {"txtAssetGroup",
                                               "txtPart",
                                               "O0",
                                               "O1",
                                               "O2",
                                               "cboCalcCA",
                                               "chkO3",
                                               "cboResValOfO",
                                               "chkO4",
                                               "chkO5",
                                               "cboMODo",
                                               "O6",
                                               "chkO7",
                                               "chkO8",
                                               "optsWdvIT0",
                                               "optsWdvIT1",
                                               "optsWdvIT2",
                                               "chkO9",
                                               "vsESA",
                                               "esa0",
                                               "esa1",
                                               "esa2",
                                               "esa3",
                                               "esa4",
                                               "esa5",
                                               "Add Ro&w",
                                               "Remo&ve Row",
                                               "chkTotESA",
                                               "D0",
                                               "D1",
                                               "D2",
                                               "chkPartDed",
                                               "vsS",
                                               "Add S&hift",
                                               "Remove Shif&t",
                                               "Check Shi&fts",
                                               "chkAutoCalcDeprCL",
                                               "&Update",
                                               "&Cancel",
                                               "Manage Asset &Group Master"};
    const auto chain = tab_chain(group, &window);
    EXPECT_EQ(chain, expected) << joined(chain);
}

// The addition's panel the same way: its amounts, the books half, the income-tax half.
TEST_P(RegisterKeyboardTest, TabFollowsTheAdditionPanelTopToBottom) {
    RegisterWindow window(component_);
    open(window);
    window.run([&] {
        window.screen().vsA_Row = window.screen().vsA.fixed_rows();
        window.screen().cmdEditA_Click();
    });
    ASSERT_TRUE(window.screen().Entering());
    QApplication::processEvents();
    auto* group = window.findChild<QComboBox*>("txtAssetGroup");
    ASSERT_NE(group, nullptr);
    const std::vector<std::string> expected = {"txtAssetGroup",
                                               "txtPart",
                                               "A0",
                                               "A1",
                                               "A2",
                                               "A3",
                                               "A4",
                                               "A5",
                                               "chkA6",
                                               "chkA7",
                                               "chkA8",
                                               "cboMODa",
                                               "cboRndAddRtAuto",
                                               "chkA9",
                                               "chkA10",
                                               "D0",
                                               "D1",
                                               "D2",
                                               "chkPartDed",
                                               "vsS",
                                               "Add S&hift",
                                               "Remove Shif&t",
                                               "Check Shi&fts",
                                               "chkAutoCalcDeprCL",
                                               "&Update",
                                               "&Cancel",
                                               "Manage Asset &Group Master"};
    const auto chain = tab_chain(group, &window);
    EXPECT_EQ(chain, expected) << joined(chain);
}

// Depreciation typed by hand and left empty is refused on Update; the focus goes to
// the depreciation field, in sight.
TEST_P(RegisterKeyboardTest, ARefusedTypedDepreciationGetsTheFocus) {
    RegisterWindow window(component_);
    open(window);
    window.run([&] {
        window.screen().vsA_Row = window.screen().vsA.fixed_rows();
        window.screen().cmdEditA_Click();
    });
    ASSERT_TRUE(window.screen().Entering());
    auto* automatic = window.findChild<QCheckBox*>("chkAutoCalcDeprCL");
    auto* typed = window.findChild<VTxtEdit*>("txtAutoCalcDeprCL");
    ASSERT_NE(automatic, nullptr);
    ASSERT_NE(typed, nullptr);
    ASSERT_TRUE(automatic->isChecked());
    QTest::mouseClick(automatic, Qt::LeftButton, {}, QPoint(4, automatic->height() / 2));
    ASSERT_FALSE(automatic->isChecked());
    EXPECT_TRUE(typed->isEnabled());
    window.findChild<VTxtEdit*>("A0")->setFocus();
    QPushButton* update = nullptr;
    for (auto* b : window.findChildren<QPushButton*>())
        if (b->text() == "&Update") update = b;
    ASSERT_NE(update, nullptr);
    QTest::mouseClick(update, Qt::LeftButton);
    QApplication::processEvents();
    ASSERT_EQ(shown_.size(), 1u);
    EXPECT_NE(shown_[0].find("Depreciation"), std::string::npos) << shown_[0];
    EXPECT_TRUE(window.screen().Entering());
    EXPECT_EQ(QApplication::focusWidget(), typed);
    EXPECT_FALSE(typed->visibleRegion().isEmpty());
}

BRENLOW_INSTANTIATE_BACKENDS(RegisterKeyboardTest);

}  // namespace
}  // namespace brenlow::ui
