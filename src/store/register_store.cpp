#include "store/register_store.h"

#include <type_traits>
#include <variant>

#include "controls/number_format.h"
#include "store/client_store.h"
#include "store/schema.h"
#include "store/table_lock.h"
#include "store/text_limits.h"

namespace brenlow::store {
namespace {

std::string num(double v) {
    return plain_number(v);
}
std::string num(long v) {
    return std::to_string(v);
}

// The marker of the old chart is not an entry.
constexpr const char* kNotMarker = " AND NOT (IdFAGM=-1 AND SrNoFATR=-1)";

// One register row from a result, field by field under the table's own column names.
// The names are looked up once per result, so a narrower select (the income-tax run
// reads only what it uses) or a column added to the table shifts nothing; a column
// the result lacks leaves its field at its default.
template <class RowT>
class RowReader {
public:
    using Member = std::variant<std::string RowT::*, double RowT::*, long RowT::*>;
    struct Field {
        const char* column;
        Member member;
    };

    explicit RowReader(std::vector<Field> fields) : fields_(std::move(fields)), at_(fields_.size(), -1) {}

    RowT read(const Row& r) {
        if (&r.names() != bound_) bind(r);
        RowT out;
        for (std::size_t i = 0; i < fields_.size(); ++i) {
            if (at_[i] < 0) continue;
            const Value& v = r[static_cast<std::size_t>(at_[i])];
            std::visit(
                [&](auto member) {
                    using T = std::remove_reference_t<decltype(out.*member)>;
                    if constexpr (std::is_same_v<T, std::string>)
                        out.*member = v.as_text();
                    else if constexpr (std::is_same_v<T, double>)
                        out.*member = v.as_double();
                    else
                        out.*member = static_cast<long>(v.as_int());
                },
                fields_[i].member);
        }
        return out;
    }

private:
    void bind(const Row& r) {
        bound_ = &r.names();
        for (std::size_t i = 0; i < fields_.size(); ++i) {
            const auto at = r.index_of(fields_[i].column);
            at_[i] = at ? static_cast<int>(*at) : -1;
        }
    }

    std::vector<Field> fields_;
    std::vector<int> at_;
    const std::vector<std::string>* bound_ = nullptr;
};

RowReader<OpeningRow> opening_reader() {
    using O = OpeningRow;
    return RowReader<O>(
        {{"Code_No", &O::Code_No},   {"SrNoFATR", &O::SrNoFATR},   {"IdFAGM", &O::IdFAGM},
         {"Part", &O::Part},         {"CostWdv", &O::CostWdv},     {"OpDepr", &O::OpDepr},
         {"YrCalcCA", &O::YrCalcCA}, {"DepCalcCA", &O::DepCalcCA}, {"ResValue", &O::ResValue},
         {"LifeYrs", &O::LifeYrs},   {"RateFACL", &O::RateFACL},   {"WdvIT", &O::WdvIT},
         {"DetESA", &O::DetESA},     {"RateIT", &O::RateIT},       {"AddlDepRT", &O::AddlDepRT},
         {"SaleDate", &O::SaleDate}, {"SaleAmt", &O::SaleAmt},     {"SaleExp", &O::SaleExp},
         {"ShiftDet", &O::ShiftDet}, {"DepFACL", &O::DepFACL},     {"OthOpts", &O::OthOpts},
         {"PutDate", &O::PutDate},   {"AddlDepOn", &O::AddlDepOn}});
}

RowReader<AdditionRow> addition_reader() {
    using A = AdditionRow;
    return RowReader<A>({{"Code_No", &A::Code_No},   {"SrNoFATR", &A::SrNoFATR}, {"IdFAGM", &A::IdFAGM},
                         {"Part", &A::Part},         {"PutDate", &A::PutDate},   {"AccDate", &A::AccDate},
                         {"PurAmt", &A::PurAmt},     {"ExciseCr", &A::ExciseCr}, {"CurrDiff", &A::CurrDiff},
                         {"Subsidy", &A::Subsidy},   {"ResValue", &A::ResValue}, {"LifeYrs", &A::LifeYrs},
                         {"RateFACL", &A::RateFACL}, {"RateIT", &A::RateIT},     {"AddlDepRT", &A::AddlDepRT},
                         {"SaleDate", &A::SaleDate}, {"SaleAmt", &A::SaleAmt},   {"SaleExp", &A::SaleExp},
                         {"ShiftDet", &A::ShiftDet}, {"DepFACL", &A::DepFACL},   {"OthOpts", &A::OthOpts}});
}

// The income-tax run's reads: only the columns it uses.
constexpr const char* kOpeningForIncomeTax =
    "SrNoFATR, IdFAGM, Part, WdvIT, RateIT, DetESA, AddlDepRT, SaleDate, SaleAmt, SaleExp, OthOpts, "
    "PutDate, AddlDepOn";
constexpr const char* kAdditionForIncomeTax =
    "SrNoFATR, IdFAGM, Part, PutDate, PurAmt, ExciseCr, CurrDiff, Subsidy, AddlDepRT, SaleDate, SaleAmt, "
    "SaleExp, "
    "OthOpts";

// The books run's reads: only the columns it uses.
constexpr const char* kOpeningForBooks =
    "SrNoFATR, IdFAGM, Part, PutDate, CostWdv, OpDepr, DepCalcCA, ResValue, LifeYrs, RateFACL, DepFACL, "
    "SaleDate, SaleAmt, SaleExp, ShiftDet, OthOpts";
constexpr const char* kAdditionForBooks =
    "SrNoFATR, IdFAGM, Part, PutDate, PurAmt, ExciseCr, CurrDiff, Subsidy, ResValue, LifeYrs, RateFACL, "
    "DepFACL, SaleDate, SaleAmt, SaleExp, ShiftDet, OthOpts";

}  // namespace

// The values after the key columns, in stored order.
std::string opening_values(const OpeningRow& o) {
    return num(o.IdFAGM) + "," + quoted(o.Part) + "," + num(o.CostWdv) + "," + num(o.OpDepr) + "," +
           num(o.YrCalcCA) + "," + num(o.DepCalcCA) + "," + num(o.ResValue) + "," + num(o.LifeYrs) + "," +
           num(o.RateFACL) + "," + num(o.WdvIT) + "," + quoted(o.DetESA) + "," + num(o.RateIT) + "," +
           num(o.AddlDepRT) + "," + quoted(o.SaleDate) + "," + num(o.SaleAmt) + "," + num(o.SaleExp) + "," +
           quoted(o.ShiftDet) + "," + num(o.DepFACL) + "," + quoted(o.OthOpts) + "," + quoted(o.PutDate) +
           "," + num(o.AddlDepOn);
}

void check_opening_texts(std::string_view where, const OpeningRow& o) {
    check_text(where, "Part", o.Part, kNameChars);
    check_text(where, "DetESA", o.DetESA, kLongTextChars);
    check_text(where, "SaleDate", o.SaleDate, kDateChars);
    check_text(where, "ShiftDet", o.ShiftDet, kLongTextChars);
    check_text(where, "OthOpts", o.OthOpts, kLongTextChars);
    check_text(where, "PutDate", o.PutDate, kDateChars);
}

void check_addition_texts(std::string_view where, const AdditionRow& a) {
    check_text(where, "Part", a.Part, kNameChars);
    check_text(where, "PutDate", a.PutDate, kDateChars);
    check_text(where, "AccDate", a.AccDate, kDateChars);
    check_text(where, "SaleDate", a.SaleDate, kDateChars);
    check_text(where, "ShiftDet", a.ShiftDet, kLongTextChars);
    check_text(where, "OthOpts", a.OthOpts, kLongTextChars);
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

std::string quoted(std::string_view text) {
    return "'" + sql_text(text) + "'";
}

RegisterStore::RegisterStore(Database& db, std::string code, int year)
    : db_(db), code_(std::move(code)), year_(year) {}

std::string RegisterStore::opening_table() const {
    return register_opening_table(year_);
}
std::string RegisterStore::addition_table() const {
    return register_addition_table(year_);
}

std::string RegisterStore::where_client(std::optional<long> group) const {
    std::string w = " WHERE Code_No=" + quoted(code_);
    if (group) w += " AND IdFAGM=" + num(*group);
    return w;
}

bool RegisterStore::tables_exist() {
    return db_.table_exists(opening_table()) && db_.table_exists(addition_table());
}

void RegisterStore::ensure_tables() {
    // Looked for first: opening a year that has its tables writes nothing.
    if (!tables_exist()) create_register_tables(db_, year_);
}

std::optional<std::string> RegisterStore::options_row() {
    const auto rs = db_.query("SELECT MiscInf FROM NewFAMI WHERE Code_No=" + quoted(code_) +
                              " AND Yr=" + num(long(year_)));
    if (rs.empty()) return std::nullopt;
    return rs.row(0)[0].as_text();
}

void RegisterStore::rewrite_options_row(std::string_view misc_inf) {
    check_text("NewFAMI row of " + code_ + " " + num(long(year_)), "MiscInf", misc_inf, kLongTextChars);
    Transaction tx(db_);
    db_.execute("DELETE FROM NewFAMI WHERE Code_No=" + quoted(code_) + " AND Yr=" + num(long(year_)));
    db_.flush_tables();
    db_.execute("INSERT INTO NewFAMI VALUES (" + quoted(code_) + "," + num(long(year_)) + "," +
                quoted(misc_inf) + ")");
    db_.flush_tables();
    tx.commit();
}

std::vector<AssetGroupRow> RegisterStore::asset_groups() {
    return asset_groups_of(year_);
}

std::vector<AssetGroupRow> RegisterStore::asset_groups_of(int year) {
    return asset_groups_of_year(db_, year);
}

std::vector<ClBlockRow> RegisterStore::companies_act_blocks() {
    // The classifications themselves; their sub-entries are what groups pick.
    std::vector<ClBlockRow> out;
    for (auto& c : companies_act_classes(db_, year_))
        if (c.ID.find('.') == std::string::npos) out.push_back(std::move(c));
    return out;
}

std::vector<ItBlockRow> RegisterStore::income_tax_blocks() {
    return store::income_tax_blocks(db_, year_);
}

std::vector<Block> RegisterStore::book_blocks() {
    return blocks_of_kind_by_name(db_, kBooksBlock);
}

std::string RegisterStore::nesd_of(std::string_view block_id_cl) {
    return db_
        .query("SELECT NESD FROM NewCLBM WHERE Yr=" + num(long(year_)) + " AND ID=" + quoted(block_id_cl))
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
    const auto o =
        db_.query("SELECT COUNT(*) AS n FROM " + opening_table() + where_client(std::nullopt) + kNotMarker);
    if (o.first("n").as_int() > 0) return true;
    return db_.query("SELECT COUNT(*) AS n FROM " + addition_table() + where_client(std::nullopt))
               .first("n")
               .as_int() > 0;
}

void RegisterStore::write_old_chart_marker() {
    Transaction tx(db_);
    db_.execute("DELETE FROM " + opening_table() + where_client(std::nullopt));
    db_.execute("DELETE FROM " + addition_table() + where_client(std::nullopt));
    db_.execute("DELETE FROM NewFAMI WHERE Code_No=" + quoted(code_) + " AND Yr=" + num(long(year_)));
    db_.execute("DELETE FROM NewFAMD WHERE Code_No=" + quoted(code_) + " AND Yr=" + num(long(year_)));
    db_.flush_tables();
    db_.execute("INSERT INTO " + opening_table() + " Values (" + quoted(code_) +
                ",-1,-1,'',0,0,0,0,0,0,0,0,'',0,0,0,0,0,'',0,'','',0)");
    db_.flush_tables();
    tx.commit();
}

namespace {

// The rows of `table` picked by `where`, in serial order: `columns` a list or "*".
std::string by_serial(std::string_view columns, const std::string& table, const std::string& where) {
    return "SELECT " + std::string(columns) + " FROM " + table + where + " ORDER BY SrNoFATR";
}

std::string serials_from(long first, long last) {
    return " AND SrNoFATR BETWEEN " + num(first) + " AND " + num(last);
}

// Each row read into its struct; a narrow read, which leaves Code_No out, gets the
// client's code put back.
template <class RowT>
void each_row(Database& db, const std::string& sql, RowReader<RowT> reader, const std::string* code,
              const std::function<void(RowT&&)>& fn) {
    db.for_each_row(sql, [&](const Row& r) {
        RowT row = reader.read(r);
        if (code) row.Code_No = *code;
        fn(std::move(row));
    });
}

std::vector<long> serials(Database& db, const std::string& sql) {
    std::vector<long> out;
    db.for_each_row(sql, [&](const Row& r) { out.push_back(static_cast<long>(r[0].as_int())); });
    return out;
}

}  // namespace

void RegisterStore::for_each_opening(std::optional<long> group, const std::function<void(OpeningRow&&)>& fn) {
    each_row(db_, by_serial("*", opening_table(), where_client(group) + kNotMarker), opening_reader(),
             nullptr, fn);
}

void RegisterStore::for_each_addition(std::optional<long> group,
                                      const std::function<void(AdditionRow&&)>& fn) {
    each_row(db_, by_serial("*", addition_table(), where_client(group)), addition_reader(), nullptr, fn);
}

std::vector<long> RegisterStore::opening_serials(std::optional<long> group) {
    return serials(db_, by_serial("SrNoFATR", opening_table(), where_client(group) + kNotMarker));
}

std::vector<long> RegisterStore::addition_serials(std::optional<long> group) {
    return serials(db_, by_serial("SrNoFATR", addition_table(), where_client(group)));
}

void RegisterStore::for_each_opening_between(std::optional<long> group, long first, long last,
                                             const std::function<void(OpeningRow&&)>& fn) {
    each_row(db_,
             by_serial("*", opening_table(), where_client(group) + kNotMarker + serials_from(first, last)),
             opening_reader(), nullptr, fn);
}

void RegisterStore::for_each_addition_between(std::optional<long> group, long first, long last,
                                              const std::function<void(AdditionRow&&)>& fn) {
    each_row(db_, by_serial("*", addition_table(), where_client(group) + serials_from(first, last)),
             addition_reader(), nullptr, fn);
}

void RegisterStore::for_each_opening_for_books(const std::function<void(OpeningRow&&)>& fn) {
    each_row(db_, by_serial(kOpeningForBooks, opening_table(), where_client(std::nullopt) + kNotMarker),
             opening_reader(), &code_, fn);
}

void RegisterStore::for_each_addition_for_books(const std::function<void(AdditionRow&&)>& fn) {
    each_row(db_, by_serial(kAdditionForBooks, addition_table(), where_client(std::nullopt)),
             addition_reader(), &code_, fn);
}

void RegisterStore::for_each_opening_for_income_tax(const std::function<void(OpeningRow&&)>& fn) {
    each_row(db_, by_serial(kOpeningForIncomeTax, opening_table(), where_client(std::nullopt) + kNotMarker),
             opening_reader(), &code_, fn);
}

void RegisterStore::for_each_addition_for_income_tax(const std::function<void(AdditionRow&&)>& fn) {
    each_row(db_, by_serial(kAdditionForIncomeTax, addition_table(), where_client(std::nullopt)),
             addition_reader(), &code_, fn);
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
    const auto rs =
        db_.query("SELECT * FROM " + opening_table() + where_client(group) + " AND SrNoFATR=" + num(serial));
    if (rs.empty()) return std::nullopt;
    return opening_reader().read(rs.row(0));
}

std::optional<AdditionRow> RegisterStore::addition_entry(long group, long serial) {
    const auto rs =
        db_.query("SELECT * FROM " + addition_table() + where_client(group) + " AND SrNoFATR=" + num(serial));
    if (rs.empty()) return std::nullopt;
    return addition_reader().read(rs.row(0));
}

std::vector<long> RegisterStore::groups_with_entries() {
    std::vector<long> ids;
    db_.for_each_row(
        "SELECT DISTINCT IdFAGM FROM " + opening_table() + where_client(std::nullopt) + kNotMarker,
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
template <class RowT, class Values, class Check>
long insert_with_next_serial(Database& db, const std::string& table, const std::string& code, RowT& row,
                             Values values, Check check) {
    check(table + " new row", row);
    TableLock lock(db, table);
    const long serial = largest_serial(db, table, code) + 1;
    row.Code_No = code;
    row.SrNoFATR = serial;
    db.execute("INSERT INTO " + table + " Values (" + quoted(code) + "," + num(serial) + "," + values(row) +
               ")");
    db.flush_tables();
    lock.release();
    return serial;
}

long RegisterStore::insert_opening(OpeningRow row) {
    return insert_with_next_serial(db_, opening_table(), code_, row, opening_values, check_opening_texts);
}

long RegisterStore::insert_addition(AdditionRow row) {
    return insert_with_next_serial(db_, addition_table(), code_, row, addition_values, check_addition_texts);
}

void RegisterStore::update_opening(const OpeningRow& o) {
    check_opening_texts(opening_table() + " row " + num(o.SrNoFATR), o);
    db_.execute(
        "UPDATE " + opening_table() + " SET IdFAGM=" + num(o.IdFAGM) + ",Part=" + quoted(o.Part) +
        ",CostWdv=" + num(o.CostWdv) + ",OpDepr=" + num(o.OpDepr) + ",YrCalcCA=" + num(o.YrCalcCA) +
        ",DepCalcCA=" + num(o.DepCalcCA) + ",ResValue=" + num(o.ResValue) + ",LifeYrs=" + num(o.LifeYrs) +
        ",RateFACL=" + num(o.RateFACL) + ",WdvIT=" + num(o.WdvIT) + ",DetESA=" + quoted(o.DetESA) +
        ",RateIT=" + num(o.RateIT) + ",AddlDepRT=" + num(o.AddlDepRT) + ",SaleDate=" + quoted(o.SaleDate) +
        ",SaleAmt=" + num(o.SaleAmt) + ",SaleExp=" + num(o.SaleExp) + ",ShiftDet=" + quoted(o.ShiftDet) +
        ",DepFACL=" + num(o.DepFACL) + ",OthOpts=" + quoted(o.OthOpts) + ",PutDate=" + quoted(o.PutDate) +
        ",AddlDepOn=" + num(o.AddlDepOn) + " WHERE Code_No=" + quoted(code_) +
        " AND SrNoFATR=" + num(o.SrNoFATR));
    db_.flush_tables();
}

void RegisterStore::update_addition(const AdditionRow& a) {
    check_addition_texts(addition_table() + " row " + num(a.SrNoFATR), a);
    db_.execute(
        "UPDATE " + addition_table() + " SET IdFAGM=" + num(a.IdFAGM) + ",Part=" + quoted(a.Part) +
        ",PutDate=" + quoted(a.PutDate) + ",AccDate=" + quoted(a.AccDate) + ",PurAmt=" + num(a.PurAmt) +
        ",ExciseCr=" + num(a.ExciseCr) + ",CurrDiff=" + num(a.CurrDiff) + ",Subsidy=" + num(a.Subsidy) +
        ",ResValue=" + num(a.ResValue) + ",LifeYrs=" + num(a.LifeYrs) + ",RateFACL=" + num(a.RateFACL) +
        ",RateIT=" + num(a.RateIT) + ",AddlDepRT=" + num(a.AddlDepRT) + ",SaleDate=" + quoted(a.SaleDate) +
        ",SaleAmt=" + num(a.SaleAmt) + ",SaleExp=" + num(a.SaleExp) + ",ShiftDet=" + quoted(a.ShiftDet) +
        ",DepFACL=" + num(a.DepFACL) + ",OthOpts=" + quoted(a.OthOpts) + " WHERE Code_No=" + quoted(code_) +
        " AND SrNoFATR=" + num(a.SrNoFATR));
    db_.flush_tables();
}

void RegisterStore::delete_opening(long serial) {
    db_.execute("DELETE FROM " + opening_table() + " WHERE Code_No=" + quoted(code_) +
                " AND SrNoFATR=" + num(serial));
    db_.flush_tables();
}

void RegisterStore::delete_addition(long serial) {
    db_.execute("DELETE FROM " + addition_table() + " WHERE Code_No=" + quoted(code_) +
                " AND SrNoFATR=" + num(serial));
    db_.flush_tables();
}

void RegisterStore::delete_all_openings(std::optional<long> group) {
    db_.execute("DELETE FROM " + opening_table() + where_client(group));
    db_.flush_tables();
}

void RegisterStore::delete_all_additions(std::optional<long> group) {
    db_.execute("DELETE FROM " + addition_table() + where_client(group));
    db_.flush_tables();
}

std::vector<std::pair<long, double>> RegisterStore::manual_depreciation() {
    std::vector<std::pair<long, double>> out;
    db_.for_each_row(
        "SELECT IdFAGM, DepAmt FROM NewFAMD WHERE Code_No=" + quoted(code_) + " AND Yr=" + num(long(year_)),
        [&](const Row& r) {
            out.emplace_back(static_cast<long>(r["IdFAGM"].as_int()), r["DepAmt"].as_double());
        });
    return out;
}

void RegisterStore::rewrite_manual_depreciation(const std::vector<std::pair<long, double>>& rows) {
    Transaction tx(db_);
    db_.execute("DELETE FROM NewFAMD WHERE Code_No=" + quoted(code_) + " AND Yr=" + num(long(year_)));
    db_.flush_tables();
    for (const auto& [group, amount] : rows)
        db_.execute("INSERT INTO NewFAMD Values (" + quoted(code_) + "," + num(long(year_)) + "," +
                    num(group) + "," + num(amount) + ")");
    db_.flush_tables();
    tx.commit();
}

long RegisterStore::find_or_create_group(const AssetGroupRow& like) {
    return find_or_add_asset_group(db_, year_, like);
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
            std::string field = rows[r][f];
            for (const std::string_view sep : {field_sep, std::string_view("|")}) {
                if (sep.empty()) continue;
                for (std::size_t p; (p = field.find(sep)) != std::string::npos;) field.erase(p, sep.size());
            }
            out += field;
        }
    }
    return out;
}

}  // namespace brenlow::store
