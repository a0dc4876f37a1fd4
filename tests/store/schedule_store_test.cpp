#include "store/schedule_store.h"

#include <gtest/gtest.h>

#include "store/client_store.h"
#include "support/test_databases.h"

namespace brenlow::store {
namespace {

class ScheduleStore : public test::BackendTest {
protected:
    void SetUp() override {
        test::BackendTest::SetUp();
        if (IsSkipped()) return;
        prepare_schema(db(), BRENLOW_TEST_DATA_DIR);
    }
    long long count(const std::string& sql) { return db().query(sql).first("n").as_int(); }
};

TEST_P(ScheduleStore, InitFillsTheMastersTheSchedulesRead) {
    EXPECT_EQ(count("select count(*) as n from MAST_GUNDER"), 10);
    EXPECT_EQ(count("select count(*) as n from MAST_RESV where resv_id between 1 and 7"), 7);
    EXPECT_EQ(investment_types(db()).size(), 10u);
    EXPECT_EQ(loan_heads(db(), 1).size(), 4u);
    EXPECT_EQ(loan_heads(db(), 2).size(), 5u);
    EXPECT_FALSE(other_loans(db()).empty());
    EXPECT_EQ(count("select count(*) as n from mast_depmethod"), 4);
    EXPECT_EQ(count("select count(*) as n from Mast_AllGrp where GID=5 and AllId<>5"), 8);
    EXPECT_EQ(count("select count(*) as n from Mast_AllGrp where allgrp='DEPRECIATION' and gid=29"), 1);
}

TEST_P(ScheduleStore, AClientGetsTheScheduleGroupsOfItsStatusOnce) {
    create_client_year(db(), "FIRM", 2025, "A FIRM", 2);
    create_client_year(db(), "CO", 2025, "A COMPANY", 3);
    EXPECT_EQ(schedule_groups(db(), "2025", "CO").size(), 10u);
    const auto firm = schedule_groups(db(), "2025", "FIRM");
    EXPECT_EQ(firm.size(), 8u);
    EXPECT_EQ(std::count(firm.begin(), firm.end(), "RESERVES AND SURPLUSES"), 0);
    // A client's own choice of groups stays as it is.
    db().execute("delete from SCHED_2025 where code_no='CO' and GID<>9");
    create_client_year(db(), "CO", 2025, "", std::nullopt);
    EXPECT_EQ(schedule_groups(db(), "2025", "CO"), std::vector<std::string>{"CASH AND BANK"});
}

TEST_P(ScheduleStore, CarryForwardCopiesEachColumnAndWritesEmptyValuesAsZero) {
    create_client_year(db(), "CO", 2024, "A COMPANY", 3);
    create_client_year(db(), "CO", 2025, "", std::nullopt);
    db().execute(
        "insert into LOAN_ADV_2024 (srno, code_no, comp_id, Amount, LDAD_ID) values (3,'CO',2,99.5,1)");
    db().execute("insert into LOAN_ADV_2024 (srno, code_no, comp_id, Amount, LDAD_ID) values (1,'XX',2,5,1)");
    EXPECT_EQ(carry_forward_schedule(db(), "LOAN_ADV_", "2025", "2024", "CO"), 1);
    const auto rows = read_schedule(db(), "LOAN_ADV_", "2025", "CO");
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].get("srno").as_int(), 3);
    EXPECT_EQ(rows[0].get("Amount").as_double(), 99.5);
    EXPECT_FALSE(rows[0].get("OTH_LOAN_ID").is_null());
    EXPECT_EQ(rows[0].get("OTH_LOAN_ID").as_int(), 0);
    EXPECT_EQ(client_year_count(db(), "CO", 2023, 2024), find_client_year(db(), "CO", 2024)->count);
    EXPECT_FALSE(client_year_count(db(), "CO", 2022, 2023));
}

TEST_P(ScheduleStore, NewMasterItemsAreNumberedOnFromTheLargest) {
    db().execute("insert into mast_company values (41,'ACME')");
    EXPECT_EQ(find_or_add_company(db(), "acme"), 41);
    EXPECT_EQ(find_or_add_company(db(), "Zeta Ltd"), 42);
    EXPECT_EQ(find_or_add_misc_expense(db(), "Brokerage"), 5);
    EXPECT_EQ(add_reserve(db(), "Capital Reserve"), 8);
    EXPECT_FALSE(add_reserve(db(), "Capital Reserve"));
    EXPECT_EQ(user_reserves(db()).size(), 2u);  // "Others" (7) and the new one
}

BRENLOW_INSTANTIATE_BACKENDS(ScheduleStore);

}  // namespace
}  // namespace brenlow::store
