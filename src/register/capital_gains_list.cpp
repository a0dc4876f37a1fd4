#include "register/capital_gains_list.h"

#include <algorithm>

#include "controls/number_format.h"

namespace brenlow::reg {

std::vector<store::CapitalGainRow> transferred_capital_gains(store::Database& db, const std::string& code,
                                                             int year) {
    auto rows = store::capital_gain_rows(db, code, year);
    rows.erase(std::remove_if(rows.begin(), rows.end(), [](const auto& r) { return !r.transferred; }),
               rows.end());
    std::stable_sort(rows.begin(), rows.end(),
                     [](const auto& a, const auto& b) { return a.capital_no < b.capital_no; });
    return rows;
}

Ostikreport::ReportDocument capital_gains_report(const std::vector<store::CapitalGainRow>& rows, int year,
                                                 const PrintedClient& client) {
    Ostikreport::ReportDocument doc;
    doc.titles = {"CAPITAL GAINS ON DEPRECIABLE ASSETS", "F.Y. " + year_span(year), client_line(client)};
    doc.columns = {{"", "No.", true, false, 5},
                   {"", "Block", false, false, 30},
                   {"", "Date of\nLast Sale", false, false, 11},
                   {"", "Consideration", true, false, 14},
                   {"", "WDV", true, false, 14},
                   {"", "Additions", true, false, 14},
                   {"", "Expenses", true, false, 12},
                   {"", "Gain /\n(Loss)", true, true, 14},
                   {"", "Nature", false, false, 18}};
    const auto amount = [](double v) { return format_mask(v, "#,##0;(#,##0)"); };
    double total = 0;
    for (const auto& r : rows) {
        const auto& b = r.block;
        doc.rows.push_back({std::to_string(r.capital_no), b.assets_name, b.dtsale, amount(b.sales_cons),
                            amount(b.wdv), amount(b.addition), amount(b.trans_expen), amount(b.assets_trans),
                            kShortTermUs50});
        total += b.assets_trans;
    }
    if (rows.empty()) {
        doc.notes.push_back("No capital gains were transferred for the year.");
    } else {
        doc.rows.push_back({"", "Net Capital Gain / (Loss)", "", "", "", "", "", amount(total), ""});
        doc.bold_rows.assign(doc.rows.size(), false);
        doc.bold_rows.back() = true;
    }
    return doc;
}

}  // namespace brenlow::reg
