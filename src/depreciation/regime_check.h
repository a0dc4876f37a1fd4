#pragma once
// Two decisions around the income-tax chart, returned as text for the caller to show:
// the year gate of manual chart editing (and of removing additional depreciation),
// and the concessional-regime check that refuses additional depreciation.
// Inputs: the closing year, the assessee's status and regime flags, the additional
// depreciation summed from the chart. Outputs: the decision and its message texts.

#include <string>

#include "controls/assessee_kind.h"
#include "depreciation/chart.h"

namespace brenlow::depreciation {

enum class ChartEditor { Before2018, Years2018And2019, From2020 };

struct ManualChartGate {
    bool allowed = true;
    std::string message;  // the refusal when not allowed
    ChartEditor editor = ChartEditor::From2020;
};

ManualChartGate manual_chart_gate(int closing_year);

// The kind of assessee the regime flags count for (the client's recorded kind, else
// the kind of its status).
using AssesseeStatus = AssesseeKind;

struct RegimeFlags {
    bool vFlagCompDom115BA = false;
    bool vFlagIndHUF115BAC = false;
    bool vFlagCopSoc115BAD = false;
    bool vFlagCopSoc115BAE = false;
};

struct RegimeDecision {
    bool refused = false;      // additional depreciation found under a concessional regime
    std::string message;       // "Additional Depreciation is not allowed, ..." (with the manual-chart note)
    std::string question;      // Yes removes the additional depreciation; empty when removal is gated
    std::string gate_message;  // the year gate's refusal of the removal, when it applies
};

// The section the assessee opted for that forbids additional depreciation in the year
// ("115BA/115BAA/115BAB.", "115BAC.", "115BAD.", "115BAE."), or "" when none does.
std::string concessional_section(int closing_year, AssesseeStatus status, const RegimeFlags& flags);

RegimeDecision concessional_regime_check(int closing_year, AssesseeStatus status, const RegimeFlags& flags,
                                         const AdditionalSums& sums, bool hand_edited_chart);

}  // namespace brenlow::depreciation
