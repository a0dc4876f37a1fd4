#include "schedules/schedule_report.h"

#include <algorithm>
#include <cstdio>

#include "controls/number_format.h"
#include "store/client_store.h"

namespace brenlow::schedules {
namespace {

constexpr const char* kPaise = "#,##0.00";
constexpr const char* kWhole = "#,##0";

std::string year_span(int closing_year) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "%d-%02d", closing_year - 1, closing_year % 100);
    return buf;
}

}  // namespace

PrintedFor printed_for(store::Database& db, const std::string& code, int year) {
    const auto cy = store::find_client_year(db, code, year);
    return {code, cy ? cy->client_name : std::string(), year};
}

std::string printed_title(const SchedKind& kind) {
    if (kind.loan_id == 1) return "Secured Loans";
    if (kind.loan_id == 2) return "Unsecured Loans";
    return kind.title;
}

Ostikreport::ReportDocument schedule_report(const SchedKind& kind, const std::vector<store::FieldRow>& rows,
                                            const SchedLists& lists, const PrintedFor& client) {
    Grid g(0, 1);
    lay_out_grid(g, kind, lists);
    fill_grid(g, kind, rows);

    Ostikreport::ReportDocument doc;
    doc.titles = {"SCHEDULE: " + printed_title(kind),
                  "Client: " + client.code + (client.name.empty() ? "" : " - " + client.name),
                  "F.Y. " + year_span(client.year), "(Amount in Rs.)"};
    doc.landscape = g.cols() > 7;
    // The reserves' two item lists print as one column; their closing balance follows.
    const bool reserves = kind.group == kReserves;
    std::vector<int> cols;
    for (int c = 0; c < g.cols(); ++c)
        if (g.col_key(c) != kUserReserveKey) cols.push_back(c);
    for (int c : cols) {
        const auto& col = g.column(c);
        const bool numeric = !col.format.empty();
        doc.columns.push_back(
            {"", g.text_matrix(0, c), numeric, c == 0, std::max(numeric ? 12 : 14, col.width)});
    }
    if (reserves) doc.columns.push_back({"", "Closing Balance", true, false, 14});

    double closing_total = 0;
    for (int r = g.fixed_rows(); r < g.rows(); ++r) {
        if (g.row_data(r) == kApplicationLineData && g.value_matrix(r, g.col_index(kAmountKey)) == 0)
            continue;
        std::vector<std::string> cells;
        for (std::size_t i = 0; i < cols.size(); ++i) {
            const int c = cols[i];
            const auto& col = g.column(c);
            std::string text = g.display_text(r, c);
            if (reserves && c == 0 && text.empty()) text = g.display_text(r, g.col_index(kUserReserveKey));
            if (!col.format.empty() && !g.text_matrix(r, c).empty())
                text = format_mask(g.value_matrix(r, c), col.format == std::string("###0") ? kWhole : kPaise);
            cells.push_back(text);
        }
        if (reserves) {
            const double closing = g.value_matrix(r, g.col_index("OP_BL")) +
                                   g.value_matrix(r, g.col_index("ADD_AMT")) -
                                   g.value_matrix(r, g.col_index("Ded_amt"));
            cells.push_back(format_mask(closing, kPaise));
            closing_total += closing;
        }
        doc.rows.push_back(std::move(cells));
    }
    // The totals line the screen shows, under the same columns.
    const auto totals = schedule_totals(g, kind);
    if (totals.any() && !doc.rows.empty()) {
        std::vector<std::string> total(doc.columns.size());
        total[0] = totals.label;
        for (std::size_t i = 0; i < cols.size(); ++i)
            if (const auto& sum = totals.sums[static_cast<std::size_t>(cols[i])])
                total[i] = format_mask(*sum, kPaise);
        if (reserves) total.back() = format_mask(closing_total, kPaise);
        doc.rows.push_back(std::move(total));
        doc.bold_rows.assign(doc.rows.size(), false);
        doc.bold_rows.back() = true;
    }
    return doc;
}

}  // namespace brenlow::schedules
