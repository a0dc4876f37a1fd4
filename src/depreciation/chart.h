#pragma once
// The income-tax depreciation chart of a year, as stored rows (DeprChart / TmpDepChart).
// Input: the block results of calculate_income_tax, the client code and year, and for
// the hand-edited case the MANDEP setting and the rows of the hand-edited chart.
// Output: the chart rows in the column order of the table; the store writes them.

#include <string>
#include <string_view>
#include <vector>

#include "depreciation/income_tax.h"

namespace brenlow::depreciation {

struct ChartRow {  // the DeprChart columns, in table order
    std::string Code_No;
    int FYr = 0;
    int Grp = 0;
    double Rate = 0;
    double Wdv = 0;
    double WdvOpHR = 0;
    double Add1 = 0;
    double Cons1 = 0;
    double FullAmt = 0;
    double Add2 = 0;
    double Cons2 = 0;
    double HalfAmt = 0;
    double DeprF = 0;
    double DeprH = 0;
    double ADeprF = 0;
    double ADeprH = 0;
    double ADeprOpH = 0;
    double TotDep = 0;
    double Dep38 = 0;
    double PropDep = 0;
    double Exp = 0;
    double CG = 0;
    double WdvCl = 0;

    friend bool operator==(const ChartRow&, const ChartRow&) = default;
};

// Chart group of a block by its group name and rate: 1 building, 2 furniture and fittings,
// 3 machinery and plant, 4 intangible assets, 5 ships, 6 anything else; 0 for land, which
// gets no row.
int chart_group(std::string_view block_name, double rate);

// The hand-edited chart replaces the built one when the caller allows it and the client's
// MANDEP setting is 1.
bool use_hand_edited_chart(bool allow_hand_edited, std::string_view MANDEP);

// One row per block (land left out), each followed where needed by its Rate -40 row.
// The calculation run writes these (unless the hand-edited chart replaces them).
std::vector<ChartRow> chart_rows_from_blocks(std::string_view code, int year, const ItRunResult& run);

// What a block holds apart from depreciation (additions not yet put to use, less what
// was set against them): in its closing WDV, in neither FullAmt nor HalfAmt.
double kept_apart(const ItBlockResult& block);

// The depreciation a chart row allows: TotDep less what section 38 disallows (Dep38);
// where a proportionate depreciation is given (PropDep: the share of a year of
// succession, amalgamation or demerger), that share, never more than the net. The WDV
// falls only by what is allowed.
double allowed_depreciation(const ChartRow& row);

// Sums of ADeprF, ADeprH and ADeprOpH over the plant-and-machinery rows (Grp 3) at 15, 30
// and 40 per cent: the additional depreciation that the concessional regimes forbid.
struct AdditionalSums {
    double ADeprF = 0;
    double ADeprH = 0;
    double ADeprOpH = 0;
};

}  // namespace brenlow::depreciation
