#pragma once
// What the database layer needs to know about the suite's statement text before
// handing it to a server: how SQLite must see a "Create Table" so that text compares
// case-blind as it does on MySQL.
//
// Nothing here ever changes the inside of a quoted literal or identifier.

#include <string>
#include <string_view>
#include <vector>

namespace brenlow::store {

// "Create Table" or "Create Temporary Table": looks at the leading words only;
// keywords in any case and comments are allowed.
bool is_create_table(std::string_view sql);

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
