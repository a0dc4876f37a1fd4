#include "frame/error_log.h"

#include <filesystem>
#include <fstream>

#include "store/database.h"

namespace brenlow::frame {
namespace {

// A log field stays on its line and in its column.
std::string field(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        if (c == '\t' || c == '\n' || c == '\r') c = ' ';
    return out;
}

}  // namespace

std::string ErrorLog::path() const {
    return (std::filesystem::path(exe_path_.empty() ? "." : exe_path_) / "TarrowLog.log").string();
}

void ErrorLog::set_context(std::string_view module, std::string_view procedure) {
    context_ = std::string(module) + "\t" + std::string(procedure);
}

void ErrorLog::log(long number, std::string_view description, std::string_view source,
                   std::string_view detail) {
    ++logged_;
    last_error_ = std::string(description);
    last_number_ = number;
    try {
        std::ofstream out(path(), std::ios::app);
        out << number << '\t' << field(description) << '\t' << field(source) << '\t' << field(detail) << '\t'
            << context_ << '\n';
    } catch (...) {
    }
}

void ErrorLog::log(const std::exception& error) {
    if (const auto* db = dynamic_cast<const store::DbError*>(&error)) {
        log(db->code(), db->what(), "Database", db->sql());
    } else {
        log(-1, error.what(), "Brenlow");
    }
}

}  // namespace brenlow::frame
