#include "controls/number_format.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace brenlow {

namespace {

// A number as the decimal text it prints as with 15 significant digits:
// value = 0.digits × 10^point, digits without leading or trailing zeros (none
// for zero). Rounding works on these digits, never on the binary value, so that
// what the person sees as 185.175 is treated as 185.175. The digits live in the
// value itself: rounding a register's amounts allocates nothing.
struct Decimal {
    static constexpr int capacity = 16;  // 15 significant digits and room for a carry
    bool negative = false;
    char digits[capacity] = {};
    int count = 0;
    int point = 0;

    char digit(int i) const { return digits[i]; }
    void trim_zeros() {
        while (count > 0 && digits[count - 1] == '0') --count;
    }
};

// The digits and exponent of a "d.ddd...e+xx" text into d (digits as written, the
// point after the first).
void read_scientific(Decimal& d, const char* p, const char* end) {
    if (*p == '-') {
        d.negative = true;
        ++p;
    }
    for (; p != end && *p != 'e'; ++p) {
        if (*p >= '0' && *p <= '9' && d.count < Decimal::capacity) d.digits[d.count++] = *p;
    }
    int exponent = 0;
    if (p != end && *p == 'e') {
        ++p;
        const bool negative_exponent = (*p == '-');
        if (*p == '-' || *p == '+') ++p;
        for (; p != end; ++p) exponent = exponent * 10 + (*p - '0');
        if (negative_exponent) exponent = -exponent;
    }
    d.point = exponent + 1;
}

// 15 significant digits, always with an exponent: "-1.23450000000000e+02".
// The shortest-exact conversion gives the digits correctly rounded from the
// binary value (ties to even), as printf's "%.14e" does.
Decimal to_decimal_exact(double value) {
    Decimal d;
    char buf[64];
    const auto result = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::scientific, 14);
    read_scientific(d, buf, result.ptr);
    d.trim_zeros();
    return d;
}

// The same digits in integer arithmetic, for the magnitudes amounts, rates and lives
// have (about 1e-12 to 1e15). The value is m * 2^q exactly; times 10^(14-e) it is
// m * 5^(14-e) / 2^(e-14-q), which 128 bits hold exactly, so the integer part and the
// remainder are exact and the fifteenth digit is rounded as the exact conversion
// rounds it (halves of the binary value itself to even).
__extension__ typedef unsigned __int128 Wide;

constexpr std::uint64_t kPowersOfFive[28] = {1ULL,
                                             5ULL,
                                             25ULL,
                                             125ULL,
                                             625ULL,
                                             3125ULL,
                                             15625ULL,
                                             78125ULL,
                                             390625ULL,
                                             1953125ULL,
                                             9765625ULL,
                                             48828125ULL,
                                             244140625ULL,
                                             1220703125ULL,
                                             6103515625ULL,
                                             30517578125ULL,
                                             152587890625ULL,
                                             762939453125ULL,
                                             3814697265625ULL,
                                             19073486328125ULL,
                                             95367431640625ULL,
                                             476837158203125ULL,
                                             2384185791015625ULL,
                                             11920928955078125ULL,
                                             59604644775390625ULL,
                                             298023223876953125ULL,
                                             1490116119384765625ULL,
                                             7450580596923828125ULL};

// Into d, which the caller made empty; false when the value is outside this range.
bool fast_decimal(double value, Decimal& d) {
    const std::uint64_t bits = std::bit_cast<std::uint64_t>(value);
    const int biased = static_cast<int>((bits >> 52) & 0x7ff);
    const double magnitude = std::fabs(value);
    if (biased == 0 || !(magnitude >= 1e-12 && magnitude < 1e15)) return false;
    const std::uint64_t m = (bits & ((std::uint64_t{1} << 52) - 1)) | (std::uint64_t{1} << 52);
    const int q = biased - 1075;  // value = m * 2^q
    // 10^e <= |value|, e at most one below the true decimal exponent.
    int e = ((q + 52) * 78913) >> 18;  // floor((q + 52) * log10(2)) for these exponents
    static constexpr std::uint64_t kFifteen = 1000000000000000ULL;
    for (;;) {
        const int p = 14 - e;  // 0..27 in the range above
        const int shift = -(q + p);
        if (p < 0 || p > 27 || shift < 1 || shift > 127) return false;
        const Wide product = static_cast<Wide>(m) * kPowersOfFive[p];
        std::uint64_t n = static_cast<std::uint64_t>(product >> shift);
        if (n >= kFifteen) {
            ++e;
            continue;
        }
        if (n < kFifteen / 10) return false;  // never: e is at most one low
        const Wide remainder = product & ((static_cast<Wide>(1) << shift) - 1);
        const Wide half = static_cast<Wide>(1) << (shift - 1);
        if (remainder > half || (remainder == half && (n & 1) != 0)) ++n;
        int point = e + 1;
        if (n == kFifteen) {
            n /= 10;
            ++point;
        }
        d.negative = value < 0;
        // Trailing zeros are not digits of the decimal: amounts have few digits that count.
        int count = 15;
        for (const auto& [power, digits] : {std::pair{100000000ULL, 8}, std::pair{10000ULL, 4},
                                            std::pair{100ULL, 2}, std::pair{10ULL, 1}}) {
            if (n % power == 0) {
                n /= power;
                count -= digits;
            }
        }
        if (n % 10 == 0) {  // 8 + 4 + 2 + 1 leaves one zero more at most
            n /= 10;
            --count;
        }
        d.count = count;
        static constexpr char kPairs[] =
            "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
            "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
            "8081828384858687888990919293949596979899";
        int i = count;
        for (; i >= 2; i -= 2) {
            const auto pair = static_cast<std::size_t>(n % 100) * 2;
            n /= 100;
            d.digits[i - 2] = kPairs[pair];
            d.digits[i - 1] = kPairs[pair + 1];
        }
        if (i == 1) d.digits[0] = static_cast<char>('0' + n);
        d.point = point;
        return true;
    }
}

// Made in place in the caller's Decimal: its digits are read back a byte at a time, never
// as a copy of bytes just written one by one.
Decimal to_decimal(double value) {
    Decimal d;
    if (!std::isfinite(value) || value == 0.0) return d;
    if (!fast_decimal(value, d)) d = to_decimal_exact(value);
    return d;
}

enum class Halves { away_from_zero, to_even };

// Rounds to `decimals` places after the point, judging the half on the digits.
void round_decimal(Decimal& d, int decimals, Halves halves) {
    const int keep = d.point + decimals;  // digits that stay
    if (keep >= d.count) return;
    if (keep < 0) {
        d.count = 0;  // below a tenth of the last kept place: not even half
        return;
    }
    const char first_dropped = d.digits[keep];
    bool rest_nonzero = false;
    for (int i = keep + 1; i < d.count; ++i) rest_nonzero |= d.digits[i] != '0';
    d.count = keep;

    bool up = false;
    if (first_dropped > '5' || (first_dropped == '5' && rest_nonzero)) {
        up = true;
    } else if (first_dropped == '5') {
        const bool last_kept_odd = keep > 0 && ((d.digits[keep - 1] - '0') % 2 == 1);
        up = (halves == Halves::away_from_zero) || last_kept_odd;
    }
    if (up) {
        int i = d.count - 1;
        while (i >= 0 && d.digits[i] == '9') d.digits[i--] = '0';
        if (i >= 0) {
            ++d.digits[i];
        } else {
            // Every kept digit was a 9 (or none was kept): the carry makes a new leading 1,
            // and the zeros behind it are trimmed below.
            for (int j = d.count; j > 0; --j) d.digits[j] = d.digits[j - 1];
            d.digits[0] = '1';
            ++d.count;
            ++d.point;
        }
    }
    d.trim_zeros();
    if (d.count == 0) d.point = 0;
}

bool is_zero(const Decimal& d) {
    return d.count == 0;
}

// The digits before the point ("0" when there are none).
std::string integer_part(const Decimal& d) {
    if (d.point <= 0 || d.count == 0) return "0";
    const int shown = std::min(d.point, d.count);
    std::string s(d.digits, d.digits + shown);
    s.append(d.point > shown ? d.point - shown : 0, '0');
    return s;
}

// Exactly `places` digits after the point.
std::string fraction_part(const Decimal& d, int places) {
    std::string s;
    s.reserve(places > 0 ? places : 0);
    for (int i = 0; i < places; ++i) {
        const int index = d.point + i;  // position in digits of the i-th decimal
        s.push_back(index >= 0 && index < d.count ? d.digit(index) : '0');
    }
    return s;
}

// Every digit after the point, however many there are.
std::string all_fraction(const Decimal& d) {
    const int places = d.count - d.point;
    return places > 0 ? fraction_part(d, places) : std::string{};
}

DigitGrouping g_grouping = DigitGrouping::indian;

// Whether a comma goes before the digit that has `after` digits after it in the whole part.
bool comma_before(int after, DigitGrouping grouping) {
    if (grouping == DigitGrouping::western) return after % 3 == 0;
    return after == 3 || (after > 3 && (after - 3) % 2 == 0);
}

// Whether the comma-separated groups of a whole part follow one of the two groupings:
// the last group three digits, the first one to three (western) or one or two
// (Indian, with every group between of two).
bool well_grouped(std::string_view whole) {
    std::vector<std::size_t> sizes;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= whole.size(); ++i) {
        if (i == whole.size() || whole[i] == ',') {
            sizes.push_back(i - start);
            start = i + 1;
        }
    }
    if (sizes.size() < 2 || sizes.back() != 3 || sizes.front() == 0) return false;
    bool western = sizes.front() <= 3, indian = sizes.front() <= 2;
    for (std::size_t i = 1; i + 1 < sizes.size(); ++i) {
        western = western && sizes[i] == 3;
        indian = indian && sizes[i] == 2;
    }
    return western || indian;
}

// The double nearest to the digits, as reading their text back would give it.
// The digits make an integer below 10^15 (exact in a double); when the power of
// ten is exact too (10^22 is the last one that is), one multiplication or
// division rounds once, correctly, to the same nearest double the text reads as.
// Anything farther out is read back from its text.
double decimal_value(const Decimal& d) {
    if (is_zero(d)) return 0.0;
    static constexpr double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    const int exponent = d.point - d.count;  // value = integer × 10^exponent
    if (exponent >= -22 && exponent <= 22) {
        long long integer = 0;
        for (int i = 0; i < d.count; ++i) integer = integer * 10 + (d.digits[i] - '0');
        const double mantissa = static_cast<double>(integer);
        const double magnitude = exponent >= 0 ? mantissa * powers[exponent] : mantissa / powers[-exponent];
        return d.negative ? -magnitude : magnitude;
    }
    // Beyond the exact powers (amounts never get there): read as text, where the
    // overflow to infinity and the gradual underflow are strtod's own.
    char text[64];
    char* p = text;
    if (d.negative) *p++ = '-';
    for (int i = 0; i < d.count; ++i) *p++ = d.digits[i];
    *p++ = 'e';
    p = std::to_chars(p, text + sizeof text - 1, exponent).ptr;
    *p = '\0';
    return std::strtod(text, nullptr);
}

// One section of a mask: literal text before and after a number pattern such as
// "#,##0.00". The pattern's zeros after the point give the decimals; a comma in it
// asks for thousands separators; a point with no digits after it is printed as is.
struct Section {
    std::string_view prefix;  // within the mask
    std::string_view suffix;
    bool grouping = false;
    bool has_point = false;
    int decimals = 0;
};

Section parse_section(std::string_view s) {
    Section sec;
    const auto is_pattern = [](char c) { return c == '#' || c == '0' || c == ',' || c == '.'; };
    const char* const begin = s.data();
    const char* const end = begin + s.size();
    const char* p = begin;
    while (p != end && !is_pattern(*p)) ++p;
    sec.prefix = std::string_view(begin, static_cast<std::size_t>(p - begin));
    bool after_point = false;
    for (; p != end && is_pattern(*p); ++p) {
        if (*p == '.') {
            after_point = true;
            sec.has_point = true;
        } else if (*p == ',') {
            sec.grouping = sec.grouping || !after_point;
        } else if (after_point) {
            ++sec.decimals;
        }
    }
    sec.suffix = std::string_view(p, static_cast<std::size_t>(end - p));
    return sec;
}

// The section's text of d, made in one piece: prefix, minus, whole part (grouped when
// asked), point, exactly `decimals` digits, suffix.
std::string apply_section(const Section& sec, const Decimal& d, bool show_minus) {
    const int whole_digits = d.point > 0 && d.count > 0 ? d.point : 1;  // "0" when there are none
    const int decimals = std::max(sec.decimals, 0);
    std::string out;
    out.resize(sec.prefix.size() + sec.suffix.size() + 2 + static_cast<std::size_t>(whole_digits) * 3 / 2 +
               1 + static_cast<std::size_t>(decimals));
    char* p = out.data();
    for (const char c : sec.prefix) *p++ = c;
    if (show_minus) *p++ = '-';
    for (int i = 0; i < whole_digits; ++i) {
        if (sec.grouping && i > 0 && comma_before(whole_digits - i, g_grouping)) *p++ = ',';
        *p++ = d.point > 0 && i < d.count ? d.digits[i] : '0';
    }
    if (sec.has_point) *p++ = '.';
    for (int i = 0; i < decimals; ++i) {
        const int index = d.point + i;  // position in digits of the i-th decimal
        *p++ = index >= 0 && index < d.count ? d.digit(index) : '0';
    }
    for (const char c : sec.suffix) *p++ = c;
    out.resize(static_cast<std::size_t>(p - out.data()));
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

void set_digit_grouping(DigitGrouping grouping) {
    g_grouping = grouping;
}

DigitGrouping digit_grouping() {
    return g_grouping;
}

std::optional<DigitGrouping> digit_grouping_named(std::string_view name) {
    std::string n;
    for (const char c : name) n.push_back(static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c));
    if (n == "indian") return DigitGrouping::indian;
    if (n == "western") return DigitGrouping::western;
    return std::nullopt;
}

std::optional<double> parse_amount(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && text[i] == ' ') ++i;
    std::size_t j = text.size();
    while (j > i && text[j - 1] == ' ') --j;
    std::string_view t = text.substr(i, j - i);
    if (!t.empty() && t.front() == '+') t.remove_prefix(1);
    const bool negative = !t.empty() && t.front() == '-';
    if (negative) t.remove_prefix(1);
    const std::size_t point = t.find('.');
    const std::string_view whole = t.substr(0, point);
    const std::string_view fraction =
        point == std::string_view::npos ? std::string_view{} : t.substr(point + 1);
    int digits = 0;
    bool commas = false;
    for (const char c : whole) {
        if (c == ',') {
            commas = true;
        } else if (c >= '0' && c <= '9') {
            ++digits;
        } else {
            return std::nullopt;
        }
    }
    for (const char c : fraction) {
        if (c < '0' || c > '9') return std::nullopt;
        ++digits;
    }
    if (digits == 0 || (commas && !well_grouped(whole))) return std::nullopt;
    std::string plain;
    plain.reserve(t.size() + 1);
    if (negative) plain.push_back('-');
    for (const char c : whole)
        if (c != ',') plain.push_back(c);
    if (!fraction.empty()) {
        plain.push_back('.');
        plain.append(fraction);
    }
    double v = 0;
    const auto r = std::from_chars(plain.data(), plain.data() + plain.size(), v);
    if (r.ec != std::errc()) return std::nullopt;
    return v;
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
