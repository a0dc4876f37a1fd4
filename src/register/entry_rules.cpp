#include "register/entry_rules.h"

#include <cmath>

#include "controls/number_format.h"
#include "depreciation/companies_act_rate.h"
#include "register/register_entry_math.h"
#include "register/register_text.h"

namespace brenlow::reg {
namespace {

constexpr const char* kContinue = "\n\nContinue ?";
// The Companies Act, 2013 took over from 01/04/2014.
constexpr Date kActStart{2014, 4, 1};

struct Bounds {
    Date first, last;
    std::string first_year, last_year;  // "yyyy" of 01/04/yyyy and of 31/03/yyyy+1
};

Bounds bounds_of(int year) {
    return {fy_first(year), fy_last(year), std::to_string(year - 1), std::to_string(year)};
}

std::string on_or_before_first(const std::string& caption, const Bounds& b) {
    return "'" + caption + "' should be on or before 01/04/" + b.first_year + " !";
}

std::string on_or_after_first(const std::string& caption, const Bounds& b) {
    return "'" + caption + "' should be on or after 01/04/" + b.first_year + " !";
}

std::string between(const std::string& caption, const Bounds& b) {
    return "'" + caption + "' should be between 01/04/" + b.first_year + " and 31/03/" + b.last_year + " !";
}

// Collects the findings of Update in order and knows when a refusal ends the list.
class Findings {
public:
    bool refuse(EntryField field, std::string message) {
        list_.push_back({field, FindingKind::Refusal, std::move(message), true});
        return false;
    }
    void ask(EntryField field, std::string message, bool default_yes = true) {
        list_.push_back({field, FindingKind::Question, std::move(message) + kContinue, default_yes});
    }
    void inform(EntryField field, std::string message) {
        list_.push_back({field, FindingKind::Notice, std::move(message), true});
    }
    std::vector<Finding> take() { return std::move(list_); }

private:
    std::vector<Finding> list_;
};

bool is_opening(const EntryDraft& d) {
    return d.side == EntrySide::Opening;
}

std::string calc_ca_caption(const EntryDraft& d) {
    return "Depreciation Upto 31/03/" + d.calc_ca_year;
}

// 4: the amounts, lives and rates that are typed must be numbers; the cost is required.
bool check_figures(const EntryDraft& d, const EntryContext& ctx, Findings& out) {
    const auto cap = [&](EntryField f) { return caption_of(f, d.side, ctx.year, ctx.written_down); };
    const auto bad = [&](EntryField f, const std::string& caption) {
        return out.refuse(f, "Please specify valid '" + caption + "' !");
    };
    struct Check {
        EntryField field;
        const Figure* figure;
        bool required;
        bool may_be_negative;
    };
    std::vector<Check> checks;
    if (is_opening(d)) {
        checks = {{EntryField::Cost, &d.cost, true, false},
                  {EntryField::OpDepr, &d.op_depr, false, false},
                  {EntryField::ResValue, &d.res_value, false, false},
                  {EntryField::LifeYrs, &d.life, false, false},
                  {EntryField::RateFACL, &d.rate_books, false, false},
                  {EntryField::WdvIT, &d.wdv_it, false, false},
                  {EntryField::RateIT, &d.rate_it, false, false},
                  {EntryField::AddlDepRT, &d.addl_rate, false, false}};
    } else {
        // A currency difference may go either way; everything else is a positive amount.
        checks = {{EntryField::Cost, &d.cost, true, false},
                  {EntryField::ExciseCr, &d.excise, false, false},
                  {EntryField::CurrDiff, &d.curr_diff, false, true},
                  {EntryField::Subsidy, &d.subsidy, false, false},
                  {EntryField::ResValue, &d.res_value, false, false},
                  {EntryField::LifeYrs, &d.life, false, false},
                  {EntryField::RateFACL, &d.rate_books, false, false},
                  {EntryField::RateIT, &d.rate_it, false, false},
                  {EntryField::AddlDepRT, &d.addl_rate, false, false}};
    }
    for (const auto& c : checks) {
        if ((c.required && !c.figure->given) || !c.figure->valid(c.may_be_negative))
            return bad(c.field, cap(c.field));
    }
    if (is_opening(d) && !d.calc_ca_year.empty() && !d.dep_calc_ca.valid())
        return bad(EntryField::DepCalcCA, calc_ca_caption(d));
    if (!d.sale_amt.valid()) return bad(EntryField::SaleAmt, cap(EntryField::SaleAmt));
    if (!d.sale_exp.valid()) return bad(EntryField::SaleExp, cap(EntryField::SaleExp));
    if (!d.auto_depr && (!d.manual_depr.given || !d.manual_depr.valid()))
        return bad(EntryField::DepFACL, "Depreciation");
    return true;
}

// 5: a part of an amount cannot be larger than the amount.
bool check_limits(const EntryDraft& d, const EntryContext& ctx, Findings& out) {
    const auto cap = [&](EntryField f) { return caption_of(f, d.side, ctx.year, ctx.written_down); };
    const auto over = [&](EntryField f, const std::string& caption, const std::string& other, double limit) {
        return out.refuse(f, "'" + caption + "' should be less than or equal to '" + other + "' i.e. Rs. " +
                                 format_mask(limit, "###0.00") + " !");
    };
    const double cost = d.cost.or_zero();
    const std::string cost_caption = cap(EntryField::Cost);
    if (is_opening(d)) {
        if (d.op_depr.or_zero() > cost)
            return over(EntryField::OpDepr, cap(EntryField::OpDepr), cost_caption, cost);
        if (!d.calc_ca_year.empty() && d.dep_calc_ca.or_zero() > cost)
            return over(EntryField::DepCalcCA, calc_ca_caption(d), cost_caption, cost);
        if (d.res_value.or_zero() > cost)
            return over(EntryField::ResValue, cap(EntryField::ResValue), cost_caption, cost);
    } else {
        for (EntryField f : {EntryField::ExciseCr, EntryField::Subsidy}) {
            const double part = f == EntryField::ExciseCr ? d.excise.or_zero() : d.subsidy.or_zero();
            if (part > cost) return over(f, cap(f), cost_caption, cost);
        }
        const double net = net_amount(cost, d.excise.or_zero(), d.curr_diff.or_zero(), d.subsidy.or_zero());
        if (d.res_value.or_zero() > net)
            return over(EntryField::ResValue, cap(EntryField::ResValue), "Net Amount", net);
    }
    return true;
}

// 6: the year whose carrying amount is taken cannot come before the asset did.
bool check_calc_ca(const EntryDraft& d, Findings& out) {
    const auto put = Date::parse(d.put_date);
    if (!put) return true;
    const std::string label = "For Calculation of Carrying Amount, Consider Depreciation Upto 31/03/";
    if (!d.calc_ca_year.empty()) {
        const auto y = parse_number(d.calc_ca_year);
        if (!y || Date{static_cast<int>(*y), 4, 1} < *put)
            return out.refuse(EntryField::CalcCAYear, "'" + label + "' Year [" + d.calc_ca_year +
                                                          "] should not be prior to Date of Put to Use '" +
                                                          put->text() + "' !");
    } else if (*put < kActStart) {
        out.ask(EntryField::CalcCAYear,
                "'" + label + "' Year should be selected as Date of Put to Use '" + put->text() +
                    "' is prior to '01/04/2014' !",
                false);
    }
    return true;
}

// 7: more than 5% of the basis as residual value is asked about.
void check_residual(const EntryDraft& d, const EntryContext& ctx, Findings& out) {
    // The message says "Cost" either way; on the carrying-amount basis the figure is the
    // cost less the depreciation to the chosen year.
    const double five = depreciation::residual_value(entry_base(d, ctx.options));
    if (mask_value(d.res_value.or_zero(), "###0.00") <= mask_value(five, "###0.00")) return;
    out.ask(EntryField::ResValue,
            "Residual Value is more than 5% of Cost i.e. Rs. " + format_mask(five, "###0") + " !");
}

// 9, 10, 11: the income-tax side of an opening asset.
bool check_opening_it(const EntryDraft& d, Findings& out) {
    // What is set against this asset cannot exceed its written down value.
    const double wdv = d.wdv_it.or_zero();
    if (d.adjusted > wdv)
        return out.refuse(EntryField::WdvIT,
                          "Amount can not be adjusted more than Opening Written Down Value i.e. '" +
                              format_mask(wdv, "###0.00") + "' !");
    if (d.it_state == ItState::NilWdv && wdv > 0)
        return out.refuse(
            EntryField::WdvIT,
            "Option 'Asset Exists but WDV is NIL' can not be selected if Written Down Value > 0 !");
    if (d.addl_dep_on_ticked) {
        if (!d.addl_dep_on.given || !d.addl_dep_on.valid())
            return out.refuse(EntryField::AddlDepOn, "Please specify valid 'Amount' !");
        if (d.addl_dep_on.or_zero() > 0)
            out.inform(
                EntryField::AddlDepOn,
                "Additional Depreciation (Remaining Half from Addition in Previous F.Y. used for less than "
                "180 "
                "days) will not be calculated ! Only available for Input as Clarification is required from "
                "ITD for the applicability for A.Y. 2016-17 !");
    }
    return true;
}

// 12: an addition's dates lie in the year; a later date of put to use is asked about.
bool check_addition_dates(const EntryDraft& d, const EntryContext& ctx, Findings& out) {
    const Bounds b = bounds_of(ctx.year);
    const std::string put_caption = caption_of(EntryField::PutDate, d.side, ctx.year, ctx.written_down);
    const auto put = Date::parse(d.put_date);
    if (d.put_date.empty()) {
        out.ask(EntryField::PutDate,
                "'" + put_caption + "' is not provided. No Depreciation will be calculated !");
    } else if (!put || *put < b.first) {
        return out.refuse(EntryField::PutDate, on_or_after_first(put_caption, b));
    } else if (*put > b.last) {
        out.ask(EntryField::PutDate,
                "'" + put_caption + "' should be on or before 31/03/" + b.last_year + " !");
    }
    if (!d.acc_date.empty()) {
        const auto acc = Date::parse(d.acc_date);
        if (!acc || *acc < b.first || *acc > b.last)
            return out.refuse(
                EntryField::AccDate,
                between(caption_of(EntryField::AccDate, d.side, ctx.year, ctx.written_down), b));
    }
    return true;
}

// 13, 14, 15: the sale or deduction.
bool check_sale(const EntryDraft& d, const EntryContext& ctx, Findings& out) {
    const Bounds b = bounds_of(ctx.year);
    const bool given = !d.sale_date.empty() || d.sale_amt.or_zero() != 0 || d.sale_exp.or_zero() != 0;
    if (is_opening(d) && given && d.it_state == ItState::NotExist)
        return out.refuse(EntryField::SaleDate,
                          "Opted for 'Asset does not Exist', Can't show Sale/Deduction !");
    if (!given) return true;
    const auto sale = Date::parse(d.sale_date);
    if (!sale || *sale < b.first || *sale > b.last)
        return out.refuse(EntryField::SaleDate,
                          "Please specify valid '" +
                              caption_of(EntryField::SaleDate, d.side, ctx.year, false) + "' between 01/04/" +
                              b.first_year + " and 31/03/" + b.last_year + " !");
    if (!is_opening(d)) {
        const auto put = Date::parse(d.put_date);
        if (!put)
            return out.refuse(EntryField::SaleDate,
                              "Date of Sale/Deduction should not provided if Date of Put to Use "
                              "of New Addition is not provided !");
        if (*sale < *put)
            return out.refuse(
                EntryField::SaleDate,
                "Date of Sale/Deduction should be on or after Date of Put to Use of New Addition i.e. " +
                    put->text());
    }
    return true;
}

}  // namespace

const char* column_of(EntryField field, EntrySide side) {
    const bool opening = side == EntrySide::Opening;
    switch (field) {
        case EntryField::AssetGroup:
            return "IdFAGM";
        case EntryField::Part:
            return "Part";
        case EntryField::PutDate:
            return "PutDate";
        case EntryField::AccDate:
            return "AccDate";
        case EntryField::Cost:
            return opening ? "CostWdv" : "PurAmt";
        case EntryField::OpDepr:
            return "OpDepr";
        case EntryField::CalcCAYear:
            return "YrCalcCA";
        case EntryField::DepCalcCA:
            return "DepCalcCA";
        case EntryField::ResValue:
            return "ResValue";
        case EntryField::LifeYrs:
            return "LifeYrs";
        case EntryField::RateFACL:
            return "RateFACL";
        case EntryField::WdvIT:
            return "WdvIT";
        case EntryField::RateIT:
            return "RateIT";
        case EntryField::AddlDepRT:
            return "AddlDepRT";
        case EntryField::AddlDepOn:
            return "AddlDepOn";
        case EntryField::ExciseCr:
            return "ExciseCr";
        case EntryField::CurrDiff:
            return "CurrDiff";
        case EntryField::Subsidy:
            return "Subsidy";
        case EntryField::SaleDate:
            return "SaleDate";
        case EntryField::SaleAmt:
            return "SaleAmt";
        case EntryField::SaleExp:
            return "SaleExp";
        case EntryField::DepFACL:
            return "DepFACL";
        case EntryField::DetESA:
            return "DetESA";
        case EntryField::ShiftDet:
            return "ShiftDet";
    }
    return "";
}

std::string caption_of(EntryField field, EntrySide side, int year, bool written_down) {
    const bool opening = side == EntrySide::Opening;
    switch (field) {
        case EntryField::AssetGroup:
            return "Asset Group";
        case EntryField::Part:
            return "Particulars";
        case EntryField::PutDate:
            return "Date of Put to Use";
        case EntryField::AccDate:
            return "Date of Accounting";
        case EntryField::Cost:
            return opening && written_down ? "Written Down Value" : "Cost";
        case EntryField::OpDepr:
            return "Depreciation Upto 31/03/" + std::to_string(year - 1);
        case EntryField::CalcCAYear:
            return "For Calculation of Carrying Amount, Consider Depreciation Upto 31/03/";
        case EntryField::DepCalcCA:
            return "Depreciation Upto 31/03/";
        case EntryField::ResValue:
            return "Residual Value";
        case EntryField::LifeYrs:
            return "Useful Life (Years)";
        case EntryField::RateFACL:
            return "Rate (%)";
        case EntryField::WdvIT:
            return "Written Down Value";
        case EntryField::RateIT:
            return "Rate (%)";
        case EntryField::AddlDepRT:
            return "Additional Depreciation Rate (%)";
        case EntryField::AddlDepOn:
            return "Amount";
        case EntryField::ExciseCr:
            return "Excise Credit";
        case EntryField::CurrDiff:
            return "Currency Difference";
        case EntryField::Subsidy:
            return "Grant/Subsidy";
        case EntryField::SaleDate:
            return "Date of Sale/Deduction";
        case EntryField::SaleAmt:
            return "Sale/Deduction Amount";
        case EntryField::SaleExp:
            return "Expenses (If any)";
        case EntryField::DepFACL:
            return "Depreciation";
        case EntryField::DetESA:
            return "Adjustment";
        case EntryField::ShiftDet:
            return "Shift";
    }
    return "";
}

bool within_figure_limit(double v) {
    return std::isfinite(v) && std::fabs(v) < kFigureLimit;
}

Figure Figure::typed(std::string_view text) {
    bool blank = true;
    for (const char c : text) blank = blank && c == ' ';
    if (blank) return {};
    return {true, parse_number(text)};
}

double misc_adjustment(double excise, double curr_diff, double subsidy) {
    return 0 - excise + curr_diff - subsidy;
}

double net_amount(double cost, double excise, double curr_diff, double subsidy) {
    return cost + misc_adjustment(excise, curr_diff, subsidy);
}

double net_amount(const store::AdditionRow& a) {
    return net_amount(a.PurAmt, a.ExciseCr, a.CurrDiff, a.Subsidy);
}

double det_esa_adjustment(std::string_view det_esa) {
    double total = 0;
    for (const auto& row : store::unpack_rows(det_esa, kESASep))
        if (row.size() > 5) total += number_of(row[5]);
    return total;
}

double entry_base(const EntryDraft& d, const RegisterOptions& common) {
    if (d.side == EntrySide::Addition)
        return net_amount(d.cost.or_zero(), d.excise.or_zero(), d.curr_diff.or_zero(), d.subsidy.or_zero());
    const double cost = d.cost.or_zero();
    const bool carrying =
        effective_basis(d.res_val_of, common) == depreciation::ResidualBasis::CarryingAmount;
    return carrying ? cost - (d.calc_ca_year.empty() ? 0.0 : d.dep_calc_ca.or_zero()) : cost;
}

std::optional<Finding> leave_field_finding(EntryField field, EntrySide side, std::string_view text, int year,
                                           bool written_down) {
    if (text.empty()) return std::nullopt;
    const auto invalid = [&] { return Finding{field, FindingKind::Refusal, "Invalid Value !", true}; };
    const bool date_field =
        field == EntryField::PutDate || field == EntryField::AccDate || field == EntryField::SaleDate;
    if (!date_field) {
        const auto v = parse_number(text);
        if (!v || !within_figure_limit(*v)) return invalid();
        return std::nullopt;
    }
    const auto d = Date::parse(text);
    if (!d) return invalid();
    const Bounds b = bounds_of(year);
    const std::string caption = caption_of(field, side, year, written_down);
    const auto refuse = [&](std::string message) {
        return Finding{field, FindingKind::Refusal, std::move(message), true};
    };
    if (field == EntryField::PutDate && side == EntrySide::Opening && *d > b.first)
        return refuse(on_or_before_first(caption, b));
    if ((field == EntryField::PutDate || field == EntryField::AccDate) && side == EntrySide::Addition &&
        *d < b.first)
        return refuse(on_or_after_first(caption, b));
    // An addition put to use after the year is asked about on Update; the other dates of
    // the year stay inside it.
    if ((field == EntryField::AccDate || field == EntryField::SaleDate) && (*d < b.first || *d > b.last))
        return refuse(between(caption, b));
    return std::nullopt;
}

std::vector<Finding> update_findings(const EntryDraft& d, const EntryContext& ctx) {
    Findings out;
    const Bounds b = bounds_of(ctx.year);
    const auto done = [&] { return out.take(); };
    // 1, 2
    if (d.group_id == 0 || !ctx.group_known) {
        out.refuse(EntryField::AssetGroup, "Please specify 'Asset Group' !");
        return done();
    }
    if (d.part.empty()) {
        out.refuse(EntryField::Part, "Please specify 'Particulars' !");
        return done();
    }
    // 3: an opening asset was held at the start of the year.
    if (is_opening(d)) {
        const auto put = Date::parse(d.put_date);
        if ((!d.put_date.empty() && !put) || (put && *put > b.first)) {
            out.refuse(
                EntryField::PutDate,
                on_or_before_first(caption_of(EntryField::PutDate, d.side, ctx.year, ctx.written_down), b));
            return done();
        }
    }
    // 4, 5, 6, 7
    if (!check_figures(d, ctx, out) || !check_limits(d, ctx, out)) return done();
    if (is_opening(d) && !check_calc_ca(d, out)) return done();
    check_residual(d, ctx, out);
    // 8: the rate worked out is shown before it is saved.
    if (!d.auto_rate.empty())
        out.inform(EntryField::RateFACL, "Auto Calculated Rate is " + d.auto_rate + "% !");
    // 9, 10, 11
    if (is_opening(d) && !check_opening_it(d, out)) return done();
    // 12
    if (!is_opening(d) && !check_addition_dates(d, ctx, out)) return done();
    // 13, 14, 15
    check_sale(d, ctx, out);
    return done();
}

std::optional<Finding> shift_row_finding(std::string_view from_text, std::string_view to_text, int shift,
                                         const EntryContext& ctx) {
    const auto refuse = [](std::string message) {
        return Finding{EntryField::ShiftDet, FindingKind::Refusal, std::move(message), true};
    };
    const Bounds b = bounds_of(ctx.year);
    const auto from = Date::parse(from_text);
    const auto to = Date::parse(to_text);
    if (!from) return refuse("Please specify 'From Date' !");
    if (!to) return refuse("Please specify 'To Date' !");
    if (shift < 1 || shift > 3) return refuse("Please specify 'Shift' !");
    if (*from < b.first || *from > b.last) return refuse(between("From Date", b));
    if (*to < b.first || *to > b.last) return refuse(between("To Date", b));
    if (ctx.nesd) return refuse("'No Extra Shift Depreciation' is permitted for selected 'Asset Group' !");
    return std::nullopt;
}

std::optional<Finding> esa_row_finding(std::string_view particulars, std::string_view wdv,
                                       std::string_view date, std::string_view amount,
                                       std::string_view excess, std::string_view adjust, int year) {
    const auto refuse = [](std::string message) {
        return Finding{EntryField::DetESA, FindingKind::Refusal, std::move(message), true};
    };
    const auto w = parse_number(wdv);
    const auto d = Date::parse(date);
    const auto a = parse_number(amount);
    const auto e = parse_number(excess);
    const auto adj = parse_number(adjust);
    if (particulars.empty()) return refuse("Please specify 'Particulars' !");
    if (!w || *w < 0) return refuse("Please specify 'WDV' >= 0 !");
    if (!d) return refuse("Please specify 'Date' !");
    if (*d >= fy_first(year)) return refuse("'Date' should be before 01/04/" + std::to_string(year - 1));
    if (!a || *a < 0) return refuse("Please specify valid 'Sale/Deduction Amount' !");
    if (!e || !(*e > 0)) return refuse("Please specify 'Excess Amount' !");
    if (!adj) return refuse("Please specify 'Adjustment Amount' !");
    // No more of the excess can be set against this asset than there was.
    if (*adj > *e || *adj < 0)
        return refuse("Please specify valid 'Adjustment Amount' <= " + format_mask(*e, "###0.00") + " !");
    return std::nullopt;
}

std::optional<Finding> esa_edit_finding(std::string_view adjust, double excess) {
    const auto adj = parse_number(adjust);
    if (!adj) return Finding{EntryField::DetESA, FindingKind::Refusal, "Invalid Value !", true};
    if (*adj > excess || *adj < 0)
        return Finding{EntryField::DetESA, FindingKind::Refusal,
                       "'Maximum Adjustment Amount' should be <= " + format_mask(excess, "###0.00") + " !",
                       true};
    return std::nullopt;
}

namespace {

// A figure the row holds: nil reads as not typed where the frame shows nil as empty.
Figure stored(double v, bool blank_when_nil = false) {
    return blank_when_nil && v == 0 ? Figure{} : Figure::of(v);
}

}  // namespace

EntryDraft draft_of(const store::OpeningRow& o) {
    const auto opts = OpeningOpts::parse(o.OthOpts);
    EntryDraft d;
    d.side = EntrySide::Opening;
    d.group_id = o.IdFAGM;
    d.part = o.Part;
    d.put_date = o.PutDate;
    d.cost = stored(o.CostWdv);
    d.op_depr = stored(o.OpDepr);
    d.res_value = stored(o.ResValue);
    d.life = stored(o.LifeYrs);
    d.rate_books = stored(o.RateFACL);
    d.wdv_it = stored(o.WdvIT);
    d.rate_it = stored(o.RateIT);
    d.addl_rate = stored(o.AddlDepRT);
    if (o.YrCalcCA > 0) {
        d.calc_ca_year = std::to_string(o.YrCalcCA);
        d.dep_calc_ca = stored(o.DepCalcCA);
    }
    d.res_val_of = opts.ResValOf;
    d.it_state = opts.WdvIT == "Y" ? ItState::NilWdv : opts.WdvIT == "N" ? ItState::NotExist : ItState::Other;
    d.addl_dep_on_ticked = opts.AddlDepOn || o.AddlDepOn != 0;
    d.addl_dep_on = stored(o.AddlDepOn);
    d.adjusted = det_esa_adjustment(o.DetESA);
    d.sale_date = o.SaleDate;
    d.sale_amt = stored(o.SaleAmt, true);
    d.sale_exp = stored(o.SaleExp, true);
    d.auto_depr = opts.AutoDepr;
    d.manual_depr = stored(o.DepFACL);
    return d;
}

EntryDraft draft_of(const store::AdditionRow& a) {
    const auto opts = AdditionOpts::parse(a.OthOpts);
    EntryDraft d;
    d.side = EntrySide::Addition;
    d.group_id = a.IdFAGM;
    d.part = a.Part;
    d.put_date = a.PutDate;
    d.acc_date = a.AccDate;
    d.cost = stored(a.PurAmt);
    d.excise = stored(a.ExciseCr);
    d.curr_diff = stored(a.CurrDiff);
    d.subsidy = stored(a.Subsidy);
    d.res_value = stored(a.ResValue);
    d.life = stored(a.LifeYrs);
    d.rate_books = stored(a.RateFACL);
    d.rate_it = stored(a.RateIT);
    d.addl_rate = stored(a.AddlDepRT);
    d.sale_date = a.SaleDate;
    d.sale_amt = stored(a.SaleAmt, true);
    d.sale_exp = stored(a.SaleExp, true);
    d.auto_depr = opts.AutoDepr;
    d.manual_depr = stored(a.DepFACL);
    return d;
}

std::vector<Finding> row_findings(const EntryDraft& d, const EntryContext& ctx, std::string_view shift_det,
                                  std::string_view det_esa) {
    std::vector<Finding> out;
    // Every figure as the field would take it on leaving it.
    const std::pair<const Figure*, EntryField> figures[] = {{&d.cost, EntryField::Cost},
                                                            {&d.op_depr, EntryField::OpDepr},
                                                            {&d.dep_calc_ca, EntryField::DepCalcCA},
                                                            {&d.res_value, EntryField::ResValue},
                                                            {&d.life, EntryField::LifeYrs},
                                                            {&d.rate_books, EntryField::RateFACL},
                                                            {&d.wdv_it, EntryField::WdvIT},
                                                            {&d.rate_it, EntryField::RateIT},
                                                            {&d.addl_rate, EntryField::AddlDepRT},
                                                            {&d.addl_dep_on, EntryField::AddlDepOn},
                                                            {&d.excise, EntryField::ExciseCr},
                                                            {&d.curr_diff, EntryField::CurrDiff},
                                                            {&d.subsidy, EntryField::Subsidy},
                                                            {&d.sale_amt, EntryField::SaleAmt},
                                                            {&d.sale_exp, EntryField::SaleExp},
                                                            {&d.manual_depr, EntryField::DepFACL}};
    for (const auto& [figure, field] : figures) {
        if (figure->given && figure->value && !within_figure_limit(*figure->value)) {
            out.push_back({field, FindingKind::Refusal, "Invalid Value !", true});
            return out;
        }
    }
    // The adjustment rows and the shift rows are checked as they are entered, before
    // the entry is updated.
    if (d.side == EntrySide::Opening) {
        for (const auto& r : store::unpack_rows(det_esa, kESASep)) {
            const auto at = [&](std::size_t i) {
                return i < r.size() ? std::string_view(r[i]) : std::string_view();
            };
            // A gross adjustment is one row holding only the amount to be adjusted.
            if (at(1).empty() && at(2).empty() && at(3).empty() && at(4).empty()) {
                if (!parse_number(at(5)) || *parse_number(at(5)) < 0)
                    out.push_back({EntryField::DetESA, FindingKind::Refusal, "Invalid Value !", true});
            } else if (auto f = esa_row_finding(at(0), at(1), at(2), at(3), at(4), at(5), ctx.year)) {
                out.push_back(std::move(*f));
            }
            if (!out.empty()) return out;
        }
    }
    for (const auto& r : store::unpack_rows(shift_det, ",")) {
        const auto shift = r.size() > 2 ? parse_number(r[2]) : std::nullopt;
        if (auto f = shift_row_finding(r.size() > 0 ? r[0] : "", r.size() > 1 ? r[1] : "",
                                       shift ? static_cast<int>(*shift) : 0, ctx)) {
            out.push_back(std::move(*f));
            return out;
        }
    }
    auto update = update_findings(d, ctx);
    out.insert(out.end(), std::make_move_iterator(update.begin()), std::make_move_iterator(update.end()));
    return out;
}

}  // namespace brenlow::reg
