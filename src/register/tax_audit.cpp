#include "register/tax_audit.h"

#include <map>

#include "controls/number_format.h"
#include "depreciation/amount_text.h"
#include "register/entry_rules.h"
#include "store/masters_store.h"
#include "store/register_store.h"

namespace brenlow::reg {
namespace {

std::string rupees(double v) {
    return format_mask(v, "###0");
}

std::string csv_field(const std::string& text) {
    if (text.find_first_of(",\"\n") == std::string::npos) return text;
    std::string out = "\"";
    for (const char c : text) out += c == '"' ? std::string("\"\"") : std::string(1, c);
    return out + "\"";
}

}  // namespace

std::vector<TaxAuditLine> tax_audit_lines(store::Database& db, const std::string& code, int year) {
    store::RegisterStore rs(db, code, year);
    std::map<long, std::string> block_of_group;
    std::map<std::string, std::string> block_names;
    for (const auto& b : store::income_tax_blocks(db, year))
        block_names[b.ID] = b.Part + " @ " + depreciation::rate_trimmed(b.Rate) + "%";
    for (const auto& g : rs.asset_groups()) {
        const auto it = block_names.find(g.BlockIdIT);
        if (it != block_names.end()) block_of_group[g.SrNoFAGM] = it->second;
    }
    // Block by block, in the order of their names; additions before deductions.
    std::map<std::string, std::vector<TaxAuditLine>> additions, deductions;
    const auto deduction = [&](const std::string& block, const std::string& part, const std::string& date,
                               double amount) {
        if (date.empty() && amount == 0) return;
        TaxAuditLine l;
        l.block = block;
        l.addition = false;
        l.particulars = part;
        l.deducted = date;
        l.deduction = amount;
        deductions[block].push_back(std::move(l));
    };
    for (const auto& a : rs.addition_entries()) {
        const auto b = block_of_group.find(a.IdFAGM);
        if (b == block_of_group.end()) continue;  // not considered under the Act
        TaxAuditLine l;
        l.block = b->second;
        l.particulars = a.Part;
        l.purchased = a.AccDate;
        l.put_to_use = a.PutDate;
        l.cost = a.PurAmt;
        l.excise = a.ExciseCr;
        l.exchange = a.CurrDiff;
        l.subsidy = a.Subsidy;
        l.total = net_amount(a);
        additions[l.block].push_back(l);
        deduction(b->second, a.Part, a.SaleDate, a.SaleAmt);
    }
    for (const auto& o : rs.opening_entries()) {
        const auto b = block_of_group.find(o.IdFAGM);
        if (b != block_of_group.end()) deduction(b->second, o.Part, o.SaleDate, o.SaleAmt);
    }
    std::vector<TaxAuditLine> out;
    std::map<std::string, bool> blocks;
    for (const auto& [b, v] : additions) blocks[b] = true;
    for (const auto& [b, v] : deductions) blocks[b] = true;
    for (const auto& [b, present] : blocks) {
        (void)present;
        for (auto& l : additions[b]) out.push_back(std::move(l));
        for (auto& l : deductions[b]) out.push_back(std::move(l));
    }
    return out;
}

std::string tax_audit_csv(const std::vector<TaxAuditLine>& lines) {
    std::string out =
        "Block,Kind,Particulars,Date of Purchase,Date Put to Use,Cost,Excise Credit (CENVAT),"
        "Change in Rate of Exchange,Subsidy or Grant,Total Value,Date of Deduction,Amount of Deduction\n";
    for (const auto& l : lines) {
        out += csv_field(l.block) + "," + (l.addition ? "Addition" : "Deduction") + "," +
               csv_field(l.particulars) + ",";
        if (l.addition)
            out += l.purchased + "," + l.put_to_use + "," + rupees(l.cost) + "," + rupees(l.excise) + "," +
                   rupees(l.exchange) + "," + rupees(l.subsidy) + "," + rupees(l.total) + ",,";
        else
            out += ",,,,,,," + l.deducted + "," + rupees(l.deduction);
        out += "\n";
    }
    return out;
}

Ostikreport::ReportDocument tax_audit_report(const std::vector<TaxAuditLine>& lines, int year,
                                             const PrintedClient& client) {
    Ostikreport::ReportDocument doc;
    doc.titles = {"DETAILS OF DEPRECIATION ALLOWABLE AS PER THE INCOME-TAX ACT, 1961",
                  "F.Y. " + year_span(year), client_line(client)};
    const char* headings[] = {"Block",
                              "Particulars",
                              "Date of Purchase",
                              "Date Put to Use",
                              "Cost",
                              "Excise Credit (CENVAT)",
                              "Change in Rate of Exchange",
                              "Subsidy or Grant",
                              "Total Value",
                              "Date of Deduction",
                              "Amount of Deduction"};
    for (const char* h : headings) {
        const std::string heading = h;
        const bool amount =
            heading.find("Date") == std::string::npos && heading != "Block" && heading != "Particulars";
        doc.columns.push_back({"", heading, amount, false,
                               heading == "Block"         ? 30
                               : heading == "Particulars" ? 24
                               : amount                   ? 12
                                                          : 14});
    }
    for (const auto& l : lines) {
        if (l.addition)
            doc.rows.push_back({l.block, l.particulars, l.purchased, l.put_to_use,
                                format_mask(l.cost, "#,##0"), format_mask(l.excise, "#,##0"),
                                format_mask(l.exchange, "#,##0"), format_mask(l.subsidy, "#,##0"),
                                format_mask(l.total, "#,##0"), "", ""});
        else
            doc.rows.push_back({l.block, l.particulars, "", "", "", "", "", "", "", l.deducted,
                                format_mask(l.deduction, "#,##0")});
    }
    if (lines.empty()) doc.notes.push_back("No Assets Available.");
    return doc;
}

}  // namespace brenlow::reg
