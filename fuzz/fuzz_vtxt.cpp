// The validated field: any kind, any limits, any keys, then the leave-field check.

#include <cstdlib>

#include "controls/utf8_text.h"
#include "controls/vtxt.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) return 0;
    brenlow::fuzz::SilentUi ui;
    brenlow::vTXT field(ui);
    field.set_ValidateData(static_cast<std::int16_t>(data[0] % 7));
    field.set_MaxLength(static_cast<std::int16_t>(data[1] % 40));
    field.set_MinLength(static_cast<std::int16_t>(data[2] % 5));
    for (std::size_t i = 3; i < size; ++i) {
        if (data[i] == 0xFF && i + 2 < size) {
            field.set_selection(data[i + 1] % 50, data[i + 2] % 50);
            i += 2;
            continue;
        }
        (void)field.key_press(data[i]);
        // The limit counts characters, and the text stays whole UTF-8 whatever is typed.
        if (field.MaxLength() > 0 &&
            brenlow::utf8_length(field.text()) > static_cast<std::size_t>(field.MaxLength()))
            std::abort();
        if (!brenlow::is_valid_utf8(field.text())) std::abort();
    }
    (void)field.validate();
    return 0;
}
