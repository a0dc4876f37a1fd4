#pragma once
// The kind of assessee, beyond the suite's four statuses, where the law tells them
// apart (the concessional regimes of sections 115BA to 115BAE): its key as kept with
// the client, its name as a dialog shows it, and the id-and-text list a combo box
// takes ("#individual;Individual|#huf;Hindu Undivided Family|...").

#include <optional>
#include <string_view>

#include "controls/id_text_list.h"

namespace brenlow {

enum class AssesseeKind {
    Individual,
    HUF,
    Firm,
    LLP,
    AOP,  // association of persons
    BOI,  // body of individuals
    AJP,  // artificial juridical person
    Company,
    CoopSociety,
    LocalAuthority,
    Other
};

struct AssesseeKindName {
    AssesseeKind kind;
    std::string_view key;   // kept with the client: "individual", "huf", "firm", ...
    std::string_view name;  // "Individual", "Hindu Undivided Family", ...
};

// Every kind, in the order a dialog lists them.
const AssesseeKindName* assessee_kinds_begin();
const AssesseeKindName* assessee_kinds_end();

std::string_view assessee_kind_key(AssesseeKind kind);
std::string_view assessee_kind_name(AssesseeKind kind);
// The kind of a key ("aop", "boi", also "aop/boi" for an association of persons);
// nullopt for any other text.
std::optional<AssesseeKind> assessee_kind_of_key(std::string_view key);

// The id-and-text list of the kinds, ids their keys.
IdTextList assessee_kind_list();

// The kind a client of the suite's status (1 individual or proprietor, 2 firm, 3 and
// 4 companies) is taken to be when no kind was recorded.
AssesseeKind assessee_kind_of_status(int status);

}  // namespace brenlow
