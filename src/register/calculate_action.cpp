#include "register/chart_report.h"
#include "register/frm_new_fatr.h"

namespace brenlow::reg {

void frmNewFATR::cmdDeprCalc_Click() {
    frame::guarded(comp_.log, "frmNewFATR", "cmdDeprCalc_Click", [&] {
        const auto mode = mode_from_name(DepMode);
        if (!mode) return;
        auto run = std::make_shared<CalculationResult>(
            run_calculation(comp_.base->dbobj(), code_, year_, *mode, /*interactive=*/true));
        // Each warning comes once a run, and only because this run is interactive.
        for (const auto& w : run->warnings)
            if (w.show) ui_.info(w.text);
        last_run_ = run;
        if (run->no_assets) return;
        auto& report = *comp_.report;
        report.WriteToReport(calculation_sheet_report(*run));
        report.showreport();
        if (is_income_tax_mode(*mode)) {
            report.WriteToReport(block_summary_report(*run));
            report.showreport();
        }
        report.WriteToReport(chart_report(*run));
        report.showreport();
    });
}

}  // namespace brenlow::reg
