#pragma once
// A Qt table model over a Grid: the grid's data rows are the model's rows, its
// heading rows are the header. The grid stays the owner of every cell; the model
// only translates, and follows the grid's change hook.

#include <QAbstractTableModel>

#include "controls/grid.h"

namespace brenlow {

// A list entry's key hints as a person reads them: "Shortcut Keys : CTRL+{HOME} OR
// CTRL+{UP}" shows as "Shortcut keys: Ctrl+Home or Ctrl+Up"; other text is unchanged.
QString readable_keys(const QString& text);

class GridTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Role {
        // Header: the band over the column ("" when the heading takes both rows)
        // and the columns [first,last] the band spans, as a QPoint(first, last).
        BandRole = Qt::UserRole + 1,
        BandSpanRole,
        // Cells: the column's combo list as set ("#1;Single|#2;Double").
        ComboListRole,
    };

    explicit GridTableModel(Grid& grid, QObject* parent = nullptr);
    ~GridTableModel() override;

    Grid& grid() { return grid_; }
    // Model row of a grid row and back (the grid counts its heading rows).
    int grid_row(int model_row) const { return model_row + grid_.fixed_rows(); }
    // The text a cell shows (grid row and column): amounts grouped, dates and combo
    // texts as the column's format says.
    QString shown_text(int row, int col) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

signals:
    // Column widths, visibility or formats changed; the view re-reads them.
    void columnsChanged();

private:
    void on_grid_change(const GridChange& change);

    Grid& grid_;
};

}  // namespace brenlow
