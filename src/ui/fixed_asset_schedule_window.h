#pragma once
// The window of the "Fixed Assets" schedule: the main grid with its two heading lines,
// the sub-view of the chosen row's additions, deductions or carried additional
// depreciation, and the save and transfer buttons. A thin binding of
// sched::FixedAssetSchedule: every rule is in the screen.
//
// open_fixed_asset_schedule() is what formatsch's "Fixed Assets" button and the host
// call; the merging of register entries has a small dialog of its own.

#include <QLabel>
#include <QTableWidget>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "frame/component.h"
#include "schedules/fixed_asset_schedule.h"
#include "ui/qt_ui.h"

namespace brenlow::ui {

class FixedAssetScheduleWindow : public QWidget {
    Q_OBJECT
public:
    FixedAssetScheduleWindow(frame::Component& component, QWidget* parent = nullptr);

    sched::FixedAssetSchedule& screen() { return *screen_; }
    QTableWidget* grid() const { return grid_; }
    QTableWidget* lines() const { return lines_; }
    // Loads the schedule (with the carry-forward question); false when it cannot open.
    bool load();
    // Shows a sub-view of a row.
    void show_sub_view(int row, sched::SubView view);
    // Redraws the grids from the screen.
    void refresh();
    // Delete Row / Delete Line: the grid's current row, the list's current line.
    void delete_row();
    void delete_line();

private:
    void take_grid();
    void take_lines();
    void line_columns(sched::SubView view);
    void save();
    // The schedule's charts through the report object (ClsDepC).
    void print(bool income_tax);

    frame::Component& component_;
    QtUi ui_;
    std::unique_ptr<sched::FixedAssetSchedule> screen_;
    QTableWidget* grid_;
    QTableWidget* lines_;
    QLabel* title_;
    std::vector<QString> shown_dep_;  // "Depreciation for the year" as last drawn
    int line_row_ = -1;
    sched::SubView view_ = sched::SubView::Additions;
    bool refreshing_ = false;
};

// Opens the schedule in a window of its own (deleted on close); nullptr when it cannot open.
QWidget* open_fixed_asset_schedule(frame::Component& component, QWidget* parent = nullptr);

// The merging of register entries (frmmerge): the serials chosen and the side, handed
// to `merge` (the host passes exchange::frmmerge's work) with the dialog's Ui; the
// dialog closes when it returns true.
void run_merge_entries(QWidget* parent,
                       const std::function<bool(Ui&, bool additions, const std::vector<long>&)>& merge);

}  // namespace brenlow::ui
