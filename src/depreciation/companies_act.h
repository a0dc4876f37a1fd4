#pragma once
// Depreciation as per the books under the Companies Act, asset by asset.
//
// Input (CaRunInput): the register entries of the year as the register screen reads
// them from NewFATRo<year> / NewFATRa<year> (method, dates, cost, life, residual value,
// shifts, typed rate or typed depreciation), the NESD mark of each entry's group
// (NewCLBM), and the screen-wide options of NewFAMI that the calculation reads.
// Output (CaRunResult): one CaAssetResult per entry, in input order, with the figures
// of the calculation sheet and the DeprDet text; the totals that the trial-balance
// check compares; the warnings of the run.

#include <string>
#include <vector>

#include "depreciation/companies_act_rate.h"
#include "depreciation/income_tax.h"  // EntryKind
#include "depreciation/warnings.h"

namespace brenlow::depreciation {

enum class AssetClass { Tangible, Intangible, NonDepreciable };
enum class RemLifeNilTo { ProfitAndLoss, RetainedEarnings };  // cboDepAdjRemLife0

struct CaEntry {
    EntryKind kind = EntryKind::Opening;
    int sr_no = 0;            // SrNoFATR
    int group_id = 0;         // IdFAGM
    std::string particulars;  // Part
    AssetClass asset_class = AssetClass::Tangible;
    CaMethod method = CaMethod::WDV;            // "WDV" / "SLM"; None for "NO DEPRECIATION"
    ResidualBasis basis = ResidualBasis::Cost;  // entry's own choice, else the common option
    std::string put_date;                       // PutDate, dd/mm/yyyy
    double cost = 0;                            // opening: CostWdv; addition: net amount
    double op_dep = 0;                          // OpDepr: depreciation up to the start of the year
    double dep_calc_ca = 0;        // DepCalcCA: depreciation taken off cost for the carrying-amount basis
    bool residual_default = true;  // "Default (5%)"
    double residual = 0;           // ResValue when typed in
    double life_yrs = 0;           // LifeYrs (useful life)
    bool rate_auto = true;         // "Auto Calculated"
    double rate = 0;               // RateFACL when typed in
    bool auto_depr = true;         // chkAutoCalcDeprCL; off: depreciation typed in ("Manual")
    double manual_depr = 0;        // DepFACL
    std::string sale_date;         // SaleDate
    double sale_amt = 0, sale_exp = 0;
    // A partial deduction takes money out of the income-tax block while the asset is
    // kept; the books keep the asset whole.
    bool partial_deduction = false;
    std::string shift_det;  // ShiftDet: "from,to,shift|..."
    bool nesd = false;      // the group's block has NESD = "Y"
};

struct CaRunInput {
    int year = 0;  // closing calendar year of the financial year
    std::vector<CaEntry> entries;
    int rem_life_mode = 2;  // GETREMLIFEYRS mode (cboRndRemLife)
    int rem_life_decimals = 0;
    RemLifeNilTo nil_life_to = RemLifeNilTo::ProfitAndLoss;
    bool round_to_rupees = false;  // optRndFA: whole rupees instead of paise
    bool interactive = false;
    bool explain = true;  // build the texts: DeprDet, and the days_text the sheet shows
};

struct CaAssetResult {
    double opening = 0;  // carrying amount at the start of the year (cost - OpDepr)
    double addition = 0;
    double base = 0;  // cost, or carrying amount on that basis
    double residual = 0;
    double life = 0;  // life used for the rate: remaining life of an older asset
    double remaining_life = 0;
    double rate = 0;
    std::string rate_text;  // the auto-calculated rate as text, empty when typed
    int days = 0;
    std::string days_text;    // "Calculated for 365 Days"; empty when the run explains nothing
    double depreciation = 0;  // for the year, extra shift included
    double extra_shift = 0;
    double dep_on_deduction = 0;  // "Depreciation of Deduction"
    double deduction = 0;         // carrying amount taken out on sale
    double closing = 0;           // WDV / carrying amount at the year end
    double profit_loss = 0;       // on sale: sale - expenses - carrying amount at sale
    double adj_pl = 0;            // DepAdjRemLife0_PL
    double adj_rs = 0;            // DepAdjRemLife0_RS
    bool manual = false;          // "Manual"
    std::string DeprDet;
};

struct CaTotals {
    double closing = 0;       // ClBal
    double depreciation = 0;  // DepFY
    double profit_loss = 0;   // ProfitLoss
    double adj_pl = 0;        // DepAdjRemLife0_PL
    double adj_rs = 0;        // DepAdjRemLife0_RS
};

struct CaRunResult {
    std::vector<CaAssetResult> assets;  // one per input entry
    CaTotals totals;
    bool no_assets = false;
    std::vector<Warning> warnings;
};

CaAssetResult calculate_asset(const CaEntry& entry, const CaRunInput& options, WarningLog& log);
CaRunResult calculate_companies_act(const CaRunInput& input);

// "Remaining Life As on 01/04/2015 out of Total Life: 10 Years"
std::string remaining_life_text(int closing_year, double life);

}  // namespace brenlow::depreciation
