#include "controls/vb_date.h"

#include <gtest/gtest.h>

namespace brenlow {
namespace {

TEST(DateParse, ReadsDayMonthYearWithAnyOfTheThreeSeparators) {
    EXPECT_EQ(Date::parse("31/03/2016"), (Date{2016, 3, 31}));
    EXPECT_EQ(Date::parse("31-03-2016"), (Date{2016, 3, 31}));
    EXPECT_EQ(Date::parse("31.03.2016"), (Date{2016, 3, 31}));
    EXPECT_EQ(Date::parse("1/4/2015"), (Date{2015, 4, 1}));
    EXPECT_EQ(Date::parse("01042015"), (Date{2015, 4, 1}));
}

TEST(DateParse, PutsTwoDigitYearsBelowThirtyInThisCentury) {
    EXPECT_EQ(Date::parse("31/12/15"), (Date{2015, 12, 31}));
    EXPECT_EQ(Date::parse("01/01/00"), (Date{2000, 1, 1}));
    EXPECT_EQ(Date::parse("01/01/29"), (Date{2029, 1, 1}));
    EXPECT_EQ(Date::parse("01/01/30"), (Date{1930, 1, 1}));
    EXPECT_EQ(Date::parse("01/01/99"), (Date{1999, 1, 1}));
}

TEST(DateParse, RefusesDaysTheCalendarDoesNotHave) {
    EXPECT_FALSE(Date::parse("29/02/2015"));
    EXPECT_TRUE(Date::parse("29/02/2016"));
    EXPECT_FALSE(Date::parse("29/02/1900"));  // a century is not a leap year...
    EXPECT_TRUE(Date::parse("29/02/2000"));   // ...unless it divides by 400
    EXPECT_FALSE(Date::parse("31/04/2015"));
    EXPECT_FALSE(Date::parse("00/01/2015"));
    EXPECT_FALSE(Date::parse("31-13-15"));
}

TEST(DateParse, RefusesTextThatIsNotADate) {
    EXPECT_FALSE(Date::parse(""));
    EXPECT_FALSE(Date::parse("31/12"));
    EXPECT_FALSE(Date::parse("31/12/2015/1"));
    EXPECT_FALSE(Date::parse("31/12-2015"));
    EXPECT_FALSE(Date::parse("3a/12/2015"));
    EXPECT_FALSE(Date::parse("31/12/201"));
    EXPECT_FALSE(Date::parse("311215"));
}

TEST(DateFormat, WritesTheStoredFormAndTheGridPatterns) {
    const Date d{2016, 3, 5};
    EXPECT_EQ(d.text(), "05/03/2016");
    EXPECT_EQ(d.format("dd/MM/yyyy"), "05/03/2016");
    EXPECT_EQ(d.format("DD/MM/YY"), "05/03/16");
    EXPECT_EQ(d.format("dd/mm/yy"), "05/03/16");
    EXPECT_EQ(d.format("dd-mm-yyyy"), "05-03-2016");
    EXPECT_EQ((Date{2005, 12, 31}).format("dd/mm/yy"), "31/12/05");
}

TEST(DateArithmetic, CountsWholeDaysAcrossLeapYearsAndMonthEnds) {
    EXPECT_EQ(days_between(Date{2015, 4, 1}, Date{2016, 3, 31}), 365);
    EXPECT_EQ(days_between(Date{2016, 4, 1}, Date{2017, 3, 31}), 364);
    EXPECT_EQ(days_between(Date{2015, 4, 1}, Date{2015, 9, 28}), 180);
    EXPECT_EQ(days_between(Date{2016, 3, 31}, Date{2015, 4, 1}), -365);
    EXPECT_EQ(days_between(Date{1999, 12, 31}, Date{2000, 3, 1}), 61);
    EXPECT_EQ((Date{2016, 2, 28}).add_days(1), (Date{2016, 2, 29}));
    EXPECT_EQ((Date{2015, 2, 28}).add_days(1), (Date{2015, 3, 1}));
    EXPECT_EQ((Date{2016, 1, 1}).add_days(-1), (Date{2015, 12, 31}));
    EXPECT_EQ((Date{2015, 4, 1}).add_days(179), (Date{2015, 9, 27}));
}

TEST(DateCompare, OrdersByYearThenMonthThenDay) {
    EXPECT_LT((Date{2015, 12, 31}), (Date{2016, 1, 1}));
    EXPECT_LT((Date{2016, 1, 31}), (Date{2016, 2, 1}));
    EXPECT_LT((Date{2016, 2, 1}), (Date{2016, 2, 2}));
    EXPECT_EQ((Date{2016, 2, 2}), (Date{2016, 2, 2}));
}

TEST(FinancialYear, RunsFromAprilToMarchAndIsNamedByTheYearItEnds) {
    EXPECT_EQ(fy_first(2016), (Date{2015, 4, 1}));
    EXPECT_EQ(fy_last(2016), (Date{2016, 3, 31}));
    EXPECT_EQ(fy_year_of(Date{2015, 4, 1}), 2016);
    EXPECT_EQ(fy_year_of(Date{2016, 3, 31}), 2016);
    EXPECT_EQ(fy_year_of(Date{2016, 4, 1}), 2017);
    EXPECT_EQ(fy_year_of(Date{2015, 12, 31}), 2016);
}

TEST(IsDate, RecognisesDayMonthYearTextsAsTheDesktopDoes) {
    EXPECT_TRUE(is_date("31/12/15"));
    EXPECT_TRUE(is_date("31-12-2015"));
    EXPECT_TRUE(is_date("31.12.15"));
    EXPECT_TRUE(is_date("1/1/15"));
    EXPECT_TRUE(is_date("31-Dec-2015"));
    EXPECT_TRUE(is_date("31 december 2015"));
    EXPECT_FALSE(is_date("31-13-15"));
    EXPECT_FALSE(is_date("12-31-15"));  // month-day order is not read
    EXPECT_FALSE(is_date("31122015"));
    EXPECT_FALSE(is_date("30-02-16"));
    EXPECT_FALSE(is_date(""));
    EXPECT_FALSE(is_date("--"));
}

}  // namespace
}  // namespace brenlow

namespace brenlow {
namespace {

TEST(DateSerials, RunContinuouslyAcrossMonthsYearsAndLeapDays) {
    const Date start{2023, 12, 30};
    long previous = start.serial();
    for (int i = 1; i < 800; ++i) {
        const Date d = start.plus_days(i);
        EXPECT_EQ(d.serial(), previous + 1);
        EXPECT_EQ(Date::from_serial(d.serial()), d);
        previous = d.serial();
    }
    EXPECT_EQ((Date{2024, 3, 1}.plus_days(-1)), (Date{2024, 2, 29}));
}

TEST(PackedDates, AreExactlyEightDigitsOfARealDay) {
    EXPECT_EQ(Date::parse_packed("15062010"), (Date{2010, 6, 15}));
    EXPECT_FALSE(Date::parse_packed("1506201"));
    EXPECT_FALSE(Date::parse_packed("15/06/10"));
    EXPECT_FALSE(Date::parse_packed("29022023"));
    EXPECT_TRUE(Date::parse_packed("29022024"));
}

TEST(FinancialYearLength, Is366WhenItsFebruaryHas29Days) {
    EXPECT_EQ(fy_length_days(2024), 366);  // 01/04/2023 - 31/03/2024
    EXPECT_EQ(fy_length_days(2025), 365);
    EXPECT_EQ(fy_length_days(2000), 366);
    EXPECT_EQ(fy_length_days(2100), 365);
    EXPECT_EQ((Date{2025, 3, 31}).short_text(), "31/03/25");
}

}  // namespace
}  // namespace brenlow
