#include "orvo/device/SettingsStore.h"
#include "orvo/testing/TemporaryDirectory.h"

#include <gtest/gtest.h>
#include <cerrno>

#include <csignal>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

using namespace Orvo::Emulator;

// A whole value is one digit repeated to its type's length; a torn or mixed one is not.
static void expectWhole(const std::string& dir, const std::string& key) {
    Setting setting;
    ASSERT_EQ(0, readSetting(dir, key, setting)) << key;
    EXPECT_EQ(setting.type == SettingType::String ? kMaxSettingValueLength : 9u, setting.value.size()) << key;
    EXPECT_EQ(std::string::npos, setting.value.find_first_not_of(setting.value[0])) << key;
}

// A process writing whole values of alternating types to the keys, `writes` times (forever when
// negative); its exit status is 1 when a write failed.
static pid_t startWriter(const std::string& dir, const std::vector<std::string>& keys, int writes, int id) {
    const pid_t pid = ::fork();
    if (pid != 0) return pid;
    for (int n = 0; writes < 0 || n < writes; ++n) {
        const bool asString = (id + n) % 2 == 0;
        const std::string value(asString ? kMaxSettingValueLength : 9, static_cast<char>('1' + (id + n) % 9));
        for (const std::string& key : keys)
            if (writeSetting(dir, key, {asString ? SettingType::String : SettingType::Int, value}) != 0) ::_exit(1);
    }
    ::_exit(0);
}

static int finish(pid_t pid) {
    int status = -1;
    ::waitpid(pid, &status, 0);
    return status;
}

TEST(SettingsStoreConcurrentTest, AWriterKilledMidwayLeavesEachKeyWithAnOldOrNewWholeValue) {
    Orvo::Testing::TemporaryDirectory device;
    const std::vector<std::string> keys = {"db/big/a", "file/big/b", "memory/big/c"};
    ASSERT_EQ(0, finish(startWriter(device.path(), keys, 1, 0)));
    for (int round = 1; round <= 15; ++round) {
        const pid_t writer = startWriter(device.path(), keys, -1, round);
        ::usleep(static_cast<useconds_t>(round * 7919 % 20000));
        ::kill(writer, SIGKILL);
        EXPECT_TRUE(WIFSIGNALED(finish(writer))) << "every write succeeds until the kill";
        for (const std::string& key : keys)
            expectWhole(device.path(), key);
        EXPECT_EQ(keys, listSettings(device.path())) << "a temporary file is no key";
    }
    // The killed writers' temporary files go with the next write of a live process.
    ASSERT_EQ(0, finish(startWriter(device.path(), {keys[0]}, 1, 0)));
    EXPECT_EQ(2, std::distance(std::filesystem::directory_iterator(device.path() + "/vconf"), {}));
}

TEST(SettingsStoreConcurrentTest, WritersInSeveralProcessesNeverExposeATornValue) {
    Orvo::Testing::TemporaryDirectory device;
    ASSERT_EQ(0, finish(startWriter(device.path(), {"db/shared"}, 1, 0)));
    for (int id = 0; id < 4; ++id)
        startWriter(device.path(), {"db/shared"}, 60, id);
    for (int i = 0; i < 400; ++i)
        expectWhole(device.path(), "db/shared");
    for (int status = -1; ::wait(&status) > 0;)
        EXPECT_EQ(0, status);
}

TEST(SettingsStoreConcurrentTest, ARebootDoesNotFailWritersOfVolatileKeys) {
    Orvo::Testing::TemporaryDirectory device;
    const std::vector<std::string> keys = {"memory/orvo/a", "memory/orvo/b"};
    std::vector<pid_t> writers;
    for (int id = 0; id < 3; ++id)
        writers.push_back(startWriter(device.path(), keys, 150, id));
    for (int reboot = 0; reboot < 400; ++reboot) {
        ASSERT_TRUE(clearVolatileSettings(device.path()));
        ::usleep(200);
    }
    for (const pid_t writer : writers)
        EXPECT_EQ(0, finish(writer)) << "a write failed while the device rebooted";
}
