#include "orvo/testing/Process.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace Orvo {
namespace Testing {
namespace {

TEST(RunProcess, CollectsLargeOutputsOnBothStreamsWhileFeedingLargeInput)
{
    // Far beyond a pipe's buffer on every stream at once: a runner that drains one stream after
    // the other, or writes all input before reading, deadlocks here.
    const std::string input(3 * 1024 * 1024, 'x');
    const ProcessResult result = runProcess(
        {"sh", "-c", "head -c 4000000 /dev/zero | tr '\\0' e >&2 & head -c 5000000 /dev/zero; wc -c; wait"},
        input);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err.size(), 4000000u);
    EXPECT_EQ(result.err.find_first_not_of('e'), std::string::npos);
    ASSERT_GE(result.out.size(), 5000000u);
    EXPECT_EQ(result.out.substr(5000000), std::to_string(input.size()) + "\n");
}

TEST(RunProcess, ReportsExitStatusAndSignals)
{
    EXPECT_EQ(runProcess({"sh", "-c", "exit 7"}).exitCode, 7);
    EXPECT_EQ(runProcess({"sh", "-c", "kill -9 $$"}).exitCode, 128 + 9);
}

TEST(RunProcess, SurvivesAChildThatIgnoresItsInput)
{
    const ProcessResult result = runProcess({"true"}, std::string(1024 * 1024, 'x'));
    EXPECT_EQ(result.exitCode, 0);
}

TEST(RunProcess, AddsAndReplacesEnvironmentVariables)
{
    ::setenv("ORVO_PROCESS_TEST_KEPT", "kept", 1);
    ::setenv("ORVO_PROCESS_TEST_REPLACED", "old", 1);
    const ProcessResult result =
        runProcess({"sh", "-c", "echo $ORVO_PROCESS_TEST_KEPT $ORVO_PROCESS_TEST_REPLACED $ORVO_PROCESS_TEST_ADDED; env"}, "",
                   {{"ORVO_PROCESS_TEST_REPLACED", "new"}, {"ORVO_PROCESS_TEST_ADDED", "added"}});
    EXPECT_EQ(result.out.substr(0, result.out.find('\n')), "kept new added");
    EXPECT_EQ(result.out.find("ORVO_PROCESS_TEST_REPLACED=old"), std::string::npos);
    ::unsetenv("ORVO_PROCESS_TEST_KEPT");
    ::unsetenv("ORVO_PROCESS_TEST_REPLACED");
}

TEST(RunProcess, ReportsAProgramThatCannotStart)
{
    const ProcessResult result = runProcess({"/nonexistent/orvo-program"});
    EXPECT_EQ(result.exitCode, 127);
    EXPECT_NE(result.err.find("/nonexistent/orvo-program"), std::string::npos);
}

TEST(ToolPath, NamesAFileBesideTheTestExecutable)
{
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe");
    EXPECT_EQ(toolPath(self.filename().string()), self.string());
}

} // namespace
} // namespace Testing
} // namespace Orvo
