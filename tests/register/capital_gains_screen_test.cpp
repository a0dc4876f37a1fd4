// The register screen's transfer to capital gains shows the rows it wrote, on both
// backends.

#include <gtest/gtest.h>

#include "register/frm_new_fatr.h"
#include "register_fixture.h"
#include "suite/defaults.h"

namespace brenlow::test {
namespace {

class CapitalGainsScreen : public RegisterTest {
protected:
    std::vector<Ostikreport::ReportDocument> shown;
    void SetUp() override {
        RegisterTest::SetUp();
        if (IsSkipped()) return;
        comp_.report = std::make_shared<suite::ReportObject>();
        comp_.report->set_viewer([this](const Ostikreport::ReportDocument& d) { shown.push_back(d); });
    }
};

TEST_P(CapitalGainsScreen, TheTransferShowsEachRowItWrote) {
    // The plant block's only asset, WDV 80,000, sold for 1,20,000 with 5,000 of expenses:
    // the block ends nil with a gain of 35,000.
    store::OpeningRow o;
    o.IdFAGM = kPlant;
    o.Part = "LATHE";
    o.CostWdv = 100000;
    o.WdvIT = 80000;
    o.RateIT = 15;
    o.PutDate = "01/04/2012";
    o.SaleDate = "15/11/2015";
    o.SaleAmt = 120000;
    o.SaleExp = 5000;
    store().insert_opening(o);
    auto screen = open_screen(ui_);
    ui_.answer_yes();
    screen->TransferToCapitalGains();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].titles.front(), "CAPITAL GAINS ON DEPRECIABLE ASSETS");
    EXPECT_EQ(shown[0].rows, (std::vector<std::vector<std::string>>{
                                 {"1", "MACHINERY AND PLANT @ 15%", "15/11/2015", "1,20,000", "80,000", "0",
                                  "5,000", "35,000", "short-term u/s 50"},
                                 {"", "Net Capital Gain / (Loss)", "", "", "", "", "", "35,000", ""}}));

    // Answered No, nothing is written and nothing shown.
    shown.clear();
    ui_.answer_no();
    screen->TransferToCapitalGains();
    EXPECT_TRUE(shown.empty());
}

BRENLOW_INSTANTIATE_BACKENDS(CapitalGainsScreen);

}  // namespace
}  // namespace brenlow::test
