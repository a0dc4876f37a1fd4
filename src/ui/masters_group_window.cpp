#include "ui/masters_group_window.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/grid_table_model.h"
#include "ui/masters_windows.h"

namespace brenlow::ui::masters {

using brenlow::masters::frmNewFAGM;

GroupMasterWindow::GroupMasterWindow(frame::Component& component, QWidget* parent) : MasterWindow(parent) {
    auto owned = std::make_unique<frmNewFAGM>(
        component, ui(), [this, &component](int kind) { run_block_master_dialog(component, kind, this); });
    screen_ = owned.get();
    own(std::move(owned));
    setWindowTitle(QString::fromStdString(screen_->Caption()));

    vsM_ = grid_view(screen_->vsM, [this](int row) { screen_->vsM_RowColChange(row); });
    vsIT_ = chooser(screen_->vsIT, &frmNewFAGM::vsIT_Click);
    vsFA_ = chooser(screen_->vsFA, &frmNewFAGM::vsFA_Click);
    vsCL_ = chooser(screen_->vsCL, &frmNewFAGM::vsCL_Click);
    txtfields_ = entry_field(screen_->txtfields);
    rate_it_ = entry_field(screen_->txtRateIT);
    addl_rate_it_ = entry_field(screen_->txtAddlRateIT);
    rate_fa_ = entry_field(screen_->txtRateFA);
    life_yrs_ = entry_field(screen_->txtLifeYrs);
    rate_slm_ = entry_field(screen_->txtRateSLM);
    rate_wdv_ = entry_field(screen_->txtRateWDV);
    lbl_it_ = new QLabel(this);
    lbl_fa_ = new QLabel(this);
    lbl_cl_ = new QLabel(this);
    for (QLabel* l : {lbl_it_, lbl_fa_, lbl_cl_}) {
        l->setFrameShape(QFrame::StyledPanel);
        l->setMinimumWidth(260);
    }
    block_it_ = button("Income-&Tax Block...", [this] { screen_->cmdBlockIT_Click(); });
    block_fa_ = button("Block as per B&ooks...", [this] { screen_->cmdBlockFA_Click(); });
    block_cl_ = button("Companies Act C&lass...", [this] { screen_->cmdBlockCL_Click(); });
    add_ = button("&Add", [this] { screen_->cmdAdd_Click(); });
    modify_ = button("&Modify", [this] { screen_->cmdModify_Click(); });
    update_ = button("&Save", [this] { screen_->cmdUpdate_Click(); });
    delete_ = button("&Delete", [this] { screen_->cmdDelete_Click(); });
    cancel_ = button("&Cancel", [this] { screen_->cmdCancel_Click(); });
    back_ = button("&Back", [this] { screen_->cmdback_Click(); });

    auto* fields = new QGridLayout;
    auto* name_label = new QLabel("Asset &Group", this);
    name_label->setBuddy(txtfields_);
    fields->addWidget(name_label, 0, 0);
    fields->addWidget(txtfields_, 0, 1, 1, 5);
    fields->addWidget(block_it_, 1, 0);
    fields->addWidget(lbl_it_, 1, 1);
    fields->addWidget(new QLabel("Rate", this), 1, 2);
    fields->addWidget(rate_it_, 1, 3);
    fields->addWidget(new QLabel("Addl. Rate", this), 1, 4);
    fields->addWidget(addl_rate_it_, 1, 5);
    fields->addWidget(block_fa_, 2, 0);
    fields->addWidget(lbl_fa_, 2, 1);
    fields->addWidget(new QLabel("Rate", this), 2, 2);
    fields->addWidget(rate_fa_, 2, 3);
    fields->addWidget(block_cl_, 3, 0);
    fields->addWidget(lbl_cl_, 3, 1);
    fields->addWidget(new QLabel("Life (Yrs)", this), 3, 2);
    fields->addWidget(life_yrs_, 3, 3);
    auto* cl_rates = new QHBoxLayout;
    cl_rates->addWidget(new QLabel("SLM", this));
    cl_rates->addWidget(rate_slm_);
    cl_rates->addWidget(new QLabel("WDV", this));
    cl_rates->addWidget(rate_wdv_);
    fields->addLayout(cl_rates, 3, 4, 1, 2);
    fields->setColumnStretch(1, 1);
    auto* buttons = new QHBoxLayout;
    for (QPushButton* b : {add_, modify_, update_, delete_, cancel_, back_}) buttons->addWidget(b);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(vsM_, 2);
    layout->addLayout(fields);
    for (GridView* c : {vsIT_, vsFA_, vsCL_}) layout->addWidget(c, 3);
    layout->addLayout(buttons);
    resize(1100, 640);
    refresh();
}

GridView* GroupMasterWindow::chooser(Grid& grid, void (frmNewFAGM::*click)(int)) {
    auto* view = grid_view(grid, [](int) {});
    // A click or Enter on a row chooses it.
    auto choose = [this, view, click](const QModelIndex& index) {
        if (!index.isValid()) return;
        const int row = view->grid_model()->grid_row(index.row());
        auto* screen = screen_;
        run([screen, click, row] { (screen->*click)(row); });
    };
    connect(view, &QAbstractItemView::clicked, this, choose);
    connect(view, &QAbstractItemView::activated, this, choose);
    view->horizontalHeader()->setSectionResizeMode(frmNewFAGM::kColNature, QHeaderView::Stretch);
    view->hide();
    return view;
}

void GroupMasterWindow::take_input() {
    take_field(txtfields_, screen_->txtfields);
    take_field(rate_it_, screen_->txtRateIT);
    take_field(addl_rate_it_, screen_->txtAddlRateIT);
    take_field(rate_fa_, screen_->txtRateFA);
    take_field(life_yrs_, screen_->txtLifeYrs);
    take_field(rate_slm_, screen_->txtRateSLM);
    take_field(rate_wdv_, screen_->txtRateWDV);
}

void GroupMasterWindow::refresh() {
    refreshing_ = true;
    auto& s = *screen_;
    show_field(txtfields_, s.txtfields, !s.locked(s.txtfields));
    const std::pair<VTxtEdit*, vTXT*> fields[] = {
        {rate_it_, &s.txtRateIT},   {addl_rate_it_, &s.txtAddlRateIT}, {rate_fa_, &s.txtRateFA},
        {life_yrs_, &s.txtLifeYrs}, {rate_slm_, &s.txtRateSLM},        {rate_wdv_, &s.txtRateWDV}};
    for (const auto& [edit, field] : fields) show_field(edit, *field, !s.locked(*field));
    lbl_it_->setText(QString::fromStdString(s.lblBlockIT.Caption));
    lbl_fa_->setText(QString::fromStdString(s.lblBlockFA.Caption));
    lbl_cl_->setText(QString::fromStdString(s.lblBlockCL.Caption));
    const std::pair<QPushButton*, const brenlow::CommandButton*> buttons[] = {
        {add_, &s.cmdAdd},          {modify_, &s.cmdModify},    {update_, &s.cmdUpdate},
        {delete_, &s.cmdDelete},    {cancel_, &s.cmdCancel},    {back_, &s.cmdback},
        {block_it_, &s.cmdBlockIT}, {block_fa_, &s.cmdBlockFA}, {block_cl_, &s.cmdBlockCL}};
    for (const auto& [b, state] : buttons) b->setEnabled(state->Enabled);
    const std::pair<GridView*, bool> choosers[] = {
        {vsIT_, s.vsIT_Visible}, {vsFA_, s.vsFA_Visible}, {vsCL_, s.vsCL_Visible}};
    for (const auto& [view, visible] : choosers) {
        view->setVisible(visible);
        if (visible) view->setFocus();
    }
    show_row(vsM_, s.vsM_Row());
    refreshing_ = false;
}

void GroupMasterWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        run([this] { screen_->Form_Activate(); });
    MasterWindow::changeEvent(event);
}

void GroupMasterWindow::closeEvent(QCloseEvent* event) {
    take_input();
    if (!screen_->Form_QueryUnload()) {
        event->ignore();
        return;
    }
    event->accept();
}

QWidget* make_group_master_window(frame::Component& component, QWidget* parent) {
    return new GroupMasterWindow(component, parent);
}

}  // namespace brenlow::ui::masters
