#include "orvo/device/Device.h"

#include "orvo/device/DeviceConf.h"
#include "orvo/device/SettingsStore.h"
#include "orvo/testing/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <sys/stat.h>

namespace Orvo {
namespace Emulator {
namespace {

namespace fs = std::filesystem;
using Orvo::Testing::TemporaryDirectory;

std::string settingValue(const std::string& deviceDir, const std::string& key)
{
    Setting setting;
    return readSetting(deviceDir, key, setting) == 0 ? setting.value : "<missing>";
}

ino_t inodeOf(const fs::path& path)
{
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

class Provisioning : public testing::Test {
protected:
    std::string newDevice(const std::string& profile)
    {
        const std::string dir = m_temporary.path() + "/" + profile;
        createDevice(dir, emulatorDataDirectory(), profile);
        return dir;
    }

    TemporaryDirectory m_temporary;
};

TEST_F(Provisioning, ListsTheShippedProfiles)
{
    EXPECT_THAT(listProfiles(emulatorDataDirectory()), testing::ElementsAre("monitor", "pane", "tv"));
    EXPECT_TRUE(listProfiles(m_temporary.path()).empty());
}

TEST_F(Provisioning, ADeviceGetsTheProfilesFactsFilesSettingsAndCatalogue)
{
    const std::string dir = newDevice("tv");
    const DeviceConf conf = DeviceConf::load(dir);
    EXPECT_EQ(conf.systemInfo.at(128).stringValue, "T-KTM2DEUC-1302.5");
    EXPECT_EQ(conf.tzplatform.at(27), "/opt/usr/data");
    std::ifstream version(dir + "/rootfs/common/version.txt");
    std::string firstWord;
    version >> firstWord;
    EXPECT_EQ(firstWord, "17.037.0");
    EXPECT_TRUE(fs::exists(dir + "/rootfs/usr/share/orvotv/UsingOrvoDevelopmentKeys"));
    for (const char* sub : {"/rootfs/mnt/systemrw/orvotv/data/tv", "/rootfs/mnt/backup",
                            "/rootfs/opt/usr/data/orvotv/data/tv", "/vconf", "/run/vconf", "/log",
                            "/rootfs/usr/share/orvotv/res/locale/fr/LC_MESSAGES"}) {
        EXPECT_TRUE(fs::is_directory(dir + sub)) << sub;
    }
    EXPECT_EQ(settingValue(dir, "db/menu/support/softwareupdate/autoupdate"), "1");
    EXPECT_EQ(settingValue(dir, "memory/menu/support/softwareupdate/newest_version"), "T-KTM2DEUC-1304.1");
}

TEST_F(Provisioning, PaneAndMonitorDifferFromATelevision)
{
    EXPECT_TRUE(DeviceConf::load(newDevice("pane")).systemInfo.at(740).boolValue);
    const std::string monitorDir = newDevice("monitor");
    EXPECT_EQ(DeviceConf::load(monitorDir).systemInfo.at(77).intValue, 1);
    EXPECT_FALSE(fs::exists(monitorDir + "/rootfs/usr/share/orvotv/UsingOrvoDevelopmentKeys"));
}

TEST_F(Provisioning, RefusesAnExistingDevice)
{
    const std::string dir = newDevice("tv");
    std::ofstream(dir + "/device.conf") << "# edited\n";
    EXPECT_THROW(createDevice(dir, emulatorDataDirectory(), "pane"), std::runtime_error);
    std::ifstream in(dir + "/device.conf");
    std::string line;
    std::getline(in, line);
    EXPECT_EQ(line, "# edited") << "the existing device must stay untouched";
}

TEST_F(Provisioning, RejectsUnknownProfilesAndNamesOutsideTheProfiles)
{
    for (const char* profile : {"nonexistent", "", "../profiles/tv", ".", "tv/rootfs"}) {
        const std::string dir = m_temporary.path() + "/device";
        try {
            createDevice(dir, emulatorDataDirectory(), profile);
            ADD_FAILURE() << "accepted profile '" << profile << "'";
        } catch (const std::runtime_error& e) {
            EXPECT_THAT(e.what(), testing::HasSubstr("unknown profile")) << profile;
            EXPECT_THAT(e.what(), testing::HasSubstr("monitor, pane, tv"));
        }
        EXPECT_FALSE(fs::exists(dir)) << profile;
    }
}

TEST_F(Provisioning, AMalformedSettingsFileNamesTheLineAndLeavesNoDevice)
{
    const std::string dataDir = m_temporary.path() + "/data";
    const std::string profileDir = dataDir + "/profiles/broken";
    fs::create_directories(profileDir);
    std::ofstream(profileDir + "/device.conf") << "production = false\n";
    const char* badLines[] = {"int db/a notanumber", "bool db/a maybe", "colour db/a red",
                              "int db/only-a-key", "string wrong/prefix value", "double db/d 1.5x"};
    for (const char* badLine : badLines) {
        std::ofstream(profileDir + "/settings") << "# comment\n\nint db/fine 1\n" << badLine << "\n";
        const std::string dir = m_temporary.path() + "/device";
        try {
            createDevice(dir, dataDir, "broken");
            ADD_FAILURE() << "accepted '" << badLine << "'";
        } catch (const std::runtime_error& e) {
            EXPECT_THAT(e.what(), testing::HasSubstr("settings:4")) << badLine;
        }
        EXPECT_FALSE(fs::exists(dir)) << badLine;
    }
}

TEST_F(Provisioning, ParsesEveryValueTypeOfASettingsFile)
{
    const std::string dataDir = m_temporary.path() + "/data";
    const std::string profileDir = dataDir + "/profiles/typed";
    fs::create_directories(profileDir);
    std::ofstream(profileDir + "/device.conf") << "\n";
    std::ofstream(profileDir + "/settings") << "int db/i -42\nbool db/b true\ndouble db/d 0.5\n"
                                               "string db/s two words \nstring db/empty \n";
    const std::string dir = m_temporary.path() + "/device";
    createDevice(dir, dataDir, "typed");
    EXPECT_EQ(settingValue(dir, "db/i"), "-42");
    EXPECT_EQ(settingValue(dir, "db/b"), "1");
    EXPECT_DOUBLE_EQ(std::stod(settingValue(dir, "db/d")), 0.5);
    EXPECT_EQ(settingValue(dir, "db/s"), "two words ");
    EXPECT_EQ(settingValue(dir, "db/empty"), "");
}

TEST_F(Provisioning, RebootClearsVolatileKeysAndKeepsPersistentOnes)
{
    const std::string dir = newDevice("tv");
    writeSetting(dir, "memory/orvo/test", Setting{SettingType::Int, "5"});
    writeSetting(dir, "db/orvo/test", Setting{SettingType::Int, "6"});
    rebootDevice(dir);
    EXPECT_EQ(settingValue(dir, "memory/orvo/test"), "<missing>");
    EXPECT_EQ(settingValue(dir, "memory/menu/support/softwareupdate/newest_version"), "<missing>");
    EXPECT_EQ(settingValue(dir, "db/orvo/test"), "6");
    EXPECT_EQ(settingValue(dir, "db/menu/support/softwareupdate/autoupdate"), "1");
    EXPECT_THROW(rebootDevice(m_temporary.path()), std::runtime_error);
}

TEST_F(Provisioning, ResetRestoresTheProfilesFilesAndKeepsMountSources)
{
    const std::string dir = newDevice("tv");
    const fs::path rootfs = dir + "/rootfs";
    std::ofstream(rootfs / "common/version.txt") << "99.0.0\n";
    std::ofstream(rootfs / "common/extra.txt") << "extra\n";
    fs::create_directories(rootfs / "opt/orvotv/cache");
    fs::create_directories(rootfs / "var/lib/orvo");
    writeSetting(dir, "db/kept", Setting{SettingType::Int, "1"});
    const ino_t commonInode = inodeOf(rootfs / "common");

    resetDeviceToProfile(dir, emulatorDataDirectory(), "monitor");

    EXPECT_EQ(DeviceConf::load(dir).systemInfo.at(77).intValue, 1);
    std::ifstream version(rootfs / "common/version.txt");
    std::string firstWord;
    version >> firstWord;
    EXPECT_EQ(firstWord, "17.037.0");
    EXPECT_FALSE(fs::exists(rootfs / "common/extra.txt"));
    EXPECT_FALSE(fs::exists(rootfs / "usr/share/orvotv/UsingOrvoDevelopmentKeys"));
    EXPECT_FALSE(fs::exists(rootfs / "var"));
    EXPECT_FALSE(fs::exists(rootfs / "opt/orvotv/cache"));
    EXPECT_TRUE(fs::is_directory(rootfs / "opt/orvotv")) << "a sandbox mount source must survive";
    EXPECT_EQ(inodeOf(rootfs / "common"), commonInode) << "a mounted directory must not be replaced";
    EXPECT_EQ(settingValue(dir, "db/kept"), "1") << "settings stay on a reset of the files";
}

TEST_F(Provisioning, SandboxPathsCoverTheSystemDirectoriesOfEveryRoot)
{
    const std::string dir = newDevice("tv");
    EXPECT_THAT(sandboxPaths(dir),
                testing::ElementsAre("/common", "/mnt/backup", "/mnt/systemrw", "/opt/orvotv",
                                     "/opt/share/orvotv", "/opt/usr/data/orvotv", "/usr/apps/orvotv",
                                     "/usr/share/orvotv"));
}

TEST_F(Provisioning, SandboxPathsMapOnlyTheSystemDirectoryUnderAbsoluteRoots)
{
    const std::string dir = m_temporary.path() + "/device";
    fs::create_directories(dir);
    std::ofstream(dir + "/device.conf") << "tzplatform.1 = /\ntzplatform.2 = relative/dir\n"
                                           "tzplatform.3 = /usr/share/\ntzplatform.4 = /usr/share\n"
                                           "tzplatform.5 = /opt/../etc\ntzplatform.6 = \n";
    EXPECT_THAT(sandboxPaths(dir),
                testing::ElementsAre("/common", "/etc/orvotv", "/mnt/backup", "/mnt/systemrw", "/orvotv",
                                     "/usr/share/orvotv"));
}

TEST_F(Provisioning, ToolDeviceDirectoryCreatesTheDefaultDeviceOnce)
{
    ::unsetenv("ORVO_DEVICE_DIR");
    ::setenv("XDG_STATE_HOME", m_temporary.path().c_str(), 1);
    const std::string dir = toolDeviceDirectory();
    EXPECT_EQ(dir, m_temporary.path() + "/orvo-emulator/device");
    EXPECT_EQ(DeviceConf::load(dir).systemInfo.at(128).stringValue, "T-KTM2DEUC-1302.5");

    writeSetting(dir, "db/marker", Setting{SettingType::Int, "1"});
    EXPECT_EQ(toolDeviceDirectory(), dir);
    EXPECT_EQ(settingValue(dir, "db/marker"), "1") << "an existing default device is reused";
    EXPECT_EQ(std::distance(fs::directory_iterator(m_temporary.path() + "/orvo-emulator"), {}), 1)
        << "no staging directory may stay behind";
    ::unsetenv("XDG_STATE_HOME");
}

} // namespace
} // namespace Emulator
} // namespace Orvo
