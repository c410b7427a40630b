#include "Options.h"
#include "Script.h"

#include <gtest/gtest.h>

namespace Orvo {
namespace Emulator {
namespace MenuHost {
namespace {

TEST(OrvoMenuScript, ParsesActionsAndSkipsCommentsAndBlankLines) {
    const std::vector<ScriptAction> actions =
        parseScript({"# a comment", "set db/x -1", "", "   key   XF86Info ", "show", "show menu/a"});
    ASSERT_EQ(actions.size(), 4u);
    EXPECT_EQ(actions[0].verb, "set");
    EXPECT_EQ(actions[0].arguments, (std::vector<std::string>{"db/x", "-1"}));
    EXPECT_EQ(actions[0].line, 2u);
    EXPECT_EQ(actions[1].arguments, (std::vector<std::string>{"XF86Info"}));
    EXPECT_EQ(actions[1].line, 4u);
    EXPECT_TRUE(actions[2].arguments.empty());
}

TEST(OrvoMenuScript, RejectsBadLinesNamingTheLine) {
    const auto errorOf = [](const std::vector<std::string>& lines) -> std::string {
        try {
            parseScript(lines);
        } catch (const ScriptError& error) {
            return error.what();
        }
        return "accepted";
    };
    EXPECT_EQ(errorOf({"show", "frobnicate x"}), "line 2: unknown action 'frobnicate'");
    EXPECT_EQ(errorOf({"set db/x"}), "line 1: wrong number of arguments for 'set'");
    EXPECT_EQ(errorOf({"set db/x 1.5"}), "line 1: '1.5' is not an integer");
    EXPECT_EQ(errorOf({"set db/x 99999999999"}), "line 1: '99999999999' is not an integer");
    EXPECT_EQ(errorOf({"show a b"}), "line 1: wrong number of arguments for 'show'");
    EXPECT_EQ(errorOf({"key"}), "line 1: wrong number of arguments for 'key'");
}

TEST(OrvoMenuOptions, ReadsCommandsOptionsAndActions) {
    Options options = parseOptions({"--language", "de", "script", "key XF86Info", "show"});
    EXPECT_EQ(options.command, "script");
    EXPECT_EQ(options.language, "de");
    EXPECT_EQ(options.arguments, (std::vector<std::string>{"key XF86Info", "show"}));

    options = parseOptions({"show", "--json", "--plugin", "/x.so", "--width", "100"});
    EXPECT_TRUE(options.json);
    EXPECT_EQ(options.plugin, "/x.so");
    EXPECT_EQ(options.width, 100u);

    options = parseOptions({"script", "--", "-starts-with-dash"});
    EXPECT_EQ(options.arguments, (std::vector<std::string>{"-starts-with-dash"}));
}

TEST(OrvoMenuOptions, RejectsMisuse) {
    const std::vector<std::vector<std::string>> misuses = {
        {"--plugin"}, {"--bogus"}, {"dance"}, {"check", "extra"}, {"show", "a", "b"},
        {"show", "--json", "menu/x"}, {"check", "--json"}, {"--width", "5"}, {"--file", "f"},
        {"script", "show", "--file", "f"}, {"--language", ""},
    };
    for (const auto& misuse : misuses) {
        EXPECT_THROW(parseOptions(misuse), UsageError) << misuse.front();
    }
}

} // namespace
} // namespace MenuHost
} // namespace Emulator
} // namespace Orvo
