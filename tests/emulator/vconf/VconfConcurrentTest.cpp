#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <vconf.h>

#include <thread>

TEST(VconfConcurrentTest, EachThreadSeesWhyItsOwnLastCallFailed) {
    const Orvo::Testing::TestDevice device;
    ASSERT_EQ(0, vconf_set_str("db/t/text", "x"));
    int value = 0;
    EXPECT_EQ(-1, vconf_get_int("db/t/text", &value));
    int otherThreadsError = VCONF_OK;
    std::thread([&otherThreadsError] {
        int otherValue = 0;
        vconf_get_int("nowhere/key", &otherValue);
        otherThreadsError = vconf_get_ext_errno();
    }).join();
    EXPECT_EQ(VCONF_ERROR_WRONG_PREFIX, otherThreadsError);
    EXPECT_EQ(VCONF_ERROR_WRONG_TYPE, vconf_get_ext_errno());
}
