#pragma once
// Deferred tax on the depreciation difference of a year: the books net block of the
// depreciable assets (land left out) against the written down value of every
// income-tax block, at the year's opening and at its closing. The timing difference
// times the effective rate is a liability when the books stand higher, an asset when
// they stand lower; the year's charge is the closing balance less the opening one.
// The working is only computed and printed: nothing is posted.

#include <optional>
#include <string>
#include <vector>

#include "controls/assessee_kind.h"
#include "register/chart_report.h"
#include "store/database.h"
#include "store/tax_rate_store.h"
#include "suite/report.h"

namespace brenlow::sched {

struct DeferredTaxFigures {
    double books_opening = 0, books_closing = 0;  // net block of depreciable assets
    double tax_opening = 0, tax_closing = 0;      // WDV of every block
    double books_depreciation = 0;                // of the year, as the books chart charges it
    double tax_depreciation = 0;                  // allowed for the year
    friend bool operator==(const DeferredTaxFigures&, const DeferredTaxFigures&) = default;
};

struct DeferredTaxWorking {
    DeferredTaxFigures figures;
    double rate = 0;  // effective rate, per cent
    double difference_opening = 0, difference_closing = 0;
    double difference_movement = 0;  // closing less opening
    // Timing difference that the depreciation of the year makes (tax less books), and
    // the rest of the movement: additions, sales and adjustments the two sides count
    // differently.
    double depreciation_difference = 0, other_movement = 0;
    double deferred_opening = 0, deferred_closing = 0;  // a liability positive, an asset negative
    double charge = 0;                                  // to profit and loss; a credit negative
    friend bool operator==(const DeferredTaxWorking&, const DeferredTaxWorking&) = default;
};

// Works the deferred tax of the figures at a rate; every amount to the paisa.
DeferredTaxWorking work_deferred_tax(const DeferredTaxFigures& figures, double rate);

// The figures of a client's year from its books and income-tax calculations (which only
// read; the income-tax side follows the hand-edited chart when the client uses it).
// nullopt when the year has no assets.
std::optional<DeferredTaxFigures> deferred_tax_figures(store::Database& db, const std::string& code,
                                                       int year);

// The practice's usual rate for an assessee: a company that opted for a concessional
// section takes the 115BAA row; any other takes the first row of its kind that names no
// concessional section. nullopt when the table has no row for the kind.
std::optional<store::TaxRateRow> usual_tax_rate(const std::vector<store::TaxRateRow>& rows, AssesseeKind kind,
                                                bool opted_concessional);

// The working printed; `rate_basis` says where the rate came from ("company, 115BAA").
Ostikreport::ReportDocument deferred_tax_report(const DeferredTaxWorking& working, int year,
                                                const reg::PrintedClient& client,
                                                const std::string& rate_basis);

}  // namespace brenlow::sched
