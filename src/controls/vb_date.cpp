#include "controls/vb_date.h"

#include <array>
#include <cctype>
#include <string_view>

namespace brenlow {

namespace {

int two_digit_year(int yy) {
    return yy < 30 ? 2000 + yy : 1900 + yy;
}

bool all_digits(std::string_view s) {
    if (s.empty()) return false;
    for (char c : s) {
        if (!std::isdigit(static_cast<unsigned char>(c))) return false;
    }
    return true;
}

int to_int(std::string_view s) {
    int v = 0;
    for (char c : s) v = v * 10 + (c - '0');
    return v;
}

bool is_separator(char c) {
    return c == '/' || c == '-' || c == '.';
}

// Days since 01/01/1970 of a proleptic Gregorian date (Howard Hinnant's days_from_civil).
int day_serial(const Date& d) {
    const int y = d.year - (d.month <= 2 ? 1 : 0);
    const int era = (y >= 0 ? y : y - 399) / 400;
    const int yoe = y - era * 400;
    const int mp = (d.month + 9) % 12;
    const int doy = (153 * mp + 2) / 5 + d.day - 1;
    const int doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

Date date_of_serial(int z) {
    z += 719468;
    const int era = (z >= 0 ? z : z - 146096) / 146097;
    const int doe = z - era * 146097;
    const int yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const int doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const int mp = (5 * doy + 2) / 153;
    Date d;
    d.day = doy - (153 * mp + 2) / 5 + 1;
    d.month = mp < 10 ? mp + 3 : mp - 9;
    d.year = yoe + era * 400 + (d.month <= 2 ? 1 : 0);
    return d;
}

std::string two_digits(int v) {
    std::string s = std::to_string(v % 100);
    return s.size() < 2 ? "0" + s : s;
}

std::string four_digits(int v) {
    std::string s = std::to_string(v);
    while (s.size() < 4) s.insert(s.begin(), '0');
    return s;
}

std::optional<Date> make(int year, int month, int day) {
    if (!Date::valid(year, month, day)) return std::nullopt;
    return Date{year, month, day};
}

std::optional<int> year_of(std::string_view s) {
    if (!all_digits(s)) return std::nullopt;
    if (s.size() == 2) return two_digit_year(to_int(s));
    if (s.size() == 4) return to_int(s);
    return std::nullopt;
}

// "JAN".."DEC" or the full name, any case.
std::optional<int> month_name(std::string_view s) {
    static const std::array<const char*, 12> names = {"JANUARY",   "FEBRUARY", "MARCH",    "APRIL",
                                                      "MAY",       "JUNE",     "JULY",     "AUGUST",
                                                      "SEPTEMBER", "OCTOBER",  "NOVEMBER", "DECEMBER"};
    if (s.size() < 3) return std::nullopt;
    std::string upper;
    for (char c : s) upper.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(c))));
    for (std::size_t m = 0; m < names.size(); ++m) {
        const std::string_view full = names[m];
        if (upper == full || (upper.size() == 3 && full.substr(0, 3) == upper))
            return static_cast<int>(m) + 1;
    }
    return std::nullopt;
}

// The fields of a date text between its separators. A date has three; only the
// first three are kept, and size() tells three from more.
struct DateFields {
    std::array<std::string_view, 3> field{};
    std::size_t count = 0;

    std::size_t size() const { return count; }
    std::string_view operator[](std::size_t i) const { return field[i]; }
};

DateFields split_fields(std::string_view text, bool allow_space) {
    DateFields parts;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i == text.size() || is_separator(text[i]) || (allow_space && text[i] == ' ')) {
            if (parts.count < parts.field.size()) parts.field[parts.count] = text.substr(start, i - start);
            ++parts.count;
            start = i + 1;
        }
    }
    return parts;
}

}  // namespace

bool is_leap_year(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int days_in_month(int year, int month) {
    static const std::array<int, 12> days = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12) return 0;
    return month == 2 && is_leap_year(year) ? 29 : days[month - 1];
}

bool Date::valid(int year, int month, int day) {
    return year >= 1 && year <= 9999 && day >= 1 && day <= days_in_month(year, month);
}

std::optional<Date> Date::parse(std::string_view text) {
    // The stored form, which nearly every date read is, straight from its places.
    if (text.size() == 10 && text[2] == '/' && text[5] == '/') {
        const auto digit = [&text](std::size_t i) { return static_cast<unsigned>(text[i] - '0'); };
        bool digits = true;
        for (const std::size_t i : {0, 1, 3, 4, 6, 7, 8, 9}) digits = digits && digit(i) <= 9;
        if (digits)
            return make(static_cast<int>(digit(6) * 1000 + digit(7) * 100 + digit(8) * 10 + digit(9)),
                        static_cast<int>(digit(3) * 10 + digit(4)),
                        static_cast<int>(digit(0) * 10 + digit(1)));
    }
    if (text.size() == 8 && all_digits(text)) {
        return make(to_int(text.substr(4, 4)), to_int(text.substr(2, 2)), to_int(text.substr(0, 2)));
    }
    const auto parts = split_fields(text, false);
    if (parts.size() != 3) return std::nullopt;
    // One kind of separator per date: "31/12-2015" is not a date.
    const char sep = text[parts[0].size()];
    if (text[parts[0].size() + parts[1].size() + 1] != sep) return std::nullopt;
    const auto day = parts[0], month = parts[1];
    if (!all_digits(day) || day.size() > 2 || !all_digits(month) || month.size() > 2) return std::nullopt;
    const auto year = year_of(parts[2]);
    if (!year) return std::nullopt;
    return make(*year, to_int(month), to_int(day));
}

std::string Date::text() const {
    return format("dd/mm/yyyy");
}

std::string Date::format(std::string_view pattern) const {
    std::string out;
    for (std::size_t i = 0; i < pattern.size();) {
        const char c = static_cast<char>(std::tolower(static_cast<unsigned char>(pattern[i])));
        std::size_t run = 1;
        while (i + run < pattern.size() && std::tolower(static_cast<unsigned char>(pattern[i + run])) == c)
            ++run;
        if (c == 'd') {
            out += two_digits(day);
        } else if (c == 'm') {
            out += two_digits(month);
        } else if (c == 'y') {
            out += run >= 4 ? four_digits(year) : two_digits(year);
        } else {
            out.append(pattern.substr(i, run));
        }
        i += run;
    }
    return out;
}

Date Date::add_days(int days) const {
    return date_of_serial(day_serial(*this) + days);
}

long Date::serial() const {
    return day_serial(*this);
}

Date Date::from_serial(long serial) {
    return date_of_serial(static_cast<int>(serial));
}

std::optional<Date> Date::parse_packed(std::string_view text) {
    if (text.size() != 8 || !all_digits(text)) return std::nullopt;
    return make(to_int(text.substr(4, 4)), to_int(text.substr(2, 2)), to_int(text.substr(0, 2)));
}

int days_between(const Date& a, const Date& b) {
    return day_serial(b) - day_serial(a);
}

int fy_length_days(int year_end) {
    return days_between(fy_first(year_end), fy_first(year_end + 1));
}

Date fy_first(int year_end) {
    return Date{year_end - 1, 4, 1};
}

Date fy_last(int year_end) {
    return Date{year_end, 3, 31};
}

int fy_year_of(const Date& date) {
    return date.month >= 4 ? date.year + 1 : date.year;
}

bool is_date(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    const auto parts = split_fields(text, true);
    if (parts.size() != 3) return false;
    const auto day = parts[0];
    if (!all_digits(day) || day.size() > 2) return false;
    std::optional<int> month;
    if (all_digits(parts[1]) && parts[1].size() <= 2) {
        month = to_int(parts[1]);
    } else {
        month = month_name(parts[1]);
    }
    const auto year = year_of(parts[2]);
    return month && year && Date::valid(*year, *month, to_int(day));
}

}  // namespace brenlow
