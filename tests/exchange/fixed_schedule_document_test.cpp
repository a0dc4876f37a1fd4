#include "exchange/fixed_schedule_document.h"

#include <gtest/gtest.h>

namespace brenlow::exchange {
namespace {

TEST(FixedScheduleDocument, RowsGoOutAndComeBackByColumnName) {
    store::FixedScheduleRows rows;
    store::FixedRow f;
    f.srno = 1;
    f.ref_id = 7;
    f.PART_NM = "PLANT";
    f.RATE_DEP = 13.91;
    f.IGrpId = store::kNotConsidered;
    rows.fixed.push_back(f);
    store::FdaRow a;
    a.ad_ded_id = store::kFdaCarriedHalf;
    a.ref_id = 7;
    a.AMT = 4000;
    a.dep = 20;
    a.ad_date = "15/01/2015";
    a.adddepapp = "1";
    rows.fda.push_back(a);
    nlohmann::ordered_json doc;
    write_fixed_schedule(doc, rows);
    EXPECT_EQ(doc["FIXED_"][0]["PART_NM"], "PLANT");
    EXPECT_EQ(doc["FDA_"][0]["ad_ded_id"], 3);
    std::vector<std::string> errors;
    const auto back = read_fixed_schedule(doc, errors);
    ASSERT_TRUE(errors.empty());
    EXPECT_DOUBLE_EQ(back.fixed[0].RATE_DEP, 13.91);
    EXPECT_EQ(back.fixed[0].IGrpId, store::kNotConsidered);
    EXPECT_EQ(back.fda[0].adddepapp, "1");
    EXPECT_DOUBLE_EQ(back.fda[0].dep, 20);
}

TEST(FixedScheduleDocument, EveryFaultIsNamedAndNothingIsReturned) {
    const auto doc = nlohmann::ordered_json::parse(
        R"({"FIXED_":[{"srno":1.5,"PART_NM":7}],"FDA_":[{"ad_ded_id":4,"ad_date":"31/02/2015"},"x"]})");
    std::vector<std::string> errors;
    const auto rows = read_fixed_schedule(doc, errors);
    EXPECT_TRUE(rows.fixed.empty());
    const std::vector<std::string> expected = {
        "FIXED_ row 1, field srno: is not a whole number", "FIXED_ row 1, field PART_NM: is not text",
        "FDA_ row 1, field ad_ded_id: is not 1 (addition), 2 (deduction), 3 (carried half) or 100 (marker)",
        "FDA_ row 1, field ad_date: \"31/02/2015\" is not a date dd/mm/yyyy",
        "FDA_ row 2: a row is an object of columns"};
    EXPECT_EQ(errors, expected);
}

}  // namespace
}  // namespace brenlow::exchange
