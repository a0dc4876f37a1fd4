#include "store/transfer_store.h"

#include <optional>

#include "controls/number_format.h"
#include "store/register_store.h"
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

std::optional<long> group_id(Database& db, std::string_view name, int gid) {
    const auto rs = db.query("Select * from mast_allgrp where allgrp=" + quoted(name) +
                             " and gid=" + std::to_string(gid));
    if (rs.empty()) return std::nullopt;
    return static_cast<long>(rs.first("AllId").as_int());
}

std::string id_list(const std::vector<long>& ids) {
    std::string out;
    for (const long id : ids) out += (out.empty() ? "" : ",") + num(id);
    return out.empty() ? "-1" : out;
}

}  // namespace

std::vector<long> TransferGroups::all() const {
    std::vector<long> out;
    for (const auto& g : fixed_asset_heads) out.push_back(g.AllId);
    for (const auto& id : {depreciation, profit_on_sale, residual_pl, residual_rs})
        if (id) out.push_back(*id);
    return out;
}

TransferGroups transfer_groups(Database& db, bool company) {
    TransferGroups g;
    g.depreciation = group_id(db, "DEPRECIATION", 29);
    g.profit_on_sale = group_id(db, "PROFIT ON SALE OF FIXED ASSETS", 17);
    if (company) {
        g.residual_pl = group_id(db, "FIXED ASSETS RESIDUAL VALUE ADJUSTMENTS", 25);
        g.residual_rs = group_id(db, "FIXED ASSETS RESIDUAL VALUE (RETAINED EARNING)", 2);
    }
    for (const auto r : db.query("Select * From Mast_AllGrp Where GID=5 and AllId<>5 Order by AllId"))
        g.fixed_asset_heads.push_back({static_cast<long>(r["AllId"].as_int()),
                                       static_cast<long>(r["GID"].as_int()), r["allgrp"].as_text()});
    return g;
}

std::map<long, std::string> trial_balance_group_names(Database& db) {
    std::map<long, std::string> names;
    for (const auto r : db.query("Select AllId, allgrp from Mast_AllGrp"))
        names[static_cast<long>(r["AllId"].as_int())] = r["allgrp"].as_text();
    return names;
}

std::string trial_balance_table(std::string_view suffix) {
    return "TAB_" + std::string(suffix);
}

std::vector<TrialBalanceRow> trial_balance_rows(Database& db, std::string_view suffix,
                                                std::string_view code) {
    std::vector<TrialBalanceRow> out;
    for (const auto r : db.query("Select * from " + trial_balance_table(suffix) +
                                 " Where Code_No=" + quoted(code) + " Order by srno"))
        out.push_back({static_cast<long>(r["srno"].as_int()), static_cast<long>(r["allid"].as_int()),
                       static_cast<long>(r["PartId"].as_int()), static_cast<int>(r["nid"].as_int()),
                       r["Amt"].as_double()});
    return out;
}

double trial_balance_sum(Database& db, std::string_view suffix, std::string_view code,
                         const std::vector<long>& groups) {
    double total = 0;
    for (const auto& row : trial_balance_rows(db, suffix, code))
        for (const long g : groups)
            if (row.allid == g) total += row.nid == kCredit ? -row.Amt : row.Amt;
    return total;
}

void replace_trial_balance_rows(Database& db, std::string_view suffix, std::string_view code,
                                const std::vector<long>& groups, std::vector<TrialBalanceRow> rows) {
    const std::string table = trial_balance_table(suffix);
    Transaction tx(db);
    db.execute("Delete from " + table + " Where AllId In (" + id_list(groups) +
               ") and Code_No=" + quoted(code));
    db.flush_tables();
    TableLock lock(db, table);
    long srno = static_cast<long>(
        db.query("Select Max(SRNO) as MaxSr from " + table + " Where Code_No=" + quoted(code))
            .first("MaxSr")
            .as_int());
    for (auto& r : rows) {
        r.srno = ++srno;
        // Amounts as the trial balance keeps them: to the paisa.
        db.execute("insert into " + table + " values(" + num(r.srno) + "," + quoted(code) + "," +
                   num(r.allid) + "," + num(r.PartId) + "," + std::to_string(r.nid) + "," +
                   num(mask_value(r.Amt, "###0.00")) + ")");
    }
    db.flush_tables();
    lock.release();
    tx.commit();
}

std::vector<CapitalGainRow> capital_gain_rows(Database& db, std::string_view code, int year) {
    std::vector<CapitalGainRow> out;
    for (const auto r : db.query("Select * from capital_depr where code_no=" + quoted(code) +
                                 " and ass_year=" + std::to_string(year) + " Order by capital_no")) {
        CapitalGainRow c;
        c.capital_no = static_cast<long>(r["capital_no"].as_int());
        c.block = {r["assets_name"].as_text(),   r["dtsale"].as_text(),     r["sales_cons"].as_double(),
                   r["wdv"].as_double(),         r["addition"].as_double(), r["trans_expen"].as_double(),
                   r["assets_trans"].as_double()};
        c.transferred = r["trblock"].as_text() == "Y";
        out.push_back(std::move(c));
    }
    return out;
}

void replace_block_transfers(Database& db, std::string_view code, int year,
                             const std::vector<BlockTransfer>& rows) {
    for (const auto& b : rows) check_text("capital_depr new row", "assets_name", b.assets_name, kNameChars);
    const std::string where = " where code_no=" + quoted(code) + " And ass_year=" + std::to_string(year);
    Transaction tx(db);
    // The heads of the rows an earlier transfer made go with them; the user's stay.
    db.execute("Delete from Capital" + where + " and Capital_no In (Select capital_no from capital_depr" +
               where + " and TrBlock='Y')");
    db.execute("Delete from capital_depr" + where + " and TrBlock='Y'");
    db.flush_tables();
    TableLock lock(db, {"Capital", "capital_depr"});
    long no = static_cast<long>(
        db.query("Select Max(Capital_no) as MaxCap from Capital" + where).first("MaxCap").as_int());
    for (const auto& b : rows) {
        ++no;
        db.execute(
            "insert into capital_depr "
            "(code_no,ass_year,capital_no,assets_name,dtsale,sales_cons,wdv,addition,"
            "trans_expen,assets_trans,trblock) values (" +
            quoted(code) + "," + std::to_string(year) + "," + num(no) + "," + quoted(b.assets_name) + "," +
            quoted(b.dtsale) + "," + num(b.sales_cons) + "," + num(b.wdv) + "," + num(b.addition) + "," +
            num(b.trans_expen) + "," + num(b.assets_trans) + ",'Y')");
        db.execute("insert into Capital (code_no,ass_year,Capital_no,cap_desc,cap_type) values (" +
                   quoted(code) + "," + std::to_string(year) + "," + num(no) + "," + quoted(b.assets_name) +
                   ",'D')");
    }
    db.flush_tables();
    lock.release();
    tx.commit();
}

}  // namespace brenlow::store
