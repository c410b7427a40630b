// Listing a device's settings: a settings directory that cannot be read is an error, never a
// shorter list.
#include "orvo/device/SettingsStore.h"
#include "orvo/testing/TemporaryDirectory.h"

#include <gtest/gtest.h>
#include <cerrno>

#include <filesystem>
#include <fstream>
#include <system_error>

using namespace Orvo::Emulator;

TEST(SettingsListing, AnUnreadableSettingsDirectoryIsAnErrorNotAnEmptyOne) {
    const struct {
        const char* brokenDirectory;
        const char* keyElsewhere;
    } cases[] = {{"vconf", "memory/test/volatile"}, {"run/vconf", "db/test/persistent"}};
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.brokenDirectory);
        Orvo::Testing::TemporaryDirectory device;
        EXPECT_TRUE(listSettings(device.path()).empty()) << "a device without settings yet";
        ASSERT_EQ(0, writeSetting(device.path(), testCase.keyElsewhere, {SettingType::Int, "1"}));
        EXPECT_EQ(listSettings(device.path()), std::vector<std::string>{testCase.keyElsewhere});

        const std::string broken = device.path() + "/" + testCase.brokenDirectory;
        std::filesystem::remove_all(broken);
        std::filesystem::create_directories(std::filesystem::path(broken).parent_path());
        std::ofstream(broken) << "a file where the directory belongs\n";
        EXPECT_THROW(listSettings(device.path()), std::system_error);
    }
}

TEST(SettingsListing, ClearingUnreadableVolatileSettingsIsAnError) {
    Orvo::Testing::TemporaryDirectory device;
    EXPECT_NO_THROW(clearVolatileSettings(device.path())) << "no volatile settings yet";
    std::filesystem::create_directories(device.path() + "/run");
    std::ofstream(device.path() + "/run/vconf") << "a file where the directory belongs\n";
    EXPECT_THROW(clearVolatileSettings(device.path()), std::system_error);
}
