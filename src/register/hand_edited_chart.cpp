#include "register/hand_edited_chart.h"

#include "controls/vb_date.h"
#include "depreciation/regime_check.h"
#include "store/chart_store.h"

namespace brenlow::reg {

std::vector<depreciation::ChartRow> settle_chart_rows(std::vector<depreciation::ChartRow> rows) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        auto& r = rows[i];
        if (r.Rate == -40) continue;
        const double apart = i + 1 < rows.size() && rows[i + 1].Rate == -40 && rows[i + 1].Grp == r.Grp
                                 ? rows[i + 1].Wdv
                                 : 0.0;
        r.TotDep = r.DeprF + r.DeprH + r.ADeprF + r.ADeprH + r.ADeprOpH;
        // The WDV falls only by the depreciation allowed (section 38, proportionate share).
        r.WdvCl = r.FullAmt + r.HalfAmt + apart - depreciation::allowed_depreciation(r);
    }
    return rows;
}

std::optional<std::string> save_hand_edited_chart(TarrowBase::ClsMain& base, const std::string& code,
                                                  int year, std::vector<depreciation::ChartRow> rows) {
    const auto gate = depreciation::manual_chart_gate(year);
    if (!gate.allowed) return gate.message;
    for (auto& r : rows) {
        r.Code_No = code;
        r.FYr = year;
    }
    auto& db = base.dbobj();
    store::rewrite_hand_edited_chart(db, code, year, settle_chart_rows(std::move(rows)));
    base.SetMiscOthInf("MANDEP", "1", fy_last(year).text(), code, "chart edited by hand");
    store::copy_hand_edited_chart(db, code, year);
    return std::nullopt;
}

std::optional<std::string> clear_hand_edited_chart(TarrowBase::ClsMain& base, const std::string& code,
                                                   int year) {
    const auto gate = depreciation::manual_chart_gate(year);
    if (!gate.allowed) return gate.message;
    store::rewrite_hand_edited_chart(base.dbobj(), code, year, {});
    base.SetMiscOthInf("MANDEP", "0", fy_last(year).text(), code, "chart edited by hand");
    return std::nullopt;
}

}  // namespace brenlow::reg
