#pragma once
// What the fuzz targets share: the input as text, and a Ui that answers nothing.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "controls/ui_port.h"

namespace brenlow::fuzz {

inline std::string_view text_of(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// Messages go nowhere; every question is answered No, every box cancelled.
class SilentUi : public Ui {
public:
    void message(std::string_view, MsgIcon, std::string_view) override {}
    bool ask_yes_no(std::string_view, MsgIcon, bool, std::string_view) override { return false; }
    std::optional<std::string> input_box(std::string_view, std::string_view, std::string_view) override {
        return std::nullopt;
    }
    std::optional<std::string> choose_open_file(std::string_view, std::string_view) override {
        return std::nullopt;
    }
    std::optional<std::string> choose_save_file(std::string_view, std::string_view,
                                                std::string_view) override {
        return std::nullopt;
    }
    void progress(std::string_view, double) override {}
    void progress_done() override {}
    void close_screen() override {}
};

}  // namespace brenlow::fuzz
