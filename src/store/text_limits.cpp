#include "store/text_limits.h"

#include "controls/utf8_text.h"

namespace brenlow::store {

std::optional<std::string> text_fault(std::string_view value, std::size_t max_chars) {
    if (!is_valid_utf8(value)) return std::string("is not valid UTF-8 text");
    if (value.find('\0') != std::string_view::npos) return std::string("holds a NUL character");
    if (utf8_length(value) > max_chars) return "is longer than " + std::to_string(max_chars) + " characters";
    return std::nullopt;
}

void check_text(std::string_view where, std::string_view field, std::string_view value,
                std::size_t max_chars) {
    if (const auto fault = text_fault(value, max_chars)) {
        throw TextRefused(std::string(where) + ", field " + std::string(field) + ": " + *fault);
    }
}

}  // namespace brenlow::store
