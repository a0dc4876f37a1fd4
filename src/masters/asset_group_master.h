#pragma once
// frmNewFAGM: the asset groups of the open financial year. A group ties an
// income-tax block (with its rate and the additional rate), a block of the books
// (with its rate) and a Companies Act classification (with useful life and the
// straight-line and written-down-value rates) together; each of the three may be
// declared not considered, which switches that calculation off for the group.

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/grid.h"
#include "controls/screen_controls.h"
#include "controls/ui_port.h"
#include "controls/vtxt.h"
#include "frame/component.h"
#include "frame/screen.h"
#include "store/masters_store.h"

namespace brenlow::masters {

// Shows the block master of a kind and returns when the person has closed it.
using BlockMasterOpener = std::function<void(int kind)>;

class frmNewFAGM : public frame::Screen {
public:
    // The codes of the three classifications besides a real block.
    static constexpr const char* kNotConsidered = "-1";
    static constexpr const char* kNothingChosen = "-2";
    static constexpr long kNotConsideredFA = -1;
    static constexpr long kNothingChosenFA = -2;

    // Columns of vsM; a row's data is its group's SrNoFAGM.
    enum VsMColumn {
        kColName,
        kColBlockIT,
        kColRateIT,
        kColAddlRateIT,
        kColBlockFA,
        kColRateFA,
        kColBlockCL,
        kColLifeYrs,
        kColRateSLM,
        kColRateWDV,
        kVsMColumns
    };
    // Columns of the choosers vsIT, vsFA and vsCL.
    enum ChooserColumn { kColCode, kColNature, kColRate, kColId, kChooserColumns };

    // The list is loaded at once; `open_block_master` serves the chooser entry that
    // edits the blocks of the books (none: the entry does nothing).
    frmNewFAGM(frame::Component& component, Ui& ui, BlockMasterOpener open_block_master = {});

    std::string Caption() const override { return "Asset Group Master"; }
    int year() const { return year_; }
    bool entering() const { return mode_ != Mode::browse; }
    bool adding() const { return mode_ == Mode::adding; }
    // A field takes no typing outside an entry, nor while its value does not apply.
    bool locked(const vTXT& field) const;

    // Controls.
    Grid vsM;               // the groups of the year
    Grid vsIT, vsFA, vsCL;  // the three choosers
    bool vsIT_Visible = false, vsFA_Visible = false, vsCL_Visible = false;
    vTXT txtfields;  // name of the group
    vTXT txtRateIT, txtAddlRateIT, txtRateFA, txtLifeYrs, txtRateSLM, txtRateWDV;
    Label lblBlockIT, lblBlockFA, lblBlockCL;
    CommandButton cmdAdd, cmdModify, cmdUpdate, cmdDelete, cmdCancel, cmdback, cmdBlockIT, cmdBlockFA,
        cmdBlockCL;

    // The chosen codes.
    const std::string& BlockIdIT() const { return block_it_; }
    long BlockFA() const { return block_fa_; }
    const std::string& BlockIdCL() const { return block_cl_; }

    // Events.
    void Form_Load();
    // The screen comes to the front: lists reload when a master has changed.
    void Form_Activate();
    // Closing asks first during an entry; false keeps the screen open.
    bool Form_QueryUnload();
    int vsM_Row() const { return vsM_row_; }
    void vsM_RowColChange(int row);
    void cmdAdd_Click();
    void cmdModify_Click();
    void cmdUpdate_Click();
    void cmdDelete_Click();
    void cmdCancel_Click();
    void cmdback_Click();
    // The chooser buttons show their chooser (and hide the others).
    void cmdBlockIT_Click();
    void cmdBlockFA_Click();
    void cmdBlockCL_Click();
    // Choosing a row of a chooser.
    void vsIT_Click(int row);
    void vsFA_Click(int row);
    void vsCL_Click(int row);

    // Choosing by code, as the command line does: finds the chooser row and clicks
    // it. False when the chooser has no such entry.
    bool choose_it_block(std::string_view id);
    bool choose_books_block(long id);
    bool choose_classification(std::string_view id);

    long serial_of(int row) const { return static_cast<long>(vsM.row_data(row)); }
    int row_of(long serial) const;
    int row_of_name(std::string_view name) const;

private:
    enum class Mode { browse, adding, modifying };

    void set_up_grids();
    void load_choosers();
    void load_it_chooser();
    void load_fa_chooser();
    void load_cl_chooser();
    void load_groups(long keep_serial);
    void show_group(long serial);
    void clear_fields();
    void set_mode(Mode mode);
    void hide_choosers();
    void pick_it(const std::string& id);
    void pick_fa(long id);
    void pick_cl(const std::string& id);
    void save();
    void remove();
    bool cancel_confirmed();
    store::AssetGroupRow entry() const;

    frame::Component& c_;
    Ui& ui_;
    BlockMasterOpener open_block_master_;
    int year_ = 0;
    Mode mode_ = Mode::browse;
    int vsM_row_ = -1;
    long editing_serial_ = 0;

    std::vector<store::ItBlockRow> it_entries_;
    std::vector<store::Block> fa_blocks_;
    std::vector<store::ClBlockRow> cl_entries_;
    std::string block_it_ = kNothingChosen;
    long block_fa_ = kNothingChosenFA;
    std::string block_cl_ = kNothingChosen;
};

}  // namespace brenlow::masters
