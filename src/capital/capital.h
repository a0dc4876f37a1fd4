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

    enum PLColumn { kPLCode, kPLName, kPLRatio, kPLCapital, kPLCurrent, kPLColumns };
    enum RColumn { kRPartner, kRRatio, kRColumns };
    enum CColumn { kCPartner, kCAccount, kCSide, kCParticular, kCAmount, kCColumns };

    // `reading_only`: the screen is opened to be read (a listing, a print): it asks
    // no question and writes nothing, not even the fixed particulars.
    capital(frame::Component& component, Ui& ui, bool reading_only = false);

    std::string Caption() const override { return caption_; }

    // Controls.
    Grid vsPL, vsfR, vsfC, vsLM;
    CheckBox chkautocalcnp;
    vTXT txtNetProfit;
    Label lblNetProfit;  // "Net Profit/Loss"
    Label lblTotal;      // "Total Profit (%) = ..."
    bool fraRatio_Visible = false;
    CommandButton cmdProfitDet, cmdAddP, cmdDelP, cmdbackP, cmdShare, cmdaddr, cmddelr, cmdsave, cmddelcap,
        cmdprint, cmdback;

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
