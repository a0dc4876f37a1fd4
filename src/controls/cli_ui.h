#pragma once
// The Ui of the command-line programs: messages and progress go to standard
// error; questions are answered by a policy fixed when the command starts, since
// nobody is there to answer them.

#include <iosfwd>
#include <stdexcept>
#include <string>

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
    // answer_yes: the "--yes" switch. Every Yes/No question is answered Yes and an
    // input box takes its default text; without it a question throws QuestionUnanswered.
    explicit CliUi(bool answer_yes = false);
    CliUi(std::ostream& err, bool answer_yes);

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
    std::string progress_text_;
    int progress_tenth_ = -1;
};

}  // namespace brenlow
