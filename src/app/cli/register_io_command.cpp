// brenlow register export|import: a client's register of one year out to a JSON
// document or a spreadsheet (.xls, .xlsx) and back in, chosen by the file's extension
// (both layouts are in the README). The spreadsheet paths show the register screen's
// own messages and progress, on standard error.

#include <filesystem>
#include <fstream>
#include <sstream>

#include "app/cli/commands.h"
#include "app/cli/options.h"
#include "controls/cli_ui.h"
#include "exchange/register_document.h"
#include "exchange/register_workbook.h"
#include "exchange/spreadsheet_files.h"
#include "register/register_options.h"
#include "store/database.h"
#include "suite/output_file.h"

namespace brenlow::cli {
namespace {

struct Target {
    std::string file;
    std::string code;
    int year = 0;
};

Target target_of(Context& ctx, const Options& opt, const char* sub) {
    if (opt.positional().size() != 1) throw UsageError(std::string(sub) + " takes one file name.");
    Target t{opt.positional()[0], opt.client(), opt.require_int("year", 1990, 2099)};
    if (!ctx.base().select_client_year(t.code, t.year))
        throw UsageError("client " + t.code + " has no financial year " + fy_text(t.year) +
                         " (create it with brenlow init).");
    return t;
}

exchange::WorkbookTarget workbook_target(Context& ctx, const Target& t) {
    exchange::WorkbookTarget w;
    w.code = t.code;
    w.year = t.year;
    w.company = reg::is_company(ctx.base().TSTATUS());
    w.exe_path = ctx.base().ExePath();
    w.path = t.file;
    return w;
}

int export_register(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"yes"});
    opt.reject_unknown({"client", "year", "yes"});
    ctx.reads_only();
    const auto t = target_of(ctx, opt, "export");
    if (exchange::spreadsheet_kind(t.file)) {
        // The overwrite question is answered Yes only with --yes; without it the
        // command stops there and the file stays as it was.
        CliUi ui(ctx.err, opt.has("yes"));
        return exchange::export_workbook(ctx.base().dbobj(), workbook_target(ctx, t), ui) ? 0 : 1;
    }
    // Row by row into the new file, which takes the old one's place only when whole.
    suite::WholeFileWriter file(t.file, existing_file(opt));
    exchange::export_register(ctx.base().dbobj(), t.code, t.year,
                              [&file](std::string_view piece) { file.write(piece); });
    file.finish();
    ctx.out << "Wrote the register of " << t.code << " for F.Y. " << fy_text(t.year) << " to " << t.file
            << "\n";
    return 0;
}

int import_register(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"replace", "yes", "new-groups"});
    opt.reject_unknown({"client", "year", "replace", "yes", "new-groups"});
    const auto t = target_of(ctx, opt, "import");
    // Every refusal names the document and ends the same way.
    const auto refuse = [&](const std::vector<std::string>& why) {
        for (const auto& e : why) ctx.err << t.file << ": " << e << "\n";
        ctx.err << "Nothing was imported.\n";
        return 1;
    };
    const bool spreadsheet = exchange::spreadsheet_kind(t.file).has_value();
    std::error_code ec;
    const auto kind = std::filesystem::status(t.file, ec).type();
    if (kind == std::filesystem::file_type::not_found && !spreadsheet)
        return refuse({"there is no such file"});
    if (kind == std::filesystem::file_type::directory)
        return refuse({"this is a folder, not a register document"});
    exchange::ImportOptions options;
    options.replace = opt.has("replace");
    options.yes = opt.has("yes");
    options.new_groups = opt.has("new-groups");
    exchange::ImportResult r;
    try {
        if (spreadsheet) {
            // Naming the file on the command line confirms the import.
            CliUi ui(ctx.err, opt.has("yes"));
            auto w = workbook_target(ctx, t);
            w.confirmed = true;
            const auto got = exchange::import_workbook(ctx.base().dbobj(), w, options, ui);
            if (!got) return refuse({});
            r = *got;
        } else {
            // Read as it goes by: the document is never held whole.
            std::ifstream f(t.file, std::ios::binary);
            if (!f) return refuse({"the file cannot be read"});
            r = exchange::import_register(ctx.base().dbobj(), t.code, t.year, f, options);
            if (f.bad()) return refuse({"the file cannot be read"});
        }
    } catch (const store::DbError& e) {
        // The import is one group of writes: a failure part-way undid all of it.
        return refuse({std::string("the database refused it: ") + e.what()});
    }
    if (!r.errors.empty()) return refuse(r.errors);
    // Each question --yes answered, and each notice, with its row.
    for (const auto& a : r.answered) ctx.err << t.file << ": " << a << "\n";
    ctx.out << "Imported into " << t.code << " for F.Y. " << fy_text(t.year) << ": " << r.openings
            << " opening entries, " << r.additions << " additions; asset groups " << r.groups_matched
            << " matched, " << r.groups_created << " created"
            << (r.options_written ? "; options row written" : "") << "\n";
    return 0;
}

}  // namespace

int register_io_command(Context& ctx, const std::string& sub, const std::vector<std::string>& args) {
    if (sub == "export") return export_register(ctx, args);
    if (sub == "import") return import_register(ctx, args);
    throw UsageError("unknown register subcommand \"" + sub + "\" (export or import).");
}

}  // namespace brenlow::cli
