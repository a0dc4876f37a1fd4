#include "store/sql_dialect.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace brenlow::store {

namespace {

enum class TokenType { word, quoted_text, quoted_name, punct };

struct Token {
    TokenType type;
    std::size_t begin;
    std::size_t end;
};

bool is_word_char(char c) {
    const auto u = static_cast<unsigned char>(c);
    return (u >= '0' && u <= '9') || (u >= 'A' && u <= 'Z') || (u >= 'a' && u <= 'z') || u == '_' ||
           u == '$' || u >= 0x80;
}

// Splits statement text into words, quoted literals, quoted names and single
// punctuation characters; whitespace and comments are dropped. A quote inside a
// literal is written twice, as the suite escapes it; a backslash is an ordinary
// character (the MySQL sessions run with NO_BACKSLASH_ESCAPES).
std::vector<Token> tokenize(std::string_view s) {
    std::vector<Token> out;
    std::size_t i = 0;
    const std::size_t n = s.size();
    while (i < n) {
        const char c = s[i];
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v') {
            ++i;
        } else if (c == '-' && i + 1 < n && s[i + 1] == '-') {
            while (i < n && s[i] != '\n') ++i;
        } else if (c == '#') {
            while (i < n && s[i] != '\n') ++i;
        } else if (c == '/' && i + 1 < n && s[i + 1] == '*') {
            const auto close = s.find("*/", i + 2);
            i = close == std::string_view::npos ? n : close + 2;
        } else if (c == '\'' || c == '"' || c == '`') {
            const std::size_t begin = i++;
            while (i < n) {
                if (s[i] == c) {
                    if (i + 1 < n && s[i + 1] == c) {
                        i += 2;
                        continue;
                    }
                    ++i;
                    break;
                }
                ++i;
            }
            out.push_back({c == '\'' ? TokenType::quoted_text : TokenType::quoted_name, begin, i});
        } else if (is_word_char(c)) {
            const std::size_t begin = i;
            while (i < n && is_word_char(s[i])) ++i;
            out.push_back({TokenType::word, begin, i});
        } else {
            out.push_back({TokenType::punct, i, i + 1});
            ++i;
        }
    }
    return out;
}

class Tokens {
public:
    explicit Tokens(std::string_view sql) : sql_(sql), tokens_(tokenize(sql)) {}

    std::size_t size() const { return tokens_.size(); }
    const Token& at(std::size_t i) const { return tokens_.at(i); }
    std::string_view text(std::size_t i) const {
        const auto& t = tokens_.at(i);
        return sql_.substr(t.begin, t.end - t.begin);
    }
    bool is_word(std::size_t i, std::string_view word) const {
        return i < tokens_.size() && tokens_[i].type == TokenType::word && equals_case_blind(text(i), word);
    }
    bool is_punct(std::size_t i, char c) const {
        return i < tokens_.size() && tokens_[i].type == TokenType::punct && sql_[tokens_[i].begin] == c;
    }
    // A name as the server would read it: quotes removed, doubled quotes undone.
    std::string name(std::size_t i) const {
        const auto t = text(i);
        if (tokens_.at(i).type != TokenType::quoted_name || t.size() < 2) return std::string(t);
        const char q = t.front();
        std::string out;
        for (std::size_t k = 1; k + 1 < t.size(); ++k) {
            out += t[k];
            if (t[k] == q && k + 2 < t.size() && t[k + 1] == q) ++k;
        }
        return out;
    }

private:
    std::string_view sql_;
    std::vector<Token> tokens_;
};

bool is_one_of(std::string_view word, std::initializer_list<std::string_view> words) {
    for (auto w : words) {
        if (equals_case_blind(word, w)) return true;
    }
    return false;
}

char to_lower(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}
char to_upper(char c) {
    return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

bool equals_case_blind(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (to_lower(a[i]) != to_lower(b[i])) return false;
    }
    return true;
}

std::string to_lower_ascii(std::string_view s) {
    std::string out(s);
    for (auto& c : out) c = to_lower(c);
    return out;
}

std::string to_upper_ascii(std::string_view s) {
    std::string out(s);
    for (auto& c : out) c = to_upper(c);
    return out;
}

bool is_create_table(std::string_view sql) {
    const Tokens t(sql);
    return t.is_word(0, "CREATE") &&
           (t.is_word(1, "TABLE") || (t.is_word(1, "TEMPORARY") && t.is_word(2, "TABLE")));
}

std::string with_case_blind_text_columns(std::string_view sql) {
    if (!is_create_table(sql)) return std::string(sql);
    const Tokens t(sql);

    std::size_t open = 0;
    while (open < t.size() && !t.is_punct(open, '(')) ++open;
    if (open == t.size()) return std::string(sql);  // "Create Table a As Select ..."

    std::vector<std::size_t> inserts;          // offsets in sql that get " COLLATE NOCASE"
    std::size_t cut = std::string_view::npos;  // MySQL table options start here
    std::size_t item = open + 1;
    int depth = 1;
    for (std::size_t i = open + 1; i < t.size(); ++i) {
        if (t.is_punct(i, '(')) {
            ++depth;
            continue;
        }
        const bool item_ends = (depth == 1 && t.is_punct(i, ',')) || (depth == 1 && t.is_punct(i, ')'));
        if (t.is_punct(i, ')')) --depth;
        if (!item_ends) continue;

        // Column definition item .. i-1: name, type, then attributes.
        const std::size_t type = item + 1;
        const bool is_constraint = t.at(item).type == TokenType::word &&
                                   is_one_of(t.text(item), {"PRIMARY", "KEY", "INDEX", "UNIQUE", "CONSTRAINT",
                                                            "FOREIGN", "CHECK", "FULLTEXT", "SPATIAL"});
        if (!is_constraint && type < i && t.at(type).type == TokenType::word &&
            is_one_of(t.text(type), {"CHAR", "VARCHAR", "NCHAR", "NVARCHAR", "TEXT", "TINYTEXT", "MEDIUMTEXT",
                                     "LONGTEXT"})) {
            std::size_t after = type;
            if (t.is_punct(type + 1, '(')) {
                after = type + 1;
                while (after < i && !t.is_punct(after, ')')) ++after;
            }
            bool has_collation = false;
            for (std::size_t k = type; k < i; ++k) has_collation = has_collation || t.is_word(k, "COLLATE");
            if (!has_collation) inserts.push_back(t.at(after).end);
        }
        item = i + 1;
        if (depth == 0) {
            // SQLite knows none of MySQL's table options ("ENGINE=InnoDB" and the like).
            if (i + 1 < t.size() && t.at(i + 1).type == TokenType::word &&
                is_one_of(t.text(i + 1), {"ENGINE", "TYPE", "DEFAULT", "CHARSET", "CHARACTER", "COLLATE",
                                          "AUTO_INCREMENT", "COMMENT", "ROW_FORMAT"})) {
                cut = t.at(i).end;
            }
            break;
        }
    }

    std::string out;
    std::size_t from = 0;
    for (auto at : inserts) {
        out.append(sql.substr(from, at - from));
        out += " COLLATE NOCASE";
        from = at;
    }
    out.append(sql.substr(from, cut == std::string_view::npos ? std::string_view::npos : cut - from));
    return out;
}

std::string plain_number_text(double v) {
    if (!std::isfinite(v)) return "0";
    if (v == 0) return "0";
    // Round to 15 significant digits first, then lay the digits out by hand so that
    // large and small numbers never come out in exponent form.
    std::array<char, 64> buf{};
    std::snprintf(buf.data(), buf.size(), "%.14e", v);
    std::string_view s(buf.data());
    const bool negative = s.front() == '-';
    if (negative) s.remove_prefix(1);
    const auto e = s.find('e');
    std::string digits;
    for (char c : s.substr(0, e)) {
        if (c != '.') digits += c;
    }
    const int exponent = std::atoi(std::string(s.substr(e + 1)).c_str());
    while (digits.size() > 1 && digits.back() == '0') digits.pop_back();

    std::string out = negative ? "-" : "";
    if (exponent < 0) {
        out += "0.";
        out.append(static_cast<std::size_t>(-exponent - 1), '0');
        out += digits;
    } else {
        const auto whole = static_cast<std::size_t>(exponent) + 1;
        if (digits.size() <= whole) {
            out += digits;
            out.append(whole - digits.size(), '0');
        } else {
            out += digits.substr(0, whole);
            out += '.';
            out += digits.substr(whole);
        }
    }
    return out;
}

}  // namespace brenlow::store
