// The register tables' key on every backend: a client's entries are read along it in
// serial order, without a scan of the whole table and without a sort; registers made
// by earlier versions get it when the year is set up again.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "store/register_bulk.h"
#include "store/register_store.h"
#include "store/schema.h"
#include "support/test_databases.h"

namespace brenlow::store {
namespace {

constexpr int kYear = 2016;

class RegisterKeyTest : public test::BackendTest {
protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped()) return;
        create_shared_tables(db());
    }

    // Entries of three clients, so that one client's read has others' rows to skip.
    void add_entries(int each, bool with_additions = true) {
        for (const char* code : {"C001", "C002", "C003"}) {
            std::vector<OpeningRow> openings(static_cast<std::size_t>(each));
            std::vector<AdditionRow> additions(static_cast<std::size_t>(each));
            for (int i = 0; i < each; ++i) {
                openings[static_cast<std::size_t>(i)].Part = "Opening " + std::to_string(i);
                additions[static_cast<std::size_t>(i)].Part = "Addition " + std::to_string(i);
            }
            insert_openings(db(), code, kYear, openings);
            if (with_additions) insert_additions(db(), code, kYear, additions);
        }
        if (GetParam() == Backend::mysql) {
            db().execute("ANALYZE TABLE " + register_opening_table(kYear));
            if (with_additions) db().execute("ANALYZE TABLE " + register_addition_table(kYear));
        }
    }

    // How the server means to read one client's entries in serial order: MariaDB's
    // "type key Extra", SQLite's plan details.
    std::string plan_of_read(const std::string& table) {
        const std::string read = "SELECT * FROM " + table + " WHERE Code_No='C002' ORDER BY SrNoFATR";
        std::string plan;
        if (GetParam() == Backend::mysql) {
            for (const auto& row : db().query("EXPLAIN " + read))
                plan +=
                    row["type"].as_text() + " " + row["key"].as_text() + " " + row["Extra"].as_text() + ";";
        } else {
            for (const auto& row : db().query("EXPLAIN QUERY PLAN " + read))
                plan += row["detail"].as_text() + ";";
        }
        return plan;
    }

    void expect_read_along_the_key(const std::string& table) {
        const std::string plan = plan_of_read(table);
        if (GetParam() == Backend::mysql) {
            EXPECT_EQ(plan.rfind("ref PRIMARY", 0), 0u) << plan;
            EXPECT_EQ(plan.find("filesort"), std::string::npos) << plan;
        } else {
            EXPECT_NE(plan.find("SEARCH"), std::string::npos) << plan;
            EXPECT_NE(plan.find("ux_" + table), std::string::npos) << plan;
            EXPECT_EQ(plan.find("TEMP B-TREE"), std::string::npos) << plan;
        }
    }

    // The opening table as versions before the key made it: a plain index only.
    void make_opening_table_the_old_way() {
        const std::string o = register_opening_table(kYear);
        db().execute("Create Table If Not Exists " + o +
                     " (Code_No VarChar(50), SrNoFATR Int(11), IdFAGM Int(11), Part VarChar(255), "
                     "CostWdv Double, OpDepr Double, YrCalcCA Int(11), DepCalcCA Double, "
                     "ResValue Double, LifeYrs Double, RateFACL Double, WdvIT Double, DetESA Text, "
                     "RateIT Double, AddlDepRT Double, SaleDate Char(10), SaleAmt Double, "
                     "SaleExp Double, ShiftDet Text, DepFACL Double, OthOpts Text, PutDate Char(10), "
                     "AddlDepOn Double)");
        db().execute("Create Index If Not Exists ix_" + o + " ON " + o + " (Code_No, SrNoFATR)");
    }

    long rows_in(const std::string& table) {
        return static_cast<long>(db().query("SELECT COUNT(*) AS n FROM " + table).first("n").as_int());
    }
};

TEST_P(RegisterKeyTest, OneClientsEntriesAreReadAlongTheKeyWithoutASort) {
    create_register_tables(db(), kYear);
    add_entries(60);
    expect_read_along_the_key(register_opening_table(kYear));
    expect_read_along_the_key(register_addition_table(kYear));
}

TEST_P(RegisterKeyTest, ARegisterMadeByAnEarlierVersionGetsTheKeyWhenItsYearIsSetUpAgain) {
    make_opening_table_the_old_way();
    add_entries(60, false);
    create_register_tables(db(), kYear);
    create_register_tables(db(), kYear);  // as often as init runs: nothing more happens
    expect_read_along_the_key(register_opening_table(kYear));
    EXPECT_EQ(rows_in(register_opening_table(kYear)), 180);
    const auto entries = RegisterStore(db(), "C002", kYear).opening_entries();
    ASSERT_EQ(entries.size(), 60u);
    EXPECT_EQ(entries.front().SrNoFATR, 1);
    EXPECT_EQ(entries.back().SrNoFATR, 60);
}

TEST_P(RegisterKeyTest, TheOldChartsMarkerSitsBesideTheEntriesUnderTheKey) {
    create_register_tables(db(), kYear);
    RegisterStore s(db(), "C001", kYear);
    s.write_old_chart_marker();
    EXPECT_EQ(s.insert_opening(OpeningRow{}), 0);  // the serial after the marker's -1
    EXPECT_EQ(s.insert_opening(OpeningRow{}), 1);
    EXPECT_EQ(rows_in(register_opening_table(kYear)), 3);
}

TEST_P(RegisterKeyTest, ARegisterThatRepeatsASerialKeepsEveryRowAndIsStillRead) {
    make_opening_table_the_old_way();
    add_entries(5, false);
    const std::string o = register_opening_table(kYear);
    db().execute("UPDATE " + o + " SET SrNoFATR=1 WHERE Code_No='C002'");
    create_register_tables(db(), kYear);
    EXPECT_EQ(rows_in(o), 15);
    EXPECT_EQ(RegisterStore(db(), "C002", kYear).opening_entries().size(), 5u);
}

BRENLOW_INSTANTIATE_BACKENDS(RegisterKeyTest);

}  // namespace
}  // namespace brenlow::store
