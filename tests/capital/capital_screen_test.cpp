#include <gtest/gtest.h>

#include "capital/capital.h"
#include "capital/capital_report.h"
#include "capital_fixture.h"
#include "controls/number_format.h"

namespace brenlow::capital::test {
namespace {

using store::kCapitalCredit;
using store::kCapitalDebit;

class CapitalScreen : public CapitalTest {};

TEST_P(CapitalScreen, OpensWithTheClientsNameAndMakesTheFixedParticulars) {
    capital s(component_, ui_);
    s.Form_Load();
    EXPECT_EQ(s.Caption(), "CAPITAL SCHEDULE - ACME");
    auto& d = db();
    EXPECT_EQ(store::ledger_find(d, store::Ledger::capital, "OPENING BALANCE"), s.opening_balance_id());
    EXPECT_EQ(store::ledger_find(d, store::Ledger::capital, "PROFIT SHARE (00711)"), s.profit_share_id());
    // Opened again, the same two particulars serve.
    capital again(component_, ui_);
    again.Form_Load();
    EXPECT_EQ(again.profit_share_id(), s.profit_share_id());
    EXPECT_EQ(store::ledger_particulars(d, store::Ledger::capital).size(), 2u);
    ui_.expect_nothing_more();
}

// The total is compared through its text: 50 and 49.99 + 50 fail, 100 alone and
// 33.33 + 33.33 + 33.34 pass; nothing is written until it passes.
TEST_P(CapitalScreen, RatiosMustTotalOneHundred) {
    const struct {
        std::vector<std::pair<std::string, double>> lines;
        bool saved;
    } cases[] = {
        {{{"1", 50}}, false},
        {{{"1", 49.99}, {"2", 50}}, false},
        {{{"1", 100}}, true},
        {{{"1", 33.33}, {"2", 33.33}, {"3", 33.34}}, true},
    };
    // What the table holds: the lines of the last case that passed, nothing before.
    std::vector<std::pair<long, double>> expected;
    for (const auto& c : cases) {
        capital s(component_, ui_);
        s.Form_Load();
        ui_.forget();
        EXPECT_EQ(save_ratios(s, c.lines), c.saved);
        if (!c.saved) {
            ui_.expect_message("Total Profit (%) should be 100%.");
            EXPECT_TRUE(s.fraRatio_Visible);
        } else {
            expected.clear();
            for (const auto& [code, rat] : c.lines) expected.emplace_back(std::stol(code), rat);
        }
        ui_.expect_nothing_more();
        std::vector<std::pair<long, double>> stored;
        for (const auto& r : store::ratio_rows(db(), "C001", base_->CYrInd()))
            stored.emplace_back(r.code, r.rat);
        EXPECT_EQ(stored, expected);
    }
    EXPECT_EQ(db().query("select count(*) as n from prfa").first("n").as_int(), 3);
}

TEST_P(CapitalScreen, ARunningTotalFollowsTheRatioLines) {
    capital s(component_, ui_);
    s.Form_Load();
    s.cmdProfitDet_Click();
    s.cmdAddP_Click();
    s.vsfR.set_text_matrix(1, capital::kRPartner, "1");
    s.vsfR.set_value_matrix(1, capital::kRRatio, 60);
    s.vsfR_AfterEdit(1, capital::kRRatio);
    EXPECT_EQ(s.lblTotal.Caption, "Total Profit (%) = 60.00%");
    // A line with no partner yet: another is not added, and saving is refused.
    s.cmdAddP_Click();
    s.cmdAddP_Click();
    ui_.expect_message("Please Specify Partner.");
    EXPECT_FALSE(s.cmdbackP_Click());
    ui_.expect_message("Please Specify Partner.");
    ui_.expect_nothing_more();
}

// A partner entered by hand is kept as "~~[OTHER]" and the name, and a name may
// appear once, listed or not.
TEST_P(CapitalScreen, PartnersEnteredByHandKeepTheirMarkAndMayNotRepeat) {
    capital s(component_, ui_);
    s.Form_Load();
    ASSERT_TRUE(save_ratios(s, {{"1", 60}, {"~~[OTHER]RAVI KUMAR", 40}}));
    const auto stored = store::ratio_rows(db(), "C001", base_->CYrInd());
    ASSERT_EQ(stored.size(), 2u);
    EXPECT_TRUE(stored[1].other);
    EXPECT_EQ(capital::partner_code(stored[1]), "~~[OTHER]RAVI KUMAR");
    s.chkautocalcnp.Value = false;
    s.txtNetProfit.set_text("100");
    ASSERT_TRUE(s.cmdShare_Click());
    ASSERT_TRUE(s.cmdsave_Click());
    EXPECT_EQ(
        db().query("select count(*) as n from CAPITAL_" + suffix() + " where code='~~[OTHER]RAVI KUMAR'")
            .first("n")
            .as_int(),
        1);
    s.cmdProfitDet_Click();
    s.cmdAddP_Click();
    const int row = s.vsfR.rows() - 1;
    EXPECT_FALSE(s.set_other_partner(row, "ravi kumar"));
    EXPECT_FALSE(s.set_other_partner(row, "ANIL SHAH"));
    s.vsfR.set_text_matrix(row, capital::kRPartner, "1");
    s.vsfR_AfterEdit(row, capital::kRPartner);
    for (int i = 0; i < 3; ++i) ui_.expect_message("This Partner already exists.");
    EXPECT_EQ(s.vsfR.text_matrix(row, capital::kRPartner), "");
    ui_.expect_nothing_more();
}

// 100 and 10 shared 33.33/33.33/33.34, the first from the year's result (its items
// less its tax), the second typed with the automatic calculation off.
TEST_P(CapitalScreen, ThreePartnersShareTheNetProfit) {
    store::write_year_result(db(), suffix(), "C001", {{1, 150}, {2, -20}}, 30);
    capital s(component_, ui_);
    s.Form_Load();
    EXPECT_TRUE(s.chkautocalcnp.Value);
    EXPECT_EQ(s.net_profit(), 100);
    ASSERT_TRUE(save_ratios(s, {{"1", 33.33}, {"2", 33.33}, {"3", 33.34}}));
    ASSERT_TRUE(s.cmdShare_Click());
    using L = std::tuple<std::string, int, double>;
    EXPECT_EQ(share_lines(s),
              (std::vector<L>{
                  {"1", kCapitalCredit, 33.33}, {"2", kCapitalCredit, 33.33}, {"3", kCapitalCredit, 33.34}}));
    s.chkautocalcnp.Value = false;
    s.chkautocalcnp_Click();
    s.txtNetProfit.set_text("10");
    ASSERT_TRUE(s.cmdShare_Click());
    // Sharing again replaces each partner's line.
    EXPECT_EQ(share_lines(s),
              (std::vector<L>{
                  {"1", kCapitalCredit, 3.33}, {"2", kCapitalCredit, 3.33}, {"3", kCapitalCredit, 3.34}}));
    ASSERT_TRUE(s.cmdsave_Click());
    const auto rows = store::capital_lines(db(), suffix(), "C001");
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[2].amt, 3.34);
    EXPECT_EQ(rows[2].srno, 3);
    // The option is the client's: the next opening finds it off.
    capital again(component_, ui_);
    again.Form_Load();
    EXPECT_FALSE(again.chkautocalcnp.Value);
    ui_.expect_nothing_more();
}

// A share that falls half-way goes to the even neighbour: 12.5% of 1.00 is 0.125.
TEST_P(CapitalScreen, AHalfWayShareGoesToTheEvenNeighbour) {
    capital s(component_, ui_);
    s.Form_Load();
    ASSERT_TRUE(save_ratios(s, {{"1", 12.5}, {"2", 87.5}}));
    s.chkautocalcnp.Value = false;
    s.txtNetProfit.set_text("1");
    ASSERT_TRUE(s.cmdShare_Click());
    using L = std::tuple<std::string, int, double>;
    EXPECT_EQ(share_lines(s), (std::vector<L>{{"1", kCapitalCredit, 0.12}, {"2", kCapitalCredit, 0.88}}));
}

// A loss is debited; the closing balance nets it against the opening balance the
// trial balance gives (credit 1,000 under CAPITAL for ANIL SHAH).
TEST_P(CapitalScreen, ALossIsDebitedAndNettedAgainstTheCredits) {
    const long part = base_->GetMax_MastPartId("ANIL SHAH");
    db().execute("insert into TAB_" + suffix() + " values (1,'C001',1," + std::to_string(part) + ",2,1000)");
    capital s(component_, ui_);
    s.Form_Load();
    ASSERT_TRUE(save_ratios(s, {{"1", 50}, {"2", 50}}));
    s.chkautocalcnp.Value = false;
    s.txtNetProfit.set_text("-301");
    ASSERT_TRUE(s.cmdShare_Click());
    using L = std::tuple<std::string, int, double>;
    EXPECT_EQ(share_lines(s), (std::vector<L>{{"1", kCapitalDebit, 150.5}, {"2", kCapitalDebit, 150.5}}));
    EXPECT_EQ(balance_text(s.closing_balance("1", store::kCapitalAccount)), "849.50 Cr.");
    EXPECT_EQ(balance_text(s.closing_balance("2", store::kCapitalAccount)), "150.50 Dr.");
    EXPECT_EQ(s.vsPL.text_matrix(1, capital::kPLCapital), "849.50 Cr.");
    EXPECT_EQ(s.vsPL.text_matrix(2, capital::kPLCapital), "150.50 Dr.");
    // The print: each balance on its own side.
    const auto doc = capital_schedule_report(s);
    EXPECT_EQ(doc.titles[0], "CAPITAL SCHEDULE - ACME");
    EXPECT_EQ(doc.titles[1], "Client: C001 - ACME");
    EXPECT_EQ(doc.titles[2], "F.Y. 2024-25   A.Y. 2025-26");
    std::vector<std::vector<std::string>> closing;
    for (const auto& r : doc.rows)
        if (r[0] == "    Closing Balance") closing.push_back(r);
    EXPECT_EQ(closing, (std::vector<std::vector<std::string>>{{"    Closing Balance", "", "849.50"},
                                                              {"    Closing Balance", "150.50", ""}}));
}

TEST_P(CapitalScreen, LinesNeedASideAndAParticularAndTheShareLineStays) {
    capital s(component_, ui_);
    s.Form_Load();
    ASSERT_TRUE(save_ratios(s, {{"1", 100}}));
    s.vsPL_RowColChange(1);
    s.cmdaddr_Click();
    const int row = s.vsfC_Row();
    s.vsfC.set_value_matrix(row, capital::kCAmount, 500);
    EXPECT_FALSE(s.cmdsave_Click());
    ui_.expect_message("Please Specify DR/CR.");
    s.vsfC.set_text_matrix(row, capital::kCSide, "2");
    EXPECT_FALSE(s.cmdsave_Click());
    ui_.expect_message("Please Specify Particulars.");
    // The particular is picked from vsLM; "[New]" makes one.
    ui_.answer_input("INTEREST ON CAPITAL");
    s.vsLM_DblClick(1);
    EXPECT_EQ(s.particular_name(static_cast<long>(s.vsfC.value_matrix(row, capital::kCParticular))),
              "INTEREST ON CAPITAL");
    ui_.answer_input("interest on capital");
    s.vsLM_New();
    ui_.expect_message("Particulars [interest on capital] alreay exists.");
    s.chkautocalcnp.Value = false;
    s.txtNetProfit.set_text("100");
    ASSERT_TRUE(s.cmdShare_Click());
    ASSERT_TRUE(s.cmdsave_Click());
    EXPECT_EQ(store::capital_lines(db(), suffix(), "C001").size(), 2u);
    // The share line cannot be deleted; the typed one can.
    for (int r = 1; r < s.vsfC.rows(); ++r)
        if (s.vsfC.value_matrix(r, capital::kCParticular) == s.profit_share_id()) s.vsfC_RowColChange(r);
    s.cmddelr_Click();
    ui_.expect_message("Can't Delete.");
    s.vsfC_RowColChange(1);
    s.cmddelr_Click();
    EXPECT_EQ(s.vsfC.data_rows(), 1);
    ui_.answer_yes();
    s.cmddelcap_Click();
    EXPECT_TRUE(store::capital_lines(db(), suffix(), "C001").empty());
    EXPECT_EQ(ui_.questions(),
              std::vector<std::string>{"Do you really want to Delete Entire Capital Account?"});
    EXPECT_EQ(ui_.messages().size(), 4u);
}

// Partners dropped from the ratios lose their lines once the person agrees.
TEST_P(CapitalScreen, DroppedPartnersLoseTheirLinesAfterTheQuestion) {
    capital s(component_, ui_);
    s.Form_Load();
    ASSERT_TRUE(save_ratios(s, {{"1", 50}, {"~~[OTHER]RAVI", 50}}));
    s.chkautocalcnp.Value = false;
    s.txtNetProfit.set_text("100");
    ASSERT_TRUE(s.cmdShare_Click());
    ASSERT_TRUE(s.cmdsave_Click());
    ui_.answer_no();
    EXPECT_FALSE(save_ratios(s, {{"2", 100}}));
    ui_.answer_yes();
    EXPECT_TRUE(save_ratios(s, {{"2", 100}}));
    const auto q = ui_.questions();
    ASSERT_EQ(q.size(), 2u);
    EXPECT_EQ(q[0],
              "Capital A/c Details of following missing partners will be deleted :\nANIL SHAH\nOthers- RAVI"
              "\n\nDo you want to Continue?");
    EXPECT_TRUE(store::capital_lines(db(), suffix(), "C001").empty());
}

// An empty year whose previous year has lines asks; Yes opens each account at last
// year's closing balance and brings the ratios.
TEST_P(CapitalScreen, CarriesThePreviousYearForward) {
    base_->create_client_year("C001", 2024, "", std::nullopt);
    {
        capital last(component_, ui_);
        last.Form_Load();
        ASSERT_TRUE(save_ratios(last, {{"1", 40}, {"2", 60}}));
        last.chkautocalcnp.Value = false;
        last.txtNetProfit.set_text("1000");
        ASSERT_TRUE(last.cmdShare_Click());
        ASSERT_TRUE(last.cmdsave_Click());
    }
    base_->select_client_year("C001", 2025);
    ui_.answer_yes();
    capital s(component_, ui_);
    s.Form_Load();
    EXPECT_EQ(ui_.questions().back(), "Do you want to carry forward previous year particulars ?");
    const auto rows = store::capital_lines(db(), suffix(), "C001");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[1].particular_id, s.opening_balance_id());
    EXPECT_EQ(rows[1].amt, 600);
    EXPECT_EQ(rows[1].nid, kCapitalCredit);
    EXPECT_EQ(s.ratios().size(), 2u);
}

BRENLOW_INSTANTIATE_BACKENDS(CapitalScreen);

}  // namespace
}  // namespace brenlow::capital::test
