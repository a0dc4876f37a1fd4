// Eight copies of the program at once on one database: a name added by all of them
// is one row, and every number taken (ledger ids, group serials, master ids, the
// year number of a new client-year) follows the largest with no gap and no double.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <set>

#include "processes.h"
#include "store/client_store.h"
#include "store/schedule_store.h"
#include "support/test_databases.h"

namespace brenlow::test {
namespace {

constexpr int kProcesses = 8;

class Races : public BackendTest {
protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped()) return;
        ASSERT_EQ(run_brenlow(url(), {"init", "--client", "ACME", "--year", "2025", "--status", "3"}), 0);
        rounds_ = count_from_environment("BRENLOW_RACE_ROUNDS", 3);
    }
    const std::string& url() { return temp().url(); }
    long long number(const std::string& sql) { return db().query(sql).first("n").as_int(); }
    // The ids of a table run 1..n: none twice, none left out.
    void expect_no_gap(const std::string& table, const std::string& id) {
        EXPECT_EQ(number("select count(distinct " + id + ") as n from " + table),
                  number("select count(*) as n from " + table))
            << table;
        EXPECT_EQ(number("select max(" + id + ") as n from " + table),
                  number("select count(*) as n from " + table))
            << table;
    }
    int rounds_ = 3;
};

TEST_P(Races, OneLedgerNameAddedByEightAtOnceIsOneParticular) {
    for (int round = 1; round <= rounds_; ++round) {
        const std::string name = "PARTY " + std::to_string(round);
        const std::vector<std::vector<std::string>> commands(
            kProcesses, {"ledger", "add", name, "--master", "capital", "--yes"});
        for (const int code : run_together(url(), commands)) EXPECT_EQ(code, 0) << name;
        EXPECT_EQ(number("select count(*) as n from Mast_Capital where Part='" + name + "'"), 1) << name;
    }
    expect_no_gap("Mast_Capital", "Particular_Id");
}

TEST_P(Races, EightNamesAddedAtOnceTakeEightNumbersInARow) {
    for (int round = 1; round <= rounds_; ++round) {
        std::vector<std::vector<std::string>> commands;
        for (int p = 0; p < kProcesses; ++p)
            commands.push_back({"ledger", "add", "LEDGER " + std::to_string(round) + "-" + std::to_string(p),
                                "--master", "trial-balance", "--yes"});
        for (const int code : run_together(url(), commands)) EXPECT_EQ(code, 0);
    }
    expect_no_gap("Mast_Part", "PartId");
}

TEST_P(Races, OneAssetGroupNameAddedByEightAtOnceIsOneGroup) {
    for (int round = 1; round <= rounds_; ++round) {
        const std::string name = "LATHES " + std::to_string(round);
        const std::vector<std::vector<std::string>> commands(
            kProcesses, {"masters", "group", "add", "--client", "ACME", "--year", "2025", "--name", name,
                         "--it-block", "3-15", "--books-block", "-1", "--classification", "4.1"});
        int added = 0;
        for (const int code : run_together(url(), commands)) {
            // The others stop at the question whether a second group of the name is wanted.
            EXPECT_TRUE(code == 0 || code == 2) << code;
            added += code == 0 ? 1 : 0;
        }
        EXPECT_EQ(added, 1) << name;
        EXPECT_EQ(number("select count(*) as n from NewFAGM where Part='" + name + "'"), 1) << name;
    }
    expect_no_gap("NewFAGM", "SrNoFAGM");
}

TEST_P(Races, OneBlockNameAddedByEightAtOnceIsOneBlock) {
    for (int round = 1; round <= rounds_; ++round) {
        const std::string name = "PRESSES " + std::to_string(round);
        const std::vector<std::vector<std::string>> commands(
            kProcesses,
            {"masters", "block", "add", "--client", "ACME", "--year", "2025", "--kind", "1", "--name", name});
        int added = 0;
        // The others are told "Duplicate Block Name.".
        for (const int code : run_together(url(), commands)) added += code == 0 ? 1 : 0;
        EXPECT_EQ(added, 1) << name;
        EXPECT_EQ(number("select count(*) as n from BlockGroup where GrpDesc='" + name + "'"), 1) << name;
    }
    EXPECT_EQ(number("select count(distinct GrpId) as n from BlockGroup"),
              number("select count(*) as n from BlockGroup"));
    EXPECT_EQ(number("select max(GrpId) + 1 - min(GrpId) as n from BlockGroup"),
              number("select count(*) as n from BlockGroup"));
}

TEST_P(Races, EightClientsOpenedInANewYearAtOnceShareOneYearNumber) {
    for (int round = 1; round <= rounds_; ++round) {
        const int year = 2030 + round;
        const long long before = number("select max(Count) as n from master");
        std::vector<std::vector<std::string>> commands;
        for (int p = 0; p < kProcesses; ++p)
            commands.push_back({"init", "--client", "C" + std::to_string(round) + "X" + std::to_string(p),
                                "--year", std::to_string(year), "--status", "3"});
        for (const int code : run_together(url(), commands)) EXPECT_EQ(code, 0) << year;
        const std::string s_yr = "'3103" + std::to_string(year) + "'";
        EXPECT_EQ(number("select count(*) as n from master where s_yr=" + s_yr), kProcesses) << year;
        EXPECT_EQ(number("select count(distinct Count) as n from master where s_yr=" + s_yr), 1) << year;
        EXPECT_EQ(number("select max(Count) as n from master where s_yr=" + s_yr), before + 1) << year;
    }
}

// The schedule masters have no command of their own: the schedule screen adds to
// them. Eight processes of this test, each with its own connection, add at once.
TEST_P(Races, TheScheduleMastersTakeOneRowForOneNameFromEightProcesses) {
    using Add = std::function<void(store::Database&, const std::string&)>;
    const std::vector<std::tuple<std::string, std::string, std::string, Add>> masters = {
        {"mast_company", "comp_nm", "comp_id",
         [](store::Database& d, const std::string& n) { store::find_or_add_company(d, n); }},
        {"MAST_MISCEXP", "EXP_NM", "Exp_ID",
         [](store::Database& d, const std::string& n) { store::find_or_add_misc_expense(d, n); }},
        {"MAST_RESV", "RESV_NM", "resv_id",
         [](store::Database& d, const std::string& n) { store::add_reserve(d, n); }},
    };
    for (const auto& [table, name_column, id, add] : masters) {
        for (int round = 1; round <= rounds_; ++round) {
            const std::string name = "ITEM " + std::to_string(round);
            std::vector<pid_t> children;
            for (int p = 0; p < kProcesses; ++p) {
                const pid_t pid = ::fork();
                ASSERT_GE(pid, 0);
                if (pid == 0) {
                    int code = 0;
                    try {
                        auto own = store::open_database(url());
                        add(*own, name);
                    } catch (...) {
                        code = 1;
                    }
                    ::_exit(code);
                }
                children.push_back(pid);
            }
            for (const pid_t c : children) EXPECT_EQ(wait_for(c), 0) << table;
            EXPECT_EQ(
                number("select count(*) as n from " + table + " where " + name_column + "='" + name + "'"), 1)
                << table << " " << name;
        }
        expect_no_gap(table, id);
    }
}

BRENLOW_INSTANTIATE_BACKENDS(Races);

}  // namespace
}  // namespace brenlow::test
