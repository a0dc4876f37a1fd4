#include "exchange/register_import.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstring>
#include <type_traits>

#include "register/entry_gate.h"
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

// One entry through the gate: the refusal (or the question answered No) as the import's
// error line; the questions answered Yes and the notices as lines the command names.
void judge(const std::vector<reg::Finding>& findings, reg::EntrySide side, std::size_t index,
           const FindingPlace& place, bool yes, ImportResult& result, std::vector<std::string>& errors) {
    std::vector<std::string> heard;
    const auto stop = reg::pass_findings(findings, reg::answered_beforehand(yes, &heard));
    for (const auto& h : heard)
        result.answered.push_back(place(side, index, reg::EntryField::Part) + ": " + h);
    if (!stop) return;
    std::string message = reg::one_line(stop->message);
    if (stop->kind == reg::FindingKind::Question) {
        message += " (answered No; --yes answers Yes)";
        ++result.unanswered;
    }
    errors.push_back(place(side, index, stop->field) + ": " + message);
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
    reg::EntryGate gate(reg, data.misc_inf);
    if (gate.old_chart()) {
        result.errors.push_back(reg::kOldChartRefusal);
        return result;
    }

    // The document's groups against the year's: one of the same name must be classified
    // alike (else the rows are refused, or with new_groups it is made anew); one the year
    // lacks is made. Rows are then checked against the group they will be written to.
    std::map<std::string, const store::AssetGroupRow*> by_name;  // upper-cased name -> year's group
    const auto target_groups = reg.asset_groups();
    for (const auto& g : target_groups) by_name.emplace(upper(g.Part), &g);
    std::map<long, const store::AssetGroupRow*> matched;  // the reader's group -> the year's
    for (const auto& [doc_id, g] : data.groups) {
        const auto it = by_name.find(upper(g.Part));
        if (it == by_name.end()) {
            gate.know_group(doc_id, g);
            continue;
        }
        const auto differs = reg::group_difference(*it->second, g);
        if (!differs) {
            matched[doc_id] = it->second;
            gate.know_group(doc_id, *it->second);
        } else if (options.new_groups) {
            gate.know_group(doc_id, g);
        } else {
            errors.push_back("NewFAGM row " + std::to_string(doc_id) + ", field " + *differs +
                             ": the year's asset group \"" + it->second->Part +
                             "\" is classified otherwise (--new-groups makes a group of its own)");
        }
    }

    // Every entry through the register's own gate, as the screen would check it.
    for (std::size_t i = 0; i < data.openings.size(); ++i) {
        if (i < data.opening_read.size() && !data.opening_read[i]) continue;
        judge(gate.findings(data.openings[i]), reg::EntrySide::Opening, i, place, options.yes, result,
              errors);
    }
    for (std::size_t i = 0; i < data.additions.size(); ++i) {
        if (i < data.addition_read.size() && !data.addition_read[i]) continue;
        judge(gate.findings(data.additions[i]), reg::EntrySide::Addition, i, place, options.yes, result,
              errors);
    }
    if (!errors.empty()) {
        result.errors = std::move(errors);
        result.answered.clear();
        return result;
    }

    store::Transaction tx(db);
    if (options.replace) {
        reg.delete_all_openings(std::nullopt);
        reg.delete_all_additions(std::nullopt);
    }
    std::map<long, long> id_map;  // the reader's group -> target group
    for (const auto& [doc_id, g] : data.groups) {
        if (const auto m = matched.find(doc_id); m != matched.end()) {
            id_map[doc_id] = m->second->SrNoFAGM;
            ++result.groups_matched;
        } else {
            id_map[doc_id] = reg.find_or_create_group(g);
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
