#pragma once
// The window of the asset register (frmNewFATR): both grids with their banded
// headings, the group filter, the screen-wide options, the browse buttons, and the
// entry frames of an opening entry, an addition and their sale or deduction. Every
// event is "widgets into the screen, the screen's event, the screen onto the
// widgets"; the rules are the screen's.

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSplitter>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "frame/component.h"
#include "register/frm_new_fatr.h"
#include "ui/grid_view.h"
#include "ui/vtxt_edit.h"
#include "ui/window_base.h"

class QPlainTextEdit;

namespace brenlow::ui {

class RegisterWindow : public ScreenWindow {
    Q_OBJECT
public:
    // Makes and loads a screen for the component's open client and year.
    RegisterWindow(frame::Component& component, QWidget* parent = nullptr);
    // Shows a screen handed out by Forms (loaded here when it has not been).
    RegisterWindow(std::shared_ptr<reg::frmNewFATR> screen, frame::Component& component,
                   QWidget* parent = nullptr);
    ~RegisterWindow() override;

    reg::frmNewFATR& screen() { return *screen_; }
    // Shows the latest calculation under the grids.
    void show_calculation();
    // "Edit Depreciation (FA)": the manual depreciation of each group, in a dialog.
    void edit_manual_depreciation();
    // "Edit Chart Manually": the chart editor's window.
    void open_chart_editor();

protected:
    bool event(QEvent* event) override;

private:
    void build();
    QWidget* build_browse();
    QWidget* build_opening_frame();
    QWidget* build_addition_frame();
    QWidget* build_sale_frame();
    void bind_leave(VTxtEdit* edit, const std::function<bool()>& check);
    void bind_change(VTxtEdit* edit, const std::function<void()>& change);
    void take_input() override;
    void refresh() override;

    frame::Component& component_;
    std::shared_ptr<reg::frmNewFATR> screen_;
    bool leaving_ = false;

    // Browse state.
    QWidget* browse_ = nullptr;
    QComboBox* cboFAGM_ = nullptr;
    GridView* vsO_ = nullptr;
    GridView* vsA_ = nullptr;
    QRadioButton* optWDV_ = nullptr;
    QRadioButton* optSLM_ = nullptr;
    QRadioButton* optCost_ = nullptr;
    QRadioButton* optCA_ = nullptr;
    QComboBox* cboRndRemLife_ = nullptr;
    QComboBox* cboBADep_ = nullptr;
    QCheckBox* chkFASchBooks_ = nullptr;
    QCheckBox* chkRndFA_ = nullptr;
    QCheckBox* chkRndIT_ = nullptr;
    QCheckBox* chkRemLife0_ = nullptr;
    std::vector<std::pair<QPushButton*, const CommandButton*>> browse_buttons_;

    // Entry frames.
    QWidget* entry_ = nullptr;
    QScrollArea* scroll_ = nullptr;
    QWidget* entry_box_ = nullptr;
    QSplitter* splitter_ = nullptr;
    QComboBox* group_ = nullptr;
    GridView* group_picker_ = nullptr;
    QLabel* lblGroupInfo_ = nullptr;
    VTxtEdit* txtPart_ = nullptr;
    QWidget* famEditO_ = nullptr;
    QWidget* famEditA_ = nullptr;
    std::vector<VTxtEdit*> txtfieldsO_, txtfieldsA_, txtfieldsD_;
    std::vector<QLabel*> lblfieldsO_, lblfieldsA_;
    std::vector<QCheckBox*> chkfieldsO_, chkfieldsA_;
    QComboBox* cboCalcCA_ = nullptr;
    VTxtEdit* txtCalcCA_ = nullptr;
    QLabel* lblRemLifeO_ = nullptr;
    QLabel* lblRemLifeA_ = nullptr;
    QComboBox* cboMODo_ = nullptr;
    QComboBox* cboResValOfO_ = nullptr;
    QComboBox* cboMODa_ = nullptr;
    QComboBox* cboRndAddRtAuto_ = nullptr;
    QRadioButton* optsWdvIT_[3] = {nullptr, nullptr, nullptr};
    GridView* vsESA_ = nullptr;
    QCheckBox* chkTotESA_ = nullptr;
    VTxtEdit* txtTotESA_ = nullptr;
    QLineEdit* esaInput_[6] = {};
    QLabel* lblBlockO_ = nullptr;
    QLabel* lblBlockA_ = nullptr;
    QLabel* lblNESD_ = nullptr;
    QLabel* lblMiscAdjA_ = nullptr;
    QLabel* lblNetAmtA_ = nullptr;
    GridView* vsS_ = nullptr;
    QLabel* lblShiftDays_ = nullptr;
    QLabel* lblDaysDeprCL_ = nullptr;
    QCheckBox* chkAutoCalcDeprCL_ = nullptr;
    QCheckBox* chkPartDed_ = nullptr;
    VTxtEdit* txtAutoCalcDeprCL_ = nullptr;
    QPlainTextEdit* calculation_ = nullptr;
    // The calculation the pane shows; the pane says so when the register changed after it.
    std::shared_ptr<const reg::CalculationResult> shown_run_;
    int vsESA_row_ = -1;
    int vsS_row_ = -1;
};

// A register screen that speaks through a Ui of its own; the window that shows it
// takes that Ui over, so the screen's boxes belong to that window and Back closes
// that window only.
std::shared_ptr<reg::frmNewFATR> make_register_screen(frame::Component& component, QWidget* host);

// The register window for the host's menu: a new screen on the component's open
// client and year.
QWidget* make_register_window(frame::Component& component, QWidget* parent);
// The window of a register screen handed out by Forms (ObjNewFATR); nullptr when
// the screen is not a register.
QWidget* make_register_window(std::shared_ptr<frame::Screen> screen, frame::Component& component,
                              QWidget* parent);

}  // namespace brenlow::ui
