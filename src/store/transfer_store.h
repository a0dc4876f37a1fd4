#pragma once
// Where the register's results go on to: the client's trial balance (TAB_<suffix>,
// its groups in Mast_AllGrp, its particulars in Mast_Part) and the capital-gains
// records of depreciable assets (capital_depr, with its heads in Capital).

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/database.h"

namespace brenlow::store {

// ---- Trial balance ----------------------------------------------------------------

// Sides of a trial-balance row (nid), as the suite's side lists write them.
inline constexpr int kDebit = 1;
inline constexpr int kCredit = 2;

struct TrialBalanceGroup {
    long AllId = 0;
    long GID = 0;
    std::string allgrp;
};

// The groups the register's transfer replaces: every fixed-asset head (GID 5 but not
// AllId 5), 'DEPRECIATION' (29) and 'PROFIT ON SALE OF FIXED ASSETS' (17), and for a
// company the two residual-value groups (25 and 2).
struct TransferGroups {
    std::vector<TrialBalanceGroup> fixed_asset_heads;
    std::optional<long> depreciation, profit_on_sale, residual_pl, residual_rs;
    std::vector<long> all() const;
};
TransferGroups transfer_groups(Database& db, bool company);
// Every trial-balance group by its AllId.
std::map<long, std::string> trial_balance_group_names(Database& db);

// One row of TAB_: srno, code_no, allid, PartId, nid, Amt.
struct TrialBalanceRow {
    long srno = 0;
    long allid = 0;
    long PartId = 0;
    int nid = kDebit;
    double Amt = 0;
};

// The table of the client-year whose suffix is given ("TAB_" + suffix).
std::string trial_balance_table(std::string_view suffix);
std::vector<TrialBalanceRow> trial_balance_rows(Database& db, std::string_view suffix, std::string_view code);
// Sum of Amt over the client's rows under the groups (debits less credits).
double trial_balance_sum(Database& db, std::string_view suffix, std::string_view code,
                         const std::vector<long>& groups);
// Deletes the client's rows under `groups` and writes `rows` numbered on from the
// client's largest srno; all or nothing.
void replace_trial_balance_rows(Database& db, std::string_view suffix, std::string_view code,
                                const std::vector<long>& groups, std::vector<TrialBalanceRow> rows);

// ---- Capital gains of depreciable assets ------------------------------------------

struct BlockTransfer {
    std::string assets_name;  // the block
    std::string dtsale;       // date of the last deduction, dd/mm/yyyy
    double sales_cons = 0;    // moneys payable set against the block
    double wdv = 0;           // WDV after the adjustments of other assets
    double addition = 0;      // additions of the year
    double trans_expen = 0;   // expenses on transfer
    double assets_trans = 0;  // the capital gain, or (negative) loss
};

struct CapitalGainRow {
    long capital_no = 0;
    BlockTransfer block;
    bool transferred = false;  // trblock 'Y': made by the transfer
};

std::vector<CapitalGainRow> capital_gain_rows(Database& db, std::string_view code, int year);
// Replaces the rows an earlier transfer made (trblock 'Y') and their heads in Capital,
// numbering on from the largest Capital_no of the year; the user's own rows stay.
void replace_block_transfers(Database& db, std::string_view code, int year,
                             const std::vector<BlockTransfer>& rows);

}  // namespace brenlow::store
