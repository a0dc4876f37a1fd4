#include "ui/chart_editor_window.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>

#include "ui/grid_table_model.h"

namespace brenlow::ui {
namespace {

QString q(const std::string& s) {
    return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
}

}  // namespace

ChartEditorWindow::ChartEditorWindow(frame::Component& component, QWidget* parent) : ScreenWindow(parent) {
    screen_ = std::make_unique<reg::frmDeprChartEdit>(component, ui());
    setWindowTitle(q(screen_->Caption()));
    auto* layout = new QVBoxLayout(this);
    title_ = new QLabel(this);
    layout->addWidget(title_);
    vsChart_ = new GridView(this);
    vsChart_->setObjectName("vsChart");
    vsChart_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    layout->addWidget(vsChart_, 1);
    const auto edit_current = [this](const QModelIndex& index) {
        if (index.isValid()) edit_cell(vsChart_->grid_model()->grid_row(index.row()), index.column());
    };
    // A double click or Enter on a cell (the view's activation) types its amount.
    connect(vsChart_, &QAbstractItemView::activated, this, edit_current);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    save_ = button(
        "&Save", [this] { screen_->cmdSave_Click(); }, this);
    clear_ = button(
        "C&lear", [this] { screen_->cmdClear_Click(); }, this);
    buttons->addWidget(save_);
    buttons->addWidget(clear_);
    buttons->addWidget(button(
        "&Back", [this] { screen_->cmdBack_Click(); }, this));
    layout->addLayout(buttons);
    resize(1200, 500);
}

ChartEditorWindow::~ChartEditorWindow() {
    drop_grid_views();
}

bool ChartEditorWindow::load() {
    bool loaded = false;
    run([&] { loaded = screen_->Form_Load(); });
    if (loaded) vsChart_->show_grid(screen_->vsChart);
    refresh();
    return loaded;
}

void ChartEditorWindow::edit_cell(int grid_row, int col) {
    if (grid_row < screen_->vsChart.fixed_rows() || col < 0 || col >= screen_->vsChart.cols()) return;
    if (!screen_->vsChart.column(col).editable) return;
    const auto typed = ui().input_box(screen_->vsChart.text_matrix(0, col), screen_->lblTitle,
                                      screen_->vsChart.text_matrix(grid_row, col));
    if (typed) run([&] { screen_->vsChart_ValidateEdit(grid_row, col, *typed); });
}

void ChartEditorWindow::refresh() {
    title_->setText(q(screen_->lblTitle));
    save_->setEnabled(screen_->cmdSave.Enabled);
    clear_->setEnabled(screen_->cmdClear.Enabled);
}

}  // namespace brenlow::ui
