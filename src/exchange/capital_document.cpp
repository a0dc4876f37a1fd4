#include "exchange/capital_document.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "capital/capital_rules.h"
#include "controls/number_format.h"
#include "exchange/document_checks.h"
#include "store/capital_store.h"
#include "store/client_store.h"
#include "store/text_limits.h"

namespace brenlow::exchange {
namespace {

using Json = nlohmann::ordered_json;

// The year's table suffix and number of the client's year; throws when it has none.
store::ClientYear client_year(store::Database& db, const std::string& code, int year) {
    const auto cy = store::find_client_year(db, code, year);
    if (!cy)
        throw std::runtime_error("client " + code + " has no financial year ending " + std::to_string(year));
    return *cy;
}

}  // namespace

std::string export_capital(store::Database& db, const std::string& code, int year) {
    const auto cy = client_year(db, code, year);
    Json ratios = Json::array();
    for (const auto& r : store::ratio_rows(db, code, cy.count))
        ratios.push_back({{"code", r.other ? capital::other_partner_code(r.name) : std::to_string(r.code)},
                          {"name", r.name},
                          {"rat", r.rat}});
    Json lines = Json::array();
    for (const auto& l : store::capital_lines(db, cy.tbl_nm, code))
        lines.push_back({{"code", l.code},
                         {"srno", l.srno},
                         {"actyp", l.actyp},
                         {"nid", l.nid},
                         {"PARTICULAR_ID", l.particular_id},
                         {"Particular", store::ledger_name(db, store::Ledger::capital, l.particular_id)},
                         {"AMT", vb_round(l.amt, 2)}});
    Json doc{{"format", "brenlow-capital"},
             {"version", 1},
             {"client", code},
             {"year", year},
             {"ratios", ratios},
             {"CAPITAL_", lines}};
    return doc.dump(2) + "\n";
}

namespace {

// The ratios a document carries, checked as the ratio screen checks them: each a
// partner of the client (a listed one by code, one entered by hand by its code
// "~~[OTHER]NAME"), none twice, each a percentage, and together 100.
std::vector<store::RatioRow> read_ratios(const Json& rows, const std::vector<store::ListedPartner>& listed,
                                         std::vector<std::string>& errors) {
    static const std::vector<std::string> known = {"code", "name", "rat"};
    std::vector<store::RatioRow> out;
    std::vector<std::string> codes;
    double total = 0;
    const std::size_t before = errors.size();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        RowFields r(rows[i], "ratios row " + std::to_string(i + 1), known, errors);
        if (!r.is_row()) continue;
        const std::string code = r.text("code", store::kNameChars);
        r.text("name", store::kNameChars);
        const double rat = r.number("rat");
        if (!r.ok()) continue;
        store::RatioRow row;
        row.rat = rat;
        if (code.empty()) {
            r.fail("code", "Please Specify Partner.");
        } else if (capital::is_other_partner(code)) {
            row.other = true;
            row.name = capital::other_partner_name(code);
            if (row.name.empty()) r.fail("code", "Please Specify Partner.");
        } else {
            const auto p = std::find_if(listed.begin(), listed.end(), [&](const store::ListedPartner& l) {
                return std::to_string(l.code) == code;
            });
            if (p == listed.end()) {
                r.fail("code", "the client has no partner " + code);
            } else {
                row.code = p->code;
                row.name = p->name;
            }
        }
        if (r.ok() && std::find(codes.begin(), codes.end(), code) != codes.end())
            r.fail("code", "This Partner already exists.");
        if (const auto fault = capital::ratio_fault(rat)) r.fail("rat", *fault);
        if (!r.ok()) continue;
        codes.push_back(code);
        total += rat;
        out.push_back(row);
    }
    if (errors.size() == before && !out.empty() && !capital::ratios_whole(total))
        errors.push_back("ratios: Total Profit (%) should be 100%. (" + capital::ratio_total_text(total) +
                         ")");
    return out;
}

}  // namespace

CapitalImportResult import_capital(store::Database& db, const std::string& code, int year,
                                   const std::string& json) {
    CapitalImportResult result;
    auto& errors = result.errors;
    const auto cy = client_year(db, code, year);
    const auto parsed = parse_document(json, errors);
    if (!parsed) return result;
    const Json& doc = *parsed;
    static const DocumentShape shape{"brenlow-capital", "capital", 1, {"ratios", "CAPITAL_"}, {}};
    if (!check_document_shape(doc, shape, errors)) return result;
    const auto listed = store::listed_partners(db, code);
    const auto ratios = read_ratios(doc["ratios"], listed, errors);
    std::vector<std::string> partners;
    for (const auto& p : listed) partners.push_back(std::to_string(p.code));

    static const std::vector<std::string> known = {"code",          "srno",       "actyp", "nid",
                                                   "PARTICULAR_ID", "Particular", "AMT"};
    struct Pending {
        store::CapitalLine line;
        std::string particular;
    };
    std::vector<Pending> pending;
    const Json& rows = doc["CAPITAL_"];
    for (std::size_t i = 0; i < rows.size(); ++i) {
        RowFields r(rows[i], "CAPITAL_ row " + std::to_string(i + 1), known, errors);
        if (!r.is_row()) continue;
        Pending p;
        p.line.code = r.text("code", store::kNameChars);
        p.particular = r.text("Particular", store::kNameChars);
        r.whole("srno");
        r.whole("PARTICULAR_ID");
        p.line.actyp = static_cast<int>(r.whole("actyp"));
        p.line.nid = static_cast<int>(r.whole("nid"));
        p.line.amt = r.amount("AMT");
        if (!r.ok()) continue;
        if (p.line.actyp != store::kCapitalAccount && p.line.actyp != store::kCurrentAccount) {
            r.fail("actyp", "0 (Capital A/c) or 1 (Current A/c), not " + std::to_string(p.line.actyp));
            continue;
        }
        if (!p.line.code.empty() && !capital::is_other_partner(p.line.code) &&
            std::find(partners.begin(), partners.end(), p.line.code) == partners.end()) {
            r.fail("code", "the client has no partner " + p.line.code);
            continue;
        }
        // The screen's own checks, in its order; a named particular stands for its id.
        const capital::LineFields fields{p.line.code, p.line.nid, p.particular.empty() ? 0L : 1L};
        if (const auto fault = capital::line_fault(fields)) {
            r.fail("", *fault);
            continue;
        }
        if (const auto fault = capital::amount_fault(p.line.amt)) {
            r.fail("AMT", *fault);
            continue;
        }
        pending.push_back(p);
    }
    if (!errors.empty()) return result;

    // The ratios, the particulars made and the lines: one group, whole or not at all.
    store::Transaction tx(db);
    std::vector<store::CapitalLine> lines;
    for (auto& p : pending) {
        const auto added = store::ledger_add(db, store::Ledger::capital, p.particular);
        if (added.created) ++result.particulars_created;
        p.line.particular_id = added.id;
        p.line.srno = static_cast<int>(lines.size()) + 1;
        lines.push_back(p.line);
    }
    store::rewrite_ratios(db, code, cy.count, ratios);
    store::rewrite_capital_lines(db, cy.tbl_nm, code, lines);
    tx.commit();
    result.lines = static_cast<int>(lines.size());
    result.ratios = static_cast<int>(ratios.size());
    return result;
}

}  // namespace brenlow::exchange
