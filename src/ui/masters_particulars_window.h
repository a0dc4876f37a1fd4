#pragma once
// The window of frmfamaster: the particulars of the year, the name, method, two
// rates and two blocks, and the buttons; the block button offers both block masters.

#include <QComboBox>

#include "masters/particulars_master.h"
#include "ui/masters_binding.h"

namespace brenlow::ui::masters {

class ParticularsMasterWindow : public MasterWindow {
    Q_OBJECT
public:
    ParticularsMasterWindow(frame::Component& component, QWidget* parent = nullptr);

    brenlow::masters::frmfamaster& screen() { return *screen_; }
    GridView* vsf() const { return vsf_; }
    VTxtEdit* txtfields(int index) const { return fields_[index]; }
    QComboBox* Combo(int index) const { return combos_[index - 1]; }
    QPushButton* cmdaddded() const { return add_; }
    QPushButton* cmdupdateded() const { return update_; }

protected:
    void take_input() override;
    void refresh() override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    brenlow::masters::frmfamaster* screen_;
    GridView* vsf_;
    VTxtEdit* fields_[brenlow::masters::frmfamaster::kFields];
    QComboBox* combos_[3];
    QPushButton *add_, *modify_, *update_, *delete_, *cancel_, *back_, *block_;
};

}  // namespace brenlow::ui::masters
