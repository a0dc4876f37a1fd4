#pragma once
// The tax-audit listing of the income-tax chart (mode DEP_3CD_IT): per block, each
// addition of the year with the details the tax-audit report asks for — date of
// purchase, date put to use, cost, excise credit (CENVAT), change in rate of exchange,
// subsidy or grant, total value — and each deduction with its date and amount. Amounts
// are whole rupees, dates dd/mm/yyyy.

#include <string>
#include <vector>

#include "register/chart_report.h"
#include "store/database.h"
#include "suite/report.h"

namespace brenlow::reg {

struct TaxAuditLine {
    std::string block;  // the income-tax block: name and rate
    bool addition = true;
    std::string particulars;
    // An addition.
    std::string purchased;  // date of purchase (the date of accounting)
    std::string put_to_use;
    double cost = 0, excise = 0, exchange = 0, subsidy = 0, total = 0;
    // A deduction.
    std::string deducted;
    double deduction = 0;
};

// The year's lines, block by block (additions first, then deductions).
std::vector<TaxAuditLine> tax_audit_lines(store::Database& db, const std::string& code, int year);

// The lines as CSV: a header row, then one row a line, in the columns' order.
std::string tax_audit_csv(const std::vector<TaxAuditLine>& lines);

// The lines as a printed report.
Ostikreport::ReportDocument tax_audit_report(const std::vector<TaxAuditLine>& lines, int year,
                                             const PrintedClient& client);

}  // namespace brenlow::reg
