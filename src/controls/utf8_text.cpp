#include "controls/utf8_text.h"

namespace brenlow {
namespace {

// Length of the well-formed sequence at text[i], or 0.
std::size_t sequence_at(std::string_view text, std::size_t i) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char c = byte(i);
    if (c < 0x80) return 1;
    std::size_t n = 0;
    unsigned char lo = 0x80, hi = 0xBF;  // bounds of the second byte
    if (c >= 0xC2 && c <= 0xDF) {
        n = 2;
    } else if (c >= 0xE0 && c <= 0xEF) {
        n = 3;
        if (c == 0xE0) lo = 0xA0;  // overlong
        if (c == 0xED) hi = 0x9F;  // surrogates
    } else if (c >= 0xF0 && c <= 0xF4) {
        n = 4;
        if (c == 0xF0) lo = 0x90;  // overlong
        if (c == 0xF4) hi = 0x8F;  // above U+10FFFF
    } else {
        return 0;
    }
    if (i + n > text.size()) return 0;
    if (byte(i + 1) < lo || byte(i + 1) > hi) return 0;
    for (std::size_t k = 2; k < n; ++k) {
        if (byte(i + k) < 0x80 || byte(i + k) > 0xBF) return 0;
    }
    return n;
}

}  // namespace

bool is_valid_utf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t n = sequence_at(text, i);
        if (n == 0) return false;
        i += n;
    }
    return true;
}

std::size_t utf8_length(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < text.size(); ++count) {
        const std::size_t n = sequence_at(text, i);
        i += n == 0 ? 1 : n;
    }
    return count;
}

std::u32string utf8_code_points(std::string_view text) {
    std::u32string out;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t n = sequence_at(text, i);
        const auto c = static_cast<unsigned char>(text[i]);
        if (n <= 1) {
            out.push_back(c);
            ++i;
            continue;
        }
        char32_t cp = c & (n == 2 ? 0x1F : n == 3 ? 0x0F : 0x07);
        for (std::size_t k = 1; k < n; ++k) cp = (cp << 6) | (static_cast<unsigned char>(text[i + k]) & 0x3F);
        out.push_back(cp);
        i += n;
    }
    return out;
}

std::string utf8_prefix(std::string_view text, std::size_t max_chars) {
    std::size_t i = 0;
    for (std::size_t count = 0; i < text.size() && count < max_chars; ++count) {
        const std::size_t n = sequence_at(text, i);
        i += n == 0 ? 1 : n;
    }
    return std::string(text.substr(0, i));
}

}  // namespace brenlow
