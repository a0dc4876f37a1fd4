// What the command line keeps whole: one client per code, text as typed, and
// refusals in the program's own words that write nothing.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli_fixture.h"

namespace brenlow::cli {
namespace {

class IntegrityCli : public CliTest {
protected:
    void SetUp() override {
        CliTest::SetUp();
        if (IsSkipped()) return;
        folder_ =
            std::filesystem::temp_directory_path() /
            ("brenlow-integrity-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "-" +
             std::to_string(::getpid()) + "-" + std::to_string(reinterpret_cast<std::uintptr_t>(this)));
        std::filesystem::create_directories(folder_);
        ASSERT_EQ(cli({"init", "--client", "ACME", "--year", "2025"}).code, 0);
        const auto r =
            cli({"masters", "group", "add", "--client", "ACME", "--year", "2025", "--name", "LATHES",
                 "--it-block", "3-15", "--books-block", "-1", "--classification", "4.1"});
        ASSERT_EQ(r.code, 0) << r.err;
        group_ = std::to_string(
            db().query("select SrNoFAGM from NewFAGM where Part='LATHES'").first("SrNoFAGM").as_int());
    }
    void TearDown() override {
        std::error_code ec;
        if (!folder_.empty()) {
            std::filesystem::permissions(folder_, std::filesystem::perms::owner_all, ec);
            std::filesystem::remove_all(folder_, ec);
        }
        CliTest::TearDown();
    }
    CliRun add_addition(const std::string& code, const std::string& part) {
        return cli({"register", "add-addition", "--client", code, "--year", "2025", "--group", group_,
                    "--part", part, "--put-date", "05/10/2024", "--acc-date", "05/10/2024", "--cost",
                    "1000"});
    }
    long long count(const std::string& table, const std::string& code = "ACME") {
        return db()
            .query("select count(*) as n from " + table + " where Code_No='" + code + "'")
            .first("n")
            .as_int();
    }
    std::string path(const std::string& name) const { return (folder_ / name).string(); }
    void write(const std::string& name, const std::string& text) {
        std::ofstream f(path(name), std::ios::binary);
        f << text;
    }
    std::string read(const std::string& name) {
        std::ifstream f(path(name), std::ios::binary);
        std::ostringstream s;
        s << f.rdbuf();
        return s.str();
    }

    std::filesystem::path folder_;
    std::string group_;
};

TEST_P(IntegrityCli, ALookAlikeClientCodeIsRefusedAndNeverEmptiesTheClientsRegister) {
    ASSERT_EQ(add_addition("ACME", "CNC LATHE").code, 0);
    ASSERT_EQ(cli({"register", "export", path("acme.json"), "--client", "ACME", "--year", "2025"}).code, 0);
    for (const std::string code : {"ACM\xc3\x89",
                                   "\xc3\x80"
                                   "CME",
                                   "AC ME"}) {
        const auto r =
            cli({"register", "import", path("acme.json"), "--replace", "--client", code, "--year", "2025"});
        EXPECT_EQ(r.code, 1) << code;
        EXPECT_NE(r.err.find("Option --client: The client code holds"), std::string::npos) << r.err;
    }
    EXPECT_EQ(count("NewFATRa2025"), 1);
    EXPECT_EQ(db().query("select count(*) as n from NewFATRa2025").first("n").as_int(), 1);
}

TEST_P(IntegrityCli, ATypedCodeIsTrimmedAndUpperCasedAtEveryCommand) {
    ASSERT_EQ(add_addition(" acme ", "DRILL").code, 0);
    EXPECT_EQ(count("NewFATRa2025"), 1);
    const auto r = cli({"register", "list", "--client", "acme", "--year", "2025", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("\"client\": \"ACME\""), std::string::npos) << r.out;
    EXPECT_NE(cli({"init", "--client", "ACM\xc3\x89", "--year", "2025"}).code, 0);
    EXPECT_EQ(db().query("select count(*) as n from master").first("n").as_int(), 1);
}

std::string times(std::string_view piece, int n) {
    std::string out;
    for (int i = 0; i < n; ++i) out += piece;
    return out;
}

const std::string kDevanagari = "\xe0\xa4\xae";  // one letter, three bytes
const std::string kEmoji = "\xf0\x9f\x9a\x9c";   // one character, four bytes

TEST_P(IntegrityCli, TextsUpToTheirFieldsLengthComeBackWholeAndTheYearStillExports) {
    auto r =
        cli({"masters", "group", "add", "--client", "ACME", "--year", "2025", "--name",
             times(kDevanagari, 50), "--it-block", "3-15", "--books-block", "-1", "--classification", "4.1"});
    ASSERT_EQ(r.code, 0) << r.err;
    ASSERT_EQ(add_addition("ACME", times(kEmoji, 100)).code, 0);
    r = cli({"register", "list", "--client", "ACME", "--year", "2025", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find(times(kEmoji, 100)), std::string::npos);
    ASSERT_EQ(cli({"register", "export", path("year.json"), "--client", "ACME", "--year", "2025"}).code, 0);
    const std::string doc = read("year.json");
    EXPECT_NE(doc.find(times(kDevanagari, 50)), std::string::npos);
    EXPECT_NE(doc.find(times(kEmoji, 100)), std::string::npos);
}

TEST_P(IntegrityCli, ALongerTextIsRefusedNamingTheOptionAndNothingIsCut) {
    auto r =
        cli({"masters", "group", "add", "--client", "ACME", "--year", "2025", "--name",
             times(kDevanagari, 60), "--it-block", "3-15", "--books-block", "-1", "--classification", "4.1"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("Option --name is longer than 50 characters."), std::string::npos) << r.err;
    r = add_addition("ACME", times(kEmoji, 200));
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("Option --part is longer than 100 characters."), std::string::npos) << r.err;
    EXPECT_EQ(count("NewFATRa2025"), 0);
    EXPECT_EQ(db().query("select count(*) as n from NewFAGM").first("n").as_int(), 1);
    EXPECT_EQ(cli({"register", "export", path("year.json"), "--client", "ACME", "--year", "2025"}).code, 0);
}

TEST_P(IntegrityCli, RawBytesThatAreNotUtf8AreRefusedAtTheDoor) {
    const auto r = add_addition("ACME", "LATHE \xe0\xa4");
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("Option --part is not valid UTF-8 text."), std::string::npos) << r.err;
    EXPECT_EQ(count("NewFATRa2025"), 0);
}

TEST_P(IntegrityCli, AGroupThatIsNotANumberIsRefusedInTheProgramsWords) {
    const auto r =
        cli({"register", "add-addition", "--client", "ACME", "--year", "2025", "--group", "abc", "--part",
             "LATHE", "--put-date", "05/10/2024", "--acc-date", "05/10/2024", "--cost", "1000"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("Option --group must be a whole number"), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find("stol"), std::string::npos) << r.err;
}

TEST_P(IntegrityCli, ImportingAFolderOrNoFileNamesItAndImportsNothing) {
    auto r = cli({"register", "import", folder_.string(), "--client", "ACME", "--year", "2025"});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.err,
              folder_.string() + ": this is a folder, not a register document\nNothing was imported.\n");
    r = cli({"register", "import", path("none.json"), "--client", "ACME", "--year", "2025"});
    EXPECT_EQ(r.err, path("none.json") + ": there is no such file\nNothing was imported.\n");
    write("bad.json", R"({"format": 1})");
    r = cli({"register", "import", path("bad.json"), "--client", "ACME", "--year", "2025"});
    EXPECT_EQ(
        r.err,
        path("bad.json") +
            ": Not a register document: \"format\" must be \"brenlow-register\"\nNothing was imported.\n");
}

// The disk fills during an export: the earlier document stays as it was.
TEST_P(IntegrityCli, AFailedExportLeavesTheEarlierFileWhole) {
    for (int i = 0; i < 30; ++i) ASSERT_EQ(add_addition("ACME", "MACHINE " + std::to_string(i)).code, 0);
    write("backup.json", "EARLIER");
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{2048, 2048};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const auto r =
            cli({"register", "export", path("backup.json"), "--client", "ACME", "--year", "2025", "--yes"});
        ::_exit(r.code == 1 && r.err.find("Cannot write " + path("backup.json")) != std::string::npos ? 0
                                                                                                      : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0) << "the export did not report the failed write";
    EXPECT_EQ(read("backup.json"), "EARLIER");
    std::size_t files = 0;
    for ([[maybe_unused]] const auto& e : std::filesystem::directory_iterator(folder_)) ++files;
    EXPECT_EQ(files, 1u);
}

TEST_P(IntegrityCli, ADatabaseFailureDuringAnImportEndsAsEveryRefusalDoes) {
    ASSERT_EQ(add_addition("ACME", "CNC LATHE").code, 0);
    ASSERT_EQ(cli({"register", "export", path("acme.json"), "--client", "ACME", "--year", "2025"}).code, 0);
    // The options row is written last, after the entries were replaced: its table has
    // lost a column.
    std::string doc = read("acme.json");
    const auto options = doc.find("\"NewFAMI\": []");
    ASSERT_NE(options, std::string::npos) << doc;
    doc.replace(options, 13, "\"NewFAMI\": [{\"MiscInf\": \"WDV\"}]");
    write("acme.json", doc);
    db().execute("DROP TABLE NewFAMI");
    db().execute("CREATE TABLE NewFAMI (Code_No VarChar(50), Yr Int(11))");
    const auto r =
        cli({"register", "import", path("acme.json"), "--replace", "--client", "ACME", "--year", "2025"});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.err.rfind(path("acme.json") + ": the database refused it: ", 0), 0u) << r.err;
    EXPECT_NE(r.err.find("\nNothing was imported.\n"), std::string::npos) << r.err;
    EXPECT_EQ(count("NewFATRa2025"), 1);
    EXPECT_EQ(db().query("select Part from NewFATRa2025").first("Part").as_text(), "CNC LATHE");
}

// A user who may only read the practice's database still lists and exports.
TEST_P(IntegrityCli, AReadOnlyUserListsAndExports) {
    if (GetParam() != store::Backend::mysql) GTEST_SKIP() << "database users are a server's";
    ASSERT_EQ(add_addition("ACME", "CNC LATHE").code, 0);
    const std::string url = temp().url();
    const auto at = url.find('@'), slash = url.find('/', at), q = url.find('?', slash);
    const std::string database =
        url.substr(slash + 1, q == std::string::npos ? std::string::npos : q - slash - 1);
    const std::string user = "ro_" + database.substr(database.size() - 8);
    db().execute("CREATE USER '" + user + "'@'localhost' IDENTIFIED BY 'pw'");
    db().execute("GRANT SELECT ON " + database + ".* TO '" + user + "'@'localhost'");
    const std::string ro_url = "mysql://" + user + ":pw" + url.substr(at);
    const auto as_reader = [&](std::vector<std::string> words) {
        words.insert(words.begin(), {"--db", ro_url});
        return run_cli(words);
    };
    auto r = as_reader({"register", "list", "--client", "ACME", "--year", "2025", "--json"});
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("CNC LATHE"), std::string::npos) << r.out;
    r = as_reader({"register", "export", path("ro.json"), "--client", "ACME", "--year", "2025"});
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_NE(read("ro.json").find("CNC LATHE"), std::string::npos);
    // The books chart writes nothing; the income-tax chart needs no write once the year's
    // stored chart is as the register gives it.
    r = as_reader({"chart", "--client", "ACME", "--year", "2025", "--books", "--json"});
    EXPECT_EQ(r.code, 0) << r.err;
    r = as_reader({"chart", "--client", "ACME", "--year", "2025", "--it", "--json"});
    EXPECT_EQ(r.code, 1) << "the first income-tax chart of the year is written";
    ASSERT_EQ(cli({"chart", "--client", "ACME", "--year", "2025", "--it", "--json"}).code, 0);
    r = as_reader({"chart", "--client", "ACME", "--year", "2025", "--it", "--json"});
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("\"DeprChart\""), std::string::npos) << r.out;
    db().execute("DROP USER '" + user + "'@'localhost'");
}

}  // namespace

BRENLOW_INSTANTIATE_BACKENDS(IntegrityCli);

}  // namespace brenlow::cli
