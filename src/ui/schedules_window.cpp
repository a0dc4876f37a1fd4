#include "ui/schedules_window.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
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

// The schedule's own totals line, painted under the grid's columns: what adds up in a
// schedule is the schedule's rule (no rates or counts; authorised capital and the
// debtors' classification lines add nothing), not every column of figures.
class ScheduleTotalsLine : public QWidget {
public:
    ScheduleTotalsLine(GridView* view, const formatsch& screen, QWidget* parent)
        : QWidget(parent), view_(view), screen_(screen) {
        setObjectName("vsf1Totals");
        setFixedHeight(view->verticalHeader()->defaultSectionSize() + 4);
        connect(view->horizontalHeader(), &QHeaderView::sectionResized, this, [this] { update(); });
        connect(view->horizontalScrollBar(), &QScrollBar::valueChanged, this, [this] { update(); });
    }

protected:
    void paintEvent(QPaintEvent*) override {
        const auto texts = screen_.totals();
        QPainter painter(this);
        painter.fillRect(rect(), palette().alternateBase());
        painter.setPen(palette().mid().color());
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
        painter.setPen(palette().text().color());
        QFont bold = font();
        bold.setBold(true);
        painter.setFont(bold);
        auto* header = view_->horizontalHeader();
        // The grid's cells start after its frame and its row headings.
        const int left = view_->viewport()->geometry().left();
        const int margin = style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, view_) + 1;
        for (int c = 0; c < header->count() && c < static_cast<int>(texts.size()); ++c) {
            const QString text = QString::fromStdString(texts[static_cast<std::size_t>(c)]);
            if (text.isEmpty() || view_->isColumnHidden(c)) continue;
            const bool figure = !text.isEmpty() && (text[0].isDigit() || text[0] == '-');
            const QRect cell(left + header->sectionViewportPosition(c) + margin, 0,
                             (figure ? header->sectionSize(c) : width()) - 2 * margin, height());
            painter.drawText(cell, (figure ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter, text);
        }
    }

private:
    GridView* view_;
    const formatsch& screen_;
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
    year_ = new QLabel(this);
    year_->setObjectName("lblYear");
    vsf1_ = grid_view(screen_->vsf1, &tb_row_);
    vsf1_->setObjectName("vsf1");
    totals_ = new ScheduleTotalsLine(vsf1_, *screen_, this);
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
    merge_ = button("&Merge Entries", [this] { screen_->cmdmerge_Click(); });
    prev_ = button(q(formatsch::kPreviousYear), [this] { screen_->cmdprev_Click(); });
    newchart_ = button("&New Chart", [this] { screen_->cmdnewchart_Click(); });
    merge_->setObjectName("cmdmerge");
    prev_->setObjectName("cmdprev");
    newchart_->setObjectName("cmdnewchart");
    auto* commands = new QHBoxLayout;
    for (QPushButton* b : {add_, del_, print_, shtb_, merge_, prev_, newchart_}) commands->addWidget(b);
    commands->addStretch(1);
    auto* close = new QPushButton("&Close", this);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    commands->addWidget(close);

    auto* centre = new QHBoxLayout;
    auto* schedule = new QVBoxLayout;
    schedule->setSpacing(0);
    schedule->addWidget(vsf1_, 1);
    schedule->addWidget(totals_);
    centre->addLayout(schedule, 1);
    panel_->setFixedWidth(400);
    centre->addWidget(panel_);
    auto* main = new QVBoxLayout;
    auto* heading = new QHBoxLayout;
    heading->addWidget(title_);
    heading->addStretch(1);
    heading->addWidget(year_);
    main->addLayout(heading);
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
    totals_->update();
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
    prev_->setText(q(screen_->cmdprev.Caption));
    year_->setText(q(screen_->lblYear.Caption));
    totals_->setVisible(screen_->current() != nullptr);
    totals_->update();
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
