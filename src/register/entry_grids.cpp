// The two small grids of the entry frame: extra-shift rows (vsS) and the
// adjustment rows of an opening asset (vsESA).

#include "controls/number_format.h"
#include "controls/vb_date.h"
#include "register/frm_new_fatr.h"
#include "register/register_entry_math.h"
#include "register/register_text.h"

namespace brenlow::reg {
namespace {

constexpr const char* kModule = "frmNewFATR";

std::string without_broken_bar(std::string_view text) {
    std::string out(text);
    for (std::size_t p; (p = out.find(kESASep)) != std::string::npos;)
        out.erase(p, std::string_view(kESASep).size());
    return out;
}

}  // namespace

void frmNewFATR::AddShiftRow(std::string_view from, std::string_view to, int shift) {
    frame::guarded(comp_.log, kModule, "AddShiftRow", [&] {
        const std::string s = shift >= 1 && shift <= 3 ? std::to_string(shift) : std::string();
        vsS.add_item(std::string(from) + "\t" + std::string(to) + "\t" + s);
    });
}

// The shift frame closes only on rows that are whole, inside the year, and allowed
// by the group.
bool frmNewFATR::cmdShiftOK_Click() {
    bool ok = false;
    frame::guarded(comp_.log, kModule, "cmdShiftOK_Click", [&] {
        const EntryContext ctx = entry_context();
        int days[4] = {0, 0, 0, 0};
        for (int r = vsS.fixed_rows(); r < vsS.rows(); ++r) {
            const int shift = static_cast<int>(vsS.value_matrix(r, 2));
            if (const auto f = shift_row_finding(vsS.text_matrix(r, 0), vsS.text_matrix(r, 1), shift, ctx)) {
                ui_.info(f->message);
                return;
            }
            const auto from = Date::parse(vsS.text_matrix(r, 0));
            const auto to = Date::parse(vsS.text_matrix(r, 1));
            vsS.set_text_matrix(r, 0, from->text());
            vsS.set_text_matrix(r, 1, to->text());
            days[shift] += days_between(*from, *to) + 1;
        }
        static const char* words[] = {"", "Single", "Double", "Triple"};
        lblShiftDays.clear();
        for (int s = 1; s <= 3; ++s) {
            if (days[s] == 0) continue;
            if (!lblShiftDays.empty()) lblShiftDays += ", ";
            lblShiftDays += "Calculated for " + std::to_string(days[s]) + " Day" + (days[s] > 1 ? "s" : "") +
                            " (" + words[s] + " Shift)";
        }
        ok = true;
    });
    return ok;
}

double frmNewFATR::esa_total() const {
    double total = 0;
    for (int r = vsESA.fixed_rows(); r < vsESA.rows(); ++r) total += vsESA.value_matrix(r, 5);
    return total;
}

bool frmNewFATR::AddESARow(std::string_view particulars, std::string_view wdv, std::string_view date,
                           std::string_view amount, std::string_view excess, std::string_view adjust) {
    bool ok = false;
    frame::guarded(comp_.log, kModule, "AddESARow", [&] {
        const std::string part = without_broken_bar(particulars);
        if (const auto f = esa_row_finding(part, wdv, date, amount, excess, adjust, year_))
            return ui_.info(f->message);
        const auto w = parse_number(wdv);
        const auto d = Date::parse(date);
        const auto a = parse_number(amount);
        const auto e = parse_number(excess);
        const auto adj = parse_number(adjust);
        vsESA.add_item(part + "\t" + plain_number(*w) + "\t" + d->text() + "\t" + plain_number(*a) + "\t" +
                       plain_number(*e) + "\t" + plain_number(*adj));
        if (chkTotESA.Value) txtTotESA.set_text(format_mask(esa_total(), "###0.00"));
        ok = true;
    });
    return ok;
}

bool frmNewFATR::vsESA_ValidateEdit(int row, std::string_view adjust) {
    bool ok = false;
    frame::guarded(comp_.log, kModule, "vsESA_ValidateEdit", [&] {
        if (row < vsESA.fixed_rows() || row >= vsESA.rows()) return;
        if (const auto f = esa_edit_finding(adjust, vsESA.value_matrix(row, 4))) return ui_.info(f->message);
        vsESA.set_text_matrix(row, 5, plain_number(*parse_number(adjust)));
        ok = true;
    });
    return ok;
}

void frmNewFATR::RemoveShiftRow(int row) {
    frame::guarded(comp_.log, kModule, "RemoveShiftRow", [&] {
        if (row >= vsS.fixed_rows() && row < vsS.rows()) vsS.remove_item(row);
    });
}

void frmNewFATR::RemoveESARow(int row) {
    frame::guarded(comp_.log, kModule, "RemoveESARow", [&] {
        if (row < vsESA.fixed_rows() || row >= vsESA.rows()) return;
        vsESA.remove_item(row);
        if (chkTotESA.Value) txtTotESA.set_text(format_mask(esa_total(), "###0.00"));
    });
}

// "Gross": one total typed in place of the rows.
void frmNewFATR::chkTotESA_Click() {
    frame::guarded(comp_.log, kModule, "chkTotESA_Click", [&] {
        // A gross amount replaces the detailed rows when the entry is saved: asked first.
        if (!chkTotESA.Value && vsESA.data_rows() > 0) {
            const std::string rows = std::to_string(vsESA.data_rows());
            if (!ui_.ask_yes_no("The " + rows + " adjustment row(s) will be saved as one Gross amount of " +
                                    format_mask(esa_total(), "###0.00") +
                                    " and their details will not be kept. Continue ?",
                                MsgIcon::question, false))
                return;
        }
        chkTotESA.Value = !chkTotESA.Value;
        if (chkTotESA.Value)
            txtTotESA.set_text(format_mask(esa_total(), "###0.00"));
        else
            txtTotESA.set_text("");
    });
}

void frmNewFATR::txtTotESA_Validate() {
    frame::guarded(comp_.log, kModule, "txtTotESA_Validate", [&] {
        if (txtTotESA.text().empty()) return;
        const auto v = parse_number(txtTotESA.text());
        if (!v) return ui_.info("Invalid Value !");
        txtTotESA.set_text(format_mask(*v, "###0.00"));
    });
}

}  // namespace brenlow::reg
