#include "depreciation/trial_balance_check.h"

#include "controls/number_format.h"

namespace brenlow::depreciation {

TbCheck trial_balance_check(const TbFigures& sch, const TbFigures& tb) {
    struct Line {
        const char* label;
        double TbFigures::*field;
    };
    static constexpr Line kLines[] = {
        {"    - Fixed Assets (Net Block) : ", &TbFigures::net_block},
        {"    - Depreciation : ", &TbFigures::depreciation},
        {"    - Profit on Sale of Fixed Assets : ", &TbFigures::profit_on_sale},
        {"    - Fixed Assets Residual Value Adjustments : ", &TbFigures::residual_pl},
        {"    - Fixed Assets Residual Value (Retained Earning) : ", &TbFigures::residual_rs},
    };
    std::string tb_lines, sch_lines;
    for (const Line& l : kLines) {
        const std::string a = format_mask(tb.*(l.field), "###0.00");
        const std::string b = format_mask(sch.*(l.field), "###0.00");
        if (a == b) continue;
        tb_lines += std::string(l.label) + a + "\n";
        sch_lines += std::string(l.label) + b + "\n";
    }
    TbCheck out;
    if (tb_lines.empty()) return out;
    out.differs = true;
    out.question =
        "There is difference between Figures as per Trial Balance and as per Fixed Asset Schedule.\n\n"
        "Figures as per Trial Balance :\n" +
        tb_lines + "\nFigures as per Schedule :\n" + sch_lines + "\nDo you want to Continue?";
    return out;
}

}  // namespace brenlow::depreciation
