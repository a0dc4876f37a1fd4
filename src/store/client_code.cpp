#include "store/client_code.h"

#include "controls/utf8_text.h"

namespace brenlow::store {
namespace {

constexpr std::string_view kPunctuation = "-_./&";

bool allowed(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || kPunctuation.find(c) != std::string_view::npos;
}

std::string normalised(std::string_view typed) {
    const auto first = typed.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    const auto last = typed.find_last_not_of(" \t");
    std::string code(typed.substr(first, last - first + 1));
    for (auto& c : code) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return code;
}

}  // namespace

std::optional<std::string> client_code_fault(std::string_view typed) {
    const std::string code = normalised(typed);
    if (code.empty()) return std::string("The client code is empty.");
    if (!is_valid_utf8(code)) return std::string("The client code is not valid UTF-8 text.");
    const std::string rule = "a client code is 1 to " + std::to_string(kClientCodeMax) +
                             " of the letters A-Z, the digits 0-9 and the marks " +
                             std::string(kPunctuation) + ".";
    for (std::size_t i = 0; i < code.size(); ++i) {
        if (allowed(code[i])) continue;
        // Name the whole character, not one byte of it.
        std::size_t end = i + 1;
        while (end < code.size() && (static_cast<unsigned char>(code[end]) & 0xC0) == 0x80) ++end;
        const std::string ch = code.substr(i, end - i);
        const bool control = ch.size() == 1 && static_cast<unsigned char>(ch[0]) < 0x20;
        const std::string shown = ch == " " ? "a space" : control ? "a control character" : "\"" + ch + "\"";
        return "The client code holds " + shown + ": " + rule;
    }
    if (code.size() > kClientCodeMax) return "The client code \"" + code + "\" is too long: " + rule;
    return std::nullopt;
}

std::string client_code(std::string_view typed) {
    if (const auto fault = client_code_fault(typed)) throw BadClientCode(*fault);
    return normalised(typed);
}

}  // namespace brenlow::store
