// Depreciation of one asset under the Companies Act, and the run over the register.
#include <algorithm>

#include "controls/number_format.h"
#include "depreciation/amount_text.h"
#include "depreciation/companies_act.h"
#include "depreciation/remaining_life.h"

namespace brenlow::depreciation {
namespace {

// DeprDet, made in one working string that every entry of the run reuses (no piece is a
// temporary of its own), then copied out at its own length.
void explain(CaAssetResult& r, const CaEntry& e, int year_length, const char* note) {
    thread_local std::string t;
    t.clear();
    if (r.manual) {
        t += "Manual: ";
        t += rupees_paise(r.depreciation);
    } else if (note != nullptr) {
        t += note;
    } else {
        const bool wdv = e.method == CaMethod::WDV;
        t += wdv ? "WDV " : "SLM ";
        t += rupees_paise(wdv ? r.opening + r.addition : r.base);
        t += " x ";
        t += rate_trimmed(r.rate);
        t += "% x ";
        t += std::to_string(r.days);
        t += '/';
        t += std::to_string(year_length);
        t += " days = ";
        t += rupees_paise(r.depreciation - r.extra_shift);
        if (r.extra_shift != 0) {
            t += "; extra shift ";
            t += rupees_paise(r.extra_shift);
        }
    }
    if (r.adj_pl != 0) {
        t += "; remaining life nil: ";
        t += rupees_paise(r.adj_pl);
        t += " above residual value to profit and loss";
    }
    if (r.adj_rs != 0) {
        t += "; remaining life nil: ";
        t += rupees_paise(r.adj_rs);
        t += " above residual value to retained earnings";
    }
    if (r.deduction != 0 || r.dep_on_deduction != 0) {
        t += "; sold ";
        t += e.sale_date;
        t += ": profit/(loss) ";
        t += rupees_paise(r.profit_loss);
    }
    r.DeprDet = t;
}

}  // namespace

std::string remaining_life_text(int closing_year, double life) {
    // The remaining life itself stands in its own field beside this caption.
    return "Remaining Life As on 01/04/" + std::to_string(closing_year - 1) +
           " out of Total Life: " + plain_number(life) + " Years";
}

CaAssetResult calculate_asset(const CaEntry& e, const CaRunInput& opt, WarningLog& log) {
    CaAssetResult r;
    const Date fy_first = fy_first_day(opt.year);
    const Date fy_last = fy_last_day(opt.year);
    const int year_length = fy_length_days(opt.year);
    const auto put = Date::parse(e.put_date);
    auto sale = Date::parse(e.sale_date);
    if (sale && (*sale < fy_first || *sale > fy_last || e.partial_deduction)) sale.reset();
    const bool sold = sale.has_value();

    r.opening = e.kind == EntryKind::Opening ? e.cost - e.op_dep : 0;
    r.addition = e.kind == EntryKind::Addition ? e.cost : 0;
    r.base = e.basis == ResidualBasis::Cost ? e.cost : e.cost - e.dep_calc_ca;
    r.residual = e.residual_default ? residual_value(r.base) : e.residual;

    // An asset that existed before the year is written off over what is left of its life.
    const bool older = e.kind == EntryKind::Opening && put && *put < fy_first;
    r.remaining_life =
        older ? remaining_life_years(*put, opt.year - 1, opt.rem_life_mode, opt.rem_life_decimals, e.life_yrs)
              : e.life_yrs;
    r.life = r.remaining_life;
    r.rate = e.rate;
    if (e.rate_auto) {
        if (const auto a = auto_rate(r.base, r.residual, r.life, e.method, e.basis)) {
            r.rate = a->value;
            r.rate_text = a->text;
        }
    }

    // An opening entry without its date of put to use is taken as held all year.
    const std::optional<Date> first_use =
        e.kind == EntryKind::Opening ? std::optional<Date>(put ? *put : fy_first) : put;
    r.days = depreciation_days(opt.year, first_use, sale);
    if (opt.explain) r.days_text = days_text(r.days);

    const double carrying = r.opening + r.addition;
    // Books figures go to paise, halves to even as the register's Round does, or to whole
    // rupees, halves away from zero, when the client rounds the books.
    const auto round_money = [&opt](double x) {
        return opt.round_to_rupees ? mask_value(x, "###0") : vb_round(x, 2);
    };
    const double room = std::max(0.0, carrying - r.residual);
    const char* note = nullptr;
    if (e.asset_class == AssetClass::NonDepreciable || e.method == CaMethod::None) {
        note = "No depreciation";
    } else if (!e.auto_depr) {
        r.manual = true;
        r.depreciation = e.manual_depr;
    } else if (older && r.remaining_life == 0 && e.life_yrs > 0) {
        // Nil remaining life: the carrying amount above the residual value is adjusted,
        // not depreciated. Retained earnings take it only in the year the useful lives
        // came in (the year closing 31/03/2015) and only when the option asks for it;
        // any other year it goes to profit and loss.
        note = "Remaining life nil";
        if (opt.nil_life_to == RemLifeNilTo::RetainedEarnings && opt.year == 2015)
            r.adj_rs = round_money(room);
        else
            r.adj_pl = round_money(room);
    } else if (r.days > 0) {
        const double full_year = (e.method == CaMethod::WDV ? carrying : r.base) * r.rate / 100;
        double charge = full_year * r.days / year_length;
        double extra = 0;
        const Date last = sold ? sale->plus_days(-1) : fy_last;
        const ShiftDays shifts = shift_days(e.shift_det, *first_use > fy_first ? *first_use : fy_first, last);
        if (const auto refusal = extra_shift_refusal(e.nesd, shifts)) {
            log.raise(WarningKind::NoExtraShift, *refusal);
        } else {
            // Double shift earns half as much again for its days, triple shift as much again.
            extra = full_year * (0.5 * shifts.double_days + shifts.triple_days) / year_length;
        }
        // Never below the residual value, and never a negative charge (an asset written
        // down below nil before the year is not written back up).
        charge = std::max(0.0, charge);
        extra = std::max(0.0, extra);
        const double total = std::min(charge + extra, room);
        if (total < charge + extra) {
            extra = std::max(0.0, total - charge);
            charge = total - extra;
        }
        r.extra_shift = round_money(extra);
        double rounded_charge = round_money(charge);
        // Rounding up must not take the asset below its residual value either: what the
        // roundings add beyond the room comes off, the extra shift first.
        const double step = opt.round_to_rupees ? 1.0 : 0.01;
        for (int i = 0; i < 4 && rounded_charge + r.extra_shift > room + 1e-9; ++i) {
            if (r.extra_shift >= step)
                r.extra_shift = round_money(r.extra_shift - step);
            else if (rounded_charge >= step)
                rounded_charge = round_money(rounded_charge - step);
        }
        r.depreciation = rounded_charge + r.extra_shift;
    }

    if (sold) {
        r.dep_on_deduction = r.depreciation;
        r.deduction = round_money(carrying - r.depreciation - r.adj_pl - r.adj_rs);
        r.profit_loss = round_money(e.sale_amt - e.sale_exp - r.deduction);
        r.closing = 0;
    } else {
        r.closing = round_money(carrying - r.depreciation - r.adj_pl - r.adj_rs);
    }
    if (opt.explain) explain(r, e, year_length, note);
    return r;
}

CaRunResult calculate_companies_act(const CaRunInput& input) {
    CaRunResult out;
    WarningLog log(input.interactive);
    out.no_assets = input.entries.empty();
    out.assets.reserve(input.entries.size());
    for (const CaEntry& e : input.entries) {
        out.assets.push_back(calculate_asset(e, input, log));
        const CaAssetResult& r = out.assets.back();
        out.totals.closing += r.closing;
        out.totals.depreciation += r.depreciation;
        out.totals.profit_loss += r.profit_loss;
        out.totals.adj_pl += r.adj_pl;
        out.totals.adj_rs += r.adj_rs;
    }
    out.warnings = log.take();
    return out;
}

}  // namespace brenlow::depreciation
