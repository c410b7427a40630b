#include "orvo/testing/Process.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <vconf.h>

#include <algorithm>
#include <fstream>

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
                                                        {"double", "db/t/k", "0.1", "0.100000"},
                                                        {"bool", "db/t/k", "1", "1"},
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
                                               {"set", "-t", "bool", "db/x", "true"},
                                               {"set", "-t", "in", "db/x", "1", "-q"},
                                               {"get", "-t", "int", "db/x"},
                                               {"set", "-r", "-t", "int", "db/x", "1"},
                                               {"get", "db/nothing/"},
                                               {"get", "db/" + std::string(300, 'k')},
                                               {"set", "-t", "double", "db/x", "1,5"},
                                               {"set", "-t", "float", "db/x", "1"},
                                               {"set", "-t", "int", "db/x"},
                                               {"set", "db/x", "1"},
                                               {"set", "-t", "int", "db/x", "1", "2"},
                                               {"set", "-t", "int", "settings/x", "1"},
                                               {"set", "-t", "string", "db/x", std::string(4097, 'v')},
                                               {"get"},
                                               {"get", "db/t/x"},
                                               {"unset", "db/t/x"}}) {
        const auto result = vconftool(args);
        EXPECT_NE(0, result.exitCode) << ::testing::PrintToString(args).substr(0, 60);
        EXPECT_EQ("", result.out);
        EXPECT_EQ(0u, result.err.find("vconftool: ")) << result.err;
        EXPECT_EQ(1, std::count(result.err.begin(), result.err.end(), '\n')) << result.err;
    }
}

// Lines pasted from the platform's package scripts: options anywhere, --opt=value, the type by
// prefix in any case, and the owner, group and label options accepted with one note.
TEST(Vconftool, TakesThePlatformsCommandLinesAndWarnsWhereTheTelevisionWouldDiffer) {
    const Orvo::Testing::TestDevice device;
    const struct {
        std::vector<std::string> args;
        std::string key, printed;
    } rows[] = {
        {{"set", "-t", "INT", "db/p/a", "7", "-f", "-u", "5000", "-g", "5000", "-s", "System", "-i"},
         "db/p/a",
         "db/p/a, value = 7 (int)\n"},
        {{"-f", "--type=Doub", "set", "db/p/b", "-2.5"}, "db/p/b", "db/p/b, value = -2.500000 (double)\n"},
        {{"set", "-ft", "b", "memory/p/c", "1"}, "memory/p/c", "memory/p/c, value = 1 (bool)\n"},
        {{"set", "-fts", "db/p/d", "--", "-x"}, "db/p/d", "db/p/d, value = -x (string)\n"},
    };
    for (const auto& row : rows) {
        const auto result = vconftool(row.args);
        EXPECT_EQ(0, result.exitCode) << result.err;
        EXPECT_EQ(row.printed, succeed({"get", row.key}));
    }
    const auto noted = vconftool(rows[0].args);
    EXPECT_EQ("vconftool: note: -i, -u, -g and -s have no effect on the emulated device\n", noted.err);

    // Without -f the television refuses an existing key: written here, with a warning.
    const auto unforced = vconftool({"set", "-t", "int", "db/p/a", "8"});
    EXPECT_EQ(0, unforced.exitCode);
    EXPECT_EQ("vconftool: warning: db/p/a already existed; the television refuses this set without -f\n", unforced.err);
    EXPECT_EQ("", vconftool({"set", "-t", "int", "db/p/new", "8"}).err);

    const auto bool2 = vconftool({"set", "-t", "bool", "db/p/e", "true"});
    EXPECT_NE(std::string::npos, bool2.err.find("the television would read it as a number")) << bool2.err;

    // A folder: its own keys, with -r everything below it.
    succeed({"set", "-t", "string", "db/p/sub/deep", "x"});
    EXPECT_EQ(
        "db/p/a, value = 8 (int)\ndb/p/b, value = -2.500000 (double)\ndb/p/d, value = -x (string)\n"
        "db/p/new, value = 8 (int)\n",
        succeed({"get", "db/p/"}));
    EXPECT_EQ("db/p/sub/deep, value = x (string)\n", succeed({"get", "--recursive", "db/p/sub/"}));
    EXPECT_NE(std::string::npos, succeed({"get", "-r", "db/p/"}).find("db/p/sub/deep, value = x (string)\n"));
}

// A damaged setting file or a key the device cannot hold is named as such, not as a code.
TEST(Vconftool, ExplainsACorruptSettingFileAndAnOverLongKey) {
    const Orvo::Testing::TestDevice device;
    succeed({"set", "-t", "int", "db/c/k", "1"});
    std::ofstream(device.dir() + "/vconf/db%2Fc%2Fk") << "int\nnot a number";
    const auto corrupt = vconftool({"get", "db/c/k"});
    EXPECT_EQ(1, corrupt.exitCode);
    EXPECT_EQ(
        "vconftool: db/c/k: the setting's file is corrupt (not type, line feed and value as vconf writes it); "
        "set the key again or unset it\n",
        corrupt.err);
    const std::string longKey = "db/" + std::string(300, 'k');
    const auto tooLong = vconftool({"set", "-t", "int", longKey, "1"});
    EXPECT_EQ(1, tooLong.exitCode);
    EXPECT_EQ("vconftool: " + longKey + ": the key is too long for the device (its file name is over 255 bytes)\n",
              tooLong.err);
}
