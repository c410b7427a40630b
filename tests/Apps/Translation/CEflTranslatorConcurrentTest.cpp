// Several threads make the process's first translation at once: the product kind is decided
// once and every thread sees the same variants (run under ThreadSanitizer).

#include "Apps/Translation/CEflTranslator.h"

#include "LogLines.h"
#include "TestCatalogue.h"
#include "orvo/testing/TestDevice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace Orvo {
namespace Apps {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

constexpr int kThreads = 8;
constexpr const char* kIds = "TV_SID_MENU_VIEW_TV_SW_VERSION_UPDATE TV_SID_AUTO_START_SW_UPDATE_TV_POWERED_OFF";

std::vector<std::string> translateFromThreads() {
    std::vector<std::string> results(kThreads);
    std::atomic<int> ready{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&results, &ready, i] {
            ++ready;
            while (ready.load() < kThreads) {
                std::this_thread::yield();
            }
            results[i] = CEflTranslator::translate(kIds);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return results;
}

class ConcurrentTranslatorTest : public ::testing::Test {
protected:
    void SetUp() override {
        Testing::installCatalogue(device, "xx",
                                  {{"PANE_SID_MENU_VIEW_SKYPANE_SW_VERSION_UPDATE", "panel view"},
                                   {"PANE_SID_AUTO_START_SW_UPDATE_SKYPANE_POWERED_OFF", "panel\nauto"},
                                   {"TV_SID_MENU_VIEW_TV_SW_VERSION_UPDATE", "tv view"},
                                   {"TV_SID_AUTO_START_SW_UPDATE_TV_POWERED_OFF", "tv auto"}});
        ASSERT_TRUE(CEflTranslator::setUpTextDomain());
        device.clearLogs();
    }

    Testing::TestDevice device;
};

TEST_F(ConcurrentTranslatorTest, ConcurrentFirstTranslationsShareOneDecision) {
    device.setConf("system-info.740", "bool true");
    EXPECT_THAT(translateFromThreads(), Each(std::string("panel view panel<br>auto ")));
}

TEST_F(ConcurrentTranslatorTest, ConcurrentFirstTranslationsWarnOnceWhenTheKindIsUnknown) {
    device.setConf("system-info.740", "error -5");
    EXPECT_THAT(translateFromThreads(), Each(std::string("tv view tv auto ")));
    EXPECT_THAT(Testing::loggedTexts(device, "WRN"), ElementsAre("Error ocurred while determining product type."));
}

} // namespace
} // namespace Apps
} // namespace Orvo
