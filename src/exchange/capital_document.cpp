#include "exchange/capital_document.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "capital/capital_rules.h"
#include "controls/number_format.h"
#include "controls/vb_date.h"
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
    Json terms = Json::array();
    for (const auto& t : store::partner_terms(db, code, cy.count))
        terms.push_back({{"code", t.code},
                         {"working", t.working ? 1 : 0},
                         {"int_rate", t.int_rate},
                         {"remun", vb_round(t.remun, 2)}});
    Json moves = Json::array();
    for (const auto& m : store::partner_moves(db, code, cy.count))
        moves.push_back({{"code", m.code}, {"dt", m.dt}, {"amt", vb_round(m.amt, 2)}});
    Json doc{{"format", "brenlow-capital"},
             {"version", 1},
             {"client", code},
             {"year", year},
             {"ratios", ratios},
             {"CAPITAL_", lines},
             {"PRTN_TERMS", terms},
             {"PRTN_MOVES", moves}};
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

// Whether a partner's code is the client's: a listed partner's number, or a partner
// entered by hand ("~~[OTHER]NAME").
bool partner_of(const std::string& code, const std::vector<std::string>& partners) {
    return capital::is_other_partner(code)
               ? !capital::other_partner_name(code).empty()
               : std::find(partners.begin(), partners.end(), code) != partners.end();
}

// The deed's terms: each a partner of the client, once, checked as the terms grid
// checks them (interest a percentage, remuneration an amount, and only to a working
// partner).
std::vector<store::PartnerTermsRow> read_terms(const Json& rows, const std::vector<std::string>& partners,
                                               std::vector<std::string>& errors) {
    static const std::vector<std::string> known = {"code", "working", "int_rate", "remun"};
    std::vector<store::PartnerTermsRow> out;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        RowFields r(rows[i], "PRTN_TERMS row " + std::to_string(i + 1), known, errors);
        if (!r.is_row()) continue;
        store::PartnerTermsRow t;
        t.code = r.text("code", store::kNameChars);
        const long working = r.whole("working");
        t.int_rate = r.number("int_rate");
        t.remun = r.amount("remun");
        if (!r.ok()) continue;
        if (!partner_of(t.code, partners)) {
            r.fail("code", "the client has no partner " + t.code);
            continue;
        }
        if (std::any_of(out.begin(), out.end(), [&](const auto& o) { return o.code == t.code; })) {
            r.fail("code", "This Partner already exists.");
            continue;
        }
        if (working != 0 && working != 1) {
            r.fail("working", "1 (a working partner) or 0, not " + std::to_string(working));
            continue;
        }
        t.working = working == 1;
        if (const auto fault = capital::terms_fault(t.working, t.int_rate, t.remun)) {
            r.fail("", *fault);
            continue;
        }
        out.push_back(t);
    }
    return out;
}

// The dated additions to and drawings from capital: each a partner's, dated within
// the financial year, an amount of either sign.
std::vector<store::PartnerMoveRow> read_moves(const Json& rows, const std::vector<std::string>& partners,
                                              int year, std::vector<std::string>& errors) {
    static const std::vector<std::string> known = {"code", "dt", "amt"};
    std::vector<store::PartnerMoveRow> out;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        RowFields r(rows[i], "PRTN_MOVES row " + std::to_string(i + 1), known, errors);
        if (!r.is_row()) continue;
        store::PartnerMoveRow m;
        m.code = r.text("code", store::kNameChars);
        m.dt = r.date("dt");
        m.amt = r.number("amt");
        if (!r.ok()) continue;
        if (!partner_of(m.code, partners)) {
            r.fail("code", "the client has no partner " + m.code);
            continue;
        }
        const auto d = Date::parse(m.dt);
        if (!d) {
            r.fail("dt", "the date of the move is required");
            continue;
        }
        if (*d < fy_first(year) || *d > fy_last(year)) {
            r.fail("dt", "\"" + m.dt + "\" is outside the financial year");
            continue;
        }
        if (const auto fault = capital::amount_fault(std::abs(m.amt))) {
            r.fail("amt", *fault);
            continue;
        }
        out.push_back(m);
    }
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
    // The deed's terms came later: a document without them leaves the year's as they are.
    static const DocumentShape shape{
        "brenlow-capital", "capital", 1, {"ratios", "CAPITAL_"}, {"PRTN_TERMS", "PRTN_MOVES"}};
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
    const bool has_terms = doc.contains("PRTN_TERMS") || doc.contains("PRTN_MOVES");
    std::vector<store::PartnerTermsRow> terms;
    std::vector<store::PartnerMoveRow> moves;
    if (doc.contains("PRTN_TERMS")) terms = read_terms(doc["PRTN_TERMS"], partners, errors);
    if (doc.contains("PRTN_MOVES")) moves = read_moves(doc["PRTN_MOVES"], partners, year, errors);
    if (!errors.empty()) return result;

    // The ratios, the particulars made, the lines and the terms: one group, whole or not
    // at all (the terms' tables made before it).
    if (has_terms) store::make_partner_terms_tables(db);
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
    if (has_terms) store::write_partner_terms(db, code, cy.count, terms, moves);
    tx.commit();
    result.lines = static_cast<int>(lines.size());
    result.ratios = static_cast<int>(ratios.size());
    return result;
}

}  // namespace brenlow::exchange
