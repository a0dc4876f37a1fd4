#include "schedules/deferred_tax.h"

#include <set>

#include "controls/number_format.h"
#include "register/calculation.h"
#include "schedules/ppe_note.h"
#include "store/masters_store.h"
#include "store/sql_dialect.h"

namespace brenlow::sched {
namespace {

using Ostikreport::ReportDocument;

// Liabilities plain, assets in brackets.
constexpr const char* kSigned = "#,##0.00;(#,##0.00)";

double paise(double x) {
    return vb_round(x, 2);
}

bool names_concessional_section(const std::string& regime) {
    for (const char* section : {"115BAA", "115BAB", "115BA"})
        if (regime.find(section) != std::string::npos) return true;
    return false;
}

void add_row(ReportDocument& doc, std::vector<std::string> cells, bool bold = false) {
    cells.resize(doc.columns.size());
    doc.rows.push_back(std::move(cells));
    doc.bold_rows.push_back(bold);
}

std::string money(double x) {
    return format_mask(x, kSigned);
}

}  // namespace

DeferredTaxWorking work_deferred_tax(const DeferredTaxFigures& f, double rate) {
    DeferredTaxWorking w;
    w.figures = f;
    w.rate = rate;
    w.difference_opening = paise(f.books_opening - f.tax_opening);
    w.difference_closing = paise(f.books_closing - f.tax_closing);
    w.difference_movement = paise(w.difference_closing - w.difference_opening);
    w.depreciation_difference = paise(f.tax_depreciation - f.books_depreciation);
    w.other_movement = paise(w.difference_movement - w.depreciation_difference);
    w.deferred_opening = paise(w.difference_opening * rate / 100);
    w.deferred_closing = paise(w.difference_closing * rate / 100);
    w.charge = paise(w.deferred_closing - w.deferred_opening);
    return w;
}

std::optional<DeferredTaxFigures> deferred_tax_figures(store::Database& db, const std::string& code,
                                                       int year) {
    reg::CalculationOptions options;
    options.keep_entries = false;
    options.sheets = false;
    options.write_chart = false;
    DeferredTaxFigures f;
    const auto books = reg::run_calculation(db, code, year, reg::Mode::DEP_FA, false, options);
    if (books.no_assets) return std::nullopt;
    // Land is depreciated neither in the books nor in the blocks: it makes no timing
    // difference and stays out.
    std::set<long> land;
    for (const auto& g : store::asset_groups_of_year(db, year))
        if (ppe_class_of(g.BlockIdIT, g.BlockIdCL) == PpeClass::Land) land.insert(g.SrNoFAGM);
    for (const auto& a : books.books_assets) {
        if (land.count(a.IdFAGM)) continue;
        f.books_opening += a.Opening;
        f.books_closing += a.ClBal;
        f.books_depreciation += a.DepFY;
    }
    const auto tax = reg::run_calculation(db, code, year, reg::Mode::DEP_IT, false, options);
    for (const auto& l : reg::income_tax_chart_lines(tax)) {
        f.tax_opening += l.figures.opening;
        f.tax_closing += l.figures.closing;
        f.tax_depreciation += l.figures.normal + l.figures.additional;
    }
    f.books_opening = paise(f.books_opening);
    f.books_closing = paise(f.books_closing);
    f.books_depreciation = paise(f.books_depreciation);
    return f;
}

std::optional<store::TaxRateRow> usual_tax_rate(const std::vector<store::TaxRateRow>& rows, AssesseeKind kind,
                                                bool opted_concessional) {
    const std::string_view key = assessee_kind_key(kind);
    const bool concessional = kind == AssesseeKind::Company && opted_concessional;
    for (const auto& r : rows) {
        if (!store::equals_case_blind(r.Kind, key)) continue;
        if (concessional ? store::equals_case_blind(r.Regime, "115BAA")
                         : !names_concessional_section(r.Regime))
            return r;
    }
    return std::nullopt;
}

ReportDocument deferred_tax_report(const DeferredTaxWorking& w, int year, const reg::PrintedClient& client,
                                   const std::string& rate_basis) {
    const auto& f = w.figures;
    ReportDocument doc;
    doc.landscape = false;
    doc.titles = {"DEFERRED TAX ON DEPRECIATION", reg::client_line(client), "F.Y. " + reg::year_span(year),
                  "(Amount in Rs.)"};
    doc.columns = {{"", "Particulars", false, false, 58},
                   {"", "As at\n01/04/" + std::to_string(year - 1), true, false, 16},
                   {"", "As at\n31/03/" + std::to_string(year), true, false, 16}};
    add_row(doc, {"Net block as per books (depreciable assets, land excluded)", money(f.books_opening),
                  money(f.books_closing)});
    add_row(doc, {"Less: Written down value as per Income-tax Act (all blocks)", money(f.tax_opening),
                  money(f.tax_closing)});
    add_row(doc, {"Timing difference", money(w.difference_opening), money(w.difference_closing)}, true);
    add_row(doc,
            {"Effective tax rate (%)", format_mask(w.rate, "###0.000"), format_mask(w.rate, "###0.000")});
    add_row(doc, {"Deferred Tax Liability / (Asset)", money(w.deferred_opening), money(w.deferred_closing)},
            true);
    add_row(doc, {});
    add_row(doc, {"Movement in the year"}, true);
    add_row(doc, {"Depreciation as per Income-tax Act", "", money(f.tax_depreciation)});
    add_row(doc, {"Less: Depreciation as per books", "", money(f.books_depreciation)});
    add_row(doc, {"Difference in depreciation", "", money(w.depreciation_difference)});
    add_row(doc, {"Additions, sales and adjustments counted differently", "", money(w.other_movement)});
    add_row(doc, {"Timing difference of the year", "", money(w.difference_movement)}, true);
    add_row(doc, {});
    add_row(doc,
            {w.charge < 0 ? "Deferred tax credit for the year (to Profit and Loss)"
                          : "Deferred tax charge for the year (to Profit and Loss)",
             "", money(w.charge)},
            true);
    doc.notes.push_back("Effective rate: " + rate_basis + ", " + format_mask(w.rate, "###0.000") +
                        "% (tax, surcharge and cess as enacted at the balance-sheet date).");
    if (w.deferred_opening < 0 || w.deferred_closing < 0)
        for (const char* line : {"Deferred tax asset: to be recognised only to the extent that there is "
                                 "reasonable certainty that",
                                 "sufficient future taxable income will be available against which it can be "
                                 "realised; where the",
                                 "company has unabsorbed depreciation or carried forward losses, only to the "
                                 "extent that there is",
                                 "virtual certainty supported by convincing evidence."})
            doc.notes.push_back(line);
    doc.notes.push_back("Worked for the accounts only: nothing has been posted.");
    return doc;
}

}  // namespace brenlow::sched
