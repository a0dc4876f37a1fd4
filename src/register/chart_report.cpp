#include "register/chart_report.h"

#include <cstdio>
#include <map>

#include "controls/number_format.h"
#include "depreciation/half_rate_line.h"
#include "depreciation/income_tax_sheet.h"
#include "store/client_store.h"

namespace brenlow::reg {
namespace {

using Ostikreport::ReportColumn;
using Ostikreport::ReportDocument;

constexpr const char* kWhole = "#,##0";     // income-tax amounts: whole rupees
constexpr const char* kPaise = "#,##0.00";  // books amounts
constexpr const char* kRate = "###0.00";

std::string two_digits(int n) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "%02d", n % 100);
    return buf;
}

// The run's code when the caller named no client.
std::string client_line(const CalculationResult& run, const PrintedClient& client) {
    return client_line(client.code.empty() ? PrintedClient{run.code, client.name} : client);
}

// Title lines shared by the charts: "FIXED ASSETS", the client, then the financial
// and the assessment year.
std::vector<std::string> chart_titles(const CalculationResult& run, const PrintedClient& client) {
    return {"FIXED ASSETS", client_line(run, client), "F.Y. " + year_span(run.year),
            "A.Y. " + year_span(run.year + 1), "(Amount in Rs.)"};
}

// The columns both charts print, the first one named by the layout ("Block" or
// "Asset Group") and the additions split by the half-rate line.
std::vector<ReportColumn> chart_columns(int year, const std::string& first, const std::string& full_part) {
    const auto line = depreciation::half_rate_line(year - 1);
    const std::string addition = "Addition";
    const std::string depreciation_band = "Depreciation for the Year";
    return {
        {"", first, false, true, 30},
        {"", "Rate\n(%)", true, false, 6},
        {"", "WDV as on 01/04/" + std::to_string(year - 1), true, false, 14},
        {addition, full_part + "\n" + depreciation::full_rate_heading(line), true, false, 14},
        {addition, "Less than 180 Days\n(On or After " + line.short_text() + ")", true, false, 14},
        {"", "Deduction", true, false, 12},
        {"", "Total", true, false, 14},
        {depreciation_band, "Normal", true, false, 12},
        {depreciation_band, "Additional", true, false, 12},
        {"", "WDV as on 31/03/" + std::to_string(year), true, false, 14},
    };
}

std::vector<std::string> chart_cells(const std::string& name, const std::string& rate, const ChartFigures& f,
                                     const char* mask) {
    return {name,
            rate,
            format_mask(f.opening, mask),
            format_mask(f.full, mask),
            format_mask(f.half, mask),
            format_mask(f.deduction, mask),
            format_mask(f.total(), mask),
            format_mask(f.normal, mask),
            format_mask(f.additional, mask),
            format_mask(f.closing, mask)};
}

std::string rupees_text(double amount) {
    return format_mask(amount, kWhole);
}

// The notes under the income-tax chart: where the remaining half of last year's
// additional depreciation is, what this year's half-rate additions carry to the next
// year, what is not yet put to use, and what is not allowed.
std::vector<std::string> chart_notes(const CalculationResult& run, double carried_in, double not_put_to_use,
                                     double disallowed) {
    std::vector<std::string> notes;
    if (carried_in != 0)
        notes.push_back(
            "Note: Additional depreciation of Rs. " + rupees_text(carried_in) +
            " relating to addition of assets during immediately preceding year put to use for less "
            "than 180 days is included in Col. 'Additional'.");
    double carried_out = 0, lost = 0;
    for (const auto& b : run.income_tax.blocks) {
        carried_out += b.carried_half_out;
        lost += b.carried_half_lost;
    }
    if (carried_out != 0)
        notes.push_back("Note: Additional depreciation of Rs. " + rupees_text(carried_out) +
                        " (the remaining half on additions put to use for less than 180 days) is carried to "
                        "next year.");
    if (lost != 0)
        notes.push_back("Note: Rs. " + rupees_text(lost) +
                        " of the remaining half of additional depreciation brought from the preceding year "
                        "exceeds what the block holds and is not allowed.");
    if (not_put_to_use != 0)
        notes.push_back("Note: Addition of Rs. " + rupees_text(not_put_to_use) +
                        " not yet put to use is included in Col. '180 Days or More' without depreciation.");
    if (disallowed != 0)
        notes.push_back(
            "Note: Depreciation of Rs. " + rupees_text(disallowed) +
            " not allowed (section 38 or proportionate depreciation) is left out of Col. 'Normal' "
            "and Col. 'Additional'.");
    return notes;
}

// A note runs under the table on lines no wider than this.
constexpr std::size_t kNoteWidth = 130;

void add_note(ReportDocument& doc, const std::string& text) {
    std::string line;
    std::size_t from = 0;
    while (from < text.size()) {
        auto to = text.find(' ', from);
        if (to == std::string::npos) to = text.size();
        const std::string word = text.substr(from, to - from);
        if (!line.empty() && line.size() + 1 + word.size() > kNoteWidth) {
            doc.notes.push_back(line);
            line.clear();
        }
        line += (line.empty() ? "" : " ") + word;
        from = to + 1;
    }
    if (!line.empty()) doc.notes.push_back(line);
}

void add_row(ReportDocument& doc, std::vector<std::string> cells, bool bold) {
    doc.rows.push_back(std::move(cells));
    doc.bold_rows.resize(doc.rows.size() - 1, false);
    doc.bold_rows.push_back(bold);
}

}  // namespace

PrintedClient printed_client(store::Database& db, const std::string& code) {
    for (const auto& cy : store::list_client_years(db))
        if (cy.code_no == code) return {code, cy.client_name};
    return {code, ""};
}

std::string client_line(const PrintedClient& client) {
    return "Client: " + client.code + (client.name.empty() ? "" : " - " + client.name);
}

std::string year_span(int closing_year) {
    return std::to_string(closing_year - 1) + "-" + two_digits(closing_year);
}

std::vector<ChartLine> chart_lines(const CalculationResult& run) {
    std::vector<ChartLine> lines;
    const auto& blocks = run.income_tax.blocks;
    std::size_t next_block = 0;
    std::string last_name;
    for (const auto& row : run.chart) {
        if (row.Rate == -40) {
            lines.push_back({last_name, &row});
            continue;
        }
        std::string name;
        if (!run.chart_hand_edited) {
            // Built rows follow the blocks in order, land left out.
            while (next_block < blocks.size() &&
                   depreciation::chart_group(blocks[next_block].block_name, blocks[next_block].rate) == 0)
                ++next_block;
            if (next_block < blocks.size()) name = blocks[next_block++].block_name;
        } else {
            for (const auto& b : blocks)
                if (b.rate == row.Rate && depreciation::chart_group(b.block_name, b.rate) == row.Grp) {
                    name = b.block_name;
                    break;
                }
        }
        if (name.empty()) name = "Group " + std::to_string(row.Grp);
        last_name = name;
        lines.push_back({name, &row});
    }
    return lines;
}

std::vector<IncomeTaxChartLine> income_tax_chart_lines(const CalculationResult& run) {
    std::vector<IncomeTaxChartLine> out;
    for (const auto& line : chart_lines(run)) {
        const auto& r = *line.row;
        if (r.Rate == -40) {
            // The part of the block kept apart (additions not yet put to use) is in its
            // closing WDV: it shows with the block's additions, so that the line adds up.
            if (!out.empty()) {
                out.back().figures.full += r.Wdv;
                out.back().not_put_to_use += r.Wdv;
            }
            continue;
        }
        IncomeTaxChartLine l;
        l.block = line.block;
        l.rate = r.Rate;
        auto& f = l.figures;
        f.opening = r.Wdv;
        f.full = r.Add1;
        f.half = r.Add2;
        f.deduction = r.Cons1 + r.Cons2;
        f.normal = r.DeprF + r.DeprH;
        // The remaining half of last year's additional depreciation is additional
        // depreciation, and shows as such.
        f.additional = r.ADeprF + r.ADeprH + r.ADeprOpH;
        // What section 38 (or a proportionate share) does not allow is left out of the
        // depreciation columns: normal depreciation first.
        l.disallowed = r.TotDep - depreciation::allowed_depreciation(r);
        const double from_normal = std::min(l.disallowed, f.normal);
        f.normal -= from_normal;
        f.additional -= l.disallowed - from_normal;
        f.closing = r.WdvCl;
        f.gain = r.CG;
        f.expenses = r.Exp;
        l.carried_in = r.ADeprOpH;
        out.push_back(std::move(l));
    }
    return out;
}

ReportDocument income_tax_chart_report(const CalculationResult& run, const PrintedClient& client) {
    ReportDocument doc;
    doc.titles = chart_titles(run, client);
    doc.columns = chart_columns(run.year, "Block", "180 Days or More");
    ChartFigures total;
    double carried_in = 0, not_put_to_use = 0, disallowed = 0;
    for (const auto& l : income_tax_chart_lines(run)) {
        total.add(l.figures);
        carried_in += l.carried_in;
        not_put_to_use += l.not_put_to_use;
        disallowed += l.disallowed;
        add_row(doc, chart_cells(l.block, format_mask(l.rate, kRate), l.figures, kWhole), false);
    }
    add_row(doc, chart_cells("Total", "", total, kWhole), true);
    for (const auto& note : chart_notes(run, carried_in, not_put_to_use, disallowed)) add_note(doc, note);
    doc.follows.push_back(block_summary_report(run, client));
    return doc;
}

ReportDocument books_chart_report(const CalculationResult& run, const PrintedClient& client) {
    ReportDocument doc;
    doc.titles = chart_titles(run, client);
    doc.columns = chart_columns(run.year, "Asset Group", "More than 180 Days");
    // One line per asset group, in the order the groups first appear.
    struct Group {
        std::string name;
        ChartFigures f;
        double rate = 0;
        bool one_rate = true;
        bool any = false;
    };
    std::vector<Group> groups;
    std::map<long, std::size_t> index;
    for (const auto& a : run.books_assets) {
        auto [it, fresh] = index.try_emplace(a.IdFAGM, groups.size());
        if (fresh) {
            groups.emplace_back();
            const auto name = run.asset_groups.find(a.IdFAGM);
            groups.back().name =
                name != run.asset_groups.end() ? name->second : "Group " + std::to_string(a.IdFAGM);
        }
        Group& g = groups[it->second];
        g.f.opening += a.Opening;
        (a.half_year ? g.f.half : g.f.full) += a.Addition;
        // An asset whose life is over leaves the books through its adjustment, not its
        // depreciation; the chart shows it with the deductions so that the line adds up.
        g.f.deduction += a.DedAmt + a.DepAdjRemLife0_PL + a.DepAdjRemLife0_RS;
        g.f.normal += a.DepFY;
        g.f.closing += a.ClBal;
        if (g.any && g.rate != a.Rate) g.one_rate = false;
        g.rate = a.Rate;
        g.any = true;
    }
    ChartFigures total;
    double residual_adjustment = 0;
    for (const auto& a : run.books_assets) residual_adjustment += a.DepAdjRemLife0_PL + a.DepAdjRemLife0_RS;
    for (const auto& g : groups) {
        total.add(g.f);
        add_row(doc, chart_cells(g.name, g.one_rate ? format_mask(g.rate, kRate) : "", g.f, kPaise), false);
    }
    add_row(doc, chart_cells("Total", "", total, kPaise), true);
    if (residual_adjustment != 0)
        add_note(doc, "Deduction includes Rs. " + format_mask(residual_adjustment, kPaise) +
                          " of assets whose remaining life is nil (carrying amount above residual value).");
    return doc;
}

ReportDocument block_summary_report(const CalculationResult& run, const PrintedClient& client) {
    const auto& s = run.block_summary;
    ReportDocument doc;
    doc.titles = {s.title, client_line(run, client), "F.Y. " + year_span(run.year),
                  "A.Y. " + year_span(run.year + 1)};
    doc.columns = {{"", "Block", false, true, 30},
                   {"", "Rate\n(%)", true, false, 6},
                   {"", "", false, false, 12},
                   {"", "Capital Gain / (Loss)", true, false, 16}};
    for (const auto& r : s.rows) add_row(doc, {r.block, r.rate, r.status, r.gain_text}, false);
    add_row(doc, {s.total_label, "", "", s.total_text}, true);
    doc.landscape = false;
    return doc;
}

ReportDocument calculation_sheet_report(const CalculationResult& run, const PrintedClient& client) {
    ReportDocument doc;
    if (is_income_tax_mode(run.mode)) {
        doc.titles = chart_titles(run, client);
        doc.columns = {{"", "Particulars", false, false, 60}, {"", "Amount", true, false, 16}};
        for (const auto& b : run.income_tax_sheet) {
            add_row(doc, {b.block_name + " @ " + format_mask(b.rate, kRate) + "%", ""}, true);
            const depreciation::ItBlockResult* result = nullptr;
            for (const auto& r : run.income_tax.blocks)
                if (r.block_name == b.block_name && r.rate == b.rate) result = &r;
            for (const auto& l : b.lines) {
                add_row(doc, {"  " + l.label, format_mask(l.amount, kWhole)}, false);
                // The rate steps under the amount they are charged on.
                if (result && l.label == "Amount on which Depreciation to be Calculated")
                    for (const auto& step : depreciation::block_rate_lines(*result))
                        add_row(doc, {"    " + step.label, format_mask(step.amount, kWhole)}, false);
            }
            add_row(doc, {"", ""}, false);
        }
        for (const auto& b : run.income_tax.blocks)
            if (!b.carried_note.empty()) add_note(doc, b.carried_note);
        doc.landscape = false;
        return doc;
    }
    using depreciation::CaSheetRowKind;
    bool client_shown = false;
    for (const auto& r : run.books_sheet) {
        switch (r.kind) {
            case CaSheetRowKind::Title:
            case CaSheetRowKind::Heading:
                for (const auto& c : r.cells) doc.titles.push_back(c);
                // The client under the sheet's first title line.
                if (!client_shown) {
                    doc.titles.push_back(client_line(run, client));
                    client_shown = true;
                }
                break;
            case CaSheetRowKind::ColumnHeadings:
                doc.columns.clear();
                for (std::size_t i = 0; i < r.cells.size(); ++i)
                    doc.columns.push_back({"", r.cells[i], i > 1, i == 0, i == 0 ? 30 : 12});
                break;
            case CaSheetRowKind::Group:
            case CaSheetRowKind::EntryHeading:
            case CaSheetRowKind::GrandTotal:
                add_row(doc, r.cells, true);
                break;
            default:
                add_row(doc, r.cells, false);
        }
    }
    return doc;
}

ReportDocument chart_report(const CalculationResult& run, const PrintedClient& client) {
    return is_income_tax_mode(run.mode) ? income_tax_chart_report(run, client)
                                        : books_chart_report(run, client);
}

}  // namespace brenlow::reg
