#include "register/carry_forward.h"

#include <algorithm>
#include <cmath>

#include "controls/number_format.h"
#include "controls/vb_date.h"
#include "register/calculation.h"
#include "register/entry_rules.h"
#include "register/register_options.h"
#include "store/register_bulk.h"

namespace brenlow::reg {
namespace {

using depreciation::EntryKind;

// An entry of last year by its table and serial.
struct Key {
    EntryKind kind;
    long serial;
    bool operator<(const Key& o) const { return kind != o.kind ? kind < o.kind : serial < o.serial; }
};

// What the income-tax side gives one carried entry.
struct TaxShare {
    double wdv = 0;
    double addl_dep_on = 0;  // cost whose remaining half of additional depreciation comes due
    bool nil_block = false;  // the block closed at nil
};

// Held at the end of the year: never sold, or only partly deducted.
bool held(const std::string& sale_date, bool partial, const Date& year_first, const Date& year_last) {
    const auto d = Date::parse(sale_date);
    return partial || !d || *d < year_first || *d > year_last;
}

// The block's closing WDV over its held rows, by their balances; the rounding remainder
// goes to the row with the largest balance.
void spread(double closing, const std::vector<std::pair<Key, double>>& held_rows,
            std::map<Key, TaxShare>& out) {
    if (held_rows.empty()) return;
    const bool whole = closing == std::floor(closing);
    const char* unit = whole ? "###0" : "###0.00";
    double weight = 0;
    for (const auto& [key, w] : held_rows) weight += std::max(0.0, w);
    std::size_t largest = 0;
    double given = 0;
    for (std::size_t i = 0; i < held_rows.size(); ++i) {
        const double w = std::max(0.0, held_rows[i].second);
        const double share = weight > 0 ? mask_value(closing * w / weight, unit)
                                        : mask_value(closing / static_cast<double>(held_rows.size()), unit);
        out[held_rows[i].first].wdv = share;
        given += share;
        if (w > std::max(0.0, held_rows[largest].second)) largest = i;
    }
    out[held_rows[largest].first].wdv =
        mask_value(out[held_rows[largest].first].wdv + (closing - given), "###0.00");
}

}  // namespace

CarryForwardPlan plan_carry_forward(store::Database& db, const std::string& code, int year) {
    CarryForwardPlan plan;
    const int last = year - 1;
    store::RegisterStore prev(db, code, last);
    if (!prev.tables_exist()) {
        plan.nothing_because = "there is no register for F.Y. " + std::to_string(last - 1) + "-" +
                               std::to_string(last % 100 + 100).substr(1);
        return plan;
    }
    if (prev.has_old_chart_marker()) {
        plan.nothing_because = "the previous year keeps the old depreciation chart";
        return plan;
    }
    if (!prev.has_entries()) {
        plan.nothing_because = "the previous year has no entries";
        return plan;
    }
    const auto prev_options = RegisterOptions::parse(prev.options_row().value_or(""));
    plan.options_row = prev.options_row();
    for (const auto& g : prev.asset_groups()) plan.previous_groups[g.SrNoFAGM] = g;
    const Date first = fy_first(last), end = fy_last(last);

    CalculationOptions read_only;
    read_only.allow_hand_edited = false;
    read_only.keep_entries = true;
    read_only.sheets = false;
    read_only.write_chart = false;

    // Books: the closing carrying amount of each asset.
    std::map<Key, double> books_closing;
    {
        read_only.keep_entries = false;
        const auto books = run_calculation(db, code, last, Mode::DEP_FA, false, read_only);
        for (const auto& a : books.books_assets) books_closing[{a.kind, a.SrNoFATR}] = a.ClBal;
        read_only.keep_entries = true;
    }

    // Income tax: each block's closing WDV spread over its held assets.
    std::map<Key, TaxShare> shares;
    {
        const auto tax = run_calculation(db, code, last, Mode::DEP_IT, false, read_only);
        const auto& run = tax.income_tax;
        std::vector<std::vector<std::pair<Key, double>>> held_rows(run.blocks.size());
        std::vector<std::vector<std::pair<Key, double>>> kept_rows(
            run.blocks.size());  // not sold, whatever exists
        for (const auto& r : run.rows) {
            const auto& e = tax.it_entries[r.entry];
            const Key key{e.kind, e.sr_no};
            if (!held(e.sale_date, e.partial_deduction, first, end)) continue;
            shares[key].addl_dep_on = r.AddlDepOnNext;
            kept_rows[r.block].push_back({key, r.BalAmt});
            if (e.asset_exists) held_rows[r.block].push_back({key, r.BalAmt});
        }
        for (std::size_t b = 0; b < run.blocks.size(); ++b) {
            const auto& block = run.blocks[b];
            const double closing = block.block_nil ? 0.0 : block.RndWdv;
            // A positive block whose every asset is marked as gone for the Act still
            // carries its WDV: it goes to the assets kept in the books.
            const auto& rows = held_rows[b].empty() ? kept_rows[b] : held_rows[b];
            CarryForwardBlock summary{block.block_id, block.block_name, block.rate, closing, 0, 0};
            if (closing > 0) {
                spread(closing, rows, shares);
            } else {
                for (const auto& [key, w] : rows) {
                    shares[key].nil_block = true;
                    shares[key].addl_dep_on = 0;  // no additional depreciation was charged in a nil block
                }
            }
            for (const auto& [key, w] : rows) {
                summary.carried_wdv += shares[key].wdv;
                ++summary.assets;
            }
            plan.blocks.push_back(summary);
        }
    }

    const auto carry_opening = [&](const store::OpeningRow& o) {
        const auto opts = OpeningOpts::parse(o.OthOpts);
        if (!held(o.SaleDate, opts.PartDed, first, end)) return;
        const Key key{EntryKind::Opening, o.SrNoFATR};
        store::OpeningRow n = o;
        n.SrNoFATR = 0;
        const auto books = books_closing.find(key);
        n.OpDepr = books != books_closing.end() ? vb_round(o.CostWdv - books->second, 2) : o.OpDepr;
        OpeningOpts next = opts;
        const auto tax = shares.find(key);
        n.WdvIT = tax != shares.end() ? tax->second.wdv : 0;
        n.AddlDepOn = tax != shares.end() ? tax->second.addl_dep_on : 0;
        if (tax != shares.end() && opts.WdvIT != "N") next.WdvIT = n.WdvIT == 0 ? "Y" : "";
        next.AddlDepOn = n.AddlDepOn != 0;
        next.AutoDepr = true;
        next.PartDed = false;
        n.OthOpts = next.compose();
        n.SaleDate.clear();
        n.SaleAmt = n.SaleExp = n.DepFACL = 0;
        n.ShiftDet.clear();
        plan.openings.push_back(std::move(n));
    };
    const auto carry_addition = [&](const store::AdditionRow& a) {
        const auto aopts = AdditionOpts::parse(a.OthOpts);
        if (!held(a.SaleDate, aopts.PartDed, first, end)) return;
        const Key key{EntryKind::Addition, a.SrNoFATR};
        store::OpeningRow n;
        n.IdFAGM = a.IdFAGM;
        n.Part = a.Part;
        n.CostWdv = net_amount(a);
        const auto books = books_closing.find(key);
        n.OpDepr = books != books_closing.end() ? vb_round(n.CostWdv - books->second, 2) : 0;
        n.ResValue = a.ResValue;
        n.LifeYrs = a.LifeYrs;
        n.RateFACL = a.RateFACL;
        const auto tax = shares.find(key);
        n.WdvIT = tax != shares.end() ? tax->second.wdv : 0;
        n.RateIT = a.RateIT;
        n.AddlDepRT = a.AddlDepRT;
        n.PutDate = a.PutDate;
        n.AddlDepOn = tax != shares.end() ? tax->second.addl_dep_on : 0;
        OpeningOpts opts;
        opts.MOD = aopts.MOD;
        opts.ResDefault = aopts.ResDefault;
        opts.LifeDefault = aopts.LifeDefault;
        opts.RateDefault = aopts.RateDefault;
        opts.RateITDefault = aopts.RateITDefault;
        opts.WdvIT = tax != shares.end() && n.WdvIT == 0 ? "Y" : "";
        opts.AddlDepOn = n.AddlDepOn != 0;
        n.OthOpts = opts.compose();
        plan.openings.push_back(std::move(n));
    };
    prev.for_each_opening(std::nullopt, [&](store::OpeningRow&& o) { carry_opening(o); });
    prev.for_each_addition(std::nullopt, [&](store::AdditionRow&& a) { carry_addition(a); });
    for (const auto& n : plan.openings) {
        plan.it_rate_over_40 |= n.RateIT > 40;
        plan.books_rate_over_40 |= n.RateFACL > 40;
    }
    if (plan.openings.empty()) plan.nothing_because = "every asset of the previous year was sold";
    return plan;
}

CarryForwardResult apply_carry_forward(store::Database& db, const std::string& code, int year,
                                       const CarryForwardPlan& plan, const CarryForwardAnswers& answers) {
    CarryForwardResult result;
    store::RegisterStore reg(db, code, year);
    std::vector<store::OpeningRow> rows = plan.openings;
    // The Act allows at most 40%; the person may bring higher rates down on the way.
    for (auto& n : rows) {
        if (answers.it_rate_to_40 && n.RateIT > 40) n.RateIT = 40;
        if (answers.books_rate_to_40 && n.RateFACL > 40) n.RateFACL = 40;
    }
    {
        // Each entry against the group it will be written to: last year's group, which
        // the year's is matched to (or made from) on every column that classifies it.
        EntryGate gate(reg, plan.options_row);
        if (gate.old_chart()) {
            result.refusal = kOldChartRefusal;
            return result;
        }
        for (const auto& [id, g] : plan.previous_groups) gate.know_group(id, g);
        for (const auto& n : rows) {
            if (const auto stop = pass_findings(gate.findings(n), answers.rules)) {
                result.refusal = n.Part + ": " + stop->message;
                result.answered_no = stop->kind == FindingKind::Question;
                return result;
            }
        }
    }
    store::Transaction tx(db);
    const auto before = reg.asset_groups().size();
    std::map<long, long> group_map;  // last year's group -> this year's
    const auto group_of = [&](long prev_id) -> long {
        if (const auto f = group_map.find(prev_id); f != group_map.end()) return f->second;
        const auto g = plan.previous_groups.find(prev_id);
        if (g == plan.previous_groups.end()) return group_map[prev_id] = prev_id;
        return group_map[prev_id] = reg.find_or_create_group(g->second);
    };
    for (auto& n : rows) n.IdFAGM = group_of(n.IdFAGM);
    store::insert_openings(db, code, year, rows);
    if (plan.options_row) reg.rewrite_options_row(*plan.options_row);
    tx.commit();
    result.entries = static_cast<int>(rows.size());
    result.groups_created = static_cast<int>(reg.asset_groups().size() - before);
    return result;
}

}  // namespace brenlow::reg
