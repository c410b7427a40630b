// The dlog line sink: level routing, line layout, sequence numbers and the cutting of long texts.
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

class DlogSinkTest : public ::testing::Test {
protected:
    // Sends text through the sink and checks that the sink left it as it was.
    void sink(int32_t level, std::string text) {
        const std::string original = text;
        dlogLineSink(kLogTag, level, &text[0]);
        EXPECT_EQ(text, original);
    }

    std::vector<LogLine> mainLines() const { return logLines(m_device, LOG_ID_MAIN); }

    TestDevice m_device;
};

void expectConsecutive(const std::vector<LogLine>& lines) {
    for (std::size_t i = 1; i < lines.size(); ++i) EXPECT_EQ(lines[i].sequence, lines[i - 1].sequence + 1) << i;
}

std::vector<std::string> textsOf(const std::vector<LogLine>& lines) {
    std::vector<std::string> texts;
    for (const LogLine& line : lines) texts.push_back(line.text);
    return texts;
}

TEST_F(DlogSinkTest, LineCarriesEmptyModuleThreadSequenceAndLevel) {
    const int line = __LINE__ + 1;
    ORVO_LOG(INF, "hello %d", 42);
    const std::vector<Orvo::Emulator::LogRecord> records = m_device.logRecords(LOG_ID_MAIN);
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].tag, "orvotv.Orvo");
    EXPECT_EQ(records[0].priority, DLOG_INFO);
    const LogLine parsed = parseLogLine(records[0].message);
    ASSERT_TRUE(parsed.wellFormed) << records[0].message;
    EXPECT_EQ(records[0].message, "[][" + currentThreadText() + "][" + std::to_string(parsed.sequence) +
                                      "][INF] DlogSinkTest.cpp:" + std::to_string(line) + ">hello 42");
    EXPECT_NE(parsed.sequence, 0U);
}

TEST_F(DlogSinkTest, LevelsFollowTheRoutingTable) {
    struct Route {
        int32_t level;
        int buffer;
        int priority;
        const char* name;
    };
    const Route routes[] = {
        {VERBOSE, LOG_ID_MAIN, DLOG_VERBOSE, "VERBOSE"}, {DBG, LOG_ID_MAIN, DLOG_DEBUG, "DBG"},
        {INF, LOG_ID_MAIN, DLOG_INFO, "INF"},            {WRN, LOG_ID_MAIN, DLOG_WARN, "WRN"},
        {ERR, LOG_ID_SYSTEM, DLOG_WARN, "ERR"},          {FTL, LOG_ID_SYSTEM, DLOG_FATAL, "FTL"},
        {7, LOG_ID_SYSTEM, DLOG_ERROR, "INF"},           {0, LOG_ID_SYSTEM, DLOG_ERROR, "INF"},
    };
    for (const Route& route : routes) {
        m_device.clearLogs();
        sink(route.level, "routed");
        const std::vector<LogLine> lines = logLines(m_device, route.buffer);
        ASSERT_EQ(lines.size(), 1U) << route.level;
        EXPECT_EQ(lines[0].priority, route.priority) << route.level;
        EXPECT_EQ(lines[0].level, route.name) << route.level;
        EXPECT_EQ(lines[0].text, "routed");
        const int otherBuffer = route.buffer == LOG_ID_MAIN ? LOG_ID_SYSTEM : LOG_ID_MAIN;
        EXPECT_TRUE(logLines(m_device, otherBuffer).empty()) << route.level;
    }
}

TEST_F(DlogSinkTest, LevelSevenThroughTheLogCallIsAnErrorWithAnInfLine) {
    logPrintf(&dlogLineSink, kLogTag, 7, nullptr, 0, "seven");
    const std::vector<LogLine> lines = logLines(m_device, LOG_ID_SYSTEM);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].priority, DLOG_ERROR);
    EXPECT_EQ(lines[0].level, "INF");
}

TEST_F(DlogSinkTest, SequenceNumbersFollowEachOther) {
    ORVO_LOG(DBG, "one");
    ORVO_LOG(WRN, "two");
    ORVO_LOG(INF, "three");
    const std::vector<LogLine> lines = mainLines();
    ASSERT_EQ(lines.size(), 3U);
    expectConsecutive(lines);
}

TEST_F(DlogSinkTest, TextOf768BytesIsOneLineWithItsLineFeeds) {
    const std::string text = std::string(300, 'a') + "\n\n" + std::string(466, 'b');
    ASSERT_EQ(text.size(), 768U);
    sink(INF, text);
    EXPECT_EQ(textsOf(mainLines()), std::vector<std::string>{text});
}

TEST_F(DlogSinkTest, TextOf769BytesIsCutAtLineFeeds) {
    const std::string text = std::string(300, 'a') + "\n\n" + std::string(466, 'b') + "\n";
    ASSERT_EQ(text.size(), 769U);
    sink(INF, text);
    const std::vector<LogLine> lines = mainLines();
    EXPECT_EQ(textsOf(lines), (std::vector<std::string>{std::string(300, 'a'), "", std::string(466, 'b')}));
    expectConsecutive(lines);
}

TEST_F(DlogSinkTest, LongTextWithoutLineFeedsIsCutInto768ByteChunks) {
    std::string text;
    for (int i = 0; i < 2000; ++i) text += static_cast<char>('a' + i % 26);
    sink(ERR, text);
    const std::vector<LogLine> lines = logLines(m_device, LOG_ID_SYSTEM);
    EXPECT_EQ(textsOf(lines), (std::vector<std::string>{text.substr(0, 768), text.substr(768, 768), text.substr(1536)}));
    expectConsecutive(lines);
}

TEST_F(DlogSinkTest, PiecesOfExactlyWholeChunksGiveNoEmptyTail) {
    const std::string text = "\n" + std::string(768, 'a') + "\n" + std::string(1536, 'b');
    sink(INF, text);
    EXPECT_EQ(textsOf(mainLines()), (std::vector<std::string>{"", std::string(768, 'a'), std::string(768, 'b'),
                                                              std::string(768, 'b')}));
}

} // namespace
} // namespace Testing
} // namespace Orvo
