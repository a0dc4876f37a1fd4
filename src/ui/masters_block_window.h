#pragma once
// The window of frmblockM: the list of blocks, the name, "Under Block" for
// income-tax blocks, and the six buttons.

#include <QComboBox>
#include <QLabel>

#include "masters/block_master.h"
#include "ui/masters_binding.h"

namespace brenlow::ui::masters {

class BlockMasterWindow : public MasterWindow {
    Q_OBJECT
public:
    BlockMasterWindow(frame::Component& component, int kind, QWidget* parent = nullptr);

    brenlow::masters::frmblockM& screen() { return *screen_; }
    GridView* vsf() const { return vsf_; }
    VTxtEdit* txtfields() const { return txtfields_; }
    QComboBox* Combo1() const { return combo1_; }
    QPushButton* cmdaddded() const { return add_; }
    QPushButton* cmdmodifyded() const { return modify_; }
    QPushButton* cmdupdateded() const { return update_; }
    QPushButton* cmddeleteded() const { return delete_; }
    QPushButton* cmdcancelded() const { return cancel_; }
    QPushButton* cmdback() const { return back_; }

protected:
    void take_input() override;
    void refresh() override;

private:
    brenlow::masters::frmblockM* screen_;
    GridView* vsf_;
    VTxtEdit* txtfields_;
    QLabel* under_label_;
    QComboBox* combo1_;
    QPushButton *add_, *modify_, *update_, *delete_, *cancel_, *back_;
};

}  // namespace brenlow::ui::masters
