// The scripted Ui is what every screen test leans on, so its failures must be loud.
#include "support/scripted_ui.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace brenlow {
namespace {

using test::ScriptedUi;
using test::ShownBox;

TEST(ScriptedUi, AnswersQuestionsInTheOrderQueuedAndRecordsEachBox) {
    ScriptedUi ui;
    ui.answer_no().answer_yes().answer_input("2016").answer_open_file("/tmp/a.xlsx");
    EXPECT_FALSE(ui.ask_yes_no("Delete ?", MsgIcon::question, false, "Tarrow"));
    EXPECT_TRUE(ui.ask_yes_no("Continue ?"));
    ui.message("Saved", MsgIcon::information);
    EXPECT_EQ(ui.input_box("Year"), "2016");
    EXPECT_EQ(ui.choose_open_file("Import"), "/tmp/a.xlsx");
    ASSERT_EQ(ui.shown().size(), 5u);
    EXPECT_EQ(ui.shown()[0].default_button, "No");
    EXPECT_EQ(ui.shown()[0].buttons, "YesNo");
    EXPECT_EQ(ui.shown()[0].title, "Tarrow");
    EXPECT_EQ(ui.shown()[1].default_button, "Yes");
    EXPECT_EQ(ui.shown()[2].icon, MsgIcon::information);
    EXPECT_EQ(ui.shown()[4].kind, ShownBox::Kind::open_file);
    EXPECT_EQ(ui.questions(), (std::vector<std::string>{"Delete ?", "Continue ?"}));
    EXPECT_EQ(ui.messages(), (std::vector<std::string>{"Saved"}));
}

TEST(ScriptedUi, FailsTheTestWhenAQuestionHasNoAnswerQueued) {
    EXPECT_NONFATAL_FAILURE(
        {
            ScriptedUi ui;
            ui.ask_yes_no("Do you really want to Delete selected 'Opening' Entry?");
        },
        "Do you really want to Delete selected 'Opening' Entry?");
}

TEST(ScriptedUi, FailsTheTestWhenQueuedAnswersAreLeftOver) {
    EXPECT_NONFATAL_FAILURE(
        {
            ScriptedUi ui;
            ui.answer_yes();
        },
        "never asked for");
}

TEST(ScriptedUi, FailsTheTestWhenTheExpectedMessageIsNotTheNextOne) {
    EXPECT_NONFATAL_FAILURE(
        {
            ScriptedUi ui;
            ui.message("InValid Data");
            ui.expect_message("Invalid Data");
        },
        "InValid Data");
    EXPECT_NONFATAL_FAILURE(
        {
            ScriptedUi ui;
            ui.expect_message("Not a valid date");
        },
        "no further message");
    EXPECT_NONFATAL_FAILURE(
        {
            ScriptedUi ui;
            ui.message("Not a valid date");
            ui.expect_nothing_more();
        },
        "unexpected message");
}

}  // namespace
}  // namespace brenlow
