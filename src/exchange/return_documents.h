#pragma once
// The return's documents written from the register's figures: the depreciation
// schedules of the income-tax return (ScheduleDPM, ScheduleDOA, ScheduleDEP and
// ScheduleDCG under {"ITR": {"ITR6": {...}}}) and clause 18 of the tax audit report as
// the audit utility's JSON (Form3cdDeprAllw, one object a block). Amounts are whole
// rupees; only CapGainUs50 and the capital-gain summaries may be negative.

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "register/itr_schedules.h"
#include "register/tax_audit.h"

namespace brenlow::exchange {

nlohmann::ordered_json itr_schedules_json(const reg::ItrSchedules& schedules);

// The keys a DepreciationDetail of a line carries: the 45% plant line has no half-rate
// or additional items, the other assets no additional ones, land only its first and
// last WDV.
std::vector<std::string> depreciation_detail_keys(reg::ScheduleSlot slot);

// Refusals before writing: two blocks under one description (the utility wants each
// once). Empty when the document may be written.
std::vector<std::string> form3cd_refusals(const std::vector<reg::Clause18Block>& blocks);
nlohmann::ordered_json form3cd_depreciation_json(const std::vector<reg::Clause18Block>& blocks);

}  // namespace brenlow::exchange
