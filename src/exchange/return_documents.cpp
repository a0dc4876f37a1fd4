#include "exchange/return_documents.h"

#include <map>
#include <set>

#include "controls/number_format.h"

namespace brenlow::exchange {
namespace {

using Json = nlohmann::ordered_json;

std::int64_t whole(double v) {
    return static_cast<std::int64_t>(mask_value(v, "###0"));
}

// dd/mm/yyyy as the utility's JSON dates, yyyy-mm-dd; empty stays empty.
std::string json_date(const std::string& ddmmyyyy) {
    if (ddmmyyyy.size() != 10) return ddmmyyyy;
    return ddmmyyyy.substr(6, 4) + "-" + ddmmyyyy.substr(3, 2) + "-" + ddmmyyyy.substr(0, 2);
}

Json detail_json(const reg::ScheduleLine& line) {
    const auto& d = line.detail;
    const std::pair<const char*, std::int64_t> all[] = {
        {"WDVFirstDay", d.WDVFirstDay},
        {"AdditionsGrThan180Days", d.AdditionsGrThan180Days},
        {"RealizationTotalPeriod", d.RealizationTotalPeriod},
        {"FullRateDeprAmt", d.FullRateDeprAmt},
        {"AdditionsLessThan180Days", d.AdditionsLessThan180Days},
        {"RealizationPeriodDuringYear", d.RealizationPeriodDuringYear},
        {"HalfRateDeprAmt", d.HalfRateDeprAmt},
        {"DepreciationAtFullRate", d.DepreciationAtFullRate},
        {"DepreciationAtHalfRate", d.DepreciationAtHalfRate},
        {"AddlnDeprOnGT180DayAdditions", d.AddlnDeprOnGT180DayAdditions},
        {"AddlnDeprDuringYearAdditions", d.AddlnDeprDuringYearAdditions},
        {"AddlnDeprOnLessThan180DayAdditions", d.AddlnDeprOnLessThan180DayAdditions},
        {"TotalDepreciation", d.TotalDepreciation},
        {"DepDisAllowUs38_2", d.DepDisAllowUs38_2},
        {"NetAggregateDepreciation", d.NetAggregateDepreciation},
        {"ProportionateAggDepreciation", d.ProportionateAggDepreciation},
        {"ExpdrOnTrforSaleAsset", d.ExpdrOnTrforSaleAsset},
        {"CapGainUs50", d.CapGainUs50},
        {"WDVLastDay", d.WDVLastDay},
    };
    const auto keys = depreciation_detail_keys(line.slot);
    const std::set<std::string> wanted(keys.begin(), keys.end());
    Json out = Json::object();
    for (const auto& [key, value] : all)
        if (wanted.count(key)) out[key] = value;
    return out;
}

struct Totals {
    std::map<reg::ScheduleSlot, std::int64_t> by_slot;
    std::int64_t of(reg::ScheduleSlot s) const {
        const auto it = by_slot.find(s);
        return it == by_slot.end() ? 0 : it->second;
    }
};

Json summary(const Totals& t, const char* plant_key, const char* building_key) {
    using S = reg::ScheduleSlot;
    const std::int64_t plant =
        t.of(S::PlantRate15) + t.of(S::PlantRate30) + t.of(S::PlantRate40) + t.of(S::PlantRate45);
    const std::int64_t building = t.of(S::BuildingRate5) + t.of(S::BuildingRate10) + t.of(S::BuildingRate40);
    Json out = Json::object();
    out[plant_key] = {{"DeprBlockTot15Percent", t.of(S::PlantRate15)},
                      {"DeprBlockTot30Percent", t.of(S::PlantRate30)},
                      {"DeprBlockTot40Percent", t.of(S::PlantRate40)},
                      {"DeprBlockTot45Percent", t.of(S::PlantRate45)},
                      {"TotPlntMach", plant}};
    out[building_key] = {{"DeprBlockTot5Percent", t.of(S::BuildingRate5)},
                         {"DeprBlockTot10Percent", t.of(S::BuildingRate10)},
                         {"DeprBlockTot40Percent", t.of(S::BuildingRate40)},
                         {"TotBuildng", building}};
    out["FurnitureSummary"] = t.of(S::FurnitureRate10);
    out["IntangibleAssetSummary"] = t.of(S::IntangibleRate25);
    out["ShipsSummary"] = t.of(S::ShipsRate20);
    out["TotalDepreciation"] =
        plant + building + t.of(S::FurnitureRate10) + t.of(S::IntangibleRate25) + t.of(S::ShipsRate20);
    return out;
}

}  // namespace

std::vector<std::string> depreciation_detail_keys(reg::ScheduleSlot slot) {
    const auto& info = reg::slot_info(slot);
    if (slot == reg::ScheduleSlot::Land) return {"WDVFirstDay", "WDVLastDay"};
    std::vector<std::string> keys = {"WDVFirstDay", "AdditionsGrThan180Days", "RealizationTotalPeriod",
                                     "FullRateDeprAmt"};
    if (info.half_rate)
        keys.insert(keys.end(),
                    {"AdditionsLessThan180Days", "RealizationPeriodDuringYear", "HalfRateDeprAmt"});
    keys.push_back("DepreciationAtFullRate");
    if (info.half_rate) keys.push_back("DepreciationAtHalfRate");
    if (info.additional)
        keys.insert(keys.end(), {"AddlnDeprOnGT180DayAdditions", "AddlnDeprDuringYearAdditions",
                                 "AddlnDeprOnLessThan180DayAdditions"});
    keys.insert(keys.end(),
                {"TotalDepreciation", "DepDisAllowUs38_2", "NetAggregateDepreciation",
                 "ProportionateAggDepreciation", "ExpdrOnTrforSaleAsset", "CapGainUs50", "WDVLastDay"});
    return keys;
}

Json itr_schedules_json(const reg::ItrSchedules& s) {
    Json dpm = {{"PlantMachinery", Json::object()}};
    Json doa = Json::object();
    Totals depreciation, gains;
    for (const auto& line : s.lines) {
        const auto& info = reg::slot_info(line.slot);
        const Json detail = {{"DepreciationDetail", detail_json(line)}};
        if (info.plant)
            dpm["PlantMachinery"][std::string(info.rate)] = detail;
        else if (info.rate.empty())
            doa[std::string(info.group)] = detail;
        else
            doa[std::string(info.group)][std::string(info.rate)] = detail;
        if (line.slot == reg::ScheduleSlot::Land) continue;
        depreciation.by_slot[line.slot] += reg::depreciation_allowed(line.detail);
        gains.by_slot[line.slot] += line.detail.CapGainUs50;
    }
    Json form = Json::object();
    form["ScheduleDPM"] = dpm;
    form["ScheduleDOA"] = doa;
    form["ScheduleDEP"] = {
        {"SummaryFromDeprSch", summary(depreciation, "PlantMachinerySummary", "BuildingSummary")}};
    form["ScheduleDCG"] = {
        {"SummaryFromDeprSchCG", summary(gains, "PlantMachinerySummaryCG", "BuildingSummaryCG")}};
    return {{"ITR", {{std::string(reg::itr_form_name(s.form)), form}}}};
}

std::vector<std::string> form3cd_refusals(const std::vector<reg::Clause18Block>& blocks) {
    std::vector<std::string> out;
    std::set<std::string> seen;
    for (const auto& b : blocks)
        if (!seen.insert(b.description).second)
            out.push_back("Two blocks are described as " + b.description +
                          "; the audit utility takes each description once.");
    return out;
}

Json form3cd_depreciation_json(const std::vector<reg::Clause18Block>& blocks) {
    Json list = Json::array();
    for (const auto& b : blocks) {
        Json additions = Json::array();
        for (const auto& a : b.additions)
            additions.push_back({{"PurchaseOrSaleDate", json_date(a.purchased)},
                                 {"DatePutToUse", json_date(a.put_to_use)},
                                 {"PurchaseOrSaleValue", whole(a.cost)},
                                 {"TotalPurchaseValue", whole(a.total)}});
        Json deductions = Json::array();
        for (const auto& d : b.deductions)
            deductions.push_back(
                {{"PurchaseOrSaleDate", json_date(d.deducted)}, {"PurchaseOrSaleValue", whole(d.deduction)}});
        list.push_back({{"DescBlockAssets", b.description},
                        {"RateOfDep", b.rate},
                        {"OpeningWDV", whole(b.opening)},
                        {"adjustmentwrittendown", whole(b.adj_ca + b.adj_cb)},
                        {"Additions", additions},
                        {"Deductions", deductions},
                        {"Puttousefor180daysormore", whole(b.put_to_use_180_or_more)},
                        {"Lessthan180", whole(b.less_than_180)},
                        {"TotalPurchaseValue", whole(b.total_additions)},
                        {"TotalDeduction", whole(b.total_deductions)},
                        {"DepAllowable", whole(b.depreciation)},
                        {"WrittenDownVal", whole(b.closing)}});
    }
    return {{"Form3cdDeprAllw", list}};
}

}  // namespace brenlow::exchange
