#pragma once
// The window of the capital schedule (capital): the partners with their ratios and
// closing balances (vsPL), the lines (vsfC), the particulars to pick from (vsLM,
// "[New]" or Ctrl+Home / Ctrl+Up makes one), the year's net profit with its
// automatic calculation, and the ratio frame (vsfR) over the lines while it is open.
// Every event is "widgets into the screen, the screen's event, the screen onto the
// widgets"; the rules are the screen's.

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <memory>
#include <vector>

#include "capital/capital.h"
#include "frame/component.h"
#include "ui/grid_view.h"
#include "ui/vtxt_edit.h"
#include "ui/window_base.h"

namespace brenlow::ui {

class CapitalWindow : public ScreenWindow {
    Q_OBJECT
public:
    // Shows a screen (the one Forms keeps, or a new one) loaded for the open year.
    CapitalWindow(std::shared_ptr<capital::capital> screen, QWidget* parent = nullptr);
    ~CapitalWindow() override;

    capital::capital& screen() { return *screen_; }
    GridView* vsPL() const { return vsPL_; }
    GridView* vsfR() const { return vsfR_; }
    GridView* vsfC() const { return vsfC_; }
    GridView* vsLM() const { return vsLM_; }
    GridView* vsIR() const { return vsIR_; }
    QGroupBox* fraRatio() const { return fraRatio_; }

protected:
    void take_input() override;
    void refresh() override;

private:
    // Cells typed into a grid reach the screen when the editor closes.
    void on_edit(GridView* view, const std::function<void(int, int)>& after_edit);

    std::shared_ptr<capital::capital> screen_;
    QLabel* title_ = nullptr;
    VTxtEdit* txtNetProfit_ = nullptr;
    QCheckBox* chkautocalcnp_ = nullptr;
    QCheckBox* chkShareCurrent_ = nullptr;
    QLabel* lblRemuneration_ = nullptr;
    QLabel* lblTotal_ = nullptr;
    QGroupBox* fraRatio_ = nullptr;
    GridView* vsPL_ = nullptr;
    GridView* vsfR_ = nullptr;
    GridView* vsfC_ = nullptr;
    GridView* vsLM_ = nullptr;
    GridView* vsIR_ = nullptr;
    std::vector<std::pair<QPushButton*, const CommandButton*>> buttons_;
};

// The capital screen for Forms: it speaks through the boxes of the window that
// shows it, made over `host` until then.
std::shared_ptr<capital::capital> make_capital_screen(frame::Component& component, QWidget* host);
// A window over a new capital screen for the open year (the opener any other screen
// may call), and over the one Forms handed out.
QWidget* make_capital_window(frame::Component& component, QWidget* parent);
QWidget* make_capital_window(std::shared_ptr<frame::Screen> screen, QWidget* parent);

}  // namespace brenlow::ui
