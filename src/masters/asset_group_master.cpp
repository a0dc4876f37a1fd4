#include "masters/asset_group_master.h"

#include "controls/number_format.h"
#include "frame/error_log.h"
#include "masters/master_common.h"

namespace brenlow::masters {

namespace {

constexpr const char* kModule = "frmNewFAGM";

constexpr const char* kTextNotConsideredIT = "(Does Not Consider for Calculation as per Income-Tax Act)";
constexpr const char* kTextNotConsideredFA = "(Does Not Consider for Calculation as per Books)";
constexpr const char* kTextNotConsideredCL = "(Does Not Consider for Calculation as per Companies Act)";
// A classification not chosen yet reads as an empty combo box does.
constexpr const char* kSelect = ComboBox::kNothingChosen;
constexpr const char* kAddEditBlocks = "(Add/Edit Block Master)";
constexpr const char* kNotApplicable = "N/A";
constexpr const char* kRateMask = "###0.00";
// Additional depreciation is allowed on machinery and plant only, at 20% unless
// the person says otherwise.
constexpr const char* kAdditionalBlock = "MACHINERY AND PLANT";
constexpr const char* kAdditionalRate = "20.00";
// The id of the chooser row that opens the block master.
constexpr const char* kAddEditId = "+";

std::string rate_two_places(double rate) {
    return format_mask(rate, kRateMask);
}
std::string rate_two_places(const std::optional<double>& rate) {
    return rate ? rate_two_places(*rate) : kNotApplicable;
}

bool is_sub_entry(std::string_view id) {
    return id.find('.') != std::string_view::npos;
}
std::string parent_of(std::string_view id) {
    return std::string(id.substr(0, id.find('.')));
}

void set_up_chooser(Grid& g, std::string_view code_heading) {
    g.set_cols(frmNewFAGM::kChooserColumns);
    g.set_heading(frmNewFAGM::kColCode, "", code_heading);
    g.set_heading(frmNewFAGM::kColNature, "", "Nature/Classification");
    g.set_heading(frmNewFAGM::kColRate, "", "Rate");
    g.set_col_format(frmNewFAGM::kColRate, kRateMask);
    g.set_col_alignment(frmNewFAGM::kColRate, Align::right);
    g.set_col_key(frmNewFAGM::kColId, "ID");
    g.set_col_hidden(frmNewFAGM::kColId, true);
    g.set_col_width(frmNewFAGM::kColCode, 10);
    g.set_col_width(frmNewFAGM::kColNature, 60);
    g.set_col_width(frmNewFAGM::kColRate, 8);
}

void add_chooser_row(Grid& g, const std::string& code, const std::string& text, const std::string& rate,
                     const std::string& id) {
    const int row = g.add_item();
    g.set_text_matrix(row, frmNewFAGM::kColCode, code);
    g.set_text_matrix(row, frmNewFAGM::kColNature, text);
    g.set_text_matrix(row, frmNewFAGM::kColRate, rate);
    g.set_text_matrix(row, frmNewFAGM::kColId, id);
}

int chooser_row(const Grid& g, std::string_view id) {
    for (int r = g.fixed_rows(); r < g.rows(); ++r)
        if (g.text_matrix(r, frmNewFAGM::kColId) == id) return r;
    return -1;
}

}  // namespace

frmNewFAGM::frmNewFAGM(frame::Component& component, Ui& ui, BlockMasterOpener open_block_master)
    : vsM(kVsMColumns, 1),
      txtfields(ui),
      txtRateIT(ui),
      txtAddlRateIT(ui),
      txtRateFA(ui),
      txtLifeYrs(ui),
      txtRateSLM(ui),
      txtRateWDV(ui),
      c_(component),
      ui_(ui),
      open_block_master_(std::move(open_block_master)) {
    frame::guarded(c_.log, kModule, "Form_Load", [&] { Form_Load(); });
}

bool frmNewFAGM::locked(const vTXT& field) const {
    return mode_ == Mode::browse || (&field != &txtfields && field.text() == kNotApplicable);
}

void frmNewFAGM::Form_Load() {
    year_ = open_year(*c_.base);
    set_up_grids();
    txtfields.set_MaxLength(50);
    for (vTXT* f : {&txtRateIT, &txtAddlRateIT, &txtRateFA, &txtLifeYrs, &txtRateSLM, &txtRateWDV}) {
        f->set_ValidateData(vTXT::kDecimal);
        f->set_MaxLength(8);
    }
    load_choosers();
    load_groups(0);
    set_mode(Mode::browse);
}

void frmNewFAGM::set_up_grids() {
    const struct {
        int col;
        const char* band;
        const char* heading;
        int width;
    } columns[] = {
        {kColName, "", "Asset Group", 28},
        {kColBlockIT, "As per Income-Tax Act", "Block", 24},
        {kColRateIT, "As per Income-Tax Act", "Rate", 8},
        {kColAddlRateIT, "As per Income-Tax Act", "Addl. Rate", 10},
        {kColBlockFA, "As per Books", "Block", 22},
        {kColRateFA, "As per Books", "Rate", 8},
        {kColBlockCL, "As per Companies Act", "Classification", 34},
        {kColLifeYrs, "As per Companies Act", "Life (Yrs)", 10},
        {kColRateSLM, "As per Companies Act", "SLM Rate", 9},
        {kColRateWDV, "As per Companies Act", "WDV Rate", 9},
    };
    vsM.set_fixed_rows(2);
    for (const auto& c : columns) {
        vsM.set_heading(c.col, c.band, c.heading);
        vsM.set_col_width(c.col, c.width);
        if (c.col != kColName && c.col != kColBlockIT && c.col != kColBlockFA && c.col != kColBlockCL) {
            vsM.set_col_format(c.col, kRateMask);
            vsM.set_col_alignment(c.col, Align::right);
        }
    }
    set_up_chooser(vsIT, "Block");
    set_up_chooser(vsFA, "Block");
    set_up_chooser(vsCL, "Block");
    // Blocks of the books carry no rate of their own; a classification's rates
    // show in the fields once chosen.
    vsFA.set_col_hidden(kColRate, true);
    vsCL.set_col_hidden(kColRate, true);
}

void frmNewFAGM::load_choosers() {
    load_it_chooser();
    load_fa_chooser();
    load_cl_chooser();
}

void frmNewFAGM::load_it_chooser() {
    it_entries_ = store::income_tax_blocks(c_.base->dbobj(), year_);
    std::vector<IdText> blocks;
    vsIT.set_redraw(false);
    vsIT.clear_rows();
    add_chooser_row(vsIT, kNotApplicable, kTextNotConsideredIT, "", kNotConsidered);
    // Sub-entries (the Appendix descriptions) follow their block, indented: they
    // help find the block an asset falls in.
    for (const auto& e : it_entries_) {
        if (is_sub_entry(e.ID)) {
            add_chooser_row(vsIT, "", "    " + e.Part, plain_number(e.Rate), e.ID);
        } else {
            add_chooser_row(vsIT, e.ID, e.Part, plain_number(e.Rate), e.ID);
            blocks.push_back({e.ID, e.Part});
        }
    }
    vsIT.set_redraw(true);
    vsM.set_col_combo_list(kColBlockIT, IdTextList::block_list(blocks).compose());
}

void frmNewFAGM::load_fa_chooser() {
    fa_blocks_ = store::blocks_of_kind_by_name(c_.base->dbobj(), store::kBooksBlock);
    std::vector<IdText> blocks;
    vsFA.set_redraw(false);
    vsFA.clear_rows();
    add_chooser_row(vsFA, kNotApplicable, kTextNotConsideredFA, "", std::to_string(kNotConsideredFA));
    for (const auto& b : fa_blocks_) {
        add_chooser_row(vsFA, std::to_string(b.id), b.name, "", std::to_string(b.id));
        blocks.push_back({std::to_string(b.id), b.name});
    }
    add_chooser_row(vsFA, "", kAddEditBlocks, "", kAddEditId);
    vsFA.set_redraw(true);
    vsM.set_col_combo_list(kColBlockFA, IdTextList::block_list(blocks).compose());
}

void frmNewFAGM::load_cl_chooser() {
    cl_entries_ = store::companies_act_classes(c_.base->dbobj(), year_);
    std::vector<IdText> classes;
    vsCL.set_redraw(false);
    vsCL.clear_rows();
    add_chooser_row(vsCL, kNotApplicable, kTextNotConsideredCL, "", kNotConsidered);
    for (const auto& e : cl_entries_) {
        // A classification's life and rates sit on its sub-entries where it has them.
        add_chooser_row(vsCL, is_sub_entry(e.ID) ? "" : e.ID, is_sub_entry(e.ID) ? "    " + e.Part : e.Part,
                        e.RateW ? plain_number(*e.RateW) : "", e.ID);
        classes.push_back({e.ID, e.Part});
    }
    vsCL.set_redraw(true);
    vsM.set_col_combo_list(kColBlockCL, IdTextList::block_list(classes).compose());
}

void frmNewFAGM::load_groups(long keep_serial) {
    const auto groups = store::asset_groups_of_year(c_.base->dbobj(), year_);
    vsM.set_redraw(false);
    vsM.clear_rows();
    for (const auto& g : groups) {
        const int row = vsM.add_item();
        vsM.set_row_data(row, g.SrNoFAGM);
        vsM.set_text_matrix(row, kColName, g.Part);
        vsM.set_text_matrix(row, kColBlockIT, g.BlockIdIT);
        const bool it = g.BlockIdIT != kNotConsidered;
        bool additional = false;
        for (const auto& e : it_entries_)
            if (e.ID == g.BlockIdIT) additional = e.Part == kAdditionalBlock;
        vsM.set_text_matrix(row, kColRateIT, it ? plain_number(g.RateIT) : kNotApplicable);
        vsM.set_text_matrix(row, kColAddlRateIT,
                            it && additional ? plain_number(g.AddlRateIT) : kNotApplicable);
        vsM.set_text_matrix(row, kColBlockFA, std::to_string(g.BlockFA));
        vsM.set_text_matrix(row, kColRateFA,
                            g.BlockFA != kNotConsideredFA ? plain_number(g.RateFA) : kNotApplicable);
        vsM.set_text_matrix(row, kColBlockCL, g.BlockIdCL);
        const bool cl = g.BlockIdCL != kNotConsidered;
        vsM.set_text_matrix(row, kColLifeYrs, cl ? plain_number(g.LifeYrs) : kNotApplicable);
        vsM.set_text_matrix(row, kColRateSLM, cl ? plain_number(g.RateSLM) : kNotApplicable);
        vsM.set_text_matrix(row, kColRateWDV, cl ? plain_number(g.RateWDV) : kNotApplicable);
    }
    vsM.set_redraw(true);
    const int keep = keep_serial ? row_of(keep_serial) : -1;
    vsM_row_ = keep >= 0 ? keep : (vsM.data_rows() > 0 ? vsM.fixed_rows() : -1);
    if (mode_ == Mode::browse) {
        if (vsM_row_ >= 0) {
            show_group(serial_of(vsM_row_));
        } else {
            clear_fields();
        }
    }
}

int frmNewFAGM::row_of(long serial) const {
    for (int r = vsM.fixed_rows(); r < vsM.rows(); ++r)
        if (serial_of(r) == serial) return r;
    return -1;
}

int frmNewFAGM::row_of_name(std::string_view name) const {
    for (int r = vsM.fixed_rows(); r < vsM.rows(); ++r)
        if (vsM.text_matrix(r, kColName) == name) return r;
    return -1;
}

void frmNewFAGM::show_group(long serial) {
    const auto g = store::asset_group(c_.base->dbobj(), year_, serial);
    if (!g) {
        clear_fields();
        return;
    }
    txtfields.set_text(g->Part);
    // The stored rates are shown as stored; choosing a block again proposes its own.
    pick_it(g->BlockIdIT);
    if (g->BlockIdIT != kNotConsidered) {
        txtRateIT.set_text(rate_two_places(g->RateIT));
        if (txtAddlRateIT.text() != kNotApplicable) txtAddlRateIT.set_text(rate_two_places(g->AddlRateIT));
    }
    pick_fa(g->BlockFA);
    if (g->BlockFA != kNotConsideredFA) txtRateFA.set_text(rate_two_places(g->RateFA));
    pick_cl(g->BlockIdCL);
    if (g->BlockIdCL != kNotConsidered) {
        txtLifeYrs.set_text(rate_two_places(g->LifeYrs));
        txtRateSLM.set_text(rate_two_places(g->RateSLM));
        txtRateWDV.set_text(rate_two_places(g->RateWDV));
    }
}

void frmNewFAGM::clear_fields() {
    txtfields.set_text("");
    block_it_ = kNothingChosen;
    block_fa_ = kNothingChosenFA;
    block_cl_ = kNothingChosen;
    lblBlockIT.Caption = lblBlockFA.Caption = lblBlockCL.Caption = kSelect;
    for (vTXT* f : {&txtRateIT, &txtAddlRateIT, &txtRateFA, &txtLifeYrs, &txtRateSLM, &txtRateWDV})
        f->set_text(kNotApplicable);
}

void frmNewFAGM::set_mode(Mode mode) {
    mode_ = mode;
    const bool entry = mode != Mode::browse;
    cmdAdd.Enabled = cmdModify.Enabled = cmdDelete.Enabled = !entry;
    cmdUpdate.Enabled = cmdCancel.Enabled = entry;
    cmdBlockIT.Enabled = cmdBlockFA.Enabled = cmdBlockCL.Enabled = entry;
    hide_choosers();
}

void frmNewFAGM::hide_choosers() {
    vsIT_Visible = vsFA_Visible = vsCL_Visible = false;
}

// ---- Choosers ------------------------------------------------------------------

void frmNewFAGM::pick_it(const std::string& chosen) {
    if (chosen == kNotConsidered) {
        block_it_ = kNotConsidered;
        lblBlockIT.Caption = kTextNotConsideredIT;
        txtRateIT.set_text(kNotApplicable);
        txtAddlRateIT.set_text(kNotApplicable);
        return;
    }
    // A sub-entry stands for its block: the block is what the calculation works on.
    const std::string id = is_sub_entry(chosen) ? parent_of(chosen) : chosen;
    for (const auto& e : it_entries_) {
        if (e.ID != id) continue;
        block_it_ = id;
        lblBlockIT.Caption = e.Part;
        txtRateIT.set_text(rate_two_places(e.Rate));
        txtAddlRateIT.set_text(e.Part == kAdditionalBlock ? kAdditionalRate : kNotApplicable);
        return;
    }
    // A block the year's list no longer has keeps its code.
    block_it_ = id;
    lblBlockIT.Caption = id;
    txtAddlRateIT.set_text(kNotApplicable);
}

void frmNewFAGM::pick_fa(long id) {
    if (id == kNotConsideredFA) {
        block_fa_ = kNotConsideredFA;
        lblBlockFA.Caption = kTextNotConsideredFA;
        txtRateFA.set_text(kNotApplicable);
        return;
    }
    block_fa_ = id;
    lblBlockFA.Caption = std::to_string(id);
    for (const auto& b : fa_blocks_)
        if (b.id == id) lblBlockFA.Caption = b.name;
    if (txtRateFA.text() == kNotApplicable) txtRateFA.set_text(rate_two_places(0.0));
}

void frmNewFAGM::pick_cl(const std::string& id) {
    if (id == kNotConsidered) {
        block_cl_ = kNotConsidered;
        lblBlockCL.Caption = kTextNotConsideredCL;
        for (vTXT* f : {&txtLifeYrs, &txtRateSLM, &txtRateWDV}) f->set_text(kNotApplicable);
        return;
    }
    block_cl_ = id;
    lblBlockCL.Caption = id;
    for (const auto& e : cl_entries_) {
        if (e.ID != id) continue;
        lblBlockCL.Caption = e.Part;
        txtLifeYrs.set_text(rate_two_places(e.Yrs));
        txtRateSLM.set_text(rate_two_places(e.RateS));
        txtRateWDV.set_text(rate_two_places(e.RateW));
    }
}

void frmNewFAGM::cmdBlockIT_Click() {
    if (mode_ == Mode::browse) return;
    const bool show = !vsIT_Visible;
    hide_choosers();
    vsIT_Visible = show;
}

void frmNewFAGM::cmdBlockFA_Click() {
    if (mode_ == Mode::browse) return;
    const bool show = !vsFA_Visible;
    hide_choosers();
    vsFA_Visible = show;
}

void frmNewFAGM::cmdBlockCL_Click() {
    if (mode_ == Mode::browse) return;
    const bool show = !vsCL_Visible;
    hide_choosers();
    vsCL_Visible = show;
}

void frmNewFAGM::vsIT_Click(int row) {
    frame::guarded(c_.log, kModule, "vsIT_Click", [&] {
        if (mode_ == Mode::browse || row < vsIT.fixed_rows() || row >= vsIT.rows()) return;
        pick_it(vsIT.text_matrix(row, kColId));
        vsIT_Visible = false;
    });
}

void frmNewFAGM::vsFA_Click(int row) {
    frame::guarded(c_.log, kModule, "vsFA_Click", [&] {
        if (mode_ == Mode::browse || row < vsFA.fixed_rows() || row >= vsFA.rows()) return;
        const std::string id = vsFA.text_matrix(row, kColId);
        if (id == kAddEditId) {
            if (!open_block_master_) return;
            open_block_master_(store::kBooksBlock);
            // Blocks may have been added, renamed or deleted meanwhile.
            load_fa_chooser();
            if (block_fa_ > 0) pick_fa(block_fa_);
            return;
        }
        pick_fa(std::stol(id));
        vsFA_Visible = false;
    });
}

void frmNewFAGM::vsCL_Click(int row) {
    frame::guarded(c_.log, kModule, "vsCL_Click", [&] {
        if (mode_ == Mode::browse || row < vsCL.fixed_rows() || row >= vsCL.rows()) return;
        pick_cl(vsCL.text_matrix(row, kColId));
        vsCL_Visible = false;
    });
}

bool frmNewFAGM::choose_it_block(std::string_view id) {
    const int row = chooser_row(vsIT, id);
    if (row < 0) return false;
    vsIT_Click(row);
    return true;
}

bool frmNewFAGM::choose_books_block(long id) {
    const int row = chooser_row(vsFA, std::to_string(id));
    if (row < 0) return false;
    vsFA_Click(row);
    return true;
}

bool frmNewFAGM::choose_classification(std::string_view id) {
    const int row = chooser_row(vsCL, id);
    if (row < 0) return false;
    vsCL_Click(row);
    return true;
}

// ---- Events --------------------------------------------------------------------

void frmNewFAGM::Form_Activate() {
    frame::guarded(c_.log, kModule, "Form_Activate", [&] {
        if (!c_.masters_changed) return;
        load_choosers();
        load_groups(vsM_row_ >= 0 ? serial_of(vsM_row_) : 0);
        c_.masters_changed = false;
    });
}

bool frmNewFAGM::Form_QueryUnload() {
    return mode_ == Mode::browse || cancel_confirmed();
}

bool frmNewFAGM::cancel_confirmed() {
    return ui_.ask_yes_no("Do you want to Cancel the Entry?", MsgIcon::question, false);
}

void frmNewFAGM::vsM_RowColChange(int row) {
    frame::guarded(c_.log, kModule, "vsM_RowColChange", [&] {
        if (row < vsM.fixed_rows() || row >= vsM.rows()) return;
        vsM_row_ = row;
        if (mode_ == Mode::browse) show_group(serial_of(row));
    });
}

void frmNewFAGM::cmdAdd_Click() {
    frame::guarded(c_.log, kModule, "cmdAdd_Click", [&] {
        clear_fields();
        editing_serial_ = 0;
        set_mode(Mode::adding);
    });
}

void frmNewFAGM::cmdModify_Click() {
    frame::guarded(c_.log, kModule, "cmdModify_Click", [&] {
        if (vsM_row_ < vsM.fixed_rows() || vsM_row_ >= vsM.rows()) return;
        editing_serial_ = serial_of(vsM_row_);
        show_group(editing_serial_);
        set_mode(Mode::modifying);
    });
}

void frmNewFAGM::cmdUpdate_Click() {
    frame::guarded(c_.log, kModule, "cmdUpdate_Click", [&] { save(); });
}

store::AssetGroupRow frmNewFAGM::entry() const {
    store::AssetGroupRow g;
    g.SrNoFAGM = editing_serial_;
    g.Yr = year_;
    g.Part = trimmed(txtfields.text());
    g.BlockIdIT = block_it_;
    g.RateIT = field_number(txtRateIT.text());
    g.AddlRateIT = field_number(txtAddlRateIT.text());
    g.BlockFA = block_fa_;
    g.RateFA = field_number(txtRateFA.text());
    g.BlockIdCL = block_cl_;
    g.LifeYrs = field_number(txtLifeYrs.text());
    g.RateSLM = field_number(txtRateSLM.text());
    g.RateWDV = field_number(txtRateWDV.text());
    return g;
}

void frmNewFAGM::save() {
    if (mode_ == Mode::browse) return;
    const store::AssetGroupRow g = entry();
    if (g.Part.empty()) {
        ui_.info("Please specify 'Asset Group' !");
        return;
    }
    // Each classification is either a real one or declared not considered.
    if (g.BlockIdIT == kNothingChosen) {
        ui_.info("Please specify 'Block as per Income-Tax Act' !");
        return;
    }
    if (g.BlockFA == kNothingChosenFA) {
        ui_.info("Please specify 'Block as per Books' !");
        return;
    }
    if (g.BlockIdCL == kNothingChosen) {
        ui_.info("Please specify 'Classification as per Companies Act' !");
        return;
    }
    auto& db = c_.base->dbobj();
    const std::optional<long> except =
        mode_ == Mode::modifying ? std::optional<long>(g.SrNoFAGM) : std::nullopt;
    // Two groups of one name are allowed once the person confirms it.
    auto confirmed = [&] {
        return ui_.ask_yes_no("Duplicate 'Asset Group' Name !\n\nContinue ?", MsgIcon::question, false);
    };
    const bool taken = store::asset_group_name_taken(db, year_, g.Part, except);
    if (taken && !confirmed()) return;
    long serial = g.SrNoFAGM;
    if (mode_ == Mode::adding) {
        // Unconfirmed, the name is looked for again under the lock that takes the
        // serial: another user may have added it meanwhile.
        std::optional<long> added = taken ? std::optional<long>(store::add_asset_group(db, g))
                                          : store::add_asset_group_of_new_name(db, g);
        if (!added) {
            if (!confirmed()) return;
            added = store::add_asset_group(db, g);
        }
        serial = *added;
    } else {
        store::modify_asset_group(db, g);
    }
    set_mode(Mode::browse);
    load_groups(serial);
}

void frmNewFAGM::cmdDelete_Click() {
    frame::guarded(c_.log, kModule, "cmdDelete_Click", [&] { remove(); });
}

void frmNewFAGM::remove() {
    if (mode_ != Mode::browse || vsM_row_ < vsM.fixed_rows() || vsM_row_ >= vsM.rows()) return;
    const long serial = serial_of(vsM_row_);
    if (!ui_.ask_yes_no("Do you want to Delete Selected Item?", MsgIcon::question, false)) return;
    auto& db = c_.base->dbobj();
    if (store::asset_group_used_by_opening(db, year_, serial) ||
        store::asset_group_used_by_addition(db, year_, serial)) {
        ui_.info("Can't Delete ! 'Asset Group' already in use !");
        return;
    }
    store::delete_asset_group(db, year_, serial);
    load_groups(0);
}

void frmNewFAGM::cmdCancel_Click() {
    frame::guarded(c_.log, kModule, "cmdCancel_Click", [&] {
        if (mode_ == Mode::browse) return;
        if (!cancel_confirmed()) return;
        set_mode(Mode::browse);
        if (vsM_row_ >= 0) {
            show_group(serial_of(vsM_row_));
        } else {
            clear_fields();
        }
    });
}

void frmNewFAGM::cmdback_Click() {
    frame::guarded(c_.log, kModule, "cmdback_Click", [&] {
        if (!Form_QueryUnload()) return;
        // Leaving discards the entry.
        set_mode(Mode::browse);
        ui_.close_screen();
    });
}

}  // namespace brenlow::masters
