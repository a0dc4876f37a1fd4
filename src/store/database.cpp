#include "store/database.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "store/mysql_database.h"
#include "store/sql_dialect.h"
#include "store/sqlite_database.h"

namespace brenlow::store {

namespace {

std::string_view trimmed(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
    return s;
}

// Numeric text reads as its number, anything else as 0, as a recordset field does.
double text_as_double(const std::string& text) {
    const std::string s(trimmed(text));
    const char* begin = s.c_str();
    char* end = nullptr;
    const double v = std::strtod(begin, &end);
    return end == begin ? 0.0 : v;
}

// Whole numbers round halves to the even neighbour, as a recordset's CLng does.
std::int64_t double_as_int(double v) {
    if (std::isnan(v)) return 0;
    constexpr double lo = static_cast<double>(std::numeric_limits<std::int64_t>::min());
    constexpr double hi = static_cast<double>(std::numeric_limits<std::int64_t>::max());
    if (v <= lo) return std::numeric_limits<std::int64_t>::min();
    if (v >= hi) return std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(std::nearbyint(v));
}

}  // namespace

double Value::as_double() const {
    if (const auto* i = std::get_if<std::int64_t>(&v_)) return static_cast<double>(*i);
    if (const auto* d = std::get_if<double>(&v_)) return *d;
    if (const auto* s = std::get_if<std::string>(&v_)) return text_as_double(*s);
    return 0.0;
}

std::int64_t Value::as_int() const {
    if (const auto* i = std::get_if<std::int64_t>(&v_)) return *i;
    if (const auto* d = std::get_if<double>(&v_)) return double_as_int(*d);
    if (const auto* s = std::get_if<std::string>(&v_)) {
        // Whole-number text is read exactly, even beyond what a double holds.
        const std::string t(trimmed(*s));
        char* end = nullptr;
        errno = 0;
        const long long v = std::strtoll(t.c_str(), &end, 10);
        if (!t.empty() && *end == '\0' && errno == 0) return v;
        return double_as_int(text_as_double(t));
    }
    return 0;
}

std::string Value::as_text() const {
    if (const auto* i = std::get_if<std::int64_t>(&v_)) return std::to_string(*i);
    if (const auto* d = std::get_if<double>(&v_)) return plain_number_text(*d);
    if (const auto* s = std::get_if<std::string>(&v_)) return *s;
    return {};
}

std::optional<std::size_t> Row::index_of(std::string_view name) const {
    for (std::size_t i = 0; i < names_->size(); ++i) {
        if (equals_case_blind((*names_)[i], name)) return i;
    }
    return std::nullopt;
}

const Value& Row::operator[](std::string_view name) const {
    const auto i = index_of(name);
    if (!i) throw DbError(0, "The row has no field named " + std::string(name) + ".");
    return values_->at(*i);
}

Value Recordset::first(std::string_view name) const {
    if (rows_.empty()) return {};
    return row(0)[name];
}

std::unique_ptr<Database> open_database(const std::string& url) {
    constexpr std::string_view sqlite_scheme = "sqlite:";
    constexpr std::string_view mysql_scheme = "mysql://";
    const std::string_view u(url);
    if (u.size() > sqlite_scheme.size() &&
        equals_case_blind(u.substr(0, sqlite_scheme.size()), sqlite_scheme)) {
        return std::make_unique<SqliteDatabase>(url.substr(sqlite_scheme.size()));
    }
    if (u.size() >= mysql_scheme.size() &&
        equals_case_blind(u.substr(0, mysql_scheme.size()), mysql_scheme)) {
        return std::make_unique<MysqlDatabase>(MysqlAddress::parse(url));
    }
    // Only the scheme is repeated: the rest may hold a password.
    const auto colon = u.find(':');
    throw DbError(0, "Unknown database address \"" + std::string(u.substr(0, colon)) +
                         ":...\": use sqlite:PATH or mysql://USER@HOST/DB.");
}

std::string default_database_url() {
    std::string folder;
    if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg) {
        folder = xdg;
    } else if (const char* home = std::getenv("HOME"); home && *home) {
        folder = std::string(home) + "/.local/share";
    } else {
        folder = ".";
    }
    return "sqlite:" + folder + "/tarrow/tarrow.db";
}

std::string failure_reason(Backend backend, const std::exception& failure) {
    const auto* db_error = dynamic_cast<const DbError*>(&failure);
    if (!db_error) return {};
    return failure_reason(backend, db_error->code(), db_error->what());
}

std::string failure_reason(Backend backend, long code, std::string_view text) {
    if (backend == Backend::mysql) {
        switch (code) {
            case 1044:  // no rights on the database
            case 1142:  // no INSERT, UPDATE, DELETE, ... on the table
            case 1143:  // no rights on a column
            case 1227:  // no right for the operation
                return " The database user may only read: the server refused the change.";
            case 1036:  // the table is read only
            case 1290:  // the server runs read only
                return " The database is read only: the server refused the change.";
            case 1021:  // the server's disk is full
            case 1114:  // the table is full
                return " The database server's disk is full.";
            default:
                break;
        }
    } else {
        switch (code & 0xff) {
            case 8:  // SQLITE_READONLY
                return " The database file may only be read.";
            case 13:  // SQLITE_FULL
                return " The disk that holds the database is full.";
            case 5:  // SQLITE_BUSY
            case 6:  // SQLITE_LOCKED
                return " Another user kept the database busy too long.";
            case 10:  // SQLITE_IOERR
                return " The database file could not be written.";
            default:
                break;
        }
    }
    // The program's own refusals (a text too long, a lock waited for too long) say it.
    if (code == 0 && !text.empty()) return " " + std::string(text);
    return {};
}

}  // namespace brenlow::store
