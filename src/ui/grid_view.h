#pragma once
// The grid as the screens show it: a table view over a GridTableModel with
// two-line banded headings, combo cells edited through their lists, and fixed
// row heights so that a register of 100,000 rows scrolls without measuring rows.

#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QTableView>
#include <vector>

#include "controls/grid.h"

namespace brenlow {

class GridTableModel;

// A horizontal header of two lines: the band across the columns it covers on top,
// each column's heading below; a column without a band has its heading across both.
class BandedHeaderView : public QHeaderView {
    Q_OBJECT
public:
    explicit BandedHeaderView(QWidget* parent = nullptr);
    QSize sizeHint() const override;
    // The rectangle, in header coordinates, of the band over a column (empty when
    // the column has none).
    QRect band_rect(int logical_index) const;

protected:
    void paintSection(QPainter* painter, const QRect& rect, int logical_index) const override;

private:
    bool has_bands() const;
    void paint_cell(QPainter* painter, const QRect& rect, const QString& text, int logical_index) const;
};

// Cells of a combo column are edited with a combo box showing the list's texts;
// the cell keeps the chosen id.
class GridItemDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
};

class GridView : public QTableView {
    Q_OBJECT
public:
    explicit GridView(QWidget* parent = nullptr);
    // Shows a grid; the view keeps a model over it until another grid is shown.
    void show_grid(Grid& grid);
    GridTableModel* grid_model() const { return model_; }
    // Typed letters find a row by this column (a picker whose first columns are hidden
    // keys looks up the names).
    void set_search_column(int col) { search_column_ = col; }
    void keyboardSearch(const QString& search) override;
    // A line of totals under the rows, kept up to date: every column of amounts (a
    // number in each filled cell, shown with decimals or to the right, and not a
    // rate) is summed; the first other column reads "Total".
    void show_totals(bool on);
    // A totals line that the screen works out itself: one text per column of the grid
    // ("" where nothing stands), shown as given in place of the sums; an empty list
    // goes back to the sums.
    void show_totals(std::vector<QString> texts);
    // The text of the totals line under a column ("" where nothing is summed).
    QString total_text(int col) const;
    // The totals line as a widget (nullptr when the view shows none).
    QWidget* totals_line() const { return totals_; }

    // The widest a column grows to show its contents, in average characters; wider
    // text is elided and read whole in its tooltip.
    static constexpr int kContentCapChars = 140;
    // How many rows the widths are measured on (a long register is not measured whole).
    static constexpr int kMeasuredRows = 200;

protected:
    void updateGeometries() override;

private:
    void apply_columns();
    void columns_later();
    void work_out_totals();
    int totals_height() const;
    void fit_rows_above_totals();

    GridTableModel* model_ = nullptr;
    bool columns_pending_ = false;
    int search_column_ = -1;
    QWidget* totals_ = nullptr;
    std::vector<QString> total_texts_;
    std::vector<QString> supplied_totals_;
    bool in_geometries_ = false;
};

}  // namespace brenlow
