#include "exchange/register_sheets.h"

#include <cctype>
#include <cmath>
#include <set>

#include "controls/vb_date.h"
#include "register/register_entry_math.h"

namespace brenlow::exchange {
namespace {

using reg::EntryField;
using reg::EntrySide;

// Column positions of the two sheets.
enum Opening {
    O_SN,
    O_Group,
    O_Part,
    O_PutDate,
    O_Cost,
    O_OpDepr,
    O_CalcCA,
    O_DepCalcCA,
    O_ResValue,
    O_ResWord,
    O_Life,
    O_LifeWord,
    O_Rate,
    O_RateWord,
    O_Method,
    O_DepFACL,
    O_WdvIT,
    O_ItState,
    O_RateIT,
    O_RateITWord,
    O_AddlRate,
    O_AddlDepOn,
    O_DetESA,
    O_SaleDate,
    O_SaleAmt,
    O_SaleExp,
    O_Shift,
    O_Codes,
    O_Count
};
enum Addition {
    A_SN,
    A_Group,
    A_Part,
    A_PutDate,
    A_AccDate,
    A_Cost,
    A_Excise,
    A_CurrDiff,
    A_Subsidy,
    A_MiscAdj,
    A_Net,
    A_ResValue,
    A_ResWord,
    A_Life,
    A_LifeWord,
    A_Rate,
    A_RateWord,
    A_Method,
    A_RateIT,
    A_AddlRate,
    A_SaleDate,
    A_SaleAmt,
    A_SaleExp,
    A_Shift,
    A_DepFACL,
    A_Codes,
    A_Count
};

constexpr const char* kBooks = "As per Books";
constexpr const char* kCompanies = "As per Companies Act";
constexpr const char* kIncomeTax = "As per Income-Tax Act";
constexpr const char* kSale = "Details of Sale/Deduction";
constexpr const char* kOwnDepr = "Depreciation for the Year (if not Auto Calculated)";

std::vector<SheetColumn> opening_layout(const char* books) {
    return {{"A", "", "SN", ColumnKind::Serial},
            {"B", "", "Asset Group", ColumnKind::Text},
            {"C", "", "Particulars", ColumnKind::Text},
            {"D", "", "Date of Put to Use", ColumnKind::Date},
            {"E", books, "Written Down Value (or Cost)", ColumnKind::Amount},
            {"F", books, "Depreciation upto 31/03/####", ColumnKind::Amount},
            {"G", books, "Carrying Amount: Depreciation Considered upto 31/03/", ColumnKind::Years},
            {"H", books, "Depreciation upto that 31/03/", ColumnKind::Amount},
            {"I", books, "Residual Value", ColumnKind::Amount},
            {"J", books, "Residual Value Basis", ColumnKind::Word},
            {"K", books, "Useful Life (Years)", ColumnKind::Rate},
            {"L", books, "Useful Life Basis", ColumnKind::Word},
            {"M", books, "Rate (%)", ColumnKind::Rate},
            {"N", books, "Rate Basis", ColumnKind::Word},
            {"O", books, "Method of Depreciation", ColumnKind::Word},
            {"P", books, kOwnDepr, ColumnKind::Amount},
            {"Q", kIncomeTax, "Written Down Value", ColumnKind::Amount},
            {"R", kIncomeTax, "State of Asset", ColumnKind::Word},
            {"S", kIncomeTax, "Rate (%)", ColumnKind::Rate},
            {"T", kIncomeTax, "Rate Basis", ColumnKind::Word},
            {"U", kIncomeTax, "Addl. Dep. Rate (%)", ColumnKind::Rate},
            {"V", kIncomeTax, "Addl. Dep. (Remaining Half) on Rs.", ColumnKind::Amount},
            {"W", kIncomeTax, "Adjustment of Excess Sale/Deduction", ColumnKind::Text},
            {"X", kSale, "Date", ColumnKind::Date},
            {"Y", kSale, "Amount", ColumnKind::Amount},
            {"Z", kSale, "Expenses", ColumnKind::Amount},
            {"AA", "", "Extra Shift", ColumnKind::Text},
            {"AB", "", "Other Options", ColumnKind::Text}};
}

std::vector<SheetColumn> addition_layout() {
    return {{"A", "", "SN", ColumnKind::Serial},
            {"B", "", "Asset Group", ColumnKind::Text},
            {"C", "", "Particulars", ColumnKind::Text},
            {"D", "", "Date of Put to Use", ColumnKind::Date},
            {"E", "", "Date of Accounting", ColumnKind::Date},
            {"F", "", "Cost", ColumnKind::Amount},
            {"G", "", "Excise Credit", ColumnKind::Amount},
            {"H", "", "Currency Diff.", ColumnKind::Amount},
            {"I", "", "Grant / Subsidy", ColumnKind::Amount},
            {"J", "", "Misc. Adj.", ColumnKind::Amount},
            {"K", "", "Net Amount", ColumnKind::Amount},
            {"L", kCompanies, "Residual Value", ColumnKind::Amount},
            {"M", kCompanies, "Residual Value Basis", ColumnKind::Word},
            {"N", kCompanies, "Useful Life (Years)", ColumnKind::Rate},
            {"O", kCompanies, "Useful Life Basis", ColumnKind::Word},
            {"P", kCompanies, "Rate (%)", ColumnKind::Rate},
            {"Q", kCompanies, "Rate Basis", ColumnKind::Word},
            {"R", "", "Method of Depreciation", ColumnKind::Word},
            {"S", "", "IT - Rate (%)", ColumnKind::Rate},
            {"T", "", "Addl. Dep. Rate (%)", ColumnKind::Rate},
            {"U", kSale, "Date", ColumnKind::Date},
            {"V", kSale, "Amount", ColumnKind::Amount},
            {"W", kSale, "Expenses", ColumnKind::Amount},
            {"X", "", "Extra Shift", ColumnKind::Text},
            {"Y", "", kOwnDepr, ColumnKind::Amount},
            {"Z", "", "Other Options", ColumnKind::Text}};
}

// The words of the options.
constexpr const char* kNA = "N/A";
constexpr const char* kOther = "Other";
constexpr const char* kMaster = "As per Master";
constexpr const char* kAutoRate = "Auto Calculate";
constexpr const char* kAutoNoLimit = "Auto Calculate (Formula[No Rounding Limit])";
constexpr const char* kAutoLimit = "Auto Calculate (Formula[Rounding Limit])";
constexpr const char* kLifeMaster = "Useful Life (As per Master)";
constexpr const char* kLifeAuto = "Remaining Life (Auto)";
constexpr const char* kResCost = "5% of Cost";
constexpr const char* kResCa = "5% of Carrying Amount";
constexpr const char* kResNet = "5% of Net Amount";
constexpr const char* kNilWdv = "Asset Exists but WDV is NIL";
constexpr const char* kNotExist = "Asset does not Exist";
constexpr const char* kShiftWords[] = {"Single", "Double", "Triple"};

bool has_block(const store::AssetGroupRow* g) {
    return g && !g->BlockIdCL.empty() && g->BlockIdCL != "-1" && g->BlockIdCL != "-2";
}

std::string residual_word(const reg::OpeningOpts& o, const reg::RegisterOptions& common) {
    if (!o.ResDefault) return kOther;
    return reg::effective_basis(o.ResValOf, common) == depreciation::ResidualBasis::CarryingAmount ? kResCa
                                                                                                   : kResCost;
}
std::string life_word(bool def, const std::string& calc_ca) {
    return !def ? kOther : calc_ca.empty() ? kLifeMaster : kLifeAuto;
}
std::string opening_rate_word(const reg::OpeningOpts& o, const store::AssetGroupRow* g) {
    if (!o.RateDefault) return kOther;
    return !o.CalcCA.empty() || has_block(g) ? kAutoRate : kMaster;
}
std::string addition_rate_word(const reg::AdditionOpts& a, const store::AssetGroupRow* g) {
    if (!a.RateDefault) return kOther;
    if (!has_block(g)) return kMaster;
    return a.RndAddRtAuto == "NEW" ? kAutoLimit : kAutoNoLimit;
}
std::string it_state_word(const std::string& wdv_it) {
    return wdv_it == "Y" ? kNilWdv : wdv_it == "N" ? kNotExist : kOther;
}

// The extra-shift rows in words: "05/10/2024 to 31/03/2025 Double; ...".
std::string shift_words(const std::string& packed) {
    std::string out;
    for (const auto& r : store::unpack_rows(packed, ",")) {
        if (!out.empty()) out += "; ";
        const std::string from = r.size() > 0 ? r[0] : "", to = r.size() > 1 ? r[1] : "";
        const int shift = r.size() > 2 ? std::atoi(r[2].c_str()) : 0;
        out += from + " to " + to + " " + (shift >= 1 && shift <= 3 ? kShiftWords[shift - 1] : kNA);
    }
    return out;
}

SheetValue date_value(const std::string& stored) {
    if (const auto d = day_number(stored)) return {SheetValue::Kind::Date, *d, {}};
    return SheetValue::of(stored);
}

// ---- reading ----

std::string trimmed(std::string s) {
    const auto blank = [](unsigned char c) { return std::isspace(c) || c == 0xA0; };
    while (!s.empty() && blank(static_cast<unsigned char>(s.back()))) s.pop_back();
    std::size_t i = 0;
    while (i < s.size() && blank(static_cast<unsigned char>(s[i]))) ++i;
    return s.substr(i);
}

std::string upper(std::string s) {
    for (auto& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

// Text of an amount as a person types it: "1,00,000.50", "Rs. 500", "(1,200)" are
// read; the grouping of the digits is the typed amount's, checked by its reader.
std::string plain_amount(std::string t) {
    if (t.rfind("Rs.", 0) == 0) t = trimmed(t.substr(3));
    if (t.rfind("\xE2\x82\xB9", 0) == 0) t = trimmed(t.substr(3));  // the rupee sign
    if (t.size() > 2 && t.front() == '(' && t.back() == ')') return "-" + t.substr(1, t.size() - 2);
    return t;
}

// One sheet row being read: each value with the rule's own message when it is not
// what the column holds.
class RowCells {
public:
    RowCells(const SheetRow& row, EntrySide side, const std::vector<SheetColumn>& columns, int year,
             std::string where, std::vector<std::string>& errors)
        : row_(row), side_(side), columns_(columns), year_(year), where_(std::move(where)), errors_(errors) {}

    bool empty(int col) const { return text(col).empty() && kind(col) != SheetValue::Kind::Number; }

    std::string text(int col) const {
        if (col >= static_cast<int>(row_.size())) return {};
        const auto& v = row_[col];
        if (v.kind == SheetValue::Kind::Text) return trimmed(v.text);
        if (v.kind == SheetValue::Kind::Number || v.kind == SheetValue::Kind::Date) {
            // A number where text belongs (a particulars of "1234"): as the sheet shows it.
            char buf[32];
            std::snprintf(buf, sizeof buf, "%.15g", v.number);
            return buf;
        }
        return {};
    }

    double number(int col, EntryField field) {
        if (col >= static_cast<int>(row_.size())) return 0;
        const auto& v = row_[col];
        if (v.kind == SheetValue::Kind::Number || v.kind == SheetValue::Kind::Date) return v.number;
        const std::string t = trimmed(v.text);
        if (t.empty()) return 0;
        if (const auto n = reg::parse_number(plain_amount(t))) return *n;
        refuse(col, field, t);
        return 0;
    }

    // dd/mm/yyyy from a day number or a date typed as text.
    std::string date(int col, EntryField field) {
        if (col >= static_cast<int>(row_.size())) return {};
        const auto& v = row_[col];
        if (v.kind == SheetValue::Kind::Number || v.kind == SheetValue::Kind::Date) {
            if (v.number >= 1 && v.number < 2958466 && v.number == std::floor(v.number))
                return Date::from_serial(static_cast<long>(v.number) - 25569).text();
            fail(col, "Invalid Value !");
            return {};
        }
        const std::string t = trimmed(v.text);
        if (t.empty()) return {};
        if (const auto d = Date::parse(t)) return d->text();
        refuse(col, field, t);
        return {};
    }

    void fail(int col, const std::string& message) {
        errors_.push_back(where_ + ", column " + columns_[col].letter + " '" + caption(col) +
                          "': " + message);
    }

    std::string caption(int col) const {
        std::string c = columns_[col].caption;
        if (const auto p = c.find("####"); p != std::string::npos) c.replace(p, 4, std::to_string(year_ - 1));
        return c;
    }

    const std::string& where() const { return where_; }

private:
    SheetValue::Kind kind(int col) const {
        return col < static_cast<int>(row_.size()) ? row_[col].kind : SheetValue::Kind::Empty;
    }
    // The message the entry frame gives for the text on leaving the field.
    void refuse(int col, EntryField field, const std::string& t) {
        const auto f = reg::leave_field_finding(field, side_, t, year_, false);
        fail(col, f ? f->message : "Invalid Value !");
    }

    const SheetRow& row_;
    EntrySide side_;
    const std::vector<SheetColumn>& columns_;
    int year_;
    std::string where_;
    std::vector<std::string>& errors_;
};

// A word cell: the choice it names, or an error listing the words.
std::optional<std::string> word(RowCells& r, int col, const std::vector<const char*>& words) {
    const std::string t = r.text(col);
    if (t.empty()) return std::nullopt;
    std::string list;
    for (const char* w : words) {
        if (upper(t) == upper(w)) return std::string(w);
        list += (list.empty() ? "\"" : ", \"") + std::string(w) + "\"";
    }
    r.fail(col, "expected one of " + list + ", found \"" + t + "\"");
    return std::nullopt;
}

std::string shift_det_of(RowCells& r, int col) {
    const std::string t = r.text(col);
    std::vector<std::vector<std::string>> rows;
    std::size_t start = 0;
    while (start < t.size()) {
        std::size_t end = t.find(';', start);
        if (end == std::string::npos) end = t.size();
        const std::string part = trimmed(t.substr(start, end - start));
        start = end + 1;
        if (part.empty()) continue;
        // "<from> to <to> <Shift>"
        const auto to = part.find(" to ");
        const auto last = part.rfind(' ');
        int shift = 0;
        if (to != std::string::npos && last != std::string::npos && last > to + 3) {
            const std::string w = upper(part.substr(last + 1));
            for (int k = 0; k < 3; ++k)
                if (w == upper(kShiftWords[k])) shift = k + 1;
        }
        const auto from = to == std::string::npos ? std::nullopt : Date::parse(trimmed(part.substr(0, to)));
        const auto till = shift ? Date::parse(trimmed(part.substr(to + 4, last - to - 4))) : std::nullopt;
        if (!from || !till || !shift) {
            r.fail(col,
                   "expected rows like \"01/04/2024 to 30/09/2024 Double\" separated by \";\", found \"" +
                       part + "\"");
            return {};
        }
        rows.push_back({from->text(), till->text(), std::to_string(shift)});
    }
    return store::pack_rows(rows, ",");
}

}  // namespace

const std::vector<SheetColumn>& opening_columns(bool company) {
    static const auto books = opening_layout(kBooks);
    static const auto companies = opening_layout(kCompanies);
    return company ? companies : books;
}

const std::vector<SheetColumn>& addition_columns(bool) {
    static const auto layout = addition_layout();
    return layout;
}

const char* sheet_title(EntrySide side) {
    return side == EntrySide::Opening ? "Asset-wise Depreciation Chart: Opening Entries"
                                      : "Asset-wise Depreciation Chart: Additions during the Year";
}

std::optional<double> day_number(const std::string& date) {
    if (date.size() != 10) return std::nullopt;
    const auto d = Date::parse(date);
    if (!d) return std::nullopt;
    return static_cast<double>(d->serial() + 25569);  // 01/01/1970 is day 25569
}

SheetRow opening_cells(const store::OpeningRow& o, int sn, const store::AssetGroupRow* group,
                       const reg::RegisterOptions& common) {
    const auto opts = reg::OpeningOpts::parse(o.OthOpts);
    SheetRow r(O_Count);
    r[O_SN] = SheetValue::of(sn);
    r[O_Group] = SheetValue::of(group ? group->Part : std::string());
    r[O_Part] = SheetValue::of(o.Part);
    r[O_PutDate] = date_value(o.PutDate);
    r[O_Cost] = SheetValue::of(o.CostWdv);
    r[O_OpDepr] = SheetValue::of(o.OpDepr);
    r[O_CalcCA] = o.YrCalcCA ? SheetValue::of(static_cast<double>(o.YrCalcCA)) : SheetValue::of(kNA);
    r[O_DepCalcCA] = SheetValue::of(o.DepCalcCA);
    r[O_ResValue] = SheetValue::of(o.ResValue);
    r[O_ResWord] = SheetValue::of(residual_word(opts, common));
    r[O_Life] = SheetValue::of(o.LifeYrs);
    r[O_LifeWord] = SheetValue::of(life_word(opts.LifeDefault, opts.CalcCA));
    r[O_Rate] = SheetValue::of(o.RateFACL);
    r[O_RateWord] = SheetValue::of(opening_rate_word(opts, group));
    r[O_Method] = SheetValue::of(reg::effective_method(opts.MOD, common));
    if (!opts.AutoDepr) r[O_DepFACL] = SheetValue::of(o.DepFACL);
    r[O_WdvIT] = SheetValue::of(o.WdvIT);
    r[O_ItState] = SheetValue::of(it_state_word(opts.WdvIT));
    r[O_RateIT] = SheetValue::of(o.RateIT);
    r[O_RateITWord] = SheetValue::of(opts.RateITDefault ? kMaster : kOther);
    r[O_AddlRate] = SheetValue::of(o.AddlDepRT);
    r[O_AddlDepOn] = SheetValue::of(o.AddlDepOn);
    r[O_DetESA] = SheetValue::of(o.DetESA);
    r[O_SaleDate] = date_value(o.SaleDate);
    r[O_SaleAmt] = SheetValue::of(o.SaleAmt);
    r[O_SaleExp] = SheetValue::of(o.SaleExp);
    r[O_Shift] = SheetValue::of(shift_words(o.ShiftDet));
    r[O_Codes] = SheetValue::of(o.OthOpts);
    return r;
}

SheetRow addition_cells(const store::AdditionRow& a, int sn, const store::AssetGroupRow* group,
                        const reg::RegisterOptions& common) {
    const auto opts = reg::AdditionOpts::parse(a.OthOpts);
    SheetRow r(A_Count);
    r[A_SN] = SheetValue::of(sn);
    r[A_Group] = SheetValue::of(group ? group->Part : std::string());
    r[A_Part] = SheetValue::of(a.Part);
    r[A_PutDate] = date_value(a.PutDate);
    r[A_AccDate] = date_value(a.AccDate);
    r[A_Cost] = SheetValue::of(a.PurAmt);
    r[A_Excise] = SheetValue::of(a.ExciseCr);
    r[A_CurrDiff] = SheetValue::of(a.CurrDiff);
    r[A_Subsidy] = SheetValue::of(a.Subsidy);
    r[A_MiscAdj] = SheetValue::of(reg::misc_adjustment(a.ExciseCr, a.CurrDiff, a.Subsidy));
    r[A_Net] = SheetValue::of(reg::net_amount(a));
    r[A_ResValue] = SheetValue::of(a.ResValue);
    r[A_ResWord] = SheetValue::of(opts.ResDefault ? kResNet : kOther);
    r[A_Life] = SheetValue::of(a.LifeYrs);
    r[A_LifeWord] = SheetValue::of(opts.LifeDefault ? kLifeMaster : kOther);
    r[A_Rate] = SheetValue::of(a.RateFACL);
    r[A_RateWord] = SheetValue::of(addition_rate_word(opts, group));
    r[A_Method] = SheetValue::of(reg::effective_method(opts.MOD, common));
    r[A_RateIT] = SheetValue::of(a.RateIT);
    r[A_AddlRate] = SheetValue::of(a.AddlDepRT);
    r[A_SaleDate] = date_value(a.SaleDate);
    r[A_SaleAmt] = SheetValue::of(a.SaleAmt);
    r[A_SaleExp] = SheetValue::of(a.SaleExp);
    r[A_Shift] = SheetValue::of(shift_words(a.ShiftDet));
    if (!opts.AutoDepr) r[A_DepFACL] = SheetValue::of(a.DepFACL);
    r[A_Codes] = SheetValue::of(a.OthOpts);
    return r;
}

RegisterData entries_of(const SheetEntries& sheets, int year, bool company,
                        const std::vector<store::AssetGroupRow>& year_groups,
                        const reg::RegisterOptions& common, std::vector<std::string>& errors,
                        FindingPlace& place_out) {
    RegisterData data;
    // Groups by name: those of the year keep their serial and figures; others are
    // made with the name alone, numbered past every serial of the year.
    std::map<std::string, long> by_name;
    std::map<long, const store::AssetGroupRow*> of_year;
    long next_new = 1;
    for (const auto& g : year_groups) {
        by_name.emplace(upper(trimmed(g.Part)), g.SrNoFAGM);
        of_year[g.SrNoFAGM] = &g;
        next_new = std::max(next_new, g.SrNoFAGM + 1);
    }
    const auto group_of = [&](const std::string& name) -> long {
        if (name.empty()) return 0;
        const auto [it, added] = by_name.emplace(upper(name), next_new);
        if (added) {
            store::AssetGroupRow g;
            g.SrNoFAGM = next_new++;
            g.Yr = year;
            g.Part = name;
            g.BlockIdIT = g.BlockIdCL = "-1";
            g.BlockFA = -1;
            data.groups[g.SrNoFAGM] = g;
        } else if (!data.groups.count(it->second)) {
            data.groups[it->second] = *of_year[it->second];
        }
        return it->second;
    };
    const auto group_row = [&](long id) -> const store::AssetGroupRow* {
        const auto it = data.groups.find(id);
        return it == data.groups.end() ? nullptr : &it->second;
    };

    const auto& oc = opening_columns(company);
    std::vector<int> opening_rows, addition_rows;
    for (const auto& [sheet_row, cells] : sheets.opening) {
        const std::size_t before = errors.size();
        RowCells r(cells, EntrySide::Opening, oc, year,
                   "Opening row " + std::to_string(opening_rows.size() + 1) + " (sheet row " +
                       std::to_string(sheet_row) + ")",
                   errors);
        store::OpeningRow o;
        o.IdFAGM = group_of(r.text(O_Group));
        o.Part = r.text(O_Part);
        o.PutDate = r.date(O_PutDate, EntryField::PutDate);
        o.CostWdv = r.number(O_Cost, EntryField::Cost);
        o.OpDepr = r.number(O_OpDepr, EntryField::OpDepr);
        const std::string ca = r.text(O_CalcCA);
        if (!ca.empty() && upper(ca) != kNA) {
            const std::size_t refused = errors.size();
            const double y = r.number(O_CalcCA, EntryField::CalcCAYear);
            if (y >= 1 && y <= 9999 && y == std::floor(y))
                o.YrCalcCA = static_cast<long>(y);
            else if (errors.size() == refused)
                r.fail(O_CalcCA, "Invalid Value !");
        }
        o.DepCalcCA = r.number(O_DepCalcCA, EntryField::DepCalcCA);
        o.ResValue = r.number(O_ResValue, EntryField::ResValue);
        o.LifeYrs = r.number(O_Life, EntryField::LifeYrs);
        o.RateFACL = r.number(O_Rate, EntryField::RateFACL);
        o.WdvIT = r.number(O_WdvIT, EntryField::WdvIT);
        o.RateIT = r.number(O_RateIT, EntryField::RateIT);
        o.AddlDepRT = r.number(O_AddlRate, EntryField::AddlDepRT);
        o.AddlDepOn = r.number(O_AddlDepOn, EntryField::AddlDepOn);
        o.DetESA = r.text(O_DetESA);
        o.SaleDate = r.date(O_SaleDate, EntryField::SaleDate);
        o.SaleAmt = r.number(O_SaleAmt, EntryField::SaleAmt);
        o.SaleExp = r.number(O_SaleExp, EntryField::SaleExp);
        o.ShiftDet = shift_det_of(r, O_Shift);

        // The options: the codes column when the row has it, each word that says
        // otherwise put over it.
        const std::string codes = r.text(O_Codes);
        auto opts = reg::OpeningOpts::parse(codes);
        bool changed = codes.empty();
        const std::string year_text = o.YrCalcCA ? std::to_string(o.YrCalcCA) : "";
        if (opts.CalcCA != year_text) opts.CalcCA = year_text, changed = true;
        const store::AssetGroupRow* g = group_row(o.IdFAGM);
        if (const auto w = word(r, O_ResWord, {kResCost, kResCa, kOther});
            w && *w != residual_word(opts, common)) {
            opts.ResDefault = *w != kOther;
            if (opts.ResDefault) opts.ResValOf = *w == kResCa ? "CA" : "COST";
            changed = true;
        }
        if (const auto w = word(r, O_LifeWord, {kLifeMaster, kLifeAuto, kOther});
            w && *w != life_word(opts.LifeDefault, opts.CalcCA))
            opts.LifeDefault = *w != kOther, changed = true;
        if (const auto w = word(r, O_RateWord, {kMaster, kAutoRate, kOther});
            w && *w != opening_rate_word(opts, g))
            opts.RateDefault = *w != kOther, changed = true;
        if (const auto w = word(r, O_Method, {"WDV", "SLM"});
            w && *w != reg::effective_method(opts.MOD, common))
            opts.MOD = *w, changed = true;
        if (const auto w = word(r, O_ItState, {kOther, kNilWdv, kNotExist});
            w && *w != it_state_word(opts.WdvIT))
            opts.WdvIT = *w == kNilWdv ? "Y" : *w == kNotExist ? "N" : "", changed = true;
        if (const auto w = word(r, O_RateITWord, {kMaster, kOther});
            w && (*w == kMaster) != opts.RateITDefault)
            opts.RateITDefault = *w == kMaster, changed = true;
        if (codes.empty()) opts.AddlDepOn = o.AddlDepOn > 0;
        const bool own_depr = !r.empty(O_DepFACL);
        if (own_depr) o.DepFACL = r.number(O_DepFACL, EntryField::DepFACL);
        if (own_depr == opts.AutoDepr) opts.AutoDepr = !own_depr, changed = true;
        o.OthOpts = changed ? opts.compose() : codes;
        data.openings.push_back(std::move(o));
        data.opening_read.push_back(errors.size() == before);
        opening_rows.push_back(sheet_row);
    }

    const auto& ac = addition_columns(company);
    for (const auto& [sheet_row, cells] : sheets.addition) {
        const std::size_t before = errors.size();
        RowCells r(cells, EntrySide::Addition, ac, year,
                   "Addition row " + std::to_string(addition_rows.size() + 1) + " (sheet row " +
                       std::to_string(sheet_row) + ")",
                   errors);
        store::AdditionRow a;
        a.IdFAGM = group_of(r.text(A_Group));
        a.Part = r.text(A_Part);
        a.PutDate = r.date(A_PutDate, EntryField::PutDate);
        a.AccDate = r.date(A_AccDate, EntryField::AccDate);
        a.PurAmt = r.number(A_Cost, EntryField::Cost);
        a.ExciseCr = r.number(A_Excise, EntryField::ExciseCr);
        a.CurrDiff = r.number(A_CurrDiff, EntryField::CurrDiff);
        a.Subsidy = r.number(A_Subsidy, EntryField::Subsidy);
        a.ResValue = r.number(A_ResValue, EntryField::ResValue);
        a.LifeYrs = r.number(A_Life, EntryField::LifeYrs);
        a.RateFACL = r.number(A_Rate, EntryField::RateFACL);
        a.RateIT = r.number(A_RateIT, EntryField::RateIT);
        a.AddlDepRT = r.number(A_AddlRate, EntryField::AddlDepRT);
        a.SaleDate = r.date(A_SaleDate, EntryField::SaleDate);
        a.SaleAmt = r.number(A_SaleAmt, EntryField::SaleAmt);
        a.SaleExp = r.number(A_SaleExp, EntryField::SaleExp);
        a.ShiftDet = shift_det_of(r, A_Shift);

        const std::string codes = r.text(A_Codes);
        auto opts = reg::AdditionOpts::parse(codes);
        bool changed = codes.empty();
        const store::AssetGroupRow* g = group_row(a.IdFAGM);
        if (const auto w = word(r, A_ResWord, {kResNet, kOther}); w && (*w == kResNet) != opts.ResDefault)
            opts.ResDefault = *w == kResNet, changed = true;
        if (const auto w = word(r, A_LifeWord, {kLifeMaster, kOther});
            w && (*w == kLifeMaster) != opts.LifeDefault)
            opts.LifeDefault = *w == kLifeMaster, changed = true;
        if (const auto w = word(r, A_RateWord, {kMaster, kAutoNoLimit, kAutoLimit, kOther});
            w && *w != addition_rate_word(opts, g)) {
            opts.RateDefault = *w != kOther;
            if (*w == kAutoLimit) opts.RndAddRtAuto = "NEW";
            if (*w == kAutoNoLimit) opts.RndAddRtAuto = "OLD";
            changed = true;
        }
        if (const auto w = word(r, A_Method, {"WDV", "SLM"});
            w && *w != reg::effective_method(opts.MOD, common))
            opts.MOD = *w, changed = true;
        if (codes.empty()) opts.AddlDep = a.AddlDepRT > 0;
        const bool own_depr = !r.empty(A_DepFACL);
        if (own_depr) a.DepFACL = r.number(A_DepFACL, EntryField::DepFACL);
        if (own_depr == opts.AutoDepr) opts.AutoDepr = !own_depr, changed = true;
        a.OthOpts = changed ? opts.compose() : codes;
        data.additions.push_back(std::move(a));
        data.addition_read.push_back(errors.size() == before);
        addition_rows.push_back(sheet_row);
    }

    // A finding of the entry rules names the entry's sheet row and the field's column.
    place_out = [company, year, opening_rows, addition_rows](EntrySide side, std::size_t index,
                                                             EntryField field) {
        const bool opening = side == EntrySide::Opening;
        const auto& rows = opening ? opening_rows : addition_rows;
        static const std::map<EntryField, std::pair<int, int>> columns = {
            {EntryField::AssetGroup, {O_Group, A_Group}},
            {EntryField::Part, {O_Part, A_Part}},
            {EntryField::PutDate, {O_PutDate, A_PutDate}},
            {EntryField::AccDate, {O_PutDate, A_AccDate}},
            {EntryField::Cost, {O_Cost, A_Cost}},
            {EntryField::OpDepr, {O_OpDepr, A_Cost}},
            {EntryField::CalcCAYear, {O_CalcCA, A_PutDate}},
            {EntryField::DepCalcCA, {O_DepCalcCA, A_Cost}},
            {EntryField::ResValue, {O_ResValue, A_ResValue}},
            {EntryField::LifeYrs, {O_Life, A_Life}},
            {EntryField::RateFACL, {O_Rate, A_Rate}},
            {EntryField::WdvIT, {O_WdvIT, A_Cost}},
            {EntryField::RateIT, {O_RateIT, A_RateIT}},
            {EntryField::AddlDepRT, {O_AddlRate, A_AddlRate}},
            {EntryField::AddlDepOn, {O_AddlDepOn, A_AddlRate}},
            {EntryField::ExciseCr, {O_Cost, A_Excise}},
            {EntryField::CurrDiff, {O_Cost, A_CurrDiff}},
            {EntryField::Subsidy, {O_Cost, A_Subsidy}},
            {EntryField::SaleDate, {O_SaleDate, A_SaleDate}},
            {EntryField::SaleAmt, {O_SaleAmt, A_SaleAmt}},
            {EntryField::SaleExp, {O_SaleExp, A_SaleExp}},
            {EntryField::DepFACL, {O_DepFACL, A_DepFACL}},
            {EntryField::DetESA, {O_DetESA, A_Codes}},
            {EntryField::ShiftDet, {O_Shift, A_Shift}}};
        const auto it = columns.find(field);
        const int col = it == columns.end() ? 0 : (opening ? it->second.first : it->second.second);
        const auto& layout = opening ? opening_columns(company) : addition_columns(company);
        return std::string(opening ? "Opening" : "Addition") + " row " + std::to_string(index + 1) +
               " (sheet row " + std::to_string(index < rows.size() ? rows[index] : 0) + "), column " +
               layout[col].letter + " '" + reg::caption_of(field, side, year, false) + "'";
    };
    return data;
}

}  // namespace brenlow::exchange
