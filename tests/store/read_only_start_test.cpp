// Start-up on a prepared database only reads: creating tables and seeding masters
// happen when something is missing (and in init), never in the way of a listing.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <set>

#include "store/client_store.h"
#include "store/schema.h"
#include "store/seed.h"
#include "store/sql_dialect.h"
#include "support/test_databases.h"

namespace brenlow::store {
namespace {

class ReadOnlyStart : public test::BackendTest {};

TEST_P(ReadOnlyStart, TheListOfSharedTablesIsWhatIsCreated) {
    EXPECT_FALSE(shared_tables_exist(db()));
    create_shared_tables(db());
    std::set<std::string> made, listed;
    for (const auto& t : db().table_names()) made.insert(to_lower_ascii(t));
    for (const auto& t : shared_table_names()) listed.insert(to_lower_ascii(t));
    EXPECT_EQ(made, listed);
    EXPECT_TRUE(shared_tables_exist(db()));
    EXPECT_FALSE(masters_seeded(db()));
    seed_masters(db(), BRENLOW_TEST_DATA_DIR);
    EXPECT_TRUE(masters_seeded(db()));
}

// Another user is in the middle of a write: a start-up that only reads does not
// wait for it to finish.
TEST_P(ReadOnlyStart, StartUpOnAPreparedDatabaseDoesNotWaitForAWriter) {
    prepare_schema(db(), BRENLOW_TEST_DATA_DIR);
    create_client_year(db(), "ACME", 2025, "ACME", 1);
    auto writer = temp().open_another();
    Transaction busy(*writer);
    writer->execute("INSERT INTO Mast_Part (PartId, particular) VALUES (900, 'BUSY')");

    auto reader = temp().open_another();
    const auto start = std::chrono::steady_clock::now();
    ensure_schema(*reader, BRENLOW_TEST_DATA_DIR);
    EXPECT_TRUE(find_client_year(*reader, "ACME", 2025));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    busy.commit();
}

}  // namespace

BRENLOW_INSTANTIATE_BACKENDS(ReadOnlyStart);

}  // namespace brenlow::store
