#include "capital/ledger_master.h"

#include <algorithm>
#include <cstdlib>

#include "frame/error_log.h"
#include "store/sql_dialect.h"

namespace brenlow::capital {
namespace {

constexpr const char* kModule = "frmcapledmas";

std::string trimmed(std::string_view text) {
    const auto b = text.find_first_not_of(' ');
    if (b == std::string_view::npos) return {};
    return std::string(text.substr(b, text.find_last_not_of(' ') - b + 1));
}

}  // namespace

frmcapledmas::frmcapledmas(frame::Component& component, Ui& ui)
    : vsf(kColumns, 1), txtName(ui), c_(component), ui_(ui) {
    vsf.set_heading(kColTick, "", "Select");
    vsf.set_heading(kColName, "", "Particulars");
    vsf.set_heading(kColInUse, "", "In Use");
    vsf.set_col_key(kColInUse, kInUse);
    vsf.set_col_width(kColTick, 7);
    vsf.set_col_width(kColName, 48);
    vsf.set_col_width(kColInUse, 7);
    vsf.set_col_alignment(kColTick, Align::center);
    vsf.set_col_alignment(kColInUse, Align::center);
    txtName.set_MaxLength(100);
    cboMaster.List = IdTextList::parse(kMasterList);
    cboMaster.ListIndex = 0;
}

store::Ledger frmcapledmas::ledger() const {
    return cboMaster.Id() == "2" ? store::Ledger::trial_balance : store::Ledger::capital;
}

void frmcapledmas::Form_Load() {
    frame::guarded(c_.log, kModule, "Form_Load", [&] {
        load_list(0);
        set_mode(Mode::browse);
    });
}

void frmcapledmas::cboMaster_Click() {
    frame::guarded(c_.log, kModule, "cboMaster_Click", [&] {
        if (cboMaster.ListIndex < 0) cboMaster.ListIndex = 0;
        set_mode(Mode::browse);
        load_list(0);
    });
}

void frmcapledmas::load_list(long keep_id) {
    auto& db = c_.base->dbobj();
    const auto parts = store::ledger_particulars(db, ledger());
    const auto used = store::ledger_ids_in_use(db, ledger());
    IdTextList link;
    vsf.set_redraw(false);
    vsf.clear_rows();
    for (const auto& p : parts) {
        const int row = vsf.add_item();
        vsf.set_row_data(row, p.id);
        vsf.set_text_matrix(row, kColName, p.name);
        vsf.set_text_matrix(row, kColInUse, used.count(p.id) ? "Yes" : "");
        link.add(std::to_string(p.id), p.name);
    }
    vsf.set_redraw(true);
    cboLink.set_list(link);
    const int keep = keep_id ? row_of(keep_id) : -1;
    vsf_row_ = keep >= 0 ? keep : (vsf.data_rows() > 0 ? vsf.fixed_rows() : -1);
    if (mode_ == Mode::browse)
        txtName.set_text(vsf_row_ >= 0 ? vsf.text_matrix(vsf_row_, kColName) : std::string());
}

int frmcapledmas::row_of(long id) const {
    for (int r = vsf.fixed_rows(); r < vsf.rows(); ++r)
        if (particular_id(r) == id) return r;
    return -1;
}

int frmcapledmas::row_named(std::string_view name) const {
    for (int r = vsf.fixed_rows(); r < vsf.rows(); ++r)
        if (store::equals_case_blind(vsf.text_matrix(r, kColName), trimmed(name))) return r;
    return -1;
}

void frmcapledmas::set_mode(Mode mode) {
    mode_ = mode;
    const bool entry = mode != Mode::browse;
    cmdAdd.Enabled = cmdModify.Enabled = cmdDelete.Enabled = cmdDelUnused.Enabled = cmdlink.Enabled = !entry;
    cmdUpdate.Enabled = cmdCancel.Enabled = entry;
    cboMaster.Enabled = !entry;
}

void frmcapledmas::vsf_RowColChange(int row) {
    if (row < vsf.fixed_rows() || row >= vsf.rows()) return;
    vsf_row_ = row;
    if (mode_ == Mode::browse) txtName.set_text(vsf.text_matrix(row, kColName));
}

void frmcapledmas::vsf_Tick(int row) {
    if (row < vsf.fixed_rows() || row >= vsf.rows() || mode_ != Mode::browse) return;
    vsf.set_text_matrix(row, kColTick, ticked(row) ? "" : "Yes");
}

void frmcapledmas::cmdAdd_Click() {
    frame::guarded(c_.log, kModule, "cmdAdd_Click", [&] {
        txtName.set_text("");
        editing_id_ = 0;
        set_mode(Mode::adding);
    });
}

void frmcapledmas::cmdModify_Click() {
    frame::guarded(c_.log, kModule, "cmdModify_Click", [&] {
        if (vsf_row_ < vsf.fixed_rows() || vsf_row_ >= vsf.rows()) {
            ui_.info("Please select a Particulars.");
            return;
        }
        editing_id_ = particular_id(vsf_row_);
        txtName.set_text(vsf.text_matrix(vsf_row_, kColName));
        set_mode(Mode::modifying);
    });
}

bool frmcapledmas::cmdUpdate_Click() {
    bool done = false;
    frame::guarded(c_.log, kModule, "cmdUpdate_Click", [&] {
        if (mode_ == Mode::browse) return;
        const std::string name = trimmed(txtName.text());
        if (name.empty()) {
            ui_.info("Please Specify 'Particulars'.");
            return;
        }
        auto& db = c_.base->dbobj();
        if (mode_ == Mode::adding) {
            auto use_existing = [&](long existing) {
                if (ui_.ask_yes_no("Duplicate Particulars!!\nDo you want to use the existing Particulars?")) {
                    set_mode(Mode::browse);
                    load_list(existing);
                    done = true;
                }
            };
            if (const auto existing = store::ledger_find(db, ledger(), name)) {
                use_existing(*existing);
                return;
            }
            store::LedgerAdded added;
            try {
                // Looked for again under the lock: another user may have added it meanwhile.
                added = store::ledger_add(db, ledger(), name);
            } catch (const std::exception& e) {
                c_.log.log(e);
                ui_.info("Failed to Create Master [" + name + "]." + store::failure_reason(db.backend(), e));
                return;
            }
            if (!added.created) {
                use_existing(added.id);
                return;
            }
            set_mode(Mode::browse);
            load_list(added.id);
            done = true;
            return;
        }
        if (store::ledger_find(db, ledger(), name, editing_id_)) {
            ui_.info("Can't create Duplicate Particulars!!");
            return;
        }
        const std::string old = store::ledger_name(db, ledger(), editing_id_);
        if (old != name) {
            if (!ui_.ask_yes_no("It will delete the existing particulars '" + old +
                                    "' and will replace with '" + name + "'.\nConfirm ?",
                                MsgIcon::question, false))
                return;
            store::ledger_rename(db, ledger(), editing_id_, name);
        }
        set_mode(Mode::browse);
        load_list(editing_id_);
        done = true;
    });
    return done;
}

void frmcapledmas::cmdCancel_Click() {
    frame::guarded(c_.log, kModule, "cmdCancel_Click", [&] {
        set_mode(Mode::browse);
        txtName.set_text(vsf_row_ >= 0 ? vsf.text_matrix(vsf_row_, kColName) : std::string());
    });
}

void frmcapledmas::show_users(long id, const std::string& name) {
    std::string text;
    for (const auto& u : store::ledger_users(c_.base->dbobj(), ledger(), id))
        text += (text.empty() ? "" : "\n") + u.code + "  " + u.name + "  F.Y. " + u.fy;
    ui_.message(text, MsgIcon::information, "List of Clients/F.Y. using Particulars \"" + name + "\"");
}

void frmcapledmas::cmdDelete_Click() {
    frame::guarded(c_.log, kModule, "cmdDelete_Click", [&] {
        if (mode_ != Mode::browse) return;
        std::vector<int> rows;
        for (int r = vsf.fixed_rows(); r < vsf.rows(); ++r)
            if (ticked(r)) rows.push_back(r);
        if (rows.empty() && vsf_row_ >= vsf.fixed_rows() && vsf_row_ < vsf.rows()) rows.push_back(vsf_row_);
        if (rows.empty()) {
            ui_.info("Please Select a Particulars.");
            return;
        }
        // Asked of the database, not of the list: another user may have used it since.
        const auto used = store::ledger_ids_in_use(c_.base->dbobj(), ledger());
        std::vector<int> in_use;
        for (int r : rows)
            if (used.count(particular_id(r))) in_use.push_back(r);
        if (!in_use.empty()) {
            ui_.info(rows.size() > 1 ? "Particulars already in use. You can not delete these Particulars."
                                     : "Particulars already in use. You can not delete this Particulars.");
            if (ui_.ask_yes_no("Do you want to view the list of Client/F.Y. using the Particulars?"))
                for (int r : in_use) show_users(particular_id(r), vsf.text_matrix(r, kColName));
            return;
        }
        std::string names;
        std::vector<long> ids;
        for (int r : rows) {
            names += (names.empty() ? "" : ", ") + vsf.text_matrix(r, kColName);
            ids.push_back(particular_id(r));
        }
        if (!ui_.ask_yes_no("Do you want to delele the Particulars [" + names + "] ?", MsgIcon::question,
                            false, "Delete Confirmation"))
            return;
        store::ledger_delete(c_.base->dbobj(), ledger(), ids);
        load_list(0);
    });
}

void frmcapledmas::cmdDelUnused_Click() {
    frame::guarded(c_.log, kModule, "cmdDelUnused_Click", [&] {
        if (mode_ != Mode::browse) return;
        auto& db = c_.base->dbobj();
        const auto used = store::ledger_ids_in_use(db, ledger());
        std::vector<long> unused;
        for (const auto& p : store::ledger_particulars(db, ledger()))
            if (!used.count(p.id)) unused.push_back(p.id);
        if (unused.empty()) return;
        if (!ui_.ask_yes_no(
                "Do you really want to Delete " + std::to_string(unused.size()) + " Masters Not in Use ?",
                MsgIcon::question, false))
            return;
        store::ledger_delete(db, ledger(), unused);
        load_list(0);
    });
}

void frmcapledmas::cmdlink_Click() {
    frame::guarded(c_.log, kModule, "cmdlink_Click", [&] {
        if (mode_ != Mode::browse) return;
        std::vector<long> from;
        std::string names;
        for (int r = vsf.fixed_rows(); r < vsf.rows(); ++r)
            if (ticked(r)) {
                from.push_back(particular_id(r));
                names += "\n" + vsf.text_matrix(r, kColName);
            }
        if (from.empty()) {
            ui_.info("Please Select a Paritculars.");
            return;
        }
        if (cboLink.ListIndex < 0) {
            ui_.info("Please select a Partiuclar.");
            return;
        }
        const long to = std::atol(cboLink.Id().c_str());
        // Replacing a particular by itself changes nothing.
        if (std::all_of(from.begin(), from.end(), [&](long id) { return id == to; })) return;
        if (!ui_.ask_yes_no("Particulars selected below will be deleted & will be replaced with '" +
                                cboLink.Text() + "'" + names + "\n\nDo you really want to Replace ?",
                            MsgIcon::question, false))
            return;
        if (!ui_.ask_yes_no("Click 'Yes' only if you are sure about use of this facility.\nConfirm ?",
                            MsgIcon::question, false))
            return;
        store::ledger_replace(c_.base->dbobj(), ledger(), to, from);
        load_list(to);
    });
}

void frmcapledmas::cmdback_Click() {
    frame::guarded(c_.log, kModule, "cmdback_Click", [&] { ui_.close_screen(); });
}

}  // namespace brenlow::capital
