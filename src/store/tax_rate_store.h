#pragma once
// The practice's effective tax rates for deferred tax (NoteTaxRate): one row per kind
// of assessee and regime, the rate with surcharge and cess, in per cent. The table is
// shared by every client of the practice and kept in its shipped order (Sr).

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/database.h"

namespace brenlow::store {

struct TaxRateRow {
    int Sr = 0;
    std::string Kind;    // an assessee kind: "company", "firm", "llp", ...
    std::string Regime;  // "115BAA", "30% above 10 crore", ...
    double Rate = 0;     // effective rate, per cent
    friend bool operator==(const TaxRateRow&, const TaxRateRow&) = default;
};

// The rates the practice starts with: the effective rates in force (tax, surcharge
// and cess) for companies under s.115BAA, at 25% and at 30%, and for firms and LLPs.
const std::vector<TaxRateRow>& shipped_tax_rates();

// Makes the table when missing and fills it with the shipped rates when empty.
void prepare_tax_rate_table(Database& db);

// The practice's rates in their order; the shipped ones while the table is not made
// yet (a database that only reads).
std::vector<TaxRateRow> tax_rates(Database& db);
// The row of a kind and regime (both compared case-blind), if the practice has one.
std::optional<TaxRateRow> tax_rate(Database& db, std::string_view kind, std::string_view regime);
// Sets the rate of a kind and regime: the row is changed, or added after the last.
void set_tax_rate(Database& db, std::string_view kind, std::string_view regime, double rate);
// Removes the row of a kind and regime; false when there was none.
bool remove_tax_rate(Database& db, std::string_view kind, std::string_view regime);

}  // namespace brenlow::store
