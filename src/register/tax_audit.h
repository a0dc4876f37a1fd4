#pragma once
// The tax-audit listing of the income-tax chart (mode DEP_3CD_IT): per block, each
// addition of the year with the details the tax-audit report asks for — date of
// purchase, date put to use, cost, excise credit (CENVAT), change in rate of exchange,
// subsidy or grant, total value — and each deduction with its date and amount. Amounts
// are whole rupees, dates dd/mm/yyyy.

#include <string>
#include <vector>

#include "register/calculation.h"
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

// ---- Clause 18 in full, block by block ----------------------------------------------
//
// Each block of the year's income-tax chart: (a) its description, (b) rate, (c) opening
// WDV, (ca) the adjustment of the year the new regimes came (A.Y. 2021-22 only), (cb)
// goodwill taken out of the intangible block (from A.Y. 2021-22), (cc) the adjusted
// WDV, (d) its additions and deductions as listed above, (e) the depreciation
// allowable and (f) the closing WDV. The figures are the chart's, in whole rupees.

struct Clause18Block {
    std::string description;  // "MACHINERY AND PLANT @ 15%"
    double rate = 0;
    double opening = 0;   // (c)
    double adj_ca = 0;    // (ca)
    double adj_cb = 0;    // (cb)
    double adjusted = 0;  // (cc)
    std::vector<TaxAuditLine> additions;
    std::vector<TaxAuditLine> deductions;
    double put_to_use_180_or_more = 0;  // additions put to use before the half-rate line
    double less_than_180 = 0;           // on or after it
    double total_additions = 0;
    double total_deductions = 0;
    double depreciation = 0;  // (e) allowable
    double closing = 0;       // (f)
};

// Whether the year's clause carries item (ca), and item (cb).
bool clause18_has_ca(int year);
bool clause18_has_cb(int year);

std::vector<Clause18Block> clause18_blocks(store::Database& db, const CalculationResult& run);

// The utility's CSV import of one block's additions and deductions, each preceded by
// the block's description: "Description of Block,Date of Purchase,Date Put to Use,
// Purchase value,CENVAT,Change in Rate of Exchange,Subsidy/Grant,Total Value of
// Purchases" and "Description of Block,Date of Sale,Amount"; dates DD/MM/YYYY,
// amounts whole rupees.
std::string clause18_additions_csv(const std::vector<Clause18Block>& blocks);
std::string clause18_deductions_csv(const std::vector<Clause18Block>& blocks);

// The clause printed block by block, in the charts' face.
Ostikreport::ReportDocument clause18_report(const std::vector<Clause18Block>& blocks, int year,
                                            const PrintedClient& client);

}  // namespace brenlow::reg
