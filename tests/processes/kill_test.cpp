// Each document import stopped with SIGKILL at a random moment: the database is
// afterwards entirely as it was before the command or entirely as the command leaves
// it, never a mixture. A few runs a command; BRENLOW_KILL_RUNS asks for more.

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <nlohmann/json.hpp>
#include <random>
#include <thread>

#include "processes.h"
#include "support/test_databases.h"

namespace brenlow::test {
namespace {

using Json = nlohmann::ordered_json;
using State = std::map<std::string, std::string>;
using Words = std::vector<std::string>;

class Kills : public BackendTest {
protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped()) return;
        runs_ = count_from_environment("BRENLOW_KILL_RUNS", 4);
    }
    const std::string& url() { return temp().url(); }
    void run(const Words& words) { ASSERT_EQ(run_brenlow(url(), words), 0) << words[0] << " " << words[1]; }

    // The command `change` from the state `restore` leaves, killed at random moments
    // from its start to a little past its usual end.
    void kill_at_random(const Words& change, const Words& restore) {
        // Once through, so that whatever the command makes once for all (a particular's
        // name, a block of its own) is there before the old state is taken.
        run(change);
        const State changed = database_state(db());
        run(restore);
        const State old = database_state(db());
        const auto started = std::chrono::steady_clock::now();
        run(change);
        const auto usual = std::chrono::steady_clock::now() - started;
        ASSERT_EQ(database_state(db()), changed) << "the command does not repeat itself";
        run(restore);
        ASSERT_EQ(database_state(db()), old) << "the restoring command does not repeat itself";

        std::mt19937 random(static_cast<unsigned>(::testing::UnitTest::GetInstance()->random_seed()) + 7u);
        const auto longest = std::chrono::duration_cast<std::chrono::microseconds>(usual).count() * 6 / 5 + 1;
        std::uniform_int_distribution<long long> moment(0, longest);
        int killed = 0, finished = 0;
        for (int i = 0; i < runs_; ++i) {
            const pid_t pid = start_brenlow(url(), change);
            std::this_thread::sleep_for(std::chrono::microseconds(moment(random)));
            ::kill(pid, SIGKILL);
            const int code = wait_for(pid);
            (code == 128 + SIGKILL ? killed : finished) += 1;
            const State now = database_state(db());
            const bool as_before = now == old, as_after = now == changed;
            EXPECT_TRUE(as_before || as_after)
                << "run " << i << ": neither the old nor the new state; tables that differ from the old:"
                << tables_that_differ(old, now) << "; from the new:" << tables_that_differ(changed, now);
            if (!as_before) run(restore);
        }
        RecordProperty("killed", killed);
        RecordProperty("finished", finished);
    }
    int runs_ = 4;
    ScratchFolder files_;
};

TEST_P(Kills, ACapitalImportKilledLeavesTheOldYearOrTheNewOne) {
    for (const Words& w : std::vector<Words>{
             {"init", "--client", "FIRM", "--year", "2025", "--name", "SHAH AND CO", "--status", "2"},
             {"capital", "partners", "--client", "FIRM", "--add", "ANIL SHAH"},
             {"capital", "partners", "--client", "FIRM", "--add", "BINA MEHTA"},
             {"capital", "ratios", "--client", "FIRM", "--year", "2025", "1=60", "2=40", "--yes"},
             {"capital", "share", "--client", "FIRM", "--year", "2025", "--net-profit", "1000", "--yes"},
             {"capital", "export", files_.path("old.json"), "--client", "FIRM", "--year", "2025"}})
        run(w);
    Json doc = Json::parse(files_.read("old.json"));
    doc["ratios"][0]["rat"] = 25;
    doc["ratios"][1]["rat"] = 75;
    for (int i = 0; i < 40; ++i)
        doc["CAPITAL_"].push_back({{"code", i % 2 ? "1" : "2"},
                                   {"actyp", i % 2},
                                   {"nid", 1 + i % 2},
                                   {"Particular", "DRAWINGS " + std::to_string(i % 5)},
                                   {"AMT", 100 + i}});
    files_.write("new.json", doc.dump());
    kill_at_random({"capital", "import", files_.path("new.json"), "--client", "FIRM", "--year", "2025"},
                   {"capital", "import", files_.path("old.json"), "--client", "FIRM", "--year", "2025"});
}

TEST_P(Kills, ASchedulesImportWithTheFixedScheduleKilledLeavesEveryTableOldOrEveryTableNew) {
    run({"init", "--client", "ACME", "--year", "2025", "--name", "ACME LTD", "--status", "3"});
    for (const char* c : {"TATA STEEL LTD", "ACME COMPONENTS PVT LTD", "GOVERNMENT OF INDIA"})
        run({"schedules", "company", "add", "--name", c, "--yes"});
    Json old = Json::parse(read_text(std::string(BRENLOW_TEST_FILES_DIR) + "/schedules-year.json"));
    old["FIXED_"] = Json::array();
    old["FDA_"] = Json::array();
    files_.write("old.json", old.dump());
    Json doc = old;
    doc["BANK_"][0]["CASH"] = 12345;
    for (auto& row : doc["SECUR_"]) row["Amount"] = 777;
    for (int i = 0; i < 12; ++i)
        doc["FIXED_"].push_back({{"PART_NM", "MACHINE " + std::to_string(i)},
                                 {"OP_BAL", 100000 + i},
                                 {"op_bal_dep", 1000},
                                 {"RATE_DEP", 15},
                                 {"method_id", 1}});
    files_.write("new.json", doc.dump());
    run({"schedules", "import", files_.path("old.json"), "--client", "ACME", "--year", "2025", "--replace",
         "--yes"});
    kill_at_random({"schedules", "import", files_.path("new.json"), "--client", "ACME", "--year", "2025",
                    "--replace", "--yes"},
                   {"schedules", "import", files_.path("old.json"), "--client", "ACME", "--year", "2025",
                    "--replace", "--yes"});
}

TEST_P(Kills, ARegisterImportKilledLeavesTheOldRegisterOrTheNewOne) {
    run({"init", "--client", "ACME", "--year", "2025", "--status", "3"});
    run({"masters", "group", "add", "--client", "ACME", "--year", "2025", "--name", "LATHES", "--it-block",
         "3-15", "--books-block", "-1", "--classification", "4.1", "--yes"});
    const std::string group = std::to_string(
        db().query("select SrNoFAGM from NewFAGM where Part='LATHES'").first("SrNoFAGM").as_int());
    for (int i = 0; i < 3; ++i)
        run({"register", "add-addition", "--client", "ACME", "--year", "2025", "--group", group, "--part",
             "LATHE " + std::to_string(i), "--put-date", "05/10/2024", "--acc-date", "05/10/2024", "--cost",
             "1000", "--yes"});
    run({"register", "export", files_.path("old.json"), "--client", "ACME", "--year", "2025"});
    Json doc = Json::parse(files_.read("old.json"));
    Json& additions = doc["NewFATRa"];
    ASSERT_FALSE(additions.empty());
    const Json first = additions[0];
    for (int i = 0; i < 60; ++i) {
        Json row = first;
        row["Part"] = "DRILL " + std::to_string(i);
        row["SrNoFATR"] = 100 + i;
        additions.push_back(row);
    }
    files_.write("new.json", doc.dump());
    kill_at_random({"register", "import", files_.path("new.json"), "--client", "ACME", "--year", "2025",
                    "--replace", "--yes"},
                   {"register", "import", files_.path("old.json"), "--client", "ACME", "--year", "2025",
                    "--replace", "--yes"});
}

BRENLOW_INSTANTIATE_BACKENDS(Kills);

}  // namespace
}  // namespace brenlow::test
