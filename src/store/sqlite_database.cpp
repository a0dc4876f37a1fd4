#include "store/sqlite_database.h"

#include <sqlite3.h>

#include <filesystem>
#include <memory>

#include "store/sql_dialect.h"

namespace brenlow::store {

namespace {

// Long enough for another copy of the suite to finish taking its serials.
constexpr int busy_timeout_ms = 30000;

struct StatementDeleter {
    void operator()(sqlite3_stmt* s) const { sqlite3_finalize(s); }
};
using Statement = std::unique_ptr<sqlite3_stmt, StatementDeleter>;

// True when the text holds no statement: blanks, ';' and comments only.
bool no_statement_in(sqlite3* db, std::string_view text) {
    while (!text.empty()) {
        sqlite3_stmt* raw = nullptr;
        const char* tail = nullptr;
        if (sqlite3_prepare_v2(db, text.data(), static_cast<int>(text.size()), &raw, &tail) != SQLITE_OK) {
            return false;
        }
        if (raw) {
            sqlite3_finalize(raw);
            return false;
        }
        const auto used = static_cast<std::size_t>(tail - text.data());
        if (used == 0) return true;
        text.remove_prefix(used);
    }
    return true;
}

void read_column(sqlite3_stmt* s, int i, Value& into) {
    switch (sqlite3_column_type(s, i)) {
        case SQLITE_INTEGER:
            into = Value(static_cast<std::int64_t>(sqlite3_column_int64(s, i)));
            return;
        case SQLITE_FLOAT:
            into = Value(sqlite3_column_double(s, i));
            return;
        case SQLITE_NULL:
            into = Value();
            return;
        default: {
            const auto* text = static_cast<const char*>(sqlite3_column_blob(s, i));
            const auto size = static_cast<std::size_t>(sqlite3_column_bytes(s, i));
            into.set_text(text ? std::string_view(text, size) : std::string_view());
            return;
        }
    }
}

// MySQL's UCASE/LCASE; like SQLite's own upper() they fold ASCII letters only.
void fold_case(sqlite3_context* ctx, int, sqlite3_value** argv, bool upper) {
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL) {
        sqlite3_result_null(ctx);
        return;
    }
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(argv[0]));
    const std::string_view s(text ? text : "", static_cast<std::size_t>(sqlite3_value_bytes(argv[0])));
    const std::string out = upper ? to_upper_ascii(s) : to_lower_ascii(s);
    sqlite3_result_text(ctx, out.data(), static_cast<int>(out.size()), SQLITE_TRANSIENT);
}

void ucase(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
    fold_case(ctx, argc, argv, true);
}
void lcase(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
    fold_case(ctx, argc, argv, false);
}

// MySQL's CONCAT: NULL when any argument is NULL; numbers as plain decimals.
void concat(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
    std::string out;
    for (int i = 0; i < argc; ++i) {
        switch (sqlite3_value_type(argv[i])) {
            case SQLITE_NULL:
                sqlite3_result_null(ctx);
                return;
            case SQLITE_FLOAT:
                out += plain_number_text(sqlite3_value_double(argv[i]));
                break;
            default: {
                const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(argv[i]));
                out.append(text ? text : "", static_cast<std::size_t>(sqlite3_value_bytes(argv[i])));
            }
        }
    }
    sqlite3_result_text(ctx, out.data(), static_cast<int>(out.size()), SQLITE_TRANSIENT);
}

}  // namespace

SqliteDatabase::SqliteDatabase(std::string path) : path_(std::move(path)) {
    if (path_ != ":memory:") {
        const auto folder = std::filesystem::path(path_).parent_path();
        std::error_code ignored;  // a folder we cannot make shows up as the open error below
        if (!folder.empty()) std::filesystem::create_directories(folder, ignored);
    }
    // A connection belongs to one thread at a time (another thread opens its own), so
    // SQLite's lock around every call, the reading of each field included, is not needed.
    const int rc = sqlite3_open_v2(path_.c_str(), &db_,
                                   SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (rc != SQLITE_OK) {
        const std::string message = db_ ? sqlite3_errmsg(db_) : sqlite3_errstr(rc);
        sqlite3_close_v2(db_);
        db_ = nullptr;
        throw DbError(rc, "Cannot open the database file " + path_ + ": " + message);
    }
    sqlite3_extended_result_codes(db_, 1);
    sqlite3_busy_timeout(db_, busy_timeout_ms);
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    sqlite3_create_function(db_, "UCASE", 1, flags, nullptr, ucase, nullptr, nullptr);
    sqlite3_create_function(db_, "LCASE", 1, flags, nullptr, lcase, nullptr, nullptr);
    sqlite3_create_function(db_, "CONCAT", -1, flags, nullptr, concat, nullptr, nullptr);
    try {
        // WAL lets readers go on while one writer holds the lock.
        run("PRAGMA journal_mode=WAL");
        run("PRAGMA synchronous=NORMAL");
    } catch (...) {
        sqlite3_close_v2(db_);
        db_ = nullptr;
        throw;
    }
}

SqliteDatabase::~SqliteDatabase() {
    // Like a dropped MySQL connection: an open group is undone, writes made under a
    // lock outside any group stay.
    try {
        if (depth_ > 0) {
            depth_ = 1;
            rollback();
        }
        if (txn_open_) run("COMMIT");
    } catch (...) {
    }
    sqlite3_close_v2(db_);
}

DbError SqliteDatabase::error(std::string_view sql) const {
    return DbError(sqlite3_extended_errcode(db_), sqlite3_errmsg(db_), std::string(sql));
}

void SqliteDatabase::run(std::string_view sql) {
    for_each_row(sql, [](const Row&) {});
}

void SqliteDatabase::execute(std::string_view sql) {
    // Text compares case-blind, as on MySQL: the columns say so when they are made.
    if (is_create_table(sql))
        run(with_case_blind_text_columns(sql));
    else
        run(sql);
}

Recordset SqliteDatabase::query(std::string_view sql) {
    if (is_create_table(sql)) {
        execute(sql);
        return {};
    }
    std::vector<std::string> names;
    std::vector<std::vector<Value>> rows;
    for_each_row(sql, [&](const Row& row) {
        if (names.empty()) names = row.names();
        rows.emplace_back();
        for (std::size_t i = 0; i < row.size(); ++i) rows.back().push_back(row[i]);
    });
    if (names.empty()) {
        // No rows: the field names still come from the statement.
        sqlite3_stmt* raw = nullptr;
        if (sqlite3_prepare_v2(db_, sql.data(), static_cast<int>(sql.size()), &raw, nullptr) == SQLITE_OK) {
            Statement s(raw);
            for (int i = 0; i < sqlite3_column_count(raw); ++i)
                names.emplace_back(sqlite3_column_name(raw, i));
        }
    }
    return Recordset(std::move(names), std::move(rows));
}

void SqliteDatabase::for_each_row(std::string_view sql, const std::function<void(const Row&)>& fn) {
    sqlite3_stmt* raw = nullptr;
    const char* tail = nullptr;
    if (sqlite3_prepare_v2(db_, sql.data(), static_cast<int>(sql.size()), &raw, &tail) != SQLITE_OK) {
        throw error(sql);
    }
    Statement s(raw);
    // One statement per call, as on MySQL: text glued on after a ';' is refused.
    const auto rest = sql.substr(static_cast<std::size_t>(tail - sql.data()));
    if (!no_statement_in(db_, rest)) {
        throw DbError(SQLITE_ERROR, "Only one statement may be run at a time.", std::string(sql));
    }
    if (!raw) return;  // nothing but blanks or a comment
    const int columns = sqlite3_column_count(raw);
    std::vector<std::string> names;
    for (int i = 0; i < columns; ++i) names.emplace_back(sqlite3_column_name(raw, i));
    std::vector<Value> values(static_cast<std::size_t>(columns));
    for (;;) {
        const int rc = sqlite3_step(raw);
        if (rc == SQLITE_DONE) return;
        if (rc != SQLITE_ROW) {
            auto e = error(sql);
            s.reset();
            after_failure();
            throw e;
        }
        for (int i = 0; i < columns; ++i) read_column(raw, i, values[static_cast<std::size_t>(i)]);
        fn(Row(&names, &values));
    }
}

void SqliteDatabase::after_failure() {
    if (!txn_open_ || sqlite3_get_autocommit(db_) == 0) return;
    // Some failures (a full disk, an I/O error) take the whole transaction with them.
    // A group that lost its earlier writes must not commit its later ones; a lock
    // goes on holding the writers off.
    savepoint_ = false;
    if (depth_ > 0) group_failed_ = true;
    try {
        run("BEGIN IMMEDIATE");
    } catch (...) {
        txn_open_ = false;
    }
}

// One writer at a time over the whole file: the lock is an immediate transaction.
void SqliteDatabase::lock_tables(const std::vector<std::string>&) {
    if (lock_held_ && depth_ == 0) {
        // A new LOCK replaces the one held, as on MySQL.
        run("COMMIT");
        txn_open_ = false;
    }
    lock_held_ = true;
    if (!txn_open_) {
        run("BEGIN IMMEDIATE");
        txn_open_ = true;
    }
}

void SqliteDatabase::unlock_tables() {
    if (!lock_held_) return;
    lock_held_ = false;
    // Inside a group the writes stay pending until the group ends.
    if (depth_ == 0 && txn_open_) {
        run("COMMIT");
        txn_open_ = false;
    }
}

void SqliteDatabase::begin() {
    if (depth_ == 0) {
        group_failed_ = false;
        if (txn_open_) {
            run("SAVEPOINT brenlow_group");
            savepoint_ = true;
        } else {
            // Immediate: a group that reads a maximum and then writes must not find
            // that another writer got in between.
            run("BEGIN IMMEDIATE");
            txn_open_ = true;
        }
    }
    ++depth_;
}

void SqliteDatabase::commit() {
    if (depth_ == 0) throw DbError(SQLITE_MISUSE, "Commit without a matching begin.");
    if (depth_ > 1) {
        --depth_;
        return;
    }
    if (group_failed_) {
        rollback();
        throw DbError(SQLITE_ABORT, "Nothing was saved: part of the group failed and was undone.");
    }
    try {
        if (savepoint_) {
            run("RELEASE brenlow_group");
            savepoint_ = false;
        }
        // A lock still held keeps the transaction (and the group's writes) until
        // UNLOCK TABLES.
        if (!lock_held_) {
            run("COMMIT");
            txn_open_ = false;
        }
    } catch (...) {
        depth_ = 1;
        rollback();
        throw;
    }
    depth_ = 0;
}

void SqliteDatabase::rollback() {
    if (depth_ == 0) return;
    if (depth_ > 1) {
        // An inner group gives up: undo everything now, keep a transaction open for
        // whatever the outer group still runs, and refuse its commit later.
        if (savepoint_) {
            run("ROLLBACK TO brenlow_group");
        } else {
            if (sqlite3_get_autocommit(db_) == 0) run("ROLLBACK");
            run("BEGIN IMMEDIATE");
        }
        group_failed_ = true;
        --depth_;
        return;
    }
    depth_ = 0;
    group_failed_ = false;
    if (savepoint_) {
        savepoint_ = false;
        run("ROLLBACK TO brenlow_group");
        run("RELEASE brenlow_group");
        if (!lock_held_) {
            run("COMMIT");  // what ran under the lock before the group stays
            txn_open_ = false;
        }
        return;
    }
    if (sqlite3_get_autocommit(db_) == 0) run("ROLLBACK");
    txn_open_ = false;
    if (lock_held_) {
        run("BEGIN IMMEDIATE");
        txn_open_ = true;
    }
}

std::vector<std::string> SqliteDatabase::table_names() {
    std::vector<std::string> names;
    for_each_row(
        "SELECT name FROM sqlite_master WHERE type='table' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' "
        "ORDER BY name",
        [&](const Row& row) { names.push_back(row[0].as_text()); });
    return names;
}

bool SqliteDatabase::table_exists(std::string_view name) {
    for (const auto& t : table_names()) {
        if (equals_case_blind(t, name)) return true;
    }
    return false;
}

}  // namespace brenlow::store
