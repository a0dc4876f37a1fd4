#pragma once
// The writing half of every register import: entries read from a document or a
// workbook, checked row by row with the register's entry rules in the order of
// Update, and written in one transaction only when no row was refused. The readers
// (the JSON document, the spreadsheet) only turn their file into RegisterData.

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "exchange/register_document.h"
#include "register/entry_rules.h"
#include "store/database.h"
#include "store/register_store.h"

namespace brenlow::exchange {

// Rows kept packed for their checks: each text by its length, each amount only when it
// is not nil. A register of a million entries is held whole (every row is checked
// before any is written) in well under half the room its structs would take.
template <class RowT>
class PackedRows {
public:
    void push_back(const RowT& row);
    std::size_t size() const { return where_.size(); }
    bool empty() const { return where_.empty(); }
    RowT operator[](std::size_t i) const;  // the row as it was put in

private:
    std::vector<std::string> chunks_;                             // the bytes, up to a mebibyte each
    std::vector<std::pair<std::uint32_t, std::uint32_t>> where_;  // chunk and offset of each row
};

struct RegisterData {
    // Asset groups by the reader's own serial; entries refer to these or to a group of
    // the target year. A group is matched to the year's group of its name when they are
    // classified alike (blocks, rates, life), refused when they are not, or created.
    std::map<long, store::AssetGroupRow> groups;
    PackedRows<store::OpeningRow> openings;
    std::vector<bool> opening_read;  // the row's cells read cleanly (else it is not checked further)
    PackedRows<store::AdditionRow> additions;
    std::vector<bool> addition_read;
    std::optional<std::string> misc_inf;  // the options row, when the reader has one
    bool has_manual = false;
    std::vector<std::pair<long, double>> manual;  // NewFAMD: group (-1 none), amount
};

// Where a finding of an entry is shown: the reader names its row and field its own way.
using FindingPlace =
    std::function<std::string(reg::EntrySide side, std::size_t index, reg::EntryField field)>;

// Checks every entry of the data through the register's entry gate and, when nothing
// was refused and `errors` is empty, writes it all. A year that keeps the old chart
// takes nothing. Errors the reader found come in through `errors`.
ImportResult check_and_write(store::Database& db, const std::string& code, int year, RegisterData data,
                             const ImportOptions& options, const FindingPlace& place,
                             std::vector<std::string> errors);

}  // namespace brenlow::exchange
