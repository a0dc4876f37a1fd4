// cmdUpdate: the entry frame read as a draft and put through the entry rules (its
// shift and adjustment rows first, as every other way in checks a row). The
// first refusal shows its message, sends the person back to its field, and nothing is
// written; a "Continue ?" question stops on No; notices are shown and the update goes on.

#include "register/entry_gate.h"
#include "register/entry_rules.h"
#include "register/frm_new_fatr.h"
#include "register/register_entry_math.h"

namespace brenlow::reg {
namespace {

constexpr const char* kModule = "frmNewFATR";

}  // namespace

bool frmNewFATR::cmdUpdate_Click() {
    bool done = false;
    frame::guarded(comp_.log, kModule, "cmdUpdate_Click", [&] {
        if (!is_opening_mode() && !is_addition_mode()) return;
        if (!checks_pass()) return;
        write_entry();
        Mode_ = EntryMode::None;
        edit_serial_ = 0;
        famEditO_Visible = famEditA_Visible = false;
        fill_filter();
        LoadRegister();
        done = true;
    });
    return done;
}

EntryContext frmNewFATR::entry_context() const {
    EntryContext ctx;
    ctx.year = year_;
    ctx.group_known = txtAssetGroup.Id != 0 && FindGroup(txtAssetGroup.Id) != nullptr;
    ctx.nesd = lblNESD == "NESD";
    ctx.written_down = written_down();
    ctx.options = options_;
    return ctx;
}

// The frame as the person left it.
EntryDraft frmNewFATR::draft() const {
    EntryDraft d;
    d.group_id = txtAssetGroup.Id;
    d.part = txtPart.text();
    const auto typed = [](const vTXT& f) { return Figure::typed(f.text()); };
    if (is_opening_mode()) {
        d.side = EntrySide::Opening;
        d.put_date = txtfieldsO[O_PutDate].text();
        d.cost = typed(txtfieldsO[O_CostWdv]);
        d.op_depr = typed(txtfieldsO[O_OpDepr]);
        d.res_value = typed(txtfieldsO[O_ResValue]);
        d.life = typed(txtfieldsO[O_LifeYrs]);
        d.rate_books = typed(txtfieldsO[O_RateFACL]);
        d.wdv_it = typed(txtfieldsO[O_WdvIT]);
        d.rate_it = typed(txtfieldsO[O_RateIT]);
        d.addl_rate = typed(txtfieldsO[O_AddlDepRT]);
        d.calc_ca_year = cboCalcCA.Id();
        if (!d.calc_ca_year.empty()) d.dep_calc_ca = typed(txtCalcCA);
        d.res_val_of = cboResValOfO.Id();
        d.it_state = optsWdvIT == WdvIT_NilWdv     ? ItState::NilWdv
                     : optsWdvIT == WdvIT_NotExist ? ItState::NotExist
                                                   : ItState::Other;
        d.addl_dep_on_ticked = chkfieldsO[O_AddlDepOn].Value;
        d.addl_dep_on = typed(txtfieldsO[O_AddlDepOn]);
        d.adjusted = chkTotESA.Value ? number_of(txtTotESA.text()) : esa_total();
        if (chkfieldsO[O_RateFACL].Value && rate_auto_O_) d.auto_rate = txtfieldsO[O_RateFACL].text();
    } else {
        d.side = EntrySide::Addition;
        d.put_date = txtfieldsA[A_PutDate].text();
        d.acc_date = txtfieldsA[A_AccDate].text();
        d.cost = typed(txtfieldsA[A_PurAmt]);
        d.excise = typed(txtfieldsA[A_ExciseCr]);
        d.curr_diff = typed(txtfieldsA[A_CurrDiff]);
        d.subsidy = typed(txtfieldsA[A_Subsidy]);
        d.res_value = typed(txtfieldsA[A_ResValue]);
        d.life = typed(txtfieldsA[A_LifeYrs]);
        d.rate_books = typed(txtfieldsA[A_RateFACL]);
        d.rate_it = typed(txtfieldsA[A_RateIT]);
        d.addl_rate = typed(txtfieldsA[A_AddlDepRT]);
        if (chkfieldsA[A_RateFACL].Value && rate_auto_A_) d.auto_rate = txtfieldsA[A_RateFACL].text();
    }
    d.sale_date = txtfieldsD[D_SaleDate].text();
    d.sale_amt = typed(txtfieldsD[D_SaleAmt]);
    d.sale_exp = typed(txtfieldsD[D_SaleExp]);
    d.auto_depr = chkAutoCalcDeprCL.Value;
    d.manual_depr = typed(txtAutoCalcDeprCL);
    return d;
}

// The field of a finding as the frame's focus: side 'O', 'A', 'D', 'P' particulars,
// 'G' group, 'C' the carrying-amount year, 'X' the typed depreciation; index within the side.
void frmNewFATR::focus_on(EntryField field) {
    switch (field) {
        case EntryField::AssetGroup:
            return focus('G', 0);
        case EntryField::Part:
            return focus('P', 0);
        case EntryField::CalcCAYear:
        case EntryField::DepCalcCA:
            return focus('C', 0);
        case EntryField::DepFACL:
            return focus('X', 0);
        case EntryField::DetESA:
        case EntryField::ShiftDet:
            return focus('D', D_SaleDate);
        default:
            break;
    }
    for (int i = 0; i < D_Count; ++i)
        if (kSaleFields[i] == field) return focus('D', i);
    if (is_opening_mode()) {
        for (int i = 0; i < O_Count; ++i)
            if (kOpeningFields[i] == field) return focus('O', i);
        return focus('O', 0);
    }
    for (int i = 0; i < A_Count; ++i)
        if (kAdditionFields[i] == field) return focus('A', i);
    focus('A', 0);
}

// Shows the findings in their order; false at the first refusal or a question answered No.
bool frmNewFATR::show_findings(const std::vector<Finding>& findings) {
    const auto stop = pass_findings(findings, answers_of(ui_));
    if (!stop) return true;
    if (stop->kind == FindingKind::Refusal) ui_.info(stop->message);
    focus_on(stop->field);
    return false;
}

bool frmNewFATR::checks_pass() {
    // The auto-calculated rate reported is the one the frame's figures give now.
    const CheckBox& tick = is_opening_mode() ? chkfieldsO[O_RateFACL] : chkfieldsA[A_RateFACL];
    if (tick.Value && tick.Caption == "Auto Calculated")
        is_opening_mode() ? recalc_opening() : recalc_addition();
    // The shift and adjustment rows are checked again here, against the group the entry
    // is written to, whether or not their frames were closed with OK.
    return show_findings(
        row_findings(draft(), entry_context(), shift_det(), is_opening_mode() ? det_esa() : ""));
}

}  // namespace brenlow::reg
