#pragma once
// What a calculation run wants the person to see. The engine shows nothing: it
// returns each warning once per run, and marks it to be shown only when the run
// was started interactively. The caller shows the ones marked `show`.

#include <string>
#include <vector>

namespace brenlow::depreciation {

enum class WarningKind {
    NegativeOpeningWdv,
    NoAssets,
    CarriedHalfNotCalculated,
    NoExtraShift,
};

struct Warning {
    WarningKind kind;
    std::string text;
    bool show = false;  // true only in an interactive run
};

// Collects the warnings of one run; a second warning of the same kind is dropped.
class WarningLog {
public:
    explicit WarningLog(bool interactive) : interactive_(interactive) {}
    void raise(WarningKind kind, std::string text);
    bool has(WarningKind kind) const;
    std::vector<Warning> take() { return std::move(warnings_); }

private:
    bool interactive_;
    std::vector<Warning> warnings_;
};

}  // namespace brenlow::depreciation
