// The log call, the dlog line sink and the stream logger. The console sink is seen at work in the
// assertion death tests.
#include "Common/Logging/Logging.h"
#include "orvo/testing/LogLines.h"

#include <dlog.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace Orvo::Testing {
namespace {

using namespace Orvo::Common::Logging;
using Sunk = std::vector<std::pair<int32_t, std::string>>;

Sunk g_sunk;

// What the log call hands its sink.
Sunk sunk(int32_t level, const unsigned char* data, int32_t length, const std::string& message) {
    g_sunk.clear();
    logPrintf([](const char*, int32_t sinkLevel, char* text) { g_sunk.emplace_back(sinkLevel, text); }, kLogTag, level,
              data, length, "%s", message.c_str());
    return g_sunk;
}

std::vector<std::string> textsOf(const std::vector<LogLine>& lines) {
    std::vector<std::string> texts;
    for (const LogLine& line : lines)
        texts.push_back(line.text);
    return texts;
}

TEST(LogPrintfTest, DropsOnlyLevelsZeroAndVerbose) {
    for (int32_t level : {0, 1})
        EXPECT_EQ(sunk(level, nullptr, 0, "x"), Sunk{}) << level;
    for (int32_t level : {-1, 7})
        EXPECT_EQ(sunk(level, nullptr, 0, "x"), (Sunk{{level, "x"}}));
}

TEST(LogPrintfTest, TextsBeyondTheStackBufferArriveWholeUpTo16383Bytes) {
    const std::size_t lengths[][2] = {{1023, 1023}, {1024, 1024}, {16383, 16383}, {20000, 16383}};
    for (const auto& length : lengths) {
        EXPECT_EQ(sunk(INF, nullptr, 0, std::string(length[0], 'q')), (Sunk{{INF, std::string(length[1], 'q')}}))
            << length[0];
    }
}

TEST(LogPrintfTest, DumpRowsRepeatTheMessageAndCountRowsInHex) {
    std::vector<unsigned char> data;
    for (int i = 0; i < 176; ++i)
        data.push_back(static_cast<unsigned char>(i));
    const std::string row0 = " 0000=000102030405060708090a0b0c0d0e0f", heapSized(2000, 'h');
    const struct {
        std::string message;
        int32_t length;
        std::size_t rows;
        std::string first, last;
    } cases[] = {{"abc", 20, 2, "abc" + row0, "abc 0001=10111213"},
                 {"z", 0, 1, "z 0000=00010203", "z 0000=00010203"}, // a length of 0 dumps 4 bytes
                 {"m", 176, 11, "m" + row0, "m 000a=a0a1a2a3a4a5a6a7a8a9aaabacadaeaf"},
                 {heapSized, 20, 2, heapSized + row0, heapSized + " 0001=10111213"}};
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.message.substr(0, 3));
        const Sunk rows = sunk(INF, data.data(), testCase.length, testCase.message);
        ASSERT_EQ(rows.size(), testCase.rows);
        EXPECT_EQ(rows.front(), Sunk::value_type(INF, testCase.first));
        EXPECT_EQ(rows.back(), Sunk::value_type(INF, testCase.last));
    }
    // 1,000 characters leave 23 for the dump: the row header and eight bytes.
    const std::string message(1000, 'm');
    EXPECT_EQ(sunk(ERR, data.data(), 16, message), (Sunk{{WRN, "BELOW DATA MESSAGE IS TOO LONG TO BE DISPLAYED!"},
                                                         {ERR, message + " 0000=0001020304050607"}}));
}

TEST(DlogSinkTest, LevelsFollowTheRoutingTableInBracketedNumberedLines) {
    const struct {
        int32_t level;
        int buffer, priority;
        const char* name;
    } routes[] = {{VERBOSE, LOG_ID_MAIN, DLOG_VERBOSE, "VERBOSE"},
                  {DBG, LOG_ID_MAIN, DLOG_DEBUG, "DBG"},
                  {INF, LOG_ID_MAIN, DLOG_INFO, "INF"},
                  {WRN, LOG_ID_MAIN, DLOG_WARN, "WRN"},
                  {ERR, LOG_ID_SYSTEM, DLOG_WARN, "ERR"},
                  {FTL, LOG_ID_SYSTEM, DLOG_FATAL, "FTL"},
                  {7, LOG_ID_SYSTEM, DLOG_ERROR, "INF"},
                  {0, LOG_ID_SYSTEM, DLOG_ERROR, "INF"}};
    TestDevice device;
    uint32_t sequence = 0;
    for (const auto& route : routes) {
        SCOPED_TRACE(route.level);
        device.clearLogs();
        char text[] = "routed";
        dlogLineSink(kLogTag, route.level, text);
        const std::vector<Orvo::Emulator::LogRecord> records = device.logRecords(route.buffer);
        ASSERT_EQ(records.size(), 1U);
        sequence = sequence != 0 ? sequence + 1 : parseLogLine(records[0].message).sequence;
        EXPECT_EQ(records[0].tag, "orvotv.Orvo");
        EXPECT_EQ(records[0].priority, route.priority);
        EXPECT_EQ(records[0].message,
                  "[][" + currentThreadText() + "][" + std::to_string(sequence) + "][" + route.name + "] routed");
    }
}

// The counter starts with the process: the check runs in a freshly started copy of this test.
TEST(DlogSinkDeathTest, TheFirstLineOfAProcessIsNumberOne) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            TestDevice device;
            char text[] = "first";
            dlogLineSink(kLogTag, INF, text);
            const std::vector<LogLine> lines = logLines(device, LOG_ID_MAIN);
            std::exit(lines.size() == 1 ? static_cast<int>(lines[0].sequence) : 100);
        },
        ::testing::ExitedWithCode(1), "");
}

TEST(DlogSinkTest, LongTextsAreCutAtLineFeedsAndEvery768BytesIntoConsecutiveLines) {
    const std::string a(300, 'a'), b(466, 'b'), c(768, 'c');
    std::string alphabet;
    for (int i = 0; i < 2000; ++i)
        alphabet += static_cast<char>('a' + i % 26);
    const struct {
        std::string text;
        std::vector<std::string> lines;
    } cases[] = {{a + "\n\n" + b, {a + "\n\n" + b}},  // 768 bytes: one line, line feeds and all
                 {a + "\n\n" + b + "\n", {a, "", b}}, // 769 bytes
                 {alphabet, {alphabet.substr(0, 768), alphabet.substr(768, 768), alphabet.substr(1536)}},
                 {"\n" + c + "\n" + c + c, {"", c, c, c}}};
    TestDevice device;
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.text.size());
        device.clearLogs();
        std::string text = testCase.text;
        dlogLineSink(kLogTag, INF, &text[0]);
        EXPECT_EQ(text, testCase.text); // every cut mended
        const std::vector<LogLine> lines = logLines(device, LOG_ID_MAIN);
        EXPECT_EQ(textsOf(lines), testCase.lines);
        for (std::size_t i = 0; i < lines.size(); ++i)
            EXPECT_EQ(lines[i].sequence, lines[0].sequence + i);
    }
}

TEST(LogStatementTest, BothInterfacesPrefixFileAndLineAndDropVerbose) {
    TestDevice device;
    const int line = __LINE__ + 1;
    ORVO_LOG(VERBOSE, "verbose %d", 1);
    ORVO_LOG_STREAM(VERBOSE) << "verbose";
    ORVO_LOG(INF, "hello %d", 42);
    ORVO_LOG_STREAM(INF) << "Saved" << static_cast<const char*>(nullptr) << static_cast<char*>(nullptr)
                         << static_cast<const void*>(nullptr) << static_cast<int*>(nullptr) << nullptr << " 100%s "
                         << std::hex << 255;
    const std::string file = "LoggingTest.cpp:";
    EXPECT_EQ(textsOf(logLines(device, LOG_ID_MAIN)),
              (std::vector<std::string>{
                  file + std::to_string(line + 2) + ">hello 42",
                  file + std::to_string(line + 3) + ">Saved[nullptr][nullptr][nullptr][nullptr][nullptr] 100%s ff"}));
}

} // namespace
} // namespace Orvo::Testing
