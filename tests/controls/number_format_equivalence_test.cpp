#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "controls/number_format.h"

// The roundings once printed each amount with "%.14e" and read it back with strtod.
// That text-based version is kept here, word for word, as the reference the
// allocation-free one must agree with on every value, to the last bit and byte.
namespace brenlow::text_rounding {
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

}  // namespace brenlow::text_rounding

namespace brenlow {
namespace {

constexpr std::string_view masks[] = {"###0",  "###0.00",  "###0.0000",
                                      "#,##0", "#,##0.00", "#,##0;(#,##0)",
                                      "###0.", "###0.000", "#,##0.00;(#,##0.00)"};
constexpr int mask_count = static_cast<int>(std::size(masks));

// Every rounding of one value, new beside old. Doubles are compared bit for bit so
// that a -0 where the text gave 0 is a difference too. A few failures are enough to see.
class RoundingComparison {
public:
    // The text-based reference groups in thousands.
    RoundingComparison() : grouping_(digit_grouping()) { set_digit_grouping(DigitGrouping::western); }
    ~RoundingComparison() { set_digit_grouping(grouping_); }
    RoundingComparison(const RoundingComparison&) = delete;
    RoundingComparison& operator=(const RoundingComparison&) = delete;

    void check(double value, std::size_t index) {
        const int decimals = static_cast<int>(index % 6);
        expect_same_double(vb_round(value, decimals), text_rounding::vb_round(value, decimals), "vb_round",
                           value, std::to_string(decimals));
        expect_same_double(vb_round(value, 2), text_rounding::vb_round(value, 2), "vb_round", value, "2");
        const std::string_view mask = masks[index % mask_count];
        expect_same_double(mask_value(value, mask), text_rounding::mask_value(value, mask), "mask_value",
                           value, std::string(mask));
        expect_same_text(format_mask(value, mask), text_rounding::format_mask(value, mask), "format_mask",
                         value, std::string(mask));
        if (index % 4 == 0) {
            expect_same_text(plain_number(value), text_rounding::plain_number(value), "plain_number", value,
                             "");
        }
        ++checked_;
    }

    std::size_t checked() const { return checked_; }
    int failures() const { return failures_; }

private:
    void report(const std::string& what) {
        if (++failures_ <= 20) ADD_FAILURE() << what;
    }
    static std::string show(double value) {
        char buf[64];
        std::snprintf(buf, sizeof buf, "%.17g", value);
        return buf;
    }
    void expect_same_double(double now, double before, const char* function, double value,
                            const std::string& arg) {
        if (std::bit_cast<std::uint64_t>(now) != std::bit_cast<std::uint64_t>(before)) {
            report(std::string(function) + "(" + show(value) + ", " + arg + ") = " + show(now) +
                   ", text gave " + show(before));
        }
    }
    void expect_same_text(const std::string& now, const std::string& before, const char* function,
                          double value, const std::string& arg) {
        if (now != before) {
            report(std::string(function) + "(" + show(value) + ", " + arg + ") = \"" + now +
                   "\", text gave \"" + before + "\"");
        }
    }

    DigitGrouping grouping_;
    std::size_t checked_ = 0;
    int failures_ = 0;
};

// The double nearest to integer / 10^places, the way an amount typed with that many
// decimals is stored.
double typed(long long integer, int places) {
    return static_cast<double>(integer) / std::pow(10.0, places);
}

TEST(RoundingWithoutText, AgreesWithTheTextOnHalvesAtEveryPlaceBothSigns) {
    // x.5, x.05, x.005, ... up to seven places: each the last digit 5 over a spread of
    // integer parts, from pennies to crores.
    RoundingComparison compare;
    std::mt19937_64 random(17);
    std::size_t index = 0;
    for (int places = 1; places <= 7; ++places) {
        for (int i = 0; i < 110000; ++i) {
            const long long scale = 1LL
                                    << (random() % static_cast<unsigned>(52 - 4 * places));  // stays exact
            const long long whole = static_cast<long long>(random() % static_cast<unsigned long long>(scale));
            long long power = 1;
            for (int p = 1; p < places; ++p) power *= 10;
            const long long lower_digits =
                static_cast<long long>(random() % static_cast<unsigned long long>(power));
            const long long integer = (whole * power + lower_digits) * 10 + 5;  // the last place is a 5
            const double value = typed(integer, places);
            compare.check(value, index++);
            compare.check(-value, index++);
        }
    }
    EXPECT_EQ(compare.failures(), 0);
    EXPECT_GE(compare.checked(), 1500000u);
}

TEST(RoundingWithoutText, AgreesWithTheTextNearAMillionCrore) {
    // Around 1e12 fifteen digits leave two or three decimals: the half sits in the
    // last digit that counts.
    RoundingComparison compare;
    std::mt19937_64 random(1000000000000ULL);
    std::size_t index = 0;
    for (int i = 0; i < 250000; ++i) {
        const long long cents = 100000000000000LL + static_cast<long long>(random() % 2000000000000ULL) -
                                1000000000000LL;  // 1e12 ± 1e10, in cents
        const double at_cents = typed(cents, 2);
        const double at_half_cent = typed(cents * 10 + 5, 3);
        const double near = std::nextafter(at_half_cent, (random() & 1) ? 2e12 : 0.0);
        for (const double value : {at_cents, at_half_cent, near}) {
            compare.check(value, index++);
            compare.check(-value, index++);
        }
    }
    // The whole numbers and halves right at the boundary of fifteen digits.
    for (long long whole = 999999999990LL; whole <= 1000000000010LL; ++whole) {
        for (int tenths = 0; tenths < 10; ++tenths) {
            compare.check(typed(whole * 10 + tenths, 1), index++);
            compare.check(-typed(whole * 10 + tenths, 1), index++);
        }
    }
    EXPECT_EQ(compare.failures(), 0);
}

TEST(RoundingWithoutText, AgreesWithTheTextOnRandomDoubles) {
    RoundingComparison compare;
    std::mt19937_64 random(2718281828ULL);
    std::uniform_real_distribution<double> amounts(-1e7, 1e7);
    std::size_t index = 0;
    for (int i = 0; i < 600000; ++i) {
        compare.check(amounts(random), index++);
        // Any finite double at all, tiny and huge included.
        double any = 0.0;
        do {
            any = std::bit_cast<double>(random());
        } while (!std::isfinite(any));
        compare.check(any, index++);
        // Amounts from products and quotients, as the engines make them.
        const double rate = static_cast<double>(random() % 10000) / 100.0;
        const double cost = typed(static_cast<long long>(random() % 1000000000ULL), 2);
        compare.check(cost * rate / 100.0, index++);
        compare.check(cost * rate / 100.0 * static_cast<double>(random() % 366) / 365.0, index++);
    }
    // Exact ties of the binary value itself at the sixteenth digit, and the edges.
    for (const double value : {1000000000000000.5,
                               1000000000000001.5,
                               4503599627370495.5,
                               0.5,
                               1.5,
                               2.5,
                               0.0,
                               -0.0,
                               1e-300,
                               5e-324,
                               1.7976931348623157e308,
                               1e22,
                               1e23,
                               9.999999999999995e22,
                               0.00049999999999999999,
                               0.0005,
                               0.005,
                               0.05,
                               999999999999999.0,
                               99999999999999.95}) {
        compare.check(value, index++);
        compare.check(-value, index++);
    }
    EXPECT_EQ(compare.failures(), 0);
}

}  // namespace
}  // namespace brenlow
