#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <tzplatform_config.h>

#include <string>

namespace {

tzplatform_variable variable(int index)
{
    return static_cast<tzplatform_variable>(index);
}

TEST(TzplatformConfigTest, ListedIndicesGiveTheirDirectoryAndOthersNull)
{
    Orvo::Testing::TestDevice device;
    device.setConf("tzplatform.90001", "/opt/usr/home/owner");
    device.removeConf("tzplatform.90002");
    const char* directory = tzplatform_getenv(variable(90001));
    ASSERT_NE(nullptr, directory);
    EXPECT_STREQ("/opt/usr/home/owner", directory);
    EXPECT_EQ(nullptr, tzplatform_getenv(variable(90002)));
    EXPECT_EQ(nullptr, tzplatform_getenv(variable(-1)));
}

TEST(TzplatformConfigTest, ReturnedStringsStayValidAfterTheConfigurationChanges)
{
    Orvo::Testing::TestDevice device;
    device.setConf("tzplatform.90001", "/first/root");
    const char* first = tzplatform_getenv(variable(90001));
    ASSERT_NE(nullptr, first);
    device.setConf("tzplatform.90001", "/second/root/that/is/longer/than/any/small/string/buffer");
    const char* second = tzplatform_getenv(variable(90001));
    device.removeConf("tzplatform.90001");
    EXPECT_EQ(nullptr, tzplatform_getenv(variable(90001)));
    // ASan reports a read of released memory here if the library gave up the old strings.
    EXPECT_STREQ("/first/root", first);
    ASSERT_NE(nullptr, second);
    EXPECT_STREQ("/second/root/that/is/longer/than/any/small/string/buffer", second);
}

} // namespace
