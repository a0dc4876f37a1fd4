#pragma once
// The window of frmDeprChartEdit: the year's income-tax chart in a grid whose amounts
// are typed on a double click or Enter, with Save, Clear and Back. The rules are the
// screen's.

#include <QLabel>
#include <memory>

#include "frame/component.h"
#include "register/chart_editor.h"
#include "ui/window_base.h"

namespace brenlow::ui {

class ChartEditorWindow : public ScreenWindow {
    Q_OBJECT
public:
    explicit ChartEditorWindow(frame::Component& component, QWidget* parent = nullptr);
    ~ChartEditorWindow() override;

    // Loads the open client's year; false when the screen refused (it said why).
    bool load();
    reg::frmDeprChartEdit& screen() { return *screen_; }
    // Types an amount into a cell as the person does.
    void edit_cell(int grid_row, int col);

private:
    void take_input() override {}
    void refresh() override;

    std::unique_ptr<reg::frmDeprChartEdit> screen_;
    QLabel* title_ = nullptr;
    GridView* vsChart_ = nullptr;
    QPushButton* save_ = nullptr;
    QPushButton* clear_ = nullptr;
};

}  // namespace brenlow::ui
