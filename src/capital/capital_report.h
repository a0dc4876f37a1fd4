#pragma once
// The printed capital schedule: for each partner his Capital A/c and Current A/c,
// every line on its side and the closing balance, under the client's name and the
// financial year.

#include "suite/report.h"

namespace brenlow::capital {

class capital;

Ostikreport::ReportDocument capital_schedule_report(const capital& screen);

}  // namespace brenlow::capital
