#include "schedules/schedule_grids.h"

#include <algorithm>

#include "controls/number_format.h"

namespace brenlow::schedules {
namespace {

using store::FieldRow;
using store::Value;

constexpr const char* kAmt = "###0.00";
constexpr const char* kCount = "###0";

struct Col {
    const char* key;
    const char* heading;
    std::string combo;
    const char* format;
    bool editable;
    int width;
};

// The fixed forms: a line's caption and the column of the single row it is kept in
// ("" for a heading).
struct FormLine {
    const char* caption;
    const char* column;
};
const std::vector<FormLine>& debtor_lines() {
    static const std::vector<FormLine> lines = {{"More than Six Month", "more_amt"},
                                                {"Others", "OTH_AMT"},
                                                {"Provision for Doubtful Debts", "PROV_AMT"},
                                                {"Provision for Discount", "dis_prov_amt"},
                                                {"Considered Good", "good_amt"},
                                                {"Considered Doubtful", "doubt_amt"},
                                                {"Considered Bad", "bad_amt"}};
    return lines;
}
const std::vector<FormLine>& bank_lines() {
    static const std::vector<FormLine> lines = {{"Cash in Hand", "CASH"},
                                                {"DD / Cheque in Hand", "DD"},
                                                {"Remittance in Hand", "REMITTANCE"},
                                                {"Fixed Deposits in Bank", "FD"},
                                                {"Balance with Scheduled Bank", ""},
                                                {"    In Current A/C", "SCH_CURR"},
                                                {"    In Deposit A/C", "SCH_DEP"},
                                                {"Balance with Foreign Bank", ""},
                                                {"    In Current A/C", "FOR_CURR"},
                                                {"    In Deposit A/C", "FOR_DEP"},
                                                {"Balance with Other Bank", ""},
                                                {"    In Current A/C", "OTH_CURR"},
                                                {"    In Deposit A/C", "OTH_DEP"}};
    return lines;
}
const std::vector<FormLine>* form_of(const SchedKind& kind) {
    if (kind.group == kSundryDebtors) return &debtor_lines();
    if (kind.group == kCashBank) return &bank_lines();
    return nullptr;
}

std::vector<Col> columns_of(const SchedKind& kind, const SchedLists& l) {
    switch (kind.group) {
        case kShareCapital:
            return {{"four_id", "Type of Share Capital", kShareTypeList, "", true, 34},
                    {"ref_ep", "Type of Share", kShareKindList, "", true, 16},
                    {"no_share", "No. of Shares", "", kCount, true, 12},
                    {"RS_SHARE", "Rs. / Share", "", kAmt, true, 10},
                    {kAmountKey, "Amount", "", kAmt, false, 14},
                    {"RS_SHARE1", "Rs. / Share (Paidup)", "", kAmt, true, 10},
                    {kPaidAmountKey, "Amount (Paidup)", "", kAmt, false, 14}};
        case kReserves:
            return {{"resv_id", "Specify Item", kReserveList, "", true, 30},
                    {kUserReserveKey, "Specify Item", l.user_reserves, "", true, 24},
                    {"OP_BL", "Opening Balance", "", kAmt, true, 14},
                    {"ADD_AMT", "Addition", "", kAmt, true, 14},
                    {"Ded_amt", "Deduction", "", kAmt, true, 14}};
        case kSecured:
        case kUnsecured:
            return {{kItemKey, "Specify Item", l.heads, "", true, 40},
                    {"PARTICUL", "Particulars", "", "", true, 40},
                    {"rate", "No. of Debentures", "", kCount, true, 10},
                    {"EACH_AMT", "Rs. / Paid", "", kAmt, true, 12},
                    {"Amount", "Amount", "", kAmt, true, 14}};
        case kInvestments:
            return {{"INVEST_ID", "Type of Investment", l.invest, "", true, 36},
                    {"SHARE_ID", "Type of Share", kInvestShareList, "", true, 12},
                    {"no_shares", "No. of Shares", "", kCount, true, 10},
                    {"per_share_amt", "Per Share", "", kAmt, true, 10},
                    {"paidup", "Paid up Amount", "", kAmt, true, 12},
                    {"mktval", "Market Value", "", kAmt, true, 12},
                    {"Amount", "Amount", "", kAmt, true, 14},
                    {"comp_id", "Name of Company", l.company, "", true, 30},
                    {"particular", "Particulars", "", "", true, 20},
                    {"qu_ID", "Quoted or Unquoted", kQuotedList, "", true, 10},
                    {"TNT_ID", "Trading or Non Trading", kTradingList, "", true, 12}};
        case kLoansAdvances:
            if (!l.subsidiaries)
                return {{"OTH_LOAN_ID", "Others", l.oth_loan, "", true, 30},
                        {"comp_id", "Name", l.company, "", true, 26},
                        {"Amount", "Amount", "", kAmt, true, 14}};
            return {{"LDAD_ID", "Loans to Subsidiary Company", kSubsidiaryList, "", true, 22},
                    {"OTH_LOAN_ID", "Others", l.oth_loan, "", true, 30},
                    {"comp_id", "Name", l.company, "", true, 26},
                    {"Amount", "Amount", "", kAmt, true, 14}};
        case kMiscExp:
            return {{"ExpID", "Particulars", l.misc, "", true, 30},
                    {"Descript", "Description", "", "", true, 26},
                    {"OpBal", "Opening Balance", "", kAmt, true, 14},
                    {"Amount", "Written Off", "", kAmt, true, 14},
                    {kClosingKey, "Closing Balance", "", kAmt, false, 14}};
        case kSundryDebtors:
        case kCashBank:
            return {{"Particulars", "Particulars", "", "", false, 34},
                    {kFormAmountKey, "Amount", "", kAmt, true, 16}};
        default:
            return {};
    }
}

std::string id_names(const std::vector<store::IdName>& items, std::string list = {}) {
    for (const auto& [id, name] : items)
        list += (list.empty() ? "#" : "|#") + std::to_string(id) + ";" + name;
    return list;
}

std::string cell(const Value& v) {
    return v.is_null() ? std::string() : v.as_text();
}
std::string number_cell(const Value& v) {
    return v.is_null() ? std::string() : plain_number(v.as_double());
}
std::string id_cell(const Value& v) {
    return v.is_null() || v.as_int() == 0 ? std::string() : std::to_string(v.as_int());
}

double value_of(const Grid& g, int row, const char* key) {
    const int c = g.col_index(key);
    return c < 0 ? 0 : g.value_matrix(row, c);
}
std::string text_of(const Grid& g, int row, const char* key) {
    const int c = g.col_index(key);
    return c < 0 ? std::string() : g.text_matrix(row, c);
}
long id_of(const Grid& g, int row, const char* key) {
    return static_cast<long>(value_of(g, row, key));
}

}  // namespace

bool keeps_subsidiaries(int status) {
    return status != 1 && status != 2;
}

SchedLists read_lists(store::Database& db, int loan_id, int status) {
    SchedLists l;
    l.subsidiaries = keeps_subsidiaries(status);
    l.heads = id_names(store::loan_heads(db, loan_id == 0 ? 1 : loan_id), "#-1;Debentures");
    auto invest = store::investment_types(db);
    if (!l.subsidiaries)
        std::erase_if(invest, [](const store::IdName& t) { return t.first == kSubsidiarySharesId; });
    l.invest = id_names(invest);
    l.oth_loan = id_names(store::other_loans(db));
    l.misc = id_names(store::misc_expenses(db), kNewItem);
    l.company = id_names(store::companies(db), kNewItem);
    l.user_reserves = id_names(store::user_reserves(db), kNewItem);
    l.reserves = id_names(store::reserves(db));
    return l;
}

std::optional<UnknownChoice> unknown_choice(const SchedKind& kind, const SchedLists& lists,
                                            const std::vector<FieldRow>& lines) {
    struct Choice {
        std::string column, heading;
        IdTextList list;
    };
    std::vector<Choice> choices;
    for (const Col& c : columns_of(kind, lists)) {
        // The lists the practice extends from the grid (misc. expenses, companies) hold
        // this database's items: an id none of them has points nowhere.
        if (c.combo.empty() || std::string_view(c.key) == kItemKey ||
            std::string_view(c.key) == kUserReserveKey)
            continue;
        // A reserve is one of the fixed ones or one the practice added.
        const std::string& list = std::string_view(c.key) == "resv_id" ? lists.reserves : c.combo;
        choices.push_back({c.key, c.heading, IdTextList::parse(list)});
    }
    if (kind.group == kSecured || kind.group == kUnsecured)
        choices.push_back({"head_id", "Specify Item", IdTextList::parse(lists.heads)});
    for (int i = 0; i < static_cast<int>(lines.size()); ++i) {
        const FieldRow& r = lines[static_cast<std::size_t>(i)];
        if (kind.group == kLoansAdvances && !lists.subsidiaries) {
            const std::string id = id_cell(r.get("LDAD_ID"));
            if (!id.empty())
                return UnknownChoice{i, "LDAD_ID", "Loans to Subsidiary Company", id,
                                     kSubsidiaryForCompanies};
        }
        const bool debentures =
            (kind.group == kSecured || kind.group == kUnsecured) && id_cell(r.get("DEB_OTH_ID")) == "1";
        for (const Choice& c : choices) {
            if (debentures && c.column == "head_id") continue;
            const Value& v = r.get(c.column);
            const std::string id = v.is_null()
                                       ? std::string()
                                       : (store::schedule_text_column(c.column) ? v.as_text() : id_cell(v));
            if (id.empty() || id == "0") continue;
            if (c.list.text_of(id)) continue;
            // A proprietor or a firm holds no shares in subsidiary companies.
            const bool subsidiary =
                c.column == "INVEST_ID" && !lists.subsidiaries && id == std::to_string(kSubsidiarySharesId);
            return UnknownChoice{i, c.column, c.heading, id,
                                 subsidiary ? kSubsidiarySharesForCompanies : std::string()};
        }
    }
    return std::nullopt;
}

void lay_out_grid(Grid& g, const SchedKind& kind, const SchedLists& lists) {
    g.set_redraw(false);
    g.set_rows(g.fixed_rows());
    g.set_cols(0);
    const auto cols = columns_of(kind, lists);
    g.set_cols(static_cast<int>(cols.size()));
    for (int i = 0; i < static_cast<int>(cols.size()); ++i) {
        const Col& c = cols[static_cast<std::size_t>(i)];
        g.set_col_key(i, c.key);
        g.set_heading(i, "", c.heading);
        g.set_col_combo_list(i, c.combo);
        g.set_col_format(i, c.format);
        g.set_col_editable(i, c.editable);
        g.set_col_width(i, c.width);
        if (*c.format) g.set_col_alignment(i, Align::right);
    }
    if (kind.group == kShareCapital) {
        const int r = g.add_item();
        g.set_text_matrix(r, 0, kApplicationCaption);
        g.set_row_data(r, kApplicationLineData);
    }
    if (const auto* form = form_of(kind)) {
        for (std::size_t i = 0; i < form->size(); ++i) {
            const int r = g.add_item();
            g.set_text_matrix(r, 0, (*form)[i].caption);
            g.set_row_data(r, *(*form)[i].column ? static_cast<long>(i) : kHeadingLineData);
        }
    }
    g.set_redraw(true);
}

void fill_grid(Grid& g, const SchedKind& kind, const std::vector<FieldRow>& rows) {
    g.set_redraw(false);
    if (const auto* form = form_of(kind)) {
        if (!rows.empty()) {
            for (int r = g.fixed_rows(); r < g.rows(); ++r) {
                const auto data = g.row_data(r);
                if (data >= 0)
                    g.set_text_matrix(
                        r, 1, number_cell(rows.front().get((*form)[static_cast<std::size_t>(data)].column)));
            }
        }
        g.set_redraw(true);
        return;
    }
    const int keys = g.cols();
    for (const auto& row : rows) {
        // The share application money is a row of its own, without a type of capital.
        if (kind.group == kShareCapital && row.get("four_id").as_int() == 0 && !row.get("sam").is_null()) {
            const int last = g.rows() - 1;
            g.set_text_matrix(last, g.col_index(kAmountKey), number_cell(row.get("sam")));
            continue;
        }
        const int at = kind.group == kShareCapital ? g.rows() - 1 : -1;
        const int r = g.add_item({}, at);
        for (int c = 0; c < keys; ++c) {
            const std::string& key = g.col_key(c);
            if (key == kAmountKey || key == kPaidAmountKey || key == kClosingKey || key == kUserReserveKey)
                continue;
            if (key == kItemKey) {
                g.set_text_matrix(r, c,
                                  row.get("DEB_OTH_ID").as_int() == 1 ? "-1" : id_cell(row.get("head_id")));
            } else if (key == "resv_id") {
                const std::string id = id_cell(row.get("resv_id"));
                const bool builtin = g.column(c).combo.text_of(id).has_value();
                g.set_text_matrix(r, builtin ? c : g.col_index(kUserReserveKey), id);
            } else if (store::schedule_text_column(key)) {
                g.set_text_matrix(r, c, cell(row.get(key)));
            } else if (!g.column(c).combo_list.empty()) {
                g.set_text_matrix(r, c, id_cell(row.get(key)));
            } else {
                g.set_text_matrix(r, c, number_cell(row.get(key)));
            }
        }
        recompute_line(g, kind, r);
    }
    g.set_redraw(true);
}

bool line_empty(const Grid& g, int row) {
    for (int c = 0; c < g.cols(); ++c) {
        const std::string t = g.text_matrix(row, c);
        if (!t.empty() && g.value_matrix(row, c) != 0) return false;
        if (!t.empty() && g.column(c).format.empty() && g.column(c).combo_list.empty()) return false;
        if (!t.empty() && !g.column(c).combo_list.empty() && t != "0") return false;
    }
    return true;
}

void recompute_line(Grid& g, const SchedKind& kind, int row) {
    const auto set = [&](const char* key, double v) { g.set_value_matrix(row, g.col_index(key), v); };
    switch (kind.group) {
        case kShareCapital:
            if (g.row_data(row) == kApplicationLineData) return;
            set(kAmountKey, value_of(g, row, "no_share") * value_of(g, row, "RS_SHARE"));
            set(kPaidAmountKey, value_of(g, row, "no_share") * value_of(g, row, "RS_SHARE1"));
            break;
        case kSecured:
        case kUnsecured:
            if (text_of(g, row, kItemKey) == "-1")
                set("Amount", value_of(g, row, "rate") * value_of(g, row, "EACH_AMT"));
            break;
        case kMiscExp:
            set(kClosingKey, value_of(g, row, "OpBal") - value_of(g, row, "Amount"));
            break;
        default:
            break;
    }
}

bool ScheduleTotals::any() const {
    for (const auto& s : sums)
        if (s) return true;
    return false;
}

ScheduleTotals schedule_totals(const Grid& g, const SchedKind& kind) {
    ScheduleTotals t;
    t.label = kind.group == kSundryDebtors ? kDebtorsTotalLabel : "Total";
    t.sums.assign(static_cast<std::size_t>(std::max(0, g.cols())), std::nullopt);
    const auto adds_up = [&](const std::string& key) {
        // Of share capital only the paid-up amount is the balance sheet's.
        if (kind.group == kShareCapital) return key == kPaidAmountKey;
        for (const char* k : {kAmountKey, kClosingKey, kFormAmountKey, "OP_BL", "ADD_AMT", "Ded_amt",
                              "Amount", "mktval", "OpBal"})
            if (key == k) return true;
        return false;
    };
    for (int c = 0; c < g.cols(); ++c) {
        if (!adds_up(g.col_key(c))) continue;
        double sum = 0;
        for (int r = g.fixed_rows(); r < g.rows(); ++r) {
            const auto data = g.row_data(r);
            double sign = 1;
            if (kind.group == kShareCapital) {
                // Authorised capital is no figure of the balance sheet.
                if (data == kApplicationLineData || value_of(g, r, "four_id") == 1) sign = 0;
            } else if (kind.group == kSundryDebtors) {
                // More than six months and others add; the provisions take off; good,
                // doubtful and bad classify the same debts.
                sign = data == 0 || data == 1 ? 1 : data == 2 || data == 3 ? -1 : 0;
            } else if (data == kHeadingLineData) {
                sign = 0;
            }
            if (sign != 0) sum += sign * g.value_matrix(r, c);
        }
        t.sums[static_cast<std::size_t>(c)] = sum;
    }
    return t;
}

store::ScheduleSave grid_lines(const Grid& g, const SchedKind& kind) {
    store::ScheduleSave save;
    save.stem = kind.stem;
    save.loan_id = kind.loan_id;
    if (const auto* form = form_of(kind)) {
        FieldRow row;
        row.set("srno", Value(std::int64_t{1}));
        for (int r = g.fixed_rows(); r < g.rows(); ++r) {
            const auto data = g.row_data(r);
            if (data >= 0)
                row.set((*form)[static_cast<std::size_t>(data)].column, Value(g.value_matrix(r, 1)));
        }
        save.rows.push_back(std::move(row));
        return save;
    }
    int line = 0;
    for (int r = g.fixed_rows(); r < g.rows(); ++r) {
        if (g.row_data(r) == kApplicationLineData) {
            save.share_application = value_of(g, r, kAmountKey);
            continue;
        }
        ++line;
        if (line_empty(g, r)) continue;
        FieldRow row;
        row.set("srno", Value(std::int64_t{line}));
        for (int c = 0; c < g.cols(); ++c) {
            const std::string& key = g.col_key(c);
            if (key == kAmountKey || key == kPaidAmountKey || key == kClosingKey || key == kUserReserveKey)
                continue;
            if (key == kItemKey) {
                const long item = id_of(g, r, kItemKey);
                if (kind.loan_id) row.set("loan_id", Value(std::int64_t{kind.loan_id}));
                row.set("DEB_OTH_ID", Value(std::int64_t{item == -1 ? 1 : 2}));
                row.set("head_id", Value(std::int64_t{item == -1 ? 0 : item}));
            } else if (key == "resv_id") {
                long id = id_of(g, r, "resv_id");
                if (id == 0) id = id_of(g, r, kUserReserveKey);
                row.set("resv_id", Value(std::int64_t{id}));
            } else if (store::schedule_text_column(key)) {
                row.set(key, Value(g.text_matrix(r, c)));
            } else {
                row.set(key, Value(g.value_matrix(r, c)));
            }
        }
        save.rows.push_back(std::move(row));
    }
    return save;
}

}  // namespace brenlow::schedules
