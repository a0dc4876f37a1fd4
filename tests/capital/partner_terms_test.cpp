// The partners' interest and remuneration against s.40(b), and which partner and
// account a trial-balance particular names.

#include "capital/partner_terms.h"

#include <gtest/gtest.h>

#include "store/capital_store.h"

namespace brenlow::capital {
namespace {

struct LimitCase {
    double book_profit;
    int assessment_year_end;
    double limit;
};

TEST(RemunerationLimit, FollowsTheSlabsOfTheAssessmentYear) {
    const LimitCase cases[] = {
        {-50000, 2026, 300000},    // a loss: the floor
        {0, 2026, 300000},         // nil: the floor
        {400000, 2026, 360000},    // 90% is above the floor
        {600000, 2026, 540000},    // the whole first slab at 90%
        {1780000, 2026, 1248000},  // 5,40,000 and 60% of 11,80,000
        {250000, 2025, 225000},    // A.Y. 2024-25: 90% of 2,50,000
        {100000, 2025, 150000},    // A.Y. 2024-25: the old floor
        {500000, 2025, 390000},    // A.Y. 2024-25: 2,70,000 and 60% of 2,00,000
    };
    for (const auto& c : cases)
        EXPECT_EQ(remuneration_limit(c.book_profit, c.assessment_year_end), c.limit)
            << "book profit " << c.book_profit << ", A.Y. ending " << c.assessment_year_end;
}

TEST(RemunerationWorking, AddsTheRemunerationBackAndDisallowsTheExcess) {
    // The firm's year: 17,80,000 of book profit allows 12,48,000; 10,60,000 paid.
    auto w = remuneration_working(720000, 1060000, 0, 2026);
    EXPECT_EQ(w.book_profit, 1780000);
    EXPECT_EQ(w.limit, 1248000);
    EXPECT_EQ(w.paid, 1060000);
    EXPECT_EQ(w.disallowed, 0);
    // 6,00,000 paid on a book profit of 4,00,000: 2,40,000 over the limit of 3,60,000.
    w = remuneration_working(-200000, 600000, 0, 2026);
    EXPECT_EQ(w.book_profit, 400000);
    EXPECT_EQ(w.limit, 360000);
    EXPECT_EQ(w.disallowed, 240000);
    // Interest disallowed is part of the book profit.
    w = remuneration_working(100000, 200000, 50000, 2026);
    EXPECT_EQ(w.book_profit, 350000);
}

TEST(InterestOnCapital, AboveTwelvePercentTheExcessIsDisallowed) {
    const Date first = fy_first(2025), last = fy_last(2025);
    const auto w = interest_on_capital(500000, {}, 15, first, last);
    EXPECT_EQ(w.at_deed_rate, 75000);
    EXPECT_EQ(w.allowed, 60000);
    EXPECT_EQ(w.disallowed, 15000);
    const auto within = interest_on_capital(500000, {}, 10, first, last);
    EXPECT_EQ(within.at_deed_rate, 50000);
    EXPECT_EQ(within.allowed, 50000);
    EXPECT_EQ(within.disallowed, 0);
}

// 1,00,000 all year, 36,500 added on 01/10/2024 (182 days to the year's end) and
// 73,000 drawn on 01/01/2025 (90 days), at 10% of a 365-day year.
TEST(InterestOnCapital, RunsForTheDaysEachBalanceStood) {
    const Date first = fy_first(2025), last = fy_last(2025);
    const std::vector<CapitalMove> moves{{*Date::parse("01/01/2025"), -73000},
                                         {*Date::parse("01/10/2024"), 36500}};
    const auto w = interest_on_capital(100000, moves, 10, first, last);
    // 10,000 + 36,500 x 10% x 182/365 (1,820) - 73,000 x 10% x 90/365 (1,800).
    EXPECT_EQ(w.at_deed_rate, 10020);
    EXPECT_EQ(w.disallowed, 0);
    // A balance below nil earns nothing for the days it stood: 36,500 drawn from
    // nil on 01/10/2024, then 73,000 added on 01/01/2025 (36,500 for 90 days).
    const std::vector<CapitalMove> overdrawn{{*Date::parse("01/10/2024"), -36500},
                                             {*Date::parse("01/01/2025"), 73000}};
    EXPECT_EQ(interest_on_capital(0, overdrawn, 10, first, last).at_deed_rate, 900);
    // No rate, no interest.
    EXPECT_EQ(interest_on_capital(100000, {}, 0, first, last).at_deed_rate, 0);
}

TEST(NamedAccount, ReadsThePartnerAndTheAccountFromTheParticular) {
    const struct {
        const char* particular;
        const char* key;
        std::optional<int> actyp;
    } cases[] = {
        {"ANIL SHAH", "ANILSHAH", std::nullopt},
        {"ANIL SHAH CAPITAL A/C", "ANILSHAH", store::kCapitalAccount},
        {"Anil  Shah Capital Account", "ANILSHAH", store::kCapitalAccount},
        {"ANIL SHAH (CAPITAL A/C.)", "ANILSHAH", store::kCapitalAccount},
        {"CAPITAL A/C - ANIL SHAH", "ANILSHAH", store::kCapitalAccount},
        {"ANIL SHAH CURRENT A/C", "ANILSHAH", store::kCurrentAccount},
        {"anil shah current account", "ANILSHAH", store::kCurrentAccount},
        {"ANIL SHAH CAPITAL", "ANILSHAH", store::kCapitalAccount},
    };
    for (const auto& c : cases) {
        const auto named = named_account(c.particular);
        EXPECT_EQ(named.key, c.key) << c.particular;
        EXPECT_EQ(named.actyp, c.actyp) << c.particular;
    }
    EXPECT_EQ(name_key(" anil   shah "), "ANILSHAH");
}

}  // namespace
}  // namespace brenlow::capital
