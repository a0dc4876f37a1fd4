#pragma once
// The capital-gains records of depreciable assets that the transfer wrote (capital_depr
// rows marked trblock 'Y'): one a block that ended nil, each a short-term capital gain
// (or loss) under section 50. The command line lists them; the register screen shows
// them after the transfer.

#include <string>
#include <vector>

#include "register/chart_report.h"
#include "store/transfer_store.h"
#include "suite/report.h"

namespace brenlow::reg {

// The text each row carries as its nature.
inline constexpr const char* kShortTermUs50 = "short-term u/s 50";

// The rows the transfer wrote for the client's year, in their capital numbers' order.
std::vector<store::CapitalGainRow> transferred_capital_gains(store::Database& db, const std::string& code,
                                                             int year);

// The rows as a printed list: block, date of last sale, consideration, WDV, additions,
// expenses, gain, nature; and a total of the gains.
Ostikreport::ReportDocument capital_gains_report(const std::vector<store::CapitalGainRow>& rows, int year,
                                                 const PrintedClient& client);

}  // namespace brenlow::reg
