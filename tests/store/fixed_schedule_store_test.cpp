#include "store/fixed_schedule_store.h"

#include <gtest/gtest.h>

#include "store/client_store.h"
#include "store/schema.h"
#include "support/test_databases.h"

namespace brenlow::store {
namespace {

class FixedScheduleStoreTest : public test::BackendTest {
protected:
    void SetUp() override {
        test::BackendTest::SetUp();
        if (IsSkipped()) return;
        create_shared_tables(db());
        create_year_tables(db(), "7");
    }
    FixedScheduleStore store(const std::string& code = "C001") { return {db(), "7", code}; }
    static FixedRow row(long srno, const std::string& name) {
        FixedRow f;
        f.compit_id = f.srno = srno;
        f.OP_BAL = 1000.5 * srno;
        f.method_id = 1;
        f.CGrpId = kNotConsidered;
        f.PART_NM = name;
        return f;
    }
};

TEST_P(FixedScheduleStoreTest, SaveGivesNewNamesTheNextIdAndKeepsOneMarkerEach) {
    db().execute("insert into mast_fix_part(PART_NM,ref_id) values('LAND',4)");
    auto ids = store().save_particulars({{row(1, "LAND"), "LAND"}, {row(2, "O'BRIEN SHED"), "O'BRIEN SHED"}});
    ASSERT_EQ(ids.size(), 2u);
    EXPECT_EQ(ids[0], 4);  // a known name keeps its id
    EXPECT_EQ(ids[1], 5);  // max + 1
    auto rows = store().particulars();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[1].PART_NM, "O'BRIEN SHED");
    EXPECT_DOUBLE_EQ(rows[1].OP_BAL, 2001);
    EXPECT_EQ(rows[1].CGrpId, kNotConsidered);
    // Lines follow a particular whose name changed; markers stay one per particular.
    FdaRow a;
    a.srno = 1;
    a.cost = 10;
    a.ad_date = "01/05/2015";
    store().replace_lines(5, kFdaAddition, {a});
    auto renamed = rows[1];
    ids = store().save_particulars({{rows[0], "LAND"}, {renamed, "SHED"}});
    EXPECT_EQ(ids[1], 6);
    EXPECT_EQ(store().lines(6, kFdaAddition).size(), 1u);
    EXPECT_TRUE(store().lines(5, kFdaAddition).empty());
    EXPECT_EQ(store().lines(std::nullopt, kFdaMarker).size(), 2u);
    // Another client's rows are never touched.
    EXPECT_TRUE(store("C002").particulars().empty());
}

TEST_P(FixedScheduleStoreTest, ANewBlockIsMadeInTheParticularsName) {
    db().execute("INSERT INTO BlockGroup Values (3,'PLANT',1,0)");
    auto plant = row(1, "PLANT");
    plant.CGrpId = 0;  // "[New]"
    plant.IGrpId = 0;
    store().save_particulars({{plant, "PLANT"}, {row(2, "SHED"), "SHED"}});
    const auto rows = store().particulars();
    EXPECT_EQ(rows[0].CGrpId, 3);  // the books block of that name
    EXPECT_EQ(rows[0].IGrpId, 4);  // a new income-tax block
    EXPECT_EQ(rows[1].CGrpId, kNotConsidered);
    EXPECT_EQ(
        db().query("Select GrpDesc from BlockGroup where GrpId=4 and GrpType=2").first("GrpDesc").as_text(),
        "PLANT");
}

TEST_P(FixedScheduleStoreTest, AllRowsGoOutAndComeBackWhole) {
    store().save_particulars({{row(1, "PLANT"), "PLANT"}});
    FdaRow d;
    d.srno = 3;
    d.ad_ded_id = kFdaDeduction;
    d.ref_id = 1;
    d.particular = "OLD PRESS";
    d.AMT = 99.25;
    d.ad_date = "02/02/2016";
    d.src = 0;
    store().replace_lines(1, kFdaDeduction, {d});
    const auto rows = store().all_rows();
    store("C002").replace_all_rows(rows);
    const auto copy = store("C002").all_rows();
    ASSERT_EQ(copy.fixed.size(), 1u);
    ASSERT_EQ(copy.fda.size(), rows.fda.size());
    EXPECT_EQ(copy.fixed[0].PART_NM, "PLANT");
    for (std::size_t i = 0; i < copy.fda.size(); ++i) {
        EXPECT_EQ(copy.fda[i].ad_ded_id, rows.fda[i].ad_ded_id);
        EXPECT_EQ(copy.fda[i].particular, rows.fda[i].particular);
        EXPECT_DOUBLE_EQ(copy.fda[i].AMT, rows.fda[i].AMT);
        EXPECT_EQ(copy.fda[i].ad_date, rows.fda[i].ad_date);
    }
}

TEST_P(FixedScheduleStoreTest, TheMergeWorkTablesAreMadeAsDefinedAndDropped) {
    create_merge_tables(db());
    EXPECT_TRUE(db().table_exists("MergDepr1"));
    EXPECT_TRUE(db().table_exists("MergDepr2"));
    db().execute(
        "INSERT INTO MergDepr2 (SrNo,Code_No,AD_DED_ID,PARTICULAR,AddDepApp) VALUES (1,'C001',1,'X','1')");
    drop_merge_tables(db());
    EXPECT_FALSE(db().table_exists("MergDepr1"));
    EXPECT_FALSE(db().table_exists("MergDepr2"));
}

BRENLOW_INSTANTIATE_BACKENDS(FixedScheduleStoreTest);

}  // namespace
}  // namespace brenlow::store
