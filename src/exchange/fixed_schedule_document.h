#pragma once
// The FIXED_ and FDA_ rows of a client-year as JSON, each row an object keyed by the
// tables' own column names (FIXED_ rows also carry the particular's name, PART_NM), for
// the schedules document and for `brenlow schedules fixed export|import`:
//
//   { "FIXED_": [ {"compit_id": 1, "srno": 1, "ref_id": 4, "PART_NM": "PLANT", "OP_BAL": ...}, ... ],
//     "FDA_":   [ {"srno": 1, "ad_ded_id": 1, "ref_id": 4, "particular": "LATHE", "cost": ...}, ... ] }
//
// Reading checks every row and names the table, the row (from 1) and the field of each
// fault; nothing is returned when there is one.

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "store/fixed_schedule_store.h"

namespace brenlow::exchange {

// Adds "FIXED_" and "FDA_" to `doc`.
void write_fixed_schedule(nlohmann::ordered_json& doc, const store::FixedScheduleRows& rows);
// Reads them back; `errors` gets one line per fault.
store::FixedScheduleRows read_fixed_schedule(const nlohmann::ordered_json& doc,
                                             std::vector<std::string>& errors);
// A whole fixed-asset schedule document ("format": "brenlow-fixed-schedule"), both
// tables required.
store::FixedScheduleRows read_fixed_schedule_document(const std::string& text,
                                                      std::vector<std::string>& errors);

}  // namespace brenlow::exchange
