#include "depreciation/amount_text.h"

#include "controls/number_format.h"

namespace brenlow::depreciation {
namespace {

// Lakh grouping: the last three digits, then pairs.
std::string group_indian(const std::string& plain) {
    const std::size_t start = (!plain.empty() && plain[0] == '-') ? 1 : 0;
    std::size_t point = plain.find('.');
    if (point == std::string::npos) point = plain.size();
    const std::size_t digits = point - start;
    std::string grouped(plain.size() + digits / 2, '\0');
    char* p = grouped.data();
    if (start) *p++ = '-';
    for (std::size_t i = 0; i < digits; ++i) {
        const std::size_t after = digits - i;  // digits from this one to the point
        if (i > 0 && (after == 3 || (after > 3 && (after - 3) % 2 == 0))) *p++ = ',';
        *p++ = plain[start + i];
    }
    for (std::size_t i = point; i < plain.size(); ++i) *p++ = plain[i];
    grouped.resize(static_cast<std::size_t>(p - grouped.data()));
    return grouped;
}

}  // namespace

std::string rupees(double amount) {
    return group_indian(format_mask(amount, "###0"));
}

std::string rupees_paise(double amount) {
    return group_indian(format_mask(amount, "###0.00"));
}

std::string rate_trimmed(double rate) {
    std::string text = format_mask(rate, "###0.0000");
    while (!text.empty() && text.back() == '0') text.pop_back();
    if (!text.empty() && text.back() == '.') text.pop_back();
    return text;
}

}  // namespace brenlow::depreciation
