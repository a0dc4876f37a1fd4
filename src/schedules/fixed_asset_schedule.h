#pragma once
// The "Fixed Assets" schedule of the schedule screen: one row per particular with its
// figures as per the books and as per the Income-tax Act, and per particular its lists
// of additions, deductions and the additional depreciation carried from last year.
// Qt-free: the window (and formatsch's "Fixed Assets" button) binds to this class.
//
// The screen works on the client-year the base services have open: Temp_Code, the
// year's suffix GetTbName(CYrInd()), the previous year's GetTbName(PYrInd()), the
// closing year from SecondDate.

#include <optional>
#include <string>
#include <vector>

#include "controls/ui_port.h"
#include "frame/component.h"
#include "schedules/fixed_asset_figures.h"
#include "store/fixed_schedule_store.h"

namespace brenlow::sched {

// Main grid columns (column 0 is the first).
enum FixedColumn {
    colParticulars = 0,
    colCost = 1,
    colOpeningDep = 2,
    colRate = 3,
    colMethod = 4,
    colDepYear = 5,
    colBooksBlock = 6,
    colWdv = 7,
    colItRate = 8,
    colItBlock = 9,
    colAdditions = 10,
    colDeductions = 11,
    colBlockNil = 12,
    colAddDepRate = 13,
    colCarried = 15,
    colOldTable = 16,
};

// One row of the main grid with its lists.
struct FixedLine {
    store::FixedRow row;  // figures as stored; row.PART_NM the name as typed
    std::vector<store::FdaRow> additions, deductions, carried;
    int old_table = 0;  // "Higher Rate as per Old Table": 0 N/A, 1 40% ... 5 100%
    bool red = false;   // outside the e-filing list of the year
    bool empty() const;
};

// Sub-views of a row.
enum class SubView {
    Additions = store::kFdaAddition,
    Deductions = store::kFdaDeduction,
    Carried = store::kFdaCarriedHalf
};

class FixedAssetSchedule {
public:
    FixedAssetSchedule(frame::Component& component, Ui& ui);

    // Opening the schedule: the carry-forward question when this year has no rows and
    // the previous year has (unless only reading), then the rows of the year.
    bool Form_Load(bool offer_carry_forward = true);
    // The carry-forward alone: true when rows were carried.
    bool carry_forward();

    // The grid's heading lines and combo lists.
    std::string books_heading() const;  // "As per Company Law" / "As per Books"
    std::string method_list() const;
    // The method list of one row: the status's list, and the row's own method after it
    // when the status's list lacks it (a method never changes by itself).
    std::string method_list_of(std::size_t row) const;
    // "Source of Deduction" of a row's deductions: "#0;(Opening)" and its additions.
    std::string source_list(std::size_t row) const;
    std::string books_block_list() const;
    std::string it_block_list() const;
    static const char* old_table_list();
    static std::string sub_view_title(SubView view);
    std::vector<std::string> sub_view_headings(SubView view) const;

    // The rows; the window edits them in place.
    std::vector<FixedLine> vsFixed;

    // The figures of every row as they stand (books and income tax).
    std::vector<ParticularFigures> figures() const;

    // ---- Entry (the same rules for the window, the command line and imports) ----
    // cmdAdd: an empty row at the end.
    void cmdAdd_Click();
    // cmddel: a particular, or one line of a row's list, taken out after the question;
    // false when answered No. Nothing is written until the schedule is saved; a deleted
    // addition leaves the deductions it was the source of taken from the opening.
    bool cmddel_Click(std::size_t row);
    bool delete_line(std::size_t row, SubView view, std::size_t line);
    // A new line at the end of a row's list, numbered after the largest srno (a
    // deduction names its source addition by it).
    void add_line(std::size_t row, SubView view);
    // A deduction's source: 0 (the opening figures) or the srno of one of the row's
    // additions; any other number is refused with a message naming it.
    bool set_source(std::size_t row, std::size_t line, long source);
    // The depreciation for the year typed over the calculated one (deptick); nullopt
    // goes back to the calculation. "OTHER METHOD" keeps its typed amount in OTH_DEP.
    void type_depreciation(std::size_t row, std::optional<double> amount);
    // cmddepedit: the year gate of editing the chart by hand; true when the editor may
    // open.
    bool cmddepedit_Click();

    // The client's options of the year (master.others): "SEPDEP", "ADDDEP", "STOPDEP",
    // "BADEP".
    ScheduleOptions options() const { return options_; }
    void set_options(const ScheduleOptions& options);

    // Save with every check; false when refused or answered No (nothing written).
    bool cmdSave_Click();
    // Save of one row's sub-view (the particular must have been saved once); a
    // deduction dated before its source addition is refused.
    bool save_sub_view(std::size_t row, SubView view);
    // Transfer to the trial balance / to capital gains.
    bool cmdtrans_Click();
    bool cmdfatrans_Click(const std::string& caption = "Transfer to Capital Gain");

    int year() const { return year_; }  // closing calendar year
    const std::string& code() const { return code_; }
    const std::string& suffix() const { return suffix_; }

private:
    void load_rows();
    // The checks of a save in their order; false when one refuses or is answered No.
    bool row_checks();
    bool line_checks();
    bool warnings();
    bool e_filing_check();
    bool reconcile();
    // Additional depreciation under the concessional section the client opted for:
    // refused with the question whether to delete it; true when there is none or it
    // was deleted on Yes.
    bool regime_check();
    // "" when no section the client opted for forbids additional depreciation this year.
    std::string concessional_section() const;
    std::string source_refusal(std::size_t row, long source) const;
    std::vector<ParticularInput> inputs() const;
    std::vector<store::FdaRow>& list_of(std::size_t row, SubView view);

    frame::Component& comp_;
    Ui& ui_;
    store::Database& db_;
    std::string code_;
    std::string suffix_;
    std::string previous_suffix_;
    int year_ = 0;
    int status_ = 1;
    int count_ = 0;  // the year's number of the client's master row
    ScheduleOptions options_;
    std::vector<store::BlockChoice> books_blocks_, it_blocks_;
};

// A client-year's stored rows as the grid's rows: each particular with its lines (the
// FDA_ rows of its ref_id; marker rows left out).
std::vector<FixedLine> fixed_lines_of(const store::FixedScheduleRows& rows);

// The refusal of a deduction dated before the addition it is taken from, or nullopt.
std::optional<std::string> deduction_date_refusal(const store::FdaRow& deduction,
                                                  const store::FdaRow& addition);

// The reconciliation question of a save, or "" when the trial balance agrees.
std::string reconciliation_question(store::Database& db, const std::string& suffix, const std::string& code,
                                    const ScheduleTotals& schedule);

// The e-filing list of a year (its closing calendar year Y): the heading, the lines and
// the closing question; and whether a block of that nature (BlockGroup.BlockNo) and rate
// is on it.
std::string e_filing_list(int closing_year);
bool e_filing_allows(int closing_year, int nature, double rate);

}  // namespace brenlow::sched
