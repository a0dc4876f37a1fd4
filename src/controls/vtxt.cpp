#include "controls/vtxt.h"

#include <algorithm>
#include <stdexcept>

#include "controls/utf8_text.h"
#include "controls/vb_date.h"

namespace brenlow {

namespace {

int upper_code(int code) {
    if (code >= 'a' && code <= 'z') return code - 32;
    // Accented small letters of the Latin-1 page, but not the division sign.
    if (code >= 0xE0 && code <= 0xFE && code != 0xF7) return code - 32;
    return code;
}

bool is_continuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// One character as UTF-8; nothing for what is not a character.
std::string utf8_of(int code) {
    std::string out;
    const auto cp = static_cast<unsigned>(code);
    if (code < 0 || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return out;
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
    return out;
}

bool is_digit(int k) {
    return k >= '0' && k <= '9';
}
bool is_letter(int k) {
    return (k >= 'A' && k <= 'Z') || (k >= 'a' && k <= 'z');
}

// Only the first kListLimit characters of a list are looked at, character by
// character (a list is UTF-8 like every text). A character of the list stands for the
// key typed and for its capital: "é" in the list is the key "é", which the field takes
// as "É".
bool in_list(const std::string& list, int typed, int upper) {
    const std::u32string chars = utf8_code_points(list);
    const std::size_t n = std::min(chars.size(), vTXT::kListLimit);
    for (std::size_t i = 0; i < n; ++i) {
        const auto c = static_cast<int>(chars[i]);
        if (c == upper || c == typed) return true;
    }
    return false;
}

void check_list(std::string_view characters, const char* name) {
    const std::size_t n = utf8_length(characters);
    if (n > vTXT::kListLimit) {
        throw std::invalid_argument(std::string(name) + " takes at most 51 characters, got " +
                                    std::to_string(n));
    }
}

// The number at the start of a text, the way the month is read out of a typed
// date: "12" is 12, "1-" is 1, "/1" is 0.
int leading_number(std::string_view s) {
    int v = 0;
    for (char c : s) {
        if (c < '0' || c > '9') break;
        v = v * 10 + (c - '0');
    }
    return v;
}

// The two characters from position 4 (counting from 1): the month of dd-mm-yy.
int typed_month(const std::string& text) {
    return text.size() > 3 ? leading_number(std::string_view(text).substr(3, 2)) : 0;
}

bool separator_at_3(const std::string& text) {
    return text.size() >= 3 && (text[2] == '/' || text[2] == '-' || text[2] == '.');
}

}  // namespace

void vTXT::set_MaxLength(std::int16_t max_length) {
    max_length_ = max_length;
    if (max_length_ > 0 && utf8_length(text_) > static_cast<std::size_t>(max_length_)) set_text(text_);
}

void vTXT::set_Include(std::string_view characters) {
    check_list(characters, "Include");
    include_ = std::string(characters);
}

void vTXT::set_Exclude(std::string_view characters) {
    check_list(characters, "Exclude");
    exclude_ = std::string(characters);
}

std::vector<std::pair<std::string, std::string>> vTXT::properties() const {
    return {{"ValidateData", std::to_string(validate_data_)},
            {"MaxLength", std::to_string(max_length_)},
            {"MinLength", std::to_string(min_length_)},
            {"Include", include_},
            {"Exclude", exclude_}};
}

void vTXT::read_properties(const std::vector<std::pair<std::string, std::string>>& saved) {
    for (const auto& [name, value] : saved) {
        if (name == "ValidateData")
            set_ValidateData(static_cast<std::int16_t>(std::stoi(value)));
        else if (name == "MaxLength")
            set_MaxLength(static_cast<std::int16_t>(std::stoi(value)));
        else if (name == "MinLength")
            set_MinLength(static_cast<std::int16_t>(std::stoi(value)));
        else if (name == "Include")
            set_Include(value);
        else if (name == "Exclude")
            set_Exclude(value);
    }
}

void vTXT::set_text(std::string_view text) {
    // The limit counts characters: a long text is cut between two of them, never
    // inside a Devanagari letter or an emoji.
    text_ = max_length_ > 0 ? utf8_prefix(text, static_cast<std::size_t>(max_length_)) : std::string(text);
    sel_start_ = static_cast<int>(text_.size());
    sel_length_ = 0;
}

void vTXT::set_selection(int start, int length) {
    const int size = static_cast<int>(text_.size());
    // Offsets are bytes of the UTF-8 text; neither end may fall inside a character.
    const auto lead = [&](int at) {
        while (at > 0 && at < size && is_continuation(text_[static_cast<std::size_t>(at)])) --at;
        return at;
    };
    sel_start_ = lead(std::clamp(start, 0, size));
    const int end = lead(std::clamp(start + std::max(length, 0), sel_start_, size));
    sel_length_ = end - sel_start_;
}

void vTXT::insert(int code) {
    const std::string typed = utf8_of(code);
    if (typed.empty()) return;
    const std::size_t kept =
        utf8_length(text_) - utf8_length(std::string_view(text_).substr(sel_start_, sel_length_));
    if (max_length_ > 0 && kept + 1 > static_cast<std::size_t>(max_length_)) return;  // the box is full
    text_.replace(static_cast<std::size_t>(sel_start_), static_cast<std::size_t>(sel_length_), typed);
    sel_start_ += static_cast<int>(typed.size());
    sel_length_ = 0;
}

void vTXT::backspace() {
    if (sel_length_ > 0) {
        text_.erase(sel_start_, sel_length_);
    } else if (sel_start_ > 0) {
        // The whole character before the caret, however many bytes it takes.
        int from = sel_start_ - 1;
        while (from > 0 && is_continuation(text_[static_cast<std::size_t>(from)])) --from;
        text_.erase(static_cast<std::size_t>(from), static_cast<std::size_t>(sel_start_ - from));
        sel_start_ = from;
    }
    sel_length_ = 0;
}

KeyResult vTXT::refuse(std::string_view message, int code) {
    ui_->message(message, MsgIcon::none);
    return {KeyAction::cancel, code};
}

bool vTXT::kind_accepts(int k) const {
    switch (validate_data_) {
        case kWholeNumber:
            return is_digit(k) || k == '+' || k == '-';
        case kLetters:
            return is_letter(k) || k == ' ';
        case kLettersDigits:
            return is_letter(k) || is_digit(k);
        case kDecimal:
            if (k == '.') {
                // One decimal point: the point is taken only while the text (outside
                // what the key will replace) has none; a second is refused like any
                // other non-numeric key. The number of decimals is not limited.
                const std::string outside =
                    text_.substr(0, sel_start_) + text_.substr(sel_start_ + sel_length_);
                return outside.find('.') == std::string::npos;
            }
            return is_digit(k) || k == '+' || k == '-';
        case kDateLong:
        case kDateShort:
            return is_digit(k) || k == '-' || k == '.' || k == '/';
        default:
            return true;
    }
}

KeyResult vTXT::key_press(int code) {
    const int k = upper_code(code);
    if (k == kBackspace) {
        backspace();
        return {KeyAction::accept, k};
    }
    if (k == kEscape) return {KeyAction::accept, k};
    if (k == kTab) return {validate() ? KeyAction::tab_move : KeyAction::cancel, k};
    if (k == kEnter) {
        int key_ascii = kEnter;
        if (on_enter_) on_enter_(key_ascii);
        // Enter sends a Tab, which goes through the leave-field check like a typed one.
        return {validate() ? KeyAction::enter : KeyAction::cancel, kEnter};
    }
    if (in_list(include_, code, k)) {
        insert(k);
        return {KeyAction::accept, k};
    }
    if (in_list(exclude_, code, k)) return refuse("InValid Data", k);
    if (!kind_accepts(k)) {
        switch (validate_data_) {
            case kWholeNumber:
            case kDecimal:
                return refuse("Enter Numeric value", k);
            case kLetters:
                return refuse("Enter Alphabets only", k);
            case kLettersDigits:
                return refuse("Enter AlphaNumeric Characters Only", k);
            default:
                return refuse("Invalid Data", k);
        }
    }
    insert(k);
    return {KeyAction::accept, k};
}

bool vTXT::validate() {
    if (text_.empty()) return true;
    const auto fail = [this](std::string_view message) {
        ui_->message(message, MsgIcon::none);
        return false;
    };
    if (min_length_ > 0 && utf8_length(text_) < static_cast<std::size_t>(min_length_)) {
        return fail("Data must be at least of " + std::to_string(min_length_) + " characters");
    }
    if (validate_data_ == kDateShort) {
        if (!is_date(text_)) return fail("Not a valid date");
        if (typed_month(text_) > 12) return fail("Not a valid date");
        if (text_.size() != 8) return fail("Date Format dd-mm-yy");
        if (!separator_at_3(text_)) return fail("Date Format must be dd-mm-yy");
    } else if (validate_data_ == kDateLong) {
        if (!is_date(text_)) return fail("Not a valid date");
        if (typed_month(text_) > 12) return fail("Not a valid date");
        if (text_.size() != 10 || !separator_at_3(text_)) return fail("Date Format must be dd-mm-yyyy");
    }
    return true;
}

}  // namespace brenlow
