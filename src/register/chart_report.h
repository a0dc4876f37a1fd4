#pragma once
// The printed charts of a calculation run, as documents for the report object
// (Ostikreport): the income-tax chart by block (DEP_IT), the books chart by asset
// group (DEP_FA), the block-wise summary and the calculation sheet. The desktop shows
// them in its print preview; the command line renders them as text or writes a PDF.

#include <string>
#include <vector>

#include "register/calculation.h"
#include "suite/report.h"

namespace brenlow::store {
class Database;
}

namespace brenlow::reg {

// The client a print is for: every chart, sheet and summary carries its code and
// name under the titles.
struct PrintedClient {
    std::string code;
    std::string name;
};
// The client's code and name as the store keeps them (the name empty when unknown).
PrintedClient printed_client(store::Database& db, const std::string& code);
// "Client: C001 - ACME ENGINEERS", the line under a print's titles.
std::string client_line(const PrintedClient& client);

// One printed line of the income-tax chart: a chart row under its block's name.
struct ChartLine {
    std::string block;
    const depreciation::ChartRow* row = nullptr;
};

// The income-tax chart carries the block-wise summary as the document that follows
// it, so that its PDF holds the summary and its capital gain.

// The chart rows of the run paired with their blocks' names; the Rate -40 rows that
// list a block's part kept apart follow their block as in the stored chart. A row of
// the hand-edited chart that matches no block of the run is named by its group.
std::vector<ChartLine> chart_lines(const CalculationResult& run);

// Opening, two kinds of addition, deduction, normal and additional depreciation,
// closing; and for a block that ends nil its gain and expenses.
struct ChartFigures {
    double opening = 0, full = 0, half = 0, deduction = 0, normal = 0, additional = 0, closing = 0;
    double gain = 0, expenses = 0;
    double total() const { return opening + full + half - deduction; }
    void add(const ChartFigures& o) {
        opening += o.opening;
        full += o.full;
        half += o.half;
        deduction += o.deduction;
        normal += o.normal;
        additional += o.additional;
        closing += o.closing;
        gain += o.gain;
        expenses += o.expenses;
    }
};

// One printed line of the income-tax chart, its figures as printed: a block's part kept
// apart in its additions, the remaining half of last year's additional depreciation with
// the additional depreciation, what is not allowed out of the depreciation columns.
struct IncomeTaxChartLine {
    std::string block;
    double rate = 0;
    ChartFigures figures;
    double carried_in = 0;      // ADeprOpH
    double not_put_to_use = 0;  // the Rate -40 row's amount
    double disallowed = 0;      // TotDep less what is allowed
};
std::vector<IncomeTaxChartLine> income_tax_chart_lines(const CalculationResult& run);

// "2024-25" for the financial year ending in 2025.
std::string year_span(int closing_year);

Ostikreport::ReportDocument income_tax_chart_report(const CalculationResult& run,
                                                    const PrintedClient& client = {});
Ostikreport::ReportDocument books_chart_report(const CalculationResult& run,
                                               const PrintedClient& client = {});
Ostikreport::ReportDocument block_summary_report(const CalculationResult& run,
                                                 const PrintedClient& client = {});
// The income-tax sheet block by block, or the books sheet asset by asset, by the run's mode.
Ostikreport::ReportDocument calculation_sheet_report(const CalculationResult& run,
                                                     const PrintedClient& client = {});

// The chart of the run's mode: income-tax or books.
Ostikreport::ReportDocument chart_report(const CalculationResult& run, const PrintedClient& client = {});

}  // namespace brenlow::reg
