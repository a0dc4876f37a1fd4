// The capital screen's interest and remuneration: each partner's terms under the
// deed (working or not, the rate of interest on capital, the remuneration paid),
// worked against s.40(b) in vsIR, saved, and posted as the partners' lines before
// the profit share.

#include <algorithm>
#include <cstdlib>

#include "capital/capital.h"
#include "controls/number_format.h"
#include "frame/error_log.h"

namespace brenlow::capital {
namespace {

constexpr const char* kModule = "capital";
constexpr const char* kAmountMask = "###0.00";
constexpr const char* kWorkingList = "#0;No|#1;Yes";
constexpr const char* kPrintMask = "#,##0.00";

}  // namespace

void capital::set_up_terms_grid() {
    const struct {
        int col;
        const char* heading;
        int width;
    } headings[] = {
        {kIRCode, "Code", 0},
        {kIRName, "Partner", 18},
        {kIRWorking, "Working", 7},
        {kIRRate, "Interest (%)", 9},
        {kIRCapital, "Capital", 12},
        {kIRInterest, "Interest", 11},
        {kIRAllowed, "Allowed (12%)", 11},
        {kIRDisallowed, "Disallowed", 10},
        {kIRRemuneration, "Remuneration", 12},
    };
    for (const auto& h : headings) {
        vsIR.set_heading(h.col, "", h.heading);
        vsIR.set_col_width(h.col, h.width);
    }
    vsIR.set_col_hidden(kIRCode, true);
    vsIR.set_col_combo_list(kIRWorking, kWorkingList);
    for (int col : {kIRRate, kIRCapital, kIRInterest, kIRAllowed, kIRDisallowed, kIRRemuneration}) {
        vsIR.set_col_format(col, kAmountMask);
        vsIR.set_col_alignment(col, Align::right);
    }
    for (int col : {kIRWorking, kIRRate, kIRRemuneration}) vsIR.set_col_editable(col, true);
}

// One line per partner of the ratios, with his saved terms.
void capital::load_terms() {
    auto& db = c_.base->dbobj();
    const auto terms = store::partner_terms(db, client_, rcount_);
    moves_ = store::partner_moves(db, client_, rcount_);
    vsIR.set_redraw(false);
    vsIR.clear_rows();
    for (const auto& r : ratios_) {
        const std::string code = partner_code(r);
        const int row = vsIR.add_item();
        vsIR.set_text_matrix(row, kIRCode, code);
        vsIR.set_text_matrix(row, kIRName, partner_name(code));
        vsIR.set_text_matrix(row, kIRWorking, "0");
        vsIR.set_value_matrix(row, kIRRate, 0);
        vsIR.set_value_matrix(row, kIRRemuneration, 0);
        for (const auto& t : terms) {
            if (t.code != code) continue;
            vsIR.set_text_matrix(row, kIRWorking, t.working ? "1" : "0");
            vsIR.set_value_matrix(row, kIRRate, t.int_rate);
            vsIR.set_value_matrix(row, kIRRemuneration, t.remun);
        }
    }
    vsIR.set_redraw(true);
    show_terms();
}

void capital::set_moves(const std::string& code, const std::vector<CapitalMove>& moves) {
    moves_.erase(std::remove_if(moves_.begin(), moves_.end(),
                                [&](const store::PartnerMoveRow& m) { return m.code == code; }),
                 moves_.end());
    for (const auto& m : moves) moves_.push_back({code, m.date.text(), m.amt});
    show_terms();
}

capital::FirmWorking capital::partners_working() const {
    FirmWorking firm;
    const Date last = fy_last(year_);
    const Date first = fy_first(year_);
    double paid = 0;
    for (int r = vsIR.fixed_rows(); r < vsIR.rows(); ++r) {
        PartnerWorking p;
        p.code = vsIR.text_matrix(r, kIRCode);
        p.working = vsIR.value_matrix(r, kIRWorking) != 0;
        p.rate = vsIR.value_matrix(r, kIRRate);
        p.remuneration = p.working ? vsIR.value_matrix(r, kIRRemuneration) : 0;
        // Interest runs on the Capital A/c as it opened, with the dated moves.
        std::vector<SideAmount> opening;
        for (int l = vsfC.fixed_rows(); l < vsfC.rows(); ++l)
            if (vsfC.text_matrix(l, kCPartner) == p.code &&
                vsfC.value_matrix(l, kCAccount) == store::kCapitalAccount && opening_id_ &&
                vsfC.value_matrix(l, kCParticular) == opening_id_)
                opening.push_back(
                    {static_cast<int>(vsfC.value_matrix(l, kCSide)), vsfC.value_matrix(l, kCAmount)});
        p.capital = balance_of(opening);
        std::vector<CapitalMove> moves;
        for (const auto& m : moves_)
            if (m.code == p.code)
                if (const auto d = Date::parse(m.dt)) moves.push_back({*d, m.amt});
        p.interest = interest_on_capital(p.capital, moves, p.rate, first, last);
        firm.interest += p.interest.at_deed_rate;
        firm.interest_disallowed += p.interest.disallowed;
        paid += p.remuneration;
        firm.partners.push_back(p);
    }
    // The net profit as the partners' lines leave it: the year's result less the
    // interest and remuneration the deed gives.
    const double net_after = net_profit() - firm.interest - paid;
    firm.remuneration = remuneration_working(net_after, paid, firm.interest_disallowed, year_ + 1);
    return firm;
}

void capital::show_terms() {
    const auto firm = partners_working();
    for (int r = vsIR.fixed_rows(), i = 0; r < vsIR.rows(); ++r, ++i) {
        const auto& p = firm.partners[static_cast<std::size_t>(i)];
        vsIR.set_value_matrix(r, kIRCapital, p.capital);
        vsIR.set_value_matrix(r, kIRInterest, p.interest.at_deed_rate);
        vsIR.set_value_matrix(r, kIRAllowed, p.interest.allowed);
        vsIR.set_value_matrix(r, kIRDisallowed, p.interest.disallowed);
    }
    const auto& w = firm.remuneration;
    lblRemuneration.Caption = "Book Profit " + format_mask(w.book_profit, kPrintMask) +
                              "   Limit u/s 40(b) " + format_mask(w.limit, kPrintMask) +
                              "   Remuneration Paid " + format_mask(w.paid, kPrintMask) + "   Disallowed " +
                              format_mask(w.disallowed, kPrintMask) + "   Interest Disallowed " +
                              format_mask(firm.interest_disallowed, kPrintMask);
}

void capital::vsIR_AfterEdit(int /*row*/, int /*col*/) {
    frame::guarded(c_.log, kModule, "vsIR_AfterEdit", [&] { show_terms(); });
}

// The terms of vsIR as saved, each checked; false at the first fault, shown.
bool capital::read_terms(std::vector<store::PartnerTermsRow>& rows) {
    for (int r = vsIR.fixed_rows(); r < vsIR.rows(); ++r) {
        store::PartnerTermsRow t;
        t.code = vsIR.text_matrix(r, kIRCode);
        t.working = vsIR.value_matrix(r, kIRWorking) != 0;
        t.int_rate = vsIR.value_matrix(r, kIRRate);
        t.remun = vsIR.value_matrix(r, kIRRemuneration);
        std::optional<std::string> fault = terms_fault(t.working, t.int_rate, t.remun);
        if (fault) {
            ui_.info(partner_name(t.code) + ": " + *fault);
            return false;
        }
        rows.push_back(t);
    }
    return true;
}

bool capital::cmdSaveTerms_Click() {
    bool saved = false;
    frame::guarded(c_.log, kModule, "cmdSaveTerms_Click", [&] {
        std::vector<store::PartnerTermsRow> rows;
        if (!read_terms(rows)) return;
        store::rewrite_partner_terms(c_.base->dbobj(), client_, rcount_, rows, moves_);
        saved = true;
    });
    return saved;
}

// The partner's line of a particular, replaced where it stands (moved into the
// account the option names), made after his last line when he has none; a nil
// amount takes the line out.
void capital::post_line(const std::string& code, long particular, double amount) {
    int found = -1, last = -1;
    for (int r = vsfC.fixed_rows(); r < vsfC.rows(); ++r) {
        if (vsfC.text_matrix(r, kCPartner) != code) continue;
        last = r;
        if (found < 0 && vsfC.value_matrix(r, kCParticular) == particular) found = r;
    }
    const auto side = share_line(amount);
    if (found >= 0 && vb_round(amount, 2) == 0) {
        vsfC.remove_item(found);
        return;
    }
    if (vb_round(amount, 2) == 0) return;
    if (found < 0) {
        add_line(code, share_account(), side.nid, particular, side.amt, last);
        return;
    }
    vsfC.set_text_matrix(found, kCAccount, std::to_string(share_account()));
    vsfC.set_text_matrix(found, kCSide, std::to_string(side.nid));
    vsfC.set_value_matrix(found, kCAmount, side.amt);
}

bool capital::cmdIntRem_Click() {
    bool posted_all = false;
    frame::guarded(c_.log, kModule, "cmdIntRem_Click", [&] {
        std::vector<store::PartnerTermsRow> rows;
        if (!read_terms(rows)) return;
        if (vsIR.data_rows() == 0) {
            ui_.info("Total Profit (%) should be 100%.");
            return;
        }
        show_terms();
        const auto firm = partners_working();
        if (!ui_.ask_yes_no(
                "Interest on Capital " + format_mask(firm.interest, kPrintMask) + " (disallowed " +
                    format_mask(firm.interest_disallowed, kPrintMask) + "), Remuneration " +
                    format_mask(firm.remuneration.paid, kPrintMask) + " against the limit of " +
                    format_mask(firm.remuneration.limit, kPrintMask) + " (disallowed " +
                    format_mask(firm.remuneration.disallowed, kPrintMask) +
                    ").\n\nDo you want to Post Interest on Capital and Remuneration to the Partners ?",
                MsgIcon::question, false))
            return;
        auto& db = c_.base->dbobj();
        store::rewrite_partner_terms(db, client_, rcount_, rows, moves_);
        for (auto [name, id] :
             {std::pair{kInterestOnCapital, &interest_id_}, std::pair{kRemuneration, &remuneration_id_}})
            if (!*id) {
                try {
                    *id = store::ledger_insert(db, store::Ledger::capital, name);
                } catch (const std::exception& e) {
                    c_.log.log(e);
                    ui_.info(std::string("Failed to Create Master [") + name + "]" +
                             store::failure_reason(db.backend(), e));
                    return;
                }
            }
        load_particulars();
        for (const auto& p : firm.partners) {
            post_line(p.code, interest_id_, p.interest.at_deed_rate);
            post_line(p.code, remuneration_id_, p.remuneration);
        }
        vsfC_row_ =
            vsfC.data_rows() > 0 ? std::min(std::max(vsfC_row_, vsfC.fixed_rows()), vsfC.rows() - 1) : -1;
        refresh_partner_lists();
        show_partners();
        posted_all = true;
    });
    return posted_all;
}

double capital::posted(long particular_id) const {
    if (particular_id <= 0) return 0;
    std::vector<SideAmount> lines;
    for (int r = vsfC.fixed_rows(); r < vsfC.rows(); ++r)
        if (vsfC.value_matrix(r, kCParticular) == particular_id)
            lines.push_back({static_cast<int>(vsfC.value_matrix(r, kCSide)), vsfC.value_matrix(r, kCAmount)});
    return balance_of(lines);
}

double capital::shareable_profit() const {
    return net_profit() - posted(interest_id_) - posted(remuneration_id_);
}

double capital::shared_net_profit() const {
    bool any_share = false;
    for (int r = vsfC.fixed_rows(); r < vsfC.rows() && !any_share; ++r)
        any_share = share_id_ && vsfC.value_matrix(r, kCParticular) == share_id_;
    if (!any_share) return net_profit();
    return vb_round(posted(share_id_) + posted(interest_id_) + posted(remuneration_id_), 2);
}

}  // namespace brenlow::capital
