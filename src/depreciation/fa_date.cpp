#include "depreciation/fa_date.h"

#include <charconv>

namespace brenlow::depreciation {
namespace {

std::optional<int> read_int(std::string_view text) {
    int value = 0;
    const char* end = text.data() + text.size();
    auto [ptr, ec] = std::from_chars(text.data(), end, value);
    if (ec != std::errc() || ptr != end || text.empty()) return std::nullopt;
    return value;
}

std::optional<Date> make(int day, int month, int year) {
    if (month < 1 || month > 12 || year < 1 || day < 1 || day > days_in_month(year, month))
        return std::nullopt;
    return Date{year, month, day};
}

void two_digits(std::string& out, int value) {
    out.push_back(static_cast<char>('0' + (value / 10) % 10));
    out.push_back(static_cast<char>('0' + value % 10));
}

}  // namespace

bool is_leap_year(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int days_in_month(int year, int month) {
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month == 2 && is_leap_year(year)) return 29;
    return kDays[month - 1];
}

std::optional<Date> Date::parse(std::string_view text) {
    const auto first = text.find('/');
    if (first == std::string_view::npos) return std::nullopt;
    const auto second = text.find('/', first + 1);
    if (second == std::string_view::npos) return std::nullopt;
    const auto d = read_int(text.substr(0, first));
    const auto m = read_int(text.substr(first + 1, second - first - 1));
    const auto y = read_int(text.substr(second + 1));
    if (!d || !m || !y || text.size() - second - 1 != 4) return std::nullopt;
    return make(*d, *m, *y);
}

std::optional<Date> Date::parse_packed(std::string_view text) {
    if (text.size() != 8) return std::nullopt;
    const auto d = read_int(text.substr(0, 2));
    const auto m = read_int(text.substr(2, 2));
    const auto y = read_int(text.substr(4, 4));
    if (!d || !m || !y) return std::nullopt;
    return make(*d, *m, *y);
}

// Civil-calendar day numbers (proleptic Gregorian), after H. Hinnant's days_from_civil.
long Date::serial() const {
    const int y = year - (month <= 2 ? 1 : 0);
    const long era = (y >= 0 ? y : y - 399) / 400;
    const long yoe = y - era * 400;
    const long doy = (153L * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const long doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

Date Date::from_serial(long z) {
    z += 719468;
    const long era = (z >= 0 ? z : z - 146096) / 146097;
    const long doe = z - era * 146097;
    const long yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const long mp = (5 * doy + 2) / 153;
    const int d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    const int m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    const int y = static_cast<int>(yoe + era * 400 + (m <= 2 ? 1 : 0));
    return Date{y, m, d};
}

std::string Date::text() const {
    std::string out;
    out.reserve(10);
    two_digits(out, day);
    out.push_back('/');
    two_digits(out, month);
    out.push_back('/');
    two_digits(out, year / 100);
    two_digits(out, year % 100);
    return out;
}

std::string Date::short_text() const {
    std::string out;
    out.reserve(8);
    two_digits(out, day);
    out.push_back('/');
    two_digits(out, month);
    out.push_back('/');
    two_digits(out, year % 100);
    return out;
}

long days_between(const Date& from, const Date& to) {
    return to.serial() - from.serial();
}

Date fy_first_day(int closing_year) {
    return Date{closing_year - 1, 4, 1};
}
Date fy_last_day(int closing_year) {
    return Date{closing_year, 3, 31};
}
int fy_length_days(int closing_year) {
    return is_leap_year(closing_year) ? 366 : 365;
}

}  // namespace brenlow::depreciation
