#pragma once
// The income-tax chart of a year edited by hand (DeprChart): what the return forms and
// the e-filing read instead of the built chart once MANDEP is 1. Every amount of a
// block row may be edited; its total depreciation and closing WDV follow the row's own
// arithmetic:
//   TotDep = DeprF + DeprH + ADeprF + ADeprH + ADeprOpH
//   WdvCl  = FullAmt + HalfAmt + (the Wdv of the block's Rate -40 row, the part kept
//            apart) - the depreciation allowed (TotDep less Dep38, or the proportionate
//            share PropDep where one is given)
// A Rate -40 row is kept as it is. Saving and clearing are refused for a closing year
// of 2026 or later ("Not Available as ITR Forms for A.Y. 2026-27 have not been notified
// yet.").

#include <optional>
#include <string>
#include <vector>

#include "depreciation/chart.h"
#include "suite/tarrow_base.h"

namespace brenlow::reg {

// The rows with TotDep and WdvCl worked from their own amounts.
std::vector<depreciation::ChartRow> settle_chart_rows(std::vector<depreciation::ChartRow> rows);

// Writes the rows (settled) as the client's hand-edited chart of the year, sets MANDEP
// to 1 and makes the stored chart follow it. The refusal's text when the year is gated.
std::optional<std::string> save_hand_edited_chart(TarrowBase::ClsMain& base, const std::string& code,
                                                  int year, std::vector<depreciation::ChartRow> rows);
// Removes the hand-edited chart and sets MANDEP back to 0; the next calculation builds
// the chart again.
std::optional<std::string> clear_hand_edited_chart(TarrowBase::ClsMain& base, const std::string& code,
                                                   int year);

}  // namespace brenlow::reg
