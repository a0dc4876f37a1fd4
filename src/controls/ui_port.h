#pragma once
// The one way a screen talks to the person using it. The Qt desktop, the command
// line and the tests each provide their own.

#include <optional>
#include <string>
#include <string_view>

namespace brenlow {

enum class MsgIcon { none, information, exclamation, critical, question };

class Ui {
public:
    virtual ~Ui() = default;

    // A message box with an OK button.
    virtual void message(std::string_view text, MsgIcon icon = MsgIcon::none,
                         std::string_view title = {}) = 0;
    // A Yes/No box; destructive questions pass default_yes = false.
    virtual bool ask_yes_no(std::string_view text, MsgIcon icon = MsgIcon::question, bool default_yes = true,
                            std::string_view title = {}) = 0;
    // An input box; nullopt when cancelled.
    virtual std::optional<std::string> input_box(std::string_view prompt, std::string_view title = {},
                                                 std::string_view default_text = {}) = 0;
    // File choosers; filter as "Spreadsheet (*.xlsx)|*.xlsx". nullopt when cancelled.
    virtual std::optional<std::string> choose_open_file(std::string_view title,
                                                        std::string_view filter = {}) = 0;
    virtual std::optional<std::string> choose_save_file(std::string_view title,
                                                        std::string_view default_name = {},
                                                        std::string_view filter = {}) = 0;
    // Long work: a caption and how far it has got (0 to 1); progress_done() hides it.
    virtual void progress(std::string_view text, double fraction) = 0;
    virtual void progress_done() = 0;
    // The screen asks its window to close.
    virtual void close_screen() = 0;

    // Shorthands for the two boxes every screen uses.
    void info(std::string_view text, std::string_view title = {}) {
        message(text, MsgIcon::information, title);
    }
    void critical(std::string_view text, std::string_view title = {}) {
        message(text, MsgIcon::critical, title);
    }
};

}  // namespace brenlow
