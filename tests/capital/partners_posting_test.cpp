// The capital screen on both backends: a nil result said before any line is
// written, the share into the account the client's option names, opening balances
// found under the partner's "CAPITAL A/C", the partners' interest and remuneration
// posted before the share, and the partners' and the firm's totals.

#include <gtest/gtest.h>

#include "capital/capital.h"
#include "capital/capital_report.h"
#include "capital_fixture.h"

namespace brenlow::capital::test {
namespace {

using store::kCapitalAccount;
using store::kCapitalCredit;
using store::kCurrentAccount;

class PartnersPosting : public CapitalTest {
protected:
    // The trial balance's row of a particular under a group (AllId 1 "CAPITAL",
    // 101 a current-account group), credit.
    void trial_balance(int srno, int allid, const std::string& particular, double amt) {
        const long part = base_->GetMax_MastPartId(particular);
        db().execute("insert into TAB_" + suffix() + " values (" + std::to_string(srno) + ",'C001'," +
                     std::to_string(allid) + "," + std::to_string(part) + ",2," + std::to_string(amt) + ")");
    }
    // The partner's lines: account, particular, side, amount.
    std::vector<std::tuple<int, std::string, int, double>> lines_of(const capital& s,
                                                                    const std::string& code) {
        std::vector<std::tuple<int, std::string, int, double>> out;
        for (const auto& l : s.lines())
            if (l.code == code) out.emplace_back(l.actyp, s.particular_name(l.particular_id), l.nid, l.amt);
        return out;
    }
};

TEST_P(PartnersPosting, ANilResultIsNamedBeforeAnyLineIsWritten) {
    capital s(component_, ui_);
    s.Form_Load();
    ASSERT_TRUE(save_ratios(s, {{"1", 60}, {"2", 40}}));
    EXPECT_FALSE(s.cmdShare_Click());
    ui_.expect_message("Net Profit/Loss is nil: the year's result is not recorded. Nothing was shared.");
    s.chkautocalcnp.Value = false;
    s.txtNetProfit.set_text("0");
    EXPECT_FALSE(s.cmdShare_Click());
    ui_.expect_message("Net Profit/Loss to share is nil. Nothing was shared.");
    ui_.expect_nothing_more();
    EXPECT_TRUE(s.lines().empty());
    ASSERT_TRUE(s.cmdsave_Click());
    EXPECT_TRUE(store::capital_lines(db(), suffix(), "C001").empty());
}

TEST_P(PartnersPosting, TheShareGoesToTheCurrentAccountUnderTheOption) {
    store::write_year_result(db(), suffix(), "C001", {{1, 1000}}, 0);
    {
        capital s(component_, ui_);
        s.Form_Load();
        EXPECT_FALSE(s.chkShareCurrent.Value);
        ASSERT_TRUE(save_ratios(s, {{"1", 60}, {"2", 40}}));
        s.chkShareCurrent.Value = true;
        s.chkShareCurrent_Click();
    }
    capital s(component_, ui_);
    s.Form_Load();
    EXPECT_TRUE(s.chkShareCurrent.Value);
    ASSERT_TRUE(s.cmdShare_Click());
    ASSERT_TRUE(s.cmdsave_Click());
    std::vector<std::tuple<std::string, int, int, double>> stored;
    for (const auto& l : store::capital_lines(db(), suffix(), "C001"))
        stored.emplace_back(l.code, l.actyp, l.nid, l.amt);
    EXPECT_EQ(stored,
              (std::vector<std::tuple<std::string, int, int, double>>{
                  {"1", kCurrentAccount, kCapitalCredit, 600}, {"2", kCurrentAccount, kCapitalCredit, 400}}));
    // The partners' totals and the firm's.
    EXPECT_EQ(s.vsPL.text_matrix(1, capital::kPLCurrent), "600.00 Cr.");
    EXPECT_EQ(s.vsPL.text_matrix(1, capital::kPLTotal), "600.00 Cr.");
    const int firm = s.vsPL.rows() - 1;
    EXPECT_EQ(s.vsPL.text_matrix(firm, capital::kPLName), "Total");
    EXPECT_EQ(s.vsPL.text_matrix(firm, capital::kPLCapital), "0.00");
    EXPECT_EQ(s.vsPL.text_matrix(firm, capital::kPLCurrent), "1000.00 Cr.");
    EXPECT_EQ(s.vsPL.text_matrix(firm, capital::kPLTotal), "1000.00 Cr.");
}

// The practitioner's ledger names: "ANIL SHAH CAPITAL A/C" opens his Capital A/c,
// "bina mehta current account" her Current A/c, whatever the group.
TEST_P(PartnersPosting, OpeningBalancesAreFoundUnderTheAccountsName) {
    trial_balance(1, 1, "ANIL SHAH CAPITAL A/C", 250000);
    trial_balance(2, 1, "bina  mehta current account", 12000);
    trial_balance(3, 1, "CHETAN RAO CAPITAL ACCOUNT", 5000);
    capital s(component_, ui_);
    s.Form_Load();
    // The client's listed partners, before any ratio is saved.
    using L = std::tuple<int, std::string, int, double>;
    EXPECT_EQ(lines_of(s, "1"),
              (std::vector<L>{{kCapitalAccount, "OPENING BALANCE", kCapitalCredit, 250000}}));
    EXPECT_EQ(lines_of(s, "2"),
              (std::vector<L>{{kCurrentAccount, "OPENING BALANCE", kCapitalCredit, 12000}}));
    EXPECT_EQ(lines_of(s, "3"), (std::vector<L>{{kCapitalAccount, "OPENING BALANCE", kCapitalCredit, 5000}}));
}

// 8,00,000 and 4,00,000 of capital at 15% (the excess over 12% disallowed); Anil a
// working partner paid 5,00,000, Bina not working. A result of 7,00,000: book
// profit 7,00,000 less the allowed interest 1,44,000 = 5,56,000, limit 5,00,400.
TEST_P(PartnersPosting, InterestAndRemunerationArePostedBeforeTheShare) {
    trial_balance(1, 1, "ANIL SHAH", 800000);
    trial_balance(2, 1, "BINA MEHTA", 400000);
    store::write_year_result(db(), suffix(), "C001", {{1, 700000}}, 0);
    capital s(component_, ui_);
    s.Form_Load();
    ASSERT_TRUE(save_ratios(s, {{"1", 50}, {"2", 50}}));
    ASSERT_EQ(s.vsIR.data_rows(), 2);
    s.vsIR.set_text_matrix(1, capital::kIRWorking, "1");
    s.vsIR.set_value_matrix(1, capital::kIRRate, 15);
    s.vsIR.set_value_matrix(1, capital::kIRRemuneration, 500000);
    s.vsIR.set_value_matrix(2, capital::kIRRate, 15);
    s.vsIR_AfterEdit(2, capital::kIRRate);
    EXPECT_EQ(s.vsIR.value_matrix(1, capital::kIRInterest), 120000);
    EXPECT_EQ(s.vsIR.value_matrix(1, capital::kIRAllowed), 96000);
    EXPECT_EQ(s.vsIR.value_matrix(1, capital::kIRDisallowed), 24000);
    EXPECT_EQ(s.vsIR.value_matrix(2, capital::kIRDisallowed), 12000);
    EXPECT_EQ(s.lblRemuneration.Caption,
              "Book Profit 5,56,000.00   Limit u/s 40(b) 5,00,400.00   Remuneration Paid 5,00,000.00   "
              "Disallowed 0.00   Interest Disallowed 36,000.00");
    // Remuneration to a partner who does not work is refused.
    s.vsIR.set_value_matrix(2, capital::kIRRemuneration, 1000);
    EXPECT_FALSE(s.cmdIntRem_Click());
    ui_.expect_message("BINA MEHTA: Remuneration is paid to working partners only.");
    s.vsIR.set_value_matrix(2, capital::kIRRemuneration, 0);
    // No is the default: nothing posted.
    ui_.answer_no();
    EXPECT_FALSE(s.cmdIntRem_Click());
    EXPECT_EQ(s.posted(s.interest_id()), 0);
    ui_.answer_yes();
    ASSERT_TRUE(s.cmdIntRem_Click());
    EXPECT_EQ(ui_.questions().back(),
              "Interest on Capital 1,80,000.00 (disallowed 36,000.00), Remuneration 5,00,000.00 against the "
              "limit of 5,00,400.00 (disallowed 0.00).\n\nDo you want to Post Interest on Capital and "
              "Remuneration to the Partners ?");
    // What is left is shared: 7,00,000 - 1,80,000 - 5,00,000.
    EXPECT_EQ(s.shareable_profit(), 20000);
    ASSERT_TRUE(s.cmdShare_Click());
    ASSERT_TRUE(s.cmdsave_Click());
    using L = std::tuple<int, std::string, int, double>;
    EXPECT_EQ(lines_of(s, "1"),
              (std::vector<L>{{kCapitalAccount, "OPENING BALANCE", kCapitalCredit, 800000},
                              {kCapitalAccount, "INTEREST ON CAPITAL", kCapitalCredit, 120000},
                              {kCapitalAccount, "REMUNERATION", kCapitalCredit, 500000},
                              {kCapitalAccount, "PROFIT SHARE (00711)", kCapitalCredit, 10000}}));
    EXPECT_EQ(lines_of(s, "2"),
              (std::vector<L>{{kCapitalAccount, "OPENING BALANCE", kCapitalCredit, 400000},
                              {kCapitalAccount, "INTEREST ON CAPITAL", kCapitalCredit, 60000},
                              {kCapitalAccount, "PROFIT SHARE (00711)", kCapitalCredit, 10000}}));
    EXPECT_EQ(s.shared_net_profit(), 700000);
    // Read again: the terms were kept, and posting twice replaces the lines.
    capital again(component_, ui_);
    again.Form_Load();
    EXPECT_EQ(again.vsIR.value_matrix(1, capital::kIRRemuneration), 500000);
    EXPECT_EQ(again.vsIR.text_matrix(1, capital::kIRWorking), "1");
    ui_.answer_yes();
    ASSERT_TRUE(again.cmdIntRem_Click());
    EXPECT_EQ(again.lines().size(), 7u);
    // The print carries the totals.
    const auto doc = capital_schedule_report(again);
    EXPECT_EQ(doc.rows.back(), (std::vector<std::string>{"  Total", "", "19,00,000.00"}));
    EXPECT_EQ(doc.notes[0], "Net Profit/Loss: 7,00,000.00");
}

BRENLOW_INSTANTIATE_BACKENDS(PartnersPosting);

}  // namespace
}  // namespace brenlow::capital::test
