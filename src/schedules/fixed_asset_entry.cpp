// What may be typed into the fixed-asset schedule, row by row: the method lists, the
// source of a deduction, the typed depreciation for the year, deleting particulars and
// lines, the client's options, and additional depreciation under a concessional section.
// The window, the command line and the document import all come through here.

#include <algorithm>
#include <set>

#include "controls/id_text_list.h"
#include "controls/number_format.h"
#include "controls/vb_date.h"
#include "depreciation/regime_check.h"
#include "schedules/fixed_asset_schedule.h"
#include "store/client_store.h"

namespace brenlow::sched {
namespace {

constexpr const char* kAllMethods =
    "#4;NO DEPRECIATION|#3;OTHER METHOD|#2;STRAIGHT LINE METHOD|#1;WRITTEN DOWN VALUE";
constexpr long kOtherMethod = 3;

}  // namespace

std::vector<store::FdaRow>& FixedAssetSchedule::list_of(std::size_t row, SubView view) {
    auto& l = vsFixed.at(row);
    return view == SubView::Additions ? l.additions : view == SubView::Deductions ? l.deductions : l.carried;
}

std::string FixedAssetSchedule::method_list_of(std::size_t row) const {
    std::string list = method_list();
    const long id = row < vsFixed.size() ? vsFixed[row].row.method_id : 0;
    if (id == 0) return list;
    const IdTextList status_list = IdTextList::parse(list);
    const std::string key = std::to_string(id);
    for (const auto& item : status_list.items())
        if (item.id == key) return list;
    // A method the status's list lacks stays the row's own until the person picks another.
    const IdTextList all = IdTextList::parse(kAllMethods);
    for (const auto& item : all.items())
        if (item.id == key) return list + "|#" + item.id + ";" + item.text;
    return list;
}

std::string FixedAssetSchedule::source_list(std::size_t row) const {
    std::string list = "#0;(Opening)";
    if (row >= vsFixed.size()) return list;
    for (const auto& a : vsFixed[row].additions)
        list += "|#" + std::to_string(a.srno) + ";" +
                (a.particular.empty() ? vsFixed[row].row.PART_NM : a.particular);
    return list;
}

void FixedAssetSchedule::cmdAdd_Click() {
    vsFixed.emplace_back();
}

namespace {

constexpr const char* kDeleteQuestion = "Do you want to delele the selected item?";
constexpr const char* kDeleteTitle = "Delete Confirmation";

}  // namespace

bool FixedAssetSchedule::cmddel_Click(std::size_t row) {
    if (row >= vsFixed.size()) return false;
    if (!ui_.ask_yes_no(kDeleteQuestion, MsgIcon::question, false, kDeleteTitle)) return false;
    vsFixed.erase(vsFixed.begin() + static_cast<std::ptrdiff_t>(row));
    return true;
}

bool FixedAssetSchedule::delete_line(std::size_t row, SubView view, std::size_t line) {
    if (row >= vsFixed.size()) return false;
    auto& list = list_of(row, view);
    if (line >= list.size()) return false;
    if (!ui_.ask_yes_no(kDeleteQuestion, MsgIcon::question, false, kDeleteTitle)) return false;
    const long srno = list[line].srno;
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(line));
    // Deductions taken from a deleted addition are taken from the opening figures.
    if (view == SubView::Additions && srno != 0)
        for (auto& d : vsFixed[row].deductions)
            if (d.src == srno) d.src = 0;
    return true;
}

void FixedAssetSchedule::add_line(std::size_t row, SubView view) {
    auto& list = list_of(row, view);
    store::FdaRow a;
    a.ad_ded_id = static_cast<int>(view);
    for (const auto& o : list) a.srno = std::max(a.srno, o.srno);
    ++a.srno;
    list.push_back(a);
}

bool FixedAssetSchedule::set_source(std::size_t row, std::size_t line, long source) {
    if (row >= vsFixed.size() || line >= vsFixed[row].deductions.size()) return false;
    auto& d = vsFixed[row].deductions[line];
    if (source != 0) {
        const store::FdaRow* from = nullptr;
        for (const auto& a : vsFixed[row].additions)
            if (a.srno == source) from = &a;
        if (from == nullptr) {
            ui_.info(source_refusal(row, source));
            return false;
        }
        if (const auto refusal = deduction_date_refusal(d, *from)) {
            ui_.info(*refusal);
            return false;
        }
    }
    d.src = source;
    return true;
}

std::optional<std::string> deduction_date_refusal(const store::FdaRow& deduction,
                                                  const store::FdaRow& addition) {
    const auto dd = Date::parse(deduction.ad_date), ad = Date::parse(addition.ad_date);
    if (dd && ad && *dd < *ad)
        return "Date of Deduction can not be Lesser than Date of Addition i.e. " + ad->text();
    return std::nullopt;
}

std::string FixedAssetSchedule::source_refusal(std::size_t row, long source) const {
    return "Source of Deduction " + std::to_string(source) + " is not an addition of " +
           (row < vsFixed.size() ? vsFixed[row].row.PART_NM : std::string()) +
           ": choose (Opening) or one of its additions.";
}

void FixedAssetSchedule::type_depreciation(std::size_t row, std::optional<double> amount) {
    auto& f = vsFixed.at(row).row;
    if (f.method_id == kOtherMethod) {
        f.OTH_DEP = amount.value_or(0);
        f.deptick = 0;
        f.depamt = 0;
        return;
    }
    f.deptick = amount ? 1 : 0;
    f.depamt = amount.value_or(0);
}

bool FixedAssetSchedule::cmddepedit_Click() {
    const auto gate = depreciation::manual_chart_gate(year_);
    if (!gate.allowed) {
        ui_.info(gate.message);
        return false;
    }
    return true;
}

void FixedAssetSchedule::set_options(const ScheduleOptions& options) {
    store::set_client_others(db_, code_, count_,
                             others_with(store::client_others(db_, code_, count_), options));
    options_ = options;
}

std::string FixedAssetSchedule::concessional_section() const {
    auto& base = *comp_.base;
    const depreciation::RegimeFlags flags{base.vFlagCompDom115BA(), base.vFlagIndHUF115BAC(),
                                          base.vFlagCopSoc115BAD(), base.vFlagCopSoc115BAE()};
    return depreciation::concessional_section(year_, store::assessee_kind_of_client(db_, code_, status_),
                                              flags);
}

bool FixedAssetSchedule::regime_check() {
    if (concessional_section().empty()) return true;
    depreciation::AdditionalSums sums;
    for (const auto& f : figures()) {
        if (!f.it_considered) continue;
        sums.ADeprF += f.it.addl_full;
        sums.ADeprH += f.it.addl_half;
        sums.ADeprOpH += f.it.ADeprOpH;
    }
    auto& base = *comp_.base;
    const depreciation::RegimeFlags flags{base.vFlagCompDom115BA(), base.vFlagIndHUF115BAC(),
                                          base.vFlagCopSoc115BAD(), base.vFlagCopSoc115BAE()};
    // The schedule's figures are what the return forms take, as a chart edited by hand.
    const auto d = depreciation::concessional_regime_check(
        year_, store::assessee_kind_of_client(db_, code_, status_), flags, sums, true);
    if (!d.refused) return true;
    ui_.info(d.message);
    if (!d.gate_message.empty()) {
        ui_.info(d.gate_message);
        return false;
    }
    if (!ui_.ask_yes_no(d.question, MsgIcon::question, false)) return false;
    for (auto& l : vsFixed) {
        l.row.AddDepRt = 0;
        for (auto& a : l.additions) a.adddepapp = "0";
        l.carried.clear();
    }
    return true;
}

}  // namespace brenlow::sched
