#pragma once
// The printed side of the block calculation: the calculation-sheet lines of one block
// and the block-wise summary with the capital gain or loss of nil blocks.
// Input: an ItRunResult. Output: rows of label and formatted amounts, in print order.

#include <string>
#include <vector>

#include "depreciation/income_tax.h"

namespace brenlow::depreciation {

struct ItSheetLine {
    std::string label;
    double amount = 0;
};

// The eleven lines of a block, "Written Down Value" to "Written Down Value After Adjustments".
std::vector<ItSheetLine> block_sheet_lines(const ItBlockResult& block);

// The steps of a block's depreciation, printed under "Amount on which Depreciation
// to be Calculated": normal depreciation at the full rate and at half the rate, then
// additional depreciation likewise; a part with nothing to charge has no line.
std::vector<ItSheetLine> block_rate_lines(const ItBlockResult& block);

// "Normal @ 15%" with "Full Rate", "Half Rate [7.5%]"; "Additional @ 20%" likewise.
std::string normal_rate_label(double rate, bool half);
std::string additional_rate_label(double rate, bool half);

struct ItSummaryRow {
    std::string block;      // block name
    std::string rate;       // "15"
    std::string status;     // "Block Nil" for a nil block, else the block's status
    std::string gain_text;  // "#,##0;(#,##0)"
};

struct ItSummary {
    std::string title;  // "BLOCK WISE SUMMARY"
    std::vector<ItSummaryRow> rows;
    std::string total_label;  // "Net Capital Gain / (Loss)"
    std::string total_text;
};

ItSummary block_wise_summary(const ItRunResult& run);

}  // namespace brenlow::depreciation
