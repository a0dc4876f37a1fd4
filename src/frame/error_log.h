#pragma once
// The shared error logger: every handler names itself (module, tab, procedure) in
// the error context and hands a failure here; the failure is appended to
// TarrowLog.log and nothing is shown. The handler then goes on with its next step.
//
// The log lives in the program folder when this user may write there; an installed
// program's folder is not (/usr/lib/brenlow), so there it lives in the user's state
// folder, $XDG_STATE_HOME/tarrow (~/.local/state/tarrow when that is not set), made
// when first needed. A log that cannot be written is said once on standard error.

#include <exception>
#include <string>
#include <string_view>

namespace brenlow::frame {

class ErrorLog {
public:
    explicit ErrorLog(std::string exe_path = {}) : exe_path_(std::move(exe_path)) {}

    void set_exe_path(std::string exe_path) { exe_path_ = std::move(exe_path); }
    // "<ExePath>/TarrowLog.log", or "<state folder>/tarrow/TarrowLog.log"
    std::string path() const;

    // The error-context text: module + tab + procedure.
    void set_context(std::string_view module, std::string_view procedure);
    const std::string& context() const { return context_; }

    // Appends: number, description, source, detail (the failed statement, if any),
    // context — tab-separated, one line. A failure to write the log is said on
    // standard error the first time only.
    void log(long number, std::string_view description, std::string_view source,
             std::string_view detail = {});
    // The pending error is the exception being handled.
    void log(const std::exception& error);

    int logged() const { return logged_; }
    // The description of the latest error logged ("" before the first).
    const std::string& last_error() const { return last_error_; }
    // Its number (a database failure: the server's code).
    long last_number() const { return last_number_; }

private:
    std::string exe_path_;
    std::string context_;
    int logged_ = 0;
    std::string last_error_;
    bool failure_said_ = false;
    long last_number_ = 0;
};

// Runs one step of a handler: the context is set, a failure is logged and the
// caller goes on. Returns false when the step failed.
template <class Step>
bool guarded(ErrorLog& log, std::string_view module, std::string_view procedure, Step&& step) {
    log.set_context(module, procedure);
    try {
        step();
        return true;
    } catch (const std::exception& e) {
        log.log(e);
    } catch (...) {
        log.log(-1, "Unknown error", "Brenlow");
    }
    return false;
}

}  // namespace brenlow::frame
