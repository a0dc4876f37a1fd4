#include "ui/schedules_window.h"

#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QVBoxLayout>
#include <algorithm>

#include "schedules/schedule_kinds.h"
#include "ui/grid_table_model.h"

namespace brenlow::ui {
namespace {

using schedules::formatsch;

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

struct OwnUi {
    explicit OwnUi(QWidget* host) : own_ui(host) {}
    QtUi own_ui;
};

class DesktopSchedulesScreen : private OwnUi, public formatsch {
public:
    DesktopSchedulesScreen(frame::Component& component, QWidget* host)
        : OwnUi(host), formatsch(component, own_ui) {}
    QtUi& window_ui() { return own_ui; }
};

// Cells typed in place go through the window, so the screen checks and follows them.
class SchedulesDelegate : public GridItemDelegate {
public:
    SchedulesDelegate(SchedulesWindow* window) : GridItemDelegate(window), window_(window) {}
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override {
        auto* grid_model = static_cast<GridTableModel*>(model);
        const int row = grid_model->grid_row(index.row());
        if (auto* line = qobject_cast<QLineEdit*>(editor)) {
            window_->edit_cell(row, index.column(), line->text());
            return;
        }
        GridItemDelegate::setModelData(editor, model, index);
        window_->edit_cell(row, index.column(), q(grid_model->grid().text_matrix(row, index.column())));
    }

private:
    SchedulesWindow* window_;
};

}  // namespace

SchedulesWindow::SchedulesWindow(std::shared_ptr<formatsch> screen, QWidget* parent)
    : ScreenWindow(parent), screen_(std::move(screen)) {
    if (auto* own = dynamic_cast<DesktopSchedulesScreen*>(screen_.get())) own->window_ui().set_window(this);
    setWindowTitle(q(screen_->Caption()));

    auto* side = new QVBoxLayout;
    const auto& kinds = schedules::sched_kinds();
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        const int group = kinds[i].group;
        auto* b = button(q(screen_->buttons[i].Caption), [this, group] { screen_->cmd_Click(group); });
        b->setObjectName(kinds[i].button);
        side->addWidget(b);
        schedule_buttons_.push_back(b);
    }
    side->addStretch(1);

    title_ = new QLabel(this);
    title_->setObjectName("lblTitle");
    QFont f = title_->font();
    f.setBold(true);
    f.setPointSizeF(f.pointSizeF() * 1.2);
    title_->setFont(f);
    message_ = new QLabel("The Fixed Assets schedule is shown in its own window.", this);
    vsf1_ = grid_view(screen_->vsf1, &tb_row_);
    vsf1_->show_totals(true);
    vsf1_->setObjectName("vsf1");
    connect(vsf1_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& at) {
                if (refreshing_ || !at.isValid()) return;
                screen_->vsf1_RowColChange(vsf1_->grid_model()->grid_row(at.row()), at.column());
            });
    vsf1_->setItemDelegate(new SchedulesDelegate(this));
    vsf1_->setSelectionBehavior(QAbstractItemView::SelectItems);
    vsf1_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                           QAbstractItemView::AnyKeyPressed);

    panel_ = new QWidget(this);
    auto* panel_layout = new QVBoxLayout(panel_);
    panel_layout->setContentsMargins(0, 0, 0, 0);
    panel_layout->addWidget(new QLabel("<b>Trial Balance</b>", panel_));
    vsTB_ = grid_view(screen_->vsTB, &tb_row_, panel_);
    vsTB_->show_totals(true);
    vsTB_->setObjectName("vsTB");
    panel_layout->addWidget(vsTB_);

    add_ = button("&Add", [this] { screen_->cmdAdd_Click(); });
    del_ = button("&Delete", [this] { screen_->cmddel_Click(); });
    print_ = button("&Print", [this] { screen_->cmdPrint_Click(); });
    shtb_ = button(q(screen_->cmdshtb.Caption), [this] { screen_->cmdshtb_Click(); });
    auto* commands = new QHBoxLayout;
    for (QPushButton* b : {add_, del_, print_, shtb_}) commands->addWidget(b);
    commands->addStretch(1);
    auto* close = new QPushButton("&Close", this);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    commands->addWidget(close);

    auto* centre = new QHBoxLayout;
    centre->addWidget(vsf1_, 1);
    panel_->setFixedWidth(400);
    centre->addWidget(panel_);
    auto* main = new QVBoxLayout;
    main->addWidget(title_);
    main->addWidget(message_);
    main->addLayout(centre, 1);
    main->addLayout(commands);
    auto* layout = new QHBoxLayout(this);
    layout->addLayout(side);
    layout->addLayout(main, 1);
    resize(1180, 520);

    run([this] { screen_->Form_Load(); });
}

SchedulesWindow::~SchedulesWindow() {
    drop_grid_views();
}

void SchedulesWindow::edit_cell(int grid_row, int col, const QString& text) {
    run([&] {
        if (!screen_->vsf1_ValidateEdit(grid_row, col, text.toStdString())) return;
        screen_->vsf1.set_text_matrix(grid_row, col, text.toStdString());
        screen_->vsf1_RowColChange(grid_row, col);
        screen_->vsf1_AfterEdit(grid_row, col);
    });
}

void SchedulesWindow::closeEvent(QCloseEvent* event) {
    bool saved = true;
    run([&] { saved = screen_->save(); });
    if (saved)
        event->accept();
    else
        event->ignore();
}

void SchedulesWindow::refresh() {
    refreshing_ = true;
    for (std::size_t i = 0; i < schedule_buttons_.size(); ++i) {
        schedule_buttons_[i]->setText(q(screen_->buttons[i].Caption));
        schedule_buttons_[i]->setVisible(screen_->buttons[i].Visible);
    }
    title_->setText(screen_->current() ? q(screen_->lblTitle.Caption) : QString("No schedule is open"));
    message_->setVisible(screen_->message_frame_visible);
    panel_->setVisible(screen_->panel_visible);
    shtb_->setText(q(screen_->cmdshtb.Caption));
    const bool open = screen_->current() != nullptr;
    add_->setEnabled(open && screen_->cmdAdd.Enabled);
    del_->setEnabled(open && screen_->cmddel.Enabled);
    print_->setEnabled(open);
    if (screen_->dropped_row() >= 0) {
        const auto index = vsf1_->model()->index(screen_->dropped_row() - screen_->vsf1.fixed_rows(),
                                                 screen_->dropped_col());
        vsf1_->setCurrentIndex(index);
        vsf1_->edit(index);
        screen_->dropped_shown();
    } else if (screen_->vsf1_Row() >= screen_->vsf1.fixed_rows() &&
               screen_->vsf1_Row() < screen_->vsf1.rows()) {
        vsf1_->setCurrentIndex(vsf1_->model()->index(screen_->vsf1_Row() - screen_->vsf1.fixed_rows(),
                                                     std::max(0, screen_->vsf1_Col())));
    }
    refreshing_ = false;
}

std::shared_ptr<formatsch> make_schedules_screen(frame::Component& component, QWidget* host) {
    return std::make_shared<DesktopSchedulesScreen>(component, host);
}

QWidget* make_schedules_window(std::shared_ptr<frame::Screen> screen, QWidget* parent) {
    auto sched = std::dynamic_pointer_cast<formatsch>(screen);
    if (!sched) return nullptr;
    return new SchedulesWindow(std::move(sched), parent);
}

}  // namespace brenlow::ui
