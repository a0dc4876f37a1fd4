#include "depreciation/warnings.h"

#include <algorithm>

namespace brenlow::depreciation {

void WarningLog::raise(WarningKind kind, std::string text) {
    if (has(kind)) return;
    warnings_.push_back(Warning{kind, std::move(text), interactive_});
}

bool WarningLog::has(WarningKind kind) const {
    return std::any_of(warnings_.begin(), warnings_.end(),
                       [kind](const Warning& w) { return w.kind == kind; });
}

}  // namespace brenlow::depreciation
