#pragma once
// What the three master windows share: the window owns its screen and its Ui, runs
// each event as "widgets into the screen, the event, the screen onto the widgets",
// and binds entry fields, combo boxes and grids both ways.

#include <QComboBox>
#include <QPushButton>
#include <QWidget>
#include <functional>
#include <memory>

#include "frame/screen.h"
#include "controls/screen_controls.h"
#include "ui/grid_view.h"
#include "ui/qt_ui.h"
#include "ui/vtxt_edit.h"

namespace brenlow::ui::masters {

class MasterWindow : public QWidget {
    Q_OBJECT
public:
    explicit MasterWindow(QWidget* parent);
    // The grid views go first: their models hold on to the screen's grids.
    ~MasterWindow() override;

    QtUi& ui() { return ui_; }

protected:
    // Takes ownership of the screen the window shows.
    void own(std::unique_ptr<frame::Screen> screen) { screen_ = std::move(screen); }
    // One event: the typed values go into the screen, the event runs, the screen
    // is drawn again.
    void run(const std::function<void()>& event);
    virtual void take_input() = 0;
    virtual void refresh() = 0;

    // A button that runs an event.
    QPushButton* button(const QString& caption, const std::function<void()>& event);
    // A grid view over a screen's grid; `on_row` hears the grid row the person moves to.
    GridView* grid_view(Grid& grid, const std::function<void(int)>& on_row);
    // An entry field with the screen field's set-up.
    VTxtEdit* entry_field(const vTXT& field);

    static void show_field(VTxtEdit* edit, const vTXT& field, bool enabled);
    static void take_field(const VTxtEdit* edit, vTXT& field);
    static void show_combo(QComboBox* box, const brenlow::ComboBox& combo);
    static void take_combo(const QComboBox* box, brenlow::ComboBox& combo);
    // Makes a grid row current without hearing it as the person's move.
    void show_row(GridView* view, int grid_row);

    bool refreshing_ = false;

private:
    QtUi ui_;
    std::unique_ptr<frame::Screen> screen_;
};

}  // namespace brenlow::ui::masters
