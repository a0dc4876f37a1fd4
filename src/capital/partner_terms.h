#pragma once
// A firm's payments to its partners under s.40(b): interest on capital at the deed's
// rate, allowed up to 12% simple a year, and remuneration to working partners,
// allowed up to a limit worked from the book profit by the slabs of the assessment
// year. What the deed gives is what the partners are paid and posted; the excess
// over what the Act allows is shown as disallowed.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/vb_date.h"

namespace brenlow::capital {

// The particulars the postings are made under (made when missing).
inline constexpr const char* kInterestOnCapital = "INTEREST ON CAPITAL";
inline constexpr const char* kRemuneration = "REMUNERATION";

// The highest rate of interest to partners the Act allows.
inline constexpr double kAllowedInterestRate = 12.0;

// ---- Interest ---------------------------------------------------------------------------

// A dated addition to (positive) or drawing from (negative) a partner's capital.
struct CapitalMove {
    Date date;
    double amt = 0;
};

struct InterestWorking {
    double at_deed_rate = 0;  // what the deed gives: posted
    double allowed = 0;       // at the deed's rate, at most 12%
    double disallowed = 0;    // the excess
};

// Simple interest on a capital from the first to the last day of the year: the
// opening balance for the whole year, each dated move from its own date to the
// year's end, a balance below nil earning nothing for the days it stood. A day is a
// 1/365th (1/366th in a leap year) of the rate, so a balance that stood all year
// earns exactly the rate. Each figure rounded to the paisa, halves to even.
InterestWorking interest_on_capital(double opening, std::vector<CapitalMove> moves, double rate,
                                    const Date& first, const Date& last);

// ---- Remuneration ---------------------------------------------------------------------

// The book profit: the net profit after the partners' interest and remuneration,
// with the remuneration and the disallowed interest added back.
double book_profit(double net_after_partners, double remuneration, double interest_disallowed);

// The most remuneration to working partners that is allowed on a book profit (a
// loss counts as nil) in an assessment year named by the calendar year it ends in
// (A.Y. 2025-26 is 2026). From A.Y. 2025-26: on the first 6,00,000 the larger of
// 3,00,000 and 90%, on the rest 60%; before: on the first 3,00,000 the larger of
// 1,50,000 and 90%, on the rest 60%.
double remuneration_limit(double book_profit, int assessment_year_end);

struct RemunerationWorking {
    double book_profit = 0;
    double limit = 0;
    double paid = 0;
    double disallowed = 0;  // paid beyond the limit
};
RemunerationWorking remuneration_working(double net_after_partners, double paid, double interest_disallowed,
                                         int assessment_year_end);

// ---- Opening balances: which partner a trial-balance particular names ----------------

// The partner and account a trial-balance particular stands for: the name with an
// account word before or after it ("ANIL SHAH CAPITAL A/C", "ANIL SHAH CAPITAL
// ACCOUNT", "CAPITAL A/C - ANIL SHAH", "Anil  Shah (Current A/c)"), compared in
// capitals with spaces and punctuation left out.
struct NamedAccount {
    std::string key;           // the partner's name as compared
    std::optional<int> actyp;  // the account the words name, if any
};
NamedAccount named_account(std::string_view particular);
// A partner's name as compared with a particular's.
std::string name_key(std::string_view name);

}  // namespace brenlow::capital
