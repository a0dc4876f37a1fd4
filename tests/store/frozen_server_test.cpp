// A MariaDB server that stops answering (here: stopped with SIGSTOP) ends the
// statement with the timeout message instead of hanging the program.
//
// The test freezes the whole server, so it runs only on a private one: ctest's
// store_frozen_server starts one with scripts/with-test-mariadb.sh and sets
// BRENLOW_TEST_FREEZABLE; anywhere else it is skipped.

#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

#include "store/database.h"
#include "store/mysql_database.h"
#include "support/test_databases.h"

namespace brenlow::store {
namespace {

// The server's process: its pid file lies beside its socket.
pid_t server_pid(const std::string& url) {
    const auto at = url.find("socket=");
    if (at == std::string::npos) return 0;
    std::string socket = url.substr(at + 7);
    socket = socket.substr(0, socket.find('&'));
    std::ifstream f(std::filesystem::path(socket).parent_path() / "mariadbd.pid");
    long pid = 0;
    f >> pid;
    return static_cast<pid_t>(pid);
}

class Frozen {
public:
    explicit Frozen(pid_t pid) : pid_(pid) {
        ::kill(pid_, SIGSTOP);
        // The signal is only queued: wait until the kernel shows the process stopped.
        for (int i = 0; i < 200 && !stopped(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ~Frozen() { ::kill(pid_, SIGCONT); }
    Frozen(const Frozen&) = delete;
    Frozen& operator=(const Frozen&) = delete;

private:
    bool stopped() const {
        std::ifstream f("/proc/" + std::to_string(pid_) + "/stat");
        std::string stat((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
        const auto close = stat.rfind(')');
        return close != std::string::npos && close + 2 < stat.size() && stat[close + 2] == 'T';
    }

    pid_t pid_;
};

TEST(MysqlAddressTimeout, TheAddressMayGiveTheAnswerTimeout) {
    const auto a = MysqlAddress::parse("mysql://u@h/db?socket=/tmp/s.sock&timeout=5");
    EXPECT_EQ(a.timeout_s, 5u);
    EXPECT_EQ(a.socket, "/tmp/s.sock");
    EXPECT_EQ(a.describe(), "mysql://u@h/db?socket=/tmp/s.sock&timeout=5");
    EXPECT_EQ(MysqlAddress::parse("mysql://u@h/db").timeout_s, 0u);
    for (const char* bad : {"mysql://u@h/db?timeout=1", "mysql://u@h/db?timeout=",
                            "mysql://u@h/db?timeout=5s", "mysql://u@h/db?timeout=99999"})
        EXPECT_THROW(MysqlAddress::parse(bad), DbError) << bad;
}

TEST(FrozenServer, ReadsAndWritesEndWithTheTimeoutMessageWithinTheTimeout) {
    if (!std::getenv("BRENLOW_TEST_FREEZABLE") || !test::mysql_configured())
        GTEST_SKIP() << "needs a private server: ctest -R store_frozen_server";
    test::TempDatabase temp(Backend::mysql);
    const pid_t pid = server_pid(temp.url());
    ASSERT_GT(pid, 0);
    const std::string url =
        temp.url() + (temp.url().find('?') == std::string::npos ? "?" : "&") + "timeout=3";
    auto reader = open_database(url);
    auto writer = open_database(url);
    writer->execute("CREATE TABLE Frozen (a Int(11))");
    writer->execute("INSERT INTO Frozen VALUES (1)");

    const Frozen frozen(pid);
    using clock = std::chrono::steady_clock;
    for (auto* db : {reader.get(), writer.get()}) {
        const auto start = clock::now();
        try {
            if (db == reader.get()) {
                db->query("SELECT * FROM Frozen");
            } else {
                Transaction tx(*db);
                db->execute("INSERT INTO Frozen VALUES (2)");
                tx.commit();
            }
            ADD_FAILURE() << "a frozen server answered " << (db == reader.get() ? "the read" : "the write");
        } catch (const DbError& e) {
            EXPECT_EQ(std::string(e.what()).rfind("The database server did not answer within 3 seconds", 0),
                      0u)
                << e.what();
        }
        EXPECT_LT(clock::now() - start, std::chrono::seconds(12));
    }
}

}  // namespace
}  // namespace brenlow::store
