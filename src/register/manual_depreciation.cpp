// "Edit Depreciation (FA)": the depreciation of each asset group typed in by hand
// (NewFAMD), on the grid vsEditFA. The grid lists every group of the year and any row
// of NewFAMD that belongs to no group (IdFAGM -1); a group with nothing typed is not
// written. Save rewrites the client's rows of the year whole; Back leaves unchanged.

#include <map>

#include "controls/number_format.h"
#include "register/frm_new_fatr.h"
#include "register/register_entry_math.h"

namespace brenlow::reg {
namespace {

constexpr const char* kModule = "frmNewFATR";
constexpr int kColGroup = 0, kColName = 1, kColAmount = 2;

}  // namespace

void frmNewFATR::cmdEditFA_Click() {
    frame::guarded(comp_.log, kModule, "cmdEditFA_Click", [&] {
        if (Mode_ != EntryMode::None || old_chart_) return;
        std::map<long, double> typed;
        for (const auto& [group, amount] : store_->manual_depreciation()) typed[group] = amount;
        vsEditFA.clear_rows();
        const auto add = [&](long group, const std::string& name) {
            const int row = vsEditFA.add_item();
            vsEditFA.set_text_matrix(row, kColGroup, std::to_string(group));
            vsEditFA.set_text_matrix(row, kColName, name);
            const auto it = typed.find(group);
            vsEditFA.set_text_matrix(row, kColAmount,
                                     it == typed.end() ? "" : format_mask(it->second, "###0.00"));
        };
        for (const auto& g : groups_) add(g.SrNoFAGM, g.Part);
        if (typed.count(-1)) add(-1, "(No Asset Group)");
        famEditFA_Visible = true;
    });
}

bool frmNewFATR::vsEditFA_ValidateEdit(int row, std::string_view text) {
    bool ok = false;
    frame::guarded(comp_.log, kModule, "vsEditFA_ValidateEdit", [&] {
        if (row < vsEditFA.fixed_rows() || row >= vsEditFA.rows()) return;
        if (text.empty()) {
            vsEditFA.set_text_matrix(row, kColAmount, "");
            ok = true;
            return;
        }
        const auto v = parse_number(text);
        if (!v) return ui_.info("Invalid Value !");
        vsEditFA.set_text_matrix(row, kColAmount, format_mask(*v, "###0.00"));
        ok = true;
    });
    return ok;
}

void frmNewFATR::cmdSaveEditFA_Click() {
    frame::guarded(comp_.log, kModule, "cmdSaveEditFA_Click", [&] {
        if (!famEditFA_Visible) return;
        std::vector<std::pair<long, double>> rows;
        for (int r = vsEditFA.fixed_rows(); r < vsEditFA.rows(); ++r) {
            const std::string amount = vsEditFA.text_matrix(r, kColAmount);
            if (amount.empty()) continue;
            rows.emplace_back(static_cast<long>(number_of(vsEditFA.text_matrix(r, kColGroup))),
                              number_of(amount));
        }
        register_changed();
        store_->rewrite_manual_depreciation(rows);
        famEditFA_Visible = false;
    });
}

void frmNewFATR::cmdBackEditFA_Click() {
    frame::guarded(comp_.log, kModule, "cmdBackEditFA_Click", [&] { famEditFA_Visible = false; });
}

}  // namespace brenlow::reg
