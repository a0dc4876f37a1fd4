// The Export menu of the income-tax chart's print preview: the return's depreciation
// schedules and clause 18 of the tax audit report, for the client's year open, written
// as the command line's itr schedules and chart --3cd write them.

#include "app/tarrow/host.h"
#include "exchange/return_files.h"

namespace brenlow::tarrow {

std::vector<ui::PreviewExport> HostWindow::return_exports(const Ostikreport::ReportDocument& doc) {
    // The income-tax chart: titled "FIXED ASSETS", its first column the block.
    const bool income_tax_chart = !doc.titles.empty() && doc.titles.front() == "FIXED ASSETS" &&
                                  !doc.columns.empty() && doc.columns.front().heading == "Block";
    if (!income_tax_chart || !forms_) return {};
    auto base = forms_->component().base;
    const auto guarded = [base](void (*write)(TarrowBase::ClsMain&, const std::string&, suite::Existing),
                                suite::Existing existing) {
        return [base, write, existing](const std::string& path) -> std::string {
            try {
                write(*base, path, existing);
                return {};
            } catch (const exchange::ReturnRefused& refused) {
                return refused.what();
            }
        };
    };
    // The save box asked before replacing a file; a folder's two files are never replaced
    // unasked.
    return {{"ITR Depreciation Schedules (JSON)...", "JSON (*.json)",
             guarded(exchange::write_itr_schedules_file, suite::Existing::replace)},
            {"Form 3CD Clause 18 (JSON)...", "JSON (*.json)",
             guarded(exchange::write_clause18_json_file, suite::Existing::replace)},
            {"Form 3CD Clause 18 Additions and Deductions (CSV)...", "",
             guarded(exchange::write_clause18_csv_files, suite::Existing::keep)},
            {"Form 3CD Clause 18 (PDF)...", "PDF (*.pdf)",
             guarded(exchange::write_clause18_pdf_file, suite::Existing::replace)}};
}

}  // namespace brenlow::tarrow
