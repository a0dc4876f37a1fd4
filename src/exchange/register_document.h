#pragma once
// A client's register of one year as a JSON document: its asset groups (NewFAGM),
// both register tables (NewFATRo, NewFATRa) and its options row (NewFAMI), each row
// an object keyed by the tables' own column names.
//
//   { "format": "brenlow-register", "version": 1, "client": "C001", "year": 2025,
//     "NewFAGM": [ {"SrNoFAGM": 1, "Yr": 2025, "Part": "PLANT", ...}, ... ],
//     "NewFATRo": [ {"Code_No": "C001", "SrNoFATR": 1, "IdFAGM": 1, ...}, ... ],
//     "NewFATRa": [ ... ], "NewFAMI": [ {"Code_No": "C001", "Yr": 2025, "MiscInf": "..."} ] }
//
// Import checks every row before writing anything, with the register's own entry
// rules in their order (the same messages the screen shows); an error names the
// table, the row (counted from 1) and the field.

#include <functional>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

#include "store/database.h"

namespace brenlow::exchange {

// The document of the client's year, as JSON text (two-space indented).
std::string export_register(store::Database& db, const std::string& code, int year);

// The same text handed over in pieces, a row at a time, so that a register of any size
// goes to its file without being held whole.
using TextSink = std::function<void(std::string_view)>;
void export_register(store::Database& db, const std::string& code, int year, const TextSink& out);

struct ImportOptions {
    bool replace = false;  // delete the client's entries and options of the year first
    // Answers Yes to the entry rules' questions ("Continue ?") and takes a document of
    // another year; without it each of those refuses the import.
    bool yes = false;
    // A group of the document whose name the year already has for a group classified
    // otherwise (blocks, rates, life) is made anew beside it instead of refusing the rows.
    bool new_groups = false;
};

struct ImportResult {
    std::vector<std::string> errors;  // nothing was written when there are any
    int unanswered = 0;               // of them, the entry rules' questions ("Continue ?") answered No
    // The entry rules' questions answered Yes (by `yes`) and their notices, one line each,
    // with the row they came from.
    std::vector<std::string> answered;
    int groups_matched = 0;
    int groups_created = 0;
    int openings = 0;
    int additions = 0;
    bool options_written = false;
    std::string file;  // the workbook read, when it was chosen in a dialog
};

// Reads a document into the client's year (which must exist). Groups are matched by
// name and classification within the year, or created; entries get new serials after the client's
// largest; the document's own client and year do not bind the target.
ImportResult import_register(store::Database& db, const std::string& code, int year, const std::string& json,
                             const ImportOptions& options);
// The same from a file or any stream that can go back to its start: the document is
// read as it goes by, never held whole (the rows are, packed, for their checks).
ImportResult import_register(store::Database& db, const std::string& code, int year, std::istream& json,
                             const ImportOptions& options);

}  // namespace brenlow::exchange
