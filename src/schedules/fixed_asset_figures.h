#pragma once
// The figures of the per-particular fixed-asset schedule, worked out by the register's
// own depreciation engine: each particular is an income-tax block of one line, and its
// books figures are the Companies Act calculation of its opening line and of each
// addition at the particular's typed rate.
//
// Books, per particular:
// - deductions come off first: one taken from the opening figures (no source) reduces
//   the opening cost and depreciation; one taken from an addition reduces that addition;
// - "WRITTEN DOWN VALUE" / "STRAIGHT LINE METHOD": the Companies Act calculation on what
//   is left, at RATE_DEP, no residual value, additions for their days in the year; an
//   addition ticked "100% Depreciation Upto Rs. 5000" is written off whole;
// - "OTHER METHOD" takes the typed amount (OTH_DEP), "NO DEPRECIATION" none; a typed
//   amount (deptick) always wins;
// - profit on sale: sales amount less expenses less (cost less depreciation) of each
//   deduction.
// Income tax, per particular: opening WDV, additions before or after the half-rate
// line, deductions of their sales amount (the particular stays unless "Block Nil" is
// ticked), additional depreciation at AddDepRt on additions marked for it, and the
// remaining half carried from last year (ad_ded_id 3 rows, their rate kept in `dep`).

#include <string>
#include <string_view>
#include <vector>

#include "depreciation/income_tax.h"
#include "store/fixed_schedule_store.h"

namespace brenlow::sched {

struct BooksFigures {
    double opening_cost = 0;     // OP_BAL
    double opening_dep = 0;      // op_bal_dep
    double additions = 0;        // net amounts of the additions
    double deductions_cost = 0;  // cost of what was deducted
    double deductions_dep = 0;   // depreciation up to the year end included in deductions
    double depreciation = 0;     // for the year
    double closing_cost = 0;     // gross block at the year end
    double closing_dep = 0;      // depreciation to date at the year end
    double net_block = 0;        // closing_cost - closing_dep
    double profit_on_sale = 0;   // (loss negative)
    double sales = 0;            // sales amounts of the deductions
};

struct ParticularFigures {
    std::string name;
    bool books_considered = true;  // CGrpId <> 9999999
    bool it_considered = true;     // IGrpId <> 9999999
    BooksFigures books;
    depreciation::ItBlockResult it;  // the particular's block of one line
};

// One particular of the schedule with its lines (additions, deductions, carried half).
struct ParticularInput {
    store::FixedRow row;
    std::vector<store::FdaRow> lines;
};

// The client's options of the schedule, kept as keywords in the `others` text of its
// master row for the year:
// - "STOPDEP": depreciation as per the books stopped for the year: none for any
//   particular, typed amounts included (income tax is not affected);
// - "BADEP": depreciation as per the books as entered: a particular's depreciation is
//   its typed amount (or its "OTHER METHOD" amount), never calculated;
// - "ADDDEP": additional depreciation claimed: without it no particular is charged
//   additional depreciation, on additions or carried from last year;
// - "SEPDEP": the books depreciation of each addition is worked for its own days in the
//   year apart from the opening; without it additions are depreciated with the opening
//   for the whole year.
struct ScheduleOptions {
    bool SEPDEP = true;
    bool ADDDEP = true;
    bool STOPDEP = false;
    bool BADEP = false;
    friend bool operator==(const ScheduleOptions&, const ScheduleOptions&) = default;
};
// SEPDEP and ADDDEP hold unless turned off ("NOSEPDEP", "NOADDDEP"), so a client who
// never set them keeps both. The options of an `others` text (keywords apart by blanks,
// commas, semicolons or bars), and the text with the options set and its other keywords
// kept.
ScheduleOptions options_of(std::string_view others);
std::string others_with(std::string_view others, const ScheduleOptions& options);

// Net amount of an addition line: cost less excise credit plus currency difference less
// grant; a line with no cost (as older data has it) counts at its Amount.
double addition_amount(const store::FdaRow& a);

// Every particular, in order, for the financial year closing 31/03/`year`.
std::vector<ParticularFigures> particular_figures(const std::vector<ParticularInput>& particulars, int year,
                                                  const ScheduleOptions& options = {});

// The schedule's totals of what is transferred (books, particulars not 9999999).
struct ScheduleTotals {
    double net_block = 0;
    double depreciation = 0;
    double profit_on_sale = 0;
};
ScheduleTotals schedule_totals(const std::vector<ParticularFigures>& figures);

}  // namespace brenlow::sched
