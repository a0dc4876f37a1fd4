#include "app/cli/commands.h"

#include "app/cli/options.h"
#include "store/client_store.h"
#include "store/schema.h"
#include "store/seed.h"

namespace brenlow::cli {

int init_command(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {});
    opt.reject_unknown({"client", "year", "name", "status"});
    const std::string code = opt.client();
    const int year = opt.require_int("year", 1990, 2099);
    const std::string name = opt.get("name").value_or("");
    const auto status = opt.get_int("status", 1, 4);

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
    ctx.out << "  NewITBM rows for " << year << ": " << counts.it_blocks << ", NewCLBM rows for " << year << ": "
            << counts.cl_rows << "\n";
    if (!created.master_row_created && created.tables_created.empty()) ctx.out << "Nothing to create.\n";
    return 0;
}

}  // namespace brenlow::cli
