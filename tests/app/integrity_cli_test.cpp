// What the command line keeps whole: one client per code, text as typed, and
// refusals in the program's own words that write nothing.

#include <gtest/gtest.h>

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
        folder_ = std::filesystem::temp_directory_path() /
                  ("brenlow-integrity-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "-" +
                   std::to_string(reinterpret_cast<std::uintptr_t>(this)));
        std::filesystem::create_directories(folder_);
        ASSERT_EQ(cli({"init", "--client", "ACME", "--year", "2025"}).code, 0);
        const auto r = cli({"masters", "group", "add", "--client", "ACME", "--year", "2025", "--name", "LATHES",
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
        return cli({"register", "add-addition", "--client", code, "--year", "2025", "--group", group_, "--part", part,
                    "--put-date", "05/10/2024", "--acc-date", "05/10/2024", "--cost", "1000"});
    }
    long long count(const std::string& table, const std::string& code = "ACME") {
        return db().query("select count(*) as n from " + table + " where Code_No='" + code + "'").first("n").as_int();
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
    for (const std::string code : {"ACM\xc3\x89", "\xc3\x80" "CME", "AC ME"}) {
        const auto r = cli({"register", "import", path("acme.json"), "--replace", "--client", code, "--year", "2025"});
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

}  // namespace

BRENLOW_INSTANTIATE_BACKENDS(IntegrityCli);

}  // namespace brenlow::cli
