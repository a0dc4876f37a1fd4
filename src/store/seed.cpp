#include "store/seed.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <tuple>
#include <vector>

#include "controls/number_format.h"

#ifndef BRENLOW_SOURCE_DATA_DIR
#define BRENLOW_SOURCE_DATA_DIR "data"
#endif

namespace brenlow::store {
namespace {

namespace fs = std::filesystem;
using CsvRow = std::map<std::string, std::string>;

std::vector<std::string> split_csv_line(const std::string& line) {
    std::vector<std::string> out;
    std::string cur;
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        char c = line[i];
        if (quoted) {
            if (c == '"' && i + 1 < line.size() && line[i + 1] == '"') {
                cur += '"';
                ++i;
            } else if (c == '"') {
                quoted = false;
            } else {
                cur += c;
            }
        } else if (c == '"') {
            quoted = true;
        } else if (c == ',') {
            out.push_back(cur);
            cur.clear();
        } else if (c != '\r') {
            cur += c;
        }
    }
    out.push_back(cur);
    return out;
}

std::vector<CsvRow> read_csv(const fs::path& path) {
    std::ifstream in(path);
    if (!in) throw std::runtime_error("Reference data file not found: " + path.string());
    std::string line;
    std::getline(in, line);
    const auto header = split_csv_line(line);
    std::vector<CsvRow> rows;
    int line_no = 1;
    while (std::getline(in, line)) {
        ++line_no;
        if (line.empty() || line == "\r") continue;
        auto cells = split_csv_line(line);
        if (cells.size() != header.size())
            throw std::runtime_error(path.filename().string() + " line " + std::to_string(line_no) +
                                     ": expected " + std::to_string(header.size()) + " fields, found " +
                                     std::to_string(cells.size()));
        CsvRow row;
        for (std::size_t i = 0; i < header.size(); ++i) row[header[i]] = cells[i];
        rows.push_back(std::move(row));
    }
    return rows;
}

std::string quoted(const std::string& text) {
    std::string out = "'";
    for (char c : text) {
        out += c;
        if (c == '\'') out += '\'';
    }
    out += '\'';
    return out;
}

bool is_empty(Database& db, const std::string& table) {
    return db.query("Select Count(*) as n from " + table).first("n").as_int() == 0;
}

// The register year Y is the financial year ending in Y; its assessment year is
// "Y-(Y+1)", which the Appendix rows name as "Y-yy".
int first_year_of(const std::string& ay) {
    return std::stoi(ay.substr(0, 4));
}

constexpr int kFirstItYear = 2004;
constexpr int kLastItYear = 2027;
// The Companies Act 2013 lives apply from the financial year 2014-15.
constexpr int kFirstClYear = 2015;
constexpr int kLastClYear = 2027;

void seed_itbm(Database& db, const fs::path& dir) {
    const auto rows = read_csv(dir / "income-tax-depreciation-rates.csv");
    for (int year = kFirstItYear; year <= kLastItYear; ++year) {
        // Blocks of the year: distinct (nature, rate) in the order nature, rate.
        std::map<std::pair<int, double>, std::vector<const CsvRow*>> blocks;
        for (const auto& r : rows) {
            if (first_year_of(r.at("FromAY")) <= year && year <= first_year_of(r.at("ToAY"))) {
                const int nature = it_nature_of(r.at("Nature"));
                if (nature == 0) throw std::runtime_error("Unknown nature of asset: " + r.at("Nature"));
                blocks[{nature, std::stod(r.at("Rate"))}].push_back(&r);
            }
        }
        int sr = 0;
        for (const auto& [key, entries] : blocks) {
            const std::string id = it_block_id(key.first, key.second);
            const std::string rate = plain_number(key.second);
            db.execute("INSERT INTO NewITBM (YR, Sr, ID, Part, rate) Values (" + std::to_string(year) + "," +
                       std::to_string(++sr) + "," + quoted(id) + "," + quoted(entries.front()->at("Nature")) +
                       "," + rate + ")");
            int sub = 0;
            for (const CsvRow* e : entries) {
                db.execute("INSERT INTO NewITBM (YR, Sr, ID, Part, rate) Values (" + std::to_string(year) +
                           "," + std::to_string(++sr) + "," + quoted(id + "." + std::to_string(++sub)) + "," +
                           quoted(e->at("Description")) + "," + rate + ")");
            }
        }
    }
}

std::string number_or_null(const std::string& text) {
    return text.empty() ? "NULL" : text;
}

void seed_clbm(Database& db, const fs::path& dir) {
    const auto rows = read_csv(dir / "companies-act-schedule-ii.csv");
    for (int year = kFirstClYear; year <= kLastClYear; ++year) {
        int sr = 0;
        for (const auto& r : rows) {
            db.execute("INSERT INTO NewCLBM (YR, Sr, ID, Part, NESD, Yrs, RateS, RateW) Values (" +
                       std::to_string(year) + "," + std::to_string(++sr) + "," + quoted(r.at("ID")) + "," +
                       quoted(r.at("Part")) + "," + quoted(r.at("NESD")) + "," + number_or_null(r.at("Yrs")) +
                       "," + number_or_null(r.at("RateS")) + "," + number_or_null(r.at("RateW")) + ")");
        }
    }
}

void seed_pairs(Database& db, const std::string& table,
                const std::vector<std::pair<int, std::string>>& rows) {
    if (!is_empty(db, table)) return;
    for (const auto& [id, text] : rows)
        db.execute("INSERT INTO " + table + " Values (" + std::to_string(id) + "," + quoted(text) + ")");
}

void seed_allgrp(Database& db) {
    if (!is_empty(db, "Mast_AllGrp")) return;
    // AllId, GID, name. Heads 1-29 carry their group's number; the fixed-asset heads
    // under group 5 and the transfer targets follow from 101.
    const std::vector<std::tuple<int, int, std::string>> rows = {
        {1, 1, "CAPITAL"},
        {2, 2, "RESERVES AND SURPLUS"},
        {3, 3, "SECURED LOANS"},
        {4, 4, "UNSECURED LOANS"},
        {5, 5, "FIXED ASSETS"},
        {6, 6, "INVESTMENTS"},
        {7, 7, "CURRENT ASSETS"},
        {8, 8, "SUNDRY DEBTORS"},
        {9, 9, "CASH AND BANK"},
        {10, 10, "CURRENT LIABILITIES AND PROVISIONS"},
        {11, 11, "LOANS AND ADVANCES"},
        {14, 14, "MISC EXPENDITURE"},
        {17, 17, "PROFIT ON SALE OF FIXED ASSETS"},
        {25, 25, "FIXED ASSETS RESIDUAL VALUE ADJUSTMENTS"},
        {29, 29, "DEPRECIATION"},
        {101, 1, "CURRENT ACCOUNT"},
        {102, 2, "FIXED ASSETS RESIDUAL VALUE (RETAINED EARNING)"},
        {111, 5, "LAND"},
        {112, 5, "BUILDING"},
        {113, 5, "PLANT AND MACHINERY"},
        {114, 5, "FURNITURE AND FIXTURES"},
        {115, 5, "VEHICLES"},
        {116, 5, "OFFICE EQUIPMENT"},
        {117, 5, "COMPUTERS"},
        {118, 5, "INTANGIBLE ASSETS"},
    };
    for (const auto& [all_id, gid, name] : rows)
        db.execute("INSERT INTO Mast_AllGrp Values (" + std::to_string(all_id) + "," + std::to_string(gid) +
                   "," + quoted(name) + ")");
}

// Heads of loans: secured (Loan_Id 1) and unsecured (2), numbered through both.
void seed_loan_heads(Database& db) {
    if (!is_empty(db, "Mast_Head")) return;
    const std::vector<std::tuple<int, std::string, int>> rows = {
        {1, "TERM LOANS FROM BANKS", 1},
        {2, "CASH CREDIT AND OVERDRAFT FROM BANKS", 1},
        {3, "LOANS FROM FINANCIAL INSTITUTIONS", 1},
        {4, "VEHICLE LOANS", 1},
        {5, "LOANS FROM DIRECTORS", 2},
        {6, "LOANS FROM SHAREHOLDERS", 2},
        {7, "INTER-CORPORATE DEPOSITS", 2},
        {8, "PUBLIC DEPOSITS", 2},
        {9, "LOANS FROM OTHERS", 2},
    };
    for (const auto& [id, name, kind] : rows)
        db.execute("INSERT INTO Mast_Head Values (" + std::to_string(id) + "," + quoted(name) + "," +
                   std::to_string(kind) + ")");
}

}  // namespace

int it_nature_of(const std::string& group_name) {
    static const std::map<std::string, int> natures = {{"BUILDING", 1},
                                                       {"FURNITURE AND FITTINGS", 2},
                                                       {"MACHINERY AND PLANT", 3},
                                                       {"INTANGIBLE ASSETS", 4},
                                                       {"SHIPS", 5},
                                                       {"LAND", 100}};
    const auto it = natures.find(group_name);
    return it == natures.end() ? 0 : it->second;
}

std::string it_block_id(int nature, double rate) {
    return std::to_string(nature) + "-" + plain_number(rate);
}

std::string reference_data_dir(const std::string& exe_dir) {
    if (const char* env = std::getenv("BRENLOW_DATA_DIR"); env && *env) return env;
    if (!exe_dir.empty()) {
        for (const fs::path& p : {fs::path(exe_dir) / "data", fs::path(exe_dir) / ".." / "data",
                                  fs::path(exe_dir) / ".." / "share" / "brenlow" / "data",
                                  fs::path(exe_dir) / ".." / ".." / "share" / "brenlow" / "data"}) {
            if (fs::exists(p / "income-tax-depreciation-rates.csv")) return p.string();
        }
    }
    return BRENLOW_SOURCE_DATA_DIR;
}

void seed_masters(Database& db, const std::string& data_dir) {
    const fs::path dir(data_dir);
    Transaction tx(db);
    if (is_empty(db, "NewITBM")) seed_itbm(db, dir);
    if (is_empty(db, "NewCLBM")) seed_clbm(db, dir);
    seed_pairs(db, "MAST_GUNDER",
               {{1, "CAPITAL"},
                {2, "RESERVES AND SURPLUSES"},
                {3, "SECURED LOANS"},
                {4, "UNSECURED LOANS"},
                {5, "FIXED ASSETS"},
                {6, "INVESTMENTS"},
                {8, "SUNDRY DEBTORS"},
                {9, "CASH AND BANK"},
                {11, "LOANS AND ADVANCES (ASSETS)"},
                {14, "MISC EXPENSES (ASSETS)"}});
    seed_allgrp(db);
    seed_pairs(db, "mast_depmethod",
               {{1, "WRITTEN DOWN VALUE"},
                {2, "STRAIGHT LINE METHOD"},
                {3, "OTHER METHOD"},
                {4, "NO DEPRECIATION"}});
    seed_pairs(db, "MAST_RESV",
               {{1, "Capital Redemption Reserve"},
                {2, "Debenture Redemption Reserve"},
                {3, "Foreign Project Reserve"},
                {4, "General Reserve"},
                {5, "Profit and Loss Account"},
                {6, "Share Premium"},
                {7, "Others"}});
    seed_pairs(db, "Mast_Invest",
               {{1, "GOVERNMENT OR TRUST SECURITIES"},
                {2, "DEBENTURES OR BONDS"},
                {3, "SHARES IN COMPANIES"},
                {4, "SHARES IN SUBSIDIARY COMPANIES"},
                {5, "UNITS OF MUTUAL FUNDS"},
                {6, "IMMOVABLE PROPERTIES"},
                {7, "CAPITAL OF PARTNERSHIP FIRMS"},
                {8, "NATIONAL SAVINGS CERTIFICATES"},
                {9, "SHARES IN CO-OPERATIVE SOCIETIES"},
                {10, "OTHER INVESTMENTS"}});
    seed_pairs(db, "Mast_Oth_Loan",
               {{1, "ADVANCES RECOVERABLE IN CASH OR KIND"},
                {2, "SECURITY DEPOSITS"},
                {3, "LOANS TO EMPLOYEES"},
                {4, "ADVANCE TAX AND TAX DEDUCTED AT SOURCE"},
                {5, "PREPAID EXPENSES"},
                {6, "BALANCE WITH REVENUE AUTHORITIES"}});
    seed_pairs(db, "MAST_MISCEXP",
               {{1, "PRELIMINARY EXPENSES"},
                {2, "SHARE ISSUE EXPENSES"},
                {3, "DEFERRED REVENUE EXPENDITURE"},
                {4, "DISCOUNT ON ISSUE OF SHARES OR DEBENTURES"}});
    seed_loan_heads(db);
    if (db.query("Select Count(*) as n from BlockGroup Where GrpId=0").first("n").as_int() == 0)
        db.execute("INSERT INTO BlockGroup Values (0,' ',0,0)");
    tx.commit();
    db.flush_tables();
}

bool masters_seeded(Database& db) {
    for (const char* t : {"NewITBM", "NewCLBM", "MAST_GUNDER", "Mast_AllGrp", "mast_depmethod", "MAST_RESV",
                          "Mast_Invest", "Mast_Oth_Loan", "MAST_MISCEXP", "Mast_Head"}) {
        if (is_empty(db, t)) return false;
    }
    return db.query("Select Count(*) as n from BlockGroup Where GrpId=0").first("n").as_int() > 0;
}

void ensure_year_masters(Database& db, int year) {
    for (const char* table : {"NewITBM", "NewCLBM"}) {
        const std::string t = table;
        if (db.query("Select Count(*) as n from " + t + " Where YR=" + std::to_string(year))
                .first("n")
                .as_int() > 0)
            continue;
        const auto range = db.query("Select Min(YR) as lo, Max(YR) as hi from " + t);
        if (range.first("lo").is_null()) continue;
        const int lo = static_cast<int>(range.first("lo").as_int());
        const int hi = static_cast<int>(range.first("hi").as_int());
        const int from = std::clamp(year, lo, hi);
        const std::string cols =
            t == "NewITBM" ? "Sr, ID, Part, rate" : "Sr, ID, Part, NESD, Yrs, RateS, RateW";
        Transaction tx(db);
        db.execute("INSERT INTO " + t + " (YR, " + cols + ") SELECT " + std::to_string(year) + ", " + cols +
                   " FROM " + t + " WHERE YR=" + std::to_string(from));
        tx.commit();
    }
    db.flush_tables();
}

}  // namespace brenlow::store
