#pragma once
// The register's screen-wide options of a client and year (the NewFAMI row) and the
// per-entry options packed into OthOpts. Each is a "|"-joined list of fields in a
// fixed order; a short or missing list reads as the defaults.

#include <string>
#include <string_view>

#include "depreciation/companies_act_rate.h"

namespace brenlow::reg {

// NewFAMI.MiscInf, eleven fields in this order.
struct RegisterOptions {
    std::string optMOD = "WDV";        // method of depreciation: "WDV" / "SLM"
    std::string optFASCHBOOKS = "N";   // fixed-asset schedule as per books: "Y" / "N"
    std::string optRndFA = "N";        // books depreciation to whole rupees: "Y" / "N"
    std::string optRndIT = "Y";        // income-tax depreciation to whole rupees: "Y" / "N"
    int cboAddlDep1 = 0;               // additional depreciation, first choice: 0 / 1
    int cboAddlDep2 = 0;               // additional depreciation, second choice: 0 / 1
    std::string optResValOf = "COST";  // residual value of: "COST" / "CA"
    int cboDepAdjRemLife0 = 0;         // nil remaining life: 0 profit and loss, 1 retained earnings
    std::string optSetupCL = "W";      // Companies-Act set-up: "W" / "S"
    std::string chkSetupCL = "N";      // its tick: "Y" / "N"
    int cboRndRemLife = 0;             // rounding of remaining life, 0 to 3

    static RegisterOptions parse(std::string_view misc_inf);
    std::string compose() const;

    depreciation::ResidualBasis basis() const {
        return optResValOf == "CA" ? depreciation::ResidualBasis::CarryingAmount
                                   : depreciation::ResidualBasis::Cost;
    }
    // GETREMLIFEYRS mode and decimals of the cboRndRemLife choice.
    int rem_life_mode() const;
    int rem_life_decimals() const;
};

// The suite's client statuses: 1 and 2 keep partners' or proprietors' capital, 3 and 4
// are companies, whose books follow the Companies Act.
inline bool is_company(int status) {
    return status == 3 || status == 4;
}

// The cboRndRemLife list, in index order.
const char* rem_life_rounding_text(int index);
inline constexpr int kRemLifeRoundings = 4;

// OthOpts of an opening entry. The first four fields are the cboCalcCA year (empty
// when none), the residual basis ("" follows the common option, "COST", "CA"), the
// method ("", "WDV", "SLM") and the optsWdvIT choice ("" other, "Y" exists with
// nil WDV, "N" does not exist). Then the ticks of the entry frame, "Y" / "N", so an
// entry reopens as it was saved.
struct OpeningOpts {
    std::string CalcCA;
    std::string ResValOf;
    std::string MOD;
    std::string WdvIT;
    bool ResDefault = true;   // "Default (5%)"
    bool LifeDefault = true;  // "Default (As per Master)"
    bool RateDefault = true;  // "Default (As per Fixed Asset Group Master)" / "Auto Calculated"
    bool RateITDefault = true;
    bool AddlRateDefault = true;
    bool AutoDepr = true;    // chkAutoCalcDeprCL
    bool AddlDepOn = false;  // the tick of the remaining half of additional depreciation
    bool TotESA = false;     // chkTotESA ("Gross")
    bool PartDed = false;    // the sale/deduction leaves the asset held (a partial deduction)

    static OpeningOpts parse(std::string_view oth_opts);
    // The optsWdvIT field alone, as parse would read it, without the rest.
    static std::string_view wdv_it(std::string_view oth_opts);
    // The partial-deduction tick alone.
    static bool partial_deduction(std::string_view oth_opts);
    std::string compose() const;
};

// OthOpts of an addition: the method ("", "WDV", "SLM"), the cboRndAddRtAuto choice
// ("OLD" no rounding limit, "NEW" rounding limit), then the ticks.
struct AdditionOpts {
    std::string MOD;
    std::string RndAddRtAuto = "OLD";
    bool ResDefault = true;
    bool LifeDefault = true;
    bool RateDefault = true;
    bool RateITDefault = true;
    bool AddlDep = false;  // "Tick If Additional Depreciation Applicable"
    bool AutoDepr = true;
    bool PartDed = false;  // the sale/deduction leaves the asset held (a partial deduction)

    static AdditionOpts parse(std::string_view oth_opts);
    static bool partial_deduction(std::string_view oth_opts);
    std::string compose() const;
};

// An entry's method and basis: its own choice, else the common option.
std::string effective_method(std::string_view own, const RegisterOptions& common);
depreciation::ResidualBasis effective_basis(std::string_view own, const RegisterOptions& common);

}  // namespace brenlow::reg
