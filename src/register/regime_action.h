#pragma once
// The concessional-regime check after an income-tax calculation, shared by the
// register's calculate button and the command line's chart: additional depreciation
// in the year's chart of an assessee taxed under a concessional section is refused,
// and on Yes removed (the chart without it becomes the hand-edited chart of the year).

#include <string>

#include "depreciation/regime_check.h"
#include "suite/tarrow_base.h"

namespace brenlow::reg {

// The decision for the client's year, read from the stored chart (the hand-edited one
// when the calculation copied it).
depreciation::RegimeDecision concessional_regime_decision(TarrowBase::ClsMain& base, const std::string& code,
                                                          int year, bool hand_edited);

// The removal on Yes: the chart without its additional depreciation is written as the
// hand-edited chart, MANDEP is set, and the built chart follows it.
void remove_additional_depreciation(TarrowBase::ClsMain& base, const std::string& code, int year,
                                    bool hand_edited);

}  // namespace brenlow::reg
