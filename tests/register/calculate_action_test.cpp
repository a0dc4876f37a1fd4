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
    screen->DepMode = "DEP_IT";
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

TEST_P(CalculateAction, BooksModeShowsTheSheetAndTheChartOnly) {
    insert_opening(kFurniture, "TABLES", 40000);
    auto screen = open_screen(ui_);
    screen->DepMode = "DEP_FA";
    screen->cmdDeprCalc_Click();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_TRUE(store::read_chart(db(), store::ChartTable::TmpDepChart, "C001", kYear).empty());
}

TEST_P(CalculateAction, AnEmptyRegisterSaysSoAndShowsNothing) {
    auto screen = open_screen(ui_);
    screen->DepMode = "DEP_IT";
    screen->cmdDeprCalc_Click();
    EXPECT_TRUE(shown.empty());
    ui_.expect_message("No Assets Available !");
}

BRENLOW_INSTANTIATE_BACKENDS(CalculateAction);

}  // namespace
}  // namespace brenlow::test
