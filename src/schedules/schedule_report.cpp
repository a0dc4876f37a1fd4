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

// The columns a schedule totals: amounts, never rates or counts.
bool totalled(const SchedKind& kind, const std::string& key) {
    if (kind.group == kSundryDebtors) return false;
    // Authorised capital is not a figure of the balance sheet: only the paid-up one adds up.
    if (kind.group == kShareCapital) return key == kPaidAmountKey;
    for (const char* k : {kAmountKey, kPaidAmountKey, kClosingKey, kFormAmountKey, "OP_BL", "ADD_AMT",
                          "Ded_amt", "Amount", "mktval", "OpBal"})
        if (key == k) return true;
    return false;
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

    std::vector<double> totals(cols.size() + (reserves ? 1 : 0), 0.0);
    bool any_total = false;
    for (int r = g.fixed_rows(); r < g.rows(); ++r) {
        if (g.row_data(r) == kApplicationLineData && g.value_matrix(r, g.col_index(kAmountKey)) == 0)
            continue;
        std::vector<std::string> cells;
        for (std::size_t i = 0; i < cols.size(); ++i) {
            const int c = cols[i];
            const auto& col = g.column(c);
            std::string text = g.display_text(r, c);
            if (reserves && c == 0 && text.empty()) text = g.display_text(r, g.col_index(kUserReserveKey));
            if (!col.format.empty() && !g.text_matrix(r, c).empty()) {
                const double v = g.value_matrix(r, c);
                text = format_mask(v, col.format == std::string("###0") ? kWhole : kPaise);
                if (totalled(kind, g.col_key(c))) {
                    totals[i] += v;
                    any_total = true;
                }
            }
            cells.push_back(text);
        }
        if (reserves) {
            const double closing = g.value_matrix(r, g.col_index("OP_BL")) +
                                   g.value_matrix(r, g.col_index("ADD_AMT")) -
                                   g.value_matrix(r, g.col_index("Ded_amt"));
            cells.push_back(format_mask(closing, kPaise));
            totals.back() += closing;
        }
        doc.rows.push_back(std::move(cells));
    }
    if (any_total) {
        std::vector<std::string> total(doc.columns.size());
        total[0] = "Total";
        for (std::size_t i = 0; i < cols.size(); ++i)
            if (totalled(kind, g.col_key(cols[i]))) total[i] = format_mask(totals[i], kPaise);
        if (reserves) total.back() = format_mask(totals.back(), kPaise);
        doc.rows.push_back(std::move(total));
        doc.bold_rows.assign(doc.rows.size(), false);
        doc.bold_rows.back() = true;
    }
    return doc;
}

}  // namespace brenlow::schedules
