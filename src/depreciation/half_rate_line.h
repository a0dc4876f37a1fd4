#pragma once
// The half-rate line of a financial year: the first date of put to use from which an
// addition counts as used for less than 180 days and takes half the block's rate.
// Input: the calendar year in which the financial year begins (the year of FirstDate).
// Output: the line as a date; headings print it through Date::text / Date::short_text.

#include <string>

#include "depreciation/fa_date.h"

namespace brenlow::depreciation {

Date half_rate_line(int first_calendar_year);

// An addition put to use on the line itself is already a half-rate addition.
inline bool is_half_rate_addition(const Date& put_to_use, const Date& line) {
    return put_to_use >= line;
}

// Column headings of the income-tax chart and sheet, built around the line.
std::string full_rate_heading(const Date& line);  // "(Before dd/mm/yy)"
std::string half_rate_heading(const Date& line);  // "(On or After dd/mm/yy)"

}  // namespace brenlow::depreciation
