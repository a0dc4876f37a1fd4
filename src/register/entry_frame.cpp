// The entry frames famEditO (opening), famEditA (addition) and famEditD (sale or
// deduction): their fields, ticks and combos, the figures that follow the fields
// as they change (residual value, auto-calculated rate, remaining life, net amount,
// days), and the checks made when a field is left.

#include <algorithm>
#include <charconv>

#include "controls/number_format.h"
#include "controls/vb_date.h"
#include "depreciation/companies_act.h"
#include "depreciation/companies_act_rate.h"
#include "depreciation/fa_date.h"
#include "frame/remaining_life.h"
#include "register/frm_new_fatr.h"
#include "register/register_entry_math.h"
#include "register/register_text.h"

namespace brenlow::reg {
namespace {

constexpr const char* kModule = "frmNewFATR";
constexpr const char* kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";

void as_date_field(vTXT& f) {
    f.set_ValidateData(vTXT::kFreeText);
    f.set_MaxLength(10);
    f.set_Exclude(kLetters);
}

void as_number_field(vTXT& f) {
    f.set_ValidateData(vTXT::kDecimal);
    f.set_MaxLength(18);
    // Amounts may be typed grouped, in lakhs or in thousands ("8,50,000"); the
    // leave-field check reads them and the field shows them back plain.
    f.set_Include(",");
}

bool is_date_index_o(int i) {
    return i == frmNewFATR::O_PutDate;
}
bool is_date_index_a(int i) {
    return i == frmNewFATR::A_PutDate || i == frmNewFATR::A_AccDate;
}

const char* mask_of_o(int i) {
    switch (i) {
        case frmNewFATR::O_LifeYrs:
            return "###0";
        case frmNewFATR::O_RateFACL:
        case frmNewFATR::O_RateIT:
        case frmNewFATR::O_AddlDepRT:
            return "rate";
        default:
            return "###0.00";
    }
}

const char* mask_of_a(int i) {
    switch (i) {
        case frmNewFATR::A_LifeYrs:
            return "###0";
        case frmNewFATR::A_RateFACL:
        case frmNewFATR::A_RateIT:
        case frmNewFATR::A_AddlDepRT:
            return "rate";
        default:
            return "###0.00";
    }
}

std::string shown(double v, const char* mask) {
    return std::string(mask) == "rate" ? rate_two_or_four_places(v) : format_mask(v, mask);
}

bool has_block(const std::string& id) {
    return !id.empty() && id != "-1" && id != "-2";
}

}  // namespace

void frmNewFATR::set_up_fields() {
    txtPart.set_MaxLength(100);
    txtfieldsO.assign(O_Count, vTXT(ui_));
    chkfieldsO.assign(O_Count, CheckBox{});
    lblfieldsO.assign(O_Count, std::string());
    for (int i = 0; i < O_Count; ++i)
        is_date_index_o(i) ? as_date_field(txtfieldsO[i]) : as_number_field(txtfieldsO[i]);
    txtfieldsA.assign(A_Count, vTXT(ui_));
    chkfieldsA.assign(A_Count, CheckBox{});
    lblfieldsA.assign(A_Count, std::string());
    for (int i = 0; i < A_Count; ++i)
        is_date_index_a(i) ? as_date_field(txtfieldsA[i]) : as_number_field(txtfieldsA[i]);
    // A currency difference may go either way; everything else is a positive amount.
    txtfieldsD.assign(D_Count, vTXT(ui_));
    lblfieldsD.assign(D_Count, std::string());
    for (int i = 0; i < D_Count; ++i)
        lblfieldsD[i] = caption_of(kSaleFields[i], EntrySide::Addition, year_, false);
    as_date_field(txtfieldsD[D_SaleDate]);
    as_number_field(txtfieldsD[D_SaleAmt]);
    as_number_field(txtfieldsD[D_SaleExp]);
    as_number_field(txtCalcCA);
    as_number_field(txtTotESA);
    as_number_field(txtAutoCalcDeprCL);

    for (int i = 0; i < A_Count; ++i)
        lblfieldsA[i] = caption_of(kAdditionFields[i], EntrySide::Addition, year_, false);
    chkfieldsO[O_ResValue].Caption = "Default (5%)";
    chkfieldsO[O_LifeYrs].Caption = "Default (As per Master)";
    chkfieldsO[O_RateFACL].Caption = "Default (As per Fixed Asset Group Master)";
    chkfieldsO[O_RateIT].Caption = "Default (As per Fixed Asset Group Master)";
    chkfieldsO[O_AddlDepRT].Caption = "Default (As per Fixed Asset Group Master)";
    chkfieldsO[O_AddlDepOn].Caption =
        "Additional Depreciation (Remaining Half from Addition in Previous F.Y. used for less than 180 days) "
        "on Rs.";
    chkfieldsA[A_ResValue].Caption = "Default (5% of Cost)";
    chkfieldsA[A_LifeYrs].Caption = "Default (As per Fixed Asset Group Master)";
    chkfieldsA[A_RateFACL].Caption = "Default (As per Fixed Asset Group Master)";
    chkfieldsA[A_RateIT].Caption = "Default (As per Fixed Asset Group Master)";
    chkfieldsA[A_AddlDepRT].Caption = "Tick If Additional Depreciation Applicable";
    for (int i = 0; i < O_Count; ++i) chkfieldsO[i].Enabled = !chkfieldsO[i].Caption.empty();
    for (int i = 0; i < A_Count; ++i) chkfieldsA[i].Enabled = !chkfieldsA[i].Caption.empty();
    chkTotESA.Caption = "Gross";
    chkAutoCalcDeprCL.Caption = "Auto Calculate Depreciation";
    chkPartDed.Caption = "Partial Deduction (Asset Still Held)";
    lblCalcCA = "For Calculation of Carrying Amount, Consider Depreciation Upto 31/03/";
    lblResValOfO = "Residual Value (5%) Of";
    cboRndAddRtAuto.List = IdTextList::parse(
        "#OLD;Auto Calculate (Formula[No Rounding Limit])|#NEW;Auto Calculate (Formula[Rounding Limit])");

    vsS.set_cols(3);
    vsS.set_fixed_rows(1);
    vsS.set_rows(1);
    vsS.set_heading(0, "", "From");
    vsS.set_heading(1, "", "To");
    vsS.set_heading(2, "", "Shift");
    vsS.set_col_combo_list(2, kShiftList);
    for (int c = 0; c < 3; ++c) vsS.set_col_editable(c, true);

    vsEditFA.set_cols(3);
    vsEditFA.set_fixed_rows(1);
    vsEditFA.set_rows(1);
    vsEditFA.set_heading(0, "", "IdFAGM");
    vsEditFA.set_heading(1, "", "Asset Group");
    vsEditFA.set_heading(2, "", "Depreciation");
    vsEditFA.set_col_hidden(0, true);
    vsEditFA.set_col_format(2, "###0.00");
    vsEditFA.set_col_alignment(2, Align::right);
    vsEditFA.set_col_editable(2, true);
    vsEditFA.set_col_width(1, 40);
    vsEditFA.set_col_width(2, 16);

    vsESA.set_cols(6);
    vsESA.set_fixed_rows(1);
    vsESA.set_rows(1);
    const char* esa[] = {"Particulars",         "Written Down Value", "Date of Deduction",
                         "Amount of Deduction", "Excess Deduction",   "Amount To be Adjusted"};
    for (int c = 0; c < 6; ++c) vsESA.set_heading(c, "", esa[c]);
    for (int c : {1, 3, 4, 5}) {
        vsESA.set_col_format(c, "###0.00");
        vsESA.set_col_alignment(c, Align::right);
    }
    vsESA.set_col_editable(5, true);
}

// Captions and lists that carry the year or the screen-wide options.
void frmNewFATR::refresh_common_texts() {
    lblfieldsO.assign(O_Count, std::string());
    for (int i = 0; i < O_Count; ++i)
        lblfieldsO[i] = caption_of(kOpeningFields[i], EntrySide::Opening, year_, written_down());
    const auto common = [](const std::string& id, const std::string& text, const std::string& option) {
        return id == option ? text + kCommon : text;
    };
    for (ComboBox* c : {&cboMODo, &cboMODa}) {
        const std::string keep = c->Id();
        c->List = IdTextList();
        c->List.add("", "(Common)");
        c->List.add("WDV", common("WDV", "WDV", options_.optMOD));
        c->List.add("SLM", common("SLM", "SLM", options_.optMOD));
        if (!c->select_id(keep)) c->ListIndex = 0;
    }
    const std::string keep = cboResValOfO.Id();
    cboResValOfO.List = IdTextList();
    cboResValOfO.List.add("", "(Common)");
    cboResValOfO.List.add("COST", common("COST", "Cost", options_.optResValOf));
    cboResValOfO.List.add("CA", common("CA", "Carrying Amount", options_.optResValOf));
    if (!cboResValOfO.select_id(keep)) cboResValOfO.ListIndex = 0;

    const std::string year_kept = cboCalcCA.Id();
    cboCalcCA.List = IdTextList();
    cboCalcCA.List.add("", " ");
    // The Companies Act, 2013 took over from 01/04/2014: the carrying amount may be
    // worked from any 31/03 from 2014 up to the one before this year.
    for (int y = 2014; y <= year_ - 1; ++y) cboCalcCA.List.add(std::to_string(y), std::to_string(y));
    if (!cboCalcCA.select_id(year_kept)) cboCalcCA.ListIndex = 0;
}

void frmNewFATR::show_rate_ticks() {
    const char* master = "Default (As per Fixed Asset Group Master)";
    chkfieldsO[O_RateFACL].Caption = rate_auto_O_ ? "Auto Calculated" : master;
    chkfieldsA[A_RateFACL].Caption = rate_auto_A_ ? "Auto Calculated" : master;
}

void frmNewFATR::clear_entry() {
    txtAssetGroup = {};
    txtPart.set_text("");
    for (auto& f : txtfieldsO) f.set_text("");
    for (auto& f : txtfieldsA) f.set_text("");
    for (auto& f : txtfieldsD) f.set_text("");
    for (int i = 0; i < O_Count; ++i) chkfieldsO[i].Value = chkfieldsO[i].Enabled && i != O_AddlDepOn;
    for (int i = 0; i < A_Count; ++i) chkfieldsA[i].Value = chkfieldsA[i].Enabled && i != A_AddlDepRT;
    cboCalcCA.ListIndex = 0;
    txtCalcCA.set_text("");
    cboMODo.ListIndex = 0;
    cboMODa.ListIndex = 0;
    cboResValOfO.ListIndex = 0;
    cboRndAddRtAuto.ListIndex = 0;
    optsWdvIT = WdvIT_Other;
    vsS.clear_rows();
    vsESA.clear_rows();
    chkTotESA.Value = false;
    txtTotESA.set_text("");
    chkAutoCalcDeprCL.Value = true;
    txtAutoCalcDeprCL.set_text("");
    chkPartDed.Value = false;
    lblBlockO = lblBlockA = lblNESD = lblRemLifeO = lblRemLifeA = txtRemLifeO = lblShiftDays = "";
    lblMiscAdjA = lblNetAmtA = "0.00";
    lblDaysDeprCL = "0 Days";
    edit_serial_ = 0;
    rate_auto_O_ = rate_auto_A_ = false;
    show_rate_ticks();
    FocusSide = 0;
    FocusIndex = -1;
}

bool frmNewFATR::SelectAssetGroup(long id) {
    bool ok = false;
    frame::guarded(comp_.log, kModule, "SelectAssetGroup", [&] {
        const auto* g = FindGroup(id);
        if (!g) return;
        txtAssetGroup = {g->SrNoFAGM, g->Part};
        apply_group_defaults();
        ok = true;
    });
    return ok;
}

void frmNewFATR::vsFAGM_Click(int row) {
    frame::guarded(comp_.log, kModule, "vsFAGM_Click", [&] {
        if (row < vsFAGM.fixed_rows() || row >= vsFAGM.rows()) return;
        if (vsFAGM.text_matrix(row, 11) == "M") {
            cmdAssetGroup_Click();
            return;
        }
        SelectAssetGroup(static_cast<long>(vsFAGM.value_matrix(row, 0)));
    });
}

void frmNewFATR::cmdAssetGroup_Click() {
    frame::guarded(comp_.log, kModule, "cmdAssetGroup_Click", [&] {
        if (OnAssetGroupMaster) OnAssetGroupMaster();
        ReloadAssetGroups();
    });
}

void frmNewFATR::ReloadAssetGroups() {
    frame::guarded(comp_.log, kModule, "ReloadAssetGroups", [&] {
        groups_ = store_->asset_groups();
        fill_group_picker();
        comp_.masters_changed = false;
        // A group renamed or removed in the master shows so in the grids and the filter.
        fill_filter();
        LoadRegister();
        if (txtAssetGroup.Id && !FindGroup(txtAssetGroup.Id)) txtAssetGroup = {};
        if (const auto* g = FindGroup(txtAssetGroup.Id)) txtAssetGroup.Text = g->Part;
    });
}

bool frmNewFATR::Form_Activate() {
    bool reloaded = false;
    frame::guarded(comp_.log, kModule, "Form_Activate", [&] {
        if (!store_) return;
        const auto same = [](const store::AssetGroupRow& a, const store::AssetGroupRow& b) {
            return a.SrNoFAGM == b.SrNoFAGM && a.Part == b.Part && a.BlockIdIT == b.BlockIdIT &&
                   a.RateIT == b.RateIT && a.AddlRateIT == b.AddlRateIT && a.BlockFA == b.BlockFA &&
                   a.RateFA == b.RateFA && a.BlockIdCL == b.BlockIdCL && a.LifeYrs == b.LifeYrs &&
                   a.RateSLM == b.RateSLM && a.RateWDV == b.RateWDV;
        };
        const auto now = store_->asset_groups();
        if (!comp_.masters_changed &&
            std::equal(now.begin(), now.end(), groups_.begin(), groups_.end(), same))
            return;
        ReloadAssetGroups();
        reloaded = true;
    });
    return reloaded;
}

// The group decides the block labels, NESD and the defaults of the ticked fields.
void frmNewFATR::apply_group_defaults() {
    const auto* g = FindGroup(txtAssetGroup.Id);
    if (!g) return;
    std::string it_block = kNA;
    for (const auto& b : it_blocks_)
        if (b.ID == g->BlockIdIT) it_block = b.Part;
    lblBlockO = lblBlockA = "Block : " + it_block;
    lblNESD = has_block(g->BlockIdCL) && store_->nesd_of(g->BlockIdCL) == "Y" ? "NESD" : "";
    // A group with a Companies-Act classification has its books rate worked out from the
    // life and the residual value; otherwise the group master's rate is proposed.
    rate_auto_A_ = has_block(g->BlockIdCL);
    if (cboCalcCA.Id().empty()) rate_auto_O_ = rate_auto_A_;
    show_rate_ticks();
    if (is_addition_mode())
        recalc_addition();
    else
        recalc_opening();
}

void frmNewFATR::show_opening(const store::OpeningRow& o) {
    const auto* g = FindGroup(o.IdFAGM);
    txtAssetGroup = {o.IdFAGM, g ? g->Part : std::string()};
    const auto opts = OpeningOpts::parse(o.OthOpts);
    txtPart.set_text(o.Part);
    txtfieldsO[O_PutDate].set_text(o.PutDate);
    txtfieldsO[O_CostWdv].set_text(format_mask(o.CostWdv, "###0.00"));
    txtfieldsO[O_OpDepr].set_text(format_mask(o.OpDepr, "###0.00"));
    txtfieldsO[O_ResValue].set_text(format_mask(o.ResValue, "###0.00"));
    txtfieldsO[O_LifeYrs].set_text(format_mask(o.LifeYrs, "###0"));
    txtfieldsO[O_RateFACL].set_text(rate_two_or_four_places(o.RateFACL));
    txtfieldsO[O_WdvIT].set_text(format_mask(o.WdvIT, "###0.00"));
    txtfieldsO[O_RateIT].set_text(rate_two_or_four_places(o.RateIT));
    txtfieldsO[O_AddlDepRT].set_text(rate_two_or_four_places(o.AddlDepRT));
    txtfieldsO[O_AddlDepOn].set_text(o.AddlDepOn != 0 ? format_mask(o.AddlDepOn, "###0.00") : "");
    chkfieldsO[O_ResValue].Value = opts.ResDefault;
    chkfieldsO[O_LifeYrs].Value = opts.LifeDefault;
    chkfieldsO[O_RateFACL].Value = opts.RateDefault;
    chkfieldsO[O_RateIT].Value = opts.RateITDefault;
    chkfieldsO[O_AddlDepRT].Value = opts.AddlRateDefault;
    chkfieldsO[O_AddlDepOn].Value = opts.AddlDepOn;
    cboCalcCA.select_id(o.YrCalcCA > 0 ? std::to_string(o.YrCalcCA) : std::string());
    txtCalcCA.set_text(o.YrCalcCA > 0 ? format_mask(o.DepCalcCA, "###0.00") : "");
    cboMODo.select_id(opts.MOD);
    cboResValOfO.select_id(opts.ResValOf);
    optsWdvIT = opts.WdvIT == "Y" ? WdvIT_NilWdv : opts.WdvIT == "N" ? WdvIT_NotExist : WdvIT_Other;
    chkTotESA.Value = opts.TotESA;
    for (const auto& r : store::unpack_rows(o.DetESA, kESASep)) {
        std::string line;
        for (std::size_t i = 0; i < 6; ++i) line += (i ? "\t" : "") + (i < r.size() ? r[i] : std::string());
        vsESA.add_item(line);
    }
    if (chkTotESA.Value) txtTotESA.set_text(format_mask(esa_total(), "###0.00"));
    for (const auto& r : store::unpack_rows(o.ShiftDet, ","))
        vsS.add_item(r.size() >= 3 ? r[0] + "\t" + r[1] + "\t" + r[2] : std::string());
    txtfieldsD[D_SaleDate].set_text(o.SaleDate);
    txtfieldsD[D_SaleAmt].set_text(o.SaleAmt != 0 ? format_mask(o.SaleAmt, "###0.00") : "");
    txtfieldsD[D_SaleExp].set_text(o.SaleExp != 0 ? format_mask(o.SaleExp, "###0.00") : "");
    chkAutoCalcDeprCL.Value = opts.AutoDepr;
    txtAutoCalcDeprCL.set_text(opts.AutoDepr ? "" : format_mask(o.DepFACL, "###0.00"));
    chkPartDed.Value = opts.PartDed;
    if (g) apply_group_defaults();
    recalc_opening();
}

void frmNewFATR::show_addition(const store::AdditionRow& a) {
    const auto* g = FindGroup(a.IdFAGM);
    txtAssetGroup = {a.IdFAGM, g ? g->Part : std::string()};
    const auto opts = AdditionOpts::parse(a.OthOpts);
    txtPart.set_text(a.Part);
    txtfieldsA[A_PutDate].set_text(a.PutDate);
    txtfieldsA[A_AccDate].set_text(a.AccDate);
    txtfieldsA[A_PurAmt].set_text(format_mask(a.PurAmt, "###0.00"));
    txtfieldsA[A_ExciseCr].set_text(format_mask(a.ExciseCr, "###0.00"));
    txtfieldsA[A_CurrDiff].set_text(format_mask(a.CurrDiff, "###0.00"));
    txtfieldsA[A_Subsidy].set_text(format_mask(a.Subsidy, "###0.00"));
    txtfieldsA[A_ResValue].set_text(format_mask(a.ResValue, "###0.00"));
    txtfieldsA[A_LifeYrs].set_text(format_mask(a.LifeYrs, "###0"));
    txtfieldsA[A_RateFACL].set_text(rate_two_or_four_places(a.RateFACL));
    txtfieldsA[A_RateIT].set_text(rate_two_or_four_places(a.RateIT));
    txtfieldsA[A_AddlDepRT].set_text(rate_two_or_four_places(a.AddlDepRT));
    chkfieldsA[A_ResValue].Value = opts.ResDefault;
    chkfieldsA[A_LifeYrs].Value = opts.LifeDefault;
    chkfieldsA[A_RateFACL].Value = opts.RateDefault;
    chkfieldsA[A_RateIT].Value = opts.RateITDefault;
    chkfieldsA[A_AddlDepRT].Value = opts.AddlDep;
    cboMODa.select_id(opts.MOD);
    cboRndAddRtAuto.select_id(opts.RndAddRtAuto);
    for (const auto& r : store::unpack_rows(a.ShiftDet, ","))
        vsS.add_item(r.size() >= 3 ? r[0] + "\t" + r[1] + "\t" + r[2] : std::string());
    txtfieldsD[D_SaleDate].set_text(a.SaleDate);
    txtfieldsD[D_SaleAmt].set_text(a.SaleAmt != 0 ? format_mask(a.SaleAmt, "###0.00") : "");
    txtfieldsD[D_SaleExp].set_text(a.SaleExp != 0 ? format_mask(a.SaleExp, "###0.00") : "");
    chkAutoCalcDeprCL.Value = opts.AutoDepr;
    txtAutoCalcDeprCL.set_text(opts.AutoDepr ? "" : format_mask(a.DepFACL, "###0.00"));
    chkPartDed.Value = opts.PartDed;
    if (g) apply_group_defaults();
    recalc_addition();
}

// The opening side's live figures: ticked fields take their defaults, the rate is
// worked out when it is auto-calculated, the remaining life is shown.
void frmNewFATR::recalc_opening() {
    const auto* g = FindGroup(txtAssetGroup.Id);
    const bool ca_year = !cboCalcCA.Id().empty();
    txtCalcCA.set_text(ca_year ? txtCalcCA.text() : "");
    const std::string method = effective_method(cboMODo.Id(), options_);
    const auto basis = effective_basis(cboResValOfO.Id(), options_);
    const double cost = number_of(txtfieldsO[O_CostWdv].text());
    const double base =
        basis == depreciation::ResidualBasis::CarryingAmount ? cost - number_of(txtCalcCA.text()) : cost;

    if (g && chkfieldsO[O_LifeYrs].Value) txtfieldsO[O_LifeYrs].set_text(format_mask(g->LifeYrs, "###0"));
    if (chkfieldsO[O_ResValue].Value)
        txtfieldsO[O_ResValue].set_text(format_mask(depreciation::residual_value(base), "###0.00"));
    const double life = number_of(txtfieldsO[O_LifeYrs].text());
    const auto put = Date::parse(txtfieldsO[O_PutDate].text());
    // An asset put to use before the year is written off over what is left of its life.
    double remaining = life;
    if (put && *put < fy_first(year_)) {
        remaining = frame::GETREMLIFEYRS(comp_.log, packed_date(*put), year_ - 1, options_.rem_life_mode(),
                                         options_.rem_life_decimals(), life);
    }
    lblRemLifeO = depreciation::remaining_life_text(year_, life);
    txtRemLifeO = format_mask(remaining, options_.rem_life_decimals() > 0 ? "###0.00" : "###0");

    if (chkfieldsO[O_RateFACL].Value) {
        if (rate_auto_O_) {
            if (const auto r =
                    auto_rate_of(base, number_of(txtfieldsO[O_ResValue].text()), remaining, method, basis))
                txtfieldsO[O_RateFACL].set_text(r->text);
        } else if (g) {
            txtfieldsO[O_RateFACL].set_text(rate_two_or_four_places(master_rate(*g, method)));
        }
    }
    if (g && chkfieldsO[O_RateIT].Value) txtfieldsO[O_RateIT].set_text(rate_two_or_four_places(g->RateIT));
    if (g && chkfieldsO[O_AddlDepRT].Value)
        txtfieldsO[O_AddlDepRT].set_text(rate_two_or_four_places(g->AddlRateIT));
    txtfieldsO[O_AddlDepOn].set_text(chkfieldsO[O_AddlDepOn].Value ? txtfieldsO[O_AddlDepOn].text() : "");
    update_days();
}

void frmNewFATR::recalc_addition() {
    const auto* g = FindGroup(txtAssetGroup.Id);
    const double cost = number_of(txtfieldsA[A_PurAmt].text());
    const double misc =
        misc_adjustment(number_of(txtfieldsA[A_ExciseCr].text()), number_of(txtfieldsA[A_CurrDiff].text()),
                        number_of(txtfieldsA[A_Subsidy].text()));
    const double net = cost + misc;
    lblMiscAdjA = format_mask(misc, "###0.00");
    lblNetAmtA = format_mask(net, "###0.00");
    const std::string method = effective_method(cboMODa.Id(), options_);
    const auto basis = options_.basis();

    if (g && chkfieldsA[A_LifeYrs].Value) txtfieldsA[A_LifeYrs].set_text(format_mask(g->LifeYrs, "###0"));
    if (chkfieldsA[A_ResValue].Value)
        txtfieldsA[A_ResValue].set_text(format_mask(depreciation::residual_value(net), "###0.00"));
    const double life = number_of(txtfieldsA[A_LifeYrs].text());
    lblRemLifeA = depreciation::remaining_life_text(year_, life);
    if (chkfieldsA[A_RateFACL].Value) {
        if (rate_auto_A_) {
            if (const auto r =
                    auto_rate_of(net, number_of(txtfieldsA[A_ResValue].text()), life, method, basis))
                txtfieldsA[A_RateFACL].set_text(r->text);
        } else if (g) {
            txtfieldsA[A_RateFACL].set_text(rate_two_or_four_places(master_rate(*g, method)));
        }
    }
    if (g && chkfieldsA[A_RateIT].Value) txtfieldsA[A_RateIT].set_text(rate_two_or_four_places(g->RateIT));
    if (g)
        txtfieldsA[A_AddlDepRT].set_text(
            rate_two_or_four_places(chkfieldsA[A_AddlDepRT].Value ? g->AddlRateIT : 0));
    update_days();
}

void frmNewFATR::update_days() {
    const bool opening = is_opening_mode();
    const auto put =
        depreciation::Date::parse(opening ? txtfieldsO[O_PutDate].text() : txtfieldsA[A_PutDate].text());
    const auto sale = depreciation::Date::parse(txtfieldsD[D_SaleDate].text());
    std::optional<depreciation::Date> first = put;
    if (opening && !first) first = depreciation::fy_first_day(year_);
    const int days = depreciation::depreciation_days(year_, first, sale);
    lblDaysDeprCL = std::to_string(days) + (days == 1 ? " Day" : " Days");
}

void frmNewFATR::txtfieldsO_Change(int index) {
    frame::guarded(comp_.log, kModule, "txtfieldsO_Change", [&] {
        if (index >= 0 && index < O_Count) recalc_opening();
    });
}

void frmNewFATR::txtfieldsA_Change(int index) {
    frame::guarded(comp_.log, kModule, "txtfieldsA_Change", [&] {
        if (index >= 0 && index < A_Count) recalc_addition();
    });
}

// The leave-field rules of the entry; an accepted field is shown in its format.
bool frmNewFATR::field_check(vTXT& field, EntryField which, EntrySide side, const char* mask) {
    if (const auto f = leave_field_finding(which, side, field.text(), year_, written_down())) {
        ui_.info(f->message);
        return false;
    }
    if (field.text().empty()) return true;
    if (which == EntryField::PutDate || which == EntryField::AccDate || which == EntryField::SaleDate)
        field.set_text(Date::parse(field.text())->text());
    else
        field.set_text(shown(*parse_number(field.text()), mask));
    return true;
}

bool frmNewFATR::txtfieldsO_Validate(int index) {
    bool ok = true;
    frame::guarded(comp_.log, kModule, "txtfieldsO_Validate", [&] {
        if (index < 0 || index >= O_Count) return;
        ok = field_check(txtfieldsO[index], kOpeningFields[index], EntrySide::Opening, mask_of_o(index));
        if (ok) recalc_opening();
    });
    return ok;
}

bool frmNewFATR::txtfieldsA_Validate(int index) {
    bool ok = true;
    frame::guarded(comp_.log, kModule, "txtfieldsA_Validate", [&] {
        if (index < 0 || index >= A_Count) return;
        ok = field_check(txtfieldsA[index], kAdditionFields[index], EntrySide::Addition, mask_of_a(index));
        if (ok) recalc_addition();
    });
    return ok;
}

bool frmNewFATR::txtfieldsD_Validate(int index) {
    bool ok = true;
    frame::guarded(comp_.log, kModule, "txtfieldsD_Validate", [&] {
        if (index < 0 || index >= D_Count) return;
        ok = field_check(txtfieldsD[index], kSaleFields[index], EntrySide::Addition, "###0.00");
        if (ok) update_days();
    });
    return ok;
}

void frmNewFATR::chkfieldsO_Click(int index) {
    frame::guarded(comp_.log, kModule, "chkfieldsO_Click", [&] {
        if (index < 0 || index >= O_Count || !chkfieldsO[index].Enabled) return;
        chkfieldsO[index].Value = !chkfieldsO[index].Value;
        recalc_opening();
    });
}

void frmNewFATR::chkfieldsA_Click(int index) {
    frame::guarded(comp_.log, kModule, "chkfieldsA_Click", [&] {
        if (index < 0 || index >= A_Count || !chkfieldsA[index].Enabled) return;
        chkfieldsA[index].Value = !chkfieldsA[index].Value;
        recalc_addition();
    });
}

void frmNewFATR::cboCalcCA_Click(int index) {
    frame::guarded(comp_.log, kModule, "cboCalcCA_Click", [&] {
        if (index < 0 || index >= static_cast<int>(cboCalcCA.List.size())) return;
        cboCalcCA.ListIndex = index;
        const bool chosen = !cboCalcCA.Id().empty();
        // With a year chosen the rate follows from the carrying amount and the life.
        chkfieldsO[O_LifeYrs].Caption = "Default (As per Master)";
        lblfieldsO[O_LifeYrs] = "Useful Life (Years)";
        if (chosen) {
            rate_auto_O_ = true;
            show_rate_ticks();
        } else {
            apply_group_defaults();
        }
        txtCalcCA.set_text(chosen ? txtCalcCA.text() : "");
        recalc_opening();
    });
}

void frmNewFATR::cboMODo_Click(int index) {
    frame::guarded(comp_.log, kModule, "cboMODo_Click", [&] {
        if (index < 0 || index >= static_cast<int>(cboMODo.List.size())) return;
        cboMODo.ListIndex = index;
        recalc_opening();
    });
}

void frmNewFATR::cboResValOfO_Click(int index) {
    frame::guarded(comp_.log, kModule, "cboResValOfO_Click", [&] {
        if (index < 0 || index >= static_cast<int>(cboResValOfO.List.size())) return;
        cboResValOfO.ListIndex = index;
        recalc_opening();
    });
}

void frmNewFATR::optsWdvIT_Click(int choice) {
    frame::guarded(comp_.log, kModule, "optsWdvIT_Click", [&] {
        if (choice < WdvIT_Other || choice > WdvIT_NilWdv) return;
        optsWdvIT = choice;
    });
}

void frmNewFATR::cboMODa_Click(int index) {
    frame::guarded(comp_.log, kModule, "cboMODa_Click", [&] {
        if (index < 0 || index >= static_cast<int>(cboMODa.List.size())) return;
        cboMODa.ListIndex = index;
        recalc_addition();
    });
}

void frmNewFATR::cboRndAddRtAuto_Click(int index) {
    frame::guarded(comp_.log, kModule, "cboRndAddRtAuto_Click", [&] {
        if (index < 0 || index >= static_cast<int>(cboRndAddRtAuto.List.size())) return;
        cboRndAddRtAuto.ListIndex = index;
        recalc_addition();
    });
}

void frmNewFATR::chkPartDed_Click() {
    frame::guarded(comp_.log, kModule, "chkPartDed_Click", [&] { chkPartDed.Value = !chkPartDed.Value; });
}

void frmNewFATR::chkAutoCalcDeprCL_Click() {
    frame::guarded(comp_.log, kModule, "chkAutoCalcDeprCL_Click", [&] {
        chkAutoCalcDeprCL.Value = !chkAutoCalcDeprCL.Value;
        if (chkAutoCalcDeprCL.Value) txtAutoCalcDeprCL.set_text("");
    });
}

}  // namespace brenlow::reg
