#include "ui/masters_particulars_window.h"

#include <QCloseEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QMenu>
#include <QVBoxLayout>

#include "ui/masters_windows.h"

namespace brenlow::ui::masters {

using brenlow::masters::frmfamaster;

ParticularsMasterWindow::ParticularsMasterWindow(frame::Component& component, QWidget* parent)
    : MasterWindow(parent) {
    auto owned = std::make_unique<frmfamaster>(
        component, ui(), [this, &component](int kind) { run_block_master_dialog(component, kind, this); });
    screen_ = owned.get();
    own(std::move(owned));
    setWindowTitle(QString::fromStdString(screen_->Caption()));

    vsf_ = grid_view(screen_->vsf, [this](int row) { screen_->vsf_RowColChange(row); });
    for (int i = 0; i < frmfamaster::kFields; ++i) fields_[i] = entry_field(screen_->txtfields[i]);
    // A choice keeps the focus (a letter typed picks an entry); Enter or Tab moves on.
    for (auto*& box : combos_) box = new QComboBox(this);
    add_ = button("&Add", [this] { screen_->cmdaddded_Click(); });
    modify_ = button("&Modify", [this] { screen_->cmdmodifyded_Click(); });
    update_ = button("&Save", [this] { screen_->cmdupdateded_Click(); });
    delete_ = button("&Delete", [this] { screen_->cmddeleteded_Click(); });
    cancel_ = button("&Cancel", [this] { screen_->cmdcancelded_Click(); });
    back_ = button("&Back", [this] { screen_->cmdback_Click(); });
    block_ = new QPushButton("Bloc&k Master", this);
    block_->setAutoDefault(false);
    auto* menu = new QMenu(block_);
    menu->addAction("Company Block Master", this, [this] { run([this] { screen_->cmdblock_Click(1); }); });
    menu->addAction("Income Tax Block Master", this, [this] { run([this] { screen_->cmdblock_Click(2); }); });
    block_->setMenu(menu);

    auto* form = new QFormLayout;
    form->addRow("&Name of Asset", fields_[frmfamaster::kName]);
    form->addRow("M&ethod", combos_[0]);
    form->addRow("&Rate (Books)", fields_[frmfamaster::kRateBooks]);
    form->addRow("Rate (&I.Tax)", fields_[frmfamaster::kRateIT]);
    form->addRow("Block (B&ooks)", combos_[1]);
    form->addRow("Block (I.&Tax)", combos_[2]);
    auto* buttons = new QHBoxLayout;
    for (QPushButton* b : {add_, modify_, update_, delete_, cancel_, back_, block_}) buttons->addWidget(b);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(vsf_, 1);
    layout->addLayout(form);
    layout->addLayout(buttons);
    resize(900, 560);
    refresh();
}

void ParticularsMasterWindow::take_input() {
    for (int i = 0; i < frmfamaster::kFields; ++i) take_field(fields_[i], screen_->txtfields[i]);
    take_combo(combos_[0], screen_->Combo1);
    take_combo(combos_[1], screen_->Combo2);
    take_combo(combos_[2], screen_->Combo3);
}

void ParticularsMasterWindow::refresh() {
    refreshing_ = true;
    auto& s = *screen_;
    for (int i = 0; i < frmfamaster::kFields; ++i) show_field(fields_[i], s.txtfields[i], s.entering());
    show_combo(combos_[0], s.Combo1);
    show_combo(combos_[1], s.Combo2);
    show_combo(combos_[2], s.Combo3);
    const std::pair<QPushButton*, const brenlow::CommandButton*> buttons[] = {
        {add_, &s.cmdaddded},       {modify_, &s.cmdmodifyded}, {update_, &s.cmdupdateded},
        {delete_, &s.cmddeleteded}, {cancel_, &s.cmdcancelded}, {back_, &s.cmdback},
        {block_, &s.cmdblock}};
    for (const auto& [b, state] : buttons) b->setEnabled(state->Enabled);
    show_row(vsf_, s.vsf_Row());
    refreshing_ = false;
}

void ParticularsMasterWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        run([this] { screen_->Form_Activate(); });
    MasterWindow::changeEvent(event);
}

void ParticularsMasterWindow::closeEvent(QCloseEvent* event) {
    take_input();
    if (!screen_->Form_QueryUnload()) {
        event->ignore();
        return;
    }
    event->accept();
}

QWidget* make_particulars_master_window(frame::Component& component, QWidget* parent) {
    return new ParticularsMasterWindow(component, parent);
}

}  // namespace brenlow::ui::masters
