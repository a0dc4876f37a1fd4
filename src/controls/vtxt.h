#pragma once
// vTXT: the entry field of every screen. It filters each typed key by the kind of
// data the field takes (ValidateData), by its Include and Exclude characters, turns
// letters into capitals, and checks length and dates when the person leaves it.
//
// The field keeps its own text and caret (SelStart/SelLength of the inner text box
// CtxtValidate), so a view only forwards keys and copies the text back; no rule
// lives in the view. The text is UTF-8 like every text of the program; the caret
// and selection are byte offsets into it that never fall inside a character, and
// MaxLength and MinLength count characters.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "controls/ui_port.h"

namespace brenlow {

// What became of a key.
enum class KeyAction {
    accept,    // the inner text box takes the (upper-cased) key
    cancel,    // swallowed; the focus stays in the field
    tab_move,  // Tab passed the leave-field check: the focus moves on
    enter,     // Enter: the Enter event was raised and the Tab it sends passed the check
};

struct KeyResult {
    KeyAction action;
    int code;  // the key as the inner text box receives it (upper-cased)
};

class vTXT {
public:
    // Kinds of data (ValidateData).
    static constexpr std::int16_t kFreeText = 0;
    static constexpr std::int16_t kWholeNumber = 1;
    static constexpr std::int16_t kLetters = 2;
    static constexpr std::int16_t kLettersDigits = 3;
    static constexpr std::int16_t kDecimal = 4;
    static constexpr std::int16_t kDateLong = 5;   // dd-mm-yyyy
    static constexpr std::int16_t kDateShort = 6;  // dd-mm-yy

    // Only this many characters of Include and Exclude take part in the checks;
    // a longer list is a mistake in the screen's set-up and is refused.
    static constexpr std::size_t kListLimit = 51;

    static constexpr int kBackspace = 8;
    static constexpr int kTab = 9;
    static constexpr int kEnter = 13;
    static constexpr int kEscape = 27;

    explicit vTXT(Ui& ui) : ui_(&ui) {}

    // Persistent properties.
    std::int16_t ValidateData() const { return validate_data_; }
    std::int16_t MaxLength() const { return max_length_; }
    std::int16_t MinLength() const { return min_length_; }
    const std::string& Include() const { return include_; }
    const std::string& Exclude() const { return exclude_; }
    void set_ValidateData(std::int16_t kind) { validate_data_ = kind; }
    // 0 means no limit. Shortens a longer text already in the field, as the text box does.
    void set_MaxLength(std::int16_t max_length);
    void set_MinLength(std::int16_t min_length) { min_length_ = min_length; }
    // Throws std::invalid_argument for a list longer than kListLimit characters.
    void set_Include(std::string_view characters);
    void set_Exclude(std::string_view characters);

    // The properties as saved with the screen, in their saving order, and read back.
    std::vector<std::pair<std::string, std::string>> properties() const;
    void read_properties(const std::vector<std::pair<std::string, std::string>>& saved);

    // Text and caret.
    const std::string& text() const { return text_; }
    void set_text(std::string_view text);  // caret to the end, nothing selected
    int sel_start() const { return sel_start_; }
    int sel_length() const { return sel_length_; }
    void set_selection(int start, int length);

    // One typed character (its Unicode code point, or 8, 9, 13, 27).
    KeyResult key_press(int code);

    // The leave-field check; shows its message and returns false when the text fails.
    bool validate();

    // The event raised on Enter, with the key code by reference as the screens expect.
    void set_on_enter(std::function<void(int& key_ascii)> on_enter) { on_enter_ = std::move(on_enter); }

private:
    KeyResult refuse(std::string_view message, int code);
    bool kind_accepts(int code) const;
    void insert(int code);
    void backspace();

    Ui* ui_;
    std::int16_t validate_data_ = kFreeText;
    std::int16_t max_length_ = 0;
    std::int16_t min_length_ = 0;
    std::string include_;
    std::string exclude_;

    std::string text_;
    int sel_start_ = 0;
    int sel_length_ = 0;
    std::function<void(int&)> on_enter_;
};

}  // namespace brenlow
