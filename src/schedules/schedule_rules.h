#pragma once
// What a schedule's lines must hold before they are saved, checked in the screen's
// order with the screen's messages; the screen's save and the document import both
// come here.

#include <optional>
#include <string>
#include <vector>

#include "schedules/schedule_kinds.h"
#include "store/schedule_store.h"

namespace brenlow::schedules {

inline constexpr const char* kSpecifyItem = "Please specify a item";
inline constexpr const char* kSpecifyItemDot = "Please specify a item.";
inline constexpr const char* kEachFieldRequired = "Each field is required";
inline constexpr const char* kAuthorisedBelowIssued =
    "Nos. of Authorised Shares cannot be Lesser than Issued Shares.";
inline constexpr const char* kPaidUpAboveRate =
    "Paid up Rate per Share Should be Less than Per Share Amount.";

struct Refusal {
    std::string message;
    int line = -1;       // the line refused, counted from 0
    std::string column;  // the column to put right
};

// The first refusal of a schedule's lines (the share application money aside).
std::optional<Refusal> check_schedule(const SchedKind& kind, const std::vector<store::FieldRow>& lines);

// "Share of Rs. 10 is not available.": issued shares of a rate no authorised line has.
std::string share_not_available(double rate);

// The column a line names its item by, for the "specify a item" refusal.
std::string item_column(const SchedKind& kind, const store::FieldRow& line);

}  // namespace brenlow::schedules

namespace brenlow::schedules {

// The columns an INVEST_ row of a type of investment writes, after srno and
// code_no; empty for a type that writes no row.
const std::vector<std::string>& invest_columns(int invest_id);

// The checked lines as their table keeps them: only the columns a line of its kind
// writes (a debenture its count and amount each, another loan its head and amount; an
// investment the columns of its type, none for an unknown type).
std::vector<store::FieldRow> written_rows(const SchedKind& kind, const std::vector<store::FieldRow>& lines);

}  // namespace brenlow::schedules
