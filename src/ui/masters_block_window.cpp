#include "ui/masters_block_window.h"

#include <QDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/masters_windows.h"

namespace brenlow::ui::masters {

using brenlow::masters::frmblockM;

BlockMasterWindow::BlockMasterWindow(frame::Component& component, int kind, QWidget* parent)
    : MasterWindow(parent) {
    auto owned = std::make_unique<frmblockM>(component, ui(), kind);
    screen_ = owned.get();
    own(std::move(owned));
    setWindowTitle(QString::fromStdString(screen_->Caption()));

    vsf_ = grid_view(screen_->vsf, [this](int row) { screen_->vsf_RowColChange(row); });
    txtfields_ = entry_field(screen_->txtfields);
    under_label_ = new QLabel(QString::fromStdString(screen_->lblUnderBlock.Caption), this);
    combo1_ = new QComboBox(this);
    // A choice moves on to the next control, as Tab would.
    connect(combo1_, &QComboBox::activated, this, [this] { focusNextChild(); });
    add_ = button("&Add", [this] { screen_->cmdaddded_Click(); });
    modify_ = button("&Modify", [this] { screen_->cmdmodifyded_Click(); });
    update_ = button("&Save", [this] { screen_->cmdupdateded_Click(); });
    delete_ = button("&Delete", [this] { screen_->cmddeleteded_Click(); });
    cancel_ = button("&Cancel", [this] { screen_->cmdcancelded_Click(); });
    back_ = button("&Back", [this] { screen_->cmdback_Click(); });

    auto* form = new QFormLayout;
    form->addRow("&Name of Block", txtfields_);
    form->addRow(under_label_, combo1_);
    auto* buttons = new QHBoxLayout;
    for (QPushButton* b : {add_, modify_, update_, delete_, cancel_, back_}) buttons->addWidget(b);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(vsf_, 1);
    layout->addLayout(form);
    layout->addLayout(buttons);
    resize(560, 420);
    refresh();
}

void BlockMasterWindow::take_input() {
    take_field(txtfields_, screen_->txtfields);
    take_combo(combo1_, screen_->Combo1);
}

void BlockMasterWindow::refresh() {
    refreshing_ = true;
    show_field(txtfields_, screen_->txtfields, screen_->entering());
    show_combo(combo1_, screen_->Combo1);
    under_label_->setVisible(screen_->Combo1.Visible);
    add_->setEnabled(screen_->cmdaddded.Enabled);
    modify_->setEnabled(screen_->cmdmodifyded.Enabled);
    update_->setEnabled(screen_->cmdupdateded.Enabled);
    delete_->setEnabled(screen_->cmddeleteded.Enabled);
    cancel_->setEnabled(screen_->cmdcancelded.Enabled);
    back_->setEnabled(screen_->cmdback.Enabled);
    show_row(vsf_, screen_->vsf_Row());
    if (screen_->entering() && !txtfields_->hasFocus()) txtfields_->setFocus();
    refreshing_ = false;
}

QWidget* make_block_master_window(frame::Component& component, int kind, QWidget* parent) {
    return new BlockMasterWindow(component, kind, parent);
}

void run_block_master_dialog(frame::Component& component, int kind, QWidget* parent) {
    QDialog dialog(parent);
    auto* window = new BlockMasterWindow(component, kind, &dialog);
    dialog.setWindowTitle(window->windowTitle());
    auto* layout = new QVBoxLayout(&dialog);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(window);
    dialog.resize(window->size());
    dialog.exec();
}

}  // namespace brenlow::ui::masters
