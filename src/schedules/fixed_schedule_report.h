#pragma once
// ClsDepC: the depreciation charts of the per-particular fixed-asset schedule, printed
// through the report object in the layouts of the register's charts: the income-tax
// chart with a line per particular (each its own block), and the books chart with a
// line per particular (its gross block, depreciation and net block). Both are titled
// "FIXED ASSETS", the client, the F.Y. and the A.Y.

#include <string>
#include <vector>

#include "schedules/fixed_asset_figures.h"
#include "suite/report.h"

namespace brenlow::sched {

struct ChartClient {
    std::string code;
    std::string name;
};

Ostikreport::ReportDocument schedule_income_tax_chart(const std::vector<ParticularFigures>& figures, int year,
                                                      const ChartClient& client);
Ostikreport::ReportDocument schedule_books_chart(const std::vector<ParticularFigures>& figures, int year,
                                                 const ChartClient& client);

class ClsDepC {
public:
    explicit ClsDepC(Ostikreport::ClsMain& report) : report_(report) {}
    // Prepares the chart and shows it through the report object's viewer (the print
    // preview, or a PDF file on the command line).
    void print_income_tax(const std::vector<ParticularFigures>& figures, int year, const ChartClient& client);
    void print_books(const std::vector<ParticularFigures>& figures, int year, const ChartClient& client);

private:
    Ostikreport::ClsMain& report_;
};

}  // namespace brenlow::sched
