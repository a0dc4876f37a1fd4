#pragma once
// Amounts and rates as the explanation texts write them: Indian digit grouping
// ("1,00,000"), whole rupees or paise, rates without trailing zeros ("7.5").
// Every rounding goes through format_mask.

#include <string>

namespace brenlow::depreciation {

std::string rupees(double amount);        // "###0" then grouped: 1,00,000
std::string rupees_paise(double amount);  // "###0.00" then grouped: 1,00,000.50
std::string rate_trimmed(double rate);    // "###0.0000" without trailing zeros: 15, 7.5, 25.8866

}  // namespace brenlow::depreciation
