#include "store/capital_store.h"

#include <algorithm>

#include "controls/number_format.h"
#include "store/register_store.h"
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
std::string id_list(const std::vector<long>& ids) {
    std::string out;
    for (const long id : ids) out += (out.empty() ? "" : ",") + num(id);
    return out;
}

struct LedgerTable {
    const char* table;
    const char* id;
    const char* name;
    std::vector<const char*> stems;  // per-year tables that refer to it
    const char* use_column;          // their column holding the id
};

const LedgerTable& ledger_table(Ledger ledger) {
    static const LedgerTable capital{"Mast_Capital", "Particular_Id", "Part", {"CAPITAL_"}, "Particular_Id"};
    static const LedgerTable trial{
        "Mast_Part", "PartId", "particular", {"TAB_", "JRNL_", "TRADE_"}, "PartId"};
    return ledger == Ledger::capital ? capital : trial;
}

std::string joined_name(const Row& r) {
    std::string name;
    for (const char* part : {"f_nm", "m_nm", "l_nm"}) {
        const std::string p = r[part].as_text();
        if (p.empty()) continue;
        name += (name.empty() ? "" : " ") + p;
    }
    return name;
}

// "0104" + year and "3103" + year as "2024-25".
std::string fy_of(const std::string& f_yr, const std::string& s_yr) {
    if (f_yr.size() < 8 || s_yr.size() < 8) return f_yr + "-" + s_yr;
    return f_yr.substr(4) + "-" + s_yr.substr(6);
}

}  // namespace

// ---- Partners and ratios ---------------------------------------------------------

std::vector<ListedPartner> listed_partners(Database& db, std::string_view client) {
    std::vector<ListedPartner> out;
    for (const Row r : db.query("Select * From owner1 where code_no=" + quoted(client) + " order by code"))
        out.push_back({static_cast<long>(r["code"].as_int()), joined_name(r)});
    return out;
}

long add_listed_partner(Database& db, std::string_view client, std::string_view f_nm, std::string_view m_nm,
                        std::string_view l_nm) {
    for (const auto& [field, value] : {std::pair{"f_nm", f_nm}, {"m_nm", m_nm}, {"l_nm", l_nm}})
        check_text("owner1 new row", field, value, kNameChars);
    TableLock lock(db, "owner1");
    const long code =
        static_cast<long>(db.query("select max(code) as cntr from owner1 where code_no=" + quoted(client))
                              .first("cntr")
                              .as_int()) +
        1;
    db.execute("insert into owner1 (code_no, code, f_nm, m_nm, l_nm) values (" + quoted(client) + "," +
               num(code) + "," + quoted(f_nm) + "," + quoted(m_nm) + "," + quoted(l_nm) + ")");
    db.flush_tables();
    lock.release();
    return code;
}

std::vector<RatioRow> ratio_rows(Database& db, std::string_view client, int rcount) {
    std::vector<RatioRow> out;
    const auto listed = listed_partners(db, client);
    const std::string where = " where code_no=" + quoted(client) + " and rcount=" + std::to_string(rcount);
    for (const Row r : db.query("Select * from prfa" + where + " order by code")) {
        RatioRow row;
        row.code = static_cast<long>(r["code"].as_int());
        row.rat = r["rat"].as_double();
        for (const auto& p : listed)
            if (p.code == row.code) row.name = p.name;
        out.push_back(row);
    }
    for (const Row r : db.query("Select * from PRFA_Oth" + where + " order by SrNo")) {
        RatioRow row;
        row.other = true;
        row.name = r["nme"].as_text();
        row.rat = r["rat"].as_double();
        out.push_back(row);
    }
    return out;
}

void rewrite_ratios(Database& db, std::string_view client, int rcount, const std::vector<RatioRow>& rows) {
    int sr = 0;
    for (const auto& r : rows)
        if (r.other) check_text("PRFA_Oth row " + std::to_string(++sr), "nme", r.name, kNameChars);
    const std::string c = quoted(client), y = std::to_string(rcount);
    Transaction tx(db);
    db.execute("Delete from prfa where code_no=" + c + " and rcount=" + y);
    db.execute("Delete from prfa_oth where code_no=" + c + " and rcount=" + y);
    sr = 0;
    for (const auto& r : rows) {
        if (r.other)
            db.execute("insert into prfa_oth values(" + c + "," + y + "," + std::to_string(++sr) + "," +
                       quoted(r.name) + "," + num(r.rat) + ")");
        else
            db.execute("insert into prfa values(" + c + "," + num(r.code) + "," + y + "," + num(r.rat) + ")");
    }
    db.flush_tables();
    tx.commit();
}

// ---- Capital lines ---------------------------------------------------------------

std::vector<CapitalLine> capital_lines(Database& db, std::string_view suffix, std::string_view client) {
    std::vector<CapitalLine> out;
    if (suffix.empty()) return out;
    const std::string sql = "Select * From CAPITAL_" + std::string(suffix) +
                            " Where code_no=" + quoted(client) + " order by srno";
    for (const Row r : db.query(sql))
        out.push_back({r["code"].as_text(), static_cast<int>(r["srno"].as_int()),
                       static_cast<long>(r["PARTICULAR_ID"].as_int()), r["AMT"].as_double(),
                       static_cast<int>(r["nid"].as_int()), static_cast<int>(r["actyp"].as_int())});
    return out;
}

void rewrite_capital_lines(Database& db, std::string_view suffix, std::string_view client,
                           const std::vector<CapitalLine>& lines) {
    const std::string t = "CAPITAL_" + std::string(suffix);
    for (const auto& l : lines) check_text(t + " row " + std::to_string(l.srno), "code", l.code, kNameChars);
    Transaction tx(db);
    db.execute("Delete From " + t + " Where Code_No=" + quoted(client));
    db.flush_tables();
    for (const auto& l : lines)
        db.execute("Insert Into " + t + "(code_no,code,srno,actyp,nid,PARTICULAR_ID,AMT) values(" +
                   quoted(client) + "," + quoted(l.code) + "," + std::to_string(l.srno) + "," +
                   std::to_string(l.actyp) + "," + std::to_string(l.nid) + "," + num(l.particular_id) + "," +
                   num(l.amt) + ")");
    db.flush_tables();
    tx.commit();
}

void delete_capital_lines(Database& db, std::string_view suffix, std::string_view client) {
    db.execute("Delete From CAPITAL_" + std::string(suffix) + " Where code_no=" + quoted(client));
    db.flush_tables();
}

void delete_partner_lines(Database& db, std::string_view suffix, std::string_view client,
                          const std::vector<std::string>& codes) {
    if (codes.empty()) return;
    std::string list;
    for (const auto& c : codes) list += (list.empty() ? "" : ",") + quoted(c);
    db.execute("Delete From CAPITAL_" + std::string(suffix) + " Where code_no=" + quoted(client) +
               " and code In (" + list + ")");
    db.flush_tables();
}

// ---- The year's result -----------------------------------------------------------

std::vector<YearResultRow> year_result(Database& db, std::string_view suffix, std::string_view client) {
    std::vector<YearResultRow> out;
    const std::string s(suffix), c = quoted(client);
    if (!db.table_exists("tp_NCPLoss_" + s) || !db.table_exists("tp_Tax_" + s)) return out;
    const std::string sql = "Select ItemId as Id,Amount as Amt,0 as PTYpe from tp_NCPLoss_" + s +
                            " where Code_No=" + c + " union " +
                            "Select 0 as Id,sum(Amount) as Amt,1 as PTYpe from tp_Tax_" + s +
                            " where Code_No=" + c + " and RType=0" + " order by PType,Id ";
    for (const Row r : db.query(sql)) {
        // With no tax row the sum is NULL: nothing to take off.
        if (r["Amt"].is_null()) continue;
        out.push_back({static_cast<long>(r["Id"].as_int()), r["Amt"].as_double(),
                       static_cast<int>(r["PTYpe"].as_int())});
    }
    return out;
}

void write_year_result(Database& db, std::string_view suffix, std::string_view client,
                       const std::vector<std::pair<long, double>>& items, double tax) {
    const std::string s(suffix), c = quoted(client);
    Transaction tx(db);
    db.execute("Delete From tp_NCPLoss_" + s + " Where Code_No=" + c);
    db.execute("Delete From tp_Tax_" + s + " Where Code_No=" + c + " and RType=0");
    for (const auto& [id, amount] : items)
        db.execute("Insert Into tp_NCPLoss_" + s + " (Code_No,ItemId,Amount) values(" + c + "," + num(id) +
                   "," + num(amount) + ")");
    db.execute("Insert Into tp_Tax_" + s + " (Code_No,RType,Amount) values(" + c + ",0," + num(tax) + ")");
    db.flush_tables();
    tx.commit();
}

void write_year_tax(Database& db, std::string_view suffix, std::string_view client, double tax) {
    const std::string s(suffix), c = quoted(client);
    Transaction tx(db);
    db.execute("Delete From tp_Tax_" + s + " Where Code_No=" + c + " and RType=0");
    db.execute("Insert Into tp_Tax_" + s + " (Code_No,RType,Amount) values(" + c + ",0," + num(tax) + ")");
    db.flush_tables();
    tx.commit();
}

bool year_result_tables(Database& db, std::string_view suffix) {
    const std::string s(suffix);
    return !s.empty() && db.table_exists("tp_NCPLoss_" + s) && db.table_exists("tp_Tax_" + s);
}

// ---- The deed's terms for each partner -------------------------------------------

std::vector<PartnerTermsRow> partner_terms(Database& db, std::string_view client, int rcount) {
    std::vector<PartnerTermsRow> out;
    if (!db.table_exists("PRTN_TERMS")) return out;
    for (const Row r : db.query("Select * From PRTN_TERMS Where code_no=" + quoted(client) +
                                " and rcount=" + std::to_string(rcount) + " order by code"))
        out.push_back({r["code"].as_text(), r["working"].as_int() != 0, r["int_rate"].as_double(),
                       r["remun"].as_double()});
    return out;
}

std::vector<PartnerMoveRow> partner_moves(Database& db, std::string_view client, int rcount) {
    std::vector<PartnerMoveRow> out;
    if (!db.table_exists("PRTN_MOVES")) return out;
    for (const Row r : db.query("Select * From PRTN_MOVES Where code_no=" + quoted(client) +
                                " and rcount=" + std::to_string(rcount) + " order by code, srno"))
        out.push_back({r["code"].as_text(), r["dt"].as_text(), r["amt"].as_double()});
    return out;
}

void make_partner_terms_tables(Database& db) {
    const std::string client_type = client_code_type(db);
    db.execute("Create Table If Not Exists PRTN_TERMS (code_no " + client_type +
               ", rcount Int(11), code VarChar(255), working Int(11), int_rate Double, remun Double)");
    db.execute("Create Table If Not Exists PRTN_MOVES (code_no " + client_type +
               ", rcount Int(11), code VarChar(255), srno Int(11), dt Char(10), amt Double)");
}

void write_partner_terms(Database& db, std::string_view client, int rcount,
                         const std::vector<PartnerTermsRow>& terms,
                         const std::vector<PartnerMoveRow>& moves) {
    int n = 0;
    for (const auto& t : terms)
        check_text("PRTN_TERMS row " + std::to_string(++n), "code", t.code, kNameChars);
    n = 0;
    for (const auto& m : moves)
        check_text("PRTN_MOVES row " + std::to_string(++n), "code", m.code, kNameChars);
    const std::string c = quoted(client), y = std::to_string(rcount);
    Transaction tx(db);
    db.execute("Delete From PRTN_TERMS Where code_no=" + c + " and rcount=" + y);
    db.execute("Delete From PRTN_MOVES Where code_no=" + c + " and rcount=" + y);
    for (const auto& t : terms)
        db.execute("Insert Into PRTN_TERMS (code_no,rcount,code,working,int_rate,remun) values(" + c + "," +
                   y + "," + quoted(t.code) + "," + (t.working ? "1" : "0") + "," + num(t.int_rate) + "," +
                   num(t.remun) + ")");
    n = 0;
    for (const auto& m : moves)
        db.execute("Insert Into PRTN_MOVES (code_no,rcount,code,srno,dt,amt) values(" + c + "," + y + "," +
                   quoted(m.code) + "," + std::to_string(++n) + "," + quoted(m.dt) + "," + num(m.amt) + ")");
    db.flush_tables();
    tx.commit();
}

void rewrite_partner_terms(Database& db, std::string_view client, int rcount,
                           const std::vector<PartnerTermsRow>& terms,
                           const std::vector<PartnerMoveRow>& moves) {
    // Made before the group: a table made inside one would end it on MariaDB.
    make_partner_terms_tables(db);
    write_partner_terms(db, client, rcount, terms, moves);
}

// ---- Opening balances from the trial balance --------------------------------------

std::vector<CapitalBalance> trial_balance_capital(Database& db, std::string_view suffix,
                                                  std::string_view client) {
    std::vector<CapitalBalance> out;
    std::vector<std::pair<long, std::string>> groups;
    for (const Row r : db.query("Select * From Mast_AllGrp Where GID=1 Order by AllId"))
        groups.emplace_back(static_cast<long>(r["AllId"].as_int()), r["allgrp"].as_text());
    if (groups.empty() || suffix.empty()) return out;
    std::vector<long> ids;
    for (const auto& g : groups) ids.push_back(g.first);
    const std::string sql = "Select * from TAB_" + std::string(suffix) + " where code_no=" + quoted(client) +
                            " and allid in (" + id_list(ids) + ") order by srno";
    for (const Row r : db.query(sql)) {
        CapitalBalance b;
        const long allid = static_cast<long>(r["allid"].as_int());
        for (const auto& g : groups)
            if (g.first == allid) b.group = g.second;
        b.particular = ledger_name(db, Ledger::trial_balance, static_cast<long>(r["PartId"].as_int()));
        b.nid = static_cast<int>(r["nid"].as_int());
        b.amt = r["Amt"].as_double();
        out.push_back(b);
    }
    return out;
}

// ---- Ledger masters --------------------------------------------------------------

std::vector<LedgerParticular> ledger_particulars(Database& db, Ledger ledger) {
    const auto& m = ledger_table(ledger);
    std::vector<LedgerParticular> out;
    for (const Row r :
         db.query(std::string("Select * From ") + m.table + " Order By " + m.name + ", " + m.id))
        out.push_back({static_cast<long>(r[m.id].as_int()), r[m.name].as_text()});
    return out;
}

std::optional<long> ledger_find(Database& db, Ledger ledger, std::string_view name,
                                std::optional<long> except) {
    const auto& m = ledger_table(ledger);
    std::string sql = std::string("Select * From ") + m.table + " Where " + m.name + "=" + quoted(name);
    if (except) sql += std::string(" and ") + m.id + " <>" + num(*except);
    const auto rs = db.query(sql);
    if (rs.empty()) return std::nullopt;
    return static_cast<long>(rs.first(m.id).as_int());
}

std::string ledger_name(Database& db, Ledger ledger, long id) {
    const auto& m = ledger_table(ledger);
    return db
        .query(std::string("Select ") + m.name + " as nm From " + m.table + " Where " + m.id + "=" + num(id))
        .first("nm")
        .as_text();
}

LedgerAdded ledger_add(Database& db, Ledger ledger, std::string_view name) {
    const auto& m = ledger_table(ledger);
    check_text(std::string(m.table) + " new row", m.name, name, kNameChars);
    TableLock lock(db, m.table);
    if (const auto found = ledger_find(db, ledger, name)) return {*found, false};
    const long id =
        static_cast<long>(db.query(std::string("select max(") + m.id + ") as cntr from " + m.table)
                              .first("cntr")
                              .as_int()) +
        1;
    db.execute(std::string("Insert Into ") + m.table + " (" + m.id + "," + m.name + ") values (" + num(id) +
               "," + quoted(name) + ")");
    db.flush_tables();
    lock.release();
    return {id, true};
}

long ledger_insert(Database& db, Ledger ledger, std::string_view name) {
    return ledger_add(db, ledger, name).id;
}

void ledger_rename(Database& db, Ledger ledger, long id, std::string_view name) {
    const auto& m = ledger_table(ledger);
    check_text(std::string(m.table) + " row " + num(id), m.name, name, kNameChars);
    db.execute(std::string("Update ") + m.table + " Set " + m.name + "=" + quoted(name) + " Where " + m.id +
               "=" + num(id));
    db.flush_tables();
}

void ledger_delete(Database& db, Ledger ledger, const std::vector<long>& ids) {
    if (ids.empty()) return;
    const auto& m = ledger_table(ledger);
    db.execute(std::string("Delete From ") + m.table + " Where " + m.id + " In (" + id_list(ids) + ")");
    db.flush_tables();
}

std::vector<std::string> year_suffixes(Database& db) {
    std::vector<std::string> out;
    for (const Row r : db.query("Select distinct tbl_nm from master order by tbl_nm"))
        out.push_back(r["tbl_nm"].as_text());
    return out;
}

std::vector<std::string> ledger_use_tables(Database& db, Ledger ledger) {
    std::vector<std::string> out;
    for (const auto& suffix : year_suffixes(db))
        for (const char* stem : ledger_table(ledger).stems) {
            const std::string t = stem + suffix;
            if (db.table_exists(t)) out.push_back(t);
        }
    return out;
}

std::set<long> ledger_ids_in_use(Database& db, Ledger ledger) {
    const auto& m = ledger_table(ledger);
    std::set<long> out;
    for (const auto& t : ledger_use_tables(db, ledger))
        for (const Row r : db.query(std::string("Select distinct ") + m.use_column + " as id from " + t))
            out.insert(static_cast<long>(r["id"].as_int()));
    return out;
}

std::vector<LedgerUser> ledger_users(Database& db, Ledger ledger, long id) {
    const auto& m = ledger_table(ledger);
    std::vector<LedgerUser> out;
    for (const auto& suffix : year_suffixes(db))
        for (const char* stem : m.stems) {
            const std::string t = stem + suffix;
            if (!db.table_exists(t)) continue;
            for (const Row r : db.query("Select distinct Code_No from " + t + " Where " + m.use_column + "=" +
                                        num(id) + " order by Code_No")) {
                const std::string code = r["Code_No"].as_text();
                const auto yr = db.query("Select * From Master Where Code_No=" + quoted(code) +
                                         " and Tbl_Nm=" + quoted(suffix));
                LedgerUser u{code, yr.first("client_name").as_text(),
                             fy_of(yr.first("F_YR").as_text(), yr.first("S_YR").as_text())};
                const bool seen = std::any_of(out.begin(), out.end(), [&](const LedgerUser& o) {
                    return o.code == u.code && o.fy == u.fy;
                });
                if (!seen) out.push_back(u);
            }
        }
    return out;
}

void ledger_replace(Database& db, Ledger ledger, long to, const std::vector<long>& from) {
    std::vector<long> old;
    for (const long id : from)
        if (id != to) old.push_back(id);
    // Replacing a particular by itself changes nothing.
    if (old.empty()) return;
    const auto& m = ledger_table(ledger);
    const auto tables = ledger_use_tables(db, ledger);
    Transaction tx(db);
    for (const auto& t : tables)
        db.execute("Update " + t + " Set " + m.use_column + "=" + num(to) + " Where " + m.use_column +
                   " In (" + id_list(old) + ")");
    db.execute(std::string("Delete From ") + m.table + " Where " + m.id + " In (" + id_list(old) + ")");
    db.flush_tables();
    tx.commit();
}

}  // namespace brenlow::store
