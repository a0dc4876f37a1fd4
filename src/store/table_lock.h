#pragma once
// "LOCK TABLE X Write" ... "UNLOCK TABLES" as a guard: the lock is released when
// the guard leaves scope, also when a statement under it fails.

#include <initializer_list>
#include <string>
#include <string_view>

#include "store/database.h"

namespace brenlow::store {

class TableLock {
public:
    TableLock(Database& db, std::string_view table) : TableLock(db, {table}) {}
    TableLock(Database& db, std::initializer_list<std::string_view> tables) : db_(db) {
        std::string sql = "LOCK TABLE ";
        bool first = true;
        for (auto t : tables) {
            if (!first) sql += ", ";
            sql += t;
            sql += " Write";
            first = false;
        }
        db_.execute(sql);
        held_ = true;
    }
    ~TableLock() {
        if (held_) {
            try { db_.execute("UNLOCK TABLES"); } catch (...) {}
        }
    }
    TableLock(const TableLock&) = delete;
    TableLock& operator=(const TableLock&) = delete;

    // Releases the lock now; errors reach the caller.
    void release() {
        if (held_) {
            held_ = false;
            db_.execute("UNLOCK TABLES");
        }
    }

private:
    Database& db_;
    bool held_ = false;
};

}  // namespace brenlow::store
