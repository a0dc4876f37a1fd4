#include "masters/block_master.h"

#include <gtest/gtest.h>

#include "masters_fixture.h"

namespace brenlow::masters::test {
namespace {

class BlockMaster : public MastersTest {
protected:
    // Adds a block through the screen, as the person would.
    void add(frmblockM& screen, const std::string& name, const std::string& nature = "") {
        screen.cmdaddded_Click();
        screen.txtfields.set_text(name);
        if (!nature.empty()) screen.Combo1.select_id(nature);
        screen.cmdupdateded_Click();
    }
    long id_of(const std::string& name, int kind) {
        return static_cast<long>(rows("select GrpId from BlockGroup where GrpDesc='" + name +
                                      "' and GrpType=" + std::to_string(kind))
                                     .first("GrpId")
                                     .as_int());
    }
};

TEST_P(BlockMaster, TheTitleNamesTheKindAndOnlyIncomeTaxBlocksOfferUnderBlock) {
    frmblockM company(component(), ui_, 1);
    frmblockM income_tax(component(), ui_, 2);
    EXPECT_EQ(company.Caption(), "Company Block Master");
    EXPECT_EQ(income_tax.Caption(), "Income Tax Block Master");
    EXPECT_FALSE(company.Combo1.Visible);
    EXPECT_TRUE(income_tax.Combo1.Visible);
    EXPECT_EQ(income_tax.Combo1.List.text_of("3"), "PLANT AND MACHINARY");
    EXPECT_EQ(
        income_tax.Combo1.List.compose(),
        "#0; |#1;BUILDINGS|#2;FURNITURE AND FITTINGS|#3;PLANT AND MACHINARY|#4;INTANGIBLE ASSETS|#5;SHIPS|"
        "#100;LAND");
    // The reserved row is never listed.
    EXPECT_EQ(company.vsf.data_rows(), 0);
}

TEST_P(BlockMaster, ANewBlockTakesTheLargestIdPlusOneIsListedAndMarksTheMastersChanged) {
    db().execute("Insert into BlockGroup Values (7,'VEHICLES',2,3)");
    frmblockM screen(component(), ui_, 1);
    EXPECT_FALSE(component().masters_changed);
    add(screen, "PLANT");
    ui_.expect_nothing_more();
    EXPECT_EQ(id_of("PLANT", 1), 8);
    EXPECT_EQ(rows("select * from BlockGroup where GrpId=8").first("BlockNo").as_int(), 0);
    EXPECT_TRUE(component().masters_changed);
    ASSERT_EQ(screen.vsf.data_rows(), 1);
    EXPECT_EQ(screen.vsf.text_matrix(screen.vsf.fixed_rows(), frmblockM::kColName), "PLANT");
    EXPECT_FALSE(screen.entering());
}

TEST_P(BlockMaster, AnEmptyNameIsRefusedAndNothingIsWritten) {
    frmblockM screen(component(), ui_, 2);
    add(screen, "   ", "1");
    ui_.expect_message("Please specify Name of Block.");
    ui_.expect_nothing_more();
    EXPECT_EQ(count("BlockGroup where GrpId>0"), 0);
    EXPECT_TRUE(screen.entering());
    EXPECT_FALSE(component().masters_changed);
}

TEST_P(BlockMaster, AnIncomeTaxBlockNeedsItsNatureAndABooksBlockNeverAsksForOne) {
    frmblockM income_tax(component(), ui_, 2);
    add(income_tax, "COMPUTERS");
    ui_.expect_message("Please specify Under Block.");
    // The blank nature counts as none.
    income_tax.Combo1.select_id("0");
    income_tax.cmdupdateded_Click();
    ui_.expect_message("Please specify Under Block.");
    income_tax.Combo1.select_id("3");
    income_tax.cmdupdateded_Click();
    frmblockM company(component(), ui_, 1);
    add(company, "COMPUTERS");
    ui_.expect_nothing_more();
    EXPECT_EQ(rows("select BlockNo from BlockGroup where GrpType=2").first("BlockNo").as_int(), 3);
    EXPECT_EQ(count("BlockGroup where GrpDesc='COMPUTERS'"), 2);
}

TEST_P(BlockMaster, ADuplicateNameIsRefusedWithinAKindButTheSameNameMayExistOnceInEachKind) {
    frmblockM company(component(), ui_, 1);
    frmblockM income_tax(component(), ui_, 2);
    add(company, "BUILDING");
    add(income_tax, "BUILDING", "1");
    ui_.expect_nothing_more();
    add(company, "BUILDING");
    ui_.expect_message("Duplicate Block Name.");
    add(income_tax, "BUILDING", "1");
    ui_.expect_message("Duplicate Block Name.");
    ui_.expect_nothing_more();
    EXPECT_EQ(count("BlockGroup where GrpDesc='BUILDING' and GrpType=1"), 1);
    EXPECT_EQ(count("BlockGroup where GrpDesc='BUILDING' and GrpType=2"), 1);
}

TEST_P(BlockMaster, RenamingABlockToItsOwnNameIsAcceptedButNotToAnothersName) {
    frmblockM screen(component(), ui_, 2);
    add(screen, "PLANT", "3");
    add(screen, "FURNITURE", "2");
    const long plant = id_of("PLANT", 2);
    screen.vsf_RowColChange(screen.row_of(plant));
    screen.cmdmodifyded_Click();
    EXPECT_EQ(screen.txtfields.text(), "PLANT");
    EXPECT_EQ(screen.Combo1.Id(), "3");
    screen.Combo1.select_id("4");
    screen.cmdupdateded_Click();
    ui_.expect_nothing_more();
    EXPECT_EQ(rows("select * from BlockGroup where GrpId=" + std::to_string(plant)).first("BlockNo").as_int(),
              4);

    screen.vsf_RowColChange(screen.row_of(plant));
    screen.cmdmodifyded_Click();
    screen.txtfields.set_text("FURNITURE");
    screen.cmdupdateded_Click();
    ui_.expect_message("Duplicate Block Name.");
    EXPECT_EQ(
        rows("select * from BlockGroup where GrpId=" + std::to_string(plant)).first("GrpDesc").as_text(),
        "PLANT");
}

TEST_P(BlockMaster, ANameWithQuotesIsStoredAsTyped) {
    frmblockM screen(component(), ui_, 1);
    add(screen, "OWNER'S PLANT");
    add(screen, "OWNER'S PLANT");
    ui_.expect_message("Duplicate Block Name.");
    EXPECT_EQ(rows("select GrpDesc from BlockGroup where GrpId>0").first("GrpDesc").as_text(),
              "OWNER'S PLANT");
}

TEST_P(BlockMaster, ABlockInTheScheduleOfAnotherClientAndYearCannotBeDeleted) {
    // C002's schedule of 2023-24 uses the block; C001 of 2024-25 is open.
    base().create_client_year("C002", 2024, "OTHER", 1);
    base().select_client_year("C001", kYear);
    frmblockM screen(component(), ui_, 1);
    add(screen, "LEASED PLANT");
    const long id = id_of("LEASED PLANT", 1);
    db().execute(
        "insert into FIXED_2024 (compit_id, srno, code_no, ref_id, CGrpId, IGrpId) values (1,1,'C002',1," +
        std::to_string(id) + ",0)");
    ui_.answer_yes();
    screen.cmddeleteded_Click();
    ui_.expect_message("Block already in use.");
    ui_.expect_nothing_more();
    EXPECT_EQ(count("BlockGroup where GrpId=" + std::to_string(id)), 1);
    EXPECT_EQ(screen.vsf.data_rows(), 1);
}

TEST_P(BlockMaster, TheScheduleTestLooksAtTheColumnOfTheKind) {
    frmblockM screen(component(), ui_, 2);
    add(screen, "LEASED PLANT", "3");
    const long id = id_of("LEASED PLANT", 2);
    // A books block with the same number in the schedule is another block.
    db().execute(
        "insert into FIXED_2025 (compit_id, srno, code_no, ref_id, CGrpId, IGrpId) values (1,1,'C001',1," +
        std::to_string(id) + ",0)");
    ui_.answer_yes();
    screen.cmddeleteded_Click();
    EXPECT_TRUE(ui_.messages().empty());
    EXPECT_EQ(count("BlockGroup where GrpId=" + std::to_string(id)), 0);
    EXPECT_EQ(screen.vsf.data_rows(), 0);
}

TEST_P(BlockMaster, ABlockOfAParticularCannotBeDeleted) {
    frmblockM screen(component(), ui_, 2);
    add(screen, "COMPUTERS", "3");
    const long id = id_of("COMPUTERS", 2);
    db().execute("Insert into FAPart_Master Values (2019,1,'LAPTOP','1',40,40,0," + std::to_string(id) + ")");
    ui_.answer_yes();
    screen.cmddeleteded_Click();
    ui_.expect_message("Block already in use.");
    EXPECT_EQ(count("BlockGroup where GrpId=" + std::to_string(id)), 1);
}

TEST_P(BlockMaster, DeletingAsksWithNoAsTheDefaultAndNoKeepsTheBlock) {
    frmblockM screen(component(), ui_, 1);
    add(screen, "PLANT");
    ui_.answer_no();
    screen.cmddeleteded_Click();
    ASSERT_EQ(ui_.questions().size(), 1u);
    EXPECT_EQ(ui_.questions()[0], "Do you want to Delete this Block?");
    EXPECT_EQ(ui_.shown().back().default_button, "No");
    EXPECT_EQ(count("BlockGroup where GrpId>0"), 1);
}

TEST_P(BlockMaster, CancelAsksAndOnlyYesDiscardsTheEntry) {
    frmblockM screen(component(), ui_, 1);
    add(screen, "PLANT");
    screen.cmdaddded_Click();
    screen.txtfields.set_text("TOOLS");
    ui_.answer_no().answer_yes();
    screen.cmdcancelded_Click();
    EXPECT_TRUE(screen.entering());
    EXPECT_EQ(screen.txtfields.text(), "TOOLS");
    screen.cmdcancelded_Click();
    EXPECT_FALSE(screen.entering());
    EXPECT_EQ(screen.txtfields.text(), "PLANT");
    EXPECT_EQ(ui_.questions(), (std::vector<std::string>{"Do you want to Cancel the Entry?",
                                                         "Do you want to Cancel the Entry?"}));
    EXPECT_EQ(count("BlockGroup where GrpId>0"), 1);
}

TEST_P(BlockMaster, ADatabaseFailureIsLoggedShowsNothingAndEscapesNoHandler) {
    frmblockM screen(component(), ui_, 1);
    db().execute("Drop Table BlockGroup");
    screen.cmdaddded_Click();
    screen.txtfields.set_text("PLANT");
    EXPECT_NO_THROW(screen.cmdupdateded_Click());
    ui_.expect_nothing_more();
    EXPECT_EQ(component().log.logged(), 1);
    EXPECT_EQ(component().log.context(), "frmblockM\tcmdupdateded_Click");
    EXPECT_FALSE(component().masters_changed);
}

BRENLOW_INSTANTIATE_BACKENDS(BlockMaster);

}  // namespace
}  // namespace brenlow::masters::test
