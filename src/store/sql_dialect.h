#pragma once
// What the database layer needs to know about the suite's statement text before
// handing it to a server: which statements are table locks, unlocks and flushes
// (each backend gives them its own meaning), and how SQLite must see a
// "Create Table" so that text compares case-blind as it does on MySQL.
//
// Nothing here ever changes the inside of a quoted literal or identifier.

#include <string>
#include <string_view>
#include <vector>

namespace brenlow::store {

enum class StatementKind {
    other,
    lock,    // "LOCK TABLE X Write", "LOCK TABLES a Write, b READ"
    unlock,  // "UNLOCK TABLES"
    flush,   // "Flush Tables", "FLUSH TABLES x, y"
    create_table,
};

struct StatementShape {
    StatementKind kind = StatementKind::other;
    // For a lock: the tables named, as written.
    std::vector<std::string> tables;
};

// Looks at the leading words only; keywords in any case, comments and a trailing
// ";" are allowed.
StatementShape classify_statement(std::string_view sql);

// For SQLite: gives every text column (Char(n), VarChar(n), Text, LongText, ...) of
// a "Create Table" statement COLLATE NOCASE unless it names a collation already.
// Any other statement comes back unchanged.
std::string with_case_blind_text_columns(std::string_view create_table_sql);

// A number as the suite writes it: plain decimal text, at most 15 significant
// digits, never an exponent ("1500", "0.1", "-2.5").
std::string plain_number_text(double v);

// ASCII-only case folding, the way SQLite's NOCASE folds.
bool equals_case_blind(std::string_view a, std::string_view b);
std::string to_lower_ascii(std::string_view s);
std::string to_upper_ascii(std::string_view s);

}  // namespace brenlow::store
