#include "store/client_store.h"

#include <algorithm>
#include <cctype>

#include "store/client_code.h"
#include "store/schedule_store.h"
#include "store/schema.h"
#include "store/seed.h"
#include "store/table_lock.h"
#include "store/tax_rate_store.h"
#include "store/text_limits.h"

namespace brenlow::store {
namespace {

std::string q(std::string_view text) {
    return "'" + sql_text(text) + "'";
}

ClientYear read_client_year(const Row& r) {
    ClientYear cy;
    cy.code_no = r["code_no"].as_text();
    cy.f_yr = r["f_yr"].as_text();
    cy.s_yr = r["s_yr"].as_text();
    cy.count = static_cast<int>(r["Count"].as_int());
    cy.tbl_nm = r["tbl_nm"].as_text();
    cy.client_name = r["client_name"].as_text();
    cy.status = static_cast<int>(r["status"].as_int());
    cy.others = r["others"].as_text();
    cy.year = cy.s_yr.size() == 8 ? std::stoi(cy.s_yr.substr(4)) : 0;
    return cy;
}

}  // namespace

std::string sql_text(std::string_view text) {
    std::string out;
    out.reserve(text.size() + 2);
    for (char c : text) {
        out += c;
        if (c == '\'') out += '\'';
    }
    return out;
}

void prepare_schema(Database& db, const std::string& data_dir) {
    create_shared_tables(db);
    seed_masters(db, data_dir);
    prepare_tax_rate_table(db);
}

void ensure_schema(Database& db, const std::string& data_dir) {
    if (shared_tables_exist(db) && masters_seeded(db)) return;
    prepare_schema(db, data_dir);
}

YearMasterCounts year_master_counts(Database& db, int year) {
    const std::string y = std::to_string(year);
    return {db.query("select count(*) as n from NewITBM where YR=" + y).first("n").as_int(),
            db.query("select count(*) as n from NewCLBM where YR=" + y).first("n").as_int()};
}

std::optional<ClientYear> find_client_year(Database& db, std::string_view typed_code, int year) {
    // A code no client can have finds nothing.
    if (client_code_fault(typed_code)) return std::nullopt;
    const std::string code = client_code(typed_code);
    const auto rs = db.query("select * from master where code_no=" + q(code) + " and s_yr='3103" +
                             std::to_string(year) + "'");
    if (rs.empty()) return std::nullopt;
    return read_client_year(rs.row(0));
}

std::vector<ClientYear> list_client_years(Database& db) {
    std::vector<ClientYear> out;
    for (const Row r : db.query("select * from master order by code_no, s_yr"))
        out.push_back(read_client_year(r));
    return out;
}

CreatedYear create_client_year(Database& db, std::string_view typed_code, int year, std::string_view name,
                               std::optional<int> status) {
    const std::string code = client_code(typed_code);
    check_text("master row of client " + code, "client_name", name, kNameChars);
    CreatedYear result;
    const auto before = db.table_names();
    auto existed = [&](const std::string& t) {
        for (const auto& b : before)
            if (std::equal(b.begin(), b.end(), t.begin(), t.end(),
                           [](char x, char y) { return std::tolower(x) == std::tolower(y); }))
                return true;
        return false;
    };

    auto current = find_client_year(db, code, year);
    if (!current) {
        // The year's number and suffix are shared by every client of that year; a new
        // year takes the largest number plus one. Read and written under the lock, so
        // two users opening clients in a new year at once give it one number.
        const std::string s_yr = "3103" + std::to_string(year);
        TableLock lock(db, "master");
        const auto same_year = db.query("select Count, tbl_nm from master where s_yr='" + s_yr + "'");
        int count = 0;
        std::string suffix;
        if (!same_year.empty()) {
            count = static_cast<int>(same_year.first("Count").as_int());
            suffix = same_year.first("tbl_nm").as_text();
        } else {
            count = static_cast<int>(db.query("select max(Count) as c from master").first("c").as_int()) + 1;
            suffix = std::to_string(year);
        }
        // A client's existing name and status carry over to its new year.
        std::string client_name(name);
        int st = status.value_or(0);
        const auto other = db.query("select client_name, status from master where code_no=" + q(code) +
                                    " order by s_yr desc");
        if (!other.empty()) {
            if (client_name.empty()) client_name = other.first("client_name").as_text();
            if (!status) st = static_cast<int>(other.first("status").as_int());
        }
        if (st < 1 || st > 4) st = 1;
        // The same client's year made meanwhile by another user: nothing to add.
        if (db.query("select Count from master where code_no=" + q(code) + " and s_yr='" + s_yr + "'")
                .empty()) {
            db.execute(
                "insert into master (code_no, f_yr, s_yr, Count, tbl_nm, others, client_name, status) values "
                "(" +
                q(code) + ",'0104" + std::to_string(year - 1) + "','" + s_yr + "'," + std::to_string(count) +
                "," + q(suffix) + ",''," + q(client_name) + "," + std::to_string(st) + ")");
            db.flush_tables();
            result.master_row_created = true;
        }
        lock.release();
    } else if (!name.empty() || status) {
        std::string sets;
        if (!name.empty()) sets += "client_name=" + q(name);
        if (status) sets += std::string(sets.empty() ? "" : ", ") + "status=" + std::to_string(*status);
        db.execute("update master set " + sets + " where code_no=" + q(code));
        db.flush_tables();
    }
    result.client_year = *find_client_year(db, code, year);

    create_year_tables(db, result.client_year.tbl_nm);
    ensure_schedule_groups(db, result.client_year.tbl_nm, code, result.client_year.status);
    create_register_tables(db, year);
    ensure_year_masters(db, year);

    std::vector<std::string> wanted = {register_opening_table(year), register_addition_table(year)};
    for (const auto& stem : year_table_stems()) wanted.push_back(stem + result.client_year.tbl_nm);
    for (const auto& t : wanted)
        if (!existed(t)) result.tables_created.push_back(t);
    return result;
}

std::string table_suffix(Database& db, int count) {
    return db.query("select tbl_nm from master where Count=" + std::to_string(count))
        .first("tbl_nm")
        .as_text();
}

int table_count(Database& db) {
    return static_cast<int>(db.query("select max(Count) as c from master").first("c").as_int());
}

std::string get_misc_info(Database& db, std::string_view code, std::string_view second_date,
                          std::string_view key) {
    return db
        .query("select InfVal from Mast_MiscOthInf where code_no=" + q(code) + " and s_yr=" + q(second_date) +
               " and InfKey=" + q(key))
        .first("InfVal")
        .as_text();
}

void set_misc_info(Database& db, std::string_view code, std::string_view second_date, std::string_view key,
                   std::string_view value, std::string_view description) {
    const std::string row = "Mast_MiscOthInf row " + std::string(key);
    check_text(row, "InfKey", key, kNameChars);
    check_text(row, "InfVal", value, kLongTextChars);
    check_text(row, "InfDesc", description, kNameChars);
    Transaction tx(db);
    const std::string where =
        " where code_no=" + q(code) + " and s_yr=" + q(second_date) + " and InfKey=" + q(key);
    db.execute("delete from Mast_MiscOthInf" + where);
    db.execute("insert into Mast_MiscOthInf (code_no, s_yr, InfKey, InfVal, InfDesc) values (" + q(code) +
               "," + q(second_date) + "," + q(key) + "," + q(value) + "," + q(description) + ")");
    db.flush_tables();
    tx.commit();
}

std::string get_setting(Database& db, std::string_view section, std::string_view key,
                        std::string_view default_value) {
    const auto rs =
        db.query("select SetVal from Mast_Setting where Section=" + q(section) + " and SetKey=" + q(key));
    return rs.empty() ? std::string(default_value) : rs.first("SetVal").as_text();
}

void set_setting(Database& db, std::string_view section, std::string_view key, std::string_view value) {
    const std::string row = "Mast_Setting row " + std::string(key);
    check_text(row, "Section", section, kNameChars);
    check_text(row, "SetKey", key, kNameChars);
    check_text(row, "SetVal", value, kLongTextChars);
    Transaction tx(db);
    db.execute("delete from Mast_Setting where Section=" + q(section) + " and SetKey=" + q(key));
    db.execute("insert into Mast_Setting (Section, SetKey, SetVal) values (" + q(section) + "," + q(key) +
               "," + q(value) + ")");
    db.flush_tables();
    tx.commit();
}

long mast_part_id(Database& db, std::string_view name) {
    const std::string find = "select PartId from Mast_Part where UCASE(particular)=UCASE(" + q(name) + ")";
    if (const auto rs = db.query(find); !rs.empty()) return static_cast<long>(rs.first("PartId").as_int());
    check_text("Mast_Part new row", "particular", name, kNameChars);
    TableLock lock(db, "Mast_Part");
    // Another user may have made it since the look above.
    if (const auto rs = db.query(find); !rs.empty()) return static_cast<long>(rs.first("PartId").as_int());
    const long id =
        static_cast<long>(db.query("select max(PartId) as cntr from Mast_Part").first("cntr").as_int()) + 1;
    db.execute("insert into Mast_Part (PartId, particular) values (" + std::to_string(id) + "," + q(name) +
               ")");
    db.flush_tables();
    lock.release();
    return id;
}

std::string mast_part_name(Database& db, long id) {
    return db.query("select particular from Mast_Part where PartId=" + std::to_string(id))
        .first("particular")
        .as_text();
}

namespace {
constexpr std::string_view kKindKey = "ASSESSEEKIND";
}  // namespace

std::optional<AssesseeKind> recorded_assessee_kind(Database& db, std::string_view code) {
    return assessee_kind_of_key(get_misc_info(db, code, "", kKindKey));
}

void record_assessee_kind(Database& db, std::string_view code, AssesseeKind kind) {
    set_misc_info(db, code, "", kKindKey, assessee_kind_key(kind), "kind of assessee");
}

AssesseeKind assessee_kind_of_client(Database& db, std::string_view code, int status) {
    return recorded_assessee_kind(db, code).value_or(assessee_kind_of_status(status));
}

}  // namespace brenlow::store
