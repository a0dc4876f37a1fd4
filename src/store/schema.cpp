#include "store/schema.h"

#include <string>

#include "store/sql_dialect.h"

namespace brenlow::store {
namespace {

// Column types: amounts Double, ids and serials Int(11), names VarChar, long
// packed texts Text. Text columns compare case-blind on every backend, except the
// client code: it compares byte for byte, trailing spaces included, whatever the
// server's or the database's default collation, so that codes that only look alike
// ("ACMÉ", "ACME ") never reach ACME's rows.
constexpr const char* kCode = "VarChar(50)";
constexpr const char* kName = "VarChar(255)";
constexpr const char* kClientMysql = "VarChar(50) CHARACTER SET utf8mb4 COLLATE utf8mb4_nopad_bin";
constexpr const char* kClientSqlite = "VarChar(50) COLLATE BINARY";

std::string client_column(const Database& db) {
    return db.backend() == Backend::mysql ? kClientMysql : kClientSqlite;
}

std::string create(std::string_view name, std::string_view columns) {
    std::string sql = "Create Table If Not Exists ";
    sql += name;
    sql += " (";
    sql += columns;
    sql += ")";
    return sql;
}

void index(Database& db, std::string_view table, std::string_view columns) {
    // One index a table, named after it; MariaDB and SQLite both know IF NOT EXISTS.
    std::string sql = "Create Index If Not Exists ix_";
    sql += table;
    sql += " ON ";
    sql += table;
    sql += " (";
    sql += columns;
    sql += ")";
    db.execute(sql);
}

// The register's own key: one row per client and serial (the old chart's marker row
// included, at serial -1). A server reads a client's entries along it, in serial
// order, without sorting and without touching other clients' rows. MariaDB uses only
// a primary key for that (a plain index is passed over for a scan and a sort);
// SQLite, which cannot add a primary key to a table, gets a unique index. Tables made
// by earlier versions get the key here too; it is then the only index they need. A
// register whose rows repeat a serial cannot take the key and keeps its plain index.
void register_key(Database& db, const std::string& table) {
    try {
        if (db.backend() == Backend::mysql) {
            if (db.query("SHOW KEYS FROM " + table + " WHERE Key_name='PRIMARY'").empty())
                db.execute("ALTER TABLE " + table + " ADD PRIMARY KEY (Code_No, SrNoFATR)");
            db.execute("DROP INDEX IF EXISTS ix_" + table + " ON " + table);
        } else {
            db.execute("Create Unique Index If Not Exists ux_" + table + " ON " + table +
                       " (Code_No, SrNoFATR)");
            db.execute("DROP INDEX IF EXISTS ix_" + table);
        }
    } catch (const DbError&) {
        index(db, table, "Code_No, SrNoFATR");
    }
}

std::string chart_columns(const std::string& client) {
    std::string cols = "Code_No " + client + ", FYr Int(11), Grp Int(11), Rate Double";
    for (const char* c :
         {"Wdv", "WdvOpHR", "Add1", "Cons1", "FullAmt", "Add2", "Cons2", "HalfAmt", "DeprF", "DeprH",
          "ADeprF", "ADeprH", "ADeprOpH", "TotDep", "Dep38", "PropDep", "Exp", "CG", "WdvCl"}) {
        cols += ", ";
        cols += c;
        cols += " Double";
    }
    return cols;
}

// The name columns of the two ledger masters were called PartNm and Particular by
// earlier versions; a database made then keeps its rows under the new names.
void rename_old_name_columns(Database& db) {
    const struct {
        const char* table;
        const char* old_name;
        const char* name;
    } renames[] = {{"Mast_Part", "PartNm", "particular"}, {"Mast_Capital", "Particular", "Part"}};
    for (const auto& r : renames) {
        const auto columns = db.query(std::string("select * from ") + r.table + " where 1=0").names();
        for (const auto& c : columns)
            if (c == r.old_name)
                db.execute(std::string("ALTER TABLE ") + r.table + " RENAME COLUMN " + r.old_name + " TO " +
                           r.name);
    }
}

// A column that later versions write, added to a table made before them.
void add_missing_column(Database& db, const char* table, const char* column, const char* type) {
    const auto columns = db.query(std::string("select * from ") + table + " where 1=0").names();
    for (const auto& c : columns)
        if (equals_case_blind(c, column)) return;
    db.execute(std::string("ALTER TABLE ") + table + " ADD COLUMN " + column + " " + type);
}

}  // namespace

const std::vector<std::string>& year_table_stems() {
    static const std::vector<std::string> stems = {
        "SHARE_", "RESV_", "SECUR_", "INVEST_", "LOAN_ADV_", "MiscExpAsst_", "SUNDEB_", "BANK_", "FIXED_",
        "FDA_", "TAB_", "SCHED_", "CAPITAL_",
        // The suite's own per-year tables that the capital accounts and the ledger
        // master read: the year's result, its tax, the journal and the trading account.
        "tp_NCPLoss_", "tp_Tax_", "JRNL_", "TRADE_"};
    return stems;
}

const std::vector<std::string>& shared_table_names() {
    static const std::vector<std::string> names = {
        "master",         "Mast_MiscOthInf", "Mast_Setting",  "MAST_GUNDER",  "Mast_AllGrp",  "MAST_RESV",
        "MAST_MISCEXP",   "Mast_Invest",     "Mast_Oth_Loan", "Mast_Head",    "mast_company", "mast_fix_part",
        "mast_depmethod", "Mast_Capital",    "Mast_Part",     "owner1",       "prfa",         "PRFA_Oth",
        "NewFAGM",        "NewFAMI",         "NewFAMD",       "NewITBM",      "NewCLBM",      "BlockGroup",
        "FAPart_Master",  "DeprChart",       "TmpDepChart",   "capital_depr", "Capital"};
    return names;
}

bool shared_tables_exist(Database& db) {
    const auto present = db.table_names();
    for (const auto& wanted : shared_table_names()) {
        bool found = false;
        for (const auto& t : present) found = found || equals_case_blind(t, wanted);
        if (!found) return false;
    }
    return true;
}

std::string client_code_type(const Database& db) {
    return client_column(db);
}

std::string register_opening_table(int year) {
    return "NewFATRo" + std::to_string(year);
}
std::string register_addition_table(int year) {
    return "NewFATRa" + std::to_string(year);
}

void create_shared_tables(Database& db) {
    const std::string code = kCode, name = kName, client = client_column(db);
    // The suite's client-year master; client_name and status are the suite's own
    // columns for the client list.
    db.execute(create("master", "code_no " + client + ", f_yr Char(8), s_yr Char(8), Count Int(11), tbl_nm " +
                                    code + ", others Text, client_name " + name + ", status Int(11)"));
    index(db, "master", "code_no");
    db.execute(create("Mast_MiscOthInf", "code_no " + client + ", s_yr Char(10), InfKey " + name +
                                             ", InfVal Text, InfDesc " + name));
    db.execute(create("Mast_Setting", "Section " + name + ", SetKey " + name + ", SetVal Text"));
    db.execute(create("MAST_GUNDER", "GID Int(11), GUNDER " + name));
    db.execute(create("Mast_AllGrp", "AllId Int(11), GID Int(11), allgrp " + name));
    db.execute(create("MAST_RESV", "resv_id Int(11), resv_nm " + name));
    db.execute(create("MAST_MISCEXP", "Exp_ID Int(11), EXP_NM " + name));
    db.execute(create("Mast_Invest", "INVEST_ID Int(11), invest_nm " + name));
    db.execute(create("Mast_Oth_Loan", "oth_loan_id Int(11), oth_loan_nm " + name));
    db.execute(create("Mast_Head", "head_id Int(11), head_nm " + name + ", Loan_Id Int(11)"));
    db.execute(create("mast_company", "comp_id Int(11), comp_nm " + name));
    db.execute(create("mast_fix_part", "REF_ID Int(11), PART_NM " + name));
    db.execute(create("mast_depmethod", "METHOD_ID Int(11), METHOD_NM " + name));
    db.execute(create("Mast_Capital", "Particular_Id Int(11), Part " + name));
    db.execute(create("Mast_Part", "PartId Int(11), particular " + name));
    rename_old_name_columns(db);
    // The capital-gains records of depreciable assets, as the suite keeps them.
    db.execute(create("capital_depr",
                      "code_no " + client + ", ass_year Int(11), capital_no Int(11), assets_name " + name +
                          ", dtsale Char(10), sales_cons Double, wdv Double, addition Double, "
                          "trans_expen Double, assets_trans Double, trblock Char(1)"));
    db.execute(create("Capital", "code_no " + client + ", ass_year Int(11), Capital_no Int(11), cap_desc " +
                                     name + ", cap_type Char(1), capital_type Int(11)"));
    add_missing_column(db, "Capital", "capital_type", "Int(11)");
    db.execute(create("owner1", "code_no " + client + ", code Int(11), f_nm " + name + ", m_nm " + name +
                                    ", l_nm " + name));
    db.execute(create("prfa", "code_no " + client + ", code Int(11), rcount Int(11), rat Double"));
    db.execute(create("PRFA_Oth",
                      "code_no " + client + ", rcount Int(11), SrNo Int(11), nme " + name + ", rat Double"));

    // Register masters.
    db.execute(create("NewFAGM", "SrNoFAGM Int(11), Yr Int(11), Part " + name + ", BlockIdIT " + code +
                                     ", RateIT Double, AddlRateIT Double, BlockFA Int(11), RateFA Double, "
                                     "BlockIdCL " +
                                     code + ", LifeYrs Double, RateSLM Double, RateWDV Double"));
    index(db, "NewFAGM", "Yr, SrNoFAGM");
    db.execute(create("NewFAMI", "Code_No " + client + ", Yr Int(11), MiscInf Text"));
    db.execute(create("NewFAMD", "Code_No " + client + ", Yr Int(11), IdFAGM Int(11), DepAmt Double"));
    db.execute(create("NewITBM", "YR Int(11), Sr Int(11), ID " + code + ", Part " + name + ", rate Double"));
    index(db, "NewITBM", "YR, ID");
    db.execute(create("NewCLBM", "YR Int(11), Sr Int(11), ID " + code + ", Part " + name +
                                     ", NESD Char(1), Yrs Double, RateS Double, RateW Double"));
    index(db, "NewCLBM", "YR, ID");
    db.execute(create("BlockGroup", "GrpId Int(11), GrpDesc " + name + ", GrpType Int(11), BlockNo Int(11)"));
    db.execute(create("FAPart_Master", "Yr Int(11), PartId Int(11), PartDesc " + name + ", PartMeth " + code +
                                           ", RtCl Double, RtIT Double, ClBlock Int(11), "
                                           "ITBlock Int(11)"));
    db.execute(create("DeprChart", chart_columns(client)));
    index(db, "DeprChart", "Code_No, FYr");
    db.execute(create("TmpDepChart", chart_columns(client)));
    index(db, "TmpDepChart", "Code_No, FYr");
}

void create_year_tables(Database& db, std::string_view suffix) {
    const std::string s(suffix), code = kCode, name = kName, client = client_column(db);
    auto t = [&](const char* stem) { return std::string(stem) + s; };
    db.execute(
        create(t("SHARE_"), "srno Int(11), code_no " + code +
                                ", no_share Double, RS_SHARE1 Double, RS_SHARE Double, ref_ep Char(1), "
                                "sam Double, four_id Int(11)"));
    db.execute(create(t("RESV_"), "srno Int(11), code_no " + code +
                                      ", resv_id Int(11), OP_BL Double, ADD_AMT Double, Ded_amt Double"));
    db.execute(create(t("SECUR_"), "srno Int(11), code_no " + code +
                                       ", loan_id Int(11), DEB_OTH_ID Int(11), PARTICUL " + name +
                                       ", rate Double, EACH_AMT Double, head_id Int(11), Amount Double"));
    db.execute(create(t("INVEST_"), "srno Int(11), code_no " + code +
                                        ", INVEST_ID Int(11), SHARE_ID Int(11), no_shares Double, "
                                        "per_share_amt Double, paidup Double, mktval Double, Amount Double, "
                                        "comp_id Int(11), qu_ID Int(11), TNT_ID Int(11), particular " +
                                        name));
    db.execute(
        create(t("LOAN_ADV_"), "srno Int(11), code_no " + code +
                                   ", comp_id Int(11), Amount Double, LDAD_ID Int(11), OTH_LOAN_ID Int(11)"));
    db.execute(create(t("MiscExpAsst_"), "srno Int(11), code_no " + code + ", ExpID Int(11), Descript " +
                                             name + ", OpBal Double, Amount Double"));
    db.execute(
        create(t("SUNDEB_"), "srno Int(11), code_no " + code +
                                 ", more_amt Double, OTH_AMT Double, PROV_AMT Double, dis_prov_amt Double, "
                                 "good_amt Double, doubt_amt Double, bad_amt Double"));
    db.execute(
        create(t("BANK_"), "srno Int(11), code_no " + code +
                               ", CASH Double, DD Double, REMITTANCE Double, FD Double, SCH_CURR Double, "
                               "SCH_DEP Double, FOR_CURR Double, FOR_DEP Double, OTH_CURR Double, "
                               "OTH_DEP Double"));
    db.execute(create(t("FIXED_"), "compit_id Int(11), srno Int(11), code_no " + code +
                                       ", ref_id Int(11), OP_BAL Double, op_bal_dep Double, RATE_DEP Double, "
                                       "method_id Int(11), OTH_DEP Double, deptick Int(11), depamt Double, "
                                       "CGrpId Int(11), wdv Double, compit_rate Double, IGrpId Int(11), "
                                       "trblock Int(11), AddDepRt Double"));
    db.execute(
        create(t("FDA_"), "srno Int(11), code_no " + code +
                              ", ad_ded_id Int(11), ref_id Int(11), particular " + name +
                              ", cost Double, excr Double, curdiff Double, grsub Double, AMT Double, "
                              "ad_date Char(10), dtpur Char(10), dep Double, fulldep Int(11), src Int(11), "
                              "adddepapp Char(1)"));
    db.execute(create(t("TAB_"), "srno Int(11), code_no " + code +
                                     ", allid Int(11), PartId Int(11), nid Int(11), Amt Double"));
    db.execute(create(t("SCHED_"), "code_no " + client + ", GID Int(11)"));
    db.execute(create(t("CAPITAL_"), "code_no " + client + ", code " + name +
                                         ", srno Int(11), PARTICULAR_ID Int(11), AMT Double, nid Int(11), "
                                         "actyp Int(11)"));
    // As the suite makes them: the items of the year's result and its tax rows (RType
    // 0 the tax on the result), the journal and the trading account by particular.
    db.execute(create(t("tp_NCPLoss_"), "Code_No " + client + ", ItemId Int(11), Amount Double"));
    db.execute(create(t("tp_Tax_"), "Code_No " + client + ", RType Int(11), Amount Double"));
    db.execute(create(t("JRNL_"), "srno Int(11), code_no " + client +
                                      ", jdate Char(10), PartId Int(11), "
                                      "nid Int(11), Amt Double, narration " +
                                      name));
    db.execute(create(t("TRADE_"), "srno Int(11), code_no " + client +
                                       ", allid Int(11), PartId Int(11), nid Int(11), Amt Double"));
}

void create_register_tables(Database& db, int year) {
    const std::string code = kCode, name = kName, client = client_column(db);
    const std::string o = register_opening_table(year), a = register_addition_table(year);
    db.execute(create(o, "Code_No " + client + ", SrNoFATR Int(11), IdFAGM Int(11), Part " + name +
                             ", CostWdv Double, OpDepr Double, YrCalcCA Int(11), DepCalcCA Double, "
                             "ResValue Double, LifeYrs Double, RateFACL Double, WdvIT Double, DetESA Text, "
                             "RateIT Double, AddlDepRT Double, SaleDate Char(10), SaleAmt Double, "
                             "SaleExp Double, ShiftDet Text, DepFACL Double, OthOpts Text, PutDate Char(10), "
                             "AddlDepOn Double"));
    register_key(db, o);
    db.execute(create(a, "Code_No " + client + ", SrNoFATR Int(11), IdFAGM Int(11), Part " + name +
                             ", PutDate Char(10), AccDate Char(10), PurAmt Double, ExciseCr Double, "
                             "CurrDiff Double, Subsidy Double, ResValue Double, LifeYrs Double, "
                             "RateFACL Double, RateIT Double, AddlDepRT Double, SaleDate Char(10), "
                             "SaleAmt Double, SaleExp Double, ShiftDet Text, DepFACL Double, OthOpts Text"));
    register_key(db, a);
}

std::vector<std::string> fix_client_code_columns(Database& db) {
    std::vector<std::string> fixed;
    if (db.backend() != Backend::mysql) return fixed;
    std::vector<std::pair<std::string, std::string>> columns;  // table, column as spelt
    db.for_each_row(
        "SELECT TABLE_NAME, COLUMN_NAME FROM information_schema.COLUMNS WHERE TABLE_SCHEMA=DATABASE() AND "
        "LOWER(COLUMN_NAME)='code_no' AND (COLLATION_NAME IS NULL OR COLLATION_NAME<>'utf8mb4_nopad_bin')",
        [&](const Row& r) { columns.emplace_back(r[0].as_text(), r[1].as_text()); });
    for (const auto& [table, column] : columns) {
        db.execute("UPDATE " + table + " SET " + column + "=UPPER(TRIM(" + column + "))");
        db.execute("ALTER TABLE " + table + " MODIFY " + column + " " + kClientMysql);
        fixed.push_back(table);
    }
    if (!fixed.empty()) db.flush_tables();
    return fixed;
}

}  // namespace brenlow::store
