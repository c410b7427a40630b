// Log statements from several threads at once: every line whole, every sequence number unique.
#include "Common/Logging/Logging.h"
#include "orvo/testing/LogLines.h"

#include <dlog.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>
#include <vector>

namespace Orvo {
namespace Testing {
namespace {

constexpr int kThreads = 4;
constexpr int kLinesPerThread = 200;

TEST(ConcurrentLoggingTest, LinesStayWholeAndSequenceNumbersUnique) {
    TestDevice device;
    const std::string filler(100, '.');
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([t, &filler] {
            for (int i = 0; i < kLinesPerThread; ++i) {
                if (i % 2 == 0) {
                    ORVO_LOG(INF, "thread %d line %d %s", t, i, filler.c_str());
                } else {
                    ORVO_LOG_STREAM(INF) << "thread " << t << " line " << i << ' ' << filler;
                }
            }
        });
    }
    for (std::thread& thread : threads) thread.join();

    const std::vector<LogLine> lines = logLines(device, LOG_ID_MAIN);
    ASSERT_EQ(lines.size(), static_cast<std::size_t>(kThreads * kLinesPerThread));
    std::set<uint32_t> sequences;
    std::set<std::string> texts;
    for (const LogLine& line : lines) {
        ASSERT_TRUE(line.wellFormed);
        EXPECT_TRUE(sequences.insert(line.sequence).second) << line.sequence;
        const std::string message = line.text.substr(line.text.find('>') + 1);
        ASSERT_GE(message.size(), filler.size()) << message;
        EXPECT_EQ(message.substr(message.size() - filler.size()), filler);
        texts.insert(message);
    }
    EXPECT_EQ(texts.size(), lines.size());
}

} // namespace
} // namespace Testing
} // namespace Orvo
