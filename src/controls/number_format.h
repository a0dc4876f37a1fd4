#pragma once
// The two roundings of the system, in one place. Formatting with a mask rounds
// halves away from zero; vb_round (the Round of the screens' code) rounds halves
// to the even neighbour. Both judge "half" on the value's 15-significant-digit
// decimal form, so 185.175 (stored as 185.17499999...) formats "185.18".

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

// Plain decimal text of a number as written into SQL and shown unformatted:
// up to 15 significant digits, no exponent, no trailing zeros ("1500", "0.1", "-2.5").
std::string plain_number(double value);

}  // namespace brenlow
