#include "depreciation/remaining_life.h"

#include <gtest/gtest.h>

namespace brenlow::depreciation {
namespace {

TEST(GETREMLIFEYRS, CountsWholeFinancialYearsInModeTwo) {
    // Put to use 15/06/2010, in F.Y. 2010-11: 2014 - 2010 = 4 years gone, 10 - 4 = 6.
    EXPECT_EQ(GETREMLIFEYRS("15062010", 2014, 2, 0, 10), 6);
}

TEST(GETREMLIFEYRS, TakesJanuaryToMarchAsThePreviousFinancialYear) {
    // 15/02/2010 belongs to F.Y. 2009-10: 2014 - 2009 = 5 gone, 10 - 5 = 5.
    EXPECT_EQ(GETREMLIFEYRS("15022010", 2014, 2, 0, 10), 5);
}

TEST(GETREMLIFEYRS, AnswersNilForAnAssetPutToUseInTheBaseYearOrLater) {
    EXPECT_EQ(GETREMLIFEYRS("01042014", 2014, 2, 0, 10), 0);
    EXPECT_EQ(GETREMLIFEYRS("15062014", 2014, 1, 2, 10), 0);
    EXPECT_EQ(GETREMLIFEYRS("31032016", 2014, 3, 2, 10), 0);
    // The last day of the year before the base year still counts one year gone.
    EXPECT_EQ(GETREMLIFEYRS("31032014", 2014, 2, 0, 10), 9);
}

TEST(GETREMLIFEYRS, NeverGoesBelowNilWhenTheLifeIsShorterThanTheYearsGone) {
    EXPECT_EQ(GETREMLIFEYRS("15062000", 2014, 2, 0, 10), 0);
    EXPECT_EQ(GETREMLIFEYRS("15062000", 2014, 1, 2, 3), 0);
}

TEST(GETREMLIFEYRS, DividesByThreeHundredSixtyFiveInModeOneEvenAcrossALeapFebruary) {
    // 01/04/2011 to 01/04/2012 is 366 days: 366 / 365 = 1.0027, 10 - 1.0027 = 8.9973.
    EXPECT_DOUBLE_EQ(GETREMLIFEYRS("01042011", 2012, 1, 4, 10), 8.9973);
}

TEST(GETREMLIFEYRS, DividesTheFirstYearByItsRealLengthInTheOtherMode) {
    // 01/10/2011 to 01/04/2012 is 183 days of a 366-day year: 0.5, plus 2012 to 2014 = 2.5.
    EXPECT_DOUBLE_EQ(GETREMLIFEYRS("01102011", 2014, 3, 4, 10), 7.5);
    // 01/10/2012 to 01/04/2013 is 182 of 365 days: 0.4986, plus 1 = 1.4986, 10 - 1.4986.
    EXPECT_DOUBLE_EQ(GETREMLIFEYRS("01102012", 2014, 3, 4, 10), 8.5014);
}

TEST(GETREMLIFEYRS, RoundsWithTheMaskOfTheGivenDecimals) {
    // 183 / 366 = 0.5 exactly: "###0" rounds the half away from zero to 1, so 10 - 3 = 7.
    EXPECT_EQ(GETREMLIFEYRS("01102011", 2014, 3, 0, 10), 7);
    EXPECT_DOUBLE_EQ(GETREMLIFEYRS("01102012", 2014, 3, 2, 10), 8.5);  // 1.4986 -> 1.50
}

TEST(GETREMLIFEYRS, AnswersNilForADateItCannotRead) {
    EXPECT_EQ(GETREMLIFEYRS("1506201", 2014, 2, 0, 10), 0);
    EXPECT_EQ(GETREMLIFEYRS("31022010", 2014, 2, 0, 10), 0);
}

}  // namespace
}  // namespace brenlow::depreciation
