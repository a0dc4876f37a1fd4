#include "register/entry_gate.h"

#include <cctype>

#include "controls/number_format.h"

namespace brenlow::reg {
namespace {

std::string upper(std::string_view s) {
    std::string out(s);
    for (auto& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return out;
}

}  // namespace

RuleAnswers answers_of(Ui& ui) {
    return {[&ui](const Finding& q) { return ui.ask_yes_no(q.message, MsgIcon::question, q.default_yes); },
            [&ui](const Finding& n) { ui.info(n.message); }};
}

RuleAnswers answered_beforehand(bool yes, std::vector<std::string>* heard) {
    return {[yes, heard](const Finding& q) {
                if (yes && heard) heard->push_back(one_line(q.message) + " Yes");
                return yes;
            },
            [heard](const Finding& n) {
                if (heard) heard->push_back(one_line(n.message));
            }};
}

std::string one_line(std::string_view message) {
    std::string out;
    for (std::size_t i = 0; i < message.size(); ++i) {
        if (message.compare(i, 2, "\n\n") == 0) {
            out += ' ';
            ++i;
        } else {
            out += message[i] == '\n' ? ' ' : message[i];
        }
    }
    return out;
}

std::optional<Finding> pass_findings(const std::vector<Finding>& findings, const RuleAnswers& answers) {
    for (const auto& f : findings) {
        switch (f.kind) {
            case FindingKind::Notice:
                if (answers.tell) answers.tell(f);
                break;
            case FindingKind::Refusal:
                return f;
            case FindingKind::Question:
                if (!answers.ask || !answers.ask(f)) return f;
                break;
        }
    }
    return std::nullopt;
}

std::optional<std::string> group_difference(const store::AssetGroupRow& y, const store::AssetGroupRow& o) {
    if (upper(y.Part) != upper(o.Part)) return "Part";
    if (y.BlockIdIT != o.BlockIdIT) return "BlockIdIT";
    if (y.RateIT != o.RateIT) return "RateIT";
    if (y.AddlRateIT != o.AddlRateIT) return "AddlRateIT";
    if (y.BlockFA != o.BlockFA) return "BlockFA";
    if (y.RateFA != o.RateFA) return "RateFA";
    if (y.BlockIdCL != o.BlockIdCL) return "BlockIdCL";
    if (y.LifeYrs != o.LifeYrs) return "LifeYrs";
    if (y.RateSLM != o.RateSLM) return "RateSLM";
    if (y.RateWDV != o.RateWDV) return "RateWDV";
    return std::nullopt;
}

EntryGate::EntryGate(store::RegisterStore& reg, std::optional<std::string> options_row)
    : reg_(reg),
      options_(RegisterOptions::parse(options_row ? *options_row : reg.options_row().value_or(""))) {
    for (auto& g : reg_.asset_groups()) groups_[g.SrNoFAGM] = std::move(g);
}

bool EntryGate::old_chart() {
    if (!old_chart_) old_chart_ = reg_.tables_exist() && reg_.has_old_chart_marker();
    return *old_chart_;
}

void EntryGate::know_group(long id, const store::AssetGroupRow& group) {
    groups_[id] = group;
}

EntryContext EntryGate::context_of(long group_id) {
    EntryContext ctx;
    ctx.year = reg_.year();
    ctx.options = options_;
    const auto g = groups_.find(group_id);
    ctx.group_known = g != groups_.end();
    if (ctx.group_known) {
        const std::string& cl = g->second.BlockIdCL;
        const auto known = nesd_.find(cl);
        ctx.nesd = known != nesd_.end() ? known->second
                                        : (nesd_[cl] = !cl.empty() && cl != "-1" && reg_.nesd_of(cl) == "Y");
    }
    return ctx;
}

std::vector<Finding> EntryGate::findings(const store::OpeningRow& o) {
    return row_findings(draft_of(o), context_of(o.IdFAGM), o.ShiftDet, o.DetESA);
}

std::vector<Finding> EntryGate::findings(const store::AdditionRow& a) {
    return row_findings(draft_of(a), context_of(a.IdFAGM), a.ShiftDet, "");
}

}  // namespace brenlow::reg
