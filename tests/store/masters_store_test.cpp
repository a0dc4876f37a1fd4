#include "store/masters_store.h"

#include <gtest/gtest.h>

#include <thread>

#include "store/client_store.h"
#include "store/schema.h"
#include "support/test_databases.h"

namespace brenlow::store {
namespace {

class MastersStore : public test::BackendTest {
protected:
    void SetUp() override {
        test::BackendTest::SetUp();
        if (IsSkipped()) return;
        create_shared_tables(db());
    }
    long long count(const std::string& where) {
        return db().query("select count(*) as n from " + where).first("n").as_int();
    }
    AssetGroupRow group(int year, const std::string& name) {
        AssetGroupRow g;
        g.Yr = year;
        g.Part = name;
        g.BlockIdIT = "3-15";
        g.RateIT = 15;
        g.AddlRateIT = 20;
        g.BlockFA = -1;
        g.BlockIdCL = "4.1";
        g.LifeYrs = 15;
        g.RateSLM = 6.33;
        g.RateWDV = 18.1;
        return g;
    }
};

TEST_P(MastersStore, GroupSerialsRunOverAllYearsAndDeletingOneYearsGroupLeavesTheOthers) {
    const long a = add_asset_group(db(), group(2025, "PLANT"));
    const long b = add_asset_group(db(), group(2026, "PLANT"));
    EXPECT_EQ(a, 1);
    EXPECT_EQ(b, 2);
    // Another user adds the same name while this one holds the lock: the name is
    // looked for under the lock, so the other finds it taken and writes nothing.
    auto other = temp().open_another();
    std::optional<long> others;
    {
        Transaction tx(db());
        std::thread user([&] { others = add_asset_group_of_new_name(*other, group(2026, "DIES")); });
        const auto mine = add_asset_group_of_new_name(db(), group(2026, "DIES"));
        tx.commit();
        user.join();
        EXPECT_EQ(mine, 3);
    }
    EXPECT_EQ(others, std::nullopt);
    // The lock is gone once the group is in: another user takes the next serial.
    EXPECT_EQ(add_asset_group(*other, group(2026, "DIES")), 4);
    EXPECT_EQ(count("NewFAGM where Part='DIES'"), 2);
    delete_asset_group(db(), 2025, a);
    EXPECT_EQ(count("NewFAGM"), 3);
    EXPECT_FALSE(asset_group(db(), 2025, a));
    const auto kept = asset_group(db(), 2026, b);
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->BlockIdCL, "4.1");
    EXPECT_DOUBLE_EQ(kept->RateSLM, 6.33);
}

TEST_P(MastersStore, AGroupNameIsTakenOnlyWithinItsYearAndNotByTheGroupItself) {
    const long a = add_asset_group(db(), group(2025, "O'NEIL PLANT"));
    EXPECT_TRUE(asset_group_name_taken(db(), 2025, "O'NEIL PLANT", std::nullopt));
    EXPECT_FALSE(asset_group_name_taken(db(), 2025, "O'NEIL PLANT", a));
    EXPECT_FALSE(asset_group_name_taken(db(), 2024, "O'NEIL PLANT", std::nullopt));
}

TEST_P(MastersStore, AGroupIsInUseOnlyWhereTheRegisterOfItsYearHasIt) {
    create_register_tables(db(), 2025);
    db().execute("insert into NewFATRa2025 (Code_No, SrNoFATR, IdFAGM) values ('C1',1,7)");
    EXPECT_TRUE(asset_group_used_by_addition(db(), 2025, 7));
    EXPECT_FALSE(asset_group_used_by_opening(db(), 2025, 7));
    EXPECT_FALSE(asset_group_used_by_addition(db(), 2025, 8));
    // A year without register tables has nothing in use.
    EXPECT_FALSE(asset_group_used_by_opening(db(), 2031, 7));
}

TEST_P(MastersStore, BlockNamesAreTakenWithinAKindAndTheReservedRowIsNeverListed) {
    db().execute("Insert into BlockGroup Values (0,' ',0,0)");
    insert_block(db(), {next_block_id(db()), "PLANT", kBooksBlock, 0});
    insert_block(db(), {next_block_id(db()), "PLANT", kIncomeTaxBlock, 3});
    insert_block(db(), {next_block_id(db()), "BUILDING", kBooksBlock, 0});
    EXPECT_EQ(next_block_id(db()), 4);
    EXPECT_TRUE(block_name_taken(db(), "PLANT", kBooksBlock, std::nullopt));
    EXPECT_FALSE(block_name_taken(db(), "PLANT", kBooksBlock, 1));
    const auto listed = blocks_of_kind(db(), kBooksBlock);
    ASSERT_EQ(listed.size(), 2u);
    EXPECT_EQ(listed[0].name, "PLANT");
    const auto by_name = blocks_of_kind_by_name(db(), kBooksBlock);
    EXPECT_EQ(by_name[0].name, "BUILDING");
    update_block(db(), {2, "MACHINES", kIncomeTaxBlock, 4});
    EXPECT_EQ(blocks_of_kind(db(), kIncomeTaxBlock)[0].nature, 4);
}

TEST_P(MastersStore, TheScheduleTestFindsAnyClientsRowInTheColumnOfTheKindAndSkipsMissingTables) {
    create_year_tables(db(), "2024");
    db().execute("insert into FIXED_2024 (code_no, CGrpId, IGrpId) values ('C7',5,9)");
    EXPECT_EQ(schedule_table_using_block(db(), {"2023", "2024"}, kBooksBlock, 5), "FIXED_2024");
    EXPECT_EQ(schedule_table_using_block(db(), {"2024"}, kIncomeTaxBlock, 9), "FIXED_2024");
    EXPECT_FALSE(schedule_table_using_block(db(), {"2024"}, kIncomeTaxBlock, 5));
    EXPECT_FALSE(schedule_table_using_block(db(), {"", "2023"}, kBooksBlock, 5));
}

TEST_P(MastersStore, AReplacedParticularKeepsItsIdAndIdsRunPerYear) {
    insert_particular(db(), {2025, next_particular_id(db(), 2025), "LATHE", "1", 10, 15, 1, 2});
    insert_particular(db(), {2024, next_particular_id(db(), 2024), "LATHE", "1", 10, 15, 1, 2});
    EXPECT_EQ(next_particular_id(db(), 2025), 2);
    replace_particular(db(), {2025, 1, "LATHES", "2", 6.33, 15, 1, 2});
    const auto parts = particulars_of_year(db(), 2025);
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_EQ(parts[0].id, 1);
    EXPECT_EQ(parts[0].name, "LATHES");
    EXPECT_EQ(parts[0].method, "2");
    EXPECT_TRUE(block_used_by_particular(db(), kIncomeTaxBlock, 2));
    EXPECT_FALSE(block_used_by_particular(db(), kBooksBlock, 2));
    delete_particular(db(), 2025, 1);
    EXPECT_EQ(count("FAPart_Master"), 1);
}

BRENLOW_INSTANTIATE_BACKENDS(MastersStore);

}  // namespace
}  // namespace brenlow::store
