#pragma once
// Income-tax depreciation by block of assets, for one client and one financial year.
//
// Input (ItRunInput): the register entries of the year as the register screen reads
// them from NewFATRo<year> (opening rows) and NewFATRa<year> (addition rows), each
// already joined to its asset group (NewFAGM.BlockIdIT), and the block master rows of
// the year (NewITBM: ID, Part, rate). The closing calendar year is the register year.
//
// Output (ItRunResult): the half-rate line, one working row per entry that counts under
// the Income-tax Act, one ItBlockResult per block (ordered by block and rate) with the
// block figures of the sheet, the warnings of the run, and the net capital gain.
// block_figure() reads a block figure under the keys the block grid uses.

#include <string>
#include <string_view>
#include <vector>

#include "depreciation/fa_date.h"
#include "depreciation/warnings.h"

namespace brenlow::depreciation {

enum class EntryKind { Opening, Addition };

struct ItEntry {
    EntryKind kind = EntryKind::Opening;
    int sr_no = 0;            // SrNoFATR
    int group_id = 0;         // IdFAGM
    std::string particulars;  // Part
    std::string block_id;     // BlockIdIT of the asset group; "-1": not considered
    double wdv_cost = 0;      // opening: WdvIT; addition: net amount (PurAmt - ExciseCr + CurrDiff - Subsidy)
    double addl_rate = 0;     // AddlDepRT
    std::string put_date;     // PutDate, dd/mm/yyyy; an addition without it earns nothing this year
    std::string sale_date;    // SaleDate, dd/mm/yyyy
    double sale_amt = 0;      // SaleAmt: moneys payable, deducted from the block
    double sale_exp = 0;      // SaleExp: expenses on transfer
    double addl_dep_on =
        0;  // AddlDepOn (opening): cost whose remaining half of additional depreciation is claimed
    double adj_earlier = 0;         // "Amount To be Adjusted" of the DetESA rows dated before the year
    double adj_current = 0;         // the same of the rows dated inside the year
    double rate_before = 0;         // RateIT (opening): the rate the asset was depreciated at last year
    bool from_higher_rate = false;  // its group names a plant block above 40% (the year closing 2018)
    bool asset_exists = true;       // false for optsWdvIT "N" ("Asset does not Exist")
    // The sale or deduction leaves the asset held: its amount still comes off the block,
    // but the asset counts as not sold and keeps its additional depreciation.
    bool partial_deduction = false;
};

struct ItBlockMaster {  // one NewITBM row of the year
    std::string id;
    std::string name;  // Part: "MACHINERY AND PLANT", "BUILDING", ...
    double rate = 0;
};

struct ItRunInput {
    int year = 0;  // closing calendar year of the financial year (2016 for F.Y. 2015-16)
    std::vector<ItEntry> entries;
    std::vector<ItBlockMaster> blocks;
    bool interactive = false;  // the caller's -1 flag: warnings are marked to be shown
    bool explain = true;       // build DeprCalcDet texts
    bool keep_rows = true;     // hand back the working rows; a run for the blocks alone leaves them out
};

// Where an entry sits in its block.
enum class BlockPart {
    Opening,      // opening WDV
    FullRate,     // addition put to use before the half-rate line (Addition1)
    HalfRate,     // addition put to use on or after the line (Addition2)
    NotPutToUse,  // addition without a date of put to use (Addition3)
};

struct ItWorkingRow {       // one row of the working grid per entry
    std::size_t entry = 0;  // index into ItRunInput::entries
    std::size_t block = 0;  // index into ItRunResult::blocks
    int Type_0123 = 0;      // 0 opening asset, 1 addition
    BlockPart part = BlockPart::Opening;
    double WdvCost = 0;
    double SaleAmt = 0;
    double SaleExp = 0;
    double DedAmt = 0;  // amount deducted from the block
    double BalAmt = 0;  // WdvCost - DedAmt
    double AddlRt = 0;
    double OthAdjAmtOP = 0;
    double OthAdjAmt = 0;
    double ProfitOnSale = 0;        // SaleAmt - SaleExp - WdvCost of the asset itself
    double AddlDepOnNext = 0;       // cost whose remaining half of additional depreciation goes to next year
    double DeprHalfOnOP = 0;        // opening row: AddlDepOn x AddlDepRT / 2 / 100 in whole rupees
    bool from_higher_rate = false;  // year closing 2018: plant brought from a block above 40%
};

struct ItBlockResult {
    std::string block_id;  // BlockIdIT
    std::string block_name;
    double rate = 0;
    int entries = 0;
    double opening_wdv = 0;                              // "Opening WDV"
    double adj_earlier = 0;                              // OthAdjAmtOP of the block
    double addition1 = 0, deduction1 = 0, balance1 = 0;  // full-rate part, opening WDV included in balance1
    double addition2 = 0, deduction2 = 0, balance2 = 0;  // half-rate part
    double addition3 = 0, deduction3 = 0,
           balance3 = 0;           // kept apart: not yet put to use, and any excess deduction
    double adj_current = 0;        // OthAdjAmt of the block
    double full_on_bal1 = 0;       // "FullOnBal1": charged at the full rate
    double full_on_bal2 = 0;       // "FullOnBal2": charged at half the rate
    double addl_on_bal1 = 0;       // "AddlOnBal1"
    double addl_on_bal2 = 0;       // "AddlOnBal2"
    double addl_rate = 0;          // "AddlRate"
    double depr_full = 0;          // DeprF
    double depr_half = 0;          // DeprH
    double addl_full = 0;          // ADeprF
    double addl_half = 0;          // ADeprH
    double DeprHalfOnOP = 0;       // remaining half of additional depreciation brought from last year
    double ADeprOpH = 0;           // the part of it charged this year (nil in 2016, see the block code)
    double carried_half_lost = 0;  // the part of it the block could not bear (its balance was too small)
    double carried_half_out = 0;   // remaining half that goes to the next year
    double DeprN_RND_Adj = 0;
    double DeprA_RND_Adj = 0;
    double TotDepr = 0;
    double ClWDV_NoRND = 0;
    double RndWdv = 0;        // "Closing WDV"
    double expenses = 0;      // "Expenses"
    double profit_loss = 0;   // "Profit/(Loss)": capital gain (+) or loss (-) of a nil block
    int assets_not_sold = 0;  // "No. of Assets Not Sold/Deducted"
    bool block_nil = false;   // "BLOCKNIL"
    std::string MaxDedDt;
    std::string status;  // "BLOCKNIL", "(No Asset)", "(Nil WDV)" or empty
    std::string DeprCalcDet;
    std::string carried_note;  // note on the carried half, when there is one
    // The year closing in 2018: the opening WDV of a plant-and-machinery block at 40%,
    // in the part brought from the blocks above 40% (50, 60, 80, 100%) that the year
    // merged into it and the part that was at 40% already (or whose rate is not known).
    double OpWdvHR40PM = 0;
    double OpWdvUK40PM = 0;
};

struct ItRunResult {
    Date half_rate_line;
    std::vector<ItWorkingRow> rows;
    std::vector<ItBlockResult> blocks;
    double net_capital_gain = 0;
    bool no_assets = false;
    std::vector<Warning> warnings;
};

ItRunResult calculate_income_tax(const ItRunInput& input);

// A block figure under its grid key ("Opening WDV", "Addition1", ... "AddlRate");
// 0 for an unknown key.
double block_figure(const ItBlockResult& block, std::string_view key);

// Profit or loss on sale of one asset: its own sale less expenses less its own WDV or
// cost. The income-tax modes show it per asset before the block calculation; tax itself
// is charged only on the block.
double profit_on_sale(const ItEntry& entry);

// The year closing in 2018 put plant and machinery above 40% into the 40% block: the
// block that a block id of machinery and plant above 40% ("3-60", "3-80", "3-100") falls
// into that year ("3-40"); empty for any other id or year.
std::string merged_plant_block(std::string_view block_id, int year);

}  // namespace brenlow::depreciation
