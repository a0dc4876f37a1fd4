#include "exchange/register_import.h"

#include <cctype>

#include "store/register_bulk.h"

namespace brenlow::exchange {
namespace {

std::string upper(std::string s) {
    for (auto& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

// The findings of one entry as the import's error lines: everything up to the first
// refusal, and a question too unless the person answered Yes beforehand.
void report_findings(const std::vector<reg::Finding>& findings, reg::EntrySide side, std::size_t index,
                     const FindingPlace& place, bool yes, std::vector<std::string>& errors, int& unanswered) {
    for (const auto& f : findings) {
        if (f.kind == reg::FindingKind::Notice) continue;
        if (f.kind == reg::FindingKind::Question && yes) continue;
        // The box's blank line between a refusal and "Continue ?" reads as one line here.
        std::string message;
        for (std::size_t i = 0; i < f.message.size(); ++i) {
            if (f.message.compare(i, 2, "\n\n") == 0) {
                message += ' ';
                ++i;
            } else {
                message += f.message[i];
            }
        }
        if (f.kind == reg::FindingKind::Question) {
            message += " (answered No; --yes answers Yes)";
            ++unanswered;
        }
        errors.push_back(place(side, index, f.field) + ": " + message);
        return;
    }
}

}  // namespace

ImportResult check_and_write(store::Database& db, const std::string& code, int year, RegisterData data,
                             const ImportOptions& options, const FindingPlace& place,
                             std::vector<std::string> errors) {
    ImportResult result;
    store::RegisterStore reg(db, code, year);
    const auto target_groups = reg.asset_groups();

    // Every entry through the register's own rules, as the screen would check it.
    {
        reg::EntryContext base_ctx;
        base_ctx.year = year;
        base_ctx.options =
            reg::RegisterOptions::parse(data.misc_inf ? *data.misc_inf : reg.options_row().value_or(""));
        std::map<long, const store::AssetGroupRow*> group_rows;
        for (const auto& g : target_groups) group_rows[g.SrNoFAGM] = &g;
        for (const auto& [id, g] : data.groups) group_rows[id] = &g;
        std::map<std::string, bool> nesd;  // BlockIdCL -> no extra shift
        const auto context_of = [&](long group) {
            reg::EntryContext ctx = base_ctx;
            const auto g = group_rows.find(group);
            ctx.group_known = g != group_rows.end();
            if (ctx.group_known) {
                const std::string& cl = g->second->BlockIdCL;
                if (!nesd.count(cl)) nesd[cl] = !cl.empty() && reg.nesd_of(cl) == "Y";
                ctx.nesd = nesd[cl];
            }
            return ctx;
        };
        for (std::size_t i = 0; i < data.openings.size(); ++i) {
            if (i < data.opening_read.size() && !data.opening_read[i]) continue;
            const auto& o = data.openings[i];
            report_findings(reg::row_findings(reg::draft_of(o), context_of(o.IdFAGM), o.ShiftDet, o.DetESA),
                            reg::EntrySide::Opening, i, place, options.yes, errors, result.unanswered);
        }
        for (std::size_t i = 0; i < data.additions.size(); ++i) {
            if (i < data.addition_read.size() && !data.addition_read[i]) continue;
            const auto& a = data.additions[i];
            report_findings(reg::row_findings(reg::draft_of(a), context_of(a.IdFAGM), a.ShiftDet, ""),
                            reg::EntrySide::Addition, i, place, options.yes, errors, result.unanswered);
        }
    }
    if (!errors.empty()) {
        result.errors = std::move(errors);
        return result;
    }

    std::map<std::string, long> existing;  // upper-cased name -> SrNoFAGM of the target year
    for (const auto& g : target_groups) existing[upper(g.Part)] = g.SrNoFAGM;
    store::Transaction tx(db);
    if (options.replace) {
        reg.delete_all_openings(std::nullopt);
        reg.delete_all_additions(std::nullopt);
    }
    std::map<long, long> id_map;  // the reader's group -> target group
    for (const auto& [doc_id, g] : data.groups) {
        const std::string key = upper(g.Part);
        if (const auto it = existing.find(key); it != existing.end()) {
            id_map[doc_id] = it->second;
            ++result.groups_matched;
        } else {
            id_map[doc_id] = reg.find_or_create_group(g);
            existing[key] = id_map[doc_id];
            ++result.groups_created;
        }
    }
    auto target_group = [&](long id) { return id_map.count(id) ? id_map[id] : id; };
    for (auto& o : data.openings) o.IdFAGM = target_group(o.IdFAGM);
    for (auto& a : data.additions) a.IdFAGM = target_group(a.IdFAGM);
    store::insert_openings(db, code, year, data.openings);
    store::insert_additions(db, code, year, data.additions);
    if (data.misc_inf) {
        reg.rewrite_options_row(*data.misc_inf);
        result.options_written = true;
    }
    if (data.has_manual && (options.replace || !data.manual.empty())) {
        for (auto& [group, amount] : data.manual) group = group == -1 ? -1 : target_group(group);
        reg.rewrite_manual_depreciation(data.manual);
    }
    tx.commit();
    result.openings = static_cast<int>(data.openings.size());
    result.additions = static_cast<int>(data.additions.size());
    return result;
}

}  // namespace brenlow::exchange
