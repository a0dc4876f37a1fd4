// The masks and the two roundings, on every double the input spells: no crash, and
// the masks without separators read back as the value mask_value gives.

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "controls/number_format.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < sizeof(double) + 1) return 0;
    double value = 0;
    std::memcpy(&value, data, sizeof value);
    if (!std::isfinite(value) || std::fabs(value) > 1e15) return 0;
    const int decimals = data[sizeof(double)] % 8;
    const char* masks[] = {"###0", "###0.00", "###0.0000", "#,##0", "#,##0.00", "#,##0;(#,##0)"};
    for (const char* mask : masks) {
        const std::string text = brenlow::format_mask(value, mask);
        if (text.empty()) std::abort();
        if (std::strchr(mask, ',') == nullptr &&
            std::strtod(text.c_str(), nullptr) != brenlow::mask_value(value, mask))
            std::abort();
    }
    const double r = brenlow::vb_round(value, decimals);
    if (std::fabs(r - value) > 0.5 + 1e-9 * std::fabs(value)) std::abort();
    (void)brenlow::plain_number(value);
    // The rest of the input as a mask of its own.
    (void)brenlow::format_mask(value,
                               brenlow::fuzz::text_of(data + sizeof(double) + 1, size - sizeof(double) - 1));
    return 0;
}
