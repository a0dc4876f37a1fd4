#pragma once
// What every JSON document import checks before it reads a row: that the text is a
// JSON document at all, that it is of its kind and version, that it carries each of
// its tables under the right name and nothing else; and the reading of one row's
// fields, each fault named by table, row (from 1) and field. Every message is the
// program's own: none of the JSON library's texts reaches the person.

#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace brenlow::exchange {

using DocumentJson = nlohmann::ordered_json;

// The largest amount a document may carry: 15 digits before the point, the most a
// typed amount keeps exactly and the store writes as typed.
inline constexpr double kLargestDocumentAmount = 999999999999999.0;

// The document, or nothing with one line in `errors` ("Not a JSON document: it
// stops being JSON near byte 12").
std::optional<DocumentJson> parse_document(const std::string& text, std::vector<std::string>& errors);

// The keys a document of a kind has: its header and its tables. `optional_tables`
// may be left out as a pair or a whole (the fixed-asset schedule of a schedules
// document); every other table is required.
struct DocumentShape {
    const char* format;  // "brenlow-capital"
    const char* kind;    // "capital", for "Not a capital document"
    int version = 1;
    std::vector<std::string> tables;
    std::vector<std::string> optional_tables;
};
// Checks the header ("format", "version", "client" and "year" when present) and the
// keys: a missing table, a table under another name and an unknown key are refused.
// Returns false (with lines in `errors`) when the document cannot be read further.
bool check_document_shape(const DocumentJson& doc, const DocumentShape& shape,
                          std::vector<std::string>& errors);

// A short picture of a value for a message: at most 60 characters.
std::string shown(const DocumentJson& value);

// Reads the fields of one row, noting the first fault of each field. A field left
// out reads as nothing (0, ""); a JSON null is refused for a field that holds a
// number or a text, unless the row allows it.
class RowFields {
public:
    RowFields(const DocumentJson& row, std::string where, const std::vector<std::string>& known,
              std::vector<std::string>& errors);
    bool is_row() const { return row_.is_object(); }
    bool present(const char* name) const;
    double number(const char* name);
    // A number of the store's range for amounts.
    double amount(const char* name);
    long whole(const char* name);
    std::string text(const char* name, std::size_t max_chars);
    // "" when the field holds a date dd/mm/yyyy or nothing.
    std::string date(const char* name);
    void fail(const std::string& field, const std::string& why);
    bool ok() const { return errors_.size() == before_; }
    const std::string& where() const { return where_; }

private:
    const DocumentJson* field(const char* name, const char* expected);

    const DocumentJson& row_;
    std::string where_;
    std::vector<std::string>& errors_;
    std::size_t before_;
    std::vector<std::string> failed_;
};

}  // namespace brenlow::exchange
