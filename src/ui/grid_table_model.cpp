#include "ui/grid_table_model.h"

#include <QPoint>
#include <QRegularExpression>
#include <QString>

#include "controls/number_format.h"

namespace brenlow {

namespace {

QString qs(const std::string& s) {
    return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
}

// Columns without an alignment of their own show numbers to the right, as the
// flex grid did.
Qt::Alignment cell_alignment(Align align, const std::string& text) {
    switch (align) {
        case Align::left:
            return Qt::AlignLeft | Qt::AlignVCenter;
        case Align::center:
            return Qt::AlignCenter;
        case Align::right:
            return Qt::AlignRight | Qt::AlignVCenter;
        case Align::general:
            break;
    }
    bool numeric = false;
    QString(qs(text)).remove(QLatin1Char(',')).toDouble(&numeric);
    return (numeric ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
}

// Amounts kept with two decimals and no grouping are shown in the practice's digit
// grouping (18,34,42,000.00); the cell keeps, and the editor gets, the plain figure.
bool grouped_on_screen(const GridColumn& column) {
    return column.combo.empty() && column.format == "###0.00";
}

}  // namespace

QString readable_keys(const QString& text) {
    if (!text.contains("{")) return text;
    QString out = text;
    static const std::pair<const char*, const char*> keys[] = {
        {"CTRL+{HOME}", "Ctrl+Home"},
        {"CTRL+{UP}", "Ctrl+Up"},
        {"CTRL+{DOWN}", "Ctrl+Down"},
        {"CTRL+{END}", "Ctrl+End"},
        {"SHIFT+{TAB}", "Shift+Tab"},
        {"{ENTER}", "Enter"},
        {"{F2}", "F2"},
        {"{ESC}", "Esc"},
    };
    for (const auto& [raw, shown] : keys) out.replace(QLatin1String(raw), QLatin1String(shown));
    out.replace(QLatin1String("Shortcut Keys :"), QLatin1String("  Shortcut keys:"));
    out.replace(QLatin1String(" OR "), QLatin1String(" or "));
    // The long run of spaces that stood in for a tab.
    out.replace(QRegularExpression(" {3,}"), QStringLiteral("   "));
    return out;
}

QString GridTableModel::shown_text(int row, int col) const {
    const GridColumn& column = grid_.column(col);
    if (grouped_on_screen(column)) {
        const std::string stored = grid_.text_matrix(row, col);
        if (const auto amount = parse_amount(stored)) return qs(format_mask(*amount, "#,##0.00"));
    }
    return readable_keys(qs(grid_.display_text(row, col)));
}

GridTableModel::GridTableModel(Grid& grid, QObject* parent) : QAbstractTableModel(parent), grid_(grid) {
    grid_.set_on_change([this](const GridChange& change) { on_grid_change(change); });
}

GridTableModel::~GridTableModel() {
    grid_.set_on_change(nullptr);
}

int GridTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : grid_.data_rows();
}

int GridTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : grid_.cols();
}

QVariant GridTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const int row = grid_row(index.row());
    const int col = index.column();
    switch (role) {
        case Qt::DisplayRole:
            return shown_text(row, col);
        case Qt::ToolTipRole: {
            // The whole value, for a cell too narrow to show it.
            const QString shown = shown_text(row, col);
            return shown.isEmpty() ? QVariant() : QVariant(shown);
        }
        case Qt::EditRole:
            return qs(grid_.text_matrix(row, col));
        case Qt::TextAlignmentRole:
            return QVariant::fromValue(
                cell_alignment(grid_.column(col).alignment, grid_.display_text(row, col)));
        case ComboListRole:
            return qs(grid_.column(col).combo_list);
        default:
            return {};
    }
}

bool GridTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || role != Qt::EditRole) return false;
    // The grid's hook reports the change back as dataChanged.
    grid_.set_text_matrix(grid_row(index.row()), index.column(), value.toString().toStdString());
    return true;
}

Qt::ItemFlags GridTableModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::NoItemFlags;
    Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (grid_.column(index.column()).editable) f |= Qt::ItemIsEditable;
    return f;
}

QVariant GridTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical) {
        return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
    }
    if (section < 0 || section >= grid_.cols() || grid_.fixed_rows() == 0) return {};
    const int last = grid_.fixed_rows() - 1;
    switch (role) {
        case Qt::DisplayRole:
            return qs(grid_.text_matrix(last, section));
        case BandRole: {
            const CellSpan span = grid_.heading_span(0, section);
            return span.row1 == 0 && last > 0 ? qs(grid_.text_matrix(0, section)) : QString();
        }
        case BandSpanRole: {
            const CellSpan span = grid_.heading_span(0, section);
            return QPoint(span.col0, span.col1);
        }
        default:
            return {};
    }
}

void GridTableModel::on_grid_change(const GridChange& change) {
    const int fixed = grid_.fixed_rows();
    // Rows of the change as model rows; heading rows have none.
    const int first = std::max(change.first, fixed) - fixed;
    const int last = change.last - fixed;
    using K = GridChange::Kind;
    switch (change.kind) {
        case K::cells:
            if (change.last < fixed) {
                emit headerDataChanged(Qt::Horizontal, change.first_col, change.last_col);
            } else {
                emit dataChanged(index(first, change.first_col), index(last, change.last_col));
            }
            break;
        case K::rows_inserting:
            beginInsertRows({}, first, last);
            break;
        case K::rows_inserted:
            endInsertRows();
            break;
        case K::rows_removing:
            beginRemoveRows({}, first, last);
            break;
        case K::rows_removed:
            endRemoveRows();
            break;
        case K::resetting:
            beginResetModel();
            break;
        case K::reset:
            endResetModel();
            emit columnsChanged();
            break;
        case K::columns:
            if (grid_.data_rows() > 0) {
                emit dataChanged(index(0, change.first_col), index(grid_.data_rows() - 1, change.last_col));
            }
            emit columnsChanged();
            break;
    }
}

}  // namespace brenlow
