#pragma once
// The register's results carried into the client's other records: the books figures
// into the trial balance ("Transfer to Trial Balance", cmdTransToTB) and the blocks
// that ended nil into the capital-gains records of depreciable assets. Both ask their
// questions through the Ui and change nothing when one is answered No.
//
// Trial balance. For each asset group of the books chart: its closing balance under
// the group's fixed-asset head (a head of the same name, else the head of the group's
// income-tax block — building, furniture, plant and machinery, intangible assets,
// land — else the first fixed-asset head), debit; its depreciation for the year under
// 'DEPRECIATION', debit; its profit on sale under 'PROFIT ON SALE OF FIXED ASSETS',
// credit (a loss debit); for a company its residual-value adjustments under their two
// groups, debit. Each row's particular is the asset group's name (its Mast_Part id
// made when missing); amounts to the paisa; nil figures are not written. Rows are
// written in TAB_'s column order: srno, code_no, allid, PartId, nid (1 debit,
// 2 credit), Amt.
//
// Capital gains. One capital_depr row (and its Capital head) per income-tax block that
// ended nil: its name with its rate ("MACHINERY AND PLANT @ 40%"), the date of its last deduction, the moneys
// payable set against it, its WDV after the adjustments of other assets, its additions, the expenses
// on transfer, and the gain (a loss negative): moneys payable - WDV - additions - expenses = gain.

#include <string>

#include "controls/ui_port.h"
#include "depreciation/income_tax.h"
#include "store/transfer_store.h"
#include "suite/tarrow_base.h"

namespace brenlow::reg {

// True when the transfer was made.
bool transfer_to_trial_balance(TarrowBase::ClsMain& base, Ui& ui, const std::string& code, int year);
bool transfer_to_capital_gains(TarrowBase::ClsMain& base, Ui& ui, const std::string& code, int year);
// The capital_depr row of a block that ended nil.
store::BlockTransfer block_transfer(const depreciation::ItBlockResult& block);

}  // namespace brenlow::reg
