#include "register/register_entry_math.h"

#include <charconv>
#include <cstdio>

namespace brenlow::reg {

std::optional<double> parse_number(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && text[i] == ' ') ++i;
    std::size_t j = text.size();
    while (j > i && text[j - 1] == ' ') --j;
    std::string_view t = text.substr(i, j - i);
    if (!t.empty() && t.front() == '+') t.remove_prefix(1);
    if (t.empty()) return std::nullopt;
    int points = 0, digits = 0;
    for (std::size_t k = 0; k < t.size(); ++k) {
        const char c = t[k];
        if (c == '-' && k == 0) continue;
        if (c == '.') {
            if (++points > 1) return std::nullopt;
            continue;
        }
        if (c < '0' || c > '9') return std::nullopt;
        ++digits;
    }
    if (digits == 0) return std::nullopt;
    double v = 0;
    const auto r = std::from_chars(t.data(), t.data() + t.size(), v);
    if (r.ec != std::errc()) return std::nullopt;
    return v;
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
