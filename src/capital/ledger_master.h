#pragma once
// frmcapledmas: the names of particulars shared by every client and year, of either
// master (cboMaster): the capital-account particulars (Mast_Capital, used by
// CAPITAL_) and the trial-balance particulars (Mast_Part, used by TAB_, JRNL_ and
// TRADE_). A particular some client uses in some year is marked in use and cannot
// be deleted; ticked particulars can be merged into one (cmdlink).

#include <string>
#include <vector>

#include "controls/grid.h"
#include "controls/screen_controls.h"
#include "controls/ui_port.h"
#include "controls/vtxt.h"
#include "frame/component.h"
#include "frame/screen.h"
#include "store/capital_store.h"

namespace brenlow::capital {

class frmcapledmas : public frame::Screen {
public:
    static constexpr const char* kMasterList = "#1;Capital A/c Particulars|#2;Trial Balance Particulars";
    // The in-use column's key and its mark.
    static constexpr const char* kInUse = "FILLINUSE";

    enum Column { kColTick, kColName, kColInUse, kColumns };

    frmcapledmas(frame::Component& component, Ui& ui);

    std::string Caption() const override { return "Capital Ledger Master"; }

    // Controls.
    ComboBox cboMaster;
    Grid vsf;  // row data: the particular's id
    vTXT txtName;
    ComboBox cboLink;  // the particular the ticked ones are replaced with
    CommandButton cmdAdd, cmdModify, cmdUpdate, cmdDelete, cmdCancel, cmdDelUnused, cmdlink, cmdback;

    // Events.
    void Form_Load();
    void cboMaster_Click();
    void vsf_RowColChange(int row);
    int vsf_Row() const { return vsf_row_; }
    // Ticks or clears a row (a click on its tick cell, or Space).
    void vsf_Tick(int row);
    void cmdAdd_Click();
    void cmdModify_Click();
    bool cmdUpdate_Click();
    void cmdCancel_Click();
    void cmdDelete_Click();
    void cmdDelUnused_Click();
    void cmdlink_Click();
    void cmdback_Click();

    store::Ledger ledger() const;
    bool entering() const { return mode_ != Mode::browse; }
    bool ticked(int row) const { return vsf.text_matrix(row, kColTick) == "Yes"; }
    bool in_use(int row) const { return vsf.text_matrix(row, kColInUse) == "Yes"; }
    long particular_id(int row) const { return static_cast<long>(vsf.row_data(row)); }
    int row_of(long id) const;
    // Chooses a row by the particular's name (the command line names them).
    int row_named(std::string_view name) const;

private:
    enum class Mode { browse, adding, modifying };

    void load_list(long keep_id);
    void set_mode(Mode mode);
    void show_users(long id, const std::string& name);

    frame::Component& c_;
    Ui& ui_;
    Mode mode_ = Mode::browse;
    int vsf_row_ = -1;
    long editing_id_ = 0;
};

}  // namespace brenlow::capital
