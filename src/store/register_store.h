#pragma once
// The asset register of one client and year: NewFATRo<year> (opening entries),
// NewFATRa<year> (additions), the options row (NewFAMI), the manual depreciation
// rows (NewFAMD), and the masters the register reads (NewFAGM, NewCLBM, NewITBM,
// BlockGroup). Every statement of the register screen is here; the screen asks for
// what it means ("the opening entries of this client and year").
//
// Texts are quoted through sql_text (TruncVarSQL: quotes doubled); numbers are
// written as plain decimal text. New serials are the client's largest plus one,
// taken under "LOCK TABLE ... Write", followed by "Flush Tables" and "UNLOCK TABLES".

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/database.h"
#include "store/masters_store.h"

namespace brenlow::store {

// One row of NewFATRo<year>, columns in their stored order.
struct OpeningRow {
    std::string Code_No;
    long SrNoFATR = 0;
    long IdFAGM = 0;
    std::string Part;
    double CostWdv = 0;
    double OpDepr = 0;
    long YrCalcCA = 0;
    double DepCalcCA = 0;
    double ResValue = 0;
    double LifeYrs = 0;
    double RateFACL = 0;
    double WdvIT = 0;
    std::string DetESA;
    double RateIT = 0;
    double AddlDepRT = 0;
    std::string SaleDate;
    double SaleAmt = 0;
    double SaleExp = 0;
    std::string ShiftDet;
    double DepFACL = 0;
    std::string OthOpts;
    std::string PutDate;
    double AddlDepOn = 0;
};

// One row of NewFATRa<year>, columns in their stored order.
struct AdditionRow {
    std::string Code_No;
    long SrNoFATR = 0;
    long IdFAGM = 0;
    std::string Part;
    std::string PutDate;
    std::string AccDate;
    double PurAmt = 0;
    double ExciseCr = 0;
    double CurrDiff = 0;
    double Subsidy = 0;
    double ResValue = 0;
    double LifeYrs = 0;
    double RateFACL = 0;
    double RateIT = 0;
    double AddlDepRT = 0;
    std::string SaleDate;
    double SaleAmt = 0;
    double SaleExp = 0;
    std::string ShiftDet;
    double DepFACL = 0;
    std::string OthOpts;
};

class RegisterStore {
public:
    RegisterStore(Database& db, std::string code, int year);

    const std::string& code() const { return code_; }
    int year() const { return year_; }
    std::string opening_table() const;
    std::string addition_table() const;

    // Both register tables of the year exist.
    bool tables_exist();
    // Creates them when missing.
    void ensure_tables();

    // The options row (MiscInf) of this client and year; nullopt when there is none.
    std::optional<std::string> options_row();
    // Rewrites the options row whole: delete, flush, insert, flush; all or nothing.
    void rewrite_options_row(std::string_view misc_inf);

    // Masters of the year.
    std::vector<AssetGroupRow> asset_groups();
    std::vector<ClBlockRow> companies_act_blocks();  // ID NOT LIKE '%.%'
    std::vector<ItBlockRow> income_tax_blocks();
    std::vector<Block> book_blocks();  // GrpType=1, GrpId<>0
    // NESD of a classification of the year; "" when there is no such row.
    std::string nesd_of(std::string_view block_id_cl);
    // Rate of an income-tax block of the year; nullopt when there is no such row.
    std::optional<double> income_tax_rate_of(std::string_view block_id_it);

    // The old-chart marker row (IdFAGM=-1, SrNoFATR=-1) of this client.
    bool has_old_chart_marker();
    // Whether the client has asset-wise entries in either table (the marker aside).
    bool has_entries();
    // Deletes everything of the client and year (both tables, NewFAMI, NewFAMD) and
    // writes the marker row; all or nothing.
    void write_old_chart_marker();

    // The client's entries of the year, by serial; the marker row is never one.
    // A group narrows them to that group.
    std::vector<OpeningRow> opening_entries(std::optional<long> group = std::nullopt);
    std::vector<AdditionRow> addition_entries(std::optional<long> group = std::nullopt);
    // Row by row, for large registers.
    void for_each_opening(std::optional<long> group, const std::function<void(OpeningRow&&)>& fn);
    void for_each_addition(std::optional<long> group, const std::function<void(AdditionRow&&)>& fn);
    // The serials of those entries alone, in the same order: what a register grid
    // pages its rows by.
    std::vector<long> opening_serials(std::optional<long> group = std::nullopt);
    std::vector<long> addition_serials(std::optional<long> group = std::nullopt);
    // The entries with serials from `first` to `last`, both included.
    void for_each_opening_between(std::optional<long> group, long first, long last,
                                  const std::function<void(OpeningRow&&)>& fn);
    void for_each_addition_between(std::optional<long> group, long first, long last,
                                   const std::function<void(AdditionRow&&)>& fn);
    // The same rows with only what the income-tax calculation reads (serial, group,
    // particulars, amounts, dates, rates, DetESA and OthOpts of an opening); every
    // other field keeps its default. A large register is read in half the columns.
    void for_each_opening_for_income_tax(const std::function<void(OpeningRow&&)>& fn);
    // And with only what the books (Companies Act) calculation reads.
    void for_each_opening_for_books(const std::function<void(OpeningRow&&)>& fn);
    void for_each_addition_for_books(const std::function<void(AdditionRow&&)>& fn);
    void for_each_addition_for_income_tax(const std::function<void(AdditionRow&&)>& fn);
    std::optional<OpeningRow> opening_entry(long group, long serial);
    std::optional<AdditionRow> addition_entry(long group, long serial);

    // Groups that have entries: those of the opening table first, then those only
    // in the additions, each once.
    std::vector<long> groups_with_entries();

    // Inserts with the next serial of the client under the table lock; the row's
    // Code_No and SrNoFATR are set here. Returns the serial.
    long insert_opening(OpeningRow row);
    long insert_addition(AdditionRow row);
    // Rewrites every non-key column of the client's row with the row's serial.
    void update_opening(const OpeningRow& row);
    void update_addition(const AdditionRow& row);

    void delete_opening(long serial);
    void delete_addition(long serial);
    // Every entry of the client, or only the group's.
    void delete_all_openings(std::optional<long> group);
    void delete_all_additions(std::optional<long> group);

    // Manual depreciation of the groups (NewFAMD), rewritten whole.
    std::vector<std::pair<long, double>> manual_depreciation();
    void rewrite_manual_depreciation(const std::vector<std::pair<long, double>>& rows);

    // Asset groups across years, for the carry-forward: the group of `year_` that
    // matches the given one on Part, blocks, rates and life, created under
    // "LOCK TABLE NewFAGM Write" when missing. Returns its SrNoFAGM.
    long find_or_create_group(const AssetGroupRow& like);
    // The groups of another year (the previous one, for the carry-forward).
    std::vector<AssetGroupRow> asset_groups_of(int year);

private:
    std::string where_client(std::optional<long> group) const;

    Database& db_;
    std::string code_;
    int year_;
};

// The values of a row after its key columns (Code_No, SrNoFATR), in stored order, as
// an INSERT writes them.
// Refuse (TextRefused) a row whose texts its table would not hold, before anything is
// written: "NewFATRo2025 row 3, field Part: is longer than 255 characters".
void check_opening_texts(std::string_view where, const OpeningRow& row);
void check_addition_texts(std::string_view where, const AdditionRow& row);
void check_group_texts(std::string_view where, const AssetGroupRow& row);

std::string opening_values(const OpeningRow& row);
std::string addition_values(const AdditionRow& row);

// The client's largest serial in a register table, 0 when it has none; read it under
// the table's lock when the next serial is to be taken.
long largest_serial(Database& db, const std::string& table, std::string_view code);

// The writer's value forms, shared with the tests: 'text' with quotes doubled,
// numbers as plain decimal text.
std::string quoted(std::string_view text);

// Packed sub-lists inside a text column: rows joined by "|", fields by `field_sep`
// ("," for ShiftDet, the broken bar for DetESA). A trailing row separator, or none,
// reads the same; empty rows are skipped. Packing drops both separators from every
// field first: a "|" typed into an adjustment row's particulars would otherwise
// split the row in two when it is read back.
std::vector<std::vector<std::string>> unpack_rows(std::string_view packed, std::string_view field_sep);
std::string pack_rows(const std::vector<std::vector<std::string>>& rows, std::string_view field_sep);

}  // namespace brenlow::store
