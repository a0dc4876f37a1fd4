#pragma once
// A calendar date of the register as a small value type. Stored and shown as
// text dd/mm/yyyy; the remaining-life function reads the packed ddmmyyyy form.
// Day arithmetic works on a serial day number, so differences are whole days.

#include <optional>
#include <string>
#include <string_view>

namespace brenlow::depreciation {

struct Date {
    int year = 0;
    int month = 0;
    int day = 0;

    // "dd/mm/yyyy" (one- or two-digit day and month accepted). Empty or invalid text
    // gives no date: an addition without a date of put to use is legal in the register.
    static std::optional<Date> parse(std::string_view text);
    // "ddmmyyyy", eight characters.
    static std::optional<Date> parse_packed(std::string_view text);
    static Date from_serial(long serial);

    long serial() const;  // days since 01/01/1970
    Date plus_days(long days) const { return from_serial(serial() + days); }

    std::string text() const;        // dd/MM/yyyy
    std::string short_text() const;  // DD/MM/YY, used in headings

    friend bool operator==(const Date&, const Date&) = default;
    friend auto operator<=>(const Date& a, const Date& b) { return a.serial() <=> b.serial(); }
};

bool is_leap_year(int year);
int days_in_month(int year, int month);
long days_between(const Date& from, const Date& to);  // to - from, in days

// The financial year whose closing calendar year is `closing_year` (the register's
// year number): 01/04/(closing_year - 1) to 31/03/closing_year.
Date fy_first_day(int closing_year);
Date fy_last_day(int closing_year);
int fy_length_days(int closing_year);  // 366 when the February inside has 29 days

}  // namespace brenlow::depreciation
