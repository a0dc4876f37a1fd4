#include "controls/vtxt.h"

#include <gtest/gtest.h>

#include "support/scripted_ui.h"

namespace brenlow {
namespace {

using test::ScriptedUi;

// Types each character of `keys` into the field; returns what became of the last.
KeyResult type(vTXT& field, std::string_view keys) {
    KeyResult last{KeyAction::accept, 0};
    for (char c : keys) last = field.key_press(static_cast<unsigned char>(c));
    return last;
}

vTXT field_of_kind(Ui& ui, std::int16_t kind) {
    vTXT field(ui);
    field.set_ValidateData(kind);
    return field;
}

TEST(vTXTKeys, TurnsEveryTypedLetterIntoACapital) {
    ScriptedUi ui;
    auto field = field_of_kind(ui, vTXT::kLetters);
    const KeyResult r = field.key_press('a');
    EXPECT_EQ(r.action, KeyAction::accept);
    EXPECT_EQ(r.code, 'A');
    type(field, "bc d");
    EXPECT_EQ(field.text(), "ABC D");
    auto free = field_of_kind(ui, vTXT::kFreeText);
    type(free, "plant & m/c");
    EXPECT_EQ(free.text(), "PLANT & M/C");
    EXPECT_TRUE(ui.messages().empty());
}

TEST(vTXTKeys, RefusesWhatTheKindDoesNotTakeWithTheKindsMessage) {
    struct Case {
        std::int16_t kind;
        char key;
        const char* message;
    };
    const Case cases[] = {
        {vTXT::kWholeNumber, 'a', "Enter Numeric value"},
        {vTXT::kWholeNumber, '.', "Enter Numeric value"},
        {vTXT::kLetters, '1', "Enter Alphabets only"},
        {vTXT::kLetters, '-', "Enter Alphabets only"},
        {vTXT::kLettersDigits, ' ', "Enter AlphaNumeric Characters Only"},
        {vTXT::kDecimal, 'x', "Enter Numeric value"},
        {vTXT::kDateLong, 'a', "Invalid Data"},
        {vTXT::kDateShort, ' ', "Invalid Data"},
    };
    for (const auto& c : cases) {
        ScriptedUi ui;
        auto field = field_of_kind(ui, c.kind);
        SCOPED_TRACE(std::string("kind ") + std::to_string(c.kind) + " key '" + c.key + "'");
        EXPECT_EQ(field.key_press(c.key).action, KeyAction::cancel);
        EXPECT_EQ(field.text(), "");
        ui.expect_message(c.message);
        ui.expect_nothing_more();
        ASSERT_EQ(ui.shown().size(), 1u);
        EXPECT_EQ(ui.shown()[0].icon, MsgIcon::none);
        EXPECT_EQ(ui.shown()[0].buttons, "OK");
    }
}

TEST(vTXTKeys, AcceptsWhatEachKindTakes) {
    ScriptedUi ui;
    auto whole = field_of_kind(ui, vTXT::kWholeNumber);
    type(whole, "+-0123456789");
    EXPECT_EQ(whole.text(), "+-0123456789");
    auto letters = field_of_kind(ui, vTXT::kLetters);
    type(letters, "AZ az");
    EXPECT_EQ(letters.text(), "AZ AZ");
    auto alnum = field_of_kind(ui, vTXT::kLettersDigits);
    type(alnum, "a1Z9");
    EXPECT_EQ(alnum.text(), "A1Z9");
    auto date = field_of_kind(ui, vTXT::kDateShort);
    type(date, "31-12.15/");
    EXPECT_EQ(date.text(), "31-12.15/");
    EXPECT_TRUE(ui.messages().empty());
}

TEST(vTXTKeys, TakesOneDecimalPointOnly) {
    ScriptedUi ui;
    auto field = field_of_kind(ui, vTXT::kDecimal);
    type(field, "-12.5");
    EXPECT_EQ(field.text(), "-12.5");
    EXPECT_EQ(field.key_press('.').action, KeyAction::cancel);
    ui.expect_message("Enter Numeric value");
    type(field, "75");
    EXPECT_EQ(field.text(), "-12.575");
    // Typing over the point may put it back elsewhere.
    field.set_selection(3, 1);
    EXPECT_EQ(field.key_press('.').action, KeyAction::accept);
    EXPECT_EQ(field.text(), "-12.575");
    ui.expect_nothing_more();
}

TEST(vTXTKeys, IncludeWinsOverExcludeAndOverTheKind) {
    ScriptedUi ui;
    auto field = field_of_kind(ui, vTXT::kWholeNumber);
    field.set_Include("/X");
    field.set_Exclude("/-");
    EXPECT_EQ(field.key_press('/').action, KeyAction::accept);
    EXPECT_EQ(field.key_press('x').action, KeyAction::accept);  // upper-cased before the lists are read
    EXPECT_EQ(field.text(), "/X");
    EXPECT_EQ(field.key_press('-').action, KeyAction::cancel);
    ui.expect_message("InValid Data");
    ui.expect_nothing_more();
}

TEST(vTXTKeys, ExcludeRefusesEvenWhatTheKindTakes) {
    ScriptedUi ui;
    auto field = field_of_kind(ui, vTXT::kFreeText);
    field.set_Exclude("'");
    EXPECT_EQ(field.key_press('\'').action, KeyAction::cancel);
    EXPECT_EQ(field.text(), "");
    ui.expect_message("InValid Data");
}

TEST(vTXTKeys, ReadsOnlyTheFirstFiftyOneCharactersOfTheLists) {
    ScriptedUi ui;
    auto field = field_of_kind(ui, vTXT::kWholeNumber);
    field.set_Include(std::string(50, '#') + "X");
    EXPECT_EQ(field.key_press('x').action, KeyAction::accept);
    EXPECT_THROW(field.set_Include(std::string(51, '#') + "Y"), std::invalid_argument);
    EXPECT_THROW(field.set_Exclude(std::string(52, '#')), std::invalid_argument);
}

// The lists are UTF-8 text read character by character: a letter beyond ASCII in
// Exclude stops that letter, and the limit of 51 counts characters.
TEST(vTXTKeys, ListsAreReadByCharacterNotByByte) {
    ScriptedUi ui;
    auto field = field_of_kind(ui, vTXT::kFreeText);
    field.set_Exclude("\xC3\xA9");  // é
    EXPECT_EQ(field.key_press(0xE9).action, KeyAction::cancel);
    ui.expect_message("InValid Data");
    // The bytes of "é" are not characters of their own.
    EXPECT_EQ(field.key_press(0xC3).action, KeyAction::accept);
    EXPECT_EQ(field.text(), "\xC3\x83");  // Ã as typed, not the first byte of "é"
    ui.expect_nothing_more();

    auto numbers = field_of_kind(ui, vTXT::kWholeNumber);
    numbers.set_Include("\xE2\x82\xB9");  // ₹, three bytes
    EXPECT_EQ(numbers.key_press(0x20B9).action, KeyAction::accept);
    // Fifty-one characters of three bytes each are a list of the limit, not beyond it.
    std::string rupees;
    for (int i = 0; i < 51; ++i) rupees += "\xE2\x82\xB9";
    EXPECT_NO_THROW(numbers.set_Include(rupees));
    EXPECT_THROW(numbers.set_Include(rupees + "X"), std::invalid_argument);
    ui.expect_nothing_more();
}

TEST(vTXTKeys, PassesBackspaceAndEscapeWhateverTheKind) {
    ScriptedUi ui;
    auto field = field_of_kind(ui, vTXT::kLetters);
    field.set_Exclude(std::string(1, '\b'));
    type(field, "ABC");
    EXPECT_EQ(field.key_press(vTXT::kBackspace).action, KeyAction::accept);
    EXPECT_EQ(field.key_press(vTXT::kEscape).action, KeyAction::accept);
    EXPECT_EQ(field.text(), "AB");
    field.set_selection(0, 2);
    field.key_press(vTXT::kBackspace);
    EXPECT_EQ(field.text(), "");
    EXPECT_TRUE(ui.messages().empty());
}

TEST(vTXTKeys, StopsTakingCharactersAtMaxLength) {
    ScriptedUi ui;
    auto field = field_of_kind(ui, vTXT::kWholeNumber);
    field.set_MaxLength(3);
    type(field, "12345");
    EXPECT_EQ(field.text(), "123");
    field.set_selection(1, 1);
    type(field, "9");
    EXPECT_EQ(field.text(), "193");
    EXPECT_TRUE(ui.messages().empty());
}

TEST(vTXTKeys, MovesOnWithTabOnlyWhenTheFieldPasses) {
    ScriptedUi ui;
    auto field = field_of_kind(ui, vTXT::kDateShort);
    type(field, "31-13-15");
    EXPECT_EQ(field.key_press(vTXT::kTab).action, KeyAction::cancel);
    ui.expect_message("Not a valid date");
    field.set_text("31/12/15");
    EXPECT_EQ(field.key_press(vTXT::kTab).action, KeyAction::tab_move);
    ui.expect_nothing_more();
}

TEST(vTXTKeys, RaisesTheEnterEventThenChecksTheFieldAsATabWould) {
    ScriptedUi ui;
    auto field = field_of_kind(ui, vTXT::kWholeNumber);
    field.set_MinLength(2);
    int raised = 0;
    int code_seen = 0;
    std::size_t messages_at_event = 99;
    field.set_on_enter([&](int& key) {
        ++raised;
        code_seen = key;
        messages_at_event = ui.messages().size();
    });
    type(field, "7");
    EXPECT_EQ(field.key_press(vTXT::kEnter).action, KeyAction::cancel);
    EXPECT_EQ(messages_at_event, 0u);  // the event comes before the check's message
    ui.expect_message("Data must be at least of 2 characters");
    type(field, "5");
    EXPECT_EQ(field.key_press(vTXT::kEnter).action, KeyAction::enter);
    EXPECT_EQ(raised, 2);
    EXPECT_EQ(code_seen, 13);
    ui.expect_nothing_more();
}

struct LeaveCase {
    std::int16_t kind;
    const char* text;
    const char* message;  // nullptr: passes
};

void PrintTo(const LeaveCase& c, std::ostream* os) {
    *os << "kind " << c.kind << " \"" << c.text << "\" -> " << (c.message ? c.message : "passes");
}

class vTXTLeave : public ::testing::TestWithParam<LeaveCase> {};

TEST_P(vTXTLeave, ChecksTheTextWithTheMessagesInTheirOrder) {
    const LeaveCase& c = GetParam();
    ScriptedUi ui;
    auto field = field_of_kind(ui, c.kind);
    field.set_text(c.text);
    EXPECT_EQ(field.validate(), c.message == nullptr);
    if (c.message) ui.expect_message(c.message);
    ui.expect_nothing_more();
}

INSTANTIATE_TEST_SUITE_P(
    ShortDates, vTXTLeave,
    ::testing::Values(LeaveCase{vTXT::kDateShort, "31/12/15", nullptr},
                      LeaveCase{vTXT::kDateShort, "31-13-15", "Not a valid date"},
                      LeaveCase{vTXT::kDateShort, "31-12-2015", "Date Format dd-mm-yy"},
                      LeaveCase{vTXT::kDateShort, "30-02-16", "Not a valid date"},
                      LeaveCase{vTXT::kDateShort, "1-1-2015", "Date Format must be dd-mm-yy"},
                      LeaveCase{vTXT::kDateShort, "1/12/201", "Not a valid date"},
                      LeaveCase{vTXT::kDateShort, "1/12/2015", "Date Format dd-mm-yy"},
                      LeaveCase{vTXT::kDateShort, "1.1.2015", "Date Format must be dd-mm-yy"},
                      LeaveCase{vTXT::kDateShort, "01.01.15", nullptr}));

INSTANTIATE_TEST_SUITE_P(
    LongDates, vTXTLeave,
    ::testing::Values(LeaveCase{vTXT::kDateLong, "31-12-2015", nullptr},
                      LeaveCase{vTXT::kDateLong, "31/12/15", "Date Format must be dd-mm-yyyy"},
                      LeaveCase{vTXT::kDateLong, "1/12/2015", "Date Format must be dd-mm-yyyy"},
                      LeaveCase{vTXT::kDateLong, "31-13-2015", "Not a valid date"},
                      LeaveCase{vTXT::kDateLong, "29-02-2015", "Not a valid date"},
                      LeaveCase{vTXT::kDateLong, "29.02.2016", nullptr}));

INSTANTIATE_TEST_SUITE_P(Lengths, vTXTLeave,
                         ::testing::Values(LeaveCase{vTXT::kFreeText, "", nullptr},
                                           LeaveCase{vTXT::kFreeText, "AB", nullptr},
                                           LeaveCase{vTXT::kDateShort, "", nullptr}));

TEST(vTXTLeaveLength, RefusesAShortValueButNeverAnEmptyOne) {
    ScriptedUi ui;
    auto field = field_of_kind(ui, vTXT::kDateShort);
    field.set_MinLength(10);
    EXPECT_TRUE(field.validate());
    field.set_text("31-13");
    EXPECT_FALSE(field.validate());  // the length is checked before the date
    ui.expect_message("Data must be at least of 10 characters");
    ui.expect_nothing_more();
}

TEST(vTXTProperties, AreSavedInTheirOrderAndReadBack) {
    ScriptedUi ui;
    vTXT field(ui);
    field.set_ValidateData(vTXT::kDecimal);
    field.set_MaxLength(12);
    field.set_MinLength(1);
    field.set_Include("%");
    field.set_Exclude("'\"");
    const auto saved = field.properties();
    ASSERT_EQ(saved.size(), 5u);
    EXPECT_EQ(saved[0], std::make_pair(std::string("ValidateData"), std::string("4")));
    EXPECT_EQ(saved[1].first, "MaxLength");
    EXPECT_EQ(saved[2].first, "MinLength");
    EXPECT_EQ(saved[3].first, "Include");
    EXPECT_EQ(saved[4].first, "Exclude");
    vTXT loaded(ui);
    loaded.read_properties(saved);
    EXPECT_EQ(loaded.ValidateData(), 4);
    EXPECT_EQ(loaded.MaxLength(), 12);
    EXPECT_EQ(loaded.MinLength(), 1);
    EXPECT_EQ(loaded.Include(), "%");
    EXPECT_EQ(loaded.Exclude(), "'\"");
}

}  // namespace
}  // namespace brenlow
