#include "orvo/testing/Process.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <vconf.h>

#include <algorithm>

static Orvo::Testing::ProcessResult vconftool(std::vector<std::string> args) {
    args.insert(args.begin(), Orvo::Testing::toolPath("vconftool"));
    return Orvo::Testing::runProcess(args);
}

// The output of a command that must succeed quietly.
static std::string succeed(const std::vector<std::string>& args) {
    const auto result = vconftool(args);
    EXPECT_EQ(0, result.exitCode) << result.err;
    return result.out + result.err;
}

TEST(Vconftool, SetsGetsAndUnsetsEachTypeSeenAtOnceByTheLibraryAndReportsErrorsInOneLine) {
    const Orvo::Testing::TestDevice device;
    const std::vector<std::vector<std::string>> rows = {// type, key, value given, value printed
                                                        {"int", "db/t/k", "-5", "-5"},
                                                        {"double", "db/t/k", "0.1", "0.1"},
                                                        {"bool", "db/t/k", "true", "1"},
                                                        {"bool", "db/t/k", "0", "0"},
                                                        {"string", "memory/t/k", "hello world", "hello world"},
                                                        {"string", "file/t/k", "", ""}};
    for (const auto& row : rows) {
        EXPECT_EQ("", succeed({"set", "-t", row[0], row[1], row[2], "-f"}));
        EXPECT_EQ(row[1] + ", value = " + row[3] + " (" + row[0] + ")\n", succeed({"get", row[1]}));
    }
    int value = 0;
    for (const char* number : {"1", "2"}) { // no process caches a setting
        succeed({"set", "-t", "int", "db/t/shared", number});
        ASSERT_EQ(0, vconf_get_int("db/t/shared", &value));
        EXPECT_EQ(std::stoi(number), value);
    }
    ASSERT_EQ(0, vconf_set_str("db/t/shared", "three"));
    EXPECT_EQ("db/t/shared, value = three (string)\n", succeed({"get", "db/t/shared"}));
    EXPECT_EQ("", succeed({"unset", "db/t/shared"}));
    EXPECT_EQ(-1, vconf_get_int("db/t/shared", &value));
    // Invalid command lines and failed calls are one-line errors.
    for (const std::vector<std::string>& args :
         std::vector<std::vector<std::string>>{{},
                                               {"frobnicate"},
                                               {"set", "-t", "int", "db/t/x", "12abc"},
                                               {"set", "-t", "int", "db/x", "99999999999"},
                                               {"set", "-t", "bool", "db/x", "yes"},
                                               {"set", "-t", "double", "db/x", "1,5"},
                                               {"set", "-t", "float", "db/x", "1"},
                                               {"set", "-t", "int", "db/x"},
                                               {"set", "db/x", "1"},
                                               {"set", "-t", "int", "db/x", "1", "2"},
                                               {"set", "-t", "int", "settings/x", "1"},
                                               {"set", "-t", "string", "db/x", std::string(4097, 'v')},
                                               {"get"},
                                               {"get", "db/t/x"},
                                               {"get", "db/x"},
                                               {"unset", "db/t/x"}}) {
        const auto result = vconftool(args);
        EXPECT_NE(0, result.exitCode) << ::testing::PrintToString(args).substr(0, 60);
        EXPECT_EQ("", result.out);
        EXPECT_EQ(0u, result.err.find("vconftool: ")) << result.err;
        EXPECT_EQ(1, std::count(result.err.begin(), result.err.end(), '\n')) << result.err;
    }
}
