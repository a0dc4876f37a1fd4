#include "masters/asset_group_master.h"

#include <gtest/gtest.h>

#include "masters/block_master.h"
#include "masters_fixture.h"

namespace brenlow::masters::test {
namespace {

class AssetGroupMaster : public MastersTest {
protected:
    // Fills an entry with the three classifications; "" leaves one unchosen.
    void fill(frmNewFAGM& s, const std::string& name, const std::string& it, long fa, const std::string& cl) {
        s.txtfields.set_text(name);
        if (!it.empty()) {
            EXPECT_TRUE(s.choose_it_block(it)) << it;
        }
        if (fa != 0) {
            EXPECT_TRUE(s.choose_books_block(fa)) << fa;
        }
        if (!cl.empty()) {
            EXPECT_TRUE(s.choose_classification(cl)) << cl;
        }
    }
    void add(frmNewFAGM& s, const std::string& name, const std::string& it = "-1", long fa = -1,
             const std::string& cl = "-1") {
        s.cmdAdd_Click();
        fill(s, name, it, fa, cl);
        s.cmdUpdate_Click();
    }
    store::Recordset group(const std::string& name) {
        return rows("select * from NewFAGM where Yr=2025 and Part='" + name + "'");
    }
    void add_register_row(const std::string& table, long group_serial) {
        db().execute("insert into " + table + " (Code_No, SrNoFATR, IdFAGM, Part) values ('C009',1," +
                     std::to_string(group_serial) + ",'LATHE')");
    }
};

TEST_P(AssetGroupMaster, AGroupIsSavedWithItsBlockRatesAndClassificationUnderTheNextSerial) {
    db().execute("INSERT INTO NewFAGM Values (41,2019,'OLD','-1',0,0,-1,0,'-1',0,0,0)");
    db().execute("Insert into BlockGroup Values (5,'PLANT',1,0)");
    frmNewFAGM s(component(), ui_);
    s.cmdAdd_Click();
    fill(s, "LATHES", "3-15", 5, "4.1");
    EXPECT_EQ(s.lblBlockIT.Caption, "MACHINERY AND PLANT");
    EXPECT_EQ(s.txtRateIT.text(), "15.00");
    EXPECT_EQ(s.lblBlockFA.Caption, "PLANT");
    EXPECT_EQ(s.txtLifeYrs.text(), "15.00");
    EXPECT_EQ(s.txtRateSLM.text(), "6.33");
    EXPECT_EQ(s.txtRateWDV.text(), "18.10");
    s.txtRateFA.set_text("13.91");
    s.cmdUpdate_Click();
    ui_.expect_nothing_more();
    const auto g = group("LATHES");
    ASSERT_EQ(g.size(), 1u);
    // Serials run over all years.
    EXPECT_EQ(g.first("SrNoFAGM").as_int(), 42);
    EXPECT_EQ(g.first("BlockIdIT").as_text(), "3-15");
    EXPECT_DOUBLE_EQ(g.first("RateIT").as_double(), 15);
    EXPECT_DOUBLE_EQ(g.first("AddlRateIT").as_double(), 20);
    EXPECT_EQ(g.first("BlockFA").as_int(), 5);
    EXPECT_DOUBLE_EQ(g.first("RateFA").as_double(), 13.91);
    EXPECT_EQ(g.first("BlockIdCL").as_text(), "4.1");
    EXPECT_DOUBLE_EQ(g.first("LifeYrs").as_double(), 15);
    EXPECT_DOUBLE_EQ(g.first("RateWDV").as_double(), 18.10);
    ASSERT_EQ(s.vsM.data_rows(), 1);
    const int row = s.vsM.fixed_rows();
    EXPECT_EQ(s.vsM.display_text(row, frmNewFAGM::kColBlockIT), "MACHINERY AND PLANT");
    EXPECT_EQ(s.vsM.display_text(row, frmNewFAGM::kColBlockFA), "PLANT");
    EXPECT_EQ(s.vsM.display_text(row, frmNewFAGM::kColAddlRateIT), "20.00");
}

TEST_P(AssetGroupMaster, SwitchingTheIncomeTaxBlockAwayFromMachineryAndPlantResetsTheAdditionalRate) {
    frmNewFAGM s(component(), ui_);
    s.cmdAdd_Click();
    fill(s, "SHEDS", "3-15", -1, "-1");
    EXPECT_EQ(s.txtAddlRateIT.text(), "20.00");
    EXPECT_FALSE(s.locked(s.txtAddlRateIT));
    ASSERT_TRUE(s.choose_it_block("1-10"));
    EXPECT_EQ(s.lblBlockIT.Caption, "BUILDING");
    EXPECT_EQ(s.txtRateIT.text(), "10.00");
    EXPECT_EQ(s.txtAddlRateIT.text(), "N/A");
    EXPECT_TRUE(s.locked(s.txtAddlRateIT));
    s.cmdUpdate_Click();
    ui_.expect_nothing_more();
    EXPECT_DOUBLE_EQ(group("SHEDS").first("AddlRateIT").as_double(), 0);
    const int row = s.vsM.fixed_rows();
    EXPECT_EQ(s.vsM.display_text(row, frmNewFAGM::kColAddlRateIT), "N/A");
    EXPECT_EQ(s.vsM.display_text(row, frmNewFAGM::kColRateFA), "N/A");
}

TEST_P(AssetGroupMaster, ASubEntryOfTheIncomeTaxChooserStandsForItsBlock) {
    frmNewFAGM s(component(), ui_);
    s.cmdAdd_Click();
    const int block_row = [&] {
        for (int r = s.vsIT.fixed_rows(); r < s.vsIT.rows(); ++r)
            if (s.vsIT.text_matrix(r, frmNewFAGM::kColId) == "3-15") return r;
        return -1;
    }();
    ASSERT_GT(block_row, 0);
    // Its sub-entries follow it, indented and without a code of their own.
    EXPECT_EQ(s.vsIT.text_matrix(block_row + 1, frmNewFAGM::kColId), "3-15.1");
    EXPECT_EQ(s.vsIT.text_matrix(block_row + 1, frmNewFAGM::kColCode), "");
    EXPECT_EQ(s.vsIT.text_matrix(block_row + 1, frmNewFAGM::kColNature).substr(0, 4), "    ");
    s.vsIT_Click(block_row + 1);
    EXPECT_EQ(s.BlockIdIT(), "3-15");
    EXPECT_EQ(s.txtAddlRateIT.text(), "20.00");
    EXPECT_EQ(s.vsIT.text_matrix(s.vsIT.fixed_rows(), frmNewFAGM::kColNature),
              "(Does Not Consider for Calculation as per Income-Tax Act)");
}

TEST_P(AssetGroupMaster, AllThreeClassificationsMayBeNotConsideredAtOnce) {
    frmNewFAGM s(component(), ui_);
    s.cmdAdd_Click();
    fill(s, "GOODWILL", "-1", -1, "-1");
    EXPECT_EQ(s.lblBlockIT.Caption, "(Does Not Consider for Calculation as per Income-Tax Act)");
    EXPECT_EQ(s.lblBlockFA.Caption, "(Does Not Consider for Calculation as per Books)");
    EXPECT_EQ(s.lblBlockCL.Caption, "(Does Not Consider for Calculation as per Companies Act)");
    for (const vTXT* f :
         {&s.txtRateIT, &s.txtAddlRateIT, &s.txtRateFA, &s.txtLifeYrs, &s.txtRateSLM, &s.txtRateWDV})
        EXPECT_EQ(f->text(), "N/A");
    s.cmdUpdate_Click();
    ui_.expect_nothing_more();
    const auto g = group("GOODWILL");
    ASSERT_EQ(g.size(), 1u);
    EXPECT_EQ(g.first("BlockIdIT").as_text(), "-1");
    EXPECT_EQ(g.first("BlockFA").as_int(), -1);
    EXPECT_EQ(g.first("BlockIdCL").as_text(), "-1");
}

TEST_P(AssetGroupMaster, AnEmptyNameOrAnUnchosenClassificationIsRefusedAndNothingIsWritten) {
    frmNewFAGM s(component(), ui_);
    s.cmdAdd_Click();
    EXPECT_EQ(s.lblBlockIT.Caption, "(Select)");
    fill(s, "", "-1", -1, "-1");
    s.cmdUpdate_Click();
    ui_.expect_message("Please specify 'Asset Group' !");
    s.cmdAdd_Click();
    fill(s, "TOOLS", "", -1, "-1");
    s.cmdUpdate_Click();
    ui_.expect_message("Please specify 'Block as per Income-Tax Act' !");
    s.cmdAdd_Click();
    fill(s, "TOOLS", "-1", 0, "-1");
    s.cmdUpdate_Click();
    ui_.expect_message("Please specify 'Block as per Books' !");
    s.cmdAdd_Click();
    fill(s, "TOOLS", "-1", -1, "");
    s.cmdUpdate_Click();
    ui_.expect_message("Please specify 'Classification as per Companies Act' !");
    ui_.expect_nothing_more();
    EXPECT_EQ(count("NewFAGM"), 0);
}

TEST_P(AssetGroupMaster, ADuplicateNameAsksToContinueAndYesSavesTheSecondGroupDeliberately) {
    frmNewFAGM s(component(), ui_);
    add(s, "VEHICLES");
    ui_.answer_no();
    add(s, "VEHICLES");
    EXPECT_EQ(count("NewFAGM where Part='VEHICLES'"), 1);
    EXPECT_TRUE(s.entering());
    ui_.answer_yes();
    s.cmdUpdate_Click();
    EXPECT_EQ(ui_.questions(), (std::vector<std::string>{"Duplicate 'Asset Group' Name !\n\nContinue ?",
                                                         "Duplicate 'Asset Group' Name !\n\nContinue ?"}));
    EXPECT_EQ(ui_.shown().back().default_button, "No");
    EXPECT_EQ(count("NewFAGM where Part='VEHICLES'"), 2);
    EXPECT_EQ(s.vsM.data_rows(), 2);
    // A group of another year does not make the name a duplicate.
    db().execute("INSERT INTO NewFAGM Values (90,2024,'FURNITURE','-1',0,0,-1,0,'-1',0,0,0)");
    add(s, "FURNITURE");
    EXPECT_TRUE(ui_.messages().empty());
    EXPECT_EQ(ui_.questions().size(), 2u);
}

TEST_P(AssetGroupMaster, ModifyingRewritesTheGroupUnderItsSerialAndItsOwnNameIsNoDuplicate) {
    frmNewFAGM s(component(), ui_);
    add(s, "PLANT", "3-15", -1, "4.1");
    const long serial = group("PLANT").first("SrNoFAGM").as_int();
    s.vsM_RowColChange(s.row_of(serial));
    s.cmdModify_Click();
    EXPECT_EQ(s.BlockIdIT(), "3-15");
    EXPECT_EQ(s.txtAddlRateIT.text(), "20.00");
    s.txtAddlRateIT.set_text("35");
    ASSERT_TRUE(s.choose_classification("-1"));
    s.cmdUpdate_Click();
    ui_.expect_nothing_more();
    const auto g = rows("select * from NewFAGM where SrNoFAGM=" + std::to_string(serial));
    ASSERT_EQ(g.size(), 1u);
    EXPECT_EQ(g.first("Part").as_text(), "PLANT");
    EXPECT_DOUBLE_EQ(g.first("AddlRateIT").as_double(), 35);
    EXPECT_EQ(g.first("BlockIdCL").as_text(), "-1");
    EXPECT_DOUBLE_EQ(g.first("LifeYrs").as_double(), 0);
    EXPECT_EQ(count("NewFAGM"), 1);
}

TEST_P(AssetGroupMaster, AGroupUsedOnlyByAnAdditionCannotBeDeleted) {
    frmNewFAGM s(component(), ui_);
    add(s, "COMPUTERS");
    const long serial = group("COMPUTERS").first("SrNoFAGM").as_int();
    add_register_row("NewFATRa2025", serial);
    ui_.answer_yes();
    s.cmdDelete_Click();
    ui_.expect_message("Can't Delete ! 'Asset Group' already in use !");
    EXPECT_EQ(count("NewFAGM"), 1);
}

TEST_P(AssetGroupMaster, AGroupOfAnOpeningAssetCannotBeDeleted) {
    frmNewFAGM s(component(), ui_);
    add(s, "COMPUTERS");
    add_register_row("NewFATRo2025", group("COMPUTERS").first("SrNoFAGM").as_int());
    ui_.answer_yes();
    s.cmdDelete_Click();
    ui_.expect_message("Can't Delete ! 'Asset Group' already in use !");
    EXPECT_EQ(count("NewFAGM"), 1);
}

TEST_P(AssetGroupMaster, DeletingRemovesExactlyTheGroupAndItsHandEnteredDepreciationOfTheYear) {
    frmNewFAGM s(component(), ui_);
    add(s, "TOOLS");
    add(s, "DIES");
    const long tools = group("TOOLS").first("SrNoFAGM").as_int();
    db().execute("INSERT INTO NewFAMD Values ('C001',2025," + std::to_string(tools) + ",500)");
    db().execute("INSERT INTO NewFAMD Values ('C001',2024," + std::to_string(tools) + ",400)");
    s.vsM_RowColChange(s.row_of(tools));
    ui_.answer_no().answer_yes();
    s.cmdDelete_Click();
    EXPECT_EQ(count("NewFAGM"), 2);
    s.cmdDelete_Click();
    EXPECT_EQ(ui_.questions(), (std::vector<std::string>{"Do you want to Delete Selected Item?",
                                                         "Do you want to Delete Selected Item?"}));
    EXPECT_TRUE(ui_.messages().empty());
    EXPECT_EQ(count("NewFAGM where Part='TOOLS'"), 0);
    EXPECT_EQ(count("NewFAGM where Part='DIES'"), 1);
    EXPECT_EQ(count("NewFAMD where Yr=2025"), 0);
    EXPECT_EQ(count("NewFAMD where Yr=2024"), 1);
    EXPECT_EQ(s.vsM.data_rows(), 1);
}

TEST_P(AssetGroupMaster, TheBlockMasterEntryOpensTheCompanyBlockMasterAndTheChooserReloads) {
    int opened_kind = 0;
    frmNewFAGM s(component(), ui_, [&](int kind) {
        opened_kind = kind;
        frmblockM blocks(component(), ui_, kind);
        blocks.cmdaddded_Click();
        blocks.txtfields.set_text("MOULDS");
        blocks.cmdupdateded_Click();
        blocks.cmdback_Click();
    });
    s.cmdAdd_Click();
    s.cmdBlockFA_Click();
    EXPECT_TRUE(s.vsFA_Visible);
    const int last = s.vsFA.rows() - 1;
    EXPECT_EQ(s.vsFA.text_matrix(last, frmNewFAGM::kColNature), "(Add/Edit Block Master)");
    s.vsFA_Click(last);
    EXPECT_EQ(opened_kind, 1);
    const long moulds = rows("select GrpId from BlockGroup where GrpDesc='MOULDS'").first("GrpId").as_int();
    EXPECT_TRUE(s.choose_books_block(moulds));
    EXPECT_EQ(s.lblBlockFA.Caption, "MOULDS");
    EXPECT_EQ(s.txtRateFA.text(), "0.00");
    EXPECT_FALSE(s.vsFA_Visible);
}

TEST_P(AssetGroupMaster, AChangedMasterReloadsTheChoosersWhenTheScreenComesBack) {
    frmNewFAGM s(component(), ui_);
    db().execute("Insert into BlockGroup Values (3,'DIES',1,0)");
    s.Form_Activate();
    s.cmdAdd_Click();
    EXPECT_FALSE(s.choose_books_block(3));
    component().masters_changed = true;
    s.Form_Activate();
    EXPECT_FALSE(component().masters_changed);
    EXPECT_TRUE(s.choose_books_block(3));
}

TEST_P(AssetGroupMaster, CancelAndClosingDuringAnEntryAskFirst) {
    frmNewFAGM s(component(), ui_);
    s.cmdback_Click();
    EXPECT_EQ(ui_.close_requests(), 1);
    s.cmdAdd_Click();
    s.txtfields.set_text("MOULDS");
    ui_.answer_no().answer_no().answer_yes();
    s.cmdCancel_Click();
    EXPECT_TRUE(s.entering());
    s.cmdback_Click();
    EXPECT_EQ(ui_.close_requests(), 1);
    s.cmdCancel_Click();
    EXPECT_FALSE(s.entering());
    EXPECT_EQ(ui_.questions().size(), 3u);
    EXPECT_EQ(ui_.questions()[0], "Do you want to Cancel the Entry?");
    EXPECT_EQ(count("NewFAGM"), 0);
}

BRENLOW_INSTANTIATE_BACKENDS(AssetGroupMaster);

}  // namespace
}  // namespace brenlow::masters::test
