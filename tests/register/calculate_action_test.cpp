#include <gtest/gtest.h>

#include "register/frm_new_fatr.h"
#include "register_fixture.h"
#include "store/chart_store.h"
#include "suite/defaults.h"

namespace brenlow::test {
namespace {

class CalculateAction : public RegisterTest {
protected:
    // The report object records the reports the screen shows.
    std::vector<Ostikreport::ReportDocument> shown;
    void SetUp() override {
        RegisterTest::SetUp();
        if (IsSkipped()) return;
        comp_.report = std::make_shared<suite::ReportObject>();
        comp_.report->set_viewer([this](const Ostikreport::ReportDocument& d) { shown.push_back(d); });
    }
};

TEST_P(CalculateAction, IncomeTaxModeShowsTheSheetTheSummaryAndTheChartAndWritesTheChart) {
    insert_opening(kPlant, "LATHE", 100000);
    insert_addition(kPlant, "DRILL", 50000);
    auto screen = open_screen(ui_);
    screen->cboDepMode_Click(reg::Mode::DEP_IT);
    screen->cmdDeprCalc_Click();
    ASSERT_EQ(shown.size(), 3u);
    EXPECT_EQ(shown[1].titles.front(), "BLOCK WISE SUMMARY");
    EXPECT_EQ(shown[2].titles.front(), "FIXED ASSETS");
    ASSERT_TRUE(screen->LastCalculation());
    const auto chart = store::read_chart(db(), store::ChartTable::TmpDepChart, "C001", kYear);
    ASSERT_EQ(chart.size(), 1u);
    EXPECT_EQ(chart[0].Grp, 3);
    EXPECT_DOUBLE_EQ(chart[0].Wdv, 80000);  // the opening WDV under the Act, not the cost
    EXPECT_DOUBLE_EQ(chart[0].Add1 + chart[0].Add2, 50000);
}

TEST_P(CalculateAction, TheTaxAuditModeAddsTheListingOfAdditionsAndDeductions) {
    insert_opening(kPlant, "LATHE", 100000);
    insert_addition(kPlant, "DRILL", 50000);
    auto screen = open_screen(ui_);
    screen->cboDepMode_Click(reg::Mode::DEP_3CD_IT);
    screen->cmdDeprCalc_Click();
    ASSERT_EQ(shown.size(), 4u);
    EXPECT_EQ(shown[2].titles.front(), "DETAILS OF DEPRECIATION ALLOWABLE AS PER THE INCOME-TAX ACT, 1961");
    ASSERT_EQ(shown[2].rows.size(), 1u);
    EXPECT_EQ(shown[2].rows[0][1], "DRILL");
}

TEST_P(CalculateAction, BooksModeShowsTheSheetAndTheChartOnly) {
    insert_opening(kFurniture, "TABLES", 40000);
    auto screen = open_screen(ui_);
    screen->cboDepMode_Click(reg::Mode::DEP_FA);
    screen->cmdDeprCalc_Click();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_TRUE(store::read_chart(db(), store::ChartTable::TmpDepChart, "C001", kYear).empty());
}

TEST_P(CalculateAction, AnEmptyRegisterSaysSoAndShowsNothing) {
    auto screen = open_screen(ui_);
    screen->cboDepMode_Click(reg::Mode::DEP_IT);
    screen->cmdDeprCalc_Click();
    EXPECT_TRUE(shown.empty());
    ui_.expect_message("No Assets Available !");
}

BRENLOW_INSTANTIATE_BACKENDS(CalculateAction);

}  // namespace
}  // namespace brenlow::test

namespace brenlow::test {
namespace {

// A company that opted for 115BA with additional depreciation in its chart.
class ConcessionalRegime : public CalculateAction {
protected:
    void SetUp() override {
        CalculateAction::SetUp();
        if (IsSkipped()) return;
        db().execute("update master set status=3 where code_no='C001'");
        ASSERT_TRUE(base_->select_client_year("C001", kYear));
        base_->SetMiscOthInf("REGIME115BA", "1", base_->SecondDate(), "C001", "opted for 115BA");
        const long serial = insert_addition(kPlant, "PRESS", 100000);
        db().execute("update NewFATRa" + std::to_string(kYear) +
                     " set AddlDepRT=20 where SrNoFATR=" + std::to_string(serial));
    }
    double additional_in(store::ChartTable table) {
        const auto sums = store::additional_in_stored_chart(db(), table, "C001", kYear);
        return sums.ADeprF + sums.ADeprH + sums.ADeprOpH;
    }
};

TEST_P(ConcessionalRegime, RefusesAdditionalDepreciationAndLeavesTheChartWhenTheAnswerIsNo) {
    auto screen = open_screen(ui_);
    screen->cboDepMode_Click(reg::Mode::DEP_IT);
    ui_.answer_no();
    screen->cmdDeprCalc_Click();
    ui_.expect_message(
        "Additional Depreciation is not allowed, if opted for taxation u/s 115BA/115BAA/115BAB.");
    ASSERT_EQ(ui_.questions().size(), 1u);
    EXPECT_EQ(ui_.questions()[0], "Do you really want to delete additional depreciation?");
    EXPECT_EQ(ui_.shown().back().default_button, "No");
    EXPECT_GT(additional_in(store::ChartTable::TmpDepChart), 0);
    EXPECT_EQ(base_->GetMiscOthInf("MANDEP", base_->SecondDate(), "C001"), "");
}

TEST_P(ConcessionalRegime, OnYesTheChartWithoutItBecomesTheHandEditedChart) {
    auto screen = open_screen(ui_);
    screen->cboDepMode_Click(reg::Mode::DEP_IT);
    ui_.answer_yes();
    screen->cmdDeprCalc_Click();
    ui_.expect_message(
        "Additional Depreciation is not allowed, if opted for taxation u/s 115BA/115BAA/115BAB.");
    const auto built = store::read_chart(db(), store::ChartTable::TmpDepChart, "C001", kYear);
    const auto edited = store::read_chart(db(), store::ChartTable::DeprChart, "C001", kYear);
    EXPECT_EQ(additional_in(store::ChartTable::TmpDepChart), 0);
    EXPECT_EQ(built, edited);
    ASSERT_EQ(edited.size(), 1u);
    // The 20,000 of additional depreciation stays in the block: total less, closing WDV more.
    EXPECT_DOUBLE_EQ(edited[0].TotDep, edited[0].DeprF + edited[0].DeprH);
    EXPECT_EQ(base_->GetMiscOthInf("MANDEP", base_->SecondDate(), "C001"), "1");
}

TEST_P(ConcessionalRegime, AClientWithoutTheRegimeKeepsItsAdditionalDepreciationSilently) {
    base_->SetMiscOthInf("REGIME115BA", "0", base_->SecondDate(), "C001", "");
    auto screen = open_screen(ui_);
    screen->cboDepMode_Click(reg::Mode::DEP_IT);
    screen->cmdDeprCalc_Click();
    EXPECT_TRUE(ui_.questions().empty());
    EXPECT_GT(additional_in(store::ChartTable::TmpDepChart), 0);
}

BRENLOW_INSTANTIATE_BACKENDS(ConcessionalRegime);

}  // namespace
}  // namespace brenlow::test
