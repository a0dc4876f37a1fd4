#pragma once
// The suite's client-year master (`master`) and the per-client settings the base
// services keep: creating a client's financial year, finding its table suffix,
// miscellaneous information and suite settings.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/assessee_kind.h"
#include "store/database.h"

namespace brenlow::store {

struct ClientYear {
    std::string code_no;
    int year = 0;        // calendar year in which the financial year ends
    std::string f_yr;    // "0104yyyy"
    std::string s_yr;    // "3103yyyy"
    int count = 0;       // the year's number for GetTbName
    std::string tbl_nm;  // the year's table suffix
    std::string client_name;
    int status = 1;  // 1-4
    std::string others;
};

// What creating a client's financial year did, for the command line to tell.
struct CreatedYear {
    ClientYear client_year;
    bool master_row_created = false;
    std::vector<std::string> tables_created;
};

// Creates the shared tables and seeds the masters (both idempotent): what init does.
void prepare_schema(Database& db, const std::string& data_dir);
// What every start-up does: prepare_schema only when something is missing, so that
// on a prepared database start-up only reads (a read-only user, a full disk or
// another user's write lock does not stop a listing).
void ensure_schema(Database& db, const std::string& data_dir);

// Creates the client's master row for the year (when missing), the year's schedule
// tables and the register tables, and the year's block lists. Running it again
// changes nothing. A client that already has a row keeps its name and status unless
// new ones are given.
CreatedYear create_client_year(Database& db, std::string_view code, int year, std::string_view name,
                               std::optional<int> status);

// How many income-tax block rows (NewITBM) and classification rows (NewCLBM) a year has.
struct YearMasterCounts {
    long long it_blocks = 0;
    long long cl_rows = 0;
};
YearMasterCounts year_master_counts(Database& db, int year);

std::optional<ClientYear> find_client_year(Database& db, std::string_view code, int year);
std::vector<ClientYear> list_client_years(Database& db);

// Per-year table sets: the suffix of the year numbered `count`; "" when unknown.
std::string table_suffix(Database& db, int count);
int table_count(Database& db);

// Miscellaneous information of a client, kept by key and closing date (dd/mm/yyyy).
std::string get_misc_info(Database& db, std::string_view code, std::string_view second_date,
                          std::string_view key);
void set_misc_info(Database& db, std::string_view code, std::string_view second_date, std::string_view key,
                   std::string_view value, std::string_view description);

// Suite settings (the settings file of the desktop suite lives in the database).
std::string get_setting(Database& db, std::string_view section, std::string_view key,
                        std::string_view default_value);
void set_setting(Database& db, std::string_view section, std::string_view key, std::string_view value);

// Trial-balance particulars: the id of a name (created as max + 1 when missing).
long mast_part_id(Database& db, std::string_view name);
std::string mast_part_name(Database& db, long id);

// Text made safe inside an SQL literal: quotes doubled.
std::string sql_text(std::string_view text);

// The kind of assessee recorded for the client, for all its years (kept as the
// miscellaneous information "ASSESSEEKIND" without a year); nullopt when none was.
std::optional<AssesseeKind> recorded_assessee_kind(Database& db, std::string_view code);
void record_assessee_kind(Database& db, std::string_view code, AssesseeKind kind);
// The kind the law sees: the recorded one, else the kind of the suite's status.
AssesseeKind assessee_kind_of_client(Database& db, std::string_view code, int status);

}  // namespace brenlow::store
