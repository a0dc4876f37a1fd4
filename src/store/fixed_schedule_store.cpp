#include "store/fixed_schedule_store.h"

#include <algorithm>
#include <map>
#include <set>

#include "controls/number_format.h"
#include "store/masters_store.h"
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
long as_long(const Value& v) {
    return static_cast<long>(v.as_int());
}

FixedRow fixed_of(const Row& r) {
    FixedRow f;
    f.compit_id = as_long(r["compit_id"]);
    f.srno = as_long(r["srno"]);
    f.ref_id = as_long(r["ref_id"]);
    f.OP_BAL = r["OP_BAL"].as_double();
    f.op_bal_dep = r["op_bal_dep"].as_double();
    f.RATE_DEP = r["RATE_DEP"].as_double();
    f.method_id = as_long(r["method_id"]);
    f.OTH_DEP = r["OTH_DEP"].as_double();
    f.deptick = as_long(r["deptick"]);
    f.depamt = r["depamt"].as_double();
    f.CGrpId = as_long(r["CGrpId"]);
    f.wdv = r["wdv"].as_double();
    f.compit_rate = r["compit_rate"].as_double();
    f.IGrpId = as_long(r["IGrpId"]);
    f.trblock = as_long(r["trblock"]);
    f.AddDepRt = r["AddDepRt"].as_double();
    return f;
}

FdaRow fda_of(const Row& r) {
    FdaRow a;
    a.srno = as_long(r["srno"]);
    a.ad_ded_id = static_cast<int>(r["ad_ded_id"].as_int());
    a.ref_id = as_long(r["ref_id"]);
    a.particular = r["particular"].as_text();
    a.cost = r["cost"].as_double();
    a.excr = r["excr"].as_double();
    a.curdiff = r["curdiff"].as_double();
    a.grsub = r["grsub"].as_double();
    a.AMT = r["AMT"].as_double();
    a.ad_date = r["ad_date"].as_text();
    a.dtpur = r["dtpur"].as_text();
    a.dep = r["dep"].as_double();
    a.fulldep = as_long(r["fulldep"]);
    a.src = as_long(r["src"]);
    a.adddepapp = r["adddepapp"].as_text();
    return a;
}

std::string fixed_values(const FixedRow& f, std::string_view code) {
    return num(f.compit_id) + "," + num(f.srno) + "," + quoted(code) + "," + num(f.ref_id) + "," +
           num(f.OP_BAL) + "," + num(f.op_bal_dep) + "," + num(f.RATE_DEP) + "," + num(f.method_id) + "," +
           num(f.OTH_DEP) + "," + num(f.deptick) + "," + num(f.depamt) + "," + num(f.CGrpId) + "," +
           num(f.wdv) + "," + num(f.compit_rate) + "," + num(f.IGrpId) + "," + num(f.trblock) + "," +
           num(f.AddDepRt);
}

void insert_fixed(Database& db, const std::string& table, std::string_view code, const FixedRow& f) {
    db.execute("INSERT INTO " + table + " VALUES (" + fixed_values(f, code) + ")");
}

void insert_fda(Database& db, const std::string& table, std::string_view code, const FdaRow& a) {
    check_text(table, "particular", a.particular, kNameChars);
    db.execute("INSERT INTO " + table +
               " (srno,code_no,ad_ded_id,ref_id,particular,cost,excr,curdiff,grsub,AMT,ad_date,dtpur,dep,"
               "fulldep,src,adddepapp) VALUES (" +
               num(a.srno) + "," + quoted(code) + "," + num(static_cast<long>(a.ad_ded_id)) + "," +
               num(a.ref_id) + "," + quoted(a.particular) + "," + num(a.cost) + "," + num(a.excr) + "," +
               num(a.curdiff) + "," + num(a.grsub) + "," + num(a.AMT) + "," + quoted(a.ad_date) + "," +
               quoted(a.dtpur) + "," + num(a.dep) + "," + num(a.fulldep) + "," + num(a.src) + "," +
               quoted(a.adddepapp) + ")");
}

}  // namespace

FixedScheduleStore::FixedScheduleStore(Database& db, std::string suffix, std::string code)
    : db_(db), suffix_(std::move(suffix)), code_(std::move(code)) {}

bool FixedScheduleStore::tables_exist() {
    return db_.table_exists(fixed_table()) && db_.table_exists(fda_table());
}

std::vector<FixedRow> FixedScheduleStore::particulars() {
    std::vector<FixedRow> out;
    for (const auto r :
         db_.query("SELECT * from " + fixed_table() + " where code_no=" + quoted(code_) + " order by srno"))
        out.push_back(fixed_of(r));
    for (auto& f : out) f.PART_NM = fix_part_name(db_, f.ref_id);
    return out;
}

std::vector<FdaRow> FixedScheduleStore::lines(std::optional<long> ref_id, int ad_ded_id) {
    std::string sql = "SELECT * FROM " + fda_table() + " WHERE code_no=" + quoted(code_);
    if (ref_id) sql += " AND ref_id=" + num(*ref_id);
    if (ad_ded_id != 0) sql += " AND ad_ded_id=" + num(static_cast<long>(ad_ded_id));
    std::vector<FdaRow> out;
    for (const auto r : db_.query(sql + " order by ref_id, srno")) out.push_back(fda_of(r));
    return out;
}

FixedScheduleRows FixedScheduleStore::all_rows() {
    FixedScheduleRows rows;
    rows.fixed = particulars();
    rows.fda = lines(std::nullopt, 0);
    return rows;
}

void FixedScheduleStore::replace_all_rows(const FixedScheduleRows& rows) {
    for (const auto& a : rows.fda) check_text(fda_table(), "particular", a.particular, kNameChars);
    Transaction tx(db_);
    db_.execute("Delete from " + fixed_table() + " where code_no=" + quoted(code_));
    db_.execute("Delete from " + fda_table() + " where code_no=" + quoted(code_));
    db_.flush_tables();
    for (const auto& f : rows.fixed) insert_fixed(db_, fixed_table(), code_, f);
    for (const auto& a : rows.fda) insert_fda(db_, fda_table(), code_, a);
    db_.flush_tables();
    tx.commit();
}

std::vector<long> FixedScheduleStore::save_particulars(const std::vector<SavedParticular>& rows) {
    for (const auto& p : rows) check_text("mast_fix_part", "PART_NM", p.name, kNameChars);
    std::vector<long> ids;
    Transaction tx(db_);
    db_.execute("Delete from " + fixed_table() + " where code_no=" + quoted(code_));
    db_.execute("Delete from " + fda_table() + " where code_no=" + quoted(code_) +
                " and ad_ded_id=" + num(static_cast<long>(kFdaMarker)));
    db_.flush_tables();
    for (const auto& p : rows) {
        FixedRow f = p.row;
        const std::string known = f.ref_id != 0 ? fix_part_name(db_, f.ref_id) : std::string();
        if (f.ref_id == 0 || known != p.name) {
            // A particular's name is never edited in place: another name is another
            // particular, and this row's lines go with it.
            long id = 0;
            if (const auto existing = fix_part_id(db_, p.name)) {
                id = *existing;
            } else {
                id = as_long(db_.query("select max(ref_id) as cntr from mast_fix_part").first("cntr")) + 1;
                db_.execute("insert into mast_fix_part(PART_NM,ref_id) values(" + quoted(p.name) + "," +
                            num(id) + ")");
            }
            if (f.ref_id != 0)
                db_.execute("Update " + fda_table() + " Set ref_id=" + num(id) +
                            " where code_no=" + quoted(code_) + " and ref_id=" + num(f.ref_id));
            f.ref_id = id;
        }
        // "[New]": the particular gets a block of its own name, of the books or of income tax.
        for (const auto& [kind, id] :
             {std::pair<int, long*>{kBooksBlock, &f.CGrpId}, {kIncomeTaxBlock, &f.IGrpId}}) {
            if (*id != 0) continue;
            const auto rs = db_.query("Select GrpId from BlockGroup where GrpDesc=" + quoted(p.name) +
                                      " and GrpType=" + num(long{kind}));
            if (!rs.empty()) {
                *id = as_long(rs.first("GrpId"));
            } else {
                *id = next_block_id(db_);
                insert_block(db_, {*id, p.name, kind, 0});
            }
        }
        insert_fixed(db_, fixed_table(), code_, f);
        db_.execute("INSERT INTO " + fda_table() + " (srno,code_no,ad_ded_id,ref_id,particular) VALUES (1," +
                    quoted(code_) + "," + num(static_cast<long>(kFdaMarker)) + "," + num(f.ref_id) + "," +
                    quoted(p.name) + ")");
        ids.push_back(f.ref_id);
    }
    // A particular taken out of the schedule takes its additions and deductions along.
    std::string kept;
    for (const long id : ids) kept += (kept.empty() ? "" : ",") + num(id);
    db_.execute("Delete from " + fda_table() + " where code_no=" + quoted(code_) +
                (kept.empty() ? std::string() : " and ref_id not in (" + kept + ")"));
    db_.flush_tables();
    tx.commit();
    return ids;
}

void FixedScheduleStore::replace_lines(long ref_id, int ad_ded_id, const std::vector<FdaRow>& rows) {
    for (const auto& a : rows) check_text(fda_table(), "particular", a.particular, kNameChars);
    const std::string where = " where code_no=" + quoted(code_) + " and ref_id=" + num(ref_id);
    Transaction tx(db_);
    db_.execute("Delete from " + fda_table() + where + " and ad_ded_id=" + num(static_cast<long>(ad_ded_id)));
    db_.flush_tables();
    for (auto a : rows) {
        a.ad_ded_id = ad_ded_id;
        a.ref_id = ref_id;
        insert_fda(db_, fda_table(), code_, a);
    }
    // Deductions point at their source additions by srno: a source that is no longer
    // there leaves the deduction taken from the opening figures.
    std::set<long> sources;
    for (const auto r : db_.query("Select srno from " + fda_table() + where + " and ad_ded_id=1"))
        sources.insert(as_long(r["srno"]));
    std::map<long, std::vector<long>> by_source;
    for (const auto r : db_.query("Select srno, src from " + fda_table() + where + " and ad_ded_id=2")) {
        const long src = as_long(r["src"]);
        by_source[sources.count(src) ? src : 0].push_back(as_long(r["srno"]));
    }
    for (const auto& [src, list] : by_source) {
        std::string in;
        for (const long s : list) in += (in.empty() ? "" : ",") + num(s);
        db_.execute("Update " + fda_table() + " Set Src=" + num(src) + where +
                    " and ad_ded_id=2 and srno in (" + in + ")");
    }
    db_.flush_tables();
    tx.commit();
}

void FixedScheduleStore::write_carried(const std::vector<FixedRow>& rows,
                                       const std::vector<FdaRow>& carried) {
    Transaction tx(db_);
    for (const auto& f : rows) insert_fixed(db_, fixed_table(), code_, f);
    for (const auto& a : carried) insert_fda(db_, fda_table(), code_, a);
    db_.flush_tables();
    tx.commit();
}

std::string fix_part_name(Database& db, long ref_id) {
    return db.query("SELECT * FROM MAST_FIX_PART WHERE ref_id=" + num(ref_id)).first("PART_NM").as_text();
}

std::optional<long> fix_part_id(Database& db, std::string_view name) {
    std::string upper(name);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char c) { return std::toupper(c); });
    const auto rs = db.query("SELECT ref_id FROM mast_fix_part WHERE UCASE(PART_NM)=" + quoted(upper));
    if (rs.empty()) return std::nullopt;
    return as_long(rs.first("ref_id"));
}

std::vector<BlockChoice> schedule_blocks(Database& db, int grp_type) {
    std::vector<BlockChoice> out;
    for (const auto r : db.query("Select * from BlockGroup where GrpType=" +
                                 num(static_cast<long>(grp_type)) + " and GrpId<>0 Order by GrpId"))
        out.push_back({as_long(r["GrpId"]), r["grpdesc"].as_text(), static_cast<int>(r["BlockNo"].as_int())});
    return out;
}

void replace_schedule_capital_gains(Database& db, std::string_view code, int ass_year,
                                    const std::vector<BlockTransfer>& rows) {
    for (const auto& b : rows) check_text("capital_depr new row", "assets_name", b.assets_name, kNameChars);
    const std::string where = " where code_no=" + quoted(code) + " And ass_year=" + num(long{ass_year});
    TableLock lock(db, {"Capital", "capital_depr"});
    Transaction tx(db);
    db.execute("Delete from Capital" + where + " and Capital_no In (Select capital_no from capital_depr" +
               where + " and TrBlock='Y')");
    db.execute("Delete from capital_depr" + where + " and TrBlock='Y'");
    db.flush_tables();
    long no = as_long(db.query("Select Max(Capital_no) as MaxCap from Capital where code_no=" + quoted(code) +
                               " and ass_year = " + num(long{ass_year}))
                          .first("MaxCap"));
    for (const auto& b : rows) {
        ++no;
        db.execute("insert into capital (code_no,ass_year,capital_no,capital_type) values (" + quoted(code) +
                   "," + num(long{ass_year}) + "," + num(no) + ",1)");
        db.execute(
            "insert into capital_depr "
            "(code_no,ass_year,capital_no,assets_name,dtsale,sales_cons,wdv,addition,trans_expen,assets_"
            "trans,"
            "trblock) values (" +
            quoted(code) + "," + num(long{ass_year}) + "," + num(no) + "," + quoted(b.assets_name) + "," +
            quoted(b.dtsale) + "," + num(b.sales_cons) + "," + num(b.wdv) + "," + num(b.addition) + "," +
            num(b.trans_expen) + "," + num(b.assets_trans) + ",'Y')");
    }
    db.flush_tables();
    tx.commit();
    lock.release();
}

std::string client_others(Database& db, std::string_view code, int count) {
    return db
        .query("Select others from master where code_no=" + quoted(code) + " and count=" + num(long{count}))
        .first("others")
        .as_text();
}

void set_client_others(Database& db, std::string_view code, int count, std::string_view others) {
    db.execute("update master set others=" + quoted(others) + " where code_no=" + quoted(code) +
               " and count =" + num(long{count}));
    db.flush_tables();
}

std::vector<TrialBalanceLine> trial_balance_of_group(Database& db, std::string_view suffix,
                                                     std::string_view code, int gid,
                                                     std::string_view allgrp) {
    const std::string tab = "TAB_" + std::string(suffix);
    std::string sql = "Select * from " + tab + ",mast_allgrp where " + tab + ".allid=mast_allgrp.allid and " +
                      tab + ".code_no=" + quoted(code) + " and mast_allgrp.gid=" + num(long{gid}) +
                      " and mast_allgrp.allid<>5";
    if (!allgrp.empty()) sql += " and mast_allgrp.allgrp=" + quoted(allgrp);
    std::vector<TrialBalanceLine> out;
    for (const auto r : db.query(sql + " order by " + tab + ".srno"))
        out.push_back({as_long(r["PartId"]), as_long(r["nid"]), r["Amt"].as_double()});
    return out;
}

std::vector<long> write_imported_entries(Database& db, std::string_view code, int year,
                                         std::vector<ImportedEntry>& entries) {
    const std::string opening = register_opening_table(year);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::string where = "NewFAGM row " + std::to_string(i + 1);
        check_text(where, "Part", entries[i].group.Part, kNameChars);
        check_text(where, "BlockIdIT", entries[i].group.BlockIdIT, kCodeChars);
        check_opening_texts(opening + " row " + std::to_string(i + 1), entries[i].opening);
    }
    std::vector<long> serials;
    // The import takes all of its targets in one statement.
    TableLock lock(db, {"NewFAGM", opening, register_addition_table(year), "BlockGroup"});
    Transaction tx(db);
    const auto groups = asset_groups_of_year(db, year);
    long next_group = as_long(db.query("SELECT MAX(SrNoFAGM) as MaxSrNo FROM NewFAGM").first("MaxSrNo")) + 1;
    long serial = largest_serial(db, opening, code);
    std::vector<AssetGroupRow> made;
    for (auto& e : entries) {
        auto& g = e.group;
        g.Yr = year;
        const auto same = [&g](const AssetGroupRow& o) {
            return o.Part == g.Part && o.BlockIdIT == g.BlockIdIT && o.RateIT == g.RateIT &&
                   o.BlockFA == g.BlockFA && o.RateFA == g.RateFA;
        };
        if (const auto it = std::find_if(groups.begin(), groups.end(), same); it != groups.end()) {
            g.SrNoFAGM = it->SrNoFAGM;
        } else if (const auto m = std::find_if(made.begin(), made.end(), same); m != made.end()) {
            g.SrNoFAGM = m->SrNoFAGM;
        } else {
            g.SrNoFAGM = next_group++;
            db.execute("INSERT INTO NewFAGM Values (" + num(g.SrNoFAGM) + "," + num(g.Yr) + "," +
                       quoted(g.Part) + "," + quoted(g.BlockIdIT) + "," + num(g.RateIT) + "," +
                       num(g.AddlRateIT) + "," + num(g.BlockFA) + "," + num(g.RateFA) + "," +
                       quoted(g.BlockIdCL) + "," + num(g.LifeYrs) + "," + num(g.RateSLM) + "," +
                       num(g.RateWDV) + ")");
            made.push_back(g);
        }
        auto& o = e.opening;
        o.Code_No = std::string(code);
        o.IdFAGM = g.SrNoFAGM;
        o.SrNoFATR = ++serial;
        db.execute("INSERT INTO " + opening + " Values (" + quoted(code) + "," + num(o.SrNoFATR) + "," +
                   opening_values(o) + ")");
        serials.push_back(o.SrNoFATR);
    }
    db.flush_tables();
    tx.commit();
    lock.release();
    return serials;
}

void create_merge_tables(Database& db) {
    db.execute(
        "Create Table If Not Exists MergDepr1 (SrNo Double, Code_No Char(50), REF_ID Double, OP_BAL Double, "
        "RATE_DEP Double, METHOD_ID Double, OP_BAL_DEP Double, Oth_Dep Double, COMPIT_ID Double, COMPIT_RATE "
        "Double, WDV Double, CGrpId Int(11), IGrpId Int(11), DepAmt Double, DepTick TinyInt(4), TrBlock "
        "TinyInt(4), AddDepRt Double)");
    db.execute(
        "Create Table If Not Exists MergDepr2 (SrNo Double, Code_No Char(50), AD_DED_ID Double, REF_ID "
        "Double, "
        "PARTICULAR Char(50), Amt Double, AD_DATE Char(50), DEP Double, FullDep TinyInt(4), Src Int(11), "
        "Cost "
        "Double, ExCr Double, CurDiff Double, GrSub Double, DtPur Char(10), AddDepApp Char(1))");
}

void drop_merge_tables(Database& db) {
    db.execute("Drop Table If Exists MergDepr1");
    db.execute("Drop Table If Exists MergDepr2");
}

namespace {

std::string serial_list(const std::vector<long>& serials) {
    std::string in;
    for (const long s : serials) in += (in.empty() ? "" : ",") + num(s);
    return in;
}

}  // namespace

void merge_opening_entries(Database& db, std::string_view code, int year, const std::vector<long>& serials,
                           const OpeningRow& merged) {
    const std::string table = register_opening_table(year);
    check_opening_texts(table + " merged row", merged);
    create_merge_tables(db);
    {
        TableLock lock(db, {table, "MergDepr1"});
        Transaction tx(db);
        db.execute("Delete from MergDepr1 where Code_No=" + quoted(code));
        // The entries as they were, staged before they go: serial, group, books cost and
        // depreciation, rates and the income-tax WDV.
        db.execute(
            "INSERT INTO MergDepr1 (SrNo,Code_No,REF_ID,OP_BAL,RATE_DEP,OP_BAL_DEP,COMPIT_RATE,WDV,AddDepRt) "
            "Select SrNoFATR,Code_No,IdFAGM,CostWdv,RateFACL,OpDepr,RateIT,WdvIT,AddlDepRT from " +
            table + " where Code_No=" + quoted(code) + " and SrNoFATR in (" + serial_list(serials) + ")");
        const auto staged =
            db.query("Select Count(*) as n, Sum(WDV) as w from MergDepr1 where Code_No=" + quoted(code));
        if (static_cast<std::size_t>(staged.first("n").as_int()) != serials.size())
            throw DbError(0, "Some of the entries to merge are not in " + table);
        db.execute("Delete from " + table + " where Code_No=" + quoted(code) + " and SrNoFATR in (" +
                   serial_list(serials) + ")");
        OpeningRow row = merged;
        row.Code_No = std::string(code);
        row.SrNoFATR = serials.front();
        db.execute("INSERT INTO " + table + " Values (" + quoted(code) + "," + num(row.SrNoFATR) + "," +
                   opening_values(row) + ")");
        db.flush_tables();
        tx.commit();
        lock.release();
    }
    drop_merge_tables(db);
}

void merge_addition_entries(Database& db, std::string_view code, int year, const std::vector<long>& serials,
                            const AdditionRow& merged) {
    const std::string table = register_addition_table(year);
    check_addition_texts(table + " merged row", merged);
    create_merge_tables(db);
    {
        TableLock lock(db, {table, "MergDepr2"});
        Transaction tx(db);
        db.execute("Delete from MergDepr2 where Code_No=" + quoted(code));
        db.execute(
            "INSERT INTO MergDepr2 "
            "(SrNo,Code_No,AD_DED_ID,REF_ID,PARTICULAR,Amt,AD_DATE,Cost,ExCr,CurDiff,GrSub,"
            "DtPur) Select "
            "SrNoFATR,Code_No,1,IdFAGM,Part,PurAmt,PutDate,PurAmt,ExciseCr,CurrDiff,Subsidy,AccDate "
            "from " +
            table + " where Code_No=" + quoted(code) + " and SrNoFATR in (" + serial_list(serials) + ")");
        const auto staged = db.query("Select Count(*) as n from MergDepr2 where Code_No=" + quoted(code));
        if (static_cast<std::size_t>(staged.first("n").as_int()) != serials.size())
            throw DbError(0, "Some of the entries to merge are not in " + table);
        db.execute("Delete from " + table + " where Code_No=" + quoted(code) + " and SrNoFATR in (" +
                   serial_list(serials) + ")");
        AdditionRow row = merged;
        row.Code_No = std::string(code);
        row.SrNoFATR = serials.front();
        db.execute("INSERT INTO " + table + " Values (" + quoted(code) + "," + num(row.SrNoFATR) + "," +
                   addition_values(row) + ")");
        db.flush_tables();
        tx.commit();
        lock.release();
    }
    drop_merge_tables(db);
}

}  // namespace brenlow::store
