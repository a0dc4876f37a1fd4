#include "depreciation/income_tax_sheet.h"

#include "controls/number_format.h"
#include "depreciation/amount_text.h"

namespace brenlow::depreciation {

std::vector<ItSheetLine> block_sheet_lines(const ItBlockResult& b) {
    const double after_earlier = b.opening_wdv - b.adj_earlier;
    const double additions = b.addition1 + b.addition2 + b.addition3;
    const double deductions = b.deduction1 + b.deduction2 + b.deduction3;
    const double balance = after_earlier + additions - deductions;
    const double on_which = b.block_nil ? 0 : b.RndWdv + b.TotDepr;
    // The remaining half brought from last year is shown inside the normal depreciation.
    return {
        {"Written Down Value", b.opening_wdv},
        {"Other Assets Adjustment of Earlier Years", b.adj_earlier},
        {"Written Down Value After Earlier Years Adjustments", after_earlier},
        {"Addition", additions},
        {"Deduction", deductions},
        {"Balance", balance},
        {"Adj. Other Assets (Current Year)", b.adj_current},
        {"Amount on which Depreciation to be Calculated", on_which},
        {"Depreciation @ Normal Rate", b.depr_full + b.depr_half + b.ADeprOpH},
        {"Depreciation @ Additional Rate", b.addl_full + b.addl_half},
        {"Written Down Value After Adjustments", b.RndWdv},
    };
}

std::vector<ItSheetLine> block_rate_lines(const ItBlockResult& b) {
    std::vector<ItSheetLine> lines;
    if (b.block_nil) return lines;
    if (b.full_on_bal1 != 0 || b.depr_full != 0)
        lines.push_back({normal_rate_label(b.rate, false), b.depr_full});
    if (b.full_on_bal2 != 0 || b.depr_half != 0)
        lines.push_back({normal_rate_label(b.rate, true), b.depr_half});
    if (b.addl_rate > 0) {
        if (b.addl_on_bal1 != 0 || b.addl_full != 0)
            lines.push_back({additional_rate_label(b.addl_rate, false), b.addl_full});
        if (b.addl_on_bal2 != 0 || b.addl_half != 0)
            lines.push_back({additional_rate_label(b.addl_rate, true), b.addl_half});
    }
    return lines;
}

std::string normal_rate_label(double rate, bool half) {
    if (half) return "Normal @ Half Rate [" + rate_trimmed(rate / 2) + "%]";
    return "Normal @ " + rate_trimmed(rate) + "% Full Rate";
}

std::string additional_rate_label(double rate, bool half) {
    if (half) return "Additional @ Half Rate [" + rate_trimmed(rate / 2) + "%]";
    return "Additional @ " + rate_trimmed(rate) + "% Full Rate";
}

ItSummary block_wise_summary(const ItRunResult& run) {
    ItSummary s;
    s.title = "BLOCK WISE SUMMARY";
    s.total_label = "Net Capital Gain / (Loss)";
    for (const ItBlockResult& b : run.blocks) {
        ItSummaryRow row;
        row.block = b.block_name;
        row.rate = rate_trimmed(b.rate);
        row.status = b.block_nil ? "Block Nil" : b.status;
        // Losses are printed in brackets.
        row.gain_text = format_mask(b.profit_loss, "#,##0;(#,##0)");
        s.rows.push_back(std::move(row));
    }
    s.total_text = format_mask(run.net_capital_gain, "#,##0;(#,##0)");
    return s;
}

}  // namespace brenlow::depreciation
