#include "orvo/device/DeviceConf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>

using Orvo::Emulator::DeviceConf;

TEST(DeviceConfTest, ParsesGoodLinesAndReportsEachMalformedOneOnceWithItsLineNumber) {
    const std::string text =
        "# a device\n"
        "system-info.128 = string T-ABC 1.0 # not a comment\n"
        "  system-info.740\t=\tbool true  \n"
        "system-info.8 =string \n"
        "tzplatform.27 = /opt/usr/apps \n"
        "production = true\r\n"
        "system-info.2 = int 12abc\n" // line 7: the first malformed one
        "system-info.x = int 1\n"
        "production = yes\n"
        "no equals sign\n"
        "system-info.4 = error 0\n"
        "system-info.6 = int 99999999999999999999\n"
        "system-info.platform. = int 1\n"
        "tzplatform.3.name = two words\n"
        "system-info.custom.k = float 1\n" // line 15: the last malformed one
        "system-info.platform.http://a/b = int 12abc\n"
        "system-info.custom.c = unsupported\n"
        "tzplatform.3.name = TZ_X\n"
        "dlog.abort-on-fatal = yes\n" // line 19
        "dlog.abort-on-fatal = true\n"
        "  dlog.plog\t=\tfalse \r\n"
        "dlog.plog = 1\n"; // line 22
    ::testing::internal::CaptureStderr();
    const DeviceConf conf = DeviceConf::parse(text, "once.conf");
    const std::string report = ::testing::internal::GetCapturedStderr();
    ::testing::internal::CaptureStderr();
    DeviceConf::parse(text, "once.conf");
    EXPECT_EQ("", ::testing::internal::GetCapturedStderr()) << "each line is reported once per process";
    for (int line : {7, 8, 9, 10, 11, 12, 13, 14, 15, 19, 22})
        EXPECT_NE(std::string::npos, report.find("once.conf:" + std::to_string(line) + ":")) << line;
    EXPECT_EQ(11, std::count(report.begin(), report.end(), '\n')) << report;
    EXPECT_EQ(3u, conf.systemInfo.size());
    EXPECT_EQ("T-ABC 1.0 # not a comment", conf.systemInfo.at(128).stringValue);
    EXPECT_TRUE(conf.systemInfo.at(740).boolValue);
    EXPECT_EQ("", conf.systemInfo.at(8).stringValue);
    EXPECT_EQ((std::map<int, std::string>{{27, "/opt/usr/apps"}}), conf.tzplatform);
    EXPECT_TRUE(conf.production) << "a malformed line changes nothing";
    EXPECT_EQ("12abc", conf.platformInfo.at("a/b").stringValue) << "a key by name: its text, without http://";
    EXPECT_EQ(-1073741822, conf.customInfo.at("c").errorCode) << "unsupported";
    EXPECT_EQ((std::map<int, std::string>{{3, "TZ_X"}}), conf.tzplatformNames);
    EXPECT_FALSE(conf.dlog.plog);
    EXPECT_TRUE(conf.dlog.abortOnFatal);

    // dlog's own allocation-free reader takes the same entries from the same text.
    char dir[] = "/tmp/device-conf-XXXXXX";
    ASSERT_NE(nullptr, ::mkdtemp(dir));
    std::ofstream(std::string(dir) + "/device.conf") << std::string(300, '#') << "\n" << text;
    Orvo::Emulator::DlogSettings settings;
    EXPECT_TRUE(DeviceConf::loadDlogSettings(dir, settings));
    EXPECT_EQ(std::make_pair(conf.dlog.plog, conf.dlog.abortOnFatal),
              std::make_pair(settings.plog, settings.abortOnFatal));
    std::filesystem::remove_all(dir);
}

TEST(DeviceConfTest, SurvivesArbitraryInput) {
    const std::string words = "system-info.tzplatform=production 0123456789#\n\r\t intboolerrorstringdouble-\xff";
    std::mt19937 random(7);
    ::testing::internal::CaptureStderr();
    for (int round = 0; round < 2000; ++round) {
        std::string text(random() % 200, '\0');
        for (char& c : text)
            c = words[random() % words.size()];
        const std::size_t lines = std::count(text.begin(), text.end(), '\n') + 1;
        EXPECT_LE(DeviceConf::parse(text, "random").systemInfo.size(), lines) << "at most one entry a line";
    }
    ::testing::internal::GetCapturedStderr();
}
