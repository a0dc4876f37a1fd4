#include "register/transfers.h"

#include <map>

#include "depreciation/amount_text.h"
#include "depreciation/trial_balance_check.h"
#include "register/calculation.h"
#include "store/masters_store.h"
#include "store/transfer_store.h"

namespace brenlow::reg {
namespace {

// The question texts, worded for a company (with the residual-value groups) or not.
std::string groups_named(bool company) {
    return company ? "'Fixed Assets', 'Depreciation', 'Profit on Sale of Fixed Assets', 'Fixed Assets "
                     "Residual Value "
                     "Adjustments' and 'Fixed Assets Residual Value (Retained Earning)'"
                   : "'Fixed Assets', 'Depreciation' and 'Profit on Sale of Fixed Assets'";
}

// The fixed-asset head a group's closing balance goes under.
long head_of(const store::AssetGroupRow& g, const std::vector<store::ItBlockRow>& blocks,
             const store::TransferGroups& groups) {
    const auto& heads = groups.fixed_asset_heads;
    for (const auto& h : heads)
        if (h.allgrp == g.Part) return h.AllId;
    std::string block;
    for (const auto& b : blocks)
        if (b.ID == g.BlockIdIT) block = b.Part;
    static const std::map<std::string, std::string> by_block = {
        {"BUILDING", "BUILDING"},
        {"FURNITURE AND FITTINGS", "FURNITURE AND FIXTURES"},
        {"MACHINERY AND PLANT", "PLANT AND MACHINERY"},
        {"INTANGIBLE ASSETS", "INTANGIBLE ASSETS"},
        {"LAND", "LAND"},
    };
    if (const auto it = by_block.find(block); it != by_block.end())
        for (const auto& h : heads)
            if (h.allgrp == it->second) return h.AllId;
    return heads.empty() ? 5 : heads.front().AllId;
}

}  // namespace

bool transfer_to_trial_balance(TarrowBase::ClsMain& base, Ui& ui, const std::string& code, int year) {
    auto& db = base.dbobj();
    CalculationOptions options;
    options.keep_entries = false;
    options.sheets = false;
    const auto run = run_calculation(db, code, year, Mode::DEP_FA, false, options);
    if (run.books_assets.empty()) {
        ui.info("No Assets Available !");
        return false;
    }
    const bool company = is_company(base.TSTATUS());
    const auto groups = store::transfer_groups(db, company);
    const std::string suffix = base.GetTbName(base.CYrInd());

    // The schedule against the trial balance first: its question decides.
    depreciation::TbFigures schedule, trial;
    const auto& t = run.books.totals;
    schedule = {t.closing, t.depreciation, t.profit_loss, t.adj_pl, t.adj_rs};
    std::vector<long> heads;
    for (const auto& h : groups.fixed_asset_heads) heads.push_back(h.AllId);
    const auto sum = [&](const std::optional<long>& g) {
        return g ? store::trial_balance_sum(db, suffix, code, {*g}) : 0.0;
    };
    trial.net_block = store::trial_balance_sum(db, suffix, code, heads);
    trial.depreciation = sum(groups.depreciation);
    trial.profit_on_sale = -sum(groups.profit_on_sale);  // a profit stands on the credit side
    trial.residual_pl = sum(groups.residual_pl);
    trial.residual_rs = sum(groups.residual_rs);
    const auto check = depreciation::trial_balance_check(schedule, trial);
    if (check.differs && !ui.ask_yes_no(check.question, MsgIcon::question, true)) return false;

    // The message for any other client closes its list with a quote too many.
    if (!ui.ask_yes_no("Particulars under Group " + groups_named(company) + (company ? "" : "'") +
                           " will be Updated with Particulars 'As Per Books'. Do you want to Continue?",
                       MsgIcon::question, false))
        return false;
    if (!ui.ask_yes_no("It will Delete all Particulars under Group " + groups_named(company) +
                           " from Trial Balance. Do you want to Continue?",
                       MsgIcon::critical, false))
        return false;

    // The books figures of each asset group.
    struct Figures {
        double closing = 0, depreciation = 0, profit = 0, adj_pl = 0, adj_rs = 0;
    };
    std::map<long, Figures> by_group;
    for (const auto& a : run.books_assets) {
        auto& f = by_group[a.IdFAGM];
        f.closing += a.ClBal;
        f.depreciation += a.DepFY;
        f.profit += a.ProfitLoss;
        f.adj_pl += a.DepAdjRemLife0_PL;
        f.adj_rs += a.DepAdjRemLife0_RS;
    }
    const auto asset_groups = store::asset_groups_of_year(db, year);
    const auto blocks = store::income_tax_blocks(db, year);
    std::vector<store::TrialBalanceRow> rows;
    const auto add = [&](std::optional<long> group, long part, double amount, bool credit) {
        if (!group || amount == 0) return;
        const bool negative = amount < 0;
        rows.push_back({0, *group, part, (credit != negative) ? store::kCredit : store::kDebit,
                        negative ? -amount : amount});
    };
    for (const auto& [id, f] : by_group) {
        const store::AssetGroupRow* g = nullptr;
        for (const auto& x : asset_groups)
            if (x.SrNoFAGM == id) g = &x;
        const std::string name = g ? g->Part : "ASSET GROUP " + std::to_string(id);
        const long part = base.GetMax_MastPartId(name);
        add(g ? head_of(*g, blocks, groups) : (heads.empty() ? 5 : heads.front()), part, f.closing, false);
        add(groups.depreciation, part, f.depreciation, false);
        add(groups.profit_on_sale, part, f.profit, true);
        if (company) {
            add(groups.residual_pl, part, f.adj_pl, false);
            add(groups.residual_rs, part, f.adj_rs, false);
        }
    }
    store::replace_trial_balance_rows(db, suffix, code, groups.all(), std::move(rows));
    ui.info("Transferred !");
    return true;
}

store::BlockTransfer block_transfer(const depreciation::ItBlockResult& b) {
    // The WDV is the block's after the adjustments of other assets (of earlier years and
    // of this one), so that the row reconciles: moneys payable less WDV, additions and
    // expenses is the gain.
    return {b.block_name + " @ " + depreciation::rate_trimmed(b.rate) + "%",
            b.MaxDedDt,
            b.deduction1 + b.deduction2 + b.deduction3,
            b.opening_wdv - b.adj_earlier - b.adj_current,
            b.addition1 + b.addition2 + b.addition3,
            b.expenses,
            b.profit_loss};
}

bool transfer_to_capital_gains(TarrowBase::ClsMain& base, Ui& ui, const std::string& code, int year) {
    if (!ui.ask_yes_no(
            "Do you want to Transfer Data to Capital Gain Head - Depreciable Assets?\nNote: Date of Last "
            "Deduction will be transferred as Date of Sale in case of deductions made on different dates.",
            MsgIcon::question, true))
        return false;
    auto& db = base.dbobj();
    CalculationOptions options;
    options.keep_entries = false;
    options.sheets = false;
    options.write_chart = false;
    const auto run = run_calculation(db, code, year, Mode::DEP_IT, false, options);
    std::vector<store::BlockTransfer> rows;
    // A block shows a transfer when it ended nil: sold beyond its WDV (a gain) or
    // emptied of its assets (a loss).
    for (const auto& b : run.income_tax.blocks)
        if (b.block_nil) rows.push_back(block_transfer(b));
    store::replace_block_transfers(db, code, year, rows);
    ui.info("Transferred !");
    return true;
}

}  // namespace brenlow::reg
