#include "exchange/return_files.h"

#include <filesystem>

#include "exchange/return_documents.h"
#include "register/calculation.h"
#include "register/chart_report.h"
#include "register/itr_schedules.h"
#include "register/tax_audit.h"

namespace brenlow::exchange {
namespace {

// The register year of the client's year open: the calendar year of its last day.
int open_year(TarrowBase::ClsMain& base) {
    const std::string last = base.SecondDate();
    return last.size() == 10 ? std::stoi(last.substr(6)) : 0;
}

[[noreturn]] void refuse(const std::vector<std::string>& refusals) {
    std::string text;
    for (const auto& r : refusals) text += (text.empty() ? "" : "\n") + r;
    throw ReturnRefused(text + "\nNothing was written.");
}

std::vector<reg::Clause18Block> clause18(TarrowBase::ClsMain& base, bool utility_files) {
    const int year = open_year(base);
    if (utility_files && reg::under_act_2025(year))
        refuse({"The audit utility's files for tax year " + reg::year_span(year) +
                " under the Income-tax Act, 2025 have no published schema yet."});
    reg::CalculationOptions options;
    options.keep_entries = false;
    options.sheets = false;
    const auto run =
        reg::run_calculation(base.dbobj(), base.Temp_Code(), year, reg::Mode::DEP_3CD_IT, false, options);
    if (run.no_assets) refuse({"No Assets Available !"});
    auto blocks = reg::clause18_blocks(base.dbobj(), run);
    if (utility_files)
        if (const auto refused = form3cd_refusals(blocks); !refused.empty()) refuse(refused);
    return blocks;
}

}  // namespace

void write_itr_schedules_file(TarrowBase::ClsMain& base, const std::string& path, suite::Existing existing) {
    suite::check_target(path, existing);
    const auto built = reg::return_schedules(base, base.Temp_Code(), open_year(base));
    if (!built.refusals.empty()) refuse(built.refusals);
    suite::write_file_whole(path, itr_schedules_json(built.schedules).dump(2) + "\n", existing);
}

void write_clause18_json_file(TarrowBase::ClsMain& base, const std::string& path, suite::Existing existing) {
    suite::check_target(path, existing);
    const auto blocks = clause18(base, true);
    suite::write_file_whole(path, form3cd_depreciation_json(blocks).dump(2) + "\n", existing);
}

void write_clause18_csv_files(TarrowBase::ClsMain& base, const std::string& folder,
                              suite::Existing existing) {
    const auto dir = std::filesystem::path(folder);
    const std::string additions = (dir / "clause18-additions.csv").string();
    const std::string deductions = (dir / "clause18-deductions.csv").string();
    suite::check_target(additions, existing);
    suite::check_target(deductions, existing);
    const auto blocks = clause18(base, true);
    suite::write_file_whole(additions, reg::clause18_additions_csv(blocks), existing);
    suite::write_file_whole(deductions, reg::clause18_deductions_csv(blocks), existing);
}

void write_clause18_pdf_file(TarrowBase::ClsMain& base, const std::string& path, suite::Existing existing) {
    suite::check_target(path, existing);
    const auto blocks = clause18(base, false);
    const auto client = reg::printed_client(base.dbobj(), base.Temp_Code());
    Ostikreport::write_pdf(reg::clause18_report(blocks, open_year(base), client), path, existing);
}

}  // namespace brenlow::exchange
