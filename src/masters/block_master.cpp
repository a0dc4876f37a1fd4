#include "masters/block_master.h"

#include <vector>

#include "frame/error_log.h"
#include "masters/master_common.h"
#include "store/masters_store.h"

namespace brenlow::masters {

namespace {
constexpr const char* kModule = "frmblockM";
}

frmblockM::frmblockM(frame::Component& component, Ui& ui, int kind)
    : vsf(kind == store::kIncomeTaxBlock ? 2 : 1, 1), txtfields(ui), c_(component), ui_(ui), kind_(kind) {
    frame::guarded(c_.log, kModule, "Form_Load", [&] { Form_Load(); });
}

std::string frmblockM::Caption() const {
    return std::string(kind_ == store::kIncomeTaxBlock ? "Income Tax" : "Company") + " Block Master";
}

void frmblockM::Form_Load() {
    vsf.set_heading(kColName, "", "Name of Block");
    vsf.set_col_key(kColName, "GrpDesc");
    vsf.set_col_width(kColName, 40);
    if (kind_ == store::kIncomeTaxBlock) {
        vsf.set_heading(kColNature, "", "Under Block");
        vsf.set_col_key(kColNature, "BlockNo");
        vsf.set_col_combo_list(kColNature, kNatureList);
        vsf.set_col_width(kColNature, 28);
    }
    txtfields.set_MaxLength(50);
    Combo1.List = IdTextList::parse(kNatureList);
    // Only income-tax blocks sit under a nature of asset.
    Combo1.Visible = kind_ == store::kIncomeTaxBlock;
    lblUnderBlock.Caption = "Under Block";
    load_grid(0);
    set_mode(Mode::browse);
}

void frmblockM::load_grid(long keep_id) {
    const auto blocks = store::blocks_of_kind(c_.base->dbobj(), kind_);
    vsf.set_redraw(false);
    vsf.clear_rows();
    for (const auto& b : blocks) {
        const int row = vsf.add_item();
        vsf.set_text_matrix(row, kColName, b.name);
        if (kind_ == store::kIncomeTaxBlock) vsf.set_text_matrix(row, kColNature, std::to_string(b.nature));
        vsf.set_row_data(row, b.id);
    }
    vsf.set_redraw(true);
    const int keep = keep_id ? row_of(keep_id) : -1;
    vsf_row_ = keep >= 0 ? keep : (vsf.data_rows() > 0 ? vsf.fixed_rows() : -1);
    if (mode_ == Mode::browse) show_row(vsf_row_);
}

int frmblockM::row_of(long id) const {
    for (int r = vsf.fixed_rows(); r < vsf.rows(); ++r)
        if (block_id(r) == id) return r;
    return -1;
}

int frmblockM::row_of_name(std::string_view name) const {
    for (int r = vsf.fixed_rows(); r < vsf.rows(); ++r)
        if (vsf.text_matrix(r, kColName) == name) return r;
    return -1;
}

void frmblockM::show_row(int row) {
    if (row < vsf.fixed_rows() || row >= vsf.rows()) {
        clear_fields();
        return;
    }
    txtfields.set_text(vsf.text_matrix(row, kColName));
    if (kind_ == store::kIncomeTaxBlock) Combo1.select_id(vsf.text_matrix(row, kColNature));
}

void frmblockM::clear_fields() {
    txtfields.set_text("");
    Combo1.ListIndex = -1;
}

void frmblockM::set_mode(Mode mode) {
    mode_ = mode;
    const bool entry = mode != Mode::browse;
    cmdaddded.Enabled = cmdmodifyded.Enabled = cmddeleteded.Enabled = cmdback.Enabled = !entry;
    cmdupdateded.Enabled = cmdcancelded.Enabled = entry;
    Combo1.Enabled = entry;
}

void frmblockM::vsf_RowColChange(int row) {
    if (row < vsf.fixed_rows() || row >= vsf.rows()) return;
    vsf_row_ = row;
    if (mode_ == Mode::browse) show_row(row);
}

void frmblockM::cmdaddded_Click() {
    frame::guarded(c_.log, kModule, "cmdaddded_Click", [&] {
        clear_fields();
        editing_id_ = 0;
        set_mode(Mode::adding);
    });
}

void frmblockM::cmdmodifyded_Click() {
    frame::guarded(c_.log, kModule, "cmdmodifyded_Click", [&] {
        if (vsf_row_ < vsf.fixed_rows() || vsf_row_ >= vsf.rows()) return;
        show_row(vsf_row_);
        editing_id_ = block_id(vsf_row_);
        set_mode(Mode::modifying);
    });
}

void frmblockM::cmdupdateded_Click() {
    frame::guarded(c_.log, kModule, "cmdupdateded_Click", [&] { save(); });
}

void frmblockM::save() {
    if (mode_ == Mode::browse) return;
    auto& db = c_.base->dbobj();
    const std::string name = trimmed(txtfields.text());
    if (name.empty()) {
        ui_.info("Please specify Name of Block.");
        return;
    }
    const int nature = kind_ == store::kIncomeTaxBlock ? static_cast<int>(field_number(Combo1.Id())) : 0;
    if (kind_ == store::kIncomeTaxBlock && nature == 0) {
        ui_.info("Please specify Under Block.");
        return;
    }
    long id = editing_id_;
    if (mode_ == Mode::adding) {
        // The name is looked for and the id taken under one lock.
        const auto added = store::add_block(db, name, kind_, nature);
        if (!added) {
            ui_.info("Duplicate Block Name.");
            return;
        }
        id = *added;
    } else {
        // A block's own name is not a duplicate of itself.
        if (store::block_name_taken(db, name, kind_, editing_id_)) {
            ui_.info("Duplicate Block Name.");
            return;
        }
        store::update_block(db, {id, name, kind_, nature});
    }
    // The screens that offer blocks reload their lists when they next come up.
    c_.masters_changed = true;
    set_mode(Mode::browse);
    load_grid(id);
}

void frmblockM::cmddeleteded_Click() {
    frame::guarded(c_.log, kModule, "cmddeleteded_Click", [&] { remove(); });
}

void frmblockM::remove() {
    if (mode_ != Mode::browse || vsf_row_ < vsf.fixed_rows() || vsf_row_ >= vsf.rows()) return;
    const long id = block_id(vsf_row_);
    if (!ui_.ask_yes_no("Do you want to Delete this Block?", MsgIcon::question, false)) return;
    auto& db = c_.base->dbobj();
    if (store::block_used_by_particular(db, kind_, id)) {
        ui_.info("Block already in use.");
        return;
    }
    // Every client's schedule of every year counts, not only the open client's.
    std::vector<std::string> suffixes;
    const int count = c_.base->GetTbCount();
    for (int i = 1; i <= count; ++i) suffixes.push_back(c_.base->GetTbName(i));
    if (store::schedule_table_using_block(db, suffixes, kind_, id)) {
        ui_.info("Block already in use.");
        return;
    }
    store::delete_block(db, id);
    load_grid(0);
}

void frmblockM::cmdcancelded_Click() {
    frame::guarded(c_.log, kModule, "cmdcancelded_Click", [&] {
        if (mode_ == Mode::browse) return;
        if (!ui_.ask_yes_no("Do you want to Cancel the Entry?", MsgIcon::question, false)) return;
        set_mode(Mode::browse);
        show_row(vsf_row_);
    });
}

void frmblockM::cmdback_Click() {
    frame::guarded(c_.log, kModule, "cmdback_Click", [&] { ui_.close_screen(); });
}

}  // namespace brenlow::masters
