// brenlow register: lists a client's register of one year, and adds, edits and
// deletes its entries by running the register screen's own events with the options
// as the person's input. "register export|import" belong to register_io_command.

#include <algorithm>
#include <iomanip>
#include <memory>
#include <optional>
#include <sstream>

#include "app/cli/commands.h"
#include "app/cli/options.h"
#include "controls/cli_ui.h"
#include "controls/number_format.h"
#include "frame/component.h"
#include "register/carry_forward.h"
#include "register/frm_new_fatr.h"
#include "register/register_entry_math.h"
#include "store/register_store.h"

namespace brenlow::cli {
namespace {

using S = reg::frmNewFATR;

constexpr const char* kHelp =
    "Usage: brenlow register list --client CODE --year YYYY [--group ID] [--json]\n"
    "       brenlow register add-opening|add-addition --client CODE --year YYYY --group ID --part TEXT "
    "[fields] [--yes]\n"
    "       brenlow register edit --opening|--addition --serial N --client CODE --year YYYY [fields] "
    "[--yes]\n"
    "       brenlow register delete --opening|--addition (--serial N | --all [--group ID]) --client CODE\n"
    "                       --year YYYY [--yes]\n"
    "       brenlow register carry-forward --client CODE --year YYYY [--yes-40] [--yes]\n"
    "       brenlow register manual-depreciation --client CODE --year YYYY [--set ID=AMOUNT,...] [--json]\n"
    "       brenlow register export FILE --client CODE --year YYYY [--yes]\n"
    "       brenlow register import FILE --client CODE --year YYYY [--replace] [--new-groups] [--yes]\n"
    "       brenlow register import-schedule --client CODE --year YYYY [--yes]\n"
    "       brenlow register merge --client CODE --year YYYY SERIAL... [--additions] [--yes]\n"
    "  FILE.json is the register document; FILE.xls (Excel 97-2003) or FILE.xlsx is the workbook of the\n"
    "  register screen's Export to Excel, sheets \"Opening\" and \"Addition\" (layout in the README).\n"
    "  Overwriting an existing workbook needs --yes.\n"
    "\n"
    "Fields (amounts in rupees, dates dd/mm/yyyy):\n"
    "  both sides:  --put-date D --residual N --life YEARS --rate R --rate-it R --method WDV|SLM\n"
    "               --sale-date D --sale-amount N --sale-expenses N --partial (the deduction leaves the "
    "asset held)\n"
    "               --depreciation N (typed, not calculated)\n"
    "  opening:     --cost N --dep-to-date N --wdv-it N --addl-rate R --calc-ca-year YYYY --dep-calc-ca N\n"
    "               --basis COST|CA --it-state other|not-exist|nil-wdv\n"
    "  addition:    --acc-date D --cost N --excise N --currency-diff N --subsidy N --addl-dep\n"
    "  A residual value, life or rate given is typed in; left out, the group's default or the\n"
    "  auto-calculated figure is taken.\n"
    "\n"
    "A question the options do not answer stops the command (exit code 2); --yes answers Yes.\n"
    "\n"
    "carry-forward opens YYYY (which must have no entries) with the assets of YYYY-1 still held at its\n"
    "end, at last year's closing figures. Rates above 40% are kept unless --yes-40 (or --yes) answers\n"
    "the questions about bringing them down to 40%.\n";

struct Session {
    frame::Component component;
    std::unique_ptr<CliUi> ui;
    std::unique_ptr<S> screen;
};

std::unique_ptr<Session> open(Context& ctx, const Options& opt) {
    const std::string code = opt.client();
    const int year = opt.require_int("year", 1990, 2099);
    if (!ctx.base().select_client_year(code, year))
        throw UsageError("Client " + code + " has no financial year " + fy_text(year) +
                         " (create it with brenlow init).");
    auto s = std::make_unique<Session>();
    s->component.base = std::shared_ptr<TarrowBase::ClsMain>(&ctx.base(), [](TarrowBase::ClsMain*) {});
    s->component.log.set_exe_path(Context::exe_dir());
    s->ui = std::make_unique<CliUi>(ctx.err, opt.has("yes"), CliUi::Unanswered::answer_no);
    s->screen = std::make_unique<S>(s->component, *s->ui);
    // Carrying last year forward is a command of its own; nothing else here writes it.
    s->screen->OfferCarryForward = false;
    const bool loaded = s->screen->Form_Load();
    if (s->ui->unanswered()) throw QuestionUnanswered(*s->ui->unanswered());
    if (!loaded)
        throw std::runtime_error("the register could not be opened: " + s->component.log.last_error() +
                                 " (see " + s->component.log.path() + ")");
    if (const auto g = opt.get("group")) {
        const int i = s->screen->cboFAGM.List.index_of_id(*g);
        if (i >= 0) s->screen->cboFAGM_Click(i);
    }
    return s;
}

int outcome(const Session& s, int logged_before, bool done) {
    if (s.ui->unanswered()) throw QuestionUnanswered(*s.ui->unanswered());
    if (s.component.log.logged() > logged_before)
        throw std::runtime_error(s.component.log.last_error() + " (written to " + s.component.log.path() +
                                 ")");
    return done ? 0 : 1;
}

std::string json_text(std::string_view s) {
    std::ostringstream out;
    out << '"';
    for (const char ch : s) {
        const auto c = static_cast<unsigned char>(ch);
        if (c == '"' || c == '\\')
            out << '\\' << ch;
        else if (c < 0x20)
            out << "\\u" << std::hex << std::setw(4) << std::setfill('0') << int(c) << std::dec;
        else
            out << ch;
    }
    out << '"';
    return out.str();
}

void print_grid(std::ostream& out, const Grid& g, const char* title) {
    out << title << "\n";
    std::vector<int> cols;
    for (int c = 0; c < g.cols(); ++c)
        if (!g.column(c).hidden) cols.push_back(c);
    std::vector<std::size_t> width(cols.size(), 0);
    const auto heading = [&](int c) {
        const std::string band = g.text_matrix(0, c), own = g.text_matrix(g.fixed_rows() - 1, c);
        return band.empty() || band == own ? own : band + " / " + own;
    };
    for (std::size_t i = 0; i < cols.size(); ++i) width[i] = heading(cols[i]).size();
    // Row by row: a register grid reads its rows from the store a page at a time.
    for (int r = g.fixed_rows(); r < g.rows(); ++r)
        for (std::size_t i = 0; i < cols.size(); ++i)
            width[i] = std::max(width[i], g.display_text(r, cols[i]).size());
    for (std::size_t i = 0; i < cols.size(); ++i)
        out << (i ? " | " : "") << std::left << std::setw(int(width[i])) << heading(cols[i]);
    out << "\n";
    for (int r = g.fixed_rows(); r < g.rows(); ++r) {
        for (std::size_t i = 0; i < cols.size(); ++i) {
            const bool right = g.column(cols[i]).alignment == Align::right;
            out << (i ? " | " : "") << (right ? std::right : std::left) << std::setw(int(width[i]))
                << g.display_text(r, cols[i]);
        }
        out << "\n";
    }
    out << std::left;
}

// A cell as JSON data: amounts and rates as numbers (rates to four places, amounts to
// paise), dates as stored (dd/mm/yyyy), everything else as the text shown.
std::string json_cell(const Grid& g, int row, int col) {
    const std::string& format = g.column(col).format;
    const std::string stored = g.text_matrix(row, col);
    const std::string& key = g.col_key(col);
    const bool rate = key.find("Rate") != std::string::npos || key == "AddlDepRT";
    const bool whole = key == "SrNoFATR" || key == "Yr" || key == "Days" || key == "LifeYrs";
    const bool number = rate || whole || (!format.empty() && format.find('#') != std::string::npos);
    if (number) {
        if (stored.empty() || !reg::parse_number(stored)) return "null";
        return plain_number(vb_round(g.value_matrix(row, col), rate ? 4 : 2));
    }
    const bool date = format.find("dd") != std::string::npos || format.find("DD") != std::string::npos;
    return json_text(date ? stored : g.display_text(row, col));
}

void print_json(std::ostream& out, const Grid& g) {
    out << "[";
    for (int r = g.fixed_rows(); r < g.rows(); ++r) {
        out << (r > g.fixed_rows() ? ",\n  {" : "\n  {");
        bool first = true;
        for (int c = 0; c < g.cols(); ++c) {
            if (g.col_key(c) == "SN") continue;
            out << (first ? "" : ", ") << json_text(g.col_key(c)) << ": " << json_cell(g, r, c);
            first = false;
        }
        out << "}";
    }
    out << (g.data_rows() ? "\n]" : "]");
}

int list(Context& ctx, const Options& opt) {
    opt.reject_unknown({"client", "year", "group", "json", "yes"});
    ctx.reads_only();
    auto s = open(ctx, opt);
    auto& scr = *s->screen;
    if (!scr.OldChart() && scr.vsO.data_rows() == 0 && scr.vsA.data_rows() == 0 && !opt.has("group")) {
        store::RegisterStore prev(ctx.base().dbobj(), scr.Code(), scr.Year() - 1);
        if (prev.tables_exist() && !prev.has_old_chart_marker() && prev.has_entries())
            ctx.err << "The register of F.Y. " << fy_text(scr.Year())
                    << " is empty; brenlow register carry-forward --client " << scr.Code() << " --year "
                    << scr.Year() << " can bring last year's assets.\n";
    }
    if (opt.has("json")) {
        ctx.out << "{\"client\": " << json_text(scr.Code()) << ", \"year\": " << scr.Year()
                << ", \"old_chart\": " << (scr.OldChart() ? "true" : "false") << ",\n\"opening\": ";
        print_json(ctx.out, scr.vsO);
        ctx.out << ",\n\"additions\": ";
        print_json(ctx.out, scr.vsA);
        ctx.out << "}\n";
    } else {
        ctx.out << scr.Caption() << "\n\n";
        print_grid(ctx.out, scr.vsO, "Opening entries");
        ctx.out << "\n";
        print_grid(ctx.out, scr.vsA, "Additions");
    }
    return 0;
}

// Types one field, with its tick turned off when the tick gave its default. A value
// longer than the field holds is refused naming the option: the field would keep only
// its first characters ("00000000000000000005" would read as nil).
void type(vTXT& field, CheckBox* tick, const std::optional<std::string>& value, const char* name) {
    if (!value) return;
    refuse_if_longer("Option --" + std::string(name), *value, static_cast<std::size_t>(field.MaxLength()));
    if (tick && tick->Value) tick->Value = false;
    field.set_text(*value);
}

// A field refused on leaving it ends the command; the screen has said why ("Invalid
// Value !"), this says which option gave the value.
void left_field(bool accepted, const char* name, const Options& opt) {
    if (!accepted)
        throw UsageError("Option --" + std::string(name) + " was refused: \"" + opt.get(name).value_or("") +
                         "\".");
}

// The options as the person's typing into the open entry frame.
void fill(S& s, const Options& opt, bool opening) {
    if (const auto g = opt.get_int("group", 1, 2000000000)) {
        if (!s.SelectAssetGroup(*g))
            throw UsageError("The year has no asset group " + std::to_string(*g) + ".");
    }
    if (const auto p = opt.text("part", static_cast<std::size_t>(s.txtPart.MaxLength())))
        s.txtPart.set_text(*p);
    if (const auto m = opt.get("method")) {
        ComboBox& c = opening ? s.cboMODo : s.cboMODa;
        const int i = c.List.index_of_id(*m);
        if (i < 0) throw UsageError("--method is WDV or SLM.");
        opening ? s.cboMODo_Click(i) : s.cboMODa_Click(i);
    }
    if (opening) {
        if (const auto b = opt.get("basis")) s.cboResValOfO_Click(s.cboResValOfO.List.index_of_id(*b));
        if (const auto y = opt.get("calc-ca-year")) s.cboCalcCA_Click(s.cboCalcCA.List.index_of_id(*y));
        type(s.txtCalcCA, nullptr, opt.get("dep-calc-ca"), "dep-calc-ca");
        if (const auto st = opt.get("it-state"))
            s.optsWdvIT_Click(*st == "not-exist" ? S::WdvIT_NotExist
                              : *st == "nil-wdv" ? S::WdvIT_NilWdv
                                                 : S::WdvIT_Other);
        const std::pair<const char*, int> fields[] = {
            {"put-date", S::O_PutDate},  {"cost", S::O_CostWdv},   {"dep-to-date", S::O_OpDepr},
            {"residual", S::O_ResValue}, {"life", S::O_LifeYrs},   {"rate", S::O_RateFACL},
            {"wdv-it", S::O_WdvIT},      {"rate-it", S::O_RateIT}, {"addl-rate", S::O_AddlDepRT}};
        // Life before residual value and rate, as the frame is filled from top to bottom.
        for (const auto& [name, i] : fields) {
            if (!opt.has(name)) continue;
            type(s.txtfieldsO[i], &s.chkfieldsO[i], opt.get(name), name);
            left_field(s.txtfieldsO_Validate(i), name, opt);
        }
    } else {
        const std::pair<const char*, int> fields[] = {
            {"put-date", S::A_PutDate},  {"acc-date", S::A_AccDate},       {"cost", S::A_PurAmt},
            {"excise", S::A_ExciseCr},   {"currency-diff", S::A_CurrDiff}, {"subsidy", S::A_Subsidy},
            {"residual", S::A_ResValue}, {"life", S::A_LifeYrs},           {"rate", S::A_RateFACL},
            {"rate-it", S::A_RateIT}};
        for (const auto& [name, i] : fields) {
            if (!opt.has(name)) continue;
            type(s.txtfieldsA[i], &s.chkfieldsA[i], opt.get(name), name);
            left_field(s.txtfieldsA_Validate(i), name, opt);
        }
        if (opt.has("addl-dep") != s.chkfieldsA[S::A_AddlDepRT].Value) s.chkfieldsA_Click(S::A_AddlDepRT);
    }
    const std::pair<const char*, int> sale[] = {
        {"sale-date", S::D_SaleDate}, {"sale-amount", S::D_SaleAmt}, {"sale-expenses", S::D_SaleExp}};
    for (const auto& [name, i] : sale) {
        if (!opt.has(name)) continue;
        type(s.txtfieldsD[i], nullptr, opt.get(name), name);
        left_field(s.txtfieldsD_Validate(i), name, opt);
    }
    if (opt.has("partial") != s.chkPartDed.Value) s.chkPartDed_Click();
    if (const auto d = opt.get("depreciation")) {
        if (s.chkAutoCalcDeprCL.Value) s.chkAutoCalcDeprCL_Click();
        type(s.txtAutoCalcDeprCL, nullptr, d, "depreciation");
    }
}

const std::set<std::string> kFieldOptions = {
    "client",       "year",        "group",     "part",        "put-date",      "acc-date",      "cost",
    "dep-to-date",  "residual",    "life",      "rate",        "wdv-it",        "rate-it",       "addl-rate",
    "calc-ca-year", "dep-calc-ca", "basis",     "it-state",    "excise",        "currency-diff", "subsidy",
    "addl-dep",     "method",      "sale-date", "sale-amount", "sale-expenses", "depreciation",  "yes",
    "opening",      "addition",    "serial",    "partial"};

// Selects the grid row of a serial; false when the shown register has none.
bool select_serial(S& s, bool opening, long serial) {
    Grid& g = opening ? s.vsO : s.vsA;
    for (int r = g.fixed_rows(); r < g.rows(); ++r) {
        if (g.row_data(r) == serial) {
            (opening ? s.vsO_Row : s.vsA_Row) = r;
            return true;
        }
    }
    return false;
}

bool side_of(const Options& opt) {
    if (opt.has("opening") == opt.has("addition")) throw UsageError("Give one of --opening and --addition.");
    return opt.has("opening");
}

int add(Context& ctx, const Options& opt, bool opening) {
    opt.reject_unknown(kFieldOptions);
    opt.require("group");
    opt.require("part");
    auto s = open(ctx, opt);
    const int before = s->component.log.logged();
    opening ? s->screen->cmdAddO_Click() : s->screen->cmdAddA_Click();
    if (!s->screen->Entering()) throw UsageError(reg::kOldChartRefusal);
    fill(*s->screen, opt, opening);
    const bool done = s->screen->cmdUpdate_Click();
    const int rc = outcome(*s, before, done);
    if (rc == 0) ctx.out << (opening ? "Opening entry" : "Addition") << " saved.\n";
    return rc;
}

int edit(Context& ctx, const Options& opt) {
    opt.reject_unknown(kFieldOptions);
    const bool opening = side_of(opt);
    const long serial = opt.require_int("serial", 1, 2000000000);
    auto s = open(ctx, opt);
    if (!select_serial(*s->screen, opening, serial))
        throw UsageError("No entry with serial " + std::to_string(serial) + ".");
    const int before = s->component.log.logged();
    opening ? s->screen->cmdEditO_Click() : s->screen->cmdEditA_Click();
    fill(*s->screen, opt, opening);
    const bool done = s->screen->cmdUpdate_Click();
    const int rc = outcome(*s, before, done);
    if (rc == 0) ctx.out << "Entry " << serial << " saved.\n";
    return rc;
}

int remove(Context& ctx, const Options& opt) {
    opt.reject_unknown({"client", "year", "group", "opening", "addition", "serial", "all", "yes"});
    const bool opening = side_of(opt);
    auto s = open(ctx, opt);
    auto& scr = *s->screen;
    const int before = s->component.log.logged();
    if (opt.has("all")) {
        if (opt.has("group") && scr.cboFAGM.Id() != *opt.get("group")) {
            ctx.out << "Nothing to delete.\n";
            return 0;
        }
        opening ? scr.cmdDelAllO_Click() : scr.cmdDelAllA_Click();
    } else {
        const long serial = opt.require_int("serial", 1, 2000000000);
        if (!select_serial(scr, opening, serial))
            throw UsageError("No entry with serial " + std::to_string(serial) + ".");
        opening ? scr.cmdDelO_Click() : scr.cmdDelA_Click();
    }
    const int rc = outcome(*s, before, true);
    if (rc == 0) ctx.out << "Deleted.\n";
    return rc;
}

// Opens the year with last year's assets still held, at last year's closing figures.
int carry_forward(Context& ctx, const Options& opt) {
    opt.reject_unknown({"client", "year", "yes", "yes-40"});
    const std::string code = opt.client();
    const int year = opt.require_int("year", 1991, 2099);
    auto& base = ctx.base();
    if (!base.select_client_year(code, year))
        throw UsageError("Client " + code + " has no financial year " + fy_text(year) +
                         " (create it with brenlow init).");
    auto& db = base.dbobj();
    store::RegisterStore reg(db, code, year);
    reg.ensure_tables();
    if (reg.has_old_chart_marker())
        throw UsageError(std::string(reg::kOldChartRefusal) + " Nothing was carried forward.");
    if (reg.has_entries())
        throw UsageError("F.Y. " + fy_text(year) + " already has entries; nothing was carried forward.");
    const auto plan = reg::plan_carry_forward(db, code, year);
    if (plan.openings.empty()) {
        ctx.err << "brenlow register: nothing to carry forward into F.Y. " << fy_text(year) << ": "
                << plan.nothing_because << ".\n";
        return 1;
    }
    const bool yes_40 = opt.has("yes-40") || opt.has("yes");
    reg::CarryForwardAnswers answers;
    const auto answer = [&](bool asked, const char* question) {
        if (!asked) return false;
        ctx.err << question << (yes_40 ? " Yes\n" : " No (--yes-40 answers Yes)\n");
        return yes_40;
    };
    answers.it_rate_to_40 = answer(plan.it_rate_over_40, reg::kItRate40Question);
    answers.books_rate_to_40 =
        answer(plan.books_rate_over_40 && !reg::is_company(base.TSTATUS()), reg::kBooksRate40Question);
    std::vector<std::string> heard;
    answers.rules = reg::answered_beforehand(opt.has("yes"), &heard);
    LongWork work(ctx, "Carrying Forward Previous Year Particulars ...");
    const auto done = reg::apply_carry_forward(db, code, year, plan, answers);
    for (const auto& h : heard) ctx.err << h << "\n";
    if (!done.refusal.empty()) {
        if (done.answered_no) throw QuestionUnanswered(reg::one_line(done.refusal));
        ctx.err << "brenlow register: " << reg::one_line(done.refusal) << "\nNothing was carried forward.\n";
        return 1;
    }
    work.finished();
    ctx.out << "Carried forward " << done.entries << " assets of " << code << " from F.Y. "
            << fy_text(year - 1) << " into F.Y. " << fy_text(year)
            << " (asset groups created: " << done.groups_created << ").\n";
    for (const auto& b : plan.blocks)
        ctx.out << "  Block " << b.block_id << " " << b.name << " @ " << format_mask(b.rate, "###0.00")
                << "%: closing WDV " << format_mask(b.closing_wdv, "###0.00") << ", opened at "
                << format_mask(b.carried_wdv, "###0.00") << " over " << b.assets << " assets\n";
    return 0;
}

// "Edit Depreciation (FA)": lists each group's depreciation typed in by hand, or sets
// some ("--set 11=5000,12=" clears group 12) and saves the grid as the screen does.
int manual_depreciation(Context& ctx, const Options& opt) {
    opt.reject_unknown({"client", "year", "set", "json"});
    auto s = open(ctx, opt);
    auto& scr = *s->screen;
    const int before = s->component.log.logged();
    scr.cmdEditFA_Click();
    if (!scr.famEditFA_Visible) throw UsageError(reg::kOldChartRefusal);
    if (const auto set = opt.get("set")) {
        std::size_t start = 0;
        while (start <= set->size()) {
            const auto end = std::min(set->find(',', start), set->size());
            const std::string item = set->substr(start, end - start);
            const auto eq = item.find('=');
            if (eq == std::string::npos)
                throw UsageError("--set takes ID=AMOUNT pairs, not \"" + item + "\".");
            int row = -1;
            for (int r = scr.vsEditFA.fixed_rows(); r < scr.vsEditFA.rows(); ++r)
                if (scr.vsEditFA.text_matrix(r, 0) == item.substr(0, eq)) row = r;
            if (row < 0) throw UsageError("The year has no asset group " + item.substr(0, eq) + ".");
            if (!scr.vsEditFA_ValidateEdit(row, item.substr(eq + 1))) return outcome(*s, before, false);
            start = end + 1;
        }
        scr.cmdSaveEditFA_Click();
        if (const int rc = outcome(*s, before, true)) return rc;
        scr.cmdEditFA_Click();
    }
    if (opt.has("json")) {
        ctx.out << "[";
        bool first = true;
        for (int r = scr.vsEditFA.fixed_rows(); r < scr.vsEditFA.rows(); ++r) {
            const std::string amount = scr.vsEditFA.text_matrix(r, 2);
            ctx.out << (first ? "\n  " : ",\n  ") << "{\"IdFAGM\": " << scr.vsEditFA.text_matrix(r, 0)
                    << ", \"AssetGroup\": " << json_text(scr.vsEditFA.text_matrix(r, 1))
                    << ", \"DepAmt\": " << (amount.empty() ? "null" : amount) << "}";
            first = false;
        }
        ctx.out << (first ? "]\n" : "\n]\n");
    } else {
        print_grid(ctx.out, scr.vsEditFA, "Depreciation typed in by hand, by asset group");
    }
    return 0;
}

}  // namespace

int register_command(Context& ctx, const std::vector<std::string>& args) {
    const bool help = std::find(args.begin(), args.end(), "--help") != args.end() ||
                      std::find(args.begin(), args.end(), "-h") != args.end();
    if (args.empty() || help) {
        (help ? ctx.out : ctx.err) << kHelp;
        return help ? 0 : 1;
    }
    const std::string sub = args[0];
    const std::vector<std::string> rest(args.begin() + 1, args.end());
    if (sub == "export" || sub == "import") return register_io_command(ctx, sub, rest);
    if (sub == "import-schedule" || sub == "merge") return fixed_schedule_command(ctx, sub, rest);
    const std::set<std::string> flags = {"json", "yes",      "opening", "addition",
                                         "all",  "addl-dep", "partial", "yes-40"};
    try {
        const Options opt(rest, flags);
        if (sub == "list") return list(ctx, opt);
        if (sub == "add-opening") return add(ctx, opt, true);
        if (sub == "add-addition") return add(ctx, opt, false);
        if (sub == "edit") return edit(ctx, opt);
        if (sub == "delete") return remove(ctx, opt);
        if (sub == "carry-forward") return carry_forward(ctx, opt);
        if (sub == "manual-depreciation") return manual_depreciation(ctx, opt);
    } catch (const UsageError& e) {
        ctx.err << "brenlow register: " << e.what() << "\n";
        return 1;
    }
    ctx.err << "brenlow register: unknown action \"" << sub << "\".\n" << kHelp;
    return 1;
}

}  // namespace brenlow::cli
