// brenlow chart: runs the calculation of a client's year, as the register's calculate
// button does, and prints the chart as text, as JSON, or into a PDF file.

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/cli/commands.h"
#include "app/cli/options.h"
#include "controls/cli_ui.h"
#include "exchange/report_workbook.h"
#include "exchange/return_documents.h"
#include "exchange/spreadsheet_files.h"
#include "register/calculation.h"
#include "register/chart_report.h"
#include "register/hand_edited_chart.h"
#include "register/itr_schedules.h"
#include "register/regime_action.h"
#include "register/tax_audit.h"
#include "suite/output_file.h"
#include "suite/report.h"

namespace brenlow::cli {
namespace {

using Json = nlohmann::ordered_json;

Json income_tax_json(const reg::CalculationResult& run) {
    Json blocks = Json::array();
    for (const auto& line : reg::chart_lines(run)) {
        const auto& r = *line.row;
        blocks.push_back(
            {{"Block", line.block}, {"CapitalGain", r.CG},  {"Code_No", r.Code_No},   {"FYr", r.FYr},
             {"Grp", r.Grp},        {"Rate", r.Rate},       {"Wdv", r.Wdv},           {"WdvOpHR", r.WdvOpHR},
             {"Add1", r.Add1},      {"Cons1", r.Cons1},     {"FullAmt", r.FullAmt},   {"Add2", r.Add2},
             {"Cons2", r.Cons2},    {"HalfAmt", r.HalfAmt}, {"DeprF", r.DeprF},       {"DeprH", r.DeprH},
             {"ADeprF", r.ADeprF},  {"ADeprH", r.ADeprH},   {"ADeprOpH", r.ADeprOpH}, {"TotDep", r.TotDep},
             {"Dep38", r.Dep38},    {"PropDep", r.PropDep}, {"Exp", r.Exp},           {"CG", r.CG},
             {"WdvCl", r.WdvCl}});
    }
    return {{"client", run.code},
            {"year", run.year},
            {"mode", reg::mode_name(run.mode)},
            {"half_rate_line", run.income_tax.half_rate_line.text()},
            {"hand_edited", run.chart_hand_edited},
            {"net_capital_gain", run.income_tax.net_capital_gain},
            {"DeprChart", blocks}};
}

std::string group_name(const reg::CalculationResult& run, long id) {
    const auto it = run.asset_groups.find(id);
    return it == run.asset_groups.end() ? std::string() : it->second;
}

Json books_asset_json(const reg::CalculationResult& run, const reg::BooksAsset& a) {
    return {{"Entry", a.kind == depreciation::EntryKind::Opening ? "opening" : "addition"},
            {"SrNoFATR", a.SrNoFATR},
            {"IdFAGM", a.IdFAGM},
            {"AssetGroup", group_name(run, a.IdFAGM)},
            {"Particulars", a.Particulars},
            {"Cost", a.Cost},
            {"OpDep", a.OpDep},
            {"Opening", a.Opening},
            {"Addition", a.Addition},
            {"DedAmt", a.DedAmt},
            {"DepFY", a.DepFY},
            {"ClBal", a.ClBal},
            {"ProfitLoss", a.ProfitLoss},
            {"DepAdjRemLife0_PL", a.DepAdjRemLife0_PL},
            {"DepAdjRemLife0_RS", a.DepAdjRemLife0_RS},
            {"Rate", a.Rate},
            {"RemLife", a.RemLife},
            {"Days", a.Days}};
}

// Writes `value` as dump(2) would inside a document, `depth` levels down. A dumped
// string never holds a raw line break, so every one in the text is the layout's own.
void write_indented(std::ostream& out, const Json& value, int depth) {
    const std::string indent(static_cast<std::size_t>(depth) * 2, ' ');
    const std::string text = value.dump(2);
    std::size_t from = 0;
    for (std::size_t nl = text.find('\n'); nl != std::string::npos; nl = text.find('\n', from)) {
        out.write(text.data() + from, static_cast<std::streamsize>(nl + 1 - from));
        out << indent;
        from = nl + 1;
    }
    out.write(text.data() + from, static_cast<std::streamsize>(text.size() - from));
}

// The books chart as dump(2) of the whole document would print it, written one asset
// at a time: a large register never stands in memory as one JSON document.
void write_books_json(std::ostream& out, const reg::CalculationResult& run) {
    const auto& t = run.books.totals;
    const Json head = {{"client", run.code}, {"year", run.year}, {"mode", reg::mode_name(run.mode)}};
    const Json totals = {{"ClBal", t.closing},
                         {"DepFY", t.depreciation},
                         {"ProfitLoss", t.profit_loss},
                         {"DepAdjRemLife0_PL", t.adj_pl},
                         {"DepAdjRemLife0_RS", t.adj_rs}};
    out << "{";
    for (const auto& [key, value] : head.items()) {
        out << "\n  " << Json(key).dump() << ": ";
        write_indented(out, value, 1);
        out << ",";
    }
    out << "\n  \"assets\": [";
    if (run.books_assets.empty()) {
        out << "]";
    } else {
        for (std::size_t i = 0; i < run.books_assets.size(); ++i) {
            out << (i ? ",\n    " : "\n    ");
            write_indented(out, books_asset_json(run, run.books_assets[i]), 2);
        }
        out << "\n  ]";
    }
    out << ",\n  \"totals\": ";
    write_indented(out, totals, 1);
    out << "\n}";
}

void select_year(Context& ctx, const std::string& code, int year) {
    if (!ctx.base().select_client_year(code, year))
        throw UsageError("client " + code + " has no financial year " + fy_text(year) +
                         " (create it with brenlow init).");
}

void show_warnings(Context& ctx, const reg::CalculationResult& run) {
    for (const auto& w : run.warnings)
        if (w.show) ctx.err << w.text << "\n";
}

// Additional depreciation under a concessional regime: the refusal on standard error,
// then its question, answered by --yes (removed from the chart) or --no (kept). True
// when the chart was changed.
bool concessional_regime(Context& ctx, const Options& opt, const reg::CalculationResult& run) {
    const auto decision =
        reg::concessional_regime_decision(ctx.base(), run.code, run.year, run.chart_hand_edited);
    if (!decision.refused) return false;
    ctx.err << decision.message << "\n";
    if (!decision.gate_message.empty()) {
        ctx.err << decision.gate_message << "\n";
        return false;
    }
    if (decision.question.empty() || opt.has("no")) return false;
    if (!opt.has("yes")) throw QuestionUnanswered(decision.question);
    reg::remove_additional_depreciation(ctx.base(), run.code, run.year, run.chart_hand_edited);
    ctx.err << "Additional depreciation was removed; the chart without it is the hand-edited chart of the "
               "year.\n";
    return true;
}

// brenlow chart --3cd: clause 18 of the tax audit report, block by block. --csv DIR
// writes the audit utility's two CSVs into an existing folder; --csv FILE (anything but
// a folder) the one-file listing of additions and deductions; --json FILE the utility's
// JSON; --pdf FILE the print; without a file the print as text. For a tax year under the
// Income-tax Act, 2025 the utility's files have no known schema: only the print is made.
int tax_audit(Context& ctx, const Options& opt) {
    opt.reject_unknown({"client", "year", "3cd", "csv", "json", "pdf", "yes"});
    const std::string code = opt.client();
    const int year = opt.require_int("year", 1990, 2099);
    if (opt.has("csv") + opt.has("pdf") + opt.has("json") > 1)
        throw UsageError("choose one of --csv, --json and --pdf.");
    // --json is a flag of the chart command: with --3cd its file is the one word left.
    std::optional<std::string> json;
    if (opt.has("json")) {
        if (opt.positional().size() != 1) throw UsageError("chart --3cd --json takes one file to write.");
        json = opt.positional()[0];
    } else if (!opt.positional().empty()) {
        throw UsageError("chart --3cd takes no file of its own; use --csv, --json or --pdf.");
    }
    const auto csv = opt.get("csv");
    const bool folder = csv && std::filesystem::is_directory(*csv);
    if ((folder || opt.has("json")) && reg::under_act_2025(year)) {
        ctx.err << "The audit utility's files for tax year " << reg::year_span(year)
                << " under the Income-tax Act, 2025 have no published schema yet: nothing was written.\n";
        return 1;
    }
    ctx.reads_only();
    select_year(ctx, code, year);
    if (csv && !folder) {
        const auto lines = reg::tax_audit_lines(ctx.base().dbobj(), code, year);
        suite::write_file_whole(*csv, reg::tax_audit_csv(lines), existing_file(opt));
        ctx.out << "Wrote " << *csv << " (" << lines.size() << " lines)\n";
        return 0;
    }
    reg::CalculationOptions options;
    options.keep_entries = false;
    options.sheets = false;
    const auto run =
        reg::run_calculation(ctx.base().dbobj(), code, year, reg::Mode::DEP_3CD_IT, false, options);
    if (run.no_assets) {
        ctx.err << "No Assets Available !\n";
        return 1;
    }
    const auto blocks = reg::clause18_blocks(ctx.base().dbobj(), run);
    if (folder || opt.has("json")) {
        if (const auto refused = exchange::form3cd_refusals(blocks); !refused.empty()) {
            for (const auto& r : refused) ctx.err << r << "\n";
            ctx.err << "Nothing was written.\n";
            return 1;
        }
    }
    if (folder) {
        const auto dir = std::filesystem::path(*csv);
        const std::string additions = (dir / "clause18-additions.csv").string();
        const std::string deductions = (dir / "clause18-deductions.csv").string();
        // Both files or neither: each is checked before the first is written.
        suite::check_target(additions, existing_file(opt));
        suite::check_target(deductions, existing_file(opt));
        suite::write_file_whole(additions, reg::clause18_additions_csv(blocks), existing_file(opt));
        suite::write_file_whole(deductions, reg::clause18_deductions_csv(blocks), existing_file(opt));
        ctx.out << "Wrote " << additions << " and " << deductions << "\n";
        return 0;
    }
    if (json) {
        suite::write_file_whole(*json, exchange::form3cd_depreciation_json(blocks).dump(2) + "\n",
                                existing_file(opt));
        ctx.out << "Wrote " << *json << " (" << blocks.size() << " blocks)\n";
        return 0;
    }
    const auto client = reg::printed_client(ctx.base().dbobj(), code);
    const auto doc = reg::clause18_report(blocks, year, client);
    if (const auto pdf = opt.get("pdf")) {
        Ostikreport::write_pdf(doc, *pdf, existing_file(opt));
        ctx.out << "Wrote " << *pdf << "\n";
        return 0;
    }
    ctx.out << Ostikreport::render_text(doc);
    return 0;
}

// brenlow chart edit FILE.json | --clear: the hand-edited chart of the year, from a
// document shaped like the DeprChart of `chart --it --json` (TotDep and WdvCl are
// worked out from each row's own amounts).
int edit_chart(Context& ctx, const Options& opt) {
    opt.reject_unknown({"client", "year", "clear"});
    const std::string code = opt.client();
    const int year = opt.require_int("year", 1990, 2099);
    select_year(ctx, code, year);
    if (opt.has("clear")) {
        if (opt.positional().size() != 1) throw UsageError("chart edit --clear takes no file.");
        if (const auto refused = reg::clear_hand_edited_chart(ctx.base(), code, year)) {
            ctx.err << *refused << "\n";
            return 1;
        }
        ctx.out << "The hand-edited chart of F.Y. " << fy_text(year) << " was removed.\n";
        return 0;
    }
    if (opt.positional().size() != 2) throw UsageError("chart edit takes one file (or --clear).");
    const std::string file = opt.positional()[1];
    std::ifstream in(file, std::ios::binary);
    if (!in) throw UsageError("cannot read " + file + ".");
    std::ostringstream text;
    text << in.rdbuf();
    nlohmann::json doc;
    try {
        doc = nlohmann::json::parse(text.str());
    } catch (const nlohmann::json::exception&) {
        throw UsageError(file + " is not a JSON document.");
    }
    const nlohmann::json* rows =
        doc.is_array() ? &doc : (doc.is_object() && doc.contains("DeprChart") ? &doc["DeprChart"] : nullptr);
    if (!rows || !rows->is_array())
        throw UsageError(file + ": expected a list of chart rows under \"DeprChart\".");
    std::vector<depreciation::ChartRow> chart;
    std::vector<std::string> errors;
    for (std::size_t i = 0; i < rows->size(); ++i) {
        const auto& row = (*rows)[i];
        const std::string where = "DeprChart row " + std::to_string(i + 1);
        if (!row.is_object()) {
            errors.push_back(where + ": expected an object of columns");
            continue;
        }
        depreciation::ChartRow r;
        const auto number = [&](const char* name, double& to) {
            const auto it = row.find(name);
            if (it == row.end() || it->is_null()) return;
            if (!it->is_number()) {
                errors.push_back(where + ", field " + name + ": expected a number, found " + it->dump());
                return;
            }
            to = it->get<double>();
        };
        double grp = 0;
        number("Grp", grp);
        r.Grp = static_cast<int>(grp);
        if (grp != r.Grp || r.Grp < 1 || r.Grp > 6)
            errors.push_back(where + ", field Grp: expected a block group 1 to 6");
        for (const auto& [name, field] :
             std::initializer_list<std::pair<const char*, double depreciation::ChartRow::*>>{
                 {"Rate", &depreciation::ChartRow::Rate},
                 {"Wdv", &depreciation::ChartRow::Wdv},
                 {"WdvOpHR", &depreciation::ChartRow::WdvOpHR},
                 {"Add1", &depreciation::ChartRow::Add1},
                 {"Cons1", &depreciation::ChartRow::Cons1},
                 {"FullAmt", &depreciation::ChartRow::FullAmt},
                 {"Add2", &depreciation::ChartRow::Add2},
                 {"Cons2", &depreciation::ChartRow::Cons2},
                 {"HalfAmt", &depreciation::ChartRow::HalfAmt},
                 {"DeprF", &depreciation::ChartRow::DeprF},
                 {"DeprH", &depreciation::ChartRow::DeprH},
                 {"ADeprF", &depreciation::ChartRow::ADeprF},
                 {"ADeprH", &depreciation::ChartRow::ADeprH},
                 {"ADeprOpH", &depreciation::ChartRow::ADeprOpH},
                 {"Dep38", &depreciation::ChartRow::Dep38},
                 {"PropDep", &depreciation::ChartRow::PropDep},
                 {"Exp", &depreciation::ChartRow::Exp},
                 {"CG", &depreciation::ChartRow::CG}})
            number(name, r.*field);
        chart.push_back(r);
    }
    if (!errors.empty()) {
        for (const auto& e : errors) ctx.err << file << ": " << e << "\n";
        ctx.err << "Nothing was saved.\n";
        return 1;
    }
    if (const auto refused = reg::save_hand_edited_chart(ctx.base(), code, year, std::move(chart))) {
        ctx.err << *refused << "\n";
        return 1;
    }
    ctx.out << "The hand-edited chart of F.Y. " << fy_text(year) << " was saved (" << rows->size()
            << " rows).\n";
    return 0;
}

}  // namespace

int chart_command(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"it", "books", "json", "yes", "no", "clear", "3cd"});
    if (!opt.positional().empty() && opt.positional()[0] == "edit") return edit_chart(ctx, opt);
    if (opt.has("3cd")) return tax_audit(ctx, opt);
    opt.reject_unknown({"client", "year", "it", "books", "json", "pdf", "xls", "xlsx", "yes", "no"});
    if (opt.has("yes") && opt.has("no")) throw UsageError("--yes and --no do not go together.");
    const std::string code = opt.client();
    const int year = opt.require_int("year", 1990, 2099);
    if (opt.has("it") == opt.has("books")) throw UsageError("choose one chart: --it or --books.");
    if (opt.has("json") + opt.has("pdf") + opt.has("xls") + opt.has("xlsx") > 1)
        throw UsageError("choose one of --json, --pdf, --xls and --xlsx.");
    const bool it = opt.has("it");
    ctx.reads_only();  // the year's register must be there; only its chart is stored
    select_year(ctx, code, year);

    reg::CalculationOptions options;
    options.keep_entries = false;
    // The text form follows the income-tax chart with its block-wise summary.
    options.sheets = it && !opt.has("json") && !opt.has("pdf") && !opt.has("xls") && !opt.has("xlsx");
    // A file that may not be written is refused before the calculation it would wait for.
    for (const char* kind : {"pdf", "xls", "xlsx"})
        if (const auto file = opt.get(kind)) suite::check_target(*file, existing_file(opt));
    LongWork work(ctx, "Calculating Depreciation ...");
    auto run = reg::run_calculation(ctx.base().dbobj(), code, year,
                                    it ? reg::Mode::DEP_IT : reg::Mode::DEP_FA, true, options);
    show_warnings(ctx, run);
    if (run.no_assets) return 1;
    if (it && concessional_regime(ctx, opt, run)) {
        // The chart now read is the hand-edited one without additional depreciation.
        run = reg::run_calculation(ctx.base().dbobj(), code, year, reg::Mode::DEP_IT, false, options);
    }

    work.step("Calculating Depreciation ...",
              opt.has("pdf") || opt.has("xls") || opt.has("xlsx") ? 0.5 : 1.0);
    if (opt.has("json")) {
        if (it)
            ctx.out << income_tax_json(run).dump(2);
        else
            write_books_json(ctx.out, run);
        ctx.out << "\n";
        return 0;
    }
    const auto client = reg::printed_client(ctx.base().dbobj(), code);
    const auto doc = reg::chart_report(run, client);
    if (const auto pdf = opt.get("pdf")) {
        work.step("Writing " + *pdf + " ...", 0.5);
        Ostikreport::write_pdf(doc, *pdf, existing_file(opt));
        work.finished();
        ctx.out << "Wrote " << *pdf << "\n";
        return 0;
    }
    // The print's target "EXCEL": the same chart as a workbook of numbers.
    for (const char* kind : {"xls", "xlsx"}) {
        if (const auto file = opt.get(kind)) {
            work.step("Writing " + *file + " ...", 0.5);
            const auto book = exchange::report_workbook(doc, it ? "Income-Tax Chart" : "Books Chart");
            exchange::write_spreadsheet(
                book,
                std::string(kind) == "xls" ? exchange::SpreadsheetKind::Xls : exchange::SpreadsheetKind::Xlsx,
                *file, existing_file(opt));
            work.finished();
            ctx.out << "Wrote " << *file << "\n";
            return 0;
        }
    }
    ctx.out << Ostikreport::render_text(doc);
    if (it) ctx.out << "\n" << Ostikreport::render_text(reg::block_summary_report(run, client));
    return 0;
}

}  // namespace brenlow::cli
