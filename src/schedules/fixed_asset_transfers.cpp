// The schedule's figures carried on: the books figures into the trial balance
// (cmdtrans) and the income-tax particulars that ended nil into the capital-gains
// records (cmdfatrans).

#include <map>
#include <optional>

#include "controls/number_format.h"
#include "depreciation/regime_check.h"
#include "frame/stopped_whole.h"
#include "schedules/fixed_asset_schedule.h"
#include "store/client_store.h"
#include "store/transfer_store.h"

namespace brenlow::sched {

bool FixedAssetSchedule::cmdtrans_Click() {
    if (!cmdSave_Click()) return false;
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
            const auto groups = store::transfer_groups(db_, false);
            // Net block under the particular's own head when the trial balance has one of
            // that name, else under the head of its income-tax block's nature, else the
            // first fixed-asset head.
            const auto head_named = [&groups](const std::string& name) -> std::optional<long> {
                for (const auto& h : groups.fixed_asset_heads)
                    if (h.allgrp == name) return h.AllId;
                return std::nullopt;
            };
            const auto head_of = [&](const std::string& name, long it_block) -> long {
                if (const auto h = head_named(name)) return *h;
                static const std::map<int, const char*> by_nature = {{1, "BUILDING"},
                                                                     {2, "FURNITURE AND FIXTURES"},
                                                                     {3, "PLANT AND MACHINERY"},
                                                                     {4, "INTANGIBLE ASSETS"},
                                                                     {100, "LAND"}};
                for (const auto& b : it_blocks_)
                    if (b.GrpId == it_block && by_nature.count(b.BlockNo))
                        if (const auto h = head_named(by_nature.at(b.BlockNo))) return *h;
                return groups.fixed_asset_heads.empty() ? 5 : groups.fixed_asset_heads.front().AllId;
            };
            std::vector<store::TrialBalanceRow> rows;
            const auto figs = figures();
            const auto in = inputs();
            for (std::size_t i = 0; i < figs.size(); ++i) {
                const auto& f = figs[i];
                if (!f.books_considered) continue;
                const long part = base.GetMax_MastPartId(f.name);
                const auto add = [&](long allid, double amount, bool credit_when_positive) {
                    if (mask_value(amount, "###0.00") == 0) return;
                    const bool credit = credit_when_positive ? amount > 0 : amount < 0;
                    rows.push_back({0, allid, part, credit ? store::kCredit : store::kDebit,
                                    amount < 0 ? -amount : amount});
                };
                add(head_of(f.name, in[i].row.IGrpId), f.books.net_block, false);
                if (groups.depreciation) add(*groups.depreciation, f.books.depreciation, false);
                if (groups.profit_on_sale) add(*groups.profit_on_sale, f.books.profit_on_sale, true);
            }
            store::replace_trial_balance_rows(db_, suffix_, code_, groups.all(), rows);
            ui_.info("Transferred!!");
        });
}

bool FixedAssetSchedule::cmdfatrans_Click(const std::string& caption) {
    auto& base = *comp_.base;
    const auto figs = figures();
    // Additional depreciation is not for a concessional regime.
    depreciation::AdditionalSums sums;
    for (const auto& f : figs) {
        if (!f.it_considered) continue;
        sums.ADeprF += f.it.addl_full;
        sums.ADeprH += f.it.addl_half;
        sums.ADeprOpH += f.it.ADeprOpH;
    }
    const depreciation::RegimeFlags flags{base.vFlagCompDom115BA(), base.vFlagIndHUF115BAC(),
                                          base.vFlagCopSoc115BAD(), base.vFlagCopSoc115BAE()};
    const auto regime = depreciation::concessional_regime_check(
        year_, store::assessee_kind_of_client(base.dbobj(), code_, status_), flags, sums, false);
    if (regime.refused) {
        ui_.info(regime.message);
        return false;
    }
    if (!ui_.ask_yes_no("Are you sure, you want to \"" + caption + "\" ?")) return false;
    if (!ui_.ask_yes_no(
            "Do you want to Transfer Data to Capital Gain Head - Depreciable Assets?\nNote: Date of Last "
            "Deduction will be transferred as Date of Sale in case of deductions made on different "
            "dates."))
        return false;
    return frame::stopped_whole(comp_.log, ui_, "formatsch", "cmdfatrans_Click",
                                "The blocks could not be transferred.", [&] {
                                    std::vector<store::BlockTransfer> rows;
                                    for (const auto& f : figs) {
                                        if (!f.it_considered || !f.it.block_nil) continue;
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
                                    // The same year as the register's own transfer writes.
                                    store::replace_block_transfers(db_, code_, year_, rows);
                                });
}

}  // namespace brenlow::sched
