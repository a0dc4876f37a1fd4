#pragma once
// GETREMLIFEYRS: remaining useful life, in years, at the start of a financial year.
// Inputs: date put to use as "ddmmyyyy"; base year (the calendar year in which the
// financial year of interest begins); mode (1: days / 365, 2: whole financial years,
// other: first-year fraction plus whole years); decimals of the rounding mask; useful
// life in years. Output: the remaining life, never negative; 0 for an asset put to use
// in the base year or later, and 0 for a date that cannot be read.

#include <string_view>

#include "depreciation/fa_date.h"

namespace brenlow::depreciation {

double GETREMLIFEYRS(std::string_view put_date_ddmmyyyy, int base_year, int mode, int decimals, double life);

// The same from a date already read.
double remaining_life_years(const Date& put, int base_year, int mode, int decimals, double life);

}  // namespace brenlow::depreciation
