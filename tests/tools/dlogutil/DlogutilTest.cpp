#include "orvo/testing/Process.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>

#include <sys/stat.h>
#include <unistd.h>

using Lines = std::vector<std::pair<std::string, std::string>>; // buffer, line of its log file

// A record in the device's own format, so that its time is known; \n, \t and \\ are escaped there.
static std::string record(const std::string& time, int priority, const std::string& tag, const std::string& message) {
    return time + "\t321\t654\t" + std::to_string(priority) + "\t" + tag + "\t" + message;
}

static Orvo::Testing::ProcessResult dlogutil(std::vector<std::string> args) {
    args.insert(args.begin(), Orvo::Testing::toolPath("dlogutil"));
    return Orvo::Testing::runProcess(args, "", {{"TZ", "UTC"}});
}

// A device whose logs hold the lines, for tools run one after another.
struct LoggedDevice {
    explicit LoggedDevice(const Lines& lines) {
        for (const auto& [buffer, line] : lines)
            std::ofstream(device.dir() + "/log/" + buffer + ".log", std::ios::app) << line << "\n";
    }
    Orvo::Testing::TestDevice device;
};

TEST(Dlogutil, PrintsTheChosenBuffersAndPrioritiesMergedInTimeOrder) {
    Lines lines = {{"main", "not a record"},
                   {"system", record("5.000000001", 4, "S", "S/4")},
                   {"radio", record("6.000000000", 4, "R", "R/4")}};
    for (const std::string message : {"A/2", "A/3", "A/4", "A/6", "B/3", "B/5", "C/7"}) { // tag/priority
        const std::string time = std::to_string(lines.size()) + ".000000002";
        lines.push_back({"main", record(time, message[2] - '0', message.substr(0, 1), message)});
    }
    const std::string main = "--------- beginning of main\n";
    const std::string system = "--------- beginning of system\n";
    const std::vector<std::pair<std::vector<std::string>, std::string>> rows = {
        // By default main and system together, each run of records under its buffer's line.
        {{"-v", "raw"}, system + "S/4\n" + main + "A/4\nA/6\nB/5\nC/7\n"},
        {{"-b", "system", "-b", "main", "-b", "system", "-vraw"}, system + "S/4\n" + main + "A/4\nA/6\nB/5\nC/7\n"},
        {{"-bmain", "-v", "raw"}, "A/4\nA/6\nB/5\nC/7\n"},
        {{"-bmain", "-vraw", "A:E"}, "A/6\n"},
        {{"-bmain", "-vraw", "A:D", "*:W"}, "A/3\nA/4\nA/6\nB/5\nC/7\n"},
        {{"-bmain", "-vraw", "B"}, "B/3\nB/5\n"},
        {{"-bmain", "-vraw", "*:F"}, "C/7\n"},
        {{"-bmain", "-vraw", "*:S", "A:V"}, "A/2\nA/3\nA/4\nA/6\n"},
        {{"-bmain", "-vraw", "A:S"}, ""},
        // Priority letters in any case and as numbers, several specs in one argument.
        {{"-bmain", "-vraw", "a:e"}, ""},
        {{"-bmain", "-vraw", "A:e,B:w"}, "A/6\nB/5\n"},
        {{"-bmain", "-vraw", "A:6 B:5", "C:s"}, "A/6\nB/5\n"},
        {{"-bmain", "-vraw", "A:3, *:7"}, "A/3\nA/4\nA/6\nC/7\n"},
        // A bare * is *:V; -s silences every tag no spec names.
        {{"-bmain", "-vraw", "*"}, "A/2\nA/3\nA/4\nA/6\nB/3\nB/5\nC/7\n"},
        {{"-bmain", "-vraw", "-s"}, ""},
        {{"-s", "-bmain", "-vraw", "B:D"}, "B/3\nB/5\n"},
        // -t N: the last N records that pass the filter, then exit (no -d needed).
        {{"-bmain", "-vraw", "-t", "2"}, "B/5\nC/7\n"},
        {{"-bmain", "-vraw", "-t0"}, ""},
        {{"-t", "3", "-bmain", "-vraw", "A"}, "A/3\nA/4\nA/6\n"},
        {{"-vraw", "A:E", "-bmain"}, "A/6\n"}}; // options after the filter specs

    const LoggedDevice logged(lines);
    for (const auto& [args, printed] : rows) {
        std::vector<std::string> dumpArgs = args;
        dumpArgs.insert(dumpArgs.begin(), "-d");
        const auto result = dlogutil(dumpArgs);
        EXPECT_EQ(0, result.exitCode) << result.err;
        EXPECT_EQ("", result.err);
        EXPECT_EQ(printed, result.out) << ::testing::PrintToString(args);
    }
}

TEST(Dlogutil, FormatsAsThePlatformPadsWithThePrefixOnEveryLine) {
    const Lines lines = {{"main", record("86400.123456789", 4, "orvotv.Orvo", "one\\ntwo\\tend\\\\")},
                         {"main", record("86401.000000000", 6, "X", "bad")}};
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"brief", "I/orvotv.Orvo(  321): one\nI/orvotv.Orvo(  321): two\tend\\\nE/X       (  321): bad\n"},
        {"process", "I(  321) one  (orvotv.Orvo)\nI(  321) two\tend\\  (orvotv.Orvo)\nE(  321) bad  (X)\n"},
        {"tag", "I/orvotv.Orvo: one\nI/orvotv.Orvo: two\tend\\\nE/X       : bad\n"},
        {"thread", "I(  321:  654) one\nI(  321:  654) two\tend\\\nE(  321:  654) bad\n"},
        {"time",
         "01-02 00:00:00.123 I/orvotv.Orvo(  321): one\n01-02 00:00:00.123 I/orvotv.Orvo(  321): two\tend\\\n"
         "01-02 00:00:01.000 E/X       (  321): bad\n"},
        {"threadtime",
         "01-02 00:00:00.123   321   654 I orvotv.Orvo: one\n"
         "01-02 00:00:00.123   321   654 I orvotv.Orvo: two\tend\\\n"
         "01-02 00:00:01.000   321   654 E X       : bad\n"},
        {"long",
         "[ 01-02 00:00:00.123   321:  654 I/orvotv.Orvo ]\none\ntwo\tend\\\n\n"
         "[ 01-02 00:00:01.000   321:  654 E/X        ]\nbad\n\n"},
        {"raw", "one\ntwo\tend\\\nbad\n"}};
    const LoggedDevice logged(lines);
    for (const auto& [format, printed] : rows) {
        const auto result = dlogutil({"-d", "-b", "main", "-v", format});
        EXPECT_EQ(printed, result.out) << format;
    }
    EXPECT_EQ(rows[0].second, dlogutil({"-d", "-b", "main"}).out) << "brief is the default";
}

// A message may hold anything; a terminal must not obey what it holds.
TEST(Dlogutil, TextFormatsShowControlCharactersInsteadOfPassingThemToTheTerminal) {
    const LoggedDevice logged({{"main", record("1.000000000", 4, "t\x1b]0;x\x07",
                                               "clear \x1b[2J cr \r bs \b del \x7f csi \xc2\x9b"
                                               "31m e\xc3\xa9")}});
    for (const char* format : {"brief", "process", "tag", "thread", "time", "threadtime", "long", "raw"})
        EXPECT_EQ(std::string::npos, dlogutil({"-d", "-v", format}).out.find_first_of("\x1b\r\b\x7f")) << format;
    EXPECT_EQ("I/t^[]0;x^G: clear ^[[2J cr ^M bs ^H del ^? csi \\u009b31m e\xc3\xa9\n",
              dlogutil({"-d", "-b", "main", "-v", "tag"}).out);
}

TEST(Dlogutil, EscapesJsonAndAlwaysGivesTheTimeAsAString) {
    const Lines lines = {
        {"apps", record("1700000000.000000042", 5, "tag \"q\"",
                        "quote \" nl\\n tab\\t bs\\\\ bell \x07 del \x7f e\xc3\xa9 bad \xff \xc3 end")},
        // Past any calendar year a time still prints, as a string of seconds.
        {"apps", record("67768036191676799.000000001", 4, "T", "far")},
        {"apps", record("9223372036854775807.000000000", 4, "T", "end of time")}};
    const LoggedDevice logged(lines);
    EXPECT_EQ(
        "{\"time\":\"2023-11-14T22:13:20.000000042Z\",\"pid\":321,\"tid\":654,\"buffer\":\"apps\","
        "\"priority\":5,\"tag\":\"tag \\\"q\\\"\",\"message\":\"quote \\\" nl\\n tab\\t bs\\\\ "
        "bell \\u0007 del \\u007f e\xc3\xa9 bad \\ufffd \\ufffd end\"}\n"
        "{\"time\":\"67768036191676799.000000001\",\"pid\":321,\"tid\":654,\"buffer\":\"apps\","
        "\"priority\":4,\"tag\":\"T\",\"message\":\"far\"}\n"
        "{\"time\":\"9223372036854775807.000000000\",\"pid\":321,\"tid\":654,\"buffer\":\"apps\","
        "\"priority\":4,\"tag\":\"T\",\"message\":\"end of time\"}\n",
        dlogutil({"-d", "-b", "apps", "-v", "json"}).out);
}

// -c empties the chosen buffers only; -g tells what each holds; -f appends to a file.
TEST(Dlogutil, ClearsTellsSizesAndWritesToAFile) {
    const LoggedDevice logged({{"main", record("1.000000000", 4, "T", "main")},
                               {"system", record("2.000000000", 4, "T", "system")},
                               {"radio", record("3.000000000", 4, "T", std::string(2000, 'r'))}});
    EXPECT_EQ(
        "main: ring buffer is unlimited (1Kb consumed), max entry is 4204b, max payload is 4076b\n"
        "radio: ring buffer is unlimited (2Kb consumed), max entry is 4204b, max payload is 4076b\n",
        dlogutil({"-g", "-b", "main", "-b", "radio"}).out);
    const std::string file = logged.device.dir() + "/saved.txt";
    for (int round = 0; round < 2; ++round) {
        const auto saved = dlogutil({"-d", "-v", "raw", "-f", file});
        EXPECT_EQ(0, saved.exitCode) << saved.err;
        EXPECT_EQ("", saved.out);
    }
    std::ifstream in(file);
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const std::string once = "--------- beginning of main\nmain\n--------- beginning of system\nsystem\n";
    EXPECT_EQ(once + once, text);

    const auto cleared = dlogutil({"-c"});
    EXPECT_EQ(0, cleared.exitCode) << cleared.err;
    EXPECT_EQ("", cleared.out + cleared.err);
    EXPECT_EQ("", dlogutil({"-d"}).out);
    EXPECT_EQ(2000u, dlogutil({"-d", "-v", "raw", "-b", "radio"}).out.size() - 1) << "radio was not selected";
    EXPECT_EQ(0, dlogutil({"-c", "-b", "radio", "-b", "apps"}).exitCode) << "a missing buffer is empty already";
    EXPECT_EQ("", dlogutil({"-d", "-b", "radio"}).out);
}

TEST(Dlogutil, InvalidArgumentsAreOneLineErrors) {
    for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{{"-d", "-b", "events"},
                                                                                      {"-d", "-v", "color"},
                                                                                      {"-d", "A:X"},
                                                                                      {"-d", ":I"},
                                                                                      {"-d", "A:9"},
                                                                                      {"-d", "A:B:W"},
                                                                                      {"-d", "A:I,:W"},
                                                                                      {"-d", "-t", "x"},
                                                                                      {"-cg"},
                                                                                      {"-d", "-f", "/nonexistent/x"}}) {
        const auto result = dlogutil(args);
        EXPECT_NE(0, result.exitCode) << args.back();
        EXPECT_EQ(0u, result.err.find("dlogutil: ")) << result.err;
        EXPECT_EQ(1, std::count(result.err.begin(), result.err.end(), '\n')) << result.out << result.err;
    }
}

TEST(Dlogutil, ALinkOrFifoWhereALogBelongsIsAnErrorNotAnEmptyLog) {
    const LoggedDevice logged({{"main", record("1.000000000", 4, "T", "kept")}});
    const std::string log = logged.device.dir() + "/log/system.log";
    const std::vector<std::pair<std::string, std::function<int()>>> cases = {
        {"a link", [&] { return ::symlink((logged.device.dir() + "/log/main.log").c_str(), log.c_str()); }},
        {"a FIFO", [&] { return ::mkfifo(log.c_str(), 0644); }}};
    for (const auto& [what, make] : cases) {
        std::remove(log.c_str());
        ASSERT_EQ(0, make()) << what;
        for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{{"-d"}, {"-t", "1"}}) {
            const auto result = dlogutil(args);
            EXPECT_EQ(1, result.exitCode) << what;
            EXPECT_EQ(0u, result.err.find("dlogutil: " + log + ": ")) << what << ": " << result.err;
        }
    }
}
