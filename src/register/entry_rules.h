#pragma once
// The rules of one register entry, in one place for every way an entry comes in: the
// register screen, the command line (which drives the screen) and every import. Given
// an entry as typed or as read (EntryDraft) and what the year says about it
// (EntryContext), this works out the entry's derived figures and its findings: the
// checks made on leaving a field, the checks of Update in their fixed order, and the
// checks of the shift and adjustment rows. Each finding carries the field it sends the
// person back to, the system's own message, and whether it refuses, asks "Continue ?"
// or only informs.
//
// Nothing here touches the database or the screen: the caller shows the findings (an
// information box, a Yes/No question, an import's error line) and decides what a No
// means.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/vb_date.h"
#include "register/register_options.h"
#include "store/register_store.h"

namespace brenlow::reg {

enum class EntrySide { Opening, Addition };

// The fields the rules speak of. Each has its stored column (the import names it) and
// its caption (the messages quote it).
enum class EntryField {
    AssetGroup,
    Part,
    PutDate,
    AccDate,
    Cost,  // CostWdv (opening), PurAmt (addition)
    OpDepr,
    CalcCAYear,  // cboCalcCA
    DepCalcCA,   // txtCalcCA
    ResValue,
    LifeYrs,
    RateFACL,
    WdvIT,
    RateIT,
    AddlDepRT,
    AddlDepOn,
    ExciseCr,
    CurrDiff,
    Subsidy,
    SaleDate,
    SaleAmt,
    SaleExp,
    DepFACL,  // depreciation typed in when automatic calculation is off
    DetESA,
    ShiftDet,
};

// The column of the register table that holds the field.
const char* column_of(EntryField field, EntrySide side);

// What the finding asks of the person.
enum class FindingKind {
    Refusal,   // an information box; nothing is written
    Question,  // "... Continue ?" (Yes/No); No stops like a refusal
    Notice,    // an information box; the update goes on
};

struct Finding {
    EntryField field = EntryField::Part;
    FindingKind kind = FindingKind::Refusal;
    std::string message;
    bool default_yes = true;  // the button a question falls on
};

// No figure reaches this size, whichever way it comes in: the entry field takes
// eighteen characters. A figure at or past it, or one that is no finite number, is
// refused as a value the field would not take.
inline constexpr double kFigureLimit = 1e18;
bool within_figure_limit(double v);

// A figure as typed: nothing, a number, or text that is no number.
struct Figure {
    bool given = false;
    std::optional<double> value;

    static Figure typed(std::string_view text);
    static Figure of(double v) { return {true, v}; }
    // Empty, or a number (not below nil unless it may be negative).
    bool valid(bool may_be_negative = false) const {
        return !given || (value && (may_be_negative || *value >= 0));
    }
    double or_zero() const { return given && value ? *value : 0.0; }
};

// The optsWdvIT choice of an opening entry.
enum class ItState { Other, NotExist, NilWdv };

// One entry, as the person typed it or as a row holds it.
struct EntryDraft {
    EntrySide side = EntrySide::Opening;
    long group_id = 0;  // IdFAGM; 0 when none is chosen
    std::string part;
    std::string put_date;  // texts as typed; a stored row's dd/mm/yyyy
    std::string acc_date;
    Figure cost;  // CostWdv / PurAmt
    Figure op_depr;
    Figure res_value;
    Figure life;
    Figure rate_books;
    Figure wdv_it;
    Figure rate_it;
    Figure addl_rate;
    Figure excise, curr_diff, subsidy;  // additions
    std::string calc_ca_year;           // "" when none is chosen
    Figure dep_calc_ca;
    std::string res_val_of;  // the entry's residual basis: "" common, "COST", "CA"
    ItState it_state = ItState::Other;
    bool addl_dep_on_ticked = false;
    Figure addl_dep_on;
    double adjusted = 0;  // what vsESA sets against the asset (rows, or the gross total)
    std::string sale_date;
    Figure sale_amt, sale_exp;
    bool auto_depr = true;
    Figure manual_depr;
    // The books rate worked out when it is auto-calculated (reported on update); empty
    // when the rate is typed or taken from the master.
    std::string auto_rate;
};

// What the year knows about an entry.
struct EntryContext {
    int year = 0;               // the register's year (the financial year's closing year)
    bool group_known = false;   // the entry's group is a group of the year
    bool nesd = false;          // its Companies-Act block allows no extra shift
    bool written_down = false;  // the books column reads "Written Down Value", not "Cost"
    RegisterOptions options;
};

// ---- Captions the messages quote ----
std::string caption_of(EntryField field, EntrySide side, int year, bool written_down);

// ---- Derived figures ----
// Net amount of an addition and its miscellaneous adjustment (neither is stored).
double misc_adjustment(double excise, double curr_diff, double subsidy);
double net_amount(double cost, double excise, double curr_diff, double subsidy);
double net_amount(const store::AdditionRow& a);
// Total "Amount To be Adjusted" (the sixth field) of the DetESA rows.
double det_esa_adjustment(std::string_view det_esa);
// The base an entry's residual value and rate are worked from: an addition's net
// amount; an opening entry's cost, or on the carrying-amount basis its cost less the
// depreciation to the chosen year.
double entry_base(const EntryDraft& d, const RegisterOptions& common);

// ---- Checks ----
// On leaving a field: a date field must read as a date and lie where its side allows;
// a figure must be a number. nullopt when the text is accepted.
std::optional<Finding> leave_field_finding(EntryField field, EntrySide side, std::string_view text, int year,
                                           bool written_down);

// The checks of Update, in their fixed order, up to and including the first refusal
// (the screen stops there; questions and notices before it are listed in order).
std::vector<Finding> update_findings(const EntryDraft& d, const EntryContext& ctx);

// One extra-shift row (vsS): whole, inside the year, allowed by the group.
std::optional<Finding> shift_row_finding(std::string_view from, std::string_view to, int shift,
                                         const EntryContext& ctx);
// One adjustment row (vsESA), as it is added.
std::optional<Finding> esa_row_finding(std::string_view particulars, std::string_view wdv,
                                       std::string_view date, std::string_view amount,
                                       std::string_view excess, std::string_view adjust, int year);
// Editing the adjustment of a row in place.
std::optional<Finding> esa_edit_finding(std::string_view adjust, double excess);

// ---- Rows as drafts (imports and every other way in that reads rows) ----
EntryDraft draft_of(const store::OpeningRow& o);
EntryDraft draft_of(const store::AdditionRow& a);
// Every finding of a stored row: the date fields read back, the Update checks, and the
// rows of its packed shift and adjustment lists.
std::vector<Finding> row_findings(const EntryDraft& d, const EntryContext& ctx, std::string_view shift_det,
                                  std::string_view det_esa);

}  // namespace brenlow::reg
