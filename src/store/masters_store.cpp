#include "store/masters_store.h"

#include <algorithm>

#include "controls/number_format.h"
#include "store/client_store.h"
#include "store/schema.h"
#include "store/table_lock.h"
#include "store/text_limits.h"

namespace brenlow::store {
namespace {

std::string num(long v) {
    return std::to_string(v);
}
std::string num(int v) {
    return std::to_string(v);
}
std::string num(double v) {
    return plain_number(v);
}
std::string quoted(std::string_view text) {
    return "'" + sql_text(text) + "'";
}

std::optional<double> number_or_none(const Value& v) {
    if (v.is_null()) return std::nullopt;
    return v.as_double();
}

Block block_of(const Row& r) {
    return {static_cast<long>(r["GrpId"].as_int()), r["GrpDesc"].as_text(),
            static_cast<int>(r["GrpType"].as_int()), static_cast<int>(r["BlockNo"].as_int())};
}

std::vector<Block> blocks(Database& db, const std::string& sql) {
    std::vector<Block> out;
    for (const auto r : db.query(sql)) out.push_back(block_of(r));
    return out;
}

AssetGroupRow group_of(const Row& r) {
    AssetGroupRow g;
    g.SrNoFAGM = static_cast<long>(r["SrNoFAGM"].as_int());
    g.Yr = static_cast<long>(r["Yr"].as_int());
    g.Part = r["Part"].as_text();
    g.BlockIdIT = r["BlockIdIT"].as_text();
    g.RateIT = r["RateIT"].as_double();
    g.AddlRateIT = r["AddlRateIT"].as_double();
    g.BlockFA = static_cast<long>(r["BlockFA"].as_int());
    g.RateFA = r["RateFA"].as_double();
    g.BlockIdCL = r["BlockIdCL"].as_text();
    g.LifeYrs = r["LifeYrs"].as_double();
    g.RateSLM = r["RateSLM"].as_double();
    g.RateWDV = r["RateWDV"].as_double();
    return g;
}

Particular particular_of(const Row& r) {
    Particular p;
    p.year = static_cast<int>(r["Yr"].as_int());
    p.id = static_cast<long>(r["PartId"].as_int());
    p.name = r["PartDesc"].as_text();
    p.method = r["PartMeth"].as_text();
    p.rate_books = r["RtCl"].as_double();
    p.rate_it = r["RtIT"].as_double();
    p.books_block = static_cast<long>(r["ClBlock"].as_int());
    p.it_block = static_cast<long>(r["ITBlock"].as_int());
    return p;
}

bool any_row(Database& db, const std::string& sql) {
    return !db.query(sql).empty();
}

}  // namespace

// ---- Blocks ----------------------------------------------------------------------

std::vector<Block> blocks_of_kind(Database& db, int kind) {
    auto out = blocks(db, "select * from BlockGroup Where GrpType=" + num(kind) + " and GrpId>0");
    // The server gives no order without one asked for; the list keeps the order of entry.
    std::stable_sort(out.begin(), out.end(), [](const Block& a, const Block& b) { return a.id < b.id; });
    return out;
}

std::vector<Block> blocks_of_kind_by_name(Database& db, int kind) {
    return blocks(db,
                  "Select * from BlockGroup where GrpType=" + num(kind) + " and GrpId<>0 Order by grpdesc");
}

long next_block_id(Database& db) {
    return static_cast<long>(
               db.query("Select max(GrpId) as MaxGID from BlockGroup").first("MaxgID").as_int()) +
           1;
}

bool block_name_taken(Database& db, std::string_view name, int kind, std::optional<long> except) {
    std::string sql = "Select * from BlockGroup where GrpDesc=" + quoted(name) + " and GrpType=" + num(kind);
    if (except) sql += " and GrpId<>" + num(*except);
    return any_row(db, sql);
}

void insert_block(Database& db, const Block& block) {
    check_text("BlockGroup row " + num(block.id), "GrpDesc", block.name, kNameChars);
    db.execute("Insert into BlockGroup Values (" + num(block.id) + "," + quoted(block.name) + "," +
               num(block.kind) + "," + num(block.nature) + ")");
    db.flush_tables();
}

void update_block(Database& db, const Block& block) {
    check_text("BlockGroup row " + num(block.id), "GrpDesc", block.name, kNameChars);
    db.execute("Update BlockGroup Set GrpDesc=" + quoted(block.name) + ",BlockNo=" + num(block.nature) +
               " Where GrpId=" + num(block.id));
    db.flush_tables();
}

std::optional<long> add_block(Database& db, std::string_view name, int kind, int nature) {
    check_text("BlockGroup new row", "GrpDesc", name, kNameChars);
    // Two users adding one name at once: the second finds the first's row.
    TableLock lock(db, "BlockGroup");
    if (block_name_taken(db, name, kind, std::nullopt)) return std::nullopt;
    const long id = next_block_id(db);
    insert_block(db, {id, std::string(name), kind, nature});
    lock.release();
    return id;
}

bool block_used_by_particular(Database& db, int kind, long id) {
    const char* column = kind == kBooksBlock ? "ClBlock" : "ItBlock";
    return any_row(db, "Select * from FAPart_Master Where " + std::string(column) + "=" + num(id));
}

std::optional<std::string> schedule_table_using_block(Database& db, const std::vector<std::string>& suffixes,
                                                      int kind, long id) {
    const char* column = kind == kBooksBlock ? "CGrpId" : "IGrpId";
    for (const auto& suffix : suffixes) {
        const std::string table = "FIXED_" + suffix;
        if (suffix.empty() || !db.table_exists(table)) continue;
        if (any_row(db, "Select * from " + table + " Where " + column + "=" + num(id))) return table;
    }
    return std::nullopt;
}

void delete_block(Database& db, long id) {
    db.execute("Delete from BlockGroup where GrpId=" + num(id));
    db.flush_tables();
}

// ---- Lists of the year -------------------------------------------------------------

std::vector<ItBlockRow> income_tax_blocks(Database& db, int year) {
    std::vector<ItBlockRow> out;
    for (const auto r : db.query("SELECT * FROM NewITBM WHERE YR=" + num(year)))
        out.push_back({static_cast<int>(r["Sr"].as_int()), r["ID"].as_text(), r["Part"].as_text(),
                       r["rate"].as_double()});
    std::stable_sort(out.begin(), out.end(), [](const auto& a, const auto& b) { return a.Sr < b.Sr; });
    return out;
}

std::vector<ClBlockRow> companies_act_classes(Database& db, int year) {
    std::vector<ClBlockRow> out;
    for (const auto r : db.query("SELECT * FROM NewCLBM WHERE YR=" + num(year)))
        out.push_back({static_cast<int>(r["Sr"].as_int()), r["ID"].as_text(), r["Part"].as_text(),
                       r["NESD"].as_text(), number_or_none(r["Yrs"]), number_or_none(r["RateS"]),
                       number_or_none(r["RateW"])});
    std::stable_sort(out.begin(), out.end(), [](const auto& a, const auto& b) { return a.Sr < b.Sr; });
    return out;
}

// ---- Asset groups ------------------------------------------------------------------

std::vector<AssetGroupRow> asset_groups_of_year(Database& db, int year) {
    std::vector<AssetGroupRow> out;
    for (const auto r : db.query("SELECT * FROM NewFAGM WHERE Yr=" + num(year) + " ORDER BY SrNoFAGM"))
        out.push_back(group_of(r));
    return out;
}

std::optional<AssetGroupRow> asset_group(Database& db, int year, long serial) {
    const auto rs = db.query("SELECT * FROM NewFAGM WHERE Yr=" + num(year) + " AND SrNoFAGM=" + num(serial));
    if (rs.empty()) return std::nullopt;
    return group_of(rs.row(0));
}

bool asset_group_name_taken(Database& db, int year, std::string_view name, std::optional<long> except) {
    std::string sql = "SELECT Part FROM NewFAGM WHERE Yr=" + num(year) + " AND Part=" + quoted(name);
    if (except) sql += " AND SrNoFAGM<>" + num(*except);
    return any_row(db, sql);
}

namespace {

void check_asset_group_texts(std::string_view where, const AssetGroupRow& g) {
    check_text(where, "Part", g.Part, kNameChars);
    check_text(where, "BlockIdIT", g.BlockIdIT, kCodeChars);
    check_text(where, "BlockIdCL", g.BlockIdCL, kCodeChars);
}

// Under the NewFAGM lock: the next serial over all years, the row written.
long insert_asset_group_locked(Database& db, AssetGroupRow g) {
    g.SrNoFAGM = static_cast<long>(
                     db.query("SELECT MAX(SrNoFAGM) as MaxSrNo FROM NewFAGM").first("MaxSrNo").as_int()) +
                 1;
    db.execute("INSERT INTO NewFAGM Values (" + num(g.SrNoFAGM) + "," + num(g.Yr) + "," + quoted(g.Part) +
               "," + quoted(g.BlockIdIT) + "," + num(g.RateIT) + "," + num(g.AddlRateIT) + "," +
               num(g.BlockFA) + "," + num(g.RateFA) + "," + quoted(g.BlockIdCL) + "," + num(g.LifeYrs) + "," +
               num(g.RateSLM) + "," + num(g.RateWDV) + ")");
    db.flush_tables();
    return g.SrNoFAGM;
}

}  // namespace

long add_asset_group(Database& db, const AssetGroupRow& g) {
    check_asset_group_texts("NewFAGM new row", g);
    // Serials run over all years; the lock keeps two copies of the suite from
    // taking the same one.
    TableLock lock(db, "NewFAGM");
    const long serial = insert_asset_group_locked(db, g);
    lock.release();
    return serial;
}

std::optional<long> add_asset_group_of_new_name(Database& db, const AssetGroupRow& g) {
    check_asset_group_texts("NewFAGM new row", g);
    TableLock lock(db, "NewFAGM");
    if (asset_group_name_taken(db, static_cast<int>(g.Yr), g.Part, std::nullopt)) return std::nullopt;
    const long serial = insert_asset_group_locked(db, g);
    lock.release();
    return serial;
}

long find_or_add_asset_group(Database& db, int year, const AssetGroupRow& like) {
    TableLock lock(db, "NewFAGM");
    const auto found =
        db.query("SELECT SrNoFAGM FROM NewFAGM WHERE Yr=" + num(year) + " AND Part=" + quoted(like.Part) +
                 " AND BlockIdIT=" + quoted(like.BlockIdIT) + " AND RateIT=" + num(like.RateIT) +
                 " AND BlockFA=" + num(like.BlockFA) + " AND RateFA=" + num(like.RateFA) +
                 " AND BlockIdCL=" + quoted(like.BlockIdCL) + " AND LifeYrs=" + num(like.LifeYrs));
    if (!found.empty()) {
        lock.release();
        return static_cast<long>(found.first("SrNoFAGM").as_int());
    }
    check_asset_group_texts("NewFAGM new row", like);
    AssetGroupRow g = like;
    g.Yr = year;
    const long serial = insert_asset_group_locked(db, g);
    lock.release();
    return serial;
}

void modify_asset_group(Database& db, const AssetGroupRow& g) {
    check_asset_group_texts("NewFAGM row " + num(g.SrNoFAGM), g);
    db.execute(
        "UPDATE NewFAGM SET Part=" + quoted(g.Part) + ",BlockIdIT=" + quoted(g.BlockIdIT) +
        ",RateIT=" + num(g.RateIT) + ",AddlRateIT=" + num(g.AddlRateIT) + ",BlockFA=" + num(g.BlockFA) +
        ",RateFA=" + num(g.RateFA) + ",BlockIdCL=" + quoted(g.BlockIdCL) + ",LifeYrs=" + num(g.LifeYrs) +
        ",RateSLM=" + num(g.RateSLM) + ",RateWDV=" + num(g.RateWDV) + " WHERE SrNoFAGM=" + num(g.SrNoFAGM));
    db.flush_tables();
}

bool asset_group_used_by_opening(Database& db, int year, long serial) {
    const auto table = register_opening_table(year);
    return db.table_exists(table) && any_row(db, "SELECT * FROM " + table + " WHERE IdFAGM=" + num(serial));
}

bool asset_group_used_by_addition(Database& db, int year, long serial) {
    const auto table = register_addition_table(year);
    return db.table_exists(table) && any_row(db, "SELECT * FROM " + table + " WHERE IdFAGM=" + num(serial));
}

void delete_asset_group(Database& db, int year, long serial) {
    Transaction tx(db);
    db.execute("DELETE FROM NewFAMD WHERE Yr=" + num(year) + " AND IdFAGM=" + num(serial));
    db.flush_tables();
    db.execute("DELETE FROM NewFAGM WHERE SrNoFAGM=" + num(serial));
    db.flush_tables();
    tx.commit();
}

// ---- Particulars -------------------------------------------------------------------

std::vector<Particular> particulars_of_year(Database& db, int year) {
    std::vector<Particular> out;
    for (const auto r : db.query("select * from FAPart_Master Where yr=" + num(year)))
        out.push_back(particular_of(r));
    std::stable_sort(out.begin(), out.end(), [](const auto& a, const auto& b) { return a.id < b.id; });
    return out;
}

long next_particular_id(Database& db, int year) {
    return static_cast<long>(db.query("Select max(PartId) as MaxPID from FAPart_Master where Yr=" + num(year))
                                 .first("MaxPID")
                                 .as_int()) +
           1;
}

namespace {
void insert_particular_row(Database& db, const Particular& p) {
    const std::string where = "FAPart_Master row " + num(p.id);
    check_text(where, "PartDesc", p.name, kNameChars);
    check_text(where, "PartMeth", p.method, kCodeChars);
    db.execute("Insert into FAPart_Master Values (" + num(p.year) + "," + num(p.id) + "," + quoted(p.name) +
               "," + quoted(p.method) + "," + num(p.rate_books) + "," + num(p.rate_it) + "," +
               num(p.books_block) + "," + num(p.it_block) + ")");
}
}  // namespace

void insert_particular(Database& db, const Particular& p) {
    insert_particular_row(db, p);
    db.flush_tables();
}

long add_particular(Database& db, Particular p) {
    TableLock lock(db, "FAPart_Master");
    p.id = next_particular_id(db, p.year);
    insert_particular_row(db, p);
    db.flush_tables();
    lock.release();
    return p.id;
}

void replace_particular(Database& db, const Particular& p) {
    // Removed and written again: a failure in between must not lose the row.
    Transaction tx(db);
    db.execute("Delete from FAPart_Master where Yr=" + num(p.year) + " and PartId=" + num(p.id));
    insert_particular_row(db, p);
    db.flush_tables();
    tx.commit();
}

void delete_particular(Database& db, int year, long id) {
    db.execute("Delete from FAPart_Master where Yr=" + num(year) + " and PartId=" + num(id));
    db.flush_tables();
}

}  // namespace brenlow::store
