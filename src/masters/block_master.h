#pragma once
// frmblockM: the user's own blocks of assets, one kind at a time: blocks of the
// books of account (kind 1) or income-tax blocks placed under a nature of asset
// (kind 2). A block that a particular or any client's fixed-asset schedule still
// refers to cannot be deleted.

#include <string>
#include <string_view>

#include "controls/grid.h"
#include "controls/screen_controls.h"
#include "controls/ui_port.h"
#include "controls/vtxt.h"
#include "frame/component.h"
#include "frame/screen.h"

namespace brenlow::masters {

class frmblockM : public frame::Screen {
public:
    // Natures of an income-tax block, as the "Under Block" chooser and the list's
    // column offer them.
    static constexpr const char* kNatureList =
        "#0; |#1;BUILDINGS|#2;FURNITURE AND FITTINGS|#3;PLANT AND MACHINARY|#4;INTANGIBLE "
        "ASSETS|#5;SHIPS|#100;LAND";

    // Columns of vsf; a row's data is its block's GrpId.
    static constexpr int kColName = 0;
    static constexpr int kColNature = 1;

    // kind: 1 blocks of the books, 2 income-tax blocks. The list is loaded at once.
    frmblockM(frame::Component& component, Ui& ui, int kind);

    std::string Caption() const override;
    int kind() const { return kind_; }
    // An entry (add or modify) is open: the fields take input, save and cancel work.
    bool entering() const { return mode_ != Mode::browse; }
    bool adding() const { return mode_ == Mode::adding; }

    // Controls.
    Grid vsf;
    vTXT txtfields;       // name of the block
    ComboBox Combo1;      // "Under Block", shown for income-tax blocks only
    Label lblUnderBlock;  // Combo1's caption
    CommandButton cmdaddded, cmdmodifyded, cmdupdateded, cmddeleteded, cmdcancelded, cmdback;

    // The current row of vsf (-1 when none); choosing one outside an entry shows it.
    int vsf_Row() const { return vsf_row_; }
    void vsf_RowColChange(int row);

    // Events.
    void Form_Load();
    void cmdaddded_Click();
    void cmdmodifyded_Click();
    void cmdupdateded_Click();
    void cmddeleteded_Click();
    void cmdcancelded_Click();
    void cmdback_Click();

    // The GrpId shown in a data row of vsf, and the row of a block (-1 when not listed).
    long block_id(int row) const { return static_cast<long>(vsf.row_data(row)); }
    int row_of(long id) const;
    int row_of_name(std::string_view name) const;

private:
    enum class Mode { browse, adding, modifying };

    void load_grid(long keep_id);
    void show_row(int row);
    void clear_fields();
    void set_mode(Mode mode);
    void save();
    void remove();

    frame::Component& c_;
    Ui& ui_;
    int kind_;
    Mode mode_ = Mode::browse;
    int vsf_row_ = -1;
    long editing_id_ = 0;
};

}  // namespace brenlow::masters
