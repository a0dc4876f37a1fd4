#include "depreciation/half_rate_line.h"

namespace brenlow::depreciation {

Date half_rate_line(int first_calendar_year) {
    // Up to the year beginning in 2005 the line was the fixed day "04/10/" of the first year.
    if (first_calendar_year <= 2005) return Date{first_calendar_year, 10, 4};
    // Later it is counted back from the year end: 31 March less 178 days. An asset put to use
    // on that day is used 179 days including both ends, so the line moves to 05/10 when the
    // February of the closing year has 29 days.
    return Date{first_calendar_year + 1, 3, 31}.plus_days(-178);
}

std::string full_rate_heading(const Date& line) {
    return "(Before " + line.short_text() + ")";
}

std::string half_rate_heading(const Date& line) {
    return "(On or After " + line.short_text() + ")";
}

}  // namespace brenlow::depreciation
