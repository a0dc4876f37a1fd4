#include "controls/number_format.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>

namespace brenlow {
namespace {

// format_mask rounds halves away from zero, judged on the 15-digit decimal form.
TEST(FormatMask, RoundsHalvesAwayFromZeroOnTheDecimalTheValuePrintsAs) {
    EXPECT_EQ(format_mask(185.175, "###0.00"), "185.18");  // binary 185.17499999...
    EXPECT_EQ(format_mask(1.005, "###0.00"), "1.01");      // binary 1.00499999...
    EXPECT_EQ(format_mask(2.675, "###0.00"), "2.68");
    EXPECT_EQ(format_mask(0.285, "###0.00"), "0.29");
    EXPECT_EQ(format_mask(0.125, "###0.00"), "0.13");  // to even would give 0.12
    EXPECT_EQ(format_mask(2.5, "###0"), "3");
    EXPECT_EQ(format_mask(3.5, "###0"), "4");
    EXPECT_EQ(format_mask(-2.5, "###0"), "-3");
    EXPECT_EQ(format_mask(-0.125, "###0.00"), "-0.13");
}

TEST(FormatMask, RoundsBelowAndAboveTheHalfToTheNearest) {
    EXPECT_EQ(format_mask(2.4999, "###0"), "2");
    EXPECT_EQ(format_mask(2.5001, "###0"), "3");
    EXPECT_EQ(format_mask(0.004, "###0.00"), "0.00");
    EXPECT_EQ(format_mask(9.995, "###0.00"), "10.00");  // the carry runs into a new digit
    EXPECT_EQ(format_mask(999999.5, "#,##0"), "10,00,000");
}

TEST(FormatMask, LooksOnlyAtFifteenSignificantDigits) {
    // 0.1 + 0.2 is 0.30000000000000004 in binary: beyond the fifteenth digit, so it is 0.3.
    EXPECT_EQ(format_mask(0.1 + 0.2, "###0.0000"), "0.3000");
    // 1234.5 less one part in 10^17 still prints as 1234.5 to fifteen digits: a half.
    EXPECT_EQ(format_mask(1234.4999999999999, "###0"), "1235");
    // A difference in the fifteenth digit is real and decides.
    EXPECT_EQ(format_mask(1234.49999999999, "###0"), "1234");
}

TEST(FormatMask, PadsDecimalsAndDropsNone) {
    EXPECT_EQ(format_mask(12, "###0.00"), "12.00");
    EXPECT_EQ(format_mask(0.5, "###0.0000"), "0.5000");
    EXPECT_EQ(format_mask(1.23456, "###0.0000"), "1.2346");
    EXPECT_EQ(format_mask(7.25, "###0.000"), "7.250");
    EXPECT_EQ(format_mask(0.07, "###0.0"), "0.1");
    EXPECT_EQ(format_mask(1e-20, "###0.00"), "0.00");
    EXPECT_EQ(format_mask(1e20, "###0"), "100000000000000000000");
}

// The masks with a comma group in lakhs and crores unless the practice asks for thousands;
// decimals, rounding and brackets are the same either way.
TEST(FormatMask, GroupsInLakhsAndCroresOrInThousandsAsThePracticeSets) {
    struct Case {
        double value;
        const char* mask;
        const char* indian;
        const char* western;
    };
    const Case cases[] = {
        {183442000, "#,##0", "18,34,42,000", "183,442,000"},
        {1234567, "#,##0", "12,34,567", "1,234,567"},
        {123456, "#,##0", "1,23,456", "123,456"},
        {100000, "#,##0", "1,00,000", "100,000"},
        {12345, "#,##0", "12,345", "12,345"},
        {999, "#,##0", "999", "999"},
        {1000, "#,##0", "1,000", "1,000"},
        {-1234567.125, "#,##0.00", "-12,34,567.13", "-1,234,567.13"},
        {0.4, "#,##0.00", "0.40", "0.40"},
        {-1234567.5, "#,##0;(#,##0)", "(12,34,568)", "(1,234,568)"},
        {1234.5, "#,##0;(#,##0)", "1,235", "1,235"},
        {-1234.5, "#,##0;(#,##0)", "(1,235)", "(1,235)"},
        {123456789012.0, "#,##0", "1,23,45,67,89,012", "123,456,789,012"},
    };
    const DigitGrouping before = digit_grouping();
    for (const Case& c : cases) {
        set_digit_grouping(DigitGrouping::indian);
        EXPECT_EQ(format_mask(c.value, c.mask), c.indian) << c.value << " " << c.mask;
        set_digit_grouping(DigitGrouping::western);
        EXPECT_EQ(format_mask(c.value, c.mask), c.western) << c.value << " " << c.mask;
    }
    set_digit_grouping(before);
    EXPECT_EQ(digit_grouping_named("WESTERN"), DigitGrouping::western);
    EXPECT_EQ(digit_grouping_named("Indian"), DigitGrouping::indian);
    EXPECT_FALSE(digit_grouping_named("lakhs"));
}

TEST(ParseAmount, ReadsPlainAndGroupedAmountsAndRefusesTheRest) {
    struct Case {
        const char* text;
        std::optional<double> value;
    };
    const Case cases[] = {
        {"850000", 850000},
        {"8,50,000", 850000},
        {"850,000", 850000},
        {"15,00,000.50", 1500000.5},
        {"1,500,000.50", 1500000.5},
        {" -12,345.25 ", -12345.25},
        {"+1,000", 1000},
        {".5", 0.5},
        {"5.", 5},
        {"1,23,45,67,890", 1234567890},
        {"8,5,0", std::nullopt},
        {"85,0000", std::nullopt},
        {",850", std::nullopt},
        {"850,", std::nullopt},
        {"1,0000,000", std::nullopt},
        {"123,45,678", std::nullopt},
        {"1.000,50", std::nullopt},
        {"1,000.5,0", std::nullopt},
        {"1e5", std::nullopt},
        {"", std::nullopt},
        {"-", std::nullopt},
        {"12 345", std::nullopt},
        {"abc", std::nullopt},
        {"1..2", std::nullopt},
    };
    for (const Case& c : cases) EXPECT_EQ(parse_amount(c.text), c.value) << '"' << c.text << '"';
}

TEST(FormatMask, PutsNegativesInBracketsWhenTheMaskHasANegativeSection) {
    EXPECT_EQ(format_mask(-1234.5, "#,##0;(#,##0)"), "(1,235)");
    EXPECT_EQ(format_mask(1234.5, "#,##0;(#,##0)"), "1,235");
}

TEST(FormatMask, PrintsNothingThatRoundsToZeroAsAPlainZero) {
    EXPECT_EQ(format_mask(-0.0, "###0"), "0");
    EXPECT_EQ(format_mask(-0.0, "###0.00"), "0.00");
    EXPECT_EQ(format_mask(-0.4, "###0"), "0");
    EXPECT_EQ(format_mask(-0.001, "###0.00"), "0.00");
    EXPECT_EQ(format_mask(-0.4, "#,##0;(#,##0)"), "0");
}

TEST(FormatMask, KeepsAPointWithNoDecimalsAfterIt) {
    EXPECT_EQ(format_mask(5.5, "###0."), "6.");
}

TEST(MaskValue, IsTheNumberTheFormattedTextReadsAs) {
    EXPECT_DOUBLE_EQ(mask_value(185.175, "###0.00"), 185.18);
    EXPECT_DOUBLE_EQ(mask_value(2.5, "###0"), 3.0);
    EXPECT_DOUBLE_EQ(mask_value(-2.5, "###0"), -3.0);
    EXPECT_DOUBLE_EQ(mask_value(1234567.891, "#,##0.00"), 1234567.89);
    EXPECT_DOUBLE_EQ(mask_value(1.23456, "###0.0000"), 1.2346);
    EXPECT_EQ(mask_value(0.1 + 0.2, "###0.00"), 0.3);  // the nearest double to the text, exactly
    EXPECT_FALSE(std::signbit(mask_value(-0.2, "###0")));
}

// vb_round rounds halves to the even neighbour, judged on the same 15-digit form.
TEST(VbRound, RoundsHalvesToTheEvenNeighbour) {
    EXPECT_DOUBLE_EQ(vb_round(0.125, 2), 0.12);
    EXPECT_DOUBLE_EQ(vb_round(0.375, 2), 0.38);
    EXPECT_DOUBLE_EQ(vb_round(2.5, 0), 2.0);
    EXPECT_DOUBLE_EQ(vb_round(3.5, 0), 4.0);
    EXPECT_DOUBLE_EQ(vb_round(-2.5, 0), -2.0);
    EXPECT_DOUBLE_EQ(vb_round(-3.5, 0), -4.0);
    EXPECT_DOUBLE_EQ(vb_round(0.5, 0), 0.0);
    EXPECT_DOUBLE_EQ(vb_round(9.5, 0), 10.0);
}

TEST(VbRound, JudgesTheHalfOnTheDecimalNotTheBinaryValue) {
    // In binary 2.675 is just below the half and 1.015 just below too; as decimals both are halves.
    EXPECT_DOUBLE_EQ(vb_round(2.675, 2), 2.68);
    EXPECT_DOUBLE_EQ(vb_round(1.015, 2), 1.02);
    EXPECT_DOUBLE_EQ(vb_round(185.165, 2), 185.16);
    EXPECT_DOUBLE_EQ(vb_round(0.1 + 0.2 + 0.005, 2), 0.30);  // 0.305 to fifteen digits: a half, 0 is even
}

TEST(VbRound, RoundsAnythingOffTheHalfToTheNearest) {
    EXPECT_DOUBLE_EQ(vb_round(0.1251, 2), 0.13);
    EXPECT_DOUBLE_EQ(vb_round(0.1249, 2), 0.12);
    EXPECT_DOUBLE_EQ(vb_round(-1234.5678, 2), -1234.57);
    EXPECT_DOUBLE_EQ(vb_round(99.995, 2), 100.0);
    EXPECT_DOUBLE_EQ(vb_round(12.0, 2), 12.0);
    EXPECT_DOUBLE_EQ(vb_round(0.0004, 2), 0.0);
}

TEST(PlainNumber, WritesUpToFifteenDigitsWithoutExponentOrTrailingZeros) {
    EXPECT_EQ(plain_number(1500), "1500");
    EXPECT_EQ(plain_number(0.1), "0.1");
    EXPECT_EQ(plain_number(-2.5), "-2.5");
    EXPECT_EQ(plain_number(0.0), "0");
    EXPECT_EQ(plain_number(-0.0), "0");
    EXPECT_EQ(plain_number(0.1 + 0.2), "0.3");
    EXPECT_EQ(plain_number(1e20), "100000000000000000000");
    EXPECT_EQ(plain_number(0.000012), "0.000012");
    EXPECT_EQ(plain_number(123456789.123456789), "123456789.123457");
    EXPECT_EQ(plain_number(1.0 / 3.0), "0.333333333333333");
}

}  // namespace
}  // namespace brenlow
