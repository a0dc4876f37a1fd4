// The entry frame: the auto-calculated rate, residual value and remaining life as
// the fields change; the leave-field checks; the shift and adjustment rows.

#include "register/register_fixture.h"

namespace brenlow::test {
namespace {

using S = reg::frmNewFATR;
using Texts = std::vector<std::string>;

class RegisterEntryFrame : public RegisterTest {
protected:
    // An addition of the plant group at 100,000 with 5,000 typed as residual value
    // and a life of 10 years typed in.
    std::unique_ptr<S> rate_case() {
        auto s = open_screen(ui_);
        s->cmdAddA_Click();
        s->SelectAssetGroup(kPlant);
        s->chkfieldsA_Click(S::A_ResValue);
        s->chkfieldsA_Click(S::A_LifeYrs);
        s->txtfieldsA[S::A_PurAmt].set_text("100000");
        s->txtfieldsA[S::A_ResValue].set_text("5000");
        s->txtfieldsA[S::A_LifeYrs].set_text("10");
        s->txtfieldsA_Change(S::A_LifeYrs);
        return s;
    }
};

TEST_P(RegisterEntryFrame, WdvRateOnCostHasTwoDecimals) {
    auto s = rate_case();
    EXPECT_EQ(s->chkfieldsA[S::A_RateFACL].Caption, "Auto Calculated");
    EXPECT_EQ(s->txtfieldsA[S::A_RateFACL].text(), "25.89");
}

TEST_P(RegisterEntryFrame, WdvRateOnCarryingAmountHasFourDecimals) {
    auto s = rate_case();
    ui_.answer_yes();
    ASSERT_TRUE(s->optResValOf_Click("CA"));
    EXPECT_EQ(boxes(), Texts{"Do you really want to change 'Residual Value (5%) Of' ?"});
    s->txtfieldsA_Change(S::A_PurAmt);
    EXPECT_EQ(s->txtfieldsA[S::A_RateFACL].text(), "25.8866");
}

TEST_P(RegisterEntryFrame, SlmRateIsCostLessResidualOverLife) {
    auto s = rate_case();
    s->cboMODa_Click(s->cboMODa.List.index_of_id("SLM"));
    EXPECT_EQ(s->txtfieldsA[S::A_RateFACL].text(), "9.50");
}

TEST_P(RegisterEntryFrame, WdvWithNilResidualValueComputesNothingAndKeepsTheRate) {
    auto s = rate_case();
    s->txtfieldsA[S::A_RateFACL].set_text("7.50");
    s->txtfieldsA[S::A_ResValue].set_text("0");
    s->txtfieldsA_Change(S::A_ResValue);
    EXPECT_EQ(s->txtfieldsA[S::A_RateFACL].text(), "7.50");
}

TEST_P(RegisterEntryFrame, ResidualValueDefaultsToFivePercentOfTheNetAmount) {
    auto s = open_screen(ui_);
    s->cmdAddA_Click();
    s->SelectAssetGroup(kFurniture);
    s->txtfieldsA[S::A_PurAmt].set_text("21000");
    s->txtfieldsA[S::A_Subsidy].set_text("1000");
    s->txtfieldsA_Change(S::A_Subsidy);
    EXPECT_EQ(s->lblMiscAdjA, "-1000.00");
    EXPECT_EQ(s->lblNetAmtA, "20000.00");
    EXPECT_EQ(s->txtfieldsA[S::A_ResValue].text(), "1000.00");
    // A group without a Companies-Act classification proposes its books rate.
    EXPECT_EQ(s->chkfieldsA[S::A_RateFACL].Caption, "Default (As per Fixed Asset Group Master)");
    EXPECT_EQ(s->txtfieldsA[S::A_RateFACL].text(), "10.00");
    EXPECT_EQ(s->lblBlockA, "Block : FURNITURE AND FITTINGS");
}

TEST_P(RegisterEntryFrame, CarryingAmountBasisTakesTheDepreciationUptoTheChosenYearOffTheCost) {
    auto s = open_screen(ui_);
    s->cmdAddO_Click();
    s->SelectAssetGroup(kPlant);
    s->txtfieldsO[S::O_CostWdv].set_text("100000");
    s->cboResValOfO_Click(s->cboResValOfO.List.index_of_id("CA"));
    s->cboCalcCA_Click(s->cboCalcCA.List.index_of_id("2015"));
    s->txtCalcCA.set_text("40000");
    s->txtfieldsO_Change(S::O_CostWdv);
    EXPECT_EQ(s->txtfieldsO[S::O_ResValue].text(), "3000.00");
    EXPECT_EQ(s->chkfieldsO[S::O_RateFACL].Caption, "Auto Calculated");
}

TEST_P(RegisterEntryFrame, RemainingLifeOfAnOlderAssetCountsWholeFinancialYears) {
    auto s = open_screen(ui_);
    s->cmdAddO_Click();
    s->SelectAssetGroup(kPlant);
    s->chkfieldsO_Click(S::O_LifeYrs);
    s->txtfieldsO[S::O_LifeYrs].set_text("10");
    s->txtfieldsO[S::O_PutDate].set_text("15/06/2010");
    s->txtfieldsO_Change(S::O_PutDate);
    EXPECT_EQ(s->lblRemLifeO, "Remaining Life As on 01/04/2015 out of Total Life: 10 Years");
    EXPECT_EQ(s->txtRemLifeO, "5");
    s->txtfieldsO[S::O_PutDate].set_text("15/02/2010");
    s->txtfieldsO_Change(S::O_PutDate);
    EXPECT_EQ(s->txtRemLifeO, "4");
}

TEST_P(RegisterEntryFrame, CommonChoicesAreMarkedAsCommon) {
    auto s = open_screen(ui_);
    EXPECT_EQ(s->cboMODo.List.items()[1].text, "WDV (As Common)");
    EXPECT_EQ(s->cboMODo.List.items()[2].text, "SLM");
    ui_.answer_yes();
    ASSERT_TRUE(s->optMOD_Click("SLM"));
    EXPECT_EQ(s->cboMODo.List.items()[1].text, "WDV");
    EXPECT_EQ(s->cboMODo.List.items()[2].text, "SLM (As Common)");
    EXPECT_EQ(s->cboResValOfO.List.items()[1].text, "Cost (As Common)");
}

TEST_P(RegisterEntryFrame, LeavingAFieldRefusesWhatIsNotANumberOrADate) {
    auto s = open_screen(ui_);
    s->cmdAddO_Click();
    s->txtfieldsO[S::O_CostWdv].set_text("12A");
    EXPECT_FALSE(s->txtfieldsO_Validate(S::O_CostWdv));
    s->txtfieldsO[S::O_CostWdv].set_text("1234.5");
    EXPECT_TRUE(s->txtfieldsO_Validate(S::O_CostWdv));
    EXPECT_EQ(s->txtfieldsO[S::O_CostWdv].text(), "1234.50");
    s->txtfieldsO[S::O_RateIT].set_text("13.9125");
    EXPECT_TRUE(s->txtfieldsO_Validate(S::O_RateIT));
    EXPECT_EQ(s->txtfieldsO[S::O_RateIT].text(), "13.9125");
    s->txtfieldsO[S::O_PutDate].set_text("31/02/2015");
    EXPECT_FALSE(s->txtfieldsO_Validate(S::O_PutDate));
    s->txtfieldsO[S::O_PutDate].set_text("2/4/2015");
    EXPECT_FALSE(s->txtfieldsO_Validate(S::O_PutDate));
    s->txtfieldsO[S::O_PutDate].set_text("1/4/15");
    EXPECT_TRUE(s->txtfieldsO_Validate(S::O_PutDate));
    EXPECT_EQ(s->txtfieldsO[S::O_PutDate].text(), "01/04/2015");
    s->txtfieldsD[S::D_SaleDate].set_text("31/03/2015");
    EXPECT_FALSE(s->txtfieldsD_Validate(S::D_SaleDate));
    EXPECT_EQ(boxes(), (Texts{"Invalid Value !", "Invalid Value !",
                              "'Date of Put to Use' should be on or before 01/04/2015 !",
                              "'Date of Sale/Deduction' should be between 01/04/2015 and 31/03/2016 !"}));
}

TEST_P(RegisterEntryFrame, AdditionDatesBeforeTheYearAreRefusedOnLeaving) {
    auto s = open_screen(ui_);
    s->cmdAddA_Click();
    s->txtfieldsA[S::A_PutDate].set_text("31/03/2015");
    EXPECT_FALSE(s->txtfieldsA_Validate(S::A_PutDate));
    s->txtfieldsA[S::A_AccDate].set_text("01/04/2016");
    EXPECT_FALSE(s->txtfieldsA_Validate(S::A_AccDate));
    EXPECT_EQ(boxes(), (Texts{"'Date of Put to Use' should be on or after 01/04/2015 !",
                              "'Date of Accounting' should be between 01/04/2015 and 31/03/2016 !"}));
}

TEST_P(RegisterEntryFrame, ShiftRowsAreCheckedAndCounted) {
    auto s = open_screen(ui_);
    s->cmdAddA_Click();
    s->SelectAssetGroup(kPlant);
    s->AddShiftRow("01/04/2015", "", 2);
    EXPECT_FALSE(s->cmdShiftOK_Click());
    s->vsS.set_text_matrix(1, 1, "30/04/2015");
    s->AddShiftRow("01/05/2015", "01/05/2015", 3);
    EXPECT_TRUE(s->cmdShiftOK_Click());
    EXPECT_EQ(s->lblShiftDays, "Calculated for 30 Days (Double Shift), Calculated for 1 Day (Triple Shift)");
    s->vsS.set_text_matrix(2, 2, "");
    EXPECT_FALSE(s->cmdShiftOK_Click());
    EXPECT_EQ(boxes(), (Texts{"Please specify 'To Date' !", "Please specify 'Shift' !"}));
}

TEST_P(RegisterEntryFrame, ExtraShiftIsRefusedWhereTheGroupForbidsIt) {
    auto s = open_screen(ui_);
    s->cmdAddA_Click();
    s->SelectAssetGroup(kBuilding);
    EXPECT_EQ(s->lblNESD, "NESD");
    s->AddShiftRow("01/04/2015", "30/04/2015", 2);
    EXPECT_FALSE(s->cmdShiftOK_Click());
    EXPECT_EQ(boxes(), Texts{"'No Extra Shift Depreciation' is permitted for selected 'Asset Group' !"});
}

TEST_P(RegisterEntryFrame, AdjustmentRowsAreCheckedInTheirOrder) {
    auto s = open_screen(ui_);
    s->cmdAddO_Click();
    EXPECT_FALSE(s->AddESARow("", "1", "01/01/2014", "1", "1", "1"));
    EXPECT_FALSE(s->AddESARow("CAR", "-1", "01/01/2014", "1", "1", "1"));
    EXPECT_FALSE(s->AddESARow("CAR", "0", "", "1", "1", "1"));
    EXPECT_FALSE(s->AddESARow("CAR", "0", "01/04/2015", "1", "1", "1"));
    EXPECT_FALSE(s->AddESARow("CAR", "0", "31/03/2015", "-1", "1", "1"));
    EXPECT_FALSE(s->AddESARow("CAR", "0", "31/03/2015", "5", "0", "1"));
    EXPECT_FALSE(s->AddESARow("CAR", "0", "31/03/2015", "5", "5", ""));
    EXPECT_FALSE(s->AddESARow("CAR", "0", "31/03/2015", "5", "5", "6"));
    EXPECT_EQ(s->vsESA.data_rows(), 0);
    EXPECT_TRUE(s->AddESARow("CAR\xC2\xA6 SOLD", "0", "31/03/2015", "5", "5", "4"));
    EXPECT_EQ(s->vsESA.text_matrix(1, 0), "CAR SOLD");
    EXPECT_TRUE(s->vsESA_ValidateEdit(1, "2.5"));
    EXPECT_EQ(s->vsESA.display_text(1, 5), "2.50");
    EXPECT_FALSE(s->vsESA_ValidateEdit(1, "9"));
    EXPECT_FALSE(s->vsESA_ValidateEdit(1, "X"));
    EXPECT_EQ(boxes(), (Texts{"Please specify 'Particulars' !", "Please specify 'WDV' >= 0 !",
                              "Please specify 'Date' !", "'Date' should be before 01/04/2015",
                              "Please specify valid 'Sale/Deduction Amount' !",
                              "Please specify 'Excess Amount' !", "Please specify 'Adjustment Amount' !",
                              "Please specify valid 'Adjustment Amount' <= 5.00 !",
                              "'Maximum Adjustment Amount' should be <= 5.00 !", "Invalid Value !"}));
}

TEST_P(RegisterEntryFrame, GrossAdjustmentFollowsTheRowsAsTheyComeAndGo) {
    auto s = open_screen(ui_);
    s->cmdAddO_Click();
    s->chkTotESA_Click();
    ASSERT_TRUE(s->AddESARow("CAR", "0", "31/03/2015", "500", "400", "300"));
    ASSERT_TRUE(s->AddESARow("VAN", "0", "31/03/2014", "500", "400", "125.5"));
    EXPECT_EQ(s->txtTotESA.text(), "425.50");
    s->RemoveESARow(1);
    EXPECT_EQ(s->txtTotESA.text(), "125.50");
    EXPECT_EQ(s->vsESA.text_matrix(1, 0), "VAN");
}

// Ticking Gross over detailed rows asks first: No keeps the rows and the tick off,
// Yes ticks it and the rows are saved as their total.
TEST_P(RegisterEntryFrame, GrossAsksBeforeItReplacesTheDetailedRows) {
    auto s = open_screen(ui_);
    s->cmdAddO_Click();
    s->SelectAssetGroup(kPlant);
    s->txtPart.set_text("LATHE");
    s->txtfieldsO[S::O_PutDate].set_text("01/04/2015");
    s->txtfieldsO[S::O_CostWdv].set_text("100000");
    s->txtfieldsO[S::O_WdvIT].set_text("50000");
    ASSERT_TRUE(s->AddESARow("CAR", "100", "31/03/2015", "500", "400", "300"));
    ASSERT_TRUE(s->AddESARow("VAN", "0", "31/12/2014", "200", "200", "150"));
    const std::string question =
        "The 2 adjustment row(s) will be saved as one Gross amount of 450.00 and their details will not be "
        "kept. Continue ?";
    ui_.answer_no();
    s->chkTotESA_Click();
    EXPECT_FALSE(s->chkTotESA.Value);
    EXPECT_EQ(s->txtTotESA.text(), "");
    EXPECT_EQ(s->vsESA.data_rows(), 2);
    ui_.answer_yes();
    s->chkTotESA_Click();
    EXPECT_TRUE(s->chkTotESA.Value);
    EXPECT_EQ(s->txtTotESA.text(), "450.00");
    EXPECT_EQ(ui_.questions(), (Texts{question, question}));
    // Unticking asks nothing.
    s->chkTotESA_Click();
    EXPECT_FALSE(s->chkTotESA.Value);
    EXPECT_EQ(ui_.questions().size(), 2u);
}

TEST_P(RegisterEntryFrame, AdjustmentRowsAreStoredPackedAndReadBack) {
    auto s = open_screen(ui_);
    s->cmdAddO_Click();
    s->SelectAssetGroup(kPlant);
    s->txtPart.set_text("LATHE");
    s->txtfieldsO[S::O_PutDate].set_text("01/04/2015");
    s->txtfieldsO[S::O_CostWdv].set_text("100000");
    s->txtfieldsO[S::O_WdvIT].set_text("50000");
    ASSERT_TRUE(s->AddESARow("CAR", "100", "31/03/2015", "500", "400", "300"));
    ASSERT_TRUE(s->AddESARow("VAN", "0", "31/12/2014", "200", "200", "150"));
    ASSERT_TRUE(s->cmdUpdate_Click());
    EXPECT_EQ(db().query("SELECT DetESA FROM NewFATRo2016").first("DetESA").as_text(),
              "CAR\xC2\xA6"
              "100\xC2\xA6"
              "31/03/2015\xC2\xA6"
              "500\xC2\xA6"
              "400\xC2\xA6"
              "300|"
              "VAN\xC2\xA6"
              "0\xC2\xA6"
              "31/12/2014\xC2\xA6"
              "200\xC2\xA6"
              "200\xC2\xA6"
              "150");
    // A row written by an older copy ends with the separator; it reads the same.
    db().execute("UPDATE NewFATRo2016 SET DetESA=CONCAT(DetESA, '|')");
    s->vsO_Row = 2;
    s->cmdEditO_Click();
    EXPECT_EQ(s->vsESA.data_rows(), 2);
    EXPECT_EQ(s->vsESA.text_matrix(2, 0), "VAN");
}

TEST_P(RegisterEntryFrame, DaysOfTheYearFollowTheDates) {
    auto s = open_screen(ui_);
    s->cmdAddA_Click();
    EXPECT_EQ(s->lblDaysDeprCL, "0 Days");
    s->txtfieldsA[S::A_PutDate].set_text("01/03/2016");
    s->txtfieldsA_Change(S::A_PutDate);
    EXPECT_EQ(s->lblDaysDeprCL, "31 Days");
}

TEST_P(RegisterEntryFrame, GroupMadeInTheMasterCanBePickedOnReturn) {
    auto s = open_screen(ui_);
    s->cmdAddA_Click();
    EXPECT_FALSE(s->SelectAssetGroup(20));
    s->OnAssetGroupMaster = [this] { add_group(20, kYear, "COMPUTERS", "3-40", 40, 0, "-1", 0, 0, 0); };
    s->vsFAGM_Click(s->vsFAGM.rows() - 1);
    EXPECT_EQ(s->vsFAGM.text_matrix(s->vsFAGM.rows() - 2, 1), "COMPUTERS");
    EXPECT_TRUE(s->SelectAssetGroup(20));
    EXPECT_EQ(s->txtAssetGroup.Text, "COMPUTERS");
    EXPECT_EQ(s->Mode(), reg::EntryMode::ADDA);
}

TEST_P(RegisterEntryFrame, RemainingHalfOfAdditionalDepreciationIsTakenButAnnouncedAsNotCalculated) {
    auto s = open_screen(ui_);
    s->cmdAddO_Click();
    s->SelectAssetGroup(kFurniture);
    s->txtPart.set_text("CHAIR");
    s->txtfieldsO[S::O_CostWdv].set_text("1000");
    s->chkfieldsO_Click(S::O_AddlDepOn);
    s->txtfieldsO[S::O_AddlDepOn].set_text("400");
    ASSERT_TRUE(s->cmdUpdate_Click());
    EXPECT_EQ(boxes(),
              Texts{"Additional Depreciation (Remaining Half from Addition in Previous F.Y. used for less "
                    "than 180 days) will not be calculated ! Only available for Input as Clarification is "
                    "required from ITD for the applicability for A.Y. 2016-17 !"});
    EXPECT_EQ(db().query("SELECT AddlDepOn FROM NewFATRo2016").first("AddlDepOn").as_double(), 400);
}

}  // namespace

BRENLOW_INSTANTIATE_BACKENDS(RegisterEntryFrame);

}  // namespace brenlow::test
