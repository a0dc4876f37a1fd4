// brenlow schedules export|import|show|carry-forward: a client's balance-sheet
// schedules of one year as a JSON document, one schedule printed, and last year's
// particulars carried into this year.

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/cli/commands.h"
#include "app/cli/options.h"
#include "controls/cli_ui.h"
#include "controls/id_text_list.h"
#include "controls/number_format.h"
#include "exchange/schedules_document.h"
#include "schedules/schedule_carry.h"
#include "schedules/schedule_grids.h"
#include "schedules/schedule_report.h"
#include "store/capital_store.h"
#include "store/schedule_store.h"
#include "store/text_limits.h"
#include "suite/output_file.h"

namespace brenlow::cli {
namespace {

constexpr const char* kHelp =
    "Usage: brenlow [--db URL] schedules export FILE.json --client CODE --year YYYY\n"
    "       brenlow [--db URL] schedules import FILE.json --client CODE --year YYYY [--replace] [--yes]\n"
    "       brenlow [--db URL] schedules show NAME --client CODE --year YYYY [--secured|--unsecured]\n"
    "                                         [--json|--pdf FILE]\n"
    "       brenlow [--db URL] schedules carry-forward --client CODE --year YYYY [--yes]\n"
    "       brenlow [--db URL] schedules lists [--client CODE --year YYYY] [--json]\n"
    "       brenlow [--db URL] schedules company list [--json]\n"
    "       brenlow [--db URL] schedules company add --name NAME [--yes]\n"
    "       brenlow [--db URL] schedules fixed show|export|import|carry-forward|chart ... (schedules fixed "
    "--help)\n"
    "       brenlow [--db URL] schedules transfer trial-balance|capital-gains --client CODE --year YYYY "
    "[--yes]\n"
    "\n"
    "The balance-sheet schedules of the client's year, as the schedules screen keeps them:\n"
    "  export          every schedule table of the year (SHARE_, RESV_, SECUR_, INVEST_, LOAN_ADV_,\n"
    "                  MiscExpAsst_, SUNDEB_, BANK_) as one JSON document, rows keyed by column names\n"
    "  import          reads such a document; every row is checked with the screen's checks before\n"
    "                  anything is written; --replace replaces the tables the document holds; the\n"
    "                  fixed-asset schedule (FIXED_, FDA_) is saved through its screen's checks and\n"
    "                  questions (--yes answers them)\n"
    "  show NAME       prints one schedule: \"Share Capital\", \"Reserve and Surplus\", \"Loans\" (with\n"
    "                  --secured or --unsecured), \"Investments\", \"Sundry Debtors\", \"Cash and Bank\n"
    "                  Balance\", \"Loans and Advances\", \"Misc. Expenses (Assets)\"; --json its rows,\n"
    "                  --pdf FILE the printed schedule as a PDF file\n"
    "  carry-forward   brings last year's particulars into each schedule that has none this year\n"
    "                  (reserves: last year's closing balance as the opening one); --yes answers the\n"
    "                  question \"Do you want to carry forward previous year particulars ?\"\n"
    "  lists           every id a document or an option takes: heads of loans (head_id), other\n"
    "                  loans and advances (OTH_LOAN_ID), reserves (resv_id), types of investment\n"
    "                  (INVEST_ID), types and kinds of share, misc. expenses (ExpID), companies\n"
    "                  (comp_id) and, for a client's year, the items of its result (capital result)\n"
    "  company         the company master (comp_id of investments and of loans and advances):\n"
    "                  list it, or add a company (asked; --yes answers)\n"
    "Example: brenlow schedules show \"Reserve and Surplus\" --client ACME --year 2025 --pdf resv.pdf\n";

struct Target {
    std::string code;
    int year = 0;
};

Target target_of(Context& ctx, const Options& opt) {
    Target t{opt.client(), opt.require_int("year", 1990, 2099)};
    if (!ctx.base().select_client_year(t.code, t.year))
        throw UsageError("client " + t.code + " has no financial year " + fy_text(t.year) +
                         " (create it with brenlow init).");
    return t;
}

std::string one_file(const Options& opt, const char* sub) {
    if (opt.positional().size() != 1) throw UsageError(std::string(sub) + " takes one file name.");
    return opt.positional()[0];
}

int export_schedules(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"yes"});
    opt.reject_unknown({"client", "year", "yes"});
    ctx.reads_only();
    const std::string file = one_file(opt, "export");
    const auto t = target_of(ctx, opt);
    suite::check_target(file, existing_file(opt));  // refused before any progress is shown
    LongWork work(ctx, "Exporting the schedules to " + file + " ...");
    suite::write_file_whole(file, exchange::export_schedules(ctx.base().dbobj(), t.code, t.year),
                            existing_file(opt));
    work.finished();
    ctx.out << "Wrote the schedules of " << t.code << " for F.Y. " << fy_text(t.year) << " to " << file
            << "\n";
    return 0;
}

int import_schedules(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"replace", "yes"});
    opt.reject_unknown({"client", "year", "replace", "yes"});
    const std::string file = one_file(opt, "import");
    const auto t = target_of(ctx, opt);
    const auto refuse = [&](const std::vector<std::string>& why) {
        for (const auto& e : why) ctx.err << file << ": " << e << "\n";
        ctx.err << "Nothing was imported.\n";
        return 1;
    };
    std::error_code ec;
    const auto kind = std::filesystem::status(file, ec).type();
    if (kind == std::filesystem::file_type::not_found) return refuse({"there is no such file"});
    if (kind == std::filesystem::file_type::directory)
        return refuse({"this is a folder, not a schedules document"});
    std::ifstream f(file, std::ios::binary);
    std::ostringstream text;
    if (f) text << f.rdbuf();
    if (!f || f.bad()) return refuse({"the file cannot be read"});
    exchange::SchedulesImportResult r;
    LongWork work(ctx, "Importing the schedules from " + file + " ...");
    try {
        r = exchange::import_schedules(ctx.base().dbobj(), t.code, t.year, text.str(), opt.has("replace"),
                                       [&](const store::FixedScheduleRows& rows, std::vector<std::string>&) {
                                           return save_fixed_schedule_rows(ctx, opt.has("yes"), rows);
                                       });
    } catch (const store::DbError& e) {
        const std::string reason = store::failure_reason(ctx.base().dbobj().backend(), e);
        return refuse(
            {"the database refused it." +
             (reason.empty() ? std::string(" The failure is not one the program can name.") : reason)});
    }
    if (!r.errors.empty()) return refuse(r.errors);
    work.finished();
    ctx.out << "Imported into " << t.code << " for F.Y. " << fy_text(t.year) << ": " << r.rows << " rows of "
            << r.tables << " schedules\n";
    return 0;
}

int show_schedule(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"secured", "unsecured", "json", "yes"});
    opt.reject_unknown({"client", "year", "secured", "unsecured", "json", "pdf", "yes"});
    ctx.reads_only();
    if (opt.positional().size() != 1) throw UsageError("show takes the name of one schedule.");
    if (opt.has("json") && opt.has("pdf")) throw UsageError("--json and --pdf do not go together.");
    if (opt.has("secured") && opt.has("unsecured"))
        throw UsageError("--secured and --unsecured do not go together.");
    const std::string name = opt.positional()[0];
    const int loan = opt.has("unsecured") ? 2 : 1;
    const auto* kind = schedules::kind_of_title(name, loan);
    if (!kind || !*kind->stem)
        throw UsageError("no schedule is called \"" + name + "\" (brenlow schedules --help lists them).");
    if (kind->loan_id == 0 && (opt.has("secured") || opt.has("unsecured")))
        throw UsageError("--secured and --unsecured go with \"Loans\" only.");
    const auto t = target_of(ctx, opt);
    auto& base = ctx.base();
    auto& db = base.dbobj();
    const std::string suffix = base.GetTbName(base.CYrInd());
    const auto rows = store::read_schedule(db, kind->stem, suffix, t.code, kind->loan_id);
    if (opt.has("json")) {
        auto out = nlohmann::ordered_json::array();
        for (const auto& r : rows) {
            nlohmann::ordered_json row = nlohmann::ordered_json::object();
            for (const auto& column : store::schedule_columns(kind->stem)) {
                const auto& value = r.get(column);
                if (column == "code_no") continue;
                if (value.is_null())
                    row[column] = nullptr;
                else if (store::schedule_text_column(column))
                    row[column] = value.as_text();
                else if (const double v = value.as_double(); v == std::floor(v) && std::fabs(v) < 1e15)
                    row[column] = static_cast<long long>(v);
                else
                    row[column] = v;
            }
            out.push_back(std::move(row));
        }
        ctx.out << out.dump(2) << "\n";
        return 0;
    }
    const auto doc =
        schedules::schedule_report(*kind, rows, schedules::read_lists(db, kind->loan_id, base.TSTATUS()),
                                   schedules::printed_for(db, t.code, t.year));
    if (const auto pdf = opt.get("pdf")) {
        Ostikreport::write_pdf(doc, *pdf, existing_file(opt));
        ctx.out << "Wrote " << *pdf << "\n";
        return 0;
    }
    ctx.out << Ostikreport::render_text(doc);
    return 0;
}

int carry_forward(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"yes"});
    opt.reject_unknown({"client", "year", "yes"});
    const auto t = target_of(ctx, opt);
    auto& base = ctx.base();
    const std::string suffix = base.GetTbName(base.CYrInd());
    const std::string previous = schedules::previous_year_suffix(base);
    if (previous.empty()) {
        ctx.out << t.code << " has no year before F.Y. " << fy_text(t.year)
                << ": nothing to carry forward.\n";
        return 0;
    }
    CliUi ui(ctx.err, opt.has("yes"));
    // The schedules the client's screen shows: its schedule groups, and share capital
    // for a company only.
    const auto groups = store::schedule_groups(base.dbobj(), suffix, t.code);
    const auto has = [&](const schedules::SchedKind& k) {
        if (k.group == schedules::kShareCapital && base.TSTATUS() != 3 && base.TSTATUS() != 4) return false;
        return std::find(groups.begin(), groups.end(), k.gunder) != groups.end();
    };
    std::string done_stem;
    LongWork work(ctx, "Carrying Forward the Schedules ...");
    for (const auto& kind : schedules::sched_kinds()) {
        if (!schedules::carries_forward(kind) || !*kind.stem || kind.stem == done_stem || !has(kind))
            continue;
        done_stem = kind.stem;  // both kinds of loan live in one table
        const int n = schedules::offer_carry_forward(base.dbobj(), ui, kind, suffix, previous, t.code);
        ctx.out << std::left << std::setw(26)
                << (kind.loan_id ? std::string("Loans") : std::string(kind.title))
                << (n > 0 ? std::to_string(n) + " rows carried forward"
                          : std::string("nothing carried forward"))
                << "\n";
    }
    work.finished();
    return 0;
}

// ---- The ids documents and options take ---------------------------------------

struct IdList {
    const char* key;                                         // the field that takes the ids
    const char* heading;                                     // what they are
    std::vector<std::pair<std::string, std::string>> items;  // id, name
    std::vector<std::string> extra;                          // a third column (loan_id), when any
};

std::vector<std::pair<std::string, std::string>> of(const std::vector<store::IdName>& items) {
    std::vector<std::pair<std::string, std::string>> out;
    for (const auto& [id, name] : items) out.emplace_back(std::to_string(id), name);
    return out;
}

std::vector<std::pair<std::string, std::string>> of(const char* list) {
    std::vector<std::pair<std::string, std::string>> out;
    const auto parsed = IdTextList::parse(list);
    for (const auto& [id, name] : parsed.items()) out.emplace_back(id, name);
    return out;
}

int lists(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"json"});
    opt.reject_unknown({"client", "year", "json"});
    ctx.reads_only();
    if (!opt.positional().empty()) throw UsageError("lists takes no names.");
    if (opt.has("client") != opt.has("year")) throw UsageError("--client and --year go together.");
    std::optional<Target> t;
    if (opt.has("client")) t = target_of(ctx, opt);
    auto& base = ctx.base();
    auto& db = base.dbobj();
    std::vector<IdList> out;
    IdList heads{
        "head_id", "Heads of loans, by loan_id 1 secured, 2 unsecured (-1: a debenture line)", {}, {}};
    for (int loan : {1, 2})
        for (const auto& [id, name] : store::loan_heads(db, loan)) {
            heads.items.emplace_back(std::to_string(id), name);
            heads.extra.push_back(std::to_string(loan));
        }
    out.push_back(std::move(heads));
    out.push_back({"OTH_LOAN_ID", "Other loans and advances", of(store::other_loans(db)), {}});
    out.push_back(
        {"LDAD_ID", "Loans to subsidiary companies (companies only)", of(schedules::kSubsidiaryList), {}});
    out.push_back({"resv_id", "Reserves", of(store::reserves(db)), {}});
    out.push_back({"INVEST_ID", "Types of investment", of(store::investment_types(db)), {}});
    out.push_back({"four_id", "Types of share capital", of(schedules::kShareTypeList), {}});
    out.push_back({"ref_ep", "Kinds of share (share capital)", of(schedules::kShareKindList), {}});
    out.push_back({"SHARE_ID", "Kinds of share (investments)", of(schedules::kInvestShareList), {}});
    out.push_back({"qu_ID", "Quoted or unquoted", of(schedules::kQuotedList), {}});
    out.push_back({"TNT_ID", "Trading or non trading", of(schedules::kTradingList), {}});
    out.push_back({"ExpID", "Misc. expenses", of(store::misc_expenses(db)), {}});
    out.push_back({"comp_id", "Companies", of(store::companies(db)), {}});
    // The items of a year's result have no master here: the final accounts number
    // them; those recorded for the year are what capital result last wrote.
    IdList result{"ITEM", "Items of the year's result (capital result ITEM=AMOUNT)", {}, {}};
    if (t)
        for (const auto& r : store::year_result(db, base.GetTbName(base.CYrInd()), t->code))
            if (r.ptype == 0) {
                result.items.emplace_back(std::to_string(r.id), format_mask(r.amt, "###0.00"));
            }
    out.push_back(std::move(result));

    if (opt.has("json")) {
        auto doc = nlohmann::ordered_json::object();
        for (const auto& l : out) {
            auto items = nlohmann::ordered_json::array();
            for (std::size_t i = 0; i < l.items.size(); ++i) {
                nlohmann::ordered_json item = nlohmann::ordered_json::object();
                const bool text_id = std::string_view(l.key) == "ref_ep";
                if (text_id)
                    item["id"] = l.items[i].first;
                else
                    item["id"] = std::stol(l.items[i].first);
                if (std::string_view(l.key) == "ITEM")
                    item["amount"] = std::stod(l.items[i].second);
                else
                    item["name"] = l.items[i].second;
                if (!l.extra.empty()) item["loan_id"] = std::stoi(l.extra[i]);
                items.push_back(std::move(item));
            }
            doc[std::string(l.key) == "ITEM" ? "result_items" : l.key] = std::move(items);
        }
        ctx.out << doc.dump(2) << "\n";
        return 0;
    }
    for (const auto& l : out) {
        ctx.out << l.heading << " (" << l.key << ")\n";
        if (std::string_view(l.key) == "ITEM" && !t) {
            ctx.out << "  (give --client and --year for the items recorded in a year)\n";
        } else if (l.items.empty()) {
            ctx.out << "  (none)\n";
        }
        for (std::size_t i = 0; i < l.items.size(); ++i) {
            ctx.out << "  " << std::right << std::setw(4) << l.items[i].first << "  ";
            if (!l.extra.empty()) ctx.out << "loan_id " << l.extra[i] << "  ";
            ctx.out << l.items[i].second << "\n";
        }
    }
    return 0;
}

// ---- The company master --------------------------------------------------------

int company(Context& ctx, const std::vector<std::string>& args) {
    if (args.empty() || (args[0] != "list" && args[0] != "add"))
        throw UsageError("schedules company takes list or add (brenlow schedules --help).");
    const std::string action = args[0];
    const Options opt(std::vector<std::string>(args.begin() + 1, args.end()), {"json", "yes"});
    if (!opt.positional().empty()) throw UsageError("company " + action + " takes its name as --name.");
    if (action == "list") {
        opt.reject_unknown({"json"});
        ctx.reads_only();
        const auto companies = store::companies(ctx.base().dbobj());
        if (opt.has("json")) {
            auto doc = nlohmann::ordered_json::array();
            for (const auto& [id, name] : companies) doc.push_back({{"comp_id", id}, {"comp_nm", name}});
            ctx.out << doc.dump(2) << "\n";
            return 0;
        }
        if (companies.empty()) ctx.out << "The company master is empty.\n";
        for (const auto& [id, name] : companies)
            ctx.out << std::right << std::setw(4) << id << "  " << name << "\n";
        return 0;
    }
    opt.reject_unknown({"name", "yes"});
    opt.require("name");
    const auto typed = opt.text("name", store::kNameChars);
    std::string name = typed ? *typed : std::string();
    name.erase(0, name.find_first_not_of(' '));
    name.erase(name.find_last_not_of(' ') + 1);
    if (name.empty()) throw UsageError("Option --name: a company has a name.");
    auto& db = ctx.base().dbobj();
    // A name the master has (in any case) is that company: nothing is written.
    if (const auto id = store::find_company(db, name)) {
        ctx.out << "The company master has \"" << name << "\" already: comp_id " << *id << "\n";
        return 0;
    }
    CliUi ui(ctx.err, opt.has("yes"));
    if (!ui.ask_yes_no("Do you want to add the company \"" + name + "\" to the company master ?",
                       MsgIcon::question, false))
        return 1;
    long id = 0;
    try {
        id = store::find_or_add_company(db, name);
    } catch (const store::DbError& e) {
        // Said in the program's words: the server's own text is not for the person.
        const std::string reason = store::failure_reason(db.backend(), e);
        ctx.err << "brenlow schedules: The company was not added."
                << (reason.empty() ? std::string(" The failure is not one the program can name.") : reason)
                << "\n";
        return 1;
    }
    ctx.out << "Added \"" << name << "\" to the company master: comp_id " << id << "\n";
    return 0;
}

}  // namespace

int schedules_command(Context& ctx, const std::vector<std::string>& args) {
    // The per-particular Fixed Assets schedule and the transfers have their own words.
    if (!args.empty() && (args[0] == "fixed" || args[0] == "transfer"))
        return fixed_schedule_command(ctx, args[0], std::vector<std::string>(args.begin() + 1, args.end()));
    if (args.empty() || args[0] == "--help" || args[0] == "-h") {
        ctx.out << kHelp;
        return args.empty() ? 1 : 0;
    }
    for (const auto& a : args)
        if (a == "--help" || a == "-h") {
            ctx.out << kHelp;
            return 0;
        }
    const std::string sub = args[0];
    const std::vector<std::string> rest(args.begin() + 1, args.end());
    if (sub == "export") return export_schedules(ctx, rest);
    if (sub == "import") return import_schedules(ctx, rest);
    if (sub == "show") return show_schedule(ctx, rest);
    if (sub == "carry-forward") return carry_forward(ctx, rest);
    if (sub == "lists") return lists(ctx, rest);
    if (sub == "company") return company(ctx, rest);
    throw UsageError("unknown schedules subcommand \"" + sub +
                     "\" (export, import, show, carry-forward, lists, company, fixed or transfer).");
}

}  // namespace brenlow::cli
