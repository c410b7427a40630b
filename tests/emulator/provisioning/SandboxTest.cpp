#include "orvo/device/SettingsStore.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;
using Orvo::Testing::TestDevice;

static std::string firstLine(const std::string& path) {
    std::string line;
    std::getline(std::ifstream(path), line);
    return line;
}

static const char kProbe[] = "/mnt/systemrw/orvotv/data/tv/sandbox-probe";

TEST(Sandbox, KeepsWritesToTheDevicesAbsolutePathsInTheDevice) {
    ASSERT_TRUE(Orvo::Testing::inSandbox());
    TestDevice device;
    std::ofstream(kProbe) << "written on the device\n";
    EXPECT_EQ(firstLine(device.rootfsPath(kProbe)), "written on the device");
}

TEST(Sandbox, EachCaseStartsOnAFreshDeviceThatTestDeviceResetsToAnotherProfile) {
    EXPECT_FALSE(fs::exists(kProbe)) << "the case before wrote it on its own device";
    {
        TestDevice tv;
        Orvo::Emulator::writeSetting(tv.dir(), "db/orvo/stale", {Orvo::Emulator::SettingType::Int, "7"});
        std::ofstream("/common/leftover") << "x";
    }
    TestDevice monitor("monitor");
    EXPECT_FALSE(fs::exists("/common/leftover"));
    EXPECT_TRUE(fs::exists("/common/version.txt")) << "the mount must still show the device";
    Orvo::Emulator::Setting setting;
    EXPECT_NE(0, readSetting(monitor.dir(), "db/orvo/stale", setting)) << "settings start afresh";
    ASSERT_EQ(0, readSetting(monitor.dir(), "db/menu/support/softwareupdate/autoupdate", setting));
    EXPECT_EQ(setting.value, "0") << "the monitor profile's value, where the television's is 1";
}
