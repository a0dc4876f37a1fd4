#pragma once
// A schedule printed through the report object: titled with the schedule, the client
// and the financial year, its lines as the grid shows them with amounts "#,##0.00",
// and a total line under the amount columns.

#include <string>
#include <vector>

#include "schedules/schedule_grids.h"
#include "schedules/schedule_kinds.h"
#include "store/schedule_store.h"
#include "suite/report.h"

namespace brenlow::schedules {

// Who and when a print is for.
struct PrintedFor {
    std::string code;
    std::string name;  // "" when unknown
    int year = 0;      // calendar year in which the financial year ends
};
// The client's name as the client-year master keeps it.
PrintedFor printed_for(store::Database& db, const std::string& code, int year);

// "Secured Loans", "Unsecured Loans", or the schedule's title.
std::string printed_title(const SchedKind& kind);

// The schedule of a table's rows (the share application money a row of its own).
Ostikreport::ReportDocument schedule_report(const SchedKind& kind, const std::vector<store::FieldRow>& rows,
                                            const SchedLists& lists, const PrintedFor& client);

}  // namespace brenlow::schedules
