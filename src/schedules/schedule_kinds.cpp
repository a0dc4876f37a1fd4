#include "schedules/schedule_kinds.h"

namespace brenlow::schedules {

const std::vector<SchedKind>& sched_kinds() {
    static const std::vector<SchedKind> kinds = {
        {kShareCapital, "Share Capital", "SHARE_", "CAPITAL", "cmd_sharecapital", 0},
        {kReserves, "Reserve and Surplus", "RESV_", "RESERVES AND SURPLUSES", "cmd_reserve_surplus", 0},
        {kSecured, "Loans", "SECUR_", "SECURED LOANS", "cmd_secured_loans", 1},
        {kUnsecured, "Loans", "SECUR_", "UNSECURED LOANS", "cmd_unsecured_loans", 2},
        {kFixedAssets, "Fixed Assets", "", "FIXED ASSETS", "cmd_Fixed_assets", 0},
        {kInvestments, "Investments", "INVEST_", "INVESTMENTS", "cmd_investments", 0},
        {kSundryDebtors, "Sundry Debtors", "SUNDEB_", "SUNDRY DEBTORS", "cmd_s_deb", 0},
        {kCashBank, "Cash and Bank Balance", "BANK_", "CASH AND BANK", "cmd_cash_bank", 0},
        {kLoansAdvances, "Loans and Advances", "LOAN_ADV_", "LOANS AND ADVANCES (ASSETS)",
         "cmd_loan_advances", 0},
        {kMiscExp, "Misc. Expenses (Assets)", "MiscExpAsst_", "MISC EXPENSES (ASSETS)", "cmd_miscexp", 0},
    };
    return kinds;
}

const SchedKind* kind_of_group(int group) {
    for (const auto& k : sched_kinds())
        if (k.group == group) return &k;
    return nullptr;
}

const SchedKind* kind_of_title(std::string_view title, int loan_id) {
    for (const auto& k : sched_kinds())
        if (k.title == title && (k.loan_id == 0 || k.loan_id == loan_id)) return &k;
    return nullptr;
}

const SchedKind* kind_of_stem(std::string_view stem) {
    for (const auto& k : sched_kinds())
        if (*k.stem && k.stem == stem) return &k;
    return nullptr;
}

bool carries_forward(const SchedKind& kind) {
    return kind.group != kSundryDebtors && kind.group != kCashBank && kind.group != kFixedAssets;
}

}  // namespace brenlow::schedules
