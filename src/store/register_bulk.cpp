#include "store/register_bulk.h"

#include "store/schema.h"
#include "store/table_lock.h"

namespace brenlow::store {
namespace {

// Rows per INSERT statement: large enough to save round trips, small enough for
// any server's packet size with long packed texts.
constexpr std::size_t kBatch = 200;

std::string values_of(const OpeningRow& r) {
    return "(" + quoted(r.Code_No) + "," + std::to_string(r.SrNoFATR) + "," + opening_values(r) + ")";
}

std::string values_of(const AdditionRow& r) {
    return "(" + quoted(r.Code_No) + "," + std::to_string(r.SrNoFATR) + "," + addition_values(r) + ")";
}

void check_texts(const std::string& where, const OpeningRow& r) {
    check_opening_texts(where, r);
}
void check_texts(const std::string& where, const AdditionRow& r) {
    check_addition_texts(where, r);
}

template <class RowT>
void insert_all(Database& db, std::string_view code, const std::string& table, std::vector<RowT>& rows) {
    if (rows.empty()) return;
    // Every row is checked before the first is written; rows are named as given.
    for (std::size_t i = 0; i < rows.size(); ++i)
        check_texts(table + " row " + std::to_string(i + 1), rows[i]);
    TableLock lock(db, table);
    Transaction tx(db);
    long serial = largest_serial(db, table, code);
    std::string sql;
    std::size_t in_batch = 0;
    for (auto& r : rows) {
        r.Code_No = std::string(code);
        r.SrNoFATR = ++serial;
        sql += in_batch == 0 ? "INSERT INTO " + table + " Values " : ",";
        sql += values_of(r);
        if (++in_batch == kBatch) {
            db.execute(sql);
            sql.clear();
            in_batch = 0;
        }
    }
    if (in_batch) db.execute(sql);
    db.flush_tables();
    tx.commit();
    lock.release();
}

}  // namespace

void insert_openings(Database& db, std::string_view code, int year, std::vector<OpeningRow>& rows) {
    insert_all(db, code, register_opening_table(year), rows);
}

void insert_additions(Database& db, std::string_view code, int year, std::vector<AdditionRow>& rows) {
    insert_all(db, code, register_addition_table(year), rows);
}

}  // namespace brenlow::store
