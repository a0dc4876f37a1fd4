#pragma once
// What the three master windows add to the window base: the window owns its
// screen, and an unchosen combo box shows "(Select)".

#include <QComboBox>
#include <memory>

#include "frame/screen.h"
#include "ui/window_base.h"

namespace brenlow::ui::masters {

class MasterWindow : public ScreenWindow {
    Q_OBJECT
public:
    explicit MasterWindow(QWidget* parent) : ScreenWindow(parent) {}
    ~MasterWindow() override { drop_grid_views(); }

protected:
    // Takes ownership of the screen the window shows.
    void own(std::unique_ptr<frame::Screen> screen) { screen_ = std::move(screen); }
    static void show_combo(QComboBox* box, const brenlow::ComboBox& combo);

private:
    std::unique_ptr<frame::Screen> screen_;
};

}  // namespace brenlow::ui::masters
