// brenlow register carry-forward, the listing that never writes, and the
// concessional-regime check of brenlow chart --it, on both backends.

#include <gtest/gtest.h>

#include "cli_fixture.h"

namespace brenlow::cli {
namespace {

class CarryForwardCli : public CliTest {
protected:
    void SetUp() override {
        CliTest::SetUp();
        if (IsSkipped()) return;
        ASSERT_EQ(cli({"init", "--client", "C001", "--year", "2025", "--status", "3"}).code, 0);
        const auto r = cli({"masters", "group", "add", "--client", "C001", "--year", "2025", "--name",
                            "PLANT", "--it-block", "3-15", "--addl-rate", "20", "--books-block", "-1",
                            "--classification", "4.1"});
        ASSERT_EQ(r.code, 0) << r.err;
        group_ = std::to_string(db().query("select SrNoFAGM from NewFAGM where Part='PLANT' and Yr=2025")
                                    .first("SrNoFAGM")
                                    .as_int());
    }
    CliRun opening(const std::string& part, const std::vector<std::string>& more = {}) {
        std::vector<std::string> args = {"register",   "add-opening", "--client", "C001",   "--year",
                                         "2025",       "--group",     group_,     "--part", part,
                                         "--put-date", "01/04/2020",  "--cost",   "100000", "--wdv-it",
                                         "100000",     "--rate",      "10"};
        args.insert(args.end(), more.begin(), more.end());
        return cli(args);
    }
    double sum(const std::string& sql) { return db().query(sql).first("n").as_double(); }
    long long count(const std::string& table) {
        return db().query("select count(*) as n from " + table + " where Code_No='C001'").first("n").as_int();
    }
    std::string group_;
};

TEST_P(CarryForwardCli, OpensTheNextYearAtLastYearsClosingWdvOfTheBlock) {
    // Machine A held all year, machine B sold on 01/10/2024 for 50,000: the block closes at
    // 2,00,000 - 50,000 - 15% = 1,27,500, and all of it reopens on A.
    ASSERT_EQ(opening("MACHINE A").code, 0);
    const auto b = opening("MACHINE B", {"--sale-date", "01/10/2024", "--sale-amount", "50000"});
    ASSERT_EQ(b.code, 0) << b.err;
    ASSERT_EQ(cli({"init", "--client", "C001", "--year", "2026"}).code, 0);

    // The empty year's listing says what can be done and writes nothing.
    auto r = cli({"register", "list", "--client", "C001", "--year", "2026", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(
        r.err.find("brenlow register carry-forward --client C001 --year 2026 can bring last year's assets"),
        std::string::npos)
        << r.err;
    EXPECT_EQ(count("NewFATRo2026"), 0);

    r = cli({"register", "carry-forward", "--client", "C001", "--year", "2026"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("Carried forward 1 assets"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("closing WDV 127500.00, opened at 127500.00 over 1 assets"), std::string::npos)
        << r.out;
    EXPECT_DOUBLE_EQ(sum("select sum(WdvIT) as n from NewFATRo2026 where Code_No='C001'"), 127500);
    EXPECT_EQ(db().query("select Part from NewFATRo2026 where Code_No='C001'").first("Part").as_text(),
              "MACHINE A");

    // Once the year has entries, it is not carried again.
    r = cli({"register", "carry-forward", "--client", "C001", "--year", "2026"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("already has entries"), std::string::npos) << r.err;
    EXPECT_EQ(count("NewFATRo2026"), 1);
}

TEST_P(CarryForwardCli, RatesAbove40PerCentAreBroughtDownOnlyWhenAnswered) {
    ASSERT_EQ(opening("FURNACE", {"--rate-it", "50"}).code, 0);
    ASSERT_EQ(cli({"init", "--client", "C001", "--year", "2026"}).code, 0);
    auto r = cli({"register", "carry-forward", "--client", "C001", "--year", "2026"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(
        r.err.find(
            "Do you want to Change Rate for Income-Tax to 40% [Maximum Allowed as per Income-Tax Act] ? "
            "No (--yes-40 answers Yes)"),
        std::string::npos)
        << r.err;
    EXPECT_DOUBLE_EQ(sum("select RateIT as n from NewFATRo2026 where Code_No='C001'"), 50);

    db().execute("delete from NewFATRo2026 where Code_No='C001'");
    r = cli({"register", "carry-forward", "--client", "C001", "--year", "2026", "--yes-40"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_DOUBLE_EQ(sum("select RateIT as n from NewFATRo2026 where Code_No='C001'"), 40);
}

TEST_P(CarryForwardCli, AdditionalDepreciationUnderAConcessionalRegimeStopsTheChart) {
    auto r =
        cli({"register", "add-addition", "--client", "C001", "--year", "2025", "--group", group_, "--part",
             "NEW PRESS", "--put-date", "01/05/2024", "--cost", "100000", "--rate", "10", "--addl-dep"});
    ASSERT_EQ(r.code, 0) << r.err;
    // No regime: the chart carries the additional depreciation and nothing is asked.
    r = cli({"chart", "--client", "C001", "--year", "2025", "--it", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("\"ADeprF\": 20000"), std::string::npos) << r.out;

    r = cli({"init", "--client", "C001", "--year", "2025", "--regime", "115BAA"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("concessional regime: 115BA"), std::string::npos) << r.out;
    r = cli({"chart", "--client", "C001", "--year", "2025", "--it", "--json"});
    EXPECT_EQ(r.code, 2);
    EXPECT_NE(
        r.err.find("Additional Depreciation is not allowed, if opted for taxation u/s 115BA/115BAA/115BAB."),
        std::string::npos)
        << r.err;
    EXPECT_NE(r.err.find("Do you really want to delete additional depreciation?"), std::string::npos)
        << r.err;
    EXPECT_TRUE(r.out.empty()) << r.out;

    r = cli({"chart", "--client", "C001", "--year", "2025", "--it", "--json", "--no"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("\"ADeprF\": 20000"), std::string::npos) << r.out;

    r = cli({"chart", "--client", "C001", "--year", "2025", "--it", "--json", "--yes"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("\"hand_edited\": true"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\"ADeprF\": 0"), std::string::npos) << r.out;

    r = cli({"init", "--client", "C001", "--year", "2025", "--regime", "none"});
    EXPECT_NE(r.out.find("concessional regime: none"), std::string::npos) << r.out;
    r = cli({"init", "--client", "C001", "--year", "2025", "--regime", "80IA"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("--regime takes"), std::string::npos) << r.err;
}

BRENLOW_INSTANTIATE_BACKENDS(CarryForwardCli);

}  // namespace
}  // namespace brenlow::cli
