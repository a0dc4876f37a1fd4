// brenlow capital: the partners' capital accounts of a client's year, through the
// capital screen's own events: listed and printed, the ratios typed, the year's
// result divided, the lines out to a JSON document and back in, the year's result
// and the client's partners recorded.

#include <filesystem>
#include <fstream>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/cli/commands.h"
#include "app/cli/options.h"
#include "capital/capital.h"
#include "capital/capital_report.h"
#include "controls/cli_ui.h"
#include "controls/number_format.h"
#include "controls/vb_date.h"
#include "exchange/capital_document.h"
#include "store/capital_store.h"
#include "store/text_limits.h"
#include "suite/defaults.h"
#include "suite/output_file.h"

namespace brenlow::cli {
namespace {

constexpr const char* kHelp =
    "Usage: brenlow [--db URL] capital show --client CODE --year YYYY [--json|--pdf FILE]\n"
    "       brenlow [--db URL] capital ratios --client CODE --year YYYY PARTNER=PCT... [--yes]\n"
    "       brenlow [--db URL] capital share --client CODE --year YYYY [--net-profit N] [--yes]\n"
    "       brenlow [--db URL] capital export FILE.json --client CODE --year YYYY\n"
    "       brenlow [--db URL] capital import FILE.json --client CODE --year YYYY\n"
    "       brenlow [--db URL] capital result --client CODE --year YYYY [ITEM=AMOUNT...] [--tax N] [--yes]\n"
    "       brenlow [--db URL] capital partners --client CODE [--add \"FIRST [MIDDLE] LAST\"]\n"
    "       brenlow [--db URL] capital terms PARTNER --client CODE --year YYYY [--working yes|no] [--rate "
    "R]\n"
    "               [--remuneration N] [DD/MM/YYYY=AMOUNT...] [--yes]\n"
    "       brenlow [--db URL] capital interest --client CODE --year YYYY [--post] [--yes]\n"
    "       brenlow [--db URL] capital share-account capital|current --client CODE --year YYYY\n"
    "       brenlow [--db URL] capital partner-if PARTNER --client CODE --year YYYY\n"
    "\n"
    "  show      the capital schedule: each partner's ratio, lines and closing balances (only reads)\n"
    "  ratios    the year's profit-sharing ratios, which must total 100: a listed partner by its\n"
    "            code (capital partners), a partner entered by hand by name (RAVI KUMAR=40)\n"
    "  share     divides the year's net profit (the year's result less its tax, or --net-profit N)\n"
    "            by the ratios into each partner's \"PROFIT SHARE (00711)\" line and saves the\n"
    "            schedule: a profit is credited, a loss debited; the last partner takes the remainder\n"
    "  export    the year's ratios and lines as a JSON document\n"
    "  import    replaces the year's ratios and lines with a document's, every row checked first\n"
    "  result    records the year's result as the final accounts do: its items and its tax\n"
    "  partners  lists the client's partners (owner1), or adds one\n"
    "  terms     a partner's terms under the deed: working partner or not, interest on capital (%\n"
    "            a year), remuneration paid, and dated additions (+) and drawings (-) of capital\n"
    "  interest  the interest and remuneration worked against s.40(b); --post posts them as the\n"
    "            partners' lines before the profit share\n"
    "  share-account  the account the share, interest and remuneration go to (default capital)\n"
    "  partner-if     a partner's row of Schedule IF of his own return, as JSON\n"
    "A question the options do not answer stops the command (exit code 2); --yes answers Yes.\n";

struct Year {
    std::string code;
    int year = 0;
};

Year open_year(Context& ctx, const Options& opt) {
    Year y{opt.client(), opt.require_int("year", 1990, 2099)};
    if (!ctx.base().select_client_year(y.code, y.year))
        throw UsageError("client " + y.code + " has no financial year " + fy_text(y.year) +
                         " (create it with brenlow init).");
    return y;
}

frame::Component component_of(Context& ctx) {
    frame::Component c;
    c.base = std::shared_ptr<TarrowBase::ClsMain>(&ctx.base(), [](TarrowBase::ClsMain*) {});
    c.log.set_exe_path(Context::exe_dir());
    return c;
}

// How the command ends after the screen's event: 2 at an unanswered question, 1
// after a refusal, else 0.
// A failure the screen only logged is said too, in the program's own words.
int outcome(Context& ctx, const CliUi& ui, bool done, const frame::Component* component = nullptr) {
    if (ui.unanswered()) {
        ctx.err << "brenlow: stopped at the question: " << *ui.unanswered() << " (--yes answers Yes)\n";
        return 2;
    }
    if (!done && ui.messages() == 0 && component && component->log.logged() > 0) {
        const std::string reason = store::failure_reason(
            ctx.base().dbobj().backend(), component->log.last_number(), component->log.last_error());
        ctx.err << "brenlow capital: Nothing was saved."
                << (reason.empty() ? " The failure is written in " + component->log.path() + "." : reason)
                << "\n";
    }
    return done ? 0 : 1;
}

void print_balances(Context& ctx, const capital::capital& s) {
    for (int r = s.vsPL.fixed_rows(); r < s.vsPL.rows(); ++r) {
        using C = capital::capital;
        const std::string ratio = s.vsPL.text_matrix(r, C::kPLRatio);
        ctx.out << std::left << std::setw(30) << s.vsPL.text_matrix(r, C::kPLName) << std::right
                << std::setw(8)
                << (ratio.empty() ? "" : format_mask(s.vsPL.value_matrix(r, C::kPLRatio), "###0.00") + "%")
                << "  Capital A/c " << std::setw(16) << s.vsPL.text_matrix(r, C::kPLCapital)
                << "  Current A/c " << std::setw(16) << s.vsPL.text_matrix(r, C::kPLCurrent) << "\n";
    }
}

int show(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"json", "yes"});
    opt.reject_unknown({"client", "year", "json", "pdf", "yes"});
    ctx.reads_only();
    const auto y = open_year(ctx, opt);
    auto component = component_of(ctx);
    CliUi ui(ctx.err, false, CliUi::Unanswered::answer_no);
    capital::capital s(component, ui, true);
    s.Form_Load();
    if (opt.has("json")) {
        using C = capital::capital;
        auto partners = nlohmann::ordered_json::array();
        double capital_total = 0, current_total = 0;
        for (const auto& l : s.lines()) {
            const double signed_amt = l.nid == store::kCapitalCredit ? l.amt : -l.amt;
            (l.actyp == store::kCurrentAccount ? current_total : capital_total) += signed_amt;
        }
        for (const auto& r : s.ratios()) {
            const std::string code = C::partner_code(r);
            partners.push_back(
                {{"code", code},
                 {"name", r.name},
                 {"rat", r.rat},
                 {"capital_balance", vb_round(s.closing_balance(code, store::kCapitalAccount), 2)},
                 {"current_balance", vb_round(s.closing_balance(code, store::kCurrentAccount), 2)}});
        }
        auto lines = nlohmann::ordered_json::array();
        for (const auto& l : s.lines())
            lines.push_back({{"code", l.code},
                             {"partner", s.partner_name(l.code)},
                             {"srno", l.srno},
                             {"actyp", l.actyp},
                             {"nid", l.nid},
                             {"Particular", s.particular_name(l.particular_id)},
                             {"AMT", vb_round(l.amt, 2)}});
        ctx.out << nlohmann::ordered_json{{"client", y.code},
                                          {"year", y.year},
                                          {"title", s.Caption()},
                                          {"net_profit", vb_round(s.shared_net_profit(), 2)},
                                          {"share_account", s.share_account() == store::kCurrentAccount
                                                                ? "Current A/c"
                                                                : "Capital A/c"},
                                          {"capital_total", vb_round(capital_total, 2)},
                                          {"current_total", vb_round(current_total, 2)},
                                          {"auto_net_profit", s.chkautocalcnp.Value},
                                          {"partners", partners},
                                          {"lines", lines}}
                       .dump(2)
                << "\n";
        return 0;
    }
    const auto doc = capital::capital_schedule_report(s);
    if (const auto pdf = opt.get("pdf")) {
        Ostikreport::write_pdf(doc, *pdf, existing_file(opt));
        ctx.out << "Wrote the capital schedule of " << y.code << " for F.Y. " << fy_text(y.year) << " to "
                << *pdf << "\n";
        return 0;
    }
    ctx.out << Ostikreport::render_text(doc);
    return 0;
}

int ratios(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"yes"});
    opt.reject_unknown({"client", "year", "yes"});
    const auto y = open_year(ctx, opt);
    std::vector<std::pair<std::string, double>> typed;
    for (std::size_t i = 1; i < opt.positional().size(); ++i) {
        const std::string& a = opt.positional()[i];
        const auto eq = a.rfind('=');
        if (eq == std::string::npos || eq == 0)
            throw UsageError("a ratio is PARTNER=PERCENT (1=50 or \"RAVI KUMAR=50\"), not \"" + a + "\".");
        char* end = nullptr;
        const std::string pct = a.substr(eq + 1);
        const double v = std::strtod(pct.c_str(), &end);
        if (pct.empty() || *end != '\0') throw UsageError("the percentage of \"" + a + "\" is not a number.");
        typed.emplace_back(a.substr(0, eq), v);
    }
    auto component = component_of(ctx);
    CliUi ui(ctx.err, opt.has("yes"), CliUi::Unanswered::answer_no);
    capital::capital s(component, ui);
    s.Form_Load();
    if (ui.unanswered()) return outcome(ctx, ui, false, &component);
    s.cmdProfitDet_Click();
    while (s.vsfR.data_rows() > 0) s.vsfR.remove_item(s.vsfR.fixed_rows());
    const auto listed = store::listed_partners(ctx.base().dbobj(), y.code);
    for (const auto& entry : typed) {
        // Named, not bound: a lambda below uses it (clang 14 takes no bindings into lambdas).
        const auto& who = entry.first;
        const auto& pct = entry.second;
        s.cmdAddP_Click();
        const int row = s.vsfR.rows() - 1;
        const bool is_code = std::any_of(listed.begin(), listed.end(), [&](const store::ListedPartner& p) {
            return std::to_string(p.code) == who;
        });
        if (!is_code && who.find_first_not_of("0123456789") == std::string::npos)
            throw UsageError("the client has no partner " + who + " (brenlow capital partners lists them).");
        if (is_code) {
            s.vsfR.set_text_matrix(row, capital::capital::kRPartner, who);
            s.vsfR_AfterEdit(row, capital::capital::kRPartner);
        } else if (!s.set_other_partner(row, who)) {
            return 1;
        }
        if (s.vsfR.text_matrix(row, capital::capital::kRPartner).empty()) return 1;
        s.vsfR.set_value_matrix(row, capital::capital::kRRatio, pct);
        s.vsfR_AfterEdit(row, capital::capital::kRRatio);
    }
    ctx.err << s.lblTotal.Caption << "\n";
    const bool saved = s.cmdbackP_Click();
    if (saved) print_balances(ctx, s);
    return outcome(ctx, ui, saved, &component);
}

int share(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"yes"});
    opt.reject_unknown({"client", "year", "yes", "net-profit"});
    const auto y = open_year(ctx, opt);
    std::optional<double> typed;
    if (const auto n = opt.get("net-profit")) {
        typed = parse_amount(*n);
        if (!typed) throw UsageError("Option --net-profit must be a number, not \"" + *n + "\".");
    }
    auto component = component_of(ctx);
    CliUi ui(ctx.err, opt.has("yes"), CliUi::Unanswered::answer_no);
    auto type_net = [&](capital::capital& screen) {
        if (!typed) return;
        // Typed for this run; the client's option is left as it is.
        screen.chkautocalcnp.Value = false;
        screen.txtNetProfit.set_text(plain_number(*typed));
    };
    {
        // The share is tried on the schedule as it is read, writing nothing: a nil
        // result or ratios short of 100 are said before the question.
        CliUi quiet(ctx.err, false, CliUi::Unanswered::answer_no);
        capital::capital trial(component, quiet, true);
        trial.Form_Load();
        type_net(trial);
        if (!trial.cmdShare_Click()) return outcome(ctx, quiet, false, &component);
    }
    // The shares change the partners' accounts: asked first, --yes answers.
    if (!ui.ask_yes_no("Do you want to Share the Net Profit/Loss among the Partners and Save ?",
                       MsgIcon::question, false))
        return outcome(ctx, ui, false, &component);
    capital::capital s(component, ui);
    s.Form_Load();
    if (ui.unanswered()) return outcome(ctx, ui, false, &component);
    type_net(s);
    if (!s.cmdShare_Click() || !s.cmdsave_Click()) return outcome(ctx, ui, false, &component);
    ctx.out << "Net profit of " << y.code << " for F.Y. " << fy_text(y.year) << ": "
            << format_mask(s.net_profit(), "###0.00") << "\n";
    if (s.shareable_profit() != s.net_profit())
        ctx.out << "Shared after the partners' interest and remuneration: "
                << format_mask(s.shareable_profit(), "###0.00") << "\n";
    for (const auto& [code, amount] : s.last_shares())
        ctx.out << "  " << std::left << std::setw(30) << s.partner_name(code) << std::right << std::setw(14)
                << format_mask(std::abs(amount), "###0.00") << (amount < 0 ? " Dr." : " Cr.") << "\n";
    print_balances(ctx, s);
    return outcome(ctx, ui, true, &component);
}

std::string read_document(const std::string& file) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(file, ec)) throw UsageError(file + ": there is no such file.");
    std::ifstream f(file, std::ios::binary);
    std::ostringstream text;
    text << f.rdbuf();
    if (!f) throw UsageError(file + ": the file cannot be read.");
    return text.str();
}

int export_document(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"yes"});
    opt.reject_unknown({"client", "year", "yes"});
    if (opt.positional().size() != 2) throw UsageError("export takes one file name.");
    ctx.reads_only();
    const auto y = open_year(ctx, opt);
    suite::check_target(opt.positional()[1], existing_file(opt));  // refused before any progress is shown
    LongWork work(ctx, "Exporting the capital accounts to " + opt.positional()[1] + " ...");
    suite::write_file_whole(opt.positional()[1], exchange::export_capital(ctx.base().dbobj(), y.code, y.year),
                            existing_file(opt));
    work.finished();
    ctx.out << "Wrote the capital accounts of " << y.code << " for F.Y. " << fy_text(y.year) << " to "
            << opt.positional()[1] << "\n";
    return 0;
}

int import_document(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {});
    opt.reject_unknown({"client", "year"});
    if (opt.positional().size() != 2) throw UsageError("import takes one file name.");
    const auto y = open_year(ctx, opt);
    const std::string file = opt.positional()[1];
    const std::string text = read_document(file);
    LongWork work(ctx, "Importing the capital accounts from " + file + " ...");
    const auto r = exchange::import_capital(ctx.base().dbobj(), y.code, y.year, text);
    if (!r.errors.empty()) {
        for (const auto& e : r.errors) ctx.err << file << ": " << e << "\n";
        ctx.err << "Nothing was imported.\n";
        return 1;
    }
    work.finished();
    ctx.out << "Imported into " << y.code << " for F.Y. " << fy_text(y.year) << ": " << r.lines << " lines, "
            << r.particulars_created << " particulars created, " << r.ratios << " ratios\n";
    return 0;
}

int result(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"yes"});
    opt.reject_unknown({"client", "year", "tax", "yes"});
    const auto y = open_year(ctx, opt);
    std::vector<std::pair<long, double>> items;
    for (std::size_t i = 1; i < opt.positional().size(); ++i) {
        const std::string& a = opt.positional()[i];
        const auto eq = a.find('=');
        char* end1 = nullptr;
        const std::string id = eq == std::string::npos ? a : a.substr(0, eq);
        const std::string amt = eq == std::string::npos ? "" : a.substr(eq + 1);
        const long item = std::strtol(id.c_str(), &end1, 10);
        const auto amount = parse_amount(amt);
        if (id.empty() || *end1 != '\0' || !amount)
            throw UsageError("an item of the result is ITEM=AMOUNT (3=125000), not \"" + a + "\".");
        items.emplace_back(item, *amount);
    }
    std::optional<double> tax;
    if (const auto t = opt.get("tax")) {
        tax = parse_amount(*t);
        if (!tax) throw UsageError("Option --tax must be a number, not \"" + *t + "\".");
    }
    auto& base = ctx.base();
    const std::string suffix = base.GetTbName(base.CYrInd());
    auto& db = base.dbobj();
    std::vector<std::pair<long, double>> recorded_items;
    double recorded_tax = 0;
    for (const auto& r : store::year_result(db, suffix, y.code)) {
        if (r.ptype == 0)
            recorded_items.emplace_back(r.id, r.amt);
        else
            recorded_tax += r.amt;
    }
    auto say = [&](const char* what, const std::vector<std::pair<long, double>>& it, double tx) {
        double net = -tx;
        for (const auto& [id, amount] : it) net += amount;
        ctx.out << what << y.code << " for F.Y. " << fy_text(y.year) << ": " << it.size() << " items, tax "
                << format_mask(tx, "###0.00") << ", net profit " << format_mask(net, "###0.00") << "\n";
    };
    // Given nothing to record, the recorded result stands.
    if (items.empty() && !tax) {
        ctx.err << "brenlow capital: no items of the result and no --tax were given; nothing was changed.\n";
        say("The result recorded of ", recorded_items, recorded_tax);
        return 0;
    }
    // The year's result replaces the one recorded: asked first, --yes answers. What is
    // not given (the items, or the tax) is kept.
    CliUi ui(ctx.err, opt.has("yes"), CliUi::Unanswered::answer_no);
    if (!ui.ask_yes_no("Do you want to Replace the Result of the Year ?", MsgIcon::question, false))
        return outcome(ctx, ui, false);
    if (!store::year_result_tables(db, suffix))
        throw UsageError("the year's result tables are missing (brenlow init makes them).");
    if (items.empty()) {
        store::write_year_tax(db, suffix, y.code, *tax);
        items = recorded_items;
    } else {
        store::write_year_result(db, suffix, y.code, items, tax.value_or(recorded_tax));
    }
    const double net_tax = tax.value_or(recorded_tax);
    say("The result of ", items, net_tax);
    return 0;
}

int partners(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {});
    opt.reject_unknown({"client", "add"});
    const std::string code = opt.client();
    auto& db = ctx.base().dbobj();
    if (const auto name = opt.text("add", store::kNameChars)) {
        std::istringstream words(*name);
        std::vector<std::string> parts;
        for (std::string w; words >> w;) parts.push_back(w);
        if (parts.empty()) throw UsageError("Option --add needs the partner's name.");
        std::string middle;
        for (std::size_t i = 1; i + 1 < parts.size(); ++i) middle += (middle.empty() ? "" : " ") + parts[i];
        const long added =
            store::add_listed_partner(db, code, parts[0], middle, parts.size() > 1 ? parts.back() : "");
        ctx.out << "Added partner " << added << " to " << code << "\n";
    }
    for (const auto& p : store::listed_partners(db, code))
        ctx.out << std::setw(4) << p.code << "  " << p.name << "\n";
    return 0;
}

// The code of a partner of the year's ratios named by his owner1 code or his name.
std::string ratio_partner(const capital::capital& s, const std::string& who) {
    for (const auto& r : s.ratios()) {
        const std::string code = capital::capital::partner_code(r);
        if (code == who || capital::name_key(r.name) == capital::name_key(who)) return code;
    }
    throw UsageError("\"" + who +
                     "\" is not a partner of the year's ratios (brenlow capital show lists them).");
}

void print_working(Context& ctx, const capital::capital& s) {
    const auto firm = s.partners_working();
    ctx.out << std::left << std::setw(26) << "Partner" << std::right << std::setw(8) << "Working"
            << std::setw(9) << "Rate" << std::setw(15) << "Capital" << std::setw(13) << "Interest"
            << std::setw(13) << "Allowed" << std::setw(13) << "Disallowed" << std::setw(15) << "Remuneration"
            << "\n";
    for (const auto& p : firm.partners)
        ctx.out << std::left << std::setw(26) << s.partner_name(p.code) << std::right << std::setw(8)
                << (p.working ? "Yes" : "No") << std::setw(9) << format_mask(p.rate, "###0.00")
                << std::setw(15) << format_mask(p.capital, "###0.00") << std::setw(13)
                << format_mask(p.interest.at_deed_rate, "###0.00") << std::setw(13)
                << format_mask(p.interest.allowed, "###0.00") << std::setw(13)
                << format_mask(p.interest.disallowed, "###0.00") << std::setw(15)
                << format_mask(p.remuneration, "###0.00") << "\n";
    ctx.out << s.lblRemuneration.Caption << "\n";
}

int terms(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"yes"});
    opt.reject_unknown({"client", "year", "yes", "working", "rate", "remuneration"});
    const auto y = open_year(ctx, opt);
    if (opt.positional().size() < 2) throw UsageError("terms takes the partner (his code or name).");
    std::vector<capital::CapitalMove> moves;
    for (std::size_t i = 2; i < opt.positional().size(); ++i) {
        const std::string& a = opt.positional()[i];
        const auto eq = a.find('=');
        const auto date = eq == std::string::npos ? std::nullopt : Date::parse(a.substr(0, eq));
        const auto amount = eq == std::string::npos ? std::nullopt : parse_amount(a.substr(eq + 1));
        if (!date || !amount)
            throw UsageError("a dated move of capital is DD/MM/YYYY=AMOUNT (15/10/2024=-50000), not \"" + a +
                             "\".");
        if (*date < fy_first(y.year) || *date > fy_last(y.year))
            throw UsageError("the date of \"" + a + "\" is outside F.Y. " + fy_text(y.year) + ".");
        moves.push_back({*date, *amount});
    }
    auto component = component_of(ctx);
    CliUi ui(ctx.err, opt.has("yes"), CliUi::Unanswered::answer_no);
    capital::capital s(component, ui);
    s.Form_Load();
    if (ui.unanswered()) return outcome(ctx, ui, false, &component);
    using C = capital::capital;
    const std::string code = ratio_partner(s, opt.positional()[1]);
    int row = -1;
    for (int r = s.vsIR.fixed_rows(); r < s.vsIR.rows(); ++r)
        if (s.vsIR.text_matrix(r, C::kIRCode) == code) row = r;
    if (const auto w = opt.get("working")) {
        if (*w != "yes" && *w != "no") throw UsageError("--working is yes or no, not \"" + *w + "\".");
        s.vsIR.set_text_matrix(row, C::kIRWorking, *w == "yes" ? "1" : "0");
        s.vsIR_AfterEdit(row, C::kIRWorking);
    }
    for (const auto& [option, col] : {std::pair{"rate", C::kIRRate}, {"remuneration", C::kIRRemuneration}})
        if (const auto v = opt.get(option)) {
            const auto n = parse_amount(*v);
            if (!n)
                throw UsageError(std::string("Option --") + option + " must be a number, not \"" + *v +
                                 "\".");
            s.vsIR.set_value_matrix(row, col, *n);
            s.vsIR_AfterEdit(row, col);
        }
    if (opt.positional().size() > 2) s.set_moves(code, moves);
    const bool saved = s.cmdSaveTerms_Click();
    if (saved) print_working(ctx, s);
    return outcome(ctx, ui, saved, &component);
}

int interest(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"yes", "post"});
    opt.reject_unknown({"client", "year", "yes", "post"});
    if (!opt.has("post")) ctx.reads_only();
    open_year(ctx, opt);
    auto component = component_of(ctx);
    CliUi ui(ctx.err, opt.has("yes"), CliUi::Unanswered::answer_no);
    capital::capital s(component, ui, !opt.has("post"));
    s.Form_Load();
    if (ui.unanswered()) return outcome(ctx, ui, false, &component);
    print_working(ctx, s);
    if (!opt.has("post")) return 0;
    if (!s.cmdIntRem_Click() || !s.cmdsave_Click()) return outcome(ctx, ui, false, &component);
    ctx.out << "Posted interest on capital " << format_mask(s.posted(s.interest_id()), "###0.00")
            << " and remuneration " << format_mask(s.posted(s.remuneration_id()), "###0.00")
            << "; the profit share now divides " << format_mask(s.shareable_profit(), "###0.00") << "\n";
    print_balances(ctx, s);
    return outcome(ctx, ui, true, &component);
}

int share_account(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {});
    opt.reject_unknown({"client", "year"});
    const std::string which = opt.positional().size() == 2 ? opt.positional()[1] : std::string();
    if (which != "capital" && which != "current") throw UsageError("share-account is capital or current.");
    const auto y = open_year(ctx, opt);
    // The client's option that the screen's tick keeps.
    auto& base = ctx.base();
    base.SetMiscOthInf(capital::capital::kShareAccountOption, which == "current" ? "1" : "0",
                       base.SecondDate(), y.code, capital::capital::kShareAccountCaption);
    ctx.out << "The profit share, interest and remuneration go to the "
            << (which == "current" ? "Current A/c" : "Capital A/c") << "\n";
    return 0;
}

int partner_if(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {});
    opt.reject_unknown({"client", "year"});
    ctx.reads_only();
    const auto y = open_year(ctx, opt);
    if (opt.positional().size() != 2) throw UsageError("partner-if takes the partner (his code or name).");
    auto component = component_of(ctx);
    CliUi ui(ctx.err, false, CliUi::Unanswered::answer_no);
    capital::capital s(component, ui, true);
    s.Form_Load();
    const std::string code = ratio_partner(s, opt.positional()[1]);
    double ratio = 0, share = 0, interest_received = 0, remuneration = 0;
    for (const auto& r : s.ratios())
        if (capital::capital::partner_code(r) == code) ratio = r.rat;
    for (const auto& l : s.lines()) {
        if (l.code != code) continue;
        const double v = l.nid == store::kCapitalCredit ? l.amt : -l.amt;
        if (l.particular_id == s.profit_share_id()) share += v;
        if (l.particular_id == s.interest_id()) interest_received += v;
        if (l.particular_id == s.remuneration_id()) remuneration += v;
    }
    auto& base = ctx.base();
    const std::string pan = base.GetMiscOthInf("PAN", base.SecondDate(), y.code);
    nlohmann::ordered_json row{
        {"FirmName", s.client_name()},
        {"FirmPAN", pan.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(pan)},
        {"PartnerName", s.partner_name(code)},
        {"ProfitSharePercent", ratio},
        {"ProfitShareAmount", vb_round(share, 2)},
        {"CapitalBalanceOn31March", vb_round(s.closing_balance(code, store::kCapitalAccount) +
                                                 s.closing_balance(code, store::kCurrentAccount),
                                             2)},
        {"InterestReceived", vb_round(interest_received, 2)},
        {"RemunerationReceived", vb_round(remuneration, 2)}};
    ctx.out << nlohmann::ordered_json{{"client", y.code}, {"year", y.year}, {"PartnerFirmDetails", row}}.dump(
                   2)
            << "\n";
    return 0;
}

}  // namespace

int capital_command(Context& ctx, const std::vector<std::string>& args) {
    const std::string sub = args.empty() ? std::string() : args[0];
    for (const auto& a : args)
        if (a == "--help" || a == "-h") {
            ctx.out << kHelp;
            return 0;
        }
    if (sub == "show") return show(ctx, args);
    if (sub == "ratios") return ratios(ctx, args);
    if (sub == "share") return share(ctx, args);
    if (sub == "export") return export_document(ctx, args);
    if (sub == "import") return import_document(ctx, args);
    if (sub == "result") return result(ctx, args);
    if (sub == "partners") return partners(ctx, args);
    if (sub == "terms") return terms(ctx, args);
    if (sub == "interest") return interest(ctx, args);
    if (sub == "share-account") return share_account(ctx, args);
    if (sub == "partner-if") return partner_if(ctx, args);
    ctx.err << kHelp;
    return 1;
}

}  // namespace brenlow::cli
