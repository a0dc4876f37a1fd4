#include "capital/capital_rules.h"

#include <gtest/gtest.h>

#include "store/capital_store.h"

namespace brenlow::capital {
namespace {

// Round(x, 2) halves to the even neighbour; the last partner takes the remainder.
TEST(ProfitShares, FollowTheRatiosAndLeaveTheRemainderToTheLast) {
    const struct {
        std::vector<double> pct;
        double net;
        std::vector<double> shares;
    } cases[] = {
        {{33.33, 33.33, 33.34}, 100, {33.33, 33.33, 33.34}},
        {{33.33, 33.33, 33.34}, 10, {3.33, 3.33, 3.34}},
        {{12.5, 87.5}, 1, {0.12, 0.88}},  // 0.125: half-way, to the even 0.12
        {{37.5, 62.5}, 1, {0.38, 0.62}},  // 0.375: half-way, to the even 0.38
        {{50, 50}, -100, {-50, -50}},
        {{100}, 1234.56, {1234.56}},
    };
    for (const auto& c : cases) EXPECT_EQ(profit_shares(c.pct, c.net), c.shares) << c.net;
}

TEST(ProfitShares, AProfitIsCreditedAndALossDebited) {
    EXPECT_EQ(share_line(33.33).nid, store::kCapitalCredit);
    EXPECT_EQ(share_line(-50).nid, store::kCapitalDebit);
    EXPECT_EQ(share_line(-50).amt, 50);
}

TEST(Balances, NetTheSidesAndNameTheLargerOne) {
    EXPECT_EQ(balance_text(balance_of({{2, 1000}, {1, 250}})), "750.00 Cr.");
    EXPECT_EQ(balance_text(balance_of({{2, 100}, {1, 350.5}})), "250.50 Dr.");
    EXPECT_EQ(balance_text(balance_of({{2, 100}, {1, 100}})), "0.00");
}

TEST(Ratios, AreWholeWhenTheirTotalReadsOneHundred) {
    EXPECT_TRUE(ratios_whole(33.33 + 33.33 + 33.34));
    EXPECT_TRUE(ratios_whole(100));
    EXPECT_FALSE(ratios_whole(50));
    EXPECT_FALSE(ratios_whole(49.99 + 50));
    EXPECT_EQ(ratio_total_text(99.99), "Total Profit (%) = 99.99%");
}

TEST(Lines, AreCheckedPartnerThenSideThenParticular) {
    EXPECT_EQ(line_fault({"", 0, 0}), "Please Specify Partner.");
    EXPECT_EQ(line_fault({"1", 0, 0}), "Please Specify DR/CR.");
    EXPECT_EQ(line_fault({"1", 2, 0}), "Please Specify Particulars.");
    EXPECT_EQ(line_fault({"1", 2, 7}), std::nullopt);
    EXPECT_EQ(other_partner_code("RAVI"), "~~[OTHER]RAVI");
    EXPECT_EQ(other_partner_name("~~[OTHER]RAVI"), "RAVI");
    EXPECT_FALSE(is_other_partner("3"));
}

}  // namespace
}  // namespace brenlow::capital
