#include "support/scripted_ui.h"

#include <gtest/gtest.h>

namespace brenlow::test {

ScriptedUi::~ScriptedUi() {
    for (bool yes : yes_no_)
        ADD_FAILURE() << "answer " << (yes ? "Yes" : "No") << " queued but never asked for";
    for (const auto& input : inputs_) {
        ADD_FAILURE() << "input " << (input ? '"' + *input + '"' : std::string("(cancel)"))
                      << " queued but never asked for";
    }
    for (const auto& file : files_) {
        ADD_FAILURE() << "file " << (file ? '"' + *file + '"' : std::string("(cancel)"))
                      << " queued but never asked for";
    }
}

ScriptedUi& ScriptedUi::answer_yes() {
    yes_no_.push_back(true);
    return *this;
}

ScriptedUi& ScriptedUi::answer_no() {
    yes_no_.push_back(false);
    return *this;
}

ScriptedUi& ScriptedUi::answer_input(std::string text) {
    inputs_.emplace_back(std::move(text));
    return *this;
}

ScriptedUi& ScriptedUi::cancel_input() {
    inputs_.emplace_back(std::nullopt);
    return *this;
}

ScriptedUi& ScriptedUi::answer_open_file(std::string path) {
    files_.emplace_back(std::move(path));
    return *this;
}

ScriptedUi& ScriptedUi::answer_save_file(std::string path) {
    files_.emplace_back(std::move(path));
    return *this;
}

ScriptedUi& ScriptedUi::cancel_file() {
    files_.emplace_back(std::nullopt);
    return *this;
}

std::vector<std::string> ScriptedUi::messages() const {
    std::vector<std::string> out;
    for (const auto& box : shown_) {
        if (box.kind == ShownBox::Kind::message) out.push_back(box.text);
    }
    return out;
}

std::vector<std::string> ScriptedUi::questions() const {
    std::vector<std::string> out;
    for (const auto& box : shown_) {
        if (box.kind == ShownBox::Kind::yes_no) out.push_back(box.text);
    }
    return out;
}

std::string ScriptedUi::last_message() const {
    const auto all = messages();
    return all.empty() ? std::string{} : all.back();
}

void ScriptedUi::expect_message(const std::string& text) {
    while (checked_ < shown_.size() && shown_[checked_].kind != ShownBox::Kind::message) ++checked_;
    if (checked_ == shown_.size()) {
        ADD_FAILURE() << "expected the message \"" << text << "\", but no further message was shown";
        return;
    }
    EXPECT_EQ(shown_[checked_].text, text) << "message number " << checked_ + 1 << " shown";
    ++checked_;
}

void ScriptedUi::expect_nothing_more() {
    for (std::size_t i = checked_; i < shown_.size(); ++i) {
        const auto& box = shown_[i];
        if (box.kind == ShownBox::Kind::message || box.kind == ShownBox::Kind::yes_no) {
            ADD_FAILURE() << "unexpected " << (box.kind == ShownBox::Kind::message ? "message" : "question")
                          << " \"" << box.text << "\"";
        }
    }
    checked_ = shown_.size();
}

void ScriptedUi::message(std::string_view text, MsgIcon icon, std::string_view title) {
    shown_.push_back({ShownBox::Kind::message, std::string(text), icon, std::string(title), "OK", "OK"});
}

bool ScriptedUi::ask_yes_no(std::string_view text, MsgIcon icon, bool default_yes, std::string_view title) {
    shown_.push_back({ShownBox::Kind::yes_no, std::string(text), icon, std::string(title), "YesNo",
                      default_yes ? "Yes" : "No"});
    if (yes_no_.empty()) {
        ADD_FAILURE() << "question asked with no answer queued: \"" << text << "\"";
        return default_yes;
    }
    const bool answer = yes_no_.front();
    yes_no_.pop_front();
    return answer;
}

std::optional<std::string> ScriptedUi::input_box(std::string_view prompt, std::string_view title,
                                                 std::string_view default_text) {
    shown_.push_back(
        {ShownBox::Kind::input, std::string(prompt), MsgIcon::none, std::string(title), "OKCancel", "OK"});
    if (inputs_.empty()) {
        ADD_FAILURE() << "input asked with no answer queued: \"" << prompt << "\"";
        return std::string(default_text);
    }
    auto answer = inputs_.front();
    inputs_.pop_front();
    return answer;
}

std::optional<std::string> ScriptedUi::next_file(const ShownBox& box) {
    shown_.push_back(box);
    if (files_.empty()) {
        ADD_FAILURE() << "file asked for with no answer queued: \"" << box.text << "\"";
        return std::nullopt;
    }
    auto answer = files_.front();
    files_.pop_front();
    return answer;
}

std::optional<std::string> ScriptedUi::choose_open_file(std::string_view title, std::string_view) {
    return next_file(
        {ShownBox::Kind::open_file, std::string(title), MsgIcon::none, std::string(title), "OKCancel", "OK"});
}

std::optional<std::string> ScriptedUi::choose_save_file(std::string_view title, std::string_view,
                                                        std::string_view) {
    return next_file(
        {ShownBox::Kind::save_file, std::string(title), MsgIcon::none, std::string(title), "OKCancel", "OK"});
}

void ScriptedUi::progress(std::string_view, double) {
    ++progress_steps_;
    progress_visible_ = true;
}

}  // namespace brenlow::test
