#include "controls/cli_ui.h"

#include <gtest/gtest.h>

#include <sstream>

namespace brenlow {
namespace {

TEST(CliUi, WritesMessagesToItsErrorStream) {
    std::ostringstream err;
    CliUi ui(err, false);
    ui.message("Enter Numeric value");
    ui.critical("Table locked", "Tarrow");
    EXPECT_EQ(err.str(), "Enter Numeric value\nerror: Tarrow: Table locked\n");
}

TEST(CliUi, StopsAtAQuestionUnlessToldToAnswerYes) {
    std::ostringstream err;
    CliUi ui(err, false);
    try {
        ui.ask_yes_no("Do you want to Cancel the Changes?");
        FAIL() << "the question was answered";
    } catch (const QuestionUnanswered& e) {
        EXPECT_EQ(e.question(), "Do you want to Cancel the Changes?");
    }
    EXPECT_THROW(ui.input_box("Enter the year"), QuestionUnanswered);

    CliUi yes(err, true);
    EXPECT_TRUE(yes.ask_yes_no("Continue ?", MsgIcon::question, false));
    EXPECT_EQ(yes.input_box("Enter the year", "", "2016"), "2016");
}

TEST(CliUi, NeverChoosesAFileItself) {
    std::ostringstream err;
    CliUi ui(err, true);
    EXPECT_THROW(ui.choose_open_file("Import"), QuestionUnanswered);
    EXPECT_THROW(ui.choose_save_file("Export", "chart.xlsx"), QuestionUnanswered);
}

TEST(CliUi, ReportsProgressAtMostOnceATenthPerStep) {
    std::ostringstream err;
    CliUi ui(err, false);
    for (int i = 0; i <= 1000; ++i) ui.progress("Calculating", i / 1000.0);
    ui.progress("Building chart", 0.0);
    ui.progress_done();
    std::istringstream lines(err.str());
    std::string line;
    int count = 0;
    while (std::getline(lines, line)) ++count;
    EXPECT_EQ(count, 12);  // 0%..100% of the first step, then the second step
    EXPECT_NE(err.str().find("Calculating 50%\n"), std::string::npos);
    EXPECT_NE(err.str().find("Building chart 0%\n"), std::string::npos);
}

}  // namespace
}  // namespace brenlow
