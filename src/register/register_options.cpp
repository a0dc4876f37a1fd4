#include "register/register_options.h"

#include <array>
#include <charconv>
#include <vector>

namespace brenlow::reg {
namespace {

// The "|"-separated fields of an options text, as views into it: reading an entry's
// options allocates nothing but the fields it keeps. Fields past the last one any
// list has are never read and not kept.
class Fields {
public:
    static constexpr std::size_t kMax = 16;

    explicit Fields(std::string_view s) {
        if (s.empty()) return;
        std::size_t start = 0;
        while (count_ < kMax) {
            const auto bar = s.find('|', start);
            if (bar == std::string_view::npos) {
                fields_[count_++] = s.substr(start);
                break;
            }
            fields_[count_++] = s.substr(start, bar - start);
            start = bar + 1;
        }
    }

    std::string_view operator[](std::size_t i) const { return i < count_ ? fields_[i] : std::string_view{}; }

private:
    std::array<std::string_view, kMax> fields_{};
    std::size_t count_ = 0;
};

std::string join(const std::vector<std::string>& parts) {
    std::string out;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i) out += '|';
        out += parts[i];
    }
    return out;
}

std::string at(const Fields& v, std::size_t i) {
    return std::string(v[i]);
}

void read_text(const Fields& v, std::size_t i, std::string& field) {
    if (!v[i].empty()) field = v[i];
}

void read_int(const Fields& v, std::size_t i, int& field, int lo, int hi) {
    int x = 0;
    const std::string_view s = v[i];
    if (std::from_chars(s.data(), s.data() + s.size(), x).ec == std::errc() && x >= lo && x <= hi) field = x;
}

void read_flag(const Fields& v, std::size_t i, bool& field) {
    const std::string_view s = v[i];
    if (s == "Y") field = true;
    if (s == "N") field = false;
}

const char* yn(bool b) {
    return b ? "Y" : "N";
}

}  // namespace

RegisterOptions RegisterOptions::parse(std::string_view misc_inf) {
    RegisterOptions o;
    const Fields v(misc_inf);
    read_text(v, 0, o.optMOD);
    read_text(v, 1, o.optFASCHBOOKS);
    read_text(v, 2, o.optRndFA);
    read_text(v, 3, o.optRndIT);
    read_int(v, 4, o.cboAddlDep1, 0, 3);
    read_int(v, 5, o.cboAddlDep2, 0, 3);
    read_text(v, 6, o.optResValOf);
    read_int(v, 7, o.cboDepAdjRemLife0, 0, 3);
    read_text(v, 8, o.optSetupCL);
    read_text(v, 9, o.chkSetupCL);
    read_int(v, 10, o.cboRndRemLife, 0, kRemLifeRoundings - 1);
    return o;
}

std::string RegisterOptions::compose() const {
    return join({optMOD, optFASCHBOOKS, optRndFA, optRndIT, std::to_string(cboAddlDep1),
                 std::to_string(cboAddlDep2), optResValOf, std::to_string(cboDepAdjRemLife0), optSetupCL,
                 chkSetupCL, std::to_string(cboRndRemLife)});
}

// Whole financial years is the usual reading of a useful life; the others count days.
int RegisterOptions::rem_life_mode() const {
    switch (cboRndRemLife) {
        case 1:
            return 1;
        case 2:
            return 3;
        case 3:
            return 1;
        default:
            return 2;
    }
}

int RegisterOptions::rem_life_decimals() const {
    return cboRndRemLife == 1 || cboRndRemLife == 2 ? 2 : 0;
}

const char* rem_life_rounding_text(int index) {
    switch (index) {
        case 1:
            return "Days / 365 (2 Decimals)";
        case 2:
            return "Part of First Year + Whole Years (2 Decimals)";
        case 3:
            return "Days / 365 (No Decimals)";
        default:
            return "Whole Financial Years";
    }
}

OpeningOpts OpeningOpts::parse(std::string_view oth_opts) {
    OpeningOpts o;
    const Fields v(oth_opts);
    o.CalcCA = at(v, 0);
    o.ResValOf = at(v, 1);
    o.MOD = at(v, 2);
    o.WdvIT = at(v, 3);
    read_flag(v, 4, o.ResDefault);
    read_flag(v, 5, o.LifeDefault);
    read_flag(v, 6, o.RateDefault);
    read_flag(v, 7, o.RateITDefault);
    read_flag(v, 8, o.AddlRateDefault);
    read_flag(v, 9, o.AutoDepr);
    read_flag(v, 10, o.AddlDepOn);
    read_flag(v, 11, o.TotESA);
    read_flag(v, 12, o.PartDed);
    return o;
}

std::string_view OpeningOpts::wdv_it(std::string_view oth_opts) {
    return Fields(oth_opts)[3];
}

bool OpeningOpts::partial_deduction(std::string_view oth_opts) {
    return Fields(oth_opts)[12] == "Y";
}

bool AdditionOpts::partial_deduction(std::string_view oth_opts) {
    return Fields(oth_opts)[8] == "Y";
}

std::string OpeningOpts::compose() const {
    return join({CalcCA, ResValOf, MOD, WdvIT, yn(ResDefault), yn(LifeDefault), yn(RateDefault),
                 yn(RateITDefault), yn(AddlRateDefault), yn(AutoDepr), yn(AddlDepOn), yn(TotESA),
                 yn(PartDed)});
}

AdditionOpts AdditionOpts::parse(std::string_view oth_opts) {
    AdditionOpts a;
    const Fields v(oth_opts);
    a.MOD = at(v, 0);
    read_text(v, 1, a.RndAddRtAuto);
    read_flag(v, 2, a.ResDefault);
    read_flag(v, 3, a.LifeDefault);
    read_flag(v, 4, a.RateDefault);
    read_flag(v, 5, a.RateITDefault);
    read_flag(v, 6, a.AddlDep);
    read_flag(v, 7, a.AutoDepr);
    read_flag(v, 8, a.PartDed);
    return a;
}

std::string AdditionOpts::compose() const {
    return join({MOD, RndAddRtAuto, yn(ResDefault), yn(LifeDefault), yn(RateDefault), yn(RateITDefault),
                 yn(AddlDep), yn(AutoDepr), yn(PartDed)});
}

std::string effective_method(std::string_view own, const RegisterOptions& common) {
    return own.empty() ? common.optMOD : std::string(own);
}

depreciation::ResidualBasis effective_basis(std::string_view own, const RegisterOptions& common) {
    if (own == "CA") return depreciation::ResidualBasis::CarryingAmount;
    if (own == "COST") return depreciation::ResidualBasis::Cost;
    return common.basis();
}

}  // namespace brenlow::reg
