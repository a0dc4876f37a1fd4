#pragma once
// frmNewFATR: the asset register of one client and year. Opening entries (assets
// held on 01/04) and additions of the year, each with its own sale or deduction,
// in the grids vsO and vsA; the entry frames famEditO / famEditA / famEditD that
// add and edit them; the screen-wide options; the old-chart marker; the carry-
// forward from the previous year.
//
// The screen holds the state of its controls as members named as the screen names
// them and its events as methods; a view (Qt, command line, tests) sets the
// controls' values, calls the events and redraws from the members. It talks to the
// person only through the Ui it was made with. Every event runs under the error
// logger: a database failure is logged and the event goes no further.
//
// Logic files: register_loading.cpp (load, grids, filter, modes, deletes),
// entry_frame.cpp (fields, ticks, combos, live figures, leave-field checks),
// entry_grids.cpp (vsS, vsESA), update_checks.cpp (the checks of cmdUpdate),
// register_writes.cpp (rows written), screen_options.cpp (options, old chart,
// carry-forward).

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/grid.h"
#include "controls/id_text_list.h"
#include "controls/screen_controls.h"
#include "controls/ui_port.h"
#include "controls/vtxt.h"
#include "frame/component.h"
#include "frame/screen.h"
#include "register/calculation.h"
#include "register/entry_rules.h"
#include "register/register_options.h"
#include "store/register_store.h"

namespace brenlow::reg {

// The asset group field: the chosen group's serial and the name shown.
struct GroupField {
    long Id = 0;  // IdFAGM; 0 when none is chosen
    std::string Text;
};

// The chart rows without additional depreciation: its amounts leave the total and
// stay in the closing WDV.
std::vector<depreciation::ChartRow> without_additional_depreciation(std::vector<depreciation::ChartRow> rows);

// The entry frame's modes: a new or edited opening entry or addition; None while browsing.
enum class EntryMode { None, ADDO, EDITO, ADDA, EDITA };

class frmNewFATR : public frame::Screen {
public:
    // Opening fields (txtfieldsO), by index.
    enum O : int {
        O_PutDate,
        O_CostWdv,
        O_OpDepr,
        O_ResValue,
        O_LifeYrs,
        O_RateFACL,
        O_WdvIT,
        O_RateIT,
        O_AddlDepRT,
        O_AddlDepOn,
        O_Count
    };
    // Addition fields (txtfieldsA).
    enum A : int {
        A_PutDate,
        A_AccDate,
        A_PurAmt,
        A_ExciseCr,
        A_CurrDiff,
        A_Subsidy,
        A_ResValue,
        A_LifeYrs,
        A_RateFACL,
        A_RateIT,
        A_AddlDepRT,
        A_Count
    };
    // Sale/deduction fields (txtfieldsD).
    enum D : int { D_SaleDate, D_SaleAmt, D_SaleExp, D_Count };
    // The entry rules' field behind each index.
    static constexpr EntryField kOpeningFields[O_Count] = {
        EntryField::PutDate,   EntryField::Cost,     EntryField::OpDepr, EntryField::ResValue,
        EntryField::LifeYrs,   EntryField::RateFACL, EntryField::WdvIT,  EntryField::RateIT,
        EntryField::AddlDepRT, EntryField::AddlDepOn};
    static constexpr EntryField kAdditionFields[A_Count] = {
        EntryField::PutDate,  EntryField::AccDate, EntryField::Cost,     EntryField::ExciseCr,
        EntryField::CurrDiff, EntryField::Subsidy, EntryField::ResValue, EntryField::LifeYrs,
        EntryField::RateFACL, EntryField::RateIT,  EntryField::AddlDepRT};
    static constexpr EntryField kSaleFields[D_Count] = {EntryField::SaleDate, EntryField::SaleAmt,
                                                        EntryField::SaleExp};
    // optsWdvIT choices.
    enum WdvITChoice : int { WdvIT_Other, WdvIT_NotExist, WdvIT_NilWdv };

    frmNewFATR(frame::Component& component, Ui& ui);
    std::string Caption() const override;

    // ---- Loading and browsing (register_loading.cpp) ----
    // Opens the open client and year of the base services: the old-chart marker,
    // options, masters, the carry-forward offer, both grids. False when no client
    // year is open or a read failed.
    bool Form_Load();
    // Whether loading an empty year offers last year's assets (the desktop does; the
    // command line carries forward only when told to).
    bool OfferCarryForward = true;
    // Reloads the grids from the tables (the group filter kept).
    void LoadRegister();
    void cboFAGM_Click(int index);
    void cmdAddO_Click();
    void cmdEditO_Click();
    void cmdDelO_Click();
    void cmdDelAllO_Click();
    void cmdAddA_Click();
    void cmdEditA_Click();
    void cmdDelA_Click();
    void cmdDelAllA_Click();
    void cmdCancel_Click();
    void cmdBack_Click();
    // The display mode: the captions of the entry frame follow it.
    void cboDepMode_Click(reg::Mode mode);

    // ---- Entry frame (entry_frame.cpp, entry_grids.cpp) ----
    // Picks a group from vsFAGM by its serial and sets its defaults. False when the
    // year has no such group.
    bool SelectAssetGroup(long id);
    // A line of vsFAGM: a group is picked; its last line opens the asset group master.
    void vsFAGM_Click(int row);
    // "Manage Asset &Group Master" (entry frame) and the browse state's button: the
    // view's master window runs, then the year's groups are read again.
    void cmdAssetGroup_Click();
    void cmdAssetGroupMas_Click() { cmdAssetGroup_Click(); }
    void ReloadAssetGroups();
    // The window came to the front: groups changed in the master meanwhile (renamed,
    // re-rated, added, removed) are read again, with the grids and the picker. True
    // when they were.
    bool Form_Activate();
    // Set by the view: shows the asset group master and returns when it is closed.
    std::function<void()> OnAssetGroupMaster;
    // A field's text changed: the live figures follow.
    void txtfieldsO_Change(int index);
    void txtfieldsA_Change(int index);
    // Leave-field checks: the message, the focus stays when false.
    bool txtfieldsO_Validate(int index);
    bool txtfieldsA_Validate(int index);
    bool txtfieldsD_Validate(int index);
    void chkfieldsO_Click(int index);
    void chkfieldsA_Click(int index);
    void cboCalcCA_Click(int index);
    void cboMODo_Click(int index);
    void cboResValOfO_Click(int index);
    void optsWdvIT_Click(int choice);
    void cboMODa_Click(int index);
    void cboRndAddRtAuto_Click(int index);
    void chkAutoCalcDeprCL_Click();
    void chkPartDed_Click();
    void chkTotESA_Click();
    void txtTotESA_Validate();

    // Shift rows: add one; the check when the shift frame closes.
    void AddShiftRow(std::string_view from, std::string_view to, int shift);
    bool cmdShiftOK_Click();
    // Adjustment rows: add one after its checks; edit the adjustment of a row in place.
    bool AddESARow(std::string_view particulars, std::string_view wdv, std::string_view date,
                   std::string_view amount, std::string_view excess, std::string_view adjust);
    bool vsESA_ValidateEdit(int row, std::string_view adjust);
    void RemoveShiftRow(int row);
    void RemoveESARow(int row);

    // ---- Update (update_checks.cpp, register_writes.cpp) ----
    // The frame as an entry for the entry rules, and what the year knows about it.
    EntryDraft draft() const;
    EntryContext entry_context() const;
    // The checks in their order, then the write, the reload and the end of the
    // mode. False when a check stopped it (nothing written, the mode kept).
    bool cmdUpdate_Click();

    // ---- Screen-wide options, old chart, carry-forward (screen_options.cpp) ----
    bool optMOD_Click(std::string_view method);      // "WDV" / "SLM"
    bool optResValOf_Click(std::string_view basis);  // "COST" / "CA"
    bool cboRndRemLife_Click(int index);
    // The options that ask nothing (schedule as per books, roundings, additional
    // depreciation, nil remaining life, Companies-Act set-up): written at once.
    void SetOptions(const RegisterOptions& options);
    void cboBADep_Click(int index);
    // The ticks of those options, each written at once.
    void chkFASchBooks_Click();
    void chkRndFA_Click();
    void chkRndIT_Click();
    void chkRemLife0_Click();
    void cmdOldDepChart_Click();

    // ---- Calculation (calculate_action.cpp) ----
    // Calculates by the display mode: a books mode works the Companies Act figures per
    // asset, an income-tax mode the blocks (and writes the year's chart); then the
    // calculation sheet, the block-wise summary and the chart go to the report object.
    void cmdDeprCalc_Click();
    // After an income-tax calculation: additional depreciation under a concessional
    // regime is refused, and on Yes removed from the year's chart.
    void CheckConcessionalRegime(bool hand_edited);
    // The figures of the latest calculation, for the window to show; none once an entry,
    // the options or the typed depreciation changed after it (its figures are out of date).
    const std::shared_ptr<const CalculationResult>& LastCalculation() const { return last_run_; }
    // Offers the previous year's closing figures as this year's opening entries.
    void CarryForward();
    // "Edit Depreciation (FA)": the depreciation of each group typed in by hand
    // (manual_depreciation.cpp).
    void cmdEditFA_Click();
    bool vsEditFA_ValidateEdit(int row, std::string_view text);
    void cmdSaveEditFA_Click();
    void cmdBackEditFA_Click();
    // "Transfer to Trial Balance": the books figures into the client's trial balance.
    void cmdTransToTB_Click();
    // The blocks that ended nil into the capital-gains records of depreciable assets.
    void TransferToCapitalGains();

    // ---- What the calculation, chart and export read ----
    // The serials the grids show, in their order (the grids read the rows a page at a time).
    const std::vector<long>& OpeningSerials() const { return opening_serials_; }
    const std::vector<long>& AdditionSerials() const { return addition_serials_; }
    const std::vector<store::AssetGroupRow>& AssetGroups() const { return groups_; }
    const store::AssetGroupRow* FindGroup(long id) const;
    const std::vector<store::ClBlockRow>& CompaniesActBlocks() const { return cl_blocks_; }
    const std::vector<store::ItBlockRow>& IncomeTaxBlocks() const { return it_blocks_; }
    const RegisterOptions& Options() const { return options_; }
    store::RegisterStore& Store() { return *store_; }
    int Year() const { return year_; }
    const std::string& Code() const { return code_; }
    bool OldChart() const { return old_chart_; }
    EntryMode Mode() const { return Mode_; }
    bool Entering() const { return Mode_ != EntryMode::None; }
    // The chosen group of the filter, none for "(All)".
    std::optional<long> FilterGroup() const;

    // ---- Controls ----
    // Browse state.
    Grid vsO;
    Grid vsA;
    int vsO_Row = -1;  // the selected row of each grid
    int vsA_Row = -1;
    ComboBox cboFAGM;
    // The browse state's buttons: with the old chart kept only the deletes work.
    CommandButton cmdAddO, cmdEditO, cmdDelO, cmdDelAllO, cmdAddA, cmdEditA, cmdDelA, cmdDelAllA;
    CommandButton cmdDeprCalc, cmdAssetGroupMas, cmdOldDepChart, cmdTransToTB, cmdEditFA;
    CommandButton cmdExportXls, cmdImportXls;  // enabled when the host hands in their work

    // ---- Export to and import from a spreadsheet (screen_options.cpp) ----
    // The work belongs to data exchange, above this screen: the host hands it in.
    // Each action talks to the person through the screen's Ui; the import says
    // whether it wrote anything (the grids are then reloaded).
    struct WorkbookActions {
        std::function<void(Ui&)> export_xls;
        std::function<bool(Ui&)> import_xls;
    };
    void set_workbook_actions(WorkbookActions actions);
    void cmdExportXls_Click();
    void cmdImportXls_Click();
    // The manual depreciation of each group: IdFAGM (hidden), the group, the amount.
    Grid vsEditFA;
    bool famEditFA_Visible = false;
    // The screen-wide options as the browse state shows them.
    CheckBox optWDV, optSLM, optCost, optCA;  // option buttons: Value is "chosen"
    CheckBox chkFASchBooks, chkRndFA, chkRndIT, chkRemLife0;
    ComboBox cboBADep;  // "BADEP"
    ComboBox cboRndRemLife;
    // Lists of the blocks of the year as the grids' combo columns take them:
    // income-tax blocks and Companies-Act classifications ("#0; |#-1;N/A" first),
    // blocks of the books ("#GrpId;grpdesc").
    std::string BlockListIT;
    std::string BlockListCL;
    std::string BlockListFA;
    // The display mode the calculate button works by (a books or an income-tax mode);
    // changed through cboDepMode_Click.
    reg::Mode DepMode = reg::Mode::DEP_FA;
    std::string lblBooksBand;  // "As per Books" / "As per Companies Act"
    // The heading of the books half of the entry frames, by the client's status.
    std::string lblBooksHeading = "For Calculation as per Companies Act 2013";

    // Entry frame, both sides.
    bool famEditO_Visible = false;
    bool famEditA_Visible = false;
    GroupField txtAssetGroup;
    Grid vsFAGM;
    vTXT txtPart;
    std::vector<vTXT> txtfieldsO;
    std::vector<std::string> lblfieldsO;  // the captions the messages quote
    std::vector<CheckBox> chkfieldsO;
    ComboBox cboCalcCA;
    vTXT txtCalcCA;
    std::string lblCalcCA;
    std::string lblRemLifeO;  // "Remaining Life As on 01/04/... out of Total Life: ... Years"
    std::string txtRemLifeO;
    ComboBox cboMODo;
    ComboBox cboResValOfO;
    std::string lblResValOfO;
    int optsWdvIT = WdvIT_Other;
    Grid vsESA;
    CheckBox chkTotESA;
    vTXT txtTotESA;
    std::string lblBlockO;
    std::string lblNESD;
    std::string lblDaysDeprCL;

    std::vector<vTXT> txtfieldsA;
    std::vector<std::string> lblfieldsA;
    std::vector<CheckBox> chkfieldsA;
    std::string lblMiscAdjA;  // "Misc. Adjustments"
    std::string lblNetAmtA;   // "Net Amount"
    ComboBox cboMODa;
    ComboBox cboRndAddRtAuto;
    std::string lblBlockA;
    std::string lblRemLifeA;

    std::vector<vTXT> txtfieldsD;
    std::vector<std::string> lblfieldsD;
    // The sale/deduction leaves the asset held: the block loses the amount, the asset
    // carries on (into next year's opening entries too).
    CheckBox chkPartDed;
    Grid vsS;
    std::string lblShiftDays;
    CheckBox chkAutoCalcDeprCL;
    vTXT txtAutoCalcDeprCL;

    // Which field the last failed check sent the person back to (side 'O', 'A', 'D',
    // 'P' particulars, 'G' group; index within the side).
    char FocusSide = 0;
    int FocusIndex = -1;

private:
    // register_loading.cpp
    void set_up_grids();
    void fill_group_picker();
    void fill_filter();
    void fill_grids();
    std::string opening_line(const store::OpeningRow& o, int sn) const;
    std::string addition_line(const store::AdditionRow& a, int sn) const;
    GridRowPage opening_page(int first, int count);
    GridRowPage addition_page(int first, int count);
    long selected_serial(const Grid& grid, int row) const;
    long selected_group(const Grid& grid, int row) const;
    void delete_all(bool opening);

    // entry_frame.cpp
    void set_up_fields();
    void clear_entry();
    void show_opening(const store::OpeningRow& o);
    void show_addition(const store::AdditionRow& a);
    void apply_group_defaults();
    void show_rate_ticks();
    void recalc_opening();
    void recalc_addition();
    void update_days();
    void refresh_common_texts();
    bool field_check(vTXT& field, EntryField which, EntrySide side, const char* mask);
    double esa_total() const;
    void focus(char side, int index) {
        FocusSide = side;
        FocusIndex = index;
    }

    // update_checks.cpp
    bool checks_pass();
    void focus_on(EntryField field);
    bool show_findings(const std::vector<Finding>& findings);

    // register_writes.cpp
    store::OpeningRow opening_row() const;
    store::AdditionRow addition_row() const;
    std::string shift_det() const;
    std::string det_esa() const;
    void write_entry();

    // screen_options.cpp
    bool ask_change(std::string_view caption);
    void write_options();
    // The option controls and the buttons drawn from the options and the old chart.
    void show_state();

    bool is_opening_mode() const { return Mode_ == EntryMode::ADDO || Mode_ == EntryMode::EDITO; }
    bool is_addition_mode() const { return Mode_ == EntryMode::ADDA || Mode_ == EntryMode::EDITA; }
    bool written_down() const { return is_income_tax_mode(DepMode); }

    frame::Component& comp_;
    Ui& ui_;
    std::shared_ptr<const CalculationResult> last_run_;
    void register_changed() { last_run_.reset(); }
    std::unique_ptr<store::RegisterStore> store_;
    int year_ = 0;
    std::string code_;
    WorkbookActions workbook_;
    bool old_chart_ = false;
    EntryMode Mode_ = EntryMode::None;
    // The books rate of each side is worked out from life and residual value (its tick
    // reads "Auto Calculated") rather than taken from the group master.
    bool rate_auto_O_ = false;
    bool rate_auto_A_ = false;
    long edit_serial_ = 0;
    RegisterOptions options_;
    std::vector<long> opening_serials_;
    std::vector<long> addition_serials_;
    std::optional<long> shown_group_;  // the filter the serials were read under
    std::vector<store::AssetGroupRow> groups_;
    std::vector<store::ClBlockRow> cl_blocks_;
    std::vector<store::ItBlockRow> it_blocks_;
    std::vector<store::Block> book_blocks_;
};

}  // namespace brenlow::reg
