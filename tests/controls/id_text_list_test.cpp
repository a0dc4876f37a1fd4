#include "controls/id_text_list.h"

#include <gtest/gtest.h>

namespace brenlow {
namespace {

TEST(IdTextList, ReadsIdAndTextPairs) {
    const auto list = IdTextList::parse("#1;WRITTEN DOWN VALUE|#2;STRAIGHT LINE METHOD");
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list.items()[0], (IdText{"1", "WRITTEN DOWN VALUE"}));
    EXPECT_EQ(list.items()[1], (IdText{"2", "STRAIGHT LINE METHOD"}));
}

TEST(IdTextList, KeepsIdsAsTextSoDottedAndNegativeIdsSurvive) {
    const auto list = IdTextList::parse("#0; |#-1;N/A|#4;Plant|#4.1;Plant - Computers");
    EXPECT_EQ(list.text_of("-1"), "N/A");
    EXPECT_EQ(list.text_of("0"), " ");
    EXPECT_EQ(list.text_of("4.1"), "Plant - Computers");
    EXPECT_EQ(list.text_of("4"), "Plant");
    EXPECT_EQ(list.id_of("Plant - Computers"), "4.1");
    EXPECT_EQ(list.index_of_id("4.1"), 3);
    EXPECT_FALSE(list.text_of("4.10"));
    EXPECT_FALSE(list.id_of("PLANT"));
}

TEST(IdTextList, WritesBackTheTextItWasReadFrom) {
    const std::string text = "#0; |#-1;N/A|#1;Building;residential|#2;";
    EXPECT_EQ(IdTextList::parse(text).compose(), text);
}

TEST(IdTextList, BlockListsBeginWithTheBlankAndNotApplicableEntries) {
    const auto list = IdTextList::block_list({{"1", "Building"}, {"3.1", "Computers"}});
    EXPECT_EQ(list.compose(), "#0; |#-1;N/A|#1;Building|#3.1;Computers");
}

TEST(IdTextList, TakesAPlainWordListAsItsOwnIds) {
    const auto list = IdTextList::parse("WDV|SLM");
    EXPECT_EQ(list.id_of("SLM"), "SLM");
    EXPECT_TRUE(IdTextList::parse("").empty());
}

}  // namespace
}  // namespace brenlow
