#include "schedules/fixed_schedule_report.h"

#include "controls/number_format.h"
#include "depreciation/half_rate_line.h"

namespace brenlow::sched {
namespace {

using Ostikreport::ReportColumn;
using Ostikreport::ReportDocument;

constexpr const char* kWhole = "#,##0";
constexpr const char* kPaise = "#,##0.00";
constexpr const char* kRate = "###0.00";

std::string span(int closing_year) {
    const int yy = closing_year % 100;
    return std::to_string(closing_year - 1) + "-" + (yy < 10 ? "0" : "") + std::to_string(yy);
}

std::vector<std::string> titles(const ChartClient& client, int year) {
    return {"FIXED ASSETS", "Client: " + client.code + (client.name.empty() ? "" : " - " + client.name),
            "F.Y. " + span(year), "A.Y. " + span(year + 1), "(Amount in Rs.)"};
}

void add_row(ReportDocument& doc, std::vector<std::string> cells, bool bold) {
    doc.rows.push_back(std::move(cells));
    doc.bold_rows.resize(doc.rows.size() - 1, false);
    doc.bold_rows.push_back(bold);
}

}  // namespace

ReportDocument schedule_income_tax_chart(const std::vector<ParticularFigures>& figures, int year,
                                         const ChartClient& client) {
    ReportDocument doc;
    doc.titles = titles(client, year);
    const auto line = depreciation::half_rate_line(year - 1);
    const std::string dep = "Depreciation for the Year";
    doc.columns = {
        {"", "Particulars", false, true, 30},
        {"", "Rate\n(%)", true, false, 6},
        {"", "WDV as on 01/04/" + std::to_string(year - 1), true, false, 14},
        {"Addition", "180 Days or More\n" + depreciation::full_rate_heading(line), true, false, 14},
        {"Addition", "Less than 180 Days\n(On or After " + line.short_text() + ")", true, false, 14},
        {"", "Deduction", true, false, 12},
        {"", "Total", true, false, 14},
        {dep, "Normal", true, false, 12},
        {dep, "Additional", true, false, 12},
        {"", "WDV as on 31/03/" + std::to_string(year), true, false, 14},
    };
    double t[8] = {};
    for (const auto& f : figures) {
        if (!f.it_considered) continue;
        const auto& b = f.it;
        const double v[8] = {b.opening_wdv,
                             b.addition1 + b.addition3,
                             b.addition2,
                             b.deduction1 + b.deduction2 + b.deduction3,
                             b.opening_wdv + b.addition1 + b.addition2 + b.addition3 - b.deduction1 -
                                 b.deduction2 - b.deduction3,
                             b.depr_full + b.depr_half + b.ADeprOpH,
                             b.addl_full + b.addl_half,
                             b.RndWdv};
        std::vector<std::string> cells = {f.name + (b.block_nil ? " (Block Nil)" : ""),
                                          format_mask(b.rate, kRate)};
        for (int i = 0; i < 8; ++i) {
            cells.push_back(format_mask(v[i], kWhole));
            t[i] += v[i];
        }
        add_row(doc, std::move(cells), false);
    }
    std::vector<std::string> total = {"Total", ""};
    for (const double v : t) total.push_back(format_mask(v, kWhole));
    add_row(doc, std::move(total), true);
    for (const auto& f : figures)
        if (f.it_considered && f.it.block_nil)
            doc.notes.push_back(
                f.name + ": Block Nil, " + (f.it.profit_loss >= 0 ? "Capital Gain " : "Capital Loss ") +
                format_mask(f.it.profit_loss < 0 ? -f.it.profit_loss : f.it.profit_loss, kWhole));
    return doc;
}

ReportDocument schedule_books_chart(const std::vector<ParticularFigures>& figures, int year,
                                    const ChartClient& client) {
    ReportDocument doc;
    doc.titles = titles(client, year);
    const std::string gross = "Gross Block", dep = "Depreciation", net = "Net Block";
    const std::string first = "As on 01/04/" + std::to_string(year - 1),
                      last = "As on 31/03/" + std::to_string(year);
    doc.columns = {
        {"", "Particulars", false, true, 30},
        {gross, first, true, false, 14},
        {gross, "Additions", true, false, 14},
        {gross, "Deductions", true, false, 14},
        {gross, last, true, false, 14},
        {dep, "Upto 01/04/" + std::to_string(year - 1), true, false, 14},
        {dep, "For the Year", true, false, 14},
        {dep, "On Deductions", true, false, 14},
        {dep, "Upto " + last.substr(6), true, false, 14},
        {net, last, true, false, 14},
        {net, first, true, false, 14},
    };
    double t[10] = {};
    for (const auto& f : figures) {
        if (!f.books_considered) continue;
        const auto& b = f.books;
        const double v[10] = {b.opening_cost,    b.additions,
                              b.deductions_cost, b.closing_cost,
                              b.opening_dep,     b.depreciation,
                              b.deductions_dep,  b.closing_dep,
                              b.net_block,       b.opening_cost - b.opening_dep};
        std::vector<std::string> cells = {f.name};
        for (int i = 0; i < 10; ++i) {
            cells.push_back(format_mask(v[i], kPaise));
            t[i] += v[i];
        }
        add_row(doc, std::move(cells), false);
    }
    std::vector<std::string> total = {"Total"};
    for (const double v : t) total.push_back(format_mask(v, kPaise));
    add_row(doc, std::move(total), true);
    return doc;
}

void ClsDepC::print_income_tax(const std::vector<ParticularFigures>& figures, int year,
                               const ChartClient& client) {
    report_.WriteToReport(schedule_income_tax_chart(figures, year, client));
    report_.showreport();
}

void ClsDepC::print_books(const std::vector<ParticularFigures>& figures, int year,
                          const ChartClient& client) {
    report_.WriteToReport(schedule_books_chart(figures, year, client));
    report_.showreport();
}

}  // namespace brenlow::sched
