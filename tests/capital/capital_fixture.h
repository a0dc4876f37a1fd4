#pragma once
// A component over a temporary database of either backend with client C001 (a
// firm) open for F.Y. 2024-25 and three listed partners, for driving the capital
// screen and the ledger master.

#include <string>
#include <utility>
#include <vector>

#include "capital/capital.h"
#include "store/capital_store.h"
#include "store/client_store.h"
#include "support/component_fixture.h"
#include "support/scripted_ui.h"

namespace brenlow::capital::test {

class CapitalTest : public brenlow::test::ComponentTest {
protected:
    void SetUp() override {
        brenlow::test::ComponentTest::SetUp();
        if (IsSkipped()) return;
        for (const auto& [f, l] : std::vector<std::pair<std::string, std::string>>{
                 {"ANIL", "SHAH"}, {"BINA", "MEHTA"}, {"CHETAN", "RAO"}})
            store::add_listed_partner(db(), "C001", f, "", l);
    }

    std::string suffix() { return base_->GetTbName(base_->CYrInd()); }

    // Opens the ratio frame, types the lines (a listed partner by code, a partner
    // entered by hand by "~~[OTHER]" and the name) and saves them.
    bool save_ratios(capital& s, const std::vector<std::pair<std::string, double>>& lines) {
        s.cmdProfitDet_Click();
        while (s.vsfR.data_rows() > 0) {
            s.vsfR_RowColChange(s.vsfR.fixed_rows());
            s.vsfR.remove_item(s.vsfR.fixed_rows());
        }
        for (const auto& [code, pct] : lines) {
            s.cmdAddP_Click();
            const int row = s.vsfR.rows() - 1;
            if (is_other_partner(code)) {
                s.set_other_partner(row, other_partner_name(code));
            } else {
                s.vsfR.set_text_matrix(row, capital::kRPartner, code);
                s.vsfR_AfterEdit(row, capital::kRPartner);
            }
            s.vsfR.set_value_matrix(row, capital::kRRatio, pct);
            s.vsfR_AfterEdit(row, capital::kRRatio);
        }
        return s.cmdbackP_Click();
    }

    // The share lines of the grid: partner code, side, amount.
    std::vector<std::tuple<std::string, int, double>> share_lines(const capital& s) {
        std::vector<std::tuple<std::string, int, double>> out;
        for (const auto& l : s.lines())
            if (l.particular_id == s.profit_share_id()) out.emplace_back(l.code, l.nid, l.amt);
        return out;
    }

    brenlow::test::ScriptedUi ui_;
};

}  // namespace brenlow::capital::test
