#include "store/register_store.h"

#include "controls/number_format.h"
#include "store/client_store.h"
#include "store/schema.h"
#include "store/table_lock.h"

namespace brenlow::store {
namespace {

std::string num(double v) { return plain_number(v); }
std::string num(long v) { return std::to_string(v); }

// The marker of the old chart is not an entry.
constexpr const char* kNotMarker = " AND NOT (IdFAGM=-1 AND SrNoFATR=-1)";

OpeningRow read_opening(const Row& r) {
    OpeningRow o;
    o.Code_No = r[0].as_text();
    o.SrNoFATR = static_cast<long>(r[1].as_int());
    o.IdFAGM = static_cast<long>(r[2].as_int());
    o.Part = r[3].as_text();
    o.CostWdv = r[4].as_double();
    o.OpDepr = r[5].as_double();
    o.YrCalcCA = static_cast<long>(r[6].as_int());
    o.DepCalcCA = r[7].as_double();
    o.ResValue = r[8].as_double();
    o.LifeYrs = r[9].as_double();
    o.RateFACL = r[10].as_double();
    o.WdvIT = r[11].as_double();
    o.DetESA = r[12].as_text();
    o.RateIT = r[13].as_double();
    o.AddlDepRT = r[14].as_double();
    o.SaleDate = r[15].as_text();
    o.SaleAmt = r[16].as_double();
    o.SaleExp = r[17].as_double();
    o.ShiftDet = r[18].as_text();
    o.DepFACL = r[19].as_double();
    o.OthOpts = r[20].as_text();
    o.PutDate = r[21].as_text();
    o.AddlDepOn = r[22].as_double();
    return o;
}

AdditionRow read_addition(const Row& r) {
    AdditionRow a;
    a.Code_No = r[0].as_text();
    a.SrNoFATR = static_cast<long>(r[1].as_int());
    a.IdFAGM = static_cast<long>(r[2].as_int());
    a.Part = r[3].as_text();
    a.PutDate = r[4].as_text();
    a.AccDate = r[5].as_text();
    a.PurAmt = r[6].as_double();
    a.ExciseCr = r[7].as_double();
    a.CurrDiff = r[8].as_double();
    a.Subsidy = r[9].as_double();
    a.ResValue = r[10].as_double();
    a.LifeYrs = r[11].as_double();
    a.RateFACL = r[12].as_double();
    a.RateIT = r[13].as_double();
    a.AddlDepRT = r[14].as_double();
    a.SaleDate = r[15].as_text();
    a.SaleAmt = r[16].as_double();
    a.SaleExp = r[17].as_double();
    a.ShiftDet = r[18].as_text();
    a.DepFACL = r[19].as_double();
    a.OthOpts = r[20].as_text();
    return a;
}

// The income-tax reads: the columns below, in this order.
constexpr const char* kOpeningForIncomeTax =
    "SrNoFATR, IdFAGM, Part, WdvIT, DetESA, AddlDepRT, SaleDate, SaleAmt, SaleExp, OthOpts, PutDate, AddlDepOn";
constexpr const char* kAdditionForIncomeTax =
    "SrNoFATR, IdFAGM, Part, PutDate, PurAmt, ExciseCr, CurrDiff, Subsidy, AddlDepRT, SaleDate, SaleAmt, SaleExp";

OpeningRow read_opening_for_income_tax(const Row& r) {
    OpeningRow o;
    o.SrNoFATR = static_cast<long>(r[0].as_int());
    o.IdFAGM = static_cast<long>(r[1].as_int());
    o.Part = r[2].as_text();
    o.WdvIT = r[3].as_double();
    o.DetESA = r[4].as_text();
    o.AddlDepRT = r[5].as_double();
    o.SaleDate = r[6].as_text();
    o.SaleAmt = r[7].as_double();
    o.SaleExp = r[8].as_double();
    o.OthOpts = r[9].as_text();
    o.PutDate = r[10].as_text();
    o.AddlDepOn = r[11].as_double();
    return o;
}

AdditionRow read_addition_for_income_tax(const Row& r) {
    AdditionRow a;
    a.SrNoFATR = static_cast<long>(r[0].as_int());
    a.IdFAGM = static_cast<long>(r[1].as_int());
    a.Part = r[2].as_text();
    a.PutDate = r[3].as_text();
    a.PurAmt = r[4].as_double();
    a.ExciseCr = r[5].as_double();
    a.CurrDiff = r[6].as_double();
    a.Subsidy = r[7].as_double();
    a.AddlDepRT = r[8].as_double();
    a.SaleDate = r[9].as_text();
    a.SaleAmt = r[10].as_double();
    a.SaleExp = r[11].as_double();
    return a;
}

AssetGroupRow read_group(const Row& r) {
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


std::string group_values(const AssetGroupRow& g) {
    return num(g.SrNoFAGM) + "," + num(g.Yr) + "," + quoted(g.Part) + "," + quoted(g.BlockIdIT) + "," +
           num(g.RateIT) + "," + num(g.AddlRateIT) + "," + num(g.BlockFA) + "," + num(g.RateFA) + "," +
           quoted(g.BlockIdCL) + "," + num(g.LifeYrs) + "," + num(g.RateSLM) + "," + num(g.RateWDV);
}

}  // namespace

// The values after the key columns, in stored order.
std::string opening_values(const OpeningRow& o) {
    return num(o.IdFAGM) + "," + quoted(o.Part) + "," + num(o.CostWdv) + "," + num(o.OpDepr) + "," +
           num(o.YrCalcCA) + "," + num(o.DepCalcCA) + "," + num(o.ResValue) + "," + num(o.LifeYrs) + "," +
           num(o.RateFACL) + "," + num(o.WdvIT) + "," + quoted(o.DetESA) + "," + num(o.RateIT) + "," +
           num(o.AddlDepRT) + "," + quoted(o.SaleDate) + "," + num(o.SaleAmt) + "," + num(o.SaleExp) + "," +
           quoted(o.ShiftDet) + "," + num(o.DepFACL) + "," + quoted(o.OthOpts) + "," + quoted(o.PutDate) + "," +
           num(o.AddlDepOn);
}

std::string addition_values(const AdditionRow& a) {
    return num(a.IdFAGM) + "," + quoted(a.Part) + "," + quoted(a.PutDate) + "," + quoted(a.AccDate) + "," +
           num(a.PurAmt) + "," + num(a.ExciseCr) + "," + num(a.CurrDiff) + "," + num(a.Subsidy) + "," +
           num(a.ResValue) + "," + num(a.LifeYrs) + "," + num(a.RateFACL) + "," + num(a.RateIT) + "," +
           num(a.AddlDepRT) + "," + quoted(a.SaleDate) + "," + num(a.SaleAmt) + "," + num(a.SaleExp) + "," +
           quoted(a.ShiftDet) + "," + num(a.DepFACL) + "," + quoted(a.OthOpts);
}

long largest_serial(Database& db, const std::string& table, std::string_view code) {
    return static_cast<long>(
        db.query("SELECT MAX(SrNoFATR) AS MaxSrNo FROM " + table + " WHERE Code_No=" + quoted(code))
            .first("MaxSrNo")
            .as_int());
}

std::string quoted(std::string_view text) { return "'" + sql_text(text) + "'"; }

RegisterStore::RegisterStore(Database& db, std::string code, int year) : db_(db), code_(std::move(code)), year_(year) {}

std::string RegisterStore::opening_table() const { return register_opening_table(year_); }
std::string RegisterStore::addition_table() const { return register_addition_table(year_); }

std::string RegisterStore::where_client(std::optional<long> group) const {
    std::string w = " WHERE Code_No=" + quoted(code_);
    if (group) w += " AND IdFAGM=" + num(*group);
    return w;
}

bool RegisterStore::tables_exist() { return db_.table_exists(opening_table()) && db_.table_exists(addition_table()); }

void RegisterStore::ensure_tables() { create_register_tables(db_, year_); }

std::optional<std::string> RegisterStore::options_row() {
    const auto rs = db_.query("SELECT MiscInf FROM NewFAMI WHERE Code_No=" + quoted(code_) + " AND Yr=" + num(long(year_)));
    if (rs.empty()) return std::nullopt;
    return rs.row(0)[0].as_text();
}

void RegisterStore::rewrite_options_row(std::string_view misc_inf) {
    Transaction tx(db_);
    db_.execute("DELETE FROM NewFAMI WHERE Code_No=" + quoted(code_) + " AND Yr=" + num(long(year_)));
    db_.execute("FLUSH TABLES");
    db_.execute("INSERT INTO NewFAMI VALUES (" + quoted(code_) + "," + num(long(year_)) + "," + quoted(misc_inf) + ")");
    db_.execute("Flush Tables");
    tx.commit();
}

std::vector<AssetGroupRow> RegisterStore::asset_groups() { return asset_groups_of(year_); }

std::vector<AssetGroupRow> RegisterStore::asset_groups_of(int year) {
    std::vector<AssetGroupRow> out;
    db_.for_each_row("SELECT * FROM NewFAGM WHERE Yr=" + num(long(year)) + " ORDER BY SrNoFAGM",
                     [&](const Row& r) { out.push_back(read_group(r)); });
    return out;
}

std::vector<ClBlockRow> RegisterStore::companies_act_blocks() {
    std::vector<ClBlockRow> out;
    db_.for_each_row("SELECT * FROM NewCLBM WHERE YR=" + num(long(year_)) + " AND ID NOT LIKE '%.%' ORDER BY Sr",
                     [&](const Row& r) {
                         out.push_back({r["ID"].as_text(), r["Part"].as_text(), r["NESD"].as_text(),
                                        r["Yrs"].as_double(), r["RateS"].as_double(), r["RateW"].as_double()});
                     });
    return out;
}

std::vector<ItBlockRow> RegisterStore::income_tax_blocks() {
    std::vector<ItBlockRow> out;
    db_.for_each_row("SELECT * FROM NewITBM WHERE YR=" + num(long(year_)) + " ORDER BY Sr", [&](const Row& r) {
        out.push_back({r["ID"].as_text(), r["Part"].as_text(), r["rate"].as_double()});
    });
    return out;
}

std::vector<BookBlockRow> RegisterStore::book_blocks() {
    std::vector<BookBlockRow> out;
    db_.for_each_row("Select * from BlockGroup where GrpType=1 and GrpId<>0 Order by grpdesc", [&](const Row& r) {
        out.push_back({static_cast<long>(r["GrpId"].as_int()), r["GrpDesc"].as_text()});
    });
    return out;
}

std::string RegisterStore::nesd_of(std::string_view block_id_cl) {
    return db_.query("SELECT NESD FROM NewCLBM WHERE Yr=" + num(long(year_)) + " AND ID=" + quoted(block_id_cl))
        .first("NESD")
        .as_text();
}

std::optional<double> RegisterStore::income_tax_rate_of(std::string_view block_id_it) {
    const auto rs =
        db_.query("SELECT Rate FROM NewITBM WHERE Yr=" + num(long(year_)) + " AND ID=" + quoted(block_id_it));
    if (rs.empty()) return std::nullopt;
    return rs.row(0)[0].as_double();
}

bool RegisterStore::has_old_chart_marker() {
    return !db_.query("SELECT * FROM " + opening_table() + " WHERE Code_No=" + quoted(code_) +
                      " AND IdFAGM=-1 AND SrNoFATR=-1")
                .empty();
}

bool RegisterStore::has_entries() {
    const auto o = db_.query("SELECT COUNT(*) AS n FROM " + opening_table() + where_client(std::nullopt) + kNotMarker);
    if (o.first("n").as_int() > 0) return true;
    return db_.query("SELECT COUNT(*) AS n FROM " + addition_table() + where_client(std::nullopt)).first("n").as_int() > 0;
}

void RegisterStore::write_old_chart_marker() {
    Transaction tx(db_);
    db_.execute("DELETE FROM " + opening_table() + where_client(std::nullopt));
    db_.execute("DELETE FROM " + addition_table() + where_client(std::nullopt));
    db_.execute("DELETE FROM NewFAMI WHERE Code_No=" + quoted(code_) + " AND Yr=" + num(long(year_)));
    db_.execute("DELETE FROM NewFAMD WHERE Code_No=" + quoted(code_) + " AND Yr=" + num(long(year_)));
    db_.execute("Flush Tables");
    db_.execute("INSERT INTO " + opening_table() + " Values (" + quoted(code_) +
                ",-1,-1,'',0,0,0,0,0,0,0,0,'',0,0,0,0,0,'',0,'','',0)");
    db_.execute("Flush Tables");
    tx.commit();
}

void RegisterStore::for_each_opening(std::optional<long> group, const std::function<void(OpeningRow&&)>& fn) {
    db_.for_each_row("SELECT * FROM " + opening_table() + where_client(group) + kNotMarker + " ORDER BY SrNoFATR",
                     [&](const Row& r) { fn(read_opening(r)); });
}

void RegisterStore::for_each_addition(std::optional<long> group, const std::function<void(AdditionRow&&)>& fn) {
    db_.for_each_row("SELECT * FROM " + addition_table() + where_client(group) + " ORDER BY SrNoFATR",
                     [&](const Row& r) { fn(read_addition(r)); });
}

void RegisterStore::for_each_opening_for_income_tax(const std::function<void(OpeningRow&&)>& fn) {
    db_.for_each_row(std::string("SELECT ") + kOpeningForIncomeTax + " FROM " + opening_table() +
                         where_client(std::nullopt) + kNotMarker + " ORDER BY SrNoFATR",
                     [&](const Row& r) {
                         OpeningRow o = read_opening_for_income_tax(r);
                         o.Code_No = code_;
                         fn(std::move(o));
                     });
}

void RegisterStore::for_each_addition_for_income_tax(const std::function<void(AdditionRow&&)>& fn) {
    db_.for_each_row(std::string("SELECT ") + kAdditionForIncomeTax + " FROM " + addition_table() +
                         where_client(std::nullopt) + " ORDER BY SrNoFATR",
                     [&](const Row& r) {
                         AdditionRow a = read_addition_for_income_tax(r);
                         a.Code_No = code_;
                         fn(std::move(a));
                     });
}

std::vector<OpeningRow> RegisterStore::opening_entries(std::optional<long> group) {
    std::vector<OpeningRow> out;
    for_each_opening(group, [&](OpeningRow&& o) { out.push_back(std::move(o)); });
    return out;
}

std::vector<AdditionRow> RegisterStore::addition_entries(std::optional<long> group) {
    std::vector<AdditionRow> out;
    for_each_addition(group, [&](AdditionRow&& a) { out.push_back(std::move(a)); });
    return out;
}

std::optional<OpeningRow> RegisterStore::opening_entry(long group, long serial) {
    const auto rs = db_.query("SELECT * FROM " + opening_table() + where_client(group) + " AND SrNoFATR=" + num(serial));
    if (rs.empty()) return std::nullopt;
    return read_opening(rs.row(0));
}

std::optional<AdditionRow> RegisterStore::addition_entry(long group, long serial) {
    const auto rs = db_.query("SELECT * FROM " + addition_table() + where_client(group) + " AND SrNoFATR=" + num(serial));
    if (rs.empty()) return std::nullopt;
    return read_addition(rs.row(0));
}

std::vector<long> RegisterStore::groups_with_entries() {
    std::vector<long> ids;
    db_.for_each_row("SELECT DISTINCT IdFAGM FROM " + opening_table() + where_client(std::nullopt) + kNotMarker,
                     [&](const Row& r) { ids.push_back(static_cast<long>(r[0].as_int())); });
    std::string sql = "SELECT DISTINCT IdFAGM FROM " + addition_table() + where_client(std::nullopt);
    if (!ids.empty()) {
        sql += " AND IdFAGM NOT IN (";
        for (std::size_t i = 0; i < ids.size(); ++i) sql += (i ? "," : "") + num(ids[i]);
        sql += ")";
    }
    db_.for_each_row(sql, [&](const Row& r) { ids.push_back(static_cast<long>(r[0].as_int())); });
    return ids;
}

// A new entry takes the client's largest serial plus one, read and written under the
// table's lock.
template <class RowT, class Values>
long insert_with_next_serial(Database& db, const std::string& table, const std::string& code, RowT& row,
                             Values values) {
    TableLock lock(db, table);
    const long serial = largest_serial(db, table, code) + 1;
    row.Code_No = code;
    row.SrNoFATR = serial;
    db.execute("INSERT INTO " + table + " Values (" + quoted(code) + "," + num(serial) + "," + values(row) + ")");
    db.execute("Flush Tables");
    lock.release();
    return serial;
}

long RegisterStore::insert_opening(OpeningRow row) {
    return insert_with_next_serial(db_, opening_table(), code_, row, opening_values);
}

long RegisterStore::insert_addition(AdditionRow row) {
    return insert_with_next_serial(db_, addition_table(), code_, row, addition_values);
}

void RegisterStore::update_opening(const OpeningRow& o) {
    db_.execute("UPDATE " + opening_table() + " SET IdFAGM=" + num(o.IdFAGM) + ",Part=" + quoted(o.Part) +
                ",CostWdv=" + num(o.CostWdv) + ",OpDepr=" + num(o.OpDepr) + ",YrCalcCA=" + num(o.YrCalcCA) +
                ",DepCalcCA=" + num(o.DepCalcCA) + ",ResValue=" + num(o.ResValue) + ",LifeYrs=" + num(o.LifeYrs) +
                ",RateFACL=" + num(o.RateFACL) + ",WdvIT=" + num(o.WdvIT) + ",DetESA=" + quoted(o.DetESA) +
                ",RateIT=" + num(o.RateIT) + ",AddlDepRT=" + num(o.AddlDepRT) + ",SaleDate=" + quoted(o.SaleDate) +
                ",SaleAmt=" + num(o.SaleAmt) + ",SaleExp=" + num(o.SaleExp) + ",ShiftDet=" + quoted(o.ShiftDet) +
                ",DepFACL=" + num(o.DepFACL) + ",OthOpts=" + quoted(o.OthOpts) + ",PutDate=" + quoted(o.PutDate) +
                ",AddlDepOn=" + num(o.AddlDepOn) + " WHERE Code_No=" + quoted(code_) + " AND SrNoFATR=" +
                num(o.SrNoFATR));
    db_.execute("Flush Tables");
}

void RegisterStore::update_addition(const AdditionRow& a) {
    db_.execute("UPDATE " + addition_table() + " SET IdFAGM=" + num(a.IdFAGM) + ",Part=" + quoted(a.Part) +
                ",PutDate=" + quoted(a.PutDate) + ",AccDate=" + quoted(a.AccDate) + ",PurAmt=" + num(a.PurAmt) +
                ",ExciseCr=" + num(a.ExciseCr) + ",CurrDiff=" + num(a.CurrDiff) + ",Subsidy=" + num(a.Subsidy) +
                ",ResValue=" + num(a.ResValue) + ",LifeYrs=" + num(a.LifeYrs) + ",RateFACL=" + num(a.RateFACL) +
                ",RateIT=" + num(a.RateIT) + ",AddlDepRT=" + num(a.AddlDepRT) + ",SaleDate=" + quoted(a.SaleDate) +
                ",SaleAmt=" + num(a.SaleAmt) + ",SaleExp=" + num(a.SaleExp) + ",ShiftDet=" + quoted(a.ShiftDet) +
                ",DepFACL=" + num(a.DepFACL) + ",OthOpts=" + quoted(a.OthOpts) + " WHERE Code_No=" + quoted(code_) +
                " AND SrNoFATR=" + num(a.SrNoFATR));
    db_.execute("Flush Tables");
}

void RegisterStore::delete_opening(long serial) {
    db_.execute("DELETE FROM " + opening_table() + " WHERE Code_No=" + quoted(code_) + " AND SrNoFATR=" + num(serial));
    db_.execute("Flush Tables");
}

void RegisterStore::delete_addition(long serial) {
    db_.execute("DELETE FROM " + addition_table() + " WHERE Code_No=" + quoted(code_) + " AND SrNoFATR=" + num(serial));
    db_.execute("Flush Tables");
}

void RegisterStore::delete_all_openings(std::optional<long> group) {
    db_.execute("DELETE FROM " + opening_table() + where_client(group));
    db_.execute("Flush Tables");
}

void RegisterStore::delete_all_additions(std::optional<long> group) {
    db_.execute("DELETE FROM " + addition_table() + where_client(group));
    db_.execute("Flush Tables");
}

std::vector<std::pair<long, double>> RegisterStore::manual_depreciation() {
    std::vector<std::pair<long, double>> out;
    db_.for_each_row("SELECT IdFAGM, DepAmt FROM NewFAMD WHERE Code_No=" + quoted(code_) + " AND Yr=" + num(long(year_)),
                     [&](const Row& r) { out.emplace_back(static_cast<long>(r[0].as_int()), r[1].as_double()); });
    return out;
}

void RegisterStore::rewrite_manual_depreciation(const std::vector<std::pair<long, double>>& rows) {
    Transaction tx(db_);
    db_.execute("DELETE FROM NewFAMD WHERE Code_No=" + quoted(code_) + " AND Yr=" + num(long(year_)));
    db_.execute("Flush Tables");
    for (const auto& [group, amount] : rows)
        db_.execute("INSERT INTO NewFAMD Values (" + quoted(code_) + "," + num(long(year_)) + "," + num(group) + "," +
                    num(amount) + ")");
    db_.execute("Flush Tables");
    tx.commit();
}

long RegisterStore::find_or_create_group(const AssetGroupRow& like) {
    TableLock lock(db_, "NewFAGM");
    const auto found = db_.query(
        "SELECT SrNoFAGM FROM NewFAGM WHERE Yr=" + num(long(year_)) + " AND Part=" + quoted(like.Part) +
        " AND BlockIdIT=" + quoted(like.BlockIdIT) + " AND RateIT=" + num(like.RateIT) + " AND BlockFA=" +
        num(like.BlockFA) + " AND RateFA=" + num(like.RateFA) + " AND BlockIdCL=" + quoted(like.BlockIdCL) +
        " AND LifeYrs=" + num(like.LifeYrs));
    if (!found.empty()) {
        lock.release();
        return static_cast<long>(found.row(0)[0].as_int());
    }
    AssetGroupRow g = like;
    g.Yr = year_;
    g.SrNoFAGM = static_cast<long>(
        db_.query("SELECT MAX(SrNoFAGM) as MaxSrNo FROM NewFAGM").first("MaxSrNo").as_int()) + 1;
    db_.execute("INSERT INTO NewFAGM Values (" + group_values(g) + ")");
    db_.execute("Flush Tables");
    lock.release();
    return g.SrNoFAGM;
}

std::vector<std::vector<std::string>> unpack_rows(std::string_view packed, std::string_view field_sep) {
    std::vector<std::vector<std::string>> rows;
    std::size_t start = 0;
    while (start <= packed.size()) {
        std::size_t end = packed.find('|', start);
        if (end == std::string_view::npos) end = packed.size();
        const std::string_view row = packed.substr(start, end - start);
        if (!row.empty()) {
            std::vector<std::string> fields;
            std::size_t f = 0;
            while (true) {
                const std::size_t g = row.find(field_sep, f);
                if (g == std::string_view::npos) {
                    fields.emplace_back(row.substr(f));
                    break;
                }
                fields.emplace_back(row.substr(f, g - f));
                f = g + field_sep.size();
            }
            rows.push_back(std::move(fields));
        }
        start = end + 1;
    }
    return rows;
}

std::string pack_rows(const std::vector<std::vector<std::string>>& rows, std::string_view field_sep) {
    std::string out;
    for (std::size_t r = 0; r < rows.size(); ++r) {
        if (r) out += '|';
        for (std::size_t f = 0; f < rows[r].size(); ++f) {
            if (f) out += field_sep;
            out += rows[r][f];
        }
    }
    return out;
}

}  // namespace brenlow::store
