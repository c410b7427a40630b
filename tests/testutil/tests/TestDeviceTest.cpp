#include "orvo/testing/TestDevice.h"

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

} // namespace
