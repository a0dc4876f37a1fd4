#include "exchange/fixed_schedule_import.h"

#include <algorithm>
#include <map>

#include "controls/number_format.h"
#include "depreciation/half_rate_line.h"
#include "frame/remaining_life.h"
#include "frame/stopped_whole.h"
#include "register/entry_rules.h"
#include "register/register_options.h"
#include "schedules/fixed_asset_figures.h"
#include "store/client_store.h"
#include "store/fixed_schedule_store.h"
#include "store/seed.h"

namespace brenlow::exchange {
namespace {

constexpr int kBaseYear = 2014;  // remaining life on 1 April 2014

}  // namespace

ScheduleImportResult import_schedule(store::Database& db, frame::ErrorLog& log, const std::string& code,
                                     int year, bool yes) {
    return import_schedule(db, log, code, year, reg::answered_beforehand(yes, nullptr));
}

ScheduleImportResult import_schedule(store::Database& db, frame::ErrorLog& log, const std::string& code,
                                     int year, const reg::RuleAnswers& answers) {
    ScheduleImportResult result;
    store::RegisterStore reg(db, code, year);
    reg::EntryGate gate(reg);
    if (gate.old_chart()) {
        result.errors.push_back(reg::kOldChartRefusal);
        return result;
    }
    const auto prev = store::find_client_year(db, code, year - 1);
    if (!prev) {
        result.errors.push_back("The client " + code + " has no previous year to import the schedule from.");
        return result;
    }
    store::FixedScheduleStore st(db, prev->tbl_nm, code);
    if (!st.tables_exist() || st.particulars().empty()) {
        result.errors.push_back("The fixed-asset schedule of the previous year has no particulars.");
        return result;
    }
    const auto rows = st.particulars();
    std::vector<sched::ParticularInput> inputs;
    for (const auto& r : rows) inputs.push_back({r, st.lines(r.ref_id, 0)});
    const auto figs = sched::particular_figures(inputs, year - 1);
    const auto line = depreciation::half_rate_line(year - 2);

    std::map<long, int> nature_of;  // income-tax BlockGroup -> BlockNo
    for (const auto& b : store::schedule_blocks(db, 2)) nature_of[b.GrpId] = b.BlockNo;
    const auto year_groups = reg.asset_groups();
    std::map<std::string, bool> block_known;
    for (const auto& b : reg.income_tax_blocks()) block_known[b.ID] = true;

    const Date start = fy_first(year - 1);
    std::vector<store::ImportedEntry> entries;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto& f = rows[i];
        const auto& fig = figs[i];
        const double wdv_it = fig.it_considered ? fig.it.RndWdv : 0;
        const double cost = vb_round(fig.books.closing_cost, 2), dep = vb_round(fig.books.closing_dep, 2);
        if (cost == 0 && dep == 0 && wdv_it == 0) continue;
        const std::string where = "Particular " + std::to_string(f.srno) + " (" + f.PART_NM + ")";

        store::ImportedEntry e;
        auto& g = e.group;
        g.Part = f.PART_NM;
        g.RateFA = f.RATE_DEP;
        g.BlockFA = f.CGrpId == store::kNotConsidered ? -1 : f.CGrpId;
        g.BlockIdCL = "-1";
        g.AddlRateIT = f.AddDepRt;
        if (fig.it_considered) {
            g.BlockIdIT = store::it_block_id(nature_of[f.IGrpId], f.compit_rate);
            g.RateIT = f.compit_rate;
            if (!block_known.count(g.BlockIdIT)) {
                result.errors.push_back(where + ", field IGrpId: no income-tax block of this nature at " +
                                        plain_number(f.compit_rate) + "% in F.Y. " +
                                        std::to_string(year - 1) + "-" + std::to_string(year % 100));
                continue;
            }
        } else {
            g.BlockIdIT = "-1";
        }
        const bool slm = f.method_id == 2;
        if (slm && f.RATE_DEP > 0) {
            const double life = 100 / f.RATE_DEP;
            const double rem = frame::GETREMLIFEYRS(log, start.format("ddmmyyyy"), kBaseYear, 2, 0, life);
            g.LifeYrs = rem > 0 ? rem : life;
            g.RateSLM = f.RATE_DEP;
        } else {
            g.RateWDV = f.RATE_DEP;
        }

        auto& o = e.opening;
        o.Part = f.PART_NM;
        o.CostWdv = cost;
        o.OpDepr = dep;
        o.LifeYrs = g.LifeYrs;
        o.RateFACL = f.RATE_DEP;
        o.WdvIT = wdv_it;
        o.RateIT = g.RateIT;
        o.AddlDepRT = f.AddDepRt;
        o.PutDate = start.text();
        // The other half of additional depreciation on last year's late additions.
        for (const auto& a : inputs[i].lines) {
            if (a.ad_ded_id != store::kFdaAddition || a.adddepapp != "1") continue;
            const auto put = Date::parse(a.ad_date);
            if (put && depreciation::is_half_rate_addition(*put, line))
                o.AddlDepOn += sched::addition_amount(a);
        }
        reg::OpeningOpts opts;
        opts.MOD = slm ? "SLM" : "WDV";
        opts.ResDefault = false;
        opts.LifeDefault = false;
        opts.RateDefault = false;
        opts.RateITDefault = false;
        opts.AddlRateDefault = false;
        opts.AutoDepr = f.method_id == 1 || f.method_id == 2;
        opts.AddlDepOn = o.AddlDepOn != 0;
        if (!fig.it_considered) opts.WdvIT = "N";
        if (!opts.AutoDepr) o.DepFACL = f.method_id == 3 ? f.OTH_DEP : 0;
        o.OthOpts = opts.compose();

        // The register's own gate, against the group the entry is written to.
        // (the year's group of the same name, blocks and rates, as the writing matches it)
        const auto same = std::find_if(year_groups.begin(), year_groups.end(), [&g](const auto& y) {
            return y.Part == g.Part && y.BlockIdIT == g.BlockIdIT && y.RateIT == g.RateIT &&
                   y.BlockFA == g.BlockFA && y.RateFA == g.RateFA;
        });
        gate.know_group(-1, same != year_groups.end() ? *same : g);
        o.IdFAGM = -1;
        if (const auto stop = reg::pass_findings(gate.findings(o), answers)) {
            result.answered_no = stop->kind == reg::FindingKind::Question;
            result.errors.push_back(where + ", field " +
                                    reg::column_of(stop->field, reg::EntrySide::Opening) + ": " +
                                    reg::one_line(stop->message) +
                                    (result.answered_no ? " (answered No; --yes answers Yes)" : ""));
            break;
        }
        o.IdFAGM = 0;
        entries.push_back(std::move(e));
    }
    if (!result.errors.empty()) return result;
    if (entries.empty()) {
        result.errors.push_back("Nothing to import: every particular closed at nil.");
        return result;
    }
    reg.ensure_tables();
    store::write_imported_entries(db, code, year, entries);
    std::map<long, bool> groups;
    for (const auto& e : entries) groups[e.group.SrNoFAGM] = true;
    result.entries = static_cast<int>(entries.size());
    result.groups = static_cast<int>(groups.size());
    return result;
}

frmImport::frmImport(frame::Component& component, Ui& ui) : comp_(component), ui_(ui) {}

bool frmImport::cmdImport_Click() {
    auto& base = *comp_.base;
    const std::string second = base.SecondDate();
    const int year = second.size() >= 4 ? std::atoi(second.substr(second.size() - 4).c_str()) : 0;
    if (!ui_.ask_yes_no("Do you want to Import data from Fixed Asset Schedule of Previous Year?",
                        MsgIcon::question, false))
        return false;
    bool done = false;
    frame::stopped_whole(
        comp_.log, ui_, "frmImport", "cmdImport_Click", "The schedule could not be imported.", [&] {
            const auto r =
                import_schedule(base.dbobj(), comp_.log, base.Temp_Code(), year, reg::answers_of(ui_));
            if (r.answered_no) return;
            if (!r.errors.empty()) {
                std::string text;
                for (const auto& e : r.errors) text += e + "\n";
                ui_.info(text);
                return;
            }
            ui_.info("Imported " + std::to_string(r.entries) + " particulars into " +
                     std::to_string(r.groups) + " asset groups.");
            done = true;
        });
    return done;
}

}  // namespace brenlow::exchange
