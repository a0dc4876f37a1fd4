#include "ui/grid_view.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
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

// The totals line stands under the rows, in sight, however often the view lays itself
// out again; the last row still scrolls into sight above it.
TEST_F(GridViewTest, TheTotalsLineStaysInSightUnderTheRows) {
    Grid grid = register_grid(40);
    GridView view;
    view.resize(640, 320);
    view.show_grid(grid);
    view.show_totals(true);
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    view.resize(700, 360);
    view.scrollToBottom();
    QApplication::processEvents();
    QWidget* line = view.totals_line();
    ASSERT_NE(line, nullptr);
    EXPECT_TRUE(line->isVisible());
    const int height = view.verticalHeader()->defaultSectionSize() + 2;
    const QRect rows = view.viewport()->geometry();
    EXPECT_EQ(line->geometry(), QRect(rows.left(), rows.bottom() + 1, rows.width(), height));
    EXPECT_LE(line->geometry().bottom(), view.height() - view.frameWidth() - 1);
    // Nothing is drawn over it: the rows end above it.
    EXPECT_EQ(view.rowAt(view.viewport()->height() - 2), 39);
    EXPECT_LE(view.visualRect(view.model()->index(39, 1)).bottom(), view.viewport()->height());
    // 1000.125 + ... + 1039.125, and the first column that is not summed reads "Total".
    std::vector<QString> texts;
    for (int c = 0; c < 5; ++c) texts.push_back(view.total_text(c));
    EXPECT_EQ(texts, (std::vector<QString>{"", "Total", "40,785.00", "", ""}));
}

// A screen that works its totals out itself has them shown as given.
TEST_F(GridViewTest, TotalsSuppliedByTheScreenAreShownAsGiven) {
    Grid grid = register_grid(3);
    GridView view;
    view.resize(640, 240);
    view.show_grid(grid);
    view.show_totals(std::vector<QString>{"", "Total of Block", "3,003.38", "", ""});
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    QApplication::processEvents();
    ASSERT_NE(view.totals_line(), nullptr);
    EXPECT_TRUE(view.totals_line()->isVisible());
    const QRect rows = view.viewport()->geometry();
    EXPECT_EQ(view.totals_line()->geometry().top(), rows.bottom() + 1);
    std::vector<QString> texts;
    for (int c = 0; c < 5; ++c) texts.push_back(view.total_text(c));
    EXPECT_EQ(texts, (std::vector<QString>{"", "Total of Block", "3,003.38", "", ""}));
    // Its texts read whole: the columns are as wide as the totals need.
    const QFont bold = [&] {
        QFont f = view.font();
        f.setBold(true);
        return f;
    }();
    EXPECT_GE(view.columnWidth(1), QFontMetrics(bold).horizontalAdvance("Total of Block"));
    // Without the line the rows take its room again.
    view.show_totals(false);
    EXPECT_EQ(view.totals_line(), nullptr);
    EXPECT_EQ(view.viewport()->height(), rows.height() + view.verticalHeader()->defaultSectionSize() + 2);
}

}  // namespace
}  // namespace brenlow
