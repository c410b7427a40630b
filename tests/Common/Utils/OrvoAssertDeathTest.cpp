// Failed assertions: the console line, the log line and the abort, in every build.
#include "ChildProcess.h"
#include "Common/Utils/OrvoAssert.h"
#include "orvo/testing/LogLines.h"

#include <boost/shared_ptr.hpp>
#include <dlog.h>
#include <gtest/gtest.h>

#include <csignal>
#include <string>

namespace Orvo {
namespace Testing {
namespace {

class OrvoAssertDeathTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!childrenCanHideConsole()) GTEST_SKIP() << "cannot keep the assertion off the real /dev/console";
    }

    // The single FTL line that the dying child left in the system buffer.
    std::string fatalLine() const {
        const std::vector<LogLine> lines = logLines(m_device, LOG_ID_SYSTEM);
        if (lines.size() != 1U || lines[0].priority != DLOG_FATAL || lines[0].level != "FTL") return "";
        return lines[0].text;
    }

    TestDevice m_device;
};

TEST_F(OrvoAssertDeathTest, FailureWritesConsoleAndLogThenAborts) {
    const int line = __LINE__ + 4;
    EXPECT_EXIT(
        {
            hideConsole();
            ORVO_ASSERT(1 + 1 == 3);
        },
        ::testing::KilledBySignal(SIGABRT),
        "Cannot open /dev/console\norvotv\\.Orvo: Direct \\[FTL\\]\\[[0-9]+ [^]]*\\] ASSERTION FAILED: 1 \\+ 1 == 3, "
        ".*TestBody\\(\\), OrvoAssertDeathTest\\.cpp:" + std::to_string(line) + "\n");
    const std::string logged = fatalLine();
    EXPECT_EQ(logged.compare(0, 15, "OrvoAssert.cpp:"), 0) << logged;
    EXPECT_NE(logged.find(">ASSERTION FAILED: 1 + 1 == 3, "), std::string::npos) << logged;
    EXPECT_NE(logged.find("OrvoAssertDeathTest.cpp:" + std::to_string(line)), std::string::npos) << logged;
}

TEST_F(OrvoAssertDeathTest, MessageFollowsOnItsOwnLine) {
    EXPECT_EXIT(
        {
            hideConsole();
            ORVO_ASSERT_MSG(false, "settings lost");
        },
        ::testing::KilledBySignal(SIGABRT), "ASSERTION FAILED: false, .*\nMESSAGE: settings lost\n");
    // The log line is longer than one dlog line only if the function text is; its end is the message.
    const std::string logged = fatalLine();
    EXPECT_EQ(logged.substr(logged.size() - std::string("\nMESSAGE: settings lost").size()), "\nMESSAGE: settings lost")
        << logged;
}

TEST_F(OrvoAssertDeathTest, BoostsOwnAssertionsEndHereToo) {
    EXPECT_EXIT(
        {
            hideConsole();
            boost::shared_ptr<int> empty;
            static_cast<void>(*empty);
        },
        ::testing::KilledBySignal(SIGABRT), "ASSERTION FAILED: px != 0, .*shared_ptr\\.hpp:[0-9]+\n");
    EXPECT_NE(fatalLine().find("ASSERTION FAILED: px != 0"), std::string::npos);
}

} // namespace
} // namespace Testing
} // namespace Orvo
