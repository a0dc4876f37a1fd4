#pragma once
// The check of the fixed-asset schedule against the trial balance before transfer.
// Input: the five figures of the schedule and of the trial balance. Output: whether
// any differs (compared as "###0.00") and, if so, the question to put to the person
// (Yes continues the transfer). The engine asks nothing.

#include <string>

namespace brenlow::depreciation {

struct TbFigures {
    double net_block = 0;       // sum of ClBal / gid 5 rows other than allid 5
    double depreciation = 0;    // sum of DepFY / 'DEPRECIATION'
    double profit_on_sale = 0;  // sum of ProfitLoss / 'PROFIT ON SALE OF FIXED ASSETS'
    double residual_pl = 0;     // sum of DepAdjRemLife0_PL / 'FIXED ASSETS RESIDUAL VALUE ADJUSTMENTS'
    double residual_rs = 0;     // sum of DepAdjRemLife0_RS / 'FIXED ASSETS RESIDUAL VALUE (RETAINED EARNING)'
};

struct TbCheck {
    bool differs = false;
    std::string question;  // empty when the figures agree
};

TbCheck trial_balance_check(const TbFigures& schedule, const TbFigures& trial_balance);

}  // namespace brenlow::depreciation
