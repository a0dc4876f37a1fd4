#pragma once
// The component's remaining-life function as the register and the imports call it:
// a failure is logged under "MODULE1", "GETREMLIFEYRS" and gives 0.

#include <string_view>

#include "depreciation/remaining_life.h"
#include "frame/error_log.h"

namespace brenlow::frame {

inline double GETREMLIFEYRS(ErrorLog& log, std::string_view put_date_ddmmyyyy, int base_year, int mode,
                            int decimals, double life) {
    double result = 0;
    guarded(log, "MODULE1", "GETREMLIFEYRS", [&] {
        result = depreciation::GETREMLIFEYRS(put_date_ddmmyyyy, base_year, mode, decimals, life);
    });
    return result;
}

}  // namespace brenlow::frame
