#include "register/tax_audit.h"

#include <map>

#include "controls/number_format.h"
#include "depreciation/amount_text.h"
#include "register/entry_rules.h"
#include "register/itr_schedules.h"
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

namespace brenlow::reg {
namespace {

std::string whole_text(double v) {
    return format_mask(v, "###0");
}

std::string printed(double v) {
    return format_mask(v, "#,##0");
}

std::string block_key(const std::string& name, double rate) {
    return name + " @ " + depreciation::rate_trimmed(rate) + "%";
}

}  // namespace

// A.Y. 2021-22 is the register year 2021.
bool clause18_has_ca(int year) {
    return year == 2021;
}
bool clause18_has_cb(int year) {
    return year >= 2021;
}

std::vector<Clause18Block> clause18_blocks(store::Database& db, const CalculationResult& run) {
    std::map<std::string, std::vector<TaxAuditLine>> additions, deductions;
    for (auto& l : tax_audit_lines(db, run.code, run.year))
        (l.addition ? additions : deductions)[l.block].push_back(std::move(l));
    std::vector<Clause18Block> out;
    for (const auto& line : chart_lines(run)) {
        const auto& r = *line.row;
        if (r.Rate == -40) {
            // Additions not yet put to use are additions of the block all the same.
            if (!out.empty()) out.back().put_to_use_180_or_more += mask_value(r.Wdv, "###0");
            continue;
        }
        Clause18Block b;
        b.description = block_key(line.block, r.Rate);
        b.rate = r.Rate;
        // The adjustments of earlier years taken off the block's WDV: goodwill out of
        // the intangible block, or the year the new regimes came, the depreciation they
        // do not allow.
        double adjustment = 0;
        for (const auto& blk : run.income_tax.blocks)
            if (blk.block_name == line.block && blk.rate == r.Rate) adjustment = blk.adj_earlier;
        adjustment = mask_value(adjustment, "###0");
        b.adjusted = mask_value(r.Wdv, "###0");
        b.opening = b.adjusted + adjustment;
        if (r.Grp == 4 && clause18_has_cb(run.year))
            b.adj_cb = adjustment;
        else if (clause18_has_ca(run.year))
            b.adj_ca = adjustment;
        else
            b.opening = b.adjusted;  // no item takes it: the opening WDV is the one depreciated
        b.put_to_use_180_or_more = mask_value(r.Add1, "###0");
        b.less_than_180 = mask_value(r.Add2, "###0");
        b.additions = additions[b.description];
        b.deductions = deductions[b.description];
        for (const auto& a : b.additions) b.total_additions += mask_value(a.total, "###0");
        for (const auto& d : b.deductions) b.total_deductions += mask_value(d.deduction, "###0");
        b.depreciation = mask_value(depreciation::allowed_depreciation(r), "###0");
        b.closing = mask_value(r.WdvCl, "###0");
        out.push_back(std::move(b));
    }
    return out;
}

std::string clause18_additions_csv(const std::vector<Clause18Block>& blocks) {
    std::string out =
        "Description of Block,Date of Purchase,Date Put to Use,Purchase value,CENVAT,Change in Rate of "
        "Exchange,Subsidy/Grant,Total Value of Purchases\n";
    for (const auto& b : blocks)
        for (const auto& a : b.additions)
            out += csv_field(b.description) + "," + a.purchased + "," + a.put_to_use + "," +
                   whole_text(a.cost) + "," + whole_text(a.excise) + "," + whole_text(a.exchange) + "," +
                   whole_text(a.subsidy) + "," + whole_text(a.total) + "\n";
    return out;
}

std::string clause18_deductions_csv(const std::vector<Clause18Block>& blocks) {
    std::string out = "Description of Block,Date of Sale,Amount\n";
    for (const auto& b : blocks)
        for (const auto& d : b.deductions)
            out += csv_field(b.description) + "," + d.deducted + "," + whole_text(d.deduction) + "\n";
    return out;
}

Ostikreport::ReportDocument clause18_report(const std::vector<Clause18Block>& blocks, int year,
                                            const PrintedClient& client) {
    Ostikreport::ReportDocument doc;
    const bool act2025 = under_act_2025(year);
    doc.titles = {
        act2025 ? "PARTICULARS OF DEPRECIATION ALLOWABLE UNDER SECTION 33 OF THE INCOME-TAX ACT, 2025"
                : "PARTICULARS OF DEPRECIATION ALLOWABLE AS PER THE INCOME-TAX ACT, 1961",
        act2025 ? "Tax audit report under section 63: depreciation by block" : "Form No. 3CD, clause 18",
        act2025 ? "Tax Year " + year_span(year)
                : "F.Y. " + year_span(year) + "    A.Y. " + year_span(year + 1),
        client_line(client)};
    doc.columns = {{"", "Item", false, true, 6},
                   {"", "Particulars", false, false, 34},
                   {"", "Date of\nPurchase / Sale", false, false, 12},
                   {"", "Date Put\nto Use", false, false, 11},
                   {"Adjustments", "Purchase\nValue", true, false, 12},
                   {"Adjustments", "CENVAT", true, false, 10},
                   {"Adjustments", "Change in Rate\nof Exchange", true, false, 13},
                   {"Adjustments", "Subsidy /\nGrant", true, false, 10},
                   {"", "Amount\n(Rs.)", true, true, 14}};
    const auto row = [&doc](std::vector<std::string> cells, bool bold = false) {
        cells.resize(9);
        doc.rows.push_back(std::move(cells));
        doc.bold_rows.resize(doc.rows.size() - 1);
        doc.bold_rows.push_back(bold);
    };
    const std::string wdv_section = act2025 ? " (section 41)" : "";
    for (const auto& b : blocks) {
        row({"(a)", b.description}, true);
        row({"(b)", "Rate of depreciation", "", "", "", "", "", "",
             depreciation::rate_trimmed(b.rate) + "%"});
        row({"(c)", "Opening written down value" + wdv_section, "", "", "", "", "", "", printed(b.opening)});
        if (clause18_has_ca(year))
            row({"(ca)", "Adjustment u/s 115BAC / 115BAD", "", "", "", "", "", "", printed(b.adj_ca)});
        if (clause18_has_cb(year))
            row({"(cb)", "Goodwill taken out of the block", "", "", "", "", "", "", printed(b.adj_cb)});
        row({"(cc)", "Adjusted written down value", "", "", "", "", "", "", printed(b.adjusted)});
        row({"(d)", "Additions"});
        for (const auto& a : b.additions)
            row({"", a.particulars, a.purchased, a.put_to_use, printed(a.cost), printed(a.excise),
                 printed(a.exchange), printed(a.subsidy), printed(a.total)});
        row({"", "Total additions", "", "", "", "", "", "", printed(b.total_additions)});
        row({"", "Deductions"});
        for (const auto& d : b.deductions)
            row({"", d.particulars, d.deducted, "", "", "", "", "", printed(d.deduction)});
        row({"", "Total deductions", "", "", "", "", "", "", printed(b.total_deductions)});
        row({"(e)", act2025 ? "Depreciation allowable u/s 33" : "Depreciation allowable", "", "", "", "", "",
             "", printed(b.depreciation)});
        row({"(f)", "Written down value at the end of the year" + wdv_section, "", "", "", "", "", "",
             printed(b.closing)},
            true);
        row({});
    }
    if (blocks.empty()) doc.notes.push_back("No Assets Available.");
    return doc;
}

}  // namespace brenlow::reg
