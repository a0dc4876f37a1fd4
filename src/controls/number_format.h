#pragma once
// The two roundings of the system, in one place. Formatting with a mask rounds
// halves away from zero; vb_round (the Round of the screens' code) rounds halves
// to the even neighbour. Both judge "half" on the value's 15-significant-digit
// decimal form, so 185.175 (stored as 185.17499999...) formats "185.18".

#include <optional>
#include <string>
#include <string_view>

namespace brenlow {

// Masks: "###0", "###0.00", "###0.0000", "#,##0", "#,##0.00", "#,##0;(#,##0)",
// "###0." followed by n zeros.
std::string format_mask(double value, std::string_view mask);

// The numeric value of format_mask(value, mask) (for the masks without separators
// or brackets this is what the code gets back by reading the formatted text).
double mask_value(double value, std::string_view mask);

// Round(x, n): halves to even.
double vb_round(double value, int decimals);

// How the masks with a comma group the digits before the point: in lakhs and crores
// (18,34,42,000), as Indian statements and returns do, or in thousands (183,442,000).
// A setting of the practice; lakhs until it says otherwise.
enum class DigitGrouping { indian, western };
void set_digit_grouping(DigitGrouping grouping);
DigitGrouping digit_grouping();
// "Indian" / "Western" as the practice's setting keeps them; nullopt for anything else.
std::optional<DigitGrouping> digit_grouping_named(std::string_view name);

// A typed amount: an optional sign, digits with at most one point, and commas between
// the digits before the point grouped either way ("8,50,000", "850,000",
// "15,00,000.50"); spaces around are ignored. nullopt for anything else ("8,5,0", "1e5").
std::optional<double> parse_amount(std::string_view text);

// Plain decimal text of a number as written into SQL and shown unformatted:
// up to 15 significant digits, no exponent, no trailing zeros ("1500", "0.1", "-2.5").
std::string plain_number(double value);

}  // namespace brenlow
