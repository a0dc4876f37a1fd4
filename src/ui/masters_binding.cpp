#include "ui/masters_binding.h"

#include <QEvent>
#include <QItemSelectionModel>

#include "ui/grid_table_model.h"

namespace brenlow::ui::masters {

MasterWindow::MasterWindow(QWidget* parent) : QWidget(parent), ui_(this) {}

MasterWindow::~MasterWindow() {
    for (GridView* view : findChildren<GridView*>()) delete view;
}

void MasterWindow::run(const std::function<void()>& event) {
    take_input();
    event();
    refresh();
}

QPushButton* MasterWindow::button(const QString& caption, const std::function<void()>& event) {
    auto* b = new QPushButton(caption, this);
    b->setAutoDefault(false);
    connect(b, &QPushButton::clicked, this, [this, event] { run(event); });
    return b;
}

GridView* MasterWindow::grid_view(Grid& grid, const std::function<void(int)>& on_row) {
    auto* view = new GridView(this);
    view->show_grid(grid);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    connect(view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this, view, on_row](const QModelIndex& current) {
                if (refreshing_ || !current.isValid()) return;
                const int row = view->grid_model()->grid_row(current.row());
                run([&] { on_row(row); });
            });
    return view;
}

VTxtEdit* MasterWindow::entry_field(const vTXT& field) {
    auto* edit = new VTxtEdit(ui_, this);
    edit->field().read_properties(field.properties());
    edit->set_MaxLength(field.MaxLength());
    return edit;
}

void MasterWindow::show_field(VTxtEdit* edit, const vTXT& field, bool enabled) {
    const QString text = QString::fromUtf8(field.text().data(), static_cast<qsizetype>(field.text().size()));
    if (edit->text() != text) edit->setText(text);
    edit->setEnabled(enabled);
}

void MasterWindow::take_field(const VTxtEdit* edit, vTXT& field) {
    field.set_text(edit->text().toUtf8().toStdString());
}

void MasterWindow::show_combo(QComboBox* box, const brenlow::ComboBox& combo) {
    QStringList texts;
    for (const auto& item : combo.List.items()) texts << QString::fromStdString(item.text);
    QStringList shown;
    for (int i = 0; i < box->count(); ++i) shown << box->itemText(i);
    if (shown != texts) {
        box->clear();
        box->addItems(texts);
    }
    box->setPlaceholderText(brenlow::ComboBox::kNothingChosen);
    box->setCurrentIndex(combo.ListIndex);
    box->setEnabled(combo.Enabled);
    box->setVisible(combo.Visible);
}

void MasterWindow::take_combo(const QComboBox* box, brenlow::ComboBox& combo) {
    combo.ListIndex = box->currentIndex();
}

void MasterWindow::show_row(GridView* view, int grid_row) {
    const bool was = refreshing_;
    refreshing_ = true;
    auto* model = view->grid_model();
    const int model_row = grid_row - model->grid().fixed_rows();
    if (model_row >= 0 && model_row < model->rowCount()) {
        view->setCurrentIndex(model->index(model_row, 0));
        view->selectRow(model_row);
    } else {
        view->clearSelection();
    }
    refreshing_ = was;
}

}  // namespace brenlow::ui::masters
