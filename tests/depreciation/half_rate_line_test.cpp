#include "depreciation/half_rate_line.h"

#include <gtest/gtest.h>

namespace brenlow::depreciation {
namespace {

// 31/03 less 178 days: from 04/10 to 31/03 there are 28+30+31+31+28+31 = 179 days
// counting both ends, so an ordinary year's line is 04/10 and a leap February moves it.

TEST(HalfRateLine, FallsOnFourthOctoberWhenFebruaryHas28Days) {
    EXPECT_EQ(half_rate_line(2014).text(), "04/10/2014");  // F.Y. 2014-15
    EXPECT_EQ(half_rate_line(2006).text(), "04/10/2006");  // first year counted back from 31 March
}

TEST(HalfRateLine, MovesToFifthOctoberWhenTheClosingFebruaryHas29Days) {
    EXPECT_EQ(half_rate_line(2015).text(), "05/10/2015");  // F.Y. 2015-16, February 2016 has 29 days
    EXPECT_EQ(half_rate_line(2007).text(), "05/10/2007");
    EXPECT_EQ(half_rate_line(2023).text(), "05/10/2023");
}

TEST(HalfRateLine, StaysFourthOctoberUpTo2005WhateverTheCalendar) {
    EXPECT_EQ(half_rate_line(2003).text(), "04/10/2003");  // February 2004 had 29 days
    EXPECT_EQ(half_rate_line(2005).text(), "04/10/2005");
}

TEST(HalfRateLine, CountsAnAdditionOnTheLineAsHalfRateAndTheDayBeforeAsFullRate) {
    const Date line = half_rate_line(2015);
    EXPECT_TRUE(is_half_rate_addition(Date{2015, 10, 5}, line));
    EXPECT_FALSE(is_half_rate_addition(Date{2015, 10, 4}, line));
}

TEST(HalfRateLine, HeadingsPrintTheLineAsDayMonthTwoDigitYear) {
    const Date line = half_rate_line(2015);
    EXPECT_EQ(full_rate_heading(line), "(Before 05/10/15)");
    EXPECT_EQ(half_rate_heading(line), "(On or After 05/10/15)");
}

TEST(RegisterDate, ParsesTheStoredTextAndRefusesImpossibleDays) {
    ASSERT_TRUE(Date::parse("29/02/2016").has_value());
    EXPECT_FALSE(Date::parse("29/02/2015").has_value());
    EXPECT_FALSE(Date::parse("").has_value());
    EXPECT_FALSE(Date::parse("31/04/2015").has_value());
    EXPECT_EQ(Date::parse_packed("15062010")->text(), "15/06/2010");
}

TEST(RegisterDate, CountsWholeDaysAcrossALeapFebruary) {
    EXPECT_EQ(days_between(Date{2016, 2, 28}, Date{2016, 3, 1}), 2);
    EXPECT_EQ(days_between(Date{2015, 2, 28}, Date{2015, 3, 1}), 1);
    EXPECT_EQ(fy_length_days(2016), 366);
    EXPECT_EQ(fy_length_days(2015), 365);
}

}  // namespace
}  // namespace brenlow::depreciation
