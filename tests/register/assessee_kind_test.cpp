// The kind of assessee as the regime check of the calculate button reads it: the kind
// recorded for the client, else the kind of its status; on both backends.

#include <gtest/gtest.h>

#include "register/regime_action.h"
#include "register/register_fixture.h"
#include "store/chart_store.h"
#include "store/client_store.h"

namespace brenlow::test {
namespace {

class AssesseeKindCheck : public RegisterTest {
protected:
    // A year whose chart holds additional depreciation on plant at 15%, with the flag of
    // one section set.
    void year_with_additional(int year, const std::string& section) {
        base_->create_client_year("C001", year, "ACME", std::nullopt);
        ASSERT_TRUE(base_->select_client_year("C001", year));
        base_->SetMiscOthInf("REGIME" + section, "1", base_->SecondDate(), "C001", "opted");
        depreciation::ChartRow r;
        r.Code_No = "C001";
        r.FYr = year;
        r.Grp = 3;
        r.Rate = 15;
        r.ADeprF = 2000;
        store::rewrite_built_chart(db(), "C001", year, {r});
    }
    std::string decision(int year) {
        const auto d = reg::concessional_regime_decision(*base_, "C001", year, false);
        return d.refused ? d.message : "";
    }
};

TEST_P(AssesseeKindCheck, TheRegimeCheckFollowsTheRecordedKindOfAssessee) {
    struct Case {
        AssesseeKind kind;
        int year;
        const char* section;
        const char* message;  // "" when allowed
    };
    const Case cases[] = {
        {AssesseeKind::CoopSociety, 2022, "115BAD",
         "Additional Depreciation is not allowed, if opted for taxation u/s 115BAD."},
        {AssesseeKind::CoopSociety, 2024, "115BAE",
         "Additional Depreciation is not allowed, if opted for taxation u/s 115BAE."},
        {AssesseeKind::HUF, 2022, "115BAC",
         "Additional Depreciation is not allowed, if opted for taxation u/s 115BAC."},
        {AssesseeKind::AOP, 2025, "115BAC",
         "Additional Depreciation is not allowed, if opted for taxation u/s 115BAC."},
        {AssesseeKind::BOI, 2023, "115BAC", ""},
        {AssesseeKind::LLP, 2025, "115BAC", ""},
        {AssesseeKind::Firm, 2025, "115BAD", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(assessee_kind_name(c.kind)) + " " + std::to_string(c.year));
        store::record_assessee_kind(db(), "C001", c.kind);
        year_with_additional(c.year, c.section);
        EXPECT_EQ(decision(c.year), c.message);
        base_->SetMiscOthInf(std::string("REGIME") + c.section, "0", base_->SecondDate(), "C001", "");
    }
}

TEST_P(AssesseeKindCheck, AClientWithoutAKindIsTakenByItsStatus) {
    // C001 is status 1: an individual, under 115BAC from the year closing 2021.
    year_with_additional(2022, "115BAC");
    EXPECT_EQ(decision(2022), "Additional Depreciation is not allowed, if opted for taxation u/s 115BAC.");
    EXPECT_FALSE(store::recorded_assessee_kind(db(), "C001"));
    db().execute("update master set status=3 where code_no='C001'");
    ASSERT_TRUE(base_->select_client_year("C001", 2022));
    EXPECT_EQ(decision(2022), "");  // a company does not come under 115BAC
}

BRENLOW_INSTANTIATE_BACKENDS(AssesseeKindCheck);

}  // namespace
}  // namespace brenlow::test
