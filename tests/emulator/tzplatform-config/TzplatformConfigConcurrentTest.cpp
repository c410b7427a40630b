#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <tzplatform_config.h>

#include <atomic>
#include <cstring>
#include <thread>

TEST(TzplatformConfigConcurrentTest, ThreadsAskingWhileTheConfigurationChangesGetWholeStrings) {
    Orvo::Testing::TestDevice device;
    device.setConf("tzplatform.90001", "/root/0");
    std::atomic<int> badAnswers{0};
    const auto ask = [&badAnswers] {
        for (int n = 0; n < 200; ++n) {
            const char* directory = tzplatform_getenv(static_cast<tzplatform_variable>(90001));
            badAnswers += directory == nullptr || std::strncmp(directory, "/root/", 6) != 0;
        }
    };
    std::thread readers[] = {std::thread(ask), std::thread(ask)};
    for (int n = 1; n < 50; ++n)
        device.setConf("tzplatform.90001", "/root/" + std::to_string(n));
    for (std::thread& reader : readers)
        reader.join();
    EXPECT_EQ(0, badAnswers);
}
