#include "depreciation/regime_check.h"

namespace brenlow::depreciation {

ManualChartGate manual_chart_gate(int closing_year) {
    ManualChartGate g;
    if (closing_year >= 2026) {
        g.allowed = false;
        g.message = "Not Available as ITR Forms for A.Y. 2026-27 have not been notified yet.";
    }
    g.editor = closing_year < 2018   ? ChartEditor::Before2018
               : closing_year < 2020 ? ChartEditor::Years2018And2019
                                     : ChartEditor::From2020;
    return g;
}

namespace {

// The section whose option forbids additional depreciation, or nullptr. Statuses that
// count for each flag: 115BA/115BAA/115BAB a company; 115BAC an individual or HUF from
// the year closing 2021, and also an AOP, BOI or artificial juridical person from the
// year closing 2024; 115BAD and 115BAE a co-operative society, from 2021 and 2024.
const char* forbidding_section(int year, AssesseeStatus s, const RegimeFlags& f) {
    if (f.vFlagCompDom115BA && s == AssesseeStatus::Company) return "115BA/115BAA/115BAB.";
    if (year >= 2021 && f.vFlagIndHUF115BAC) {
        if (s == AssesseeStatus::Individual || s == AssesseeStatus::HUF) return "115BAC.";
        if (year >= 2024 &&
            (s == AssesseeStatus::AOP || s == AssesseeStatus::BOI || s == AssesseeStatus::AJP))
            return "115BAC.";
    }
    if (year >= 2021 && f.vFlagCopSoc115BAD && s == AssesseeStatus::CoopSociety) return "115BAD.";
    if (year >= 2024 && f.vFlagCopSoc115BAE && s == AssesseeStatus::CoopSociety) return "115BAE.";
    return nullptr;
}

}  // namespace

std::string concessional_section(int closing_year, AssesseeStatus status, const RegimeFlags& flags) {
    const char* section = forbidding_section(closing_year, status, flags);
    return section ? section : "";
}

RegimeDecision concessional_regime_check(int closing_year, AssesseeStatus status, const RegimeFlags& flags,
                                         const AdditionalSums& sums, bool hand_edited_chart) {
    RegimeDecision d;
    const char* section = forbidding_section(closing_year, status, flags);
    if (section == nullptr) return d;
    if (sums.ADeprF == 0 && sums.ADeprH == 0 && sums.ADeprOpH == 0) return d;
    d.refused = true;
    d.message = std::string("Additional Depreciation is not allowed, if opted for taxation u/s ") + section;
    if (hand_edited_chart) {
        d.message +=
            "\n\nIn this case Manually Edited Depreciation chart will be considered for E-Filing purpose and "
            "Return Form but additional depreciation will remain same in Preview of Depreciation chart.";
    }
    const ManualChartGate gate = manual_chart_gate(closing_year);
    if (!gate.allowed) {
        d.gate_message = gate.message;
        return d;
    }
    d.question = hand_edited_chart
                     ? "Do you want to delete additional depreciation from 'Edit Chart Manually'?"
                     : "Do you really want to delete additional depreciation?";
    return d;
}

}  // namespace brenlow::depreciation
