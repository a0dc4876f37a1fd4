#include <algorithm>
#include <iterator>

#include "app/cli/commands.h"
#include "app/cli/options.h"
#include "store/client_store.h"
#include "store/schema.h"
#include "store/seed.h"

namespace brenlow::cli {
namespace {

// The concessional sections an assessee may have opted for, under the keys the base
// services read them from ("REGIME" and the section).
struct Regime {
    const char* key;
    const char* description;
};
constexpr Regime kRegimes[] = {
    {"115BA", "Domestic company taxed u/s 115BA/115BAA/115BAB"},
    {"115BAC", "Individual or HUF (or other person) taxed u/s 115BAC"},
    {"115BAD", "Co-operative society taxed u/s 115BAD"},
    {"115BAE", "Co-operative society taxed u/s 115BAE"},
};

// "--regime 115BAA,115BAC" or "none": the sections named, read before anything is
// written so that a slip in the list leaves no client behind.
std::vector<std::string> parse_regimes(const std::string& list) {
    std::vector<std::string> chosen;
    std::size_t start = 0;
    while (start <= list.size()) {
        const auto end = std::min(list.find(',', start), list.size());
        std::string item = list.substr(start, end - start);
        // 115BAA and 115BAB go with 115BA: one flag for the three company sections.
        if (item == "115BAA" || item == "115BAB") item = "115BA";
        const bool known = item == "none" || std::any_of(std::begin(kRegimes), std::end(kRegimes),
                                                         [&](const Regime& r) { return item == r.key; });
        if (!known)
            throw UsageError(
                "--regime takes 115BA, 115BAA, 115BAB, 115BAC, 115BAD, 115BAE (comma-separated) or none; "
                "found \"" +
                item + "\".");
        if (item != "none") chosen.push_back(item);
        start = end + 1;
    }
    return chosen;
}

// Every flag is written, the chosen ones set.
void record_regimes(Context& ctx, const std::string& code, const std::vector<std::string>& chosen) {
    auto& base = ctx.base();
    for (const auto& r : kRegimes) {
        const bool on = std::find(chosen.begin(), chosen.end(), r.key) != chosen.end();
        base.SetMiscOthInf(std::string("REGIME") + r.key, on ? "1" : "0", base.SecondDate(), code,
                           r.description);
    }
}

}  // namespace

int init_command(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {});
    opt.reject_unknown({"client", "year", "name", "status", "regime", "kind"});
    const std::string code = opt.client();
    const int year = opt.require_int("year", 1990, 2099);
    const std::string name = opt.get("name").value_or("");
    const auto status = opt.get_int("status", 1, 4);
    const auto regime_list = opt.get("regime");
    const auto regimes = regime_list ? parse_regimes(*regime_list) : std::vector<std::string>{};
    std::optional<AssesseeKind> kind;
    if (const auto k = opt.get("kind")) {
        kind = assessee_kind_of_key(*k);
        if (!kind) {
            std::string keys;
            for (auto it = assessee_kinds_begin(); it != assessee_kinds_end(); ++it)
                keys += (keys.empty() ? "" : ", ") + std::string(it->key);
            throw UsageError("--kind takes one of " + keys + "; found \"" + *k + "\".");
        }
    }

    auto& base = ctx.base();
    // Start-up only reads when the tables are there; init makes sure of all of them.
    store::prepare_schema(base.dbobj(), store::reference_data_dir(Context::exe_dir()));
    // Tables of an older database: client codes compare exactly from now on.
    const auto recollated = store::fix_client_code_columns(base.dbobj());
    const auto created = base.create_client_year(code, year, name, status);
    const auto& cy = created.client_year;
    auto& db = base.dbobj();

    ctx.out << "Database: " << db.describe() << "\n";
    ctx.out << "Client " << cy.code_no << (cy.client_name.empty() ? "" : " (" + cy.client_name + ")")
            << ", status " << cy.status << ", financial year " << fy_text(year) << " (" << base.FirstDate()
            << " to " << base.SecondDate() << ")\n";
    ctx.out << "  master row: " << (created.master_row_created ? "created" : "already there") << " (f_yr "
            << cy.f_yr << ", s_yr " << cy.s_yr << ", Count " << cy.count << ", tbl_nm " << cy.tbl_nm << ")\n";
    if (!recollated.empty()) {
        ctx.out << "  client codes now compare exactly in:";
        for (const auto& t : recollated) ctx.out << ' ' << t;
        ctx.out << "\n";
    }
    if (created.tables_created.empty()) {
        ctx.out << "  tables: all already there\n";
    } else {
        ctx.out << "  tables created:";
        for (const auto& t : created.tables_created) ctx.out << ' ' << t;
        ctx.out << "\n";
    }
    const auto counts = store::year_master_counts(db, year);
    ctx.out << "  NewITBM rows for " << year << ": " << counts.it_blocks << ", NewCLBM rows for " << year
            << ": " << counts.cl_rows << "\n";
    if (kind) store::record_assessee_kind(db, cy.code_no, *kind);
    ctx.out << "  kind of assessee: "
            << assessee_kind_name(store::assessee_kind_of_client(db, cy.code_no, cy.status))
            << (store::recorded_assessee_kind(db, cy.code_no) ? "" : " (from its status)") << "\n";
    if (regime_list) {
        record_regimes(ctx, cy.code_no, regimes);
        ctx.out << "  concessional regime:";
        bool any = false;
        for (const auto& r : kRegimes)
            if (base.GetMiscOthInf(std::string("REGIME") + r.key, base.SecondDate(), cy.code_no) == "1") {
                ctx.out << ' ' << r.key;
                any = true;
            }
        ctx.out << (any ? "\n" : " none\n");
    } else if (!created.master_row_created && created.tables_created.empty()) {
        ctx.out << "Nothing to create.\n";
    }
    return 0;
}

}  // namespace brenlow::cli
