#include "orvo/testing/Process.h"
#include "orvo/testing/UserModeEmulation.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using namespace Orvo::Testing;

TEST(RunProcess, CollectsLargeOutputsOnBothStreamsWhileFeedingLargeInput) {
    // Far beyond a pipe's buffer on every stream: draining one stream at a time would deadlock.
    const std::string input(3 * 1024 * 1024, 'x');
    const ProcessResult result = runProcess(
        {"sh", "-c", "head -c 4000000 /dev/zero | tr '\\0' e >&2 & head -c 5000000 /dev/zero; wc -c; wait"}, input);
    EXPECT_EQ(result.err, std::string(4000000, 'e'));
    EXPECT_EQ(result.out, std::string(5000000, '\0') + std::to_string(input.size()) + "\n");
}

TEST(RunProcess, ReportsStatusSignalsAndExit127AndPassesTheEnvironment) {
    EXPECT_EQ(runProcess({"sh", "-c", "exit 7"}).exitCode, 7);
    EXPECT_EQ(runProcess({"sh", "-c", "kill -9 $$"}).exitCode, 128 + 9);
    EXPECT_EQ(runProcess({"true"}, std::string(1024 * 1024, 'x')).exitCode, 0) << "a child that reads no input";
    EXPECT_EQ(runProcess({"/nonexistent/orvo-program"}).exitCode, 127);
    ::setenv("ORVO_PROCESS_TEST_KEPT", "kept", 1);
    ::setenv("ORVO_PROCESS_TEST_REPLACED", "old", 1);
    EXPECT_EQ(runProcess({"sh", "-c", "env | grep ^ORVO_PROCESS_TEST_ | sort"}, "",
                         {{"ORVO_PROCESS_TEST_REPLACED", "new"}, {"ORVO_PROCESS_TEST_ADDED", "added"}})
                  .out,
              "ORVO_PROCESS_TEST_ADDED=added\nORVO_PROCESS_TEST_KEPT=kept\nORVO_PROCESS_TEST_REPLACED=new\n");
}

TEST(RunProcess, NamesAProgramThatCannotBeStarted) {
    if (runsUnderUserModeEmulation())
        GTEST_SKIP() << "qemu-user's posix_spawn cannot report a failed exec; the child only exits 127";
    const ProcessResult missing = runProcess({"/nonexistent/orvo-program"});
    EXPECT_EQ(missing.exitCode, 127);
    EXPECT_NE(missing.err.find("/nonexistent/orvo-program"), std::string::npos);
}

} // namespace
