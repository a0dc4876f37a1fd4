#include "ui/qt_ui.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <functional>

#include "ui/qt_app.h"

namespace brenlow {
namespace {

class QtUiTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { test::ensure_qt_app(); }

    // Runs `answer` on the modal box once it is up.
    static void when_shown(std::function<void(QWidget*)> answer) {
        QTimer::singleShot(0, [answer] {
            QWidget* box = QApplication::activeModalWidget();
            ASSERT_NE(box, nullptr) << "no box was shown";
            answer(box);
        });
    }
};

TEST_F(QtUiTest, ShowsAMessageWithItsIconTitleAndOnlyAnOkButton) {
    QWidget window;
    QtUi ui(&window);
    QMessageBox::Icon icon = QMessageBox::Critical;
    QString title, text;
    QMessageBox::StandardButtons buttons;
    when_shown([&](QWidget* w) {
        auto* box = qobject_cast<QMessageBox*>(w);
        ASSERT_NE(box, nullptr);
        icon = box->icon();
        title = box->windowTitle();
        text = box->text();
        buttons = box->standardButtons();
        box->button(QMessageBox::Ok)->click();
    });
    ui.message("Enter Numeric value", MsgIcon::none, "Tarrow");
    EXPECT_EQ(icon, QMessageBox::NoIcon);
    EXPECT_EQ(title, "Tarrow");
    EXPECT_EQ(text, "Enter Numeric value");
    EXPECT_EQ(buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
}

TEST_F(QtUiTest, AsksYesNoWithNoAsTheDefaultOfADestructiveQuestion) {
    QWidget window;
    QtUi ui(&window);
    QAbstractButton* default_button = nullptr;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButton default_is = QMessageBox::NoButton;
    when_shown([&](QWidget* w) {
        auto* box = qobject_cast<QMessageBox*>(w);
        ASSERT_NE(box, nullptr);
        icon = box->icon();
        default_button = box->defaultButton();
        default_is = box->standardButton(default_button);
        box->button(QMessageBox::Yes)->click();
    });
    EXPECT_TRUE(
        ui.ask_yes_no("Do you really want to Delete all the 'Opening' Entries ?", MsgIcon::question, false));
    EXPECT_EQ(icon, QMessageBox::Question);
    EXPECT_EQ(default_is, QMessageBox::No);
}

TEST_F(QtUiTest, ReturnsTheInputTextOrNothingWhenCancelled) {
    QWidget window;
    QtUi ui(&window);
    when_shown([](QWidget* w) {
        auto* dialog = qobject_cast<QInputDialog*>(w);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->textValue(), "2016");
        dialog->setTextValue("2017");
        dialog->accept();
    });
    EXPECT_EQ(ui.input_box("Year", "", "2016"), "2017");
    when_shown([](QWidget* w) { qobject_cast<QDialog*>(w)->reject(); });
    EXPECT_EQ(ui.input_box("Year"), std::nullopt);
}

TEST(QtFileFilter, TurnsBarSeparatedPairsIntoDialogFilters) {
    EXPECT_EQ(qt_file_filter("Spreadsheet (*.xlsx)|*.xlsx"), "Spreadsheet (*.xlsx)");
    EXPECT_EQ(qt_file_filter("Excel Files|*.xls;*.xlsx|All Files|*.*"),
              "Excel Files (*.xls *.xlsx);;All Files (*.*)");
    EXPECT_EQ(qt_file_filter(""), "");
}

}  // namespace
}  // namespace brenlow
