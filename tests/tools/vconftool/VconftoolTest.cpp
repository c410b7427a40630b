// vconftool against the platform's newer (buxton2-based) tool, row by row.
#include "orvo/testing/Process.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <vconf.h>

static Orvo::Testing::ProcessResult vconftool(std::vector<std::string> args) {
    args.insert(args.begin(), Orvo::Testing::toolPath("vconftool"));
    return Orvo::Testing::runProcess(args);
}

TEST(Vconftool, EachCommandLineGivesThePlatformsOutputAndExitStatus) {
    const Orvo::Testing::TestDevice device;
    const auto help = vconftool({"--help"});
    ASSERT_EQ(0, help.exitCode);
    const std::string usage = help.out;
    EXPECT_NE(std::string::npos, usage.find("buxton2")) << "names the tool it follows";
    EXPECT_NE(std::string::npos, usage.find("The emulator's own")) << "marks its own additions";
    const struct {
        const char* row;
        std::vector<std::string> args;
        int exitCode;
        std::string out, err;
    } rows[] = {
        {"set on a missing key creates it; int base 0 (hex)", {"set", "-t", "int", "db/v/a", "0x10"}, 0, "", ""},
        {"get: Int32", {"get", "db/v/a"}, 0, "db/v/a, value = 16 (Int32)\n", ""},
        {"-f ignored; int base 0 (octal)", {"-f", "set", "-t", "int", "db/v/a", "010"}, 0, "", ""},
        {"get after overwrite", {"get", "db/v/a"}, 0, "db/v/a, value = 8 (Int32)\n", ""},
        {"bool is !!strtol", {"set", "-t", "bool", "db/v/b", "2"}, 0, "", ""},
        {"get: Boolean True", {"get", "db/v/b"}, 0, "db/v/b, value = True (Boolean)\n", ""},
        {"bool 0", {"set", "-t", "bool", "db/v/b", "0"}, 0, "", ""},
        {"get: Boolean False", {"get", "db/v/b"}, 0, "db/v/b, value = False (Boolean)\n", ""},
        {"double is strtod", {"set", "-t", "double", "memory/v/d", "1.5"}, 0, "", ""},
        {"get: Double %f", {"get", "memory/v/d"}, 0, "memory/v/d, value = 1.500000 (Double)\n", ""},
        {"string, any prefix", {"set", "-t", "string", "other/v/s", "a b"}, 0, "", ""},
        {"get: String", {"get", "other/v/s"}, 0, "other/v/s, value = a b (String)\n", ""},
        {"set of another type replaces it", {"set", "-t", "string", "db/v/a", "x y"}, 0, "", ""},
        {"get of the new type", {"get", "db/v/a"}, 0, "db/v/a, value = x y (String)\n", ""},
        {"-i -u -g -s -v -q accepted",
         {"set", "-i", "-u", "5000", "-g", "5000", "-s", "System", "-v", "-q", "-t", "int", "db/v/c", "-3"},
         0,
         "",
         ""},
        {"-d: each command on stderr",
         {"-d", "set", "-t", "int", "db/v/c", "4"},
         0,
         "",
         "buxton2ctl -d -- set-int32 system db/v/c 4\n"},
        {"-d: create after a set that found no key",
         {"-d", "set", "-t", "bool", "memory/v/new", "1"},
         0,
         "",
         "buxton2ctl -d -- set-bool memory memory/v/new 1\nbuxton2ctl -d -- create-bool memory memory/v/new 1\n"},
        {"get -r: every key matching ^P",
         {"get", "-r", "db/v/"},
         0,
         "db/v/a, value = x y (String)\ndb/v/b, value = False (Boolean)\ndb/v/c, value = 4 (Int32)\n",
         ""},
        {"get -r: a regular expression",
         {"get", "-r", "me.ory/v/"},
         0,
         "memory/v/d, value = 1.500000 (Double)\nmemory/v/new, value = True (Boolean)\n",
         ""},
        {"unset", {"unset", "db/v/c"}, 0, "", ""},
        {"get, key missing",
         {"get", "db/v/c"},
         1,
         "Error: Get: Layer 'system' Key 'db/v/c': No such file or directory\n",
         ""},
        {"get, volatile key missing",
         {"get", "memory/x"},
         1,
         "Error: Get: Layer 'memory' Key 'memory/x': No such file or directory\n",
         ""},
        {"trailing junk", {"set", "-t", "int", "db/v/a", "12abc"}, 1, "Error: Set: '12abc': Invalid number\n", ""},
        {"int overflow",
         {"set", "-t", "int", "db/v/a", "2147483648"},
         1,
         "Error: Set: '2147483648': Invalid number\n",
         ""},
        {"bool junk", {"set", "-t", "bool", "db/v/a", "true"}, 1, "Error: Set: 'true': Invalid number\n", ""},
        {"double junk", {"set", "-t", "double", "db/v/a", "1,5"}, 1, "Error: Set: '1,5': Invalid number\n", ""},
        {"double overflow", {"set", "-t", "double", "db/v/a", "1e999"}, 1, "Error: Set: '1e999': Invalid number\n", ""},
        {"-t exact: case", {"set", "-t", "INT", "db/v/a", "1"}, 1, "Type 'INT': Invalid type\n" + usage, ""},
        {"-t exact: no longer word",
         {"set", "-t", "integer", "db/v/a", "1"},
         1,
         "Type 'integer': Invalid type\n" + usage,
         ""},
        {"commands matched exactly", {"sets", "db/v/a"}, 1, usage, ""},
        {"no command", {}, 1, usage, ""},
        {"set without a value", {"set", "-t", "int", "db/v/a"}, 1, usage, ""},
        {"unknown option", {"get", "-x", "db/v/a"}, 1, usage, ""},
    };
    for (const auto& row : rows) {
        const auto result = vconftool(row.args);
        EXPECT_EQ(row.exitCode, result.exitCode) << row.row;
        EXPECT_EQ(row.out, result.out) << row.row;
        EXPECT_EQ(row.err, result.err) << row.row;
    }
    int value = 0;
    EXPECT_EQ(0, vconf_get_bool("memory/v/new", &value)) << "the library reads a key the tool made";
    EXPECT_EQ(1, value);
}
