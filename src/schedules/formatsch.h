#pragma once
// formatsch: the schedules behind a client's balance sheet for the open year, one at
// a time in the grid vsf1, each kept in a per-year table of its own. Opening a
// schedule saves the one open first; a refused save keeps it. Beside the grid a
// panel shows what the trial balance holds for the open schedule's group.
// Fixed Assets and the partners' capital accounts are screens of their own, opened
// through the openers the frame supplies.

#include <functional>
#include <string>
#include <vector>

#include "controls/grid.h"
#include "controls/screen_controls.h"
#include "controls/ui_port.h"
#include "frame/component.h"
#include "frame/screen.h"
#include "schedules/schedule_kinds.h"
#include "store/schedule_store.h"

namespace brenlow::schedules {

// A schedule button: shown only for the client's schedule groups.
struct SchedButton {
    std::string Caption;
    bool Visible = false;
    bool Enabled = true;
};

class formatsch : public frame::Screen {
public:
    static constexpr const char* kDeleteQuestion = "Do you want to delele the selected item?";
    static constexpr const char* kDeleteTitle = "Delete Confirmation";
    static constexpr const char* kShowTB = "Sho&w Trial Balance Data";
    static constexpr const char* kHideTB = "&Hide Trial Balance Data";
    static constexpr const char* kNoRecords = "No Records!!";
    static constexpr const char* kNewItemPrompt = "Please Enter New Item";
    static constexpr const char* kItemExists = "This Item already Exists";
    static constexpr const char* kFixedNotAvailable = "The Fixed Assets schedule is not available.";
    static constexpr const char* kCapitalNotAvailable = "The partners' capital screen is not available.";
    static constexpr const char* kMergeNotAvailable = "The merging of entries is not available.";
    static constexpr const char* kNewChartNotAvailable = "The asset register is not available.";
    static constexpr const char* kNoPreviousYear = "The client has no previous year.";
    static constexpr const char* kPreviousYear = "P&revious Year";
    static constexpr const char* kCurrentYear = "Cu&rrent Year";

    formatsch(frame::Component& component, Ui& ui);

    std::string Caption() const override;

    // Openers of the screens reached from here; unset ones say they are not available.
    std::function<void()> open_fixed_assets;
    std::function<void()> open_capital;
    std::function<void()> open_merge;      // the merging of register entries
    std::function<void()> open_new_chart;  // the asset register of the new chart

    // Controls.
    Grid vsf1;                         // the open schedule
    Grid vsTB;                         // the trial-balance panel: particulars, debit, credit
    std::vector<SchedButton> buttons;  // in the order of sched_kinds()
    SchedButton cmdAdd, cmddel, cmdshtb;
    SchedButton cmdmerge, cmdprev, cmdnewchart;
    bool panel_visible = false;
    Label lblRndFA, lblRndIT, lblTitle;
    Label lblYear;                       // the financial year shown: this one, or the previous one
    bool message_frame_visible = false;  // FixOnly: the other schedules' frame is hidden

    // Events.
    void Form_Load();
    // A schedule button by its group number (SchDef value).
    void cmd_Click(int group);
    void cmd_sharecapital_Click() { cmd_Click(kShareCapital); }
    void cmdAdd_Click();
    void cmddel_Click();
    void cmdshtb_Click();
    // Each saves the open schedule first; a refused save keeps it and goes no further.
    // The merging of register entries and the new chart's register open beside;
    // Previous Year shows the year before (and back again).
    void cmdmerge_Click();
    void cmdnewchart_Click();
    void cmdprev_Click();
    bool previous_year() const { return previous_year_; }
    // Prints the open schedule as the grid holds it, through the report object.
    void cmdPrint_Click();
    // A cell of vsf1 was edited: computed columns follow, new master items are asked for.
    void vsf1_AfterEdit(int row, int col);
    // Edits refused while typing (the paid-up rate above the rate per share).
    bool vsf1_ValidateEdit(int row, int col, const std::string& text);
    void vsf1_RowColChange(int row, int col);
    int vsf1_Row() const { return row_; }
    int vsf1_Col() const { return col_; }

    // Saves the open schedule; false when its lines are refused (the schedule stays).
    bool save();
    // The open schedule; nullptr before one is opened.
    const SchedKind* current() const { return current_; }
    const std::string& loan_kind() const { return loan_kind_; }
    const std::string& suffix() const { return suffix_; }
    const std::string& previous_suffix() const { return previous_suffix_; }
    // A combo column dropped open after a refusal (row, col), -1 when none.
    int dropped_row() const { return dropped_row_; }
    int dropped_col() const { return dropped_col_; }
    // The view has dropped the list open.
    void dropped_shown() { dropped_row_ = dropped_col_ = -1; }

    // The grid's lines as table rows (srno = line number) and the share application money.
    store::ScheduleSave lines() const;
    // The totals line under the grid's columns ("" where a column does not add up;
    // the label under the first column); empty when no schedule is open.
    std::vector<std::string> totals() const;

private:
    // The load steps for the year shown; `reopen` is opened again when the year has it.
    void load_year(const SchedKind* reopen);
    void open_first_visible();
    // The calendar year in which the financial year shown ends.
    int shown_year() const;
    // Saves the open schedule, then runs the opener (or says it is not available).
    void save_then(const std::function<void()>& opener, const char* not_available);
    void open(const SchedKind& kind);
    void lay_out(const SchedKind& kind);
    void load_rows(const SchedKind& kind);
    void check_carry_forward(const SchedKind& kind);
    void show_trial_balance(bool report_empty);
    void recompute(int row);
    void new_master_item(int row, int col);

    frame::Component& c_;
    Ui& ui_;
    const SchedKind* current_ = nullptr;
    std::string loan_kind_;
    std::string suffix_, previous_suffix_;
    bool FixOnly_ = false;
    bool previous_year_ = false;  // the screen shows the year before the open one
    int SchDef_ = 0;
    int status_ = 0;
    int row_ = -1, col_ = -1;
    int dropped_row_ = -1, dropped_col_ = -1;
};

}  // namespace brenlow::schedules
