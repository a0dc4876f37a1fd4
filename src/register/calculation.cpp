#include "register/calculation.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <variant>

#include "controls/number_format.h"
#include "controls/vb_date.h"
#include "depreciation/half_rate_line.h"
#include "register/read_ahead.h"
#include "register/register_entry_math.h"
#include "register/register_options.h"
#include "register/register_text.h"
#include "store/chart_store.h"
#include "store/client_store.h"

namespace brenlow::reg {
namespace {

constexpr std::array<std::pair<Mode, const char*>, 9> kModes = {{
    {Mode::DEP_IT, "DEP_IT"},
    {Mode::DEP_CAL_IT, "DEP_CAL_IT"},
    {Mode::DEP_3CD_IT, "DEP_3CD_IT"},
    {Mode::DEP_SCH_IT_FROM_IT, "DEP_SCH_IT_FROM_IT"},
    {Mode::DEP_SCH_IT_FROM_FA, "DEP_SCH_IT_FROM_FA"},
    {Mode::DEP_FA, "DEP_FA"},
    {Mode::DEP_CAL_FA, "DEP_CAL_FA"},
    {Mode::DEP_REP_FA, "DEP_REP_FA"},
    {Mode::DEP_SCH_FA, "DEP_SCH_FA"},
}};

// What the run needs of the year's masters, looked up by id.
struct Masters {
    std::vector<store::AssetGroupRow> groups;
    std::vector<store::ItBlockRow> it_blocks;
    std::unordered_map<long, const store::AssetGroupRow*> group_by_id;
    std::unordered_map<std::string, std::string> it_block_name;  // NewITBM ID -> Part
    std::unordered_map<std::string, bool> nesd;                  // NewCLBM ID -> NESD = "Y"

    const store::AssetGroupRow* group(long id) const {
        const auto it = group_by_id.find(id);
        return it == group_by_id.end() ? nullptr : it->second;
    }
};

Masters read_masters(store::RegisterStore& rs, bool income_tax) {
    Masters m;
    m.groups = rs.asset_groups();
    for (const auto& g : m.groups) m.group_by_id[g.SrNoFAGM] = &g;
    m.it_blocks = rs.income_tax_blocks();
    for (const auto& b : m.it_blocks) m.it_block_name[b.ID] = b.Part;
    if (!income_tax)
        for (const auto& c : rs.companies_act_blocks()) m.nesd[c.ID] = c.NESD == "Y";
    return m;
}

std::string block_of(const store::AssetGroupRow* group) {
    return group ? group->BlockIdIT : std::string("-1");
}

// The books class of an entry follows its group's income-tax block: intangible
// assets apart, land not depreciated at all.
depreciation::AssetClass asset_class_of(const Masters& m, const store::AssetGroupRow* group) {
    if (!group) return depreciation::AssetClass::Tangible;
    const auto it = m.it_block_name.find(group->BlockIdIT);
    if (it == m.it_block_name.end()) return depreciation::AssetClass::Tangible;
    if (it->second == "INTANGIBLE ASSETS") return depreciation::AssetClass::Intangible;
    if (it->second == "LAND") return depreciation::AssetClass::NonDepreciable;
    return depreciation::AssetClass::Tangible;
}

depreciation::CaMethod method_of(const std::string& own, const RegisterOptions& common,
                                 depreciation::AssetClass cls) {
    if (cls == depreciation::AssetClass::NonDepreciable) return depreciation::CaMethod::None;
    return effective_method(own, common) == "SLM" ? depreciation::CaMethod::SLM : depreciation::CaMethod::WDV;
}

bool nesd_of(const Masters& m, const store::AssetGroupRow* group) {
    if (!group) return false;
    const auto it = m.nesd.find(group->BlockIdCL);
    return it != m.nesd.end() && it->second;
}

// The register keeps the figures the entry frame settled (residual value, life, rate);
// the calculation takes them as entered. Only a rate left at nil with a life to work
// from is worked out afresh.
void settled_figures(depreciation::CaEntry& e, double residual, double life, double rate) {
    e.residual_default = false;
    e.residual = residual;
    e.life_yrs = life;
    e.rate = rate;
    e.rate_auto = rate == 0 && life > 0;
}

// Figures the entry frame settled on the other residual basis (the common option
// 'Residual Value (5%) Of' was switched since): the default residual value and the
// auto-calculated rate are worked again on the entry's basis, never half on one basis
// and half on the other. Typed figures are kept as they are.
void resettle_on_basis(depreciation::CaEntry& e, bool residual_default, bool rate_default) {
    if (!residual_default) return;
    const double carrying = e.cost - e.dep_calc_ca;
    const bool on_cost = e.basis == depreciation::ResidualBasis::Cost;
    const double own = on_cost ? e.cost : carrying, other = on_cost ? carrying : e.cost;
    const auto same = [](double x, double y) { return vb_round(x, 2) == vb_round(y, 2); };
    if (same(own, other) || !same(e.residual, depreciation::residual_value(other))) return;
    e.residual_default = true;
    e.rate_auto = e.rate_auto || rate_default;
}

// A group with a Companies-Act classification has its books rate worked out from the
// life and the residual value.
bool rate_worked_out(const store::AssetGroupRow* g) {
    return g && !g->BlockIdCL.empty() && g->BlockIdCL != "-1" && g->BlockIdCL != "-2";
}

depreciation::CaEntry books_entry(const store::OpeningRow& o, const Masters& m,
                                  const RegisterOptions& common) {
    const auto opts = OpeningOpts::parse(o.OthOpts);
    const auto* g = m.group(o.IdFAGM);
    depreciation::CaEntry e;
    e.kind = depreciation::EntryKind::Opening;
    e.sr_no = static_cast<int>(o.SrNoFATR);
    e.group_id = static_cast<int>(o.IdFAGM);
    e.particulars = o.Part;
    e.asset_class = asset_class_of(m, g);
    e.method = method_of(opts.MOD, common, e.asset_class);
    e.basis = effective_basis(opts.ResValOf, common);
    e.put_date = o.PutDate;
    e.cost = o.CostWdv;
    e.op_dep = o.OpDepr;
    e.dep_calc_ca = o.DepCalcCA;
    settled_figures(e, o.ResValue, o.LifeYrs, o.RateFACL);
    resettle_on_basis(e, opts.ResDefault, opts.RateDefault && rate_worked_out(g));
    e.auto_depr = opts.AutoDepr;
    e.manual_depr = o.DepFACL;
    e.sale_date = o.SaleDate;
    e.sale_amt = o.SaleAmt;
    e.sale_exp = o.SaleExp;
    e.shift_det = o.ShiftDet;
    e.partial_deduction = opts.PartDed;
    e.nesd = nesd_of(m, g);
    return e;
}

depreciation::CaEntry books_entry(const store::AdditionRow& a, const Masters& m,
                                  const RegisterOptions& common) {
    const auto opts = AdditionOpts::parse(a.OthOpts);
    const auto* g = m.group(a.IdFAGM);
    depreciation::CaEntry e;
    e.kind = depreciation::EntryKind::Addition;
    e.sr_no = static_cast<int>(a.SrNoFATR);
    e.group_id = static_cast<int>(a.IdFAGM);
    e.particulars = a.Part;
    e.asset_class = asset_class_of(m, g);
    e.method = method_of(opts.MOD, common, e.asset_class);
    e.basis = common.basis();
    e.put_date = a.PutDate;
    e.cost = net_amount(a);
    settled_figures(e, a.ResValue, a.LifeYrs, a.RateFACL);
    e.auto_depr = opts.AutoDepr;
    e.manual_depr = a.DepFACL;
    e.sale_date = a.SaleDate;
    e.sale_amt = a.SaleAmt;
    e.sale_exp = a.SaleExp;
    e.shift_det = a.ShiftDet;
    e.partial_deduction = opts.PartDed;
    e.nesd = nesd_of(m, g);
    return e;
}

// The income-tax blocks of the year that the register's groups use, in the order the
// engine lists blocks (by block and rate), and the block of each group. Groups not
// considered under the Act, or naming no block of the year, belong to none.
struct BlockPlan {
    std::vector<const store::ItBlockRow*> blocks;
    std::unordered_map<long, std::size_t> block_of_group;
};

BlockPlan plan_blocks(const Masters& m, int year) {
    std::unordered_map<std::string, const store::ItBlockRow*> by_id;
    for (const auto& b : m.it_blocks) by_id.emplace(b.ID, &b);
    // A group's block, or the 40% block that took in plant above 40% in the year closing 2018.
    const auto find = [&](const std::string& id) {
        auto it = by_id.find(id);
        if (it == by_id.end()) {
            const auto merged = depreciation::merged_plant_block(id, year);
            if (!merged.empty()) it = by_id.find(merged);
        }
        return it;
    };
    BlockPlan plan;
    for (const auto& g : m.groups) {
        const auto it = find(g.BlockIdIT);
        if (it != by_id.end() &&
            std::find(plan.blocks.begin(), plan.blocks.end(), it->second) == plan.blocks.end())
            plan.blocks.push_back(it->second);
    }
    std::stable_sort(plan.blocks.begin(), plan.blocks.end(), [](const auto* x, const auto* y) {
        const double vx = std::strtod(x->ID.c_str(), nullptr), vy = std::strtod(y->ID.c_str(), nullptr);
        if (vx != vy) return vx < vy;
        if (x->ID != y->ID) return x->ID < y->ID;
        return x->Rate < y->Rate;
    });
    for (const auto& g : m.groups) {
        const auto it = find(g.BlockIdIT);
        if (it == by_id.end()) continue;
        const auto pos = std::find(plan.blocks.begin(), plan.blocks.end(), it->second) - plan.blocks.begin();
        plan.block_of_group[g.SrNoFAGM] = static_cast<std::size_t>(pos);
    }
    return plan;
}

// An entry parked until its block is worked out: the figures the block calculation
// reads, in a third of the room of the engine's own entry. Dates are held as their
// stored text (dd/mm/yyyy is never longer than ten characters; a longer text is no
// date, and stays no date).
struct ParkedEntry {
    double wdv_cost = 0, addl_rate = 0, sale_amt = 0, sale_exp = 0, addl_dep_on = 0, adj_earlier = 0,
           adj_current = 0, rate_before = 0;
    int sr_no = 0, group_id = 0;
    std::array<char, 10> put_date{}, sale_date{};
    bool opening = true, asset_exists = true, partial_deduction = false, from_higher_rate = false;

    static void put(std::array<char, 10>& to, const std::string& date) {
        if (date.size() <= to.size())
            std::copy(date.begin(), date.end(), to.begin());
        else
            to[0] = '?';
    }
    static std::string get(const std::array<char, 10>& from) {
        return std::string(from.data(), std::find(from.begin(), from.end(), '\0'));
    }

    explicit ParkedEntry(const depreciation::ItEntry& e)
        : wdv_cost(e.wdv_cost),
          addl_rate(e.addl_rate),
          sale_amt(e.sale_amt),
          sale_exp(e.sale_exp),
          addl_dep_on(e.addl_dep_on),
          adj_earlier(e.adj_earlier),
          adj_current(e.adj_current),
          rate_before(e.rate_before),
          sr_no(e.sr_no),
          group_id(e.group_id),
          opening(e.kind == depreciation::EntryKind::Opening),
          asset_exists(e.asset_exists),
          partial_deduction(e.partial_deduction),
          from_higher_rate(e.from_higher_rate) {
        put(put_date, e.put_date);
        put(sale_date, e.sale_date);
    }
    depreciation::ItEntry entry(const std::string& block_id, std::string particulars) const {
        depreciation::ItEntry e;
        e.kind = opening ? depreciation::EntryKind::Opening : depreciation::EntryKind::Addition;
        e.sr_no = sr_no;
        e.group_id = group_id;
        e.particulars = std::move(particulars);
        e.block_id = block_id;
        e.wdv_cost = wdv_cost;
        e.addl_rate = addl_rate;
        e.put_date = get(put_date);
        e.sale_date = get(sale_date);
        e.sale_amt = sale_amt;
        e.sale_exp = sale_exp;
        e.addl_dep_on = addl_dep_on;
        e.adj_earlier = adj_earlier;
        e.adj_current = adj_current;
        e.rate_before = rate_before;
        e.asset_exists = asset_exists;
        e.partial_deduction = partial_deduction;
        e.from_higher_rate = from_higher_rate;
        return e;
    }
};

struct ParkedBlock {
    std::vector<ParkedEntry> entries;
    std::vector<std::string> particulars;  // only when the texts are wanted
};

void merge_warnings(std::vector<depreciation::Warning>& into, std::vector<depreciation::Warning>&& from) {
    // Each kind of warning once per run, whichever block raised it first.
    for (auto& w : from) {
        const bool seen =
            std::any_of(into.begin(), into.end(), [&](const auto& x) { return x.kind == w.kind; });
        if (!seen) into.push_back(std::move(w));
    }
}

// The "Amount To be Adjusted" of the DetESA rows by the date of their deduction: a
// row dated inside the year adjusts the current year's balance ("Adj. Other Assets
// (Current Year)"), one dated before it the opening WDV.
void split_adjustments(depreciation::ItEntry& e, const std::string& det_esa, int year) {
    e.adj_earlier = e.adj_current = 0;
    if (det_esa.empty()) return;
    const auto first = fy_first(year);
    for (const auto& row : store::unpack_rows(det_esa, kESASep)) {
        if (row.size() <= 5) continue;
        const auto date = depreciation::Date::parse(row[2]);
        (date && *date >= first ? e.adj_current : e.adj_earlier) += number_of(row[5]);
    }
}

void run_income_tax(store::Database& db, store::RegisterStore& rs, const Masters& m, bool interactive,
                    const CalculationOptions& options, CalculationResult& out) {
    auto& total = out.income_tax;
    total.half_rate_line = depreciation::half_rate_line(out.year - 1);
    // Blocks are worked out apart from one another. The register is read once, each
    // entry parked under its block, and then calculated one block at a time, so that
    // the engine never holds a large register whole.
    const BlockPlan plan = plan_blocks(m, out.year);
    const bool texts = options.keep_entries || options.sheets;
    std::vector<ParkedBlock> parked(plan.blocks.size());
    const auto park = [&](long group, std::string& part, const depreciation::ItEntry& e) {
        const auto it = plan.block_of_group.find(group);
        if (it == plan.block_of_group.end()) return;
        auto& p = parked[it->second];
        p.entries.emplace_back(e);
        if (texts) p.particulars.push_back(std::move(part));
    };
    // Read on a second thread while this one makes the entries and parks them.
    using Read = std::variant<store::OpeningRow, store::AdditionRow>;
    read_ahead<Read>(
        [&](const std::function<void(Read &&)>& put) {
            rs.for_each_opening_for_income_tax([&](store::OpeningRow&& o) { put(std::move(o)); });
            rs.for_each_addition_for_income_tax([&](store::AdditionRow&& a) { put(std::move(a)); });
        },
        [&](Read&& r) {
            std::visit(
                [&](auto& row) {
                    auto e = income_tax_entry(row, m.group(row.IdFAGM));
                    if constexpr (std::is_same_v<std::decay_t<decltype(row)>, store::OpeningRow>)
                        split_adjustments(e, row.DetESA, out.year);
                    e.from_higher_rate = !depreciation::merged_plant_block(e.block_id, out.year).empty();
                    park(row.IdFAGM, row.Part, e);
                },
                r);
        });

    if (options.keep_entries) {
        std::size_t entries = 0;
        for (const auto& p : parked) entries += p.entries.size();
        total.rows.reserve(entries);
        out.it_entries.reserve(entries);
        out.profit_on_sale.reserve(entries);
    }

    std::vector<depreciation::ItBlockMaster> all_blocks;
    for (const auto& b : m.it_blocks) all_blocks.push_back({b.ID, b.Part, b.Rate});
    for (std::size_t k = 0; k < plan.blocks.size(); ++k) {
        const auto& master = *plan.blocks[k];
        depreciation::ItRunInput in;
        in.year = out.year;
        in.interactive = interactive;
        in.explain = options.sheets;
        in.keep_rows = options.keep_entries;
        // Every block of the year, as a whole run would see them; only this one has entries.
        in.blocks = all_blocks;
        {
            ParkedBlock p = std::move(parked[k]);
            if (p.entries.empty()) continue;
            in.entries.reserve(p.entries.size());
            for (std::size_t i = 0; i < p.entries.size(); ++i)
                in.entries.push_back(p.entries[i].entry(master.ID, texts ? std::move(p.particulars[i]) : ""));
        }

        // Profit or loss on sale comes first, asset by asset; tax is then charged on the block.
        if (options.keep_entries)
            for (const auto& e : in.entries) out.profit_on_sale.push_back(depreciation::profit_on_sale(e));
        auto run = depreciation::calculate_income_tax(in);
        merge_warnings(out.warnings, std::move(run.warnings));
        total.net_capital_gain += run.net_capital_gain;
        if (options.keep_entries) {
            const std::size_t entry_base = out.it_entries.size(), block_base = total.blocks.size();
            for (auto& r : run.rows) {
                r.entry += entry_base;
                r.block += block_base;
                total.rows.push_back(r);
            }
            std::move(in.entries.begin(), in.entries.end(), std::back_inserter(out.it_entries));
        }
        std::move(run.blocks.begin(), run.blocks.end(), std::back_inserter(total.blocks));
    }
    if (total.blocks.empty()) {
        // Nothing counts under the Act: the engine's own answer for an empty register.
        depreciation::ItRunInput none;
        none.year = out.year;
        none.interactive = interactive;
        auto run = depreciation::calculate_income_tax(none);
        total.no_assets = run.no_assets;
        merge_warnings(out.warnings, std::move(run.warnings));
    }
    out.no_assets = total.no_assets;
    if (out.no_assets) return;

    const std::string second_date = fy_last(out.year).text();
    const std::string MANDEP =
        options.write_chart ? store::get_misc_info(db, out.code, second_date, "MANDEP") : std::string();
    if (!options.write_chart) {
        out.chart = depreciation::chart_rows_from_blocks(out.code, out.year, total);
    } else if (depreciation::use_hand_edited_chart(options.allow_hand_edited, MANDEP)) {
        store::copy_hand_edited_chart(db, out.code, out.year);
        out.chart = store::read_chart(db, store::ChartTable::TmpDepChart, out.code, out.year);
        out.chart_hand_edited = true;
    } else {
        out.chart = depreciation::chart_rows_from_blocks(out.code, out.year, total);
        // A chart that is stored already as it stands is not written again: a reader
        // without write rights gets the year's chart as long as nothing changed.
        if (store::read_chart(db, store::ChartTable::TmpDepChart, out.code, out.year) != out.chart)
            store::rewrite_built_chart(db, out.code, out.year, out.chart);
    }

    if (options.sheets)
        for (const auto& b : total.blocks)
            out.income_tax_sheet.push_back({b.block_name, b.rate, depreciation::block_sheet_lines(b)});
    // The summary goes with every print and file of the chart.
    out.block_summary = depreciation::block_wise_summary(total);
}

void run_books(store::RegisterStore& rs, const Masters& m, bool interactive,
               const CalculationOptions& options, CalculationResult& out) {
    const auto common = RegisterOptions::parse(rs.options_row().value_or(""));
    depreciation::CaRunInput in;
    in.year = out.year;
    in.rem_life_mode = common.rem_life_mode();
    in.rem_life_decimals = common.rem_life_decimals();
    in.nil_life_to = common.cboDepAdjRemLife0 == 1 ? depreciation::RemLifeNilTo::RetainedEarnings
                                                   : depreciation::RemLifeNilTo::ProfitAndLoss;
    in.round_to_rupees = common.optRndFA == "Y";
    in.interactive = interactive;
    in.explain = options.sheets;
    const bool keep = options.keep_entries || options.sheets;
    depreciation::WarningLog log(interactive);
    auto& totals = out.books.totals;
    // The printed books chart splits additions by the same line as the income-tax chart.
    const auto line = depreciation::half_rate_line(out.year - 1);

    // Assets are worked out one at a time as they are read; the entries and the engine's
    // own results are kept only when the screen or the sheet needs them.
    const auto calculate = [&](depreciation::CaEntry&& e) {
        auto r = depreciation::calculate_asset(e, in, log);
        totals.closing += r.closing;
        totals.depreciation += r.depreciation;
        totals.profit_loss += r.profit_loss;
        totals.adj_pl += r.adj_pl;
        totals.adj_rs += r.adj_rs;
        BooksAsset b;
        b.kind = e.kind;
        b.SrNoFATR = e.sr_no;
        b.IdFAGM = e.group_id;
        b.Particulars = e.particulars;
        b.Cost = e.cost;
        b.OpDep = e.op_dep;
        b.Opening = r.opening;
        b.Addition = r.addition;
        b.DedAmt = r.deduction;
        b.DepFY = r.depreciation;
        b.ClBal = r.closing;
        b.ProfitLoss = r.profit_loss;
        b.DepAdjRemLife0_PL = r.adj_pl;
        b.DepAdjRemLife0_RS = r.adj_rs;
        b.Rate = r.rate;
        b.RemLife = r.remaining_life;
        b.Days = r.days;
        if (e.kind == depreciation::EntryKind::Addition) {
            const auto put = depreciation::Date::parse(e.put_date);
            b.half_year = put && depreciation::is_half_rate_addition(*put, line);
        }
        out.books_assets.push_back(std::move(b));
        if (keep) {
            in.entries.push_back(std::move(e));
            out.books.assets.push_back(std::move(r));
        }
    };
    // The register is read and made into entries on a second thread while this one
    // works them out, in the order read.
    using Read = std::variant<store::OpeningRow, store::AdditionRow>;
    read_ahead<Read>(
        [&](const std::function<void(Read &&)>& put) {
            rs.for_each_opening_for_books([&](store::OpeningRow&& o) { put(std::move(o)); });
            rs.for_each_addition_for_books([&](store::AdditionRow&& a) { put(std::move(a)); });
        },
        [&](Read&& r) { std::visit([&](const auto& row) { calculate(books_entry(row, m, common)); }, r); });

    out.books.no_assets = out.no_assets = out.books_assets.empty();
    out.warnings = log.take();
    if (options.sheets) out.books_sheet = depreciation::companies_act_sheet(in, out.books);
}

}  // namespace

bool is_income_tax_mode(Mode mode) {
    switch (mode) {
        case Mode::DEP_IT:
        case Mode::DEP_CAL_IT:
        case Mode::DEP_3CD_IT:
        case Mode::DEP_SCH_IT_FROM_IT:
        case Mode::DEP_SCH_IT_FROM_FA:
            return true;
        default:
            return false;
    }
}

const char* mode_name(Mode mode) {
    for (const auto& [m, name] : kModes)
        if (m == mode) return name;
    return "";
}

std::optional<Mode> mode_from_name(std::string_view name) {
    for (const auto& [m, n] : kModes)
        if (name == n) return m;
    return std::nullopt;
}

depreciation::ItEntry income_tax_entry(const store::OpeningRow& o, const store::AssetGroupRow* group) {
    depreciation::ItEntry t;
    t.kind = depreciation::EntryKind::Opening;
    t.sr_no = static_cast<int>(o.SrNoFATR);
    t.group_id = static_cast<int>(o.IdFAGM);
    t.particulars = o.Part;
    t.block_id = block_of(group);
    t.wdv_cost = o.WdvIT;
    t.addl_rate = o.AddlDepRT;
    t.put_date = o.PutDate;
    t.sale_date = o.SaleDate;
    t.sale_amt = o.SaleAmt;
    t.sale_exp = o.SaleExp;
    t.addl_dep_on = o.AddlDepOn;
    t.rate_before = o.RateIT;
    // Every adjustment counts as an earlier year's until the year is known (split_adjustments).
    if (!o.DetESA.empty()) t.adj_earlier = det_esa_adjustment(o.DetESA);
    // "N": the asset no longer exists for the Act; "Y" exists with a nil WDV.
    t.asset_exists = OpeningOpts::wdv_it(o.OthOpts) != "N";
    t.partial_deduction = OpeningOpts::partial_deduction(o.OthOpts);
    return t;
}

depreciation::ItEntry income_tax_entry(const store::AdditionRow& a, const store::AssetGroupRow* group) {
    depreciation::ItEntry t;
    t.kind = depreciation::EntryKind::Addition;
    t.sr_no = static_cast<int>(a.SrNoFATR);
    t.group_id = static_cast<int>(a.IdFAGM);
    t.particulars = a.Part;
    t.block_id = block_of(group);
    t.wdv_cost = net_amount(a);
    t.addl_rate = a.AddlDepRT;
    t.put_date = a.PutDate;
    t.sale_date = a.SaleDate;
    t.sale_amt = a.SaleAmt;
    t.sale_exp = a.SaleExp;
    t.partial_deduction = AdditionOpts::partial_deduction(a.OthOpts);
    return t;
}

CalculationResult run_calculation(store::Database& db, const std::string& code, int year, Mode mode,
                                  bool interactive, const CalculationOptions& options) {
    CalculationResult out;
    out.code = code;
    out.year = year;
    out.mode = mode;
    store::RegisterStore rs(db, code, year);
    const bool income_tax = is_income_tax_mode(mode);
    const Masters m = read_masters(rs, income_tax);
    for (const auto& g : m.groups) out.asset_groups[g.SrNoFAGM] = g.Part;
    if (income_tax)
        run_income_tax(db, rs, m, interactive, options, out);
    else
        run_books(rs, m, interactive, options, out);
    return out;
}

}  // namespace brenlow::reg
