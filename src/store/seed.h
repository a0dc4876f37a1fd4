#pragma once
// The masters the suite ships filled: income-tax blocks by year (NewITBM), the
// Companies Act classification (NewCLBM), schedule groups, trial-balance groups,
// depreciation methods, reserves and investment kinds, and the reserved block row.

#include <string>

#include "store/database.h"

namespace brenlow::store {

// Folder of the shipped reference data: $BRENLOW_DATA_DIR, else "data" beside the
// program, else the source tree's data folder.
std::string reference_data_dir(const std::string& exe_dir = {});

// Fills every master that is still empty; a master that has rows is left alone.
// Throws DbError, or std::runtime_error when a data file is missing or malformed.
void seed_masters(Database& db, const std::string& data_dir);

// Every master seed_masters fills has rows: read only, no statement that writes.
bool masters_seeded(Database& db);

// A year outside the shipped range gets the block and classification lists of the
// nearest shipped year, so every year the suite opens has its lists.
void ensure_year_masters(Database& db, int year);

// The income-tax block identifier of a nature and rate: "3-15" is machinery and
// plant at 15%; its Appendix entries are "3-15.1", "3-15.2", ...
std::string it_block_id(int nature, double rate);
// Nature number of a block group name ("MACHINERY AND PLANT" -> 3), 0 when unknown.
int it_nature_of(const std::string& group_name);

}  // namespace brenlow::store
