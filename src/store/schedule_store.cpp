#include "store/schedule_store.h"

#include <functional>
#include <map>

#include "controls/number_format.h"
#include "store/client_store.h"
#include "store/sql_dialect.h"
#include "store/table_lock.h"
#include "store/text_limits.h"

namespace brenlow::store {
namespace {

std::string q(std::string_view text) {
    return "'" + sql_text(text) + "'";
}

std::string table(std::string_view stem, std::string_view suffix) {
    // Stem and suffix are joined directly, never quoted.
    return std::string(stem) + std::string(suffix);
}

// A value as an SQL literal: text quoted, numbers plain, an empty value 0.
std::string literal(std::string_view column, const Value& v) {
    if (schedule_text_column(column)) return v.is_null() ? "''" : q(v.as_text());
    return v.is_null() ? "0" : plain_number(v.as_double());
}

FieldRow read_row(const Row& r) {
    FieldRow row;
    for (std::size_t i = 0; i < r.size(); ++i) row.set(r.names()[i], r[i]);
    return row;
}

std::vector<IdName> id_names(Database& db, const std::string& sql, const char* id, const char* name) {
    std::vector<IdName> out;
    for (const auto& r : db.query(sql))
        out.emplace_back(static_cast<long>(r[id].as_int()), r[name].as_text());
    return out;
}

// The id of a name found case-blind, or the largest id plus one written with it.
long find_or_add(Database& db, const std::string& find_sql, const char* id_column, const std::string& max_sql,
                 const std::string& table_name, const std::function<std::string(long)>& insert_sql,
                 std::string_view name) {
    check_text(table_name + " new row", "name", name, kNameChars);
    // Looked for under the lock: two users adding one name at once make one row.
    TableLock lock(db, table_name);
    const auto found = db.query(find_sql);
    if (!found.empty()) return static_cast<long>(found.first(id_column).as_int());
    const long id = static_cast<long>(db.query(max_sql).first("cntr").as_int()) + 1;
    db.execute(insert_sql(id));
    db.flush_tables();
    lock.release();
    return id;
}

}  // namespace

const Value& FieldRow::get(std::string_view column) const {
    static const Value null;
    for (const auto& [c, v] : fields_)
        if (equals_case_blind(c, column)) return v;
    return null;
}

bool FieldRow::has(std::string_view column) const {
    for (const auto& f : fields_)
        if (equals_case_blind(f.first, column)) return true;
    return false;
}

void FieldRow::set(std::string_view column, Value value) {
    for (auto& [c, v] : fields_) {
        if (equals_case_blind(c, column)) {
            v = std::move(value);
            return;
        }
    }
    fields_.emplace_back(std::string(column), std::move(value));
}

const std::vector<std::string>& schedule_columns(std::string_view stem) {
    static const std::map<std::string, std::vector<std::string>> columns = {
        {"SHARE_", {"srno", "code_no", "no_share", "RS_SHARE1", "RS_SHARE", "ref_ep", "sam", "four_id"}},
        {"RESV_", {"srno", "code_no", "resv_id", "OP_BL", "ADD_AMT", "Ded_amt"}},
        {"SECUR_",
         {"srno", "code_no", "loan_id", "DEB_OTH_ID", "PARTICUL", "rate", "EACH_AMT", "head_id", "Amount"}},
        {"INVEST_",
         {"srno", "code_no", "INVEST_ID", "SHARE_ID", "no_shares", "per_share_amt", "paidup", "mktval",
          "Amount", "comp_id", "qu_ID", "TNT_ID", "particular"}},
        {"LOAN_ADV_", {"srno", "code_no", "comp_id", "Amount", "LDAD_ID", "OTH_LOAN_ID"}},
        {"MiscExpAsst_", {"srno", "code_no", "ExpID", "Descript", "OpBal", "Amount"}},
        {"SUNDEB_",
         {"srno", "code_no", "more_amt", "OTH_AMT", "PROV_AMT", "dis_prov_amt", "good_amt", "doubt_amt",
          "bad_amt"}},
        {"BANK_",
         {"srno", "code_no", "CASH", "DD", "REMITTANCE", "FD", "SCH_CURR", "SCH_DEP", "FOR_CURR", "FOR_DEP",
          "OTH_CURR", "OTH_DEP"}},
    };
    static const std::vector<std::string> none;
    const auto it = columns.find(std::string(stem));
    return it == columns.end() ? none : it->second;
}

const std::vector<std::string>& schedule_stems() {
    static const std::vector<std::string> stems = {"SHARE_",    "RESV_",        "SECUR_",  "INVEST_",
                                                   "LOAN_ADV_", "MiscExpAsst_", "SUNDEB_", "BANK_"};
    return stems;
}

bool schedule_text_column(std::string_view column) {
    for (const char* c : {"code_no", "ref_ep", "PARTICUL", "particular", "Descript"})
        if (equals_case_blind(column, c)) return true;
    return false;
}

std::vector<FieldRow> read_schedule(Database& db, std::string_view stem, std::string_view suffix,
                                    std::string_view code, int loan_id) {
    const std::string t = table(stem, suffix);
    std::string sql;
    if (stem == "SECUR_" && loan_id != 0)
        sql = "select * from " + t + " where LOAN_ID=" + std::to_string(loan_id) + " and code_no=" + q(code) +
              " ORDER BY SRNO";
    else if (stem == "RESV_" || stem == "SHARE_")
        sql = "select * from " + t + " where code_no=" + q(code) + " ORDER BY SRNO";
    else
        sql = "select * from " + t + " where code_no=" + q(code) + " order by srno";
    std::vector<FieldRow> rows;
    db.for_each_row(sql, [&](const Row& r) { rows.push_back(read_row(r)); });
    return rows;
}

bool schedule_has_rows(Database& db, std::string_view stem, std::string_view suffix, std::string_view code) {
    return db.query("select count(*) as n from " + table(stem, suffix) + " where code_no=" + q(code))
               .first("n")
               .as_int() > 0;
}

void save_schedule(Database& db, std::string_view suffix, std::string_view code, const ScheduleSave& save) {
    const std::string t = table(save.stem, suffix);
    Transaction tx(db);
    if (save.stem == "RESV_") {
        // Rows without a reserve go for every client of the year, not only this one.
        db.execute("delete from " + t + " where resv_id =0");
        db.flush_tables();
    }
    if (save.stem == "SECUR_")
        db.execute("Delete from " + t + " where LOAN_ID=" + std::to_string(save.loan_id) +
                   " and code_no=" + q(code));
    else
        db.execute("Delete from " + t + " where code_no=" + q(code));
    db.flush_tables();
    for (const auto& row : save.rows) {
        std::string cols, vals;
        for (const auto& [column, value] : row.fields()) {
            if (equals_case_blind(column, "code_no")) continue;
            if (schedule_text_column(column))
                check_text(t + " row " + row.get("srno").as_text(), column, value.as_text(), kNameChars);
            cols += "," + column;
            vals += "," + literal(column, value);
        }
        db.execute("insert into " + t + "(code_no" + cols + ") values(" + q(code) + vals + ")");
        if (save.stem == "RESV_") db.flush_tables();
    }
    if (save.stem == "SHARE_" && save.share_application != 0)
        db.execute("insert into " + t + "(code_no,sam) values(" + q(code) + "," +
                   plain_number(save.share_application) + ")");
    tx.commit();
    db.flush_tables();
}

int carry_forward_schedule(Database& db, std::string_view stem, std::string_view suffix,
                           std::string_view previous_suffix, std::string_view code) {
    const std::string cur = table(stem, suffix), prev = table(stem, previous_suffix);
    int copied = 0;
    Transaction tx(db);
    if (stem == "RESV_") {
        copied = static_cast<int>(
            db.query("select count(*) as n from " + prev + " Where Code_No=" + q(code)).first("n").as_int());
        db.execute("insert into RESV_" + std::string(suffix) +
                   " Select SRNO,CODE_NO,RESV_ID,OP_BL+ADD_AMT-DED_AMT,0,0 from RESV_" +
                   std::string(previous_suffix) + " Where Code_No=" + q(code));
    } else {
        const auto& columns = schedule_columns(stem);
        for (const auto& row : read_schedule(db, stem, previous_suffix, code)) {
            std::string vals;
            for (const auto& c : columns) {
                const Value& v = row.get(c);
                const bool blank = v.is_null() || v.as_text().empty();
                vals += (vals.empty() ? "" : ",") + (blank ? std::string("0") : literal(c, v));
            }
            db.execute("insert into " + cur + " values(" + vals + ")");
            ++copied;
        }
    }
    tx.commit();
    db.flush_tables();
    return copied;
}

std::vector<IdName> loan_heads(Database& db, int loan_id) {
    return id_names(db,
                    "Select * from Mast_Head where Loan_Id=" + std::to_string(loan_id) + " Order by Head_Nm",
                    "head_id", "head_nm");
}
std::vector<IdName> investment_types(Database& db) {
    return id_names(db, "Select * from Mast_Invest order by Invest_Nm", "INVEST_ID", "invest_nm");
}
std::vector<IdName> other_loans(Database& db) {
    return id_names(db, "Select * from Mast_Oth_Loan order by Oth_Loan_Nm", "oth_loan_id", "oth_loan_nm");
}
std::vector<IdName> misc_expenses(Database& db) {
    return id_names(db, "Select * from Mast_MiscExp order by Exp_Nm", "Exp_Id", "Exp_Nm");
}
std::vector<IdName> companies(Database& db) {
    return id_names(db, "Select * from mast_company order by comp_nm", "comp_id", "comp_nm");
}
std::vector<IdName> user_reserves(Database& db) {
    return id_names(db, "Select * from Mast_Resv where resv_id>6 order by resv_nm", "resv_id", "resv_nm");
}
std::vector<IdName> reserves(Database& db) {
    return id_names(db, "Select * from Mast_Resv order by resv_id", "resv_id", "resv_nm");
}

std::optional<long> add_reserve(Database& db, std::string_view name) {
    check_text("MAST_RESV new row", "RESV_NM", name, kNameChars);
    TableLock lock(db, "MAST_RESV");
    if (!db.query("Select * from MAST_RESV where RESV_NM=" + q(name)).empty()) return std::nullopt;
    const long id = static_cast<long>(
                        db.query("Select max(resv_id) as maxcode from MAST_RESV").first("maxcode").as_int()) +
                    1;
    db.execute("Insert Into MAST_RESV Values (" + std::to_string(id) + "," + q(name) + ")");
    db.flush_tables();
    lock.release();
    return id;
}

long find_or_add_misc_expense(Database& db, std::string_view name) {
    const std::string upper = to_upper_ascii(name);
    return find_or_add(
        db, "SELECT * FROM MAST_MISCEXP WHERE UCASE(EXP_NM)=" + q(upper), "Exp_ID",
        "select max(Exp_ID) as cntr from MAST_MISCEXP", "MAST_MISCEXP",
        [&](long id) {
            return "insert into MAST_MISCEXP(EXP_NM,Exp_ID) values(" + q(name) + "," + std::to_string(id) +
                   ")";
        },
        name);
}

long find_or_add_company(Database& db, std::string_view name) {
    const std::string upper = to_upper_ascii(name);
    return find_or_add(
        db, "SELECT * FROM MAST_COMPANY WHERE UCASE(COMP_NM)=" + q(upper), "comp_id",
        "select max(comp_id) as cntr from mast_company", "mast_company",
        [&](long id) {
            return "insert into mast_company(comp_nm,comp_id) values(" + q(name) + "," + std::to_string(id) +
                   ")";
        },
        name);
}

std::optional<long> find_company(Database& db, std::string_view name) {
    const auto found = db.query("SELECT * FROM MAST_COMPANY WHERE UCASE(COMP_NM)=" + q(to_upper_ascii(name)));
    if (found.empty()) return std::nullopt;
    return static_cast<long>(found.first("comp_id").as_int());
}

std::vector<std::string> schedule_groups(Database& db, std::string_view suffix, std::string_view code) {
    const std::string s = table("SCHED_", suffix);
    std::vector<std::string> out;
    for (const auto& r : db.query("select MAST_GUNDER.GUNDER," + s + ".* from " + s + ",MAST_GUNDER where " +
                                  "MAST_GUNDER.GID=" + s + ".GID AND " + s + ".code_no=" + q(code)))
        out.push_back(to_upper_ascii(r["GUNDER"].as_text()));
    return out;
}

void ensure_schedule_groups(Database& db, std::string_view suffix, std::string_view code, int status) {
    const std::string s = table("SCHED_", suffix);
    if (db.query("select count(*) as n from " + s + " where code_no=" + q(code)).first("n").as_int() > 0)
        return;
    const bool company = status == 3 || status == 4;
    Transaction tx(db);
    for (int gid : {1, 2, 3, 4, 5, 6, 8, 9, 11, 14}) {
        if (!company && (gid == 2 || gid == 14)) continue;
        db.execute("insert into " + s + " (code_no, GID) values (" + q(code) + "," + std::to_string(gid) +
                   ")");
    }
    tx.commit();
    db.flush_tables();
}

std::optional<int> client_year_count(Database& db, std::string_view code, int first, int second) {
    const auto rs = db.query("select * from master where code_no= " + q(code) + " and f_yr='0104" +
                             std::to_string(first) + "' and s_yr='3103" + std::to_string(second) + "'");
    if (rs.empty()) return std::nullopt;
    return static_cast<int>(rs.first("Count").as_int());
}

std::vector<TrialBalanceRow> trial_balance_group(Database& db, std::string_view suffix, std::string_view code,
                                                 int gid) {
    const std::string t = table("TAB_", suffix);
    std::vector<TrialBalanceRow> out;
    for (const auto& r :
         db.query("Select * from " + t + ",mast_allgrp where " + t + ".allid=mast_allgrp.allid and " + t +
                  ".code_no=" + q(code) + " and mast_allgrp.gid=" + std::to_string(gid) +
                  " and mast_allgrp.allid<>5 order by " + t + ".srno"))
        out.push_back({r["srno"].as_int(), static_cast<long>(r["allid"].as_int()),
                       static_cast<long>(r["PartId"].as_int()), static_cast<int>(r["nid"].as_int()),
                       r["Amt"].as_double()});
    return out;
}

}  // namespace brenlow::store
