#pragma once
// The rules of the capital accounts, once for the screen, the command line and the
// import: what a line must hold, when the ratios are whole, how the year's result
// is divided and on which side a share goes, and how a closing balance reads.
//
// Sides: a partner's share of a profit is credited to the partner (CR), a share of
// a loss is debited (DR, the amount made positive). A closing balance is the credits
// less the debits of one partner's account: more credit shows "1500.00 Cr.", more
// debit "250.00 Dr.", and a nil balance "0.00" with no side.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenlow::capital {

// The two particulars the screen makes when they are missing.
inline constexpr const char* kOpeningBalance = "OPENING BALANCE";
inline constexpr const char* kProfitShare = "PROFIT SHARE (00711)";

// Combo lists of the entry grid.
inline constexpr const char* kSideList = "#1;DR|#2;CR";
inline constexpr const char* kAccountList = "#0;Capital A/c|#1;Current A/c";

// ---- Partners ----------------------------------------------------------------------

// The code a partner entered by hand is kept under: "~~[OTHER]" and the name.
std::string other_partner_code(std::string_view name);
bool is_other_partner(std::string_view code);
// The name inside an other partner's code ("" for a listed partner's code).
std::string other_partner_name(std::string_view code);

// ---- What a line must hold ----------------------------------------------------------

struct LineFields {
    std::string partner;  // the partner's code, "" when none
    int nid = 0;          // 1 DR, 2 CR, 0 none
    long particular_id = 0;
};
// The first fault of a line, in the order the screen checks: "Please Specify
// Partner.", "Please Specify DR/CR.", "Please Specify Particulars."; nothing when whole.
std::optional<std::string> line_fault(const LineFields& line);

// The fault of a line's amount, nothing when it will do: "Amount cannot be
// negative." (a loss is a debit of a positive amount) or "Amount cannot have more
// than 15 digits before the point.".
std::optional<std::string> amount_fault(double amount);

// The fault of a partner's terms, nothing when they will do: "Interest (%) must be
// from 0 to 100.", then the remuneration's amount_fault, then "Remuneration is paid
// to working partners only.".
std::optional<std::string> terms_fault(bool working, double int_rate, double remuneration);

// ---- Ratios --------------------------------------------------------------------------

// The fault of one partner's ratio, nothing when it is a percentage from 0 to 100:
// "Profit (%) must be from 0 to 100.".
std::optional<std::string> ratio_fault(double percentage);

// "Total Profit (%) = 100.00%"
std::string ratio_total_text(double total);
// The total as its text reads ("###0.00"), so 33.33 + 33.33 + 33.34 is 100.
bool ratios_whole(double total);

// ---- Profit share ---------------------------------------------------------------------

// Each partner's share of `net`, in the order of the ratios: Round(% / 100 x N, 2)
// for every partner but the last, whose share is Round(N - the others, 2), so that
// the shares add up to N exactly.
std::vector<double> profit_shares(const std::vector<double>& percentages, double net);

struct SideAmount {
    int nid = 0;
    double amt = 0;
};
// A share as a line: a profit is credited, a loss debited with its amount.
SideAmount share_line(double share);

// ---- Balances ---------------------------------------------------------------------------

// Credits less debits of a set of lines.
double balance_of(const std::vector<SideAmount>& lines);
// "1500.00 Cr.", "250.00 Dr.", "0.00".
std::string balance_text(double credit_less_debit);

}  // namespace brenlow::capital
