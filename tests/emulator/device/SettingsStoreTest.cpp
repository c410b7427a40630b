#include "orvo/device/SettingsStore.h"
#include "orvo/testing/TemporaryDirectory.h"

#include <gtest/gtest.h>
#include <vconf.h>

#include <fstream>
#include <sys/stat.h>

namespace Orvo {
namespace Emulator {
namespace {

Setting makeSetting(SettingType type, const std::string& value)
{
    Setting setting;
    setting.type = type;
    setting.value = value;
    return setting;
}

std::string fileContent(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

bool exists(const std::string& path)
{
    struct stat status;
    return ::stat(path.c_str(), &status) == 0;
}

class SettingsStoreTest : public ::testing::Test {
protected:
    Testing::TemporaryDirectory device;
    const std::string& dir() const { return device.path(); }
};

TEST_F(SettingsStoreTest, FilesAreOnePerKeyWithPercentEncodedNamesAndTypedContent)
{
    ASSERT_EQ(VCONF_OK, writeSetting(dir(), "db/menu/a b%", makeSetting(SettingType::Int, "-7")));
    ASSERT_EQ(VCONF_OK, writeSetting(dir(), "memory/x.y_z-1", makeSetting(SettingType::Double, "0.5")));
    EXPECT_EQ("int\n-7", fileContent(dir() + "/vconf/db%2Fmenu%2Fa%20b%25"));
    EXPECT_EQ("double\n0.5", fileContent(dir() + "/run/vconf/memory%2Fx.y_z-1"));
}

TEST_F(SettingsStoreTest, ReadsBackWhatWasWrittenWhateverTheBytes)
{
    const std::string binary("line\nwith\ttab\x01\xff and \xc3\xa9", 22);
    ASSERT_EQ(VCONF_OK, writeSetting(dir(), "file/s", makeSetting(SettingType::String, binary)));
    ASSERT_EQ(VCONF_OK, writeSetting(dir(), "file/empty", makeSetting(SettingType::String, "")));
    Setting out;
    ASSERT_EQ(VCONF_OK, readSetting(dir(), "file/s", out));
    EXPECT_EQ(SettingType::String, out.type);
    EXPECT_EQ(binary, out.value);
    ASSERT_EQ(VCONF_OK, readSetting(dir(), "file/empty", out));
    EXPECT_EQ("", out.value);
}

TEST_F(SettingsStoreTest, RejectsValuesThatDoNotMatchTheirType)
{
    EXPECT_EQ(VCONF_ERROR_WRONG_VALUE, writeSetting(dir(), "db/a", makeSetting(SettingType::Int, "12x")));
    EXPECT_EQ(VCONF_ERROR_WRONG_VALUE, writeSetting(dir(), "db/a", makeSetting(SettingType::Int, "4294967296")));
    EXPECT_EQ(VCONF_ERROR_WRONG_VALUE, writeSetting(dir(), "db/a", makeSetting(SettingType::Bool, "2")));
    EXPECT_EQ(VCONF_ERROR_WRONG_VALUE, writeSetting(dir(), "db/a", makeSetting(SettingType::Double, "1,5")));
    Setting out;
    EXPECT_EQ(VCONF_ERROR_FILE_NO_ENT, readSetting(dir(), "db/a", out));
}

TEST_F(SettingsStoreTest, CorruptFilesFailToReadWithoutCrashing)
{
    ASSERT_EQ(VCONF_OK, writeSetting(dir(), "db/seed", makeSetting(SettingType::Int, "1")));
    const std::string path = dir() + "/vconf/db%2Fbad";
    for (const std::string& content : {std::string(), std::string("int"), std::string("int\nx"),
                                      std::string("float\n1"), std::string("bool\n7"),
                                      std::string("string\n") + std::string(kMaxSettingValueLength + 1, 'x'),
                                      std::string("int\n1\0", 6)}) {
        std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
        Setting out;
        EXPECT_EQ(VCONF_ERROR, readSetting(dir(), "db/bad", out)) << content.substr(0, 20);
    }
}

TEST_F(SettingsStoreTest, ListsEveryKeyAndClearingVolatileKeysKeepsPersistentOnes)
{
    for (const std::string key : {"memory/b", "db/a/1", "file/c", "memory/a"})
        ASSERT_EQ(VCONF_OK, writeSetting(dir(), key, makeSetting(SettingType::Bool, "1")));
    // A stray file in a settings directory is not a key.
    std::ofstream(dir() + "/vconf/not-a-key") << "int\n1";
    EXPECT_EQ((std::vector<std::string>{"db/a/1", "file/c", "memory/a", "memory/b"}), listSettings(dir()));

    clearVolatileSettings(dir());
    EXPECT_EQ((std::vector<std::string>{"db/a/1", "file/c"}), listSettings(dir()));
    Setting out;
    EXPECT_EQ(VCONF_ERROR_FILE_NO_ENT, readSetting(dir(), "memory/a", out));
    EXPECT_EQ(VCONF_OK, readSetting(dir(), "db/a/1", out));
}

TEST_F(SettingsStoreTest, TemporaryFilesOfDeadWritersAreRemovedByTheNextWrite)
{
    ASSERT_EQ(VCONF_OK, writeSetting(dir(), "db/k", makeSetting(SettingType::Int, "1")));
    // No process has pid 2^22+1 (above pid_max on Linux): the writer is dead.
    const std::string stale = dir() + "/vconf/.tmp-4194305-4194305-0";
    std::ofstream(stale) << "int\n12";
    ASSERT_EQ(VCONF_OK, writeSetting(dir(), "db/k", makeSetting(SettingType::Int, "2")));
    EXPECT_FALSE(exists(stale));
}

} // namespace
} // namespace Emulator
} // namespace Orvo
