// The desktop's Final Accounts menu prints the notes to the accounts of the open year
// through the report object (the print preview, whence the person saves the file).

#include <gtest/gtest.h>

#include <QAction>
#include <QMenuBar>
#include <QSettings>
#include <QStandardPaths>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "app/cli/cli.h"
#include "app/tarrow/host.h"
#include "support/test_databases.h"
#include "ui/qt_app.h"

namespace brenlow::tarrow {
namespace {

class NotesMenuTest : public brenlow::test::BackendTest {
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
    void cli(std::vector<std::string> words) {
        words.insert(words.begin(), {"--db", temp().url()});
        std::ostringstream out, err;
        ASSERT_EQ(cli::run(words, out, err), 0) << err.str();
    }
};

QAction* menu_action(HostWindow& host, const QString& text) {
    for (auto* menu : host.menuBar()->findChildren<QMenu*>())
        for (auto* a : menu->actions())
            if (a->text() == text) return a;
    return nullptr;
}

TEST_P(NotesMenuTest, FinalAccountsPrintsThePpeNoteAndTheDeferredTaxOfTheOpenYear) {
    cli({"init", "--client", "CO", "--year", "2025", "--name", "CO LTD", "--status", "3"});
    cli({"masters", "group", "add", "--client", "CO", "--year", "2025", "--name", "PLANT", "--it-block",
         "3-15", "--books-block", "-1", "--classification", "4.1", "--yes"});
    cli({"register", "add-addition", "--client", "CO", "--year", "2025", "--group", "1", "--part", "LATHE",
         "--put-date", "12/06/2024", "--acc-date", "12/06/2024", "--cost", "4,50,000", "--yes"});
    HostWindow host;
    ASSERT_TRUE(host.open_database(QString::fromStdString(temp().url())));
    ASSERT_TRUE(host.open_client_year("CO", 2025, false));
    std::vector<Ostikreport::ReportDocument> shown;
    host.forms()->component().report->set_viewer(
        [&](const Ostikreport::ReportDocument& d) { shown.push_back(d); });

    QAction* ppe = menu_action(host, "&Property, Plant and Equipment Note");
    QAction* tax = menu_action(host, "&Deferred Tax on Depreciation");
    ASSERT_NE(ppe, nullptr);
    ASSERT_NE(tax, nullptr);
    ppe->trigger();
    tax->trigger();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[0].titles[0], "PROPERTY, PLANT AND EQUIPMENT");
    EXPECT_EQ(shown[0].rows[1][0], "Plant and Equipment");
    EXPECT_EQ(shown[0].rows[1][2], "4,50,000.00");
    EXPECT_EQ(shown[1].titles[0], "DEFERRED TAX ON DEPRECIATION");
    EXPECT_EQ(shown[1].notes[0].rfind("Effective rate: company, 25% up to 1 crore, 26.000%", 0), 0u);
}

BRENLOW_INSTANTIATE_BACKENDS(NotesMenuTest);

}  // namespace
}  // namespace brenlow::tarrow
