#pragma once
// The one Ui of every command of the command line: messages and progress go to
// standard error; questions are answered by a policy fixed when the command starts,
// since nobody is there to answer them. Every question answered is named on standard
// error with its answer.

#include <iosfwd>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "controls/ui_port.h"

namespace brenlow {

// A question the command line could not answer; the command stops (exit code 2)
// and tells the person which question needs "--yes".
class QuestionUnanswered : public std::runtime_error {
public:
    explicit QuestionUnanswered(std::string question)
        : std::runtime_error("unanswered question: " + question), question_(std::move(question)) {}
    const std::string& question() const { return question_; }

private:
    std::string question_;
};

class CliUi : public Ui {
public:
    // What a question does when "--yes" was not given.
    enum class Unanswered {
        stop,       // throws QuestionUnanswered at once
        answer_no,  // the screen hears No (so it writes nothing); the command stops at the
                    // question afterwards (stop_if_unanswered)
    };

    // answer_yes: the "--yes" switch. Every Yes/No question is answered Yes and an
    // input box takes its default text; without it a question stops the command.
    explicit CliUi(bool answer_yes = false);
    CliUi(std::ostream& err, bool answer_yes, Unanswered unanswered = Unanswered::stop);

    // A question whose text holds `fragment` gets `answer` whatever "--yes" says (one
    // that only shows something, or one that has an option of its own).
    void answer_always(std::string fragment, bool answer);

    // Messages shown so far (a command that showed a refusal did not do its work).
    int messages() const { return messages_; }
    // The first question answered No for want of "--yes".
    const std::optional<std::string>& unanswered() const { return unanswered_; }
    // Throws QuestionUnanswered for it.
    void stop_if_unanswered() const;

    void message(std::string_view text, MsgIcon icon = MsgIcon::none, std::string_view title = {}) override;
    bool ask_yes_no(std::string_view text, MsgIcon icon = MsgIcon::question, bool default_yes = true,
                    std::string_view title = {}) override;
    std::optional<std::string> input_box(std::string_view prompt, std::string_view title = {},
                                         std::string_view default_text = {}) override;
    // Files are named on the command line, never chosen: asking for one throws.
    std::optional<std::string> choose_open_file(std::string_view title,
                                                std::string_view filter = {}) override;
    std::optional<std::string> choose_save_file(std::string_view title, std::string_view default_name = {},
                                                std::string_view filter = {}) override;
    // One line when the caption changes or the work has gone another tenth of the way.
    void progress(std::string_view text, double fraction) override;
    void progress_done() override;
    void close_screen() override {}

private:
    std::ostream& err_;
    bool answer_yes_;
    Unanswered unanswered_mode_;
    std::vector<std::pair<std::string, bool>> fixed_;
    int messages_ = 0;
    std::optional<std::string> unanswered_;
    std::string progress_text_;
    int progress_tenth_ = -1;
};

}  // namespace brenlow
