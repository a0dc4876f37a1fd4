// The screen-wide options (the NewFAMI row and "BADEP"), the old depreciation
// chart, and the carry-forward of the previous year's particulars.

#include <map>

#include "controls/number_format.h"
#include "controls/vb_date.h"
#include "depreciation/companies_act.h"
#include "depreciation/income_tax.h"
#include "register/frm_new_fatr.h"
#include "register/register_entry_math.h"
#include "register/register_text.h"

namespace brenlow::reg {
namespace {

constexpr const char* kModule = "frmNewFATR";

bool is_company(int status) { return status == 3 || status == 4; }

}  // namespace

bool frmNewFATR::ask_change(std::string_view caption) {
    return ui_.ask_yes_no("Do you really want to change '" + std::string(caption) + "' ?", MsgIcon::question, false);
}

void frmNewFATR::write_options() {
    store_->rewrite_options_row(options_.compose());
    refresh_common_texts();
}

bool frmNewFATR::optMOD_Click(std::string_view method) {
    bool changed = false;
    frame::guarded(comp_.log, kModule, "optMOD_Click", [&] {
        if (method != "WDV" && method != "SLM") return;
        if (method == options_.optMOD || !ask_change("Method of Depreciation")) return;
        options_.optMOD = std::string(method);
        write_options();
        changed = true;
    });
    return changed;
}

bool frmNewFATR::optResValOf_Click(std::string_view basis) {
    bool changed = false;
    frame::guarded(comp_.log, kModule, "optResValOf_Click", [&] {
        if (basis != "COST" && basis != "CA") return;
        if (basis == options_.optResValOf || !ask_change("Residual Value (5%) Of")) return;
        options_.optResValOf = std::string(basis);
        write_options();
        changed = true;
    });
    return changed;
}

bool frmNewFATR::cboRndRemLife_Click(int index) {
    bool changed = false;
    frame::guarded(comp_.log, kModule, "cboRndRemLife_Click", [&] {
        if (index < 0 || index >= kRemLifeRoundings || index == options_.cboRndRemLife) return;
        if (!ask_change("Rounding of Remaining Life")) {
            cboRndRemLife.ListIndex = options_.cboRndRemLife;
            return;
        }
        options_.cboRndRemLife = index;
        cboRndRemLife.ListIndex = index;
        write_options();
        changed = true;
    });
    return changed;
}

void frmNewFATR::SetOptions(const RegisterOptions& options) {
    frame::guarded(comp_.log, kModule, "SetOptions", [&] {
        // The three options that are asked about keep their own events.
        RegisterOptions next = options;
        next.optMOD = options_.optMOD;
        next.optResValOf = options_.optResValOf;
        next.cboRndRemLife = options_.cboRndRemLife;
        options_ = next;
        write_options();
    });
}

void frmNewFATR::cboBADep_Click(int index) {
    frame::guarded(comp_.log, kModule, "cboBADep_Click", [&] {
        if (index < 0 || index >= static_cast<int>(cboBADep.List.size())) return;
        cboBADep.ListIndex = index;
        auto& base = *comp_.base;
        base.SetMiscOthInf("BADEP", cboBADep.Id(), base.SecondDate(), code_, "Depreciation as per Books");
    });
}

void frmNewFATR::cmdOldDepChart_Click() {
    frame::guarded(comp_.log, kModule, "cmdOldDepChart_Click", [&] {
        if (!Mode_.empty() || old_chart_) return;
        if (store_->has_entries()) {
            ui_.info("Can't Proceed ! You have already entered details in New Depreciation Chart (Asset Wise).");
            return;
        }
        if (is_company(comp_.base->TSTATUS())) {
            ui_.info("In case of Companies, you should use Old Depreciation Chart if you want to Calculate "
                     "Depreciation as per Income-Tax Act only not as per New Companies Act, 2013.");
            if (!ui_.ask_yes_no("Continue ?", MsgIcon::question, false)) return;
        }
        store_->write_old_chart_marker();
        old_chart_ = true;
        options_ = RegisterOptions{};
        fill_filter();
        LoadRegister();
    });
}

// The previous year's entries that were still held at its end become this year's
// opening entries: cost and life carry over, the year's depreciation joins the
// depreciation to date, the income-tax WDV is the asset's share of its block's
// closing WDV. Groups are matched in this year by their particulars, blocks, rates
// and life, and made when missing.
void frmNewFATR::CarryForward() {
    frame::guarded(comp_.log, kModule, "CarryForward", [&] {
        store::RegisterStore prev(comp_.base->dbobj(), code_, year_ - 1);
        if (!prev.tables_exist() || prev.has_old_chart_marker() || !prev.has_entries()) return;
        if (!ui_.ask_yes_no("Do you want to Carry Forward Previous Year Particulars of Fixed Assets Schedule ?")) return;

        const auto prev_options = RegisterOptions::parse(prev.options_row().value_or(""));
        const auto openings = prev.opening_entries();
        const auto additions = prev.addition_entries();
        std::map<long, store::AssetGroupRow> prev_groups;
        for (const auto& g : prev.asset_groups()) prev_groups[g.SrNoFAGM] = g;

        // Books: the engine's closing figures per asset.
        depreciation::CaRunInput ca;
        ca.year = year_ - 1;
        ca.rem_life_mode = prev_options.rem_life_mode();
        ca.rem_life_decimals = prev_options.rem_life_decimals();
        ca.interactive = false;
        ca.explain = false;
        // Income tax: the engine's blocks, whose closing WDV is shared by the assets.
        depreciation::ItRunInput it;
        it.year = year_ - 1;
        it.interactive = false;
        it.explain = false;
        for (const auto& b : prev.income_tax_blocks())
            it.blocks.push_back({b.ID, b.Part, b.rate});

        const auto method_of = [&](const std::string& own) {
            return effective_method(own, prev_options) == "SLM" ? depreciation::CaMethod::SLM
                                                                 : depreciation::CaMethod::WDV;
        };
        for (const auto& o : openings) {
            const auto opts = OpeningOpts::parse(o.OthOpts);
            depreciation::CaEntry e;
            e.kind = depreciation::EntryKind::Opening;
            e.sr_no = static_cast<int>(o.SrNoFATR);
            e.group_id = static_cast<int>(o.IdFAGM);
            e.method = method_of(opts.MOD);
            e.basis = effective_basis(opts.ResValOf, prev_options);
            e.put_date = o.PutDate;
            e.cost = o.CostWdv;
            e.op_dep = o.OpDepr;
            e.dep_calc_ca = o.DepCalcCA;
            e.residual_default = false;
            e.residual = o.ResValue;
            e.life_yrs = o.LifeYrs;
            e.rate_auto = false;
            e.rate = o.RateFACL;
            e.auto_depr = opts.AutoDepr;
            e.manual_depr = o.DepFACL;
            e.sale_date = o.SaleDate;
            e.shift_det = o.ShiftDet;
            ca.entries.push_back(e);
            depreciation::ItEntry t;
            t.kind = depreciation::EntryKind::Opening;
            t.sr_no = e.sr_no;
            t.group_id = e.group_id;
            const auto g = prev_groups.find(o.IdFAGM);
            t.block_id = g != prev_groups.end() ? g->second.BlockIdIT : "-1";
            t.wdv_cost = o.WdvIT;
            t.addl_rate = o.AddlDepRT;
            t.put_date = o.PutDate;
            t.sale_date = o.SaleDate;
            t.sale_amt = o.SaleAmt;
            t.sale_exp = o.SaleExp;
            t.addl_dep_on = o.AddlDepOn;
            t.asset_exists = opts.WdvIT != "N";
            it.entries.push_back(t);
        }
        for (const auto& a : additions) {
            const auto opts = AdditionOpts::parse(a.OthOpts);
            const double net = a.PurAmt - a.ExciseCr + a.CurrDiff - a.Subsidy;
            depreciation::CaEntry e;
            e.kind = depreciation::EntryKind::Addition;
            e.sr_no = static_cast<int>(a.SrNoFATR);
            e.group_id = static_cast<int>(a.IdFAGM);
            e.method = method_of(opts.MOD);
            e.basis = prev_options.basis();
            e.put_date = a.PutDate;
            e.cost = net;
            e.residual_default = false;
            e.residual = a.ResValue;
            e.life_yrs = a.LifeYrs;
            e.rate_auto = false;
            e.rate = a.RateFACL;
            e.auto_depr = opts.AutoDepr;
            e.manual_depr = a.DepFACL;
            e.sale_date = a.SaleDate;
            e.shift_det = a.ShiftDet;
            ca.entries.push_back(e);
            depreciation::ItEntry t;
            t.kind = depreciation::EntryKind::Addition;
            t.sr_no = e.sr_no;
            t.group_id = e.group_id;
            const auto g = prev_groups.find(a.IdFAGM);
            t.block_id = g != prev_groups.end() ? g->second.BlockIdIT : "-1";
            t.wdv_cost = net;
            t.addl_rate = a.AddlDepRT;
            t.put_date = a.PutDate;
            t.sale_date = a.SaleDate;
            t.sale_amt = a.SaleAmt;
            t.sale_exp = a.SaleExp;
            it.entries.push_back(t);
        }
        const auto books = depreciation::calculate_companies_act(ca);
        const auto tax = depreciation::calculate_income_tax(it);
        std::vector<double> it_closing(it.entries.size(), 0.0), addl_next(it.entries.size(), 0.0);
        {
            std::vector<double> block_balance(tax.blocks.size(), 0.0);
            for (const auto& r : tax.rows) block_balance[r.block] += r.BalAmt;
            for (const auto& r : tax.rows) {
                const double share = block_balance[r.block] > 0 ? r.BalAmt / block_balance[r.block] : 0;
                it_closing[r.entry] = mask_value(tax.blocks[r.block].RndWdv * share, "###0.00");
                addl_next[r.entry] = r.AddlDepOnNext;
            }
        }

        // Rates above what the Act allows may be brought down while carrying forward.
        bool any_it_over = false, any_books_over = false;
        for (const auto& o : openings) {
            any_it_over |= o.RateIT > 40;
            any_books_over |= o.RateFACL > 40;
        }
        for (const auto& a : additions) {
            any_it_over |= a.RateIT > 40;
            any_books_over |= a.RateFACL > 40;
        }
        const bool cap_it = any_it_over &&
            ui_.ask_yes_no("Do you want to Change Rate for Income-Tax to 40% [Maximum Allowed as per Income-Tax Act] ?");
        const bool cap_books = any_books_over && !is_company(comp_.base->TSTATUS()) &&
            ui_.ask_yes_no("Do you want to Change Rate for Books (Other than Company) to 40% [Maximum Allowed as per Income-Tax Act] ?");

        std::map<long, long> group_map;
        const auto group_of = [&](long prev_id) -> long {
            if (auto f = group_map.find(prev_id); f != group_map.end()) return f->second;
            const auto g = prev_groups.find(prev_id);
            if (g == prev_groups.end()) return group_map[prev_id] = prev_id;
            return group_map[prev_id] = store_->find_or_create_group(g->second);
        };
        const Date prev_last = fy_last(year_ - 1);
        const auto held = [&](const std::string& sale) {
            const auto d = Date::parse(sale);
            return !d || *d > prev_last;
        };
        std::size_t k = 0;
        for (const auto& o : openings) {
            const std::size_t i = k++;
            if (!held(o.SaleDate)) continue;
            store::OpeningRow n = o;
            n.IdFAGM = group_of(o.IdFAGM);
            n.OpDepr = o.OpDepr + books.assets[i].depreciation;
            n.WdvIT = it_closing[i];
            n.AddlDepOn = addl_next[i];
            n.SaleDate.clear();
            n.SaleAmt = n.SaleExp = n.DepFACL = 0;
            n.ShiftDet.clear();
            if (cap_it && n.RateIT > 40) n.RateIT = 40;
            if (cap_books && n.RateFACL > 40) n.RateFACL = 40;
            store_->insert_opening(n);
        }
        for (const auto& a : additions) {
            const std::size_t i = k++;
            if (!held(a.SaleDate)) continue;
            const auto aopts = AdditionOpts::parse(a.OthOpts);
            store::OpeningRow n;
            n.IdFAGM = group_of(a.IdFAGM);
            n.Part = a.Part;
            n.CostWdv = a.PurAmt - a.ExciseCr + a.CurrDiff - a.Subsidy;
            n.OpDepr = books.assets[i].depreciation;
            n.ResValue = a.ResValue;
            n.LifeYrs = a.LifeYrs;
            n.RateFACL = cap_books && a.RateFACL > 40 ? 40 : a.RateFACL;
            n.WdvIT = it_closing[i];
            n.RateIT = cap_it && a.RateIT > 40 ? 40 : a.RateIT;
            n.AddlDepRT = a.AddlDepRT;
            OpeningOpts opts;
            opts.MOD = aopts.MOD;
            opts.ResDefault = aopts.ResDefault;
            opts.LifeDefault = aopts.LifeDefault;
            opts.RateDefault = aopts.RateDefault;
            opts.RateITDefault = aopts.RateITDefault;
            n.OthOpts = opts.compose();
            n.PutDate = a.PutDate;
            n.AddlDepOn = addl_next[i];
            store_->insert_opening(n);
        }
        if (prev.options_row()) {
            options_ = prev_options;
            store_->rewrite_options_row(options_.compose());
        }
        groups_ = store_->asset_groups();
        fill_group_picker();
        refresh_common_texts();
    });
}

}  // namespace brenlow::reg
