#include "depreciation/companies_act_sheet.h"

#include "controls/number_format.h"

namespace brenlow::depreciation {
namespace {

std::string money(double x) {
    return format_mask(x, "#,##0.00");
}

const char* method_name(CaMethod m) {
    switch (m) {
        case CaMethod::WDV:
            return "WRITTEN DOWN VALUE";
        case CaMethod::SLM:
            return "STRAIGHT LINE METHOD";
        case CaMethod::None:
            break;
    }
    return "NO DEPRECIATION";
}

}  // namespace

std::vector<CaSheetRow> companies_act_sheet(const CaRunInput& in, const CaRunResult& res) {
    std::vector<CaSheetRow> rows;
    const std::string fy = std::to_string(in.year - 1) + "-" + std::to_string(in.year % 100 + 100).substr(1);
    rows.push_back({CaSheetRowKind::Title, {"CALCULATION SHEET FOR DEPRECIATION ON FIXED ASSETS"}});
    rows.push_back({CaSheetRowKind::Heading, {"Depreciation Calculation", "F.Y. " + fy}});
    if (in.entries.empty()) {
        rows.push_back({CaSheetRowKind::Empty, {"No Assets Available."}});
        return rows;
    }
    rows.push_back({CaSheetRowKind::ColumnHeadings,
                    {"Particulars", "Date of Put to Use", "Cost", "Opening", "Addition", "Deduction",
                     "Dep. Upto 31/03/" + std::to_string(in.year - 1), "Depreciation", "Residual Value",
                     "Remaining Life / Useful Life", "WDV / Carrying Amount", "Rate (%)"}});

    struct Group {
        AssetClass cls;
        const char* title;
    };
    static constexpr Group kGroups[] = {{AssetClass::Tangible, "Tangible Assets"},
                                        {AssetClass::Intangible, "Intangible Assets"},
                                        {AssetClass::NonDepreciable, "Non-Depreciable Assets"}};
    double cost = 0, opening = 0, addition = 0, deduction = 0, op_dep = 0, depr = 0, residual = 0,
           closing = 0;
    for (const Group& g : kGroups) {
        bool headed = false;
        for (std::size_t i = 0; i < in.entries.size(); ++i) {
            const CaEntry& e = in.entries[i];
            if (e.asset_class != g.cls) continue;
            const CaAssetResult& r = res.assets[i];
            if (!headed) {
                rows.push_back({CaSheetRowKind::Group, {g.title}});
                headed = true;
            }
            const std::string rate = format_mask(r.rate, "###0.00");
            rows.push_back({CaSheetRowKind::EntryHeading,
                            {e.particulars, "Method of Depreciation", method_name(e.method),
                             "Useful Life (Years): " + plain_number(e.life_yrs) +
                                 (e.method == CaMethod::SLM ? "; Rate (SLM): " : "; Rate (WDV): ") + rate,
                             // "Calculated for 365 Days": the days the year's depreciation is prorated over.
                             r.days_text}});
            const double dep_to_date = e.kind == EntryKind::Opening ? e.op_dep : 0;
            rows.push_back({CaSheetRowKind::Figures,
                            {e.particulars, e.put_date, money(e.cost), money(r.opening), money(r.addition),
                             money(r.deduction), money(dep_to_date), money(r.depreciation), money(r.residual),
                             plain_number(r.remaining_life) + " / " + plain_number(e.life_yrs),
                             money(r.closing), rate}});
            if (r.dep_on_deduction != 0)
                rows.push_back(
                    {CaSheetRowKind::Deduction, {"Depreciation of Deduction", money(r.dep_on_deduction)}});
            cost += e.cost;
            opening += r.opening;
            addition += r.addition;
            deduction += r.deduction;
            op_dep += dep_to_date;
            depr += r.depreciation;
            residual += r.residual;
            closing += r.closing;
        }
    }
    rows.push_back({CaSheetRowKind::GrandTotal,
                    {"Grand Total", "", money(cost), money(opening), money(addition), money(deduction),
                     money(op_dep), money(depr), money(residual), "", money(closing), ""}});
    return rows;
}

}  // namespace brenlow::depreciation
