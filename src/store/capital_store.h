#pragma once
// The partners' capital accounts and the two ledger masters: the client's partners
// (owner1), the year's profit-sharing ratios (prfa, PRFA_Oth), the capital and
// current account lines of a year (CAPITAL_), the year's result as the suite keeps
// it (tp_NCPLoss_, tp_Tax_), the trial balance's capital groups, and the particulars
// of Mast_Capital and Mast_Part with the search for their use in every year's tables.

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "store/database.h"

namespace brenlow::store {

// Sides (nid) and accounts (actyp) of a capital line.
inline constexpr int kCapitalDebit = 1;
inline constexpr int kCapitalCredit = 2;
inline constexpr int kCapitalAccount = 0;
inline constexpr int kCurrentAccount = 1;

// A partner entered by hand carries this before its name in CAPITAL_.code.
inline constexpr const char* kOtherPartnerMark = "~~[OTHER]";

// ---- Partners and ratios ---------------------------------------------------------

struct ListedPartner {
    long code = 0;     // owner1.code
    std::string name;  // f_nm, m_nm and l_nm joined by single spaces
};
std::vector<ListedPartner> listed_partners(Database& db, std::string_view client);
// Adds a partner to the client's owner1 list with the next code; returns the code.
long add_listed_partner(Database& db, std::string_view client, std::string_view f_nm, std::string_view m_nm,
                        std::string_view l_nm);

// One partner's share of the year: a listed partner by its owner1 code, a partner
// entered by hand by its name.
struct RatioRow {
    bool other = false;
    long code = 0;     // listed partners
    std::string name;  // partners entered by hand (listed ones: their owner1 name)
    double rat = 0;
};
// prfa rows by code, then PRFA_Oth rows by SrNo.
std::vector<RatioRow> ratio_rows(Database& db, std::string_view client, int rcount);
// Deletes and rewrites the client's rows of the year in both tables.
void rewrite_ratios(Database& db, std::string_view client, int rcount, const std::vector<RatioRow>& rows);

// ---- Capital lines ---------------------------------------------------------------

struct CapitalLine {
    std::string code;  // owner1 code as text, or kOtherPartnerMark + name
    int srno = 0;
    long particular_id = 0;
    double amt = 0;
    int nid = 0;    // kCapitalDebit / kCapitalCredit
    int actyp = 0;  // kCapitalAccount / kCurrentAccount
};
std::vector<CapitalLine> capital_lines(Database& db, std::string_view suffix, std::string_view client);
// The whole save: the client's lines deleted, then each inserted, in one group.
void rewrite_capital_lines(Database& db, std::string_view suffix, std::string_view client,
                           const std::vector<CapitalLine>& lines);
void delete_capital_lines(Database& db, std::string_view suffix, std::string_view client);
// The lines of some partners only (partners dropped from the ratios).
void delete_partner_lines(Database& db, std::string_view suffix, std::string_view client,
                          const std::vector<std::string>& codes);

// ---- The year's result -----------------------------------------------------------

struct YearResultRow {
    long id = 0;
    double amt = 0;
    int ptype = 0;  // 0 an item of the result, 1 the tax
};
std::vector<YearResultRow> year_result(Database& db, std::string_view suffix, std::string_view client);
// Rewrites the client's items of the year and its tax row (what the suite's final
// accounts write; the command line fills them the same way).
void write_year_result(Database& db, std::string_view suffix, std::string_view client,
                       const std::vector<std::pair<long, double>>& items, double tax);
// Only the tax row, the items kept.
void write_year_tax(Database& db, std::string_view suffix, std::string_view client, double tax);
// Whether the year's result tables are there (the final accounts have made them).
bool year_result_tables(Database& db, std::string_view suffix);

// ---- The deed's terms for each partner -------------------------------------------

// PRTN_TERMS (code_no, rcount, code, working, int_rate, remun) and PRTN_MOVES
// (code_no, rcount, code, srno, dt, amt): per client and year, made on the first write.
struct PartnerTermsRow {
    std::string code;  // as CAPITAL_.code
    bool working = false;
    double int_rate = 0;  // interest on capital, % a year
    double remun = 0;     // remuneration paid for the year
};
struct PartnerMoveRow {
    std::string code;
    std::string dt;  // dd/mm/yyyy
    double amt = 0;  // an addition to capital, or a drawing (below nil)
};
std::vector<PartnerTermsRow> partner_terms(Database& db, std::string_view client, int rcount);
std::vector<PartnerMoveRow> partner_moves(Database& db, std::string_view client, int rcount);
// Makes PRTN_TERMS and PRTN_MOVES when missing: before any group, since a table made
// inside one would end it on MariaDB.
void make_partner_terms_tables(Database& db);
// Deletes and rewrites the client's terms and dated moves of the year, in one group
// (the caller's when it has one open); the tables must be made.
void write_partner_terms(Database& db, std::string_view client, int rcount,
                         const std::vector<PartnerTermsRow>& terms, const std::vector<PartnerMoveRow>& moves);
// Makes the tables, then writes as above.
void rewrite_partner_terms(Database& db, std::string_view client, int rcount,
                           const std::vector<PartnerTermsRow>& terms,
                           const std::vector<PartnerMoveRow>& moves);

// ---- Opening balances from the trial balance --------------------------------------

struct CapitalBalance {
    std::string group;       // allgrp of a GID 1 group ("CAPITAL", "CURRENT ACCOUNT")
    std::string particular;  // the Mast_Part name of the row
    int nid = 0;
    double amt = 0;
};
std::vector<CapitalBalance> trial_balance_capital(Database& db, std::string_view suffix,
                                                  std::string_view client);

// ---- Ledger masters --------------------------------------------------------------

enum class Ledger { capital, trial_balance };

struct LedgerParticular {
    long id = 0;
    std::string name;
};
// Every particular of the master, by name.
std::vector<LedgerParticular> ledger_particulars(Database& db, Ledger ledger);
// The id of a name (case-blind), leaving `except` out; nullopt when none.
std::optional<long> ledger_find(Database& db, Ledger ledger, std::string_view name,
                                std::optional<long> except = std::nullopt);
std::string ledger_name(Database& db, Ledger ledger, long id);
// A particular of that name: looked for and, when missing, inserted with the largest
// id plus one, both under the master's lock, so two users adding one name at once
// make one row. `created` is false when the name was there (perhaps just made by
// another user).
struct LedgerAdded {
    long id = 0;
    bool created = false;
};
LedgerAdded ledger_add(Database& db, Ledger ledger, std::string_view name);
// The id of the particular of that name, made when missing (ledger_add's id).
long ledger_insert(Database& db, Ledger ledger, std::string_view name);
void ledger_rename(Database& db, Ledger ledger, long id, std::string_view name);
void ledger_delete(Database& db, Ledger ledger, const std::vector<long>& ids);

// The suffix of every year of every client ("Select distinct tbl_nm from master").
std::vector<std::string> year_suffixes(Database& db);
// The per-year tables that refer to the master's particulars, those that exist.
std::vector<std::string> ledger_use_tables(Database& db, Ledger ledger);
// The ids of the master that some table of some year refers to.
std::set<long> ledger_ids_in_use(Database& db, Ledger ledger);

struct LedgerUser {
    std::string code;
    std::string name;  // the client's name
    std::string fy;    // "2024-25"
};
// Each client and year whose tables refer to the particular.
std::vector<LedgerUser> ledger_users(Database& db, Ledger ledger, long id);
// Every use of the old particulars in every year's tables moves to `to`, then the
// old particulars are deleted; one group of writes.
void ledger_replace(Database& db, Ledger ledger, long to, const std::vector<long>& from);

}  // namespace brenlow::store
