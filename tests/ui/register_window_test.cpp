// The register window over the screen: entries in both grids, the entry frames
// driven by keys, Enter moving on, a large register scrolled; offscreen pictures.

#include "ui/register_window.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>
#include <filesystem>

#include "register/frm_new_fatr.h"
#include "store/register_store.h"
#include "store/seed.h"
#include "suite/base_services.h"
#include "support/component_fixture.h"
#include "ui/grid_table_model.h"
#include "ui/qt_app.h"
#include "ui/vtxt_edit.h"

namespace brenlow::ui {
namespace {

using S = reg::frmNewFATR;

class RegisterWindowTest : public brenlow::test::ComponentTest {
protected:
    void SetUp() override {
        brenlow::test::ensure_qt_app();
        brenlow::test::ComponentTest::SetUp();
        if (IsSkipped()) return;
        db().execute(
            "INSERT INTO NewFAGM Values (1,2025,'PLANT AND MACHINERY','3-15',15,20,0,15,'4.1',15,6.33,18.1)");
        db().execute("INSERT INTO NewFAGM Values (2,2025,'FURNITURE','2-10',10,0,0,10,'-1',0,0,0)");
    }

    void fill_register() {
        store::RegisterStore rs(db(), "C001", 2025);
        const char* parts[] = {"LATHE MACHINE", "HYDRAULIC PRESS", "OFFICE TABLES", "CNC MILLING CENTRE"};
        for (int i = 0; i < 4; ++i) {
            store::OpeningRow o;
            o.IdFAGM = i == 2 ? 2 : 1;
            o.Part = parts[i];
            o.CostWdv = 150000 + 37500 * i;
            o.OpDepr = 42000 + 1000 * i;
            o.ResValue = o.CostWdv / 20;
            o.LifeYrs = i == 2 ? 10 : 15;
            o.RateFACL = i == 2 ? 25.89 : 18.10;
            o.WdvIT = 90000 + 5000 * i;
            o.RateIT = i == 2 ? 10 : 15;
            o.PutDate = "01/04/2019";
            rs.insert_opening(o);
        }
        store::AdditionRow a;
        a.IdFAGM = 1;
        a.Part = "COMPRESSOR";
        a.PutDate = "15/07/2024";
        a.AccDate = "10/07/2024";
        a.PurAmt = 85000;
        a.ExciseCr = 1500;
        a.ResValue = 4175;
        a.LifeYrs = 15;
        a.RateFACL = 18.1;
        a.RateIT = 15;
        a.AddlDepRT = 20;
        rs.insert_addition(a);
        a.Part = "FORKLIFT";
        a.PutDate = "02/11/2024";
        a.AccDate = "01/11/2024";
        a.PurAmt = 640000;
        a.ExciseCr = 0;
        a.ResValue = 32000;
        rs.insert_addition(a);
    }

    // Offscreen pictures for people to look at, from the SQLite run only.
    void save_picture(QWidget& window, const std::string& name) {
        if (GetParam() == store::Backend::sqlite) {
            EXPECT_TRUE(brenlow::test::save_picture(window, name));
        }
    }

    // Boxes the screen shows are read and answered OK as they come up.
    void answer_boxes() {
        auto* timer = new QTimer(&watcher_);
        QObject::connect(timer, &QTimer::timeout, [this] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                shown_.push_back(box->text().toStdString());
                if (auto* ok = box->button(QMessageBox::Ok))
                    ok->click();
                else if (auto* yes = box->button(QMessageBox::Yes))
                    yes->click();
            }
        });
        timer->start(20);
    }

    static QPushButton* find_button(QWidget& w, const QString& caption) {
        for (auto* b : w.findChildren<QPushButton*>())
            if (b->text() == caption && b->isVisible()) return b;
        return nullptr;
    }

    // The keys go to whichever control has the focus, as they do for a person.
    static void keys(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }
    static void key(Qt::Key k, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), k, modifiers);
        QApplication::processEvents();
    }
    static QWidget* focused() { return QApplication::focusWidget(); }
    // A button's mnemonic clicks it a moment later, as a person sees it pressed.
    static void press_mnemonic(Qt::Key k, QWidget* frame) {
        key(k, Qt::AltModifier);
        for (int i = 0; i < 100 && frame->isVisible(); ++i) QTest::qWait(20);
        // The boxes that came up have gone; the window is the active one again.
        frame->window()->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(frame->window()));
    }

    QObject watcher_;
    std::vector<std::string> shown_;
};

// A box asked from a button hands the focus back to the field the person was in.
TEST_P(RegisterWindowTest, FocusReturnsToTheFieldWhenTheCancelQuestionCloses) {
    RegisterWindow window(component_);
    window.resize(1366, 768);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    std::vector<std::string> asked;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            asked.push_back(box->text().toStdString());
            box->button(QMessageBox::No)->click();
        }
    });
    timer.start(20);
    QTest::mouseClick(find_button(window, "&Add"), Qt::LeftButton);
    ASSERT_TRUE(window.screen().Entering());
    auto* part = window.findChild<VTxtEdit*>("txtPart");
    ASSERT_NE(part, nullptr);
    part->setFocus();
    keys("lathe");
    QPushButton* cancel = find_button(window, "&Cancel");
    ASSERT_NE(cancel, nullptr);
    QTest::mouseClick(cancel, Qt::LeftButton);
    QApplication::processEvents();
    timer.stop();
    EXPECT_EQ(asked, std::vector<std::string>{"Do you want to Cancel the Changes?"});
    EXPECT_TRUE(window.screen().Entering());
    EXPECT_EQ(focused(), part);
    EXPECT_EQ(part->text(), "LATHE");
}

// The group is picked from vsFAGM with its blocks, rates and life, the master's line
// last; a group renamed in the master meanwhile shows so when the window comes back.
TEST_P(RegisterWindowTest, TheGroupPickerShowsBlocksRatesAndFollowsTheMaster) {
    RegisterWindow window(component_);
    window.show();
    auto* group = window.findChild<QComboBox*>("txtAssetGroup");
    ASSERT_NE(group, nullptr);
    auto* picker = window.findChild<GridView*>("vsFAGM");
    ASSERT_NE(picker, nullptr);
    EXPECT_EQ(group->view(), picker);
    const auto* model = picker->model();
    ASSERT_EQ(model->rowCount(), 3);
    const auto line = [&](int r) {
        QStringList cells;
        for (int c = 0; c < model->columnCount(); ++c)
            if (!picker->isColumnHidden(c)) cells << model->index(r, c).data().toString();
        return cells.join('|').toStdString();
    };
    EXPECT_EQ(line(0).rfind("PLANT AND MACHINERY|", 0), 0u) << line(0);
    EXPECT_NE(line(0).find("|15|6.33|18.10|"), std::string::npos) << line(0);
    EXPECT_EQ(model->index(2, 1).data().toString(), "[Add/Edit Asset Group Master Details]");

    db().execute("UPDATE NewFAGM SET Part='PLANT AND MACHINERY (40%)', RateIT=40 WHERE SrNoFAGM=1");
    QEvent activate(QEvent::WindowActivate);
    QApplication::sendEvent(&window, &activate);
    EXPECT_EQ(model->index(0, 1).data().toString(), "PLANT AND MACHINERY (40%)");
    EXPECT_NE(line(0).find("|40.00|"), std::string::npos) << line(0);
}

// Amounts show in the practice's grouping, the plain figure goes to the editor, and a
// cell's whole text is its tooltip.
TEST_P(RegisterWindowTest, AmountsAreGroupedWhenShownAndPlainWhenEdited) {
    fill_register();
    RegisterWindow window(component_);
    window.show();
    auto* view = window.findChild<GridView*>("vsO");
    const int cost = window.screen().vsO.col_index("Cost");
    const QModelIndex cell = view->model()->index(3, cost);
    EXPECT_EQ(cell.data(Qt::DisplayRole).toString(), "2,62,500.00");
    EXPECT_EQ(cell.data(Qt::EditRole).toString(), "262500");
    EXPECT_EQ(cell.data(Qt::ToolTipRole).toString(), "2,62,500.00");
    const QModelIndex part = view->model()->index(3, window.screen().vsO.col_index("Particulars"));
    EXPECT_EQ(part.data(Qt::ToolTipRole).toString(), "CNC MILLING CENTRE");
}

TEST_P(RegisterWindowTest, ShowsBothGridsWithTheirEntries) {
    fill_register();
    RegisterWindow window(component_);
    window.resize(1280, 800);
    window.show();
    QApplication::processEvents();
    EXPECT_EQ(window.findChild<GridView*>("vsO")->model()->rowCount(), 4);
    EXPECT_EQ(window.findChild<GridView*>("vsA")->model()->rowCount(), 2);
    EXPECT_EQ(window.findChild<GridView*>("vsO")->model()->index(0, 3).data().toString(), "LATHE MACHINE");
    EXPECT_FALSE(window.findChild<QWidget*>("famEditO")->isVisible());
    // The calculation works; the export and transfers are there but cannot be started yet.
    int seen = 0;
    for (auto* b : window.findChildren<QPushButton*>()) {
        if (b->text() == "Calculate Depreciatio&n") {
            EXPECT_TRUE(b->isEnabled());
            ++seen;
        }
        if (b->text() == "E&xport to Excel") {
            EXPECT_FALSE(b->isEnabled());
            ++seen;
        }
    }
    EXPECT_EQ(seen, 2);
    save_picture(window, "register_with_entries");
}

TEST_P(RegisterWindowTest, OpeningEntryTypedAndSavedThroughTheFrame) {
    fill_register();
    RegisterWindow window(component_);
    window.resize(1280, 800);
    window.show();
    QApplication::processEvents();
    auto& screen = window.screen();
    window.run([&] { screen.cmdAddO_Click(); });
    ASSERT_TRUE(window.findChild<QWidget*>("famEditO")->isVisible());
    window.run([&] { screen.SelectAssetGroup(1); });
    auto edits = window.findChild<QWidget*>("famEditO")->findChildren<VTxtEdit*>();
    // Particulars, then the cost typed key by key: the residual value and the rate follow.
    auto* part = window.findChildren<VTxtEdit*>().front();
    part->setFocus();
    QTest::keyClicks(part, "boring machine");
    QLineEdit* cost = nullptr;
    for (auto* e : edits)
        if (e->field().ValidateData() == vTXT::kDecimal && e->isEnabled() && !cost) cost = e;
    ASSERT_NE(cost, nullptr);
    cost->setFocus();
    QTest::keyClicks(cost, "200000");
    EXPECT_EQ(screen.txtfieldsO[S::O_ResValue].text(), "10000.00");
    EXPECT_EQ(screen.txtfieldsO[S::O_RateFACL].text(), "18.10");
    // Enter moves on to the next field, as the validated field does.
    QTest::keyClick(cost, Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_FALSE(cost->hasFocus());
    // The next field down the frame: the depreciation up to the start of the year.
    auto* next = qobject_cast<VTxtEdit*>(QApplication::focusWidget());
    ASSERT_NE(next, nullptr);
    next->setText("12000");
    QApplication::processEvents();
    EXPECT_EQ(screen.txtfieldsO[S::O_OpDepr].text(), "12000");
    save_picture(window, "register_opening_entry_frame");
    answer_boxes();
    QTest::mouseClick(find_button(window, "&Update"), Qt::LeftButton);
    EXPECT_EQ(shown_, std::vector<std::string>{"Auto Calculated Rate is 18.10% !"});
    EXPECT_EQ(window.findChild<GridView*>("vsO")->model()->rowCount(), 5);
    EXPECT_EQ(db().query("SELECT Part FROM NewFATRo2025 WHERE SrNoFATR=5").first("Part").as_text(),
              "BORING MACHINE");
    EXPECT_FALSE(window.findChild<QWidget*>("famEditO")->isVisible());
}

TEST_P(RegisterWindowTest, AdditionFrameShowsTheNetAmountAsItIsTyped) {
    fill_register();
    RegisterWindow window(component_);
    window.resize(1280, 800);
    window.show();
    QApplication::processEvents();
    auto& screen = window.screen();
    window.run([&] {
        screen.vsA_Row = 2;
        screen.cmdEditA_Click();
    });
    ASSERT_TRUE(window.findChild<QWidget*>("famEditA")->isVisible());
    EXPECT_FALSE(window.findChild<QWidget*>("famEditO")->isVisible());
    EXPECT_EQ(screen.lblNetAmtA, "83500.00");
    QApplication::processEvents();
    save_picture(window, "register_addition_entry_frame");
}

TEST_P(RegisterWindowTest, RefusedUpdateShowsItsMessageAndKeepsTheFrameOpen) {
    RegisterWindow window(component_);
    window.show();
    QApplication::processEvents();
    window.run([&] { window.screen().cmdAddA_Click(); });
    answer_boxes();
    QTest::mouseClick(find_button(window, "&Update"), Qt::LeftButton);
    EXPECT_EQ(shown_, std::vector<std::string>{"Please specify 'Asset Group' !"});
    EXPECT_TRUE(window.findChild<QWidget*>("famEditA")->isVisible());
    EXPECT_EQ(db().query("SELECT COUNT(*) AS n FROM NewFATRa2025").first("n").as_int(), 0);
}

TEST_P(RegisterWindowTest, RoundingTickRewritesTheOptionsRow) {
    RegisterWindow window(component_);
    window.show();
    QApplication::processEvents();
    QCheckBox* rounding = nullptr;
    for (auto* box : window.findChildren<QCheckBox*>())
        if (box->text() == "Round-Off Depreciation (Books)") rounding = box;
    ASSERT_NE(rounding, nullptr);
    QTest::mouseClick(rounding, Qt::LeftButton);
    EXPECT_EQ(db().query("SELECT MiscInf FROM NewFAMI").first("MiscInf").as_text(),
              "WDV|N|Y|Y|0|0|COST|0|W|N|0");
    EXPECT_TRUE(rounding->isChecked());
}

TEST_P(RegisterWindowTest, OpeningAndAdditionEnteredFromTheKeyboardAlone) {
    RegisterWindow window(component_);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    answer_boxes();
    auto& screen = window.screen();
    std::vector<QPushButton*> adds;
    for (auto* b : window.findChildren<QPushButton*>())
        if (b->text() == "&Add" || b->text() == "Add") adds.push_back(b);
    ASSERT_EQ(adds.size(), 2u);

    // Opening asset: the Add button, the group by its first letter, then Tab down the frame.
    adds[0]->setFocus();
    key(Qt::Key_Space);
    ASSERT_TRUE(window.findChild<QWidget*>("famEditO")->isVisible());
    ASSERT_NE(qobject_cast<QComboBox*>(focused()), nullptr);
    keys("P");
    EXPECT_EQ(screen.txtAssetGroup.Id, 1);
    key(Qt::Key_Tab);
    keys("boring machine");
    ASSERT_NE(qobject_cast<VTxtEdit*>(focused()), nullptr);
    EXPECT_EQ(qobject_cast<VTxtEdit*>(focused())->text(), "BORING MACHINE");
    key(Qt::Key_Tab);
    keys("01/04/2019");
    key(Qt::Key_Tab);
    keys("200000");
    key(Qt::Key_Return);
    keys("12000");
    key(Qt::Key_Return);
    EXPECT_EQ(screen.txtfieldsO[S::O_PutDate].text(), "01/04/2019");
    EXPECT_EQ(screen.txtfieldsO[S::O_CostWdv].text(), "200000.00");
    EXPECT_EQ(screen.txtfieldsO[S::O_OpDepr].text(), "12000.00");
    press_mnemonic(Qt::Key_U, window.findChild<QWidget*>("famEditO"));
    EXPECT_FALSE(window.findChild<QWidget*>("famEditO")->isVisible());
    auto* vsO = window.findChild<GridView*>("vsO");
    ASSERT_EQ(vsO->model()->rowCount(), 1);
    EXPECT_EQ(vsO->model()->index(0, 3).data().toString(), "BORING MACHINE");

    // Addition: the same from its own Add button.
    adds[1]->setFocus();
    key(Qt::Key_Space);
    ASSERT_TRUE(window.findChild<QWidget*>("famEditA")->isVisible());
    // A letter typed soon after another continues the same search; a person pauses here.
    QTest::qWait(QApplication::keyboardInputInterval() + 100);
    keys("P");
    EXPECT_EQ(screen.txtAssetGroup.Id, 1);
    key(Qt::Key_Tab);
    keys("compressor");
    key(Qt::Key_Tab);
    keys("15/07/2024");
    key(Qt::Key_Return);
    keys("10/07/2024");
    key(Qt::Key_Return);
    keys("85000");
    key(Qt::Key_Return);
    EXPECT_EQ(screen.txtfieldsA[S::A_PutDate].text(), "15/07/2024");
    EXPECT_EQ(screen.txtfieldsA[S::A_AccDate].text(), "10/07/2024");
    EXPECT_EQ(screen.txtfieldsA[S::A_PurAmt].text(), "85000.00");
    press_mnemonic(Qt::Key_U, window.findChild<QWidget*>("famEditA"));
    EXPECT_EQ(shown_, (std::vector<std::string>{"Auto Calculated Rate is 25.89% !",
                                                "Auto Calculated Rate is 18.10% !"}));
    EXPECT_FALSE(window.findChild<QWidget*>("famEditA")->isVisible());
    auto* vsA = window.findChild<GridView*>("vsA");
    ASSERT_EQ(vsA->model()->rowCount(), 1);
    EXPECT_EQ(vsA->model()->index(0, 3).data().toString(), "COMPRESSOR");
    EXPECT_EQ(db().query("SELECT COUNT(*) AS n FROM NewFATRa2025").first("n").as_int(), 1);
}

TEST_P(RegisterWindowTest, TheWheelOverAComboWithoutFocusChangesNothing) {
    fill_register();
    RegisterWindow window(component_);
    window.resize(1280, 800);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    answer_boxes();
    auto& screen = window.screen();
    const auto state = [&] {
        std::vector<int> out{static_cast<int>(screen.txtAssetGroup.Id),
                             screen.cboCalcCA.ListIndex,
                             screen.cboMODo.ListIndex,
                             screen.cboResValOfO.ListIndex,
                             screen.cboMODa.ListIndex,
                             screen.cboRndAddRtAuto.ListIndex};
        for (auto* box : window.findChildren<QComboBox*>()) out.push_back(box->currentIndex());
        return out;
    };
    for (const auto& open : std::vector<std::function<void()>>{[&] { screen.cmdAddO_Click(); },
                                                               [&] { screen.cmdAddA_Click(); }}) {
        window.run(open);
        window.run([&] { screen.SelectAssetGroup(1); });
        QApplication::processEvents();
        window.findChild<VTxtEdit*>("txtPart")->setFocus();
        const auto before = state();
        int rolled = 0;
        for (auto* box : window.findChildren<QComboBox*>()) {
            if (!box->isVisible() || !box->isEnabled() || box->count() < 2) continue;
            EXPECT_FALSE(box->hasFocus());
            for (int delta : {-120, 120, -120, -120}) {
                const QPointF at(box->width() / 2.0, box->height() / 2.0);
                QWheelEvent wheel(at, box->mapToGlobal(at), QPoint(), QPoint(0, delta), Qt::NoButton,
                                  Qt::NoModifier, Qt::NoScrollPhase, false);
                QApplication::sendEvent(box, &wheel);
            }
            ++rolled;
        }
        QApplication::processEvents();
        EXPECT_GE(rolled, 3);
        EXPECT_EQ(state(), before);
        window.run([&] { screen.cmdCancel_Click(); });
    }
}

TEST_P(RegisterWindowTest, CaptionsReadWholeAndTheEntryFrameIsReachableAt1280x800) {
    fill_register();
    RegisterWindow window(component_);
    window.resize(1280, 800);
    window.show();
    QApplication::processEvents();
    // A label shows "&" as an underline only when it has a control to go to.
    for (auto* label : window.findChildren<QLabel*>()) {
        if (label->textFormat() != Qt::RichText && label->text().contains('&')) {
            EXPECT_NE(label->buddy(), nullptr) << label->text().toStdString();
        }
    }
    // Every heading fits its column, and every band the columns under it.
    for (auto* view : window.findChildren<GridView*>()) {
        const auto* model = view->model();
        const QFontMetrics metrics = view->horizontalHeader()->fontMetrics();
        for (int c = 0; c < model->columnCount(); ++c) {
            if (view->isColumnHidden(c)) continue;
            const QString heading = model->headerData(c, Qt::Horizontal).toString();
            EXPECT_GE(view->columnWidth(c), metrics.horizontalAdvance(heading)) << heading.toStdString();
            const QString band = model->headerData(c, Qt::Horizontal, GridTableModel::BandRole).toString();
            const QPoint span = model->headerData(c, Qt::Horizontal, GridTableModel::BandSpanRole).toPoint();
            if (band.isEmpty() || span.x() != c) continue;
            int covered = 0;
            for (int s = span.x(); s <= span.y(); ++s)
                if (!view->isColumnHidden(s)) covered += view->columnWidth(s);
            EXPECT_GE(covered, metrics.horizontalAdvance(band)) << band.toStdString();
        }
    }
    // With either entry frame open, Update and Cancel are on the screen.
    auto& screen = window.screen();
    answer_boxes();
    for (const auto& open : std::vector<std::function<void()>>{[&] { screen.cmdAddO_Click(); },
                                                               [&] { screen.cmdAddA_Click(); }}) {
        window.run(open);
        QApplication::processEvents();
        for (const QString caption : {"&Update", "&Cancel"}) {
            QPushButton* b = find_button(window, caption);
            ASSERT_NE(b, nullptr);
            const QRect on_window(b->mapTo(&window, QPoint(0, 0)), b->size());
            EXPECT_TRUE(window.rect().contains(on_window)) << caption.toStdString();
            EXPECT_FALSE(b->visibleRegion().isEmpty()) << caption.toStdString();
        }
        window.run([&] { screen.cmdCancel_Click(); });
    }
}

TEST(RegisterWindowLarge, GridOfAHundredThousandEntriesScrollsToItsEnd) {
    brenlow::test::ensure_qt_app();
    brenlow::test::TempDatabase temp(store::Backend::sqlite);
    const auto folder = std::filesystem::path(temp.url().substr(7)).parent_path();
    auto base = std::make_shared<suite::BaseServices>(temp.open_another(), folder.string(),
                                                      store::reference_data_dir());
    base->create_client_year("C001", 2025, "ACME", 1);
    frame::Component component;
    component.base = base;
    component.log.set_exe_path(folder.string());
    {
        store::RegisterStore rs(temp.db(), "C001", 2025);
        store::Transaction tx(temp.db());
        for (int i = 0; i < 100000; ++i) {
            store::OpeningRow o;
            o.IdFAGM = 1;
            o.Part = "ASSET " + std::to_string(i + 1);
            o.CostWdv = 1000 + i;
            rs.insert_opening(o);
        }
        tx.commit();
    }
    RegisterWindow window(component);
    window.show();
    QApplication::processEvents();
    auto* view = window.findChild<GridView*>("vsO");
    ASSERT_EQ(view->model()->rowCount(), 100000);
    view->scrollToBottom();
    QApplication::processEvents();
    const int last_shown = view->rowAt(view->viewport()->height() - 2);
    EXPECT_GE(last_shown, 99990);
    EXPECT_EQ(view->model()->index(99999, 3).data().toString(), "ASSET 100000");
    // Only the pages shown were read: the first screen's and the last one's.
    EXPECT_LE(window.screen().vsO.source_fetches(), 4);
    EXPECT_TRUE(brenlow::test::save_picture(window, "register_100000_at_the_end"));
    component.base.reset();
}

}  // namespace

BRENLOW_INSTANTIATE_BACKENDS(RegisterWindowTest);

}  // namespace brenlow::ui
