// The practice's MariaDB users as the README grants them: a clerk who opens clients
// and years, and a reader who may only look, told in the program's own words why a
// change was refused.

#include <gtest/gtest.h>

#include "cli_fixture.h"

namespace brenlow::cli {
namespace {

class DatabaseUsers : public CliTest {
protected:
    void SetUp() override {
        CliTest::SetUp();
        if (IsSkipped()) return;
        if (GetParam() != store::Backend::mysql) GTEST_SKIP() << "database users are a server's";
        const std::string url = temp().url();
        at_ = url.find('@');
        const auto slash = url.find('/', at_), q = url.find('?', slash);
        database_ = url.substr(slash + 1, q == std::string::npos ? std::string::npos : q - slash - 1);
    }
    void TearDown() override {
        for (const auto& u : users_) db().execute("DROP USER IF EXISTS '" + u + "'@'localhost'");
        CliTest::TearDown();
    }
    // A user of the test's database with these rights; its address.
    std::string user_with(const std::string& kind, const std::string& grants) {
        const std::string user = kind + "_" + database_.substr(database_.size() - 8);
        db().execute("CREATE USER '" + user + "'@'localhost' IDENTIFIED BY 'pw'");
        db().execute("GRANT " + grants + " ON " + database_ + ".* TO '" + user + "'@'localhost'");
        users_.push_back(user);
        return "mysql://" + user + ":pw" + temp().url().substr(at_);
    }
    static CliRun as(const std::string& url, std::vector<std::string> words) {
        words.insert(words.begin(), {"--db", url});
        return run_cli(words);
    }

    std::size_t at_ = 0;
    std::string database_;
    std::vector<std::string> users_;
};

TEST_P(DatabaseUsers, AClerkWithTheReadmesGrantsOpensASecondClientInANewYear) {
    const std::string clerk =
        user_with("clerk", "SELECT, INSERT, UPDATE, DELETE, CREATE, ALTER, INDEX, LOCK TABLES");
    for (const auto& words : std::vector<std::vector<std::string>>{
             {"init", "--client", "ACME", "--year", "2025", "--status", "3"},
             {"init", "--client", "BETA", "--year", "2026", "--status", "2"},
             {"init", "--client", "GAMMA", "--year", "2026", "--status", "2"},
             {"ledger", "add", "DRAWINGS", "--master", "capital"}}) {
        const auto r = as(clerk, words);
        EXPECT_EQ(r.code, 0) << words[0] << " " << words[2] << ": " << r.err;
        EXPECT_EQ(r.err.find("RELOAD"), std::string::npos) << r.err;
    }
    EXPECT_EQ(db().query("select count(*) as n from master").first("n").as_int(), 3);
}

TEST_P(DatabaseUsers, AReaderIsToldInTheProgramsWordsWhyNothingWasSaved) {
    for (const auto& words : std::vector<std::vector<std::string>>{
             {"init", "--client", "FIRM", "--year", "2025", "--status", "2"},
             {"capital", "partners", "--client", "FIRM", "--add", "ANIL SHAH"},
             {"capital", "ratios", "--client", "FIRM", "--year", "2025", "1=100", "--yes"},
             {"capital", "share", "--client", "FIRM", "--year", "2025", "--net-profit", "10", "--yes"}})
        ASSERT_EQ(cli(words).code, 0) << words[0];
    const std::string reader = user_with("reader", "SELECT");
    const std::string refused = "The database user may only read: the server refused the change.";
    auto r =
        as(reader, {"capital", "share", "--client", "FIRM", "--year", "2025", "--net-profit", "20", "--yes"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("brenlow capital: Nothing was saved. " + refused), std::string::npos) << r.err;
    r = as(reader, {"ledger", "add", "DRAWINGS", "--master", "capital"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("Failed to Create Master [DRAWINGS]. " + refused), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find("command denied"), std::string::npos) << r.err;
}

BRENLOW_INSTANTIATE_BACKENDS(DatabaseUsers);

}  // namespace
}  // namespace brenlow::cli
