#pragma once
// What a text column takes, the same on every backend: UTF-8 text without NUL, at
// most so many characters (never bytes). The program checks before it writes, so a
// value that one server would take and another refuse is refused on both, with the
// table, row and field named.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "store/database.h"

namespace brenlow::store {

// Column limits in characters.
constexpr std::size_t kCodeChars = 50;         // VarChar(50): client codes, block ids, suffixes
constexpr std::size_t kNameChars = 255;        // VarChar(255): names and particulars
constexpr std::size_t kDateChars = 10;         // Char(10): dd/mm/yyyy
constexpr std::size_t kLongTextChars = 16000;  // Text: 64 KB holds this many characters of any UTF-8

// A text refused before it reached the database.
class TextRefused : public DbError {
public:
    explicit TextRefused(std::string message) : DbError(0, std::move(message)) {}
};

// What is wrong with a value for a column of `max_chars` characters, or nothing:
// "is not valid UTF-8 text", "holds a NUL character", "is longer than 255 characters".
std::optional<std::string> text_fault(std::string_view value, std::size_t max_chars);

// Throws TextRefused "<where>, field <field>: <fault>" (where: "NewFATRo2025 row 3").
void check_text(std::string_view where, std::string_view field, std::string_view value,
                std::size_t max_chars);

}  // namespace brenlow::store
