// The stream logger: its text, its null-pointer safety and the levels it drops.
#include "Common/Logging/Logging.h"
#include "orvo/testing/LogLines.h"

#include <dlog.h>
#include <gtest/gtest.h>

#include <iomanip>
#include <string>

namespace Orvo {
namespace Testing {
namespace {

using namespace Orvo::Common::Logging;
using SafeOstringStream = LoggingClass::LoggingStream::SafeOstringStream;

TEST(SafeOstringStreamTest, NullPointersOfEveryKindPrintAsNullptr) {
    SafeOstringStream stream;
    const char* constText = nullptr;
    char* text = nullptr;
    const void* pointer = nullptr;
    const int* number = nullptr;
    stream << "a" << constText << "|" << text << "|" << pointer << "|" << number << "|" << nullptr << "z";
    EXPECT_EQ(stream.str(), "a[nullptr]|[nullptr]|[nullptr]|[nullptr]|[nullptr]z");
    EXPECT_TRUE(stream.good());
}

TEST(SafeOstringStreamTest, NonNullPointersAndManipulatorsWorkAsInAStandardStream) {
    SafeOstringStream stream;
    char word[] = "word";
    int value = 0;
    std::ostringstream expected;
    expected << static_cast<const void*>(&value);
    stream << word << ' ' << &value << std::endl << std::hex << 255 << std::string(" s");
    EXPECT_EQ(stream.str(), "word " + expected.str() + "\nff s");
}

class LoggingStreamTest : public ::testing::Test {
protected:
    TestDevice m_device;
};

TEST_F(LoggingStreamTest, EmitsTheCollectedTextWhenDestroyed) {
    const char* missing = nullptr;
    const int line = __LINE__ + 1;
    ORVO_LOG_STREAM(ERR) << "Error while saving selected submodel string" << missing << 7;
    const std::vector<LogLine> lines = logLines(m_device, LOG_ID_SYSTEM);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].level, "ERR");
    EXPECT_EQ(lines[0].text,
              "LoggingStreamTest.cpp:" + std::to_string(line) + ">Error while saving selected submodel string[nullptr]7");
}

TEST_F(LoggingStreamTest, TextIsNotTakenForAFormat) {
    ORVO_LOG_STREAM(INF) << "100%s %d";
    const std::vector<LogLine> lines = logLines(m_device, LOG_ID_MAIN);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].text.substr(lines[0].text.find('>')), ">100%s %d");
}

TEST_F(LoggingStreamTest, LevelsZeroAndVerboseAreNotEmitted) {
    ORVO_LOG_STREAM(VERBOSE) << "verbose";
    { LoggingClass::LoggingStream(kLogTag, 0, "file.cpp", 1).stream() << "level zero"; }
    for (int buffer = LOG_ID_MAIN; buffer < LOG_ID_MAX; ++buffer) EXPECT_TRUE(logLines(m_device, buffer).empty());
}

} // namespace
} // namespace Testing
} // namespace Orvo
