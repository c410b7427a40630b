#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <tzplatform_config.h>

TEST(TzplatformConfigTest, ListedIndicesGiveTheirDirectoryWhichStaysValidAfterChanges) {
    Orvo::Testing::TestDevice device;
    const auto index = static_cast<tzplatform_variable>(90001);
    device.setConf("tzplatform.90001", "/first/root");
    const char* first = tzplatform_getenv(index);
    device.setConf("tzplatform.90001", "/second/root/that/is/longer/than/any/small/string/buffer");
    const char* second = tzplatform_getenv(index);
    device.removeConf("tzplatform.90001");
    EXPECT_EQ(nullptr, tzplatform_getenv(index));
    // ASan reports a read of released memory here if the library gave up the old strings.
    EXPECT_STREQ("/first/root", first);
    EXPECT_STREQ("/second/root/that/is/longer/than/any/small/string/buffer", second);
}
