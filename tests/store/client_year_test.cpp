#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "store/client_store.h"
#include "store/schema.h"
#include "store/seed.h"
#include "support/test_databases.h"

namespace brenlow::store {
namespace {

class ClientYearTest : public test::BackendTest {
protected:
    void SetUp() override {
        test::BackendTest::SetUp();
        if (IsSkipped()) return;
        ensure_schema(db(), BRENLOW_TEST_DATA_DIR);
    }
    long long count(const std::string& sql) { return db().query(sql).first("n").as_int(); }
};

TEST_P(ClientYearTest, CreatingAYearMakesTheMasterRowAndEveryTableOfTheYear) {
    const auto created = create_client_year(db(), "C001", 2025, "ACME", 3);
    EXPECT_TRUE(created.master_row_created);
    const auto& cy = created.client_year;
    EXPECT_EQ(cy.f_yr, "01042024");
    EXPECT_EQ(cy.s_yr, "31032025");
    EXPECT_EQ(cy.count, 1);
    EXPECT_EQ(cy.status, 3);
    for (const char* t :
         {"NewFATRo2025", "NewFATRa2025", "NewFAGM", "NewITBM", "NewCLBM", "BlockGroup", "FIXED_2025",
          "TAB_2025", "SCHED_2025", "CAPITAL_2025", "FDA_2025", "DeprChart", "TmpDepChart"})
        EXPECT_TRUE(db().table_exists(t)) << t;
    EXPECT_TRUE(db().table_exists("newfatro2025"));
    const std::set<std::string> made(created.tables_created.begin(), created.tables_created.end());
    EXPECT_TRUE(made.count("NewFATRo2025"));
    EXPECT_TRUE(made.count("SHARE_2025"));
    EXPECT_GT(count("select count(*) as n from NewITBM where YR=2025"), 0);
}

TEST_P(ClientYearTest, CreatingItAgainChangesNothing) {
    create_client_year(db(), "C001", 2025, "ACME", 3);
    const auto rows = count("select count(*) as n from master");
    const auto itbm = count("select count(*) as n from NewITBM");
    const auto again = create_client_year(db(), "C001", 2025, "", std::nullopt);
    EXPECT_FALSE(again.master_row_created);
    EXPECT_TRUE(again.tables_created.empty());
    EXPECT_EQ(count("select count(*) as n from master"), rows);
    EXPECT_EQ(count("select count(*) as n from NewITBM"), itbm);
    EXPECT_EQ(again.client_year.client_name, "ACME");
    EXPECT_EQ(again.client_year.status, 3);
    // Seeding twice adds nothing either.
    ensure_schema(db(), BRENLOW_TEST_DATA_DIR);
    EXPECT_EQ(count("select count(*) as n from NewITBM"), itbm);
}

TEST_P(ClientYearTest, ClientsOfOneYearShareItsNumberAndSuffixAndTheNextYearGetsTheNext) {
    const auto a = create_client_year(db(), "C001", 2025, "A", 1).client_year;
    const auto b = create_client_year(db(), "C002", 2025, "B", 2).client_year;
    const auto c = create_client_year(db(), "C001", 2026, "", std::nullopt).client_year;
    EXPECT_EQ(a.count, b.count);
    EXPECT_EQ(a.tbl_nm, b.tbl_nm);
    EXPECT_EQ(c.count, a.count + 1);
    EXPECT_EQ(c.client_name, "A");  // carried from the client's earlier year
    EXPECT_EQ(table_suffix(db(), c.count), "2026");
    EXPECT_EQ(table_count(db()), 2);
    EXPECT_EQ(table_suffix(db(), 99), "");
}

TEST_P(ClientYearTest, BlockIdentifiersTellTheGroupAndTheRate) {
    create_client_year(db(), "C001", 2025, "", std::nullopt);
    const auto rs = db().query("select * from NewITBM where YR=2025 and ID='3-15'");
    ASSERT_EQ(rs.size(), 1u);
    EXPECT_EQ(rs.first("Part").as_text(), "MACHINERY AND PLANT");
    EXPECT_DOUBLE_EQ(rs.first("rate").as_double(), 15);
    // Appendix entries hang under their block with dotted ids; lists leave them out.
    EXPECT_GT(count("select count(*) as n from NewITBM where YR=2025 and ID like '3-15.%'"), 0);
    std::set<std::string> blocks;
    for (const Row r : db().query("select ID from NewITBM where YR=2025 and ID NOT LIKE '%.%'"))
        blocks.insert(r["ID"].as_text());
    EXPECT_EQ(blocks, (std::set<std::string>{"1-5", "1-10", "1-40", "2-10", "3-15", "3-30", "3-40", "3-45",
                                             "4-25", "5-20", "100-0"}));
    // The old general rate of plant before the 2006 Appendix.
    EXPECT_EQ(count("select count(*) as n from NewITBM where YR=2005 and ID='3-25'"), 1);
    EXPECT_EQ(count("select count(*) as n from NewITBM where YR=2006 and ID='3-25'"), 0);
}

TEST_P(ClientYearTest, AYearBeyondTheShippedRatesTakesTheNearestYearsLists) {
    create_client_year(db(), "C001", 2030, "", std::nullopt);
    EXPECT_EQ(count("select count(*) as n from NewITBM where YR=2030"),
              count("select count(*) as n from NewITBM where YR=2027"));
    EXPECT_EQ(count("select count(*) as n from NewCLBM where YR=2030"),
              count("select count(*) as n from NewCLBM where YR=2027"));
}

TEST_P(ClientYearTest, MastersAreSeededWithTheRowsLaterTransfersLookUpByName) {
    EXPECT_EQ(count("select count(*) as n from mast_allgrp where allgrp='DEPRECIATION' and gid=29"), 1);
    EXPECT_EQ(count("select count(*) as n from mast_allgrp where allgrp='PROFIT ON SALE OF FIXED ASSETS' and "
                    "gid=17"),
              1);
    EXPECT_EQ(count("select count(*) as n from mast_allgrp where allgrp='FIXED ASSETS RESIDUAL VALUE "
                    "ADJUSTMENTS' and gid=25"),
              1);
    EXPECT_EQ(
        count("select count(*) as n from mast_allgrp where allgrp='FIXED ASSETS RESIDUAL VALUE (RETAINED "
              "EARNING)' and gid=2"),
        1);
    EXPECT_GT(count("select count(*) as n from Mast_AllGrp where GID=5 and AllId<>5"), 0);
    EXPECT_EQ(count("select count(*) as n from MAST_RESV where resv_id between 1 and 7"), 7);
    EXPECT_EQ(
        db().query("select METHOD_NM from mast_depmethod where METHOD_ID=2").first("METHOD_NM").as_text(),
        "STRAIGHT LINE METHOD");
    EXPECT_EQ(count("select count(*) as n from BlockGroup where GrpId=0"), 1);
    EXPECT_EQ(count("select count(*) as n from NewCLBM where YR=2025 and ID='4.1' and Yrs=15"), 1);
}

TEST_P(ClientYearTest, MiscInformationIsKeptPerClientAndYear) {
    set_misc_info(db(), "C001", "31/03/2025", "MANDEP", "1", "chart edited by hand");
    set_misc_info(db(), "C001", "31/03/2025", "MANDEP", "0", "chart edited by hand");
    set_misc_info(db(), "C002", "31/03/2025", "MANDEP", "1", "");
    EXPECT_EQ(get_misc_info(db(), "C001", "31/03/2025", "MANDEP"), "0");
    EXPECT_EQ(get_misc_info(db(), "C002", "31/03/2025", "MANDEP"), "1");
    EXPECT_EQ(get_misc_info(db(), "C001", "31/03/2026", "MANDEP"), "");
    EXPECT_EQ(count("select count(*) as n from Mast_MiscOthInf where code_no='C001'"), 1);
}

TEST_P(ClientYearTest, TrialBalanceParticularsGetOneIdPerNameWhateverTheCase) {
    const long a = mast_part_id(db(), "Depreciation on Plant");
    const long b = mast_part_id(db(), "DEPRECIATION ON PLANT");
    const long c = mast_part_id(db(), "Profit on Sale");
    EXPECT_EQ(a, b);
    EXPECT_EQ(c, a + 1);
    EXPECT_EQ(mast_part_name(db(), c), "Profit on Sale");
}

BRENLOW_INSTANTIATE_BACKENDS(ClientYearTest);

}  // namespace
}  // namespace brenlow::store
