#include "orvo/testing/Process.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

namespace {

using Orvo::Testing::ProcessResult;

struct Line {
    const char* buffer;
    const char* time;  // "<sec>.<nsec>"
    int priority;
    const char* tag;
    const char* message;  // as stored: \n, \t and \\ escaped
};

class DlogutilTest : public ::testing::Test {
protected:
    void SetUp() override { device.clearLogs(); }

    // Records are written in the device's own format, so that their times are known.
    void write(const std::vector<Line>& lines)
    {
        for (const Line& line : lines) {
            std::ofstream(device.dir() + "/log/" + line.buffer + ".log", std::ios::app)
                << line.time << "\t321\t654\t" << line.priority << "\t" << line.tag << "\t" << line.message << "\n";
        }
    }

    ProcessResult dlogutil(const std::vector<std::string>& args)
    {
        std::vector<std::string> argv{Orvo::Testing::toolPath("dlogutil")};
        argv.insert(argv.end(), args.begin(), args.end());
        return Orvo::Testing::runProcess(argv, "", {{"TZ", "UTC"}});
    }

    std::string dump(std::vector<std::string> args)
    {
        args.insert(args.begin(), "-d");
        const ProcessResult result = dlogutil(args);
        EXPECT_EQ(0, result.exitCode) << result.err;
        EXPECT_EQ("", result.err);
        return result.out;
    }

    void expectUsageError(const std::vector<std::string>& args)
    {
        const ProcessResult result = dlogutil(args);
        EXPECT_NE(0, result.exitCode);
        EXPECT_EQ("", result.out);
        EXPECT_EQ(1, std::count(result.err.begin(), result.err.end(), '\n')) << result.err;
    }

    Orvo::Testing::TestDevice device;
};

TEST_F(DlogutilTest, PrintsTheChosenBuffersMergedInTimeOrder)
{
    write({{"main", "100.000000002", 4, "T", "main second"},
           {"main", "300.000000000", 4, "T", "main fourth"},
           {"system", "100.000000001", 4, "T", "system first"},
           {"system", "200.000000000", 4, "T", "system third"},
           {"radio", "150.000000000", 4, "T", "radio unchosen"}});
    EXPECT_EQ("main second\nmain fourth\n", dump({"-v", "raw"}));
    EXPECT_EQ("system first\nmain second\nsystem third\nmain fourth\n",
              dump({"-b", "main", "-b", "system", "-v", "raw"}));
    EXPECT_EQ("system first\nsystem third\n", dump({"-b", "system", "-b", "system", "-v", "raw"}));
}

TEST_F(DlogutilTest, FiltersByTagAndPriority)
{
    write({{"main", "1.000000000", 2, "A", "A verbose"},
           {"main", "2.000000000", 3, "A", "A debug"},
           {"main", "3.000000000", 4, "A", "A info"},
           {"main", "4.000000000", 6, "A", "A error"},
           {"main", "5.000000000", 3, "B", "B debug"},
           {"main", "6.000000000", 5, "B", "B warn"},
           {"main", "7.000000000", 7, "C", "C fatal"}});
    EXPECT_EQ("A info\nA error\nB warn\nC fatal\n", dump({"-v", "raw"}));
    EXPECT_EQ("A error\n", dump({"-v", "raw", "A:E"}));
    EXPECT_EQ("A debug\nA info\nA error\nB warn\nC fatal\n", dump({"-v", "raw", "A:D", "*:W"}));
    EXPECT_EQ("B debug\nB warn\n", dump({"-v", "raw", "B"}));
    EXPECT_EQ("C fatal\n", dump({"-v", "raw", "*:F"}));
    EXPECT_EQ("A verbose\nA debug\nA info\nA error\n", dump({"-v", "raw", "*:S", "A:V"}));
    EXPECT_EQ("", dump({"-v", "raw", "A:S"}));
}

TEST_F(DlogutilTest, BriefAndThreadTimeFormats)
{
    write({{"main", "86400.123456789", 4, "orvotv.Orvo", "hello"}, {"main", "86401.000000000", 6, "X", "bad"}});
    EXPECT_EQ("I/orvotv.Orvo(321): hello\nE/X(321): bad\n", dump({}));
    EXPECT_EQ("01-02 00:00:00.123   321   654 I orvotv.Orvo: hello\n"
              "01-02 00:00:01.000   321   654 E X: bad\n",
              dump({"-v", "threadtime"}));
}

TEST_F(DlogutilTest, MessagesWithLineFeedsSpanLinesExceptInJson)
{
    write({{"main", "1.000000000", 4, "T", "one\\ntwo\\tend\\\\"}});
    EXPECT_EQ("I/T(321): one\ntwo\tend\\\n", dump({}));
    EXPECT_EQ("one\ntwo\tend\\\n", dump({"-v", "raw"}));
    const std::string json = dump({"-v", "json"});
    EXPECT_EQ(1, std::count(json.begin(), json.end(), '\n'));
    EXPECT_NE(std::string::npos, json.find("\"message\":\"one\\ntwo\\tend\\\\\""));
}

TEST_F(DlogutilTest, JsonIsOneEscapedObjectPerRecord)
{
    write({{"apps", "1700000000.000000042", 5, "tag \"q\"", "quote \" bell \x07 del \x7f e\xc3\xa9 bad \xff \xc3 end"},
           {"apps", "1700000000.500000000", 4, "T", "surrogate \xed\xa0\x80 overlong \xc0\xaf emoji \xf0\x9f\x98\x80"}});
    EXPECT_EQ("{\"time\":\"2023-11-14T22:13:20.000000042Z\",\"pid\":321,\"tid\":654,\"buffer\":\"apps\","
              "\"priority\":5,\"tag\":\"tag \\\"q\\\"\",\"message\":\"quote \\\" bell \\u0007 del \\u007f "
              "e\xc3\xa9 bad \\ufffd \\ufffd end\"}\n"
              "{\"time\":\"2023-11-14T22:13:20.500000000Z\",\"pid\":321,\"tid\":654,\"buffer\":\"apps\","
              "\"priority\":4,\"tag\":\"T\",\"message\":\"surrogate \\ufffd\\ufffd\\ufffd overlong \\ufffd\\ufffd "
              "emoji \xf0\x9f\x98\x80\"}\n",
              dump({"-b", "apps", "-v", "json"}));
}

TEST_F(DlogutilTest, InvalidArgumentsAreOneLineErrors)
{
    expectUsageError({"-d", "-b", "events"});
    expectUsageError({"-d", "-b"});
    expectUsageError({"-d", "-v", "long"});
    expectUsageError({"-d", "A:X"});
    expectUsageError({"-d", ":I"});
    expectUsageError({"-d", "-x"});
}

TEST_F(DlogutilTest, HelpDescribesTheOptions)
{
    const ProcessResult result = dlogutil({"--help"});
    EXPECT_EQ(0, result.exitCode);
    for (const char* option : {"-d", "-b", "-v", "TAG:P", "json"})
        EXPECT_NE(std::string::npos, result.out.find(option)) << option;
}

} // namespace
