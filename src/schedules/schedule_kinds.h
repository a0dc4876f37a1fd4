#pragma once
// The schedules behind a balance sheet: their titles, tables, the schedule groups
// whose presence shows their buttons, and the trial-balance group numbers that also
// name them when the screen opens.

#include <string>
#include <string_view>
#include <vector>

namespace brenlow::schedules {

struct SchedKind {
    int group;           // trial-balance group, the SchDef value that opens it
    const char* title;   // the current schedule's title
    const char* stem;    // its table ("" for Fixed Assets, which keeps its own)
    const char* gunder;  // MAST_GUNDER name that shows the button
    const char* button;  // the button's name
    int loan_id;         // SECUR_ kind: 1 secured, 2 unsecured, 0 other tables
};

inline constexpr int kShareCapital = 1, kReserves = 2, kSecured = 3, kUnsecured = 4, kFixedAssets = 5,
                     kInvestments = 6, kSundryDebtors = 8, kCashBank = 9, kLoansAdvances = 11, kMiscExp = 14;

// In button order.
const std::vector<SchedKind>& sched_kinds();
// nullptr when no schedule has the group (7, 10, 12, 13 ...).
const SchedKind* kind_of_group(int group);
// By title, as the command line names a schedule ("Loans" takes the loan kind).
const SchedKind* kind_of_title(std::string_view title, int loan_id);
// The kind of a table's rows (SECUR_ gives secured loans).
const SchedKind* kind_of_stem(std::string_view stem);

// The schedules that carry last year's rows forward (Fixed Assets keeps its own).
bool carries_forward(const SchedKind& kind);

}  // namespace brenlow::schedules
