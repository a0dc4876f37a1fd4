#include "exchange/register_import.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstring>
#include <type_traits>

#include "store/register_bulk.h"

namespace brenlow::exchange {
namespace {

// Every column of a row, in its stored order, to one visitor that packs or unpacks it.
template <class V>
void columns(V& v, store::OpeningRow& o) {
    v.text(o.Code_No);
    v.whole(o.SrNoFATR);
    v.whole(o.IdFAGM);
    v.text(o.Part);
    v.number(o.CostWdv);
    v.number(o.OpDepr);
    v.whole(o.YrCalcCA);
    v.number(o.DepCalcCA);
    v.number(o.ResValue);
    v.number(o.LifeYrs);
    v.number(o.RateFACL);
    v.number(o.WdvIT);
    v.text(o.DetESA);
    v.number(o.RateIT);
    v.number(o.AddlDepRT);
    v.text(o.SaleDate);
    v.number(o.SaleAmt);
    v.number(o.SaleExp);
    v.text(o.ShiftDet);
    v.number(o.DepFACL);
    v.text(o.OthOpts);
    v.text(o.PutDate);
    v.number(o.AddlDepOn);
}

template <class V>
void columns(V& v, store::AdditionRow& a) {
    v.text(a.Code_No);
    v.whole(a.SrNoFATR);
    v.whole(a.IdFAGM);
    v.text(a.Part);
    v.text(a.PutDate);
    v.text(a.AccDate);
    v.number(a.PurAmt);
    v.number(a.ExciseCr);
    v.number(a.CurrDiff);
    v.number(a.Subsidy);
    v.number(a.ResValue);
    v.number(a.LifeYrs);
    v.number(a.RateFACL);
    v.number(a.RateIT);
    v.number(a.AddlDepRT);
    v.text(a.SaleDate);
    v.number(a.SaleAmt);
    v.number(a.SaleExp);
    v.text(a.ShiftDet);
    v.number(a.DepFACL);
    v.text(a.OthOpts);
}

// A text: its length in one byte (255: four bytes of length follow), then its bytes.
// A number: one byte, 0 for nil, else 1 and its eight bytes (the bits as they are).
struct Packer {
    std::string& out;
    void raw(const void* p, std::size_t n) { out.append(static_cast<const char*>(p), n); }
    void text(const std::string& t) {
        if (t.size() < 255) {
            out.push_back(static_cast<char>(t.size()));
        } else {
            out.push_back(static_cast<char>(255));
            const auto n = static_cast<std::uint32_t>(t.size());
            raw(&n, sizeof n);
        }
        out.append(t);
    }
    template <class N>
    void put(const N& x) {
        // Only an exact nil (not -0) goes as nil, so every bit comes back.
        if (x == N{} && !std::signbit(static_cast<double>(x))) {
            out.push_back(0);
        } else {
            out.push_back(1);
            raw(&x, sizeof x);
        }
    }
    void number(double& x) { put(x); }
    void whole(long& x) { put(x); }
};

struct Unpacker {
    const char* p;
    void raw(void* to, std::size_t n) {
        std::memcpy(to, p, n);
        p += n;
    }
    void text(std::string& t) {
        std::uint32_t n = static_cast<unsigned char>(*p++);
        if (n == 255) raw(&n, sizeof n);
        t.assign(p, n);
        p += n;
    }
    template <class N>
    void get(N& x) {
        if (*p++ == 0) {
            x = N{};
        } else {
            raw(&x, sizeof x);
        }
    }
    void number(double& x) { get(x); }
    void whole(long& x) { get(x); }
};

constexpr std::size_t kChunkBytes = std::size_t{1} << 20;
constexpr std::size_t kWriteBatch = 10000;  // rows unpacked at a time for writing

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

template <class RowT>
void PackedRows<RowT>::push_back(const RowT& row) {
    std::string bytes;
    Packer packer{bytes};
    columns(packer, const_cast<RowT&>(row));  // the packer only reads
    if (chunks_.empty() || chunks_.back().size() + bytes.size() > std::max(kChunkBytes, bytes.size())) {
        chunks_.emplace_back();
        chunks_.back().reserve(std::max(kChunkBytes, bytes.size()));
    }
    where_.emplace_back(static_cast<std::uint32_t>(chunks_.size() - 1),
                        static_cast<std::uint32_t>(chunks_.back().size()));
    chunks_.back().append(bytes);
}

template <class RowT>
RowT PackedRows<RowT>::operator[](std::size_t i) const {
    RowT row;
    Unpacker unpacker{chunks_[where_[i].first].data() + where_[i].second};
    columns(unpacker, row);
    return row;
}

template class PackedRows<store::OpeningRow>;
template class PackedRows<store::AdditionRow>;

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
            const store::OpeningRow o = data.openings[i];
            report_findings(reg::row_findings(reg::draft_of(o), context_of(o.IdFAGM), o.ShiftDet, o.DetESA),
                            reg::EntrySide::Opening, i, place, options.yes, errors, result.unanswered);
        }
        for (std::size_t i = 0; i < data.additions.size(); ++i) {
            if (i < data.addition_read.size() && !data.addition_read[i]) continue;
            const store::AdditionRow a = data.additions[i];
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
    // Unpacked and written a batch at a time, all in this one group of writes; the
    // serials go on from batch to batch.
    const auto write_all = [&](const auto& rows, const auto& insert) {
        using RowT = std::decay_t<decltype(rows[0])>;
        std::vector<RowT> batch;
        batch.reserve(std::min<std::size_t>(rows.size(), kWriteBatch));
        for (std::size_t i = 0; i < rows.size(); ++i) {
            batch.push_back(rows[i]);
            batch.back().IdFAGM = target_group(batch.back().IdFAGM);
            if (batch.size() == kWriteBatch || i + 1 == rows.size()) {
                insert(db, code, year, batch);
                batch.clear();
            }
        }
    };
    write_all(data.openings, [](auto&... a) { store::insert_openings(a...); });
    write_all(data.additions, [](auto&... a) { store::insert_additions(a...); });
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
