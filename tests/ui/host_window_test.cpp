// The desktop host with a client's year open: the register it opens closes on its
// own Back and leaves the host running.

#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QStandardPaths>
#include <QTest>
#include <QTimer>

#include "app/tarrow/host.h"
#include "support/test_databases.h"
#include "ui/qt_app.h"

namespace brenlow::tarrow {
namespace {

class HostWindowTest : public brenlow::test::BackendTest {
protected:
    void SetUp() override {
        brenlow::test::ensure_qt_app();
        // The host remembers the last database and client; not in the person's own settings.
        QStandardPaths::setTestModeEnabled(true);
        brenlow::test::BackendTest::SetUp();
    }
};

QPushButton* find_button(QWidget& w, const QString& caption) {
    for (auto* b : w.findChildren<QPushButton*>())
        if (b->text() == caption) return b;
    return nullptr;
}

TEST_P(HostWindowTest, BackOnTheRegisterClosesTheRegisterOnly) {
    HostWindow host;
    host.show();
    ASSERT_TRUE(host.open_database(QString::fromStdString(temp().url())));
    ASSERT_TRUE(host.open_client_year("C001", 2025, true, "ACME ENGINEERS", 1));
    QPointer<QWidget> reg = host.open_by_name("register");
    ASSERT_NE(reg, nullptr);
    QApplication::processEvents();
    ASSERT_TRUE(reg->isVisible());
    QPushButton* back = find_button(*reg, "&Back");
    ASSERT_NE(back, nullptr);
    QTest::mouseClick(back, Qt::LeftButton);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();
    EXPECT_TRUE(reg.isNull() || !reg->isVisible());
    EXPECT_TRUE(host.isVisible());
    // The host still opens screens after the register has gone.
    QPointer<QWidget> again = host.open_by_name("register");
    ASSERT_NE(again, nullptr);
    EXPECT_TRUE(again->isVisible());
    again->close();
}

// Forms keeps one capital screen: a second window shows the same one, read again
// for the open year; the ledger master opens beside it.
TEST_P(HostWindowTest, TheCapitalScreenIsOneAndTheLedgerMasterOpens) {
    HostWindow host;
    host.show();
    ASSERT_TRUE(host.open_database(QString::fromStdString(temp().url())));
    ASSERT_TRUE(host.open_client_year("FIRM", 2025, true, "SHAH AND CO", 2));
    QPointer<QWidget> first = host.open_by_name("capital");
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->windowTitle(), "CAPITAL SCHEDULE - SHAH AND CO");
    const auto screen = host.forms()->ObjCapital();
    first->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QPointer<QWidget> second = host.open_by_name("capital");
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(host.forms()->ObjCapital(), screen);
    second->close();
    QPointer<QWidget> ledger = host.open_by_name("capital-ledger");
    ASSERT_NE(ledger, nullptr);
    EXPECT_EQ(ledger->windowTitle(), "Capital Ledger Master");
    ledger->close();
}

// The host hands the register its spreadsheet work: both buttons work, and an empty
// register says so before any file is asked for.
TEST_P(HostWindowTest, TheRegistersExcelButtonsAreHandedTheirWork) {
    HostWindow host;
    host.show();
    ASSERT_TRUE(host.open_database(QString::fromStdString(temp().url())));
    ASSERT_TRUE(host.open_client_year("C001", 2025, true, "ACME ENGINEERS", 3));
    QPointer<QWidget> reg = host.open_by_name("register");
    ASSERT_NE(reg, nullptr);
    QApplication::processEvents();
    QPushButton* export_xls = find_button(*reg, "&Export to Excel");
    QPushButton* import_xls = find_button(*reg, "&Import from Excel");
    ASSERT_NE(export_xls, nullptr);
    ASSERT_NE(import_xls, nullptr);
    EXPECT_TRUE(export_xls->isEnabled());
    EXPECT_TRUE(import_xls->isEnabled());
    if (GetParam() == store::Backend::sqlite) {
        reg->resize(1280, 800);
        QApplication::processEvents();
        EXPECT_TRUE(brenlow::test::save_picture(*reg, "register_excel_buttons"));
    }
    std::string shown;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            shown = box->text().toStdString();
            box->button(QMessageBox::Ok)->click();
        }
    });
    timer.start(20);
    QTest::mouseClick(export_xls, Qt::LeftButton);
    timer.stop();
    EXPECT_EQ(shown, "No Asset !");
    reg->close();
}

}  // namespace

BRENLOW_INSTANTIATE_BACKENDS(HostWindowTest);

}  // namespace brenlow::tarrow
