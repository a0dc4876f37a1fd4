// The kind of assessee on the desktop: picked when the first client is made, shown
// and changed for the open client, and a client without one working from its status.

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QSpinBox>
#include <QStandardPaths>
#include <QTest>

#include "app/tarrow/client_dialog.h"
#include "app/tarrow/host.h"
#include "store/client_store.h"
#include "support/test_databases.h"
#include "ui/qt_app.h"

namespace brenlow::tarrow {
namespace {

class ClientKindTest : public brenlow::test::BackendTest {
protected:
    void SetUp() override {
        brenlow::test::ensure_qt_app();
        QStandardPaths::setTestModeEnabled(true);
        brenlow::test::BackendTest::SetUp();
        QSettings().clear();
    }
    void TearDown() override {
        QSettings().clear();
        brenlow::test::BackendTest::TearDown();
    }
};

QStringList texts(const QComboBox* box) {
    QStringList out;
    for (int i = 0; i < box->count(); ++i) out << box->itemText(i);
    return out;
}

// The first client is made with its kind: the kind follows the status as it is
// chosen, then a co-operative society is picked and kept.
TEST_P(ClientKindTest, TheFirstClientIsMadeWithTheKindPicked) {
    HostWindow host;
    host.show();
    ASSERT_TRUE(host.open_database(QString::fromStdString(temp().url())));
    host.first_start();
    ClientPanel* panel = host.client_panel();
    QComboBox* kind = panel->kind_field();
    ASSERT_NE(kind, nullptr);
    EXPECT_TRUE(kind->isVisible());
    EXPECT_EQ(texts(kind), (QStringList{"Individual", "Hindu Undivided Family", "Partnership Firm",
                                        "Limited Liability Partnership", "Association of Persons",
                                        "Body of Individuals", "Artificial Juridical Person", "Company",
                                        "Co-operative Society", "Local Authority", "Other"}));
    EXPECT_EQ(kind->currentText(), "Individual");
    panel->status_field()->setCurrentIndex(panel->status_field()->findText("Company"));
    EXPECT_EQ(kind->currentText(), "Company");
    kind->setCurrentIndex(kind->findText("Co-operative Society"));
    panel->status_field()->setCurrentIndex(panel->status_field()->findText("Individual / Proprietor"));
    EXPECT_EQ(kind->currentText(), "Co-operative Society");

    panel->code_field()->setText("coop1");
    panel->name_field()->setText("Kisan Sahakari Mandali");
    panel->year_field()->setValue(2025);
    QTest::mouseClick(panel->create_button(), Qt::LeftButton);
    QApplication::processEvents();
    ASSERT_TRUE(host.base()->client_year().has_value());
    EXPECT_EQ(host.base()->client_year()->status, 1);
    EXPECT_EQ(store::recorded_assessee_kind(host.base()->dbobj(), "COOP1"), AssesseeKind::CoopSociety);
}

// A client made without touching the kind records none and keeps following its status.
TEST_P(ClientKindTest, AClientMadeWithTheKindOfItsStatusRecordsNone) {
    HostWindow host;
    host.show();
    ASSERT_TRUE(host.open_database(QString::fromStdString(temp().url())));
    host.first_start();
    ClientPanel* panel = host.client_panel();
    panel->code_field()->setText("FIRM2");
    panel->status_field()->setCurrentIndex(panel->status_field()->findText("Partnership Firm"));
    EXPECT_EQ(panel->kind_field()->currentText(), "Partnership Firm");
    QTest::mouseClick(panel->create_button(), Qt::LeftButton);
    QApplication::processEvents();
    ASSERT_TRUE(host.base()->client_year().has_value());
    EXPECT_EQ(store::recorded_assessee_kind(host.base()->dbobj(), "FIRM2"), std::nullopt);
    EXPECT_EQ(store::assessee_kind_of_client(host.base()->dbobj(), "FIRM2", 2), AssesseeKind::Firm);
}

// The open client's details show its kind as its status makes it until one is saved;
// Save records the kind picked, Cancel leaves the client as it was.
TEST_P(ClientKindTest, TheClientDetailsShowAndChangeTheKind) {
    HostWindow host;
    ASSERT_TRUE(host.open_database(QString::fromStdString(temp().url())));
    ASSERT_TRUE(host.open_client_year("FAM1", 2025, true, "KUMAR FAMILY", 1));
    auto& db = host.base()->dbobj();
    {
        ClientKindDialog dialog(db, *host.base()->client_year());
        EXPECT_EQ(dialog.kind_field()->currentText(), "Individual");
        EXPECT_EQ(dialog.kind_from()->text(), "(As per Status)");
        dialog.kind_field()->setCurrentIndex(dialog.kind_field()->findText("Hindu Undivided Family"));
        EXPECT_EQ(dialog.kind_from()->text(), "");
        dialog.reject();
    }
    EXPECT_EQ(store::recorded_assessee_kind(db, "FAM1"), std::nullopt);
    {
        ClientKindDialog dialog(db, *host.base()->client_year());
        dialog.kind_field()->setCurrentIndex(dialog.kind_field()->findText("Hindu Undivided Family"));
        QTest::mouseClick(dialog.save_button(), Qt::LeftButton);
        EXPECT_EQ(dialog.result(), QDialog::Accepted);
    }
    EXPECT_EQ(store::recorded_assessee_kind(db, "FAM1"), AssesseeKind::HUF);
    ClientKindDialog again(db, *host.base()->client_year());
    EXPECT_EQ(again.kind_field()->currentText(), "Hindu Undivided Family");
    EXPECT_EQ(again.kind_from()->text(), "");
    if (GetParam() == store::Backend::sqlite) {
        again.show();
        QApplication::processEvents();
        EXPECT_TRUE(brenlow::test::save_picture(again, "client_details"));
    }
}

}  // namespace

BRENLOW_INSTANTIATE_BACKENDS(ClientKindTest);

}  // namespace brenlow::tarrow
