// Run inside the device sandbox, each case on a device of its own.

#include "orvo/device/SettingsStore.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace Orvo {
namespace Emulator {
namespace {

namespace fs = std::filesystem;
using Orvo::Testing::TestDevice;

std::string readFile(const std::string& path)
{
    std::ifstream in(path);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

const char kProbe[] = "/mnt/systemrw/orvotv/data/tv/sandbox-probe";

TEST(Sandbox, ShowsTheDevicesFilesAtTheirAbsolutePaths)
{
    ASSERT_TRUE(Orvo::Testing::inSandbox());
    TestDevice device;
    EXPECT_EQ(readFile("/common/version.txt").substr(0, 9), "17.037.0 ");
    EXPECT_TRUE(fs::exists("/usr/share/orvotv/UsingOrvoDevelopmentKeys"));
    EXPECT_TRUE(fs::is_regular_file("/usr/share/orvotv/res/locale/fr/LC_MESSAGES/Tizen_Orvo.mo"));
    EXPECT_TRUE(fs::is_directory("/opt/usr/data/orvotv/data/tv"));
    EXPECT_TRUE(fs::is_directory("/mnt/backup"));
}

TEST(Sandbox, WritesLandInTheDeviceDirectory)
{
    TestDevice device;
    std::ofstream(kProbe) << "written on the device";
    EXPECT_EQ(readFile(device.rootfsPath(kProbe)), "written on the device");
    device.writeFile("/usr/apps/orvotv/from-the-test", "seen at once");
    EXPECT_EQ(readFile("/usr/apps/orvotv/from-the-test"), "seen at once");
}

TEST(Sandbox, EveryCaseStartsOnAFreshDevice)
{
    // The case before this one wrote the probe on its own device.
    EXPECT_FALSE(fs::exists(kProbe));
}

TEST(Sandbox, TestDeviceResetsTheSandboxDeviceToAnotherProfile)
{
    {
        TestDevice tv;
        writeSetting(tv.dir(), "db/menu/support/softwareupdate/autoupdate", Setting{SettingType::Int, "0"});
        std::ofstream("/common/leftover") << "x";
    }
    TestDevice monitor("monitor");
    EXPECT_EQ(monitor.dir(), std::string(std::getenv("ORVO_DEVICE_DIR")));
    EXPECT_FALSE(fs::exists("/usr/share/orvotv/UsingOrvoDevelopmentKeys"));
    EXPECT_FALSE(fs::exists("/common/leftover"));
    EXPECT_TRUE(fs::exists("/common/version.txt")) << "the mount must still show the device";
    Setting setting;
    ASSERT_EQ(readSetting(monitor.dir(), "db/menu/support/softwareupdate/autoupdate", setting), 0);
    EXPECT_EQ(setting.value, "0") << "the monitor profile's own initial value";
}

} // namespace
} // namespace Emulator
} // namespace Orvo
