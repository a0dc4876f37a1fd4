#include "schedules/formatsch.h"

#include <gtest/gtest.h>

#include "schedules/schedule_carry.h"
#include "schedules/schedule_grids.h"
#include "schedules/schedule_rules.h"
#include "store/client_store.h"
#include "support/component_fixture.h"
#include "support/scripted_ui.h"

namespace brenlow::schedules {
namespace {

class Formatsch : public test::ComponentTest {
protected:
    // A company's year (status 3), optionally with the year before it.
    void company(bool previous_year = false) {
        if (previous_year) base_->create_client_year("CO1", kComponentYear - 1, "ACME LTD", 3);
        base_->create_client_year("CO1", kComponentYear, "ACME LTD", 3);
    }
    std::unique_ptr<formatsch> screen(int sch_def = 0) {
        component_.SchDef = static_cast<frame::VbBool>(sch_def);
        auto s = std::make_unique<formatsch>(component_, ui_);
        s->Form_Load();
        return s;
    }
    store::Recordset rows(const std::string& sql) { return db().query(sql); }
    long long count(const std::string& sql) { return rows(sql).first("n").as_int(); }
    // Types a line into the open grid as the person would, cell by cell.
    void type_line(formatsch& s, const std::vector<std::pair<std::string, std::string>>& cells) {
        s.cmdAdd_Click();
        const int r = s.vsf1_Row();
        for (const auto& [key, text] : cells) {
            const int c = s.vsf1.col_index(key);
            ASSERT_GE(c, 0) << key;
            s.vsf1.set_text_matrix(r, c, text);
            s.vsf1_AfterEdit(r, c);
        }
    }
    void type_form(formatsch& s, int line, double amount) {
        const int r = s.vsf1.fixed_rows() + line;
        s.vsf1.set_value_matrix(r, 1, amount);
        s.vsf1_AfterEdit(r, 1);
    }
    int button(int group) {
        const auto& k = sched_kinds();
        for (std::size_t i = 0; i < k.size(); ++i)
            if (k[i].group == group) return static_cast<int>(i);
        return -1;
    }

    test::ScriptedUi ui_;
};

TEST_P(Formatsch, ACompanySeesEveryScheduleAndOpensShareCapitalFirst) {
    company();
    auto s = screen();
    for (const auto& b : s->buttons) EXPECT_TRUE(b.Visible) << b.Caption;
    EXPECT_EQ(s->buttons[0].Caption, "Share Capital");
    EXPECT_EQ(s->lblRndFA.Caption, "Round-Off Depreciation (As per Companies Act)");
    EXPECT_EQ(s->lblRndIT.Caption, "Round-Off Depreciation (As per IT Act)");
    ASSERT_NE(s->current(), nullptr);
    EXPECT_STREQ(s->current()->title, "Share Capital");
    EXPECT_EQ(s->vsf1.text_matrix(0, 0), "Type of Share Capital");
    EXPECT_EQ(s->vsf1.column(1).combo_list, "#E;Equity Share|#P;Preference");
    EXPECT_TRUE(s->previous_suffix().empty());
    ui_.expect_nothing_more();
}

TEST_P(Formatsch, AFirmSeesCapitalAndItsCapitalButtonCallsThePartnersScreen) {
    auto s = screen();  // C001 is status 1
    EXPECT_EQ(s->buttons[0].Caption, "Capital");
    EXPECT_EQ(s->lblRndFA.Caption, "Round-Off Depreciation (As per Books)");
    EXPECT_FALSE(s->buttons[static_cast<std::size_t>(button(kReserves))].Visible);
    // Its first button is Capital: pressed at load, it opens the partners' screen.
    ui_.expect_message(formatsch::kCapitalNotAvailable);
    EXPECT_EQ(s->current(), nullptr);
    s->cmd_sharecapital_Click();
    ui_.expect_message(formatsch::kCapitalNotAvailable);
    int opened = 0;
    s->open_capital = [&] { ++opened; };
    s->cmd_sharecapital_Click();
    EXPECT_EQ(opened, 1);
    s->cmd_Click(kFixedAssets);
    ui_.expect_message(formatsch::kFixedNotAvailable);
}

TEST_P(Formatsch, NoScheduleGroupsShowNoButtonsAndSchDefSevenOpensNothing) {
    company();
    db().execute("delete from SCHED_2025 where code_no='CO1'");
    auto s = screen(7);
    for (const auto& b : s->buttons) EXPECT_FALSE(b.Visible);
    EXPECT_EQ(s->current(), nullptr);
    EXPECT_EQ(s->vsf1.cols(), 0);
    ui_.expect_nothing_more();
}

TEST_P(Formatsch, SwitchingFromSecuredToUnsecuredSavesTheSecuredRowsFirstInOneTable) {
    company();
    auto s = screen(kSecured);
    type_line(*s, {{kItemKey, "-1"}, {"PARTICUL", "12% DEBENTURES"}, {"rate", "100"}, {"EACH_AMT", "1000"}});
    EXPECT_EQ(s->vsf1.display_text(s->vsf1_Row(), s->vsf1.col_index("Amount")), "100000.00");
    type_line(*s, {{kItemKey, "1"}, {"PARTICUL", "SBI TERM LOAN"}, {"Amount", "250000"}});
    s->cmd_Click(kUnsecured);
    EXPECT_EQ(s->loan_kind(), "UNSECURED");
    EXPECT_EQ(s->vsf1.data_rows(), 0);
    EXPECT_EQ(count("select count(*) as n from SECUR_2025 where LOAN_ID=1 and code_no='CO1'"), 2);
    type_line(*s, {{kItemKey, "5"}, {"PARTICUL", "MR DIRECTOR"}, {"Amount", "50000"}});
    s->cmd_Click(kSecured);
    EXPECT_EQ(count("select count(*) as n from SECUR_2025 where LOAN_ID=2 and code_no='CO1'"), 1);
    ASSERT_EQ(s->vsf1.data_rows(), 2);
    EXPECT_EQ(s->vsf1.text_matrix(2, s->vsf1.col_index("PARTICUL")), "SBI TERM LOAN");
    const auto deb = rows("select * from SECUR_2025 where DEB_OTH_ID=1");
    EXPECT_EQ(deb.first("srno").as_int(), 1);
    EXPECT_EQ(deb.first("rate").as_double(), 100);
    EXPECT_EQ(deb.first("EACH_AMT").as_double(), 1000);
    EXPECT_EQ(rows("select * from SECUR_2025 where head_id=1").first("Amount").as_double(), 250000);
}

TEST_P(Formatsch, ReservesCarryTheirClosingBalanceForwardWithNoMovement) {
    company(true);
    base_->select_client_year("CO1", kComponentYear - 1);
    {
        auto last = screen(kReserves);
        type_line(*last, {{"resv_id", "4"}, {"OP_BL", "100"}, {"ADD_AMT", "50"}, {"Ded_amt", "30"}});
        ASSERT_TRUE(last->save());
    }
    base_->select_client_year("CO1", kComponentYear);
    ui_.answer_yes();
    auto s = screen(kReserves);
    EXPECT_EQ(ui_.questions(), std::vector<std::string>{kCarryForwardQuestion});
    const auto r = rows("select * from RESV_2025 where code_no='CO1'");
    ASSERT_EQ(r.size(), 1u);
    EXPECT_EQ(r.first("resv_id").as_int(), 4);
    EXPECT_EQ(r.first("OP_BL").as_double(), 120);
    EXPECT_EQ(r.first("ADD_AMT").as_double(), 0);
    EXPECT_EQ(r.first("Ded_amt").as_double(), 0);
    EXPECT_EQ(s->vsf1.display_text(1, s->vsf1.col_index("OP_BL")), "120.00");
    // With this year's rows in place the question is not asked again.
    ui_.forget();
    s->cmd_Click(kMiscExp);
    s->cmd_Click(kReserves);
    EXPECT_TRUE(ui_.questions().empty());
}

TEST_P(Formatsch, OtherSchedulesCarryForwardColumnByColumnAndNoMeansNothing) {
    company(true);
    base_->select_client_year("CO1", kComponentYear - 1);
    {
        auto last = screen(kMiscExp);
        type_line(*last, {{"ExpID", "1"}, {"Descript", "FORMATION"}, {"OpBal", "5000"}, {"Amount", "1000"}});
        last->cmd_Click(kInvestments);  // saves
        type_line(*last, {{"INVEST_ID", "10"}, {"particular", "GOLD"}, {"Amount", "700"}});
        ASSERT_TRUE(last->save());
    }
    base_->select_client_year("CO1", kComponentYear);
    ui_.answer_yes().answer_no();
    auto s = screen(kMiscExp);
    s->cmd_Click(kInvestments);
    const auto m = rows("select * from MiscExpAsst_2025 where code_no='CO1'");
    ASSERT_EQ(m.size(), 1u);
    EXPECT_EQ(m.first("Descript").as_text(), "FORMATION");
    EXPECT_EQ(m.first("OpBal").as_double(), 5000);
    EXPECT_EQ(m.first("Amount").as_double(), 1000);
    EXPECT_EQ(count("select count(*) as n from INVEST_2025"), 0);
}

TEST_P(Formatsch, AClientWithoutAPreviousYearIsNeverAsked) {
    company();
    auto s = screen(kReserves);
    for (int g : {kShareCapital, kSecured, kUnsecured, kInvestments, kLoansAdvances, kMiscExp})
        s->cmd_Click(g);
    EXPECT_TRUE(ui_.questions().empty());
}

TEST_P(Formatsch, ShareApplicationMoneyOfZeroWritesNoRowAndOtherwiseARowWithoutSerial) {
    company();
    auto s = screen(kShareCapital);
    type_line(*s, {{"four_id", "1"}, {"ref_ep", "E"}, {"no_share", "10000"}, {"RS_SHARE", "10"}});
    type_line(
        *s,
        {{"four_id", "4"}, {"ref_ep", "E"}, {"no_share", "5000"}, {"RS_SHARE", "10"}, {"RS_SHARE1", "10"}});
    EXPECT_EQ(s->vsf1.display_text(2, s->vsf1.col_index(kAmountKey)), "50000.00");
    ASSERT_TRUE(s->save());
    EXPECT_EQ(count("select count(*) as n from SHARE_2025"), 2);
    EXPECT_EQ(count("select count(*) as n from SHARE_2025 where sam<>0"), 0);
    const int app = s->vsf1.rows() - 1;
    EXPECT_EQ(s->vsf1.text_matrix(app, 0), kApplicationCaption);
    s->vsf1.set_value_matrix(app, s->vsf1.col_index(kAmountKey), 2500);
    s->vsf1_AfterEdit(app, s->vsf1.col_index(kAmountKey));
    ASSERT_TRUE(s->save());
    const auto sam = rows("select * from SHARE_2025 where sam<>0");
    ASSERT_EQ(sam.size(), 1u);
    EXPECT_TRUE(sam.first("srno").is_null());
    EXPECT_EQ(sam.first("sam").as_double(), 2500);
    // Read back, the money is on its own last line.
    s->cmd_Click(kReserves);
    s->cmd_Click(kShareCapital);
    EXPECT_EQ(s->vsf1.data_rows(), 3);
    EXPECT_EQ(s->vsf1.value_matrix(s->vsf1.rows() - 1, s->vsf1.col_index(kAmountKey)), 2500);
}

struct ShareCase {
    const char* name;
    std::vector<std::vector<std::pair<std::string, std::string>>> lines;
    std::string message;
};

TEST_P(Formatsch, ShareCapitalChecksRefuseTheSaveAndKeepTheSchedule) {
    company();
    const std::vector<ShareCase> cases = {
        {"no type", {{{"ref_ep", "E"}, {"no_share", "10"}}}, "Please specify a item"},
        {"no rate", {{{"four_id", "1"}, {"ref_ep", "E"}, {"no_share", "10"}}}, "Each field is required"},
        {"issued above authorised",
         {{{"four_id", "1"}, {"ref_ep", "E"}, {"no_share", "10"}, {"RS_SHARE", "10"}},
          {{"four_id", "4"}, {"ref_ep", "E"}, {"no_share", "20"}, {"RS_SHARE", "10"}}},
         "Nos. of Authorised Shares cannot be Lesser than Issued Shares."},
        {"no such share",
         {{{"four_id", "1"}, {"ref_ep", "E"}, {"no_share", "10"}, {"RS_SHARE", "10"}},
          {{"four_id", "5"}, {"ref_ep", "E"}, {"no_share", "5"}, {"RS_SHARE", "100"}}},
         "Share of Rs. 100 is not available."},
    };
    for (const auto& c : cases) {
        auto s = screen(kShareCapital);
        for (const auto& l : c.lines) type_line(*s, l);
        s->cmd_Click(kReserves);
        ui_.expect_message(c.message);
        EXPECT_STREQ(s->current()->title, "Share Capital") << c.name;
        EXPECT_EQ(s->vsf1.data_rows(), static_cast<int>(c.lines.size()) + 1) << c.name;
        EXPECT_EQ(count("select count(*) as n from SHARE_2025"), 0) << c.name;
    }
    auto s = screen(kShareCapital);
    type_line(*s, {{"four_id", "1"}, {"RS_SHARE", "10"}});
    EXPECT_FALSE(s->vsf1_ValidateEdit(1, s->vsf1.col_index("RS_SHARE1"), "12"));
    ui_.expect_message("Paid up Rate per Share Should be Less than Per Share Amount.");
    EXPECT_TRUE(s->vsf1_ValidateEdit(1, s->vsf1.col_index("RS_SHARE1"), "10"));
}

TEST_P(Formatsch, AReserveLineWithoutItemIsRefusedAndItsListDroppedOpen) {
    company();
    auto s = screen(kReserves);
    type_line(*s, {{"resv_id", "4"}, {"OP_BL", "10"}});
    type_line(*s, {{"OP_BL", "100"}});
    s->cmd_Click(kMiscExp);
    ui_.expect_message("Please specify a item.");
    EXPECT_STREQ(s->current()->title, "Reserve and Surplus");
    EXPECT_EQ(s->dropped_row(), 2);
    EXPECT_EQ(s->dropped_col(), s->vsf1.col_index("resv_id"));
}

TEST_P(Formatsch, SundryDebtorsAndBankKeepOneRowPerClient) {
    company();
    auto s = screen(kSundryDebtors);
    ASSERT_EQ(s->vsf1.data_rows(), 7);
    type_form(*s, 0, 1000);
    type_form(*s, 6, 50);
    s->cmd_Click(kCashBank);
    ASSERT_EQ(s->vsf1.data_rows(), 13);
    EXPECT_EQ(s->vsf1.text_matrix(6, 0), "    In Current A/C");
    type_form(*s, 0, 300);
    type_form(*s, 4, 99);  // a heading takes no amount
    EXPECT_EQ(s->vsf1.text_matrix(5, 1), "");
    type_form(*s, 5, 7000);
    s->cmd_Click(kSundryDebtors);
    s->cmd_Click(kCashBank);
    s->cmd_Click(kSundryDebtors);
    EXPECT_EQ(count("select count(*) as n from SUNDEB_2025 where code_no='CO1'"), 1);
    EXPECT_EQ(count("select count(*) as n from BANK_2025 where code_no='CO1'"), 1);
    EXPECT_EQ(rows("select * from SUNDEB_2025").first("bad_amt").as_double(), 50);
    EXPECT_EQ(rows("select * from BANK_2025").first("SCH_CURR").as_double(), 7000);
    EXPECT_EQ(rows("select * from BANK_2025").first("srno").as_int(), 1);
    EXPECT_EQ(s->vsf1.value_matrix(1, 1), 1000);
}

TEST_P(Formatsch, SavingReservesDeletesEveryClientsRowsWithoutAReserve) {
    company();
    db().execute("insert into RESV_2025 values (1,'OTHER',0,5,0,0)");
    db().execute("insert into RESV_2025 values (2,'OTHER',4,5,0,0)");
    auto s = screen(kReserves);
    type_line(*s, {{"resv_id", "6"}, {"OP_BL", "10"}});
    ASSERT_TRUE(s->save());
    EXPECT_EQ(count("select count(*) as n from RESV_2025 where code_no='OTHER'"), 1);
    EXPECT_EQ(count("select count(*) as n from RESV_2025 where resv_id=0"), 0);
    EXPECT_EQ(count("select count(*) as n from RESV_2025 where code_no='CO1'"), 1);
}

TEST_P(Formatsch, NewMasterItemsTakeTheLargestNumberPlusOne) {
    company();
    auto s = screen(kReserves);
    ui_.answer_input("Investment Allowance Reserve");
    type_line(*s, {{kUserReserveKey, "0"}, {"OP_BL", "10"}});
    EXPECT_EQ(s->vsf1.text_matrix(1, 1), "8");
    EXPECT_EQ(s->vsf1.display_text(1, 1), "Investment Allowance Reserve");
    ui_.answer_input("Investment Allowance Reserve");
    type_line(*s, {{kUserReserveKey, "0"}});
    ui_.expect_message(formatsch::kItemExists);
    EXPECT_EQ(s->vsf1.text_matrix(2, 1), "");
    ASSERT_TRUE(s->save());
    EXPECT_EQ(rows("select * from RESV_2025").first("resv_id").as_int(), 8);

    s->cmd_Click(kMiscExp);
    ui_.answer_input("preliminary expenses");  // found case-blind
    type_line(*s, {{"ExpID", "0"}});
    EXPECT_EQ(s->vsf1.text_matrix(1, 0), "1");
    ui_.answer_input("Brokerage");
    type_line(*s, {{"ExpID", "0"}});
    EXPECT_EQ(s->vsf1.text_matrix(2, 0), "5");
    s->cmd_Click(kInvestments);
    ui_.answer_input("Tata Steel");
    type_line(*s, {{"comp_id", "0"}});
    EXPECT_EQ(s->vsf1.text_matrix(1, s->vsf1.col_index("comp_id")), "1");
    EXPECT_EQ(rows("select * from mast_company").first("comp_nm").as_text(), "Tata Steel");
}

TEST_P(Formatsch, TheTrialBalancePanelShowsTheGroupAndFollowsEverySwitch) {
    company();
    auto s = screen(kReserves);
    s->cmdshtb_Click();
    ui_.expect_message(formatsch::kNoRecords);
    EXPECT_FALSE(s->panel_visible);
    EXPECT_EQ(s->cmdshtb.Caption, "Sho&w Trial Balance Data");
    const long gr = base_->GetMax_MastPartId("GENERAL RESERVE");
    const long tl = base_->GetMax_MastPartId("TERM LOAN");
    db().execute("insert into TAB_2025 values (1,'CO1',2," + std::to_string(gr) + ",2,5000)");
    db().execute("insert into TAB_2025 values (2,'CO1',3," + std::to_string(tl) + ",2,70000)");
    s->cmdshtb_Click();
    EXPECT_TRUE(s->panel_visible);
    EXPECT_EQ(s->cmdshtb.Caption, "&Hide Trial Balance Data");
    ASSERT_EQ(s->vsTB.data_rows(), 2);
    EXPECT_EQ(s->vsTB.text_matrix(1, 0), "GENERAL RESERVE");
    EXPECT_EQ(s->vsTB.display_text(1, 2), "5000.00");
    EXPECT_EQ(s->vsTB.text_matrix(2, 0), "Total");
    s->cmd_Click(kSecured);
    EXPECT_EQ(s->vsTB.text_matrix(1, 0), "TERM LOAN");
    s->cmdshtb_Click();
    EXPECT_FALSE(s->panel_visible);
    EXPECT_EQ(s->cmdshtb.Caption, "Sho&w Trial Balance Data");
}

TEST_P(Formatsch, DeletingALineAsksFirstWithNoAsTheDefault) {
    company();
    auto s = screen(kLoansAdvances);
    type_line(*s, {{"OTH_LOAN_ID", "1"}, {"Amount", "10"}});
    ui_.answer_no();
    s->cmddel_Click();
    ASSERT_EQ(ui_.shown().size(), 1u);
    EXPECT_EQ(ui_.shown()[0].text, "Do you want to delele the selected item?");
    EXPECT_EQ(ui_.shown()[0].title, "Delete Confirmation");
    EXPECT_EQ(ui_.shown()[0].default_button, "No");
    EXPECT_EQ(s->vsf1.data_rows(), 1);
    ui_.answer_yes();
    s->cmddel_Click();
    EXPECT_EQ(s->vsf1.data_rows(), 0);
}

TEST_P(Formatsch, ShownAgainTheScreenStartsAfreshOnTheYearOpenNow) {
    company(true);
    auto s = screen(kReserves);
    type_line(*s, {{"resv_id", "4"}, {"OP_BL", "10"}});
    ASSERT_TRUE(s->save());
    s->cmdshtb_Click();  // nothing in the trial balance
    base_->select_client_year("CO1", kComponentYear - 1);
    component_.SchDef = kReserves;
    s->Form_Load();
    EXPECT_STREQ(s->current()->title, "Reserve and Surplus");
    EXPECT_EQ(s->vsf1.data_rows(), 0);
    EXPECT_EQ(s->suffix(), "2024");
}

TEST_P(Formatsch, AnInvestmentKeepsTheColumnsOfItsType) {
    company();
    auto s = screen(kInvestments);
    type_line(*s, {{"particular", "GOLD"}, {"no_shares", "5"}, {"INVEST_ID", "10"}, {"Amount", "700"}});
    const int r = s->vsf1_Row();
    EXPECT_EQ(s->vsf1.text_matrix(r, s->vsf1.col_index("particular")), "GOLD");
    EXPECT_EQ(s->vsf1.text_matrix(r, s->vsf1.col_index("no_shares")), "");
    s->vsf1.set_text_matrix(r, s->vsf1.col_index("qu_ID"), "1");
    s->vsf1_AfterEdit(r, s->vsf1.col_index("qu_ID"));
    EXPECT_EQ(s->vsf1.text_matrix(r, s->vsf1.col_index("qu_ID")), "");
    ASSERT_TRUE(s->save());
    const auto row = rows("select * from INVEST_2025");
    EXPECT_EQ(row.first("particular").as_text(), "GOLD");
    EXPECT_TRUE(row.first("comp_id").is_null());
}

TEST_P(Formatsch, PrintingGivesTheReportObjectTheScheduleAsTheGridHoldsIt) {
    company();
    auto s = screen(kUnsecured);
    type_line(*s, {{kItemKey, "5"}, {"PARTICUL", "MR DIRECTOR"}, {"Amount", "1234567.5"}});
    std::vector<Ostikreport::ReportDocument> shown;
    component_.report->set_viewer([&](const Ostikreport::ReportDocument& d) { shown.push_back(d); });
    s->cmdPrint_Click();
    ASSERT_EQ(shown.size(), 1u);
    const auto& doc = shown[0];
    EXPECT_EQ(doc.titles[0], "SCHEDULE: Unsecured Loans");
    EXPECT_EQ(doc.titles[1], "Client: CO1 - ACME LTD");
    EXPECT_EQ(doc.titles[2], "F.Y. 2024-25");
    ASSERT_EQ(doc.rows.size(), 2u);
    EXPECT_EQ(doc.rows[0][0], "LOANS FROM DIRECTORS");
    EXPECT_EQ(doc.rows[0][4], "12,34,567.50");
    EXPECT_EQ(doc.rows[1][0], "Total");
    EXPECT_EQ(count("select count(*) as n from SECUR_2025"), 0);  // printing writes nothing
}

// Opened with no schedule named, the first button shown is pressed, by status and
// by the groups the client has.
TEST_P(Formatsch, OpenedWithNoScheduleNamedTheFirstButtonShownIsPressed) {
    struct Case {
        int status;
        std::vector<int> groups;  // SCHED_ rows of the client
        int capital_opened;       // the partners' screen opened
        int fixed_opened;
        const char* title;  // the schedule then open, "" for none
        int loan_id;
    };
    const std::vector<Case> cases = {
        {3, {1, 2, 3, 4, 5, 6, 8, 9, 11, 14}, 0, 0, "Share Capital", 0},
        {2, {1, 3, 4, 5, 6, 8, 9, 11}, 1, 0, "", 0},
        {1, {1, 3, 4, 5, 6, 8, 9, 11}, 1, 0, "", 0},
        {2, {4, 3, 8}, 0, 0, "Loans", 1},
        {2, {4, 9}, 0, 0, "Loans", 2},
        {3, {5, 9}, 0, 1, "", 0},
        {2, {11, 8}, 0, 0, "Sundry Debtors", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE("status " + std::to_string(c.status) + ", first group " + std::to_string(c.groups[0]));
        base_->create_client_year("CO1", kComponentYear, "ACME", c.status);
        db().execute("delete from SCHED_2025 where code_no='CO1'");
        for (int g : c.groups)
            db().execute("insert into SCHED_2025 (code_no, GID) values ('CO1'," + std::to_string(g) + ")");
        component_.SchDef = 0;
        formatsch s(component_, ui_);
        int capital = 0, fixed = 0;
        s.open_capital = [&] { ++capital; };
        s.open_fixed_assets = [&] { ++fixed; };
        s.Form_Load();
        EXPECT_EQ(capital, c.capital_opened);
        EXPECT_EQ(fixed, c.fixed_opened);
        EXPECT_EQ(s.current() ? std::string(s.current()->title) : std::string(), c.title);
        if (s.current()) {
            EXPECT_EQ(s.current()->loan_id, c.loan_id);
        }
        ui_.expect_nothing_more();
    }
}

// Merge, Previous Year and New Chart save the open schedule first; a refused save
// keeps it and opens nothing.
TEST_P(Formatsch, MergePreviousYearAndNewChartSaveTheOpenScheduleFirst) {
    company(true);
    struct Command {
        const char* name;
        void (formatsch::*click)();
    };
    for (const Command& c :
         {Command{"merge", &formatsch::cmdmerge_Click}, Command{"new chart", &formatsch::cmdnewchart_Click},
          Command{"previous year", &formatsch::cmdprev_Click}}) {
        SCOPED_TRACE(c.name);
        db().execute("delete from RESV_2025");
        auto s = screen(kReserves);
        int opened = 0;
        s->open_merge = s->open_new_chart = [&] { ++opened; };
        type_line(*s, {{"OP_BL", "500"}});  // no reserve named: refused
        ((*s).*c.click)();
        ui_.expect_message(kSpecifyItemDot);
        EXPECT_EQ(opened, 0);
        EXPECT_FALSE(s->previous_year());
        EXPECT_EQ(count("select count(*) as n from RESV_2025"), 0);
        s->vsf1.set_text_matrix(1, 0, "4");
        ((*s).*c.click)();
        EXPECT_EQ(count("select count(*) as n from RESV_2025 where code_no='CO1' and resv_id=4"), 1);
        EXPECT_EQ(opened + (s->previous_year() ? 1 : 0), 1);
        ui_.expect_nothing_more();
    }
}

TEST_P(Formatsch, PreviousYearShowsTheYearBeforeAndLooksTwoYearsBackForItsOwnPreviousYear) {
    base_->create_client_year("CO1", kComponentYear - 2, "ACME LTD", 3);
    company(true);
    base_->select_client_year("CO1", kComponentYear - 1);
    {
        auto last = screen(kReserves);
        type_line(*last, {{"resv_id", "4"}, {"OP_BL", "100"}});
        ASSERT_TRUE(last->save());
    }
    base_->select_client_year("CO1", kComponentYear);
    ui_.answer_no();  // this year's reserves are empty: carry forward? No
    auto s = screen(kReserves);
    EXPECT_EQ(s->lblYear.Caption, "F.Y. 2024-25");
    EXPECT_EQ(s->cmdprev.Caption, formatsch::kPreviousYear);
    const std::string this_year = s->suffix(), last_year = s->previous_suffix();
    s->cmdprev_Click();
    ASSERT_TRUE(s->previous_year());
    EXPECT_EQ(s->suffix(), last_year);
    EXPECT_EQ(s->previous_suffix(), store::find_client_year(db(), "CO1", kComponentYear - 2)->tbl_nm);
    EXPECT_EQ(s->lblYear.Caption, "Previous Year: F.Y. 2023-24");
    EXPECT_EQ(s->cmdprev.Caption, formatsch::kCurrentYear);
    ASSERT_NE(s->current(), nullptr);
    EXPECT_STREQ(s->current()->title, "Reserve and Surplus");
    ASSERT_EQ(s->vsf1.data_rows(), 1);
    EXPECT_EQ(s->vsf1.value_matrix(1, s->vsf1.col_index("OP_BL")), 100);
    ui_.answer_no();
    s->cmdprev_Click();
    EXPECT_FALSE(s->previous_year());
    EXPECT_EQ(s->suffix(), this_year);
}

TEST_P(Formatsch, WithoutAPreviousYearPreviousYearSaysSo) {
    company();
    auto s = screen(kReserves);
    s->cmdprev_Click();
    ui_.expect_message(formatsch::kNoPreviousYear);
    EXPECT_FALSE(s->previous_year());
}

TEST_P(Formatsch, AFirmHasNoLoansToSubsidiariesNorSharesInThem) {
    struct Case {
        int status;
        bool subsidiaries;
    };
    for (const Case c : {Case{1, false}, Case{2, false}, Case{3, true}, Case{4, true}}) {
        SCOPED_TRACE(c.status);
        base_->create_client_year("CO1", kComponentYear, "ACME", c.status);
        auto s = screen(kLoansAdvances);
        ASSERT_NE(s->current(), nullptr);
        EXPECT_EQ(s->vsf1.col_index("LDAD_ID") >= 0, c.subsidiaries);
        bool heading = false;
        for (int col = 0; col < s->vsf1.cols(); ++col)
            heading = heading || s->vsf1.text_matrix(0, col) == "Loans to Subsidiary Company";
        EXPECT_EQ(heading, c.subsidiaries);
        s->cmd_Click(kInvestments);
        const auto& types = s->vsf1.column(s->vsf1.col_index("INVEST_ID")).combo;
        EXPECT_EQ(types.text_of("4").has_value(), c.subsidiaries);
        EXPECT_TRUE(types.text_of("3").has_value());
        // A firm's advance is named by its other-loans list.
        s->cmd_Click(kLoansAdvances);
        type_line(*s, {{"OTH_LOAN_ID", "2"}, {"Amount", "900"}});
        ASSERT_TRUE(s->save());
        db().execute("delete from LOAN_ADV_2025");
    }
}

TEST_P(Formatsch, TheTotalsLineAddsWhatTheScheduleAddsUp) {
    company();
    auto s = screen(kSundryDebtors);
    for (const auto& [line, amount] : std::vector<std::pair<int, double>>{
             {0, 40000}, {1, 160000}, {2, 5000}, {3, 1000}, {4, 190000}, {5, 10000}, {6, 0}})
        type_form(*s, line, amount);
    EXPECT_EQ(s->totals(), (std::vector<std::string>{kDebtorsTotalLabel, "1,94,000.00"}));

    s->cmd_Click(kShareCapital);
    type_line(*s, {{"four_id", "1"}, {"ref_ep", "E"}, {"no_share", "10000"}, {"RS_SHARE", "10"}});
    type_line(
        *s,
        {{"four_id", "4"}, {"ref_ep", "E"}, {"no_share", "6000"}, {"RS_SHARE", "10"}, {"RS_SHARE1", "10"}});
    // Authorised capital and the rates add nothing; the paid-up capital adds up.
    EXPECT_EQ(s->totals(), (std::vector<std::string>{"Total", "", "", "", "", "", "60,000.00"}));

    s->cmd_Click(kSecured);
    type_line(*s, {{kItemKey, "-1"}, {"PARTICUL", "DEBENTURES"}, {"rate", "100"}, {"EACH_AMT", "1000"}});
    type_line(*s, {{kItemKey, "1"}, {"PARTICUL", "SBI"}, {"Amount", "250000"}});
    EXPECT_EQ(s->totals(), (std::vector<std::string>{"Total", "", "", "", "3,50,000.00"}));
}

TEST_P(Formatsch, TheSundryDebtorsPrintCarriesItsTotal) {
    company();
    auto s = screen(kSundryDebtors);
    type_form(*s, 0, 40000);
    type_form(*s, 1, 160000);
    type_form(*s, 2, 5000);
    std::vector<Ostikreport::ReportDocument> shown;
    component_.report->set_viewer([&](const Ostikreport::ReportDocument& d) { shown.push_back(d); });
    s->cmdPrint_Click();
    ASSERT_EQ(shown.size(), 1u);
    ASSERT_EQ(shown[0].rows.size(), 8u);
    EXPECT_EQ(shown[0].rows.back(), (std::vector<std::string>{kDebtorsTotalLabel, "1,95,000.00"}));
    EXPECT_TRUE(shown[0].bold_rows.back());
}

BRENLOW_INSTANTIATE_BACKENDS(Formatsch);

}  // namespace
}  // namespace brenlow::schedules
