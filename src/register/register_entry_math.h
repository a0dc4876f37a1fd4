#pragma once
// Reading the entry fields as numbers and dates, and the figures the entry frame
// takes from the depreciation engine and the asset group.

#include <optional>
#include <string>
#include <string_view>

#include "controls/vb_date.h"
#include "depreciation/companies_act_rate.h"
#include "store/register_store.h"

namespace brenlow::reg {

// A typed number: parse_amount, so a grouped amount ("8,50,000") reads too.
std::optional<double> parse_number(std::string_view text);
// The number of a field, 0 when empty or not a number.
double number_of(std::string_view text);
// "ddmmyyyy", as GETREMLIFEYRS reads a date.
std::string packed_date(const Date& d);
// The auto-calculated rate of the engine for the method text ("WDV" / "SLM").
std::optional<depreciation::AutoRate> auto_rate_of(double base, double residual, double life,
                                                   std::string_view method,
                                                   depreciation::ResidualBasis basis);
// The books rate the group proposes: its Companies-Act rate by method when it has a
// classification, else the rate of its books block.
double master_rate(const store::AssetGroupRow& g, std::string_view method);

}  // namespace brenlow::reg
