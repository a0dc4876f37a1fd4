#include "capital/capital_rules.h"

#include <cmath>

#include "controls/number_format.h"
#include "store/capital_store.h"

namespace brenlow::capital {

std::string other_partner_code(std::string_view name) {
    return store::kOtherPartnerMark + std::string(name);
}

bool is_other_partner(std::string_view code) {
    return code.substr(0, std::string_view(store::kOtherPartnerMark).size()) == store::kOtherPartnerMark;
}

std::string other_partner_name(std::string_view code) {
    if (!is_other_partner(code)) return {};
    return std::string(code.substr(std::string_view(store::kOtherPartnerMark).size()));
}

std::optional<std::string> line_fault(const LineFields& line) {
    if (line.partner.empty()) return "Please Specify Partner.";
    if (line.nid != store::kCapitalDebit && line.nid != store::kCapitalCredit) return "Please Specify DR/CR.";
    if (line.particular_id <= 0) return "Please Specify Particulars.";
    return std::nullopt;
}

std::optional<std::string> amount_fault(double amount) {
    // The most a typed amount keeps exactly: 15 digits before the point.
    constexpr double largest = 999999999999999.0;
    if (!std::isfinite(amount) || std::fabs(amount) > largest)
        return "Amount cannot have more than 15 digits before the point.";
    if (amount < 0) return "Amount cannot be negative.";
    return std::nullopt;
}

std::optional<std::string> terms_fault(bool working, double int_rate, double remuneration) {
    if (!std::isfinite(int_rate) || int_rate < 0 || int_rate > 100)
        return "Interest (%) must be from 0 to 100.";
    if (const auto fault = amount_fault(remuneration)) return fault;
    if (remuneration > 0 && !working) return "Remuneration is paid to working partners only.";
    return std::nullopt;
}

std::optional<std::string> ratio_fault(double percentage) {
    if (!std::isfinite(percentage) || percentage < 0 || percentage > 100)
        return "Profit (%) must be from 0 to 100.";
    return std::nullopt;
}

std::string ratio_total_text(double total) {
    return "Total Profit (%) = " + format_mask(total, "###0.00") + "%";
}

bool ratios_whole(double total) {
    return format_mask(total, "###0.00") == "100.00";
}

std::vector<double> profit_shares(const std::vector<double>& percentages, double net) {
    std::vector<double> shares;
    double given = 0;
    for (std::size_t i = 0; i < percentages.size(); ++i) {
        // The last partner takes what is left, so rounding never loses a paisa.
        const double share =
            i + 1 < percentages.size() ? vb_round(percentages[i] / 100 * net, 2) : vb_round(net - given, 2);
        given += share;
        shares.push_back(share);
    }
    return shares;
}

SideAmount share_line(double share) {
    if (share < 0) return {store::kCapitalDebit, -share};
    return {store::kCapitalCredit, share};
}

double balance_of(const std::vector<SideAmount>& lines) {
    double b = 0;
    for (const auto& l : lines)
        b += l.nid == store::kCapitalCredit ? l.amt : (l.nid == store::kCapitalDebit ? -l.amt : 0);
    return b;
}

std::string balance_text(double credit_less_debit) {
    const std::string shown = format_mask(std::fabs(credit_less_debit), "###0.00");
    if (shown == "0.00") return shown;
    return shown + (credit_less_debit > 0 ? " Cr." : " Dr.");
}

}  // namespace brenlow::capital
