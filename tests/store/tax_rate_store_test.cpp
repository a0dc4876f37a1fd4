// The practice's effective rates for deferred tax, on both backends.

#include "store/tax_rate_store.h"

#include <gtest/gtest.h>

#include "store/client_store.h"
#include "support/test_databases.h"

namespace brenlow::store {
namespace {

class TaxRateStoreTest : public test::BackendTest {};

// The rates in force: tax with surcharge and cess.
const std::vector<TaxRateRow> kShipped = {
    {1, "company", "115BAA", 25.168},
    {2, "company", "25% up to 1 crore", 26},
    {3, "company", "25% above 1 crore", 27.82},
    {4, "company", "25% above 10 crore", 29.12},
    {5, "company", "30% up to 1 crore", 31.2},
    {6, "company", "30% above 1 crore", 33.384},
    {7, "company", "30% above 10 crore", 34.944},
    {8, "firm", "up to 1 crore", 31.2},
    {9, "firm", "above 1 crore", 34.944},
    {10, "llp", "up to 1 crore", 31.2},
    {11, "llp", "above 1 crore", 34.944},
};

TEST_P(TaxRateStoreTest, ANewDatabaseStartsWithTheShippedRates) {
    EXPECT_EQ(tax_rates(db()), kShipped);  // before the table is made, as a reader sees it
    prepare_tax_rate_table(db());
    EXPECT_EQ(tax_rates(db()), kShipped);
    prepare_tax_rate_table(db());  // made and filled once only
    EXPECT_EQ(tax_rates(db()), kShipped);
}

TEST_P(TaxRateStoreTest, TheSchemaOfANewDatabaseHoldsTheRates) {
    prepare_schema(db(), BRENLOW_TEST_DATA_DIR);
    EXPECT_TRUE(db().table_exists("NoteTaxRate"));
    EXPECT_EQ(tax_rates(db()), kShipped);
}

TEST_P(TaxRateStoreTest, SettingARateChangesItsRowOrAddsOneAfterTheLast) {
    set_tax_rate(db(), "COMPANY", "115baa", 25.2);  // kind and regime compared case-blind
    set_tax_rate(db(), "co-operative", "115BAD", 25.168);
    auto expected = kShipped;
    expected[0].Rate = 25.2;
    expected.push_back({12, "co-operative", "115BAD", 25.168});
    EXPECT_EQ(tax_rates(db()), expected);
    EXPECT_EQ(tax_rate(db(), "Co-Operative", "115bad"), expected.back());
    EXPECT_EQ(tax_rate(db(), "company", "20%"), std::nullopt);
}

TEST_P(TaxRateStoreTest, RemovingARateLeavesTheOthers) {
    EXPECT_TRUE(remove_tax_rate(db(), "firm", "above 1 crore"));
    EXPECT_FALSE(remove_tax_rate(db(), "firm", "above 1 crore"));
    auto expected = kShipped;
    expected.erase(expected.begin() + 8);
    EXPECT_EQ(tax_rates(db()), expected);
}

BRENLOW_INSTANTIATE_BACKENDS(TaxRateStoreTest);

}  // namespace
}  // namespace brenlow::store
