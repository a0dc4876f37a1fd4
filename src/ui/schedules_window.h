#pragma once
// The window of the balance-sheet schedules (formatsch): the schedule buttons the
// client has, the grid vsf1 edited in place with its lists, the trial-balance panel
// beside it, and the screen's commands. Every event is "widgets into the screen, the
// screen's event, the screen onto the widgets"; the rules are the screen's.

#include <QCloseEvent>
#include <QLabel>
#include <QPushButton>
#include <QWidget>
#include <memory>
#include <vector>

#include "frame/component.h"
#include "schedules/formatsch.h"
#include "ui/grid_view.h"
#include "ui/window_base.h"

namespace brenlow::ui {

class SchedulesWindow : public ScreenWindow {
    Q_OBJECT
public:
    // Shows a screen handed out by Forms, loading it for the open client and year.
    SchedulesWindow(std::shared_ptr<schedules::formatsch> screen, QWidget* parent = nullptr);
    ~SchedulesWindow() override;

    schedules::formatsch& screen() { return *screen_; }
    GridView* grid() const { return vsf1_; }
    // A typed cell as the person's edit: the screen's check first, then its after-edit.
    void edit_cell(int grid_row, int col, const QString& text);

protected:
    // Closing saves the open schedule; a refused save keeps the window.
    void closeEvent(QCloseEvent* event) override;

private:
    void take_input() override {}
    void refresh() override;

    std::shared_ptr<schedules::formatsch> screen_;
    std::vector<QPushButton*> schedule_buttons_;
    QLabel* title_ = nullptr;
    QLabel* message_ = nullptr;
    GridView* vsf1_ = nullptr;
    GridView* vsTB_ = nullptr;
    QWidget* panel_ = nullptr;
    QPushButton* add_ = nullptr;
    QPushButton* del_ = nullptr;
    QPushButton* shtb_ = nullptr;
    QPushButton* print_ = nullptr;
    QPushButton* merge_ = nullptr;
    QPushButton* prev_ = nullptr;
    QPushButton* newchart_ = nullptr;
    QLabel* year_ = nullptr;
    QWidget* totals_ = nullptr;  // the open schedule's totals line, under vsf1
    int tb_row_ = -1;
};

// A schedules screen that speaks through a Ui of its own, taken over by the window
// that shows it (the screen is made once and shown by every later window).
std::shared_ptr<schedules::formatsch> make_schedules_screen(frame::Component& component, QWidget* host);

// The window of a schedules screen handed out by Forms; nullptr when the screen is
// not the schedules screen.
QWidget* make_schedules_window(std::shared_ptr<frame::Screen> screen, QWidget* parent);

}  // namespace brenlow::ui
