#pragma once
// The carry-forward of a client's register into the next year: every asset still held
// at the end of the previous year becomes an opening entry of the year being opened,
// with the previous year's closing figures as its opening figures.
//
// Books: an asset opens at the engine's closing carrying amount (its cost kept, the
// depreciation to date making up the difference), so an asset whose remaining life
// ended opens at its residual value. Sold assets do not carry; a partial deduction
// leaves the asset held.
//
// Income tax: the closing WDV of each block is spread over the block's assets still
// held, in proportion to each one's balance after its own deduction (WDV or cost less
// what was deducted for it). Shares are in whole rupees when the block closes in whole
// rupees, else in paise, and the remainder of the rounding goes to the asset with the
// largest balance, so the block reopens at exactly last year's closing WDV. Where no
// held asset has a balance the closing WDV is shared equally. A block that ended nil
// carries its assets as "Asset Exists but WDV is NIL"; a block all of whose assets
// were sold carries nothing (its gain or loss stays in last year's summary). The
// remaining half of additional depreciation on an addition put to use for less than
// 180 days carries as the new opening entry's AddlDepOn.
//
// Planning only reads; applying writes the year's groups (matched or made under the
// lock), the entries and the options row in one all-or-nothing group.

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "register/entry_gate.h"
#include "store/database.h"
#include "store/register_store.h"

namespace brenlow::reg {

struct CarryForwardBlock {
    std::string block_id;
    std::string name;
    double rate = 0;
    double closing_wdv = 0;  // last year's closing WDV of the block
    double carried_wdv = 0;  // the sum of the carried entries' WdvIT
    int assets = 0;          // assets carried in the block
};

struct CarryForwardPlan {
    // Why nothing can be carried: "" when the plan has entries.
    std::string nothing_because;
    std::vector<store::OpeningRow> openings;  // IdFAGM still names last year's group
    std::map<long, store::AssetGroupRow> previous_groups;
    std::optional<std::string> options_row;
    std::vector<CarryForwardBlock> blocks;
    bool it_rate_over_40 = false;     // an asset's income-tax rate is above 40%
    bool books_rate_over_40 = false;  // an asset's books rate is above 40%
};

// The plan of carrying `year - 1` into `year`. Reads only.
CarryForwardPlan plan_carry_forward(store::Database& db, const std::string& code, int year);

struct CarryForwardAnswers {
    bool it_rate_to_40 = false;     // "Do you want to Change Rate for Income-Tax to 40% ..."
    bool books_rate_to_40 = false;  // "Do you want to Change Rate for Books (Other than Company) to 40% ..."
    // The entry rules' questions and notices of each carried entry (a residual value
    // above 5%, the carried remaining half of additional depreciation).
    RuleAnswers rules;
};

struct CarryForwardResult {
    // The carried entry refused by the entry rules (or their question answered No), as
    // "Particulars: message"; nothing was written when it is given.
    std::string refusal;
    bool answered_no = false;
    int entries = 0;
    int groups_created = 0;
};

// Puts every carried entry through the entry gate and, when none is refused, writes the
// plan into the year (whose register must be empty).
CarryForwardResult apply_carry_forward(store::Database& db, const std::string& code, int year,
                                       const CarryForwardPlan& plan, const CarryForwardAnswers& answers);

// The carry-forward questions, as the screen and the command line put them.
inline constexpr const char* kCarryForwardQuestion =
    "Do you want to Carry Forward Previous Year Particulars of Fixed Assets Schedule ?";
inline constexpr const char* kItRate40Question =
    "Do you want to Change Rate for Income-Tax to 40% [Maximum Allowed as per Income-Tax Act] ?";
inline constexpr const char* kBooksRate40Question =
    "Do you want to Change Rate for Books (Other than Company) to 40% [Maximum Allowed as per Income-Tax "
    "Act] ?";

}  // namespace brenlow::reg
