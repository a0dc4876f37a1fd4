#include "schedules/formatsch.h"

#include <algorithm>

#include "controls/number_format.h"
#include "frame/stopped_whole.h"
#include "schedules/schedule_carry.h"
#include "schedules/schedule_grids.h"
#include "schedules/schedule_report.h"
#include "schedules/schedule_rules.h"

namespace brenlow::schedules {
namespace {

constexpr const char* kModule = "formatsch";

int last_four(const std::string& date) {
    return date.size() >= 4 ? std::atoi(date.substr(date.size() - 4).c_str()) : 0;
}

std::string year_span(int closing_year) {
    const int next = closing_year % 100;
    return std::to_string(closing_year - 1) + "-" + (next < 10 ? "0" : "") + std::to_string(next);
}

// The suffix of the year before the one shown: for this year through the previous
// year's number, else the client's master row of the year before; when the screen
// shows the previous year, the master row of two years before the open one.
std::string year_before(TarrowBase::ClsMain& base, bool previous_year) {
    if (!previous_year) return previous_year_suffix(base);
    const int first = last_four(base.FirstDate()) - 2, second = last_four(base.SecondDate()) - 2;
    const auto count = store::client_year_count(base.dbobj(), base.Temp_Code(), first, second);
    return count ? base.GetTbName(*count) : std::string();
}

bool is_new_item_column(const std::string& key) {
    return key == kUserReserveKey || key == "ExpID" || key == "comp_id";
}

std::string trimmed(std::string text) {
    const auto b = text.find_first_not_of(' ');
    if (b == std::string::npos) return {};
    return text.substr(b, text.find_last_not_of(' ') - b + 1);
}

}  // namespace

formatsch::formatsch(frame::Component& component, Ui& ui) : vsf1(0, 1), vsTB(3, 1), c_(component), ui_(ui) {
    for (const auto& k : sched_kinds()) buttons.push_back({k.title, false, true});
    buttons[1].Caption = "Reserve and Surplus";
    buttons[2].Caption = "Secured Loans";
    buttons[3].Caption = "Unsecured Loans";
    cmdshtb.Caption = kShowTB;
    cmdshtb.Visible = cmdAdd.Visible = cmddel.Visible = true;
    vsTB.set_heading(0, "", "Particulars");
    vsTB.set_heading(1, "", "Debit");
    vsTB.set_heading(2, "", "Credit");
    vsTB.set_col_width(0, 30);
    for (int c : {1, 2}) {
        vsTB.set_col_format(c, "###0.00");
        vsTB.set_col_alignment(c, Align::right);
        vsTB.set_col_width(c, 14);
    }
}

std::string formatsch::Caption() const {
    return "Balance Sheet Schedules";
}

void formatsch::Form_Load() {
    // The screen is made once and shown again: every showing starts afresh, on the
    // client and year open now.
    previous_year_ = false;
    load_year(nullptr);
}

void formatsch::load_year(const SchedKind* reopen) {
    auto& base = *c_.base;
    current_ = nullptr;
    loan_kind_.clear();
    lblTitle.Caption.clear();
    panel_visible = message_frame_visible = false;
    cmdshtb.Caption = kShowTB;
    vsf1.set_rows(vsf1.fixed_rows());
    vsf1.set_cols(0);
    row_ = col_ = dropped_row_ = dropped_col_ = -1;
    status_ = base.TSTATUS();
    FixOnly_ = frame::vb_is_true(c_.FixOnly);
    SchDef_ = c_.SchDef;
    buttons[0].Caption = status_ == 1 || status_ == 2 ? "Capital" : "Share Capital";
    lblRndFA.Caption = std::string("Round-Off Depreciation (") +
                       (status_ == 3 || status_ == 4 ? "As per Companies Act" : "As per Books") + ")";
    lblRndIT.Caption = "Round-Off Depreciation (As per IT Act)";
    cmdprev.Caption = previous_year_ ? kCurrentYear : kPreviousYear;
    lblYear.Caption =
        std::string(previous_year_ ? "Previous Year: F.Y. " : "F.Y. ") + year_span(shown_year());

    suffix_ = base.GetTbName(previous_year_ ? base.PYrInd() : base.CYrInd());
    std::vector<std::string> groups;
    previous_suffix_.clear();
    frame::guarded(c_.log, kModule, "Form_Load", [&] {
        previous_suffix_ = year_before(base, previous_year_);
        groups = store::schedule_groups(base.dbobj(), suffix_, base.Temp_Code());
    });
    const auto& kinds = sched_kinds();
    for (std::size_t i = 0; i < kinds.size(); ++i)
        buttons[i].Visible = std::find(groups.begin(), groups.end(), kinds[i].gunder) != groups.end();

    if (FixOnly_) {
        message_frame_visible = true;
        for (auto& b : buttons) b.Visible = false;
        if (open_fixed_assets)
            open_fixed_assets();
        else
            ui_.info(kFixedNotAvailable);
        return;
    }
    if (reopen) {
        if (buttons[static_cast<std::size_t>(reopen - kinds.data())].Visible) open(*reopen);
        return;
    }
    if (SchDef_ != kFixedAssets) base.CheckOptedOldDeprChart();

    if (SchDef_ != 0) {
        if (const auto* kind = kind_of_group(SchDef_)) cmd_Click(kind->group);
        return;
    }
    open_first_visible();
}

void formatsch::open_first_visible() {
    // The first button shown is pressed, whatever it opens: a firm's Capital opens
    // the partners' capital accounts, Fixed Assets its own screen.
    const auto& kinds = sched_kinds();
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        if (buttons[i].Visible) {
            cmd_Click(kinds[i].group);
            return;
        }
    }
}

int formatsch::shown_year() const {
    return last_four(c_.base->SecondDate()) - (previous_year_ ? 1 : 0);
}

void formatsch::save_then(const std::function<void()>& opener, const char* not_available) {
    if (!save()) return;
    if (opener)
        opener();
    else
        ui_.info(not_available);
}

void formatsch::cmdmerge_Click() {
    save_then(open_merge, kMergeNotAvailable);
}

void formatsch::cmdnewchart_Click() {
    save_then(open_new_chart, kNewChartNotAvailable);
}

void formatsch::cmdprev_Click() {
    if (!save()) return;
    if (!previous_year_ && c_.base->PYrInd() <= 0) {
        ui_.info(kNoPreviousYear);
        return;
    }
    previous_year_ = !previous_year_;
    load_year(current_);
}

void formatsch::cmd_Click(int group) {
    const SchedKind* kind = kind_of_group(group);
    if (!kind) return;
    if (group == kShareCapital && (status_ == 1 || status_ == 2)) {
        if (!save()) return;
        if (open_capital)
            open_capital();
        else
            ui_.info(kCapitalNotAvailable);
        return;
    }
    if (group == kShareCapital && status_ != 3 && status_ != 4) return;
    if (group == kFixedAssets) {
        if (!save()) return;
        if (open_fixed_assets)
            open_fixed_assets();
        else
            ui_.info(kFixedNotAvailable);
        return;
    }
    if (current_ == kind) return;
    if (current_ && !save()) return;
    open(*kind);
}

void formatsch::open(const SchedKind& kind) {
    current_ = &kind;
    loan_kind_ = kind.loan_id == 1 ? "SECURED" : kind.loan_id == 2 ? "UNSECURED" : "";
    lblTitle.Caption = kind.loan_id ? std::string(kind.loan_id == 1 ? "Secured " : "Unsecured ") + "Loans"
                                    : std::string(kind.title);
    dropped_row_ = dropped_col_ = -1;
    // The fixed forms keep their lines.
    cmdAdd.Enabled = cmddel.Enabled = kind.group != kSundryDebtors && kind.group != kCashBank;
    lay_out(kind);
    if (!previous_suffix_.empty() && carries_forward(kind)) check_carry_forward(kind);
    load_rows(kind);
    row_ = vsf1.data_rows() > 0 ? vsf1.fixed_rows() : -1;
    col_ = 0;
    if (panel_visible) show_trial_balance(false);
}

void formatsch::lay_out(const SchedKind& kind) {
    // Without its lists (a failure logged) the grid is laid out all the same.
    SchedLists lists;
    lists.subsidiaries = keeps_subsidiaries(status_);
    frame::guarded(c_.log, kModule, "lay_out",
                   [&] { lists = read_lists(c_.base->dbobj(), kind.loan_id, status_); });
    lay_out_grid(vsf1, kind, lists);
}

void formatsch::check_carry_forward(const SchedKind& kind) {
    auto& db = c_.base->dbobj();
    const std::string code = c_.base->Temp_Code();
    frame::stopped_whole(c_.log, ui_, kModule, "check_carry_forward",
                         "The previous year's particulars could not be carried forward.",
                         [&] { offer_carry_forward(db, ui_, kind, suffix_, previous_suffix_, code); });
}

void formatsch::load_rows(const SchedKind& kind) {
    // Reading writes nothing: a failure is logged and the screen goes on with what it has.
    frame::guarded(c_.log, kModule, "load_rows", [&] {
        fill_grid(
            vsf1, kind,
            store::read_schedule(c_.base->dbobj(), kind.stem, suffix_, c_.base->Temp_Code(), kind.loan_id));
    });
}

store::ScheduleSave formatsch::lines() const {
    return current_ ? grid_lines(vsf1, *current_) : store::ScheduleSave{};
}

std::vector<std::string> formatsch::totals() const {
    if (!current_) return {};
    const auto t = schedule_totals(vsf1, *current_);
    std::vector<std::string> out(static_cast<std::size_t>(vsf1.cols()));
    if (!t.any()) return out;
    bool labelled = false;
    for (std::size_t c = 0; c < out.size(); ++c) {
        if (t.sums[c])
            out[c] = format_mask(*t.sums[c], "#,##0.00");
        else if (!labelled && !vsf1.column(static_cast<int>(c)).hidden)
            out[c] = t.label, labelled = true;
    }
    return out;
}

bool formatsch::save() {
    if (!current_ || !*current_->stem) return true;
    auto save = lines();
    if (const auto refusal = check_schedule(*current_, save.rows)) {
        ui_.info(refusal->message);
        const int line =
            static_cast<int>(save.rows[static_cast<std::size_t>(refusal->line)].get("srno").as_int());
        std::string key = refusal->column;
        if (key == "head_id") key = kItemKey;
        row_ = vsf1.fixed_rows() + line - 1;
        col_ = std::max(0, vsf1.col_index(key));
        // After "specify a item" the item's list is dropped open on that line.
        if (refusal->message == kSpecifyItem || refusal->message == kSpecifyItemDot) {
            dropped_row_ = row_;
            dropped_col_ = col_;
        }
        return false;
    }
    save.rows = written_rows(*current_, save.rows);
    return frame::stopped_whole(c_.log, ui_, kModule, "save", "The schedule could not be saved.", [&] {
        store::save_schedule(c_.base->dbobj(), suffix_, c_.base->Temp_Code(), save);
    });
}

void formatsch::cmdAdd_Click() {
    if (!current_ || !*current_->stem) return;
    if (current_->group == kSundryDebtors || current_->group == kCashBank) return;
    const int at = current_->group == kShareCapital ? vsf1.rows() - 1 : -1;
    row_ = vsf1.add_item({}, at);
    col_ = 0;
}

void formatsch::cmddel_Click() {
    if (!current_ || row_ < vsf1.fixed_rows() || row_ >= vsf1.rows()) return;
    if (current_->group == kSundryDebtors || current_->group == kCashBank) return;
    if (vsf1.row_data(row_) == kApplicationLineData) return;
    if (!ui_.ask_yes_no(kDeleteQuestion, MsgIcon::question, false, kDeleteTitle)) return;
    vsf1.remove_item(row_);
    if (row_ >= vsf1.rows()) row_ = vsf1.rows() - 1;
    if (row_ < vsf1.fixed_rows()) row_ = -1;
}

void formatsch::cmdshtb_Click() {
    if (panel_visible) {
        panel_visible = false;
        cmdshtb.Caption = kShowTB;
        return;
    }
    show_trial_balance(true);
}

void formatsch::show_trial_balance(bool report_empty) {
    if (!current_) {
        if (report_empty) ui_.info(kNoRecords);
        return;
    }
    auto& base = *c_.base;
    std::vector<store::TrialBalanceRow> rows;
    // Reading writes nothing: a failure is logged and the panel shows what it has.
    frame::guarded(c_.log, kModule, "show_trial_balance", [&] {
        rows = store::trial_balance_group(base.dbobj(), suffix_, base.Temp_Code(), current_->group);
    });
    if (rows.empty() && report_empty) {
        ui_.info(kNoRecords);
        panel_visible = false;
        cmdshtb.Caption = kShowTB;
        return;
    }
    vsTB.set_redraw(false);
    vsTB.clear_rows();
    double debit = 0, credit = 0;
    for (const auto& r : rows) {
        const int at = vsTB.add_item(base.GetPart_MastPartId(r.PartId));
        const bool cr = r.nid == store::kCredit;
        vsTB.set_value_matrix(at, cr ? 2 : 1, r.Amt);
        (cr ? credit : debit) += r.Amt;
    }
    const int total = vsTB.add_item("Total");
    vsTB.set_value_matrix(total, 1, debit);
    vsTB.set_value_matrix(total, 2, credit);
    vsTB.set_redraw(true);
    panel_visible = true;
    cmdshtb.Caption = kHideTB;
}

void formatsch::cmdPrint_Click() {
    if (!current_ || !*current_->stem) return;
    auto& base = *c_.base;
    auto save = lines();
    std::vector<store::FieldRow> rows = save.rows;
    if (save.share_application != 0) {
        store::FieldRow sam;
        sam.set("sam", store::Value(save.share_application));
        rows.insert(rows.begin(), std::move(sam));
    }
    frame::guarded(c_.log, kModule, "cmdPrint_Click", [&] {
        const auto doc =
            schedule_report(*current_, rows, read_lists(base.dbobj(), current_->loan_id, status_),
                            printed_for(base.dbobj(), base.Temp_Code(), shown_year()));
        c_.report->WriteToReport(doc);
        c_.report->showreport();
    });
}

bool formatsch::vsf1_ValidateEdit(int row, int col, const std::string& text) {
    if (!current_ || current_->group != kShareCapital || vsf1.col_key(col) != "RS_SHARE1") return true;
    if (vsf1.row_data(row) == kApplicationLineData) return true;
    const double paid = std::atof(text.c_str());
    if (paid > vsf1.value_matrix(row, vsf1.col_index("RS_SHARE"))) {
        ui_.info(kPaidUpAboveRate);
        return false;
    }
    return true;
}

void formatsch::vsf1_AfterEdit(int row, int col) {
    if (!current_ || row < vsf1.fixed_rows() || row >= vsf1.rows()) return;
    const std::string key = vsf1.col_key(col);
    const auto data = vsf1.row_data(row);
    // The application line holds its amount only; a heading of the bank form none.
    if (data == kApplicationLineData && key != kAmountKey) {
        vsf1.set_text_matrix(row, col, col == 0 ? kApplicationCaption : "");
        return;
    }
    if (data == kHeadingLineData && col != 0) {
        vsf1.set_text_matrix(row, col, "");
        return;
    }
    if (is_new_item_column(key) && vsf1.text_matrix(row, col) == "0") new_master_item(row, col);
    // A line names one reserve: a built-in kind or one of the user's own.
    if (current_->group == kReserves && !vsf1.text_matrix(row, col).empty()) {
        if (key == "resv_id") vsf1.set_text_matrix(row, vsf1.col_index(kUserReserveKey), "");
        if (key == kUserReserveKey) vsf1.set_text_matrix(row, vsf1.col_index("resv_id"), "");
    }
    // An investment keeps only the columns of its type.
    if (current_->group == kInvestments) {
        const int type = static_cast<int>(vsf1.value_matrix(row, vsf1.col_index("INVEST_ID")));
        const auto& keep = invest_columns(type);
        for (int c = 0; type != 0 && c < vsf1.cols(); ++c)
            if (std::find(keep.begin(), keep.end(), vsf1.col_key(c)) == keep.end())
                vsf1.set_text_matrix(row, c, "");
    }
    recompute_line(vsf1, *current_, row);
}

void formatsch::vsf1_RowColChange(int row, int col) {
    row_ = row;
    col_ = col;
}

void formatsch::new_master_item(int row, int col) {
    auto& db = c_.base->dbobj();
    const std::string key = vsf1.col_key(col);
    const auto typed = ui_.input_box(kNewItemPrompt);
    const std::string name = typed ? trimmed(*typed) : std::string();
    if (name.empty()) {
        vsf1.set_text_matrix(row, col, "");
        return;
    }
    long id = 0;
    bool exists = false;
    const bool saved = frame::stopped_whole(c_.log, ui_, kModule, "new_master_item",
                                            "The new item could not be saved.", [&] {
                                                if (key == kUserReserveKey) {
                                                    const auto added = store::add_reserve(db, name);
                                                    if (!added) {
                                                        exists = true;
                                                        return;
                                                    }
                                                    id = *added;
                                                } else if (key == "ExpID") {
                                                    id = store::find_or_add_misc_expense(db, name);
                                                } else {
                                                    id = store::find_or_add_company(db, name);
                                                }
                                            });
    if (exists) ui_.info(kItemExists);
    if (!saved || exists) {
        vsf1.set_text_matrix(row, col, "");
        return;
    }
    SchedLists lists;
    frame::guarded(c_.log, kModule, "new_master_item",
                   [&] { lists = read_lists(db, current_->loan_id, status_); });
    const std::string& list = key == kUserReserveKey ? lists.user_reserves
                              : key == "ExpID"       ? lists.misc
                                                     : lists.company;
    vsf1.set_col_combo_list(col, list);
    vsf1.set_text_matrix(row, col, std::to_string(id));
}

}  // namespace brenlow::schedules
