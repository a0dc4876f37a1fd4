#pragma once
// The books calculation sheet: title, headings, entries grouped under "Tangible Assets",
// "Intangible Assets" and "Non-Depreciable Assets", each headed by its particulars, its
// method and its life and rate, then its figures; "Grand Total" last.
// Input: the entries and the CaRunResult of the same run. Output: rows of text cells.

#include <string>
#include <vector>

#include "depreciation/companies_act.h"

namespace brenlow::depreciation {

enum class CaSheetRowKind {
    Title,
    Heading,
    ColumnHeadings,
    Group,
    EntryHeading,
    Figures,
    Deduction,
    GrandTotal,
    Empty
};

struct CaSheetRow {
    CaSheetRowKind kind;
    std::vector<std::string> cells;
};

std::vector<CaSheetRow> companies_act_sheet(const CaRunInput& input, const CaRunResult& result);

}  // namespace brenlow::depreciation
