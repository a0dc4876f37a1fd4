#include "register/itr_schedules.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "controls/number_format.h"
#include "depreciation/amount_text.h"
#include "depreciation/chart.h"
#include "register/chart_report.h"
#include "store/client_store.h"

namespace brenlow::reg {
namespace {

constexpr std::int64_t kMostRupees = 99'999'999'999'999;

constexpr std::array<SlotInfo, 11> kSlots{{
    {ScheduleSlot::PlantRate15, true, "PlantMachinery", "Rate15", 15, true, true},
    {ScheduleSlot::PlantRate30, true, "PlantMachinery", "Rate30", 30, true, true},
    {ScheduleSlot::PlantRate40, true, "PlantMachinery", "Rate40", 40, true, true},
    {ScheduleSlot::PlantRate45, true, "PlantMachinery", "Rate45", 45, false, false},
    {ScheduleSlot::Land, false, "Land", "", 0, false, false},
    {ScheduleSlot::BuildingRate5, false, "Building", "Rate5", 5, true, false},
    {ScheduleSlot::BuildingRate10, false, "Building", "Rate10", 10, true, false},
    {ScheduleSlot::BuildingRate40, false, "Building", "Rate40", 40, true, false},
    {ScheduleSlot::FurnitureRate10, false, "FurnitureFittings", "Rate10", 10, true, false},
    {ScheduleSlot::IntangibleRate25, false, "IntangibleAssets", "Rate25", 25, true, false},
    {ScheduleSlot::ShipsRate20, false, "Ships", "Rate20", 20, true, false},
}};

bool same_rate(double a, double b) {
    return std::fabs(a - b) < 1e-9;
}

// Whole rupees, halves away from zero, as the chart prints them.
std::int64_t whole(double rupees) {
    return static_cast<std::int64_t>(mask_value(rupees, "###0"));
}

std::string rupees_text(std::int64_t v) {
    return format_mask(static_cast<double>(v), "#,##0");
}

DepreciationDetail detail_of(const depreciation::ChartRow& r) {
    DepreciationDetail d;
    d.WDVFirstDay = whole(r.Wdv);
    d.AdditionsGrThan180Days = whole(r.Add1);
    d.RealizationTotalPeriod = whole(r.Cons1);
    d.FullRateDeprAmt = whole(r.FullAmt);
    d.AdditionsLessThan180Days = whole(r.Add2);
    d.RealizationPeriodDuringYear = whole(r.Cons2);
    d.HalfRateDeprAmt = whole(r.HalfAmt);
    d.DepreciationAtFullRate = whole(r.DeprF);
    d.DepreciationAtHalfRate = whole(r.DeprH);
    d.AddlnDeprOnGT180DayAdditions = whole(r.ADeprF);
    d.AddlnDeprDuringYearAdditions = whole(r.ADeprH);
    d.AddlnDeprOnLessThan180DayAdditions = whole(r.ADeprOpH);
    d.TotalDepreciation = whole(r.TotDep);
    d.DepDisAllowUs38_2 = whole(r.Dep38);
    d.NetAggregateDepreciation = std::max<std::int64_t>(0, d.TotalDepreciation - d.DepDisAllowUs38_2);
    d.ProportionateAggDepreciation = whole(r.PropDep);
    d.ExpdrOnTrforSaleAsset = whole(r.Exp);
    d.CapGainUs50 = whole(r.CG);
    d.WDVLastDay = whole(r.WdvCl);
    return d;
}

void add_into(DepreciationDetail& to, const DepreciationDetail& d) {
    to.WDVFirstDay += d.WDVFirstDay;
    to.AdditionsGrThan180Days += d.AdditionsGrThan180Days;
    to.RealizationTotalPeriod += d.RealizationTotalPeriod;
    to.FullRateDeprAmt += d.FullRateDeprAmt;
    to.AdditionsLessThan180Days += d.AdditionsLessThan180Days;
    to.RealizationPeriodDuringYear += d.RealizationPeriodDuringYear;
    to.HalfRateDeprAmt += d.HalfRateDeprAmt;
    to.DepreciationAtFullRate += d.DepreciationAtFullRate;
    to.DepreciationAtHalfRate += d.DepreciationAtHalfRate;
    to.AddlnDeprOnGT180DayAdditions += d.AddlnDeprOnGT180DayAdditions;
    to.AddlnDeprDuringYearAdditions += d.AddlnDeprDuringYearAdditions;
    to.AddlnDeprOnLessThan180DayAdditions += d.AddlnDeprOnLessThan180DayAdditions;
    to.TotalDepreciation += d.TotalDepreciation;
    to.DepDisAllowUs38_2 += d.DepDisAllowUs38_2;
    to.NetAggregateDepreciation += d.NetAggregateDepreciation;
    to.ProportionateAggDepreciation += d.ProportionateAggDepreciation;
    to.ExpdrOnTrforSaleAsset += d.ExpdrOnTrforSaleAsset;
    to.CapGainUs50 += d.CapGainUs50;
    to.WDVLastDay += d.WDVLastDay;
}

struct Field {
    const char* key;
    int item;  // of the plant and machinery schedule
    std::int64_t DepreciationDetail::*member;
};

constexpr std::array<Field, 19> kFields{{
    {"WDVFirstDay", 3, &DepreciationDetail::WDVFirstDay},
    {"AdditionsGrThan180Days", 4, &DepreciationDetail::AdditionsGrThan180Days},
    {"RealizationTotalPeriod", 5, &DepreciationDetail::RealizationTotalPeriod},
    {"FullRateDeprAmt", 6, &DepreciationDetail::FullRateDeprAmt},
    {"AdditionsLessThan180Days", 7, &DepreciationDetail::AdditionsLessThan180Days},
    {"RealizationPeriodDuringYear", 8, &DepreciationDetail::RealizationPeriodDuringYear},
    {"HalfRateDeprAmt", 9, &DepreciationDetail::HalfRateDeprAmt},
    {"DepreciationAtFullRate", 10, &DepreciationDetail::DepreciationAtFullRate},
    {"DepreciationAtHalfRate", 11, &DepreciationDetail::DepreciationAtHalfRate},
    {"AddlnDeprOnGT180DayAdditions", 12, &DepreciationDetail::AddlnDeprOnGT180DayAdditions},
    {"AddlnDeprDuringYearAdditions", 13, &DepreciationDetail::AddlnDeprDuringYearAdditions},
    {"AddlnDeprOnLessThan180DayAdditions", 14, &DepreciationDetail::AddlnDeprOnLessThan180DayAdditions},
    {"TotalDepreciation", 15, &DepreciationDetail::TotalDepreciation},
    {"DepDisAllowUs38_2", 16, &DepreciationDetail::DepDisAllowUs38_2},
    {"NetAggregateDepreciation", 17, &DepreciationDetail::NetAggregateDepreciation},
    {"ProportionateAggDepreciation", 18, &DepreciationDetail::ProportionateAggDepreciation},
    {"ExpdrOnTrforSaleAsset", 19, &DepreciationDetail::ExpdrOnTrforSaleAsset},
    {"CapGainUs50", 20, &DepreciationDetail::CapGainUs50},
    {"WDVLastDay", 21, &DepreciationDetail::WDVLastDay},
}};

bool is_half_rate_item(int item) {
    return item == 7 || item == 8 || item == 9 || item == 11;
}
bool is_additional_item(int item) {
    return item >= 12 && item <= 14;
}

// The return's own checks on one line, each refusal naming the block, the item and
// the figure.
void check_line(const ScheduleLine& line, std::vector<std::string>& refusals) {
    const auto& info = slot_info(line.slot);
    const auto& d = line.detail;
    const std::string where = line.block + ": ";
    for (const auto& f : kFields) {
        const std::int64_t v = d.*(f.member);
        const std::string name = std::string(f.key) + " (item " + std::to_string(f.item) + ")";
        if (v != 0 && !info.half_rate && is_half_rate_item(f.item))
            refusals.push_back(where + name + " is " + rupees_text(v) +
                               "; the schedule's line has no half-rate items.");
        else if (v != 0 && !info.additional && is_additional_item(f.item))
            refusals.push_back(where + name + " is " + rupees_text(v) +
                               "; the schedule's line takes no additional depreciation.");
        if (f.member == &DepreciationDetail::CapGainUs50 ? std::llabs(v) > kMostRupees
                                                         : (v < 0 || v > kMostRupees))
            refusals.push_back(where + name + " is " + rupees_text(v) +
                               "; the return takes 0 to 99,999,999,999,999 rupees.");
    }
    const auto expect = [&](const char* key, int item, std::int64_t got, std::int64_t want,
                            const char* formula) {
        if (got != want)
            refusals.push_back(where + key + " (item " + std::to_string(item) + ") is " + rupees_text(got) +
                               "; the return's formula " + formula + " gives " + rupees_text(want) + ".");
    };
    if (line.slot == ScheduleSlot::Land) return;  // only its first and last WDV
    const std::int64_t full_base = d.WDVFirstDay + d.AdditionsGrThan180Days - d.RealizationTotalPeriod;
    expect("FullRateDeprAmt", 6, d.FullRateDeprAmt, std::max<std::int64_t>(0, full_base), "max(0, 3+4-5)");
    const std::int64_t half_base =
        d.AdditionsLessThan180Days - d.RealizationPeriodDuringYear + std::min<std::int64_t>(0, full_base);
    expect("HalfRateDeprAmt", 9, d.HalfRateDeprAmt, std::max<std::int64_t>(0, half_base),
           "max(0, 7-8+min(0, 3+4-5))");
    expect("DepreciationAtFullRate", 10, d.DepreciationAtFullRate,
           whole(static_cast<double>(d.FullRateDeprAmt) * info.percent / 100), "6 x rate / 100");
    expect("DepreciationAtHalfRate", 11, d.DepreciationAtHalfRate,
           whole(static_cast<double>(d.HalfRateDeprAmt) * info.percent / 200), "9 x rate / 200");
    expect("TotalDepreciation", 15, d.TotalDepreciation,
           d.DepreciationAtFullRate + d.DepreciationAtHalfRate + d.AddlnDeprOnGT180DayAdditions +
               d.AddlnDeprDuringYearAdditions + d.AddlnDeprOnLessThan180DayAdditions,
           "10+11+12+13+14");
    expect("NetAggregateDepreciation", 17, d.NetAggregateDepreciation,
           std::max<std::int64_t>(0, d.TotalDepreciation - d.DepDisAllowUs38_2), "max(0, 15-16)");
    // The block ceases when nothing is left to depreciate: then the gain (or the loss)
    // is what was realised beyond the block; otherwise there is none.
    const bool ceases = d.FullRateDeprAmt + d.HalfRateDeprAmt == 0;
    expect("CapGainUs50", 20, d.CapGainUs50,
           ceases ? d.RealizationTotalPeriod + d.RealizationPeriodDuringYear - d.WDVFirstDay -
                        d.AdditionsGrThan180Days - d.AdditionsLessThan180Days - d.ExpdrOnTrforSaleAsset
                  : 0,
           ceases ? "5+8-3-4-7-19" : "(nil while the block goes on)");
    expect("WDVLastDay", 21, d.WDVLastDay,
           std::max<std::int64_t>(0, d.FullRateDeprAmt + d.HalfRateDeprAmt - d.TotalDepreciation),
           "max(0, 6+9-15)");
}

}  // namespace

std::string_view itr_form_name(ItrForm form) {
    switch (form) {
        case ItrForm::ITR3:
            return "ITR3";
        case ItrForm::ITR5:
            return "ITR5";
        case ItrForm::ITR6:
            break;
    }
    return "ITR6";
}

std::optional<ItrForm> itr_form_of_name(std::string_view name) {
    for (const ItrForm f : {ItrForm::ITR3, ItrForm::ITR5, ItrForm::ITR6})
        if (itr_form_name(f) == name) return f;
    if (name == "ITR-3") return ItrForm::ITR3;
    if (name == "ITR-5") return ItrForm::ITR5;
    if (name == "ITR-6") return ItrForm::ITR6;
    return std::nullopt;
}

ItrForm itr_form_of_kind(AssesseeKind kind) {
    switch (kind) {
        case AssesseeKind::Individual:
        case AssesseeKind::HUF:
            return ItrForm::ITR3;
        case AssesseeKind::Company:
            return ItrForm::ITR6;
        default:
            return ItrForm::ITR5;
    }
}

bool under_act_2025(int closing_year) {
    return closing_year >= kFirstTaxYear2025Act;
}

std::string return_schema_unknown(int closing_year) {
    if (!under_act_2025(closing_year)) return {};
    return "The return forms of tax year " + year_span(closing_year) +
           " under the Income-tax Act, 2025 have no published schema yet: nothing was written.";
}

const SlotInfo& slot_info(ScheduleSlot slot) {
    for (const auto& s : kSlots)
        if (s.slot == slot) return s;
    return kSlots.front();
}

std::optional<ScheduleSlot> slot_of(int grp, double rate) {
    const auto pick =
        [rate](std::initializer_list<std::pair<double, ScheduleSlot>> slots) -> std::optional<ScheduleSlot> {
        for (const auto& [r, s] : slots)
            if (same_rate(r, rate)) return s;
        return std::nullopt;
    };
    switch (grp) {
        case 1:
            return pick({{5, ScheduleSlot::BuildingRate5},
                         {10, ScheduleSlot::BuildingRate10},
                         {40, ScheduleSlot::BuildingRate40}});
        case 2:
            return pick({{10, ScheduleSlot::FurnitureRate10}});
        case 3:
            return pick({{15, ScheduleSlot::PlantRate15},
                         {30, ScheduleSlot::PlantRate30},
                         {40, ScheduleSlot::PlantRate40},
                         {45, ScheduleSlot::PlantRate45}});
        case 4:
            return pick({{25, ScheduleSlot::IntangibleRate25}});
        case 5:
            return pick({{20, ScheduleSlot::ShipsRate20}});
        default:
            return std::nullopt;
    }
}

std::int64_t depreciation_allowed(const DepreciationDetail& d) {
    return d.ProportionateAggDepreciation > 0 ? d.ProportionateAggDepreciation : d.NetAggregateDepreciation;
}

ItrBuild itr_schedules(const CalculationResult& run, ItrForm form) {
    ItrBuild out;
    out.schedules.year = run.year;
    out.schedules.form = form;
    std::map<ScheduleSlot, ScheduleLine> lines;
    const auto put = [&](ScheduleSlot slot, const std::string& block, const DepreciationDetail& d) {
        auto [it, fresh] = lines.try_emplace(slot, ScheduleLine{slot, block, d});
        if (!fresh) {
            it->second.block += ", " + block;
            add_into(it->second.detail, d);
        }
    };
    // Land has no chart row: its line carries the block's first and last WDV.
    for (const auto& b : run.income_tax.blocks) {
        if (depreciation::chart_group(b.block_name, b.rate) != 0 || b.entries == 0) continue;
        DepreciationDetail d;
        d.WDVFirstDay = whole(b.opening_wdv - b.adj_earlier);
        d.WDVLastDay = whole(b.RndWdv);
        put(ScheduleSlot::Land, b.block_name + " @ " + depreciation::rate_trimmed(b.rate) + "%", d);
    }
    std::string last_block;
    for (const auto& line : chart_lines(run)) {
        const auto& r = *line.row;
        if (r.Rate == -40) {
            // Additions not yet put to use: in the block's closing WDV, in neither of the
            // amounts depreciated. The return has no item for them.
            out.refusals.push_back(last_block + ": " + rupees_text(whole(r.Wdv)) +
                                   " of additions not yet put to use is in the closing WDV; the return's "
                                   "schedule has no item for it.");
            continue;
        }
        const std::string block = line.block + " @ " + depreciation::rate_trimmed(r.Rate) + "%";
        last_block = block;
        const auto slot = slot_of(r.Grp, r.Rate);
        if (!slot) {
            out.refusals.push_back("The block " + line.block + " at " + depreciation::rate_trimmed(r.Rate) +
                                   "% has no line in the return's schedules of depreciation.");
            continue;
        }
        put(*slot, block, detail_of(r));
    }
    for (auto& [slot, line] : lines) {
        check_line(line, out.refusals);
        out.schedules.lines.push_back(std::move(line));
    }
    std::sort(out.schedules.lines.begin(), out.schedules.lines.end(),
              [](const ScheduleLine& a, const ScheduleLine& b) { return a.slot < b.slot; });
    return out;
}

std::vector<std::string> regime_refusals(const ItrSchedules& s, const ReturnRegime& regime) {
    std::vector<std::string> out;
    // Whether a concessional regime is in force for this assessee and year: the chart's
    // own check asked about one rupee of additional depreciation.
    const auto in_force =
        depreciation::concessional_regime_check(s.year, regime.kind, regime.flags, {1, 0, 0}, false);
    if (!in_force.refused) return out;
    for (const auto& l : s.lines) {
        const auto& d = l.detail;
        const std::int64_t additional = d.AddlnDeprOnGT180DayAdditions + d.AddlnDeprDuringYearAdditions +
                                        d.AddlnDeprOnLessThan180DayAdditions;
        if (additional != 0)
            out.push_back(in_force.message + " " + l.block + ": additional depreciation of " +
                          rupees_text(additional) + " (items 12 to 14).");
        if (slot_info(l.slot).percent > 40 && d.TotalDepreciation != 0)
            out.push_back(l.block + ": depreciation of " + rupees_text(d.TotalDepreciation) +
                          " at a rate above 40% is not allowed under a concessional regime.");
    }
    return out;
}

ItrBuild return_schedules(TarrowBase::ClsMain& base, const std::string& code, int year,
                          std::optional<ItrForm> form) {
    ItrBuild out;
    if (const auto unknown = return_schema_unknown(year); !unknown.empty()) {
        out.refusals.push_back(unknown);
        return out;
    }
    auto& db = base.dbobj();
    const ReturnRegime regime{store::assessee_kind_of_client(db, code, base.vStatus_Read()),
                              {base.vFlagCompDom115BA(), base.vFlagIndHUF115BAC(), base.vFlagCopSoc115BAD(),
                               base.vFlagCopSoc115BAE()}};
    CalculationOptions options;
    options.keep_entries = false;
    options.sheets = false;
    const auto run = run_calculation(db, code, year, Mode::DEP_IT, false, options);
    if (run.no_assets) {
        out.refusals.push_back("No Assets Available !");
        return out;
    }
    out = itr_schedules(run, form.value_or(itr_form_of_kind(regime.kind)));
    for (auto& r : regime_refusals(out.schedules, regime)) out.refusals.push_back(std::move(r));
    return out;
}

}  // namespace brenlow::reg
