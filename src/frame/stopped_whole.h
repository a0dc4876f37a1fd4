#pragma once
// A procedure that writes one all-or-nothing group (a save, a transfer, an import, a
// merge, a carry-forward) does not go on past a failure: there is no next statement
// that makes sense once the group was undone. The failure is logged as every failure
// is (module, tab, procedure; once), and the person is told in the program's own words
// that nothing was written and where the log is; no database or library text reaches
// the box. Every other procedure logs and carries on (guarded).

#include <exception>
#include <string>
#include <string_view>

#include "controls/cli_ui.h"
#include "controls/ui_port.h"
#include "frame/error_log.h"

namespace brenlow::frame {

// A question the command line could not answer is no failure: it stops the command
// (QuestionUnanswered goes on to the caller, unlogged).
template <class Step>
bool stopped_whole(ErrorLog& log, Ui& ui, std::string_view module, std::string_view procedure,
                   std::string_view what, Step&& step) {
    std::exception_ptr question;
    const bool done = guarded(log, module, procedure, [&] {
        try {
            step();
        } catch (const QuestionUnanswered&) {
            question = std::current_exception();
        }
    });
    if (question) std::rethrow_exception(question);
    if (done) return true;
    ui.critical(std::string(what) + " Nothing was written; the failure is recorded in " + log.path() + ".");
    return false;
}

}  // namespace brenlow::frame
