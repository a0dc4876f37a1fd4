// The desktop host with a client's year open: the register it opens closes on its
// own Back and leaves the host running.

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QSpinBox>
#include <QStandardPaths>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <string>
#include <vector>

#include "app/tarrow/client_dialog.h"
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
        QSettings().clear();
    }
    void TearDown() override {
        QSettings().clear();
        brenlow::test::BackendTest::TearDown();
    }
};

// Every message box that opens while it lives is noted and closed.
class BoxWatch {
public:
    BoxWatch() {
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                texts_.push_back(box->text().toStdString());
                box->done(QMessageBox::Ok);
            }
        });
        timer_.start(10);
    }
    const std::vector<std::string>& texts() const { return texts_; }

private:
    QTimer timer_;
    std::vector<std::string> texts_;
};

// A client remembered from another database (the demonstration's) is no error on
// this one: the window offers to make the first client instead, and makes it with
// the status chosen by name.
TEST_P(HostWindowTest, FirstStartOnAnEmptyDatabaseOffersToCreateAClient) {
    QSettings().setValue("client/code", "DEMO01");
    QSettings().setValue("client/year", 2025);
    HostWindow host;
    host.show();
    ASSERT_TRUE(host.open_database(QString::fromStdString(temp().url())));
    BoxWatch boxes;
    host.first_start();
    QApplication::processEvents();
    EXPECT_EQ(boxes.texts(), std::vector<std::string>{});
    EXPECT_FALSE(host.base()->client_year().has_value());
    ClientPanel* panel = host.client_panel();
    ASSERT_TRUE(panel->isVisible());
    EXPECT_TRUE(panel->offers_creation_only());
    EXPECT_FALSE(panel->list()->isVisible());
    EXPECT_TRUE(panel->code_field()->isVisible());

    panel->code_field()->setText("shah1");
    panel->name_field()->setText("Shah and Mehta");
    panel->year_field()->setValue(2025);
    panel->status_field()->setCurrentIndex(panel->status_field()->findText("Partnership Firm"));
    QTest::mouseClick(panel->create_button(), Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_EQ(boxes.texts(), std::vector<std::string>{});
    ASSERT_TRUE(host.base()->client_year().has_value());
    EXPECT_EQ(host.base()->client_year()->code_no, "SHAH1");
    EXPECT_EQ(host.base()->client_year()->client_name, "SHAH AND MEHTA");
    EXPECT_EQ(host.base()->client_year()->status, 2);
    EXPECT_FALSE(panel->isVisible());
    EXPECT_EQ(QSettings().value("client/code").toString(), "SHAH1");
    EXPECT_TRUE(host.windowTitle().contains("SHAH1"));
    if (GetParam() == store::Backend::sqlite) {
        host.resize(1366, 768);
        QApplication::processEvents();
        EXPECT_TRUE(brenlow::test::save_picture(host, "first_start_created"));
    }
}

// On a database with clients but without the one remembered, the list is shown with
// each client's status by name, the status column whole beside the scroll bar.
TEST_P(HostWindowTest, FirstStartWithoutTheRememberedClientListsTheClients) {
    QSettings().setValue("client/code", "DEMO01");
    QSettings().setValue("client/year", 2025);
    HostWindow host;
    host.show();
    ASSERT_TRUE(host.open_database(QString::fromStdString(temp().url())));
    store::create_client_year(host.base()->dbobj(), "ACME", 2025, "ACME ENGINEERING LTD", 3);
    store::create_client_year(host.base()->dbobj(), "FIRM1", 2025, "SHAH AND MEHTA", 2);
    BoxWatch boxes;
    host.first_start();
    host.resize(1366, 768);
    QApplication::processEvents();
    EXPECT_EQ(boxes.texts(), std::vector<std::string>{});
    ClientPanel* panel = host.client_panel();
    ASSERT_TRUE(panel->isVisible());
    EXPECT_FALSE(panel->offers_creation_only());
    QTableWidget* list = panel->list();
    ASSERT_EQ(list->rowCount(), 2);
    std::vector<std::string> statuses;
    for (int r = 0; r < list->rowCount(); ++r) statuses.push_back(list->item(r, 3)->text().toStdString());
    std::sort(statuses.begin(), statuses.end());
    EXPECT_EQ(statuses, (std::vector<std::string>{"Company", "Partnership Firm"}));
    const QFontMetrics metrics(list->font());
    for (int r = 0; r < list->rowCount(); ++r)
        EXPECT_GE(list->columnWidth(3), metrics.horizontalAdvance(list->item(r, 3)->text()));
    EXPECT_LE(list->columnViewportPosition(3) + list->columnWidth(3), list->viewport()->width());
    if (GetParam() == store::Backend::sqlite) {
        EXPECT_TRUE(brenlow::test::save_picture(host, "first_start_list"));
    }

    // Opening one from the list shows its status by name.
    list->selectRow(1);
    const std::string code = list->item(1, 0)->text().toStdString();
    for (auto* b : panel->findChildren<QPushButton*>())
        if (b->text() == "&Open") QTest::mouseClick(b, Qt::LeftButton);
    QApplication::processEvents();
    ASSERT_TRUE(host.base()->client_year().has_value());
    EXPECT_EQ(host.base()->client_year()->code_no, code);
    EXPECT_FALSE(panel->isVisible());
}

// With the client used last still in the database, the window opens it.
TEST_P(HostWindowTest, FirstStartOpensTheClientUsedLast) {
    HostWindow host;
    ASSERT_TRUE(host.open_database(QString::fromStdString(temp().url())));
    store::create_client_year(host.base()->dbobj(), "ACME", 2025, "ACME ENGINEERING LTD", 3);
    store::create_client_year(host.base()->dbobj(), "FIRM1", 2025, "SHAH AND MEHTA", 2);
    QSettings().setValue("client/code", "FIRM1");
    QSettings().setValue("client/year", 2025);
    BoxWatch boxes;
    host.first_start();
    EXPECT_EQ(boxes.texts(), std::vector<std::string>{});
    ASSERT_TRUE(host.base()->client_year().has_value());
    EXPECT_EQ(host.base()->client_year()->code_no, "FIRM1");
    EXPECT_FALSE(host.client_panel()->isVisibleTo(&host));
}

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
    QPushButton* export_xls = find_button(*reg, "E&xport to Excel");
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
