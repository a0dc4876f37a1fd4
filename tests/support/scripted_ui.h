#pragma once
// A Ui for tests: answers come from queues the test fills beforehand, and every
// box the code shows is recorded in order so the test can assert on what the
// person would have seen. A question with no answer queued fails the test with
// the question's text; answers left over when the Ui goes away fail it too.

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "controls/ui_port.h"

namespace brenlow::test {

struct ShownBox {
    enum class Kind { message, yes_no, input, open_file, save_file };
    Kind kind;
    std::string text;  // message, question, prompt, or the file dialog's title
    MsgIcon icon = MsgIcon::none;
    std::string title;
    std::string buttons;         // "OK", "YesNo", "OKCancel"
    std::string default_button;  // "OK", "Yes", "No"
};

class ScriptedUi : public Ui {
public:
    ScriptedUi() = default;
    ScriptedUi(const ScriptedUi&) = delete;
    ScriptedUi& operator=(const ScriptedUi&) = delete;
    ~ScriptedUi() override;

    // Answers, used in the order queued.
    ScriptedUi& answer_yes();
    ScriptedUi& answer_no();
    ScriptedUi& answer_input(std::string text);
    ScriptedUi& cancel_input();
    ScriptedUi& answer_open_file(std::string path);
    ScriptedUi& answer_save_file(std::string path);
    ScriptedUi& cancel_file();

    // Everything shown, in order.
    const std::vector<ShownBox>& shown() const { return shown_; }
    // Texts of the plain messages only / of the Yes/No questions only.
    std::vector<std::string> messages() const;
    std::vector<std::string> questions() const;
    // The last message's text, "" when none was shown.
    std::string last_message() const;
    // Fails the test unless the next message not yet expected has this text.
    void expect_message(const std::string& text);
    // Fails the test if any message or question has not been expected yet.
    void expect_nothing_more();
    void forget() {
        shown_.clear();
        checked_ = 0;
    }

    int progress_steps() const { return progress_steps_; }
    bool progress_visible() const { return progress_visible_; }
    int close_requests() const { return close_requests_; }

    void message(std::string_view text, MsgIcon icon = MsgIcon::none, std::string_view title = {}) override;
    bool ask_yes_no(std::string_view text, MsgIcon icon = MsgIcon::question, bool default_yes = true,
                    std::string_view title = {}) override;
    std::optional<std::string> input_box(std::string_view prompt, std::string_view title = {},
                                         std::string_view default_text = {}) override;
    std::optional<std::string> choose_open_file(std::string_view title,
                                                std::string_view filter = {}) override;
    std::optional<std::string> choose_save_file(std::string_view title, std::string_view default_name = {},
                                                std::string_view filter = {}) override;
    void progress(std::string_view text, double fraction) override;
    void progress_done() override { progress_visible_ = false; }
    void close_screen() override { ++close_requests_; }

private:
    std::optional<std::string> next_file(const ShownBox& box);

    std::deque<bool> yes_no_;
    std::deque<std::optional<std::string>> inputs_;
    std::deque<std::optional<std::string>> files_;
    std::vector<ShownBox> shown_;
    std::size_t checked_ = 0;  // boxes already matched by expect_message
    int progress_steps_ = 0;
    bool progress_visible_ = false;
    int close_requests_ = 0;
};

}  // namespace brenlow::test
