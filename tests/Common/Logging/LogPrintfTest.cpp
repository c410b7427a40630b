// The log call's formatting, truncation and data dump, read back from the device's dlog.
#include "Common/Logging/Logging.h"
#include "orvo/testing/LogLines.h"

#include <dlog.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Orvo {
namespace Testing {
namespace {

using namespace Orvo::Common::Logging;

class LogPrintfTest : public ::testing::Test {
protected:
    std::vector<std::string> texts(int buffer = LOG_ID_MAIN) const {
        std::vector<std::string> result;
        for (const LogLine& line : logLines(m_device, buffer)) result.push_back(line.text);
        return result;
    }

    TestDevice m_device;
};

std::vector<unsigned char> counting(int count) {
    std::vector<unsigned char> bytes;
    for (int i = 0; i < count; ++i) bytes.push_back(static_cast<unsigned char>(i));
    return bytes;
}

TEST_F(LogPrintfTest, StatementPrefixesBaseNameAndLine) {
    const int line = __LINE__ + 1;
    ORVO_LOG(INF, "Model string: %s, code %d.", "QE55", 7);
    EXPECT_EQ(texts(), (std::vector<std::string>{"LogPrintfTest.cpp:" + std::to_string(line) +
                                                 ">Model string: QE55, code 7."}));
}

TEST_F(LogPrintfTest, LevelsZeroAndVerboseAreDropped) {
    ORVO_LOG(VERBOSE, "verbose %d", 1);
    logPrintf(&dlogLineSink, kLogTag, 0, nullptr, 0, "level zero");
    for (int buffer = LOG_ID_MAIN; buffer < LOG_ID_MAX; ++buffer) EXPECT_TRUE(texts(buffer).empty()) << buffer;
}

TEST_F(LogPrintfTest, NegativeLevelIsNotDroppedAndGoesOutAsUnknown) {
    logPrintf(&dlogLineSink, kLogTag, -1, nullptr, 0, "odd level");
    const std::vector<LogLine> lines = logLines(m_device, LOG_ID_SYSTEM);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].priority, DLOG_ERROR);
    EXPECT_EQ(lines[0].level, "INF");
    EXPECT_EQ(lines[0].text, "odd level");
}

TEST_F(LogPrintfTest, TextsBeyondTheStackBufferArriveWhole) {
    for (std::size_t length : {1023U, 1024U, 5000U, 16383U}) {
        m_device.clearLogs();
        const std::string text(length, 'q');
        logPrintf(&dlogLineSink, kLogTag, INF, nullptr, 0, "%s", text.c_str());
        std::string joined;
        for (const std::string& piece : texts()) joined += piece;
        EXPECT_EQ(joined, text) << length;
    }
}

TEST_F(LogPrintfTest, TextLongerThanTheHeapBufferIsCutAtByte16383) {
    const std::string text(20000, 'x');
    logPrintf(&dlogLineSink, kLogTag, INF, nullptr, 0, "%s", text.c_str());
    std::string joined;
    for (const std::string& piece : texts()) joined += piece;
    EXPECT_EQ(joined, std::string(16383, 'x'));
}

TEST_F(LogPrintfTest, DumpOfTwentyBytesGivesTwoRowsEachRepeatingTheMessage) {
    const std::vector<unsigned char> data = counting(20);
    logPrintf(&dlogLineSink, kLogTag, INF, data.data(), 20, "abc");
    EXPECT_EQ(texts(), (std::vector<std::string>{"abc 0000=000102030405060708090a0b0c0d0e0f", "abc 0001=10111213"}));
}

TEST_F(LogPrintfTest, DumpRowHeadersCountRowsNotBytes) {
    const std::vector<unsigned char> data = counting(18 * 16);
    logPrintf(&dlogLineSink, kLogTag, INF, data.data(), 18 * 16, "m");
    const std::vector<std::string> rows = texts();
    ASSERT_EQ(rows.size(), 18U);
    EXPECT_EQ(rows[9].substr(0, 7), "m 0009=");
    EXPECT_EQ(rows[17], "m 0011=" + std::string("101112131415161718191a1b1c1d1e1f"));
}

TEST_F(LogPrintfTest, DumpLengthZeroOrNegativeDumpsFourBytes) {
    const unsigned char data[] = {0xde, 0xad, 0xbe, 0xef, 0x55};
    logPrintf(&dlogLineSink, kLogTag, INF, data, 0, "z");
    logPrintf(&dlogLineSink, kLogTag, INF, data, -3, "n");
    EXPECT_EQ(texts(), (std::vector<std::string>{"z 0000=deadbeef", "n 0000=deadbeef"}));
}

TEST_F(LogPrintfTest, DumpWithoutRoomWarnsAndLogsWhatFits) {
    // 1,000 characters leave 23 for the dump: the row header and eight bytes.
    const std::string message(1000, 'm');
    const std::vector<unsigned char> data = counting(16);
    logPrintf(&dlogLineSink, kLogTag, ERR, data.data(), 16, "%s", message.c_str());
    const std::vector<LogLine> main = logLines(m_device, LOG_ID_MAIN);
    ASSERT_EQ(main.size(), 1U);
    EXPECT_EQ(main[0].level, "WRN");
    EXPECT_EQ(main[0].text, "BELOW DATA MESSAGE IS TOO LONG TO BE DISPLAYED!");
    const std::vector<std::string> system = texts(LOG_ID_SYSTEM);
    ASSERT_EQ(system.size(), 2U);  // 1,022 bytes: two dlog lines
    EXPECT_EQ(system[0] + system[1], message + " 0000=0001020304050607");
}

TEST_F(LogPrintfTest, DumpBehindAHeapSizedMessageUsesTheHeapBuffer) {
    const std::string message(2000, 'h');
    const std::vector<unsigned char> data = counting(20);
    logPrintf(&dlogLineSink, kLogTag, INF, data.data(), 20, "%s", message.c_str());
    const std::vector<std::string> lines = texts();
    ASSERT_EQ(lines.size(), 6U);  // each row's 2,038 or 2,014 bytes go out in three pieces
    EXPECT_EQ(lines[2], std::string(464, 'h') + " 0000=000102030405060708090a0b0c0d0e0f");
    EXPECT_EQ(lines[5], std::string(464, 'h') + " 0001=10111213");
}

} // namespace
} // namespace Testing
} // namespace Orvo
