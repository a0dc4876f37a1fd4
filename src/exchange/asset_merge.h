#pragma once
// frmmerge: register entries of one asset group merged into one entry. Costs,
// depreciation to date, written down values, residual values and sale figures are
// added; the earliest date of put to use and the latest date of sale are kept; the
// rest comes from the first entry chosen, which keeps its serial. The old rows are
// staged in the work tables MergDepr1 (opening entries) / MergDepr2 (additions) and the
// tables are dropped afterwards.
//
// Entries merge only when the block cannot tell: one group, one side (all opening or
// all additions), the same income-tax and additional rates, all sold or none, and
// additions on the same side of the half-rate line. The merged entry then passes the
// register's entry gate like any other (a merged residual value above 5% of the merged
// cost is asked about); a refusal, or a question answered No, merges nothing.

#include <string>
#include <vector>

#include "controls/ui_port.h"
#include "frame/component.h"
#include "register/entry_gate.h"
#include "store/database.h"

namespace brenlow::exchange {

enum class MergeSide { Opening, Addition };

struct MergeResult {
    std::string refusal;       // empty when merged
    bool answered_no = false;  // the refusal is a question of the entry rules answered No
    long serial = 0;           // the merged entry's serial
};

MergeResult merge_entries(store::Database& db, const std::string& code, int year, MergeSide side,
                          const std::vector<long>& serials, const reg::RuleAnswers& answers);

// The screen: entries chosen in the register of the open client-year.
class frmmerge {
public:
    frmmerge(frame::Component& component, Ui& ui);
    MergeSide side = MergeSide::Opening;
    std::vector<long> chosen;
    bool cmdMerge_Click();

private:
    frame::Component& comp_;
    Ui& ui_;
};

}  // namespace brenlow::exchange
