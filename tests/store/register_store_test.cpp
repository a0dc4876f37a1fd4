// The register's store on every backend: serials under the lock, the old-chart
// marker, the options row rewritten whole, the groups with entries, packed lists.

#include "store/register_store.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>
#include <tuple>

#include "store/schema.h"
#include "support/test_databases.h"

namespace brenlow::store {
namespace {

class RegisterStoreTest : public test::BackendTest {
protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped()) return;
        create_shared_tables(db());
        create_register_tables(db(), 2016);
    }
    long count(const std::string& what) {
        return static_cast<long>(db().query("SELECT COUNT(*) AS n FROM " + what).first("n").as_int());
    }
    static OpeningRow opening(long group, std::string part) {
        OpeningRow o;
        o.IdFAGM = group;
        o.Part = std::move(part);
        return o;
    }
};

TEST_P(RegisterStoreTest, FirstEntryOfAClientTakesSerialOneAndTheNextFollowsTheLargest) {
    RegisterStore s(db(), "C001", 2016);
    EXPECT_EQ(s.insert_opening(opening(1, "A")), 1);
    db().execute("UPDATE NewFATRo2016 SET SrNoFATR=7");
    EXPECT_EQ(s.insert_opening(opening(1, "B")), 8);
    RegisterStore other(db(), "C002", 2016);
    EXPECT_EQ(other.insert_opening(opening(1, "C")), 1);
}

// Every column of a row, in its stored order, to compare rows whole.
auto columns(const OpeningRow& o) {
    return std::tie(o.Code_No, o.SrNoFATR, o.IdFAGM, o.Part, o.CostWdv, o.OpDepr, o.YrCalcCA, o.DepCalcCA,
                    o.ResValue, o.LifeYrs, o.RateFACL, o.WdvIT, o.DetESA, o.RateIT, o.AddlDepRT, o.SaleDate,
                    o.SaleAmt, o.SaleExp, o.ShiftDet, o.DepFACL, o.OthOpts, o.PutDate, o.AddlDepOn);
}
auto columns(const AdditionRow& a) {
    return std::tie(a.Code_No, a.SrNoFATR, a.IdFAGM, a.Part, a.PutDate, a.AccDate, a.PurAmt, a.ExciseCr,
                    a.CurrDiff, a.Subsidy, a.ResValue, a.LifeYrs, a.RateFACL, a.RateIT, a.AddlDepRT,
                    a.SaleDate, a.SaleAmt, a.SaleExp, a.ShiftDet, a.DepFACL, a.OthOpts);
}

TEST_P(RegisterStoreTest, RowsComeBackWithEveryColumnInPlace) {
    RegisterStore s(db(), "C001", 2016);
    // A different value in every column, so that two columns swapped show.
    OpeningRow o = opening(4, "LATHE 'A'");
    o.CostWdv = 1000.5;
    o.OpDepr = 100;
    o.YrCalcCA = 2015;
    o.DepCalcCA = 50;
    o.ResValue = 40;
    o.LifeYrs = 15;
    o.RateFACL = 18.1;
    o.WdvIT = 700;
    o.DetESA = "X";
    o.RateIT = 16;
    o.AddlDepRT = 20;
    o.SaleDate = "01/01/2016";
    o.SaleAmt = 90;
    o.SaleExp = 9;
    o.ShiftDet = "S";
    o.DepFACL = 3;
    o.OthOpts = "|COST|WDV|";
    o.PutDate = "01/04/2012";
    o.AddlDepOn = 12;
    const long sr = s.insert_opening(o);
    o.Code_No = "C001";
    o.SrNoFATR = sr;
    const auto back = s.opening_entry(4, sr);
    ASSERT_TRUE(back);
    EXPECT_EQ(columns(*back), columns(o));

    AdditionRow a;
    a.IdFAGM = 4;
    a.Part = "DRILL";
    a.PutDate = "15/06/2015";
    a.AccDate = "10/06/2015";
    a.PurAmt = 500;
    a.ExciseCr = 11;
    a.CurrDiff = -7;
    a.Subsidy = 21;
    a.ResValue = 25;
    a.LifeYrs = 8;
    a.RateFACL = 12.5;
    a.RateIT = 15;
    a.AddlDepRT = 19;
    a.SaleDate = "01/02/2016";
    a.SaleAmt = 300;
    a.SaleExp = 6;
    a.ShiftDet = "T";
    a.DepFACL = 4;
    a.OthOpts = "SLM|NEW";
    const long asr = s.insert_addition(a);
    a.Code_No = "C001";
    a.SrNoFATR = asr;
    auto aback = s.addition_entry(4, asr);
    ASSERT_TRUE(aback);
    EXPECT_EQ(columns(*aback), columns(a));
    // Rewritten in place, every column again.
    a.Part = "DRILL 2";
    a.ExciseCr = 13;
    a.AccDate = "11/06/2015";
    s.update_addition(a);
    aback = s.addition_entry(4, asr);
    ASSERT_TRUE(aback);
    EXPECT_EQ(columns(*aback), columns(a));
    o.Part = "LATHE B";
    o.OpDepr = 101;
    s.update_opening(o);
    const auto oback = s.opening_entry(4, sr);
    ASSERT_TRUE(oback);
    EXPECT_EQ(columns(*oback), columns(o));
}

TEST_P(RegisterStoreTest, TheIncomeTaxReadFillsWhatTheCalculationNeedsAsTheFullReadDoes) {
    RegisterStore s(db(), "C001", 2016);
    OpeningRow o = opening(4, "LATHE");
    o.CostWdv = 1000.5;
    o.WdvIT = 700.25;
    o.DetESA = "X";
    o.AddlDepRT = 20;
    o.SaleDate = "01/01/2016";
    o.SaleAmt = 90;
    o.SaleExp = 9;
    o.OthOpts = "|COST|WDV|N";
    o.PutDate = "01/04/2012";
    o.AddlDepOn = 12;
    s.insert_opening(o);
    s.insert_opening(opening(5, "PRESS"));
    AdditionRow a;
    a.IdFAGM = 4;
    a.Part = "DRILL";
    a.PutDate = "15/06/2015";
    a.AccDate = "10/06/2015";
    a.PurAmt = 500;
    a.ExciseCr = 5;
    a.CurrDiff = 7;
    a.Subsidy = 20;
    a.AddlDepRT = 35;
    a.SaleDate = "02/02/2016";
    a.SaleAmt = 300;
    a.SaleExp = 3;
    a.OthOpts = "SLM|NEW";
    s.insert_addition(a);
    RegisterStore(db(), "C002", 2016).insert_opening(opening(4, "OTHER CLIENT"));

    std::vector<OpeningRow> full, narrow;
    s.for_each_opening(std::nullopt, [&](OpeningRow&& r) { full.push_back(std::move(r)); });
    s.for_each_opening_for_income_tax([&](OpeningRow&& r) { narrow.push_back(std::move(r)); });
    ASSERT_EQ(narrow.size(), 2u);
    ASSERT_EQ(full.size(), 2u);
    for (std::size_t i = 0; i < full.size(); ++i) {
        EXPECT_EQ(narrow[i].Code_No, full[i].Code_No);
        EXPECT_EQ(narrow[i].SrNoFATR, full[i].SrNoFATR);
        EXPECT_EQ(narrow[i].IdFAGM, full[i].IdFAGM);
        EXPECT_EQ(narrow[i].Part, full[i].Part);
        EXPECT_EQ(narrow[i].WdvIT, full[i].WdvIT);
        EXPECT_EQ(narrow[i].DetESA, full[i].DetESA);
        EXPECT_EQ(narrow[i].AddlDepRT, full[i].AddlDepRT);
        EXPECT_EQ(narrow[i].SaleDate, full[i].SaleDate);
        EXPECT_EQ(narrow[i].SaleAmt, full[i].SaleAmt);
        EXPECT_EQ(narrow[i].SaleExp, full[i].SaleExp);
        EXPECT_EQ(narrow[i].OthOpts, full[i].OthOpts);
        EXPECT_EQ(narrow[i].PutDate, full[i].PutDate);
        EXPECT_EQ(narrow[i].AddlDepOn, full[i].AddlDepOn);
    }
    EXPECT_EQ(narrow[0].OthOpts, "|COST|WDV|N");
    EXPECT_EQ(narrow[0].AddlDepOn, 12);

    std::vector<AdditionRow> additions;
    s.for_each_addition_for_income_tax([&](AdditionRow&& r) { additions.push_back(std::move(r)); });
    ASSERT_EQ(additions.size(), 1u);
    const AdditionRow& back = additions[0];
    EXPECT_EQ(back.Code_No, "C001");
    EXPECT_EQ(back.SrNoFATR, 1);
    EXPECT_EQ(back.IdFAGM, 4);
    EXPECT_EQ(back.Part, "DRILL");
    EXPECT_EQ(back.PutDate, "15/06/2015");
    EXPECT_EQ(back.PurAmt, 500);
    EXPECT_EQ(back.ExciseCr, 5);
    EXPECT_EQ(back.CurrDiff, 7);
    EXPECT_EQ(back.Subsidy, 20);
    EXPECT_EQ(back.AddlDepRT, 35);
    EXPECT_EQ(back.SaleDate, "02/02/2016");
    EXPECT_EQ(back.SaleAmt, 300);
    EXPECT_EQ(back.SaleExp, 3);
}

TEST_P(RegisterStoreTest, UsersAddingAtTheSameTimeNeverShareASerial) {
    constexpr int kEach = 15;
    std::vector<std::unique_ptr<Database>> users;
    for (int u = 0; u < 3; ++u) users.push_back(temp().open_another());
    std::vector<std::thread> threads;
    std::vector<std::string> errors(users.size());
    for (std::size_t u = 0; u < users.size(); ++u) {
        threads.emplace_back([&, u] {
            try {
                RegisterStore s(*users[u], "C001", 2016);
                for (int i = 0; i < kEach; ++i) s.insert_addition(AdditionRow{});
            } catch (const std::exception& e) {
                errors[u] = e.what();
            }
        });
    }
    for (auto& t : threads) t.join();
    for (const auto& e : errors) EXPECT_EQ(e, "");
    std::set<long> serials;
    for (const auto& a : RegisterStore(db(), "C001", 2016).addition_entries()) serials.insert(a.SrNoFATR);
    EXPECT_EQ(serials.size(), 3u * kEach);
    EXPECT_EQ(*serials.rbegin(), 3 * kEach);
}

TEST_P(RegisterStoreTest, OldChartMarkerReplacesEverythingOfTheClientAndIsNoEntry) {
    RegisterStore s(db(), "C001", 2016);
    RegisterStore other(db(), "C002", 2016);
    s.insert_opening(opening(1, "A"));
    s.insert_addition(AdditionRow{});
    s.rewrite_options_row("WDV");
    s.rewrite_manual_depreciation({{1, 100.0}});
    other.insert_opening(opening(1, "B"));
    s.write_old_chart_marker();
    EXPECT_TRUE(s.has_old_chart_marker());
    EXPECT_FALSE(s.has_entries());
    EXPECT_TRUE(s.opening_entries().empty());
    EXPECT_EQ(count("NewFATRa2016 WHERE Code_No='C001'"), 0);
    EXPECT_EQ(count("NewFAMI WHERE Code_No='C001'"), 0);
    EXPECT_EQ(count("NewFAMD WHERE Code_No='C001'"), 0);
    EXPECT_EQ(count("NewFATRo2016 WHERE Code_No='C002'"), 1);
    EXPECT_FALSE(other.has_old_chart_marker());
}

TEST_P(RegisterStoreTest, OptionsRowIsRewrittenWholeForItsClientAndYear) {
    RegisterStore s(db(), "C001", 2016);
    EXPECT_FALSE(s.options_row());
    s.rewrite_options_row("WDV|N");
    s.rewrite_options_row("SLM|Y");
    RegisterStore(db(), "C001", 2017).rewrite_options_row("OTHER YEAR");
    EXPECT_EQ(count("NewFAMI WHERE Code_No='C001' AND Yr=2016"), 1);
    EXPECT_EQ(*s.options_row(), "SLM|Y");
}

TEST_P(RegisterStoreTest, GroupsWithEntriesListEachGroupOnceOpeningsFirst) {
    RegisterStore s(db(), "C001", 2016);
    AdditionRow a;
    a.IdFAGM = 9;
    s.insert_addition(a);
    s.insert_opening(opening(5, "A"));
    s.insert_opening(opening(5, "B"));
    a.IdFAGM = 5;
    s.insert_addition(a);
    EXPECT_EQ(s.groups_with_entries(), (std::vector<long>{5, 9}));
}

TEST_P(RegisterStoreTest, MissingGroupIsCreatedOnceWithTheNextSerialOverAllYears) {
    RegisterStore s(db(), "C001", 2016);
    db().execute("INSERT INTO NewFAGM Values (40,2015,'PLANT','3-15',15,20,0,15,'4.1',15,6.33,18.1)");
    AssetGroupRow g = RegisterStore(db(), "C001", 2015).asset_groups().at(0);
    const long made = s.find_or_create_group(g);
    EXPECT_EQ(made, 41);
    EXPECT_EQ(s.find_or_create_group(g), 41);
    g.RateIT = 40;
    EXPECT_EQ(s.find_or_create_group(g), 42);
    EXPECT_EQ(count("NewFAGM WHERE Yr=2016"), 2);
}

TEST(RegisterPacking, ReadersAcceptATrailingSeparatorOrNone) {
    const auto a = unpack_rows("01/04/2015,30/04/2015,2|01/05/2015,31/05/2015,3", ",");
    const auto b = unpack_rows("01/04/2015,30/04/2015,2|01/05/2015,31/05/2015,3|", ",");
    ASSERT_EQ(a.size(), 2u);
    EXPECT_EQ(a, b);
    EXPECT_EQ(a[1][2], "3");
    EXPECT_TRUE(unpack_rows("", ",").empty());
    EXPECT_EQ(pack_rows(a, ","), "01/04/2015,30/04/2015,2|01/05/2015,31/05/2015,3");
    const auto esa = unpack_rows(
        "CAR\xC2\xA6"
        "100\xC2\xA6\xC2\xA6"
        "5|",
        "\xC2\xA6");
    ASSERT_EQ(esa.size(), 1u);
    EXPECT_EQ(esa[0], (std::vector<std::string>{"CAR", "100", "", "5"}));
}

}  // namespace

BRENLOW_INSTANTIATE_BACKENDS(RegisterStoreTest);

}  // namespace brenlow::store
