#include "exchange/fixed_schedule_import.h"

#include <gtest/gtest.h>

#include <functional>

#include "controls/number_format.h"
#include "exchange/asset_merge.h"
#include "register/calculation.h"
#include "register/register_options.h"
#include "register/register_text.h"
#include "schedules/fixed_schedule_fixture.h"
#include "store/register_store.h"

namespace brenlow::test {
namespace {

// The entry rules' questions answered Yes beforehand, as `--yes` does.
const reg::RuleAnswers kYes = reg::answered_beforehand(true, nullptr);

class ScheduleImportTest : public FixedScheduleTest {
protected:
    static constexpr int kNext = kYear + 1;

    // Last year's schedule: plant with a late addition that earns additional
    // depreciation, furniture on the straight line with a deduction.
    std::vector<sched::FixedLine> last_year() {
        auto plant = particular("PLANT", 300000, 100000, 15, 180000, 15);
        plant.row.AddDepRt = 20;
        plant.additions = {addition(1, 50000, "15/06/15"), addition(2, 40000, "10/01/16", true)};
        auto furniture = particular("FURNITURE", 80000, 16000, 10, 60000, 10, kItFurniture);
        furniture.row.method_id = 2;
        furniture.deductions = {deduction(1, 8000, 2000, 5000, "01/09/15")};
        return {plant, furniture};
    }
    reg::CalculationResult run(int year, reg::Mode mode) {
        reg::CalculationOptions o;
        o.write_chart = false;
        return reg::run_calculation(db(), "C001", year, mode, false, o);
    }
};

TEST_P(ScheduleImportTest, TheRegisterContinuesTheScheduleOfLastYear) {
    base_->create_client_year("C001", kNext, "ACME TRADERS", 2);
    save_year(kYear, last_year());
    base_->select_client_year("C001", kYear);
    sched::FixedAssetSchedule s(comp_, ui_);
    ASSERT_TRUE(s.Form_Load());
    const auto figs = s.figures();
    ASSERT_EQ(figs.size(), 2u);

    const auto r = exchange::import_schedule(db(), comp_.log, "C001", kNext, false);
    ASSERT_TRUE(r.errors.empty()) << r.errors.front() << (r.errors.size() > 1 ? r.errors[1] : "");
    EXPECT_EQ(r.entries, 2);
    EXPECT_EQ(r.groups, 2);

    // Every income-tax block opens at the schedule's closing WDV, to the rupee.
    const auto it = run(kNext, reg::Mode::DEP_IT);
    ASSERT_EQ(it.income_tax.blocks.size(), 2u);
    for (const auto& b : it.income_tax.blocks) {
        const auto& fig = b.block_id == "3-15" ? figs[0] : figs[1];
        EXPECT_DOUBLE_EQ(b.opening_wdv, fig.it.RndWdv) << b.block_id;
    }
    const auto& plant_block =
        it.income_tax.blocks[0].block_id == "3-15" ? it.income_tax.blocks[0] : it.income_tax.blocks[1];
    EXPECT_DOUBLE_EQ(plant_block.DeprHalfOnOP, 4000);  // the other half of 20% on 40000

    // The books go on from the schedule's closing figures.
    const auto books = run(kNext, reg::Mode::DEP_FA);
    ASSERT_EQ(books.books_assets.size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_NEAR(books.books_assets[i].Opening, figs[i].books.net_block, 0.005) << i;
        EXPECT_NEAR(books.books_assets[i].Cost, figs[i].books.closing_cost, 0.005) << i;
    }
    // Plant at 15% on its carrying amount; furniture on the straight line of its cost.
    EXPECT_NEAR(books.books_assets[0].DepFY, vb_round(figs[0].books.net_block * 0.15, 2), 0.005);
    EXPECT_NEAR(books.books_assets[1].DepFY, vb_round(figs[1].books.closing_cost * 0.10, 2), 0.005);
}

TEST_P(ScheduleImportTest, ImportTakesEveryTargetInOneLockAndMatchesGroups) {
    base_->create_client_year("C001", kNext, "ACME TRADERS", 2);
    save_year(kYear, last_year());
    ASSERT_TRUE(exchange::import_schedule(db(), comp_.log, "C001", kNext, false).errors.empty());
    ASSERT_TRUE(exchange::import_schedule(db(), comp_.log, "C001", kNext, false).errors.empty());
    // The second import finds the groups it made; the entries are numbered on.
    EXPECT_EQ(count("NewFAGM where Yr=" + std::to_string(kNext)), 2);
    EXPECT_EQ(count("NewFATRo" + std::to_string(kNext) + " where Code_No='C001'"), 4);
    EXPECT_EQ(
        db().query("Select Max(SrNoFATR) as m from NewFATRo" + std::to_string(kNext)).first("m").as_int(), 4);
}

TEST_P(ScheduleImportTest, ABlockTheYearDoesNotHaveRefusesTheWholeImport) {
    base_->create_client_year("C001", kNext, "ACME TRADERS", 2);
    auto rows = last_year();
    rows[1].row.compit_rate = 12;  // no furniture block at 12%
    ui_.answer_yes();              // the e-filing list
    save_year(kYear, rows);
    const auto r = exchange::import_schedule(db(), comp_.log, "C001", kNext, false);
    ASSERT_EQ(r.errors.size(), 1u);
    EXPECT_EQ(r.errors[0].rfind("Particular 2 (FURNITURE), field IGrpId:", 0), 0u) << r.errors[0];
    EXPECT_EQ(count("NewFATRo" + std::to_string(kNext)), 0);
    EXPECT_EQ(count("NewFAGM where Yr=" + std::to_string(kNext)), 0);
}

TEST_P(ScheduleImportTest, TheScreensAskFirstAndSayWhatWasDone) {
    base_->create_client_year("C001", kNext, "ACME TRADERS", 2);
    save_year(kYear, last_year());
    base_->select_client_year("C001", kNext);
    exchange::frmImport import(comp_, ui_);
    ui_.answer_no();
    EXPECT_FALSE(import.cmdImport_Click());
    EXPECT_EQ(ui_.shown().back().default_button, "No");
    EXPECT_EQ(count("NewFATRo" + std::to_string(kNext)), 0);
    ui_.answer_yes();
    EXPECT_TRUE(import.cmdImport_Click());
    EXPECT_EQ(ui_.last_message(), "Imported 2 particulars into 2 asset groups.");

    exchange::frmmerge merge(comp_, ui_);
    merge.chosen = {1, 2};
    ui_.answer_yes();
    EXPECT_FALSE(merge.cmdMerge_Click());  // two groups
    EXPECT_EQ(ui_.last_message(), "Entries of one asset group only can be merged.");
    EXPECT_EQ(count("NewFATRo" + std::to_string(kNext)), 2);
}

TEST_P(ScheduleImportTest, NoPreviousYearIsSaid) {
    const auto r = exchange::import_schedule(db(), comp_.log, "C001", kYear - 1, false);
    ASSERT_EQ(r.errors.size(), 1u);
    EXPECT_NE(r.errors[0].find("no previous year"), std::string::npos);
}

// ---- Merging -----------------------------------------------------------------------

class MergeTest : public ScheduleImportTest {
protected:
    void SetUp() override {
        ScheduleImportTest::SetUp();
        if (IsSkipped()) return;
        db().execute("INSERT INTO NewFAGM Values (7," + std::to_string(kYear) +
                     ",'LATHES','3-15',15,20,0,15,'-1',0,0,15)");
    }
    long opening(double wdv, const std::string& put, double rate_it = 15) {
        return insert(row(wdv, put, rate_it));
    }
    static store::OpeningRow row(double wdv, const std::string& put, double rate_it = 15) {
        store::OpeningRow o;
        o.IdFAGM = 7;
        o.Part = "LATHE";
        o.CostWdv = wdv * 2;
        o.OpDepr = wdv / 2;
        o.RateFACL = 15;
        o.WdvIT = wdv;
        o.RateIT = rate_it;
        o.PutDate = put;
        return o;
    }
    long insert(const store::OpeningRow& o) {
        return store::RegisterStore(db(), "C001", kYear).insert_opening(o);
    }
    std::vector<store::OpeningRow> rows() {
        return store::RegisterStore(db(), "C001", kYear).opening_entries();
    }
    // The packed adjustment rows of an entry, as the entry frame stores them.
    static std::string esa(const std::vector<std::vector<std::string>>& rows) {
        return store::pack_rows(rows, reg::kESASep);
    }
    static std::string opts(bool gross) {
        reg::OpeningOpts o;
        o.TotESA = gross;
        return o.compose();
    }
};

TEST_P(MergeTest, TheBlockIsTheSameBeforeAndAfter) {
    const long a = opening(100000, "01/04/2012"), b = opening(55555, "15/09/2010");
    opening(20000, "01/04/2013");
    store::AdditionRow add;
    add.IdFAGM = 7;
    add.Part = "NEW LATHE";
    add.PutDate = "15/01/2016";
    add.PurAmt = 30000;
    add.RateIT = 15;
    store::RegisterStore(db(), "C001", kYear).insert_addition(add);
    const auto before = run(kYear, reg::Mode::DEP_IT).income_tax.blocks;

    const auto r = exchange::merge_entries(db(), "C001", kYear, exchange::MergeSide::Opening, {a, b}, kYes);
    ASSERT_TRUE(r.refusal.empty()) << r.refusal;
    const auto after = run(kYear, reg::Mode::DEP_IT).income_tax.blocks;
    ASSERT_EQ(before.size(), after.size());
    for (std::size_t i = 0; i < before.size(); ++i)
        for (const char* key : {"Opening WDV", "Addition1", "Addition2", "Deduction1", "FullOnBal1",
                                "FullOnBal2", "Closing WDV", "No. of Assets Not Sold/Deducted"}) {
            // The same figures, with one asset fewer held.
            const double fewer = std::string(key) == "No. of Assets Not Sold/Deducted" ? 1 : 0;
            EXPECT_DOUBLE_EQ(depreciation::block_figure(after[i], key),
                             depreciation::block_figure(before[i], key) - fewer)
                << key;
        }
    EXPECT_DOUBLE_EQ(before[0].TotDepr, after[0].TotDepr);

    const auto rows = store::RegisterStore(db(), "C001", kYear).opening_entries();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].SrNoFATR, a);
    EXPECT_DOUBLE_EQ(rows[0].WdvIT, 155555);
    EXPECT_DOUBLE_EQ(rows[0].CostWdv, 311110);
    EXPECT_EQ(rows[0].PutDate, "15/09/2010");  // the earliest
    EXPECT_FALSE(db().table_exists("MergDepr1"));
    EXPECT_FALSE(db().table_exists("MergDepr2"));
}

TEST_P(MergeTest, EntriesTheBlockCouldTellApartAreNotMerged) {
    const long a = opening(100000, "01/04/2012"), b = opening(5000, "01/04/2012", 30);
    auto r = exchange::merge_entries(db(), "C001", kYear, exchange::MergeSide::Opening, {a, b}, kYes);
    EXPECT_EQ(r.refusal,
              "Entries with different Income-tax or Additional Depreciation rates can not be merged.");
    r = exchange::merge_entries(db(), "C001", kYear, exchange::MergeSide::Opening, {a}, kYes);
    EXPECT_EQ(r.refusal, "Select at least two entries to merge.");
    EXPECT_EQ(count("NewFATRo" + std::to_string(kYear)), 2);
}

TEST_P(MergeTest, EveryEntrysAdjustmentRowsAreKept) {
    // Detailed rows: each entry's rows, in the order the entries were chosen.
    const std::vector<std::string> first = {"SCOOTER", "5000", "01/06/2012", "9000", "4000", "1500"};
    const std::vector<std::string> second = {"DRILL", "2000", "01/07/2013", "3000", "1000", "700"};
    const std::vector<std::string> third = {"PUMP", "1000", "01/08/2013", "1800", "800", "300"};
    auto a = row(100000, "01/04/2015"), b = row(50000, "01/04/2015");
    a.DetESA = esa({first});
    b.DetESA = esa({second, third});
    const long sa = insert(a), sb = insert(b);
    auto r = exchange::merge_entries(db(), "C001", kYear, exchange::MergeSide::Opening, {sa, sb}, kYes);
    ASSERT_TRUE(r.refusal.empty()) << r.refusal;
    auto kept = rows();
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(store::unpack_rows(kept[0].DetESA, reg::kESASep),
              (std::vector<std::vector<std::string>>{first, second, third}));
    EXPECT_FALSE(reg::OpeningOpts::parse(kept[0].OthOpts).TotESA);
    EXPECT_DOUBLE_EQ(reg::det_esa_adjustment(kept[0].DetESA), 2500);

    // Gross amounts only: their sum, as one gross amount.
    db().execute("DELETE FROM NewFATRo" + std::to_string(kYear));
    a.DetESA = esa({{"(Gross)", "", "", "", "", "1200"}});
    a.OthOpts = opts(true);
    b.DetESA = esa({{"(Gross)", "", "", "", "", "800.5"}});
    b.OthOpts = opts(true);
    const long ga = insert(a), gb = insert(b);
    r = exchange::merge_entries(db(), "C001", kYear, exchange::MergeSide::Opening, {ga, gb}, kYes);
    ASSERT_TRUE(r.refusal.empty()) << r.refusal;
    kept = rows();
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(store::unpack_rows(kept[0].DetESA, reg::kESASep),
              (std::vector<std::vector<std::string>>{{"(Gross)", "", "", "", "", "2000.5"}}));
    EXPECT_TRUE(reg::OpeningOpts::parse(kept[0].OthOpts).TotESA);
}

TEST_P(MergeTest, EntriesWithOtherShiftsOrAnotherCarryingYearAreNotMerged) {
    struct Case {
        const char* what;
        std::function<void(store::OpeningRow&)> change;
        std::string refusal;
    };
    const std::vector<Case> cases = {
        {"shift rows", [](store::OpeningRow& o) { o.ShiftDet = "01/05/2015,30/06/2015,2"; },
         "Entries with different extra-shift details can not be merged."},
        {"carrying year",
         [](store::OpeningRow& o) {
             o.YrCalcCA = 2015;
             o.DepCalcCA = 1000;
         },
         "Entries with different years for the carrying amount can not be merged."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        db().execute("DELETE FROM NewFATRo" + std::to_string(kYear));
        auto b = row(50000, "01/04/2015");
        c.change(b);
        const long sa = opening(100000, "01/04/2015"), sb = insert(b);
        const auto r =
            exchange::merge_entries(db(), "C001", kYear, exchange::MergeSide::Opening, {sa, sb}, kYes);
        EXPECT_EQ(r.refusal, c.refusal);
        EXPECT_EQ(rows().size(), 2u);
    }
    // The same shift rows on both: merged, the rows kept once.
    db().execute("DELETE FROM NewFATRo" + std::to_string(kYear));
    auto a = row(100000, "01/04/2015"), b = row(50000, "01/04/2015");
    a.ShiftDet = b.ShiftDet = "01/05/2015,30/06/2015,2";
    const long sa = insert(a), sb = insert(b);
    const auto r = exchange::merge_entries(db(), "C001", kYear, exchange::MergeSide::Opening, {sa, sb}, kYes);
    ASSERT_TRUE(r.refusal.empty()) << r.refusal;
    ASSERT_EQ(rows().size(), 1u);
    EXPECT_EQ(rows()[0].ShiftDet, "01/05/2015,30/06/2015,2");
}

TEST_P(MergeTest, TheScreenAsksAboutAMergedResidualValueAndWritesOnlyOnYes) {
    // 10,000 on a cost of 2,00,000 and 7,000 on 1,00,000 (asked about when it was
    // entered): together 17,000 on 3,00,000, above 5% (15,000).
    auto a = row(100000, "01/04/2015"), b = row(50000, "01/04/2015");
    a.ResValue = 10000;
    b.ResValue = 7000;
    const long sa = insert(a), sb = insert(b);
    const auto before = rows();
    base_->select_client_year("C001", kYear);
    exchange::frmmerge merge(comp_, ui_);
    merge.chosen = {sa, sb};
    const std::vector<std::string> asked = {
        "Do you want to Merge Selected Assets?",
        "Residual Value is more than 5% of Cost i.e. Rs. 15000 !\n\nContinue ?"};

    ui_.answer_yes().answer_no();
    EXPECT_FALSE(merge.cmdMerge_Click());
    EXPECT_EQ(ui_.questions(), asked);
    EXPECT_TRUE(ui_.messages().empty());  // the No was the person's own answer
    const auto after_no = rows();
    ASSERT_EQ(after_no.size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(after_no[i].SrNoFATR, before[i].SrNoFATR);
        EXPECT_DOUBLE_EQ(after_no[i].CostWdv, before[i].CostWdv);
        EXPECT_DOUBLE_EQ(after_no[i].ResValue, before[i].ResValue);
    }

    ui_.forget();
    ui_.answer_yes().answer_yes();
    EXPECT_TRUE(merge.cmdMerge_Click());
    EXPECT_EQ(ui_.questions(), asked);
    EXPECT_EQ(ui_.messages(), std::vector<std::string>{"Merged!!"});
    const auto merged = rows();
    ASSERT_EQ(merged.size(), 1u);
    EXPECT_EQ(merged[0].SrNoFATR, sa);
    EXPECT_DOUBLE_EQ(merged[0].CostWdv, 300000);
    EXPECT_DOUBLE_EQ(merged[0].ResValue, 17000);
    EXPECT_DOUBLE_EQ(merged[0].WdvIT, 150000);
    EXPECT_EQ(comp_.log.logged(), 0);
}

BRENLOW_INSTANTIATE_BACKENDS(ScheduleImportTest);
BRENLOW_INSTANTIATE_BACKENDS(MergeTest);

}  // namespace
}  // namespace brenlow::test
