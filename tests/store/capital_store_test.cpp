#include "store/capital_store.h"

#include <gtest/gtest.h>

#include "store/client_store.h"
#include "store/schema.h"
#include "support/test_databases.h"

namespace brenlow::store {
namespace {

class CapitalStoreTest : public test::BackendTest {};

// A database of an earlier version kept the names as PartNm and Particular.
TEST_P(CapitalStoreTest, OlderNameColumnsOfTheLedgerMastersAreRenamedWithTheirRows) {
    db().execute("Create Table Mast_Part (PartId Int(11), PartNm VarChar(255))");
    db().execute("Create Table Mast_Capital (Particular_Id Int(11), Particular VarChar(255))");
    db().execute("insert into Mast_Part values (7,'CASH')");
    db().execute("insert into Mast_Capital values (3,'DRAWINGS')");
    create_shared_tables(db());
    create_shared_tables(db());
    EXPECT_EQ(mast_part_name(db(), 7), "CASH");
    EXPECT_EQ(ledger_find(db(), Ledger::capital, "drawings"), 3);
}

// The year's result is its items less the tax row of RType 0; with no tax row the
// sum is nothing to take off.
TEST_P(CapitalStoreTest, TheYearsResultReadsItsItemsThenItsTax) {
    prepare_schema(db(), BRENLOW_TEST_DATA_DIR);
    const auto cy = create_client_year(db(), "C001", 2025, "ACME", 2).client_year;
    db().execute("insert into tp_NCPLoss_" + cy.tbl_nm +
                 " values ('C001',2,-50),('C001',1,400),('C002',1,9)");
    auto rows = year_result(db(), cy.tbl_nm, "C001");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].id, 1);
    EXPECT_EQ(rows[1].amt, -50);
    db().execute("insert into tp_Tax_" + cy.tbl_nm + " values ('C001',0,30),('C001',0,20),('C001',1,999)");
    rows = year_result(db(), cy.tbl_nm, "C001");
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[2].ptype, 1);
    EXPECT_EQ(rows[2].amt, 50);
}

BRENLOW_INSTANTIATE_BACKENDS(CapitalStoreTest);

}  // namespace
}  // namespace brenlow::store
