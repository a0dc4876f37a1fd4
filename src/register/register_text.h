#pragma once
// Small texts and formats the register's files share.

#include <string>

#include "controls/number_format.h"

namespace brenlow::reg {

inline constexpr const char* kNA = "N/A";
inline constexpr const char* kAddEditGroups = "[Add/Edit Asset Group Master Details]";
inline constexpr const char* kShiftList = "#1;Single|#2;Double|#3;Triple";
inline constexpr const char* kCommon = " (As Common)";
// The books-depreciation option kept by the base services under "BADEP".
inline constexpr const char* kBADepList =
    "#N;Depreciation as per Books: Calculated|#Y;Depreciation as per Books: Entered";
// The broken bar between the fields of an adjustment row.
inline constexpr const char* kESASep = "\xC2\xA6";

// Rates show two decimals unless typed with more, which keep four.
inline std::string rate_two_or_four_places(double rate) {
    const std::string four = format_mask(rate, "###0.0000");
    if (four.size() >= 2 && four.compare(four.size() - 2, 2, "00") == 0) return format_mask(rate, "###0.00");
    return four;
}

}  // namespace brenlow::reg
