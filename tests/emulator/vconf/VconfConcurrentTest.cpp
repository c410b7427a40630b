#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <vconf.h>

#include <thread>

namespace {

TEST(VconfConcurrentTest, EachThreadSeesWhyItsOwnLastCallFailed)
{
    Orvo::Testing::TestDevice device;
    ASSERT_EQ(0, vconf_set_str("db/t/text", "x"));
    int wrongPrefixError = 0;
    int wrongTypeError = 0;
    std::thread wrongPrefix([&] {
        int value = 0;
        vconf_get_int("nowhere/key", &value);
        wrongPrefixError = vconf_get_ext_errno();
    });
    std::thread wrongType([&] {
        int value = 0;
        vconf_get_int("db/t/text", &value);
        wrongTypeError = vconf_get_ext_errno();
    });
    wrongPrefix.join();
    wrongType.join();
    EXPECT_EQ(VCONF_ERROR_WRONG_PREFIX, wrongPrefixError);
    EXPECT_EQ(VCONF_ERROR_WRONG_TYPE, wrongTypeError);
    EXPECT_EQ(VCONF_OK, vconf_get_ext_errno());
}

} // namespace
