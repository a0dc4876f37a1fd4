// brenlow transfer trial-balance|capital-gains: the register's results carried into
// the client's trial balance and capital-gains records, with the screen's questions
// answered by --yes (stopped at the first without it); brenlow trial-balance lists the
// client's trial balance of the year.

#include <iomanip>
#include <nlohmann/json.hpp>

#include "app/cli/commands.h"
#include "app/cli/options.h"
#include "controls/cli_ui.h"
#include "controls/number_format.h"
#include "register/transfers.h"
#include "store/client_store.h"
#include "store/transfer_store.h"

namespace brenlow::cli {
namespace {

constexpr const char* kTransferHelp =
    "Usage: brenlow [--db URL] transfer trial-balance|capital-gains --client CODE --year YYYY [--yes]\n"
    "\n"
    "  trial-balance   the books chart's figures per asset group replace the client's particulars under\n"
    "                  the fixed-asset heads, 'DEPRECIATION' and 'PROFIT ON SALE OF FIXED ASSETS' (and the\n"
    "                  residual-value groups of a company)\n"
    "  capital-gains   each income-tax block that ended nil becomes a capital-gains row of depreciable\n"
    "                  assets, replacing the rows an earlier transfer made\n"
    "The questions are answered No unless --yes (exit code 2 when one stopped the transfer).\n";
constexpr const char* kTrialBalanceHelp =
    "Usage: brenlow [--db URL] trial-balance --client CODE --year YYYY [--json]\n"
    "\n"
    "Lists the client's trial balance of the year: group, particular, side and amount.\n";

void open_year(Context& ctx, const std::string& code, int year) {
    if (!ctx.base().select_client_year(code, year))
        throw UsageError("Client " + code + " has no financial year " + fy_text(year) +
                         " (create it with brenlow init).");
}

}  // namespace

int transfer_command(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"yes", "help"});
    if (opt.has("help") || opt.positional().empty()) {
        (opt.has("help") ? ctx.out : ctx.err) << kTransferHelp;
        return opt.has("help") ? 0 : 1;
    }
    opt.reject_unknown({"client", "year", "yes"});
    const std::string what = opt.positional()[0];
    if (what != "trial-balance" && what != "capital-gains")
        throw UsageError("transfer what? trial-balance or capital-gains, not \"" + what + "\".");
    const std::string code = opt.client();
    const int year = opt.require_int("year", 1990, 2099);
    open_year(ctx, code, year);
    CliUi ui(ctx.err, opt.has("yes"));
    const bool done = what == "trial-balance" ? reg::transfer_to_trial_balance(ctx.base(), ui, code, year)
                                              : reg::transfer_to_capital_gains(ctx.base(), ui, code, year);
    return done ? 0 : 1;
}

int trial_balance_command(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"json", "help"});
    if (opt.has("help")) {
        ctx.out << kTrialBalanceHelp;
        return 0;
    }
    opt.reject_unknown({"client", "year", "json"});
    const std::string code = opt.client();
    const int year = opt.require_int("year", 1990, 2099);
    ctx.reads_only();
    open_year(ctx, code, year);
    auto& base = ctx.base();
    auto& db = base.dbobj();
    auto group_names = store::trial_balance_group_names(db);
    const auto rows = store::trial_balance_rows(db, base.GetTbName(base.CYrInd()), code);
    if (opt.has("json")) {
        auto out = nlohmann::ordered_json::array();
        for (const auto& r : rows)
            out.push_back({{"srno", r.srno},
                           {"allid", r.allid},
                           {"group", group_names[r.allid]},
                           {"PartId", r.PartId},
                           {"particular", base.GetPart_MastPartId(r.PartId)},
                           {"side", r.nid == store::kCredit ? "CR" : "DR"},
                           {"Amt", vb_round(r.Amt, 2)}});
        ctx.out << nlohmann::ordered_json{{"client", code}, {"year", year}, {"rows", out}}.dump(2) << "\n";
        return 0;
    }
    double debit = 0, credit = 0;
    for (const auto& r : rows) {
        ctx.out << std::left << std::setw(40) << group_names[r.allid] << " " << std::setw(40)
                << base.GetPart_MastPartId(r.PartId) << " " << (r.nid == store::kCredit ? "Cr" : "Dr") << " "
                << std::right << std::setw(16) << format_mask(r.Amt, "#,##0.00") << "\n";
        (r.nid == store::kCredit ? credit : debit) += r.Amt;
    }
    ctx.out << std::left << std::setw(81) << "Total"
            << " Dr " << std::right << std::setw(16) << format_mask(debit, "#,##0.00") << "\n"
            << std::left << std::setw(81) << ""
            << " Cr " << std::right << std::setw(16) << format_mask(credit, "#,##0.00") << "\n";
    return 0;
}

}  // namespace brenlow::cli
