#include "capital/partner_terms.h"

#include <algorithm>
#include <array>

#include "controls/number_format.h"
#include "store/capital_store.h"

namespace brenlow::capital {
namespace {

// The whole year's interest on the balances as they stood, at `rate`.
double interest_at(double opening, const std::vector<CapitalMove>& moves, double rate, const Date& first,
                   const Date& last) {
    const double year_days = days_between(first, last) + 1;
    if (year_days <= 0) return 0;
    double balance = opening, rupee_days = 0;
    Date from = first;
    for (const auto& m : moves) {
        const Date on = std::clamp(m.date, first, last);
        rupee_days += std::max(balance, 0.0) * days_between(from, on);
        balance += m.amt;
        from = on;
    }
    rupee_days += std::max(balance, 0.0) * (days_between(from, last) + 1);
    return rupee_days * rate / 100 / year_days;
}

}  // namespace

InterestWorking interest_on_capital(double opening, std::vector<CapitalMove> moves, double rate,
                                    const Date& first, const Date& last) {
    std::stable_sort(moves.begin(), moves.end(),
                     [](const CapitalMove& a, const CapitalMove& b) { return a.date < b.date; });
    InterestWorking w;
    if (rate <= 0) return w;
    w.at_deed_rate = vb_round(interest_at(opening, moves, rate, first, last), 2);
    w.allowed = vb_round(interest_at(opening, moves, std::min(rate, kAllowedInterestRate), first, last), 2);
    w.disallowed = vb_round(w.at_deed_rate - w.allowed, 2);
    return w;
}

double book_profit(double net_after_partners, double remuneration, double interest_disallowed) {
    return vb_round(net_after_partners + remuneration + interest_disallowed, 2);
}

double remuneration_limit(double book_profit, int assessment_year_end) {
    // A.Y. 2025-26 ends in 2026.
    const bool new_slabs = assessment_year_end >= 2026;
    const double first_slab = new_slabs ? 600000 : 300000;
    const double floor = new_slabs ? 300000 : 150000;
    const double bp = std::max(book_profit, 0.0);
    if (bp <= first_slab) return vb_round(std::max(floor, bp * 0.9), 2);
    return vb_round(std::max(floor, first_slab * 0.9) + (bp - first_slab) * 0.6, 2);
}

RemunerationWorking remuneration_working(double net_after_partners, double paid, double interest_disallowed,
                                         int assessment_year_end) {
    RemunerationWorking w;
    w.book_profit = book_profit(net_after_partners, paid, interest_disallowed);
    w.limit = remuneration_limit(w.book_profit, assessment_year_end);
    w.paid = vb_round(paid, 2);
    w.disallowed = vb_round(std::max(0.0, w.paid - w.limit), 2);
    return w;
}

std::string name_key(std::string_view name) {
    std::string key;
    for (const char ch : name) {
        const auto c = static_cast<unsigned char>(ch);
        if (c >= 'a' && c <= 'z')
            key += static_cast<char>(c - 'a' + 'A');
        else if ((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c >= 0x80)
            key += ch;
    }
    return key;
}

NamedAccount named_account(std::string_view particular) {
    // Longest first, so "CAPITAL ACCOUNT" is not read as "CAPITAL" and a name ending "ACCOUNT".
    static const std::array<std::pair<const char*, int>, 6> words{{{"CAPITALACCOUNT", store::kCapitalAccount},
                                                                   {"CURRENTACCOUNT", store::kCurrentAccount},
                                                                   {"CAPITALAC", store::kCapitalAccount},
                                                                   {"CURRENTAC", store::kCurrentAccount},
                                                                   {"CAPITAL", store::kCapitalAccount},
                                                                   {"CURRENT", store::kCurrentAccount}}};
    const std::string key = name_key(particular);
    for (const auto& [word, actyp] : words) {
        const std::string w = word;
        if (key.size() <= w.size()) continue;
        if (key.compare(key.size() - w.size(), w.size(), w) == 0)
            return {key.substr(0, key.size() - w.size()), actyp};
        if (key.compare(0, w.size(), w) == 0) return {key.substr(w.size()), actyp};
    }
    return {key, std::nullopt};
}

}  // namespace brenlow::capital
