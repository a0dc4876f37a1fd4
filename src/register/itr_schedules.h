#pragma once
// The depreciation schedules of the income-tax return, filled from the year's
// income-tax chart: Schedule DPM (plant and machinery by rate), Schedule DOA (other
// blocks), their summary Schedule DEP and the deemed capital gains Schedule DCG.
//
// Each chart row goes to the schedule's line of its group and rate (15/30/40/45 for
// plant and machinery; 5/10/40 building; 10 furniture; 25 intangibles; 20 ships); a
// block with no line in the schedule is refused with its name and rate, never left
// out. Amounts are whole rupees. Before anything is written the figures pass the
// return's own checks: each line's arithmetic, no additional depreciation under a
// concessional regime, no rate above 40% under one.
//
// The return form follows the kind of assessee: ITR-3 an individual or HUF, ITR-6 a
// company, ITR-5 every other person (firm, LLP, AOP, BOI, co-operative society ...).

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/assessee_kind.h"
#include "depreciation/regime_check.h"
#include "register/calculation.h"
#include "suite/tarrow_base.h"

namespace brenlow::reg {

enum class ItrForm { ITR3, ITR5, ITR6 };

std::string_view itr_form_name(ItrForm form);  // "ITR3", "ITR5", "ITR6"
std::optional<ItrForm> itr_form_of_name(std::string_view name);
ItrForm itr_form_of_kind(AssesseeKind kind);

// The first register year whose return falls under the Income-tax Act, 2025 (F.Y.
// 2026-27, the "tax year" 2026-27).
constexpr int kFirstTaxYear2025Act = 2027;
bool under_act_2025(int closing_year);
// Why no return schedule is written for the year, or empty when one is.
std::string return_schema_unknown(int closing_year);

// One line of Schedule DPM or DOA, in whole rupees; the item numbers of the plant and
// machinery schedule.
struct DepreciationDetail {
    std::int64_t WDVFirstDay = 0;                         // 3
    std::int64_t AdditionsGrThan180Days = 0;              // 4
    std::int64_t RealizationTotalPeriod = 0;              // 5
    std::int64_t FullRateDeprAmt = 0;                     // 6 = max(0, 3+4-5)
    std::int64_t AdditionsLessThan180Days = 0;            // 7
    std::int64_t RealizationPeriodDuringYear = 0;         // 8
    std::int64_t HalfRateDeprAmt = 0;                     // 9 = max(0, 7-8+min(0, 3+4-5))
    std::int64_t DepreciationAtFullRate = 0;              // 10 = 6 x rate / 100
    std::int64_t DepreciationAtHalfRate = 0;              // 11 = 9 x rate / 200
    std::int64_t AddlnDeprOnGT180DayAdditions = 0;        // 12
    std::int64_t AddlnDeprDuringYearAdditions = 0;        // 13
    std::int64_t AddlnDeprOnLessThan180DayAdditions = 0;  // 14: the half carried from last year
    std::int64_t TotalDepreciation = 0;                   // 15 = 10+11+12+13+14
    std::int64_t DepDisAllowUs38_2 = 0;                   // 16
    std::int64_t NetAggregateDepreciation = 0;            // 17 = max(0, 15-16)
    std::int64_t ProportionateAggDepreciation = 0;        // 18
    std::int64_t ExpdrOnTrforSaleAsset = 0;               // 19
    std::int64_t CapGainUs50 = 0;                         // 20 = 5+8-3-4-7-19 when the block ceases
    std::int64_t WDVLastDay = 0;                          // 21 = max(0, 6+9-15)

    friend bool operator==(const DepreciationDetail&, const DepreciationDetail&) = default;
};

// The lines of the schedules, each a key of the return.
enum class ScheduleSlot {
    PlantRate15,
    PlantRate30,
    PlantRate40,
    PlantRate45,
    Land,
    BuildingRate5,
    BuildingRate10,
    BuildingRate40,
    FurnitureRate10,
    IntangibleRate25,
    ShipsRate20,
};

struct SlotInfo {
    ScheduleSlot slot;
    bool plant;              // Schedule DPM; else DOA
    std::string_view group;  // "PlantMachinery", "Building", "FurnitureFittings", ...
    std::string_view rate;   // "Rate15", ...; empty for land
    double percent;
    // The 45% plant line and the other assets carry no additional depreciation; the 45%
    // line and land have no half-rate items either.
    bool half_rate;
    bool additional;
};
const SlotInfo& slot_info(ScheduleSlot slot);
// The line of a chart group and rate; nullopt when the schedule has none.
std::optional<ScheduleSlot> slot_of(int grp, double rate);

struct ScheduleLine {
    ScheduleSlot slot;
    std::string block;  // the block's name and rate, as the chart prints it
    DepreciationDetail detail;
};

struct ItrSchedules {
    int year = 0;
    ItrForm form = ItrForm::ITR6;
    std::vector<ScheduleLine> lines;  // in the order of the slots
};

// What Schedule DEP takes from a line: the proportionate depreciation when above nil,
// else the net aggregate.
std::int64_t depreciation_allowed(const DepreciationDetail& d);

// The schedules of a run, or the refusal: a block without a line, a line whose
// figures break the arithmetic, an amount outside the return's bounds. The refusal
// names the block and the figure.
struct ItrBuild {
    ItrSchedules schedules;
    std::vector<std::string> refusals;
};
ItrBuild itr_schedules(const CalculationResult& run, ItrForm form);

// The concessional-regime checks of the return on built schedules: additional
// depreciation, and any depreciation above 40%. Empty when they pass.
struct ReturnRegime {
    AssesseeKind kind = AssesseeKind::Company;
    depreciation::RegimeFlags flags;
};
std::vector<std::string> regime_refusals(const ItrSchedules& s, const ReturnRegime& regime);

// The schedules of the client's year selected in the base services, the way the chart
// command computes them: the calculation run (the hand-edited chart where the client
// chose it), the form of the client's kind unless `form` names one, then every check.
// Nothing in the result may be written while `refusals` is not empty.
ItrBuild return_schedules(TarrowBase::ClsMain& base, const std::string& code, int year,
                          std::optional<ItrForm> form = std::nullopt);

}  // namespace brenlow::reg
