#include <gtest/gtest.h>

#include "cli_fixture.h"

namespace brenlow::cli {
namespace {

class MastersCli : public CliTest {
protected:
    void SetUp() override {
        CliTest::SetUp();
        if (IsSkipped()) return;
        ASSERT_EQ(cli({"init", "--client", "C001", "--year", "2025"}).code, 0);
    }
    long long count(const std::string& sql) { return db().query(sql).first("n").as_int(); }
};

TEST_P(MastersCli, AddsABlockAndRefusesTheSameNameInTheSameKind) {
    auto r = cli({"masters", "block", "add", "--client", "C001", "--year", "2025", "--kind", "2", "--name",
                  "PLANT GENERAL", "--under", "3"});
    ASSERT_EQ(r.code, 0) << r.err;
    r = cli({"masters", "block", "add", "--client", "C001", "--year", "2025", "--kind", "2", "--name",
             "PLANT GENERAL", "--under", "3"});
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.err.find("Duplicate Block Name."), std::string::npos) << r.err;
    // The other kind takes the same name.
    r = cli({"masters", "block", "add", "--client", "C001", "--year", "2025", "--kind", "1", "--name",
             "PLANT GENERAL"});
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(count("select count(*) as n from BlockGroup where GrpDesc='PLANT GENERAL'"), 2);
}

TEST_P(MastersCli, ADeleteStopsAtItsQuestionUnlessYesIsGiven) {
    ASSERT_EQ(cli({"masters", "block", "add", "--client", "C001", "--year", "2025", "--kind", "1", "--name",
                   "OFFICE"})
                  .code,
              0);
    const long id = static_cast<long>(
        db().query("select GrpId from BlockGroup where GrpDesc='OFFICE'").first("GrpId").as_int());
    auto r = cli({"masters", "block", "delete", "--client", "C001", "--year", "2025", "--kind", "1", "--id",
                  std::to_string(id)});
    EXPECT_EQ(r.code, 2);
    EXPECT_NE(r.err.find("Do you want to Delete this Block?"), std::string::npos) << r.err;
    EXPECT_EQ(count("select count(*) as n from BlockGroup where GrpDesc='OFFICE'"), 1);
    r = cli({"masters", "block", "delete", "--client", "C001", "--year", "2025", "--kind", "1", "--id",
             std::to_string(id), "--yes"});
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(count("select count(*) as n from BlockGroup where GrpDesc='OFFICE'"), 0);
}

TEST_P(MastersCli, ListsTheYearsGroupsAsJson) {
    auto r = cli({"masters", "group", "add", "--client", "C001", "--year", "2025", "--name", "LATHES",
                  "--it-block", "3-15", "--books-block", "-1", "--classification", "4.1"});
    ASSERT_EQ(r.code, 0) << r.err;
    r = cli({"masters", "groups", "--client", "C001", "--year", "2025", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("\"LATHES\""), std::string::npos) << r.out;
    // Rates and lives are numbers; what the group does not have is null, never "N/A".
    EXPECT_NE(r.out.find("\"rate_it\": 15, \"addl_rate_it\": 20,"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\"rate_books\": null"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\"life_yrs\": 15, \"rate_slm\": 6.33, \"rate_wdv\": 18.1}"), std::string::npos)
        << r.out;
    r = cli({"masters", "groups", "--client", "C009", "--year", "2025"});
    EXPECT_EQ(r.code, 1);
}

TEST_P(MastersCli, TheYearsIncomeTaxBlocksAndClassificationsAreListed) {
    ASSERT_EQ(cli({"init", "--client", "C001", "--year", "2025"}).code, 0);
    auto r = cli({"masters", "it-blocks", "--year", "2025", "--json"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("{\"ID\": \"3-15\", \"Part\": \"MACHINERY AND PLANT\", \"Rate\": 15}"),
              std::string::npos)
        << r.out;
    r = cli({"masters", "classifications", "--year", "2025"});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("1.3  FACTORY BUILDINGS  life 30  SLM 3.17%  WDV 9.5%  NESD"), std::string::npos)
        << r.out;
}

BRENLOW_INSTANTIATE_BACKENDS(MastersCli);

}  // namespace
}  // namespace brenlow::cli
