// The screen-wide options and their questions, "BADEP", the old depreciation
// chart, and the carry-forward of the previous year.

#include "register/register_fixture.h"
#include "store/schema.h"

namespace brenlow::test {
namespace {

using S = reg::frmNewFATR;
using Texts = std::vector<std::string>;

class RegisterOptionsTest : public RegisterTest {};

TEST_P(RegisterOptionsTest, DeclinedMethodChangeKeepsTheOptionAndWritesNothing) {
    auto s = open_screen(ui_);
    ui_.answer_no();
    EXPECT_FALSE(s->optMOD_Click("SLM"));
    EXPECT_EQ(boxes(), Texts{"Do you really want to change 'Method of Depreciation' ?"});
    EXPECT_EQ(s->Options().optMOD, "WDV");
    EXPECT_EQ(count("NewFAMI"), 0);
}

TEST_P(RegisterOptionsTest, OptionsRowIsRewrittenWholeOnEveryChange) {
    auto s = open_screen(ui_);
    ui_.answer_yes().answer_yes().answer_yes();
    EXPECT_TRUE(s->optMOD_Click("SLM"));
    EXPECT_TRUE(s->optResValOf_Click("CA"));
    EXPECT_TRUE(s->cboRndRemLife_Click(1));
    EXPECT_EQ(boxes(), (Texts{"Do you really want to change 'Method of Depreciation' ?",
                              "Do you really want to change 'Residual Value (5%) Of' ?",
                              "Do you really want to change 'Rounding of Remaining Life' ?"}));
    reg::RegisterOptions o = s->Options();
    o.optRndFA = "Y";
    o.cboDepAdjRemLife0 = 1;
    s->SetOptions(o);
    EXPECT_EQ(count("NewFAMI WHERE Code_No='C001' AND Yr=2016"), 1);
    EXPECT_EQ(db().query("SELECT MiscInf FROM NewFAMI").first("MiscInf").as_text(),
              "SLM|N|Y|Y|0|0|CA|1|W|N|1");
    // Choosing the option already in force asks nothing.
    EXPECT_FALSE(s->optMOD_Click("SLM"));
    EXPECT_EQ(boxes(), Texts{});
    auto again = open_screen(ui_);
    EXPECT_EQ(again->Options().optResValOf, "CA");
    EXPECT_EQ(again->cboRndRemLife.ListIndex, 1);
}

TEST_P(RegisterOptionsTest, BooksDepreciationChoiceGoesToTheBaseServicesUnderBADEP) {
    auto s = open_screen(ui_);
    s->cboBADep_Click(1);
    EXPECT_EQ(base_->GetMiscOthInf("BADEP", base_->SecondDate(), "C001"), "Y");
    EXPECT_EQ(count("NewFAMI"), 0);
    auto again = open_screen(ui_);
    EXPECT_EQ(again->cboBADep.ListIndex, 1);
}

TEST_P(RegisterOptionsTest, OldChartIsRefusedOnceAssetWiseEntriesExist) {
    insert_addition(kPlant, "DRILL");
    auto s = open_screen(ui_);
    s->cmdOldDepChart_Click();
    EXPECT_EQ(
        boxes(),
        Texts{"Can't Proceed ! You have already entered details in New Depreciation Chart (Asset Wise)."});
    EXPECT_FALSE(s->OldChart());
    EXPECT_EQ(count("NewFATRa2016"), 1);
}

TEST_P(RegisterOptionsTest, CompanyIsWarnedAndMayStopBeforeTheOldChart) {
    db().execute("UPDATE master SET status=4 WHERE code_no='C001'");
    base_->select_client_year("C001", kYear);
    auto s = open_screen(ui_);
    ui_.answer_no();
    s->cmdOldDepChart_Click();
    EXPECT_EQ(boxes(),
              (Texts{"In case of Companies, you should use Old Depreciation Chart if you want to Calculate "
                     "Depreciation as per Income-Tax Act only not as per New Companies Act, 2013.",
                     "Continue ?"}));
    EXPECT_EQ(count("NewFATRo2016"), 0);
    ui_.answer_yes();
    s->cmdOldDepChart_Click();
    EXPECT_TRUE(s->OldChart());
    EXPECT_EQ(count("NewFATRo2016 WHERE Code_No='C001' AND IdFAGM=-1 AND SrNoFATR=-1"), 1);
}

TEST_P(RegisterOptionsTest, PreviousYearIsCarriedForwardOnYesWithItsGroups) {
    // F.Y. 2014-15: one opening asset, one addition, one addition sold in the year.
    store::create_register_tables(db(), 2015);
    add_group(5, 2015, "PLANT AND MACHINERY", "3-15", 15, 20, "4.1", 15, 6.33, 18.10);
    add_group(6, 2015, "COMPUTERS", "3-60", 60, 0, "-1", 0, 0, 0);
    store::RegisterStore prev(db(), "C001", 2015);
    store::OpeningRow o;
    o.IdFAGM = 5;
    o.Part = "LATHE";
    o.CostWdv = 100000;
    o.OpDepr = 20000;
    o.ResValue = 5000;
    o.LifeYrs = 15;
    o.RateFACL = 10;
    o.WdvIT = 60000;
    o.RateIT = 15;
    o.PutDate = "01/04/2012";
    prev.insert_opening(o);
    store::AdditionRow a;
    a.IdFAGM = 6;
    a.Part = "LAPTOP";
    a.PutDate = "01/10/2014";
    a.AccDate = "01/10/2014";
    a.PurAmt = 60000;
    a.RateFACL = 60;
    a.RateIT = 60;
    a.LifeYrs = 3;
    prev.insert_addition(a);
    a.Part = "PRINTER";
    a.SaleDate = "01/03/2015";
    a.SaleAmt = 100;
    prev.insert_addition(a);

    ui_.answer_yes().answer_yes().answer_yes().answer_yes();
    auto s = open_screen(ui_);
    // The carried lathe, older than the Act, is asked about as a typed one would be.
    EXPECT_EQ(
        boxes(),
        (Texts{
            "Do you want to Carry Forward Previous Year Particulars of Fixed Assets Schedule ?",
            "Do you want to Change Rate for Income-Tax to 40% [Maximum Allowed as per Income-Tax Act] ?",
            "Do you want to Change Rate for Books (Other than Company) to 40% [Maximum Allowed as per "
            "Income-Tax Act] ?",
            "'For Calculation of Carrying Amount, Consider Depreciation Upto 31/03/' Year should be selected "
            "as Date of Put to Use '01/04/2012' is prior to '01/04/2014' !\n\nContinue ?"}));
    const auto rows = store().opening_entries();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(s->vsO.text_matrix(2, s->vsO.col_index("Particulars")), "LATHE");
    EXPECT_EQ(rows[0].Part, "LATHE");
    EXPECT_DOUBLE_EQ(rows[0].CostWdv, 100000);
    EXPECT_DOUBLE_EQ(rows[0].OpDepr, 28000);  // 10% of the carrying amount of 80,000, held all year
    EXPECT_EQ(rows[0].IdFAGM, kPlant);        // the year's own group matched
    EXPECT_EQ(rows[1].Part, "LAPTOP");
    EXPECT_DOUBLE_EQ(rows[1].CostWdv, 60000);
    EXPECT_DOUBLE_EQ(rows[1].RateIT, 40);
    EXPECT_DOUBLE_EQ(rows[1].RateFACL, 40);
    // The year's groups were made to match the previous year's, once each.
    EXPECT_EQ(count("NewFAGM WHERE Yr=2016 AND Part='COMPUTERS'"), 1);
    EXPECT_EQ(count("NewFAGM WHERE Yr=2016 AND Part='PLANT AND MACHINERY'"), 1);
    EXPECT_EQ(count("NewFATRa2016"), 0);
}

TEST_P(RegisterOptionsTest, DeclinedCarryForwardWritesNothing) {
    store::create_register_tables(db(), 2015);
    store::RegisterStore prev(db(), "C001", 2015);
    store::OpeningRow o;
    o.IdFAGM = 5;
    o.Part = "LATHE";
    o.CostWdv = 1000;
    prev.insert_opening(o);
    ui_.answer_no();
    auto s = open_screen(ui_);
    EXPECT_EQ(boxes(),
              Texts{"Do you want to Carry Forward Previous Year Particulars of Fixed Assets Schedule ?"});
    EXPECT_EQ(count("NewFATRo2016"), 0);
    EXPECT_EQ(s->vsO.data_rows(), 0);
}

}  // namespace

BRENLOW_INSTANTIATE_BACKENDS(RegisterOptionsTest);

}  // namespace brenlow::test
