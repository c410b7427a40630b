#include "InteractiveMenu.h"
#include "Language.h"

#include <gtest/gtest.h>

namespace Orvo {
namespace Emulator {
namespace MenuHost {
namespace {

TEST(OrvoMenuKeys, DecodesArrowsEnterAndCharacters) {
    EXPECT_EQ(decodeKey("\033[A").type, KeyType::Up);
    EXPECT_EQ(decodeKey("\033OB").type, KeyType::Down);
    EXPECT_EQ(decodeKey("\033").type, KeyType::Escape);
    EXPECT_EQ(decodeKey("\033[C").type, KeyType::Other);
    EXPECT_EQ(decodeKey("\r").type, KeyType::Enter);
    EXPECT_EQ(decodeKey("\003").type, KeyType::Interrupt);
    const Key key = decodeKey("jk");
    EXPECT_EQ(key.type, KeyType::Character);
    EXPECT_EQ(key.character, 'j');
    EXPECT_EQ(decodeKey("").type, KeyType::Other);
}

TEST(OrvoMenuLanguage, CyclesThroughTheCatalogueLanguages) {
    const std::vector<std::string> languages = {"de", "en", "fr"};
    EXPECT_EQ(nextLanguage(languages, "de"), "en");
    EXPECT_EQ(nextLanguage(languages, "fr"), "de");
    EXPECT_EQ(nextLanguage(languages, "pt"), "de");
    EXPECT_EQ(nextLanguage({}, "pt"), "pt");
}

MenuScreen sampleScreen() {
    MenuScreen screen;
    screen.view.language = "en";
    screen.view.branch.title = {true, 0, std::string("Software Update")};
    screen.view.branch.description = {true, 0, std::string("Branch help")};
    for (const char* title : {"First", "Second", "Third"}) {
        ItemView item;
        item.title = {true, 0, std::string(title)};
        item.description = {true, 0, std::string(title) + " help<br>more"};
        screen.view.items.push_back(item);
    }
    screen.view.items[1].kind = ItemKind::Toggle;
    screen.view.items[1].stateText = "On";
    screen.selected = 1;
    screen.status = "All fine";
    return screen;
}

TEST(OrvoMenuScreen, MarksTheSelectionAndShowsItsHelpAndValue) {
    const std::string text = renderScreen(sampleScreen(), 60, 30);
    EXPECT_NE(text.find("\033[7m > Second"), std::string::npos) << text;
    EXPECT_NE(text.find("[On]"), std::string::npos);
    EXPECT_NE(text.find("Second help\033[K\r\n more"), std::string::npos) << text;
    EXPECT_EQ(text.find("First help"), std::string::npos);
    EXPECT_NE(text.find("All fine"), std::string::npos);
    EXPECT_NE(text.find("Branch help"), std::string::npos);
}

TEST(OrvoMenuScreen, NeverWritesMoreRowsOrColumnsThanTheTerminalHas) {
    MenuScreen screen = sampleScreen();
    screen.view.branch.description.text = std::string(2000, 'x');
    for (std::size_t rows : {4u, 12u, 40u}) {
        const std::string text = renderScreen(screen, 30, rows);
        std::size_t lineCount = 1;
        for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at + 2)) ++lineCount;
        EXPECT_LE(lineCount, rows);
    }
    const std::string text = renderScreen(screen, 30, 40);
    EXPECT_EQ(text.find(std::string(30, 'x')), std::string::npos) << "lines are wrapped to the width";
}

} // namespace
} // namespace MenuHost
} // namespace Emulator
} // namespace Orvo
