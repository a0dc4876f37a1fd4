#include "capital/capital.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>

#include "capital/capital_report.h"
#include "controls/number_format.h"
#include "frame/error_log.h"
#include "store/client_store.h"
#include "store/sql_dialect.h"

namespace brenlow::capital {
namespace {

constexpr const char* kModule = "capital";
constexpr const char* kAmountMask = "###0.00";
// The client option that turns the automatic net profit off.
constexpr const char* kNoAutoNetProfit = "NOAUTOPLINCAPSCH";
// The firm's line under the partners.
constexpr const char* kFirmTotal = "Total";

std::string trimmed(std::string_view text) {
    const auto b = text.find_first_not_of(' ');
    if (b == std::string_view::npos) return {};
    return std::string(text.substr(b, text.find_last_not_of(' ') - b + 1));
}

double typed_number(std::string_view text) {
    const std::string t = trimmed(text);
    char* end = nullptr;
    const double v = std::strtod(t.c_str(), &end);
    return end == t.c_str() ? 0 : v;
}

}  // namespace

capital::capital(frame::Component& component, Ui& ui, bool reading_only)
    : vsPL(kPLColumns, 1),
      vsfR(kRColumns, 1),
      vsfC(kCColumns, 1),
      vsLM(1, 1),
      vsIR(kIRColumns, 1),
      txtNetProfit(ui),
      c_(component),
      ui_(ui),
      reading_only_(reading_only) {
    lblNetProfit.Caption = "Net Profit/Loss";
    chkautocalcnp.Caption = "Auto Calculate Net Profit";
    chkShareCurrent.Caption = "Profit Share to Current A/c";
    set_up_grids();
    set_up_terms_grid();
}

void capital::set_up_grids() {
    const struct {
        Grid& grid;
        int col;
        const char* heading;
        int width;
    } headings[] = {
        {vsPL, kPLCode, "Code", 0},
        {vsPL, kPLName, "Partner", 30},
        {vsPL, kPLRatio, "Profit (%)", 10},
        {vsPL, kPLCapital, "Capital A/c", 16},
        {vsPL, kPLCurrent, "Current A/c", 16},
        {vsPL, kPLTotal, "Total", 16},
        {vsfR, kRPartner, "Partner", 34},
        {vsfR, kRRatio, "Profit (%)", 10},
        {vsfC, kCPartner, "Partner", 26},
        {vsfC, kCAccount, "Account", 13},
        {vsfC, kCSide, "DR/CR", 6},
        {vsfC, kCParticular, "Particulars", 30},
        {vsfC, kCAmount, "AMOUNT", 14},
        {vsLM, 0, "Particulars", 44},
    };
    for (const auto& h : headings) {
        h.grid.set_heading(h.col, "", h.heading);
        h.grid.set_col_width(h.col, h.width);
    }
    vsPL.set_col_hidden(kPLCode, true);
    vsPL.set_col_format(kPLRatio, kAmountMask);
    for (int col : {kPLRatio, kPLCapital, kPLCurrent, kPLTotal}) vsPL.set_col_alignment(col, Align::right);
    vsfR.set_col_format(kRRatio, kAmountMask);
    vsfR.set_col_alignment(kRRatio, Align::right);
    for (int col : {kRPartner, kRRatio}) vsfR.set_col_editable(col, true);
    vsfC.set_col_combo_list(kCAccount, kAccountList);
    vsfC.set_col_combo_list(kCSide, kSideList);
    vsfC.set_col_format(kCAmount, kAmountMask);
    vsfC.set_col_alignment(kCAmount, Align::right);
    for (int col : {kCPartner, kCAccount, kCSide, kCParticular, kCAmount}) vsfC.set_col_editable(col, true);
}

void capital::Form_Load() {
    frame::guarded(c_.log, kModule, "Form_Load", [&] {
        auto& base = *c_.base;
        client_ = base.Temp_Code();
        const std::string second = base.SecondDate();
        year_ = second.size() >= 4 ? std::atoi(second.substr(second.size() - 4).c_str()) : 0;
        const auto cy = store::find_client_year(base.dbobj(), client_, year_);
        client_name_ = cy ? cy->client_name : std::string();
        caption_ = "CAPITAL SCHEDULE - " + client_name_;
        rcount_ = base.CYrInd();
        prev_rcount_ = base.PYrInd();
        suffix_ = base.GetTbName(rcount_);
        prev_suffix_ = prev_rcount_ > 0 ? base.GetTbName(prev_rcount_) : std::string();
        fraRatio_Visible = false;
        last_shares_.clear();
        ensure_fixed_particulars();
        load_net_profit();
        load_partners();
        load_particulars();
        load_lines();
        bring_opening_balances();
        load_terms();
        show_partners();
    });
}

void capital::ensure_fixed_particulars() {
    auto& db = c_.base->dbobj();
    for (auto [name, id] : {std::pair{kOpeningBalance, &opening_id_}, std::pair{kProfitShare, &share_id_}}) {
        *id = store::ledger_find(db, store::Ledger::capital, name).value_or(0);
        if (*id || reading_only_) continue;
        try {
            *id = store::ledger_insert(db, store::Ledger::capital, name);
        } catch (const std::exception& e) {
            c_.log.log(e);
            ui_.info(std::string("Failed to Create Master [") + name + "]" +
                     store::failure_reason(db.backend(), e));
        }
    }
    // Interest and remuneration are made when first posted.
    interest_id_ = store::ledger_find(db, store::Ledger::capital, kInterestOnCapital).value_or(0);
    remuneration_id_ = store::ledger_find(db, store::Ledger::capital, kRemuneration).value_or(0);
}

void capital::load_net_profit() {
    auto& base = *c_.base;
    chkautocalcnp.Value = base.GetMiscOthInf(kNoAutoNetProfit, base.SecondDate(), client_) != "1";
    chkShareCurrent.Value = base.GetMiscOthInf(kShareAccountOption, base.SecondDate(), client_) == "1";
    // The items of the year's result less its tax.
    auto_net_ = 0;
    for (const auto& r : store::year_result(base.dbobj(), suffix_, client_))
        auto_net_ += r.ptype == 0 ? r.amt : -r.amt;
    if (chkautocalcnp.Value) txtNetProfit.set_text(format_mask(auto_net_, kAmountMask));
}

double capital::net_profit() const {
    return chkautocalcnp.Value ? auto_net_ : typed_number(txtNetProfit.text());
}

void capital::chkShareCurrent_Click() {
    frame::guarded(c_.log, kModule, "chkShareCurrent_Click", [&] {
        auto& base = *c_.base;
        if (!reading_only_)
            base.SetMiscOthInf(kShareAccountOption, chkShareCurrent.Value ? "1" : "0", base.SecondDate(),
                               client_, kShareAccountCaption);
    });
}

void capital::chkautocalcnp_Click() {
    frame::guarded(c_.log, kModule, "chkautocalcnp_Click", [&] {
        auto& base = *c_.base;
        if (!reading_only_)
            base.SetMiscOthInf(kNoAutoNetProfit, chkautocalcnp.Value ? "0" : "1", base.SecondDate(), client_,
                               "Net profit of the capital schedule typed, not calculated");
        if (chkautocalcnp.Value) txtNetProfit.set_text(format_mask(auto_net_, kAmountMask));
    });
}

std::string capital::partner_code(const store::RatioRow& row) {
    return row.other ? other_partner_code(row.name) : std::to_string(row.code);
}

std::string capital::partner_name(std::string_view code) const {
    if (is_other_partner(code)) return other_partner_name(code);
    for (const auto& p : listed_)
        if (std::to_string(p.code) == code) return p.name;
    return std::string(code);
}

std::string capital::particular_name(long id) const {
    for (const auto& p : particulars_)
        if (p.id == id) return p.name;
    return {};
}

void capital::load_partners() {
    auto& db = c_.base->dbobj();
    listed_ = store::listed_partners(db, client_);
    ratios_ = store::ratio_rows(db, client_, rcount_);
    refresh_partner_lists();
}

// The partner lists of the two grids: vsfR offers the client's partners, those
// entered by hand on its lines and the "[Other]" entry; vsfC the partners of the
// ratios and any partner a line already names.
void capital::refresh_partner_lists() {
    IdTextList ratio_list;
    for (const auto& p : listed_) ratio_list.add(std::to_string(p.code), p.name);
    for (int r = vsfR.fixed_rows(); r < vsfR.rows(); ++r) {
        const std::string code = vsfR.text_matrix(r, kRPartner);
        if (is_other_partner(code)) ratio_list.add(code, other_partner_name(code));
    }
    ratio_list.add(kOtherEntryId, kOtherEntry);
    vsfR.set_col_combo_list(kRPartner, ratio_list.compose());

    IdTextList line_list;
    std::set<std::string> seen;
    auto add = [&](const std::string& code) {
        if (code.empty() || !seen.insert(code).second) return;
        line_list.add(code, partner_name(code));
    };
    for (const auto& r : ratios_) add(partner_code(r));
    for (int r = vsfC.fixed_rows(); r < vsfC.rows(); ++r) add(vsfC.text_matrix(r, kCPartner));
    vsfC.set_col_combo_list(kCPartner, line_list.compose());
}

void capital::load_particulars() {
    particulars_ = store::ledger_particulars(c_.base->dbobj(), store::Ledger::capital);
    IdTextList list;
    vsLM.set_redraw(false);
    vsLM.clear_rows();
    const int first = vsLM.add_item(kNewEntry);
    vsLM.set_row_data(first, kNewRowData);
    for (const auto& p : particulars_) {
        list.add(std::to_string(p.id), p.name);
        const int row = vsLM.add_item(p.name);
        vsLM.set_row_data(row, p.id);
    }
    vsLM.set_redraw(true);
    vsfC.set_col_combo_list(kCParticular, list.compose());
}

int capital::add_line(const std::string& code, int actyp, int nid, long particular, double amt, int after) {
    const int row = vsfC.add_item({}, after >= 0 && after + 1 < vsfC.rows() ? after + 1 : -1);
    vsfC.set_text_matrix(row, kCPartner, code);
    vsfC.set_text_matrix(row, kCAccount, std::to_string(actyp));
    vsfC.set_text_matrix(row, kCSide, nid ? std::to_string(nid) : std::string());
    vsfC.set_text_matrix(row, kCParticular, particular > 0 ? std::to_string(particular) : std::string());
    vsfC.set_value_matrix(row, kCAmount, amt);
    return row;
}

void capital::load_lines() {
    auto& db = c_.base->dbobj();
    auto stored = store::capital_lines(db, suffix_, client_);
    if (stored.empty() && !reading_only_ && !prev_suffix_.empty() &&
        !store::capital_lines(db, prev_suffix_, client_).empty() &&
        ui_.ask_yes_no("Do you want to carry forward previous year particulars ?")) {
        carry_forward();
        stored = store::capital_lines(db, suffix_, client_);
    }
    vsfC.set_redraw(false);
    vsfC.clear_rows();
    for (const auto& l : stored) add_line(l.code, l.actyp, l.nid, l.particular_id, l.amt);
    vsfC.set_redraw(true);
    vsfC_row_ = vsfC.data_rows() > 0 ? vsfC.fixed_rows() : -1;
    refresh_partner_lists();
}

// Last year's closing balance of each partner's account opens this year; the ratios
// come along when this year has none yet.
void capital::carry_forward() {
    auto& db = c_.base->dbobj();
    std::map<std::pair<std::string, int>, double> closing;
    std::vector<std::pair<std::string, int>> order;
    for (const auto& l : store::capital_lines(db, prev_suffix_, client_)) {
        const auto key = std::pair{l.code, l.actyp};
        if (!closing.count(key)) order.push_back(key);
        closing[key] += balance_of({{l.nid, l.amt}});
    }
    std::vector<store::CapitalLine> lines;
    for (const auto& key : order) {
        const double b = vb_round(closing[key], 2);
        if (b == 0) continue;
        const auto side = share_line(b);
        lines.push_back(
            {key.first, static_cast<int>(lines.size()) + 1, opening_id_, side.amt, side.nid, key.second});
    }
    store::rewrite_capital_lines(db, suffix_, client_, lines);
    if (ratios_.empty()) {
        ratios_ = store::ratio_rows(db, client_, prev_rcount_);
        if (!ratios_.empty()) store::rewrite_ratios(db, client_, rcount_, ratios_);
    }
}

// A partner's particular under a capital group of the trial balance opens his
// account: the group "CAPITAL" his Capital A/c, the other capital groups his
// Current A/c. The line is shown, and written when the schedule is saved.
void capital::bring_opening_balances() {
    if (!opening_id_) return;
    const auto balances = store::trial_balance_capital(c_.base->dbobj(), suffix_, client_);
    if (balances.empty()) return;
    std::vector<std::string> codes;
    for (const auto& r : ratios_) codes.push_back(partner_code(r));
    for (const auto& p : listed_) codes.push_back(std::to_string(p.code));
    for (const auto& b : balances) {
        // The partner's own name, or his name with the account's words ("ANIL SHAH
        // CAPITAL A/C"); the words, when they name an account, choose it.
        const auto named = named_account(b.particular);
        const std::string whole = name_key(b.particular);
        std::string code;
        bool by_words = false;
        for (const auto& c : codes) {
            const std::string key = name_key(partner_name(c));
            if (key.empty()) continue;
            if (key == whole || key == named.key) {
                code = c;
                by_words = key != whole;
                break;
            }
        }
        if (code.empty()) continue;
        const int actyp = by_words && named.actyp                        ? *named.actyp
                          : store::equals_case_blind(b.group, "CAPITAL") ? store::kCapitalAccount
                                                                         : store::kCurrentAccount;
        const int nid = b.nid == store::kCapitalDebit ? store::kCapitalDebit : store::kCapitalCredit;
        int found = -1;
        for (int r = vsfC.fixed_rows(); r < vsfC.rows() && found < 0; ++r)
            if (vsfC.text_matrix(r, kCPartner) == code && vsfC.value_matrix(r, kCAccount) == actyp &&
                vsfC.value_matrix(r, kCParticular) == opening_id_)
                found = r;
        if (found < 0) {
            found = add_line(code, actyp, nid, opening_id_, b.amt);
        } else {
            vsfC.set_text_matrix(found, kCSide, std::to_string(nid));
            vsfC.set_value_matrix(found, kCAmount, b.amt);
        }
    }
    refresh_partner_lists();
}

double capital::closing_balance(std::string_view code, int actyp) const {
    std::vector<SideAmount> lines;
    for (int r = vsfC.fixed_rows(); r < vsfC.rows(); ++r)
        if (vsfC.text_matrix(r, kCPartner) == code && vsfC.value_matrix(r, kCAccount) == actyp)
            lines.push_back({static_cast<int>(vsfC.value_matrix(r, kCSide)), vsfC.value_matrix(r, kCAmount)});
    return balance_of(lines);
}

// vsPL: the partners of the ratios, then any other partner a line names, each with
// the closing balances of both accounts.
void capital::show_partners() {
    vsPL.set_redraw(false);
    vsPL.clear_rows();
    std::set<std::string> shown;
    double firm_capital = 0, firm_current = 0, firm_ratio = 0;
    auto add = [&](const std::string& code, const std::string& ratio) {
        if (code.empty() || !shown.insert(code).second) return;
        const int row = vsPL.add_item();
        const double capital_ac = closing_balance(code, store::kCapitalAccount);
        const double current_ac = closing_balance(code, store::kCurrentAccount);
        firm_capital += capital_ac;
        firm_current += current_ac;
        vsPL.set_text_matrix(row, kPLCode, code);
        vsPL.set_text_matrix(row, kPLName,
                             is_other_partner(code) ? "Others- " + partner_name(code) : partner_name(code));
        vsPL.set_text_matrix(row, kPLRatio, ratio);
        vsPL.set_text_matrix(row, kPLCapital, balance_text(capital_ac));
        vsPL.set_text_matrix(row, kPLCurrent, balance_text(current_ac));
        vsPL.set_text_matrix(row, kPLTotal, balance_text(capital_ac + current_ac));
    };
    for (const auto& r : ratios_) {
        firm_ratio += r.rat;
        add(partner_code(r), plain_number(r.rat));
    }
    for (int r = vsfC.fixed_rows(); r < vsfC.rows(); ++r) add(vsfC.text_matrix(r, kCPartner), "");
    // The firm's line: no code, so a line added on it names no partner.
    if (!shown.empty()) {
        const int row = vsPL.add_item();
        vsPL.set_text_matrix(row, kPLName, kFirmTotal);
        vsPL.set_text_matrix(row, kPLRatio, ratios_.empty() ? "" : format_mask(firm_ratio, kAmountMask));
        vsPL.set_text_matrix(row, kPLCapital, balance_text(firm_capital));
        vsPL.set_text_matrix(row, kPLCurrent, balance_text(firm_current));
        vsPL.set_text_matrix(row, kPLTotal, balance_text(firm_capital + firm_current));
    }
    vsPL.set_redraw(true);
    if (vsPL_row_ >= vsPL.rows() || vsPL_row_ < vsPL.fixed_rows())
        vsPL_row_ = vsPL.data_rows() > 0 ? vsPL.fixed_rows() : -1;
    show_terms();
}

// ---- Ratios ------------------------------------------------------------------------

void capital::cmdProfitDet_Click() {
    frame::guarded(c_.log, kModule, "cmdProfitDet_Click", [&] {
        vsfR.set_redraw(false);
        vsfR.clear_rows();
        for (const auto& r : ratios_) {
            const int row = vsfR.add_item();
            vsfR.set_text_matrix(row, kRPartner, partner_code(r));
            vsfR.set_value_matrix(row, kRRatio, r.rat);
        }
        vsfR.set_redraw(true);
        vsfR_row_ = vsfR.data_rows() > 0 ? vsfR.fixed_rows() : -1;
        refresh_partner_lists();
        show_ratio_total();
        fraRatio_Visible = true;
    });
}

void capital::cmdAddP_Click() {
    frame::guarded(c_.log, kModule, "cmdAddP_Click", [&] {
        // A line is added only once the last one names its partner.
        if (vsfR.data_rows() > 0 && vsfR.text_matrix(vsfR.rows() - 1, kRPartner).empty()) {
            ui_.info("Please Specify Partner.");
            vsfR_row_ = vsfR.rows() - 1;
            return;
        }
        vsfR_row_ = vsfR.add_item();
        show_ratio_total();
    });
}

void capital::cmdDelP_Click() {
    frame::guarded(c_.log, kModule, "cmdDelP_Click", [&] {
        if (vsfR_row_ < vsfR.fixed_rows() || vsfR_row_ >= vsfR.rows()) return;
        const std::string code = vsfR.text_matrix(vsfR_row_, kRPartner);
        if (!code.empty() && !ui_.ask_yes_no("Do you really want to delete '" + partner_name(code) + "'",
                                             MsgIcon::question, false))
            return;
        vsfR.remove_item(vsfR_row_);
        if (vsfR_row_ >= vsfR.rows()) vsfR_row_ = vsfR.data_rows() > 0 ? vsfR.rows() - 1 : -1;
        refresh_partner_lists();
        show_ratio_total();
    });
}

bool capital::partner_taken(int row, std::string_view code, std::string_view name) const {
    for (int r = vsfR.fixed_rows(); r < vsfR.rows(); ++r) {
        if (r == row) continue;
        const std::string other = vsfR.text_matrix(r, kRPartner);
        if (other.empty()) continue;
        if (other == code || store::equals_case_blind(trimmed(partner_name(other)), trimmed(name)))
            return true;
    }
    return false;
}

void capital::vsfR_AfterEdit(int row, int col) {
    frame::guarded(c_.log, kModule, "vsfR_AfterEdit", [&] {
        if (row < vsfR.fixed_rows() || row >= vsfR.rows()) return;
        vsfR_row_ = row;
        if (col == kRPartner) {
            const std::string code = vsfR.text_matrix(row, kRPartner);
            if (code == kOtherEntryId) {
                vsfR.set_text_matrix(row, kRPartner, "");
                const auto name = ui_.input_box("Name of the Partner", "Partner");
                if (name) set_other_partner(row, *name);
            } else if (!code.empty() && partner_taken(row, code, partner_name(code))) {
                ui_.info("This Partner already exists.");
                vsfR.set_text_matrix(row, kRPartner, "");
            }
            refresh_partner_lists();
        }
        show_ratio_total();
    });
}

bool capital::set_other_partner(int row, std::string_view typed) {
    const std::string name = trimmed(typed);
    if (name.empty()) {
        ui_.info("Please Specify Partner.");
        return false;
    }
    bool listed = false;
    for (const auto& p : listed_) listed = listed || store::equals_case_blind(trimmed(p.name), name);
    if (listed || partner_taken(row, other_partner_code(name), name)) {
        ui_.info("This Partner already exists.");
        return false;
    }
    vsfR.set_text_matrix(row, kRPartner, other_partner_code(name));
    refresh_partner_lists();
    return true;
}

double capital::ratio_total() const {
    double total = 0;
    for (int r = vsfR.fixed_rows(); r < vsfR.rows(); ++r) total += vsfR.value_matrix(r, kRRatio);
    return total;
}

void capital::show_ratio_total() {
    lblTotal.Caption = ratio_total_text(ratio_total());
}

bool capital::cmdbackP_Click() {
    bool saved = false;
    frame::guarded(c_.log, kModule, "cmdbackP_Click", [&] {
        std::vector<store::RatioRow> rows;
        for (int r = vsfR.fixed_rows(); r < vsfR.rows(); ++r) {
            const std::string code = vsfR.text_matrix(r, kRPartner);
            if (code.empty()) {
                vsfR_row_ = r;
                ui_.info("Please Specify Partner.");
                return;
            }
            store::RatioRow row;
            row.other = is_other_partner(code);
            row.name = partner_name(code);
            row.code = row.other ? 0 : std::atol(code.c_str());
            row.rat = vsfR.value_matrix(r, kRRatio);
            if (const auto fault = ratio_fault(row.rat)) {
                vsfR_row_ = r;
                ui_.info(*fault);
                return;
            }
            rows.push_back(row);
        }
        if (!ratios_whole(ratio_total())) {
            ui_.info("Total Profit (%) should be 100%.");
            return;
        }
        // Partners dropped from the ratios lose their lines, once the person agrees.
        std::set<std::string> kept;
        for (const auto& r : rows) kept.insert(partner_code(r));
        std::vector<std::string> missing;
        std::string names;
        for (int r = vsfC.fixed_rows(); r < vsfC.rows(); ++r) {
            const std::string code = vsfC.text_matrix(r, kCPartner);
            if (code.empty() || kept.count(code) ||
                std::find(missing.begin(), missing.end(), code) != missing.end())
                continue;
            missing.push_back(code);
            names += "\n" + std::string(is_other_partner(code) ? "Others- " : "") + partner_name(code);
        }
        if (!missing.empty() &&
            !ui_.ask_yes_no("Capital A/c Details of following missing partners will be deleted :" + names +
                                "\n\nDo you want to Continue?",
                            MsgIcon::question, false))
            return;
        auto& db = c_.base->dbobj();
        store::rewrite_ratios(db, client_, rcount_, rows);
        store::delete_partner_lines(db, suffix_, client_, missing);
        for (int r = vsfC.rows() - 1; r >= vsfC.fixed_rows(); --r)
            if (std::find(missing.begin(), missing.end(), vsfC.text_matrix(r, kCPartner)) != missing.end())
                vsfC.remove_item(r);
        if (vsfC_row_ >= vsfC.rows()) vsfC_row_ = vsfC.data_rows() > 0 ? vsfC.rows() - 1 : -1;
        // Read back in the order the shares are given.
        ratios_ = store::ratio_rows(db, client_, rcount_);
        load_terms();
        fraRatio_Visible = false;
        refresh_partner_lists();
        show_partners();
        saved = true;
    });
    return saved;
}

// ---- Lines ---------------------------------------------------------------------------

void capital::cmdaddr_Click() {
    frame::guarded(c_.log, kModule, "cmdaddr_Click", [&] {
        std::string code;
        if (vsPL_row_ >= vsPL.fixed_rows() && vsPL_row_ < vsPL.rows())
            code = vsPL.text_matrix(vsPL_row_, kPLCode);
        vsfC_row_ = add_line(code, store::kCapitalAccount, 0, 0, 0);
        vsfC.set_text_matrix(vsfC_row_, kCAmount, "");
    });
}

void capital::cmddelr_Click() {
    frame::guarded(c_.log, kModule, "cmddelr_Click", [&] {
        if (vsfC_row_ < vsfC.fixed_rows() || vsfC_row_ >= vsfC.rows()) return;
        // The profit share is the screen's own line: sharing again replaces it.
        if (share_id_ && vsfC.value_matrix(vsfC_row_, kCParticular) == share_id_) {
            ui_.info("Can't Delete.");
            return;
        }
        vsfC.remove_item(vsfC_row_);
        if (vsfC_row_ >= vsfC.rows()) vsfC_row_ = vsfC.data_rows() > 0 ? vsfC.rows() - 1 : -1;
        show_partners();
    });
}

void capital::vsfC_AfterEdit(int row, int /*col*/) {
    frame::guarded(c_.log, kModule, "vsfC_AfterEdit", [&] {
        if (row >= vsfC.fixed_rows() && row < vsfC.rows()) vsfC_row_ = row;
        show_partners();
    });
}

void capital::vsLM_DblClick(int row) {
    frame::guarded(c_.log, kModule, "vsLM_DblClick", [&] {
        if (row < vsLM.fixed_rows() || row >= vsLM.rows()) return;
        const long id = static_cast<long>(vsLM.row_data(row));
        if (id == kNewRowData) {
            vsLM_New();
            return;
        }
        if (vsfC_row_ >= vsfC.fixed_rows() && vsfC_row_ < vsfC.rows())
            vsfC.set_text_matrix(vsfC_row_, kCParticular, std::to_string(id));
    });
}

void capital::vsLM_New() {
    frame::guarded(c_.log, kModule, "vsLM_New", [&] {
        const auto typed = ui_.input_box("Name of the Particulars", "New Capital Ledger Master");
        if (!typed) return;
        const std::string name = trimmed(*typed);
        if (name.empty()) {
            ui_.info("Please Specify Particulars");
            return;
        }
        auto& db = c_.base->dbobj();
        if (store::ledger_find(db, store::Ledger::capital, name)) {
            ui_.info("Particulars [" + name + "] alreay exists.");
            return;
        }
        long id = 0;
        try {
            const auto added = store::ledger_add(db, store::Ledger::capital, name);
            if (!added.created) {
                ui_.info("Particulars [" + name + "] alreay exists.");
                return;
            }
            id = added.id;
        } catch (const std::exception& e) {
            c_.log.log(e);
            ui_.info("Failed to Create New Particulars Master [" + name + "]" +
                     store::failure_reason(db.backend(), e));
            return;
        }
        load_particulars();
        if (vsfC_row_ >= vsfC.fixed_rows() && vsfC_row_ < vsfC.rows())
            vsfC.set_text_matrix(vsfC_row_, kCParticular, std::to_string(id));
    });
}

std::vector<store::CapitalLine> capital::lines() const {
    std::vector<store::CapitalLine> out;
    for (int r = vsfC.fixed_rows(); r < vsfC.rows(); ++r) {
        store::CapitalLine l;
        l.code = vsfC.text_matrix(r, kCPartner);
        l.actyp = static_cast<int>(vsfC.value_matrix(r, kCAccount));
        l.nid = static_cast<int>(vsfC.value_matrix(r, kCSide));
        l.particular_id = static_cast<long>(vsfC.value_matrix(r, kCParticular));
        l.amt = vsfC.value_matrix(r, kCAmount);
        // A line nobody filled in is left out.
        if (l.nid == 0 && l.particular_id == 0 && l.amt == 0) continue;
        l.srno = static_cast<int>(out.size()) + 1;
        out.push_back(l);
    }
    return out;
}

bool capital::cmdShare_Click() {
    bool shared = false;
    frame::guarded(c_.log, kModule, "cmdShare_Click", [&] {
        double total = 0;
        std::vector<double> pcts;
        for (const auto& r : ratios_) {
            total += r.rat;
            pcts.push_back(r.rat);
        }
        if (ratios_.empty() || !ratios_whole(total)) {
            ui_.info("Total Profit (%) should be 100%.");
            return;
        }
        // A nil result is said, not shared as nil lines.
        const double net = vb_round(shareable_profit(), 2);
        if (net == 0) {
            const bool recorded = !store::year_result(c_.base->dbobj(), suffix_, client_).empty();
            ui_.info(chkautocalcnp.Value && !recorded
                         ? "Net Profit/Loss is nil: the year's result is not recorded. Nothing was shared."
                         : "Net Profit/Loss to share is nil. Nothing was shared.");
            return;
        }
        const auto shares = profit_shares(pcts, net);
        last_shares_.clear();
        for (std::size_t i = 0; i < ratios_.size(); ++i) {
            const std::string code = partner_code(ratios_[i]);
            const auto side = share_line(shares[i]);
            last_shares_.emplace_back(code, shares[i]);
            // The partner's share line is replaced, in the account the client's
            // option names; a first share goes after his last line.
            int found = -1, last = -1;
            for (int r = vsfC.fixed_rows(); r < vsfC.rows(); ++r) {
                if (vsfC.text_matrix(r, kCPartner) != code) continue;
                last = r;
                if (found < 0 && vsfC.value_matrix(r, kCParticular) == share_id_) found = r;
            }
            if (found < 0) {
                add_line(code, share_account(), side.nid, share_id_, side.amt, last);
            } else {
                vsfC.set_text_matrix(found, kCAccount, std::to_string(share_account()));
                vsfC.set_text_matrix(found, kCSide, std::to_string(side.nid));
                vsfC.set_value_matrix(found, kCAmount, side.amt);
            }
        }
        refresh_partner_lists();
        show_partners();
        shared = true;
    });
    return shared;
}

bool capital::cmdsave_Click() {
    bool saved = false;
    frame::guarded(c_.log, kModule, "cmdsave_Click", [&] {
        for (int r = vsfC.fixed_rows(); r < vsfC.rows(); ++r) {
            LineFields f;
            f.partner = vsfC.text_matrix(r, kCPartner);
            f.nid = static_cast<int>(vsfC.value_matrix(r, kCSide));
            f.particular_id = static_cast<long>(vsfC.value_matrix(r, kCParticular));
            if (f.nid == 0 && f.particular_id == 0 && vsfC.value_matrix(r, kCAmount) == 0) continue;
            if (const auto fault = line_fault(f)) {
                vsfC_row_ = r;
                ui_.info(*fault);
                return;
            }
            if (const auto fault = amount_fault(vsfC.value_matrix(r, kCAmount))) {
                vsfC_row_ = r;
                ui_.info(*fault);
                return;
            }
        }
        store::rewrite_capital_lines(c_.base->dbobj(), suffix_, client_, lines());
        saved = true;
    });
    return saved;
}

void capital::cmddelcap_Click() {
    frame::guarded(c_.log, kModule, "cmddelcap_Click", [&] {
        if (!ui_.ask_yes_no("Do you really want to Delete Entire Capital Account?", MsgIcon::question, false))
            return;
        store::delete_capital_lines(c_.base->dbobj(), suffix_, client_);
        vsfC.clear_rows();
        vsfC_row_ = -1;
        show_partners();
    });
}

void capital::cmdprint_Click() {
    frame::guarded(c_.log, kModule, "cmdprint_Click", [&] {
        if (!c_.report) return;
        c_.report->WriteToReport(capital_schedule_report(*this));
        c_.report->showreport();
    });
}

void capital::cmdback_Click() {
    frame::guarded(c_.log, kModule, "cmdback_Click", [&] {
        if (ui_.ask_yes_no("Do you really want to Exit?", MsgIcon::question, false)) ui_.close_screen();
    });
}

}  // namespace brenlow::capital
