#include "register/register_entry_math.h"

#include <charconv>
#include <cstdio>

#include "controls/number_format.h"

namespace brenlow::reg {

std::optional<double> parse_number(std::string_view text) {
    return parse_amount(text);
}

double number_of(std::string_view text) {
    return parse_number(text).value_or(0.0);
}

std::string packed_date(const Date& d) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "%02d%02d%04d", d.day, d.month, d.year);
    return buf;
}

std::optional<depreciation::AutoRate> auto_rate_of(double base, double residual, double life,
                                                   std::string_view method,
                                                   depreciation::ResidualBasis basis) {
    const auto m = method == "SLM" ? depreciation::CaMethod::SLM : depreciation::CaMethod::WDV;
    return depreciation::auto_rate(base, residual, life, m, basis);
}

double master_rate(const store::AssetGroupRow& g, std::string_view method) {
    const bool classified = !g.BlockIdCL.empty() && g.BlockIdCL != "-1" && g.BlockIdCL != "-2";
    if (!classified) return g.RateFA;
    return method == "SLM" ? g.RateSLM : g.RateWDV;
}

}  // namespace brenlow::reg
