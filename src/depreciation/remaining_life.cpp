#include "depreciation/remaining_life.h"

#include <string>

#include "controls/number_format.h"

namespace brenlow::depreciation {

double GETREMLIFEYRS(std::string_view put_date_ddmmyyyy, int base_year, int mode, int decimals, double life) {
    const auto put = Date::parse_packed(put_date_ddmmyyyy);
    if (!put) return 0;  // the error handler logs and the caller sees no life left
    return remaining_life_years(*put, base_year, mode, decimals, life);
}

double remaining_life_years(const Date& put_date, int base_year, int mode, int decimals, double life) {
    const Date* put = &put_date;

    const bool early_months = put->month <= 3;
    const Date fy_start{early_months ? put->year - 1 : put->year, 4, 1};
    const Date next_fy_start{early_months ? put->year : put->year + 1, 4, 1};
    const Date base{base_year, 4, 1};

    // Every rounding reads the value back from the mask: "###0" or "###0." and n zeros.
    const std::string mask =
        decimals >= 1 ? "###0." + std::string(static_cast<std::size_t>(decimals), '0') : "###0";
    const auto rounded = [&mask](double x) { return mask_value(x, mask); };

    // Put to use in the base financial year or later: nothing has elapsed yet, and the
    // function answers 0 rather than the full life.
    if (base.year < next_fy_start.year) return 0;

    double elapsed = 0;
    if (mode == 1) {
        // 365 also in leap years.
        elapsed = rounded(static_cast<double>(days_between(*put, base)) / 365);
    } else if (mode == 2) {
        elapsed = early_months ? base_year - (put->year - 1) : base_year - put->year;
    } else {
        const double first = rounded(static_cast<double>(days_between(*put, next_fy_start)) /
                                     static_cast<double>(days_between(fy_start, next_fy_start)));
        elapsed = rounded(first + (base.year - next_fy_start.year));
    }
    if (elapsed < 0) elapsed = 0;

    const double remaining = rounded(life - elapsed);
    return remaining < 0 ? 0 : remaining;
}

}  // namespace brenlow::depreciation
