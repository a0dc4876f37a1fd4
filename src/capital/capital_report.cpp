#include "capital/capital_report.h"

#include <algorithm>
#include <cmath>

#include "capital/capital.h"
#include "controls/number_format.h"

namespace brenlow::capital {
namespace {

constexpr const char* kPrintMask = "#,##0.00";

std::string money(double v) {
    return format_mask(v, kPrintMask);
}

std::string fy(int year) {
    const int yy = year % 100;
    return std::to_string(year - 1) + "-" + (yy < 10 ? "0" : "") + std::to_string(yy);
}

}  // namespace

Ostikreport::ReportDocument capital_schedule_report(const capital& s) {
    using Ostikreport::ReportColumn;
    Ostikreport::ReportDocument doc;
    doc.landscape = false;
    doc.titles = {s.Caption(),
                  "Client: " + s.client() + (s.client_name().empty() ? "" : " - " + s.client_name()),
                  "F.Y. " + fy(s.year()) + "   A.Y. " + fy(s.year() + 1), "(Amount in Rs.)"};
    doc.columns = {ReportColumn{"", "Particulars", false, false, 40},
                   ReportColumn{"", "Debit", true, false, 14}, ReportColumn{"", "Credit", true, false, 14}};
    auto row = [&](std::vector<std::string> cells, bool bold) {
        doc.rows.push_back(std::move(cells));
        doc.bold_rows.resize(doc.rows.size() - 1);
        doc.bold_rows.push_back(bold);
    };
    const auto lines = s.lines();
    std::vector<std::string> partners;
    for (const auto& r : s.ratios()) partners.push_back(capital::partner_code(r));
    for (const auto& l : lines)
        if (std::find(partners.begin(), partners.end(), l.code) == partners.end()) partners.push_back(l.code);
    double firm_capital = 0, firm_current = 0;
    for (const auto& code : partners) {
        std::string heading = s.partner_name(code);
        for (const auto& r : s.ratios())
            if (capital::partner_code(r) == code) heading += " (" + format_mask(r.rat, "###0.00") + "%)";
        row({heading, "", ""}, true);
        for (const int actyp : {store::kCapitalAccount, store::kCurrentAccount}) {
            bool any = false;
            for (const auto& l : lines) {
                if (l.code != code || l.actyp != actyp) continue;
                if (!any)
                    row({actyp == store::kCapitalAccount ? "  Capital A/c" : "  Current A/c", "", ""}, true);
                any = true;
                row({"    " + s.particular_name(l.particular_id),
                     l.nid == store::kCapitalDebit ? money(l.amt) : "",
                     l.nid == store::kCapitalCredit ? money(l.amt) : ""},
                    false);
            }
            if (!any) continue;
            const double b = s.closing_balance(code, actyp);
            row({"    Closing Balance", b < 0 ? money(-b) : "", b > 0 ? money(b) : ""}, true);
        }
        const double partner_total =
            s.closing_balance(code, store::kCapitalAccount) + s.closing_balance(code, store::kCurrentAccount);
        firm_capital += s.closing_balance(code, store::kCapitalAccount);
        firm_current += s.closing_balance(code, store::kCurrentAccount);
        row({"  Total of " + s.partner_name(code), partner_total < 0 ? money(-partner_total) : "",
             partner_total > 0 ? money(partner_total) : ""},
            true);
    }
    if (!partners.empty()) {
        row({"Firm's Total", "", ""}, true);
        for (const auto& [caption, b] : {std::pair{"  Capital A/c", firm_capital},
                                         {"  Current A/c", firm_current},
                                         {"  Total", firm_capital + firm_current}})
            row({caption, b < 0 ? money(-b) : "", b > 0 ? money(b) : ""}, true);
    }
    doc.notes.push_back("Net Profit/Loss: " + money(s.shared_net_profit()));
    if (s.posted(s.interest_id()) != 0 || s.posted(s.remuneration_id()) != 0)
        doc.notes.push_back(s.lblRemuneration.Caption);
    return doc;
}

}  // namespace brenlow::capital
