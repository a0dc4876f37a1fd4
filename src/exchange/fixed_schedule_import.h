#pragma once
// frmImport: a client's particulars, additions and deductions of the per-particular
// fixed-asset schedule of last year brought into the asset register of this year.
//
// Each particular becomes one opening entry of the register's year, under an asset
// group of the particular's name, blocks and rates (matched when the year has it, else
// made):
// - books: its closing gross block as cost, its closing depreciation to date as the
//   depreciation to the start of the year, its rate and method, no residual value;
//   the useful life of a straight-line particular is 100 / rate, taken as the remaining
//   life on 1 April 2014 (GETREMLIFEYRS, base year 2014, through the component's own
//   function, which logs a failure once) from the first day of the schedule's year, or
//   whole when that day is later;
// - income tax: its closing written down value, its rate under the block of the same
//   nature and rate (NewITBM "nature-rate"), additional depreciation rate, and the
//   remaining half carried on additions of last year put to use for less than 180 days.
// A particular "Does Not Consider for IT" stands outside every block; one that closed
// at nil on every side is left out.
//
// Every entry goes through the register's entry gate first, against the group it is
// written to; any refusal (or a question answered No) refuses the whole import and
// nothing is written. A year that keeps the old chart takes nothing. The writes hold
// "LOCK TABLE NewFAGM Write, NewFATRo<year> Write, NewFATRa<year> Write, BlockGroup Write".

#include <string>
#include <vector>

#include "controls/ui_port.h"
#include "frame/component.h"
#include "frame/error_log.h"
#include "register/entry_gate.h"
#include "store/database.h"

namespace brenlow::exchange {

struct ScheduleImportResult {
    std::vector<std::string> errors;  // nothing was written when there are any
    bool answered_no = false;         // the error is a question of the entry rules answered No
    int entries = 0;
    int groups = 0;  // distinct groups used
};

// Imports into the register of `year` (closing calendar year) from the schedule of the
// year before. The entry rules' questions go to `answers`; a failure of the remaining-life
// function is written to `log`.
ScheduleImportResult import_schedule(store::Database& db, frame::ErrorLog& log, const std::string& code,
                                     int year, const reg::RuleAnswers& answers);
// The same with the questions answered beforehand: Yes with `yes`, else No.
ScheduleImportResult import_schedule(store::Database& db, frame::ErrorLog& log, const std::string& code,
                                     int year, bool yes);

// The screen: the client-year the base services have open.
class frmImport {
public:
    frmImport(frame::Component& component, Ui& ui);
    // Asks, imports, and tells what was done; true when entries were written.
    bool cmdImport_Click();

private:
    frame::Component& comp_;
    Ui& ui_;
};

}  // namespace brenlow::exchange
