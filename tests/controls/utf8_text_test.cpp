#include "controls/utf8_text.h"

#include <gtest/gtest.h>

#include "controls/vtxt.h"
#include "support/scripted_ui.h"

namespace brenlow {
namespace {

struct Bytes {
    std::string text;
    bool valid;
    std::size_t chars;
};

TEST(Utf8Text, TellsWellFormedTextAndCountsItsCharacters) {
    for (const auto& c :
         std::vector<Bytes>{{"", true, 0},
                            {"LATHE", true, 5},
                            {"\xe0\xa4\xae\xe0\xa4\xb6\xe0\xa5\x80\xe0\xa4\xa8", true, 4},  // मशीन
                            {"\xf0\x9f\x9a\x9c \xe2\x82\xb9", true, 3},  // tractor emoji, space, rupee
                            {"\xe0\xa4", false, 2},                      // cut inside a letter
                            {"A\xff"
                             "B",
                             false, 3},
                            {"\xc0\xaf", false, 2},          // overlong "/"
                            {"\xed\xa0\x80", false, 3},      // a surrogate
                            {"\xf4\x90\x80\x80", false, 4},  // above U+10FFFF
                            {"\x80", false, 1}}) {
        EXPECT_EQ(is_valid_utf8(c.text), c.valid) << c.text;
        EXPECT_EQ(utf8_length(c.text), c.chars) << c.text;
    }
}

TEST(Utf8Text, APrefixNeverEndsInsideACharacter) {
    const std::string machine = "\xe0\xa4\xae\xe0\xa4\xb6\xe0\xa5\x80\xe0\xa4\xa8";
    EXPECT_EQ(utf8_prefix(machine, 2), "\xe0\xa4\xae\xe0\xa4\xb6");
    EXPECT_EQ(utf8_prefix(machine, 10), machine);
    EXPECT_EQ(utf8_prefix("\xf0\x9f\x9a\x9c\xf0\x9f\x9a\x9c", 1), "\xf0\x9f\x9a\x9c");
    EXPECT_EQ(utf8_prefix("ABC", 0), "");
}

TEST(vTXTLength, TheLimitCountsCharactersAndCutsBetweenThem) {
    test::ScriptedUi ui;
    vTXT field(ui);
    field.set_MaxLength(3);
    field.set_text("\xf0\x9f\x9a\x9c\xf0\x9f\x9a\x9c\xf0\x9f\x9a\x9c\xf0\x9f\x9a\x9c");
    EXPECT_EQ(field.text(), "\xf0\x9f\x9a\x9c\xf0\x9f\x9a\x9c\xf0\x9f\x9a\x9c");
    field.set_text("\xe0\xa4\xae\xe0\xa4\xb6\xe0\xa5\x80");
    EXPECT_EQ(field.text(), "\xe0\xa4\xae\xe0\xa4\xb6\xe0\xa5\x80");
    EXPECT_TRUE(is_valid_utf8(field.text()));
}

TEST(vTXTLength, TypedCharactersOfAnyScriptAreKeptAsUtf8AndCountedOnce) {
    test::ScriptedUi ui;
    vTXT field(ui);
    field.set_MaxLength(4);
    for (const int code : {0xE9, 0x092E, 0x0936, 0x1F69C, int('a'), int('b')}) field.key_press(code);
    // e-acute becomes a capital as a Latin-1 small letter always did; the fifth key
    // finds the box full.
    EXPECT_EQ(field.text(), "\xc3\x89\xe0\xa4\xae\xe0\xa4\xb6\xf0\x9f\x9a\x9c");
    EXPECT_TRUE(is_valid_utf8(field.text()));
    field.key_press(vTXT::kBackspace);
    EXPECT_EQ(field.text(), "\xc3\x89\xe0\xa4\xae\xe0\xa4\xb6");
    field.set_selection(3, 1);  // inside the first Devanagari letter: snaps to its start
    EXPECT_EQ(field.sel_start(), 2);
    field.key_press(vTXT::kBackspace);
    EXPECT_EQ(field.text(), "\xe0\xa4\xae\xe0\xa4\xb6");
    field.set_text("ABC");
    field.set_MinLength(4);
    field.set_text("\xe0\xa4\xae\xe0\xa4\xb6");
    EXPECT_FALSE(field.validate());
}

}  // namespace
}  // namespace brenlow
