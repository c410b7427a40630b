#include "Orvo/Common/Debug/ProductionConfig.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>

TEST(ProductionConfigTest, FollowsTheDeviceConfigurationAndDefaultsToFalse) {
    Orvo::Testing::TestDevice device; // "production = false"
    EXPECT_FALSE(Orvo::Common::Debug::isProduction());
    device.setConf("production", "true");
    EXPECT_TRUE(Orvo::Common::Debug::isProduction());
    device.removeConf("production");
    EXPECT_FALSE(Orvo::Common::Debug::isProduction());
}
