// cmdUpdate: the checks of an entry, in their fixed order. The first that fails
// shows its message, sends the person back to its field, and nothing is written;
// the "Continue ?" questions stop on No.

#include "controls/number_format.h"
#include "controls/vb_date.h"
#include "depreciation/companies_act_rate.h"
#include "register/frm_new_fatr.h"
#include "register/register_entry_math.h"
#include "register/register_text.h"

namespace brenlow::reg {
namespace {

constexpr const char* kModule = "frmNewFATR";
constexpr const char* kContinue = "\n\nContinue ?";

}  // namespace

bool frmNewFATR::cmdUpdate_Click() {
    bool done = false;
    frame::guarded(comp_.log, kModule, "cmdUpdate_Click", [&] {
        if (!is_opening_mode() && !is_addition_mode()) return;
        if (!checks_pass()) return;
        write_entry();
        Mode_.clear();
        edit_serial_ = 0;
        famEditO_Visible = famEditA_Visible = false;
        fill_filter();
        LoadRegister();
        done = true;
    });
    return done;
}

bool frmNewFATR::checks_pass() {
    const bool opening = is_opening_mode();
    const std::string first = std::to_string(year_ - 1), last = std::to_string(year_);

    // 1, 2
    if (txtAssetGroup.Id == 0 || !FindGroup(txtAssetGroup.Id)) {
        ui_.info("Please specify 'Asset Group' !");
        focus('G', 0);
        return false;
    }
    if (txtPart.text().empty()) {
        ui_.info("Please specify 'Particulars' !");
        focus('P', 0);
        return false;
    }
    // 3: an opening asset was held at the start of the year.
    if (opening) {
        const auto& f = txtfieldsO[O_PutDate];
        const auto d = Date::parse(f.text());
        if ((!f.text().empty() && !d) || (d && *d > fy_first(year_))) {
            ui_.info("'" + lblfieldsO[O_PutDate] + "' should be on or before 01/04/" + first + " !");
            focus('O', O_PutDate);
            return false;
        }
    }
    // 4, 5
    if (!check_numbers() || !check_limits()) return false;
    // 6, 7, 8
    if (opening && !check_calc_ca()) return false;
    if (!check_residual()) return false;
    report_auto_rate();
    if (opening) {
        // 9: what is set against this asset cannot exceed its written down value.
        const double wdv = number_of(txtfieldsO[O_WdvIT].text());
        const double adjusted = chkTotESA.Value ? number_of(txtTotESA.text()) : esa_total();
        if (adjusted > wdv) {
            ui_.info("Amount can not be adjusted more than Opening Written Down Value i.e. '" +
                     format_mask(wdv, "###0.00") + "' !");
            focus('O', O_WdvIT);
            return false;
        }
        // 10
        if (optsWdvIT == WdvIT_NilWdv && wdv > 0) {
            ui_.info("Option 'Asset Exists but WDV is NIL' can not be selected if Written Down Value > 0 !");
            focus('O', O_WdvIT);
            return false;
        }
        // 11
        if (chkfieldsO[O_AddlDepOn].Value) {
            const auto amount = parse_number(txtfieldsO[O_AddlDepOn].text());
            if (!amount || *amount < 0) {
                ui_.info("Please specify valid 'Amount' !");
                focus('O', O_AddlDepOn);
                return false;
            }
            if (*amount > 0)
                ui_.info("Additional Depreciation (Remaining Half from Addition in Previous F.Y. used for less than "
                         "180 days) will not be calculated ! Only available for Input as Clarification is required "
                         "from ITD for the applicability for A.Y. 2016-17 !");
        }
    }
    // 12
    if (!opening && !check_addition_dates()) return false;
    // 13, 14, 15
    return check_sale();
}

// 4: the amounts, lives and rates that are typed must be numbers; the cost is required.
bool frmNewFATR::check_numbers() {
    const auto bad = [&](const std::string& caption, char side, int index) {
        ui_.info("Please specify valid '" + caption + "' !");
        focus(side, index);
        return false;
    };
    const auto valid = [](const vTXT& f, bool required, bool may_be_negative) {
        if (f.text().empty()) return !required;
        const auto v = parse_number(f.text());
        return v && (may_be_negative || *v >= 0);
    };
    if (is_opening_mode()) {
        for (int i = O_CostWdv; i < O_Count; ++i) {
            if (i == O_AddlDepOn) continue;  // its own check comes later
            if (!valid(txtfieldsO[i], i == O_CostWdv, false)) return bad(lblfieldsO[i], 'O', i);
        }
        if (!cboCalcCA.Id().empty() && !valid(txtCalcCA, false, false))
            return bad("Depreciation Upto 31/03/" + cboCalcCA.Id(), 'C', 0);
    } else {
        for (int i = A_PurAmt; i < A_Count; ++i)
            if (!valid(txtfieldsA[i], i == A_PurAmt, i == A_CurrDiff)) return bad(lblfieldsA[i], 'A', i);
    }
    if (!valid(txtfieldsD[D_SaleAmt], false, false)) return bad(lblfieldsD[D_SaleAmt], 'D', D_SaleAmt);
    if (!valid(txtfieldsD[D_SaleExp], false, false)) return bad(lblfieldsD[D_SaleExp], 'D', D_SaleExp);
    if (!chkAutoCalcDeprCL.Value && !valid(txtAutoCalcDeprCL, true, false)) return bad("Depreciation", 'X', 0);
    return true;
}

// 5: a part of an amount cannot be larger than the amount.
bool frmNewFATR::check_limits() {
    const auto over = [&](const std::string& caption, const std::string& other, double limit, char side, int index) {
        ui_.info("'" + caption + "' should be less than or equal to '" + other + "' i.e. Rs. " +
                 format_mask(limit, "###0.00") + " !");
        focus(side, index);
        return false;
    };
    if (is_opening_mode()) {
        const double cost = number_of(txtfieldsO[O_CostWdv].text());
        const std::string& cost_caption = lblfieldsO[O_CostWdv];
        if (number_of(txtfieldsO[O_OpDepr].text()) > cost)
            return over(lblfieldsO[O_OpDepr], cost_caption, cost, 'O', O_OpDepr);
        if (number_of(txtCalcCA.text()) > cost)
            return over("Depreciation Upto 31/03/" + cboCalcCA.Id(), cost_caption, cost, 'C', 0);
        if (number_of(txtfieldsO[O_ResValue].text()) > cost)
            return over(lblfieldsO[O_ResValue], cost_caption, cost, 'O', O_ResValue);
    } else {
        const double cost = number_of(txtfieldsA[A_PurAmt].text());
        const std::string& cost_caption = lblfieldsA[A_PurAmt];
        for (int i : {A_ExciseCr, A_Subsidy})
            if (number_of(txtfieldsA[i].text()) > cost) return over(lblfieldsA[i], cost_caption, cost, 'A', i);
        const double net = number_of(lblNetAmtA);
        if (number_of(txtfieldsA[A_ResValue].text()) > net)
            return over(lblfieldsA[A_ResValue], "Net Amount", net, 'A', A_ResValue);
    }
    return true;
}

// 6: the year whose carrying amount is taken cannot come before the asset did.
bool frmNewFATR::check_calc_ca() {
    const auto put = Date::parse(txtfieldsO[O_PutDate].text());
    if (!put) return true;
    const std::string chosen = cboCalcCA.Id();
    if (!chosen.empty()) {
        const int y = std::stoi(chosen);
        if (Date{y, 4, 1} < *put) {
            ui_.info("'" + lblCalcCA + "' Year [" + chosen + "] should not be prior to Date of Put to Use '" +
                     put->text() + "' !");
            focus('C', 0);
            return false;
        }
    } else if (*put < Date{2014, 4, 1}) {
        if (!ui_.ask_yes_no("'" + lblCalcCA + "' Year should be selected as Date of Put to Use '" + put->text() +
                                "' is prior to '01/04/2014' !" + kContinue,
                            MsgIcon::question, false)) {
            focus('C', 0);
            return false;
        }
    }
    return true;
}

// 7: more than 5% of the basis as residual value is asked about.
bool frmNewFATR::check_residual() {
    double base = 0, residual = 0;
    if (is_opening_mode()) {
        const double cost = number_of(txtfieldsO[O_CostWdv].text());
        base = effective_basis(cboResValOfO.Id(), options_) == depreciation::ResidualBasis::CarryingAmount
                   ? cost - number_of(txtCalcCA.text())
                   : cost;
        residual = number_of(txtfieldsO[O_ResValue].text());
    } else {
        base = number_of(lblNetAmtA);
        residual = number_of(txtfieldsA[A_ResValue].text());
    }
    const double five = depreciation::residual_value(base);
    if (mask_value(residual, "###0.00") <= mask_value(five, "###0.00")) return true;
    if (ui_.ask_yes_no("Residual Value is more than 5% of Cost i.e. Rs. " + format_mask(five, "###0") + " !" + kContinue))
        return true;
    focus(is_opening_mode() ? 'O' : 'A', is_opening_mode() ? int(O_ResValue) : int(A_ResValue));
    return false;
}

// 8: the rate worked out is shown before it is saved.
void frmNewFATR::report_auto_rate() {
    const bool opening = is_opening_mode();
    const CheckBox& tick = opening ? chkfieldsO[O_RateFACL] : chkfieldsA[A_RateFACL];
    if (!tick.Value || tick.Caption != "Auto Calculated") return;
    if (opening) recalc_opening();
    else recalc_addition();
    const std::string rate = opening ? txtfieldsO[O_RateFACL].text() : txtfieldsA[A_RateFACL].text();
    if (!rate.empty()) ui_.info("Auto Calculated Rate is " + rate + "% !");
}

// 12: an addition's dates lie in the year; a later date of put to use is asked about.
bool frmNewFATR::check_addition_dates() {
    const std::string first = std::to_string(year_ - 1), last = std::to_string(year_);
    const std::string& put_caption = lblfieldsA[A_PutDate];
    const auto& put_text = txtfieldsA[A_PutDate].text();
    const auto put = Date::parse(put_text);
    if (put_text.empty()) {
        if (!ui_.ask_yes_no("'" + put_caption + "' is not provided. No Depreciation will be calculated !" + kContinue)) {
            focus('A', A_PutDate);
            return false;
        }
    } else if (!put || *put < fy_first(year_)) {
        ui_.info("'" + put_caption + "' should be on or after 01/04/" + first + " !");
        focus('A', A_PutDate);
        return false;
    } else if (*put > fy_last(year_)) {
        if (!ui_.ask_yes_no("'" + put_caption + "' should be on or before 31/03/" + last + " !" + kContinue)) {
            focus('A', A_PutDate);
            return false;
        }
    }
    const auto& acc_text = txtfieldsA[A_AccDate].text();
    if (!acc_text.empty()) {
        const auto acc = Date::parse(acc_text);
        if (!acc || *acc < fy_first(year_) || *acc > fy_last(year_)) {
            ui_.info("'" + lblfieldsA[A_AccDate] + "' should be between 01/04/" + first + " and 31/03/" + last + " !");
            focus('A', A_AccDate);
            return false;
        }
    }
    return true;
}

// 13, 14, 15: the sale or deduction.
bool frmNewFATR::check_sale() {
    const std::string first = std::to_string(year_ - 1), last = std::to_string(year_);
    const auto& date_text = txtfieldsD[D_SaleDate].text();
    const bool given = !date_text.empty() || number_of(txtfieldsD[D_SaleAmt].text()) != 0 ||
                       number_of(txtfieldsD[D_SaleExp].text()) != 0;
    if (is_opening_mode() && given && optsWdvIT == WdvIT_NotExist) {
        ui_.info("Opted for 'Asset does not Exist', Can't show Sale/Deduction !");
        focus('D', D_SaleDate);
        return false;
    }
    if (!given) return true;
    const auto sale = Date::parse(date_text);
    if (!sale || *sale < fy_first(year_) || *sale > fy_last(year_)) {
        ui_.info("Please specify valid '" + lblfieldsD[D_SaleDate] + "' between 01/04/" + first + " and 31/03/" +
                 last + " !");
        focus('D', D_SaleDate);
        return false;
    }
    if (is_addition_mode()) {
        const auto put = Date::parse(txtfieldsA[A_PutDate].text());
        if (!put) {
            ui_.info("Date of Sale/Deduction should not provided if Date of Put to Use of New Addition is not provided !");
            focus('D', D_SaleDate);
            return false;
        }
        if (*sale < *put) {
            ui_.info("Date of Sale/Deduction should be on or after Date of Put to Use of New Addition i.e. " + put->text());
            focus('D', D_SaleDate);
            return false;
        }
    }
    return true;
}

}  // namespace brenlow::reg
