// The default instance is built once, whichever thread asks first.
#include "Debug/DebugAndTestParameters/InstallationPerformanceParameters.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace Orvo::Testing {
namespace {

using OrvoCommon::InstallationPerformanceParameters;

TEST(InstallationPerformanceParametersConcurrentTest, DefaultsAreOneInstanceForAllThreads) {
    std::vector<const InstallationPerformanceParameters*> seen(8, nullptr);
    std::vector<std::thread> threads;
    for (auto& defaults : seen) {
        threads.emplace_back([&defaults] { defaults = &InstallationPerformanceParameters::defaults(); });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (const InstallationPerformanceParameters* defaults : seen) {
        EXPECT_EQ(defaults, seen[0]);
        EXPECT_EQ(*defaults, InstallationPerformanceParameters());
    }
}

} // namespace
} // namespace Orvo::Testing
