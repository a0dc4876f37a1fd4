// Loading a client-year into the register screen: grids, headings, filter, the
// old-chart marker, and the deletions with their questions.

#include "register/register_fixture.h"

namespace brenlow::test {
namespace {

class RegisterLoading : public RegisterTest {};

TEST_P(RegisterLoading, EmptyRegisterShowsOnlyTheTwoHeadingRows) {
    auto s = open_screen(ui_);
    EXPECT_EQ(s->vsO.rows(), 2);
    EXPECT_EQ(s->vsA.rows(), 2);
    EXPECT_EQ(s->vsO.cols(), 24);
    EXPECT_EQ(s->vsA.cols(), 24);
    EXPECT_FALSE(s->OldChart());
    ui_.expect_nothing_more();
}

TEST_P(RegisterLoading, OpeningGridBandsItsColumnsAndNamesTheDayBeforeTheYear) {
    auto s = open_screen(ui_);
    const auto& g = s->vsO;
    EXPECT_EQ(g.text_matrix(0, g.col_index("Cost")), "As per Books");
    EXPECT_EQ(g.text_matrix(1, g.col_index("Cost")), "Written Down Value");
    EXPECT_EQ(g.text_matrix(1, g.col_index("OpDepr")), "Depreciation upto 31/03/2015");
    EXPECT_EQ(g.text_matrix(0, g.col_index("WdvIT")), "As per Income-Tax Act");
    EXPECT_EQ(g.text_matrix(1, g.col_index("AddlDepRT")), "Addl. Dep. Rate (%)");
    EXPECT_EQ(g.text_matrix(0, g.col_index("SaleExp")), "Details of Sale/Deduction");
    EXPECT_EQ(g.text_matrix(1, g.col_index("SaleExp")), "Expenses");
    EXPECT_EQ(g.heading_span(0, g.col_index("WdvIT")),
              (CellSpan{0, 0, g.col_index("WdvIT"), g.col_index("AddlDepRT")}));
    EXPECT_TRUE(g.column(g.col_index("SrNoFATR")).hidden);
    EXPECT_FALSE(g.column(g.col_index("Particulars")).hidden);
}

TEST_P(RegisterLoading, CompanyBooksAreBandedAsPerCompaniesAct) {
    db().execute("UPDATE master SET status=3 WHERE code_no='C001'");
    base_->select_client_year("C001", kYear);
    auto s = open_screen(ui_);
    EXPECT_EQ(s->vsO.text_matrix(0, s->vsO.col_index("Cost")), "As per Companies Act");
    EXPECT_EQ(s->vsA.text_matrix(0, s->vsA.col_index("RateFACL")), "As per Companies Act");
}

// The books half is named by the client's status, in the bands of both grids and in
// the heading of the entry frames.
TEST_P(RegisterLoading, BooksCaptionsFollowTheClientsStatus) {
    struct Case {
        int status;
        std::string band;
        std::string heading;
    };
    const Case cases[] = {{1, "As per Books", "For Calculation as per Books"},
                          {2, "As per Books", "For Calculation as per Books"},
                          {3, "As per Companies Act", "For Calculation as per Companies Act 2013"},
                          {4, "As per Companies Act", "For Calculation as per Companies Act 2013"}};
    for (const Case& c : cases) {
        db().execute("UPDATE master SET status=" + std::to_string(c.status) + " WHERE code_no='C001'");
        base_->select_client_year("C001", kYear);
        auto s = open_screen(ui_);
        const auto band = [&](const Grid& g, const char* key) { return g.text_matrix(0, g.col_index(key)); };
        EXPECT_EQ((std::vector<std::string>{band(s->vsO, "Cost"), band(s->vsO, "RateFACL"),
                                            band(s->vsA, "ResValue"), band(s->vsA, "LifeYrs")}),
                  std::vector<std::string>(4, c.band))
            << "status " << c.status;
        EXPECT_EQ(s->lblBooksHeading, c.heading) << "status " << c.status;
    }
}

TEST_P(RegisterLoading, RowsShowTheirFiguresThroughTheColumnFormats) {
    insert_opening(kPlant, "LATHE", 123456.785);
    insert_addition(kFurniture, "TABLE", 20000);
    db().execute("UPDATE NewFATRa2016 SET ExciseCr=500, CurrDiff=120, Subsidy=1000, RateFACL=13.9125");
    auto s = open_screen(ui_);
    const auto& o = s->vsO;
    ASSERT_EQ(o.data_rows(), 1);
    EXPECT_EQ(o.display_text(2, o.col_index("SN")), "1");
    EXPECT_EQ(o.display_text(2, o.col_index("AssetGroup")), "PLANT AND MACHINERY");
    EXPECT_EQ(o.display_text(2, o.col_index("Cost")), "123456.79");
    EXPECT_EQ(o.display_text(2, o.col_index("RateFACL")), "18.10");
    const auto& a = s->vsA;
    ASSERT_EQ(a.data_rows(), 1);
    EXPECT_EQ(a.display_text(2, a.col_index("PutDate")), "15/06/2015");
    EXPECT_EQ(a.display_text(2, a.col_index("MiscAdj")), "-1380.00");
    EXPECT_EQ(a.display_text(2, a.col_index("NetAmt")), "18620.00");
    EXPECT_EQ(a.display_text(2, a.col_index("RateFACL")), "13.9125");
}

TEST_P(RegisterLoading, BlockListsBeginWithTheBlankAndNotApplicableEntries) {
    auto s = open_screen(ui_);
    EXPECT_EQ(s->BlockListIT.rfind("#0; |#-1;N/A|#", 0), 0u);
    EXPECT_EQ(s->BlockListCL.rfind("#0; |#-1;N/A|#", 0), 0u);
    EXPECT_EQ(s->BlockListIT.find('.'), std::string::npos);
    EXPECT_NE(s->BlockListCL.find(";PLANT AND MACHINERY"), std::string::npos);
}

TEST_P(RegisterLoading, GroupFilterListsAllFirstAndEachGroupOnce) {
    insert_opening(kPlant, "LATHE");
    insert_addition(kPlant, "DRILL");
    insert_addition(kFurniture, "TABLE");
    auto s = open_screen(ui_);
    const auto& items = s->cboFAGM.List.items();
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(items[0].text, "(All)");
    EXPECT_EQ(items[1].text, "PLANT AND MACHINERY");
    EXPECT_EQ(items[2].text, "FURNITURE");
}

TEST_P(RegisterLoading, ChoosingAGroupShowsOnlyItsEntriesAndAllShowsThemAgain) {
    insert_opening(kPlant, "LATHE");
    insert_opening(kFurniture, "CHAIR");
    insert_addition(kFurniture, "TABLE");
    auto s = open_screen(ui_);
    s->cboFAGM_Click(s->cboFAGM.List.index_of_id(std::to_string(kFurniture)));
    ASSERT_EQ(s->vsO.data_rows(), 1);
    EXPECT_EQ(s->vsO.text_matrix(2, s->vsO.col_index("Particulars")), "CHAIR");
    EXPECT_EQ(s->vsA.data_rows(), 1);
    s->cboFAGM_Click(0);
    EXPECT_EQ(s->vsO.data_rows(), 2);
}

TEST_P(RegisterLoading, AGridOfManyPagesNumbersAndPlacesEveryRowWhereverItIsRead) {
    // Three pages' worth of openings, every third one furniture; the serials are not
    // the row numbers once the furniture is filtered out.
    const int n = 2 * Grid::kSourcePage + 10;
    {
        store::Transaction tx(db());
        for (int i = 0; i < n; ++i)
            insert_opening(i % 3 == 0 ? kFurniture : kPlant, "ASSET " + std::to_string(i));
        tx.commit();
    }
    auto s = open_screen(ui_);
    const auto& g = s->vsO;
    const int part = g.col_index("Particulars"), sn = g.col_index("SN");
    ASSERT_EQ(g.data_rows(), n);
    EXPECT_EQ(g.text_matrix(2 + n - 1, part), "ASSET " + std::to_string(n - 1));  // the last page first
    EXPECT_EQ(g.text_matrix(2 + n - 1, sn), std::to_string(n));
    EXPECT_EQ(g.text_matrix(2, part), "ASSET 0");
    EXPECT_EQ(g.row_data(2 + Grid::kSourcePage), s->OpeningSerials()[Grid::kSourcePage]);

    s->cboFAGM_Click(s->cboFAGM.List.index_of_id(std::to_string(kPlant)));
    const int plant = n - (n + 2) / 3;
    ASSERT_EQ(g.data_rows(), plant);
    for (const int row : {0, Grid::kSourcePage - 1, Grid::kSourcePage, plant - 1}) {
        // Row k of the plant lines is asset k + k / 2 + 1 (two plant entries between furniture ones).
        const int asset = row + row / 2 + 1;
        EXPECT_EQ(g.text_matrix(2 + row, part), "ASSET " + std::to_string(asset)) << row;
        EXPECT_EQ(g.text_matrix(2 + row, sn), std::to_string(row + 1)) << row;
    }
    ui_.expect_nothing_more();
}

TEST_P(RegisterLoading, AnEntryGoneSinceTheGridWasFilledLeavesItsLineEmpty) {
    insert_opening(kPlant, "LATHE");
    const long gone = insert_opening(kPlant, "DRILL");
    insert_opening(kPlant, "PRESS");
    auto s = open_screen(ui_);
    db().execute("DELETE FROM NewFATRo2016 WHERE SrNoFATR=" + std::to_string(gone));
    const auto& g = s->vsO;
    ASSERT_EQ(g.data_rows(), 3);
    EXPECT_EQ(g.text_matrix(3, g.col_index("Particulars")), "");
    EXPECT_EQ(g.row_data(3), gone);
    EXPECT_EQ(g.text_matrix(4, g.col_index("Particulars")), "PRESS");
}

TEST_P(RegisterLoading, ClientWithOnlyTheOldChartMarkerShowsNoEntries) {
    store().write_old_chart_marker();
    auto s = open_screen(ui_);
    EXPECT_TRUE(s->OldChart());
    EXPECT_EQ(s->vsO.data_rows(), 0);
    EXPECT_TRUE(s->OpeningSerials().empty());
    s->cmdAddO_Click();
    EXPECT_EQ(s->Mode(), reg::EntryMode::None);
}

TEST_P(RegisterLoading, DeclinedDeletionChangesNothing) {
    insert_opening(kPlant, "LATHE");
    insert_addition(kPlant, "DRILL");
    auto s = open_screen(ui_);
    ui_.answer_no();
    s->cmdDelO_Click();
    ui_.answer_yes().answer_no();
    s->cmdDelAllA_Click();
    ui_.answer_no();
    s->cmdDelAllO_Click();
    EXPECT_EQ(boxes(),
              (std::vector<std::string>{"Do you really want to Delete selected 'Opening' Entry?",
                                        "Do you really want to Delete all the 'Addition' Entries ?",
                                        "Confirm Deletion of all the 'Addition' Entries ?",
                                        "Do you really want to Delete all the 'Opening' Entries ?"}));
    EXPECT_EQ(count("NewFATRo2016"), 1);
    EXPECT_EQ(count("NewFATRa2016"), 1);
    EXPECT_EQ(s->vsO.data_rows(), 1);
}

TEST_P(RegisterLoading, DeletingTheSelectedEntryRemovesOnlyThatRow) {
    insert_opening(kPlant, "LATHE");
    const long second = insert_opening(kPlant, "PRESS");
    auto s = open_screen(ui_);
    s->vsO_Row = 3;
    ui_.answer_yes();
    s->cmdDelO_Click();
    EXPECT_EQ(count("NewFATRo2016 WHERE SrNoFATR=" + std::to_string(second)), 0);
    EXPECT_EQ(count("NewFATRo2016"), 1);
    EXPECT_EQ(s->vsO.data_rows(), 1);
    EXPECT_EQ(s->vsO.text_matrix(2, s->vsO.col_index("Particulars")), "LATHE");
}

TEST_P(RegisterLoading, DeleteAllWithAGroupChosenDeletesOnlyThatGroup) {
    insert_opening(kPlant, "LATHE");
    insert_opening(kFurniture, "CHAIR");
    insert_opening(kFurniture, "DESK");
    auto s = open_screen(ui_);
    s->cboFAGM_Click(s->cboFAGM.List.index_of_id(std::to_string(kFurniture)));
    ui_.answer_yes().answer_yes();
    s->cmdDelAllO_Click();
    EXPECT_EQ(count("NewFATRo2016 WHERE IdFAGM=" + std::to_string(kFurniture)), 0);
    EXPECT_EQ(count("NewFATRo2016 WHERE IdFAGM=" + std::to_string(kPlant)), 1);
}

TEST_P(RegisterLoading, DeleteAllOfOneClientLeavesOtherClientsAlone) {
    insert_opening(kPlant, "LATHE");
    store::RegisterStore other(db(), "C002", kYear);
    store::OpeningRow o;
    o.IdFAGM = kPlant;
    o.Part = "OTHER";
    other.insert_opening(o);
    auto s = open_screen(ui_);
    ui_.answer_yes().answer_yes();
    s->cmdDelAllO_Click();
    EXPECT_EQ(count("NewFATRo2016 WHERE Code_No='C001'"), 0);
    EXPECT_EQ(count("NewFATRo2016 WHERE Code_No='C002'"), 1);
}

TEST_P(RegisterLoading, CancelAsksAndOnNoKeepsTheMode) {
    auto s = open_screen(ui_);
    s->cmdAddA_Click();
    EXPECT_EQ(s->Mode(), reg::EntryMode::ADDA);
    ui_.answer_no();
    s->cmdCancel_Click();
    EXPECT_EQ(boxes(), std::vector<std::string>{"Do you want to Cancel the Changes?"});
    EXPECT_EQ(s->Mode(), reg::EntryMode::ADDA);
    ui_.answer_yes();
    s->cmdCancel_Click();
    EXPECT_EQ(s->Mode(), reg::EntryMode::None);
    EXPECT_FALSE(s->famEditA_Visible);
}

TEST_P(RegisterLoading, ADatabaseFailureIsLoggedAndShowsNothing) {
    insert_opening(kPlant, "LATHE");
    auto s = open_screen(ui_);
    db().execute("DROP TABLE NewFATRo2016");
    s->vsO_Row = 2;
    ui_.answer_yes();
    s->cmdDelO_Click();
    EXPECT_GE(comp_.log.logged(), 1);
    EXPECT_NE(comp_.log.context().find("cmdDelO_Click"), std::string::npos);
    EXPECT_EQ(boxes(), std::vector<std::string>{"Do you really want to Delete selected 'Opening' Entry?"});
}

}  // namespace

BRENLOW_INSTANTIATE_BACKENDS(RegisterLoading);

}  // namespace brenlow::test
