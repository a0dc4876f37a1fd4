// brenlow note: the notes to a company's accounts that the register's figures give,
// worked out and printed; nothing is posted. `ppe` the note on property, plant and
// equipment, `deferred-tax` the deferred tax on the depreciation difference, and
// `tax-rates` the practice's effective rates that deferred tax takes.

#include <nlohmann/json.hpp>
#include <set>

#include "app/cli/commands.h"
#include "app/cli/options.h"
#include "controls/number_format.h"
#include "exchange/report_workbook.h"
#include "exchange/spreadsheet_files.h"
#include "schedules/deferred_tax.h"
#include "schedules/ppe_note.h"
#include "store/client_store.h"
#include "store/tax_rate_store.h"
#include "suite/output_file.h"
#include "suite/report.h"

namespace brenlow::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kNoteHelp =
    "Usage: brenlow [--db URL] note ppe --client CODE --year YYYY [--pdf FILE|--xlsx FILE|--json FILE] "
    "[--yes]\n"
    "       brenlow [--db URL] note deferred-tax --client CODE --year YYYY [--rate R|--regime NAME] [--pdf "
    "FILE]\n"
    "                          [--yes]\n"
    "       brenlow [--db URL] note tax-rates list [--json]\n"
    "       brenlow [--db URL] note tax-rates set --kind KIND --regime NAME --rate R\n"
    "       brenlow [--db URL] note tax-rates remove --kind KIND --regime NAME\n"
    "\n"
    "  ppe           the note on property, plant and equipment from the books register: gross block,\n"
    "                accumulated depreciation and net block by class, with the previous year's table\n"
    "                when the database holds that year\n"
    "  deferred-tax  books net block of the depreciable assets against the WDV of every income-tax\n"
    "                block, at the year's opening and closing, and the deferred tax at the effective\n"
    "                rate: --rate R, or the practice's rate of the client's kind (--regime NAME picks\n"
    "                a row of the table); only worked and printed, nothing is posted\n"
    "  tax-rates     the practice's effective rates by kind of assessee and regime (per cent)\n"
    "  --yes         replaces a FILE already there\n";

void select_year(Context& ctx, const std::string& code, int year) {
    if (!ctx.base().select_client_year(code, year))
        throw UsageError("client " + code + " has no financial year " + fy_text(year) +
                         " (create it with brenlow init).");
}

double paise(double x) {
    return vb_round(x, 2);
}

Json line_json(const sched::PpeLine& l) {
    return {{"gross_block",
             {{"opening", paise(l.gross_opening)},
              {"additions", paise(l.additions)},
              {"disposals", paise(l.disposals)},
              {"closing", paise(l.gross_closing)}}},
            {"accumulated_depreciation",
             {{"opening", paise(l.dep_opening)},
              {"for_the_year", paise(l.dep_for_year)},
              {"nil_life_adjustment", paise(l.dep_adjustment)},
              {"on_disposals", paise(l.dep_on_disposals)},
              {"closing", paise(l.dep_closing)}}},
            {"net_block", {{"closing", paise(l.net_closing)}, {"previous_year", paise(l.net_last_year)}}}};
}

Json table_json(const sched::PpeTable& t) {
    Json classes = Json::array();
    for (const auto& l : t.lines) {
        Json row = {{"class", sched::ppe_class_key(l.cls)}, {"name", sched::ppe_class_name(l.cls)}};
        row.update(line_json(l));
        classes.push_back(std::move(row));
    }
    return {{"year", t.year}, {"classes", classes}, {"total", line_json(t.total)}};
}

Json note_json(const sched::PpeNote& note) {
    return {{"format", "brenlow-ppe-note"},
            {"version", 1},
            {"client", note.code},
            {"year", note.year},
            {"current", table_json(note.current)},
            {"previous", note.previous ? table_json(*note.previous) : Json(nullptr)}};
}

int ppe(Context& ctx, const Options& opt) {
    opt.reject_unknown({"client", "year", "pdf", "xlsx", "json", "yes"});
    const std::string code = opt.client();
    const int year = opt.require_int("year", 1990, 2099);
    if (opt.has("json") + opt.has("pdf") + opt.has("xlsx") > 1)
        throw UsageError("choose one of --json, --pdf and --xlsx.");
    ctx.reads_only();
    select_year(ctx, code, year);
    const auto note = sched::ppe_note(ctx.base().dbobj(), code, year);
    if (!note) {
        ctx.err << "No Assets Available !\n";
        return 1;
    }
    if (const auto file = opt.get("json")) {
        suite::write_file_whole(*file, note_json(*note).dump(2) + "\n", existing_file(opt));
        ctx.out << "Wrote " << *file << "\n";
        return 0;
    }
    const auto doc = sched::ppe_note_report(*note);
    if (const auto pdf = opt.get("pdf")) {
        Ostikreport::write_pdf(doc, *pdf, existing_file(opt));
        ctx.out << "Wrote " << *pdf << "\n";
        return 0;
    }
    if (const auto xlsx = opt.get("xlsx")) {
        exchange::write_spreadsheet(exchange::report_workbook(doc, "Property, Plant and Equipment"),
                                    exchange::SpreadsheetKind::Xlsx, *xlsx, existing_file(opt));
        ctx.out << "Wrote " << *xlsx << "\n";
        return 0;
    }
    ctx.out << Ostikreport::render_text(doc);
    return 0;
}

double rate_option(const Options& opt, const std::string& name) {
    const std::string text = opt.require(name);
    const auto v = parse_amount(text);
    if (!v || *v <= 0 || *v >= 100)
        throw UsageError("Option --" + name + " must be a rate in per cent above 0 and below 100, not \"" +
                         text + "\".");
    return *v;
}

int deferred_tax(Context& ctx, const Options& opt) {
    opt.reject_unknown({"client", "year", "rate", "regime", "pdf", "yes"});
    const std::string code = opt.client();
    const int year = opt.require_int("year", 1990, 2099);
    if (opt.has("rate") && opt.has("regime")) throw UsageError("--rate and --regime do not go together.");
    ctx.reads_only();
    select_year(ctx, code, year);
    auto& base = ctx.base();
    auto& db = base.dbobj();

    double rate = 0;
    std::string basis;
    const auto kind = store::assessee_kind_of_client(db, code, base.vStatus_Read());
    const std::string kind_key(assessee_kind_key(kind));
    if (opt.has("rate")) {
        rate = rate_option(opt, "rate");
        basis = "as given";
    } else {
        std::optional<store::TaxRateRow> row;
        if (const auto regime = opt.get("regime")) {
            row = store::tax_rate(db, kind_key, *regime);
            if (!row)
                throw UsageError("The practice has no rate for " + kind_key + ", " + *regime +
                                 " (see brenlow note tax-rates list, or give --rate).");
        } else {
            row = sched::usual_tax_rate(store::tax_rates(db), kind, base.vFlagCompDom115BA());
            if (!row)
                throw UsageError("The practice has no rate for a " + kind_key +
                                 " (add one with brenlow note tax-rates set, or give --rate).");
        }
        rate = row->Rate;
        basis = row->Kind + ", " + row->Regime;
    }

    const auto figures = sched::deferred_tax_figures(db, code, year);
    if (!figures) {
        ctx.err << "No Assets Available !\n";
        return 1;
    }
    const auto working = sched::work_deferred_tax(*figures, rate);
    const auto doc = sched::deferred_tax_report(working, year, reg::printed_client(db, code), basis);
    if (const auto pdf = opt.get("pdf")) {
        Ostikreport::write_pdf(doc, *pdf, existing_file(opt));
        ctx.out << "Wrote " << *pdf << "\n";
        return 0;
    }
    ctx.out << Ostikreport::render_text(doc);
    return 0;
}

int tax_rates(Context& ctx, const Options& opt) {
    const auto& words = opt.positional();
    const std::string sub = words.size() > 1 ? words[1] : "list";
    if (words.size() > 2) throw UsageError("note tax-rates " + sub + " takes no further words.");
    if (sub == "list") {
        opt.reject_unknown({"json"});
        ctx.reads_only();
        const auto rows = store::tax_rates(ctx.base().dbobj());
        if (opt.has("json")) {
            Json list = Json::array();
            for (const auto& r : rows)
                list.push_back({{"kind", r.Kind}, {"regime", r.Regime}, {"rate", r.Rate}});
            ctx.out << list.dump(2) << "\n";
            return 0;
        }
        for (const auto& r : rows)
            ctx.out << r.Kind << "  " << r.Regime << "  " << format_mask(r.Rate, "###0.000") << "%\n";
        return 0;
    }
    if (sub == "set") {
        opt.reject_unknown({"kind", "regime", "rate"});
        const std::string kind = opt.require("kind");
        if (!assessee_kind_of_key(kind))
            throw UsageError("Option --kind must be a kind of assessee (company, firm, llp, ...), not \"" +
                             kind + "\".");
        const auto regime = opt.text("regime", 50);
        if (!regime || regime->empty()) throw UsageError("Option --regime must name the regime.");
        const double rate = rate_option(opt, "rate");
        const std::string key(assessee_kind_key(*assessee_kind_of_key(kind)));
        store::set_tax_rate(ctx.base().dbobj(), key, *regime, rate);
        ctx.out << "The rate of " << key << ", " << *regime << " is " << format_mask(rate, "###0.000")
                << "%.\n";
        return 0;
    }
    if (sub == "remove") {
        opt.reject_unknown({"kind", "regime"});
        const std::string kind = opt.require("kind"), regime = opt.require("regime");
        if (!store::remove_tax_rate(ctx.base().dbobj(), kind, regime)) {
            ctx.err << "The practice has no rate for " << kind << ", " << regime << ".\n";
            return 1;
        }
        ctx.out << "The rate of " << kind << ", " << regime << " was removed.\n";
        return 0;
    }
    throw UsageError("unknown tax-rates command \"" + sub + "\" (list, set or remove).");
}

}  // namespace

int note_command(Context& ctx, const std::vector<std::string>& args) {
    for (const auto& a : args)
        if (a == "--help" || a == "-h") {
            ctx.out << kNoteHelp;
            return 0;
        }
    // The note comes first; --json names a file for the PPE note and is a flag for the rates.
    const std::string sub = args.empty() ? std::string() : args[0];
    const Options opt(args,
                      sub == "tax-rates" ? std::set<std::string>{"json"} : std::set<std::string>{"yes"});
    const auto& words = opt.positional();
    if (words.empty() || words[0] != sub)
        throw UsageError("say which note first: ppe, deferred-tax or tax-rates (brenlow note --help).");
    if (words[0] == "ppe") {
        if (words.size() != 1) throw UsageError("note ppe takes no further words.");
        return ppe(ctx, opt);
    }
    if (words[0] == "deferred-tax") {
        if (words.size() != 1) throw UsageError("note deferred-tax takes no further words.");
        return deferred_tax(ctx, opt);
    }
    if (words[0] == "tax-rates") return tax_rates(ctx, opt);
    throw UsageError("unknown note \"" + words[0] + "\" (ppe, deferred-tax or tax-rates).");
}

}  // namespace brenlow::cli
