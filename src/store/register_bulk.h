#pragma once
// Many register entries at once (imports, generated registers): serials continue
// from the client's largest, taken under the table lock, and the whole batch is
// written in one all-or-nothing group of multi-row inserts.

#include <string_view>
#include <vector>

#include "store/register_store.h"

namespace brenlow::store {

// Sets Code_No and SrNoFATR of every row, then writes them.
void insert_openings(Database& db, std::string_view code, int year, std::vector<OpeningRow>& rows);
void insert_additions(Database& db, std::string_view code, int year, std::vector<AdditionRow>& rows);

}  // namespace brenlow::store
