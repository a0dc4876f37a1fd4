#include "schedules/schedule_carry.h"

#include <cstdlib>

#include "store/schedule_store.h"

namespace brenlow::schedules {
namespace {

int last_four(const std::string& date) {
    return date.size() >= 4 ? std::atoi(date.substr(date.size() - 4).c_str()) : 0;
}

}  // namespace

std::string previous_year_suffix(TarrowBase::ClsMain& base) {
    std::string previous = base.PYrInd() > 0 ? base.GetTbName(base.PYrInd()) : std::string();
    if (previous.empty()) {
        const int first = last_four(base.FirstDate()) - 1, second = last_four(base.SecondDate()) - 1;
        if (const auto count = store::client_year_count(base.dbobj(), base.Temp_Code(), first, second))
            previous = base.GetTbName(*count);
    }
    return previous;
}

int offer_carry_forward(store::Database& db, Ui& ui, const SchedKind& kind, const std::string& suffix,
                        const std::string& previous_suffix, const std::string& code) {
    if (previous_suffix.empty() || !carries_forward(kind)) return 0;
    if (store::schedule_has_rows(db, kind.stem, suffix, code)) return 0;
    if (!db.table_exists(std::string(kind.stem) + previous_suffix)) return 0;
    if (!store::schedule_has_rows(db, kind.stem, previous_suffix, code)) return 0;
    if (!ui.ask_yes_no(kCarryForwardQuestion, MsgIcon::question)) return 0;
    return store::carry_forward_schedule(db, kind.stem, suffix, previous_suffix, code);
}

}  // namespace brenlow::schedules
