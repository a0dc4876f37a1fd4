// The entry rules on their own: no screen, no database. The screen's own tests drive
// the same rules through its fields; these pin what every other way in relies on:
// the order of the findings, where a list stops, and the rows of packed sub-lists.

#include "register/entry_rules.h"

#include <gtest/gtest.h>

#include <cmath>

namespace brenlow::reg {
namespace {

constexpr int kYear = 2025;  // F.Y. 2024-25

EntryContext context() {
    EntryContext ctx;
    ctx.year = kYear;
    ctx.group_known = true;
    return ctx;
}

EntryDraft addition() {
    EntryDraft d;
    d.side = EntrySide::Addition;
    d.group_id = 1;
    d.part = "PRESS";
    d.put_date = d.acc_date = "12/06/2024";
    d.cost = Figure::of(100000);
    return d;
}

std::vector<std::string> messages(const std::vector<Finding>& findings) {
    std::vector<std::string> out;
    for (const auto& f : findings) out.push_back(f.message);
    return out;
}

TEST(EntryRules, AGoodAdditionHasNoFindings) {
    EXPECT_TRUE(update_findings(addition(), context()).empty());
}

TEST(EntryRules, FindingsRunInTheirOrderAndStopAtTheFirstRefusal) {
    auto d = addition();
    d.res_value = Figure::of(20000);  // a question (check 7)
    d.auto_rate = "25.89";            // a notice (check 8)
    d.sale_date = "01/06/2024";       // before put to use: a refusal (check 15)
    d.sale_amt = Figure::of(1000);
    const auto f = update_findings(d, context());
    ASSERT_EQ(f.size(), 3u);
    EXPECT_EQ(f[0].kind, FindingKind::Question);
    EXPECT_EQ(f[0].field, EntryField::ResValue);
    EXPECT_EQ(f[0].message, "Residual Value is more than 5% of Cost i.e. Rs. 5000 !\n\nContinue ?");
    EXPECT_EQ(f[1].kind, FindingKind::Notice);
    EXPECT_EQ(f[1].message, "Auto Calculated Rate is 25.89% !");
    EXPECT_EQ(f[2].kind, FindingKind::Refusal);
    EXPECT_EQ(f[2].field, EntryField::SaleDate);

    // An earlier refusal hides everything after it.
    d.part.clear();
    EXPECT_EQ(messages(update_findings(d, context())),
              std::vector<std::string>{"Please specify 'Particulars' !"});
}

TEST(EntryRules, EachFieldIsCheckedWithItsOwnCaptionAndColumn) {
    struct Case {
        const char* name;
        void (*change)(EntryDraft&);
        EntryField field;
        const char* message;
    };
    const Case cases[] = {
        {"no group", [](EntryDraft& d) { d.group_id = 0; }, EntryField::AssetGroup,
         "Please specify 'Asset Group' !"},
        {"cost not a number", [](EntryDraft& d) { d.cost = Figure::typed("12x"); }, EntryField::Cost,
         "Please specify valid 'Cost' !"},
        {"cost missing", [](EntryDraft& d) { d.cost = Figure::typed(" "); }, EntryField::Cost,
         "Please specify valid 'Cost' !"},
        {"negative excise", [](EntryDraft& d) { d.excise = Figure::of(-1); }, EntryField::ExciseCr,
         "Please specify valid 'Excise Credit' !"},
        {"subsidy above cost", [](EntryDraft& d) { d.subsidy = Figure::of(100001); }, EntryField::Subsidy,
         "'Grant/Subsidy' should be less than or equal to 'Cost' i.e. Rs. 100000.00 !"},
        {"residual above the net amount",
         [](EntryDraft& d) {
             d.excise = Figure::of(40000);
             d.res_value = Figure::of(60001);
         },
         EntryField::ResValue,
         "'Residual Value' should be less than or equal to 'Net Amount' i.e. Rs. 60000.00 !"},
        {"put to use before the year", [](EntryDraft& d) { d.put_date = "31/03/2024"; }, EntryField::PutDate,
         "'Date of Put to Use' should be on or after 01/04/2024 !"},
        {"accounted after the year", [](EntryDraft& d) { d.acc_date = "01/04/2025"; }, EntryField::AccDate,
         "'Date of Accounting' should be between 01/04/2024 and 31/03/2025 !"},
        {"typed depreciation missing", [](EntryDraft& d) { d.auto_depr = false; }, EntryField::DepFACL,
         "Please specify valid 'Depreciation' !"},
        {"sale without a date", [](EntryDraft& d) { d.sale_amt = Figure::of(5); }, EntryField::SaleDate,
         "Please specify valid 'Date of Sale/Deduction' between 01/04/2024 and 31/03/2025 !"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        auto d = addition();
        c.change(d);
        const auto f = update_findings(d, context());
        ASSERT_FALSE(f.empty());
        EXPECT_EQ(f.back().kind, FindingKind::Refusal);
        EXPECT_EQ(f.back().field, c.field);
        EXPECT_EQ(f.back().message, c.message);
    }
}

TEST(EntryRules, AnOpeningEntryIsHeldOnTheFirstDayOfTheYearAndNotAfter) {
    EntryDraft d;
    d.group_id = 1;
    d.part = "LATHE";
    d.cost = Figure::of(1000);
    d.put_date = "01/04/2024";
    EXPECT_TRUE(update_findings(d, context()).empty());
    d.put_date = "02/04/2024";
    EXPECT_EQ(messages(update_findings(d, context())),
              std::vector<std::string>{"'Date of Put to Use' should be on or before 01/04/2024 !"});
    // The same rule when the field is left, with the caption the books column wears.
    const auto left = leave_field_finding(EntryField::PutDate, EntrySide::Opening, "02/04/2024", kYear, true);
    ASSERT_TRUE(left);
    EXPECT_EQ(left->message, "'Date of Put to Use' should be on or before 01/04/2024 !");
    EXPECT_EQ(leave_field_finding(EntryField::Cost, EntrySide::Opening, "1,0", kYear, true)->message,
              "Invalid Value !");
    EXPECT_EQ(caption_of(EntryField::Cost, EntrySide::Opening, kYear, true), "Written Down Value");
    EXPECT_EQ(caption_of(EntryField::Cost, EntrySide::Opening, kYear, false), "Cost");
}

TEST(EntryRules, AStoredRowsPackedListsAreCheckedBeforeItsFigures) {
    store::OpeningRow o;
    o.IdFAGM = 1;
    o.Part = "LATHE";
    o.CostWdv = 1000;
    o.WdvIT = 500;
    o.PutDate = "01/04/2020";
    EntryContext ctx = context();
    EXPECT_TRUE(row_findings(draft_of(o), ctx, o.ShiftDet, o.DetESA).empty());

    // An adjustment of an earlier year's excess, dated inside this year.
    o.DetESA =
        "OLD CHAIR\xC2\xA6"
        "1000\xC2\xA6"
        "01/05/2024\xC2\xA6"
        "1500\xC2\xA6"
        "500\xC2\xA6"
        "500|";
    EXPECT_EQ(messages(row_findings(draft_of(o), ctx, o.ShiftDet, o.DetESA)),
              std::vector<std::string>{"'Date' should be before 01/04/2024"});
    // Dated before the year, it is accepted; more than the WDV is then refused on update.
    o.DetESA =
        "OLD CHAIR\xC2\xA6"
        "1000\xC2\xA6"
        "01/05/2023\xC2\xA6"
        "1500\xC2\xA6"
        "600\xC2\xA6"
        "600|";
    EXPECT_EQ(messages(row_findings(draft_of(o), ctx, o.ShiftDet, o.DetESA)),
              std::vector<std::string>{
                  "Amount can not be adjusted more than Opening Written Down Value i.e. '500.00' !"});

    // Extra shifts where the group allows none.
    o.DetESA.clear();
    o.ShiftDet = "01/04/2024,30/09/2024,2|";
    ctx.nesd = true;
    EXPECT_EQ(
        messages(row_findings(draft_of(o), ctx, o.ShiftDet, o.DetESA)),
        std::vector<std::string>{"'No Extra Shift Depreciation' is permitted for selected 'Asset Group' !"});
}

TEST(EntryRules, AnAdditionsNetAmountIsCostLessExciseAndSubsidyPlusTheCurrencyDifference) {
    EXPECT_DOUBLE_EQ(net_amount(100000, 18000, -2500, 10000), 69500);
    EXPECT_DOUBLE_EQ(misc_adjustment(18000, 2500, 10000), -25500);
    auto d = addition();
    d.excise = Figure::of(18000);
    d.curr_diff = Figure::of(2500);
    EXPECT_DOUBLE_EQ(entry_base(d, RegisterOptions{}), 84500);
}

// A figure no field could hold is refused however the entry comes in: typed, or read
// from a document or a workbook as a stored row.
TEST(EntryRules, AFigurePastTheFieldsReachIsRefusedOnEveryWayIn) {
    struct Case {
        double value;
        bool refused;
    };
    const Case cases[] = {{1e308, true},     {-1e308, true},      {1e18, true}, {-1e18, true},
                          {9e17, false},     {1e17, false},       {0.5, false}, {HUGE_VAL, true},
                          {-HUGE_VAL, true}, {std::nan(""), true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.value);
        auto d = addition();
        d.subsidy = Figure::of(c.value);
        const auto f = row_findings(d, context(), "", "");
        const bool refused = !f.empty() && f.front().field == EntryField::Subsidy &&
                             f.front().message == "Invalid Value !" && f.front().kind == FindingKind::Refusal;
        EXPECT_EQ(refused, c.refused);
    }
    EXPECT_TRUE(
        leave_field_finding(EntryField::Cost, EntrySide::Addition, "1000000000000000000", kYear, false));
    EXPECT_FALSE(leave_field_finding(EntryField::Cost, EntrySide::Addition, "999999999999999", kYear, false));
}

}  // namespace
}  // namespace brenlow::reg
