#include "capital/ledger_master.h"

#include <gtest/gtest.h>

#include "capital_fixture.h"

namespace brenlow::capital::test {
namespace {

class LedgerMaster : public CapitalTest {
protected:
    void SetUp() override {
        CapitalTest::SetUp();
        if (IsSkipped()) return;
        // Another client in another year: C002 for F.Y. 2023-24.
        base_->create_client_year("C002", 2024, "BETA TRADERS", 2);
        other_suffix_ = base_->GetTbName(base_->CYrInd());
        base_->select_client_year("C001", 2025);
    }

    long capital_particular(const std::string& name) {
        return store::ledger_insert(db(), store::Ledger::capital, name);
    }
    void use_in_capital(const std::string& suffix, const std::string& client, long id) {
        db().execute("insert into CAPITAL_" + suffix +
                     " (code_no,code,srno,PARTICULAR_ID,AMT,nid,actyp) values ('" + client + "','1',1," +
                     std::to_string(id) + ",100,2,0)");
    }
    long count(const std::string& sql) { return static_cast<long>(db().query(sql).first("n").as_int()); }

    std::string other_suffix_;
};

// A particular used only by another client in another year is in use: refused,
// and the list names that client and F.Y.
TEST_P(LedgerMaster, AParticularUsedByAnotherClientInAnotherYearCannotBeDeleted) {
    const long drawings = capital_particular("DRAWINGS");
    capital_particular("SALARY");
    use_in_capital(other_suffix_, "C002", drawings);
    frmcapledmas s(component_, ui_);
    s.Form_Load();
    const int row = s.row_named("DRAWINGS");
    ASSERT_GE(row, 1);
    EXPECT_TRUE(s.in_use(row));
    EXPECT_FALSE(s.in_use(s.row_named("SALARY")));
    s.vsf_RowColChange(row);
    ui_.answer_yes();
    s.cmdDelete_Click();
    ui_.expect_message("Particulars already in use. You can not delete this Particulars.");
    ASSERT_EQ(ui_.questions().size(), 1u);
    EXPECT_EQ(ui_.questions()[0], "Do you want to view the list of Client/F.Y. using the Particulars?");
    const auto& list = ui_.shown().back();
    EXPECT_EQ(list.title, "List of Clients/F.Y. using Particulars \"DRAWINGS\"");
    EXPECT_EQ(list.text, "C002  BETA TRADERS  F.Y. 2023-24");
    ui_.expect_message(list.text);
    EXPECT_EQ(count("select count(*) as n from Mast_Capital where Particular_Id=" + std::to_string(drawings)),
              1);
    // The one nobody uses goes after its question.
    s.vsf_RowColChange(s.row_named("SALARY"));
    ui_.answer_yes();
    s.cmdDelete_Click();
    EXPECT_EQ(ui_.shown().back().text, "Do you want to delele the Particulars [SALARY] ?");
    EXPECT_EQ(ui_.shown().back().title, "Delete Confirmation");
    EXPECT_EQ(s.row_named("SALARY"), -1);
    EXPECT_EQ(ui_.messages().size(), 2u);
}

// Trial-balance particulars are in use through TAB_, JRNL_ or TRADE_ of any year.
TEST_P(LedgerMaster, TrialBalanceParticularsAreSearchedInEveryYearsTables) {
    const long cash = base_->GetMax_MastPartId("CASH");
    const long bank = base_->GetMax_MastPartId("BANK");
    base_->GetMax_MastPartId("SUSPENSE");
    db().execute("insert into JRNL_" + other_suffix_ + " (srno,code_no,PartId,nid,Amt) values (1,'C002'," +
                 std::to_string(cash) + ",1,10)");
    db().execute("insert into TRADE_" + suffix() +
                 " (srno,code_no,allid,PartId,nid,Amt) values (1,'C001',1," + std::to_string(bank) +
                 ",1,10)");
    frmcapledmas s(component_, ui_);
    s.Form_Load();
    s.cboMaster.select_id("2");
    s.cboMaster_Click();
    EXPECT_TRUE(s.in_use(s.row_named("CASH")));
    EXPECT_TRUE(s.in_use(s.row_named("BANK")));
    EXPECT_FALSE(s.in_use(s.row_named("SUSPENSE")));
    s.vsf_Tick(s.row_named("CASH"));
    s.vsf_Tick(s.row_named("SUSPENSE"));
    ui_.answer_no();
    s.cmdDelete_Click();
    ui_.expect_message("Particulars already in use. You can not delete these Particulars.");
    ui_.answer_yes();
    s.cmdDelUnused_Click();
    EXPECT_EQ(ui_.questions().back(), "Do you really want to Delete 1 Masters Not in Use ?");
    EXPECT_EQ(s.row_named("SUSPENSE"), -1);
    EXPECT_EQ(s.vsf.data_rows(), 2);
}

// Replace moves every use in every year's tables to the chosen particular and
// deletes the others; replacing a particular by itself changes nothing.
TEST_P(LedgerMaster, ReplaceMovesEveryUseAndDeletesTheOldParticulars) {
    const long a = capital_particular("DRAWING"), b = capital_particular("DRAWINGS A/C"),
               keep = capital_particular("DRAWINGS");
    use_in_capital(other_suffix_, "C002", a);
    use_in_capital(suffix(), "C001", b);
    use_in_capital(suffix(), "C001", keep);
    frmcapledmas s(component_, ui_);
    s.Form_Load();
    // Nothing ticked, then nothing to replace with.
    s.cmdlink_Click();
    ui_.expect_message("Please Select a Paritculars.");
    s.vsf_Tick(s.row_named("DRAWINGS"));
    s.cboLink.ListIndex = -1;
    s.cmdlink_Click();
    ui_.expect_message("Please select a Partiuclar.");
    // By itself: no question, no change.
    s.cboLink.select_id(std::to_string(keep));
    s.cmdlink_Click();
    EXPECT_EQ(count("select count(*) as n from Mast_Capital"), 3);
    s.vsf_Tick(s.row_named("DRAWINGS"));
    s.vsf_Tick(s.row_named("DRAWING"));
    s.vsf_Tick(s.row_named("DRAWINGS A/C"));
    s.cboLink.select_id(std::to_string(keep));
    ui_.answer_yes().answer_yes();
    s.cmdlink_Click();
    const auto q = ui_.questions();
    ASSERT_EQ(q.size(), 2u);
    EXPECT_EQ(q[0],
              "Particulars selected below will be deleted & will be replaced with 'DRAWINGS'\nDRAWING\n"
              "DRAWINGS A/C\n\nDo you really want to Replace ?");
    EXPECT_EQ(q[1], "Click 'Yes' only if you are sure about use of this facility.\nConfirm ?");
    for (const auto& t : {other_suffix_, suffix()})
        EXPECT_EQ(
            count("select count(*) as n from CAPITAL_" + t + " where PARTICULAR_ID<>" + std::to_string(keep)),
            0)
            << t;
    EXPECT_EQ(count("select count(*) as n from CAPITAL_" + suffix()), 2);
    EXPECT_EQ(count("select count(*) as n from Mast_Capital"), 1);
    EXPECT_EQ(ui_.messages().size(), 2u);
}

TEST_P(LedgerMaster, ReplaceReachesTheJournalAndTradingOfEveryYear) {
    const long old = base_->GetMax_MastPartId("PETTY CASH"), keep = base_->GetMax_MastPartId("CASH");
    for (const auto& t : {other_suffix_, suffix()}) {
        db().execute("insert into TAB_" + t + " values (1,'C002',9," + std::to_string(old) + ",1,5)");
        db().execute("insert into JRNL_" + t + " (srno,code_no,PartId,nid,Amt) values (1,'C002'," +
                     std::to_string(old) + ",1,5)");
        db().execute("insert into TRADE_" + t + " (srno,code_no,allid,PartId,nid,Amt) values (1,'C002',9," +
                     std::to_string(old) + ",1,5)");
    }
    store::ledger_replace(db(), store::Ledger::trial_balance, keep, {old, keep});
    for (const auto& t : {other_suffix_, suffix()})
        for (const char* stem : {"TAB_", "JRNL_", "TRADE_"})
            EXPECT_EQ(count(std::string("select count(*) as n from ") + stem + t +
                            " where PartId=" + std::to_string(keep)),
                      1)
                << stem << t;
    EXPECT_EQ(store::ledger_particulars(db(), store::Ledger::trial_balance).size(), 1u);
}

TEST_P(LedgerMaster, AddAndRenameRefuseDuplicatesAndAskFirst) {
    capital_particular("DRAWINGS");
    frmcapledmas s(component_, ui_);
    s.Form_Load();
    s.cmdAdd_Click();
    EXPECT_FALSE(s.cmdUpdate_Click());
    ui_.expect_message("Please Specify 'Particulars'.");
    s.txtName.set_text("drawings");
    ui_.answer_no();
    EXPECT_FALSE(s.cmdUpdate_Click());
    EXPECT_EQ(ui_.questions().back(),
              "Duplicate Particulars!!\nDo you want to use the existing Particulars?");
    s.txtName.set_text("INTEREST");
    ASSERT_TRUE(s.cmdUpdate_Click());
    s.vsf_RowColChange(s.row_named("INTEREST"));
    s.cmdModify_Click();
    s.txtName.set_text("DRAWINGS");
    EXPECT_FALSE(s.cmdUpdate_Click());
    ui_.expect_message("Can't create Duplicate Particulars!!");
    s.txtName.set_text("INTEREST ON CAPITAL");
    ui_.answer_yes();
    ASSERT_TRUE(s.cmdUpdate_Click());
    EXPECT_EQ(
        ui_.questions().back(),
        "It will delete the existing particulars 'INTEREST' and will replace with 'INTEREST ON CAPITAL'.\n"
        "Confirm ?");
    EXPECT_GE(s.row_named("INTEREST ON CAPITAL"), 1);
    EXPECT_EQ(ui_.messages().size(), 2u);
}

BRENLOW_INSTANTIATE_BACKENDS(LedgerMaster);

}  // namespace
}  // namespace brenlow::capital::test
