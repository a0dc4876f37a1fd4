#pragma once
// The balance-sheet schedules of a client's year: the per-year schedule tables
// (SHARE_, RESV_, SECUR_, INVEST_, LOAN_ADV_, MiscExpAsst_, SUNDEB_, BANK_), the
// masters their lists come from, the client's schedule groups (SCHED_) and the
// trial-balance rows (TAB_) of a group. Rows go in and out keyed by the tables' own
// column names; a schedule is always rewritten whole.

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "store/database.h"
#include "store/transfer_store.h"

namespace brenlow::store {

// One row of a schedule table: the columns it sets, in the order written.
class FieldRow {
public:
    // Case-blind; a NULL Value when the row lacks the column.
    const Value& get(std::string_view column) const;
    bool has(std::string_view column) const;
    // Replaces the column's value or appends the column.
    void set(std::string_view column, Value value);
    const std::vector<std::pair<std::string, Value>>& fields() const { return fields_; }
    bool empty() const { return fields_.empty(); }

private:
    std::vector<std::pair<std::string, Value>> fields_;
};

// Columns of each schedule table in the order the program names them.
const std::vector<std::string>& schedule_columns(std::string_view stem);
// The stems of the tables a schedule document holds, in order.
const std::vector<std::string>& schedule_stems();
// Columns holding text (the rest are numbers).
bool schedule_text_column(std::string_view column);

// Rows of the client in the year's table, "order by srno"; loan_id 1 or 2 picks one
// kind of loan from SECUR_ (0 reads both).
std::vector<FieldRow> read_schedule(Database& db, std::string_view stem, std::string_view suffix,
                                    std::string_view code, int loan_id = 0);
bool schedule_has_rows(Database& db, std::string_view stem, std::string_view suffix, std::string_view code);

// What a save writes: the lines (srno already set), the loan kind for SECUR_, and
// for SHARE_ the share application money, written as a row of its own when not 0.
struct ScheduleSave {
    std::string stem;
    int loan_id = 0;
    std::vector<FieldRow> rows;
    double share_application = 0;
};
// Deletes the client's rows (SECUR_: of the loan kind) and inserts the lines, with
// the flushes of the screen's save. A save of RESV_ first deletes, for every client
// of the year, the rows that name no reserve. One group of writes.
void save_schedule(Database& db, std::string_view suffix, std::string_view code, const ScheduleSave& save);

// Copies the previous year's rows of the client into this year: RESV_ carries the
// closing balance as the opening one with no movement; the others column by column.
// Returns the number of rows copied.
int carry_forward_schedule(Database& db, std::string_view stem, std::string_view suffix,
                           std::string_view previous_suffix, std::string_view code);

// Master lists as id and name.
using IdName = std::pair<long, std::string>;
std::vector<IdName> loan_heads(Database& db, int loan_id);
std::vector<IdName> investment_types(Database& db);
std::vector<IdName> other_loans(Database& db);
std::vector<IdName> misc_expenses(Database& db);
std::vector<IdName> companies(Database& db);
// The user's own reserves: resv_id above 6, by name.
std::vector<IdName> user_reserves(Database& db);
std::vector<IdName> reserves(Database& db);

// New master items. A reserve already named so (exactly) gives nullopt; a misc
// expense or company found case-blind gives the id it has; otherwise the largest id
// plus one is written and returned.
std::optional<long> add_reserve(Database& db, std::string_view name);
long find_or_add_misc_expense(Database& db, std::string_view name);
long find_or_add_company(Database& db, std::string_view name);
// The id of the company named so (case-blind), nullopt when the master has none.
std::optional<long> find_company(Database& db, std::string_view name);

// The client's schedule groups of the year, their names upper-cased.
std::vector<std::string> schedule_groups(Database& db, std::string_view suffix, std::string_view code);
// Gives a client without schedule groups those of its status: every group for a
// company (status 3 and 4), the others without reserves and misc expenses.
void ensure_schedule_groups(Database& db, std::string_view suffix, std::string_view code, int status);

// The `Count` of the client's year that runs from 01/04/first to 31/03/second.
std::optional<int> client_year_count(Database& db, std::string_view code, int first, int second);

// Rows of the client's trial balance under a group, the group's heading row aside.
std::vector<TrialBalanceRow> trial_balance_group(Database& db, std::string_view suffix, std::string_view code,
                                                 int gid);

}  // namespace brenlow::store
