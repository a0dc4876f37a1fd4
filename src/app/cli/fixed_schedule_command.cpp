// The per-particular fixed-asset schedule on the command line: `schedules fixed
// show|export|import|carry-forward|chart|delete|source|depreciation|options`, `schedules transfer
// trial-balance|capital-gains`, and the register's `import-schedule` (last year's schedule into this year's
// register) and `merge`. Each drives the same screen class the desktop shows, with its questions answered by
// --yes (stopped at the first without it).

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/cli/commands.h"
#include "app/cli/options.h"
#include "controls/cli_ui.h"
#include "controls/number_format.h"
#include "exchange/asset_merge.h"
#include "exchange/fixed_schedule_document.h"
#include "exchange/fixed_schedule_import.h"
#include "frame/component.h"
#include "schedules/fixed_asset_schedule.h"
#include "schedules/fixed_schedule_report.h"
#include "store/client_store.h"
#include "suite/output_file.h"

namespace brenlow::cli {
namespace {

constexpr const char* kSchedulesHelp =
    "Usage: brenlow [--db URL] schedules fixed show --client CODE --year YYYY [--json]\n"
    "       brenlow [--db URL] schedules fixed export FILE.json --client CODE --year YYYY\n"
    "       brenlow [--db URL] schedules fixed import FILE.json --client CODE --year YYYY [--yes]\n"
    "       brenlow [--db URL] schedules fixed carry-forward --client CODE --year YYYY [--yes-40]\n"
    "       brenlow [--db URL] schedules fixed chart --it|--books --client CODE --year YYYY [--pdf FILE]\n"
    "       brenlow [--db URL] schedules fixed delete --client CODE --year YYYY --particular NAME\n"
    "               [--addition SRNO | --deduction SRNO | --carried SRNO] [--yes]\n"
    "       brenlow [--db URL] schedules fixed source --client CODE --year YYYY --particular NAME\n"
    "               --deduction SRNO --from SRNO|0 [--yes]\n"
    "       brenlow [--db URL] schedules fixed depreciation --client CODE --year YYYY --particular NAME\n"
    "               --amount AMOUNT|calculated [--yes]\n"
    "       brenlow [--db URL] schedules fixed options --client CODE --year YYYY [--on LIST] [--off LIST] "
    "[--yes]\n"
    "       brenlow [--db URL] schedules transfer trial-balance|capital-gains --client CODE --year YYYY "
    "[--yes]\n"
    "\n"
    "The per-particular fixed-asset schedule of the year:\n"
    "  fixed show            each particular's figures as per the books and as per the Income-tax Act\n"
    "  fixed export/import   its FIXED_ and FDA_ rows as a JSON document; import saves them through the\n"
    "                        schedule's checks (refusals name the row; its questions need --yes)\n"
    "  fixed chart           the schedule's income-tax chart (a line per particular) or books chart,\n"
    "                        as text or as a PDF file\n"
    "  fixed carry-forward   last year's particulars at their closing figures (rates above 40% kept\n"
    "                        unless --yes-40)\n"
    "  fixed delete          a particular, or one of its lines by srno, then the schedule saved\n"
    "  fixed source          the addition (its srno; 0 the opening figures) a deduction is taken from\n"
    "  fixed depreciation    the books depreciation for the year typed over the calculated one\n"
    "                        (calculated: back to the calculation)\n"
    "  fixed options         the client's options SEPDEP, ADDDEP, STOPDEP, BADEP (comma lists)\n"
    "  transfer trial-balance  books figures per particular replace the trial balance's 'Fixed Assets',\n"
    "                        'Depreciation' and 'Profit on Sale of Fixed Assets' particulars\n"
    "  transfer capital-gains  each particular with a sale or deduction becomes a capital-gains row\n"
    "Questions are answered No unless --yes (exit code 2 when one stopped the command).\n";

constexpr const char* kImportHelp =
    "Usage: brenlow [--db URL] register import-schedule --client CODE --year YYYY [--yes]\n"
    "\n"
    "Brings last year's per-particular fixed-asset schedule into this year's asset register: one\n"
    "opening entry per particular at its closing figures, under an asset group of its name, blocks and\n"
    "rates. Every entry is checked by the register's rules first; a refusal imports nothing.\n";

constexpr const char* kMergeHelp =
    "Usage: brenlow [--db URL] register merge --client CODE --year YYYY SERIAL... [--additions] [--yes]\n"
    "\n"
    "Merges register entries of one asset group into the first one given: costs, depreciation and\n"
    "written down values added, the earliest date of put to use kept. Opening entries unless\n"
    "--additions.\n";

struct Opened {
    frame::Component component;
    std::unique_ptr<CliUi> ui;
    std::unique_ptr<sched::FixedAssetSchedule> screen;
};

std::string code_and_year(Context& ctx, const Options& opt, int& year) {
    const std::string code = opt.client();
    year = opt.require_int("year", 1990, 2099);
    if (!ctx.base().select_client_year(code, year))
        throw UsageError("Client " + code + " has no financial year " + fy_text(year) +
                         " (create it with brenlow init).");
    return code;
}

std::unique_ptr<Opened> open_schedule(Context& ctx, bool yes, bool yes_40, bool offer_carry_forward) {
    auto s = std::make_unique<Opened>();
    s->ui = std::make_unique<CliUi>(ctx.err, yes);
    // The rate questions of the carry-forward have an option of their own.
    s->ui->answer_always("Change Rate for", yes_40);
    s->component.base = std::shared_ptr<TarrowBase::ClsMain>(&ctx.base(), [](TarrowBase::ClsMain*) {});
    s->component.log.set_exe_path(Context::exe_dir());
    s->screen = std::make_unique<sched::FixedAssetSchedule>(s->component, *s->ui);
    if (!s->screen->Form_Load(offer_carry_forward))
        throw std::runtime_error("the schedule could not be opened");
    return s;
}

int show(Context& ctx, const Options& opt) {
    opt.reject_unknown({"client", "year", "json"});
    int year = 0;
    code_and_year(ctx, opt, year);
    ctx.reads_only();
    const auto s = open_schedule(ctx, false, false, false);
    const auto figs = s->screen->figures();
    if (opt.has("json")) {
        auto rows = nlohmann::ordered_json::array();
        for (const auto& f : figs)
            rows.push_back({{"particular", f.name},
                            {"books", f.books_considered},
                            {"OpeningCost", f.books.opening_cost},
                            {"OpeningDep", f.books.opening_dep},
                            {"Additions", f.books.additions},
                            {"DeductionsCost", f.books.deductions_cost},
                            {"Depreciation", f.books.depreciation},
                            {"NetBlock", vb_round(f.books.net_block, 2)},
                            {"ProfitOnSale", vb_round(f.books.profit_on_sale, 2)},
                            {"it", f.it_considered},
                            {"OpeningWDV", f.it.opening_wdv},
                            {"DepreciationIT", f.it.TotDepr},
                            {"ClosingWDV", f.it.RndWdv},
                            {"BlockNil", f.it.block_nil}});
        ctx.out << nlohmann::ordered_json{{"client", s->screen->code()},
                                          {"year", year},
                                          {"particulars", rows}}
                       .dump(2)
                << "\n";
        return 0;
    }
    ctx.out << std::left << std::setw(30) << "Particulars" << std::right << std::setw(14) << "Cost"
            << std::setw(14) << "Depreciation" << std::setw(14) << "Net Block" << std::setw(14) << "WDV (IT)"
            << std::setw(14) << "Dep. (IT)" << std::setw(14) << "Closing WDV"
            << "\n";
    for (const auto& f : figs)
        ctx.out << std::left << std::setw(30) << f.name << std::right << std::setw(14)
                << format_mask(f.books.closing_cost, "###0.00") << std::setw(14)
                << format_mask(f.books.depreciation, "###0.00") << std::setw(14)
                << format_mask(f.books.net_block, "###0.00") << std::setw(14)
                << (f.it_considered ? format_mask(f.it.opening_wdv, "###0") : "-") << std::setw(14)
                << (f.it_considered ? format_mask(f.it.TotDepr, "###0") : "-") << std::setw(14)
                << (f.it_considered ? format_mask(f.it.RndWdv, "###0") : "-")
                << (f.books_considered ? "" : "  (Does Not Consider for Books)") << "\n";
    return 0;
}

int export_rows(Context& ctx, const Options& opt) {
    opt.reject_unknown({"client", "year", "yes"});
    if (opt.positional().size() != 1) throw UsageError("export takes one file name.");
    int year = 0;
    const std::string code = code_and_year(ctx, opt, year);
    ctx.reads_only();
    auto& base = ctx.base();
    store::FixedScheduleStore st(base.dbobj(), base.GetTbName(base.CYrInd()), code);
    nlohmann::ordered_json doc = {
        {"format", "brenlow-fixed-schedule"}, {"version", 1}, {"client", code}, {"year", year}};
    exchange::write_fixed_schedule(doc, st.all_rows());
    suite::write_file_whole(opt.positional()[0], doc.dump(2) + "\n", existing_file(opt));
    ctx.out << "Wrote the fixed-asset schedule of " << code << " for F.Y. " << fy_text(year) << " to "
            << opt.positional()[0] << "\n";
    return 0;
}

int import_rows(Context& ctx, const Options& opt) {
    opt.reject_unknown({"client", "year", "yes"});
    if (opt.positional().size() != 1) throw UsageError("import takes one file name.");
    const std::string file = opt.positional()[0];
    int year = 0;
    code_and_year(ctx, opt, year);
    std::ifstream in(file, std::ios::binary);
    if (!in) throw UsageError(file + ": there is no such file");
    std::ostringstream text;
    text << in.rdbuf();
    std::vector<std::string> errors;
    const auto rows = exchange::read_fixed_schedule_document(text.str(), errors);
    if (!errors.empty()) {
        for (const auto& e : errors) ctx.err << file << ": " << e << "\n";
        ctx.err << "Nothing was imported.\n";
        return 1;
    }
    auto s = open_schedule(ctx, opt.has("yes"), false, false);
    s->screen->vsFixed = sched::fixed_lines_of(rows);
    if (!s->screen->cmdSave_Click()) {
        ctx.err << "Nothing was imported.\n";
        return 1;
    }
    ctx.out << "Saved " << s->screen->vsFixed.size() << " particulars.\n";
    return 0;
}

int carry_forward(Context& ctx, const Options& opt) {
    opt.reject_unknown({"client", "year", "yes-40"});
    int year = 0;
    code_and_year(ctx, opt, year);
    // The carry-forward question itself is what the command was asked to do.
    auto s = open_schedule(ctx, true, opt.has("yes-40"), false);
    if (!s->screen->carry_forward()) {
        ctx.err << "Nothing to carry forward: this year has particulars, or last year has none.\n";
        return 1;
    }
    ctx.out << "Carried forward " << s->screen->vsFixed.size() << " particulars.\n";
    return 0;
}

int chart(Context& ctx, const Options& opt) {
    opt.reject_unknown({"client", "year", "it", "books", "pdf", "yes"});
    if (opt.has("it") == opt.has("books")) throw UsageError("chart needs one of --it and --books.");
    int year = 0;
    const std::string code = code_and_year(ctx, opt, year);
    ctx.reads_only();
    const auto s = open_schedule(ctx, false, false, false);
    const auto cy = store::find_client_year(ctx.base().dbobj(), code, year);
    const sched::ChartClient client{code, cy ? cy->client_name : std::string()};
    const auto figs = s->screen->figures();
    const auto doc = opt.has("it") ? sched::schedule_income_tax_chart(figs, year, client)
                                   : sched::schedule_books_chart(figs, year, client);
    if (const auto pdf = opt.get("pdf")) {
        Ostikreport::write_pdf(doc, *pdf, existing_file(opt));
        ctx.out << "Wrote " << *pdf << "\n";
        return 0;
    }
    ctx.out << Ostikreport::render_text(doc);
    return 0;
}

int transfer(Context& ctx, const Options& opt) {
    opt.reject_unknown({"client", "year", "yes"});
    if (opt.positional().size() != 1) throw UsageError("transfer what? trial-balance or capital-gains.");
    const std::string what = opt.positional()[0];
    if (what != "trial-balance" && what != "capital-gains")
        throw UsageError("transfer what? trial-balance or capital-gains, not \"" + what + "\".");
    int year = 0;
    code_and_year(ctx, opt, year);
    auto s = open_schedule(ctx, opt.has("yes"), false, false);
    const bool done = what == "trial-balance" ? s->screen->cmdtrans_Click() : s->screen->cmdfatrans_Click();
    return done ? 0 : 1;
}

// The row of the particular named by --particular (case-blind).
std::size_t particular_row(const sched::FixedAssetSchedule& screen, const Options& opt) {
    std::string wanted = opt.require("particular");
    std::transform(wanted.begin(), wanted.end(), wanted.begin(),
                   [](unsigned char c) { return std::toupper(c); });
    for (std::size_t i = 0; i < screen.vsFixed.size(); ++i) {
        std::string name = screen.vsFixed[i].row.PART_NM;
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return std::toupper(c); });
        if (name == wanted) return i;
    }
    throw UsageError("Option --particular: the schedule has no particular \"" + opt.require("particular") +
                     "\".");
}

// The line of a row's list whose srno is given.
std::size_t line_of(const std::vector<store::FdaRow>& list, const Options& opt, const std::string& option) {
    const int srno = opt.require_int(option, 1, 1000000);
    for (std::size_t i = 0; i < list.size(); ++i)
        if (list[i].srno == srno) return i;
    throw UsageError("Option --" + option + ": the particular has no such line " + std::to_string(srno) +
                     ".");
}

// Saves what an entry command changed; the save's own questions need --yes.
int saved(Context& ctx, Opened& s, const std::string& done) {
    if (!s.screen->cmdSave_Click()) {
        ctx.err << "Nothing was changed.\n";
        return 1;
    }
    ctx.out << done << "\n";
    return 0;
}

int delete_entry(Context& ctx, const Options& opt) {
    opt.reject_unknown({"client", "year", "particular", "addition", "deduction", "carried", "yes"});
    int year = 0;
    code_and_year(ctx, opt, year);
    auto s = open_schedule(ctx, opt.has("yes"), false, false);
    const std::size_t row = particular_row(*s->screen, opt);
    const auto& l = s->screen->vsFixed[row];
    const std::string name = l.row.PART_NM;
    int kinds = 0;
    for (const char* k : {"addition", "deduction", "carried"}) kinds += opt.has(k) ? 1 : 0;
    if (kinds > 1) throw UsageError("delete takes one of --addition, --deduction and --carried.");
    if (kinds == 0) {
        if (!s->screen->cmddel_Click(row)) return 1;
        return saved(ctx, *s, "Deleted " + name + ".");
    }
    const auto view = opt.has("addition")    ? sched::SubView::Additions
                      : opt.has("deduction") ? sched::SubView::Deductions
                                             : sched::SubView::Carried;
    const std::string option = opt.has("addition")    ? "addition"
                               : opt.has("deduction") ? "deduction"
                                                      : "carried";
    const auto& list = view == sched::SubView::Additions    ? l.additions
                       : view == sched::SubView::Deductions ? l.deductions
                                                            : l.carried;
    const std::size_t line = line_of(list, opt, option);
    if (!s->screen->delete_line(row, view, line)) return 1;
    return saved(ctx, *s, "Deleted " + option + " " + opt.require(option) + " of " + name + ".");
}

int set_source(Context& ctx, const Options& opt) {
    opt.reject_unknown({"client", "year", "particular", "deduction", "from", "yes"});
    int year = 0;
    code_and_year(ctx, opt, year);
    auto s = open_schedule(ctx, opt.has("yes"), false, false);
    const std::size_t row = particular_row(*s->screen, opt);
    const std::size_t line = line_of(s->screen->vsFixed[row].deductions, opt, "deduction");
    if (!s->screen->set_source(row, line, opt.require_int("from", 0, 1000000))) return 1;
    return saved(ctx, *s,
                 "The deduction is taken from " +
                     (opt.require("from") == "0" ? std::string("the opening figures")
                                                 : "addition " + opt.require("from")) +
                     ".");
}

int typed_depreciation(Context& ctx, const Options& opt) {
    opt.reject_unknown({"client", "year", "particular", "amount", "yes"});
    int year = 0;
    code_and_year(ctx, opt, year);
    const std::string text = opt.require("amount");
    std::optional<double> amount;
    if (text != "calculated") {
        amount = parse_amount(text);
        if (!amount || *amount < 0)
            throw UsageError("Option --amount: \"" + text + "\" is not an amount (or \"calculated\").");
    }
    auto s = open_schedule(ctx, opt.has("yes"), false, false);
    const std::size_t row = particular_row(*s->screen, opt);
    s->screen->type_depreciation(row, amount);
    return saved(ctx, *s,
                 amount ? "Depreciation for the year typed: " + format_mask(*amount, "###0.00") + "."
                        : std::string("Depreciation for the year calculated."));
}

int options(Context& ctx, const Options& opt) {
    opt.reject_unknown({"client", "year", "on", "off", "yes"});
    int year = 0;
    code_and_year(ctx, opt, year);
    auto s = open_schedule(ctx, opt.has("yes"), false, false);
    auto o = s->screen->options();
    const auto apply = [&](const std::string& option, bool on) {
        const auto list = opt.get(option);
        if (!list) return;
        std::string word;
        std::istringstream in(*list);
        while (std::getline(in, word, ',')) {
            std::transform(word.begin(), word.end(), word.begin(),
                           [](unsigned char c) { return std::toupper(c); });
            if (word == "SEPDEP")
                o.SEPDEP = on;
            else if (word == "ADDDEP")
                o.ADDDEP = on;
            else if (word == "STOPDEP")
                o.STOPDEP = on;
            else if (word == "BADEP")
                o.BADEP = on;
            else
                throw UsageError("Option --" + option + ": \"" + word +
                                 "\" is none of SEPDEP, ADDDEP, STOPDEP, BADEP.");
        }
    };
    apply("on", true);
    apply("off", false);
    const auto show = [&](const sched::ScheduleOptions& x) {
        ctx.out << "SEPDEP " << (x.SEPDEP ? "on" : "off") << ", ADDDEP " << (x.ADDDEP ? "on" : "off")
                << ", STOPDEP " << (x.STOPDEP ? "on" : "off") << ", BADEP " << (x.BADEP ? "on" : "off")
                << "\n";
    };
    if (o == s->screen->options()) {
        show(o);
        return 0;
    }
    // The options change the year's figures.
    if (!opt.has("yes")) throw QuestionUnanswered("Do you want to change the options of the schedule?");
    ctx.err << "Do you want to change the options of the schedule? Yes\n";
    s->screen->set_options(o);
    show(o);
    return 0;
}

}  // namespace

bool save_fixed_schedule_rows(Context& ctx, bool yes, const store::FixedScheduleRows& rows) {
    auto s = open_schedule(ctx, yes, false, false);
    s->screen->vsFixed = sched::fixed_lines_of(rows);
    return s->screen->cmdSave_Click();
}

int fixed_schedule_command(Context& ctx, const std::string& sub, const std::vector<std::string>& args) {
    const bool help =
        sub == "--help" || sub == "-h" || std::find(args.begin(), args.end(), "--help") != args.end();
    if (sub == "import-schedule" || sub == "merge") {
        if (help) {
            ctx.out << (sub == "merge" ? kMergeHelp : kImportHelp);
            return 0;
        }
        const Options opt(args, {"yes", "additions"});
        int year = 0;
        if (sub == "import-schedule") {
            opt.reject_unknown({"client", "year", "yes"});
            const std::string code = code_and_year(ctx, opt, year);
            std::vector<std::string> heard;
            frame::ErrorLog log(Context::exe_dir());
            const auto r = exchange::import_schedule(ctx.base().dbobj(), log, code, year,
                                                     reg::answered_beforehand(opt.has("yes"), &heard));
            if (!r.errors.empty()) {
                for (const auto& e : r.errors) ctx.err << e << "\n";
                ctx.err << "Nothing was imported.\n";
                return 1;
            }
            for (const auto& h : heard) ctx.err << h << "\n";
            if (log.logged() > 0) ctx.err << "brenlow: a failure was written in " << log.path() << ".\n";
            ctx.out << "Imported " << r.entries << " particulars into " << r.groups
                    << " asset groups of F.Y. " << fy_text(year) << ".\n";
            return 0;
        }
        opt.reject_unknown({"client", "year", "yes", "additions"});
        const std::string code = code_and_year(ctx, opt, year);
        std::vector<long> serials;
        for (const auto& p : opt.positional()) {
            char* end = nullptr;
            const long v = std::strtol(p.c_str(), &end, 10);
            if (p.empty() || *end != '\0' || v <= 0)
                throw UsageError("SERIAL \"" + p + "\" is not a serial number.");
            serials.push_back(v);
        }
        // The screen's own questions, in its order: the merge, then the entry rules'.
        frame::Component component;
        component.base = std::shared_ptr<TarrowBase::ClsMain>(&ctx.base(), [](TarrowBase::ClsMain*) {});
        component.log.set_exe_path(Context::exe_dir());
        CliUi ui(ctx.err, opt.has("yes"), CliUi::Unanswered::answer_no);
        exchange::frmmerge screen(component, ui);
        screen.side = opt.has("additions") ? exchange::MergeSide::Addition : exchange::MergeSide::Opening;
        screen.chosen = serials;
        const bool merged = screen.cmdMerge_Click();
        if (ui.unanswered()) {
            ctx.err << "brenlow: stopped at the question: " << *ui.unanswered() << " (--yes answers Yes)\n";
            return 2;
        }
        if (!merged) return 1;
        ctx.out << "Merged into entry " << serials.front() << ".\n";
        return 0;
    }
    if (help || (sub != "fixed" && sub != "transfer")) {
        (help ? ctx.out : ctx.err) << kSchedulesHelp;
        return help ? 0 : 1;
    }
    const Options opt(args, {"json", "yes", "yes-40", "it", "books"});
    if (sub == "transfer") return transfer(ctx, opt);
    if (opt.positional().empty())
        throw UsageError("schedules fixed what? show, export, import or carry-forward.");
    const std::string what = opt.positional()[0];
    std::vector<std::string> rest(args);
    rest.erase(std::find(rest.begin(), rest.end(), what));
    const Options sub_opt(rest, {"json", "yes", "yes-40", "it", "books"});
    if (what == "show") return show(ctx, sub_opt);
    if (what == "export") return export_rows(ctx, sub_opt);
    if (what == "import") return import_rows(ctx, sub_opt);
    if (what == "carry-forward") return carry_forward(ctx, sub_opt);
    if (what == "chart") return chart(ctx, sub_opt);
    if (what == "delete") return delete_entry(ctx, sub_opt);
    if (what == "source") return set_source(ctx, sub_opt);
    if (what == "depreciation") return typed_depreciation(ctx, sub_opt);
    if (what == "options") return options(ctx, sub_opt);
    throw UsageError(
        "schedules fixed what? show, export, import, carry-forward, chart, delete, source, depreciation or "
        "options, not \"" +
        what + "\".");
}

}  // namespace brenlow::cli
