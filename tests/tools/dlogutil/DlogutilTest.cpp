#include "orvo/testing/Process.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

using Lines = std::vector<std::pair<std::string, std::string>>; // buffer, line of its log file

// A record in the device's own format, so that its time is known; \n, \t and \\ are escaped there.
static std::string record(const std::string& time, int priority, const std::string& tag, const std::string& message) {
    return time + "\t321\t654\t" + std::to_string(priority) + "\t" + tag + "\t" + message;
}

static Orvo::Testing::ProcessResult dlogutil(std::vector<std::string> args) {
    args.insert(args.begin(), Orvo::Testing::toolPath("dlogutil"));
    return Orvo::Testing::runProcess(args, "", {{"TZ", "UTC"}});
}

// What `dlogutil -d <args>` prints on a device whose logs hold the lines; it must succeed quietly.
static std::string dump(const Lines& lines, std::vector<std::string> args) {
    const Orvo::Testing::TestDevice device;
    for (const auto& [buffer, line] : lines)
        std::ofstream(device.dir() + "/log/" + buffer + ".log", std::ios::app) << line << "\n";
    args.insert(args.begin(), "-d");
    const auto result = dlogutil(args);
    EXPECT_EQ(0, result.exitCode) << result.err;
    EXPECT_EQ("", result.err);
    return result.out;
}

TEST(Dlogutil, PrintsTheChosenBuffersAndPrioritiesMergedInTimeOrder) {
    Lines lines = {{"main", "not a record"},
                   {"system", record("5.000000001", 4, "S", "S/4")},
                   {"radio", record("6.000000000", 4, "R", "R/4")}};
    for (const std::string message : {"A/2", "A/3", "A/4", "A/6", "B/3", "B/5", "C/7"}) { // tag/priority
        const std::string time = std::to_string(lines.size()) + ".000000002";
        lines.push_back({"main", record(time, message[2] - '0', message.substr(0, 1), message)});
    }
    const std::vector<std::pair<std::vector<std::string>, std::string>> rows = {
        {{"-v", "raw"}, "A/4\nA/6\nB/5\nC/7\n"},
        {{"-b", "system", "-b", "main", "-b", "system", "-v", "raw"}, "S/4\nA/4\nA/6\nB/5\nC/7\n"},
        {{"-v", "raw", "A:E"}, "A/6\n"},
        {{"-v", "raw", "A:D", "*:W"}, "A/3\nA/4\nA/6\nB/5\nC/7\n"},
        {{"-v", "raw", "B"}, "B/3\nB/5\n"},
        {{"-v", "raw", "*:F"}, "C/7\n"},
        {{"-v", "raw", "*:S", "A:V"}, "A/2\nA/3\nA/4\nA/6\n"},
        {{"-v", "raw", "A:S"}, ""}};
    for (const auto& [args, printed] : rows)
        EXPECT_EQ(printed, dump(lines, args)) << ::testing::PrintToString(args);
}

TEST(Dlogutil, FormatsBriefThreadtimeAndEscapedJson) {
    const Lines lines = {
        {"main", record("86400.123456789", 4, "orvotv.Orvo", "one\\ntwo\\tend\\\\")},
        {"main", record("86401.000000000", 6, "X", "bad")},
        {"apps", record("1700000000.000000042", 5, "tag \"q\"",
                        "quote \" nl\\n tab\\t bs\\\\ bell \x07 del \x7f e\xc3\xa9 bad \xff \xc3 end")},
        {"apps",
         record("1700000000.500000000", 4, "T", "surrogate \xed\xa0\x80 overlong \xc0\xaf emoji \xf0\x9f\x98\x80")}};
    EXPECT_EQ("I/orvotv.Orvo(321): one\ntwo\tend\\\nE/X(321): bad\n", dump(lines, {}));
    EXPECT_EQ(
        "01-02 00:00:00.123   321   654 I orvotv.Orvo: one\ntwo\tend\\\n01-02 00:00:01.000   321   654 E X: bad\n",
        dump(lines, {"-v", "threadtime"}));
    EXPECT_EQ(
        "{\"time\":\"2023-11-14T22:13:20.000000042Z\",\"pid\":321,\"tid\":654,\"buffer\":\"apps\","
        "\"priority\":5,\"tag\":\"tag \\\"q\\\"\",\"message\":\"quote \\\" nl\\n tab\\t bs\\\\ "
        "bell \\u0007 del \\u007f e\xc3\xa9 bad \\ufffd \\ufffd end\"}\n"
        "{\"time\":\"2023-11-14T22:13:20.500000000Z\",\"pid\":321,\"tid\":654,\"buffer\":\"apps\","
        "\"priority\":4,\"tag\":\"T\",\"message\":\"surrogate \\ufffd\\ufffd\\ufffd overlong \\ufffd\\ufffd "
        "emoji \xf0\x9f\x98\x80\"}\n",
        dump(lines, {"-b", "apps", "-v", "json"}));
}

TEST(Dlogutil, InvalidArgumentsAreOneLineErrors) {
    for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
             {"-d", "-b", "events"}, {"-d", "-v", "long"}, {"-d", "A:X"}, {"-d", ":I"}, {"-d", "-x"}}) {
        const auto result = dlogutil(args);
        EXPECT_NE(0, result.exitCode) << args.back();
        EXPECT_EQ(1, std::count(result.err.begin(), result.err.end(), '\n')) << result.out << result.err;
    }
}
