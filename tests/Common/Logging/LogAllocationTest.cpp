// What a log call costs in heap allocations, the dlog write included: an ordinary call (a text
// under 1,024 bytes) makes none, a longer text one. Every allocation of the process is counted by
// the executable's own allocator (AllocationShim.c); nothing on the way asks for aligned memory.
#include "AllocationShim.h"
#include "Common/Logging/Logging.h"
#include "orvo/testing/LogLines.h"

#include <dlog.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace Orvo::Testing {
namespace {

using namespace Orvo::Common::Logging;

template <typename Call>
long allocationsOf(Call call) {
    const long before = orvoAllocations();
    call();
    return orvoAllocations() - before;
}

class LogAllocationTest : public ::testing::Test {
protected:
    void SetUp() override { ORVO_LOG(INF, "warm-up"); } // set-up done once per process and thread

    TestDevice m_device;
};

TEST_F(LogAllocationTest, OnlyATextOver1023BytesAllocatesItsBufferOnceDlogWritesIncluded) {
    const std::pair<std::string, long> cases[] = {
        {"Model QE55, code 7.", 0},
        {std::string(1023, 'x'), 0}, // with its terminator, the whole stack buffer
        {std::string(2000, 'y'), 1}, // three dlog lines, still the one buffer
    };
    for (const auto& testCase : cases) {
        m_device.clearLogs();
        const char* text = testCase.first.c_str();
        EXPECT_EQ(allocationsOf([text] { logPrintf(&dlogLineSink, kLogTag, INF, nullptr, 0, "%s", text); }),
                  testCase.second)
            << testCase.first.size();
        std::string logged;
        for (const LogLine& line : logLines(m_device, LOG_ID_MAIN))
            logged += line.text;
        EXPECT_EQ(logged, testCase.first);
    }
    const unsigned char data[40] = {};
    EXPECT_EQ(allocationsOf([&data] { logPrintf(&dlogLineSink, kLogTag, INF, data, sizeof data, "dump"); }), 0);
}

// The emulated dlog's part: the first record of a device makes its log directory, and the
// longest record, every byte escaped on disk, makes the longest record line.
TEST_F(LogAllocationTest, TheDlogWriteAllocatesNothingWhateverItHolds) {
    std::filesystem::remove_all(m_device.dir() + "/log");
    const std::string tag(Orvo::Emulator::kAllocationFreeTagLength, '\t');
    std::string message;
    const std::size_t longest = LOG_MAX_SIZE - 23 - tag.size(); // the pipe record's limit
    while (message.size() < longest)
        message += "\\\t\n";
    message.resize(longest);
    EXPECT_EQ(allocationsOf([&] { __dlog_print(LOG_ID_MAIN, DLOG_INFO, tag.c_str(), "%s", message.c_str()); }), 0);
    const std::vector<Orvo::Emulator::LogRecord> records = m_device.logRecords(LOG_ID_MAIN);
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].tag, tag);
    EXPECT_EQ(records[0].message, message);
}

} // namespace
} // namespace Orvo::Testing
