// Income-tax depreciation worked on the written down value of each block of assets.
#include <algorithm>
#include <cstdlib>
#include <unordered_map>

#include "controls/number_format.h"
#include "depreciation/amount_text.h"
#include "depreciation/half_rate_line.h"
#include "depreciation/income_tax.h"

namespace brenlow::depreciation {
namespace {

// Whole rupees, halves away from zero: the income-tax figures of the sheet and chart.
double whole_rupees(double amount) {
    return mask_value(amount, "###0");
}

// Whole rupees, but never above `cap` nor below nil: a charge on a part that holds
// paise (1,000.60 at 100%) must not round the part below nil.
double whole_rupees_within(double amount, double cap) {
    double r = whole_rupees(std::min(amount, cap));
    if (r > cap) r -= 1;
    return std::max(0.0, r);
}

// One additional-depreciation rate inside a block, with the cost of the eligible
// additions on each side of the half-rate line.
struct AddlLine {
    double rate = 0;
    double full_base = 0;
    double half_base = 0;
};

struct BlockWork {
    double deductions = 0;
    double carried_raw = 0;  // sum of AddlDepOn x AddlDepRT / 2 / 100 of the opening rows
    bool anything = false;   // any amount at all in the block
    Date max_ded{};
    bool has_ded_date = false;
    std::vector<AddlLine> addl;
};

bool has_sale(const ItEntry& e) {
    return e.sale_amt != 0 || !e.sale_date.empty();
}

// Pushes a negative part onto the next one, so that a shortfall in the full-rate part
// reduces what the half-rate part and then the part kept apart carry.
void carry_shortfall(double& from, double& to) {
    if (from < 0) {
        to += from;
        from = 0;
    }
}

bool chart_group_is_plant(const std::string& name) {
    return name == "MACHINERY AND PLANT" || name == "PLANT AND MACHINERY" || name == "PLANT AND MACHINARY";
}

double id_order_value(const std::string& id) {
    return std::strtod(id.c_str(), nullptr);
}

void explain_block(ItBlockResult& b, double addl_raw_carry_out) {
    std::string& t = b.DeprCalcDet;
    if (b.block_nil) {
        t = "Block nil: balance " + rupees(b.balance1 + b.balance2 + b.balance3) + " less expenses " +
            rupees(b.expenses) + " = capital gain / (loss) " + rupees(b.profit_loss) + "; no depreciation";
        return;
    }
    t = "WDV " + rupees(b.full_on_bal1) + " x " + rate_trimmed(b.rate) + "% = " + rupees(b.depr_full);
    if (b.full_on_bal2 != 0)
        t += "; addition " + rupees(b.full_on_bal2) + " used < 180 days x " + rate_trimmed(b.rate / 2) +
             "% = " + rupees(b.depr_half);
    if (b.addl_on_bal1 != 0)
        t += "; additional on " + rupees(b.addl_on_bal1) + " x " + rate_trimmed(b.addl_rate) +
             "% = " + rupees(b.addl_full);
    if (b.addl_on_bal2 != 0)
        t += "; additional on " + rupees(b.addl_on_bal2) + " used < 180 days x " +
             rate_trimmed(b.addl_rate / 2) + "% = " + rupees(b.addl_half) + ", remaining half " +
             rupees(whole_rupees(addl_raw_carry_out)) + " carried to next year";
    if (b.ADeprOpH != 0) t += "; remaining half of additional brought forward = " + rupees(b.ADeprOpH);
    if (b.balance3 > 0) t += "; not put to use " + rupees(b.balance3) + " without depreciation";
}

void finish_block(ItBlockResult& b, BlockWork& w, int year, WarningLog& log, bool explain) {
    const double wdv_after = b.opening_wdv - b.adj_earlier;
    // Kept as brought, also where the block ends nil and nothing of it is charged.
    b.DeprHalfOnOP = whole_rupees(w.carried_raw);

    // Professional practice: deductions are set first against the full-rate part (opening
    // WDV plus full-rate additions); only the excess reduces the half-rate additions, and
    // what is left after both goes to the part kept apart (additions not yet put to use),
    // where an excess over everything shows as a negative balance.
    double rest = w.deductions;
    b.deduction1 = std::clamp(rest, 0.0, std::max(0.0, wdv_after + b.addition1));
    rest -= b.deduction1;
    b.deduction2 = std::clamp(rest, 0.0, std::max(0.0, b.addition2));
    rest -= b.deduction2;
    b.deduction3 = rest;
    b.balance1 = wdv_after + b.addition1 - b.deduction1;
    b.balance2 = b.addition2 - b.deduction2;
    b.balance3 = b.addition3 - b.deduction3;
    const double balance = b.balance1 + b.balance2 + b.balance3;
    if (w.has_ded_date) b.MaxDedDt = w.max_ded.text();

    // The current year's adjustment of other assets comes off the balance like a deduction.
    const double on_block = balance - b.adj_current;

    // A block whose balance is nil or negative ends nil: the negative balance is a
    // short-term capital gain, less the expenses on transfer. A negative balance without
    // a transfer in the year (a negative opening WDV, an adjustment larger than the block)
    // is one too: the block cannot go below nil. Practice also ends a block whose every
    // asset is sold or deducted while a balance remains: the block has ceased, and that
    // balance (with the expenses) is a capital loss.
    const bool transferred = w.deductions > 0 || w.has_ded_date;
    const bool ceased = on_block > 0 && b.assets_not_sold == 0 && transferred;
    if ((on_block <= 0 && transferred) || on_block < 0 || ceased) {
        b.block_nil = true;
        b.status = "BLOCKNIL";
        b.profit_loss = -on_block - b.expenses;
        if (explain) explain_block(b, 0);
        return;
    }
    if (on_block == 0) {
        // Nothing left to depreciate: "(No Asset)" when no asset of the block is held,
        // "(Nil WDV)" when assets are held at a nil WDV.
        b.status = b.assets_not_sold == 0 ? "(No Asset)" : "(Nil WDV)";
        return;
    }

    double full = b.balance1, half = b.balance2, apart = b.balance3;
    carry_shortfall(full, half);
    carry_shortfall(half, apart);
    // The current year's adjustment of other assets eats the full-rate part first.
    full -= b.adj_current;
    carry_shortfall(full, half);
    carry_shortfall(half, apart);
    b.full_on_bal1 = full;
    b.full_on_bal2 = half;

    const double depr_full_raw = full * b.rate / 100;
    const double depr_half_raw = half * (b.rate / 2) / 100;
    b.depr_full = whole_rupees_within(depr_full_raw, full);
    b.depr_half = whole_rupees_within(depr_half_raw, half);

    // Additional depreciation on the cost of eligible additions, never on more than the
    // part still holds after deductions.
    double room_full = full, room_half = half, addl_full_raw = 0, addl_half_raw = 0, largest = 0;
    for (const AddlLine& a : w.addl) {
        const double base_full = std::min(a.full_base, room_full);
        const double base_half = std::min(a.half_base, room_half);
        room_full -= base_full;
        room_half -= base_half;
        b.addl_on_bal1 += base_full;
        b.addl_on_bal2 += base_half;
        addl_full_raw += base_full * a.rate / 100;
        addl_half_raw += base_half * (a.rate / 2) / 100;
        if (base_full + base_half > largest) {
            largest = base_full + base_half;
            b.addl_rate = a.rate;
        }
    }
    // Never more than normal depreciation leaves of each part (a 100% block with 20%
    // additional would otherwise write the block below nil).
    addl_full_raw = std::min(addl_full_raw, std::max(0.0, full - b.depr_full));
    addl_half_raw = std::min(addl_half_raw, std::max(0.0, half - b.depr_half));
    b.addl_full = whole_rupees_within(addl_full_raw, full - b.depr_full);
    b.addl_half = whole_rupees_within(addl_half_raw, half - b.depr_half);
    // The other half of the half-rate additional depreciation belongs to the next year;
    // the carry-forward begins with the additions of the year closing in 2015.
    if (year >= 2015) b.carried_half_out = b.addl_half;

    // The remaining half brought from last year is charged from the year closing in 2017.
    // The year closing in 2016 is the first that could receive one; there it is left as an
    // input only. Earlier years have none to receive.
    double carried_raw = 0;
    if (year == 2016 && b.DeprHalfOnOP > 0) {
        log.raise(
            WarningKind::CarriedHalfNotCalculated,
            "Additional Depreciation (Remaining Half from Addition in Previous F.Y. used for less than 180 "
            "days) will not be calculated ! Only available for Input as Clarification is required from ITD "
            "for the applicability for A.Y. 2016-17 !");
    } else if (year > 2016 && b.DeprHalfOnOP > 0) {
        // The carried half is depreciation like the rest: never more than the block bears
        // after this year's normal and additional depreciation (the part not yet put to use
        // apart). What it cannot bear is lost, as the Act allows it in the next year only.
        const double room =
            std::max(0.0, full + half - b.depr_full - b.depr_half - b.addl_full - b.addl_half);
        b.ADeprOpH = whole_rupees_within(b.DeprHalfOnOP, room);
        carried_raw = b.ADeprOpH == b.DeprHalfOnOP ? w.carried_raw : b.ADeprOpH;
        b.carried_half_lost = b.DeprHalfOnOP - b.ADeprOpH;
    }
    if (b.ADeprOpH != 0)
        b.carried_note =
            "Note: Additional depreciation of Rs. " + rupees(b.ADeprOpH) +
            " relating to addition of assets during immediately preceding year put to use for less "
            "than 180 days is included in Col. 'Depreciation @ Normal Rate'.";

    b.TotDepr = b.depr_full + b.depr_half + b.addl_full + b.addl_half + b.ADeprOpH;
    const double raw_total = depr_full_raw + depr_half_raw + addl_full_raw + addl_half_raw + carried_raw;
    // The rounding adjustments stay whole on the block's line: the block, not the asset,
    // is what is depreciated, so they are not spread over its entries.
    b.DeprN_RND_Adj = (b.depr_full + b.depr_half) - (depr_full_raw + depr_half_raw);
    b.DeprA_RND_Adj =
        (b.addl_full + b.addl_half + b.ADeprOpH) - (addl_full_raw + addl_half_raw + carried_raw);
    b.ClWDV_NoRND = full + half + apart - raw_total;
    b.RndWdv = full + half + apart - b.TotDepr;
    if (b.RndWdv == 0) b.status = "(Nil WDV)";
    if (explain) explain_block(b, addl_half_raw);
}

}  // namespace

std::string merged_plant_block(std::string_view block_id, int year) {
    if (year != 2018 || block_id.substr(0, 2) != "3-") return {};
    const std::string rate(block_id.substr(2));
    char* end = nullptr;
    const double r = std::strtod(rate.c_str(), &end);
    if (end == rate.c_str() || *end != '\0' || !(r > 40)) return {};
    return "3-40";
}

double profit_on_sale(const ItEntry& entry) {
    // A partial deduction sells nothing: the asset is kept.
    if (!has_sale(entry) || entry.partial_deduction) return 0;
    return entry.sale_amt - entry.sale_exp - entry.wdv_cost;
}

ItRunResult calculate_income_tax(const ItRunInput& input) {
    ItRunResult result;
    WarningLog log(input.interactive);
    result.half_rate_line = half_rate_line(input.year - 1);
    const Date line = result.half_rate_line;

    std::unordered_map<std::string_view, std::size_t> master_of;
    master_of.reserve(input.blocks.size() * 2);
    for (std::size_t i = 0; i < input.blocks.size(); ++i) master_of.emplace(input.blocks[i].id, i);
    std::vector<std::size_t> block_of_master(input.blocks.size(), static_cast<std::size_t>(-1));
    std::vector<BlockWork> work;

    if (input.keep_rows) result.rows.reserve(input.entries.size());
    std::size_t counted = 0;  // entries that count under the Act, kept as rows or not
    for (std::size_t i = 0; i < input.entries.size(); ++i) {
        const ItEntry& e = input.entries[i];
        if (e.block_id == "-1") continue;  // group not considered under the Income-tax Act
        auto found = master_of.find(e.block_id);
        bool merged = false;
        if (found == master_of.end()) {
            // The year closing in 2018 looks the rate of plant above 40% up again: 40%.
            const std::string into = merged_plant_block(e.block_id, input.year);
            if (!into.empty()) found = master_of.find(into);
            if (found == master_of.end()) continue;
            merged = true;
        }
        std::size_t& slot = block_of_master[found->second];
        if (slot == static_cast<std::size_t>(-1)) {
            slot = result.blocks.size();
            const ItBlockMaster& m = input.blocks[found->second];
            result.blocks.push_back(ItBlockResult{});
            result.blocks.back().block_id = m.id;
            result.blocks.back().block_name = m.name;
            result.blocks.back().rate = m.rate;
            work.emplace_back();
        }
        ItBlockResult& b = result.blocks[slot];
        BlockWork& w = work[slot];
        ++b.entries;

        ItWorkingRow row;
        row.entry = i;
        row.block = slot;
        row.WdvCost = e.wdv_cost;
        row.AddlRt = e.addl_rate;
        row.OthAdjAmtOP = e.adj_earlier;
        row.OthAdjAmt = e.adj_current;
        const bool deducted = has_sale(e);
        const bool sold = deducted && !e.partial_deduction;
        if (e.kind == EntryKind::Opening) {
            row.Type_0123 = 0;
            row.part = BlockPart::Opening;
            b.opening_wdv += e.wdv_cost;
            if (input.year == 2018 && b.rate == 40 && chart_group_is_plant(b.block_name)) {
                // The opening WDV of the merged 40% block, by where it comes from.
                row.from_higher_rate = merged || e.from_higher_rate || e.rate_before > 40;
                (row.from_higher_rate ? b.OpWdvHR40PM : b.OpWdvUK40PM) += e.wdv_cost;
            }
            if (e.wdv_cost < 0)
                log.raise(WarningKind::NegativeOpeningWdv,
                          "Please check Entries with Negative Opening WDV !");
            const double carried = e.addl_dep_on * (e.addl_rate / 2) / 100;
            w.carried_raw += carried;
            if (carried != 0) row.DeprHalfOnOP = whole_rupees(carried);
        } else {
            row.Type_0123 = 1;
            const auto put = Date::parse(e.put_date);
            if (!put) {
                row.part = BlockPart::NotPutToUse;
                b.addition3 += e.wdv_cost;
            } else if (is_half_rate_addition(*put, line)) {
                row.part = BlockPart::HalfRate;
                b.addition2 += e.wdv_cost;
            } else {
                row.part = BlockPart::FullRate;
                b.addition1 += e.wdv_cost;
            }
            // Additional depreciation is for new plant put to use and still held at the year end.
            if (e.addl_rate > 0 && !sold && row.part != BlockPart::NotPutToUse) {
                auto line_of = std::find_if(w.addl.begin(), w.addl.end(),
                                            [&](const AddlLine& a) { return a.rate == e.addl_rate; });
                if (line_of == w.addl.end())
                    line_of = w.addl.insert(w.addl.end(), AddlLine{e.addl_rate, 0, 0});
                (row.part == BlockPart::FullRate ? line_of->full_base : line_of->half_base) += e.wdv_cost;
                if (row.part == BlockPart::HalfRate && input.year >= 2015) row.AddlDepOnNext = e.wdv_cost;
            }
        }
        b.adj_earlier += e.adj_earlier;
        b.adj_current += e.adj_current;
        if (e.wdv_cost != 0 || e.sale_amt != 0 || e.addl_dep_on != 0) w.anything = true;
        if (deducted) {
            row.SaleAmt = e.sale_amt;
            row.SaleExp = e.sale_exp;
            row.DedAmt = e.sale_amt;
            row.ProfitOnSale = profit_on_sale(e);
            w.deductions += e.sale_amt;
            b.expenses += e.sale_exp;
            if (const auto d = Date::parse(e.sale_date); d && (!w.has_ded_date || *d > w.max_ded)) {
                w.max_ded = *d;
                w.has_ded_date = true;
            }
        }
        if (!sold && e.asset_exists) ++b.assets_not_sold;
        row.BalAmt = row.WdvCost - row.DedAmt;
        ++counted;
        if (input.keep_rows) result.rows.push_back(row);
    }

    if (counted == 0) {
        result.no_assets = true;
        log.raise(WarningKind::NoAssets, "No Assets Available !");
        result.warnings = log.take();
        return result;
    }

    for (std::size_t k = 0; k < result.blocks.size(); ++k)
        finish_block(result.blocks[k], work[k], input.year, log, input.explain);

    // Order blocks by block and rate, and the working rows with them (a counting sort:
    // the rows keep their register order inside a block).
    std::vector<std::size_t> order(result.blocks.size());
    for (std::size_t k = 0; k < order.size(); ++k) order[k] = k;
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t c) {
        const ItBlockResult& x = result.blocks[a];
        const ItBlockResult& y = result.blocks[c];
        const double vx = id_order_value(x.block_id), vy = id_order_value(y.block_id);
        if (vx != vy) return vx < vy;
        if (x.block_id != y.block_id) return x.block_id < y.block_id;
        return x.rate < y.rate;
    });
    // When the blocks are in order and each block's rows already stand together (a run
    // of one block always does), nothing moves and the rows are not copied.
    const bool in_order =
        std::is_sorted(order.begin(), order.end()) &&
        std::is_sorted(result.rows.begin(), result.rows.end(),
                       [](const ItWorkingRow& x, const ItWorkingRow& y) { return x.block < y.block; });
    if (!in_order) {
        std::vector<std::size_t> new_index(order.size());
        std::vector<ItBlockResult> sorted;
        sorted.reserve(order.size());
        for (std::size_t pos = 0; pos < order.size(); ++pos) {
            new_index[order[pos]] = pos;
            sorted.push_back(std::move(result.blocks[order[pos]]));
        }
        result.blocks = std::move(sorted);
        std::vector<std::size_t> start(order.size() + 1, 0);
        for (const ItWorkingRow& r : result.rows) ++start[new_index[r.block] + 1];
        for (std::size_t k = 1; k < start.size(); ++k) start[k] += start[k - 1];
        std::vector<ItWorkingRow> rows(result.rows.size());
        for (ItWorkingRow& r : result.rows) {
            r.block = new_index[r.block];
            rows[start[r.block]++] = r;
        }
        result.rows = std::move(rows);
    }

    for (const ItBlockResult& b : result.blocks) result.net_capital_gain += b.profit_loss;
    result.warnings = log.take();
    return result;
}

double block_figure(const ItBlockResult& b, std::string_view key) {
    struct Key {
        std::string_view name;
        double ItBlockResult::*field;
    };
    static constexpr Key kKeys[] = {
        {"Opening WDV", &ItBlockResult::opening_wdv},   {"Addition1", &ItBlockResult::addition1},
        {"Deduction1", &ItBlockResult::deduction1},     {"Balance1", &ItBlockResult::balance1},
        {"Addition2", &ItBlockResult::addition2},       {"Deduction2", &ItBlockResult::deduction2},
        {"Balance2", &ItBlockResult::balance2},         {"Addition3", &ItBlockResult::addition3},
        {"Deduction3", &ItBlockResult::deduction3},     {"Balance3", &ItBlockResult::balance3},
        {"FullOnBal1", &ItBlockResult::full_on_bal1},   {"FullOnBal2", &ItBlockResult::full_on_bal2},
        {"AddlOnBal1", &ItBlockResult::addl_on_bal1},   {"AddlOnBal2", &ItBlockResult::addl_on_bal2},
        {"Closing WDV", &ItBlockResult::RndWdv},        {"Expenses", &ItBlockResult::expenses},
        {"Profit/(Loss)", &ItBlockResult::profit_loss}, {"AddlRate", &ItBlockResult::addl_rate},
    };
    if (key == "No. of Assets Not Sold/Deducted") return b.assets_not_sold;
    for (const Key& k : kKeys)
        if (k.name == key) return b.*(k.field);
    return 0;
}

}  // namespace brenlow::depreciation
