// The screen-wide options (the NewFAMI row and "BADEP"), the old depreciation
// chart, and the carry-forward of the previous year's particulars.

#include <map>

#include "controls/number_format.h"
#include "controls/vb_date.h"
#include "depreciation/companies_act.h"
#include "depreciation/income_tax.h"
#include "register/carry_forward.h"
#include "register/frm_new_fatr.h"
#include "register/register_entry_math.h"
#include "register/register_text.h"

namespace brenlow::reg {
namespace {

constexpr const char* kModule = "frmNewFATR";

}  // namespace

bool frmNewFATR::ask_change(std::string_view caption) {
    return ui_.ask_yes_no("Do you really want to change '" + std::string(caption) + "' ?", MsgIcon::question,
                          false);
}

void frmNewFATR::write_options() {
    register_changed();
    store_->rewrite_options_row(options_.compose());
    refresh_common_texts();
    show_state();
}

void frmNewFATR::show_state() {
    optWDV.Value = options_.optMOD == "WDV";
    optSLM.Value = options_.optMOD == "SLM";
    optCost.Value = options_.optResValOf == "COST";
    optCA.Value = options_.optResValOf == "CA";
    chkFASchBooks.Value = options_.optFASCHBOOKS == "Y";
    chkRndFA.Value = options_.optRndFA == "Y";
    chkRndIT.Value = options_.optRndIT == "Y";
    chkRemLife0.Value = options_.cboDepAdjRemLife0 == 1;
    chkFASchBooks.Caption = "Fixed Asset Schedule as per Books";
    chkRndFA.Caption = "Round-Off Depreciation (Books)";
    chkRndIT.Caption = "Round-Off Depreciation (As per IT Act)";
    chkRemLife0.Caption = "Nil Remaining Life to Retained Earnings";
    // A client that keeps the old chart has no asset-wise entries: only deleting works.
    for (CommandButton* b : {&cmdAddO, &cmdEditO, &cmdAddA, &cmdEditA, &cmdDeprCalc, &cmdAssetGroupMas,
                             &cmdOldDepChart, &cmdTransToTB, &cmdEditFA})
        b->Enabled = !old_chart_;
    for (CommandButton* b : {&cmdDelO, &cmdDelAllO, &cmdDelA, &cmdDelAllA}) b->Enabled = true;
    cmdExportXls.Enabled = !old_chart_ && workbook_.export_xls != nullptr;
    cmdImportXls.Enabled = !old_chart_ && workbook_.import_xls != nullptr;
}

void frmNewFATR::set_workbook_actions(WorkbookActions actions) {
    workbook_ = std::move(actions);
    cmdExportXls.Enabled = !old_chart_ && workbook_.export_xls != nullptr;
    cmdImportXls.Enabled = !old_chart_ && workbook_.import_xls != nullptr;
}

void frmNewFATR::cmdExportXls_Click() {
    frame::guarded(comp_.log, kModule, "cmdExportXls_Click", [&] {
        if (workbook_.export_xls) workbook_.export_xls(ui_);
    });
}

void frmNewFATR::cmdImportXls_Click() {
    frame::guarded(comp_.log, kModule, "cmdImportXls_Click", [&] {
        if (workbook_.import_xls && workbook_.import_xls(ui_)) LoadRegister();
    });
}

void frmNewFATR::chkFASchBooks_Click() {
    frame::guarded(comp_.log, kModule, "chkFASchBooks_Click", [&] {
        options_.optFASCHBOOKS = options_.optFASCHBOOKS == "Y" ? "N" : "Y";
        write_options();
    });
}

void frmNewFATR::chkRndFA_Click() {
    frame::guarded(comp_.log, kModule, "chkRndFA_Click", [&] {
        options_.optRndFA = options_.optRndFA == "Y" ? "N" : "Y";
        write_options();
    });
}

void frmNewFATR::chkRndIT_Click() {
    frame::guarded(comp_.log, kModule, "chkRndIT_Click", [&] {
        options_.optRndIT = options_.optRndIT == "Y" ? "N" : "Y";
        write_options();
    });
}

void frmNewFATR::chkRemLife0_Click() {
    frame::guarded(comp_.log, kModule, "chkRemLife0_Click", [&] {
        options_.cboDepAdjRemLife0 = options_.cboDepAdjRemLife0 == 1 ? 0 : 1;
        write_options();
    });
}

bool frmNewFATR::optMOD_Click(std::string_view method) {
    bool changed = false;
    frame::guarded(comp_.log, kModule, "optMOD_Click", [&] {
        if (method != "WDV" && method != "SLM") return;
        if (method == options_.optMOD || !ask_change("Method of Depreciation")) return;
        options_.optMOD = std::string(method);
        write_options();
        changed = true;
    });
    return changed;
}

bool frmNewFATR::optResValOf_Click(std::string_view basis) {
    bool changed = false;
    frame::guarded(comp_.log, kModule, "optResValOf_Click", [&] {
        if (basis != "COST" && basis != "CA") return;
        if (basis == options_.optResValOf || !ask_change("Residual Value (5%) Of")) return;
        options_.optResValOf = std::string(basis);
        write_options();
        changed = true;
    });
    return changed;
}

bool frmNewFATR::cboRndRemLife_Click(int index) {
    bool changed = false;
    frame::guarded(comp_.log, kModule, "cboRndRemLife_Click", [&] {
        if (index < 0 || index >= kRemLifeRoundings || index == options_.cboRndRemLife) return;
        if (!ask_change("Rounding of Remaining Life")) {
            cboRndRemLife.ListIndex = options_.cboRndRemLife;
            return;
        }
        options_.cboRndRemLife = index;
        cboRndRemLife.ListIndex = index;
        write_options();
        changed = true;
    });
    return changed;
}

void frmNewFATR::SetOptions(const RegisterOptions& options) {
    frame::guarded(comp_.log, kModule, "SetOptions", [&] {
        // The three options that are asked about keep their own events.
        RegisterOptions next = options;
        next.optMOD = options_.optMOD;
        next.optResValOf = options_.optResValOf;
        next.cboRndRemLife = options_.cboRndRemLife;
        options_ = next;
        write_options();
    });
}

void frmNewFATR::cboBADep_Click(int index) {
    frame::guarded(comp_.log, kModule, "cboBADep_Click", [&] {
        if (index < 0 || index >= static_cast<int>(cboBADep.List.size())) return;
        cboBADep.ListIndex = index;
        auto& base = *comp_.base;
        base.SetMiscOthInf("BADEP", cboBADep.Id(), base.SecondDate(), code_, "Depreciation as per Books");
    });
}

void frmNewFATR::cmdOldDepChart_Click() {
    frame::guarded(comp_.log, kModule, "cmdOldDepChart_Click", [&] {
        if (Mode_ != EntryMode::None || old_chart_) return;
        if (store_->has_entries()) {
            ui_.info(
                "Can't Proceed ! You have already entered details in New Depreciation Chart (Asset Wise).");
            return;
        }
        if (is_company(comp_.base->TSTATUS())) {
            ui_.info(
                "In case of Companies, you should use Old Depreciation Chart if you want to Calculate "
                "Depreciation as per Income-Tax Act only not as per New Companies Act, 2013.");
            if (!ui_.ask_yes_no("Continue ?", MsgIcon::question, false)) return;
        }
        store_->write_old_chart_marker();
        old_chart_ = true;
        options_ = RegisterOptions{};
        show_state();
        fill_filter();
        LoadRegister();
    });
}

// The previous year's assets still held at its end become this year's opening entries
// (carry_forward.h says how their figures are found).
void frmNewFATR::CarryForward() {
    frame::guarded(comp_.log, kModule, "CarryForward", [&] {
        const auto plan = plan_carry_forward(comp_.base->dbobj(), code_, year_);
        if (!plan.nothing_because.empty() && plan.openings.empty()) return;
        if (!ui_.ask_yes_no(kCarryForwardQuestion)) return;
        CarryForwardAnswers answers;
        answers.it_rate_to_40 = plan.it_rate_over_40 && ui_.ask_yes_no(kItRate40Question);
        answers.books_rate_to_40 = plan.books_rate_over_40 && !is_company(comp_.base->TSTATUS()) &&
                                   ui_.ask_yes_no(kBooksRate40Question);
        answers.rules = answers_of(ui_);
        const auto done = apply_carry_forward(comp_.base->dbobj(), code_, year_, plan, answers);
        if (!done.refusal.empty()) {
            if (!done.answered_no) ui_.info(done.refusal);
            return;
        }
        if (plan.options_row) options_ = RegisterOptions::parse(*plan.options_row);
        show_state();
        groups_ = store_->asset_groups();
        fill_group_picker();
        refresh_common_texts();
    });
}

}  // namespace brenlow::reg
