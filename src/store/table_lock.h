#pragma once
// A table lock as a guard: released when the guard leaves scope, also when a
// statement under it fails.

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "store/database.h"

namespace brenlow::store {

class TableLock {
public:
    TableLock(Database& db, std::string_view table) : TableLock(db, {table}) {}
    TableLock(Database& db, std::initializer_list<std::string_view> tables) : db_(db) {
        db_.lock_tables(std::vector<std::string>(tables.begin(), tables.end()));
        held_ = true;
    }
    ~TableLock() {
        if (held_) {
            try {
                db_.unlock_tables();
            } catch (...) {
            }
        }
    }
    TableLock(const TableLock&) = delete;
    TableLock& operator=(const TableLock&) = delete;

    // Releases the lock now; errors reach the caller.
    void release() {
        if (held_) {
            held_ = false;
            db_.unlock_tables();
        }
    }

private:
    Database& db_;
    bool held_ = false;
};

}  // namespace brenlow::store
