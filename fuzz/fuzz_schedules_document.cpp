// The schedules document reader: any text is either imported whole or refused with
// error lines and nothing written, on an embedded database made once for the run.
// The fixed-asset schedule of a document is handed to a save that writes it through
// the store, as the screen's save does.

#include <cstdlib>
#include <filesystem>
#include <memory>

#include "exchange/schedules_document.h"
#include "fuzz_support.h"
#include "store/client_store.h"
#include "store/database.h"
#include "store/fixed_schedule_store.h"

namespace {

brenlow::store::Database& database() {
    static std::unique_ptr<brenlow::store::Database> db = [] {
        const auto file = std::filesystem::temp_directory_path() / "brenlow-fuzz-schedules.db";
        std::filesystem::remove(file);
        auto d = brenlow::store::open_database("sqlite:" + file.string());
        brenlow::store::ensure_schema(*d, BRENLOW_FUZZ_DATA_DIR);
        brenlow::store::create_client_year(*d, "FUZZ", 2025, "FUZZ", 3);
        return d;
    }();
    return *db;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string json(brenlow::fuzz::text_of(data, size));
    auto& db = database();
    const std::string before = brenlow::exchange::export_schedules(db, "FUZZ", 2025);
    const auto result = brenlow::exchange::import_schedules(
        db, "FUZZ", 2025, json, size % 2 == 0,
        [&](const brenlow::store::FixedScheduleRows& rows, std::vector<std::string>&) {
            brenlow::store::FixedScheduleStore(db, "2025", "FUZZ").replace_all_rows(rows);
            return true;
        });
    // Refused: nothing was written.
    if (!result.errors.empty() && brenlow::exchange::export_schedules(db, "FUZZ", 2025) != before)
        std::abort();
    return 0;
}
