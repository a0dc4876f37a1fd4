// brenlow capital-gains list: the capital-gains records of depreciable assets that the
// register's transfer wrote for a client's year, as text or JSON.

#include <nlohmann/json.hpp>

#include "app/cli/commands.h"
#include "app/cli/options.h"
#include "register/capital_gains_list.h"
#include "register/chart_report.h"

namespace brenlow::cli {

int capital_gains_command(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"json"});
    if (opt.positional().size() != 1 || opt.positional()[0] != "list")
        throw UsageError("usage: brenlow capital-gains list --client CODE --year YYYY [--json]");
    opt.reject_unknown({"client", "year", "json"});
    const std::string code = opt.client();
    const int year = opt.require_int("year", 1990, 2099);
    ctx.reads_only();
    if (!ctx.base().select_client_year(code, year))
        throw UsageError("client " + code + " has no financial year " + fy_text(year) +
                         " (create it with brenlow init).");
    const auto rows = reg::transferred_capital_gains(ctx.base().dbobj(), code, year);
    if (opt.has("json")) {
        nlohmann::ordered_json list = nlohmann::ordered_json::array();
        for (const auto& r : rows)
            list.push_back({{"capital_no", r.capital_no},
                            {"block", r.block.assets_name},
                            {"date_of_last_sale", r.block.dtsale},
                            {"consideration", r.block.sales_cons},
                            {"wdv", r.block.wdv},
                            {"additions", r.block.addition},
                            {"expenses", r.block.trans_expen},
                            {"gain", r.block.assets_trans},
                            {"nature", reg::kShortTermUs50}});
        ctx.out << nlohmann::ordered_json{{"client", code}, {"year", year}, {"capital_gains", list}}.dump(2)
                << "\n";
        return 0;
    }
    const auto client = reg::printed_client(ctx.base().dbobj(), code);
    ctx.out << Ostikreport::render_text(reg::capital_gains_report(rows, year, client));
    return 0;
}

}  // namespace brenlow::cli
