#pragma once
// Client C001 with the financial years 2014-15 and 2015-16 (2016 open) on the backend
// of the test, the books and income-tax blocks the schedule chooses from, and helpers
// that write schedule rows the way the screen stores them.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "frame/component.h"
#include "schedules/fixed_asset_schedule.h"
#include "store/client_store.h"
#include "store/fixed_schedule_store.h"
#include "suite/base_services.h"
#include "support/scripted_ui.h"
#include "support/test_databases.h"

namespace brenlow::test {

class FixedScheduleTest : public BackendTest {
protected:
    static constexpr int kYear = 2016;
    static constexpr long kBooksPlant = 11;
    static constexpr long kItPlant = 21;      // nature 3
    static constexpr long kItFurniture = 22;  // nature 2

    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped()) return;
        dir_ =
            std::filesystem::temp_directory_path() / ("brenlow-fixed-" + std::to_string(::getpid()) + "-" +
                                                      std::to_string(reinterpret_cast<std::uintptr_t>(this)));
        std::filesystem::create_directories(dir_);
        base_ = std::make_shared<suite::BaseServices>(temp().open_another(), dir_.string(),
                                                      BRENLOW_TEST_DATA_DIR);
        base_->create_client_year("C001", kYear - 1, "ACME TRADERS", 2);
        base_->create_client_year("C001", kYear, "ACME TRADERS", 2);
        comp_.base = base_;
        comp_.log.set_exe_path(dir_.string());
        db().execute("INSERT INTO BlockGroup Values (" + std::to_string(kBooksPlant) +
                     ",'PLANT AND MACHINERY',1,0)");
        db().execute("INSERT INTO BlockGroup Values (" + std::to_string(kItPlant) +
                     ",'PLANT AND MACHINARY',2,3)");
        db().execute("INSERT INTO BlockGroup Values (" + std::to_string(kItFurniture) +
                     ",'FURNITURE AND FITTINGS',2,2)");
    }
    void TearDown() override {
        comp_.base.reset();
        base_.reset();
        if (!dir_.empty()) std::filesystem::remove_all(dir_);
        BackendTest::TearDown();
    }

    std::string suffix(int year) { return store::find_client_year(db(), "C001", year)->tbl_nm; }
    store::FixedScheduleStore schedule(int year = kYear) { return {db(), suffix(year), "C001"}; }

    // A particular as the screen would hold it: books WDV at `rate`, income tax at `it_rate`.
    static sched::FixedLine particular(const std::string& name, double cost, double dep, double rate,
                                       double wdv, double it_rate, long it_block = kItPlant) {
        sched::FixedLine l;
        l.row.PART_NM = name;
        l.row.OP_BAL = cost;
        l.row.op_bal_dep = dep;
        l.row.RATE_DEP = rate;
        l.row.method_id = 1;
        l.row.CGrpId = kBooksPlant;
        l.row.wdv = wdv;
        l.row.compit_rate = it_rate;
        l.row.IGrpId = it_block;
        return l;
    }
    static store::FdaRow addition(long srno, double amount, const std::string& date, bool addl = false) {
        store::FdaRow a;
        a.srno = srno;
        a.ad_ded_id = store::kFdaAddition;
        a.cost = amount;
        a.ad_date = date;
        a.dtpur = date;
        a.adddepapp = addl ? "1" : "0";
        return a;
    }
    static store::FdaRow deduction(long srno, double cost, double dep, double sale, const std::string& date,
                                   long src = 0) {
        store::FdaRow d;
        d.srno = srno;
        d.ad_ded_id = store::kFdaDeduction;
        d.cost = cost;
        d.dep = dep;
        d.AMT = sale;
        d.ad_date = date;
        d.src = src;
        return d;
    }

    // The screen over the open year, loaded.
    std::unique_ptr<sched::FixedAssetSchedule> open_screen() {
        auto s = std::make_unique<sched::FixedAssetSchedule>(comp_, ui_);
        EXPECT_TRUE(s->Form_Load());
        return s;
    }
    // Saves a schedule into `year` without any question (the trial balance agrees when
    // the test says nothing about it).
    void save_year(int year, std::vector<sched::FixedLine> lines) {
        base_->select_client_year("C001", year);
        auto s = std::make_unique<sched::FixedAssetSchedule>(comp_, ui_);
        EXPECT_TRUE(s->Form_Load());
        s->vsFixed = std::move(lines);
        if (!sched::reconciliation_question(db(), suffix(year), "C001", sched::schedule_totals(s->figures()))
                 .empty())
            ui_.answer_yes();
        ASSERT_TRUE(s->cmdSave_Click());
        base_->select_client_year("C001", kYear);
    }
    long count(const std::string& table_and_where) {
        return static_cast<long>(
            db().query("SELECT COUNT(*) AS n FROM " + table_and_where).first("n").as_int());
    }

    std::filesystem::path dir_;
    std::shared_ptr<suite::BaseServices> base_;
    frame::Component comp_;
    ScriptedUi ui_;
};

}  // namespace brenlow::test
