// Log statements from several threads at once: every line whole, every sequence number unique.
#include "Common/Logging/Logging.h"
#include "orvo/testing/LogLines.h"

#include <dlog.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>
#include <vector>

namespace Orvo::Testing {
namespace {

TEST(ConcurrentLoggingTest, LinesStayWholeAndSequenceNumbersUnique) {
    const std::string filler(100, '.');
    std::set<std::string> expected;
    std::vector<std::thread> threads;
    TestDevice device;
    for (int t = 0; t < 4; ++t) {
        for (int i = 0; i < 200; ++i)
            expected.insert(std::to_string(t) + ' ' + std::to_string(i) + filler);
        threads.emplace_back([t, &filler] {
            for (int i = 0; i < 200; i += 2) {
                ORVO_LOG(INF, "%d %d%s", t, i, filler.c_str());
                ORVO_LOG_STREAM(INF) << t << ' ' << i + 1 << filler;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    std::set<uint32_t> sequences;
    std::set<std::string> messages;
    for (const LogLine& line : logLines(device, LOG_ID_MAIN)) {
        EXPECT_TRUE(sequences.insert(line.sequence).second) << line.sequence;
        EXPECT_TRUE(messages.insert(messageOf(line)).second) << line.text;
    }
    EXPECT_EQ(messages, expected);
}

} // namespace
} // namespace Orvo::Testing
