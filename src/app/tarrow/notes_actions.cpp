#include "app/tarrow/notes_actions.h"

#include "controls/number_format.h"
#include "controls/ui_port.h"
#include "schedules/deferred_tax.h"
#include "schedules/ppe_note.h"
#include "store/client_store.h"
#include "store/tax_rate_store.h"

namespace brenlow::tarrow {
namespace {

constexpr const char* kNoAssets = "No Assets Available !";

void show(frame::Component& component, const Ostikreport::ReportDocument& doc) {
    component.report->WriteToReport(doc);
    component.report->showreport();
}

}  // namespace

void show_ppe_note(suite::BaseServices& base, frame::Component& component, Ui& ui) {
    const auto& cy = base.client_year();
    if (!cy) return;
    try {
        const auto note = sched::ppe_note(base.dbobj(), cy->code_no, cy->year);
        if (!note) {
            ui.info(kNoAssets);
            return;
        }
        show(component, sched::ppe_note_report(*note));
    } catch (const store::DbError& e) {
        ui.critical("The note could not be worked out." + store::failure_reason(base.dbobj().backend(), e));
    }
}

void show_deferred_tax(suite::BaseServices& base, frame::Component& component, Ui& ui) {
    const auto& cy = base.client_year();
    if (!cy) return;
    try {
        auto& db = base.dbobj();
        const auto kind = store::assessee_kind_of_client(db, cy->code_no, base.vStatus_Read());
        double rate = 0;
        std::string basis;
        if (const auto row = sched::usual_tax_rate(store::tax_rates(db), kind, base.vFlagCompDom115BA())) {
            rate = row->Rate;
            basis = row->Kind + ", " + row->Regime;
        } else {
            const auto typed = ui.input_box("Effective tax rate (%)", "Deferred Tax on Depreciation");
            if (!typed) return;
            const auto v = parse_amount(*typed);
            if (!v || *v <= 0 || *v >= 100) {
                ui.info("Invalid Value !");
                return;
            }
            rate = *v;
            basis = "as given";
        }
        const auto figures = sched::deferred_tax_figures(db, cy->code_no, cy->year);
        if (!figures) {
            ui.info(kNoAssets);
            return;
        }
        show(component, sched::deferred_tax_report(sched::work_deferred_tax(*figures, rate), cy->year,
                                                   reg::printed_client(db, cy->code_no), basis));
    } catch (const store::DbError& e) {
        ui.critical("The working could not be made." + store::failure_reason(base.dbobj().backend(), e));
    }
}

}  // namespace brenlow::tarrow
