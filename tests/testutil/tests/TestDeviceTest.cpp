#include "orvo/testing/TestDevice.h"

#include "orvo/device/DeviceConf.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>

namespace {

using Orvo::Testing::TestDevice;

TEST(TestDevice, PointsTheEnvironmentAtItselfOnlyWhileItLives) {
    for (const char* previous : {"/previous/device", static_cast<const char*>(nullptr)}) {
        previous != nullptr ? ::setenv("ORVO_DEVICE_DIR", previous, 1) : ::unsetenv("ORVO_DEVICE_DIR");
        std::optional<TestDevice> device(std::in_place);
        const std::string dir = device->dir();
        EXPECT_STREQ(std::getenv("ORVO_DEVICE_DIR"), dir.c_str());
        device.reset();
        EXPECT_STREQ(std::getenv("ORVO_DEVICE_DIR"), previous);
        EXPECT_FALSE(std::filesystem::exists(dir));
    }
}

TEST(TestDevice, SetConfReplacesAnEntryAndRemoveConfDropsOne) {
    TestDevice device;
    device.setConf("system-info.128", "string T-ABC-1.0");
    device.removeConf("tzplatform.27");
    const auto conf = Orvo::Emulator::DeviceConf::load(device.dir());
    EXPECT_EQ(conf.systemInfo.at(128).stringValue, "T-ABC-1.0");
    EXPECT_EQ(conf.tzplatform.count(27), 0u);
    EXPECT_EQ(conf.tzplatform.count(28), 1u);
}

} // namespace
