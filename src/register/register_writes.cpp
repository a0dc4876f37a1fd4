// The entry frame turned into a register row and written: a new entry takes the
// next serial of the client under the table lock, an edited one is rewritten in
// place.

#include "controls/number_format.h"
#include "controls/vb_date.h"
#include "register/frm_new_fatr.h"
#include "register/register_entry_math.h"
#include "register/register_text.h"

namespace brenlow::reg {

std::string frmNewFATR::shift_det() const {
    std::vector<std::vector<std::string>> rows;
    for (int r = vsS.fixed_rows(); r < vsS.rows(); ++r)
        rows.push_back({vsS.text_matrix(r, 0), vsS.text_matrix(r, 1), vsS.text_matrix(r, 2)});
    return store::pack_rows(rows, ",");
}

std::string frmNewFATR::det_esa() const {
    std::vector<std::vector<std::string>> rows;
    if (chkTotESA.Value) {
        // A gross adjustment is one row holding only the amount to be adjusted.
        rows.push_back({"(Gross)", "", "", "", "", plain_number(number_of(txtTotESA.text()))});
    } else {
        for (int r = vsESA.fixed_rows(); r < vsESA.rows(); ++r) {
            std::vector<std::string> row;
            for (int c = 0; c < 6; ++c) row.push_back(vsESA.text_matrix(r, c));
            rows.push_back(std::move(row));
        }
    }
    return store::pack_rows(rows, kESASep);
}

store::OpeningRow frmNewFATR::opening_row() const {
    const auto& base = *comp_.base;
    store::OpeningRow o;
    o.Code_No = code_;
    o.SrNoFATR = edit_serial_;
    o.IdFAGM = txtAssetGroup.Id;
    o.Part = txtPart.text();
    o.CostWdv = number_of(txtfieldsO[O_CostWdv].text());
    o.OpDepr = number_of(txtfieldsO[O_OpDepr].text());
    o.YrCalcCA = cboCalcCA.Id().empty() ? 0 : std::stol(cboCalcCA.Id());
    o.DepCalcCA = o.YrCalcCA ? number_of(txtCalcCA.text()) : 0;
    o.ResValue = number_of(txtfieldsO[O_ResValue].text());
    o.LifeYrs = number_of(txtfieldsO[O_LifeYrs].text());
    o.RateFACL = number_of(txtfieldsO[O_RateFACL].text());
    o.WdvIT = number_of(txtfieldsO[O_WdvIT].text());
    o.DetESA = det_esa();
    o.RateIT = number_of(txtfieldsO[O_RateIT].text());
    o.AddlDepRT = number_of(txtfieldsO[O_AddlDepRT].text());
    if (!txtfieldsD[D_SaleDate].text().empty())
        o.SaleDate = base.ConvertToSave(txtfieldsD[D_SaleDate].text());
    o.SaleAmt = number_of(txtfieldsD[D_SaleAmt].text());
    o.SaleExp = number_of(txtfieldsD[D_SaleExp].text());
    o.ShiftDet = shift_det();
    o.DepFACL = chkAutoCalcDeprCL.Value ? 0 : number_of(txtAutoCalcDeprCL.text());
    OpeningOpts opts;
    opts.CalcCA = cboCalcCA.Id();
    opts.ResValOf = cboResValOfO.Id();
    opts.MOD = cboMODo.Id();
    if (optsWdvIT == WdvIT_NilWdv) opts.WdvIT = "Y";
    if (optsWdvIT == WdvIT_NotExist) opts.WdvIT = "N";
    opts.ResDefault = chkfieldsO[O_ResValue].Value;
    opts.LifeDefault = chkfieldsO[O_LifeYrs].Value;
    opts.RateDefault = chkfieldsO[O_RateFACL].Value;
    opts.RateITDefault = chkfieldsO[O_RateIT].Value;
    opts.AddlRateDefault = chkfieldsO[O_AddlDepRT].Value;
    opts.AutoDepr = chkAutoCalcDeprCL.Value;
    opts.AddlDepOn = chkfieldsO[O_AddlDepOn].Value;
    opts.TotESA = chkTotESA.Value;
    opts.PartDed = chkPartDed.Value;
    o.OthOpts = opts.compose();
    const auto put = Date::parse(txtfieldsO[O_PutDate].text());
    o.PutDate = put ? put->text() : "";
    o.AddlDepOn = chkfieldsO[O_AddlDepOn].Value ? number_of(txtfieldsO[O_AddlDepOn].text()) : 0;
    return o;
}

store::AdditionRow frmNewFATR::addition_row() const {
    const auto& base = *comp_.base;
    store::AdditionRow a;
    a.Code_No = code_;
    a.SrNoFATR = edit_serial_;
    a.IdFAGM = txtAssetGroup.Id;
    a.Part = txtPart.text();
    const auto put = Date::parse(txtfieldsA[A_PutDate].text());
    const auto acc = Date::parse(txtfieldsA[A_AccDate].text());
    a.PutDate = put ? put->text() : "";
    a.AccDate = acc ? acc->text() : "";
    a.PurAmt = number_of(txtfieldsA[A_PurAmt].text());
    a.ExciseCr = number_of(txtfieldsA[A_ExciseCr].text());
    a.CurrDiff = number_of(txtfieldsA[A_CurrDiff].text());
    a.Subsidy = number_of(txtfieldsA[A_Subsidy].text());
    a.ResValue = number_of(txtfieldsA[A_ResValue].text());
    a.LifeYrs = number_of(txtfieldsA[A_LifeYrs].text());
    a.RateFACL = number_of(txtfieldsA[A_RateFACL].text());
    a.RateIT = number_of(txtfieldsA[A_RateIT].text());
    a.AddlDepRT = number_of(txtfieldsA[A_AddlDepRT].text());
    if (!txtfieldsD[D_SaleDate].text().empty())
        a.SaleDate = base.ConvertToSave(txtfieldsD[D_SaleDate].text());
    a.SaleAmt = number_of(txtfieldsD[D_SaleAmt].text());
    a.SaleExp = number_of(txtfieldsD[D_SaleExp].text());
    a.ShiftDet = shift_det();
    a.DepFACL = chkAutoCalcDeprCL.Value ? 0 : number_of(txtAutoCalcDeprCL.text());
    AdditionOpts opts;
    opts.MOD = cboMODa.Id();
    opts.RndAddRtAuto = cboRndAddRtAuto.Id().empty() ? "OLD" : cboRndAddRtAuto.Id();
    opts.ResDefault = chkfieldsA[A_ResValue].Value;
    opts.LifeDefault = chkfieldsA[A_LifeYrs].Value;
    opts.RateDefault = chkfieldsA[A_RateFACL].Value;
    opts.RateITDefault = chkfieldsA[A_RateIT].Value;
    opts.AddlDep = chkfieldsA[A_AddlDepRT].Value;
    opts.AutoDepr = chkAutoCalcDeprCL.Value;
    opts.PartDed = chkPartDed.Value;
    a.OthOpts = opts.compose();
    return a;
}

void frmNewFATR::write_entry() {
    register_changed();
    if (Mode_ == EntryMode::ADDO)
        store_->insert_opening(opening_row());
    else if (Mode_ == EntryMode::EDITO)
        store_->update_opening(opening_row());
    else if (Mode_ == EntryMode::ADDA)
        store_->insert_addition(addition_row());
    else if (Mode_ == EntryMode::EDITA)
        store_->update_addition(addition_row());
}

}  // namespace brenlow::reg
