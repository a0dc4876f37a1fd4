#pragma once
// What every window over a screen shares: the window's Ui, events run as "widgets
// into the screen, the screen's event, the screen onto the widgets", buttons, grid
// views and entry fields bound to the screen's controls, and the keyboard and
// mouse manners of an entry window (Tab in screen order, Enter moving on, combo
// boxes deaf to the wheel until they have the focus).

#include <QComboBox>
#include <QPointer>
#include <QPushButton>
#include <QWidget>
#include <functional>

#include "controls/screen_controls.h"
#include "ui/grid_view.h"
#include "ui/qt_ui.h"
#include "ui/vtxt_edit.h"

class QShowEvent;

namespace brenlow::ui {

class ScreenWindow : public QWidget {
    Q_OBJECT
public:
    explicit ScreenWindow(QWidget* parent);
    ~ScreenWindow() override;

    QtUi& ui() { return ui_; }
    // One event: the typed values go into the screen, the event runs, the screen
    // is drawn again. Nothing runs while the window is being drawn.
    void run(const std::function<void()>& event);
    // The control the person last worked in (a field, a combo, a grid; never a
    // button): where the focus goes back to when a message box closes.
    QWidget* last_field() const { return last_field_; }

protected:
    // The grid views go before the screen: their models hold on to its grids. A
    // window that owns its screen calls this first thing in its destructor.
    void drop_grid_views();
    virtual void take_input() = 0;
    virtual void refresh() = 0;

    // A button that runs an event.
    QPushButton* button(const QString& caption, const std::function<void()>& event,
                        QWidget* parent = nullptr);
    // A grid view over a screen's grid; `on_row` runs as an event with the grid row
    // the person moves to.
    GridView* grid_view(Grid& grid, const std::function<void(int)>& on_row, QWidget* parent = nullptr);
    // A grid view whose current grid row is only noted in `row`.
    GridView* grid_view(Grid& grid, int* row, QWidget* parent = nullptr);
    // An entry field with the screen field's set-up.
    VTxtEdit* entry_field(const vTXT& field, QWidget* parent = nullptr);

    static void show_field(VTxtEdit* edit, const vTXT& field, bool enabled);
    static void take_field(const VTxtEdit* edit, vTXT& field);
    static void show_combo(QComboBox* box, const brenlow::ComboBox& combo);
    static void take_combo(const QComboBox* box, brenlow::ComboBox& combo);
    // Makes a grid row current without hearing it as the person's move.
    void show_row(GridView* view, int grid_row);

    // The Tab order follows the layouts (top to bottom, left to right) and the
    // combo boxes get their manners; done when the window is first shown, and again
    // by a window that adds controls later.
    void settle_keyboard();
    void showEvent(QShowEvent* event) override;

    bool refreshing_ = false;

private:
    GridView* new_grid_view(Grid& grid, QWidget* parent);

    QtUi ui_;
    bool settled_ = false;
    QPointer<QWidget> last_field_;
};

// The focusable controls under `root` in the order they stand on the screen, as
// its layouts place them (grid and form layouts by row, then column).
std::vector<QWidget*> controls_in_screen_order(QWidget* root);
// Chains the Tab order of `root`'s controls in screen order.
void tab_in_screen_order(QWidget* root);
// Combo boxes under `root` take the focus by click or Tab only and ignore the
// wheel until they have it (the wheel scrolls what is around them instead); Enter
// on a closed combo box moves on, as it does in an entry field.
void give_combos_entry_manners(QWidget* root);

}  // namespace brenlow::ui
