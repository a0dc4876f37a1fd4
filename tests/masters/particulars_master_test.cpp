#include "masters/particulars_master.h"

#include <gtest/gtest.h>

#include "masters/block_master.h"
#include "masters_fixture.h"

namespace brenlow::masters::test {
namespace {

class ParticularsMaster : public MastersTest {
protected:
    void SetUp() override {
        MastersTest::SetUp();
        if (IsSkipped()) return;
        db().execute("Insert into BlockGroup Values (1,'PLANT',1,0)");
        db().execute("Insert into BlockGroup Values (2,'FURNITURE',1,0)");
        db().execute("Insert into BlockGroup Values (3,'PLANT @ 15',2,3)");
    }
    void fill(frmfamaster& s, const std::string& name, const std::string& method, const std::string& books,
              const std::string& it) {
        s.txtfields[frmfamaster::kName].set_text(name);
        s.txtfields[frmfamaster::kRateBooks].set_text(books);
        s.txtfields[frmfamaster::kRateIT].set_text(it);
        if (!method.empty()) s.Combo1.select_id(method);
    }
    void add(frmfamaster& s, const std::string& name) {
        s.cmdaddded_Click();
        fill(s, name, "1", "13.91", "15");
        s.Combo2.select_id("1");
        s.Combo3.select_id("3");
        s.cmdupdateded_Click();
    }
};

TEST_P(ParticularsMaster, TheChoosersOfferTheMethodsAndTheBlocksOfEachKindByName) {
    frmfamaster s(component(), ui_);
    EXPECT_EQ(s.Combo1.List.compose(),
              "#4;NO DEPRECIATION|#3;OTHER METHOD|#2;STRAIGHT LINE METHOD|#1;WRITTEN DOWN VALUE|#0; ");
    EXPECT_EQ(s.Combo2.List.compose(), "#0; |#2;FURNITURE|#1;PLANT");
    EXPECT_EQ(s.Combo3.List.compose(), "#0; |#3;PLANT @ 15");
    s.cmdaddded_Click();
    EXPECT_EQ(s.Combo2.ListIndex, -1);  // shown as "(Select)"
    EXPECT_TRUE(s.Combo2.Enabled);
}

TEST_P(ParticularsMaster, AParticularIsSavedUnderTheNextIdOfTheYear) {
    db().execute("Insert into FAPart_Master Values (2024,9,'OLD','1',10,10,1,3)");
    frmfamaster s(component(), ui_);
    add(s, "MACHINERY");
    ui_.expect_nothing_more();
    const auto p = rows("select * from FAPart_Master where Yr=2025");
    ASSERT_EQ(p.size(), 1u);
    EXPECT_EQ(p.first("PartId").as_int(), 1);
    EXPECT_EQ(p.first("PartDesc").as_text(), "MACHINERY");
    EXPECT_EQ(p.first("PartMeth").as_text(), "1");
    EXPECT_DOUBLE_EQ(p.first("RtCl").as_double(), 13.91);
    EXPECT_DOUBLE_EQ(p.first("RtIT").as_double(), 15);
    EXPECT_EQ(p.first("ClBlock").as_int(), 1);
    EXPECT_EQ(p.first("ITBlock").as_int(), 3);
    const int row = s.vsf.fixed_rows();
    EXPECT_EQ(s.vsf.display_text(row, frmfamaster::kColMethod), "WRITTEN DOWN VALUE");
    EXPECT_EQ(s.vsf.display_text(row, frmfamaster::kColRateBooks), "13.91");
    EXPECT_EQ(s.vsf.display_text(row, frmfamaster::kColRateIT), "15.00");
    EXPECT_EQ(s.vsf.display_text(row, frmfamaster::kColBooksBlock), "PLANT");
}

TEST_P(ParticularsMaster, AnEmptyNameIsRefusedAndTwoParticularsMayShareAName) {
    frmfamaster s(component(), ui_);
    s.cmdaddded_Click();
    s.cmdupdateded_Click();
    ui_.expect_message("Please specify Name of Asset.");
    EXPECT_EQ(count("FAPart_Master"), 0);
    add(s, "VEHICLES");
    add(s, "VEHICLES");
    ui_.expect_nothing_more();
    EXPECT_EQ(count("FAPart_Master where PartDesc='VEHICLES'"), 2);
    EXPECT_EQ(rows("select max(PartId) as m from FAPart_Master").first("m").as_int(), 2);
}

TEST_P(ParticularsMaster, AModifiedParticularKeepsItsPartId) {
    frmfamaster s(component(), ui_);
    add(s, "LATHE");
    add(s, "DRILL");
    s.vsf_RowColChange(s.row_of(1));
    s.cmdmodifyded_Click();
    EXPECT_EQ(s.txtfields[frmfamaster::kName].text(), "LATHE");
    EXPECT_EQ(s.Combo1.Text(), "WRITTEN DOWN VALUE");
    EXPECT_EQ(s.txtfields[frmfamaster::kRateBooks].text(), "13.91");
    fill(s, "LATHES", "2", "6.33", "15");
    s.Combo2.select_id("2");
    s.cmdupdateded_Click();
    ui_.expect_nothing_more();
    const auto p = rows("select * from FAPart_Master where Yr=2025 and PartId=1");
    ASSERT_EQ(p.size(), 1u);
    EXPECT_EQ(p.first("PartDesc").as_text(), "LATHES");
    EXPECT_EQ(p.first("PartMeth").as_text(), "2");
    EXPECT_EQ(p.first("ClBlock").as_int(), 2);
    EXPECT_EQ(count("FAPart_Master"), 2);
    EXPECT_EQ(s.part_id(s.vsf_Row()), 1);
}

TEST_P(ParticularsMaster, DeletingAsksAndRemovesTheParticularEvenWhenSchedulesReferToIt) {
    frmfamaster s(component(), ui_);
    add(s, "LATHE");
    // The year's fixed-asset schedule has a line that refers to the particular.
    const std::string fixed = "FIXED_" + base_->GetTbName(base_->CYrInd());
    db().execute("insert into " + fixed + " (compit_id,srno,code_no,ref_id) values (1,1,'C001'," +
                 std::to_string(s.part_id(s.vsf_Row())) + ")");
    ui_.answer_no().answer_yes();
    s.cmddeleteded_Click();
    EXPECT_EQ(count("FAPart_Master"), 1);
    s.cmddeleteded_Click();
    EXPECT_EQ(ui_.questions(), (std::vector<std::string>{"Do you want to Delete Selected Item?",
                                                         "Do you want to Delete Selected Item?"}));
    EXPECT_EQ(count("FAPart_Master"), 0);
    EXPECT_EQ(s.vsf.data_rows(), 0);
    EXPECT_EQ(count(fixed), 1);  // the schedule's line is left as it was
}

TEST_P(ParticularsMaster, AParticularKeepsTheCodeOfABlockDeletedLater) {
    db().execute("Insert into FAPart_Master Values (2025,1,'LATHE','1',10,10,2,3)");
    // The books block FURNITURE goes after the particular was made.
    db().execute("Delete from BlockGroup where GrpId=2");
    frmfamaster s(component(), ui_);
    EXPECT_EQ(s.Combo2.List.compose(), "#0; |#1;PLANT");
    EXPECT_EQ(s.Combo2.ListIndex, -1);  // shown as "(Select)"
    EXPECT_EQ(rows("select ClBlock from FAPart_Master").first("ClBlock").as_int(), 2);
}

TEST_P(ParticularsMaster, TheBlockButtonOpensTheBlockMasterAndTheChoosersReload) {
    frmfamaster s(component(), ui_, [&](int kind) {
        frmblockM blocks(component(), ui_, kind);
        blocks.cmdaddded_Click();
        blocks.txtfields.set_text("SHIPS");
        blocks.Combo1.select_id("5");
        blocks.cmdupdateded_Click();
    });
    s.cmdblock_Click(2);
    EXPECT_EQ(s.Combo3.List.compose(), "#0; |#3;PLANT @ 15|#4;SHIPS");
}

TEST_P(ParticularsMaster, ClosingDuringAnEntryAsksAndNoKeepsTheScreenOpen) {
    frmfamaster s(component(), ui_);
    s.cmdaddded_Click();
    ui_.answer_no().answer_yes();
    s.cmdback_Click();
    EXPECT_EQ(ui_.close_requests(), 0);
    EXPECT_TRUE(s.entering());
    s.cmdback_Click();
    EXPECT_EQ(ui_.close_requests(), 1);
    EXPECT_EQ(ui_.questions()[0], "Do you want to Cancel the Entry?");
}

BRENLOW_INSTANTIATE_BACKENDS(ParticularsMaster);

}  // namespace
}  // namespace brenlow::masters::test
