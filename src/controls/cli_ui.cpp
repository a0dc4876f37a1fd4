#include "controls/cli_ui.h"

#include <algorithm>
#include <cmath>
#include <iostream>

namespace brenlow {

namespace {

const char* icon_word(MsgIcon icon) {
    switch (icon) {
        case MsgIcon::information:
            return "information";
        case MsgIcon::exclamation:
            return "warning";
        case MsgIcon::critical:
            return "error";
        case MsgIcon::question:
            return "question";
        case MsgIcon::none:
            break;
    }
    return nullptr;
}

}  // namespace

CliUi::CliUi(bool answer_yes) : CliUi(std::cerr, answer_yes) {}

CliUi::CliUi(std::ostream& err, bool answer_yes, Unanswered unanswered)
    : err_(err), answer_yes_(answer_yes), unanswered_mode_(unanswered) {}

void CliUi::answer_always(std::string fragment, bool answer) {
    fixed_.emplace_back(std::move(fragment), answer);
}

void CliUi::stop_if_unanswered() const {
    if (unanswered_) throw QuestionUnanswered(*unanswered_);
}

void CliUi::message(std::string_view text, MsgIcon icon, std::string_view title) {
    ++messages_;
    if (const char* word = icon_word(icon)) err_ << word << ": ";
    if (!title.empty()) err_ << title << ": ";
    err_ << text << '\n';
}

bool CliUi::ask_yes_no(std::string_view text, MsgIcon, bool, std::string_view) {
    for (const auto& [fragment, answer] : fixed_) {
        if (text.find(fragment) == std::string_view::npos) continue;
        err_ << text << (answer ? " Yes\n" : " No\n");
        return answer;
    }
    if (!answer_yes_) {
        if (unanswered_mode_ == Unanswered::stop) throw QuestionUnanswered(std::string(text));
        if (!unanswered_) unanswered_ = std::string(text);
        return false;
    }
    err_ << text << " Yes\n";
    return true;
}

std::optional<std::string> CliUi::input_box(std::string_view prompt, std::string_view,
                                            std::string_view default_text) {
    if (!answer_yes_) {
        if (unanswered_mode_ == Unanswered::stop) throw QuestionUnanswered(std::string(prompt));
        if (!unanswered_) unanswered_ = std::string(prompt);
        return std::nullopt;
    }
    err_ << prompt << " " << default_text << '\n';
    return std::string(default_text);
}

std::optional<std::string> CliUi::choose_open_file(std::string_view title, std::string_view) {
    throw QuestionUnanswered(std::string(title));
}

std::optional<std::string> CliUi::choose_save_file(std::string_view title, std::string_view,
                                                   std::string_view) {
    throw QuestionUnanswered(std::string(title));
}

void CliUi::progress(std::string_view text, double fraction) {
    const int tenth = static_cast<int>(std::floor(std::clamp(fraction, 0.0, 1.0) * 10.0));
    if (text == progress_text_ && tenth == progress_tenth_) return;
    progress_text_ = std::string(text);
    progress_tenth_ = tenth;
    err_ << text << " " << tenth * 10 << "%\n";
}

void CliUi::progress_done() {
    progress_text_.clear();
    progress_tenth_ = -1;
}

}  // namespace brenlow
