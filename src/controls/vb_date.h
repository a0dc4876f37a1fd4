#pragma once
// A calendar date as the screens and tables use it: stored as text dd/mm/yyyy,
// typed dd/mm/yy or dd-mm-yyyy, counted in whole days. No time of day, no zone.

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace brenlow {

struct Date {
    int year = 0;
    int month = 0;
    int day = 0;

    // "dd/mm/yyyy", "dd/mm/yy" (also with "-" or "." between, one-digit day or
    // month allowed) and "ddmmyyyy". Two-digit years 00-29 are 20xx, 30-99 19xx.
    // nullopt for anything else or for a day the calendar does not have.
    static std::optional<Date> parse(std::string_view text);

    static bool valid(int year, int month, int day);
    bool valid() const { return valid(year, month, day); }

    // The stored form, dd/mm/yyyy.
    std::string text() const;
    // Patterns of the grids and prints: "dd/MM/yyyy", "DD/MM/YY", "dd/mm/yy"...;
    // d/D is the day, m/M the month, y/Y the year (two or four of them); anything
    // else is copied.
    std::string format(std::string_view pattern) const;

    Date add_days(int days) const;
    Date plus_days(long days) const { return add_days(static_cast<int>(days)); }

    // Exactly eight digits ddmmyyyy, as the remaining-life function takes a date.
    static std::optional<Date> parse_packed(std::string_view text);
    // Days since 01/01/1970, for arithmetic on many dates at once.
    long serial() const;
    static Date from_serial(long serial);
    // "DD/MM/YY", as headings print a date.
    std::string short_text() const { return format("DD/MM/YY"); }

    friend auto operator<=>(const Date&, const Date&) = default;
};

// Whole days from a to b (b - a): 01/04/2015 to 31/03/2016 is 365.
int days_between(const Date& a, const Date& b);

bool is_leap_year(int year);
int days_in_month(int year, int month);

// The financial year is named by the calendar year in which it ends.
Date fy_first(int year_end);  // 01/04/(year_end - 1)
Date fy_last(int year_end);   // 31/03/year_end
int fy_year_of(const Date& date);
// 366 when the February inside the year has 29 days.
int fy_length_days(int year_end);

// Whether a typed text is a date in day-month-year order, as the usual date
// recognition of the desktop reads it: day, month and year separated by "/", "-",
// "." or a space, the month as a number or a name ("31-Dec-2015"), the year of
// two or four digits. Digits without separators are a number, not a date.
bool is_date(std::string_view text);

}  // namespace brenlow
