#include "orvo/testing/TemporaryDirectory.h"
#include "orvo/testing/TestDevice.h"

#include "orvo/device/DeviceConf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace Orvo {
namespace Testing {
namespace {

namespace fs = std::filesystem;

std::string readFile(const std::string& path)
{
    std::ifstream in(path);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

const char* deviceDirVariable()
{
    return std::getenv("ORVO_DEVICE_DIR");
}

TEST(TemporaryDirectory, IsRemovedWithItsContents)
{
    std::string path;
    {
        TemporaryDirectory directory;
        path = directory.path();
        fs::create_directories(path + "/a/b");
        std::ofstream(path + "/a/b/file") << "content";
        EXPECT_TRUE(fs::is_directory(path));
    }
    EXPECT_FALSE(fs::exists(path));
}

TEST(TestDeviceEnvironment, PointsAtTheDeviceAndRestoresAPreviousValue)
{
    ::setenv("ORVO_DEVICE_DIR", "/previous/device", 1);
    std::string dir;
    {
        TestDevice device;
        dir = device.dir();
        ASSERT_NE(deviceDirVariable(), nullptr);
        EXPECT_EQ(std::string(deviceDirVariable()), dir);
        EXPECT_TRUE(fs::is_regular_file(dir + "/device.conf"));
    }
    ASSERT_NE(deviceDirVariable(), nullptr);
    EXPECT_EQ(std::string(deviceDirVariable()), "/previous/device");
    EXPECT_FALSE(fs::exists(dir));
    ::unsetenv("ORVO_DEVICE_DIR");
}

TEST(TestDeviceEnvironment, LeavesTheVariableUnsetWhenItWasUnset)
{
    ::unsetenv("ORVO_DEVICE_DIR");
    {
        TestDevice device;
        EXPECT_NE(deviceDirVariable(), nullptr);
    }
    EXPECT_EQ(deviceDirVariable(), nullptr);
}

TEST(TestDeviceConf, SetReplacesOneEntryAndKeepsTheOthers)
{
    TestDevice device;
    device.setConf("system-info.128", "string T-ABC-1.0");
    device.setConf("system-info.99999", "error -5");
    const std::string text = readFile(device.dir() + "/device.conf");
    EXPECT_EQ(text.find("T-KTM2DEUC-1302.5"), std::string::npos) << "the old entry must be gone";

    const Orvo::Emulator::DeviceConf conf = Orvo::Emulator::DeviceConf::load(device.dir());
    EXPECT_EQ(conf.systemInfo.at(128).stringValue, "T-ABC-1.0");
    EXPECT_EQ(conf.systemInfo.at(99999).errorCode, -5);
    EXPECT_EQ(conf.systemInfo.at(77).intValue, 0);
    EXPECT_EQ(conf.tzplatform.at(3), "/usr/share");
}

TEST(TestDeviceConf, RemoveDropsTheEntryOnly)
{
    TestDevice device;
    device.setConf("production", "true");
    device.removeConf("system-info.128");
    device.removeConf("tzplatform.27");
    const Orvo::Emulator::DeviceConf conf = Orvo::Emulator::DeviceConf::load(device.dir());
    EXPECT_EQ(conf.systemInfo.count(128), 0u);
    EXPECT_EQ(conf.tzplatform.count(27), 0u);
    EXPECT_EQ(conf.tzplatform.count(28), 1u);
    EXPECT_TRUE(conf.production);
}

TEST(TestDeviceFiles, WritesAndRemovesFilesByTheirDevicePath)
{
    TestDevice device;
    device.writeFile("/mnt/systemrw/orvotv/data/tv/UpdateInfo.xml", "<info/>");
    EXPECT_EQ(device.rootfsPath("/common/version.txt"), device.dir() + "/rootfs/common/version.txt");
    EXPECT_EQ(readFile(device.dir() + "/rootfs/mnt/systemrw/orvotv/data/tv/UpdateInfo.xml"), "<info/>");
    device.removeFile("/mnt/systemrw/orvotv/data/tv/UpdateInfo.xml");
    device.removeFile("/common/version.txt");
    EXPECT_FALSE(fs::exists(device.rootfsPath("/mnt/systemrw/orvotv/data/tv/UpdateInfo.xml")));
    EXPECT_FALSE(fs::exists(device.rootfsPath("/common/version.txt")));
    EXPECT_THROW(device.writeFile("relative/path", ""), std::invalid_argument);
}

TEST(TestDeviceLogs, FiltersByBufferAndTagAndClears)
{
    TestDevice device;
    const std::string first = "first";
    const std::string other = "other tag";
    const std::string system = "system buffer";
    Orvo::Emulator::appendLogRecord(device.dir(), 0, 4, "orvotv.Orvo", first.c_str(), first.size());
    Orvo::Emulator::appendLogRecord(device.dir(), 0, 4, "someone.Else", other.c_str(), other.size());
    Orvo::Emulator::appendLogRecord(device.dir(), 2, 6, "orvotv.Orvo", system.c_str(), system.size());

    EXPECT_THAT(device.logMessages(), testing::ElementsAre("first"));
    EXPECT_THAT(device.logMessages(2), testing::ElementsAre("system buffer"));
    EXPECT_EQ(device.logRecords(0).size(), 2u);

    device.clearLogs();
    EXPECT_TRUE(device.logRecords(0).empty());
    EXPECT_TRUE(device.logRecords(2).empty());
}

} // namespace
} // namespace Testing
} // namespace Orvo
