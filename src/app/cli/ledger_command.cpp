// brenlow ledger: the capital ledger master's particulars of either master, listed,
// added, renamed, deleted and replaced by running the master screen's own events.

#include <iomanip>
#include <nlohmann/json.hpp>

#include "app/cli/commands.h"
#include "app/cli/options.h"
#include "capital/ledger_master.h"
#include "controls/cli_ui.h"

namespace brenlow::cli {
namespace {

constexpr const char* kHelp =
    "Usage: brenlow [--db URL] ledger list --master capital|trial-balance [--json]\n"
    "       brenlow [--db URL] ledger add NAME --master capital|trial-balance [--yes]\n"
    "       brenlow [--db URL] ledger rename OLD NEW --master capital|trial-balance [--yes]\n"
    "       brenlow [--db URL] ledger delete NAME... | --unused --master capital|trial-balance [--yes]\n"
    "       brenlow [--db URL] ledger replace NAME... --with NAME --master capital|trial-balance [--yes]\n"
    "\n"
    "The particulars shared by every client and year: capital (Mast_Capital, used by the capital\n"
    "accounts) or trial-balance (Mast_Part, used by the trial balance, the journal and the trading\n"
    "account). A particular some client uses in some year is in use: it cannot be deleted, and the\n"
    "clients and years using it are listed. replace moves every use of the named particulars in every\n"
    "year's tables to the --with particular and deletes them. Names compare case-blind.\n"
    "A question the options do not answer stops the command (exit code 2); --yes answers Yes.\n";

}  // namespace

int ledger_command(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"yes", "json", "unused", "help"});
    if (opt.has("help") || opt.positional().empty()) {
        (opt.has("help") ? ctx.out : ctx.err) << kHelp;
        return opt.has("help") ? 0 : 1;
    }
    opt.reject_unknown({"master", "yes", "json", "unused", "with"});
    const std::string sub = opt.positional()[0];
    const std::string master = opt.require("master");
    if (master != "capital" && master != "trial-balance")
        throw UsageError("--master is capital or trial-balance, not \"" + master + "\".");
    std::vector<std::string> names(opt.positional().begin() + 1, opt.positional().end());
    if (sub == "list") ctx.reads_only();

    frame::Component component;
    component.base = std::shared_ptr<TarrowBase::ClsMain>(&ctx.base(), [](TarrowBase::ClsMain*) {});
    component.log.set_exe_path(Context::exe_dir());
    CliUi ui(ctx.err, opt.has("yes"), CliUi::Unanswered::answer_no);
    // The list of users is always shown: asking for it writes nothing.
    ui.answer_always("Do you want to view the list of Client/F.Y. using the Particulars?", true);
    capital::frmcapledmas s(component, ui);
    s.cboMaster.select_id(master == "capital" ? "1" : "2");
    s.Form_Load();
    using S = capital::frmcapledmas;

    auto row_of = [&](const std::string& name) {
        const int row = s.row_named(name);
        if (row < 0)
            throw UsageError("there is no particular \"" + name + "\" in the " + master + " master.");
        return row;
    };
    auto finish = [&](bool done) {
        if (ui.unanswered()) {
            ctx.err << "brenlow: stopped at the question: " << *ui.unanswered() << " (--yes answers Yes)\n";
            return 2;
        }
        return done && ui.messages() == 0 ? 0 : 1;
    };

    if (sub == "list") {
        if (opt.has("json")) {
            auto rows = nlohmann::ordered_json::array();
            for (int r = s.vsf.fixed_rows(); r < s.vsf.rows(); ++r)
                rows.push_back({{"id", s.particular_id(r)},
                                {"name", s.vsf.text_matrix(r, S::kColName)},
                                {"in_use", s.in_use(r)}});
            ctx.out << nlohmann::ordered_json{{"master", master}, {"particulars", rows}}.dump(2) << "\n";
            return 0;
        }
        for (int r = s.vsf.fixed_rows(); r < s.vsf.rows(); ++r)
            ctx.out << std::setw(6) << s.particular_id(r) << "  " << std::left << std::setw(50)
                    << s.vsf.text_matrix(r, S::kColName) << std::right << (s.in_use(r) ? "  in use" : "")
                    << "\n";
        return 0;
    }
    if (sub == "add") {
        if (names.size() != 1) throw UsageError("add takes one name.");
        refuse_if_longer("The name", names[0], static_cast<std::size_t>(s.txtName.MaxLength()));
        s.cmdAdd_Click();
        s.txtName.set_text(names[0]);
        const bool done = s.cmdUpdate_Click();
        if (done) ctx.out << "Particular " << s.particular_id(s.vsf_Row()) << ": " << names[0] << "\n";
        return finish(done);
    }
    if (sub == "rename") {
        if (names.size() != 2) throw UsageError("rename takes the old name and the new one.");
        refuse_if_longer("The new name", names[1], static_cast<std::size_t>(s.txtName.MaxLength()));
        s.vsf_RowColChange(row_of(names[0]));
        s.cmdModify_Click();
        s.txtName.set_text(names[1]);
        return finish(s.cmdUpdate_Click());
    }
    if (sub == "delete") {
        if (opt.has("unused")) {
            if (!names.empty()) throw UsageError("delete --unused takes no names.");
            const int before = s.vsf.data_rows();
            s.cmdDelUnused_Click();
            ctx.out << "Deleted " << before - s.vsf.data_rows() << " particulars not in use\n";
            return finish(true);
        }
        if (names.empty()) throw UsageError("delete takes the names to delete (or --unused).");
        for (const auto& n : names) s.vsf_Tick(row_of(n));
        const int before = s.vsf.data_rows();
        s.cmdDelete_Click();
        const bool done = s.vsf.data_rows() < before;
        if (done) ctx.out << "Deleted " << before - s.vsf.data_rows() << " particulars\n";
        return finish(done);
    }
    if (sub == "replace") {
        if (names.empty()) throw UsageError("replace takes the names to replace.");
        const std::string with = opt.require("with");
        for (const auto& n : names) s.vsf_Tick(row_of(n));
        s.cboLink.select_id(std::to_string(s.particular_id(row_of(with))));
        const int before = s.vsf.data_rows();
        s.cmdlink_Click();
        ctx.out << "Replaced " << before - s.vsf.data_rows() << " particulars with " << with << "\n";
        return finish(true);
    }
    throw UsageError("unknown ledger subcommand \"" + sub + "\" (list, add, rename, delete or replace).");
}

}  // namespace brenlow::cli
