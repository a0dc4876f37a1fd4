// The option lists of the register: the NewFAMI row and the OthOpts of entries.

#include "register/register_options.h"

#include <gtest/gtest.h>

namespace brenlow::reg {
namespace {

TEST(RegisterOptionsRow, EmptyRowReadsAsTheDefaults) {
    const auto o = RegisterOptions::parse("");
    EXPECT_EQ(o.optMOD, "WDV");
    EXPECT_EQ(o.optResValOf, "COST");
    EXPECT_EQ(o.compose(), "WDV|N|N|Y|0|0|COST|0|W|N|0");
}

TEST(RegisterOptionsRow, ElevenFieldsComeBackInTheirOrder) {
    const std::string row = "SLM|Y|Y|N|1|1|CA|1|S|Y|2";
    EXPECT_EQ(RegisterOptions::parse(row).compose(), row);
    EXPECT_EQ(RegisterOptions::parse(row).rem_life_mode(), 3);
}

TEST(RegisterOptionsRow, ShortRowKeepsTheDefaultsOfTheMissingFieldsAndOutOfRangeNumbersAreIgnored) {
    const auto o = RegisterOptions::parse("SLM|Y|Y|N|9");
    EXPECT_EQ(o.optMOD, "SLM");
    EXPECT_EQ(o.cboAddlDep1, 0);
    EXPECT_EQ(o.optResValOf, "COST");
}

TEST(EntryOptions, OpeningTicksSurviveTheRoundTrip) {
    OpeningOpts o;
    o.CalcCA = "2015";
    o.ResValOf = "CA";
    o.WdvIT = "Y";
    o.LifeDefault = false;
    o.AutoDepr = false;
    const auto back = OpeningOpts::parse(o.compose());
    EXPECT_EQ(back.CalcCA, "2015");
    EXPECT_EQ(back.ResValOf, "CA");
    EXPECT_EQ(back.WdvIT, "Y");
    EXPECT_FALSE(back.LifeDefault);
    EXPECT_FALSE(back.AutoDepr);
    EXPECT_TRUE(back.RateDefault);
}

TEST(EntryOptions, TheWdvChoiceAloneReadsAsTheWholeParseReadsIt) {
    for (const char* text : {"", "2015", "2015|CA|SLM", "2015|CA|SLM|N", "||WDV|Y|N|N|Y|Y|Y|Y|N|N", "|||N|",
                             "a|b|c|dd|e|f|g|h|i|j|k|l|m|n|o|p|q|r|s"}) {
        EXPECT_EQ(OpeningOpts::wdv_it(text), OpeningOpts::parse(text).WdvIT) << text;
    }
    EXPECT_EQ(OpeningOpts::wdv_it("|||N|Y"), "N");
}

TEST(EntryOptions, FieldsAfterALongListAreStillReadInPlace) {
    const auto o = OpeningOpts::parse("2015|COST|SLM|Y|N|N|N|N|N|N|Y|Y");
    EXPECT_EQ(o.CalcCA, "2015");
    EXPECT_EQ(o.ResValOf, "COST");
    EXPECT_EQ(o.MOD, "SLM");
    EXPECT_EQ(o.WdvIT, "Y");
    EXPECT_FALSE(o.ResDefault);
    EXPECT_FALSE(o.AutoDepr);
    EXPECT_TRUE(o.AddlDepOn);
    EXPECT_TRUE(o.TotESA);
}

TEST(EntryOptions, AdditionWrittenByAnOlderCopyWithTwoFieldsReadsItsMethod) {
    const auto a = AdditionOpts::parse("SLM|NEW");
    EXPECT_EQ(a.MOD, "SLM");
    EXPECT_EQ(a.RndAddRtAuto, "NEW");
    EXPECT_TRUE(a.ResDefault);
    EXPECT_TRUE(a.AutoDepr);
}

TEST(EntryOptions, EntryMethodFallsBackToTheCommonOption) {
    RegisterOptions common;
    common.optMOD = "SLM";
    EXPECT_EQ(effective_method("", common), "SLM");
    EXPECT_EQ(effective_method("WDV", common), "WDV");
    EXPECT_EQ(effective_basis("", common), depreciation::ResidualBasis::Cost);
    EXPECT_EQ(effective_basis("CA", common), depreciation::ResidualBasis::CarryingAmount);
}

}  // namespace
}  // namespace brenlow::reg
