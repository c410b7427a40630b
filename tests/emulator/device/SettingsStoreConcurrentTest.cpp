// Settings survive writers that are killed at any moment and writers in several processes.

#include "orvo/device/SettingsStore.h"
#include "orvo/testing/TemporaryDirectory.h"

#include <gtest/gtest.h>
#include <vconf.h>

#include <csignal>
#include <dirent.h>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

namespace Orvo {
namespace Emulator {
namespace {

const char* const kKeys[] = {"db/big/a", "file/big/b", "memory/big/c"};

// A whole value is one letter repeated: a torn or mixed file shows two letters or a short length.
Setting wholeValue(char letter, std::size_t length, SettingType type = SettingType::String)
{
    Setting setting;
    setting.type = type;
    setting.value = std::string(length, letter);
    return setting;
}

void expectWhole(const Setting& setting, std::size_t length, const std::string& key)
{
    ASSERT_EQ(length, setting.value.size()) << key;
    EXPECT_EQ(std::string::npos, setting.value.find_first_not_of(setting.value[0])) << key;
}

std::size_t entriesOf(const std::string& directory)
{
    std::size_t count = 0;
    DIR* stream = ::opendir(directory.c_str());
    while (stream != nullptr && ::readdir(stream) != nullptr)
        ++count;
    if (stream != nullptr)
        ::closedir(stream);
    return count - 2;  // "." and ".."
}

template <typename Body>
pid_t forkChild(Body body)
{
    const pid_t pid = ::fork();
    if (pid == 0) {
        body();
        ::_exit(0);
    }
    return pid;
}

int waitForExit(pid_t pid)
{
    int status = 0;
    ::waitpid(pid, &status, 0);
    return status;
}

TEST(SettingsStoreConcurrentTest, AWriterKilledMidwayLeavesEachKeyWithAnOldOrNewWholeValue)
{
    Testing::TemporaryDirectory device;
    for (const char* key : kKeys)
        ASSERT_EQ(VCONF_OK, writeSetting(device.path(), key, wholeValue('a', kMaxSettingValueLength)));
    std::mt19937 random(12345);
    for (int round = 0; round < 15; ++round) {
        const pid_t writer = forkChild([&] {
            for (unsigned n = 0;; ++n)
                for (const char* key : kKeys)
                    writeSetting(device.path(), key, wholeValue(static_cast<char>('a' + n % 26), kMaxSettingValueLength));
        });
        ASSERT_GT(writer, 0);
        ::usleep(std::uniform_int_distribution<unsigned>(0, 20000)(random));
        ::kill(writer, SIGKILL);
        ASSERT_TRUE(WIFSIGNALED(waitForExit(writer)));
        for (const char* key : kKeys) {
            Setting setting;
            ASSERT_EQ(VCONF_OK, readSetting(device.path(), key, setting)) << key;
            expectWhole(setting, kMaxSettingValueLength, key);
        }
        EXPECT_EQ(std::vector<std::string>(std::begin(kKeys), std::end(kKeys)), listSettings(device.path()));
    }
    // The killed writers' temporary files go with the next write of a live process.
    ASSERT_EQ(VCONF_OK, writeSetting(device.path(), kKeys[0], wholeValue('z', 10)));
    EXPECT_EQ(2u, entriesOf(device.path() + "/vconf"));
}

TEST(SettingsStoreConcurrentTest, ConcurrentWritersOfOneKeyNeverExposeATornValue)
{
    Testing::TemporaryDirectory device;
    const std::string key = "db/shared";
    const int writers = 4;
    const int writesEach = 60;
    std::vector<pid_t> children;
    for (int w = 0; w < writers; ++w) {
        children.push_back(forkChild([&] {
            // Writers alternate types too: a reader must see the type and value of one write.
            for (int n = 0; n < writesEach; ++n) {
                const bool asString = (w + n) % 2 == 0;
                const Setting setting = asString ? wholeValue(static_cast<char>('a' + w), 3000)
                                                 : wholeValue(static_cast<char>('1' + w), 9, SettingType::Int);
                if (writeSetting(device.path(), key, setting) != VCONF_OK)
                    ::_exit(1);
            }
        }));
    }
    for (int i = 0; i < 400; ++i) {
        Setting setting;
        const int result = readSetting(device.path(), key, setting);
        if (result == VCONF_ERROR_FILE_NO_ENT)
            continue;
        ASSERT_EQ(VCONF_OK, result);
        expectWhole(setting, setting.type == SettingType::String ? 3000 : 9, key);
    }
    for (const pid_t child : children) {
        const int status = waitForExit(child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    Setting last;
    ASSERT_EQ(VCONF_OK, readSetting(device.path(), key, last));
    expectWhole(last, last.type == SettingType::String ? 3000 : 9, key);
    EXPECT_EQ(std::vector<std::string>{key}, listSettings(device.path()));
}

} // namespace
} // namespace Emulator
} // namespace Orvo
