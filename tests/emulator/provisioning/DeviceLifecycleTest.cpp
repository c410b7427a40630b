// Devices are whole or absent, the sandbox confines the device's paths whatever device.conf
// lists, and neither the tools nor the substitute libraries work on (or make) a device that
// is not there.

#include "Orvo/Common/Debug/ProductionConfig.h"
#include "orvo/device/Device.h"
#include "orvo/device/SettingsStore.h"
#include "orvo/testing/Process.h"
#include "orvo/testing/TemporaryDirectory.h"
#include "orvo/testing/TestDevice.h"

#include <dlog.h>
#include <gtest/gtest.h>
#include <system_info.h>
#include <tzplatform_config.h>
#include <vconf.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace Orvo::Emulator;
using Orvo::Testing::ProcessResult;

namespace {

ProcessResult orvoDevice(std::vector<std::string> args, const std::map<std::string, std::string>& env = {}) {
    args.insert(args.begin(), Orvo::Testing::toolPath("orvo-device"));
    return Orvo::Testing::runProcess(args, "", env);
}

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

class Lifecycle : public testing::Test {
protected:
    const Orvo::Testing::TemporaryDirectory temporary;
    const std::string absent = temporary.path() + "/absent";
};

} // namespace

TEST_F(Lifecycle, TheSandboxPathsAreTheContractsWhateverRootsDeviceConfLists) {
    Orvo::Testing::TestDevice device;
    for (int root : {3, 7, 10, 27, 28})
        device.removeConf("tzplatform." + std::to_string(root));
    device.setConf("tzplatform.40", "/srv/own-root");
    const std::vector<std::string> paths = sandboxPaths(device.dir());
    for (const std::string path : {"/common", "/mnt/systemrw", "/mnt/backup", "/usr/share/orvotv", "/opt/orvotv",
                                   "/opt/usr/data/orvotv", "/srv/own-root/orvotv"})
        EXPECT_NE(paths.end(), std::find(paths.begin(), paths.end(), path)) << path;
    EXPECT_EQ(paths.end(), std::find(paths.begin(), paths.end(), "/usr/share")) << "never a whole shared root";
    // Only once the rule holds may a command write there: else it would land on the host.
    ASSERT_NE(paths.end(), std::find(paths.begin(), paths.end(), "/usr/share/orvotv"));
    const ProcessResult run =
        orvoDevice({"run", "--device", device.dir(), "--", "sh", "-c", "echo on > /usr/share/orvotv/probe"});
    EXPECT_EQ(0, run.exitCode) << run.err;
    EXPECT_TRUE(fs::exists(device.rootfsPath("/usr/share/orvotv/probe")));
}

TEST_F(Lifecycle, RunAndRebootRefuseLinksThatLeaveTheDevice) {
    Orvo::Testing::TestDevice device;
    const std::string other = temporary.path() + "/other";
    createDevice(other, emulatorDataDirectory(), "tv");
    fs::remove_all(device.dir() + "/rootfs/common");
    fs::create_symlink(other + "/rootfs/common", device.dir() + "/rootfs/common");
    const ProcessResult run = orvoDevice({"run", "--device", device.dir(), "--", "true"});
    EXPECT_EQ(1, run.exitCode);
    EXPECT_TRUE(contains(run.err, device.dir() + "/rootfs/common is a symbolic link")) << run.err;

    ASSERT_EQ(0, writeSetting(other, "memory/orvo/theirs", {SettingType::Int, "1"}));
    fs::remove_all(device.dir() + "/run/vconf");
    fs::create_symlink(other + "/run/vconf", device.dir() + "/run/vconf");
    const ProcessResult reboot = orvoDevice({"reboot", device.dir()});
    EXPECT_EQ(1, reboot.exitCode);
    EXPECT_TRUE(contains(reboot.err, "nothing removed")) << reboot.err;
    Setting setting;
    EXPECT_EQ(0, readSetting(other, "memory/orvo/theirs", setting));
}

TEST_F(Lifecycle, AKilledCreateLeavesNoDevice) {
    // A profile whose settings are a FIFO holds create at its last step until the test kills it.
    const std::string data = temporary.path() + "/data";
    fs::create_directories(data + "/profiles/slow");
    fs::copy_file(emulatorDataDirectory() + "/profiles/tv/device.conf", data + "/profiles/slow/device.conf");
    const std::string settings = data + "/profiles/slow/settings";
    ASSERT_EQ(0, ::mkfifo(settings.c_str(), 0644));
    const std::string tool = Orvo::Testing::toolPath("orvo-device");
    const pid_t creator = ::fork();
    if (creator == 0) {
        ::setenv("ORVO_EMULATOR_DATA_DIR", data.c_str(), 1);
        ::execl(tool.c_str(), tool.c_str(), "create", absent.c_str(), "--profile", "slow", nullptr);
        ::_exit(127);
    }
    // A FIFO opens for writing without waiting only once its reader has it open.
    int writer = -1;
    for (int tries = 0; writer < 0 && tries < 2000; ++tries) {
        writer = ::open(settings.c_str(), O_WRONLY | O_NONBLOCK);
        if (writer < 0) ::usleep(5000);
    }
    EXPECT_GE(writer, 0) << "create never read the profile's settings";
    EXPECT_FALSE(fs::exists(absent)) << "a device in the making is not in place";
    ::kill(creator, SIGKILL);
    ::waitpid(creator, nullptr, 0);
    if (writer >= 0) ::close(writer);
    EXPECT_FALSE(fs::exists(absent));
    fs::remove(settings);
    std::ofstream(settings) << "int db/orvo/made 1\n";
    const ProcessResult create =
        orvoDevice({"create", absent, "--profile", "slow"}, {{"ORVO_EMULATOR_DATA_DIR", data}});
    EXPECT_EQ(0, create.exitCode) << create.err;
    Setting setting;
    EXPECT_EQ(0, readSetting(absent, "db/orvo/made", setting)) << "a whole device";
}

TEST_F(Lifecycle, EveryToolRefusesADeviceDirectoryWithoutADevice) {
    const std::vector<std::vector<std::string>> commands = {
        {"orvo-device", "show"},
        {"orvo-device", "reboot"},
        {"orvo-device", "run", "--", "true"},
        {"orvo-device", "run", "--device", absent, "--", "true"},
        {"vconftool", "set", "-t", "int", "db/orvo/x", "1"},
        {"vconftool", "get", "db/orvo/x"},
        {"dlogutil", "-d"},
    };
    for (std::vector<std::string> command : commands) {
        command[0] = Orvo::Testing::toolPath(command[0]);
        const ProcessResult result = Orvo::Testing::runProcess(command, "", {{"ORVO_DEVICE_DIR", absent}});
        const std::string line = command[1] + ": " + result.err;
        EXPECT_NE(0, result.exitCode) << line;
        EXPECT_TRUE(contains(result.err, "no emulated device in " + absent)) << line;
        EXPECT_TRUE(contains(result.err, "orvo-device create")) << line;
        EXPECT_FALSE(contains(result.err, "namespace")) << line;
        EXPECT_EQ(1, std::count(result.err.begin(), result.err.end(), '\n')) << line;
        EXPECT_FALSE(fs::exists(absent)) << line;
    }
}

TEST_F(Lifecycle, TheSubstituteLibrariesFailWithoutADeviceAndNeverMakeOne) {
    const std::string state = temporary.path() + "/state";
    const std::vector<std::pair<std::string, std::function<bool()>>> calls = {
        {"vconf_set_int", [] { return vconf_set_int("db/orvo/x", 1) != 0 && vconf_get_ext_errno() == VCONF_ERROR; }},
        {"vconf_get_int",
         [] {
             int value = 0;
             return vconf_get_int("db/orvo/x", &value) != 0;
         }},
        {"vconf_unset", [] { return vconf_unset("db/orvo/x") != 0; }},
        {"dlog_print", [] { return dlog_print(DLOG_INFO, "tag", "x") == DLOG_ERROR_NOT_PERMITTED; }},
        {"system_info",
         [] {
             int value = 0;
             return system_info_get_value_int(system_info_key_e(77), &value) == SYSTEM_INFO_ERROR_IO_ERROR;
         }},
        {"tzplatform_getenv", [] { return tzplatform_getenv(tzplatform_variable(3)) == nullptr; }},
        {"isProduction", [] { return !Orvo::Common::Debug::isProduction(); }},
    };
    ::setenv("XDG_STATE_HOME", state.c_str(), 1);
    testing::internal::CaptureStderr();
    for (const bool named : {true, false}) {
        named ? ::setenv("ORVO_DEVICE_DIR", absent.c_str(), 1) : ::unsetenv("ORVO_DEVICE_DIR");
        for (const auto& [name, fails] : calls)
            EXPECT_TRUE(fails()) << name << (named ? " on ORVO_DEVICE_DIR" : " on the default device");
    }
    const std::string err = testing::internal::GetCapturedStderr();
    ::unsetenv("XDG_STATE_HOME");
    // Each of the five libraries says it once per process, in one line.
    const std::string line =
        "no emulated device in " + absent + " (make one with: orvo-device create " + absent + ")\n";
    std::string expected;
    for (int library = 0; library < 5; ++library)
        expected += line;
    EXPECT_EQ(expected, err);
    EXPECT_FALSE(fs::exists(absent));
    EXPECT_FALSE(fs::exists(state)) << "no default device made";
}

TEST_F(Lifecycle, TheScriptAndTheToolsFollowOneDeviceDirectoryRule) {
    const std::string state = temporary.path() + "/state";
    const std::map<std::string, std::string> env = {{"XDG_STATE_HOME", state}, {"ORVO_DEVICE_DIR", ""}};
    const std::string device = state + "/orvo-emulator/device";
    EXPECT_EQ(device + "\n", orvoDevice({"path"}, env).out);
    EXPECT_EQ(device + "-pane\n", orvoDevice({"path", "--profile", "pane"}, env).out);
    EXPECT_EQ(2, orvoDevice({"path", "--profile", "../x"}, env).exitCode);
    // The tools' default device is the one that path names, made on first use.
    const ProcessResult run =
        orvoDevice({"run", "--", "sh", "-c", "echo on > /mnt/backup/mark; echo $ORVO_DEVICE_DIR"}, env);
    EXPECT_EQ(device + "\n", run.out) << run.err;
    EXPECT_EQ("on\n", orvoDevice({"run", "--", "cat", "/mnt/backup/mark"}, env).out) << "the default device persists";
    EXPECT_EQ(1, std::distance(fs::directory_iterator(state + "/orvo-emulator"), {})) << "no staging left";
}
