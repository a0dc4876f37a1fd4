#pragma once
// The Ui of the benchmarks: nothing is shown, and every question gets the one answer
// the benchmark was made with.

#include <optional>
#include <string>
#include <string_view>

#include "controls/ui_port.h"

namespace brenlow::bench {

class AnsweringUi : public Ui {
public:
    explicit AnsweringUi(bool answer = false) : answer_(answer) {}
    void message(std::string_view, MsgIcon, std::string_view) override {}
    bool ask_yes_no(std::string_view, MsgIcon, bool, std::string_view) override { return answer_; }
    std::optional<std::string> input_box(std::string_view, std::string_view, std::string_view) override {
        return {};
    }
    std::optional<std::string> choose_open_file(std::string_view, std::string_view) override { return {}; }
    std::optional<std::string> choose_save_file(std::string_view, std::string_view,
                                                std::string_view) override {
        return {};
    }
    void progress(std::string_view, double) override {}
    void progress_done() override {}
    void close_screen() override {}

private:
    bool answer_;
};

}  // namespace brenlow::bench
