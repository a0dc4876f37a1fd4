#include "app/cli/cli.h"

#include <gtest/gtest.h>

#include "cli_fixture.h"

namespace brenlow::cli {
namespace {

TEST(Cli, PrintsTheComponentVersion) {
    const auto r = run_cli({"--version"});
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.out, "2.26.4\n");
}

TEST(Cli, ABadDatabaseUrlIsOneClearLineAndAFailure) {
    const auto r = run_cli({"--db", "postgres://x", "init", "--client", "C1", "--year", "2025"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("postgres"), std::string::npos) << r.err;
    EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
}

TEST(Cli, AnUnreachableServerIsOneClearLineAndAFailure) {
    const auto r =
        run_cli({"--db", "mysql://nobody@127.0.0.1:1/none", "init", "--client", "C1", "--year", "2025"});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
}

TEST(Cli, ABadYearOrAMissingClientIsRefusedBeforeAnythingIsOpened) {
    auto r = run_cli({"--db", "sqlite:/nonexistent-dir/x.db", "init", "--client", "C1", "--year", "25x"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("--year"), std::string::npos) << r.err;
    r = run_cli({"init", "--year", "2025"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("--client"), std::string::npos) << r.err;
    r = run_cli({"init", "--client", "C1", "--year", "2025", "--status", "5"});
    EXPECT_EQ(r.code, 1);
    r = run_cli({"frobnicate"});
    EXPECT_EQ(r.code, 1);
}

class CliInit : public CliTest {};

TEST_P(CliInit, CreatesTheClientYearOnceAndTellsWhatItMade) {
    const std::string url = temp().url();
    auto r = run_cli(
        {"--db", url, "init", "--client", "C001", "--year", "2025", "--name", "ACME", "--status", "3"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("financial year 2024-25"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("NewFATRo2025"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("NewFATRa2025"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("FIXED_2025"), std::string::npos) << r.out;
    EXPECT_EQ(r.out.find("Nothing to create."), std::string::npos) << r.out;

    r = run_cli({"--db", url, "init", "--client", "C001", "--year", "2025"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("Nothing to create."), std::string::npos) << r.out;
    EXPECT_EQ(db().query("select count(*) as n from master").first("n").as_int(), 1);
    EXPECT_GT(db().query("select count(*) as n from NewITBM where YR=2025").first("n").as_int(), 0);
}

BRENLOW_INSTANTIATE_BACKENDS(CliInit);

}  // namespace
}  // namespace brenlow::cli
