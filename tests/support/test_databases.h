#pragma once
// Temporary databases for tests, on every backend.
//
// A store test is written once and runs on SQLite and on MySQL/MariaDB:
//
//   class RegisterStoreTest : public brenlow::test::BackendTest {};
//
//   TEST_P(RegisterStoreTest, NewSerialFollowsTheLargest) {
//       db().execute("Create Table T (Sr Int(11))");
//       ...
//   }
//
//   BRENLOW_INSTANTIATE_BACKENDS(RegisterStoreTest);
//
// Each test gets a fresh, empty database of its own. The MySQL case needs a server
// named by the environment variable BRENLOW_TEST_MYSQL, for example
// "mysql://root@localhost/?socket=/tmp/x/mysql.sock" (no database in the path);
// scripts/with-test-mariadb.sh starts a private one and sets it. Without the
// variable the MySQL case is skipped with a message, or fails when
// BRENLOW_REQUIRE_BACKENDS=1 (scripts/test.sh sets it).

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>

#include "store/database.h"

namespace brenlow::test {

// True when BRENLOW_TEST_MYSQL names a server to test against.
bool mysql_configured();

// A database that exists for the lifetime of this object: for SQLite a new file in
// a fresh temporary folder, for MySQL a new uniquely named database on the test
// server. Both are removed in the destructor.
class TempDatabase {
public:
    // Throws store::DbError when the database cannot be made (for MySQL also when
    // BRENLOW_TEST_MYSQL is unset).
    explicit TempDatabase(store::Backend backend);
    ~TempDatabase();
    TempDatabase(const TempDatabase&) = delete;
    TempDatabase& operator=(const TempDatabase&) = delete;

    store::Backend backend() const { return backend_; }
    // The open connection.
    store::Database& db() { return *db_; }
    // The address that open_database() takes for this database.
    const std::string& url() const { return url_; }
    // A second, independent connection to the same database (another user).
    std::unique_ptr<store::Database> open_another() const;

private:
    store::Backend backend_;
    std::string url_;
    std::string folder_;                       // SQLite: the temporary folder
    std::string mysql_name_;                   // MySQL: the database to drop
    std::unique_ptr<store::Database> server_;  // MySQL: server-level connection
    std::unique_ptr<store::Database> db_;
};

// Fixture base for store tests parameterised by backend; see the example above.
class BackendTest : public ::testing::TestWithParam<store::Backend> {
protected:
    void SetUp() override;
    void TearDown() override;

    store::Database& db() { return temp_->db(); }
    TempDatabase& temp() { return *temp_; }

private:
    std::unique_ptr<TempDatabase> temp_;
};

// "sqlite" / "mysql", for test names.
std::string backend_name(const ::testing::TestParamInfo<store::Backend>& info);

}  // namespace brenlow::test

namespace brenlow::store {
// Lets GoogleTest print "sqlite" / "mysql" in failure messages.
void PrintTo(Backend backend, std::ostream* os);
}  // namespace brenlow::store

// Runs every TEST_P of the suite once per backend; test names end in /sqlite or /mysql.
#define BRENLOW_INSTANTIATE_BACKENDS(SuiteName)                                                 \
    INSTANTIATE_TEST_SUITE_P(                                                                   \
        Backends, SuiteName,                                                                    \
        ::testing::Values(::brenlow::store::Backend::sqlite, ::brenlow::store::Backend::mysql), \
        ::brenlow::test::backend_name)
