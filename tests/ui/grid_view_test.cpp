#include "ui/grid_view.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QSignalSpy>
#include <QStyleOptionViewItem>
#include <QTest>

#include "ui/grid_table_model.h"
#include "ui/qt_app.h"

namespace brenlow {
namespace {

class GridViewTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { test::ensure_qt_app(); }
};

// The register's opening grid in small: a band over two book columns.
Grid register_grid(int rows) {
    Grid g(5, 2);
    g.set_heading(0, "", "SN");
    g.set_heading(1, "", "Particulars");
    g.set_heading(2, "As per Books", "Written Down Value");
    g.set_heading(3, "As per Books", "Rate (%)");
    g.set_heading(4, "", "Shift");
    g.set_col_format(0, "###0");
    g.set_col_format(2, "###0.00");
    g.set_col_format(3, "###0.00");
    g.set_col_combo_list(4, "#1;Single|#2;Double|#3;Triple");
    g.set_col_editable(4, true);
    g.set_redraw(false);
    for (int i = 0; i < rows; ++i) {
        g.add_item(std::to_string(i + 1) + "\tMachine " + std::to_string(i) + "\t" +
                   std::to_string(1000 + i) + ".125\t15\t1");
    }
    g.set_redraw(true);
    return g;
}

TEST_F(GridViewTest, ModelShowsAHundredThousandRowsThroughTheMasks) {
    Grid grid = register_grid(100000);
    GridTableModel model(grid);
    EXPECT_EQ(model.rowCount(), 100000);
    EXPECT_EQ(model.columnCount(), 5);
    const QModelIndex last = model.index(99999, 2);
    // Shown through the mask and grouped as the practice groups (lakhs); edited plain.
    EXPECT_EQ(model.data(last).toString(), "1,00,999.13");
    EXPECT_EQ(model.data(last, Qt::EditRole).toString(), "100999.125");
    EXPECT_EQ(model.data(model.index(99999, 3)).toString(), "15.00");
    EXPECT_EQ(model.data(model.index(0, 4)).toString(), "Single");
    EXPECT_EQ(model.data(model.index(0, 0)).toString(), "1");
    EXPECT_EQ(model.data(last, Qt::TextAlignmentRole).value<Qt::Alignment>() & Qt::AlignHorizontal_Mask,
              Qt::AlignRight);
}

TEST_F(GridViewTest, HeaderCarriesTheBandAndItsSpan) {
    Grid grid = register_grid(1);
    GridTableModel model(grid);
    EXPECT_EQ(model.headerData(2, Qt::Horizontal).toString(), "Written Down Value");
    EXPECT_EQ(model.headerData(3, Qt::Horizontal, GridTableModel::BandRole).toString(), "As per Books");
    EXPECT_EQ(model.headerData(3, Qt::Horizontal, GridTableModel::BandSpanRole).toPoint(), QPoint(2, 3));
    EXPECT_EQ(model.headerData(1, Qt::Horizontal, GridTableModel::BandRole).toString(), "");
}

TEST_F(GridViewTest, ModelFollowsRowsAddedAndRemovedOnTheGrid) {
    Grid grid = register_grid(3);
    GridTableModel model(grid);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    grid.add_item("4\tLathe\t10");
    grid.remove_item(2);  // the first data row
    grid.set_text_matrix(2, 1, "Press");
    ASSERT_EQ(inserted.count(), 1);
    EXPECT_EQ(inserted.at(0).at(1).toInt(), 3);
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(removed.at(0).at(1).toInt(), 0);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.at(0).at(0).toModelIndex(), model.index(0, 1));
    EXPECT_EQ(model.rowCount(), 3);
    EXPECT_EQ(model.data(model.index(2, 1)).toString(), "Lathe");
}

TEST_F(GridViewTest, ComboCellsAreEditedThroughTheirListAndKeepTheId) {
    Grid grid = register_grid(2);
    GridView view;
    view.show_grid(grid);
    GridItemDelegate delegate;
    const QModelIndex cell = view.grid_model()->index(1, 4);
    EXPECT_TRUE(view.grid_model()->flags(cell) & Qt::ItemIsEditable);
    EXPECT_FALSE(view.grid_model()->flags(view.grid_model()->index(1, 2)) & Qt::ItemIsEditable);
    QWidget* editor = delegate.createEditor(&view, QStyleOptionViewItem(), cell);
    auto* combo = qobject_cast<QComboBox*>(editor);
    ASSERT_NE(combo, nullptr);
    ASSERT_EQ(combo->count(), 3);
    EXPECT_EQ(combo->itemText(2), "Triple");
    delegate.setEditorData(combo, cell);
    EXPECT_EQ(combo->currentText(), "Single");
    combo->setCurrentIndex(2);
    delegate.setModelData(combo, view.grid_model(), cell);
    EXPECT_EQ(grid.text_matrix(3, 4), "3");
    EXPECT_EQ(view.grid_model()->data(cell).toString(), "Triple");
    delete editor;
}

TEST_F(GridViewTest, ViewScrollsToTheLastOfAHundredThousandRowsWithTwoLineHeadings) {
    Grid grid = register_grid(100000);
    grid.set_col_hidden(0, true);
    GridView view;
    view.resize(600, 400);
    view.show_grid(grid);
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    view.scrollToBottom();
    QApplication::processEvents();
    EXPECT_EQ(view.rowAt(view.viewport()->height() - 2), 99999);
    EXPECT_TRUE(view.isColumnHidden(0));
    auto* header = static_cast<BandedHeaderView*>(view.horizontalHeader());
    EXPECT_GE(header->height(), 2 * view.fontMetrics().height());
    const QRect band = header->band_rect(3);
    EXPECT_EQ(band, header->band_rect(2));
    EXPECT_EQ(band.width(), view.columnWidth(2) + view.columnWidth(3));
    EXPECT_TRUE(header->band_rect(1).isEmpty());
    // Painting a screenful must not touch every row.
    QImage image(view.size(), QImage::Format_ARGB32);
    view.render(&image);
}

}  // namespace
}  // namespace brenlow
