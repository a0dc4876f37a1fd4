// What may be typed into the fixed-asset schedule: a method outside the status's list
// kept, particulars and lines deleted with the figures following, the source of a
// deduction, the typed depreciation, the client's options, the concessional regimes,
// and the transfer of every block with sales to the capital-gains records.

#include <gtest/gtest.h>

#include "schedules/fixed_asset_schedule.h"
#include "schedules/fixed_schedule_fixture.h"

namespace brenlow::test {
namespace {

using sched::FixedLine;
using sched::SubView;

class FixedAssetEntryTest : public FixedScheduleTest {
protected:
    // A plant with two additions and two deductions, one taken from the first addition.
    static FixedLine plant_with_lines() {
        auto plant = particular("PLANT", 300000, 100000, 15, 180000, 15);
        plant.additions = {addition(1, 50000, "15/06/2015"), addition(2, 20000, "15/08/2015")};
        plant.additions[0].particular = "CNC LATHE";
        plant.additions[1].particular = "DRILL";
        plant.deductions = {deduction(1, 10000, 4000, 7000, "01/08/2015"),
                            deduction(2, 5000, 0, 5500, "01/09/2015", 1)};
        return plant;
    }
    // The screen's figures of `lines` without saving them.
    std::vector<sched::ParticularFigures> figures_of(std::vector<FixedLine> lines) {
        auto s = open_screen();
        s->vsFixed = std::move(lines);
        return s->figures();
    }
    void answer_reconciliation(sched::FixedAssetSchedule& s) {
        if (!sched::reconciliation_question(db(), suffix(kYear), "C001", sched::schedule_totals(s.figures()))
                 .empty())
            ui_.answer_yes();
    }
};

bool same_figures(const sched::ParticularFigures& a, const sched::ParticularFigures& b) {
    return a.name == b.name && a.books.depreciation == b.books.depreciation &&
           a.books.net_block == b.books.net_block && a.books.profit_on_sale == b.books.profit_on_sale &&
           a.books.closing_cost == b.books.closing_cost && a.it.TotDepr == b.it.TotDepr &&
           a.it.RndWdv == b.it.RndWdv;
}

bool same_row(const store::FixedRow& a, const store::FixedRow& b) {
    return a.compit_id == b.compit_id && a.srno == b.srno && a.ref_id == b.ref_id && a.OP_BAL == b.OP_BAL &&
           a.op_bal_dep == b.op_bal_dep && a.RATE_DEP == b.RATE_DEP && a.method_id == b.method_id &&
           a.OTH_DEP == b.OTH_DEP && a.deptick == b.deptick && a.depamt == b.depamt && a.CGrpId == b.CGrpId &&
           a.wdv == b.wdv && a.compit_rate == b.compit_rate && a.IGrpId == b.IGrpId &&
           a.trblock == b.trblock && a.AddDepRt == b.AddDepRt && a.PART_NM == b.PART_NM;
}

// ---- Methods -------------------------------------------------------------------------

TEST_P(FixedAssetEntryTest, AFirmsStraightLineRowSurvivesAddRowAndSaveUnchanged) {
    auto slm = particular("BUILDING", 500000, 100000, 10, 400000, 15);
    slm.row.method_id = 2;
    save_year(kYear, {slm});
    const auto before = schedule().particulars();
    ASSERT_EQ(before.size(), 1u);

    auto s = open_screen();
    // The firm's short list keeps the row's own method after it.
    EXPECT_EQ(s->method_list(), "#3;OTHER METHOD|#1;WRITTEN DOWN VALUE");
    EXPECT_EQ(s->method_list_of(0), "#3;OTHER METHOD|#1;WRITTEN DOWN VALUE|#2;STRAIGHT LINE METHOD");
    const double calculated = s->figures()[0].books.depreciation;
    EXPECT_DOUBLE_EQ(calculated, 50000);  // 10% of the cost, straight line
    s->cmdAdd_Click();
    ASSERT_EQ(s->vsFixed.size(), 2u);
    answer_reconciliation(*s);
    ASSERT_TRUE(s->cmdSave_Click());
    const auto after = schedule().particulars();
    ASSERT_EQ(after.size(), 1u);  // the empty row is not written
    EXPECT_TRUE(same_row(before[0], after[0]));
    EXPECT_EQ(after[0].method_id, 2);
    EXPECT_EQ(after[0].deptick, 0);
    EXPECT_DOUBLE_EQ(after[0].OTH_DEP, 0);
    EXPECT_DOUBLE_EQ(open_screen()->figures()[0].books.depreciation, calculated);
}

TEST_P(FixedAssetEntryTest, ADepreciationTypedOverTheCalculationKeepsTheMethod) {
    save_year(kYear, {particular("PLANT", 150000, 50000, 15, 100000, 15)});
    auto s = open_screen();
    EXPECT_DOUBLE_EQ(s->figures()[0].books.depreciation, 15000);
    s->type_depreciation(0, 12345);
    EXPECT_EQ(s->vsFixed[0].row.method_id, 1);
    EXPECT_EQ(s->vsFixed[0].row.deptick, 1);
    EXPECT_DOUBLE_EQ(s->figures()[0].books.depreciation, 12345);
    answer_reconciliation(*s);
    ASSERT_TRUE(s->cmdSave_Click());
    const auto stored = schedule().particulars().at(0);
    EXPECT_EQ(stored.method_id, 1);
    EXPECT_EQ(stored.deptick, 1);
    EXPECT_DOUBLE_EQ(stored.depamt, 12345);
    // Emptied: back to the calculation.
    s = open_screen();
    s->type_depreciation(0, std::nullopt);
    EXPECT_EQ(s->vsFixed[0].row.deptick, 0);
    EXPECT_DOUBLE_EQ(s->figures()[0].books.depreciation, 15000);
    // "OTHER METHOD" keeps its typed amount apart.
    s->vsFixed[0].row.method_id = 3;
    s->type_depreciation(0, 777);
    EXPECT_EQ(s->vsFixed[0].row.deptick, 0);
    EXPECT_DOUBLE_EQ(s->vsFixed[0].row.OTH_DEP, 777);
    EXPECT_DOUBLE_EQ(s->figures()[0].books.depreciation, 777);
}

// ---- Deleting ------------------------------------------------------------------------

TEST_P(FixedAssetEntryTest, ADeletedDeductionLineTakesItsFiguresAlong) {
    save_year(kYear, {plant_with_lines(), particular("TOOLS", 10000, 0, 15, 10000, 15)});
    ui_.forget();
    auto s = open_screen();
    ASSERT_EQ(s->vsFixed[0].deductions.size(), 2u);

    // No keeps the line.
    ui_.answer_no();
    EXPECT_FALSE(s->delete_line(0, SubView::Deductions, 0));
    EXPECT_EQ(s->vsFixed[0].deductions.size(), 2u);
    ui_.answer_yes();
    ASSERT_TRUE(s->delete_line(0, SubView::Deductions, 0));
    ASSERT_EQ(ui_.shown().size(), 2u);
    EXPECT_EQ(ui_.shown()[1].text, "Do you want to delele the selected item?");
    EXPECT_EQ(ui_.shown()[1].title, "Delete Confirmation");
    EXPECT_EQ(ui_.shown()[1].default_button, "No");

    // The figures are those of the schedule without the line.
    auto expected_plant = plant_with_lines();
    expected_plant.deductions.erase(expected_plant.deductions.begin());
    const auto expected = figures_of({expected_plant, particular("TOOLS", 10000, 0, 15, 10000, 15)});
    const auto now = s->figures();
    ASSERT_EQ(now.size(), 2u);
    EXPECT_TRUE(same_figures(now[0], expected[0]));
    EXPECT_DOUBLE_EQ(now[0].books.profit_on_sale, 5500 - 5000);  // the other deduction's profit alone
    EXPECT_DOUBLE_EQ(now[0].it.RndWdv, 180000 + 70000 - 5500 - 36675);

    answer_reconciliation(*s);
    ASSERT_TRUE(s->cmdSave_Click());
    const auto left = schedule().lines(std::nullopt, store::kFdaDeduction);
    ASSERT_EQ(left.size(), 1u);
    EXPECT_EQ(left[0].srno, 2);
    EXPECT_EQ(left[0].src, 1);
    EXPECT_DOUBLE_EQ(left[0].AMT, 5500);
    EXPECT_TRUE(same_figures(open_screen()->figures()[0], expected[0]));
}

TEST_P(FixedAssetEntryTest, ADeletedParticularLeavesNoLinesBehind) {
    save_year(kYear, {plant_with_lines(), particular("TOOLS", 10000, 0, 15, 10000, 15)});
    auto s = open_screen();
    ui_.answer_yes();
    ASSERT_TRUE(s->cmddel_Click(0));
    ASSERT_EQ(s->vsFixed.size(), 1u);
    answer_reconciliation(*s);
    ASSERT_TRUE(s->cmdSave_Click());
    const auto rows = schedule().particulars();
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].PART_NM, "TOOLS");
    EXPECT_EQ(count("FDA_" + suffix(kYear) + " where code_no='C001' and ad_ded_id<>100"), 0);
    EXPECT_EQ(count("FDA_" + suffix(kYear) + " where code_no='C001' and ad_ded_id=100"), 1);
}

TEST_P(FixedAssetEntryTest, ADeletedSourceAdditionLeavesItsDeductionOnTheOpening) {
    save_year(kYear, {plant_with_lines()});
    auto s = open_screen();
    ui_.answer_yes();
    ASSERT_TRUE(s->delete_line(0, SubView::Additions, 0));
    EXPECT_EQ(s->vsFixed[0].deductions[1].src, 0);
    answer_reconciliation(*s);
    ASSERT_TRUE(s->cmdSave_Click());
    EXPECT_EQ(schedule().lines(std::nullopt, store::kFdaDeduction).at(1).src, 0);
}

// ---- Source of a deduction -------------------------------------------------------------

TEST_P(FixedAssetEntryTest, TheSourceComboOffersTheParticularsAdditions) {
    save_year(kYear, {plant_with_lines()});
    auto s = open_screen();
    EXPECT_EQ(s->source_list(0), "#0;(Opening)|#1;CNC LATHE|#2;DRILL");
    s->add_line(0, SubView::Additions);
    EXPECT_EQ(s->vsFixed[0].additions.back().srno, 3);

    // A number that is no addition is refused, and the deduction keeps its source.
    EXPECT_FALSE(s->set_source(0, 1, 7));
    EXPECT_EQ(ui_.last_message(),
              "Source of Deduction 7 is not an addition of PLANT: choose (Opening) or one of its additions.");
    EXPECT_EQ(s->vsFixed[0].deductions[1].src, 1);
    // A deduction dated before the addition it would come from.
    EXPECT_FALSE(s->set_source(0, 0, 2));
    EXPECT_EQ(ui_.last_message(),
              "Date of Deduction can not be Lesser than Date of Addition i.e. 15/08/2015");
    EXPECT_EQ(s->vsFixed[0].deductions[0].src, 0);
    EXPECT_TRUE(s->set_source(0, 0, 1));
    EXPECT_EQ(s->vsFixed[0].deductions[0].src, 1);
    EXPECT_TRUE(s->set_source(0, 1, 0));
    EXPECT_EQ(s->vsFixed[0].deductions[1].src, 0);
}

TEST_P(FixedAssetEntryTest, AStoredSourceThatIsNoAdditionIsRefusedNotReset) {
    auto plant = plant_with_lines();
    plant.deductions[1].src = 9;  // as a document may bring it
    auto s = open_screen();
    s->vsFixed = {plant};
    EXPECT_FALSE(s->cmdSave_Click());
    EXPECT_EQ(ui_.last_message(),
              "Source of Deduction 9 is not an addition of PLANT: choose (Opening) or one of its additions.");
    EXPECT_EQ(count("FIXED_" + suffix(kYear)), 0);
}

TEST_P(FixedAssetEntryTest, SavingADeductionListDatedBeforeItsSourceIsRefused) {
    save_year(kYear, {plant_with_lines()});
    auto s = open_screen();
    s->vsFixed[0].deductions[1].ad_date = "01/06/2015";  // before the lathe's 15/06/2015
    EXPECT_FALSE(s->save_sub_view(0, SubView::Deductions));
    EXPECT_EQ(ui_.last_message(),
              "Date of Deduction can not be Lesser than Date of Addition i.e. 15/06/2015");
    EXPECT_EQ(schedule().lines(std::nullopt, store::kFdaDeduction).at(1).ad_date, "01/09/2015");
}

// ---- Options -------------------------------------------------------------------------

TEST(FixedAssetOptions, KeywordsReadAndWrittenKeepingOtherWords) {
    EXPECT_EQ(sched::options_of(""), (sched::ScheduleOptions{true, true, false, false}));
    EXPECT_EQ(sched::options_of("xyz, badep|NOADDDEP"), (sched::ScheduleOptions{true, false, false, true}));
    EXPECT_EQ(sched::others_with("XYZ,STOPDEP", {false, true, false, true}), "XYZ,NOSEPDEP,ADDDEP,BADEP");
    for (const sched::ScheduleOptions o :
         {sched::ScheduleOptions{false, false, false, false}, sched::ScheduleOptions{true, true, true, true}})
        EXPECT_EQ(sched::options_of(sched::others_with("", o)), o);
}

struct OptionCase {
    sched::ScheduleOptions options;
    double books_dep;
    double it_dep;
};

TEST(FixedAssetOptions, OptionsChangeTheFigures) {
    sched::ParticularInput p;
    p.row.PART_NM = "PLANT";
    p.row.OP_BAL = 100000;
    p.row.RATE_DEP = 10;
    p.row.method_id = 2;
    p.row.wdv = 100000;
    p.row.compit_rate = 15;
    p.row.AddDepRt = 20;
    store::FdaRow a;
    a.ad_ded_id = store::kFdaAddition;
    a.srno = 1;
    a.cost = 36500;
    a.ad_date = "01/10/2015";  // 183 of the 366 days of the year, before the half-rate line
    a.adddepapp = "1";
    p.lines = {a};
    const OptionCase cases[] = {
        {{true, true, false, false},
         10000 + 1825,
         15000 + 5475 + 7300},  // additions for their days; add. dep.
        {{false, true, false, false}, 10000 + 3650, 15000 + 5475 + 7300},  // additions for the whole year
        {{true, false, false, false}, 10000 + 1825, 15000 + 5475},         // no additional depreciation
        {{true, true, true, false}, 0, 15000 + 5475 + 7300},  // books stopped; income tax goes on
        {{true, true, false, true}, 0, 15000 + 5475 + 7300},  // books as typed: nothing typed
    };
    for (const auto& c : cases) {
        const auto f = sched::particular_figures({p}, 2016, c.options)[0];
        EXPECT_DOUBLE_EQ(f.books.depreciation, c.books_dep)
            << c.options.SEPDEP << c.options.ADDDEP << c.options.STOPDEP << c.options.BADEP;
        EXPECT_DOUBLE_EQ(f.it.TotDepr, c.it_dep)
            << c.options.SEPDEP << c.options.ADDDEP << c.options.STOPDEP << c.options.BADEP;
    }
    // Typed amounts stand with BADEP, not with STOPDEP.
    p.row.deptick = 1;
    p.row.depamt = 4321;
    EXPECT_DOUBLE_EQ(sched::particular_figures({p}, 2016, {true, true, false, true})[0].books.depreciation,
                     4321);
    EXPECT_DOUBLE_EQ(sched::particular_figures({p}, 2016, {true, true, true, false})[0].books.depreciation,
                     0);
}

TEST_P(FixedAssetEntryTest, TheClientsOptionsAreKeptWithItsYear) {
    save_year(kYear, {particular("PLANT", 150000, 50000, 15, 100000, 15)});
    auto s = open_screen();
    EXPECT_DOUBLE_EQ(s->figures()[0].books.depreciation, 15000);
    s->set_options({true, true, true, false});
    EXPECT_EQ(store::client_others(db(), "C001", base_->CYrInd()), "SEPDEP,ADDDEP,STOPDEP");
    EXPECT_DOUBLE_EQ(open_screen()->figures()[0].books.depreciation, 0);
}

// ---- Concessional regimes --------------------------------------------------------------

class ConcessionalSchedule : public FixedAssetEntryTest {
protected:
    void SetUp() override {
        FixedAssetEntryTest::SetUp();
        if (IsSkipped()) return;
        base_->create_client_year("C001", kYear, "ACME ENGINEERING LTD", 3);
        base_->SetMiscOthInf("REGIME115BA", "1", base_->SecondDate(), "C001", "");
    }
    static FixedLine plant_with_additional() {
        auto plant = particular("PLANT", 150000, 50000, 15, 100000, 15);
        plant.row.AddDepRt = 20;
        plant.additions = {addition(1, 40000, "15/06/2015", true)};
        return plant;
    }
};

TEST_P(ConcessionalSchedule, A115BAACompanyIsAskedToDeleteAdditionalDepreciation) {
    auto s = open_screen();
    s->vsFixed = {plant_with_additional()};
    ui_.answer_no();
    EXPECT_FALSE(s->cmdSave_Click());
    ASSERT_EQ(ui_.shown().size(), 2u);
    EXPECT_EQ(
        ui_.shown()[0].text,
        "Additional Depreciation is not allowed, if opted for taxation u/s 115BA/115BAA/115BAB.\n\nIn this "
        "case Manually Edited Depreciation chart will be considered for E-Filing purpose and Return Form "
        "but additional depreciation will remain same in Preview of Depreciation chart.");
    EXPECT_EQ(ui_.shown()[1].text,
              "Do you want to delete additional depreciation from 'Edit Chart Manually'?");
    EXPECT_EQ(ui_.shown()[1].default_button, "No");
    EXPECT_EQ(count("FIXED_" + suffix(kYear)), 0);

    // Yes deletes it and the schedule is saved without it.
    ui_.forget();
    ui_.answer_yes();
    answer_reconciliation(*s);
    ASSERT_TRUE(s->cmdSave_Click());
    const auto rows = schedule().particulars();
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_DOUBLE_EQ(rows[0].AddDepRt, 0);
    EXPECT_EQ(schedule().lines(std::nullopt, store::kFdaAddition).at(0).adddepapp, "0");
    const auto f = open_screen()->figures()[0];
    EXPECT_DOUBLE_EQ(f.it.addl_full + f.it.addl_half + f.it.ADeprOpH, 0);
}

TEST_P(ConcessionalSchedule, TheCapitalGainsTransferGoesByTheStatedRegime) {
    auto plant = plant_with_additional();
    plant.deductions = {deduction(1, 10000, 0, 12000, "10/10/2015")};
    auto s = open_screen();
    s->vsFixed = {plant};
    ui_.answer_yes().answer_yes();
    ASSERT_TRUE(s->cmdfatrans_Click());
    EXPECT_EQ(ui_.questions().size(), 2u);  // the transfer's own two questions, no refusal
    const auto rows = store::capital_gain_rows(db(), "C001", kYear);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_DOUBLE_EQ(rows[0].block.sales_cons, 12000);
    EXPECT_DOUBLE_EQ(rows[0].block.addition, 40000);
}

TEST_P(ConcessionalSchedule, EditingTheChartByHandIsGatedByTheYear) {
    auto s = open_screen();
    EXPECT_TRUE(s->cmddepedit_Click());
    EXPECT_TRUE(ui_.shown().empty());
    base_->create_client_year("C001", 2026, "ACME ENGINEERING LTD", 3);
    base_->select_client_year("C001", 2026);
    auto later = std::make_unique<sched::FixedAssetSchedule>(comp_, ui_);
    EXPECT_FALSE(later->cmddepedit_Click());
    EXPECT_EQ(ui_.last_message(), "Not Available as ITR Forms for A.Y. 2026-27 have not been notified yet.");
}

// ---- Transfer to capital gains ---------------------------------------------------------

TEST_P(FixedAssetEntryTest, EveryBlockWithSalesGoesToCapitalGainsUnderAHeadOfType1) {
    db().execute(
        "insert into capital_depr (code_no,ass_year,capital_no,assets_name,trblock) values "
        "('C001',2016,4,'USER ROW','N')");
    db().execute(
        "insert into Capital (code_no,ass_year,Capital_no,cap_desc,cap_type) values ('C001',2016,4,'USER "
        "ROW','D')");
    auto nil = particular("PLANT", 150000, 50000, 15, 50000, 15);
    nil.row.trblock = 1;
    nil.deductions = {deduction(1, 150000, 50000, 60000, "10/10/2015")};
    auto sold = particular("FURNITURE", 80000, 16000, 10, 60000, 10, kItFurniture);
    sold.deductions = {deduction(1, 8000, 2000, 5000, "01/09/2015"),
                       deduction(2, 1000, 0, 700, "05/11/2015")};
    auto kept = particular("TOOLS", 10000, 0, 15, 10000, 15);
    auto s = open_screen();
    s->vsFixed = {nil, sold, kept};
    for (int round = 0; round < 2; ++round) {  // a second transfer replaces the first
        ui_.answer_yes().answer_yes();
        ASSERT_TRUE(s->cmdfatrans_Click());
    }
    const auto rows = store::capital_gain_rows(db(), "C001", kYear);
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0].block.assets_name, "USER ROW");
    EXPECT_FALSE(rows[0].transferred);
    EXPECT_EQ(rows[1].capital_no, 5);
    EXPECT_EQ(rows[1].block.assets_name, "PLANT");
    EXPECT_DOUBLE_EQ(rows[1].block.assets_trans, 10000);
    EXPECT_EQ(rows[2].capital_no, 6);
    EXPECT_EQ(rows[2].block.assets_name, "FURNITURE");
    EXPECT_EQ(rows[2].block.dtsale, "05/11/2015");
    EXPECT_DOUBLE_EQ(rows[2].block.sales_cons, 5700);
    EXPECT_DOUBLE_EQ(rows[2].block.wdv, 60000);
    EXPECT_DOUBLE_EQ(rows[2].block.assets_trans, 0);
    // The heads: the user's, and one of capital_type 1 per block transferred.
    const auto heads = db().query(
        "Select Capital_no, capital_type, cap_desc from Capital where code_no='C001' and ass_year=2016 "
        "order by Capital_no");
    std::vector<std::tuple<long, long, std::string>> got;
    for (const auto r : heads)
        got.emplace_back(static_cast<long>(r["Capital_no"].as_int()),
                         static_cast<long>(r["capital_type"].as_int()), r["cap_desc"].as_text());
    const std::vector<std::tuple<long, long, std::string>> want = {
        {4, 0, "USER ROW"}, {5, 1, ""}, {6, 1, ""}};
    EXPECT_EQ(got, want);
}

BRENLOW_INSTANTIATE_BACKENDS(FixedAssetEntryTest);
BRENLOW_INSTANTIATE_BACKENDS(ConcessionalSchedule);

}  // namespace
}  // namespace brenlow::test
