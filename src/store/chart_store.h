#pragma once
// The income-tax depreciation chart of a client's year as stored rows: DeprChart
// (the chart edited by hand) and TmpDepChart (the chart the register builds, or the
// copy of the hand-edited one that previews and the return forms read).

#include <string>
#include <string_view>
#include <vector>

#include "depreciation/chart.h"
#include "store/database.h"

namespace brenlow::store {

enum class ChartTable { DeprChart, TmpDepChart };

// Replaces the client's TmpDepChart rows of the year with these, all or nothing:
// delete, flush, one insert a row, flush.
void rewrite_built_chart(Database& db, std::string_view code, int year,
                         const std::vector<depreciation::ChartRow>& rows);

// Replaces the client's TmpDepChart rows of the year with a copy of its DeprChart rows.
void copy_hand_edited_chart(Database& db, std::string_view code, int year);

// Replaces the client's DeprChart rows of the year (the manual chart editors save so).
void rewrite_hand_edited_chart(Database& db, std::string_view code, int year,
                               const std::vector<depreciation::ChartRow>& rows);

std::vector<depreciation::ChartRow> read_chart(Database& db, ChartTable table, std::string_view code,
                                               int year);

// Additional depreciation of plant and machinery at 15, 30 and 40 per cent in the
// stored chart: what the concessional regimes forbid.
depreciation::AdditionalSums additional_in_stored_chart(Database& db, ChartTable table, std::string_view code,
                                                        int year);

}  // namespace brenlow::store
