// brenlow itr schedules: the depreciation schedules of the client's income-tax return
// (ScheduleDPM, ScheduleDOA, ScheduleDEP, ScheduleDCG) as the return's JSON fragment,
// from the same figures as the income-tax chart; checked before a byte is written.

#include "app/cli/commands.h"
#include "app/cli/options.h"
#include "exchange/return_documents.h"
#include "register/itr_schedules.h"
#include "suite/output_file.h"

namespace brenlow::cli {

int itr_command(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"yes"});
    if (opt.positional().empty() || opt.positional()[0] != "schedules")
        throw UsageError(
            "usage: brenlow itr schedules --client CODE --year YYYY [--form ITR3|ITR5|ITR6] "
            "FILE.json [--yes]");
    opt.reject_unknown({"client", "year", "form", "yes"});
    if (opt.positional().size() != 2) throw UsageError("itr schedules takes one file to write.");
    const std::string file = opt.positional()[1];
    const std::string code = opt.client();
    const int year = opt.require_int("year", 1990, 2099);
    std::optional<reg::ItrForm> form;
    if (const auto name = opt.get("form")) {
        form = reg::itr_form_of_name(*name);
        if (!form) throw UsageError("option --form: expected ITR3, ITR5 or ITR6, found \"" + *name + "\".");
    }
    // The year under the new Act: no schema to write to, so nothing is written.
    if (const auto unknown = reg::return_schema_unknown(year); !unknown.empty()) {
        ctx.err << unknown << "\n";
        return 1;
    }
    ctx.reads_only();
    if (!ctx.base().select_client_year(code, year))
        throw UsageError("client " + code + " has no financial year " + fy_text(year) +
                         " (create it with brenlow init).");
    // Checked once the database is open: never over it, its journal, or a file unasked.
    suite::check_target(file, existing_file(opt));
    const auto built = reg::return_schedules(ctx.base(), code, year, form);
    if (!built.refusals.empty()) {
        for (const auto& r : built.refusals) ctx.err << r << "\n";
        ctx.err << "Nothing was written.\n";
        return 1;
    }
    const auto doc = exchange::itr_schedules_json(built.schedules);
    suite::write_file_whole(file, doc.dump(2) + "\n", existing_file(opt));
    ctx.out << "Wrote " << file << " (" << reg::itr_form_name(built.schedules.form) << ", "
            << built.schedules.lines.size() << " block" << (built.schedules.lines.size() == 1 ? "" : "s")
            << ")\n";
    return 0;
}

}  // namespace brenlow::cli
