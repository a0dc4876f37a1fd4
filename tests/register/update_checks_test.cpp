// cmdUpdate: every check fires in its order with its message and writes nothing;
// the boundary dates of opening entries and additions.

#include "register/register_fixture.h"

namespace brenlow::test {
namespace {

using S = reg::frmNewFATR;
using Texts = std::vector<std::string>;

class RegisterUpdateChecks : public RegisterTest {
protected:
    // An opening entry that passes every check.
    void fill_opening(S& s) {
        s.cmdAddO_Click();
        s.SelectAssetGroup(kPlant);
        s.txtPart.set_text("LATHE");
        s.txtfieldsO[S::O_PutDate].set_text("01/04/2015");
        s.txtfieldsO[S::O_CostWdv].set_text("100000");
        s.txtfieldsO[S::O_OpDepr].set_text("10000");
        s.txtfieldsO[S::O_WdvIT].set_text("80000");
        s.txtfieldsO_Change(S::O_CostWdv);
    }
    void fill_addition(S& s) {
        s.cmdAddA_Click();
        s.SelectAssetGroup(kFurniture);
        s.txtPart.set_text("TABLE");
        s.txtfieldsA[S::A_PutDate].set_text("15/06/2015");
        s.txtfieldsA[S::A_AccDate].set_text("10/06/2015");
        s.txtfieldsA[S::A_PurAmt].set_text("20000");
        s.txtfieldsA_Change(S::A_PurAmt);
    }
    // Presses Update, expecting it to stop with exactly these boxes and nothing written.
    void refused(S& s, const Texts& expected) {
        EXPECT_FALSE(s.cmdUpdate_Click());
        EXPECT_EQ(boxes(), expected);
        EXPECT_EQ(count("NewFATRo2016"), 0);
        EXPECT_EQ(count("NewFATRa2016"), 0);
        EXPECT_FALSE(!s.Entering());
    }
};

TEST_P(RegisterUpdateChecks, OpeningChecksFireOneAfterAnotherInTheirOrder) {
    auto s = open_screen(ui_);
    s->cmdAddO_Click();
    refused(*s, {"Please specify 'Asset Group' !"});
    s->SelectAssetGroup(kPlant);
    refused(*s, {"Please specify 'Particulars' !"});
    s->txtPart.set_text("LATHE");
    s->txtfieldsO[S::O_PutDate].set_text("02/04/2015");
    refused(*s, {"'Date of Put to Use' should be on or before 01/04/2015 !"});
    EXPECT_EQ(s->FocusSide, 'O');
    EXPECT_EQ(s->FocusIndex, S::O_PutDate);
    s->txtfieldsO[S::O_PutDate].set_text("01/04/2015");
    refused(*s, {"Please specify valid 'Cost' !"});
    s->txtfieldsO[S::O_CostWdv].set_text("100000");
    s->txtfieldsO[S::O_OpDepr].set_text("150000");
    refused(*s,
            {"'Depreciation Upto 31/03/2015' should be less than or equal to 'Cost' i.e. Rs. 100000.00 !"});
    s->txtfieldsO[S::O_OpDepr].set_text("10000");
    s->cboCalcCA_Click(s->cboCalcCA.List.index_of_id("2014"));
    refused(
        *s,
        {"'For Calculation of Carrying Amount, Consider Depreciation Upto 31/03/' Year [2014] should not be "
         "prior to Date of Put to Use '01/04/2015' !"});
    s->cboCalcCA_Click(0);
    s->chkfieldsO_Click(S::O_ResValue);  // typed in, no longer 5%
    s->txtfieldsO[S::O_ResValue].set_text("6000");
    ui_.answer_no();
    refused(*s, {"Residual Value is more than 5% of Cost i.e. Rs. 5000 !\n\nContinue ?"});
    s->txtfieldsO[S::O_ResValue].set_text("5000");
    s->txtfieldsO[S::O_WdvIT].set_text("1000");
    ASSERT_TRUE(s->AddESARow("SCOOTER SOLD", "500", "10/10/2013", "3500", "3000", "2000"));
    const std::string rate = "Auto Calculated Rate is 18.10% !";
    refused(*s, {rate, "Amount can not be adjusted more than Opening Written Down Value i.e. '1000.00' !"});
    s->txtfieldsO[S::O_WdvIT].set_text("80000");
    s->optsWdvIT_Click(S::WdvIT_NilWdv);
    refused(*s,
            {rate, "Option 'Asset Exists but WDV is NIL' can not be selected if Written Down Value > 0 !"});
    s->optsWdvIT_Click(S::WdvIT_Other);
    s->chkfieldsO_Click(S::O_AddlDepOn);
    s->txtfieldsO[S::O_AddlDepOn].set_text("ABC");
    refused(*s, {rate, "Please specify valid 'Amount' !"});
    s->txtfieldsO[S::O_AddlDepOn].set_text("");
    s->chkfieldsO_Click(S::O_AddlDepOn);
    s->optsWdvIT_Click(S::WdvIT_NotExist);
    s->txtfieldsD[S::D_SaleDate].set_text("10/10/2015");
    refused(*s, {rate, "Opted for 'Asset does not Exist', Can't show Sale/Deduction !"});
    s->optsWdvIT_Click(S::WdvIT_Other);
    s->txtfieldsD[S::D_SaleDate].set_text("01/04/2016");
    refused(*s, {rate, "Please specify valid 'Date of Sale/Deduction' between 01/04/2015 and 31/03/2016 !"});
    s->txtfieldsD[S::D_SaleDate].set_text("31/03/2016");
    EXPECT_TRUE(s->cmdUpdate_Click());
    EXPECT_EQ(boxes(), Texts{rate});
    EXPECT_EQ(count("NewFATRo2016"), 1);
    EXPECT_EQ(s->Mode(), reg::EntryMode::None);
    EXPECT_EQ(s->vsO.data_rows(), 1);
}

TEST_P(RegisterUpdateChecks, AdditionChecksFireOneAfterAnotherInTheirOrder) {
    auto s = open_screen(ui_);
    s->cmdAddA_Click();
    refused(*s, {"Please specify 'Asset Group' !"});
    s->SelectAssetGroup(kFurniture);
    refused(*s, {"Please specify 'Particulars' !"});
    s->txtPart.set_text("TABLE");
    refused(*s, {"Please specify valid 'Cost' !"});
    s->txtfieldsA[S::A_PurAmt].set_text("20000");
    s->txtfieldsA[S::A_ExciseCr].set_text("X1");
    refused(*s, {"Please specify valid 'Excise Credit' !"});
    s->txtfieldsA[S::A_ExciseCr].set_text("25000");
    refused(*s, {"'Excise Credit' should be less than or equal to 'Cost' i.e. Rs. 20000.00 !"});
    s->txtfieldsA[S::A_ExciseCr].set_text("0");
    s->chkfieldsA_Click(S::A_ResValue);
    s->txtfieldsA[S::A_ResValue].set_text("1500");
    ui_.answer_no();
    refused(*s, {"Residual Value is more than 5% of Cost i.e. Rs. 1000 !\n\nContinue ?"});
    s->txtfieldsA[S::A_ResValue].set_text("1000");
    ui_.answer_no();
    refused(*s, {"'Date of Put to Use' is not provided. No Depreciation will be calculated !\n\nContinue ?"});
    s->txtfieldsA[S::A_PutDate].set_text("31/03/2015");
    refused(*s, {"'Date of Put to Use' should be on or after 01/04/2015 !"});
    s->txtfieldsA[S::A_PutDate].set_text("15/06/2015");
    s->txtfieldsA[S::A_AccDate].set_text("01/04/2016");
    refused(*s, {"'Date of Accounting' should be between 01/04/2015 and 31/03/2016 !"});
    s->txtfieldsA[S::A_AccDate].set_text("10/06/2015");
    s->txtfieldsD[S::D_SaleDate].set_text("14/06/2015");
    refused(
        *s,
        {"Date of Sale/Deduction should be on or after Date of Put to Use of New Addition i.e. 15/06/2015"});
    s->txtfieldsA[S::A_PutDate].set_text("");
    ui_.answer_yes();
    refused(*s, {"'Date of Put to Use' is not provided. No Depreciation will be calculated !\n\nContinue ?",
                 "Date of Sale/Deduction should not provided if Date of Put to Use of New Addition is not "
                 "provided !"});
    s->txtfieldsA[S::A_PutDate].set_text("15/06/2015");
    s->txtfieldsD[S::D_SaleDate].set_text("15/06/2015");
    EXPECT_TRUE(s->cmdUpdate_Click());
    EXPECT_EQ(count("NewFATRa2016"), 1);
}

TEST_P(RegisterUpdateChecks, CarryingAmountYearIsAskedForWhenTheAssetIsOlderThanTheAct) {
    auto s = open_screen(ui_);
    fill_opening(*s);
    s->txtfieldsO[S::O_PutDate].set_text("15/06/2010");
    ui_.answer_no();
    EXPECT_FALSE(s->cmdUpdate_Click());
    // A Yes/No question falling on No, the only box shown, and nothing written.
    ASSERT_EQ(ui_.shown().size(), 1u);
    EXPECT_EQ(ui_.shown()[0].kind, ShownBox::Kind::yes_no);
    EXPECT_EQ(ui_.shown()[0].default_button, "No");
    EXPECT_EQ(boxes(), Texts{"'For Calculation of Carrying Amount, Consider Depreciation Upto 31/03/' Year "
                             "should be selected as "
                             "Date of Put to Use '15/06/2010' is prior to '01/04/2014' !\n\nContinue ?"});
    EXPECT_EQ(count("NewFATRo2016"), 0);
    EXPECT_TRUE(s->Entering());
    ui_.answer_yes();
    EXPECT_TRUE(s->cmdUpdate_Click());
    EXPECT_EQ(count("NewFATRo2016"), 1);
}

TEST_P(RegisterUpdateChecks, AnExtraShiftRowOnAGroupWithoutExtraShiftsIsRefusedOnUpdate) {
    auto s = open_screen(ui_);
    s->cmdAddO_Click();
    s->SelectAssetGroup(kBuilding);
    s->txtPart.set_text("FACTORY SHED");
    s->txtfieldsO[S::O_PutDate].set_text("01/04/2015");
    s->txtfieldsO[S::O_CostWdv].set_text("100000");
    s->txtfieldsO[S::O_WdvIT].set_text("80000");
    s->txtfieldsO_Change(S::O_CostWdv);
    boxes();
    // The shift frame was never closed with OK: Update checks the rows all the same.
    s->AddShiftRow("01/04/2015", "30/09/2015", 2);
    refused(*s, {"'No Extra Shift Depreciation' is permitted for selected 'Asset Group' !"});
    s->RemoveShiftRow(s->vsS.fixed_rows());
    EXPECT_TRUE(s->cmdUpdate_Click());
    EXPECT_EQ(boxes(), Texts{"Auto Calculated Rate is 9.50% !"});
    EXPECT_EQ(count("NewFATRo2016"), 1);
}

TEST_P(RegisterUpdateChecks, OpeningOnTheFirstDayOfTheYearIsAcceptedAndTheSecondDayRefused) {
    auto s = open_screen(ui_);
    fill_opening(*s);
    s->txtfieldsO[S::O_PutDate].set_text("02/04/2015");
    refused(*s, {"'Date of Put to Use' should be on or before 01/04/2015 !"});
    s->txtfieldsO[S::O_PutDate].set_text("01/04/2015");
    EXPECT_TRUE(s->cmdUpdate_Click());
    EXPECT_EQ(db().query("SELECT PutDate FROM NewFATRo2016").first("PutDate").as_text(), "01/04/2015");
}

TEST_P(RegisterUpdateChecks, AdditionOnTheLastDayIsAcceptedWithoutAQuestion) {
    auto s = open_screen(ui_);
    fill_addition(*s);
    s->txtfieldsA[S::A_PutDate].set_text("31/03/2016");
    EXPECT_TRUE(s->cmdUpdate_Click());
    EXPECT_EQ(boxes(), Texts{});
    EXPECT_EQ(db().query("SELECT PutDate FROM NewFATRa2016").first("PutDate").as_text(), "31/03/2016");
}

TEST_P(RegisterUpdateChecks, AdditionAfterTheYearAsksAndKeepsTheDateOnYes) {
    auto s = open_screen(ui_);
    fill_addition(*s);
    s->txtfieldsA[S::A_PutDate].set_text("01/04/2016");
    ui_.answer_no();
    refused(*s, {"'Date of Put to Use' should be on or before 31/03/2016 !\n\nContinue ?"});
    ui_.answer_yes();
    EXPECT_TRUE(s->cmdUpdate_Click());
    EXPECT_EQ(boxes(), Texts{"'Date of Put to Use' should be on or before 31/03/2016 !\n\nContinue ?"});
    EXPECT_EQ(db().query("SELECT PutDate FROM NewFATRa2016").first("PutDate").as_text(), "01/04/2016");
}

TEST_P(RegisterUpdateChecks, ANewEntryTakesTheNextSerialOfTheClient) {
    insert_opening(kPlant, "OLD ONE");
    store::RegisterStore other(db(), "C002", kYear);
    store::OpeningRow o;
    o.Part = "ELSEWHERE";
    for (int i = 0; i < 4; ++i) other.insert_opening(o);
    auto s = open_screen(ui_);
    fill_opening(*s);
    ASSERT_TRUE(s->cmdUpdate_Click());
    EXPECT_EQ(count("NewFATRo2016 WHERE Code_No='C001' AND SrNoFATR=2 AND Part='LATHE'"), 1);
}

TEST_P(RegisterUpdateChecks, TwoScreensAddingAtOnceGetDistinctSerials) {
    auto other = another_component();
    ScriptedUi ui2;
    auto s1 = open_screen(ui_);
    reg::frmNewFATR s2(*other, ui2);
    ASSERT_TRUE(s2.Form_Load());
    fill_opening(*s1);
    fill_opening(s2);
    s2.txtPart.set_text("PRESS");
    ASSERT_TRUE(s1->cmdUpdate_Click());
    ASSERT_TRUE(s2.cmdUpdate_Click());
    fill_addition(*s1);
    fill_addition(s2);
    ASSERT_TRUE(s2.cmdUpdate_Click());
    ASSERT_TRUE(s1->cmdUpdate_Click());
    EXPECT_EQ(count("NewFATRo2016"), 2);
    EXPECT_EQ(db().query("SELECT COUNT(DISTINCT SrNoFATR) AS n FROM NewFATRo2016").first("n").as_int(), 2);
    EXPECT_EQ(db().query("SELECT COUNT(DISTINCT SrNoFATR) AS n FROM NewFATRa2016").first("n").as_int(), 2);
    EXPECT_EQ(s1->vsO.data_rows(), 2);  // each screen reloads and sees the other's entry
}

TEST_P(RegisterUpdateChecks, EditingRewritesTheSameSerialAndKeepsTheTicks) {
    auto s = open_screen(ui_);
    fill_opening(*s);
    s->chkfieldsO_Click(S::O_LifeYrs);
    s->txtfieldsO[S::O_LifeYrs].set_text("12");
    s->AddShiftRow("01/04/2015", "30/04/2015", 2);
    ASSERT_TRUE(s->cmdUpdate_Click());
    boxes();
    s->vsO_Row = 2;
    s->cmdEditO_Click();
    EXPECT_EQ(s->Mode(), reg::EntryMode::EDITO);
    EXPECT_FALSE(s->chkfieldsO[S::O_LifeYrs].Value);
    EXPECT_EQ(s->txtfieldsO[S::O_LifeYrs].text(), "12");
    EXPECT_EQ(s->vsS.data_rows(), 1);
    s->txtPart.set_text("LATHE (REBUILT)");
    ASSERT_TRUE(s->cmdUpdate_Click());
    EXPECT_EQ(count("NewFATRo2016"), 1);
    EXPECT_EQ(db().query("SELECT Part FROM NewFATRo2016 WHERE SrNoFATR=1").first("Part").as_text(),
              "LATHE (REBUILT)");
    EXPECT_EQ(db().query("SELECT ShiftDet FROM NewFATRo2016").first("ShiftDet").as_text(),
              "01/04/2015,30/04/2015,2");
}

TEST_P(RegisterUpdateChecks, QuotesInParticularsAreStoredAsTyped) {
    auto s = open_screen(ui_);
    fill_addition(*s);
    s->txtPart.set_text("O'BRIEN'S DESK");
    ASSERT_TRUE(s->cmdUpdate_Click());
    EXPECT_EQ(db().query("SELECT Part FROM NewFATRa2016").first("Part").as_text(), "O'BRIEN'S DESK");
}

}  // namespace

BRENLOW_INSTANTIATE_BACKENDS(RegisterUpdateChecks);

}  // namespace brenlow::test
