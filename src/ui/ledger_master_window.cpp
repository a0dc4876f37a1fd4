#include "ui/ledger_master_window.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QShortcut>
#include <QVBoxLayout>

#include "ui/grid_table_model.h"

namespace brenlow::ui {

using capital::frmcapledmas;

LedgerMasterWindow::LedgerMasterWindow(frame::Component& component, QWidget* parent)
    : ScreenWindow(parent), screen_(std::make_unique<frmcapledmas>(component, ui())) {
    auto& s = *screen_;
    s.Form_Load();
    setWindowTitle(QString::fromStdString(s.Caption()));
    cboMaster_ = new QComboBox(this);
    connect(cboMaster_, &QComboBox::activated, this, [this] { run([this] { screen_->cboMaster_Click(); }); });
    cboLink_ = new QComboBox(this);
    vsf_ = grid_view(s.vsf, [this](int row) { screen_->vsf_RowColChange(row); });
    vsf_->setObjectName("vsf");
    // A click on the tick cell, or Space, ticks the row.
    connect(vsf_, &QAbstractItemView::clicked, this, [this](const QModelIndex& index) {
        if (index.column() != frmcapledmas::kColTick) return;
        const int row = vsf_->grid_model()->grid_row(index.row());
        run([this, row] { screen_->vsf_Tick(row); });
    });
    auto* space = new QShortcut(QKeySequence(Qt::Key_Space), vsf_, nullptr, nullptr, Qt::WidgetShortcut);
    connect(space, &QShortcut::activated, this, [this] {
        const int row = screen_->vsf_Row();
        run([this, row] { screen_->vsf_Tick(row); });
    });
    txtName_ = entry_field(s.txtName);

    auto* row1 = new QHBoxLayout;
    auto* row2 = new QHBoxLayout;
    for (const auto& [caption, event, state, row] :
         std::vector<std::tuple<QString, std::function<void()>, const CommandButton*, QHBoxLayout*>>{
             {"&Add", [this] { screen_->cmdAdd_Click(); }, &s.cmdAdd, row1},
             {"&Modify", [this] { screen_->cmdModify_Click(); }, &s.cmdModify, row1},
             {"&Save", [this] { screen_->cmdUpdate_Click(); }, &s.cmdUpdate, row1},
             {"&Cancel", [this] { screen_->cmdCancel_Click(); }, &s.cmdCancel, row1},
             {"&Delete", [this] { screen_->cmdDelete_Click(); }, &s.cmdDelete, row1},
             {"Delete &Unused", [this] { screen_->cmdDelUnused_Click(); }, &s.cmdDelUnused, row2},
             {"&Replace Ticked", [this] { screen_->cmdlink_Click(); }, &s.cmdlink, row2},
             {"&Back", [this] { screen_->cmdback_Click(); }, &s.cmdback, row2}}) {
        auto* b = button(caption, event);
        row->addWidget(b);
        buttons_.emplace_back(b, state);
    }
    auto* form = new QFormLayout;
    form->addRow("Mas&ter", cboMaster_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(vsf_, 1);
    auto* entry = new QFormLayout;
    entry->addRow("&Particulars", txtName_);
    entry->addRow("Replace &with", cboLink_);
    layout->addLayout(entry);
    layout->addLayout(row1);
    layout->addLayout(row2);
    resize(760, 560);
    refresh();
}

LedgerMasterWindow::~LedgerMasterWindow() {
    drop_grid_views();
}

void LedgerMasterWindow::take_input() {
    take_field(txtName_, screen_->txtName);
    take_combo(cboMaster_, screen_->cboMaster);
    take_combo(cboLink_, screen_->cboLink);
}

void LedgerMasterWindow::refresh() {
    refreshing_ = true;
    auto& s = *screen_;
    show_combo(cboMaster_, s.cboMaster);
    show_combo(cboLink_, s.cboLink);
    cboLink_->setPlaceholderText(brenlow::ComboBox::kNothingChosen);
    show_field(txtName_, s.txtName, s.entering());
    for (const auto& [b, state] : buttons_) b->setEnabled(state->Enabled);
    show_row(vsf_, s.vsf_Row());
    refreshing_ = false;
}

QWidget* make_ledger_master_window(frame::Component& component, QWidget* parent) {
    return new LedgerMasterWindow(component, parent);
}

}  // namespace brenlow::ui
