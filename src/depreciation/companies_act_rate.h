#pragma once
// The per-asset arithmetic of the books under the Companies Act: residual value,
// the auto-calculated rate, the days of the year for which depreciation is charged,
// and the extra-shift days read from the packed ShiftDet text.

#include <optional>
#include <string>
#include <string_view>

#include "depreciation/fa_date.h"

namespace brenlow::depreciation {

enum class CaMethod { WDV, SLM, None };
enum class ResidualBasis { Cost, CarryingAmount };  // stored "COST" / "CA"

// 5% of the chosen base (cost, or carrying amount).
double residual_value(double base);

struct AutoRate {
    double value = 0;  // the rate read back from its text
    std::string text;  // "###0.00" on cost, "###0.0000" on carrying amount
};

// Computed only when the base is not nil, the life is above nil, the residual value is
// below the base, and the residual value is above nil for WDV (at least nil for SLM);
// otherwise no rate, and the entry keeps the rate typed in.
std::optional<AutoRate> auto_rate(double base, double residual, double life, CaMethod method,
                                  ResidualBasis basis);

// Days of the year for which depreciation is charged, both ends counted: from the later
// of 01/04 and the date of put to use, to the day before the sale, or to 31/03 when the
// asset is still held. The day of sale belongs to the buyer. Nil for an addition without
// a date of put to use, or one sold on the day it was put to use.
int depreciation_days(int closing_year, const std::optional<Date>& put_to_use,
                      const std::optional<Date>& sale);

// "Calculated for 1 Day", "Calculated for 365 Days".
std::string days_text(int days);

// The days of one shift row: "Calculated for 91 Days (Double Shift)"; shift 1, 2 or 3.
std::string shift_days_text(int days, int shift);

// Extra-shift days from "from,to,shift|from,to,shift" (dd/mm/yyyy dates), limited to the
// charged period. Double-shift days earn 50% more, triple-shift days 100% more.
struct ShiftDays {
    int double_days = 0;
    int triple_days = 0;
    bool any_extra = false;  // any row with a shift above single
};
ShiftDays shift_days(std::string_view shift_det, const Date& first, const Date& last);

// The refusal for a shift above single where the asset group forbids extra-shift depreciation.
std::optional<std::string> extra_shift_refusal(bool nesd, const ShiftDays& shifts);

}  // namespace brenlow::depreciation
