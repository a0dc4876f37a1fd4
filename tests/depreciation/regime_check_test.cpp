#include "depreciation/regime_check.h"

#include <gtest/gtest.h>

namespace brenlow::depreciation {
namespace {

const AdditionalSums kSomeAdditional{20000, 0, 0};

TEST(ManualChartGate, RefusesTheYearClosingIn2026AndLater) {
    EXPECT_TRUE(manual_chart_gate(2025).allowed);
    const auto g = manual_chart_gate(2026);
    EXPECT_FALSE(g.allowed);
    EXPECT_EQ(g.message, "Not Available as ITR Forms for A.Y. 2026-27 have not been notified yet.");
    EXPECT_FALSE(manual_chart_gate(2027).allowed);
}

TEST(ManualChartGate, ChoosesTheEditorOfTheYear) {
    EXPECT_EQ(manual_chart_gate(2017).editor, ChartEditor::Before2018);
    EXPECT_EQ(manual_chart_gate(2018).editor, ChartEditor::Years2018And2019);
    EXPECT_EQ(manual_chart_gate(2019).editor, ChartEditor::Years2018And2019);
    EXPECT_EQ(manual_chart_gate(2020).editor, ChartEditor::From2020);
}

TEST(ConcessionalRegime, RefusesAdditionalDepreciationOfACompanyUnder115BA) {
    RegimeFlags f;
    f.vFlagCompDom115BA = true;
    const auto d = concessional_regime_check(2022, AssesseeStatus::Company, f, kSomeAdditional, false);
    EXPECT_TRUE(d.refused);
    EXPECT_EQ(d.message,
              "Additional Depreciation is not allowed, if opted for taxation u/s 115BA/115BAA/115BAB.");
    EXPECT_EQ(d.question, "Do you really want to delete additional depreciation?");
}

TEST(ConcessionalRegime, SaysNothingWhenTheChartHoldsNoAdditionalDepreciation) {
    RegimeFlags f;
    f.vFlagCompDom115BA = true;
    const auto d = concessional_regime_check(2022, AssesseeStatus::Company, f, AdditionalSums{}, false);
    EXPECT_FALSE(d.refused);
    EXPECT_TRUE(d.message.empty());
}

TEST(ConcessionalRegime, CountsTheCarriedHalfAsAdditionalDepreciation) {
    RegimeFlags f;
    f.vFlagCompDom115BA = true;
    EXPECT_TRUE(concessional_regime_check(2022, AssesseeStatus::Company, f, AdditionalSums{0, 0, 5000}, false)
                    .refused);
}

TEST(ConcessionalRegime, Applies115BACToIndividualsFrom2021AndToAOPsFrom2024) {
    RegimeFlags f;
    f.vFlagIndHUF115BAC = true;
    EXPECT_FALSE(
        concessional_regime_check(2020, AssesseeStatus::Individual, f, kSomeAdditional, false).refused);
    const auto d = concessional_regime_check(2021, AssesseeStatus::HUF, f, kSomeAdditional, false);
    EXPECT_EQ(d.message, "Additional Depreciation is not allowed, if opted for taxation u/s 115BAC.");
    EXPECT_FALSE(concessional_regime_check(2023, AssesseeStatus::AOP, f, kSomeAdditional, false).refused);
    EXPECT_TRUE(concessional_regime_check(2024, AssesseeStatus::AOP, f, kSomeAdditional, false).refused);
}

TEST(ConcessionalRegime, AppliesTheCooperativeSectionsFromTheirYears) {
    RegimeFlags bad;
    bad.vFlagCopSoc115BAD = true;
    EXPECT_FALSE(
        concessional_regime_check(2020, AssesseeStatus::CoopSociety, bad, kSomeAdditional, false).refused);
    EXPECT_EQ(
        concessional_regime_check(2021, AssesseeStatus::CoopSociety, bad, kSomeAdditional, false).message,
        "Additional Depreciation is not allowed, if opted for taxation u/s 115BAD.");
    RegimeFlags bae;
    bae.vFlagCopSoc115BAE = true;
    EXPECT_FALSE(
        concessional_regime_check(2023, AssesseeStatus::CoopSociety, bae, kSomeAdditional, false).refused);
    EXPECT_EQ(
        concessional_regime_check(2024, AssesseeStatus::CoopSociety, bae, kSomeAdditional, false).message,
        "Additional Depreciation is not allowed, if opted for taxation u/s 115BAE.");
}

TEST(ConcessionalRegime, AddsTheNoteAndAsksAboutTheHandEditedChart) {
    RegimeFlags f;
    f.vFlagCompDom115BA = true;
    const auto d = concessional_regime_check(2022, AssesseeStatus::Company, f, kSomeAdditional, true);
    EXPECT_NE(d.message.find(
                  "In this case Manually Edited Depreciation chart will be considered for E-Filing purpose "
                  "and Return Form but additional depreciation will remain same in Preview of "
                  "Depreciation chart."),
              std::string::npos);
    EXPECT_EQ(d.question, "Do you want to delete additional depreciation from 'Edit Chart Manually'?");
}

TEST(ConcessionalRegime, OffersNoRemovalInAYearTheGateRefuses) {
    RegimeFlags f;
    f.vFlagCompDom115BA = true;
    const auto d = concessional_regime_check(2026, AssesseeStatus::Company, f, kSomeAdditional, false);
    EXPECT_TRUE(d.refused);
    EXPECT_TRUE(d.question.empty());
    EXPECT_EQ(d.gate_message, "Not Available as ITR Forms for A.Y. 2026-27 have not been notified yet.");
}

}  // namespace
}  // namespace brenlow::depreciation
