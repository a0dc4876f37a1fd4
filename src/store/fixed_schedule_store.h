#pragma once
// The older per-particular fixed-asset schedule of a client-year: FIXED_<suffix> (one
// row per particular), FDA_<suffix> (its additions, deductions, carried additional
// depreciation and the saved-particular markers), the names in mast_fix_part, and
// what the schedule hands on to: the trial balance (TAB_<suffix>), the capital-gains
// records, and the asset register of the next year (the import of earlier data).
//
// Every statement of the schedule is here. Rows are read "order by srno" and written
// whole: delete the client's rows, flush, insert, flush; each save is all or nothing.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/database.h"
#include "store/register_store.h"
#include "store/transfer_store.h"

namespace brenlow::store {

// ad_ded_id of an FDA_ row.
inline constexpr int kFdaAddition = 1;
inline constexpr int kFdaDeduction = 2;
inline constexpr int kFdaCarriedHalf = 3;  // remaining half of additional depreciation from last year
inline constexpr int kFdaMarker = 100;     // a saved particular's marker row

// Particulars "Does Not Consider for Books" / "for IT".
inline constexpr long kNotConsidered = 9999999;

// One FIXED_ row, columns in the order the schedule inserts them, with the
// particular's name from mast_fix_part.
struct FixedRow {
    long compit_id = 0;
    long srno = 0;
    long ref_id = 0;
    double OP_BAL = 0;
    double op_bal_dep = 0;
    double RATE_DEP = 0;
    long method_id = 0;
    double OTH_DEP = 0;
    long deptick = 0;
    double depamt = 0;
    long CGrpId = 0;
    double wdv = 0;
    double compit_rate = 0;
    long IGrpId = 0;
    long trblock = 0;
    double AddDepRt = 0;
    std::string PART_NM;  // not a column of FIXED_
};

// One FDA_ row in its column order.
struct FdaRow {
    long srno = 0;
    int ad_ded_id = kFdaAddition;
    long ref_id = 0;
    std::string particular;
    double cost = 0;
    double excr = 0;
    double curdiff = 0;
    double grsub = 0;
    double AMT = 0;
    std::string ad_date;  // dd/mm/yyyy
    std::string dtpur;    // dd/mm/yyyy
    double dep = 0;
    long fulldep = 0;
    long src = 0;
    std::string adddepapp;  // "1" when additional depreciation applies
};

// Everything of one client-year (what a schedules document carries).
struct FixedScheduleRows {
    std::vector<FixedRow> fixed;
    std::vector<FdaRow> fda;
};

// A particular of the schedule as the save writes it; a ref_id of 0 (or a name that
// differs from mast_fix_part's) takes a new particular name.
struct SavedParticular {
    FixedRow row;
    std::string name;
};

class FixedScheduleStore {
public:
    FixedScheduleStore(Database& db, std::string suffix, std::string code);

    const std::string& suffix() const { return suffix_; }
    const std::string& code() const { return code_; }
    std::string fixed_table() const { return "FIXED_" + suffix_; }
    std::string fda_table() const { return "FDA_" + suffix_; }

    bool tables_exist();

    // "SELECT * from FIXED_... where code_no='...' order by srno", each with its name.
    std::vector<FixedRow> particulars();
    // Rows of one particular and kind, by srno; every row of the client when ref_id is
    // nullopt (the kind still narrows unless 0).
    std::vector<FdaRow> lines(std::optional<long> ref_id, int ad_ded_id);
    // All rows of the client-year (marker rows too), for documents.
    FixedScheduleRows all_rows();
    // Replaces every FIXED_ and FDA_ row of the client with `rows`; all or nothing.
    void replace_all_rows(const FixedScheduleRows& rows);

    // The schedule's save: delete the client's FIXED_ rows and its marker rows, give
    // each new name its mast_fix_part id (re-pointing the FDA_ rows of the old id), give
    // a particular whose block is "[New]" (0) a block of its own name (made when missing),
    // insert every row with its srno and compit_id, and write each marker row. Returns
    // the ref_id written for each particular, in order. The lines of a particular no
    // longer in the schedule go with it. All or nothing.
    std::vector<long> save_particulars(const std::vector<SavedParticular>& rows);

    // An additions / deductions / carried-half list saved: the particular's rows of
    // that kind replaced. Deductions whose source addition is gone are reset to 0.
    void replace_lines(long ref_id, int ad_ded_id, const std::vector<FdaRow>& rows);

    // The carry-forward's writes, all or nothing: this year's particulars and the
    // carried-half rows.
    void write_carried(const std::vector<FixedRow>& rows, const std::vector<FdaRow>& carried);

private:
    Database& db_;
    std::string suffix_;
    std::string code_;
};

// mast_fix_part: the name of an id ("" when unknown), the id of a name (upper-case
// comparison; nullopt when absent).
std::string fix_part_name(Database& db, long ref_id);
std::optional<long> fix_part_id(Database& db, std::string_view name);

// The block lists of the main grid: "Select * from BlockGroup where GrpType=..
// and GrpId<>0 Order by GrpId".
struct BlockChoice {
    long GrpId = 0;
    std::string grpdesc;
    int BlockNo = 0;
};
std::vector<BlockChoice> schedule_blocks(Database& db, int grp_type);

// The schedule's transfer to the capital-gains records of depreciable assets: the rows
// an earlier transfer made (capital_depr with TrBlock 'Y') and their heads in capital
// removed, then one head ("insert into capital (code_no,ass_year,capital_no,capital_type)
// values (...,1)") and one capital_depr row per block, numbered on from the largest
// Capital_no of the client's assessment year. The user's own rows stay. All or nothing.
void replace_schedule_capital_gains(Database& db, std::string_view code, int ass_year,
                                    const std::vector<BlockTransfer>& rows);

// The client's options text (master.others) of the year numbered `count`.
std::string client_others(Database& db, std::string_view code, int count);
void set_client_others(Database& db, std::string_view code, int count, std::string_view others);

// ---- Trial-balance panel ----------------------------------------------------------

struct TrialBalanceLine {
    long PartId = 0;
    long nid = 0;
    double Amt = 0;
};
// "Select * from TAB_..,mast_allgrp where ... mast_allgrp.gid=<group> and mast_allgrp.allid<>5";
// `allgrp` narrows it to one named group ('DEPRECIATION' under 29).
std::vector<TrialBalanceLine> trial_balance_of_group(Database& db, std::string_view suffix,
                                                     std::string_view code, int gid,
                                                     std::string_view allgrp = {});

// ---- Import into the asset register -------------------------------------------------

// The register rows the import makes: a group per particular (matched on Part, blocks
// and rates or made new with the next SrNoFAGM) and one opening entry each.
struct ImportedEntry {
    AssetGroupRow group;  // SrNoFAGM 0: make it (or take the matching one)
    OpeningRow opening;   // IdFAGM set from the group
};
// Under the one statement "LOCK TABLE NewFAGM Write, NewFATRo<year> Write, NewFATRa<year>
// Write, BlockGroup Write": groups found or made, entries numbered on from the client's
// largest serial, flushed, unlocked. All or nothing. Returns the serials written.
std::vector<long> write_imported_entries(Database& db, std::string_view code, int year,
                                         std::vector<ImportedEntry>& entries);

// ---- Merging of register entries -----------------------------------------------------

// The two work tables, exactly as the merge creates them, and their removal.
void create_merge_tables(Database& db);
void drop_merge_tables(Database& db);
// Replaces the opening entries `serials` of the client-year by `merged` (which takes the
// first serial), staging the old rows in MergDepr1 first; all or nothing.
void merge_opening_entries(Database& db, std::string_view code, int year, const std::vector<long>& serials,
                           const OpeningRow& merged);
void merge_addition_entries(Database& db, std::string_view code, int year, const std::vector<long>& serials,
                            const AdditionRow& merged);

}  // namespace brenlow::store
