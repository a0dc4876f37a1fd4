#include "controls/grid.h"

#include <gtest/gtest.h>

#include <vector>

namespace brenlow {
namespace {

TEST(Grid, CountsFixedRowsAmongItsRows) {
    Grid g(3, 2);
    EXPECT_EQ(g.rows(), 2);
    EXPECT_EQ(g.data_rows(), 0);
    const int r = g.add_item("1\tMachine\t1500");
    EXPECT_EQ(r, 2);
    EXPECT_EQ(g.rows(), 3);
    EXPECT_EQ(g.text_matrix(2, 1), "Machine");
    g.clear_rows();
    EXPECT_EQ(g.rows(), 2);
    g.set_rows(0);
    EXPECT_EQ(g.rows(), 2);  // the headings stay
}

TEST(Grid, KeepsEachCellsTextApartFromItsNeighbours) {
    Grid g(4, 1);
    g.set_rows(3);
    g.set_text_matrix(1, 2, "middle");
    EXPECT_EQ(g.text_matrix(1, 0), "");
    EXPECT_EQ(g.text_matrix(1, 2), "middle");
    EXPECT_EQ(g.text_matrix(1, 3), "");
    g.set_text_matrix(1, 0, "first");
    g.set_text_matrix(1, 3, "last");
    g.set_text_matrix(1, 2, "");
    g.set_text_matrix(1, 1, "a\tb");  // a tab is a character like any other once in a cell
    EXPECT_EQ(g.text_matrix(1, 0), "first");
    EXPECT_EQ(g.text_matrix(1, 1), "a\tb");
    EXPECT_EQ(g.text_matrix(1, 2), "");
    EXPECT_EQ(g.text_matrix(1, 3), "last");
    EXPECT_EQ(g.text_matrix(2, 3), "");
    EXPECT_THROW(g.text_matrix(3, 0), std::out_of_range);
    EXPECT_THROW(g.set_text_matrix(1, 4, "x"), std::out_of_range);
}

TEST(Grid, InsertsAndRemovesRowsWithTheirRowData) {
    Grid g(2, 1);
    g.add_item("a");
    g.add_item("c");
    g.add_item("b", 2);
    g.set_row_data(1, 10);
    g.set_row_data(2, 20);
    g.set_row_data(3, 30);
    EXPECT_EQ(g.text_matrix(2, 0), "b");
    g.remove_item(2);
    EXPECT_EQ(g.text_matrix(2, 0), "c");
    EXPECT_EQ(g.row_data(2), 30);
    EXPECT_EQ(g.row_data(1), 10);
    EXPECT_THROW(g.remove_item(0), std::out_of_range);
}

TEST(Grid, DropsCellsBeyondTheColumnsWhenColumnsAreRemoved) {
    Grid g(3, 1);
    g.add_item("a\tb\tc");
    g.set_cols(2);
    g.set_cols(3);
    EXPECT_EQ(g.text_matrix(1, 1), "b");
    EXPECT_EQ(g.text_matrix(1, 2), "");
}

TEST(Grid, FindsColumnsByKey) {
    Grid g(3, 1);
    g.set_col_key(0, "SN");
    g.set_col_key(2, "Cost");
    EXPECT_EQ(g.col_index("Cost"), 2);
    EXPECT_EQ(g.col_index("SN"), 0);
    EXPECT_EQ(g.col_index("cost"), -1);
}

TEST(Grid, ReadsCellValuesAsTheScreensWroteThem) {
    Grid g(1, 1);
    g.set_rows(7);
    g.set_text_matrix(1, 0, "1,234.50");
    g.set_text_matrix(2, 0, "(12)");
    g.set_text_matrix(3, 0, "N/A");
    g.set_text_matrix(4, 0, "");
    g.set_text_matrix(5, 0, "-7.25");
    g.set_value_matrix(6, 0, 0.1 + 0.2);
    EXPECT_DOUBLE_EQ(g.value_matrix(1, 0), 1234.5);
    EXPECT_DOUBLE_EQ(g.value_matrix(2, 0), -12.0);
    EXPECT_DOUBLE_EQ(g.value_matrix(3, 0), 0.0);
    EXPECT_DOUBLE_EQ(g.value_matrix(4, 0), 0.0);
    EXPECT_DOUBLE_EQ(g.value_matrix(5, 0), -7.25);
    EXPECT_EQ(g.text_matrix(6, 0), "0.3");
}

TEST(Grid, ShowsCellsThroughTheColumnMaskDateFormatAndComboList) {
    Grid g(4, 2);
    g.set_col_format(0, "###0.00");
    g.set_col_format(1, "dd/MM/yy");
    g.set_col_combo_list(2, "#1;Single|#2;Double|#3;Triple");
    g.add_item("185.175\t31/03/2016\t2\tplain");
    g.add_item("N/A\tnot a date\t9\t");
    EXPECT_EQ(g.display_text(2, 0), "185.18");
    EXPECT_EQ(g.display_text(2, 1), "31/03/16");
    EXPECT_EQ(g.display_text(2, 2), "Double");
    EXPECT_EQ(g.text_matrix(2, 2), "2");
    EXPECT_EQ(g.display_text(2, 3), "plain");
    EXPECT_EQ(g.display_text(3, 0), "N/A");
    EXPECT_EQ(g.display_text(3, 1), "not a date");
    EXPECT_EQ(g.display_text(3, 2), "9");
    g.set_text_matrix(1, 0, "Amount");
    EXPECT_EQ(g.display_text(1, 0), "Amount");  // headings are never masked
}

TEST(GridHeadings, BandNeighbouringColumnsWithTheSameBandText) {
    Grid g(6, 2);
    g.set_heading(0, "", "SN");
    g.set_heading(1, "As per Books", "Written Down Value");
    g.set_heading(2, "As per Books", "Rate (%)");
    g.set_heading(3, "As per Income-Tax Act", "Written Down Value");
    g.set_heading(4, "As per Income-Tax Act", "Rate (%)");
    g.set_heading(5, "Particulars", "Particulars");
    EXPECT_EQ(g.heading_span(0, 2), (CellSpan{0, 0, 1, 2}));
    EXPECT_EQ(g.heading_span(0, 1), (CellSpan{0, 0, 1, 2}));
    EXPECT_EQ(g.heading_span(0, 3), (CellSpan{0, 0, 3, 4}));
    EXPECT_EQ(g.heading_span(1, 2), (CellSpan{1, 1, 2, 2}));
    // No band, or a band repeating the heading: the heading takes both rows.
    EXPECT_EQ(g.heading_span(0, 0), (CellSpan{0, 1, 0, 0}));
    EXPECT_EQ(g.heading_span(1, 0), (CellSpan{0, 1, 0, 0}));
    EXPECT_EQ(g.heading_span(1, 5), (CellSpan{0, 1, 5, 5}));
    g.add_item("x");
    EXPECT_EQ(g.heading_span(2, 3), (CellSpan{2, 2, 3, 3}));
}

struct Recorder {
    std::vector<GridChange::Kind> kinds;
    std::vector<std::pair<int, int>> ranges;
    void operator()(const GridChange& c) {
        kinds.push_back(c.kind);
        ranges.emplace_back(c.first, c.last);
    }
};

TEST(GridChanges, ReportStructuralChangesBeforeAndAfter) {
    Grid g(2, 1);
    Recorder rec;
    g.set_on_change([&rec](const GridChange& c) { rec(c); });
    g.add_item("a");
    g.set_text_matrix(1, 1, "b");
    g.set_rows(4);
    g.remove_item(2);
    using K = GridChange::Kind;
    EXPECT_EQ(rec.kinds, (std::vector<K>{K::rows_inserting, K::rows_inserted, K::cells, K::rows_inserting,
                                         K::rows_inserted, K::rows_removing, K::rows_removed}));
    EXPECT_EQ(rec.ranges[0], std::make_pair(1, 1));
    EXPECT_EQ(rec.ranges[3], std::make_pair(2, 3));
    EXPECT_EQ(rec.ranges[5], std::make_pair(2, 2));
}

TEST(GridChanges, AreHeldBackWhileRedrawIsOffAndEndInOneReset) {
    Grid g(2, 1);
    Recorder rec;
    g.set_on_change([&rec](const GridChange& c) { rec(c); });
    g.set_redraw(false);
    for (int i = 0; i < 100; ++i) g.add_item("row");
    g.set_redraw(true);
    using K = GridChange::Kind;
    EXPECT_EQ(rec.kinds, (std::vector<K>{K::resetting, K::reset}));
    EXPECT_EQ(g.data_rows(), 100);
}

TEST(Grid, HoldsAHundredThousandRowsOfTwentyFourColumns) {
    Grid g(24, 2);
    g.set_redraw(false);
    for (int i = 0; i < 100000; ++i) {
        g.add_item(std::to_string(i + 1) + "\t" + std::to_string(i) + "\t12\tPlant and machinery\t150000.5");
        g.set_text_matrix(g.rows() - 1, 23, "last");
    }
    g.set_redraw(true);
    EXPECT_EQ(g.data_rows(), 100000);
    EXPECT_EQ(g.text_matrix(100001, 0), "100000");
    EXPECT_EQ(g.text_matrix(100001, 23), "last");
    EXPECT_EQ(g.text_matrix(100001, 22), "");
}

// A source of `n` rows whose cells say where they came from, counting its pages.
struct CountingSource {
    std::vector<std::pair<int, int>> asked;  // first, count
    GridRowFetch fetch() {
        return [this](int first, int count) {
            asked.emplace_back(first, count);
            GridRowPage page;
            for (int i = first; i < first + count; ++i) {
                page.lines.push_back(std::to_string(i + 1) + "\tROW " + std::to_string(i) + "\t1500");
                page.data.push_back(1000 + i);
            }
            return page;
        };
    }
};

TEST(GridRowSource, ReadsOnlyThePagesOfTheRowsAskedFor) {
    Grid g(3, 2);
    g.set_col_format(2, "###0.00");
    CountingSource src;
    g.set_row_source(1000000, src.fetch());
    EXPECT_EQ(g.rows(), 1000002);
    EXPECT_EQ(g.data_rows(), 1000000);
    EXPECT_TRUE(src.asked.empty());  // nothing read until a row is
    EXPECT_EQ(g.text_matrix(2, 1), "ROW 0");
    EXPECT_EQ(g.display_text(2, 2), "1500.00");
    EXPECT_EQ(g.row_data(2 + 999999), 1000 + 999999);
    EXPECT_EQ(g.text_matrix(2 + 500000, 0), "500001");
    // The last page is short: rows 999,936 to 999,999.
    EXPECT_EQ(src.asked, (std::vector<std::pair<int, int>>{{0, 256}, {999936, 64}, {499968, 256}}));
    g.text_matrix(2 + 1, 1);  // a page already read is not read again
    EXPECT_EQ(src.asked.size(), 3u);
}

TEST(GridRowSource, KeepsTheLastPagesReadAndReadsAnOlderOneAgain) {
    Grid g(3, 1);
    CountingSource src;
    g.set_row_source(Grid::kSourcePage * (Grid::kSourcePagesKept + 1), src.fetch());
    for (int p = 0; p <= Grid::kSourcePagesKept; ++p) g.text_matrix(1 + p * Grid::kSourcePage, 0);
    EXPECT_EQ(src.asked.size(), static_cast<std::size_t>(Grid::kSourcePagesKept + 1));
    g.text_matrix(1 + Grid::kSourcePage * Grid::kSourcePagesKept, 0);  // the newest is kept
    EXPECT_EQ(src.asked.size(), static_cast<std::size_t>(Grid::kSourcePagesKept + 1));
    g.text_matrix(1, 0);  // the oldest was let go
    EXPECT_EQ(src.asked.size(), static_cast<std::size_t>(Grid::kSourcePagesKept + 2));
}

TEST(GridRowSource, ACellSetOnASourcedRowOutlivesItsPage) {
    Grid g(3, 1);
    CountingSource src;
    g.set_row_source(Grid::kSourcePage * (Grid::kSourcePagesKept + 2), src.fetch());
    g.set_text_matrix(5, 1, "EDITED");
    g.set_row_data(5, 7);
    for (int p = 1; p <= Grid::kSourcePagesKept + 1; ++p) g.text_matrix(1 + p * Grid::kSourcePage, 0);
    EXPECT_EQ(g.text_matrix(5, 1), "EDITED");
    EXPECT_EQ(g.text_matrix(5, 2), "1500");
    EXPECT_EQ(g.row_data(5), 7);
}

TEST(GridRowSource, AddingARowReadsEveryRowInAndEmptyingReadsNone) {
    Grid g(3, 1);
    CountingSource src;
    g.set_row_source(600, src.fetch());
    g.add_item("NEW\tLAST", 1);
    EXPECT_FALSE(g.has_row_source());
    EXPECT_EQ(g.rows(), 602);
    EXPECT_EQ(g.text_matrix(1, 0), "NEW");
    EXPECT_EQ(g.text_matrix(2, 1), "ROW 0");
    EXPECT_EQ(g.text_matrix(601, 1), "ROW 599");
    EXPECT_EQ(g.row_data(601), 1599);

    CountingSource again;
    g.set_row_source(600, again.fetch());
    g.clear_rows();
    EXPECT_EQ(g.rows(), 1);
    EXPECT_TRUE(again.asked.empty());
}

TEST(GridRowSource, AShortPageLeavesItsMissingRowsEmpty) {
    Grid g(2, 1);
    g.set_row_source(10, [](int, int) {
        GridRowPage page;
        page.lines = {"a\tb"};
        page.data = {1};
        return page;
    });
    EXPECT_EQ(g.text_matrix(1, 1), "b");
    EXPECT_EQ(g.text_matrix(10, 0), "");
    EXPECT_EQ(g.row_data(10), 0);
}

}  // namespace
}  // namespace brenlow
