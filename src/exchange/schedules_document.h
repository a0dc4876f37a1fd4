#pragma once
// A client's balance-sheet schedules of one year as a JSON document: each schedule
// table's rows of the client, each row an object keyed by the table's own column
// names (the client code left out: the document does not bind its target).
//
//   { "format": "brenlow-schedules", "version": 1, "client": "C001", "year": 2025,
//     "SHARE_": [ {"srno": 1, "no_share": 10000, "RS_SHARE1": 10, "RS_SHARE": 10,
//                  "ref_ep": "E", "sam": null, "four_id": 1}, ... ],
//     "RESV_": [ ... ], "SECUR_": [ ... ], "INVEST_": [ ... ], "LOAN_ADV_": [ ... ],
//     "MiscExpAsst_": [ ... ], "SUNDEB_": [ ... ], "BANK_": [ ... ] }
//
// Import checks every row of every table with the schedule screen's own rules (the
// same messages) before it writes anything; an error names the table, the row
// (counted from 1) and the field.

#include <functional>
#include <string>
#include <vector>

#include "store/database.h"
#include "store/fixed_schedule_store.h"

namespace brenlow::exchange {

// The document of the client's year, as JSON text (two-space indented): the schedule
// tables and the per-particular fixed-asset schedule (FIXED_, FDA_).
std::string export_schedules(store::Database& db, const std::string& code, int year);

struct SchedulesImportResult {
    std::vector<std::string> errors;  // nothing was written when there are any
    int tables = 0;
    int rows = 0;
};

// Reads a document into the client's year (which must exist). A table the document
// holds replaces the client's rows of that table only with `replace`; without it a
// table that already has rows of the client refuses the import.
// The fixed-asset schedule of a document is saved by `save_fixed` (the schedule
// screen's own save, with its checks and questions), after every other table is
// checked and before any is written; false from it writes nothing. Without it, a
// document with FIXED_ rows is refused.
using SaveFixedSchedule =
    std::function<bool(const store::FixedScheduleRows&, std::vector<std::string>& errors)>;
SchedulesImportResult import_schedules(store::Database& db, const std::string& code, int year,
                                       const std::string& json, bool replace,
                                       const SaveFixedSchedule& save_fixed = {});

}  // namespace brenlow::exchange
