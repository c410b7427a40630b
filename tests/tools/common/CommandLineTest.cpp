#include "CommandLine.h"

#include <gtest/gtest.h>

namespace Orvo::Tools {
namespace {

// What a tool with -d, -v FMT, --json and --width=N would see: the options in order as
// "letter=value", then "|" and the operands.
std::string parsed(const std::vector<std::string>& arguments, const char* shortOptions = "dv:") {
    static const option longOptions[] = {
        {"json", no_argument, nullptr, 'j'}, {"width", required_argument, nullptr, 'w'}, {nullptr, 0, nullptr, 0}};
    std::string seen;
    const std::vector<std::string> operands =
        parseCommandLine(arguments, shortOptions, longOptions, [&](int option, const char* value) {
            seen += std::string(1, static_cast<char>(option)) + "=" + (value ? value : "") + " ";
        });
    seen += "|";
    for (const std::string& operand : operands)
        seen += " " + operand;
    return seen;
}

TEST(CommandLine, TakesOptionsAnywhereGroupedWithEqualsAndUntilTheEnd) {
    const std::pair<std::vector<std::string>, std::string> rows[] = {
        {{"a", "-d", "b"}, "d= | a b"},
        {{"-dv", "raw", "a"}, "d= v=raw | a"},
        {{"-vraw", "-d"}, "v=raw d= |"},
        {{"a", "--width=50", "--json", "b"}, "w=50 j= | a b"},
        {{"--width", "50"}, "w=50 |"},
        {{"-v", "-5", "-5", "-.5"}, "v=-5 | -5 -.5"},
        {{"-d", "--", "-v", "--json"}, "d= | -v --json"},
        {{"-", "a"}, "| - a"},
    };
    for (const auto& [arguments, expected] : rows)
        EXPECT_EQ(parsed(arguments), expected) << testing::PrintToString(arguments);
    EXPECT_EQ(parsed({"-d", "cmd", "-d", "-x"}, "+d"), "d= | cmd -d -x") << "+ stops at the first operand";
    EXPECT_EQ(parsed({"-d"}) + parsed({"-d"}), "d= |d= |") << "a second scan starts afresh";
}

TEST(CommandLine, NamesTheOptionItRefuses) {
    const std::pair<std::vector<std::string>, std::string> rows[] = {
        {{"-x"}, "unknown option -x"},
        {{"-dx"}, "unknown option -x"},
        {{"--width=5", "-dq"}, "unknown option -q"},
        {{"--bogus=1"}, "unknown option --bogus"},
        {{"--json=1"}, "unknown option --json"},
        {{"-v"}, "-v needs a value"},
        {{"a", "--width"}, "--width needs a value"},
    };
    for (const auto& [arguments, message] : rows) {
        try {
            parsed(arguments);
            ADD_FAILURE() << "accepted " << testing::PrintToString(arguments);
        } catch (const UsageError& error) {
            EXPECT_EQ(error.what(), message);
        }
    }
}

} // namespace
} // namespace Orvo::Tools
