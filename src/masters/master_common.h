#pragma once
// What the three master screens share: the open financial year and reading a
// number out of an entry field.

#include <string>
#include <string_view>

#include "suite/tarrow_base.h"

namespace brenlow::masters {

// The calendar year in which the open financial year ends (from its closing
// date); 0 when no year is open.
int open_year(const TarrowBase::ClsMain& base);

// The number at the start of a field's text as the screens read it: "15.00" is 15,
// "N/A" and "" are 0.
double field_number(std::string_view text);

// The text with the spaces at both ends taken off.
std::string trimmed(std::string_view text);

}  // namespace brenlow::masters
