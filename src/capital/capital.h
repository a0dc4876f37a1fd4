#pragma once
// capital: the capital schedule of a proprietor's or a firm's partners for the open
// year. Each partner has a Capital A/c and a Current A/c, each a list of lines
// (particular, side, amount); the opening balances come from the trial balance's
// capital groups, the year's result is divided by the partners' ratios into their
// "PROFIT SHARE (00711)" lines, and each account closes with its balance.
//
// Grids: vsPL the partners with their percentage and closing balances, vsfR the
// ratios being edited, vsfC the lines, vsLM the particulars to pick from (its first
// line makes a new one).

#include <string>
#include <vector>

#include "capital/capital_rules.h"
#include "capital/partner_terms.h"
#include "controls/grid.h"
#include "controls/screen_controls.h"
#include "controls/ui_port.h"
#include "controls/vtxt.h"
#include "frame/component.h"
#include "frame/screen.h"
#include "store/capital_store.h"

namespace brenlow::capital {

class capital : public frame::Screen {
public:
    static constexpr const char* kOtherEntry = "[Other]        Shortcut Keys : CTRL+{HOME} OR CTRL+{UP}";
    static constexpr const char* kNewEntry = "[New]        Shortcut Keys : CTRL+{HOME} OR CTRL+{UP}";
    // The id of the "[Other]" entry in the ratio grid's partner list.
    static constexpr const char* kOtherEntryId = "~~";
    // The row data of vsLM's "[New]" line.
    static constexpr long kNewRowData = -1;

    enum PLColumn { kPLCode, kPLName, kPLRatio, kPLCapital, kPLCurrent, kPLTotal, kPLColumns };
    // The interest and remuneration of each partner under the deed, worked against s.40(b).
    enum IRColumn {
        kIRCode,
        kIRName,
        kIRWorking,
        kIRRate,
        kIRCapital,
        kIRInterest,
        kIRAllowed,
        kIRDisallowed,
        kIRRemuneration,
        kIRColumns
    };
    // The client option naming the account the profit share goes to ("1": Current A/c).
    static constexpr const char* kShareAccountOption = "PROFITSHAREACC";
    static constexpr const char* kShareAccountCaption =
        "Profit share of the capital schedule to the Current A/c";
    enum RColumn { kRPartner, kRRatio, kRColumns };
    enum CColumn { kCPartner, kCAccount, kCSide, kCParticular, kCAmount, kCColumns };

    // `reading_only`: the screen is opened to be read (a listing, a print): it asks
    // no question and writes nothing, not even the fixed particulars.
    capital(frame::Component& component, Ui& ui, bool reading_only = false);

    std::string Caption() const override { return caption_; }

    // Controls.
    Grid vsPL, vsfR, vsfC, vsLM, vsIR;
    CheckBox chkautocalcnp;
    // The profit share, interest and remuneration go to the Current A/c (else the Capital A/c).
    CheckBox chkShareCurrent;
    Label lblRemuneration;  // the firm's remuneration working
    vTXT txtNetProfit;
    Label lblNetProfit;  // "Net Profit/Loss"
    Label lblTotal;      // "Total Profit (%) = ..."
    bool fraRatio_Visible = false;
    CommandButton cmdProfitDet, cmdAddP, cmdDelP, cmdbackP, cmdShare, cmdaddr, cmddelr, cmdsave, cmddelcap,
        cmdprint, cmdback, cmdIntRem;

    // Events.
    void Form_Load();
    // The ratio frame: opened with the saved ratios, lines added and dropped, and
    // closed by saving them.
    void cmdProfitDet_Click();
    void cmdAddP_Click();
    void cmdDelP_Click();
    bool cmdbackP_Click();
    // After a cell of vsfR was changed: a partner picked, a percentage typed.
    void vsfR_AfterEdit(int row, int col);
    // A partner entered by hand on a line of vsfR; false when refused.
    bool set_other_partner(int row, std::string_view name);
    void vsfR_RowColChange(int row) { vsfR_row_ = row; }
    int vsfR_Row() const { return vsfR_row_; }

    // Lines.
    void cmdaddr_Click();
    void cmddelr_Click();
    void vsfC_RowColChange(int row) { vsfC_row_ = row; }
    int vsfC_Row() const { return vsfC_row_; }
    void vsfC_AfterEdit(int row, int col);
    // vsLM: a particular picked for the current line; the "[New]" line (or its
    // shortcut) makes a new particular first.
    void vsLM_DblClick(int row);
    void vsLM_New();
    // The partner chosen in vsPL: a new line is his.
    void vsPL_RowColChange(int row) { vsPL_row_ = row; }
    int vsPL_Row() const { return vsPL_row_; }

    void chkautocalcnp_Click();
    void chkShareCurrent_Click();
    // The account the share, interest and remuneration go to.
    int share_account() const {
        return chkShareCurrent.Value ? store::kCurrentAccount : store::kCapitalAccount;
    }

    // Interest and remuneration: the deed's terms typed into vsIR are worked against
    // s.40(b) as they change; cmdIntRem saves them and, on Yes, posts each partner's
    // interest and remuneration lines before the profit share.
    void vsIR_AfterEdit(int row, int col);
    bool cmdSaveTerms_Click();
    bool cmdIntRem_Click();
    // A partner's dated additions to and drawings from capital (the command line's).
    void set_moves(const std::string& code, const std::vector<CapitalMove>& moves);
    struct PartnerWorking {
        std::string code;
        bool working = false;
        double rate = 0;
        double capital = 0;  // opening balance of the Capital A/c
        InterestWorking interest;
        double remuneration = 0;
    };
    struct FirmWorking {
        std::vector<PartnerWorking> partners;
        RemunerationWorking remuneration;
        double interest = 0;  // at the deed's rates
        double interest_disallowed = 0;
    };
    // The working of the terms now in vsIR.
    FirmWorking partners_working() const;
    // Divides the year's result (or the typed one) by the ratios.
    bool cmdShare_Click();
    bool cmdsave_Click();
    void cmddelcap_Click();
    void cmdprint_Click();
    void cmdback_Click();

    // State read by the views, the command line and the print.
    bool reading_only() const { return reading_only_; }
    const std::string& suffix() const { return suffix_; }
    const std::string& client() const { return client_; }
    const std::string& client_name() const { return client_name_; }
    int year() const { return year_; }
    long opening_balance_id() const { return opening_id_; }
    long profit_share_id() const { return share_id_; }
    // The net profit the next share divides: the year's result, or what is typed.
    double net_profit() const;
    // What the profit share divides: the net profit less the partners' interest and
    // remuneration posted.
    double shareable_profit() const;
    // Credits less debits of every partner's lines of one particular (0: none).
    double posted(long particular_id) const;
    long interest_id() const { return interest_id_; }
    long remuneration_id() const { return remuneration_id_; }
    // The net profit the partners' lines account for: the shares, the interest and the
    // remuneration together when a share was given, else the net profit.
    double shared_net_profit() const;
    // The saved partners with their ratios, in the order shares are given.
    const std::vector<store::RatioRow>& ratios() const { return ratios_; }
    // The code of a ratio row as CAPITAL_ keeps it.
    static std::string partner_code(const store::RatioRow& row);
    std::string partner_name(std::string_view code) const;
    std::string particular_name(long id) const;
    // The lines of the grid as they would be saved (blank lines left out).
    std::vector<store::CapitalLine> lines() const;
    // Credits less debits of one partner's account in the grid.
    double closing_balance(std::string_view code, int actyp) const;
    // The shares the last cmdShare_Click gave, by partner code.
    const std::vector<std::pair<std::string, double>>& last_shares() const { return last_shares_; }

private:
    void set_up_grids();
    void set_up_terms_grid();
    void load_terms();
    void show_terms();
    bool read_terms(std::vector<store::PartnerTermsRow>& rows);
    void post_line(const std::string& code, long particular, double amount);
    void ensure_fixed_particulars();
    void load_net_profit();
    void load_partners();
    void load_particulars();
    void load_lines();
    void carry_forward();
    void bring_opening_balances();
    void show_partners();
    void show_ratio_total();
    void refresh_partner_lists();
    int add_line(const std::string& code, int actyp, int nid, long particular, double amt, int after = -1);
    double ratio_total() const;
    bool partner_taken(int row, std::string_view code, std::string_view name) const;

    frame::Component& c_;
    Ui& ui_;
    bool reading_only_;
    std::string caption_ = "CAPITAL SCHEDULE - ";
    std::string client_;
    std::string client_name_;
    std::string suffix_;
    std::string prev_suffix_;
    int year_ = 0;
    int rcount_ = 0;
    int prev_rcount_ = 0;
    long opening_id_ = 0;
    long share_id_ = 0;
    long interest_id_ = 0;
    long remuneration_id_ = 0;
    std::vector<store::PartnerMoveRow> moves_;
    double auto_net_ = 0;
    std::vector<store::ListedPartner> listed_;
    std::vector<store::RatioRow> ratios_;
    std::vector<store::LedgerParticular> particulars_;
    std::vector<std::pair<std::string, double>> last_shares_;
    int vsfR_row_ = -1;
    int vsfC_row_ = -1;
    int vsPL_row_ = -1;
};

}  // namespace brenlow::capital
