#include "masters/particulars_master.h"

#include "controls/number_format.h"
#include "frame/error_log.h"
#include "masters/master_common.h"
#include "store/masters_store.h"

namespace brenlow::masters {

namespace {

constexpr const char* kModule = "frmfamaster";
constexpr const char* kRateMask = "###0.00";

// A block chooser: a blank entry, then the blocks of the kind by name.
IdTextList block_chooser(store::Database& db, int kind) {
    IdTextList list;
    list.add("0", " ");
    for (const auto& b : store::blocks_of_kind_by_name(db, kind)) list.add(std::to_string(b.id), b.name);
    return list;
}

}  // namespace

frmfamaster::frmfamaster(frame::Component& component, Ui& ui, BlockMasterOpener open_block_master)
    : vsf(kColumns, 1), c_(component), ui_(ui), open_block_master_(std::move(open_block_master)) {
    for (int i = 0; i < kFields; ++i) txtfields.emplace_back(ui);
    frame::guarded(c_.log, kModule, "Form_Load", [&] { Form_Load(); });
}

void frmfamaster::Form_Load() {
    year_ = open_year(*c_.base);
    const struct {
        int col;
        const char* heading;
        int width;
    } columns[] = {
        {kColName, "Name of Asset", 30},       {kColMethod, "Method", 28},
        {kColRateBooks, "Rate (Books)", 13},   {kColRateIT, "Rate (I.Tax)", 13},
        {kColBooksBlock, "Block (Books)", 26}, {kColItBlock, "Block (I.Tax)", 24},
    };
    for (const auto& c : columns) {
        vsf.set_heading(c.col, "", c.heading);
        vsf.set_col_width(c.col, c.width);
    }
    for (int col : {kColRateBooks, kColRateIT}) {
        vsf.set_col_format(col, kRateMask);
        vsf.set_col_alignment(col, Align::right);
    }
    vsf.set_col_combo_list(kColMethod, kMethodList);
    txtfields[kName].set_MaxLength(50);
    for (int f : {kRateBooks, kRateIT}) {
        txtfields[f].set_ValidateData(vTXT::kDecimal);
        txtfields[f].set_MaxLength(8);
    }
    Combo1.List = IdTextList::parse(kMethodList);
    load_choosers();
    load_grid(0);
    set_mode(Mode::browse);
}

void frmfamaster::load_choosers() {
    auto& db = c_.base->dbobj();
    Combo2.set_list(block_chooser(db, store::kBooksBlock));
    Combo3.set_list(block_chooser(db, store::kIncomeTaxBlock));
    vsf.set_col_combo_list(kColBooksBlock, Combo2.List.compose());
    vsf.set_col_combo_list(kColItBlock, Combo3.List.compose());
}

void frmfamaster::load_grid(long keep_id) {
    const auto parts = store::particulars_of_year(c_.base->dbobj(), year_);
    vsf.set_redraw(false);
    vsf.clear_rows();
    for (const auto& p : parts) {
        const int row = vsf.add_item();
        vsf.set_row_data(row, p.id);
        vsf.set_text_matrix(row, kColName, p.name);
        vsf.set_text_matrix(row, kColMethod, p.method);
        vsf.set_value_matrix(row, kColRateBooks, p.rate_books);
        vsf.set_value_matrix(row, kColRateIT, p.rate_it);
        vsf.set_text_matrix(row, kColBooksBlock, std::to_string(p.books_block));
        vsf.set_text_matrix(row, kColItBlock, std::to_string(p.it_block));
    }
    vsf.set_redraw(true);
    const int keep = keep_id ? row_of(keep_id) : -1;
    vsf_row_ = keep >= 0 ? keep : (vsf.data_rows() > 0 ? vsf.fixed_rows() : -1);
    if (mode_ == Mode::browse) show_row(vsf_row_);
}

int frmfamaster::row_of(long id) const {
    for (int r = vsf.fixed_rows(); r < vsf.rows(); ++r)
        if (part_id(r) == id) return r;
    return -1;
}

void frmfamaster::show_row(int row) {
    if (row < vsf.fixed_rows() || row >= vsf.rows()) {
        clear_fields();
        return;
    }
    txtfields[kName].set_text(vsf.text_matrix(row, kColName));
    txtfields[kRateBooks].set_text(vsf.display_text(row, kColRateBooks));
    txtfields[kRateIT].set_text(vsf.display_text(row, kColRateIT));
    Combo1.select_id(vsf.text_matrix(row, kColMethod));
    // A block deleted since shows as nothing chosen; the row keeps its old code
    // until the particular is saved again.
    Combo2.select_id(vsf.text_matrix(row, kColBooksBlock));
    Combo3.select_id(vsf.text_matrix(row, kColItBlock));
}

void frmfamaster::clear_fields() {
    for (auto& f : txtfields) f.set_text("");
    Combo1.ListIndex = Combo2.ListIndex = Combo3.ListIndex = -1;
}

void frmfamaster::set_mode(Mode mode) {
    mode_ = mode;
    const bool entry = mode != Mode::browse;
    cmdaddded.Enabled = cmdmodifyded.Enabled = cmddeleteded.Enabled = !entry;
    cmdupdateded.Enabled = cmdcancelded.Enabled = entry;
    Combo1.Enabled = Combo2.Enabled = Combo3.Enabled = entry;
}

void frmfamaster::Form_Activate() {
    frame::guarded(c_.log, kModule, "Form_Activate", [&] {
        if (!c_.masters_changed) return;
        load_choosers();
        c_.masters_changed = false;
    });
}

bool frmfamaster::Form_QueryUnload() {
    return mode_ == Mode::browse || cancel_confirmed();
}

bool frmfamaster::cancel_confirmed() {
    return ui_.ask_yes_no("Do you want to Cancel the Entry?", MsgIcon::question, false);
}

void frmfamaster::vsf_RowColChange(int row) {
    if (row < vsf.fixed_rows() || row >= vsf.rows()) return;
    vsf_row_ = row;
    if (mode_ == Mode::browse) show_row(row);
}

void frmfamaster::cmdaddded_Click() {
    frame::guarded(c_.log, kModule, "cmdaddded_Click", [&] {
        clear_fields();
        editing_id_ = 0;
        set_mode(Mode::adding);
    });
}

void frmfamaster::cmdmodifyded_Click() {
    frame::guarded(c_.log, kModule, "cmdmodifyded_Click", [&] {
        if (vsf_row_ < vsf.fixed_rows() || vsf_row_ >= vsf.rows()) return;
        show_row(vsf_row_);
        editing_id_ = part_id(vsf_row_);
        set_mode(Mode::modifying);
    });
}

void frmfamaster::cmdupdateded_Click() {
    frame::guarded(c_.log, kModule, "cmdupdateded_Click", [&] { save(); });
}

void frmfamaster::save() {
    if (mode_ == Mode::browse) return;
    store::Particular p;
    p.year = year_;
    p.name = trimmed(txtfields[kName].text());
    if (p.name.empty()) {
        ui_.info("Please specify Name of Asset.");
        return;
    }
    auto& db = c_.base->dbobj();
    p.method = Combo1.ListIndex < 0 ? "0" : Combo1.Id();
    p.rate_books = field_number(txtfields[kRateBooks].text());
    p.rate_it = field_number(txtfields[kRateIT].text());
    p.books_block = static_cast<long>(field_number(Combo2.Id()));
    p.it_block = static_cast<long>(field_number(Combo3.Id()));
    if (mode_ == Mode::adding) {
        p.id = store::add_particular(db, p);
    } else {
        // The row is replaced under its own id, so schedules keep pointing at it.
        p.id = editing_id_;
        store::replace_particular(db, p);
    }
    set_mode(Mode::browse);
    load_grid(p.id);
}

void frmfamaster::cmddeleteded_Click() {
    frame::guarded(c_.log, kModule, "cmddeleteded_Click", [&] { remove(); });
}

void frmfamaster::remove() {
    if (mode_ != Mode::browse || vsf_row_ < vsf.fixed_rows() || vsf_row_ >= vsf.rows()) return;
    const long id = part_id(vsf_row_);
    if (!ui_.ask_yes_no("Do you want to Delete Selected Item?", MsgIcon::question, false)) return;
    store::delete_particular(c_.base->dbobj(), year_, id);
    load_grid(0);
}

void frmfamaster::cmdcancelded_Click() {
    frame::guarded(c_.log, kModule, "cmdcancelded_Click", [&] {
        if (mode_ == Mode::browse || !cancel_confirmed()) return;
        set_mode(Mode::browse);
        show_row(vsf_row_);
    });
}

void frmfamaster::cmdback_Click() {
    frame::guarded(c_.log, kModule, "cmdback_Click", [&] {
        if (!Form_QueryUnload()) return;
        set_mode(Mode::browse);
        ui_.close_screen();
    });
}

void frmfamaster::cmdblock_Click(int kind) {
    frame::guarded(c_.log, kModule, "cmdblock_Click", [&] {
        if (!open_block_master_) return;
        open_block_master_(kind);
        load_choosers();
        load_grid(vsf_row_ >= 0 ? part_id(vsf_row_) : 0);
    });
}

}  // namespace brenlow::masters
