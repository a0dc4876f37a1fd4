// brenlow masters: lists the blocks, asset groups and particulars of a client's
// year, and adds, modifies and deletes blocks and asset groups by running the
// master screens' own events with the options as the person's input.

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
#include "masters/asset_group_master.h"
#include "masters/block_master.h"
#include "masters/master_common.h"
#include "masters/particulars_master.h"

namespace brenlow::cli {
namespace {

constexpr const char* kHelp =
    "Usage: brenlow masters LIST --client CODE --year YYYY [--json]\n"
    "       brenlow masters block|group ACTION --client CODE --year YYYY [options] [--yes]\n"
    "\n"
    "       brenlow masters it-blocks|classifications --year YYYY [--json]\n"
    "\n"
    "Lists:\n"
    "  it-blocks                 the income-tax blocks of the year (ID, block, rate), with the\n"
    "                            descriptions under each (IDs such as 3-15.1)\n"
    "  classifications           the Companies Act classifications of the year (ID, description,\n"
    "                            no extra shift, useful life, SLM and WDV rates)\n"
    "  blocks [--kind 1|2]       blocks of the books (1) and income-tax blocks (2)\n"
    "  groups                    asset groups of the year\n"
    "  particulars               particulars of the year\n"
    "\n"
    "Blocks:\n"
    "  block add --kind 1|2 --name NAME [--under NATURE]\n"
    "  block modify --kind 1|2 --id ID [--name NAME] [--under NATURE]\n"
    "  block delete --kind 1|2 --id ID\n"
    "                            NATURE of an income-tax block: 1 buildings, 2 furniture and\n"
    "                            fittings, 3 plant and machinery, 4 intangible assets, 5 ships,\n"
    "                            100 land\n"
    "\n"
    "Asset groups:\n"
    "  group add --name NAME --it-block ID --books-block ID --classification ID [rates]\n"
    "  group modify --serial N [--name NAME] [--it-block ID] [--books-block ID]\n"
    "               [--classification ID] [rates]\n"
    "  group delete --serial N\n"
    "                            ID -1: not considered for that calculation; the income-tax\n"
    "                            blocks and classifications are those of the year (\"3-15\", \"4.1\")\n"
    "  rates: --rate-it R --addl-rate R --rate-books R --life YEARS --rate-slm R --rate-wdv R\n"
    "\n"
    "A question the options do not answer stops the command (exit code 2); --yes answers Yes.\n";

// The component the screens run in: the command's base services, an error log in
// the program's folder.
frame::Component component_for(Context& ctx) {
    frame::Component c;
    c.base = std::shared_ptr<TarrowBase::ClsMain>(&ctx.base(), [](TarrowBase::ClsMain*) {});
    c.log.set_exe_path(Context::exe_dir());
    return c;
}

void open_year(Context& ctx, const Options& opt) {
    const std::string code = opt.client();
    const int year = opt.require_int("year", 1990, 2099);
    if (!ctx.base().select_client_year(code, year))
        throw UsageError("Client " + code + " has no financial year " + fy_text(year) +
                         " (create it with brenlow init).");
}

// What became of a screen's event: done, refused with a message, stopped at a
// question, or failed in the database (logged).
int outcome(const CliUi& ui, const frame::Component& c, int logged_before, bool done) {
    if (ui.unanswered()) throw QuestionUnanswered(*ui.unanswered());
    if (c.log.logged() > logged_before)
        throw std::runtime_error("a database error was written to " + c.log.path());
    if (!done) return 1;
    return 0;
}

std::string json_text(std::string_view s) {
    std::ostringstream out;
    out << '"';
    for (const char ch : s) {
        const auto c = static_cast<unsigned char>(ch);
        if (c == '"' || c == '\\') {
            out << '\\' << ch;
        } else if (c < 0x20) {
            out << "\\u" << std::hex << std::setw(4) << std::setfill('0') << static_cast<int>(c) << std::dec;
        } else {
            out << ch;
        }
    }
    out << '"';
    return out.str();
}

// A cell as JSON data: rates and lives as numbers (null where the grid shows "N/A" or
// nothing), the rest as text.
std::string json_cell(std::string_view key, const std::string& text) {
    if (key.find("rate") == std::string_view::npos && key.rfind("life", 0) != 0) return json_text(text);
    const auto v = parse_amount(text);
    return v ? plain_number(vb_round(*v, 4)) : std::string("null");
}

// Prints the data rows of a screen's grid: a table under the grid's headings, or
// JSON objects under the given keys with the row's id first.
void print_grid(std::ostream& out, const Grid& g, const std::vector<std::string>& keys,
                const std::string& id_key, bool json) {
    const int heading = g.fixed_rows() - 1;
    if (json) {
        out << "[";
        for (int r = g.fixed_rows(); r < g.rows(); ++r) {
            out << (r == g.fixed_rows() ? "\n  {" : ",\n  {") << json_text(id_key) << ": " << g.row_data(r);
            for (int c = 0; c < g.cols() && c < static_cast<int>(keys.size()); ++c)
                out << ", " << json_text(keys[c]) << ": " << json_cell(keys[c], g.display_text(r, c));
            out << "}";
        }
        out << (g.data_rows() ? "\n]\n" : "]\n");
        return;
    }
    // A column's band goes before its own heading: "As per Books Rate".
    auto title = [&](int c) {
        const std::string band = heading > 0 ? g.text_matrix(0, c) : std::string();
        const std::string own = g.text_matrix(heading, c);
        return band.empty() || band == own ? own : band + " " + own;
    };
    std::vector<std::size_t> width(g.cols(), 0);
    for (int c = 0; c < g.cols(); ++c) {
        width[c] = title(c).size();
        for (int r = g.fixed_rows(); r < g.rows(); ++r)
            width[c] = std::max(width[c], g.display_text(r, c).size());
    }
    auto line = [&](const std::string& id, auto cell) {
        out << std::left << std::setw(6) << id;
        for (int c = 0; c < g.cols(); ++c)
            if (!g.column(c).hidden) out << "  " << std::setw(static_cast<int>(width[c])) << cell(c);
        out << "\n";
    };
    line(id_key, title);
    for (int r = g.fixed_rows(); r < g.rows(); ++r)
        line(std::to_string(g.row_data(r)), [&](int c) { return g.display_text(r, c); });
}

// The year's income-tax blocks or Companies Act classifications, as the asset group
// master offers them: what a group's --it-block and --classification take.
int list_year_masters(Context& ctx, const std::string& what, const Options& opt) {
    opt.reject_unknown({"year", "json"});
    const int year = opt.require_int("year", 1990, 2099);
    ctx.reads_only();
    auto& db = ctx.base().dbobj();
    const bool json = opt.has("json");
    const auto number = [](const std::optional<double>& v) {
        return v ? plain_number(*v) : std::string("null");
    };
    if (json) ctx.out << "[";
    bool first = true;
    const auto line = [&](const std::string& json_row, const std::string& text_row) {
        if (json)
            ctx.out << (first ? "\n  " : ",\n  ") << json_row;
        else
            ctx.out << text_row << "\n";
        first = false;
    };
    if (what == "it-blocks") {
        for (const auto& b : store::income_tax_blocks(db, year))
            line("{\"ID\": " + json_text(b.ID) + ", \"Part\": " + json_text(b.Part) +
                     ", \"Rate\": " + plain_number(b.Rate) + "}",
                 b.ID + "  " + b.Part + "  " + plain_number(b.Rate) + "%");
    } else {
        for (const auto& c : store::companies_act_classes(db, year))
            line("{\"ID\": " + json_text(c.ID) + ", \"Part\": " + json_text(c.Part) +
                     ", \"NESD\": " + json_text(c.NESD) + ", \"Yrs\": " + number(c.Yrs) +
                     ", \"RateS\": " + number(c.RateS) + ", \"RateW\": " + number(c.RateW) + "}",
                 c.ID + "  " + c.Part + (c.Yrs ? "  life " + plain_number(*c.Yrs) : std::string()) +
                     (c.RateS ? "  SLM " + plain_number(*c.RateS) + "%" : std::string()) +
                     (c.RateW ? "  WDV " + plain_number(*c.RateW) + "%" : std::string()) +
                     (c.NESD == "Y" ? "  NESD" : ""));
    }
    if (json) ctx.out << (first ? "]\n" : "\n]\n");
    return 0;
}

int list(Context& ctx, const std::string& what, const Options& opt) {
    opt.reject_unknown({"client", "year", "json", "kind"});
    open_year(ctx, opt);
    auto c = component_for(ctx);
    CliUi ui(ctx.err, false, CliUi::Unanswered::answer_no);
    const bool json = opt.has("json");
    if (what == "blocks") {
        const auto only = opt.get_int("kind", 1, 2);
        if (json) ctx.out << "{";
        bool first = true;
        for (int kind : {1, 2}) {
            if (only && *only != kind) continue;
            masters::frmblockM screen(c, ui, kind);
            if (json) {
                ctx.out << (first ? "\n" : ",\n") << json_text(kind == 1 ? "books" : "income_tax") << ": ";
            } else {
                ctx.out << (first ? "" : "\n") << screen.Caption() << "\n";
            }
            print_grid(ctx.out, screen.vsf, {"name", "under_block"}, "id", json);
            first = false;
        }
        if (json) ctx.out << "}\n";
    } else if (what == "groups") {
        masters::frmNewFAGM screen(c, ui);
        print_grid(ctx.out, screen.vsM,
                   {"name", "it_block", "rate_it", "addl_rate_it", "books_block", "rate_books",
                    "classification", "life_yrs", "rate_slm", "rate_wdv"},
                   "serial", json);
    } else {
        masters::frmfamaster screen(c, ui);
        print_grid(ctx.out, screen.vsf,
                   {"name", "method", "rate_books", "rate_it", "books_block", "it_block"}, "id", json);
    }
    return outcome(ui, c, 0, true);
}

int block(Context& ctx, const std::string& action, const Options& opt) {
    opt.reject_unknown({"client", "year", "kind", "id", "name", "under", "yes"});
    const int kind = opt.require_int("kind", 1, 2);
    open_year(ctx, opt);
    auto c = component_for(ctx);
    CliUi ui(ctx.err, opt.has("yes"), CliUi::Unanswered::answer_no);
    masters::frmblockM screen(c, ui, kind);
    const int logged = c.log.logged();
    auto fill = [&] {
        if (auto name = opt.text("name", static_cast<std::size_t>(screen.txtfields.MaxLength())))
            screen.txtfields.set_text(*name);
        if (auto under = opt.get("under")) {
            if (kind != 2) throw UsageError("Only income-tax blocks sit under a nature (--under).");
            if (!screen.Combo1.select_id(*under)) {
                const auto id = screen.Combo1.List.id_of(*under);
                if (!id) throw UsageError("No nature \"" + *under + "\".");
                screen.Combo1.select_id(*id);
            }
        }
    };
    long id = 0;
    if (action == "add") {
        opt.require("name");
        screen.cmdaddded_Click();
        fill();
        screen.cmdupdateded_Click();
        const int row = screen.row_of_name(masters::trimmed(*opt.get("name")));
        if (!screen.entering() && row >= 0) id = screen.block_id(row);
    } else {
        id = opt.require_int("id", 1, 2147483647);
        const int row = screen.row_of(id);
        if (row < 0) throw UsageError(screen.Caption() + " has no block " + std::to_string(id) + ".");
        screen.vsf_RowColChange(row);
        if (action == "modify") {
            screen.cmdmodifyded_Click();
            fill();
            screen.cmdupdateded_Click();
            if (screen.entering()) id = 0;
        } else {
            screen.cmddeleteded_Click();
            if (screen.row_of(id) >= 0) id = 0;
        }
    }
    const int code = outcome(ui, c, logged, id != 0);
    if (code == 0) {
        ctx.out << screen.Caption() << ": block " << id << " "
                << (action == "add"      ? "added"
                    : action == "modify" ? "modified"
                                         : "deleted")
                << ".\n";
    }
    return code;
}

void set_rate(masters::frmNewFAGM& s, vTXT& field, const Options& opt, const std::string& name) {
    const auto value = opt.get(name);
    if (!value) return;
    if (s.locked(field))
        throw UsageError("--" + name + " does not apply to the chosen block or classification.");
    refuse_if_longer("Option --" + name, *value, static_cast<std::size_t>(field.MaxLength()));
    field.set_text(*value);
}

int group(Context& ctx, const std::string& action, const Options& opt) {
    opt.reject_unknown({"client", "year", "serial", "name", "it-block", "books-block", "classification",
                        "rate-it", "addl-rate", "rate-books", "life", "rate-slm", "rate-wdv", "yes"});
    open_year(ctx, opt);
    auto c = component_for(ctx);
    CliUi ui(ctx.err, opt.has("yes"), CliUi::Unanswered::answer_no);
    masters::frmNewFAGM screen(c, ui);
    const int logged = c.log.logged();
    auto fill = [&] {
        if (auto name = opt.text("name", static_cast<std::size_t>(screen.txtfields.MaxLength())))
            screen.txtfields.set_text(*name);
        if (auto it = opt.get("it-block"); it && !screen.choose_it_block(*it))
            throw UsageError("No income-tax block \"" + *it + "\" in " + fy_text(screen.year()) + ".");
        if (auto fa = opt.get("books-block")) {
            long id = 0;
            try {
                id = std::stol(*fa);
            } catch (const std::exception&) {
            }
            if (!screen.choose_books_block(id)) throw UsageError("No block of the books \"" + *fa + "\".");
        }
        if (auto cl = opt.get("classification"); cl && !screen.choose_classification(*cl))
            throw UsageError("No classification \"" + *cl + "\" in " + fy_text(screen.year()) + ".");
        set_rate(screen, screen.txtRateIT, opt, "rate-it");
        set_rate(screen, screen.txtAddlRateIT, opt, "addl-rate");
        set_rate(screen, screen.txtRateFA, opt, "rate-books");
        set_rate(screen, screen.txtLifeYrs, opt, "life");
        set_rate(screen, screen.txtRateSLM, opt, "rate-slm");
        set_rate(screen, screen.txtRateWDV, opt, "rate-wdv");
    };
    long serial = 0;
    if (action == "add") {
        opt.require("name");
        const int before = screen.vsM.data_rows();
        screen.cmdAdd_Click();
        fill();
        screen.cmdUpdate_Click();
        if (!screen.entering() && screen.vsM.data_rows() > before)
            serial = screen.serial_of(screen.vsM_Row());
    } else {
        serial = opt.require_int("serial", 1, 2147483647);
        const int row = screen.row_of(serial);
        if (row < 0)
            throw UsageError("No asset group " + std::to_string(serial) + " in " + fy_text(screen.year()) +
                             ".");
        screen.vsM_RowColChange(row);
        if (action == "modify") {
            screen.cmdModify_Click();
            fill();
            screen.cmdUpdate_Click();
            if (screen.entering()) serial = 0;
        } else {
            screen.cmdDelete_Click();
            if (screen.row_of(serial) >= 0) serial = 0;
        }
    }
    const int code = outcome(ui, c, logged, serial != 0);
    if (code == 0) {
        ctx.out << "Asset group " << serial << " "
                << (action == "add"      ? "added"
                    : action == "modify" ? "modified"
                                         : "deleted")
                << ".\n";
    }
    return code;
}

}  // namespace

int masters_command(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"json", "yes", "help"});
    const auto& words = opt.positional();
    if (opt.has("help")) {
        ctx.out << kHelp;
        return 0;
    }
    if (words.empty()) throw UsageError("What to list or keep? Try brenlow masters --help.");
    const std::string& what = words[0];
    if (what == "it-blocks" || what == "classifications") {
        if (words.size() != 1) throw UsageError("Unexpected \"" + words[1] + "\".");
        return list_year_masters(ctx, what, opt);
    }
    if (what == "blocks" || what == "groups" || what == "particulars") {
        if (words.size() != 1) throw UsageError("Unexpected \"" + words[1] + "\".");
        return list(ctx, what, opt);
    }
    if (what == "block" || what == "group") {
        if (words.size() != 2 || (words[1] != "add" && words[1] != "modify" && words[1] != "delete"))
            throw UsageError("Say " + what + " add, " + what + " modify or " + what + " delete.");
        return what == "block" ? block(ctx, words[1], opt) : group(ctx, words[1], opt);
    }
    throw UsageError("Unknown masters command \"" + what + "\". Try brenlow masters --help.");
}

}  // namespace brenlow::cli
