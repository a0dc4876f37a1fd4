#pragma once
// The register's dates in the engine: the system's one date type, with the names
// the engine's code reads best with.

#include "controls/vb_date.h"

namespace brenlow::depreciation {

using brenlow::Date;
using brenlow::days_between;
using brenlow::days_in_month;
using brenlow::fy_length_days;
using brenlow::is_leap_year;

inline Date fy_first_day(int closing_year) {
    return brenlow::fy_first(closing_year);
}
inline Date fy_last_day(int closing_year) {
    return brenlow::fy_last(closing_year);
}

}  // namespace brenlow::depreciation
