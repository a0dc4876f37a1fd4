// The register document reader: any text is either imported or refused with error
// lines, on an embedded database made once for the run.

#include <cstdlib>
#include <filesystem>
#include <memory>

#include "exchange/register_document.h"
#include "fuzz_support.h"
#include "store/client_store.h"
#include "store/database.h"
#include "store/register_store.h"

namespace {

brenlow::store::Database& database() {
    static std::unique_ptr<brenlow::store::Database> db = [] {
        const auto file = std::filesystem::temp_directory_path() / "brenlow-fuzz-register.db";
        std::filesystem::remove(file);
        auto d = brenlow::store::open_database("sqlite:" + file.string());
        brenlow::store::ensure_schema(*d, BRENLOW_FUZZ_DATA_DIR);
        brenlow::store::create_client_year(*d, "FUZZ", 2025, "FUZZ", 3);
        brenlow::store::RegisterStore(*d, "FUZZ", 2025).ensure_tables();
        return d;
    }();
    return *db;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string json(brenlow::fuzz::text_of(data, size));
    brenlow::exchange::ImportOptions options;
    options.replace = true;
    options.yes = size % 2 == 0;
    const auto result = brenlow::exchange::import_register(database(), "FUZZ", 2025, json, options);
    // Refused: nothing was counted as written.
    if (!result.errors.empty() && (result.openings != 0 || result.additions != 0)) std::abort();
    return 0;
}
