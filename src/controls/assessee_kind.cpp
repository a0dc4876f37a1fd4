#include "controls/assessee_kind.h"

#include <string>

namespace brenlow {
namespace {

constexpr AssesseeKindName kKinds[] = {
    {AssesseeKind::Individual, "individual", "Individual"},
    {AssesseeKind::HUF, "huf", "Hindu Undivided Family"},
    {AssesseeKind::Firm, "firm", "Partnership Firm"},
    {AssesseeKind::LLP, "llp", "Limited Liability Partnership"},
    {AssesseeKind::AOP, "aop", "Association of Persons"},
    {AssesseeKind::BOI, "boi", "Body of Individuals"},
    {AssesseeKind::AJP, "ajp", "Artificial Juridical Person"},
    {AssesseeKind::Company, "company", "Company"},
    {AssesseeKind::CoopSociety, "co-operative", "Co-operative Society"},
    {AssesseeKind::LocalAuthority, "local-authority", "Local Authority"},
    {AssesseeKind::Other, "other", "Other"},
};

}  // namespace

const AssesseeKindName* assessee_kinds_begin() {
    return std::begin(kKinds);
}

const AssesseeKindName* assessee_kinds_end() {
    return std::end(kKinds);
}

std::string_view assessee_kind_key(AssesseeKind kind) {
    for (const auto& k : kKinds)
        if (k.kind == kind) return k.key;
    return "other";
}

std::string_view assessee_kind_name(AssesseeKind kind) {
    for (const auto& k : kKinds)
        if (k.kind == kind) return k.name;
    return "Other";
}

std::optional<AssesseeKind> assessee_kind_of_key(std::string_view key) {
    if (key == "aop/boi") return AssesseeKind::AOP;
    for (const auto& k : kKinds)
        if (k.key == key) return k.kind;
    return std::nullopt;
}

IdTextList assessee_kind_list() {
    IdTextList list;
    for (const auto& k : kKinds) list.add(std::string(k.key), std::string(k.name));
    return list;
}

AssesseeKind assessee_kind_of_status(int status) {
    switch (status) {
        case 1:
            return AssesseeKind::Individual;
        case 2:
            return AssesseeKind::Firm;
        case 3:
        case 4:
            return AssesseeKind::Company;
        default:
            return AssesseeKind::Other;
    }
}

}  // namespace brenlow
