#include "depreciation/companies_act_rate.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "controls/number_format.h"

namespace brenlow::depreciation {

double residual_value(double base) {
    return 0.05 * base;
}

std::optional<AutoRate> auto_rate(double base, double residual, double life, CaMethod method,
                                  ResidualBasis basis) {
    if (base == 0 || !(life > 0) || !(residual < base)) return std::nullopt;
    double rate = 0;
    if (method == CaMethod::WDV) {
        if (!(residual > 0)) return std::nullopt;
        // The ratio goes into the power unrounded; only the rate itself is rounded.
        rate = (1 - std::pow(residual / base, 1 / life)) * 100;
    } else if (method == CaMethod::SLM) {
        if (residual < 0) return std::nullopt;
        rate = ((base - residual) / base) * 100 / life;
    } else {
        return std::nullopt;
    }
    const char* mask = basis == ResidualBasis::Cost ? "###0.00" : "###0.0000";
    AutoRate out;
    out.text = format_mask(rate, mask);
    // The rate as read back from its text: the nearest double to it, as mask_value gives.
    std::from_chars(out.text.data(), out.text.data() + out.text.size(), out.value);
    return out;
}

int depreciation_days(int closing_year, const std::optional<Date>& put_to_use,
                      const std::optional<Date>& sale) {
    if (!put_to_use) return 0;
    const Date first = std::max(*put_to_use, fy_first_day(closing_year));
    Date last = fy_last_day(closing_year);
    if (sale && *sale <= last) last = sale->plus_days(-1);
    const long days = days_between(first, last) + 1;
    return days > 0 ? static_cast<int>(days) : 0;
}

std::string days_text(int days) {
    return "Calculated for " + std::to_string(days) + " Day" + (days > 1 ? "s" : "");
}

std::string shift_days_text(int days, int shift) {
    static constexpr const char* kWords[] = {"Single", "Double", "Triple"};
    const char* word = shift >= 1 && shift <= 3 ? kWords[shift - 1] : kWords[0];
    return days_text(days) + " (" + word + " Shift)";
}

ShiftDays shift_days(std::string_view shift_det, const Date& first, const Date& last) {
    ShiftDays out;
    while (!shift_det.empty()) {
        const auto bar = shift_det.find('|');
        const std::string_view row = shift_det.substr(0, bar);
        shift_det = bar == std::string_view::npos ? std::string_view{} : shift_det.substr(bar + 1);
        const auto c1 = row.find(',');
        const auto c2 = c1 == std::string_view::npos ? c1 : row.find(',', c1 + 1);
        if (c2 == std::string_view::npos) continue;
        const auto from = Date::parse(row.substr(0, c1));
        const auto to = Date::parse(row.substr(c1 + 1, c2 - c1 - 1));
        const std::string_view shift = row.substr(c2 + 1);
        if (!from || !to || (shift != "2" && shift != "3")) continue;
        out.any_extra = true;
        const long days = days_between(std::max(*from, first), std::min(*to, last)) + 1;
        if (days <= 0) continue;
        (shift == "2" ? out.double_days : out.triple_days) += static_cast<int>(days);
    }
    return out;
}

std::optional<std::string> extra_shift_refusal(bool nesd, const ShiftDays& shifts) {
    if (nesd && shifts.any_extra)
        return std::string("'No Extra Shift Depreciation' is permitted for selected 'Asset Group' !");
    return std::nullopt;
}

}  // namespace brenlow::depreciation
