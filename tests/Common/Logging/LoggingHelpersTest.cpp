// Level names and letters, the module name, the elapsed-time test and the boot-log formatter.
// These change process-wide state, so they have an executable of their own.
#include "Common/Logging/Logging.h"

#include <boost/chrono/system_clocks.hpp>
#include <gtest/gtest.h>

#include <string>

namespace Orvo::Testing {
namespace {

using namespace Orvo::Common::Logging;

TEST(LogLevelTest, NamesAndLettersFollowTheLevelTable) {
    const char* const names[] = {"UNKNOWN LEVEL", "VERBOSE", "DBG", "INF", "WRN", "ERR", "FTL", "UNKNOWN LEVEL"};
    for (int32_t level = -1; level <= 7; ++level) {
        EXPECT_STREQ(levelName(level), names[level < 0 ? 0 : level]) << level;
        EXPECT_EQ(levelLetter(level), "IIDIWCEI"[level < 0 ? 0 : level]) << level;
    }
}

TEST(HasElapsedTest, TheFirstCallFixesTheLimit) {
    constexpr int64_t kMinute = 60LL * 1000 * 1000 * 1000;
    const int64_t now = boost::chrono::steady_clock::now().time_since_epoch().count(); // nanoseconds
    EXPECT_FALSE(hasElapsed(now, 60000));
    EXPECT_TRUE(hasElapsed(now - 2 * kMinute, 1));
    // Read afresh: well under a millisecond passes, so the elapsed time is the limit itself.
    EXPECT_TRUE(hasElapsed(boost::chrono::steady_clock::now().time_since_epoch().count() - kMinute, 1)) << "at it";
    // Half a minute is far beyond the 1 ms asked for, yet short of the minute fixed first.
    EXPECT_FALSE(hasElapsed(now - kMinute / 2, 1));
}

TEST(ModuleNameTest, StartsEmptyTakesTheVersionSuffixAndHeadsBootLinesWhenEnabled) {
    EXPECT_STREQ(moduleName(), "");
    char buffer[64] = "untouched";
    formatBootLine(buffer, sizeof buffer, ERR, "field", "text");
    EXPECT_STREQ(buffer, "untouched");
    setModuleName("averylongname");
    EXPECT_STREQ(moduleName(), "averylongname-17.037.0");
    setBootLogEnabled(true);
    formatBootLine(buffer, sizeof buffer, ERR, "field", "text");
    setBootLogEnabled(false);
    EXPECT_STREQ(buffer,
                 "\x91"
                 "C\x90"
                 "averylon    field\x87"
                 "text\n"); // '\x90a' would be one escape
}

} // namespace
} // namespace Orvo::Testing
