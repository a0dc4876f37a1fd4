#include "ui/window_base.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QCoreApplication>
#include <QEvent>
#include <QFormLayout>
#include <QGridLayout>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QScrollArea>
#include <QSplitter>
#include <algorithm>
#include <tuple>
#include <vector>

#include "ui/grid_table_model.h"

namespace brenlow::ui {

ScreenWindow::ScreenWindow(QWidget* parent) : QWidget(parent), ui_(this) {
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now && now != this && isAncestorOf(now) && !qobject_cast<QAbstractButton*>(now))
            last_field_ = now;
    });
}

ScreenWindow::~ScreenWindow() {
    drop_grid_views();
}

void ScreenWindow::drop_grid_views() {
    for (GridView* view : findChildren<GridView*>()) delete view;
}

void ScreenWindow::run(const std::function<void()>& event) {
    if (refreshing_) return;
    take_input();
    event();
    refresh();
}

QPushButton* ScreenWindow::button(const QString& caption, const std::function<void()>& event,
                                  QWidget* parent) {
    auto* b = new QPushButton(caption, parent ? parent : this);
    b->setAutoDefault(false);
    connect(b, &QPushButton::clicked, this, [this, event] { run(event); });
    return b;
}

GridView* ScreenWindow::new_grid_view(Grid& grid, QWidget* parent) {
    auto* view = new GridView(parent ? parent : this);
    view->show_grid(grid);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    return view;
}

GridView* ScreenWindow::grid_view(Grid& grid, const std::function<void(int)>& on_row, QWidget* parent) {
    auto* view = new_grid_view(grid, parent);
    connect(view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this, view, on_row](const QModelIndex& current) {
                if (refreshing_ || !current.isValid()) return;
                const int row = view->grid_model()->grid_row(current.row());
                run([&] { on_row(row); });
            });
    return view;
}

GridView* ScreenWindow::grid_view(Grid& grid, int* row, QWidget* parent) {
    auto* view = new_grid_view(grid, parent);
    connect(view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this, view, row](const QModelIndex& current) {
                if (refreshing_ || !current.isValid()) return;
                *row = view->grid_model()->grid_row(current.row());
            });
    return view;
}

VTxtEdit* ScreenWindow::entry_field(const vTXT& field, QWidget* parent) {
    auto* edit = new VTxtEdit(ui_, parent ? parent : this);
    edit->field().read_properties(field.properties());
    edit->set_MaxLength(field.MaxLength());
    return edit;
}

void ScreenWindow::show_field(VTxtEdit* edit, const vTXT& field, bool enabled) {
    const QString text = QString::fromUtf8(field.text().data(), static_cast<qsizetype>(field.text().size()));
    if (edit->text() != text) edit->setText(text);
    edit->setEnabled(enabled);
}

void ScreenWindow::take_field(const VTxtEdit* edit, vTXT& field) {
    field.set_text(edit->text().toUtf8().toStdString());
}

void ScreenWindow::show_combo(QComboBox* box, const brenlow::ComboBox& combo) {
    QStringList texts;
    for (const auto& item : combo.List.items()) texts << readable_keys(QString::fromStdString(item.text));
    QStringList shown;
    for (int i = 0; i < box->count(); ++i) shown << box->itemText(i);
    if (shown != texts) {
        box->clear();
        box->addItems(texts);
        // The longest entry reads whole however narrow the column it stands in.
        box->setMinimumWidth(box->sizeHint().width());
    }
    box->setCurrentIndex(combo.ListIndex);
    box->setEnabled(combo.Enabled);
    box->setVisible(combo.Visible);
}

void ScreenWindow::take_combo(const QComboBox* box, brenlow::ComboBox& combo) {
    combo.ListIndex = box->currentIndex();
}

void ScreenWindow::show_row(GridView* view, int grid_row) {
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

void ScreenWindow::settle_keyboard() {
    tab_in_screen_order(this);
    give_combos_entry_manners(this);
}

void ScreenWindow::showEvent(QShowEvent* event) {
    if (!settled_) {
        settled_ = true;
        settle_keyboard();
    }
    QWidget::showEvent(event);
}

namespace {

void collect(QWidget* widget, std::vector<QWidget*>& out);

// A layout's items by row, then column (box layouts keep their own order).
void collect(QLayout* layout, std::vector<QWidget*>& out) {
    std::vector<std::tuple<int, int, int>> order;
    for (int i = 0; i < layout->count(); ++i) {
        int row = i;
        int column = 0;
        if (auto* grid = qobject_cast<QGridLayout*>(layout)) {
            int row_span = 0, column_span = 0;
            grid->getItemPosition(i, &row, &column, &row_span, &column_span);
        } else if (auto* form = qobject_cast<QFormLayout*>(layout)) {
            QFormLayout::ItemRole role{};
            form->getItemPosition(i, &row, &role);
            column = role == QFormLayout::FieldRole ? 1 : 0;
        }
        order.emplace_back(row, column, i);
    }
    std::stable_sort(order.begin(), order.end());
    for (const auto& [row, column, i] : order) {
        QLayoutItem* item = layout->itemAt(i);
        if (QWidget* w = item->widget())
            collect(w, out);
        else if (QLayout* inner = item->layout())
            collect(inner, out);
    }
}

void collect(QWidget* widget, std::vector<QWidget*>& out) {
    // A scroll area takes the focus itself, but Tab goes through what it holds.
    if (auto* scroll = qobject_cast<QScrollArea*>(widget); scroll && scroll->widget()) {
        collect(scroll->widget(), out);
        return;
    }
    if (widget->focusPolicy() & Qt::TabFocus) {
        out.push_back(widget);
        return;
    }
    if (auto* splitter = qobject_cast<QSplitter*>(widget)) {
        for (int i = 0; i < splitter->count(); ++i) collect(splitter->widget(i), out);
    } else if (widget->layout()) {
        collect(widget->layout(), out);
    }
}

class ComboManners : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* box = qobject_cast<QComboBox*>(watched);
        if (!box) return false;
        if (event->type() == QEvent::Wheel && !box->hasFocus()) {
            // Passed on to the parents, so the frame around the box scrolls.
            event->ignore();
            return true;
        }
        if (event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent*>(event)->key();
            if ((key == Qt::Key_Return || key == Qt::Key_Enter) && !box->view()->isVisible()) {
                // On as Tab goes.
                QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
                QCoreApplication::sendEvent(box, &tab);
                return true;
            }
        }
        return false;
    }
};

}  // namespace

std::vector<QWidget*> controls_in_screen_order(QWidget* root) {
    std::vector<QWidget*> out;
    if (root->layout()) collect(root->layout(), out);
    return out;
}

void tab_in_screen_order(QWidget* root) {
    const auto controls = controls_in_screen_order(root);
    for (std::size_t i = 1; i < controls.size(); ++i) QWidget::setTabOrder(controls[i - 1], controls[i]);
}

void give_combos_entry_manners(QWidget* root) {
    auto* manners = root->findChild<QObject*>("comboManners", Qt::FindDirectChildrenOnly);
    if (!manners) {
        manners = new ComboManners(root);
        manners->setObjectName("comboManners");
    }
    for (auto* box : root->findChildren<QComboBox*>()) {
        box->setFocusPolicy(Qt::StrongFocus);
        box->installEventFilter(manners);
    }
}

}  // namespace brenlow::ui
