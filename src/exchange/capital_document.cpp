#include "exchange/capital_document.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "capital/capital_rules.h"
#include "controls/number_format.h"
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

std::string shown(const Json& v) {
    std::string t = v.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    return t.size() > 60 ? t.substr(0, 57) + "..." : t;
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

CapitalImportResult import_capital(store::Database& db, const std::string& code, int year,
                                   const std::string& json) {
    CapitalImportResult result;
    auto& errors = result.errors;
    const auto cy = client_year(db, code, year);
    Json doc;
    try {
        doc = Json::parse(json);
    } catch (const std::exception& e) {
        errors.push_back(std::string("not a JSON document: ") + e.what());
        return result;
    }
    if (!doc.is_object() || doc.value("format", "") != "brenlow-capital") {
        errors.push_back("not a capital document (\"format\": \"brenlow-capital\")");
        return result;
    }
    const Json rows = doc.contains("CAPITAL_") ? doc["CAPITAL_"] : Json::array();
    if (!rows.is_array()) {
        errors.push_back("CAPITAL_: expected a list of rows, found " + shown(rows));
        return result;
    }
    std::vector<std::string> partners;
    for (const auto& p : store::listed_partners(db, code)) partners.push_back(std::to_string(p.code));

    struct Pending {
        store::CapitalLine line;
        std::string particular;
    };
    std::vector<Pending> pending;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::string where = "CAPITAL_ row " + std::to_string(i + 1);
        const Json& r = rows[i];
        const std::size_t before = errors.size();
        if (!r.is_object()) {
            errors.push_back(where + ": expected an object of columns, found " + shown(r));
            continue;
        }
        auto text = [&](const char* name) -> std::string {
            if (!r.contains(name) || r[name].is_null()) return {};
            if (!r[name].is_string()) {
                errors.push_back(where + ", field " + name + ": expected text, found " + shown(r[name]));
                return {};
            }
            const std::string t = r[name].get<std::string>();
            if (const auto fault = store::text_fault(t, store::kNameChars))
                errors.push_back(where + ", field " + name + ": the text " + *fault);
            return t;
        };
        auto number = [&](const char* name) -> double {
            if (!r.contains(name) || r[name].is_null()) return 0;
            if (!r[name].is_number()) {
                errors.push_back(where + ", field " + name + ": expected a number, found " + shown(r[name]));
                return 0;
            }
            return r[name].get<double>();
        };
        Pending p;
        p.line.code = text("code");
        p.particular = text("Particular");
        p.line.actyp = static_cast<int>(number("actyp"));
        p.line.nid = static_cast<int>(number("nid"));
        p.line.amt = number("AMT");
        if (errors.size() != before) continue;
        if (p.line.actyp != store::kCapitalAccount && p.line.actyp != store::kCurrentAccount) {
            errors.push_back(where + ", field actyp: 0 (Capital A/c) or 1 (Current A/c), not " +
                             shown(r["actyp"]));
            continue;
        }
        if (!p.line.code.empty() && !capital::is_other_partner(p.line.code) &&
            std::find(partners.begin(), partners.end(), p.line.code) == partners.end()) {
            errors.push_back(where + ", field code: the client has no partner " + p.line.code);
            continue;
        }
        // The screen's own checks, in its order; a named particular stands for its id.
        const capital::LineFields fields{p.line.code, p.line.nid, p.particular.empty() ? 0L : 1L};
        if (const auto fault = capital::line_fault(fields)) {
            errors.push_back(where + ": " + *fault);
            continue;
        }
        pending.push_back(p);
    }
    if (!errors.empty()) return result;

    store::Transaction tx(db);
    std::vector<store::CapitalLine> lines;
    for (auto& p : pending) {
        auto id = store::ledger_find(db, store::Ledger::capital, p.particular);
        if (!id) {
            id = store::ledger_insert(db, store::Ledger::capital, p.particular);
            ++result.particulars_created;
        }
        p.line.particular_id = *id;
        p.line.srno = static_cast<int>(lines.size()) + 1;
        lines.push_back(p.line);
    }
    store::rewrite_capital_lines(db, cy.tbl_nm, code, lines);
    tx.commit();
    result.lines = static_cast<int>(lines.size());
    return result;
}

}  // namespace brenlow::exchange
