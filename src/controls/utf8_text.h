#pragma once
// Text is UTF-8 everywhere in the program: these count and cut it by characters
// (code points), never by bytes, and tell whether bytes are UTF-8 at all.

#include <cstddef>
#include <string>
#include <string_view>

namespace brenlow {

// Well-formed UTF-8: no stray continuation bytes, no overlong forms, no surrogates,
// nothing above U+10FFFF.
bool is_valid_utf8(std::string_view text);

// Characters in valid UTF-8 text (each byte counts once in invalid text).
std::size_t utf8_length(std::string_view text);

// The characters of the text as code points (a byte of invalid text as itself).
std::u32string utf8_code_points(std::string_view text);

// The first `max_chars` characters, never cutting inside one.
std::string utf8_prefix(std::string_view text, std::size_t max_chars);

}  // namespace brenlow
