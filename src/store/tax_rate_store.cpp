#include "store/tax_rate_store.h"

#include <algorithm>

#include "store/client_store.h"
#include "store/sql_dialect.h"
#include "store/table_lock.h"
#include "store/text_limits.h"

namespace brenlow::store {
namespace {

constexpr const char* kTable = "NoteTaxRate";
constexpr std::size_t kKindChars = 20;
constexpr std::size_t kRegimeChars = 50;

std::string q(std::string_view text) {
    return "'" + sql_text(text) + "'";
}

std::vector<TaxRateRow> read_rows(Database& db) {
    std::vector<TaxRateRow> rows;
    db.for_each_row("Select Sr, Kind, Regime, Rate from NoteTaxRate Order By Sr", [&](const Row& r) {
        rows.push_back({static_cast<int>(r[0].as_int()), r[1].as_text(), r[2].as_text(), r[3].as_double()});
    });
    return rows;
}

const TaxRateRow* find(const std::vector<TaxRateRow>& rows, std::string_view kind, std::string_view regime) {
    for (const auto& r : rows)
        if (equals_case_blind(r.Kind, kind) && equals_case_blind(r.Regime, regime)) return &r;
    return nullptr;
}

void insert(Database& db, const TaxRateRow& r) {
    db.execute("Insert Into NoteTaxRate (Sr, Kind, Regime, Rate) Values (" + std::to_string(r.Sr) + "," +
               q(r.Kind) + "," + q(r.Regime) + "," + plain_number_text(r.Rate) + ")");
}

}  // namespace

const std::vector<TaxRateRow>& shipped_tax_rates() {
    static const std::vector<TaxRateRow> rows = {
        {1, "company", "115BAA", 25.168},
        {2, "company", "25% up to 1 crore", 26},
        {3, "company", "25% above 1 crore", 27.82},
        {4, "company", "25% above 10 crore", 29.12},
        {5, "company", "30% up to 1 crore", 31.2},
        {6, "company", "30% above 1 crore", 33.384},
        {7, "company", "30% above 10 crore", 34.944},
        {8, "firm", "up to 1 crore", 31.2},
        {9, "firm", "above 1 crore", 34.944},
        {10, "llp", "up to 1 crore", 31.2},
        {11, "llp", "above 1 crore", 34.944},
    };
    return rows;
}

void prepare_tax_rate_table(Database& db) {
    db.execute(std::string("Create Table If Not Exists ") + kTable +
               " (Sr Int(11), Kind VarChar(20), Regime VarChar(50), Rate Double)");
    TableLock lock(db, kTable);
    Transaction tx(db);
    if (db.query("Select Count(*) as n from NoteTaxRate").first("n").as_int() == 0)
        for (const auto& r : shipped_tax_rates()) insert(db, r);
    tx.commit();
    lock.release();
    db.flush_tables();
}

std::vector<TaxRateRow> tax_rates(Database& db) {
    if (!db.table_exists(kTable)) return shipped_tax_rates();
    return read_rows(db);
}

std::optional<TaxRateRow> tax_rate(Database& db, std::string_view kind, std::string_view regime) {
    const auto rows = tax_rates(db);
    if (const auto* r = find(rows, kind, regime)) return *r;
    return std::nullopt;
}

void set_tax_rate(Database& db, std::string_view kind, std::string_view regime, double rate) {
    check_text("NoteTaxRate new row", "Kind", kind, kKindChars);
    check_text("NoteTaxRate new row", "Regime", regime, kRegimeChars);
    prepare_tax_rate_table(db);
    TableLock lock(db, kTable);
    Transaction tx(db);
    const auto rows = read_rows(db);
    if (const auto* r = find(rows, kind, regime)) {
        db.execute("Update NoteTaxRate Set Rate=" + plain_number_text(rate) +
                   " Where Sr=" + std::to_string(r->Sr));
    } else {
        int last = 0;
        for (const auto& x : rows) last = std::max(last, x.Sr);
        insert(db, {last + 1, std::string(kind), std::string(regime), rate});
    }
    tx.commit();
    lock.release();
    db.flush_tables();
}

bool remove_tax_rate(Database& db, std::string_view kind, std::string_view regime) {
    prepare_tax_rate_table(db);
    TableLock lock(db, kTable);
    Transaction tx(db);
    const auto rows = read_rows(db);
    const auto* r = find(rows, kind, regime);
    if (r) db.execute("Delete from NoteTaxRate Where Sr=" + std::to_string(r->Sr));
    tx.commit();
    lock.release();
    db.flush_tables();
    return r != nullptr;
}

}  // namespace brenlow::store
