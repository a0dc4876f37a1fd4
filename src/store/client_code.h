#pragma once
// A client code names exactly one client, the same way on every backend. Whatever
// door a code comes in by (command line, the desktop's client picker, a document),
// it is trimmed of spaces and upper-cased; what is left must be 1 to 20 of the
// characters A-Z, 0-9 and - _ . / &. Anything else is refused, never folded, so two
// codes that merely look alike ("ACMÉ", "ÀCME") can never reach the same rows.
// The columns holding codes compare byte for byte (see schema.cpp).

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace brenlow::store {

constexpr std::size_t kClientCodeMax = 20;

class BadClientCode : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
};

// What is wrong with a typed code (after trimming and upper-casing), or nothing.
std::optional<std::string> client_code_fault(std::string_view typed);

// The code as stored: trimmed and upper-cased. Throws BadClientCode with a message
// naming the client code and what is wrong.
std::string client_code(std::string_view typed);

}  // namespace brenlow::store
