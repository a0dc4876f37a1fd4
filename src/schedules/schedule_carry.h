#pragma once
// Last year's particulars brought into this year: the previous year of the open
// client-year, and the question asked of a schedule that has no rows yet.

#include <string>

#include "controls/ui_port.h"
#include "schedules/schedule_kinds.h"
#include "store/database.h"
#include "suite/tarrow_base.h"

namespace brenlow::schedules {

inline constexpr const char* kCarryForwardQuestion =
    "Do you want to carry forward previous year particulars ?";

// The table suffix of the year before the open one: through the previous year's
// number, else through the client's master row of the year before; "" when the
// client has no previous year.
std::string previous_year_suffix(TarrowBase::ClsMain& base);

// When this year's table holds no row of the client and last year's does, asks the
// question and on Yes copies last year's rows. Returns the rows copied (0 when not
// asked or answered No). Throws store::DbError.
int offer_carry_forward(store::Database& db, Ui& ui, const SchedKind& kind, const std::string& suffix,
                        const std::string& previous_suffix, const std::string& code);

}  // namespace brenlow::schedules
