#include "depreciation/chart.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "controls/number_format.h"

namespace brenlow::depreciation {
namespace {

bool one_of(double rate, std::initializer_list<double> rates) {
    return std::any_of(rates.begin(), rates.end(), [rate](double r) { return std::fabs(rate - r) < 1e-9; });
}

std::string upper_trimmed(std::string_view s) {
    while (!s.empty() && s.front() == ' ') s.remove_prefix(1);
    while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
    std::string out(s);
    for (char& c : out)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return out;
}

}  // namespace

int chart_group(std::string_view block_name, double rate) {
    const std::string name = upper_trimmed(block_name);
    if (name == "LAND") return 0;  // recognised first: land is not depreciated and gets no row
    // Building: 5 and 10, and the temporary-erection rate (100, later 40); any other rate
    // goes with the other blocks.
    if (name == "BUILDING" || name == "BUILDINGS") return one_of(rate, {5, 10, 40, 100}) ? 1 : 6;
    // Furniture: 10, and 15 before the year beginning in 2005.
    if (name == "FURNITURE AND FITTINGS") return one_of(rate, {10, 15}) ? 2 : 6;
    // Machinery and plant: 15, 30, 40 and the older rates of the Appendix (20, 25, 45, 50,
    // 60, 80, 100). The block master spells the nature "PLANT AND MACHINARY".
    if (name == "MACHINERY AND PLANT" || name == "PLANT AND MACHINERY" || name == "PLANT AND MACHINARY")
        return one_of(rate, {15, 30, 40, 20, 25, 45, 50, 60, 80, 100}) ? 3 : 6;
    if (name == "INTANGIBLE ASSETS") return one_of(rate, {25}) ? 4 : 6;
    // Ships: 20, and 25 up to the year beginning in 2004.
    if (name == "SHIPS") return one_of(rate, {20, 25}) ? 5 : 6;
    return 6;
}

bool use_hand_edited_chart(bool allow_hand_edited, std::string_view MANDEP) {
    return allow_hand_edited && MANDEP == "1";
}

std::vector<ChartRow> chart_rows_from_blocks(std::string_view code, int year, const ItRunResult& run) {
    std::vector<ChartRow> rows;
    rows.reserve(run.blocks.size() * 2);
    for (const ItBlockResult& b : run.blocks) {
        const int grp = chart_group(b.block_name, b.rate);
        if (grp == 0) continue;
        ChartRow r;
        r.Code_No = std::string(code);
        r.FYr = year;
        r.Grp = grp;
        r.Rate = b.rate;
        r.Wdv = b.opening_wdv - b.adj_earlier;  // after the adjustments of earlier years
        r.WdvOpHR = b.OpWdvHR40PM;
        // A block that ends nil charges nothing: an addition of it not yet put to use is
        // listed with the other additions.
        r.Add1 = b.addition1 + (b.block_nil ? b.addition3 : 0);
        r.Add2 = b.addition2;
        r.Cons2 = b.deduction2;
        const double apart = kept_apart(b);
        if (!b.block_nil) {
            r.FullAmt = b.full_on_bal1;
            r.HalfAmt = b.full_on_bal2;
        }
        // The chart has no column for the part kept apart nor for the current year's
        // adjustment of other assets: what was set against the block beyond the half-rate
        // deductions shows against the full-rate part, so that the row adds up: Wdv + Add1
        // - Cons1 + Add2 - Cons2 is FullAmt + HalfAmt (the part kept apart on its Rate -40
        // row), or, for a block that ends nil, the negative balance that is its gain with
        // the expenses.
        const double set_against = b.block_nil ? -(b.profit_loss + b.expenses) : r.FullAmt + r.HalfAmt;
        r.Cons1 = vb_round(r.Wdv + r.Add1 + r.Add2 - r.Cons2 - set_against, 2);  // to the paisa
        r.DeprF = b.depr_full;
        r.DeprH = b.depr_half;
        r.ADeprF = b.addl_full;
        r.ADeprH = b.addl_half;
        r.ADeprOpH = b.ADeprOpH;
        r.TotDep = b.TotDepr;
        r.Exp = b.expenses;
        r.CG = b.profit_loss;
        r.WdvCl = b.RndWdv;
        rows.push_back(r);
        // The Rate -40 row carries the part of the block kept apart from depreciation
        // (additions not yet put to use, less what was set against them). It is in WdvCl
        // but in neither FullAmt nor HalfAmt, so the return lists it on its own line; it is
        // written only when that part holds a positive amount.
        if (apart >= 0.005) {  // a paisa and more; less is what the arithmetic leaves
            ChartRow kept;
            kept.Code_No = r.Code_No;
            kept.FYr = year;
            kept.Grp = grp;
            kept.Rate = -40;
            kept.Wdv = apart;
            rows.push_back(kept);
        }
    }
    return rows;
}

double kept_apart(const ItBlockResult& b) {
    if (b.block_nil) return 0;
    return vb_round(b.RndWdv + b.TotDepr - b.full_on_bal1 - b.full_on_bal2, 2);
}

double allowed_depreciation(const ChartRow& r) {
    const double net = r.TotDep - r.Dep38;
    return r.PropDep != 0 ? std::min(r.PropDep, net) : net;
}

}  // namespace brenlow::depreciation
