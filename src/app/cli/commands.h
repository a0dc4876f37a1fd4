#pragma once
// The commands of the command line; each takes the words after its name.

#include <string>
#include <vector>

#include "app/cli/context.h"
#include "store/fixed_schedule_store.h"

namespace brenlow::cli {

int init_command(Context& ctx, const std::vector<std::string>& args);
int masters_command(Context& ctx, const std::vector<std::string>& args);
int chart_command(Context& ctx, const std::vector<std::string>& args);
int demo_command(Context& ctx, const std::vector<std::string>& args);
int register_command(Context& ctx, const std::vector<std::string>& args);
int transfer_command(Context& ctx, const std::vector<std::string>& args);
int settings_command(Context& ctx, const std::vector<std::string>& args);
int trial_balance_command(Context& ctx, const std::vector<std::string>& args);
int schedules_command(Context& ctx, const std::vector<std::string>& args);
int capital_command(Context& ctx, const std::vector<std::string>& args);
int ledger_command(Context& ctx, const std::vector<std::string>& args);
int itr_command(Context& ctx, const std::vector<std::string>& args);
int capital_gains_command(Context& ctx, const std::vector<std::string>& args);
// The notes to the accounts: `note ppe|deferred-tax|tax-rates ...`.
int note_command(Context& ctx, const std::vector<std::string>& args);
// `register export|import`: the words after the subcommand's name.
int register_io_command(Context& ctx, const std::string& sub, const std::vector<std::string>& args);
// The per-particular fixed-asset schedule: `schedules fixed|transfer ...` and the
// register's `import-schedule` and `merge`; the words after the subcommand's name.
// Saves a document's fixed-asset schedule through the schedule screen's own save.
bool save_fixed_schedule_rows(Context& ctx, bool yes, const store::FixedScheduleRows& rows);
int fixed_schedule_command(Context& ctx, const std::string& sub, const std::vector<std::string>& args);

}  // namespace brenlow::cli
