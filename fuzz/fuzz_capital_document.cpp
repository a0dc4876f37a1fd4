// The capital document reader: any text is either imported whole or refused with
// error lines and nothing written, on an embedded database made once for the run.

#include <cstdlib>
#include <filesystem>
#include <memory>

#include "exchange/capital_document.h"
#include "fuzz_support.h"
#include "store/capital_store.h"
#include "store/client_store.h"
#include "store/database.h"

namespace {

brenlow::store::Database& database() {
    static std::unique_ptr<brenlow::store::Database> db = [] {
        const auto file = std::filesystem::temp_directory_path() / "brenlow-fuzz-capital.db";
        std::filesystem::remove(file);
        auto d = brenlow::store::open_database("sqlite:" + file.string());
        brenlow::store::ensure_schema(*d, BRENLOW_FUZZ_DATA_DIR);
        brenlow::store::create_client_year(*d, "FUZZ", 2025, "FUZZ", 2);
        brenlow::store::add_listed_partner(*d, "FUZZ", "ANIL", "", "SHAH");
        brenlow::store::add_listed_partner(*d, "FUZZ", "BINA", "", "MEHTA");
        return d;
    }();
    return *db;
}

// The year's lines and ratios as text.
std::string year_state(brenlow::store::Database& db) {
    std::string s;
    for (const auto& r : brenlow::store::ratio_rows(db, "FUZZ", 1)) s += r.name + std::to_string(r.rat) + ";";
    for (const auto& l : brenlow::store::capital_lines(db, "2025", "FUZZ"))
        s += l.code + std::to_string(l.amt) + std::to_string(l.particular_id) + ";";
    return s;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string json(brenlow::fuzz::text_of(data, size));
    auto& db = database();
    const std::string before = year_state(db);
    const auto result = brenlow::exchange::import_capital(db, "FUZZ", 2025, json);
    // Refused: nothing was written.
    if (!result.errors.empty() && (result.lines != 0 || year_state(db) != before)) std::abort();
    return 0;
}
