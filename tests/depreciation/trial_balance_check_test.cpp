#include "depreciation/trial_balance_check.h"

#include <gtest/gtest.h>

namespace brenlow::depreciation {
namespace {

TEST(TrialBalanceCheck, AsksNothingWhenTheFiguresAgreeToThePaisa) {
    const TbFigures same{125000.10, 15000, -250.5, 0, 0};
    // 15000.004 still shows 15000.00.
    const TbFigures tb{125000.10, 15000.004, -250.5, 0, 0};
    const auto c = trial_balance_check(same, tb);
    EXPECT_FALSE(c.differs);
    EXPECT_TRUE(c.question.empty());
}

TEST(TrialBalanceCheck, ListsOnlyTheDifferingFiguresOnBothSides) {
    const TbFigures schedule{125000, 15000, 0, 0, 0};
    const TbFigures tb{125000, 14999.99, 0, 0, 300};
    const auto c = trial_balance_check(schedule, tb);
    EXPECT_TRUE(c.differs);
    EXPECT_EQ(c.question,
              "There is difference between Figures as per Trial Balance and as per Fixed Asset Schedule.\n\n"
              "Figures as per Trial Balance :\n"
              "    - Depreciation : 14999.99\n"
              "    - Fixed Assets Residual Value (Retained Earning) : 300.00\n"
              "\nFigures as per Schedule :\n"
              "    - Depreciation : 15000.00\n"
              "    - Fixed Assets Residual Value (Retained Earning) : 0.00\n"
              "\nDo you want to Continue?");
}

}  // namespace
}  // namespace brenlow::depreciation
