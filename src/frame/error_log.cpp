#include "frame/error_log.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

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

namespace fs = std::filesystem;

constexpr const char* kLogName = "TarrowLog.log";

// The program folder takes the log when this user may write the log there.
bool writable_here(const fs::path& folder) {
    std::error_code ec;
    const fs::path file = folder / kLogName;
    if (fs::exists(file, ec)) return ::access(file.c_str(), W_OK) == 0;
    return fs::is_directory(folder, ec) && ::access(folder.c_str(), W_OK | X_OK) == 0;
}

// $XDG_STATE_HOME/tarrow, else ~/.local/state/tarrow; empty when neither is known.
fs::path state_folder() {
    if (const char* xdg = std::getenv("XDG_STATE_HOME"); xdg && *xdg == '/') return fs::path(xdg) / "tarrow";
    if (const char* home = std::getenv("HOME"); home && *home) return fs::path(home) / ".local/state/tarrow";
    return {};
}

}  // namespace

std::string ErrorLog::path() const {
    const fs::path folder(exe_path_.empty() ? "." : exe_path_);
    if (writable_here(folder)) return (folder / kLogName).string();
    const fs::path state = state_folder();
    return ((state.empty() ? folder : state) / kLogName).string();
}

void ErrorLog::set_context(std::string_view module, std::string_view procedure) {
    context_ = std::string(module) + "\t" + std::string(procedure);
}

void ErrorLog::log(long number, std::string_view description, std::string_view source,
                   std::string_view detail) {
    ++logged_;
    last_error_ = std::string(description);
    last_number_ = number;
    const fs::path file = path();
    std::error_code ec;
    fs::create_directories(file.parent_path(), ec);
    errno = 0;
    std::ofstream out(file, std::ios::app);
    out << number << '\t' << field(description) << '\t' << field(source) << '\t' << field(detail) << '\t'
        << context_ << '\n';
    out.flush();
    if (out || failure_said_) return;
    // Once: a session that cannot keep its log says so, and goes on.
    failure_said_ = true;
    const int why = errno ? errno : (ec ? ec.value() : EIO);
    std::cerr << "The error log " << file.string() << " cannot be written (" << std::strerror(why)
              << "); the errors of this session are not kept.\n";
}

void ErrorLog::log(const std::exception& error) {
    if (const auto* db = dynamic_cast<const store::DbError*>(&error)) {
        log(db->code(), db->what(), "Database", db->sql());
    } else {
        log(-1, error.what(), "Brenlow");
    }
}

}  // namespace brenlow::frame
