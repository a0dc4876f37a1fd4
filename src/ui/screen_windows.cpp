#include "ui/screen_windows.h"

namespace brenlow::ui {

QWidget* make_screen_window(std::shared_ptr<frame::Screen> /*screen*/, frame::Component& /*component*/,
                            QWidget* /*parent*/) {
    return nullptr;
}

QWidget* make_block_master_window(frame::Component&, int, QWidget*) { return nullptr; }
QWidget* make_group_master_window(frame::Component&, QWidget*) { return nullptr; }
QWidget* make_particulars_master_window(frame::Component&, QWidget*) { return nullptr; }

}  // namespace brenlow::ui
