#include "orvo/testing/Process.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <vconf.h>

#include <algorithm>
#include <cstdlib>

namespace {

using Orvo::Testing::ProcessResult;

class VconftoolTest : public ::testing::Test {
protected:
    ProcessResult vconftool(const std::vector<std::string>& args)
    {
        std::vector<std::string> argv{Orvo::Testing::toolPath("vconftool")};
        argv.insert(argv.end(), args.begin(), args.end());
        return Orvo::Testing::runProcess(argv);
    }

    // Fails the test unless the command succeeded quietly; returns its output.
    std::string succeed(const std::vector<std::string>& args)
    {
        const ProcessResult result = vconftool(args);
        EXPECT_EQ(0, result.exitCode) << result.err;
        EXPECT_EQ("", result.err);
        return result.out;
    }

    // Fails the test unless the command failed with one line on standard error and no output.
    void fail(const std::vector<std::string>& args)
    {
        const ProcessResult result = vconftool(args);
        EXPECT_NE(0, result.exitCode) << args[0];
        EXPECT_EQ("", result.out);
        EXPECT_EQ(1, std::count(result.err.begin(), result.err.end(), '\n')) << result.err;
        EXPECT_EQ(0u, result.err.find("vconftool: ")) << result.err;
    }

    Orvo::Testing::TestDevice device;
};

TEST_F(VconftoolTest, SetAndGetEveryType)
{
    succeed({"set", "-t", "int", "db/t/int", "-5"});
    succeed({"set", "-t", "double", "db/t/dbl", "0.1", "-f"});
    succeed({"set", "-f", "-t", "string", "memory/t/str", "hello world"});
    succeed({"set", "-t", "string", "file/t/empty", ""});
    EXPECT_EQ("db/t/int, value = -5 (int)\n", succeed({"get", "db/t/int"}));
    EXPECT_EQ("db/t/dbl, value = 0.1 (double)\n", succeed({"get", "db/t/dbl"}));
    EXPECT_EQ("memory/t/str, value = hello world (string)\n", succeed({"get", "memory/t/str"}));
    EXPECT_EQ("file/t/empty, value =  (string)\n", succeed({"get", "file/t/empty"}));
}

TEST_F(VconftoolTest, BoolsAreGivenAsWordsOrDigitsAndPrintedAsDigits)
{
    const std::vector<std::pair<std::string, std::string>> cases{{"true", "1"}, {"false", "0"}, {"1", "1"}, {"0", "0"}};
    for (const auto& entry : cases) {
        succeed({"set", "-t", "bool", "db/t/b", entry.first});
        EXPECT_EQ("db/t/b, value = " + entry.second + " (bool)\n", succeed({"get", "db/t/b"})) << entry.first;
    }
}

TEST_F(VconftoolTest, ValuesSetByTheToolAreSeenAtOnceByTheLibraryAndTheOtherWay)
{
    int value = 0;
    succeed({"set", "-t", "int", "db/t/shared", "1"});
    ASSERT_EQ(0, vconf_get_int("db/t/shared", &value));
    EXPECT_EQ(1, value);
    succeed({"set", "-t", "int", "db/t/shared", "2"});
    ASSERT_EQ(0, vconf_get_int("db/t/shared", &value));
    EXPECT_EQ(2, value);
    ASSERT_EQ(0, vconf_set_str("db/t/shared", "three"));
    EXPECT_EQ("db/t/shared, value = three (string)\n", succeed({"get", "db/t/shared"}));
}

TEST_F(VconftoolTest, UnsetRemovesTheKey)
{
    succeed({"set", "-t", "int", "db/t/gone", "1"});
    succeed({"unset", "db/t/gone"});
    int value = 0;
    EXPECT_EQ(-1, vconf_get_int("db/t/gone", &value));
    fail({"get", "db/t/gone"});
    fail({"unset", "db/t/gone"});
}

TEST_F(VconftoolTest, InvalidCommandLinesAndFailedCallsAreOneLineErrors)
{
    fail({});
    fail({"frobnicate"});
    fail({"set", "-t", "int", "db/t/x", "12abc"});
    fail({"set", "-t", "int", "db/t/x", "99999999999"});
    fail({"set", "-t", "bool", "db/t/x", "yes"});
    fail({"set", "-t", "double", "db/t/x", "1,5"});
    fail({"set", "-t", "float", "db/t/x", "1"});
    fail({"set", "-t", "int", "db/t/x"});
    fail({"set", "-t"});
    fail({"set", "db/t/x", "1"});
    fail({"set", "-t", "int", "db/t/x", "1", "2"});
    fail({"set", "-t", "int", "settings/x", "1"});
    fail({"set", "-t", "string", "db/t/x", std::string(4097, 'v')});
    fail({"get"});
    fail({"get", "db/t/missing"});
    fail({"get", "nowhere/x"});
    int value = 0;
    EXPECT_EQ(-1, vconf_get_int("db/t/x", &value));
}

TEST_F(VconftoolTest, HelpDescribesTheCommands)
{
    const std::string help = succeed({"--help"});
    for (const char* command : {"vconftool set -t", "vconftool get", "vconftool unset"})
        EXPECT_NE(std::string::npos, help.find(command)) << command;
}

} // namespace
