#pragma once
// The masters the register and the schedules classify assets by: the user's blocks
// (BlockGroup), the asset groups of a year (NewFAGM), the particulars of a year
// (FAPart_Master), and the read-only block and classification lists of a year
// (NewITBM, NewCLBM). Every write ends with "Flush Tables" so that other copies of
// the suite see it at once.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/database.h"

namespace brenlow::store {

// ---- Blocks (BlockGroup) -------------------------------------------------------

// GrpType: 1 blocks of the books, 2 income-tax blocks.
inline constexpr int kBooksBlock = 1;
inline constexpr int kIncomeTaxBlock = 2;

struct Block {
    long id = 0;       // GrpId; 0 is the reserved row
    std::string name;  // GrpDesc
    int kind = 0;      // GrpType
    int nature = 0;    // BlockNo (income-tax blocks)
};

// The blocks of a kind as the block master lists them (the reserved row left out).
std::vector<Block> blocks_of_kind(Database& db, int kind);
// The blocks of a kind as the choosers offer them, by name.
std::vector<Block> blocks_of_kind_by_name(Database& db, int kind);
// Largest GrpId plus one; inside a group, whose lock keeps it for the insert.
long next_block_id(Database& db);
// Another block of the same kind already carries this name; `except` leaves a block
// out (the one being renamed).
bool block_name_taken(Database& db, std::string_view name, int kind, std::optional<long> except);
void insert_block(Database& db, const Block& block);
// A new block: under the BlockGroup lock the name is looked for among the blocks of
// its kind and, when free, the block takes the largest GrpId plus one. nullopt (and
// nothing written) when another block of the kind carries the name.
std::optional<long> add_block(Database& db, std::string_view name, int kind, int nature);
// Renames the block and sets its nature.
void update_block(Database& db, const Block& block);
// A particular of any year refers to the block (ClBlock for kind 1, ItBlock for 2).
bool block_used_by_particular(Database& db, int kind, long id);
// The first per-year FIXED_ table among `suffixes` with a row of any client that
// refers to the block (CGrpId for kind 1, IGrpId for 2); nullopt when none does. A
// suffix without a FIXED_ table holds no rows.
std::optional<std::string> schedule_table_using_block(Database& db, const std::vector<std::string>& suffixes,
                                                      int kind, long id);
void delete_block(Database& db, long id);

// ---- Income-tax blocks and the Companies Act classification of a year ----------

// One NewITBM row: an income-tax block of the year.
struct ItBlockRow {
    int Sr = 0;
    std::string ID;    // "3-15", sub-entries "3-15.1"
    std::string Part;  // "MACHINERY AND PLANT", ...
    double Rate = 0;
};
// Every entry of the year, sub-entries included, in their master order.
std::vector<ItBlockRow> income_tax_blocks(Database& db, int year);

// One NewCLBM row: a Companies Act classification of the year.
struct ClBlockRow {
    int Sr = 0;
    std::string ID;  // "4", sub-entries "4.1"
    std::string Part;
    std::string NESD;             // "Y": no extra-shift depreciation
    std::optional<double> Yrs;    // useful life; NULL where the Act gives none (a heading)
    std::optional<double> RateS;  // SLM rate
    std::optional<double> RateW;  // WDV rate
};
std::vector<ClBlockRow> companies_act_classes(Database& db, int year);

// ---- Asset groups (NewFAGM) ------------------------------------------------------

// One NewFAGM row.
struct AssetGroupRow {
    long SrNoFAGM = 0;  // unique over all years
    long Yr = 0;
    std::string Part;
    std::string BlockIdIT;  // a NewITBM ID; "-1" not considered
    double RateIT = 0;
    double AddlRateIT = 0;
    long BlockFA = 0;  // a GrpId of kind 1; -1 not considered
    double RateFA = 0;
    std::string BlockIdCL;  // a NewCLBM ID; "-1" not considered
    double LifeYrs = 0;
    double RateSLM = 0;
    double RateWDV = 0;
};

std::vector<AssetGroupRow> asset_groups_of_year(Database& db, int year);
std::optional<AssetGroupRow> asset_group(Database& db, int year, long serial);
// Another group of the year already carries this name.
bool asset_group_name_taken(Database& db, int year, std::string_view name, std::optional<long> except);
// Takes the next serial under the table lock and inserts the group into its year
// (Yr); returns the serial. Another group of the same name is no hindrance (the
// screen asked first).
long add_asset_group(Database& db, const AssetGroupRow& group);
// The same, but under the lock the year's groups are looked for the name first:
// nullopt (and nothing written) when one carries it already.
std::optional<long> add_asset_group_of_new_name(Database& db, const AssetGroupRow& group);
// The group of `year` that matches `like` on Part, blocks, rates and life, added
// under the same lock when missing (the carry-forward and the imports). Returns its
// serial.
long find_or_add_asset_group(Database& db, int year, const AssetGroupRow& like);
// Rewrites every column but the serial and the year.
void modify_asset_group(Database& db, const AssetGroupRow& group);
// An opening asset / an addition of any client of the year belongs to the group.
bool asset_group_used_by_opening(Database& db, int year, long serial);
bool asset_group_used_by_addition(Database& db, int year, long serial);
// Removes the group and its hand-entered depreciation rows of the year.
void delete_asset_group(Database& db, int year, long serial);

// ---- Particulars (FAPart_Master) -------------------------------------------------

struct Particular {
    int year = 0;
    long id = 0;            // PartId, unique within the year
    std::string name;       // PartDesc
    std::string method;     // PartMeth: "1" WDV, "2" SLM, "3" other, "4" none, "0" not chosen
    double rate_books = 0;  // RtCl
    double rate_it = 0;     // RtIT
    long books_block = 0;   // ClBlock
    long it_block = 0;      // ITBlock
};

std::vector<Particular> particulars_of_year(Database& db, int year);
long next_particular_id(Database& db, int year);
void insert_particular(Database& db, const Particular& particular);
// A new particular of its year: the largest PartId of the year plus one, taken and
// written under the FAPart_Master lock. Returns the id.
long add_particular(Database& db, Particular particular);
// Removes the particular's row and writes it again under the same id.
void replace_particular(Database& db, const Particular& particular);
void delete_particular(Database& db, int year, long id);

}  // namespace brenlow::store
