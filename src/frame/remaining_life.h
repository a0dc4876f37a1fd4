#pragma once
// The component's remaining-life function as the register and the imports call it:
// a failure, a date of put to use that cannot be read among them, is logged under
// "MODULE1", "GETREMLIFEYRS" and gives 0.

#include <stdexcept>
#include <string>
#include <string_view>

#include "controls/vb_date.h"
#include "depreciation/remaining_life.h"
#include "frame/error_log.h"

namespace brenlow::frame {

inline double GETREMLIFEYRS(ErrorLog& log, std::string_view put_date_ddmmyyyy, int base_year, int mode,
                            int decimals, double life) {
    double result = 0;
    guarded(log, "MODULE1", "GETREMLIFEYRS", [&] {
        if (!Date::parse_packed(put_date_ddmmyyyy))
            throw std::invalid_argument("Type mismatch: the date of put to use \"" +
                                        std::string(put_date_ddmmyyyy) + "\" is not a date (ddmmyyyy)");
        result = depreciation::GETREMLIFEYRS(put_date_ddmmyyyy, base_year, mode, decimals, life);
    });
    return result;
}

}  // namespace brenlow::frame
