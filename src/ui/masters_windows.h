#pragma once
// Windows of the master screens for the host's menu: each makes its screen for
// the component's open client and year and shows it with keyboard and mouse.

#include <QWidget>

#include "frame/component.h"

namespace brenlow::ui::masters {

// Block master of a kind: 1 blocks of the books, 2 income-tax blocks.
QWidget* make_block_master_window(frame::Component& component, int kind, QWidget* parent);
// Asset group master; its "(Add/Edit Block Master)" entry opens the block master
// of the books as a modal dialog and reloads the chooser on return.
QWidget* make_group_master_window(frame::Component& component, QWidget* parent);
// Particulars master; its block button opens either block master the same way.
QWidget* make_particulars_master_window(frame::Component& component, QWidget* parent);

// Shows the block master of a kind as a dialog over `parent` and returns when it
// is closed.
void run_block_master_dialog(frame::Component& component, int kind, QWidget* parent);

}  // namespace brenlow::ui::masters
