#include "InteractiveMenu.h"
#include "Language.h"

#include <gtest/gtest.h>

namespace Orvo {
namespace Emulator {
namespace MenuHost {
namespace {

// Decodes every key of one read, as the menu does.
std::vector<Key> decodeAll(std::string bytes) {
    std::vector<Key> keys;
    while (!bytes.empty()) {
        std::size_t consumed = 0;
        keys.push_back(decodeKey(bytes, consumed));
        if (consumed == 0) break;
        bytes.erase(0, consumed);
    }
    return keys;
}

std::vector<KeyType> typesOf(const std::vector<Key>& keys) {
    std::vector<KeyType> types;
    for (const Key& key : keys) types.push_back(key.type);
    return types;
}

TEST(OrvoMenuKeys, DecodesArrowsEnterAndCharacters) {
    EXPECT_EQ(typesOf(decodeAll("\033[A\033OB\r\003")),
              (std::vector<KeyType>{KeyType::Up, KeyType::Down, KeyType::Enter, KeyType::Interrupt}));
    const std::vector<Key> keys = decodeAll("jk");
    ASSERT_EQ(keys.size(), 2u);
    EXPECT_EQ(keys[1].type, KeyType::Character);
    EXPECT_EQ(keys[1].character, 'k');
}

TEST(OrvoMenuKeys, SplitsKeysThatArriveTogether) {
    EXPECT_EQ(typesOf(decodeAll("j\033[Bq")),
              (std::vector<KeyType>{KeyType::Character, KeyType::Down, KeyType::Character}));
    // Other control sequences are skipped whole, whatever their length.
    EXPECT_EQ(typesOf(decodeAll("\033[1;5Cj")), (std::vector<KeyType>{KeyType::Other, KeyType::Character}));
    EXPECT_EQ(typesOf(decodeAll("\033")), (std::vector<KeyType>{KeyType::Escape}));
    EXPECT_EQ(typesOf(decodeAll("\033[")), (std::vector<KeyType>{KeyType::Escape, KeyType::Character}));
    std::size_t consumed = 7;
    EXPECT_EQ(decodeKey("", consumed).type, KeyType::Other);
    EXPECT_EQ(consumed, 0u);
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
