// The line edit must behave as the field's logic says when real key events arrive,
// including Tab, which Qt would otherwise use to move the focus on its own.
#include "ui/vtxt_edit.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <QWidget>

#include "support/scripted_ui.h"
#include "ui/qt_app.h"

namespace brenlow {
namespace {

class VTxtEditTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { test::ensure_qt_app(); }

    void SetUp() override {
        auto* layout = new QVBoxLayout(&window);
        edit = new VTxtEdit(ui, &window);
        next = new VTxtEdit(ui, &window);
        layout->addWidget(edit);
        layout->addWidget(next);
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        edit->setFocus();
        ASSERT_TRUE(edit->hasFocus());
    }

    test::ScriptedUi ui;
    QWidget window;
    VTxtEdit* edit = nullptr;
    VTxtEdit* next = nullptr;
};

TEST_F(VTxtEditTest, TypesLettersAsCapitals) {
    edit->field().set_ValidateData(vTXT::kLetters);
    QTest::keyClicks(edit, "plant m");
    EXPECT_EQ(edit->text(), "PLANT M");
    EXPECT_TRUE(ui.messages().empty());
}

TEST_F(VTxtEditTest, TextOfAnyScriptGoesToTheFieldAsUtf8AndComesBackWhole) {
    edit->set_MaxLength(100);
    // QTest types ASCII only: the other characters come as a keyboard layout sends them.
    for (const char32_t c : QString::fromUtf8("caf\xc3\xa9 \xe0\xa4\xae").toUcs4()) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString::fromUcs4(&c, 1));
        QApplication::sendEvent(edit, &press);
    }
    EXPECT_EQ(edit->text(), QString::fromUtf8("CAF\xc3\x89 \xe0\xa4\xae"));
    EXPECT_EQ(edit->field().text(), "CAF\xc3\x89 \xe0\xa4\xae");
    edit->setText(QString::fromUtf8("\xf0\x9f\x9a\x9c LATHE"));
    edit->setCursorPosition(2);  // after the emoji, two UTF-16 units
    QTest::keyClick(edit, Qt::Key_Backspace);
    EXPECT_EQ(edit->text(), " LATHE");
    EXPECT_EQ(edit->field().text(), " LATHE");
    EXPECT_EQ(edit->cursorPosition(), 0);
}

TEST_F(VTxtEditTest, RefusesALetterInANumberFieldWithItsMessage) {
    edit->field().set_ValidateData(vTXT::kWholeNumber);
    QTest::keyClicks(edit, "12a3");
    EXPECT_EQ(edit->text(), "123");
    ui.expect_message("Enter Numeric value");
    ui.expect_nothing_more();
}

TEST_F(VTxtEditTest, InsertsAtTheCaretAndReplacesTheSelection) {
    edit->field().set_ValidateData(vTXT::kDecimal);
    QTest::keyClicks(edit, "1250");
    QTest::keyClick(edit, Qt::Key_Left);
    QTest::keyClick(edit, Qt::Key_Left);
    QTest::keyClick(edit, Qt::Key_Period);
    EXPECT_EQ(edit->text(), "12.50");
    QTest::keyClick(edit, Qt::Key_Period);  // a second point
    ui.expect_message("Enter Numeric value");
    edit->setSelection(0, 2);
    QTest::keyClicks(edit, "9");
    EXPECT_EQ(edit->text(), "9.50");
    QTest::keyClick(edit, Qt::Key_Backspace);
    EXPECT_EQ(edit->text(), ".50");
    ui.expect_nothing_more();
}

TEST_F(VTxtEditTest, KeepsTheFocusWhenTabFindsABadDate) {
    edit->field().set_ValidateData(vTXT::kDateShort);
    QTest::keyClicks(edit, "31-13-15");
    QTest::keyClick(edit, Qt::Key_Tab);
    ui.expect_message("Not a valid date");
    EXPECT_TRUE(edit->hasFocus());
    EXPECT_EQ(edit->text(), "31-13-15");
}

TEST_F(VTxtEditTest, MovesOnWithTabWhenTheDateIsGood) {
    edit->field().set_ValidateData(vTXT::kDateShort);
    QTest::keyClicks(edit, "31/12/15");
    QTest::keyClick(edit, Qt::Key_Tab);
    EXPECT_TRUE(next->hasFocus());
    ui.expect_nothing_more();
}

TEST_F(VTxtEditTest, RaisesEnterAndMovesOn) {
    QSignalSpy entered(edit, &VTxtEdit::enterPressed);
    edit->field().set_ValidateData(vTXT::kWholeNumber);
    QTest::keyClicks(edit, "15");
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_EQ(entered.count(), 1);
    EXPECT_TRUE(next->hasFocus());
}

TEST_F(VTxtEditTest, StopsAtMaxLength) {
    edit->set_MaxLength(4);
    QTest::keyClicks(edit, "abcdef");
    EXPECT_EQ(edit->text(), "ABCD");
}

}  // namespace
}  // namespace brenlow
