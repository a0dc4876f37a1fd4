#include "exchange/document_checks.h"

#include <algorithm>
#include <cmath>

#include "controls/vb_date.h"
#include "store/text_limits.h"

namespace brenlow::exchange {
namespace {

bool listed(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// A key that differs from a table's name only in case or by a letter or two is that
// table misspelt ("CAPTIAL_", "capital_").
bool looks_like(const std::string& key, const std::string& table) {
    const std::size_t n = key.size(), m = table.size();
    if (n + 2 < m || m + 2 < n) return false;
    std::vector<std::size_t> prev(m + 1), cur(m + 1);
    for (std::size_t j = 0; j <= m; ++j) prev[j] = j;
    for (std::size_t i = 1; i <= n; ++i) {
        cur[0] = i;
        for (std::size_t j = 1; j <= m; ++j) {
            const bool same = std::toupper(static_cast<unsigned char>(key[i - 1])) ==
                              std::toupper(static_cast<unsigned char>(table[j - 1]));
            cur[j] = std::min({prev[j] + 1, cur[j - 1] + 1, prev[j - 1] + (same ? 0 : 1)});
        }
        std::swap(prev, cur);
    }
    return prev[m] <= 2;
}

}  // namespace

std::optional<DocumentJson> parse_document(const std::string& text, std::vector<std::string>& errors) {
    if (text.find_first_not_of(" \t\r\n") == std::string::npos) {
        errors.push_back("Not a JSON document: it is empty");
        return std::nullopt;
    }
    if (const auto fault = store::text_fault(text, text.size())) {
        errors.push_back("Not a JSON document: it is not UTF-8 text");
        return std::nullopt;
    }
    try {
        return DocumentJson::parse(text);
    } catch (const nlohmann::json::parse_error& e) {
        // The library's own text is for its developers; the person gets where it broke.
        errors.push_back("Not a JSON document: it stops being JSON near byte " + std::to_string(e.byte));
    } catch (const nlohmann::json::exception&) {
        // Numbers beyond a double (1e400) are the only other thing the reader refuses.
        errors.push_back("Not a JSON document: it holds a number too large for any amount");
    }
    return std::nullopt;
}

std::string shown(const DocumentJson& value) {
    std::string t = value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    return t.size() > 60 ? t.substr(0, 57) + "..." : t;
}

bool check_document_shape(const DocumentJson& doc, const DocumentShape& shape,
                          std::vector<std::string>& errors) {
    const std::string kind = shape.kind;
    const std::string format = shape.format;
    const auto f = doc.is_object() ? doc.find("format") : doc.end();
    if (!doc.is_object() || f == doc.end() || !f->is_string() || *f != format) {
        errors.push_back("Not a " + kind + " document: \"format\" must be \"" + format + "\"");
        return false;
    }
    const auto v = doc.find("version");
    if (v == doc.end() || !v->is_number_integer() || *v != shape.version) {
        errors.push_back("The " + kind +
                         " document is of a version this program does not read: \"version\" must be " +
                         std::to_string(shape.version) + ", not " + (v == doc.end() ? "missing" : shown(*v)));
        return false;
    }
    const std::size_t before = errors.size();
    if (const auto c = doc.find("client"); c != doc.end() && !c->is_string())
        errors.push_back("\"client\" must be a client code in quotes, not " + shown(*c));
    if (const auto y = doc.find("year"); y != doc.end() && !y->is_number_integer())
        errors.push_back("\"year\" must be a year such as 2025, not " + shown(*y));
    auto all_tables = shape.tables;
    all_tables.insert(all_tables.end(), shape.optional_tables.begin(), shape.optional_tables.end());
    std::vector<std::string> misspelt;
    for (const auto& [key, value] : doc.items()) {
        if (key == "format" || key == "version" || key == "client" || key == "year" ||
            listed(all_tables, key))
            continue;
        std::string meant;
        for (const auto& t : all_tables)
            if (meant.empty() && !doc.contains(t) && looks_like(key, t)) meant = t;
        if (!meant.empty()) {
            errors.push_back("The table \"" + key + "\" is not one of a " + kind + " document: is it " +
                             meant + "?");
            misspelt.push_back(meant);
        } else {
            errors.push_back("The table \"" + key + "\" is not one of a " + kind + " document");
        }
    }
    for (const auto& t : shape.tables)
        if (!doc.contains(t) && !listed(misspelt, t))
            errors.push_back("The document has no table " + t + " (an empty one is written [])");
    // The optional tables go together: all of them or none.
    std::size_t carried = 0;
    for (const auto& t : shape.optional_tables) carried += doc.contains(t) ? 1 : 0;
    if (carried != 0 && carried != shape.optional_tables.size())
        for (const auto& t : shape.optional_tables)
            if (!doc.contains(t) && !listed(misspelt, t))
                errors.push_back("The document has no table " + t + " (an empty one is written [])");
    for (const auto& t : all_tables)
        if (doc.contains(t) && !doc[t].is_array())
            errors.push_back(t + ": a table is a list of rows, not " + shown(doc[t]));
    return errors.size() == before;
}

RowFields::RowFields(const DocumentJson& row, std::string where, const std::vector<std::string>& known,
                     std::vector<std::string>& errors)
    : row_(row), where_(std::move(where)), errors_(errors), before_(errors.size()) {
    if (!row_.is_object()) {
        fail("", "a row is an object of columns");
        return;
    }
    for (const auto& [key, value] : row_.items())
        if (!listed(known, key)) fail(key, "is not a column of the table");
}

bool RowFields::present(const char* name) const {
    return row_.is_object() && row_.contains(name);
}

const DocumentJson* RowFields::field(const char* name, const char* expected) {
    if (!present(name)) return nullptr;
    const DocumentJson& v = row_[name];
    if (v.is_null()) {
        fail(name, std::string("is null: it needs ") + expected);
        return nullptr;
    }
    return &v;
}

double RowFields::number(const char* name) {
    const auto* v = field(name, "a number");
    if (!v) return 0;
    if (!v->is_number() || !std::isfinite(v->get<double>())) {
        fail(name, "is not a number");
        return 0;
    }
    const double d = v->get<double>();
    return d;
}

double RowFields::amount(const char* name) {
    const double d = number(name);
    if (std::fabs(d) > kLargestDocumentAmount) {
        fail(name, "has more than 15 digits before the point");
        return 0;
    }
    return d;
}

long RowFields::whole(const char* name) {
    const double d = number(name);
    if (d != std::floor(d) || std::fabs(d) > 2147483647.0) {
        fail(name, "is not a whole number");
        return 0;
    }
    return static_cast<long>(d);
}

std::string RowFields::text(const char* name, std::size_t max_chars) {
    const auto* v = field(name, "a text");
    if (!v) return {};
    if (!v->is_string()) {
        fail(name, "is not text");
        return {};
    }
    std::string t = v->get<std::string>();
    if (const auto fault = store::text_fault(t, max_chars)) {
        fail(name, "the text " + *fault);
        return {};
    }
    return t;
}

std::string RowFields::date(const char* name) {
    const std::string t = text(name, store::kCodeChars);
    if (!t.empty() && !Date::parse(t)) fail(name, "\"" + t + "\" is not a date dd/mm/yyyy");
    return t;
}

void RowFields::fail(const std::string& field, const std::string& why) {
    // One fault a field.
    if (!field.empty()) {
        if (listed(failed_, field)) return;
        failed_.push_back(field);
    }
    errors_.push_back(where_ + (field.empty() ? "" : ", field " + field) + ": " + why);
}

}  // namespace brenlow::exchange
