#include "orvo/device/DeviceConf.h"
#include "orvo/testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <random>

namespace Orvo {
namespace Emulator {
namespace {

using Type = SystemInfoValue::Type;

TEST(DeviceConfTest, ParsesEveryKindOfEntry)
{
    const DeviceConf conf = DeviceConf::parse("# a device\n"
                                              "\n"
                                              "system-info.128 = string T-ABC 1.0 # not a comment\n"
                                              "system-info.8 =string \n"
                                              "system-info.77 = int -42\n"
                                              "  system-info.740\t=\tbool true  \n"
                                              "system-info.3 = double 2.5\n"
                                              "system-info.869 = error -5\n"
                                              "tzplatform.27 = /opt/usr/apps \n"
                                              "production = true\r\n",
                                              "test");
    ASSERT_EQ(6u, conf.systemInfo.size());
    EXPECT_EQ(Type::String, conf.systemInfo.at(128).type);
    EXPECT_EQ("T-ABC 1.0 # not a comment", conf.systemInfo.at(128).stringValue);
    EXPECT_EQ(Type::String, conf.systemInfo.at(8).type);
    EXPECT_EQ("", conf.systemInfo.at(8).stringValue);
    EXPECT_EQ(-42, conf.systemInfo.at(77).intValue);
    EXPECT_EQ(Type::Bool, conf.systemInfo.at(740).type);
    EXPECT_TRUE(conf.systemInfo.at(740).boolValue);
    EXPECT_EQ(2.5, conf.systemInfo.at(3).doubleValue);
    EXPECT_EQ(Type::Error, conf.systemInfo.at(869).type);
    EXPECT_EQ(-5, conf.systemInfo.at(869).errorCode);
    EXPECT_EQ("/opt/usr/apps", conf.tzplatform.at(27));
    EXPECT_TRUE(conf.production);
}

TEST(DeviceConfTest, MalformedLinesAreReportedOnceWithTheirLineNumberAndSkipped)
{
    const std::string text = "system-info.1 = int 1\n"
                             "system-info.2 = int 12abc\n"
                             "system-info.x = int 1\n"
                             "production = yes\n"
                             "no equals sign\n"
                             "tzplatform.3 =\n"
                             "color = blue\n"
                             "system-info.4 = error 0\n"
                             "system-info.5 = bool TRUE\n"
                             "system-info.6 = int 99999999999999999999\n";
    ::testing::internal::CaptureStderr();
    const DeviceConf conf = DeviceConf::parse(text, "once.conf");
    const std::string firstReport = ::testing::internal::GetCapturedStderr();
    ::testing::internal::CaptureStderr();
    DeviceConf::parse(text, "once.conf");
    EXPECT_EQ("", ::testing::internal::GetCapturedStderr());

    EXPECT_EQ(1u, conf.systemInfo.size());
    EXPECT_TRUE(conf.tzplatform.empty());
    EXPECT_FALSE(conf.production);
    for (int line = 2; line <= 10; ++line)
        EXPECT_NE(std::string::npos, firstReport.find("once.conf:" + std::to_string(line) + ":")) << line;
    EXPECT_EQ(std::string::npos, firstReport.find("once.conf:1:"));
    EXPECT_EQ(9, std::count(firstReport.begin(), firstReport.end(), '\n'));
}

TEST(DeviceConfTest, LoadReadsTheDeviceFileAfreshAndAMissingFileIsEmpty)
{
    Testing::TemporaryDirectory device;
    EXPECT_TRUE(DeviceConf::load(device.path()).systemInfo.empty());
    std::ofstream(device.path() + "/device.conf") << "production = true\n";
    EXPECT_TRUE(DeviceConf::load(device.path()).production);
    std::ofstream(device.path() + "/device.conf") << "production = false\n";
    EXPECT_FALSE(DeviceConf::load(device.path()).production);
}

TEST(DeviceConfTest, SurvivesArbitraryInput)
{
    std::mt19937 random(7);
    const std::string alphabet = "system-info.tzplatform=production 0123456789#\n\r\t\xff\xc3 intboolerrorstringdouble-";
    ::testing::internal::CaptureStderr();
    for (int round = 0; round < 2000; ++round) {
        std::string text;
        const int length = std::uniform_int_distribution<int>(0, 200)(random);
        for (int i = 0; i < length; ++i)
            text += alphabet[std::uniform_int_distribution<std::size_t>(0, alphabet.size() - 1)(random)];
        text += std::string(1, static_cast<char>(std::uniform_int_distribution<int>(0, 255)(random)));
        // Whatever the input, an entry never reaches across a line.
        const DeviceConf conf = DeviceConf::parse(text, "random");
        for (const auto& entry : conf.systemInfo)
            EXPECT_EQ(std::string::npos, entry.second.stringValue.find('\n'));
        for (const auto& entry : conf.tzplatform)
            EXPECT_EQ(std::string::npos, entry.second.find('\n'));
    }
    ::testing::internal::GetCapturedStderr();
}

} // namespace
} // namespace Emulator
} // namespace Orvo
