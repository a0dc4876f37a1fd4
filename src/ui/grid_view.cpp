#include "ui/grid_view.h"

#include <QComboBox>
#include <QPaintEvent>
#include <QPainter>
#include <QPoint>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionHeader>
#include <QTimer>
#include <algorithm>
#include <climits>

#include "controls/id_text_list.h"
#include "controls/number_format.h"
#include "ui/grid_table_model.h"

namespace brenlow {

namespace {

// The totals line: painted under the rows, each text in its column.
class TotalsLine : public QWidget {
public:
    explicit TotalsLine(GridView* view) : QWidget(view), view_(view) { setObjectName("totals"); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), palette().alternateBase());
        painter.setPen(palette().mid().color());
        painter.drawLine(0, 0, width(), 0);
        painter.setPen(palette().text().color());
        QFont bold = font();
        bold.setBold(true);
        painter.setFont(bold);
        const int margin = style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, view_) + 1;
        auto* header = view_->horizontalHeader();
        for (int c = 0; c < header->count(); ++c) {
            if (view_->isColumnHidden(c)) continue;
            const QString text = view_->total_text(c);
            if (text.isEmpty()) continue;
            const QRect cell(header->sectionViewportPosition(c) + margin, 0,
                             header->sectionSize(c) - 2 * margin, height());
            const bool words = text == QLatin1String("Total");
            painter.drawText(cell, (words ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter, text);
        }
    }

private:
    GridView* view_;
};

// A column whose filled cells are all amounts, shown as amounts, and not rates.
bool summed_column(const Grid& grid, int col, const QString& heading) {
    const GridColumn& column = grid.column(col);
    if (!column.combo.empty() || heading.contains("Rate", Qt::CaseInsensitive) || heading.contains("Life") ||
        heading.contains("Year"))
        return false;
    const bool amount_format = column.format.find("0.00") != std::string::npos;
    if (!amount_format && column.alignment != Align::right) return false;
    bool any = false;
    for (int r = grid.fixed_rows(); r < grid.rows(); ++r) {
        const std::string text = grid.text_matrix(r, col);
        if (text.empty()) continue;
        if (!parse_amount(text)) return false;
        any = true;
    }
    return any;
}

// A column whose filled cells hold words, not only figures.
bool words_column(const Grid& grid, int col) {
    if (!grid.column(col).combo.empty()) return false;
    for (int r = grid.fixed_rows(); r < grid.rows(); ++r) {
        const std::string text = grid.text_matrix(r, col);
        if (!text.empty() && !parse_amount(text)) return true;
    }
    return false;
}

}  // namespace

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
        combo->addItem(readable_keys(QString::fromStdString(item.text)), QString::fromStdString(item.id));
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
    // New contents may need wider columns: measured once the changes have settled.
    connect(model_, &QAbstractItemModel::rowsInserted, this, &GridView::columns_later);
    connect(model_, &QAbstractItemModel::modelReset, this, &GridView::columns_later);
    connect(model_, &QAbstractItemModel::dataChanged, this, &GridView::columns_later);
    apply_columns();
}

void GridView::keyboardSearch(const QString& search) {
    if (search_column_ >= 0 && model_ && model_->rowCount() > 0 &&
        (!currentIndex().isValid() || currentIndex().column() != search_column_))
        setCurrentIndex(model_->index(currentIndex().isValid() ? currentIndex().row() : 0, search_column_));
    QTableView::keyboardSearch(search);
}

void GridView::show_totals(bool on) {
    if (on == (totals_ != nullptr)) return;
    if (on) {
        totals_ = new TotalsLine(this);
        // The line follows the columns as they scroll and change width.
        connect(horizontalScrollBar(), &QScrollBar::valueChanged, totals_, qOverload<>(&QWidget::update));
        connect(horizontalHeader(), &QHeaderView::sectionResized, totals_, qOverload<>(&QWidget::update));
        totals_->show();
    } else {
        delete totals_;
        totals_ = nullptr;
        total_texts_.clear();
        supplied_totals_.clear();
    }
    updateGeometries();
    apply_columns();
}

void GridView::show_totals(std::vector<QString> texts) {
    supplied_totals_ = std::move(texts);
    if (!totals_) {
        show_totals(true);
        return;
    }
    apply_columns();
}

int GridView::totals_height() const {
    return totals_ ? verticalHeader()->defaultSectionSize() + 2 : 0;
}

QString GridView::total_text(int col) const {
    return col >= 0 && col < static_cast<int>(total_texts_.size())
               ? total_texts_[static_cast<std::size_t>(col)]
               : QString();
}

// The table's own layout puts the viewport right down to the scroll bar; the totals
// line takes a row's height off its bottom, and the scroll range is worked out again
// for the shorter viewport so that the last row can still be scrolled into sight.
void GridView::updateGeometries() {
    if (in_geometries_) return;
    QTableView::updateGeometries();
    const QMargins margins = viewportMargins();
    if (margins.bottom() != totals_height()) {
        in_geometries_ = true;
        setViewportMargins(margins.left(), margins.top(), margins.right(), totals_height());
        in_geometries_ = false;
        fit_rows_above_totals();
    }
    if (!totals_) return;
    const QRect area = viewport()->geometry();
    totals_->setGeometry(area.left(), area.bottom() + 1, area.width(), totals_height());
    totals_->raise();
    totals_->update();
}

void GridView::fit_rows_above_totals() {
    const int rows = model() ? model()->rowCount() : 0;
    const int row_height = verticalHeader()->defaultSectionSize();
    const int height = viewport()->height();
    if (rows <= 0 || row_height <= 0) return;
    if (verticalScrollMode() == QAbstractItemView::ScrollPerItem) {
        const int fit = std::min(rows, height / row_height);
        verticalScrollBar()->setRange(0, rows - fit);
        verticalScrollBar()->setPageStep(fit);
    } else {
        verticalScrollBar()->setPageStep(height);
        verticalScrollBar()->setRange(0, std::max(0, verticalHeader()->length() - height));
    }
}

void GridView::work_out_totals() {
    total_texts_.assign(model_ ? static_cast<std::size_t>(model_->columnCount()) : 0u, QString());
    if (!totals_ || !model_) return;
    if (!supplied_totals_.empty()) {
        for (std::size_t c = 0; c < total_texts_.size() && c < supplied_totals_.size(); ++c)
            total_texts_[c] = supplied_totals_[c];
        totals_->update();
        return;
    }
    const Grid& grid = model_->grid();
    // "Total" stands in the first column of words (a serial number column is passed
    // over), else in the first column not summed.
    int label_col = -1, first_other = -1;
    bool any = false;
    for (int c = 0; c < grid.cols(); ++c) {
        if (grid.column(c).hidden) continue;
        const QString heading = model_->headerData(c, Qt::Horizontal, Qt::DisplayRole).toString();
        if (!summed_column(grid, c, heading)) {
            if (first_other < 0) first_other = c;
            if (label_col < 0 && words_column(grid, c)) label_col = c;
            continue;
        }
        double sum = 0;
        for (int r = grid.fixed_rows(); r < grid.rows(); ++r)
            if (const auto amount = parse_amount(grid.text_matrix(r, c))) sum += *amount;
        total_texts_[static_cast<std::size_t>(c)] = QString::fromStdString(format_mask(sum, "#,##0.00"));
        any = true;
    }
    if (label_col < 0) label_col = first_other;
    if (any && label_col >= 0) total_texts_[static_cast<std::size_t>(label_col)] = "Total";
    totals_->update();
}

void GridView::columns_later() {
    if (columns_pending_) return;
    columns_pending_ = true;
    QTimer::singleShot(0, this, [this] {
        columns_pending_ = false;
        apply_columns();
    });
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
    work_out_totals();
    // Contents (and totals) read whole up to a cap; the cell's margins as the view draws them.
    const QFontMetrics cell_metrics(font());
    const int cell_padding = 2 * style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 8;
    const int cap = kContentCapChars * char_width;
    const int measured = std::min(model_->rowCount(), kMeasuredRows);
    for (int c = 0; c < grid.cols(); ++c) {
        const GridColumn& column = grid.column(c);
        setColumnHidden(c, column.hidden);
        if (column.hidden) continue;
        int content = 0;
        for (int r = 0; r < measured; ++r)
            content =
                std::max(content, cell_metrics.horizontalAdvance(model_->shown_text(model_->grid_row(r), c)));
        if (!total_text(c).isEmpty()) {
            QFont bold = font();
            bold.setBold(true);
            content = std::max(content, QFontMetrics(bold).horizontalAdvance(total_text(c)));
        }
        if (content > 0) content = std::min(content + cell_padding, std::max(cap, column.width * char_width));
        const int wanted = column.width > 0 ? column.width * char_width + 8 : columnWidth(c);
        const int heading = text_width(model_->headerData(c, Qt::Horizontal, Qt::DisplayRole).toString());
        setColumnWidth(c, std::max({wanted, heading, content}));
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
