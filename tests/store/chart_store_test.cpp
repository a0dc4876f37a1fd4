#include "store/chart_store.h"

#include <gtest/gtest.h>

#include "store/client_store.h"
#include "support/test_databases.h"

namespace brenlow::store {
namespace {

depreciation::ChartRow row(int grp, double rate, double wdv, double addl = 0) {
    depreciation::ChartRow r;
    r.Grp = grp;
    r.Rate = rate;
    r.Wdv = wdv;
    r.ADeprF = addl;
    r.TotDep = wdv * rate / 100;
    r.WdvCl = wdv - r.TotDep;
    return r;
}

class ChartStoreTest : public test::BackendTest {
protected:
    void SetUp() override {
        test::BackendTest::SetUp();
        if (IsSkipped()) return;
        ensure_schema(db(), BRENLOW_TEST_DATA_DIR);
    }
};

TEST_P(ChartStoreTest, ABuiltChartReplacesOnlyThatClientsYear) {
    rewrite_built_chart(db(), "C1", 2025, {row(3, 15, 100000), row(1, 10, 50000)});
    rewrite_built_chart(db(), "C2", 2025, {row(2, 10, 1000)});
    rewrite_built_chart(db(), "C1", 2024, {row(2, 10, 7)});
    rewrite_built_chart(db(), "C1", 2025, {row(3, 15, 200000.5), row(3, -40, 1234)});

    const auto c1 = read_chart(db(), ChartTable::TmpDepChart, "C1", 2025);
    ASSERT_EQ(c1.size(), 2u);
    EXPECT_EQ(c1[0].Code_No, "C1");
    EXPECT_EQ(c1[0].FYr, 2025);
    EXPECT_EQ(c1[0].Grp, 3);
    EXPECT_DOUBLE_EQ(c1[0].Wdv, 200000.5);
    EXPECT_DOUBLE_EQ(c1[0].WdvCl, 200000.5 - 30000.075);
    EXPECT_DOUBLE_EQ(c1[1].Rate, -40);
    EXPECT_EQ(read_chart(db(), ChartTable::TmpDepChart, "C2", 2025).size(), 1u);
    EXPECT_EQ(read_chart(db(), ChartTable::TmpDepChart, "C1", 2024).size(), 1u);
}

TEST_P(ChartStoreTest, TheHandEditedChartIsCopiedRowForRow) {
    const std::vector<depreciation::ChartRow> edited = {row(3, 15, 1000, 200), row(4, 25, 400)};
    rewrite_hand_edited_chart(db(), "C1", 2025, edited);
    rewrite_built_chart(db(), "C1", 2025, {row(3, 15, 999999)});
    copy_hand_edited_chart(db(), "C1", 2025);
    auto copied = read_chart(db(), ChartTable::TmpDepChart, "C1", 2025);
    auto original = read_chart(db(), ChartTable::DeprChart, "C1", 2025);
    ASSERT_EQ(copied.size(), 2u);
    EXPECT_EQ(copied, original);
}

TEST_P(ChartStoreTest, AdditionalSumsCountOnlyPlantAtTheRegimeRates) {
    rewrite_built_chart(
        db(), "C1", 2025,
        {row(3, 15, 1000, 100), row(3, 40, 1000, 10), row(3, 45, 1000, 1000), row(1, 15, 10, 5000)});
    const auto sums = additional_in_stored_chart(db(), ChartTable::TmpDepChart, "C1", 2025);
    EXPECT_DOUBLE_EQ(sums.ADeprF, 110);
    const auto none = additional_in_stored_chart(db(), ChartTable::DeprChart, "C1", 2025);
    EXPECT_DOUBLE_EQ(none.ADeprF, 0);
}

BRENLOW_INSTANTIATE_BACKENDS(ChartStoreTest);

}  // namespace
}  // namespace brenlow::store
