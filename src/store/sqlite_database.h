#pragma once
// The embedded backend: one SQLite file, shared by every copy of the suite on the
// machine.
//
// How the suite's MySQL statements are carried out here:
// - "LOCK TABLE(S) ... Write|READ" opens an immediate write transaction, which
//   SQLite grants to one connection at a time over the whole file; a second writer
//   waits (busy timeout) instead of failing. "UNLOCK TABLES" commits it, so the
//   serial taken under the lock becomes visible as the lock is released.
// - A lock taken inside begin()/commit() joins that group: whichever of the group's
//   end and UNLOCK TABLES comes last commits. A group begun while a lock is held is
//   a savepoint of the lock's transaction, so its rollback undoes only its own
//   writes.
// - begin() is an immediate write transaction as well: a group that reads and then
//   writes never finds that another writer got in between.
// - "Flush Tables" does nothing: every commit is already visible to the others.
// - UCASE, LCASE and CONCAT exist as functions; text columns of "Create Table"
//   get COLLATE NOCASE so that '=' compares case-blind as on MySQL.

#include <string>

#include "store/database.h"

struct sqlite3;

namespace brenlow::store {

class SqliteDatabase final : public Database {
public:
    // Creates the file and its folder when missing.
    explicit SqliteDatabase(std::string path);
    ~SqliteDatabase() override;

    Backend backend() const override { return Backend::sqlite; }
    std::string describe() const override { return "sqlite:" + path_; }

    void execute(std::string_view sql) override;
    Recordset query(std::string_view sql) override;
    void for_each_row(std::string_view sql, const std::function<void(const Row&)>& fn) override;

    void lock_tables(const std::vector<std::string>& tables) override;
    void unlock_tables() override;
    // Every commit is visible to the other connections already.
    void flush_tables() override {}

    void begin() override;
    void commit() override;
    void rollback() override;
    bool in_transaction() const override { return depth_ > 0; }

    std::vector<std::string> table_names() override;
    bool table_exists(std::string_view name) override;

private:
    void run(std::string_view sql);
    void after_failure();
    DbError error(std::string_view sql) const;

    std::string path_;
    sqlite3* db_ = nullptr;
    int depth_ = 0;              // nested begin() calls
    bool lock_held_ = false;     // between LOCK and UNLOCK
    bool txn_open_ = false;      // a real SQLite transaction is open
    bool savepoint_ = false;     // the group is a savepoint inside the lock's transaction
    bool group_failed_ = false;  // an inner group rolled back; the outer one cannot commit
};

}  // namespace brenlow::store
