#pragma once
// The window of frmNewFAGM: the groups of the year, the name, the three
// classifications with their choosers, rates and life, and the buttons.

#include <QLabel>

#include "masters/asset_group_master.h"
#include "ui/masters_binding.h"

namespace brenlow::ui::masters {

class GroupMasterWindow : public MasterWindow {
    Q_OBJECT
public:
    GroupMasterWindow(frame::Component& component, QWidget* parent = nullptr);

    brenlow::masters::frmNewFAGM& screen() { return *screen_; }
    GridView* vsM() const { return vsM_; }
    GridView* vsIT() const { return vsIT_; }
    GridView* vsFA() const { return vsFA_; }
    GridView* vsCL() const { return vsCL_; }
    VTxtEdit* txtfields() const { return txtfields_; }
    QPushButton* cmdAdd() const { return add_; }
    QPushButton* cmdUpdate() const { return update_; }
    QPushButton* cmdBlockIT() const { return block_it_; }
    QPushButton* cmdBlockFA() const { return block_fa_; }

protected:
    void take_input() override;
    void refresh() override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    GridView* chooser(Grid& grid, void (brenlow::masters::frmNewFAGM::*click)(int));

    brenlow::masters::frmNewFAGM* screen_;
    GridView *vsM_, *vsIT_, *vsFA_, *vsCL_;
    VTxtEdit* txtfields_;
    VTxtEdit *rate_it_, *addl_rate_it_, *rate_fa_, *life_yrs_, *rate_slm_, *rate_wdv_;
    QLabel *lbl_it_, *lbl_fa_, *lbl_cl_;
    QPushButton *add_, *modify_, *update_, *delete_, *cancel_, *back_, *block_it_, *block_fa_, *block_cl_;
};

}  // namespace brenlow::ui::masters
