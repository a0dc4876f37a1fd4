#include "exchange/asset_merge.h"

#include <algorithm>
#include <optional>

#include "depreciation/half_rate_line.h"
#include "frame/stopped_whole.h"
#include "register/entry_rules.h"
#include "register/register_options.h"
#include "register/register_text.h"
#include "store/fixed_schedule_store.h"
#include "store/register_store.h"

namespace brenlow::exchange {
namespace {

std::optional<Date> date_of(const std::string& text) {
    return Date::parse(text);
}

// Earliest / latest of two stored dates; an empty one gives way.
std::string earlier(const std::string& a, const std::string& b) {
    const auto x = date_of(a), y = date_of(b);
    if (!x) return b;
    if (!y) return a;
    return *y < *x ? b : a;
}
std::string later(const std::string& a, const std::string& b) {
    const auto x = date_of(a), y = date_of(b);
    if (!x) return b;
    if (!y) return a;
    return *y > *x ? b : a;
}

template <class Row>
std::string common_refusal(const std::vector<Row>& rows, std::size_t wanted) {
    if (wanted < 2) return "Select at least two entries to merge.";
    if (rows.size() != wanted) return "Some of the selected entries do not exist.";
    for (const auto& r : rows) {
        if (r.IdFAGM != rows.front().IdFAGM) return "Entries of one asset group only can be merged.";
        if (r.RateIT != rows.front().RateIT || r.AddlDepRT != rows.front().AddlDepRT)
            return "Entries with different Income-tax or Additional Depreciation rates can not be merged.";
        if (r.SaleDate.empty() != rows.front().SaleDate.empty())
            return "Sold and unsold entries can not be merged.";
        // Extra shifts are worked per asset by the days of each shift row: one merged
        // entry cannot hold two different sets of rows.
        if (store::unpack_rows(r.ShiftDet, ",") != store::unpack_rows(rows.front().ShiftDet, ","))
            return "Entries with different extra-shift details can not be merged.";
    }
    return {};
}

// The adjustment rows of every entry merged, in the order the entries were chosen. When
// each entry gives one gross amount, the merged entry gives their sum as one gross
// amount; otherwise the rows (a gross row among them) are kept as rows.
std::string merged_det_esa(const std::vector<store::OpeningRow>& rows, bool& gross) {
    gross = true;
    double total = 0;
    std::vector<std::vector<std::string>> kept;
    for (const auto& o : rows) {
        const auto own = store::unpack_rows(o.DetESA, reg::kESASep);
        if (own.empty()) continue;
        if (!reg::OpeningOpts::parse(o.OthOpts).TotESA) gross = false;
        total += reg::det_esa_adjustment(o.DetESA);
        kept.insert(kept.end(), own.begin(), own.end());
    }
    if (kept.empty()) {
        gross = reg::OpeningOpts::parse(rows.front().OthOpts).TotESA;
        return {};
    }
    if (gross) kept = {{"(Gross)", "", "", "", "", plain_number(total)}};
    return store::pack_rows(kept, reg::kESASep);
}

}  // namespace

MergeResult merge_entries(store::Database& db, const std::string& code, int year, MergeSide side,
                          const std::vector<long>& serials, const reg::RuleAnswers& answers) {
    MergeResult out;
    store::RegisterStore reg(db, code, year);
    reg::EntryGate gate(reg);
    if (gate.old_chart()) {
        out.refusal = reg::kOldChartRefusal;
        return out;
    }
    // The merged entry as the rules see it: a refusal or a No merges nothing.
    const auto refused = [&](const auto& merged) {
        if (const auto stop = reg::pass_findings(gate.findings(merged), answers)) {
            out.refusal = stop->message;
            out.answered_no = stop->kind == reg::FindingKind::Question;
            return true;
        }
        return false;
    };
    if (side == MergeSide::Opening) {
        std::vector<store::OpeningRow> rows;
        for (const long s : serials)
            for (auto& o : reg.opening_entries())
                if (o.SrNoFATR == s) rows.push_back(o);
        out.refusal = common_refusal(rows, serials.size());
        if (!out.refusal.empty()) return out;
        for (const auto& o : rows) {
            if (reg::OpeningOpts::wdv_it(o.OthOpts) != reg::OpeningOpts::wdv_it(rows.front().OthOpts)) {
                out.refusal = "Entries with different Income-tax treatment can not be merged.";
                return out;
            }
            // The depreciation to date of the carrying amount is added up only when it is
            // taken to the same year for every entry.
            if (o.YrCalcCA != rows.front().YrCalcCA) {
                out.refusal = "Entries with different years for the carrying amount can not be merged.";
                return out;
            }
        }
        store::OpeningRow m = rows.front();
        auto opts = reg::OpeningOpts::parse(m.OthOpts);
        for (std::size_t i = 1; i < rows.size(); ++i) {
            const auto& o = rows[i];
            m.CostWdv += o.CostWdv;
            m.OpDepr += o.OpDepr;
            m.DepCalcCA += o.DepCalcCA;
            m.ResValue += o.ResValue;
            m.WdvIT += o.WdvIT;
            m.SaleAmt += o.SaleAmt;
            m.SaleExp += o.SaleExp;
            m.DepFACL += o.DepFACL;
            m.AddlDepOn += o.AddlDepOn;
            m.PutDate = earlier(m.PutDate, o.PutDate);
            m.SaleDate = later(m.SaleDate, o.SaleDate);
            // A residual value typed for any of them is the merged entry's typed value.
            const auto own = reg::OpeningOpts::parse(o.OthOpts);
            if (!own.ResDefault) opts.ResDefault = false;
            if (own.AddlDepOn) opts.AddlDepOn = true;
        }
        m.DetESA = merged_det_esa(rows, opts.TotESA);
        m.OthOpts = opts.compose();
        if (refused(m)) return out;
        store::merge_opening_entries(db, code, year, serials, m);
    } else {
        std::vector<store::AdditionRow> rows;
        for (const long s : serials)
            for (auto& a : reg.addition_entries())
                if (a.SrNoFATR == s) rows.push_back(a);
        out.refusal = common_refusal(rows, serials.size());
        if (!out.refusal.empty()) return out;
        const auto line = depreciation::half_rate_line(year - 1);
        const auto part = [&line](const store::AdditionRow& a) {
            const auto d = date_of(a.PutDate);
            return !d ? 0 : depreciation::is_half_rate_addition(*d, line) ? 2 : 1;
        };
        for (const auto& a : rows)
            if (part(a) != part(rows.front())) {
                out.refusal = "Additions put to use before and after the half-rate date can not be merged.";
                return out;
            }
        store::AdditionRow m = rows.front();
        auto opts = reg::AdditionOpts::parse(m.OthOpts);
        for (std::size_t i = 1; i < rows.size(); ++i) {
            const auto& a = rows[i];
            m.PurAmt += a.PurAmt;
            m.ExciseCr += a.ExciseCr;
            m.CurrDiff += a.CurrDiff;
            m.Subsidy += a.Subsidy;
            m.ResValue += a.ResValue;
            m.SaleAmt += a.SaleAmt;
            m.SaleExp += a.SaleExp;
            m.DepFACL += a.DepFACL;
            m.PutDate = earlier(m.PutDate, a.PutDate);
            m.AccDate = earlier(m.AccDate, a.AccDate);
            m.SaleDate = later(m.SaleDate, a.SaleDate);
            if (!reg::AdditionOpts::parse(a.OthOpts).ResDefault) opts.ResDefault = false;
        }
        m.OthOpts = opts.compose();
        if (refused(m)) return out;
        store::merge_addition_entries(db, code, year, serials, m);
    }
    out.serial = serials.front();
    return out;
}

frmmerge::frmmerge(frame::Component& component, Ui& ui) : comp_(component), ui_(ui) {}

bool frmmerge::cmdMerge_Click() {
    auto& base = *comp_.base;
    const std::string second = base.SecondDate();
    const int year = second.size() >= 4 ? std::atoi(second.substr(second.size() - 4).c_str()) : 0;
    if (!ui_.ask_yes_no("Do you want to Merge Selected Assets?", MsgIcon::question, false)) return false;
    bool done = false;
    frame::stopped_whole(
        comp_.log, ui_, "frmmerge", "cmdMerge_Click", "The entries could not be merged.", [&] {
            const auto r =
                merge_entries(base.dbobj(), base.Temp_Code(), year, side, chosen, reg::answers_of(ui_));
            if (!r.refusal.empty()) {
                // A question answered No was the person's own answer: nothing more to say.
                if (!r.answered_no) ui_.info(r.refusal);
                return;
            }
            ui_.info("Merged!!");
            done = true;
        });
    return done;
}

}  // namespace brenlow::exchange
