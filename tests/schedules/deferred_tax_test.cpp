// Deferred tax on the depreciation difference, worked by hand.

#include "schedules/deferred_tax.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "store/tax_rate_store.h"

namespace brenlow::sched {
namespace {

bool has_line(const Ostikreport::ReportDocument& doc, const std::string& text) {
    return std::any_of(doc.notes.begin(), doc.notes.end(),
                       [&](const std::string& n) { return n.find(text) != std::string::npos; });
}

// The trial company: tax depreciation of 17,52,500 against 10,21,689.30 in the books and
// nothing else that the two sides count differently, at the s.115BAA rate.
TEST(DeferredTax, TheTrialCompanysYearGivesTheLiabilityWorkedByHand) {
    DeferredTaxFigures f;
    f.books_opening = 5840000.00;
    f.tax_opening = 5210000;
    f.books_depreciation = 1021689.30;
    f.tax_depreciation = 1752500;
    f.books_closing = 5840000.00 - 1021689.30;  // 48,18,310.70
    f.tax_closing = 5210000 - 1752500;          // 34,57,500
    const auto w = work_deferred_tax(f, 25.168);

    DeferredTaxWorking expected;
    expected.figures = f;
    expected.rate = 25.168;
    expected.difference_opening = 630000.00;   // 58,40,000 - 52,10,000
    expected.difference_closing = 1360810.70;  // 48,18,310.70 - 34,57,500
    expected.difference_movement = 730810.70;  // 17,52,500 - 10,21,689.30
    expected.depreciation_difference = 730810.70;
    expected.other_movement = 0;
    expected.deferred_opening = 158558.40;  // 6,30,000 x 25.168%
    expected.deferred_closing = 342488.84;  // 13,60,810.70 x 25.168% = 3,42,488.837
    expected.charge = 183930.44;            // 7,30,810.70 x 25.168% = 1,83,930.437
    EXPECT_EQ(w, expected);

    const auto doc = deferred_tax_report(w, 2025, {"TRIAL", "TRIAL COMPANY LTD"}, "company, 115BAA");
    EXPECT_EQ(doc.rows[2], (std::vector<std::string>{"Timing difference", "6,30,000.00", "13,60,810.70"}));
    EXPECT_EQ(doc.rows.back(),
              (std::vector<std::string>{"Deferred tax charge for the year (to Profit and Loss)", "",
                                        "1,83,930.44"}));
    EXPECT_TRUE(has_line(doc, "nothing has been posted"));
    EXPECT_FALSE(has_line(doc, "virtual certainty"));  // a liability needs no such word
}

TEST(DeferredTax, BooksBelowTheBlocksGiveAnAssetThatNeedsCertaintyOfFutureProfits) {
    DeferredTaxFigures f;
    f.books_opening = 100000;
    f.tax_opening = 150000;
    f.books_closing = 60000;
    f.tax_closing = 140000;
    f.books_depreciation = 40000;
    f.tax_depreciation = 10000;
    const auto w = work_deferred_tax(f, 26);
    EXPECT_EQ(w.difference_opening, -50000);
    EXPECT_EQ(w.difference_closing, -80000);
    EXPECT_EQ(w.deferred_opening, -13000);
    EXPECT_EQ(w.deferred_closing, -20800);
    EXPECT_EQ(w.charge, -7800);  // a credit to profit and loss
    const auto doc = deferred_tax_report(w, 2025, {"X", ""}, "as given");
    EXPECT_EQ(doc.rows[4],
              (std::vector<std::string>{"Deferred Tax Liability / (Asset)", "(13,000.00)", "(20,800.00)"}));
    EXPECT_EQ(doc.rows.back()[0], "Deferred tax credit for the year (to Profit and Loss)");
    EXPECT_TRUE(has_line(doc, "reasonable certainty"));
    EXPECT_TRUE(has_line(doc, "virtual certainty"));
}

TEST(DeferredTax, AdditionsCountedDifferentlyShowApartFromTheDepreciation) {
    DeferredTaxFigures f;
    f.books_opening = 0;
    f.tax_opening = 0;
    f.books_closing = 95000;  // an addition of 1,00,000 less 5,000 in the books
    f.tax_closing = 72250;    // an addition of 85,000 net of a subsidy, less 12,750
    f.books_depreciation = 5000;
    f.tax_depreciation = 12750;
    const auto w = work_deferred_tax(f, 25.168);
    EXPECT_EQ(w.difference_movement, 22750);
    EXPECT_EQ(w.depreciation_difference, 7750);
    EXPECT_EQ(w.other_movement, 15000);
}

TEST(DeferredTax, TheUsualRateFollowsTheKindOfAssesseeAndTheRegime) {
    const auto& rows = store::shipped_tax_rates();
    const struct {
        AssesseeKind kind;
        bool opted;
        std::optional<double> rate;
    } cases[] = {
        {AssesseeKind::Company, true, 25.168},  // s.115BAA
        {AssesseeKind::Company, false, 26},     // the first row that names no section
        {AssesseeKind::Firm, false, 31.2},
        {AssesseeKind::Firm, true, 31.2},  // the company's regime means nothing to a firm
        {AssesseeKind::LLP, false, 31.2},
        {AssesseeKind::Individual, false, std::nullopt},
    };
    for (const auto& c : cases) {
        const auto row = usual_tax_rate(rows, c.kind, c.opted);
        EXPECT_EQ(row ? std::optional(row->Rate) : std::nullopt, c.rate) << assessee_kind_key(c.kind);
    }
}

}  // namespace
}  // namespace brenlow::sched
