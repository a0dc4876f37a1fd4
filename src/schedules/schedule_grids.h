#pragma once
// The grid of each schedule: its columns and lists, a table's rows laid into its
// lines, its lines read back as rows, and the columns computed from others.

#include <optional>
#include <string>
#include <vector>

#include "controls/grid.h"
#include "schedules/schedule_kinds.h"
#include "store/schedule_store.h"

namespace brenlow::schedules {

// The id;text lists the grids take from the masters.
struct SchedLists {
    std::string heads;          // "#-1;Debentures" and the loan kind's heads
    std::string invest;         // types of investment
    std::string oth_loan;       // other loans and advances
    std::string misc;           // misc expenses, after "#0;(New Item)"
    std::string company;        // companies, after "#0;(New Item)"
    std::string user_reserves;  // "#0;(New Item)" and the user's own reserves
    std::string reserves;       // every reserve, for prints
    // A company has subsidiaries: loans to them and shares in them. A proprietor or a
    // firm (status 1 and 2) has neither column nor type of investment.
    bool subsidiaries = true;
};
// The lists of a client of the status (1 to 4).
SchedLists read_lists(store::Database& db, int loan_id, int status);
// Whether a client of the status keeps subsidiary companies (companies, 3 and 4).
bool keeps_subsidiaries(int status);
// The type of investment "SHARES IN SUBSIDIARY COMPANIES".
inline constexpr long kSubsidiarySharesId = 4;

// Lists as the combos hold them.
inline constexpr const char* kShareTypeList =
    "#1;Authorised|#4;Issued, Subscribed and Paid up|#5;Partly Paid up";
inline constexpr const char* kShareKindList = "#E;Equity Share|#P;Preference";
inline constexpr const char* kReserveList =
    "#1;Capital Redemption Reserve|#2;Debenture Redemption Reserve|#3;Foreign Project Reserve|#4;General "
    "Reserve|#7;Others|#5;Profit and Loss Account|#6;Share Premium";
inline constexpr const char* kInvestShareList = "#1;Equity|#2;Preference";
inline constexpr const char* kQuotedList = "#1;Quoted|#2;Unquoted";
inline constexpr const char* kTradingList = "#1;Trading|#2;Non Trading";
inline constexpr const char* kSubsidiaryList = "#1;WHOLLY OWNED|#2;OTHER SUBSIDIARY|#3;OTHER";
inline constexpr const char* kNewItem = "#0;(New Item)";
// Row data of the special lines: the share application money and a heading of the
// bank form without amount; the other lines of a fixed form carry their index.
inline constexpr long kApplicationLineData = -2;
inline constexpr long kHeadingLineData = -1;
inline constexpr const char* kApplicationCaption = "Share Application Money";

// Keys of the computed and second-list columns (the others are named by their column).
inline constexpr const char* kAmountKey = "amount";
inline constexpr const char* kPaidAmountKey = "amount_paid";
inline constexpr const char* kClosingKey = "closing";
inline constexpr const char* kUserReserveKey = "resv_user";
inline constexpr const char* kItemKey = "item";
inline constexpr const char* kFormAmountKey = "form_amount";

// The first line whose id names nothing its list offers (a reserve, a head of loan, a
// type of investment ... that the masters do not have): what the screen's lists never
// let through, refused in a document too.
struct UnknownChoice {
    int line = -1;
    std::string column;
    std::string heading;
    std::string id;
    std::string reason;  // when not the list's want of the id
};
inline constexpr const char* kSubsidiaryForCompanies = "loans to subsidiary companies are a company's only";
inline constexpr const char* kSubsidiarySharesForCompanies =
    "shares in subsidiary companies are a company's only";
std::optional<UnknownChoice> unknown_choice(const SchedKind& kind, const SchedLists& lists,
                                            const std::vector<store::FieldRow>& lines);

// Lays the grid out for a schedule with no lines but the fixed ones (the share
// application line, the debtors' and bank forms).
void lay_out_grid(Grid& g, const SchedKind& kind, const SchedLists& lists);
// Fills the laid-out grid with a table's rows.
void fill_grid(Grid& g, const SchedKind& kind, const std::vector<store::FieldRow>& rows);
// The filled lines as rows numbered by line (srno), empty lines left out; for
// SHARE_ the application money apart.
store::ScheduleSave grid_lines(const Grid& g, const SchedKind& kind);
// A line's computed columns from the others.
void recompute_line(Grid& g, const SchedKind& kind, int row);
// Whether a line holds nothing at all.
bool line_empty(const Grid& g, int row);

// The totals line of a schedule: under each column that adds up (amounts, never rates
// or counts) the sum of what its lines add to it, nothing elsewhere. Authorised share
// capital adds nothing (only the paid-up capital is the balance sheet's); of the
// sundry debtors the debts add, the provisions take off and the lines that classify
// the same debts (good, doubtful, bad) add nothing.
struct ScheduleTotals {
    std::string label;                        // "Total", ...
    std::vector<std::optional<double>> sums;  // per grid column
    bool any() const;
};
ScheduleTotals schedule_totals(const Grid& g, const SchedKind& kind);
inline constexpr const char* kDebtorsTotalLabel = "Total (net of provisions)";

}  // namespace brenlow::schedules
