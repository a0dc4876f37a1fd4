#pragma once
// A client's capital accounts of one year as a JSON document: the year's ratios and
// every line of CAPITAL_, keyed by its columns, with the particular's name beside
// its id.
//
//   { "format": "brenlow-capital", "version": 1, "client": "C001", "year": 2025,
//     "ratios": [ {"code": "1", "name": "ANIL SHAH", "rat": 50}, ... ],
//     "CAPITAL_": [ {"code": "1", "srno": 1, "actyp": 0, "nid": 2, "PARTICULAR_ID": 4,
//                    "Particular": "OPENING BALANCE", "AMT": 1000}, ... ],
//     "PRTN_TERMS": [ {"code": "1", "working": 1, "int_rate": 12, "remun": 240000}, ... ],
//     "PRTN_MOVES": [ {"code": "1", "dt": "15/10/2024", "amt": -50000}, ... ] }
//
// The deed's terms (PRTN_TERMS) and the dated moves of capital (PRTN_MOVES) may be left
// out: the year's terms are then kept as they are; given, both are replaced.
//
// Import replaces the client's ratios and lines of the year as the screen's saves do,
// in one group. A document without either table, or with another key, is refused.
// Every row is checked before anything is written: that it reads, that its partner
// is the client's, then the screen's own checks of a ratio and of a line in their
// order (a ratio a percentage, together 100; an amount from 0 to 15 digits). A
// particular is found by its name (made when missing), never by the document's id.

#include <string>
#include <vector>

#include "store/database.h"

namespace brenlow::exchange {

std::string export_capital(store::Database& db, const std::string& code, int year);

struct CapitalImportResult {
    std::vector<std::string> errors;  // nothing was written when there are any
    int lines = 0;
    int ratios = 0;
    int particulars_created = 0;
};
CapitalImportResult import_capital(store::Database& db, const std::string& code, int year,
                                   const std::string& json);

}  // namespace brenlow::exchange
