#pragma once
// The suite's tables as this component knows them: the shared masters, the
// per-year schedule tables (stem + the year's suffix) and the per-year register
// tables (NewFATRo<year>, NewFATRa<year>). Creation is idempotent.

#include <string>
#include <string_view>
#include <vector>

#include "store/database.h"

namespace brenlow::store {

// Stems of the per-year schedule tables, trailing underscore included.
const std::vector<std::string>& year_table_stems();

// Shared masters and work tables ("Create Table If Not Exists").
void create_shared_tables(Database& db);
// The names of the tables create_shared_tables makes.
const std::vector<std::string>& shared_table_names();
// Every shared table is there: read only, no statement that writes.
bool shared_tables_exist(Database& db);
// The schedule tables of one year: stem + suffix for every stem.
void create_year_tables(Database& db, std::string_view suffix);
// NewFATRo<year> and NewFATRa<year>.
void create_register_tables(Database& db, int year);

// Tables made before client codes compared byte for byte: on MariaDB, every
// code_no column that does not compare exactly is given the exact collation, its
// codes trimmed and upper-cased first (under the old case-blind comparison they
// were one client already). Returns the tables changed. SQLite's columns fold
// ASCII case only, which the client codes' rule makes harmless: nothing to do.
std::vector<std::string> fix_client_code_columns(Database& db);

// The column type of a client code on this backend (byte-for-byte comparison), for
// tables made after the shared ones.
std::string client_code_type(const Database& db);

std::string register_opening_table(int year);   // "NewFATRo2015"
std::string register_addition_table(int year);  // "NewFATRa2015"

}  // namespace brenlow::store
