#pragma once
// The window of the capital ledger master (frmcapledmas): the master chosen, its
// particulars with their tick and in-use marks, the name being entered, and the
// particular the ticked ones are replaced with.

#include <QComboBox>
#include <QPushButton>
#include <memory>
#include <vector>

#include "capital/ledger_master.h"
#include "frame/component.h"
#include "ui/grid_view.h"
#include "ui/vtxt_edit.h"
#include "ui/window_base.h"

namespace brenlow::ui {

class LedgerMasterWindow : public ScreenWindow {
    Q_OBJECT
public:
    LedgerMasterWindow(frame::Component& component, QWidget* parent = nullptr);
    ~LedgerMasterWindow() override;

    capital::frmcapledmas& screen() { return *screen_; }
    GridView* vsf() const { return vsf_; }
    QComboBox* cboMaster() const { return cboMaster_; }

protected:
    void take_input() override;
    void refresh() override;

private:
    std::unique_ptr<capital::frmcapledmas> screen_;
    QComboBox* cboMaster_ = nullptr;
    QComboBox* cboLink_ = nullptr;
    GridView* vsf_ = nullptr;
    VTxtEdit* txtName_ = nullptr;
    std::vector<std::pair<QPushButton*, const CommandButton*>> buttons_;
};

QWidget* make_ledger_master_window(frame::Component& component, QWidget* parent);

}  // namespace brenlow::ui
