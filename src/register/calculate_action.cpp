#include "depreciation/regime_check.h"
#include "register/capital_gains_list.h"
#include "register/chart_report.h"
#include "register/frm_new_fatr.h"
#include "register/regime_action.h"
#include "register/tax_audit.h"
#include "register/transfers.h"
#include "store/chart_store.h"
#include "store/client_store.h"

namespace brenlow::reg {

std::vector<depreciation::ChartRow> without_additional_depreciation(
    std::vector<depreciation::ChartRow> rows) {
    for (auto& r : rows) {
        const double additional = r.ADeprF + r.ADeprH + r.ADeprOpH;
        r.ADeprF = r.ADeprH = r.ADeprOpH = 0;
        r.TotDep -= additional;
        r.WdvCl += additional;
    }
    return rows;
}

void frmNewFATR::cmdDeprCalc_Click() {
    frame::guarded(comp_.log, "frmNewFATR", "cmdDeprCalc_Click", [&] {
        const std::optional<reg::Mode> mode = DepMode;
        auto run = std::make_shared<CalculationResult>(
            run_calculation(comp_.base->dbobj(), code_, year_, *mode, /*interactive=*/true));
        // Each warning comes once a run, and only because this run is interactive.
        for (const auto& w : run->warnings)
            if (w.show) ui_.info(w.text);
        last_run_ = run;
        if (run->no_assets) return;
        auto& report = *comp_.report;
        const PrintedClient client = printed_client(comp_.base->dbobj(), code_);
        report.WriteToReport(calculation_sheet_report(*run, client));
        report.showreport();
        if (is_income_tax_mode(*mode)) {
            report.WriteToReport(block_summary_report(*run, client));
            report.showreport();
        }
        // The tax-audit mode lists each addition's details and each deduction by block.
        if (*mode == Mode::DEP_3CD_IT) {
            report.WriteToReport(
                tax_audit_report(tax_audit_lines(comp_.base->dbobj(), code_, year_), year_, client));
            report.showreport();
        }
        // The summary is already on screen; the chart's own copy is for its PDF.
        auto chart = chart_report(*run, client);
        chart.follows.clear();
        report.WriteToReport(chart);
        report.showreport();
        if (is_income_tax_mode(*mode)) CheckConcessionalRegime(run->chart_hand_edited);
    });
}

depreciation::RegimeDecision concessional_regime_decision(TarrowBase::ClsMain& base, const std::string& code,
                                                          int year, bool hand_edited) {
    const depreciation::RegimeFlags flags{base.vFlagCompDom115BA(), base.vFlagIndHUF115BAC(),
                                          base.vFlagCopSoc115BAD(), base.vFlagCopSoc115BAE()};
    const auto table = hand_edited ? store::ChartTable::DeprChart : store::ChartTable::TmpDepChart;
    return depreciation::concessional_regime_check(
        year, store::assessee_kind_of_client(base.dbobj(), code, base.vStatus_Read()), flags,
        store::additional_in_stored_chart(base.dbobj(), table, code, year), hand_edited);
}

void remove_additional_depreciation(TarrowBase::ClsMain& base, const std::string& code, int year,
                                    bool hand_edited) {
    auto& db = base.dbobj();
    const auto table = hand_edited ? store::ChartTable::DeprChart : store::ChartTable::TmpDepChart;
    // The removal is an edit of the chart by hand: the chart without its additional
    // depreciation becomes the hand-edited chart of the year, and the return forms
    // read it from now on.
    auto rows = without_additional_depreciation(store::read_chart(db, table, code, year));
    store::rewrite_hand_edited_chart(db, code, year, rows);
    base.SetMiscOthInf("MANDEP", "1", base.SecondDate(), code, "chart edited by hand");
    store::copy_hand_edited_chart(db, code, year);
}

void frmNewFATR::CheckConcessionalRegime(bool hand_edited) {
    auto& base = *comp_.base;
    const auto decision = concessional_regime_decision(base, code_, year_, hand_edited);
    if (!decision.refused) return;
    ui_.info(decision.message);
    if (!decision.gate_message.empty()) {
        ui_.info(decision.gate_message);
        return;
    }
    if (decision.question.empty() || !ui_.ask_yes_no(decision.question, MsgIcon::question, false)) return;
    remove_additional_depreciation(base, code_, year_, hand_edited);
}

void frmNewFATR::cmdTransToTB_Click() {
    frame::guarded(comp_.log, "frmNewFATR", "cmdTransToTB_Click", [&] {
        if (Mode_ != EntryMode::None || old_chart_) return;
        transfer_to_trial_balance(*comp_.base, ui_, code_, year_);
    });
}

void frmNewFATR::TransferToCapitalGains() {
    frame::guarded(comp_.log, "frmNewFATR", "TransferToCapitalGains", [&] {
        if (Mode_ != EntryMode::None || old_chart_) return;
        if (!transfer_to_capital_gains(*comp_.base, ui_, code_, year_)) return;
        // What was written, as the capital-gains head will read it.
        auto& db = comp_.base->dbobj();
        comp_.report->WriteToReport(capital_gains_report(transferred_capital_gains(db, code_, year_), year_,
                                                         printed_client(db, code_)));
        comp_.report->showreport();
    });
}

}  // namespace brenlow::reg
