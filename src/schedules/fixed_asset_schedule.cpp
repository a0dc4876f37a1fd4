#include "schedules/fixed_asset_schedule.h"

#include <algorithm>
#include <cctype>
#include <set>

#include "controls/number_format.h"
#include "controls/vb_date.h"
#include "depreciation/half_rate_line.h"
#include "depreciation/trial_balance_check.h"
#include "frame/stopped_whole.h"
#include "store/transfer_store.h"

namespace brenlow::sched {
namespace {

std::string upper(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return std::toupper(c); });
    return s;
}

std::string trim(const std::string& s) {
    const auto b = s.find_first_not_of(' ');
    if (b == std::string::npos) return {};
    return s.substr(b, s.find_last_not_of(' ') - b + 1);
}

int closing_year_of(const std::string& second_date) {
    return second_date.size() >= 4 ? std::atoi(second_date.substr(second_date.size() - 4).c_str()) : 0;
}

std::string money(double v) {
    return format_mask(v, "###0.00");
}

// Companies keep their books under the Companies Act; the others "As per Books", with
// only the two methods a non-corporate's books use.
bool company_status(int status) {
    return status == 3 || status == 4;
}

}  // namespace

bool FixedLine::empty() const {
    const auto& r = row;
    return trim(r.PART_NM).empty() && r.OP_BAL == 0 && r.op_bal_dep == 0 && r.RATE_DEP == 0 && r.wdv == 0 &&
           r.compit_rate == 0 && r.depamt == 0 && additions.empty() && deductions.empty() && carried.empty();
}

FixedAssetSchedule::FixedAssetSchedule(frame::Component& component, Ui& ui)
    : comp_(component), ui_(ui), db_(component.base->dbobj()) {
    auto& base = *comp_.base;
    code_ = base.Temp_Code();
    suffix_ = base.GetTbName(base.CYrInd());
    previous_suffix_ = base.PYrInd() != 0 ? base.GetTbName(base.PYrInd()) : std::string();
    year_ = closing_year_of(base.SecondDate());
    status_ = base.TSTATUS();
    count_ = base.CYrInd();
    options_ = options_of(store::client_others(db_, code_, count_));
}

bool FixedAssetSchedule::Form_Load(bool offer_carry_forward) {
    books_blocks_ = store::schedule_blocks(db_, 1);
    it_blocks_ = store::schedule_blocks(db_, 2);
    store::FixedScheduleStore st(db_, suffix_, code_);
    if (!st.tables_exist()) {
        ui_.info("The schedule tables of the year are missing.");
        return false;
    }
    if (offer_carry_forward) carry_forward();
    load_rows();
    return true;
}

void FixedAssetSchedule::load_rows() {
    store::FixedScheduleStore st(db_, suffix_, code_);
    vsFixed.clear();
    for (auto& r : st.particulars()) {
        FixedLine line;
        line.row = r;
        line.additions = st.lines(r.ref_id, store::kFdaAddition);
        line.deductions = st.lines(r.ref_id, store::kFdaDeduction);
        line.carried = st.lines(r.ref_id, store::kFdaCarriedHalf);
        vsFixed.push_back(std::move(line));
    }
}

bool FixedAssetSchedule::carry_forward() {
    if (previous_suffix_.empty() || !store::FixedScheduleStore(db_, suffix_, code_).particulars().empty())
        return false;
    store::FixedScheduleStore prev(db_, previous_suffix_, code_);
    if (!prev.tables_exist()) return false;
    const auto rows = prev.particulars();
    if (rows.empty()) return false;
    if (!ui_.ask_yes_no("Do you want to carry forward previous year particulars ?")) return false;

    std::vector<ParticularInput> inputs;
    for (const auto& r : rows) inputs.push_back({r, prev.lines(r.ref_id, 0)});
    const auto figs = particular_figures(inputs, year_ - 1, options_);
    const auto line = depreciation::half_rate_line(year_ - 2);

    std::vector<store::FixedRow> out;
    std::vector<store::FdaRow> carried;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        store::FixedRow f = rows[i];
        if (f.RATE_DEP > 40 &&
            ui_.ask_yes_no(
                "Do you want to Change Rate for Books to 40% [Maximum Allowed as per Income-Tax Act] ?"))
            f.RATE_DEP = 40;
        if (f.compit_rate > 40 &&
            ui_.ask_yes_no(
                "Do you want to Change Rate for Income-Tax to 40% [Maximum Allowed as per Income-Tax Act] ?"))
            f.compit_rate = 40;
        // Last year's closing figures open this year; the year's own movements start nil.
        const auto& fig = figs[i];
        f.OP_BAL = vb_round(fig.books.closing_cost, 2);
        f.op_bal_dep = vb_round(fig.books.closing_dep, 2);
        if (fig.it_considered) f.wdv = fig.it.RndWdv;
        f.OTH_DEP = 0;
        f.deptick = 0;
        f.depamt = 0;
        f.trblock = 0;
        out.push_back(f);

        // Additions put to use for less than 180 days keep the other half of their
        // additional depreciation for this year, unless a deduction took them.
        std::set<long> sources;
        for (const auto& a : inputs[i].lines)
            if (a.ad_ded_id == store::kFdaDeduction && a.src != 0) sources.insert(a.src);
        long sr = 0;
        for (const auto& a : inputs[i].lines) {
            if (a.ad_ded_id != store::kFdaAddition || a.adddepapp != "1" || a.ad_date.empty() ||
                sources.count(a.srno))
                continue;
            const auto put = Date::parse(a.ad_date);
            if (!put || !depreciation::is_half_rate_addition(*put, line)) continue;
            store::FdaRow c;
            c.srno = ++sr;
            c.ad_ded_id = store::kFdaCarriedHalf;
            c.ref_id = f.ref_id;
            c.particular = a.particular;
            c.AMT = addition_amount(a);
            c.ad_date = a.ad_date;
            c.dtpur = a.dtpur;
            c.dep = rows[i].AddDepRt;  // the rate of the carried half
            c.adddepapp = "1";
            carried.push_back(c);
        }
    }
    store::FixedScheduleStore(db_, suffix_, code_).write_carried(out, carried);
    load_rows();
    return true;
}

std::string FixedAssetSchedule::books_heading() const {
    return company_status(status_) ? "As per Company Law" : "As per Books";
}

std::string FixedAssetSchedule::method_list() const {
    return company_status(status_)
               ? "#4;NO DEPRECIATION|#3;OTHER METHOD|#2;STRAIGHT LINE METHOD|#1;WRITTEN DOWN VALUE"
               : "#3;OTHER METHOD|#1;WRITTEN DOWN VALUE";
}

std::string FixedAssetSchedule::books_block_list() const {
    std::string out = "#0;[New]";
    for (const auto& b : books_blocks_) out += "|#" + std::to_string(b.GrpId) + ";" + b.grpdesc;
    return out + "|#9999999;Does Not Consider for Books";
}

std::string FixedAssetSchedule::it_block_list() const {
    std::string out = "#0;[New]";
    for (const auto& b : it_blocks_) out += "|#" + std::to_string(b.GrpId) + ";" + b.grpdesc;
    return out + "|#9999999;Does Not Consider for IT";
}

const char* FixedAssetSchedule::old_table_list() {
    return "#0;N/A|#1;40%|#2;50%|#3;60%|#4;80%|#5;100%";
}

std::string FixedAssetSchedule::sub_view_title(SubView view) {
    switch (view) {
        case SubView::Additions:
            return "Fixed Assets (Addition)";
        case SubView::Deductions:
            return "Fixed Assets (Deduction)";
        case SubView::Carried:
            break;
    }
    return "Fixed Assets (Additional Depreciation [Remaining Half from Addition in Previous F.Y. used for "
           "less "
           "than 180 days])";
}

std::vector<std::string> FixedAssetSchedule::sub_view_headings(SubView view) const {
    const bool ded = view == SubView::Deductions;
    return {"Particulars",
            ded ? "WDV" : "Cost",
            ded ? "Expenses" : "Excise Credit",
            "Currency Difference",
            "Grant/Subsidy",
            ded ? "Sales Amount" : "Amount",
            ded ? "Date" : "Date of Put to Use",
            "Date of Accounting",
            "Deduction in depreciation upto 31/03/" + std::to_string(year_),
            "100% Depreciation Upto Rs. 5000",
            "Source of Deduction",
            "Add. Dep. Applicable"};
}

std::vector<ParticularInput> FixedAssetSchedule::inputs() const {
    std::vector<ParticularInput> out;
    for (const auto& l : vsFixed) {
        if (l.empty()) continue;
        ParticularInput p{l.row, {}};
        for (const auto* list : {&l.additions, &l.deductions, &l.carried})
            p.lines.insert(p.lines.end(), list->begin(), list->end());
        out.push_back(std::move(p));
    }
    return out;
}

std::vector<ParticularFigures> FixedAssetSchedule::figures() const {
    return particular_figures(inputs(), year_, options_);
}

// ---- Saving ------------------------------------------------------------------------

bool FixedAssetSchedule::row_checks() {
    std::set<std::string> names;
    for (const auto& l : vsFixed) {
        if (l.empty()) continue;
        const std::string name = upper(trim(l.row.PART_NM));
        if (name.empty()) {
            ui_.info("Please specify a item.");
            return false;
        }
        if (!names.insert(name).second) {
            ui_.info("This Asset already exists.");
            return false;
        }
        if (l.row.method_id == 0) {
            ui_.info("Please specify Method of Depreciation.");
            return false;
        }
        if (l.row.op_bal_dep > l.row.OP_BAL) {
            ui_.info("Depreciation Amount Can not be Greater than Cost.");
            return false;
        }
    }
    return true;
}

namespace {

// A typed date: dd/mm/yy (or the stored dd/mm/yyyy), real, inside the year.
std::optional<std::string> date_refusal(const std::string& text, int year) {
    if (text.empty()) return std::nullopt;
    const bool shape =
        (text.size() == 8 || text.size() == 10) && text[2] == '/' && text[5] == '/' &&
        std::all_of(text.begin(), text.end(), [](char c) { return std::isdigit(c) || c == '/'; });
    if (!shape) return "Invalid Entry. Enter date in format (dd/mm/yy).";
    const auto d = Date::parse(text);
    if (!d) return "Invalid Date.";
    if (*d < fy_first(year) || *d > fy_last(year))
        return "Date should be between 01/04/" + std::to_string(year - 1) + " and 31/03/" +
               std::to_string(year);
    return std::nullopt;
}

}  // namespace

bool FixedAssetSchedule::line_checks() {
    const auto figs = figures();
    std::size_t k = 0;
    for (auto& l : vsFixed) {
        if (l.empty()) continue;
        const auto& fig = figs[k++];
        for (auto* list : {&l.additions, &l.deductions})
            for (auto& a : *list)
                for (auto* d : {&a.ad_date, &a.dtpur}) {
                    if (const auto refusal = date_refusal(*d, year_)) {
                        ui_.info(*refusal);
                        return false;
                    }
                    if (const auto parsed = Date::parse(*d)) *d = parsed->text();
                }
        double ded_cost = 0, ded_dep = 0;
        for (const auto& d : l.deductions) {
            ded_cost += d.cost;
            ded_dep += d.dep;
        }
        const double cost = l.row.OP_BAL + fig.books.additions;
        if (ded_cost > cost) {
            ui_.info("Total Deductions Cost is " + money(ded_cost) +
                     ", Which can not be Greater than Cost of Asset i.e. " + money(cost));
            return false;
        }
        // A typed depreciation for the year counts with the opening depreciation; with
        // none typed the deductions are held to the opening depreciation alone.
        const bool typed = l.row.deptick != 0 || l.row.method_id == 3;
        const double dep_cap = l.row.op_bal_dep + (typed ? fig.books.depreciation : 0);
        if (ded_dep > dep_cap) {
            ui_.info(
                "Total Depreciation Upto 31/03/" + std::to_string(year_) + " included in Deductions is " +
                money(ded_dep) +
                (typed ? ", Which can not be Greater than (Opening Depreciation + Depreciation For the Year) "
                         "of Asset i.e. "
                       : ", Which can not be Greater than Opening Depreciation of Asset i.e. ") +
                money(dep_cap));
            return false;
        }
        // Every deduction comes from the opening figures or from one of the additions.
        for (const auto& d : l.deductions) {
            if (d.src == 0) continue;
            bool known = false;
            for (const auto& a : l.additions) known = known || a.srno == d.src;
            if (!known) {
                ui_.info(source_refusal(static_cast<std::size_t>(&l - vsFixed.data()), d.src));
                return false;
            }
        }
        for (const auto& a : l.additions) {
            double from_it = 0;
            const double amount = addition_amount(a);
            for (const auto& d : l.deductions) {
                if (d.src != a.srno) continue;
                if (d.cost > amount) {
                    ui_.info("Cost of Deduction can not be greater than Cost of Addition i.e. " +
                             money(amount));
                    return false;
                }
                from_it += d.cost;
                const auto dd = Date::parse(d.ad_date), ad = Date::parse(a.ad_date);
                if (dd && ad && *dd < *ad) {
                    ui_.info("Date of Deduction is " + d.ad_date +
                             ", Which can not be Lesser than Addition Date i.e. " + a.ad_date);
                    return false;
                }
            }
            if (from_it > amount) {
                ui_.info("Total Deductions Cost is " + money(from_it) +
                         ", Which can not be Greater than Addition Cost of Asset i.e. " + money(amount));
                return false;
            }
        }
    }
    return true;
}

bool FixedAssetSchedule::warnings() {
    bool asset_wise = false, sale_above = false;
    for (const auto& l : vsFixed) {
        double sales = 0;
        for (const auto& d : l.deductions) {
            if (d.src != 0) asset_wise = true;
            sales = std::max(sales, d.AMT);
        }
        if (sales > l.row.wdv && !l.deductions.empty() && l.row.IGrpId != store::kNotConsidered)
            sale_above = true;
    }
    if (asset_wise)
        ui_.info(
            "You have done assets wise entry in Block wise chart so in case of Sale/Deduction you may get "
            "incorrect "
            "calculation of depreciation so you are suggested to do Block wise entry\n\nOR\n\nYou may "
            "prepare New "
            "Assets wise Depreciation Chart.");
    if (sale_above &&
        !ui_.ask_yes_no(
            "If the Sale value of any asset is greater than opening WDV then you are advised to do the "
            "block wise entry i.e(Consolidated Entry for a particular block)\nDo you want to Continue?"))
        return false;
    return true;
}

std::string e_filing_list(int y) {
    std::vector<std::string> lines;
    if (y >= 2018) {
        lines = {"1) Land : Nil",
                 "2) Building (not including land) : 5%, 10%, 40%",
                 "3) Furniture and fittings : 10%",
                 y >= 2020 ? "4) Machinary and plant : 15%, 30%, 40%, 45%"
                           : "4) Machinary and plant : 15%, 30%, 40%",
                 "5) Intangible Assets : 25%",
                 "6) Ships : 20%"};
    } else if (y <= 2006) {
        lines = {"1) Buildings : 5%, 10%, 100%", "2) Furniture and fittings : 10%, 15%",
                 "3) Machinary and plant : 15%, 20%, 30%, 40%, 50%, 60%, 80%, 100%",
                 "4) Intangible Assets : 25%"};
    } else {
        lines = {"1) Buildings : 5%, 10%, 100%", "2) Furniture and fittings : 10%",
                 "3) Machinary and plant : 15%, 30%, 40%, 50%, 60%, 80%, 100%", "4) Intangible Assets : 25%",
                 "5) Ships : 20%"};
    }
    std::string out = "Income Tax Block with Rates allowed for e-Filing:\n";
    for (const auto& l : lines) out += l + "\n";
    return out + "\nSome items found with Other Block or Rate (Filled in Red), Do you want to Continue?";
}

bool e_filing_allows(int y, int nature, double rate) {
    std::vector<double> rates;
    const bool late = y >= 2018, early = y <= 2006;
    switch (nature) {
        case 100:  // land
            return late && rate == 0;
        case 1:
            rates = late ? std::vector<double>{5, 10, 40} : std::vector<double>{5, 10, 100};
            break;
        case 2:
            rates = early ? std::vector<double>{10, 15} : std::vector<double>{10};
            break;
        case 3:
            if (y >= 2020)
                rates = {15, 30, 40, 45};
            else if (late)
                rates = {15, 30, 40};
            else if (early)
                rates = {15, 20, 30, 40, 50, 60, 80, 100};
            else
                rates = {15, 30, 40, 50, 60, 80, 100};
            break;
        case 4:
            rates = {25};
            break;
        case 5:
            if (early) return false;
            rates = {20};
            break;
        default:
            return false;
    }
    return std::find(rates.begin(), rates.end(), rate) != rates.end();
}

bool FixedAssetSchedule::e_filing_check() {
    bool any_red = false;
    for (auto& l : vsFixed) {
        l.red = false;
        if (l.empty() || l.row.IGrpId == store::kNotConsidered) continue;
        int nature = 0;
        for (const auto& b : it_blocks_)
            if (b.GrpId == l.row.IGrpId) nature = b.BlockNo;
        l.red = !e_filing_allows(year_, nature, l.row.compit_rate);
        any_red = any_red || l.red;
        // Plant at 40% from the year the old table's higher rates were folded into it.
        if (nature == 3 && l.row.compit_rate == 40 && year_ >= 2018 && l.old_table == 0) {
            ui_.info(
                "Please specify Rate as per Old Table for Plant and Machinery @ 40% Block as per Income Tax "
                "!");
            return false;
        }
    }
    return !any_red || ui_.ask_yes_no(e_filing_list(year_));
}

std::vector<FixedLine> fixed_lines_of(const store::FixedScheduleRows& rows) {
    std::vector<FixedLine> out;
    for (const auto& f : rows.fixed) {
        FixedLine l;
        l.row = f;
        for (const auto& a : rows.fda) {
            if (a.ref_id != f.ref_id) continue;
            if (a.ad_ded_id == store::kFdaAddition) l.additions.push_back(a);
            if (a.ad_ded_id == store::kFdaDeduction) l.deductions.push_back(a);
            if (a.ad_ded_id == store::kFdaCarriedHalf) l.carried.push_back(a);
        }
        out.push_back(std::move(l));
    }
    return out;
}

std::string reconciliation_question(store::Database& db, const std::string& suffix, const std::string& code,
                                    const ScheduleTotals& schedule) {
    const auto sum = [&](int gid, std::string_view allgrp) {
        double total = 0;
        for (const auto& r : store::trial_balance_of_group(db, suffix, code, gid, allgrp))
            total += r.nid == store::kCredit ? -r.Amt : r.Amt;
        return total;
    };
    depreciation::TbFigures tb, sch;
    tb.net_block = sum(5, {});
    tb.depreciation = sum(29, "DEPRECIATION");
    tb.profit_on_sale = -sum(17, "PROFIT ON SALE OF FIXED ASSETS");
    sch.net_block = schedule.net_block;
    sch.depreciation = schedule.depreciation;
    sch.profit_on_sale = schedule.profit_on_sale;
    return depreciation::trial_balance_check(sch, tb).question;
}

bool FixedAssetSchedule::reconcile() {
    const auto q = reconciliation_question(db_, suffix_, code_, schedule_totals(figures()));
    return q.empty() || ui_.ask_yes_no(q);
}

bool FixedAssetSchedule::cmdSave_Click() {
    // The questions reach the person (or stop a command line) before anything is written.
    bool checked = false;
    if (!frame::stopped_whole(comp_.log, ui_, "formatsch", "cmdSave_Click",
                              "The schedule could not be checked.", [&] {
                                  checked = row_checks() && line_checks() && warnings() && e_filing_check() &&
                                            regime_check() && reconcile();
                              }))
        return false;
    if (!checked) return false;
    return frame::stopped_whole(
        comp_.log, ui_, "formatsch", "cmdSave_Click", "The schedule could not be saved.", [&] {
            std::vector<store::SavedParticular> rows;
            long sr = 0;
            for (auto& l : vsFixed) {
                if (l.empty()) continue;
                l.row.srno = ++sr;
                l.row.compit_id = sr;
                rows.push_back({l.row, upper(trim(l.row.PART_NM))});
            }
            store::FixedScheduleStore st(db_, suffix_, code_);
            const auto ids = st.save_particulars(rows);
            std::size_t k = 0;
            for (auto& l : vsFixed) {
                if (l.empty()) continue;
                l.row.ref_id = ids[k++];
                for (const auto view : {SubView::Additions, SubView::Deductions, SubView::Carried})
                    save_sub_view(static_cast<std::size_t>(&l - vsFixed.data()), view);
            }
            load_rows();
        });
}

bool FixedAssetSchedule::save_sub_view(std::size_t row, SubView view) {
    auto& l = vsFixed.at(row);
    if (l.row.ref_id == 0) return false;
    auto& list = view == SubView::Additions    ? l.additions
                 : view == SubView::Deductions ? l.deductions
                                               : l.carried;
    if (view == SubView::Deductions)
        for (const auto& d : l.deductions)
            for (const auto& a : l.additions)
                if (d.src != 0 && d.src == a.srno)
                    if (const auto refusal = deduction_date_refusal(d, a)) {
                        ui_.info(*refusal);
                        return false;
                    }
    long sr = 0;
    for (auto& a : list) {
        if (a.particular.empty()) a.particular = l.row.PART_NM;
        if (view == SubView::Additions && a.cost != 0) a.AMT = addition_amount(a);
        sr = std::max(sr, a.srno);
    }
    for (auto& a : list)
        if (a.srno == 0) a.srno = ++sr;
    store::FixedScheduleStore(db_, suffix_, code_).replace_lines(l.row.ref_id, static_cast<int>(view), list);
    if (view == SubView::Additions) {
        // A deduction whose source addition is gone is taken from the opening figures.
        std::set<long> sources;
        for (const auto& a : l.additions) sources.insert(a.srno);
        for (auto& d : l.deductions)
            if (d.src != 0 && !sources.count(d.src)) d.src = 0;
    }
    return true;
}

}  // namespace brenlow::sched
