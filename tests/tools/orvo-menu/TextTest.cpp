#include "Json.h"
#include "Language.h"
#include "TextLayout.h"

#include <gtest/gtest.h>

#include <tuple>

namespace Orvo::Tools::MenuHost {

TEST(OrvoMenuTextLayout, WrapsCodePointsAtBlanksKeepingLineBreaks) {
    const std::tuple<std::string, std::size_t, std::vector<std::string>> rows[] = {
        {"one two three\n\nfour", 8, {"one two", "three", "", "four"}},
        {"ab ääääää", 4, {"ab", "ääää", "ää"}}, // a long word is cut between characters
        {"", 10, {""}},
        {"abc", 0, {"a", "b", "c"}},
    };
    for (const auto& [text, width, lines] : rows)
        EXPECT_EQ(wrapText(text, width), lines) << text;
}

TEST(OrvoMenuTextLayout, JoinsClipsAndBreaksLinesByCodePoints) {
    EXPECT_EQ(joinWithLeader("Mise à jour", "Oui", 20), "Mise à jour .... Oui");
    EXPECT_EQ(joinWithLeader("Title", "", 20), "Title");
    EXPECT_EQ(joinWithLeader("A rather long title", "Value", 10), "A rather long title  Value");
    EXPECT_EQ(clipToWidth("éééé", 2), "éé");
    EXPECT_EQ(richTextToPlain("a<br>b<br><br>c<br"), "a\nb\n\nc<br");
}

TEST(OrvoMenuLanguage, NextLanguageCyclesThroughTheCatalogues) {
    const std::vector<std::string> languages = {"de", "en", "fr"};
    const std::pair<const char*, const char*> rows[] = {{"de", "en"}, {"fr", "de"}, {"xx", "de"}};
    for (const auto& [current, next] : rows)
        EXPECT_EQ(nextLanguage(languages, current), next) << current;
}

// Whatever bytes the plug-in returns, the document stays valid JSON.
TEST(OrvoMenuJson, EscapesControlCharactersAndReplacesInvalidUtf8) {
    const std::pair<std::string, std::string> rows[] = {
        {"say \"hi\"\\\n\t\r", R"("say \"hi\"\\\n\t\r")"},
        {std::string("\x01\x1f\x7f\0", 4), R"("\u0001\u001f\u007f\u0000")"},
        {"Mise à jour 🙂", "\"Mise à jour 🙂\""},
        {"\xff\xc3", R"("\ufffd\ufffd")"},           // a stray byte, a cut sequence
        {"\xc0\xaf", R"("\ufffd\ufffd")"},           // overlong
        {"\xed\xa0\x80", R"("\ufffd\ufffd\ufffd")"}, // surrogate
    };
    for (const auto& row : rows)
        EXPECT_EQ(jsonString(row.first), row.second);
}

} // namespace Orvo::Tools::MenuHost
