// The picture review: every window of the desktop with a firm's and a company's data,
// drawn offscreen at the two common screen sizes and kept with the build's artifacts
// under review/, each checked for text cut short and for Alt keys answered twice.

#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>
#include <functional>
#include <sstream>

#include "app/cli/cli.h"
#include "app/tarrow/client_dialog.h"
#include "app/tarrow/host.h"
#include "register/frm_new_fatr.h"
#include "store/register_store.h"
#include "support/test_databases.h"
#include "ui/qt_app.h"
#include "ui/register_window.h"
#include "ui/window_review.h"

namespace brenlow::tarrow {
namespace {

const QSize kSizes[] = {{1366, 768}, {1920, 1080}};

class PictureReview : public brenlow::test::BackendTest {
protected:
    void SetUp() override {
        brenlow::test::ensure_qt_app();
        QStandardPaths::setTestModeEnabled(true);
        brenlow::test::BackendTest::SetUp();
        if (IsSkipped()) return;
        QSettings().clear();
        make_sample_data();
        // Every question is answered Yes; any other modal window goes to `on_modal`.
        QObject::connect(&modal_timer_, &QTimer::timeout, [this] {
            QWidget* modal = QApplication::activeModalWidget();
            if (!modal) return;
            if (auto* box = qobject_cast<QMessageBox*>(modal)) {
                box->done(box->buttons().size() > 1 ? QMessageBox::Yes : QMessageBox::Ok);
                return;
            }
            if (on_modal_ && !in_modal_) {
                in_modal_ = true;
                on_modal_(*modal);
                in_modal_ = false;
            }
        });
        modal_timer_.start(20);
    }
    void TearDown() override {
        QSettings().clear();
        brenlow::test::BackendTest::TearDown();
    }

    void cli(const std::vector<std::string>& args) {
        std::vector<std::string> all = {"--db", temp().url()};
        all.insert(all.end(), args.begin(), args.end());
        std::ostringstream out, err;
        ASSERT_EQ(cli::run(all, out, err), 0) << err.str();
    }

    // The demonstration company (DEMO01) with its register and schedules, and a firm
    // (FIRM1) with partners and a register of long names, a sale and lakhs of rupees.
    void make_sample_data() {
        cli({"demo", "--out", dir_.path().toStdString()});
        for (const char* c : {"TATA STEEL LTD", "ACME COMPONENTS PVT LTD", "GOVERNMENT OF INDIA"})
            cli({"schedules", "company", "add", "--name", c, "--yes"});
        cli({"schedules", "import", BRENLOW_TEST_FILES_DIR "/schedules-year.json", "--client", "DEMO01",
             "--year", "2025"});
        cli({"init", "--client", "FIRM1", "--year", "2025", "--name", "SHAH AND MEHTA ASSOCIATES", "--status",
             "2"});
        cli({"capital", "partners", "--client", "FIRM1", "--add", "ANIL K SHAH"});
        cli({"capital", "partners", "--client", "FIRM1", "--add", "BINA MEHTA"});
        cli({"capital", "ratios", "--client", "FIRM1", "--year", "2025", "1=50", "2=50", "--yes"});
        cli({"capital", "share", "--client", "FIRM1", "--year", "2025", "--net-profit", "18,34,420",
             "--yes"});
        HostWindow probe;
        ASSERT_TRUE(probe.open_database(QString::fromStdString(temp().url())));
        auto& db = probe.base()->dbobj();
        store::RegisterStore rs(db, "FIRM1", 2025);
        rs.ensure_tables();
        long plant = 0;
        for (const auto& g : store::asset_groups_of_year(db, 2025))
            if (g.Part == "PLANT AND MACHINERY") plant = g.SrNoFAGM;
        ASSERT_NE(plant, 0);
        store::OpeningRow o;
        o.IdFAGM = plant;
        o.Part = "CNC MACHINING CENTRE (NEW SHED)";
        o.PutDate = "01/04/2019";
        o.CostWdv = 4000000;
        o.OpDepr = 1250000;
        o.ResValue = 200000;
        o.LifeYrs = 15;
        o.RateFACL = 18.10;
        o.WdvIT = 2750000;
        o.RateIT = 15;
        o.SaleDate = "15/09/2024";
        o.SaleAmt = 1834420;
        rs.insert_opening(o);
        store::AdditionRow a;
        a.IdFAGM = plant;
        a.Part = "HYDRAULIC PRESS BRAKE 250 TON";
        a.PutDate = "05/10/2024";
        a.AccDate = "05/10/2024";
        a.PurAmt = 850000;
        a.ResValue = 42500;
        a.LifeYrs = 15;
        a.RateFACL = 18.10;
        a.RateIT = 15;
        rs.insert_addition(a);
    }

    // Pictures at both sizes, and what the review finds at each.
    void review(QWidget& window, const std::string& name) {
        for (const QSize size : kSizes) {
            if (GetParam() == store::Backend::sqlite) {
                EXPECT_TRUE(brenlow::test::save_picture_at(window, name, size)) << name;
            } else {
                window.resize(size);
                QApplication::processEvents();
            }
            const std::string at =
                name + " at " + std::to_string(size.width()) + "x" + std::to_string(size.height());
            // The window fits the screen (what cannot fit scrolls inside it).
            EXPECT_LE(window.width(), size.width()) << at;
            EXPECT_LE(window.height(), size.height()) << at;
            EXPECT_EQ(brenlow::test::cut_texts(window), std::vector<std::string>{}) << at;
            EXPECT_EQ(brenlow::test::shared_mnemonics(window), std::vector<std::string>{}) << at;
        }
    }

    void review_screen(HostWindow& host, const QString& screen, const std::string& name) {
        QPointer<QWidget> window = host.open_by_name(screen);
        ASSERT_NE(window, nullptr) << name;
        QApplication::processEvents();
        review(*window, name);
        window->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    QTemporaryDir dir_;
    QTimer modal_timer_;
    std::function<void(QWidget&)> on_modal_;
    bool in_modal_ = false;
};

TEST_P(PictureReview, TheMainWindowAndTheClientPickerReadWhole) {
    HostWindow host;
    host.show();
    ASSERT_TRUE(host.open_database(QString::fromStdString(temp().url())));
    host.first_start();
    review(host, "main-window-clients");
    ASSERT_TRUE(host.open_client_year("DEMO01", 2025, false));
    review(host, "main-window");
    ClientDialog picker(store::list_client_years(host.base()->dbobj()), 2025, &host);
    picker.show();
    review(picker, "client-picker");
}

TEST_P(PictureReview, TheCompanysWindowsReadWhole) {
    HostWindow host;
    host.show();
    ASSERT_TRUE(host.open_database(QString::fromStdString(temp().url())));
    ASSERT_TRUE(host.open_client_year("DEMO01", 2025, false));
    review_screen(host, "register", "register-company");
    review_screen(host, "schedules", "schedules-company");
    review_screen(host, "fixed-schedule", "fixed-asset-schedule-company");
    review_screen(host, "groups", "asset-group-master");
    review_screen(host, "company-blocks", "company-block-master");
    review_screen(host, "income-tax-blocks", "income-tax-block-master");
    review_screen(host, "particulars", "particulars-master");
}

TEST_P(PictureReview, TheFirmsWindowsReadWhole) {
    HostWindow host;
    host.show();
    ASSERT_TRUE(host.open_database(QString::fromStdString(temp().url())));
    ASSERT_TRUE(host.open_client_year("FIRM1", 2025, false));
    review_screen(host, "register", "register-firm");
    review_screen(host, "capital", "capital-firm");
    review_screen(host, "capital-ledger", "capital-ledger-master");
    review_screen(host, "schedules", "schedules-firm");
}

// The entry panel of an opening entry, both halves, and the print preview of the chart.
TEST_P(PictureReview, TheEntryPanelAndThePrintPreviewReadWhole) {
    HostWindow host;
    host.show();
    ASSERT_TRUE(host.open_database(QString::fromStdString(temp().url())));
    ASSERT_TRUE(host.open_client_year("FIRM1", 2025, false));
    QPointer<QWidget> window = host.open_by_name("register");
    auto* reg = qobject_cast<ui::RegisterWindow*>(window.data());
    ASSERT_NE(reg, nullptr);
    QApplication::processEvents();
    reg->run([&] {
        reg->screen().vsO_Row = reg->screen().vsO.fixed_rows();
        reg->screen().cmdEditO_Click();
    });
    ASSERT_TRUE(reg->screen().Entering());
    review(*reg, "entry-panel-opening");
    reg->run([&] { reg->screen().cmdCancel_Click(); });
    reg->run([&] {
        reg->screen().vsA_Row = reg->screen().vsA.fixed_rows();
        reg->screen().cmdEditA_Click();
    });
    review(*reg, "entry-panel-addition");
    reg->run([&] { reg->screen().cmdCancel_Click(); });

    // The calculation's reports show in the print preview, a modal window of its own:
    // the first is looked at, each is closed.
    bool previewed = false;
    on_modal_ = [&](QWidget& modal) {
        if (!previewed) review(modal, "print-preview");
        previewed = true;
        modal.close();
    };
    reg->run([&] { reg->screen().cmdDeprCalc_Click(); });
    on_modal_ = nullptr;
    EXPECT_TRUE(previewed);
    window->close();
}

}  // namespace

BRENLOW_INSTANTIATE_BACKENDS(PictureReview);

}  // namespace brenlow::tarrow
