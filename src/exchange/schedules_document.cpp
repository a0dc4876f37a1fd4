#include "exchange/schedules_document.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "exchange/document_checks.h"
#include "exchange/fixed_schedule_document.h"
#include "schedules/schedule_grids.h"
#include "schedules/schedule_kinds.h"
#include "schedules/schedule_rules.h"
#include "store/client_store.h"
#include "store/schedule_store.h"
#include "store/sql_dialect.h"

namespace brenlow::exchange {
namespace {

using Json = nlohmann::ordered_json;
using store::FieldRow;
using store::Value;

Json num(double v) {
    if (std::isfinite(v) && v == std::floor(v) && std::fabs(v) < 1e15) return static_cast<long long>(v);
    return v;
}

Json value_json(const std::string& column, const Value& v) {
    if (v.is_null()) return nullptr;
    if (store::schedule_text_column(column)) return v.as_text();
    return num(v.as_double());
}

store::ClientYear client_year(store::Database& db, const std::string& code, int year) {
    const auto cy = store::find_client_year(db, code, year);
    if (!cy) throw store::DbError(0, "client " + code + " has no financial year " + std::to_string(year));
    return *cy;
}

std::string suffix_of(store::Database& db, const std::string& code, int year) {
    return client_year(db, code, year).tbl_nm;
}

std::string where(const std::string& stem, std::size_t index) {
    return stem + " row " + std::to_string(index + 1);
}

// Ids and serials are whole numbers (a reserve 4.5 is none).
bool whole_column(const std::string& column) {
    if (store::equals_case_blind(column, "srno")) return true;
    return column.size() >= 2 && store::equals_case_blind(column.substr(column.size() - 2), "id");
}

// A document row as a table row: known columns only, of the right kind.
std::optional<FieldRow> read_row(const std::string& stem, std::size_t index, const Json& j,
                                 std::vector<std::string>& errors) {
    if (!j.is_object()) {
        errors.push_back(where(stem, index) + ": a row is an object of columns");
        return std::nullopt;
    }
    const auto& columns = store::schedule_columns(stem);
    FieldRow row;
    bool ok = true;
    for (const auto& [key, value] : j.items()) {
        std::string column;
        for (const auto& c : columns)
            if (store::equals_case_blind(c, key)) column = c;
        if (column.empty() || column == "code_no") {
            errors.push_back(where(stem, index) + ", field " + key + ": is not a column of the table");
            ok = false;
            continue;
        }
        if (value.is_null()) {
            row.set(column, Value());
        } else if (store::schedule_text_column(column)) {
            if (!value.is_string()) {
                errors.push_back(where(stem, index) + ", field " + column + ": is not text");
                ok = false;
                continue;
            }
            row.set(column, Value(value.get<std::string>()));
        } else if (!value.is_number() || !std::isfinite(value.get<double>())) {
            errors.push_back(where(stem, index) + ", field " + column + ": is not a number");
            ok = false;
        } else if (const double v = value.get<double>(); whole_column(column) && v != std::floor(v)) {
            errors.push_back(where(stem, index) + ", field " + column + ": is not a whole number");
            ok = false;
        } else if (std::fabs(v) > kLargestDocumentAmount) {
            errors.push_back(where(stem, index) + ", field " + column +
                             ": has more than 15 digits before the point");
            ok = false;
        } else {
            row.set(column, Value(v));
        }
    }
    if (!ok) return std::nullopt;
    if (!row.has("srno") || row.get("srno").is_null()) row.set("srno", Value(static_cast<double>(index + 1)));
    return row;
}

struct TableSave {
    store::ScheduleSave save;
    std::vector<std::size_t> indexes;  // document row of each line
};

}  // namespace

std::string export_schedules(store::Database& db, const std::string& code, int year) {
    const std::string suffix = suffix_of(db, code, year);
    Json doc = {{"format", "brenlow-schedules"}, {"version", 1}, {"client", code}, {"year", year}};
    for (const auto& stem : store::schedule_stems()) {
        Json rows = Json::array();
        // Secured loans first, then unsecured: each kind numbers its own lines.
        auto read = store::read_schedule(db, stem, suffix, code, stem == "SECUR_" ? 1 : 0);
        if (stem == "SECUR_")
            for (auto& r : store::read_schedule(db, stem, suffix, code, 2)) read.push_back(std::move(r));
        for (const auto& r : read) {
            Json row = Json::object();
            for (const auto& c : store::schedule_columns(stem))
                if (c != "code_no") row[c] = value_json(c, r.get(c));
            rows.push_back(std::move(row));
        }
        doc[stem] = std::move(rows);
    }
    store::FixedScheduleStore fixed(db, suffix, code);
    if (fixed.tables_exist()) write_fixed_schedule(doc, fixed.all_rows());
    return doc.dump(2) + "\n";
}

SchedulesImportResult import_schedules(store::Database& db, const std::string& code, int year,
                                       const std::string& json, bool replace,
                                       const SaveFixedSchedule& save_fixed) {
    SchedulesImportResult result;
    auto& errors = result.errors;
    const auto parsed = parse_document(json, errors);
    if (!parsed) return result;
    const Json& doc = *parsed;
    static const DocumentShape shape{
        "brenlow-schedules", "schedules", 1, store::schedule_stems(), {"FIXED_", "FDA_"}};
    if (!check_document_shape(doc, shape, errors)) return result;
    const auto cy = client_year(db, code, year);
    const std::string suffix = cy.tbl_nm;

    std::vector<TableSave> saves;
    for (const auto& stem : store::schedule_stems()) {
        if (!doc.contains(stem)) continue;
        const Json& rows = doc[stem];
        if ((stem == "SUNDEB_" || stem == "BANK_") && rows.size() > 1) {
            errors.push_back(stem + ": a client has one row of it, the document " +
                             std::to_string(rows.size()));
            continue;
        }
        // SECUR_ is saved per kind of loan, as the screen saves it.
        std::vector<TableSave> kinds(stem == "SECUR_" ? 2 : 1);
        for (std::size_t k = 0; k < kinds.size(); ++k) {
            kinds[k].save.stem = stem;
            kinds[k].save.loan_id = stem == "SECUR_" ? static_cast<int>(k) + 1 : 0;
        }
        for (std::size_t i = 0; i < rows.size(); ++i) {
            auto row = read_row(stem, i, rows[i], errors);
            if (!row) continue;
            if (stem == "SHARE_" && row->get("four_id").as_int() == 0 && !row->get("sam").is_null()) {
                kinds[0].save.share_application += row->get("sam").as_double();
                continue;
            }
            std::size_t k = 0;
            if (stem == "SECUR_") {
                const auto loan = row->get("loan_id").as_int();
                if (loan != 1 && loan != 2) {
                    errors.push_back(where(stem, i) + ": field loan_id must be 1 (secured) or 2 (unsecured)");
                    continue;
                }
                k = static_cast<std::size_t>(loan - 1);
            }
            kinds[k].save.rows.push_back(std::move(*row));
            kinds[k].indexes.push_back(i);
        }
        for (auto& t : kinds) {
            const auto* kind = t.save.loan_id == 2 ? schedules::kind_of_group(schedules::kUnsecured)
                                                   : schedules::kind_of_stem(stem);
            if (auto refusal = schedules::check_schedule(*kind, t.save.rows)) {
                errors.push_back(where(stem, t.indexes[static_cast<std::size_t>(refusal->line)]) + ": " +
                                 refusal->message + " (field " + refusal->column + ")");
                continue;
            }
            // The lists of the client's status: a proprietor or a firm has no subsidiaries.
            const auto lists = schedules::read_lists(db, t.save.loan_id, cy.status);
            if (auto unknown = schedules::unknown_choice(*kind, lists, t.save.rows)) {
                const std::string why = unknown->reason.empty()
                                            ? "'" + unknown->heading + "' has no entry " + unknown->id
                                            : unknown->reason;
                errors.push_back(where(stem, t.indexes[static_cast<std::size_t>(unknown->line)]) + ": " +
                                 why + " (field " + unknown->column + ")");
                continue;
            }
            t.save.rows = schedules::written_rows(*kind, t.save.rows);
            saves.push_back(std::move(t));
        }
        if (!replace && store::schedule_has_rows(db, stem, suffix, code))
            errors.push_back(stem + ": the client's year already has rows (use --replace to replace them)");
    }
    store::FixedScheduleRows fixed;
    const bool has_fixed = doc.contains("FIXED_") || doc.contains("FDA_");
    if (has_fixed) {
        fixed = read_fixed_schedule(doc, errors);
        if (!save_fixed && !fixed.fixed.empty())
            errors.push_back("FIXED_: the fixed-asset schedule is saved through its own screen");
    }
    if (!errors.empty()) return result;
    if (has_fixed && save_fixed && !fixed.fixed.empty() && !replace &&
        !store::FixedScheduleStore(db, suffix, code).particulars().empty()) {
        errors.push_back("FIXED_: the client's year already has rows (use --replace to replace them)");
        return result;
    }

    // Every table the document carries, the fixed-asset schedule included, in one
    // group: whole or not at all, also when the program is stopped half-way.
    store::Transaction tx(db);
    if (has_fixed && save_fixed && (!fixed.fixed.empty() || replace)) {
        if (!save_fixed(fixed, errors)) {
            if (errors.empty()) errors.push_back("FIXED_: the fixed-asset schedule was not saved");
            return result;
        }
        if (!fixed.fixed.empty()) {
            ++result.tables;
            result.rows += static_cast<int>(fixed.fixed.size() + fixed.fda.size());
        }
    }
    std::string last_stem;
    for (const auto& t : saves) {
        store::save_schedule(db, suffix, code, t.save);
        result.rows += static_cast<int>(t.save.rows.size()) + (t.save.share_application != 0 ? 1 : 0);
        if (t.save.stem != last_stem) ++result.tables;
        last_stem = t.save.stem;
    }
    tx.commit();
    return result;
}

}  // namespace brenlow::exchange
