#include "Branch.h"
#include "TextLayout.h"

#include <gtest/gtest.h>

namespace Orvo {
namespace Emulator {
namespace MenuHost {
namespace {

TEST(OrvoMenuTextLayout, CountsCodePointsNotBytes) {
    EXPECT_EQ(displayWidth("Aktualisierung"), 14u);
    EXPECT_EQ(displayWidth("Mise à jour"), 11u);
    EXPECT_EQ(clipToWidth("éééé", 2), "éé");
}

TEST(OrvoMenuTextLayout, WrapsAtBlanksAndKeepsLineBreaks) {
    const std::vector<std::string> lines = wrapText("one two three\n\nfour", 8);
    EXPECT_EQ(lines, (std::vector<std::string>{"one two", "three", "", "four"}));
}

TEST(OrvoMenuTextLayout, CutsWordsLongerThanTheLineWithoutSplittingCharacters) {
    const std::vector<std::string> lines = wrapText("ab ääääää", 4);
    EXPECT_EQ(lines, (std::vector<std::string>{"ab", "ääää", "ää"}));
    EXPECT_EQ(wrapText("", 10), (std::vector<std::string>{""}));
    EXPECT_EQ(wrapText("abc", 0).size(), 3u);
}

TEST(OrvoMenuTextLayout, JoinsTitleAndValueToTheFullWidth) {
    const std::string line = joinWithLeader("Auto Update", "On", 20);
    EXPECT_EQ(line, "Auto Update ..... On");
    EXPECT_EQ(displayWidth(line), 20u);
    EXPECT_EQ(joinWithLeader("Title", "", 20), "Title");
    EXPECT_EQ(joinWithLeader("A rather long title", "Value", 10), "A rather long title  Value");
}

TEST(OrvoMenuTextLayout, RichTextLineBreaksBecomeNewlines) {
    EXPECT_EQ(richTextToPlain("a<br>b<br><br>c"), "a\nb\n\nc");
    EXPECT_EQ(richTextToPlain("no breaks <b>"), "no breaks <b>");
    EXPECT_EQ(richTextToPlain("<br"), "<br");
}

} // namespace
} // namespace MenuHost
} // namespace Emulator
} // namespace Orvo
