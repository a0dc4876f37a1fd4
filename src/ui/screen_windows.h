#pragma once
// Windows for the component's screens: the host asks Forms for a screen and this
// makes the Qt window that shows it, or nothing when the screen has no window yet.

#include <QWidget>
#include <memory>

#include "frame/component.h"
#include "frame/screen.h"

namespace brenlow::ui {

// A window over a screen handed out by Forms (register, schedules, capital).
QWidget* make_screen_window(std::shared_ptr<frame::Screen> screen, frame::Component& component,
                            QWidget* parent);

// The masters, opened from the host's menu: block master kind 1 (books) or 2
// (income tax), asset group master, particulars master.
QWidget* make_block_master_window(frame::Component& component, int kind, QWidget* parent);
QWidget* make_group_master_window(frame::Component& component, QWidget* parent);
QWidget* make_particulars_master_window(frame::Component& component, QWidget* parent);
// The capital ledger master (the particulars of the capital accounts and of the
// trial balance).
QWidget* make_capital_ledger_master_window(frame::Component& component, QWidget* parent);

}  // namespace brenlow::ui
