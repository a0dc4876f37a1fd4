#include "ui/screen_windows.h"

#include "ui/capital_window.h"
#include "ui/ledger_master_window.h"
#include "ui/masters_windows.h"
#include "ui/register_window.h"
#include "ui/schedules_window.h"

namespace brenlow::ui {

QWidget* make_screen_window(std::shared_ptr<frame::Screen> screen, frame::Component& component,
                            QWidget* parent) {
    // By the screen's type: the capital accounts, the register, the schedules.
    if (auto* window = make_capital_window(screen, parent)) return window;
    if (auto* window = make_register_window(screen, component, parent)) return window;
    return make_schedules_window(std::move(screen), parent);
}

QWidget* make_capital_ledger_master_window(frame::Component& component, QWidget* parent) {
    return make_ledger_master_window(component, parent);
}

QWidget* make_block_master_window(frame::Component& component, int kind, QWidget* parent) {
    return masters::make_block_master_window(component, kind, parent);
}

QWidget* make_group_master_window(frame::Component& component, QWidget* parent) {
    return masters::make_group_master_window(component, parent);
}

QWidget* make_particulars_master_window(frame::Component& component, QWidget* parent) {
    return masters::make_particulars_master_window(component, parent);
}

}  // namespace brenlow::ui
