#include "ui/grid_view.h"

#include <QComboBox>
#include <QPainter>
#include <QPoint>
#include <QStyle>
#include <QStyleOptionHeader>
#include <algorithm>
#include <climits>

#include "controls/id_text_list.h"
#include "ui/grid_table_model.h"

namespace brenlow {

BandedHeaderView::BandedHeaderView(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setSectionsClickable(false);
    setHighlightSections(false);
    setDefaultAlignment(Qt::AlignCenter);
}

bool BandedHeaderView::has_bands() const {
    auto* grid_model = qobject_cast<GridTableModel*>(model());
    return grid_model && grid_model->grid().fixed_rows() >= 2;
}

QSize BandedHeaderView::sizeHint() const {
    QSize size = QHeaderView::sizeHint();
    if (has_bands()) size.setHeight(2 * fontMetrics().height() + 12);
    return size;
}

QRect BandedHeaderView::band_rect(int logical_index) const {
    if (!model() ||
        model()->headerData(logical_index, Qt::Horizontal, GridTableModel::BandRole).toString().isEmpty()) {
        return {};
    }
    const QPoint span =
        model()->headerData(logical_index, Qt::Horizontal, GridTableModel::BandSpanRole).toPoint();
    // Hidden columns have no position; the band covers the shown ones.
    int left = INT_MAX, right = INT_MIN;
    for (int c = span.x(); c <= span.y(); ++c) {
        if (isSectionHidden(c)) continue;
        left = std::min(left, sectionViewportPosition(c));
        right = std::max(right, sectionViewportPosition(c) + sectionSize(c));
    }
    if (left >= right) return {};
    return QRect(left, 0, right - left, height() / 2);
}

void BandedHeaderView::paint_cell(QPainter* painter, const QRect& rect, const QString& text,
                                  int logical_index) const {
    QStyleOptionHeader opt;
    initStyleOption(&opt);
    opt.rect = rect;
    opt.section = logical_index;
    opt.text = text;
    opt.textAlignment = Qt::AlignCenter;
    opt.position = QStyleOptionHeader::Middle;
    painter->save();
    painter->setClipRect(rect);
    style()->drawControl(QStyle::CE_Header, &opt, painter, this);
    painter->restore();
}

void BandedHeaderView::paintSection(QPainter* painter, const QRect& rect, int logical_index) const {
    if (!rect.isValid()) return;
    const QString heading = model()->headerData(logical_index, Qt::Horizontal, Qt::DisplayRole).toString();
    const QRect band = band_rect(logical_index);
    if (!has_bands() || band.isEmpty()) {
        paint_cell(painter, rect, heading, logical_index);
        return;
    }
    // Every column under a band paints the whole band, so the band reads as one
    // cell whichever of its columns is scrolled into view.
    const QString band_text =
        model()->headerData(logical_index, Qt::Horizontal, GridTableModel::BandRole).toString();
    paint_cell(painter, band, band_text, logical_index);
    paint_cell(painter, QRect(rect.left(), band.bottom() + 1, rect.width(), rect.height() - band.height()),
               heading, logical_index);
}

QWidget* GridItemDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                        const QModelIndex& index) const {
    const QString list = index.data(GridTableModel::ComboListRole).toString();
    if (list.isEmpty()) return QStyledItemDelegate::createEditor(parent, option, index);
    auto* combo = new QComboBox(parent);
    const IdTextList items = IdTextList::parse(list.toStdString());
    for (const IdText& item : items.items()) {
        combo->addItem(QString::fromStdString(item.text), QString::fromStdString(item.id));
    }
    return combo;
}

void GridItemDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    if (auto* combo = qobject_cast<QComboBox*>(editor)) {
        combo->setCurrentIndex(combo->findData(index.data(Qt::EditRole).toString()));
        return;
    }
    QStyledItemDelegate::setEditorData(editor, index);
}

void GridItemDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                    const QModelIndex& index) const {
    if (auto* combo = qobject_cast<QComboBox*>(editor)) {
        if (combo->currentIndex() >= 0) model->setData(index, combo->currentData(), Qt::EditRole);
        return;
    }
    QStyledItemDelegate::setModelData(editor, model, index);
}

GridView::GridView(QWidget* parent) : QTableView(parent) {
    setHorizontalHeader(new BandedHeaderView(this));
    setItemDelegate(new GridItemDelegate(this));
    // Fixed row heights: the view never measures rows, whatever their number.
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    verticalHeader()->hide();
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setWordWrap(false);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                    QAbstractItemView::AnyKeyPressed);
}

void GridView::show_grid(Grid& grid) {
    auto* old = model_;
    model_ = new GridTableModel(grid, this);
    setModel(model_);
    delete old;
    connect(model_, &GridTableModel::columnsChanged, this, &GridView::apply_columns);
    apply_columns();
}

void GridView::apply_columns() {
    if (!model_) return;
    const Grid& grid = model_->grid();
    const int char_width = fontMetrics().averageCharWidth();
    // A heading reads whole: a column is at least as wide as its heading, and the
    // columns under a band together as wide as the band's text.
    const QFontMetrics header_metrics = horizontalHeader()->fontMetrics();
    const int padding = 2 * style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, horizontalHeader()) + 10;
    const auto text_width = [&](const QString& text) {
        int widest = 0;
        for (const QString& line : text.split('\n'))
            widest = std::max(widest, header_metrics.horizontalAdvance(line));
        return widest + padding;
    };
    for (int c = 0; c < grid.cols(); ++c) {
        const GridColumn& column = grid.column(c);
        setColumnHidden(c, column.hidden);
        if (column.hidden) continue;
        const int wanted = column.width > 0 ? column.width * char_width + 8 : columnWidth(c);
        const int heading = text_width(model_->headerData(c, Qt::Horizontal, Qt::DisplayRole).toString());
        setColumnWidth(c, std::max(wanted, heading));
    }
    for (int c = 0; c < grid.cols(); ++c) {
        const QString band = model_->headerData(c, Qt::Horizontal, GridTableModel::BandRole).toString();
        const QPoint span = model_->headerData(c, Qt::Horizontal, GridTableModel::BandSpanRole).toPoint();
        if (band.isEmpty() || span.x() != c) continue;
        int covered = 0, last_shown = -1;
        for (int s = span.x(); s <= span.y(); ++s) {
            if (isColumnHidden(s)) continue;
            covered += columnWidth(s);
            last_shown = s;
        }
        const int short_by = text_width(band) - covered;
        if (last_shown >= 0 && short_by > 0) setColumnWidth(last_shown, columnWidth(last_shown) + short_by);
    }
    horizontalHeader()->updateGeometry();
    horizontalHeader()->viewport()->update();
}

}  // namespace brenlow
