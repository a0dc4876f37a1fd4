#include "ui/masters_windows.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QTest>
#include <QTimer>
#include <filesystem>

#include "masters/asset_group_master.h"
#include "masters/block_master.h"
#include "masters/particulars_master.h"
#include "store/seed.h"
#include "suite/base_services.h"
#include "support/component_fixture.h"
#include "support/scripted_ui.h"
#include "ui/grid_table_model.h"
#include "ui/masters_block_window.h"
#include "ui/masters_group_window.h"
#include "ui/masters_particulars_window.h"
#include "ui/qt_app.h"

namespace brenlow::ui::masters {
namespace {

namespace bm = brenlow::masters;

class MastersWindows : public brenlow::test::ComponentTest {
protected:
    void SetUp() override {
        brenlow::test::ensure_qt_app();
        brenlow::test::ComponentTest::SetUp();
        if (IsSkipped()) return;
    }

    // Real rows to look at: blocks of both kinds, groups and particulars, made
    // through the screens.
    void fill_masters() {
        for (const auto& [kind, name, nature] :
             std::vector<std::tuple<int, std::string, std::string>>{{1, "PLANT AND MACHINERY", ""},
                                                                    {1, "FURNITURE", ""},
                                                                    {1, "VEHICLES", ""},
                                                                    {2, "PLANT @ 15%", "3"},
                                                                    {2, "BUILDINGS @ 10%", "1"},
                                                                    {2, "COMPUTERS @ 40%", "3"}}) {
            bm::frmblockM blocks(component_, scripted_, kind);
            blocks.cmdaddded_Click();
            blocks.txtfields.set_text(name);
            blocks.Combo1.select_id(nature);
            blocks.cmdupdateded_Click();
        }
        bm::frmNewFAGM groups(component_, scripted_);
        for (const auto& [name, it, fa, cl] :
             std::vector<std::tuple<std::string, std::string, long, std::string>>{
                 {"LATHES AND PRESSES", "3-15", 1, "4.1"},
                 {"OFFICE FURNITURE", "2-10", 2, "-1"},
                 {"MOTOR CARS", "3-15", 3, "-1"},
                 {"GOODWILL", "-1", -1, "-1"}}) {
            groups.cmdAdd_Click();
            groups.txtfields.set_text(name);
            groups.choose_it_block(it);
            groups.choose_books_block(fa);
            groups.choose_classification(cl);
            if (fa > 0) groups.txtRateFA.set_text("13.91");
            groups.cmdUpdate_Click();
        }
        bm::frmfamaster parts(component_, scripted_);
        for (const auto& [name, method, books, it] :
             std::vector<std::tuple<std::string, std::string, std::string, std::string>>{
                 {"PLANT", "1", "1", "4"}, {"FURNITURE", "2", "2", "5"}, {"CARS", "1", "3", "4"}}) {
            parts.cmdaddded_Click();
            parts.txtfields[0].set_text(name);
            parts.txtfields[1].set_text("13.91");
            parts.txtfields[2].set_text("15");
            parts.Combo1.select_id(method);
            parts.Combo2.select_id(books);
            parts.Combo3.select_id(it);
            parts.cmdupdateded_Click();
        }
        scripted_.expect_nothing_more();
    }

    // Offscreen pictures for people to look at, from the SQLite run only.
    void save_picture(QWidget& window, const std::string& name) {
        if (GetParam() == store::Backend::sqlite) {
            EXPECT_TRUE(brenlow::test::save_picture(window, name));
        }
    }

    static void click_row(GridView* view, int model_row) {
        const QRect rect = view->visualRect(view->model()->index(model_row, 0));
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, rect.center());
    }
    static int model_row_with(GridView* view, int column, const QString& text) {
        for (int r = 0; r < view->model()->rowCount(); ++r)
            if (view->model()->index(r, column).data(Qt::EditRole).toString() == text) return r;
        return -1;
    }
    long long count(const std::string& where) {
        return db().query("select count(*) as n from " + where).first("n").as_int();
    }

    brenlow::test::ScriptedUi scripted_;
};

TEST_P(MastersWindows, TheIncomeTaxBlockMasterTakesATypedNameAndANatureAndListsTheBlock) {
    fill_masters();
    BlockMasterWindow window(component_, 2);
    window.show();
    EXPECT_EQ(window.windowTitle(), "Income Tax Block Master");
    EXPECT_EQ(window.vsf()->model()->rowCount(), 3);
    EXPECT_FALSE(window.txtfields()->isEnabled());
    QTest::mouseClick(window.cmdaddded(), Qt::LeftButton);
    EXPECT_TRUE(window.txtfields()->isEnabled());
    EXPECT_FALSE(window.cmdaddded()->isEnabled());
    QTest::keyClicks(window.txtfields(), "ships @ 20%");
    window.Combo1()->setCurrentIndex(window.Combo1()->findText("SHIPS"));
    QTest::mouseClick(window.cmdupdateded(), Qt::LeftButton);
    EXPECT_EQ(count("BlockGroup where GrpDesc='SHIPS @ 20%' and GrpType=2 and BlockNo=5"), 1);
    EXPECT_EQ(window.vsf()->model()->rowCount(), 4);
    EXPECT_TRUE(component_.masters_changed);
    save_picture(window, "masters_income_tax_block_master");
}

TEST_P(MastersWindows, TheCompanyBlockMasterHidesUnderBlock) {
    fill_masters();
    BlockMasterWindow window(component_, 1);
    window.show();
    EXPECT_EQ(window.windowTitle(), "Company Block Master");
    EXPECT_FALSE(window.Combo1()->isVisible());
    // Moving along the list shows each block.
    click_row(window.vsf(), 1);
    EXPECT_EQ(window.txtfields()->text(), "FURNITURE");
    save_picture(window, "masters_company_block_master");
}

TEST_P(MastersWindows, TheGroupMasterChoosesBlocksFromItsChoosersWithTheMouse) {
    fill_masters();
    GroupMasterWindow window(component_);
    window.show();
    EXPECT_EQ(window.vsM()->model()->rowCount(), 4);
    save_picture(window, "masters_asset_group_master");

    QTest::mouseClick(window.cmdAdd(), Qt::LeftButton);
    QTest::keyClicks(window.txtfields(), "dies and moulds");
    QTest::mouseClick(window.cmdBlockIT(), Qt::LeftButton);
    ASSERT_TRUE(window.vsIT()->isVisible());
    // A sub-entry sits under its block and chooses it.
    const int block = model_row_with(window.vsIT(), bm::frmNewFAGM::kColId, "3-15");
    ASSERT_GE(block, 0);
    window.vsIT()->scrollTo(window.vsIT()->model()->index(block + 1, 0));
    save_picture(window, "masters_asset_group_master_income_tax_chooser");
    click_row(window.vsIT(), block + 1);
    EXPECT_FALSE(window.vsIT()->isVisible());
    EXPECT_EQ(window.screen().BlockIdIT(), "3-15");
    EXPECT_EQ(window.findChildren<VTxtEdit*>().size(), 7u);

    window.screen().choose_books_block(-1);
    window.screen().choose_classification("4.1");
    QTest::mouseClick(window.cmdUpdate(), Qt::LeftButton);
    const auto g = db().query("select * from NewFAGM where Part='DIES AND MOULDS'");
    ASSERT_EQ(g.size(), 1u);
    EXPECT_EQ(g.first("BlockIdIT").as_text(), "3-15");
    EXPECT_DOUBLE_EQ(g.first("AddlRateIT").as_double(), 20);
    EXPECT_EQ(window.vsM()->model()->rowCount(), 5);
}

TEST_P(MastersWindows, TheBlockMasterEntryOpensTheCompanyBlockMasterAndTheChooserShowsTheNewBlock) {
    GroupMasterWindow window(component_);
    window.show();
    QTest::mouseClick(window.cmdAdd(), Qt::LeftButton);
    QTest::mouseClick(window.cmdBlockFA(), Qt::LeftButton);
    ASSERT_TRUE(window.vsFA()->isVisible());
    const int last = window.vsFA()->model()->rowCount() - 1;
    EXPECT_EQ(window.vsFA()->model()->index(last, bm::frmNewFAGM::kColNature).data().toString(),
              "(Add/Edit Block Master)");
    QString opened;
    QTimer::singleShot(0, [&] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        opened = dialog->windowTitle();
        auto* blocks = dialog->findChild<BlockMasterWindow*>();
        ASSERT_NE(blocks, nullptr);
        QTest::mouseClick(blocks->cmdaddded(), Qt::LeftButton);
        QTest::keyClicks(blocks->txtfields(), "moulds");
        QTest::mouseClick(blocks->cmdupdateded(), Qt::LeftButton);
        QTest::mouseClick(blocks->cmdback(), Qt::LeftButton);
    });
    click_row(window.vsFA(), last);
    EXPECT_EQ(opened, "Company Block Master");
    EXPECT_GE(model_row_with(window.vsFA(), bm::frmNewFAGM::kColNature, "MOULDS"), 0);
    EXPECT_TRUE(window.vsFA()->isVisible());
}

TEST_P(MastersWindows, TheParticularsMasterSavesTheChosenMethodAndBlocks) {
    fill_masters();
    ParticularsMasterWindow window(component_);
    window.show();
    EXPECT_EQ(window.vsf()->model()->rowCount(), 3);
    save_picture(window, "masters_particulars_master");
    QTest::mouseClick(window.cmdaddded(), Qt::LeftButton);
    EXPECT_EQ(window.Combo(2)->currentIndex(), -1);
    EXPECT_EQ(window.Combo(2)->placeholderText(), "(Select)");
    QTest::keyClicks(window.txtfields(0), "computers");
    QTest::keyClicks(window.txtfields(1), "40");
    window.Combo(1)->setCurrentIndex(window.Combo(1)->findText("WRITTEN DOWN VALUE"));
    window.Combo(3)->setCurrentIndex(window.Combo(3)->findText("COMPUTERS @ 40%"));
    QTest::mouseClick(window.cmdupdateded(), Qt::LeftButton);
    const auto p = db().query("select * from FAPart_Master where PartDesc='COMPUTERS'");
    ASSERT_EQ(p.size(), 1u);
    EXPECT_EQ(p.first("PartMeth").as_text(), "1");
    EXPECT_DOUBLE_EQ(p.first("RtCl").as_double(), 40);
    EXPECT_EQ(p.first("ClBlock").as_int(), 0);
    EXPECT_EQ(p.first("ITBlock").as_int(), 6);
}

TEST_P(MastersWindows, TheParticularsMasterIsEnteredFromTheKeyboardInScreenOrder) {
    fill_masters();
    ParticularsMasterWindow window(component_);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const auto type = [](const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); };
    const auto tab = [] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); };
    QTest::mouseClick(window.cmdaddded(), Qt::LeftButton);
    window.txtfields(0)->setFocus();
    type("computers");
    // Name, method, the two rates, the two blocks: as they stand on the screen.
    tab();
    EXPECT_EQ(QApplication::focusWidget(), window.Combo(1));
    type("W");
    EXPECT_EQ(window.Combo(1)->currentText(), "WRITTEN DOWN VALUE");
    EXPECT_EQ(QApplication::focusWidget(), window.Combo(1));
    tab();
    EXPECT_EQ(QApplication::focusWidget(), window.txtfields(1));
    type("40");
    tab();
    EXPECT_EQ(QApplication::focusWidget(), window.txtfields(2));
    tab();
    EXPECT_EQ(QApplication::focusWidget(), window.Combo(2));
    // Enter moves on from a combo box as from an entry field.
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), window.Combo(3));
    type("C");
    EXPECT_EQ(window.Combo(3)->currentText(), "COMPUTERS @ 40%");
    QTest::mouseClick(window.cmdupdateded(), Qt::LeftButton);
    const auto p = db().query("select * from FAPart_Master where PartDesc='COMPUTERS'");
    ASSERT_EQ(p.size(), 1u);
    EXPECT_EQ(p.first("PartMeth").as_text(), "1");
    EXPECT_DOUBLE_EQ(p.first("RtCl").as_double(), 40);
    EXPECT_EQ(p.first("ITBlock").as_int(), 6);
}

TEST_P(MastersWindows, TheMenuFunctionsMakeTheThreeWindows) {
    std::unique_ptr<QWidget> a(make_block_master_window(component_, 2, nullptr));
    std::unique_ptr<QWidget> b(make_group_master_window(component_, nullptr));
    std::unique_ptr<QWidget> c(make_particulars_master_window(component_, nullptr));
    EXPECT_EQ(a->windowTitle(), "Income Tax Block Master");
    EXPECT_EQ(b->windowTitle(), "Asset Group Master");
    EXPECT_EQ(c->windowTitle(), "Particulars Master");
}

BRENLOW_INSTANTIATE_BACKENDS(MastersWindows);

}  // namespace
}  // namespace brenlow::ui::masters
