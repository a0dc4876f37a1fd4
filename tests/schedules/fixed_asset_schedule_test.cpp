#include "schedules/fixed_asset_schedule.h"

#include <gtest/gtest.h>

#include "schedules/fixed_schedule_fixture.h"
#include "store/transfer_store.h"

namespace brenlow::test {
namespace {

using sched::FixedLine;

class FixedAssetScheduleTest : public FixedScheduleTest {};

// ---- Figures: the register's engine per particular -----------------------------------

TEST(FixedAssetFigures, IncomeTaxChargesHalfRateOnLateAdditions) {
    sched::ParticularInput p;
    p.row.PART_NM = "PLANT";
    p.row.wdv = 100000;
    p.row.compit_rate = 15;
    p.row.IGrpId = 21;
    p.row.method_id = 1;
    store::FdaRow early, late;
    early.ad_ded_id = late.ad_ded_id = store::kFdaAddition;
    early.srno = 1;
    early.cost = 20000;
    early.ad_date = "15/06/2015";
    late.srno = 2;
    late.cost = 10000;
    late.ad_date = "15/01/2016";
    p.lines = {early, late};
    const auto f = sched::particular_figures({p}, 2016);
    ASSERT_EQ(f.size(), 1u);
    EXPECT_DOUBLE_EQ(f[0].it.TotDepr, 18000 + 750);
    EXPECT_DOUBLE_EQ(f[0].it.RndWdv, 130000 - 18750);
}

struct BooksCase {
    long method;
    long deptick;
    double depamt, oth_dep;
    double expected;
};

TEST(FixedAssetFigures, BooksDepreciationFollowsTheMethod) {
    const BooksCase cases[] = {
        {1, 0, 0, 0, 15000},    // WDV: 15% of 150000 - 50000
        {2, 0, 0, 0, 22500},    // SLM: 15% of the cost
        {3, 0, 0, 1234, 1234},  // other method: the typed amount
        {4, 0, 0, 0, 0},        // no depreciation
        {1, 1, 999, 0, 999},    // a typed amount wins
    };
    for (const auto& c : cases) {
        sched::ParticularInput p;
        p.row.OP_BAL = 150000;
        p.row.op_bal_dep = 50000;
        p.row.RATE_DEP = 15;
        p.row.method_id = c.method;
        p.row.deptick = c.deptick;
        p.row.depamt = c.depamt;
        p.row.OTH_DEP = c.oth_dep;
        p.row.IGrpId = store::kNotConsidered;
        const auto f = sched::particular_figures({p}, 2016);
        EXPECT_DOUBLE_EQ(f[0].books.depreciation, c.expected) << "method " << c.method;
        EXPECT_DOUBLE_EQ(f[0].books.net_block, 100000 - c.expected);
        EXPECT_FALSE(f[0].it_considered);
    }
}

TEST(FixedAssetFigures, DeductionComesOffTheOpeningAndShowsItsProfit) {
    sched::ParticularInput p;
    p.row.OP_BAL = 150000;
    p.row.op_bal_dep = 50000;
    p.row.RATE_DEP = 10;
    p.row.method_id = 1;
    p.row.wdv = 90000;
    p.row.compit_rate = 15;
    store::FdaRow d;
    d.ad_ded_id = store::kFdaDeduction;
    d.cost = 30000;
    d.dep = 10000;
    d.AMT = 25000;
    d.excr = 1000;
    d.ad_date = "01/07/2015";
    p.lines = {d};
    const auto f = sched::particular_figures({p}, 2016)[0];
    EXPECT_DOUBLE_EQ(f.books.depreciation, 8000);  // 10% of (120000 - 40000)
    EXPECT_DOUBLE_EQ(f.books.profit_on_sale, 25000 - 1000 - 20000);
    EXPECT_DOUBLE_EQ(f.books.closing_cost, 120000);
    EXPECT_DOUBLE_EQ(f.books.closing_dep, 48000);
    EXPECT_DOUBLE_EQ(f.it.RndWdv, 65000 - 9750);  // (90000 - 25000) less 15%
    EXPECT_FALSE(f.it.block_nil);
}

TEST(FixedAssetLists, EFilingListIsChosenByTheYear) {
    EXPECT_NE(sched::e_filing_list(2021).find("4) Machinary and plant : 15%, 30%, 40%, 45%"),
              std::string::npos);
    EXPECT_NE(sched::e_filing_list(2019).find("4) Machinary and plant : 15%, 30%, 40%\n"), std::string::npos);
    EXPECT_NE(sched::e_filing_list(2006).find("2) Furniture and fittings : 10%, 15%"), std::string::npos);
    EXPECT_NE(sched::e_filing_list(2010).find("5) Ships : 20%"), std::string::npos);
    EXPECT_TRUE(sched::e_filing_allows(2021, 3, 45));
    EXPECT_FALSE(sched::e_filing_allows(2019, 3, 45));
    EXPECT_TRUE(sched::e_filing_allows(2006, 2, 15));
    EXPECT_FALSE(sched::e_filing_allows(2010, 2, 15));
    EXPECT_TRUE(sched::e_filing_allows(2019, 100, 0));
    EXPECT_FALSE(sched::e_filing_allows(2006, 5, 20));
}

// ---- Carry-forward -----------------------------------------------------------------

TEST_P(FixedAssetScheduleTest, CarryForwardAsksToLowerRatesAbove40) {
    for (const bool yes : {true, false}) {
        db().execute("Delete from FIXED_" + suffix(kYear));
        save_year(kYear - 1, {particular("COMPUTERS", 150000, 50000, 50, 100000, 15)});
        ui_.forget();
        ui_.answer_yes();  // carry forward
        yes ? ui_.answer_yes() : ui_.answer_no();
        const auto s = open_screen();
        ASSERT_EQ(s->vsFixed.size(), 1u);
        const auto& r = s->vsFixed[0].row;
        EXPECT_DOUBLE_EQ(r.RATE_DEP, yes ? 40 : 50);
        EXPECT_DOUBLE_EQ(r.compit_rate, 15);
        // Last year's closing figures open this year.
        EXPECT_DOUBLE_EQ(r.OP_BAL, 150000);
        EXPECT_DOUBLE_EQ(r.op_bal_dep, 100000);  // 50000 + 50% of 100000
        EXPECT_DOUBLE_EQ(r.wdv, 85000);
        EXPECT_EQ(r.PART_NM, "COMPUTERS");
        EXPECT_EQ(ui_.questions().at(1),
                  "Do you want to Change Rate for Books to 40% [Maximum Allowed as per Income-Tax Act] ?");
        ui_.forget();
    }
}

TEST_P(FixedAssetScheduleTest, CarryForwardKeepsTheOtherHalfOfLateAdditions) {
    auto plant = particular("PLANT", 100000, 0, 15, 100000, 15);
    plant.row.AddDepRt = 20;
    plant.additions = {addition(1, 40000, "15/01/2015", true), addition(2, 30000, "15/02/2015", true),
                       addition(3, 20000, "15/05/2014", true)};
    plant.deductions = {deduction(1, 5000, 0, 5000, "20/03/2015", 2)};  // takes the second
    save_year(kYear - 1, {plant});
    ui_.forget();
    ui_.answer_yes();
    const auto s = open_screen();
    ASSERT_EQ(s->vsFixed.size(), 1u);
    const auto& carried = s->vsFixed[0].carried;
    ASSERT_EQ(carried.size(), 1u);
    EXPECT_DOUBLE_EQ(carried[0].AMT, 40000);
    EXPECT_DOUBLE_EQ(carried[0].dep, 20);
    EXPECT_EQ(carried[0].adddepapp, "1");
    EXPECT_TRUE(s->vsFixed[0].additions.empty());
    // This year charges the other half: 40000 x 20% / 2.
    EXPECT_DOUBLE_EQ(s->figures()[0].it.DeprHalfOnOP, 4000);
}

// ---- Saving --------------------------------------------------------------------------

struct RefusalCase {
    const char* what;
    std::vector<FixedLine> lines;
    std::string message;
};

TEST_P(FixedAssetScheduleTest, SaveRefusesWithTheFirstMessageAndWritesNothing) {
    const auto plant = [] { return particular("PLANT", 150000, 50000, 15, 100000, 15); };
    auto unnamed = plant(), no_method = plant(), over = plant(), shape = plant(), bad = plant(),
         outside = plant(), too_much = plant(), dep_over = plant(), src_over = plant();
    unnamed.row.PART_NM = "";
    no_method.row.method_id = 0;
    over.row.op_bal_dep = 200000;
    shape.additions = {addition(1, 100, "2015-06-15")};
    bad.additions = {addition(1, 100, "31/02/16")};
    outside.additions = {addition(1, 100, "15/06/14")};
    too_much.deductions = {deduction(1, 200000, 0, 10, "15/06/15")};
    dep_over.deductions = {deduction(1, 1000, 60000, 10, "15/06/15")};
    src_over.additions = {addition(1, 100, "15/06/15")};
    src_over.deductions = {deduction(1, 500, 0, 10, "16/06/15", 1)};
    const RefusalCase cases[] = {
        {"unnamed", {unnamed}, "Please specify a item."},
        {"twice", {plant(), plant()}, "This Asset already exists."},
        {"method", {no_method}, "Please specify Method of Depreciation."},
        {"over", {over}, "Depreciation Amount Can not be Greater than Cost."},
        {"shape", {shape}, "Invalid Entry. Enter date in format (dd/mm/yy)."},
        {"bad date", {bad}, "Invalid Date."},
        {"outside", {outside}, "Date should be between 01/04/2015 and 31/03/2016"},
        {"cost",
         {too_much},
         "Total Deductions Cost is 200000.00, Which can not be Greater than Cost of Asset i.e. 150000.00"},
        {"dep",
         {dep_over},
         "Total Depreciation Upto 31/03/2016 included in Deductions is 60000.00, Which can not be Greater "
         "than "
         "Opening Depreciation of Asset i.e. 50000.00"},
        {"source", {src_over}, "Cost of Deduction can not be greater than Cost of Addition i.e. 100.00"},
    };
    for (const auto& c : cases) {
        auto s = open_screen();
        s->vsFixed = c.lines;
        EXPECT_FALSE(s->cmdSave_Click()) << c.what;
        EXPECT_EQ(ui_.last_message(), c.message) << c.what;
        EXPECT_EQ(count("FIXED_" + suffix(kYear)), 0) << c.what;
        ui_.forget();
    }
}

TEST_P(FixedAssetScheduleTest, AssetWiseEntriesAreWarnedAndALargeSaleIsAsked) {
    auto plant = particular("PLANT", 150000, 50000, 15, 100000, 15);
    plant.additions = {addition(1, 20000, "15/06/15")};
    plant.deductions = {deduction(1, 20000, 0, 120000, "16/06/15", 1)};
    auto s = open_screen();
    s->vsFixed = {plant};
    ui_.answer_no();
    EXPECT_FALSE(s->cmdSave_Click());
    ASSERT_EQ(ui_.shown().size(), 2u);
    EXPECT_EQ(
        ui_.shown()[0].text,
        "You have done assets wise entry in Block wise chart so in case of Sale/Deduction you may get "
        "incorrect "
        "calculation of depreciation so you are suggested to do Block wise entry\n\nOR\n\nYou may prepare "
        "New Assets wise Depreciation Chart.");
    EXPECT_EQ(ui_.shown()[1].text,
              "If the Sale value of any asset is greater than opening WDV then you are advised to do the "
              "block wise "
              "entry i.e(Consolidated Entry for a particular block)\nDo you want to Continue?");
    EXPECT_EQ(count("FIXED_" + suffix(kYear)), 0);
}

TEST_P(FixedAssetScheduleTest, ReconciliationNoKeepsTheScheduleUnsaved) {
    auto s = open_screen();
    s->vsFixed = {particular("PLANT", 150000, 50000, 15, 100000, 15)};
    ui_.answer_no();
    EXPECT_FALSE(s->cmdSave_Click());
    const auto q = ui_.questions().at(0);
    EXPECT_EQ(
        q.rfind(
            "There is difference between Figures as per Trial Balance and as per Fixed Asset Schedule.\n\n"
            "Figures as per Trial Balance :\n    - Fixed Assets (Net Block) : 0.00\n",
            0),
        0u);
    EXPECT_NE(q.find("Figures as per Schedule :\n    - Fixed Assets (Net Block) : 85000.00\n"
                     "    - Depreciation : 15000.00\n"),
              std::string::npos);
    EXPECT_EQ(count("FIXED_" + suffix(kYear)), 0);
}

TEST_P(FixedAssetScheduleTest, RowsOutsideTheEFilingListArePaintedRed) {
    auto s = open_screen();
    s->vsFixed = {particular("PLANT", 150000, 50000, 15, 100000, 25), particular("TOOLS", 10, 0, 15, 10, 15)};
    ui_.answer_no();
    EXPECT_FALSE(s->cmdSave_Click());
    EXPECT_TRUE(s->vsFixed[0].red);
    EXPECT_FALSE(s->vsFixed[1].red);
    EXPECT_EQ(ui_.questions().at(0), sched::e_filing_list(kYear));
    EXPECT_EQ(count("FIXED_" + suffix(kYear)), 0);
}

TEST_P(FixedAssetScheduleTest, SaveWritesRowsMarkersAndNewNames) {
    auto other = particular("SCRAP", 1000, 0, 10, 1000, 15);
    other.row.CGrpId = store::kNotConsidered;
    auto plant = particular("plant", 150000, 50000, 15, 100000, 15);
    plant.additions = {addition(0, 20000, "15/06/15")};
    save_year(kYear, {plant, other});
    const auto rows = schedule().particulars();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].PART_NM, "PLANT");
    EXPECT_EQ(rows[1].CGrpId, store::kNotConsidered);  // kept in the schedule
    EXPECT_EQ(rows[1].srno, 2);
    EXPECT_EQ(count("FDA_" + suffix(kYear) + " where ad_ded_id=100"), 2);
    const auto adds = schedule().lines(rows[0].ref_id, store::kFdaAddition);
    ASSERT_EQ(adds.size(), 1u);
    EXPECT_EQ(adds[0].ad_date, "15/06/2015");  // typed dd/mm/yy, stored dd/mm/yyyy
    EXPECT_EQ(adds[0].srno, 1);
    // Saving again keeps one marker per particular and the same names.
    const auto names = count("mast_fix_part");
    save_year(kYear, {plant, other});
    EXPECT_EQ(count("FDA_" + suffix(kYear) + " where ad_ded_id=100"), 2);
    EXPECT_EQ(count("mast_fix_part"), names);
}

TEST_P(FixedAssetScheduleTest, RemovingASourceAdditionResetsItsDeductions) {
    auto plant = particular("PLANT", 150000, 50000, 15, 100000, 15);
    plant.additions = {addition(1, 20000, "15/06/15"), addition(2, 5000, "15/07/15")};
    plant.deductions = {deduction(1, 5000, 0, 4000, "01/08/15", 1)};
    save_year(kYear, {plant});
    auto s = open_screen();
    ASSERT_EQ(s->vsFixed[0].deductions.at(0).src, 1);
    s->vsFixed[0].additions.erase(s->vsFixed[0].additions.begin());
    ASSERT_TRUE(s->save_sub_view(0, sched::SubView::Additions));
    EXPECT_EQ(s->vsFixed[0].deductions.at(0).src, 0);
    EXPECT_EQ(schedule().lines(std::nullopt, store::kFdaDeduction).at(0).src, 0);
}

// ---- Transfer to the trial balance ---------------------------------------------------

TEST_P(FixedAssetScheduleTest, TransferWritesBooksFiguresAndLeavesOutNotConsidered) {
    const std::string tab = "TAB_" + suffix(kYear);
    db().execute("insert into " + tab + " values(1,'C001',5,1,1,10)");     // the heading row
    db().execute("insert into " + tab + " values(2,'C001',113,1,1,777)");  // replaced
    auto scrap = particular("SCRAP", 1000, 0, 10, 1000, 15);
    scrap.row.CGrpId = store::kNotConsidered;
    auto plant = particular("PLANT AND MACHINERY", 150000, 50000, 15, 100000, 15);
    plant.deductions = {deduction(1, 10000, 4000, 9000, "01/08/15")};
    auto s = open_screen();
    s->vsFixed = {plant, scrap};
    ui_.answer_yes().answer_yes().answer_yes();
    ASSERT_TRUE(s->cmdtrans_Click());
    EXPECT_EQ(ui_.last_message(), "Transferred!!");
    const auto qs = ui_.questions();
    ASSERT_EQ(qs.size(), 3u);
    EXPECT_EQ(
        qs[1],
        "Particulars under Group 'Fixed Assets', 'Depreciation' and 'Profit on Sale of Fixed Assets' will be "
        "Updated with Particulars 'As Per Books'. Do you want to Continue?");
    EXPECT_EQ(ui_.shown()[2].default_button, "No");

    const long plant_id = base_->GetMax_MastPartId("PLANT AND MACHINERY");
    std::map<long, double> by_group;
    for (const auto& r : store::trial_balance_rows(db(), suffix(kYear), "C001")) {
        if (r.allid != 5) {
            EXPECT_EQ(r.PartId, plant_id);
        }
        by_group[r.allid] += r.nid == store::kCredit ? -r.Amt : r.Amt;
    }
    EXPECT_DOUBLE_EQ(by_group[5], 10);                                 // the heading row stays
    EXPECT_DOUBLE_EQ(by_group[113], 140000 - (50000 + 14100 - 4000));  // net block under its own head
    EXPECT_DOUBLE_EQ(by_group[29], 14100);                             // 15% of (140000 - 46000)
    EXPECT_DOUBLE_EQ(by_group[17], -3000);                             // profit of 9000 - 6000, credit
    // The panel of the fixed-asset group shows the net block's line, never the heading row.
    const auto panel = store::trial_balance_of_group(db(), suffix(kYear), "C001", 5);
    ASSERT_EQ(panel.size(), 1u);
    EXPECT_EQ(panel[0].PartId, plant_id);
    EXPECT_EQ(panel[0].nid, store::kDebit);
    EXPECT_DOUBLE_EQ(panel[0].Amt, 140000 - (50000 + 14100 - 4000));
}

TEST_P(FixedAssetScheduleTest, OnlyNotConsideredParticularsLeaveNoFixedAssetRows) {
    const std::string tab = "TAB_" + suffix(kYear);
    db().execute("insert into " + tab + " values(1,'C001',113,1,1,500)");
    db().execute("insert into " + tab + " values(2,'C001',29,1,1,50)");
    auto scrap = particular("SCRAP", 1000, 0, 10, 1000, 15);
    scrap.row.CGrpId = store::kNotConsidered;
    auto s = open_screen();
    s->vsFixed = {scrap};
    ui_.answer_yes().answer_yes().answer_yes();  // the difference, then the two questions
    ASSERT_TRUE(s->cmdtrans_Click());
    EXPECT_EQ(count(tab + " where allid in (113,29,17)"), 0);
    EXPECT_EQ(count("FIXED_" + suffix(kYear)), 1);
}

TEST_P(FixedAssetScheduleTest, AnEmptyTrialBalanceStartsSerialsAtOne) {
    auto s = open_screen();
    s->vsFixed = {particular("PLANT", 150000, 50000, 15, 100000, 15)};
    ui_.answer_yes().answer_yes().answer_yes();
    ASSERT_TRUE(s->cmdtrans_Click());
    const auto rows = store::trial_balance_rows(db(), suffix(kYear), "C001");
    ASSERT_EQ(rows.size(), 2u);  // net block and depreciation; no profit
    EXPECT_EQ(rows[0].srno, 1);
    EXPECT_EQ(rows[1].srno, 2);
}

TEST_P(FixedAssetScheduleTest, TransferAnsweredNoChangesNothing) {
    auto s = open_screen();
    s->vsFixed = {particular("PLANT", 150000, 50000, 15, 100000, 15)};
    ui_.answer_yes().answer_yes().answer_no();
    EXPECT_FALSE(s->cmdtrans_Click());
    EXPECT_EQ(ui_.shown().back().default_button, "No");
    EXPECT_EQ(count("TAB_" + suffix(kYear)), 0);
}

// ---- Transfer to capital gains -------------------------------------------------------

TEST_P(FixedAssetScheduleTest, BlockNilParticularGoesToCapitalGains) {
    db().execute(
        "insert into capital_depr (code_no,ass_year,capital_no,assets_name,trblock) values "
        "('C001',2016,1,'USER ROW','N')");
    db().execute(
        "insert into Capital (code_no,ass_year,Capital_no,cap_desc,cap_type) values ('C001',2016,1,'USER "
        "ROW','D')");
    auto plant = particular("PLANT", 150000, 50000, 15, 50000, 15);
    plant.row.trblock = 1;
    plant.deductions = {deduction(1, 150000, 50000, 60000, "10/10/15")};
    auto keep = particular("FURNITURE", 1000, 0, 10, 1000, 10, kItFurniture);
    auto s = open_screen();
    s->vsFixed = {plant, keep};
    ui_.answer_yes().answer_yes();
    ASSERT_TRUE(s->cmdfatrans_Click());
    EXPECT_EQ(ui_.questions().at(0), "Are you sure, you want to \"Transfer to Capital Gain\" ?");
    const auto rows = store::capital_gain_rows(db(), "C001", kYear);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_FALSE(rows[0].transferred);
    EXPECT_TRUE(rows[1].transferred);
    EXPECT_EQ(rows[1].capital_no, 2);
    EXPECT_EQ(rows[1].block.assets_name, "PLANT");
    EXPECT_EQ(rows[1].block.dtsale, "10/10/2015");
    EXPECT_DOUBLE_EQ(rows[1].block.assets_trans, 10000);
    EXPECT_DOUBLE_EQ(rows[1].block.wdv, 50000);
}

BRENLOW_INSTANTIATE_BACKENDS(FixedAssetScheduleTest);

}  // namespace
}  // namespace brenlow::test
