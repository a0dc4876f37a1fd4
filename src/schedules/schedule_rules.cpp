#include "schedules/schedule_rules.h"

#include <map>
#include <tuple>

#include "controls/number_format.h"

namespace brenlow::schedules {
namespace {

using store::FieldRow;

double num(const FieldRow& r, const char* c) {
    return r.get(c).as_double();
}
long id(const FieldRow& r, const char* c) {
    return static_cast<long>(r.get(c).as_int());
}
std::string text(const FieldRow& r, const char* c) {
    return r.get(c).as_text();
}

// The columns a type of investment must have filled, after its type.
std::vector<const char*> invest_required(long invest_id) {
    switch (invest_id) {
        case 1:
        case 2:
        case 6:
        case 7:
        case 8:
            return {"comp_id", "Amount"};
        case 3:
        case 9:
            return {"SHARE_ID", "comp_id", "qu_ID", "TNT_ID", "Amount"};
        case 5:
            return {"comp_id", "qu_ID", "TNT_ID", "Amount"};
        case 4:
            return {"SHARE_ID", "comp_id", "Amount"};
        case 10:
            return {"particular", "Amount"};
        default:
            return {};
    }
}

bool filled(const FieldRow& r, const char* c) {
    return store::schedule_text_column(c) ? !text(r, c).empty() : num(r, c) != 0;
}

std::optional<Refusal> refuse(const char* message, int line, std::string column) {
    return Refusal{message, line, std::move(column)};
}

std::optional<Refusal> check_shares(const std::vector<FieldRow>& lines) {
    for (int i = 0; i < static_cast<int>(lines.size()); ++i) {
        const auto& r = lines[static_cast<std::size_t>(i)];
        if (id(r, "four_id") == 0) return refuse(kSpecifyItem, i, "four_id");
        for (const char* c : {"ref_ep", "no_share", "RS_SHARE"})
            if (!filled(r, c)) return refuse(kEachFieldRequired, i, c);
        if (num(r, "RS_SHARE1") > num(r, "RS_SHARE")) return refuse(kPaidUpAboveRate, i, "RS_SHARE1");
    }
    // Issued shares of each kind and rate stand against the authorised ones.
    std::map<std::tuple<std::string, double>, double> authorised;
    for (const auto& r : lines)
        if (id(r, "four_id") == 1) authorised[{text(r, "ref_ep"), num(r, "RS_SHARE")}] += num(r, "no_share");
    std::map<std::tuple<std::string, double>, double> issued;
    for (int i = 0; i < static_cast<int>(lines.size()); ++i) {
        const auto& r = lines[static_cast<std::size_t>(i)];
        if (id(r, "four_id") == 1) continue;
        const auto key = std::make_tuple(text(r, "ref_ep"), num(r, "RS_SHARE"));
        const auto a = authorised.find(key);
        if (a == authorised.end()) return Refusal{share_not_available(num(r, "RS_SHARE")), i, "RS_SHARE"};
        issued[key] += num(r, "no_share");
        if (issued[key] > a->second) return refuse(kAuthorisedBelowIssued, i, "no_share");
    }
    return std::nullopt;
}

}  // namespace

std::string share_not_available(double rate) {
    return "Share of Rs. " + plain_number(rate) + " is not available.";
}

std::string item_column(const SchedKind& kind, const FieldRow& line) {
    switch (kind.group) {
        case kShareCapital:
            return "four_id";
        case kReserves:
            return "resv_id";
        case kSecured:
        case kUnsecured:
            return "head_id";
        case kInvestments:
            return "INVEST_ID";
        case kLoansAdvances:
            return id(line, "OTH_LOAN_ID") != 0 ? "OTH_LOAN_ID" : "LDAD_ID";
        case kMiscExp:
            return "ExpID";
        default:
            return "";
    }
}

const std::vector<std::string>& invest_columns(int invest_id) {
    static const std::vector<std::string> simple = {"INVEST_ID", "no_shares", "per_share_amt", "Amount",
                                                    "comp_id"};
    static const std::vector<std::string> shares = {"INVEST_ID", "SHARE_ID", "no_shares", "per_share_amt",
                                                    "paidup",    "mktval",   "Amount",    "comp_id",
                                                    "qu_ID",     "TNT_ID"};
    static const std::vector<std::string> units = {"INVEST_ID", "no_shares", "per_share_amt",
                                                   "paidup",    "mktval",    "Amount",
                                                   "comp_id",   "qu_ID",     "TNT_ID"};
    static const std::vector<std::string> subsidiary = {"INVEST_ID", "SHARE_ID", "no_shares", "Amount",
                                                        "comp_id"};
    static const std::vector<std::string> other = {"INVEST_ID", "particular", "Amount"};
    static const std::vector<std::string> none;
    switch (invest_id) {
        case 1:
        case 2:
        case 6:
        case 7:
        case 8:
            return simple;
        case 3:
        case 9:
            return shares;
        case 5:
            return units;
        case 4:
            return subsidiary;
        case 10:
            return other;
        default:
            return none;
    }
}

std::optional<Refusal> check_schedule(const SchedKind& kind, const std::vector<FieldRow>& lines) {
    if (kind.group == kShareCapital) return check_shares(lines);
    for (int i = 0; i < static_cast<int>(lines.size()); ++i) {
        const auto& r = lines[static_cast<std::size_t>(i)];
        switch (kind.group) {
            case kReserves:
                if (id(r, "resv_id") == 0) return refuse(kSpecifyItemDot, i, "resv_id");
                break;
            case kMiscExp:
                if (id(r, "ExpID") == 0) return refuse(kSpecifyItemDot, i, "ExpID");
                break;
            case kSecured:
            case kUnsecured:
                if (id(r, "DEB_OTH_ID") == 1) {
                    for (const char* c : {"rate", "EACH_AMT"})
                        if (!filled(r, c)) return refuse(kEachFieldRequired, i, c);
                } else if (id(r, "head_id") == 0) {
                    return refuse(kSpecifyItem, i, "head_id");
                } else if (!filled(r, "Amount")) {
                    return refuse(kEachFieldRequired, i, "Amount");
                }
                break;
            case kInvestments: {
                const auto required = invest_required(id(r, "INVEST_ID"));
                if (required.empty()) return refuse(kSpecifyItem, i, "INVEST_ID");
                for (const char* c : required)
                    if (!filled(r, c)) return refuse(kEachFieldRequired, i, c);
                break;
            }
            case kLoansAdvances:
                if (id(r, "LDAD_ID") == 0 && id(r, "OTH_LOAN_ID") == 0)
                    return refuse(kSpecifyItem, i, "LDAD_ID");
                if (id(r, "LDAD_ID") != 0 && id(r, "comp_id") == 0)
                    return refuse(kEachFieldRequired, i, "comp_id");
                if (!filled(r, "Amount")) return refuse(kEachFieldRequired, i, "Amount");
                break;
            default:
                break;
        }
    }
    return std::nullopt;
}

std::vector<FieldRow> written_rows(const SchedKind& kind, const std::vector<FieldRow>& lines) {
    std::vector<FieldRow> out;
    for (const auto& line : lines) {
        std::vector<std::string> keep;
        switch (kind.group) {
            case kShareCapital:
                keep = {"no_share", "RS_SHARE1", "RS_SHARE", "ref_ep", "four_id"};
                break;
            case kSecured:
            case kUnsecured:
                if (id(line, "DEB_OTH_ID") == 1)
                    keep = {"loan_id", "DEB_OTH_ID", "PARTICUL", "rate", "EACH_AMT"};
                else
                    keep = {"loan_id", "DEB_OTH_ID", "PARTICUL", "head_id", "Amount"};
                break;
            case kInvestments:
                keep = invest_columns(static_cast<int>(id(line, "INVEST_ID")));
                if (keep.empty()) continue;
                break;
            default:
                for (const auto& f : line.fields())
                    if (f.first != "srno" && f.first != "code_no") keep.push_back(f.first);
                break;
        }
        FieldRow row;
        row.set("srno", line.get("srno"));
        for (const auto& c : keep) row.set(c, line.get(c));
        out.push_back(std::move(row));
    }
    return out;
}

}  // namespace brenlow::schedules
