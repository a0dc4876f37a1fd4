#include "depreciation/amount_text.h"

#include "controls/number_format.h"

namespace brenlow::depreciation {
namespace {

// Lakh grouping: the last three digits, then pairs.
std::string group_indian(const std::string& plain) {
    std::size_t start = (!plain.empty() && plain[0] == '-') ? 1 : 0;
    std::size_t point = plain.find('.');
    if (point == std::string::npos) point = plain.size();
    std::string digits = plain.substr(start, point - start);
    std::string grouped;
    if (digits.size() <= 3) {
        grouped = digits;
    } else {
        std::string head = digits.substr(0, digits.size() - 3);
        std::string tail = digits.substr(digits.size() - 3);
        std::string pairs;
        while (head.size() > 2) {
            pairs = "," + head.substr(head.size() - 2) + pairs;
            head.resize(head.size() - 2);
        }
        grouped = head + pairs + "," + tail;
    }
    return plain.substr(0, start) + grouped + plain.substr(point);
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
