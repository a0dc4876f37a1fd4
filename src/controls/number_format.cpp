#include "controls/number_format.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace brenlow {

namespace {

// A number as the decimal text it prints as with 15 significant digits:
// value = 0.digits × 10^point, digits without leading zeros ("" for zero).
// Rounding works on this text, never on the binary value, so that what the
// person sees as 185.175 is treated as 185.175.
struct Decimal {
    bool negative = false;
    std::string digits;
    int point = 0;
};

Decimal to_decimal(double value) {
    Decimal d;
    if (!std::isfinite(value) || value == 0.0) return d;
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.14e", value);  // 15 significant digits, always with an exponent
    const char* p = buf;
    if (*p == '-') {
        d.negative = true;
        ++p;
    }
    for (; *p && *p != 'e'; ++p) {
        if (*p >= '0' && *p <= '9') d.digits.push_back(*p);
    }
    const int exponent = (*p == 'e') ? std::atoi(p + 1) : 0;
    d.point = exponent + 1;
    while (!d.digits.empty() && d.digits.back() == '0') d.digits.pop_back();
    return d;
}

enum class Halves { away_from_zero, to_even };

// Rounds to `decimals` places after the point, judging the half on the digits.
void round_decimal(Decimal& d, int decimals, Halves halves) {
    const int keep = d.point + decimals;  // digits that stay
    if (keep >= static_cast<int>(d.digits.size())) return;
    if (keep < 0) {
        d.digits.clear();  // below a tenth of the last kept place: not even half
        return;
    }
    const char first_dropped = d.digits[keep];
    bool rest_nonzero = false;
    for (std::size_t i = keep + 1; i < d.digits.size(); ++i) rest_nonzero |= d.digits[i] != '0';
    std::string kept = d.digits.substr(0, keep);

    bool up = false;
    if (first_dropped > '5' || (first_dropped == '5' && rest_nonzero)) {
        up = true;
    } else if (first_dropped == '5') {
        const bool last_kept_odd = !kept.empty() && ((kept.back() - '0') % 2 == 1);
        up = (halves == Halves::away_from_zero) || last_kept_odd;
    }
    if (up) {
        int i = static_cast<int>(kept.size()) - 1;
        while (i >= 0 && kept[i] == '9') kept[i--] = '0';
        if (i >= 0) {
            ++kept[i];
        } else {
            kept.insert(kept.begin(), '1');
            ++d.point;
        }
    }
    while (!kept.empty() && kept.back() == '0') kept.pop_back();
    d.digits = kept;
    if (d.digits.empty()) d.point = 0;
}

bool is_zero(const Decimal& d) {
    return d.digits.empty();
}

// The digits before the point ("0" when there are none).
std::string integer_part(const Decimal& d) {
    if (d.point <= 0 || d.digits.empty()) return "0";
    std::string s = d.digits.substr(0, std::min<std::size_t>(d.point, d.digits.size()));
    s.append(d.point > static_cast<int>(s.size()) ? d.point - s.size() : 0, '0');
    return s;
}

// Exactly `places` digits after the point.
std::string fraction_part(const Decimal& d, int places) {
    std::string s;
    for (int i = 0; i < places; ++i) {
        const int index = d.point + i;  // position in digits of the i-th decimal
        s.push_back(index >= 0 && index < static_cast<int>(d.digits.size()) ? d.digits[index] : '0');
    }
    return s;
}

// Every digit after the point, however many there are.
std::string all_fraction(const Decimal& d) {
    const int places = static_cast<int>(d.digits.size()) - d.point;
    return places > 0 ? fraction_part(d, places) : std::string{};
}

std::string group_thousands(const std::string& whole) {
    std::string out;
    const int n = static_cast<int>(whole.size());
    for (int i = 0; i < n; ++i) {
        if (i > 0 && (n - i) % 3 == 0) out.push_back(',');
        out.push_back(whole[i]);
    }
    return out;
}

double decimal_value(const Decimal& d) {
    if (is_zero(d)) return 0.0;
    std::string text = d.negative ? "-0." : "0.";
    text += d.digits;
    text += "e" + std::to_string(d.point);
    return std::strtod(text.c_str(), nullptr);
}

// One section of a mask: literal text before and after a number pattern such as
// "#,##0.00". The pattern's zeros after the point give the decimals; a comma in it
// asks for thousands separators; a point with no digits after it is printed as is.
struct Section {
    std::string prefix;
    std::string suffix;
    bool grouping = false;
    bool has_point = false;
    int decimals = 0;
};

Section parse_section(std::string_view s) {
    Section sec;
    const auto is_pattern = [](char c) { return c == '#' || c == '0' || c == ',' || c == '.'; };
    std::size_t i = 0;
    while (i < s.size() && !is_pattern(s[i])) sec.prefix.push_back(s[i++]);
    bool after_point = false;
    for (; i < s.size() && is_pattern(s[i]); ++i) {
        if (s[i] == '.') {
            after_point = true;
            sec.has_point = true;
        } else if (s[i] == ',') {
            if (!after_point) sec.grouping = true;
        } else if (after_point) {
            ++sec.decimals;
        }
    }
    sec.suffix.assign(s.substr(i));
    return sec;
}

std::string apply_section(const Section& sec, const Decimal& d, bool show_minus) {
    std::string whole = integer_part(d);
    if (sec.grouping) whole = group_thousands(whole);
    std::string out = sec.prefix;
    if (show_minus) out.push_back('-');
    out += whole;
    if (sec.has_point) out.push_back('.');
    out += fraction_part(d, sec.decimals);
    out += sec.suffix;
    return out;
}

}  // namespace

std::string format_mask(double value, std::string_view mask) {
    const std::size_t semicolon = mask.find(';');
    const Section positive = parse_section(mask.substr(0, semicolon));
    Decimal d = to_decimal(value);
    round_decimal(d, positive.decimals, Halves::away_from_zero);
    // What rounds to nothing prints as a plain zero, never "-0" or "(0)".
    if (is_zero(d) || !d.negative) return apply_section(positive, d, false);
    if (semicolon == std::string_view::npos) return apply_section(positive, d, true);
    // A negative section writes the sign itself (brackets), so no minus is added.
    const Section negative_section = parse_section(mask.substr(semicolon + 1));
    Decimal magnitude = to_decimal(value);
    round_decimal(magnitude, negative_section.decimals, Halves::away_from_zero);
    return apply_section(negative_section, magnitude, false);
}

double mask_value(double value, std::string_view mask) {
    const Section positive = parse_section(mask.substr(0, mask.find(';')));
    Decimal d = to_decimal(value);
    round_decimal(d, positive.decimals, Halves::away_from_zero);
    return decimal_value(d);
}

double vb_round(double value, int decimals) {
    Decimal d = to_decimal(value);
    round_decimal(d, decimals, Halves::to_even);
    return decimal_value(d);
}

std::string plain_number(double value) {
    const Decimal d = to_decimal(value);
    if (is_zero(d)) return "0";
    std::string out = d.negative ? "-" : "";
    out += integer_part(d);
    const std::string fraction = all_fraction(d);
    if (!fraction.empty()) out += "." + fraction;
    return out;
}

}  // namespace brenlow
