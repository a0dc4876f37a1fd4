#pragma once
// The one gate every register row passes on its way into the tables, whatever brings
// it: the entry frame's Update (and the command line, which drives the frame), the JSON
// and spreadsheet imports, the import of last year's fixed-asset schedule, a merge of
// entries and the carry-forward. Each row is read back as a draft and put through the
// entry rules (entry_rules.h): its adjustment rows, its shift rows against the group it
// is written to, then the checks of Update, in that order and with the same messages.
//
// Questions go to whoever can answer them: the person at a screen, or `--yes` given
// beforehand on the command line; a question answered No stops the row like a refusal.
// Notices are told. Nothing here writes.

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/ui_port.h"
#include "register/entry_rules.h"
#include "store/register_store.h"

namespace brenlow::reg {

// Who answers the rules' questions and hears their notices.
struct RuleAnswers {
    std::function<bool(const Finding& question)> ask;
    std::function<void(const Finding& notice)> tell;
};

// The person, through a screen's Ui (or the command line's, which answers for them).
RuleAnswers answers_of(Ui& ui);

// Questions answered before they are put: Yes with `yes`, else No. Every question
// answered Yes and every notice is kept in `heard`, one line each, so the command can
// name them.
RuleAnswers answered_beforehand(bool yes, std::vector<std::string>* heard);

// A box's text as one line: the blank line before "Continue ?" becomes a space.
std::string one_line(std::string_view message);

// Puts the findings to the answers in their order. The first refusal, or the first
// question answered No, is returned and nothing after it is put.
std::optional<Finding> pass_findings(const std::vector<Finding>& findings, const RuleAnswers& answers);

// Refused for every way in while the client keeps the old chart for the year.
inline constexpr const char* kOldChartRefusal = "The client keeps the old depreciation chart for this year.";

// The field of an asset group (NewFAGM column) where a document's group differs from
// the year's group of the same name, comparing what classifies it: name, blocks, rates
// and life. nullopt when they agree.
std::optional<std::string> group_difference(const store::AssetGroupRow& year_group,
                                            const store::AssetGroupRow& other);

// The year's side of the gate: its groups, their NESD flags, its options.
class EntryGate {
public:
    EntryGate(store::RegisterStore& reg, std::optional<std::string> options_row = std::nullopt);

    bool old_chart();
    // A group rows may name besides the year's own: one about to be made, or the year's
    // group a document's group was matched to.
    void know_group(long id, const store::AssetGroupRow& group);

    EntryContext context_of(long group_id);
    // Every finding of a row, in the order the entry frame gives them.
    std::vector<Finding> findings(const store::OpeningRow& o);
    std::vector<Finding> findings(const store::AdditionRow& a);

private:
    store::RegisterStore& reg_;
    RegisterOptions options_;
    std::map<long, store::AssetGroupRow> groups_;
    std::map<std::string, bool> nesd_;  // BlockIdCL -> no extra shift
    std::optional<bool> old_chart_;
};

}  // namespace brenlow::reg
