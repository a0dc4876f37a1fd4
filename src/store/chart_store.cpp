#include "store/chart_store.h"

#include "controls/number_format.h"
#include "store/client_store.h"

namespace brenlow::store {
namespace {

const char* name_of(ChartTable t) {
    return t == ChartTable::DeprChart ? "DeprChart" : "TmpDepChart";
}

std::string where(std::string_view code, int year) {
    return " WHERE Code_No='" + sql_text(code) + "' AND FYr=" + std::to_string(year);
}

std::string values_of(const depreciation::ChartRow& r, std::string_view code, int year) {
    std::string v = "('" + sql_text(code) + "'," + std::to_string(year) + "," + std::to_string(r.Grp);
    for (double x : {r.Rate,   r.Wdv,     r.WdvOpHR, r.Add1,  r.Cons1,  r.FullAmt, r.Add2,
                     r.Cons2,  r.HalfAmt, r.DeprF,   r.DeprH, r.ADeprF, r.ADeprH,  r.ADeprOpH,
                     r.TotDep, r.Dep38,   r.PropDep, r.Exp,   r.CG,     r.WdvCl}) {
        v += ",";
        v += plain_number(x);
    }
    return v + ")";
}

void rewrite(Database& db, const char* table, std::string_view code, int year,
             const std::vector<depreciation::ChartRow>& rows) {
    Transaction tx(db);
    db.execute(std::string("DELETE FROM ") + table + where(code, year));
    db.flush_tables();
    for (const auto& r : rows)
        db.execute(std::string("Insert into ") + table + " Values " + values_of(r, code, year));
    db.flush_tables();
    tx.commit();
}

}  // namespace

void rewrite_built_chart(Database& db, std::string_view code, int year,
                         const std::vector<depreciation::ChartRow>& rows) {
    rewrite(db, "TmpDepChart", code, year, rows);
}

void rewrite_hand_edited_chart(Database& db, std::string_view code, int year,
                               const std::vector<depreciation::ChartRow>& rows) {
    rewrite(db, "DeprChart", code, year, rows);
}

void copy_hand_edited_chart(Database& db, std::string_view code, int year) {
    Transaction tx(db);
    db.execute("DELETE FROM TmpDepChart" + where(code, year));
    db.flush_tables();
    db.execute("INSERT INTO TmpDepChart SELECT * FROM DeprChart WHERE Code_No='" + sql_text(code) +
               "' AND FYr=" + std::to_string(year));
    db.flush_tables();
    tx.commit();
}

std::vector<depreciation::ChartRow> read_chart(Database& db, ChartTable table, std::string_view code,
                                               int year) {
    std::vector<depreciation::ChartRow> rows;
    // Stored order: the rows as they were written (a block's -40 row follows it).
    db.for_each_row(std::string("SELECT * FROM ") + name_of(table) + where(code, year), [&](const Row& r) {
        depreciation::ChartRow c;
        c.Code_No = r["Code_No"].as_text();
        c.FYr = static_cast<int>(r["FYr"].as_int());
        c.Grp = static_cast<int>(r["Grp"].as_int());
        c.Rate = r["Rate"].as_double();
        c.Wdv = r["Wdv"].as_double();
        c.WdvOpHR = r["WdvOpHR"].as_double();
        c.Add1 = r["Add1"].as_double();
        c.Cons1 = r["Cons1"].as_double();
        c.FullAmt = r["FullAmt"].as_double();
        c.Add2 = r["Add2"].as_double();
        c.Cons2 = r["Cons2"].as_double();
        c.HalfAmt = r["HalfAmt"].as_double();
        c.DeprF = r["DeprF"].as_double();
        c.DeprH = r["DeprH"].as_double();
        c.ADeprF = r["ADeprF"].as_double();
        c.ADeprH = r["ADeprH"].as_double();
        c.ADeprOpH = r["ADeprOpH"].as_double();
        c.TotDep = r["TotDep"].as_double();
        c.Dep38 = r["Dep38"].as_double();
        c.PropDep = r["PropDep"].as_double();
        c.Exp = r["Exp"].as_double();
        c.CG = r["CG"].as_double();
        c.WdvCl = r["WdvCl"].as_double();
        rows.push_back(std::move(c));
    });
    return rows;
}

depreciation::AdditionalSums additional_in_stored_chart(Database& db, ChartTable table, std::string_view code,
                                                        int year) {
    const auto rs =
        db.query(std::string("Select Sum(ADeprF) as f,sum(ADeprH) as h,sum(ADeprOpH) as o from ") +
                 name_of(table) + " Where Code_No='" + sql_text(code) + "' and FYr=" + std::to_string(year) +
                 " and Grp=3 and Rate In(15,30,40)");
    return {rs.first("f").as_double(), rs.first("h").as_double(), rs.first("o").as_double()};
}

}  // namespace brenlow::store
