#include "depreciation/regime_check.h"

#include <gtest/gtest.h>

namespace brenlow::depreciation {
namespace {

const AdditionalSums kSomeAdditional{20000, 0, 0};

// A kind as the client keeps it (init --kind, the store): by its key.
AssesseeKind kind(std::string_view key) {
    const auto k = assessee_kind_of_key(key);
    EXPECT_TRUE(k) << key;
    return k.value_or(AssesseeKind::Other);
}

TEST(AssesseeKinds, EachKindHasAKeyANameAndAPlaceInTheList) {
    const auto list = assessee_kind_list();
    EXPECT_EQ(list.compose().substr(0, 47), "#individual;Individual|#huf;Hindu Undivided Fam");
    for (auto it = assessee_kinds_begin(); it != assessee_kinds_end(); ++it) {
        EXPECT_EQ(assessee_kind_of_key(it->key), it->kind);
        EXPECT_EQ(list.text_of(it->key), std::string(it->name));
    }
    EXPECT_EQ(assessee_kind_of_key("aop/boi"), AssesseeKind::AOP);
    EXPECT_FALSE(assessee_kind_of_key("trust"));
}

TEST(AssesseeKinds, AClientWithoutAKindIsTakenByItsStatus) {
    EXPECT_EQ(assessee_kind_of_status(1), AssesseeKind::Individual);
    EXPECT_EQ(assessee_kind_of_status(2), AssesseeKind::Firm);
    EXPECT_EQ(assessee_kind_of_status(3), AssesseeKind::Company);
    EXPECT_EQ(assessee_kind_of_status(4), AssesseeKind::Company);
    EXPECT_EQ(assessee_kind_of_status(0), AssesseeKind::Other);
}

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
    const auto d = concessional_regime_check(2022, kind("company"), f, kSomeAdditional, false);
    EXPECT_TRUE(d.refused);
    EXPECT_EQ(d.message,
              "Additional Depreciation is not allowed, if opted for taxation u/s 115BA/115BAA/115BAB.");
    EXPECT_EQ(d.question, "Do you really want to delete additional depreciation?");
}

TEST(ConcessionalRegime, SaysNothingWhenTheChartHoldsNoAdditionalDepreciation) {
    RegimeFlags f;
    f.vFlagCompDom115BA = true;
    const auto d = concessional_regime_check(2022, kind("company"), f, AdditionalSums{}, false);
    EXPECT_FALSE(d.refused);
    EXPECT_TRUE(d.message.empty());
}

TEST(ConcessionalRegime, CountsTheCarriedHalfAsAdditionalDepreciation) {
    RegimeFlags f;
    f.vFlagCompDom115BA = true;
    EXPECT_TRUE(
        concessional_regime_check(2022, kind("company"), f, AdditionalSums{0, 0, 5000}, false).refused);
}

TEST(ConcessionalRegime, Applies115BACToIndividualsFrom2021AndToAOPsFrom2024) {
    RegimeFlags f;
    f.vFlagIndHUF115BAC = true;
    EXPECT_FALSE(concessional_regime_check(2020, kind("individual"), f, kSomeAdditional, false).refused);
    const auto d = concessional_regime_check(2021, kind("huf"), f, kSomeAdditional, false);
    EXPECT_EQ(d.message, "Additional Depreciation is not allowed, if opted for taxation u/s 115BAC.");
    EXPECT_FALSE(concessional_regime_check(2023, kind("aop"), f, kSomeAdditional, false).refused);
    EXPECT_TRUE(concessional_regime_check(2024, kind("aop"), f, kSomeAdditional, false).refused);
}

TEST(ConcessionalRegime, AppliesTheCooperativeSectionsFromTheirYears) {
    RegimeFlags bad;
    bad.vFlagCopSoc115BAD = true;
    EXPECT_FALSE(concessional_regime_check(2020, kind("co-operative"), bad, kSomeAdditional, false).refused);
    EXPECT_EQ(concessional_regime_check(2021, kind("co-operative"), bad, kSomeAdditional, false).message,
              "Additional Depreciation is not allowed, if opted for taxation u/s 115BAD.");
    RegimeFlags bae;
    bae.vFlagCopSoc115BAE = true;
    EXPECT_FALSE(concessional_regime_check(2023, kind("co-operative"), bae, kSomeAdditional, false).refused);
    EXPECT_EQ(concessional_regime_check(2024, kind("co-operative"), bae, kSomeAdditional, false).message,
              "Additional Depreciation is not allowed, if opted for taxation u/s 115BAE.");
}

TEST(ConcessionalRegime, AddsTheNoteAndAsksAboutTheHandEditedChart) {
    RegimeFlags f;
    f.vFlagCompDom115BA = true;
    const auto d = concessional_regime_check(2022, kind("company"), f, kSomeAdditional, true);
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
    const auto d = concessional_regime_check(2026, kind("company"), f, kSomeAdditional, false);
    EXPECT_TRUE(d.refused);
    EXPECT_TRUE(d.question.empty());
    EXPECT_EQ(d.gate_message, "Not Available as ITR Forms for A.Y. 2026-27 have not been notified yet.");
}

}  // namespace
}  // namespace brenlow::depreciation
