// The schedule's figures carried on: the books figures into the trial balance
// (cmdtrans), under the fixed-asset head of each particular's books block, and the
// income-tax particulars with sales into the capital-gains records (cmdfatrans).

#include <algorithm>
#include <cctype>

#include "controls/number_format.h"
#include "depreciation/regime_check.h"
#include "frame/stopped_whole.h"
#include "schedules/fixed_asset_schedule.h"
#include "store/client_store.h"
#include "store/transfer_store.h"

namespace brenlow::sched {
namespace {

std::string upper(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return std::toupper(c); });
    return s;
}

std::string trim(const std::string& s) {
    const auto b = s.find_first_not_of(' ');
    if (b == std::string::npos) return {};
    return s.substr(b, s.find_last_not_of(' ') - b + 1);
}

}  // namespace

bool FixedAssetSchedule::cmdtrans_Click() {
    if (!cmdSave_Click()) return false;
    // The net block of a particular goes under the fixed-asset head of its books block;
    // a block with no head of its name in the trial balance stops the transfer before
    // anything is asked or written.
    const auto groups = store::transfer_groups(db_, false);
    const auto figs = figures();
    const auto in = inputs();
    std::vector<long> heads(figs.size(), 0);
    for (std::size_t i = 0; i < figs.size(); ++i) {
        if (!figs[i].books_considered) continue;
        std::string block;
        for (const auto& b : books_blocks_)
            if (b.GrpId == in[i].row.CGrpId) block = trim(b.grpdesc);
        for (const auto& h : groups.fixed_asset_heads)
            if (!block.empty() && upper(trim(h.allgrp)) == upper(block)) heads[i] = h.AllId;
        if (heads[i] == 0) {
            ui_.info("The trial balance has no head under 'Fixed Assets' named '" + block +
                     "', the books block of " + figs[i].name + ". Nothing was transferred.");
            return false;
        }
    }
    if (!ui_.ask_yes_no(
            "Particulars under Group 'Fixed Assets', 'Depreciation' and 'Profit on Sale of Fixed Assets' "
            "will be Updated with Particulars 'As Per Books'. Do you want to Continue?",
            MsgIcon::question, false))
        return false;
    if (!ui_.ask_yes_no(
            "It will Delete all Particulars under Group 'Fixed Assets', 'Depreciation' and 'Profit on "
            "Sale of Fixed Assets' from Trial Balance. Do you want to Continue?",
            MsgIcon::critical, false))
        return false;
    return frame::stopped_whole(
        comp_.log, ui_, "formatsch", "cmdtrans_Click", "The schedule could not be transferred.", [&] {
            auto& base = *comp_.base;
            std::vector<store::TrialBalanceRow> rows;
            for (std::size_t i = 0; i < figs.size(); ++i) {
                const auto& f = figs[i];
                if (!f.books_considered) continue;
                const long part = base.GetMax_MastPartId(upper(f.name));
                const auto add = [&](long allid, double amount, bool credit_when_positive) {
                    if (mask_value(amount, "###0.00") == 0) return;
                    const bool credit = credit_when_positive ? amount > 0 : amount < 0;
                    rows.push_back({0, allid, part, credit ? store::kCredit : store::kDebit,
                                    amount < 0 ? -amount : amount});
                };
                add(heads[i], f.books.net_block, false);
                if (groups.depreciation) add(*groups.depreciation, f.books.depreciation, false);
                if (groups.profit_on_sale) add(*groups.profit_on_sale, f.books.profit_on_sale, true);
            }
            store::replace_trial_balance_rows(db_, suffix_, code_, groups.all(), rows);
            ui_.info("Transferred!!");
        });
}

bool FixedAssetSchedule::cmdfatrans_Click(const std::string& caption) {
    if (!ui_.ask_yes_no("Are you sure, you want to \"" + caption + "\" ?")) return false;
    if (!ui_.ask_yes_no(
            "Do you want to Transfer Data to Capital Gain Head - Depreciable Assets?\nNote: Date of Last "
            "Deduction will be transferred as Date of Sale in case of deductions made on different "
            "dates."))
        return false;
    // A client taxed under a concessional section has no additional depreciation, whatever
    // the schedule's lines still say: the blocks go over worked without it.
    auto options = options_;
    if (!concessional_section().empty()) options.ADDDEP = false;
    const auto figs = particular_figures(inputs(), year_, options);
    return frame::stopped_whole(comp_.log, ui_, "formatsch", "cmdfatrans_Click",
                                "The blocks could not be transferred.", [&] {
                                    std::vector<store::BlockTransfer> rows;
                                    const auto in = inputs();
                                    for (std::size_t i = 0; i < figs.size(); ++i) {
                                        const auto& f = figs[i];
                                        // Every block with a sale or other deduction in the year, nil or not.
                                        bool sold = false;
                                        for (const auto& a : in[i].lines)
                                            sold = sold || a.ad_ded_id == store::kFdaDeduction;
                                        if (!f.it_considered || !sold) continue;
                                        store::BlockTransfer b;
                                        b.assets_name = f.name;
                                        b.dtsale = f.it.MaxDedDt;
                                        b.sales_cons = f.it.deduction1 + f.it.deduction2 + f.it.deduction3;
                                        b.wdv = f.it.opening_wdv;
                                        b.addition = f.it.addition1 + f.it.addition2 + f.it.addition3;
                                        b.trans_expen = f.it.expenses;
                                        b.assets_trans = f.it.profit_loss;
                                        rows.push_back(b);
                                    }
                                    // The assessment year numbered as the register's own transfer numbers it.
                                    store::replace_schedule_capital_gains(db_, code_, year_, rows);
                                });
}

}  // namespace brenlow::sched
