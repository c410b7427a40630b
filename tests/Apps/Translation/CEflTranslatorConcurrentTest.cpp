// Several threads make the process's first translation at once (SANDBOXED: one process per
// case; run under ThreadSanitizer with the label "concurrent").

#include "Apps/Translation/CEflTranslator.h"

#include "orvo/testing/LogLines.h"
#include "TestCatalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace Orvo {
namespace Apps {
namespace {

// Every thread's translation of a two-id list, started together.
std::vector<std::string> translateFromEightThreads() {
    std::vector<std::string> results(8);
    std::atomic<int> ready{0};
    std::vector<std::thread> threads;
    for (std::string& result : results) {
        threads.emplace_back([&result, &ready, &results] {
            for (++ready; ready.load() < static_cast<int>(results.size());) std::this_thread::yield();
            result = CEflTranslator::translate(
                "TV_SID_MENU_VIEW_TV_SW_VERSION_UPDATE TV_SID_AUTO_START_SW_UPDATE_TV_POWERED_OFF");
        });
    }
    for (std::thread& thread : threads) thread.join();
    return results;
}

class ConcurrentTranslatorTest : public ::testing::Test {
protected:
    void SetUp() override {
        Testing::installCatalogue(device, {{"PANE_SID_MENU_VIEW_SKYPANE_SW_VERSION_UPDATE", "panel view"},
                                           {"PANE_SID_AUTO_START_SW_UPDATE_SKYPANE_POWERED_OFF", "panel\nauto"}});
        ASSERT_TRUE(CEflTranslator::setUpTextDomain());
        device.clearLogs();
    }

    Testing::TestDevice device;
};

TEST_F(ConcurrentTranslatorTest, ConcurrentFirstTranslationsShareOneDecision) {
    device.setConf("system-info.740", "bool true");
    EXPECT_THAT(translateFromEightThreads(), ::testing::Each(std::string("panel view panel<br>auto ")));
}

TEST_F(ConcurrentTranslatorTest, ConcurrentFirstTranslationsWarnOnceWhenTheKindIsUnknown) {
    device.setConf("system-info.740", "error -5");
    EXPECT_THAT(translateFromEightThreads(),
                ::testing::Each(std::string("TV_SID_MENU_VIEW_TV_SW_VERSION_UPDATE "
                                            "TV_SID_AUTO_START_SW_UPDATE_TV_POWERED_OFF ")));
    EXPECT_THAT(Testing::loggedTexts(device, "WRN"),
                ::testing::ElementsAre("Error ocurred while determining product type."));
}

} // namespace
} // namespace Apps
} // namespace Orvo
