#include "schedules/fixed_asset_figures.h"

#include <cctype>
#include <map>

#include "controls/number_format.h"
#include "depreciation/companies_act.h"

namespace brenlow::sched {
namespace {

using depreciation::CaEntry;
using depreciation::CaMethod;
using depreciation::EntryKind;
using depreciation::ItEntry;

constexpr int kWdv = 1, kSlm = 2, kOther = 3, kNone = 4;

BooksFigures books_of(const ParticularInput& p, int year, const ScheduleOptions& options) {
    const auto& f = p.row;
    BooksFigures b;
    b.opening_cost = f.OP_BAL;
    b.opening_dep = f.op_bal_dep;
    double left_cost = f.OP_BAL, left_dep = f.op_bal_dep;
    std::map<long, double> taken;  // addition srno -> cost deducted from it
    for (const auto& a : p.lines) {
        if (a.ad_ded_id == store::kFdaAddition) b.additions += addition_amount(a);
        if (a.ad_ded_id != store::kFdaDeduction) continue;
        b.deductions_cost += a.cost;
        b.deductions_dep += a.dep;
        b.sales += a.AMT;
        b.profit_on_sale += a.AMT - a.excr - (a.cost - a.dep);
        if (a.src == 0) {
            left_cost -= a.cost;
            left_dep -= a.dep;
        } else {
            taken[a.src] += a.cost;
        }
    }
    if (options.STOPDEP) {
        b.depreciation = 0;
    } else if (f.deptick != 0) {
        b.depreciation = f.depamt;
    } else if (f.method_id == kOther) {
        b.depreciation = f.OTH_DEP;
    } else if (options.BADEP) {
        b.depreciation = 0;  // only what is typed
    } else if (f.method_id == kWdv || f.method_id == kSlm) {
        depreciation::CaRunInput in;
        in.year = year;
        in.explain = false;
        const auto entry = [&](EntryKind kind, double cost, double dep, const std::string& put) {
            CaEntry e;
            e.kind = kind;
            e.method = f.method_id == kWdv ? CaMethod::WDV : CaMethod::SLM;
            e.put_date = put;
            e.cost = cost;
            e.op_dep = dep;
            e.residual_default = false;
            e.rate_auto = false;
            e.rate = f.RATE_DEP;
            return e;
        };
        in.entries.push_back(entry(EntryKind::Opening, left_cost, left_dep, ""));
        for (const auto& a : p.lines) {
            if (a.ad_ded_id != store::kFdaAddition) continue;
            // Without SEPDEP an addition is depreciated with the opening, for the whole year.
            auto e = options.SEPDEP
                         ? entry(EntryKind::Addition, addition_amount(a) - taken[a.srno], 0, a.ad_date)
                         : entry(EntryKind::Opening, addition_amount(a) - taken[a.srno], 0, "");
            if (a.fulldep != 0) {
                e.auto_depr = false;
                e.manual_depr = e.cost;
            }
            in.entries.push_back(e);
        }
        for (const auto& r : depreciation::calculate_companies_act(in).assets)
            b.depreciation += r.depreciation;
    }
    (void)kNone;
    b.depreciation = vb_round(b.depreciation, 2);
    b.closing_cost = b.opening_cost + b.additions - b.deductions_cost;
    b.closing_dep = b.opening_dep + b.depreciation - b.deductions_dep;
    b.net_block = b.closing_cost - b.closing_dep;
    return b;
}

}  // namespace

namespace {

std::vector<std::string> keywords_of(std::string_view text) {
    std::vector<std::string> out;
    std::string word;
    for (const char c : text) {
        if (c == ' ' || c == ',' || c == ';' || c == '|') {
            if (!word.empty()) out.push_back(word);
            word.clear();
        } else {
            word += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        }
    }
    if (!word.empty()) out.push_back(word);
    return out;
}

bool option_keyword(const std::string& w) {
    return w == "SEPDEP" || w == "NOSEPDEP" || w == "ADDDEP" || w == "NOADDDEP" || w == "STOPDEP" ||
           w == "BADEP";
}

}  // namespace

ScheduleOptions options_of(std::string_view others) {
    ScheduleOptions o;
    for (const auto& w : keywords_of(others)) {
        if (w == "SEPDEP") o.SEPDEP = true;
        if (w == "NOSEPDEP") o.SEPDEP = false;
        if (w == "ADDDEP") o.ADDDEP = true;
        if (w == "NOADDDEP") o.ADDDEP = false;
        if (w == "STOPDEP") o.STOPDEP = true;
        if (w == "BADEP") o.BADEP = true;
    }
    return o;
}

std::string others_with(std::string_view others, const ScheduleOptions& options) {
    std::vector<std::string> words;
    for (auto& w : keywords_of(others))
        if (!option_keyword(w)) words.push_back(w);
    words.push_back(options.SEPDEP ? "SEPDEP" : "NOSEPDEP");
    words.push_back(options.ADDDEP ? "ADDDEP" : "NOADDDEP");
    if (options.STOPDEP) words.push_back("STOPDEP");
    if (options.BADEP) words.push_back("BADEP");
    std::string out;
    for (const auto& w : words) out += (out.empty() ? "" : ",") + w;
    return out;
}

double addition_amount(const store::FdaRow& a) {
    if (a.cost == 0 && a.excr == 0 && a.curdiff == 0 && a.grsub == 0) return a.AMT;
    return a.cost - a.excr + a.curdiff - a.grsub;
}

std::vector<ParticularFigures> particular_figures(const std::vector<ParticularInput>& particulars, int year,
                                                  const ScheduleOptions& options) {
    std::vector<ParticularFigures> out;
    depreciation::ItRunInput it;
    it.year = year;
    it.explain = false;
    it.keep_rows = false;
    for (std::size_t i = 0; i < particulars.size(); ++i) {
        const auto& p = particulars[i];
        ParticularFigures fig;
        fig.name = p.row.PART_NM;
        fig.books_considered = p.row.CGrpId != store::kNotConsidered;
        fig.it_considered = p.row.IGrpId != store::kNotConsidered;
        fig.books = books_of(p, year, options);
        out.push_back(std::move(fig));
        if (!out.back().it_considered) continue;

        // The particular is a block of its own.
        const std::string id = "P" + std::to_string(i + 1);
        it.blocks.push_back({id, p.row.PART_NM, p.row.compit_rate});
        const bool nil = p.row.trblock != 0;
        ItEntry opening;
        opening.block_id = id;
        opening.particulars = p.row.PART_NM;
        opening.wdv_cost = p.row.wdv;
        opening.asset_exists = !nil;
        it.entries.push_back(opening);
        for (const auto& a : p.lines) {
            ItEntry e;
            e.block_id = id;
            e.particulars = a.particular;
            e.asset_exists = !nil;
            if (a.ad_ded_id == store::kFdaAddition) {
                e.kind = EntryKind::Addition;
                e.wdv_cost = addition_amount(a);
                e.put_date = a.ad_date;
                e.addl_rate = options.ADDDEP && a.adddepapp == "1" ? p.row.AddDepRt : 0;
            } else if (a.ad_ded_id == store::kFdaDeduction) {
                // Money out of the block; the particular itself stays unless the block is nil.
                e.sale_amt = a.AMT;
                e.sale_exp = a.excr;
                e.sale_date = a.ad_date;
                e.partial_deduction = true;
                e.asset_exists = false;
            } else if (a.ad_ded_id == store::kFdaCarriedHalf) {
                if (!options.ADDDEP) continue;
                e.addl_dep_on = addition_amount(a);
                e.addl_rate = a.dep;
                e.asset_exists = false;
            } else {
                continue;
            }
            it.entries.push_back(e);
        }
    }
    if (it.entries.empty()) return out;
    const auto run = depreciation::calculate_income_tax(it);
    std::map<std::string, const depreciation::ItBlockResult*> by_id;
    for (const auto& b : run.blocks) by_id[b.block_id] = &b;
    for (std::size_t i = 0; i < particulars.size(); ++i) {
        if (!out[i].it_considered) continue;
        if (const auto b = by_id.find("P" + std::to_string(i + 1)); b != by_id.end()) out[i].it = *b->second;
    }
    return out;
}

ScheduleTotals schedule_totals(const std::vector<ParticularFigures>& figures) {
    ScheduleTotals t;
    for (const auto& f : figures) {
        if (!f.books_considered) continue;
        t.net_block += f.books.net_block;
        t.depreciation += f.books.depreciation;
        t.profit_on_sale += f.books.profit_on_sale;
    }
    return t;
}

}  // namespace brenlow::sched
