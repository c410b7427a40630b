#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <tzplatform_config.h>

#include <cstring>
#include <thread>
#include <vector>

namespace {

TEST(TzplatformConfigConcurrentTest, ThreadsAskingWhileTheConfigurationChangesGetWholeStrings)
{
    Orvo::Testing::TestDevice device;
    device.setConf("tzplatform.90001", "/root/0");
    std::vector<std::thread> readers;
    std::vector<int> badAnswers(3, 0);
    for (std::size_t r = 0; r < badAnswers.size(); ++r) {
        readers.emplace_back([r, &badAnswers] {
            for (int n = 0; n < 200; ++n) {
                const char* directory = tzplatform_getenv(static_cast<tzplatform_variable>(90001));
                if (directory == nullptr || std::strncmp(directory, "/root/", 6) != 0)
                    ++badAnswers[r];
            }
        });
    }
    for (int n = 1; n < 50; ++n)
        device.setConf("tzplatform.90001", "/root/" + std::to_string(n));
    for (std::thread& reader : readers)
        reader.join();
    EXPECT_EQ(std::vector<int>(badAnswers.size(), 0), badAnswers);
}

} // namespace
