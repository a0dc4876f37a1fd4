#pragma once
// frmfamaster: the particulars of the open financial year, the named kinds of
// fixed assets of the older fixed-asset schedule: depreciation method, a rate for
// the books and one for income tax, a block of the books and an income-tax block.
// Names may repeat; a particular that schedules refer to may still be deleted.

#include <string>
#include <string_view>
#include <vector>

#include "controls/grid.h"
#include "controls/screen_controls.h"
#include "controls/ui_port.h"
#include "controls/vtxt.h"
#include "frame/component.h"
#include "frame/screen.h"
#include "masters/asset_group_master.h"

namespace brenlow::masters {

class frmfamaster : public frame::Screen {
public:
    // Methods of depreciation, in the order offered.
    static constexpr const char* kMethodList =
        "#4;NO DEPRECIATION|#3;OTHER METHOD|#2;STRAIGHT LINE METHOD|#1;WRITTEN DOWN VALUE|#0; ";

    // Columns of vsf; a row's data is its particular's PartId.
    enum Column { kColName, kColMethod, kColRateBooks, kColRateIT, kColBooksBlock, kColItBlock, kColumns };
    // The entry fields, as the control array txtfields numbers them.
    enum Field { kName, kRateBooks, kRateIT, kFields };

    frmfamaster(frame::Component& component, Ui& ui, BlockMasterOpener open_block_master = {});

    std::string Caption() const override { return "Particulars Master"; }
    int year() const { return year_; }
    bool entering() const { return mode_ != Mode::browse; }
    bool adding() const { return mode_ == Mode::adding; }

    // Controls.
    Grid vsf;
    std::vector<vTXT> txtfields;  // name, rate for the books, rate for income tax
    ComboBox Combo1;              // method
    ComboBox Combo2;              // block of the books
    ComboBox Combo3;              // income-tax block
    CommandButton cmdaddded, cmdmodifyded, cmdupdateded, cmddeleteded, cmdcancelded, cmdback, cmdblock;

    // Events.
    void Form_Load();
    void Form_Activate();
    bool Form_QueryUnload();
    int vsf_Row() const { return vsf_row_; }
    void vsf_RowColChange(int row);
    void cmdaddded_Click();
    void cmdmodifyded_Click();
    void cmdupdateded_Click();
    void cmddeleteded_Click();
    void cmdcancelded_Click();
    void cmdback_Click();
    // Opens the block master of a kind (1 books, 2 income tax), then reloads the choosers.
    void cmdblock_Click(int kind);

    long part_id(int row) const { return static_cast<long>(vsf.row_data(row)); }
    int row_of(long id) const;

private:
    enum class Mode { browse, adding, modifying };

    void load_choosers();
    void load_grid(long keep_id);
    void show_row(int row);
    void clear_fields();
    void set_mode(Mode mode);
    bool cancel_confirmed();
    void save();
    void remove();

    frame::Component& c_;
    Ui& ui_;
    BlockMasterOpener open_block_master_;
    int year_ = 0;
    Mode mode_ = Mode::browse;
    int vsf_row_ = -1;
    long editing_id_ = 0;
};

}  // namespace brenlow::masters
