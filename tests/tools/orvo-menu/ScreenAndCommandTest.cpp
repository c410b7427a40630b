#include "InteractiveMenu.h"
#include "Options.h"
#include "Script.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace Orvo::Tools::MenuHost {

// One read may deliver several keys; unknown control sequences are skipped whole.
TEST(OrvoMenuKeys, DecodesEveryKeyOfOneRead) {
    const std::pair<std::string, std::vector<KeyType>> rows[] = {
        {"\033[A\033OB\r\003", {KeyType::Up, KeyType::Down, KeyType::Enter, KeyType::Interrupt}},
        {"\033[1;5Cj", {KeyType::Other, KeyType::Character}},
        {"\033[", {KeyType::Escape, KeyType::Character}},
    };
    for (const auto& row : rows) {
        std::vector<KeyType> types;
        for (std::string bytes = row.first; !bytes.empty();) {
            std::size_t consumed = 0;
            types.push_back(decodeKey(bytes, consumed).type);
            bytes.erase(0, consumed);
        }
        EXPECT_EQ(types, row.second) << row.first.size() << " bytes";
    }
}

TEST(OrvoMenuScreen, NeverWritesMoreRowsOrColumnsThanTheTerminalHas) {
    MenuScreen screen;
    screen.view.branch.description = {true, 0, std::string(2000, 'x')};
    screen.view.items.resize(3);
    for (std::size_t rows : {4u, 12u, 40u}) {
        const std::string text = renderScreen(screen, 30, rows);
        std::size_t lines = 0; // each line the menu writes ends by clearing the rest of its row
        for (std::size_t at = text.find("\033[K"); at != std::string::npos; at = text.find("\033[K", at + 1))
            ++lines;
        EXPECT_LE(lines, rows);
        EXPECT_LT(std::count(text.begin(), text.end(), '\n'), static_cast<long>(rows));
        EXPECT_EQ(text.find(std::string(30, 'x')), std::string::npos) << "lines are wrapped to the width";
    }
}

TEST(OrvoMenuScript, RejectsBadLinesNamingTheLine) {
    const std::pair<std::vector<std::string>, std::string> rows[] = {
        {{"set db/x"}, "line 1: wrong number of arguments for 'set'"},
        {{"show a b"}, "line 1: wrong number of arguments for 'show'"},
        {{"set db/x 1.5"}, "line 1: '1.5' is not an integer"},
        {{"set db/x 99999999999"}, "line 1: '99999999999' is not an integer"},
    };
    for (const auto& row : rows) {
        try {
            parseScript(row.first);
            ADD_FAILURE() << "accepted: " << row.second;
        } catch (const ScriptError& error) {
            EXPECT_EQ(std::string(error.what()), row.second);
        }
    }
}

TEST(OrvoMenuOptions, RejectsMisuse) {
    // Arguments split at each blank, so "--language " ends in an empty one.
    for (const std::string misuse :
         {"--plugin", "--bogus", "dance", "check extra", "show a b", "show --json menu/x", "check --json", "--width 5",
          "--file f", "script show --file f", "--language ", "--language=", "--json=1", "show menu/no/such/item",
          "serve extra", "--port 65536", "serve --port 80x", "show --allow-remote"}) {
        std::vector<std::string> arguments{""};
        for (char c : misuse)
            c == ' ' ? void(arguments.emplace_back()) : arguments.back().push_back(c);
        EXPECT_THROW(parseOptions(arguments), UsageError) << misuse;
    }
    const Options serve = parseOptions({"serve", "--port", "8080", "--listen", "0.0.0.0"});
    EXPECT_EQ(serve.command, "serve");
    EXPECT_EQ(serve.port, 8080);
    EXPECT_EQ(serve.listen, "0.0.0.0");
    EXPECT_FALSE(serve.allowRemote);
    EXPECT_TRUE(parseOptions({"serve", "--listen", "0.0.0.0", "--allow-remote"}).allowRemote);
    EXPECT_EQ(parseOptions({"serve", "--port", "65535"}).port, 65535) << "the highest port";
}

} // namespace Orvo::Tools::MenuHost
