// brenlow settings: the practice's settings, kept in the database through the base
// services, so every user of a shared database prints alike.

#include "app/cli/commands.h"
#include "app/cli/options.h"
#include "controls/number_format.h"
#include "suite/base_services.h"

namespace brenlow::cli {
namespace {

constexpr const char* kHelp =
    "Usage: brenlow [--db URL] settings\n"
    "       brenlow [--db URL] settings digit-grouping indian|western\n"
    "\n"
    "Without words, prints the practice's settings. digit-grouping sets how amounts are grouped\n"
    "on screens, prints and PDFs: indian (the default) in lakhs and crores, 18,34,42,000;\n"
    "western in thousands, 183,442,000. Typed amounts are read either way.\n"
    "Example: brenlow settings digit-grouping western\n";

const char* name_of(DigitGrouping g) {
    return g == DigitGrouping::indian ? "indian" : "western";
}

}  // namespace

int settings_command(Context& ctx, const std::vector<std::string>& args) {
    for (const auto& a : args) {
        if (a == "--help" || a == "-h") {
            ctx.out << kHelp;
            return 0;
        }
    }
    if (args.empty()) {
        ctx.reads_only();
        ctx.base();
        ctx.out << "digit-grouping " << name_of(digit_grouping()) << "\n";
        return 0;
    }
    if (args[0] != "digit-grouping" || args.size() != 2)
        throw UsageError(std::string("unknown settings \"") + args[0] + "\". Try brenlow settings --help.");
    const auto g = digit_grouping_named(args[1]);
    if (!g) throw UsageError("digit-grouping is indian or western, not \"" + args[1] + "\".");
    ctx.base().SetDigitGrouping(*g);
    ctx.out << "Amounts are grouped the " << name_of(*g) << " way.\n";
    return 0;
}

}  // namespace brenlow::cli
