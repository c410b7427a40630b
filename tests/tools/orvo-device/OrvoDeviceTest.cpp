#include "orvo/device/DeviceConf.h"
#include "orvo/device/LogStore.h"
#include "orvo/device/SettingsStore.h"
#include "orvo/testing/Process.h"
#include "orvo/testing/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace Orvo {
namespace Emulator {
namespace {

namespace fs = std::filesystem;
using Orvo::Testing::ProcessResult;
using testing::HasSubstr;

std::string readFile(const std::string& path)
{
    std::ifstream in(path);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

class OrvoDevice : public testing::Test {
protected:
    ProcessResult tool(std::vector<std::string> args, const std::map<std::string, std::string>& env = {})
    {
        args.insert(args.begin(), Orvo::Testing::toolPath("orvo-device"));
        return Orvo::Testing::runProcess(args, "", env);
    }

    std::string createdDevice(const std::string& profile = "tv")
    {
        const std::string dir = m_temporary.path() + "/" + profile;
        const ProcessResult result = tool({"create", dir, "--profile", profile});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return dir;
    }

    static void expectOneLineError(const ProcessResult& result, int exitCode, const std::string& text)
    {
        EXPECT_EQ(result.exitCode, exitCode);
        EXPECT_THAT(result.err, HasSubstr(text));
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    }

    Orvo::Testing::TemporaryDirectory m_temporary;
};

TEST_F(OrvoDevice, ListsProfilesAndCreatesTheTelevisionByDefault)
{
    const ProcessResult profiles = tool({"profiles"});
    EXPECT_EQ(profiles.exitCode, 0);
    EXPECT_EQ(profiles.out, "monitor\npane\ntv\n");
    const std::string dir = m_temporary.path() + "/default";
    EXPECT_EQ(tool({"create", dir}).exitCode, 0);
    EXPECT_EQ(DeviceConf::load(dir).systemInfo.at(128).stringValue, "T-KTM2DEUC-1302.5");
    EXPECT_EQ(DeviceConf::load(createdDevice("monitor")).systemInfo.at(77).intValue, 1);
}

TEST_F(OrvoDevice, CreateRefusesAnExistingDeviceAndAnUnknownProfile)
{
    const std::string dir = createdDevice();
    expectOneLineError(tool({"create", dir}), 1, "already exists");
    expectOneLineError(tool({"create", m_temporary.path() + "/new", "--profile=oven"}), 1, "unknown profile 'oven'");
    EXPECT_FALSE(fs::exists(m_temporary.path() + "/new"));
}

TEST_F(OrvoDevice, ValidatesItsCommandLine)
{
    expectOneLineError(tool({}), 2, "missing command");
    expectOneLineError(tool({"explode"}), 2, "unknown command 'explode'");
    expectOneLineError(tool({"create"}), 2, "missing device directory");
    expectOneLineError(tool({"create", "a", "b"}), 2, "too many arguments");
    expectOneLineError(tool({"create", "a", "--profile"}), 2, "--profile needs a value");
    expectOneLineError(tool({"create", "a", "--colour", "red"}), 2, "unknown option --colour");
    expectOneLineError(tool({"run", "--device"}), 2, "--device needs a value");
    expectOneLineError(tool({"run", "--device", "x", "--"}), 2, "missing command to run");
    expectOneLineError(tool({"reboot", "a", "b"}), 2, "too many arguments");
    expectOneLineError(tool({"profiles", "extra"}), 2, "no arguments");
    expectOneLineError(tool({"show", m_temporary.path()}), 1, "not a device directory");
    expectOneLineError(tool({"reboot", m_temporary.path()}), 1, "not a device directory");
}

TEST_F(OrvoDevice, AnswersHelpForEveryCommand)
{
    const ProcessResult overall = tool({"--help"});
    EXPECT_EQ(overall.exitCode, 0);
    for (const char* command : {"create", "run", "reboot", "profiles", "show"}) {
        EXPECT_THAT(overall.out, HasSubstr(std::string("  ") + command + " ")) << command;
        const ProcessResult help = tool({command, "--help"});
        EXPECT_EQ(help.exitCode, 0) << command;
        EXPECT_THAT(help.out, HasSubstr(std::string("Usage: orvo-device ") + command)) << command;
        EXPECT_TRUE(help.err.empty()) << command;
    }
}

TEST_F(OrvoDevice, RebootClearsMemoryKeysAndKeepsDbKeys)
{
    const std::string dir = createdDevice();
    writeSetting(dir, "db/orvo/kept", Setting{SettingType::String, "persistent"});
    writeSetting(dir, "memory/orvo/lost", Setting{SettingType::String, "volatile"});
    const ProcessResult result = tool({"reboot", dir});
    EXPECT_EQ(result.exitCode, 0) << result.err;

    Setting setting;
    EXPECT_EQ(readSetting(dir, "db/orvo/kept", setting), 0);
    EXPECT_EQ(setting.value, "persistent");
    EXPECT_EQ(readSetting(dir, "db/menu/support/softwareupdate/autoupdate", setting), 0);
    EXPECT_NE(readSetting(dir, "memory/orvo/lost", setting), 0);
    EXPECT_NE(readSetting(dir, "memory/menu/support/softwareupdate/newest_version", setting), 0);
}

TEST_F(OrvoDevice, RebootWithoutDirectoryUsesTheEnvironmentsDevice)
{
    const std::string dir = createdDevice();
    writeSetting(dir, "memory/orvo/lost", Setting{SettingType::Int, "1"});
    EXPECT_EQ(tool({"reboot"}, {{"ORVO_DEVICE_DIR", dir}}).exitCode, 0);
    Setting setting;
    EXPECT_NE(readSetting(dir, "memory/orvo/lost", setting), 0);
}

TEST_F(OrvoDevice, RunShowsTheDevicesFilesAtAbsolutePaths)
{
    const std::string dir = createdDevice("pane");
    const ProcessResult result =
        tool({"run", "--device", dir, "--", "sh", "-c",
              "cat /common/version.txt; ls /usr/share/orvotv/res/locale; echo \"$ORVO_DEVICE_DIR\""});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, readFile(dir + "/rootfs/common/version.txt") + "de\nen\nfr\n" +
                              fs::canonical(dir).string() + "\n");
}

TEST_F(OrvoDevice, RunWritesLandInTheDeviceNotOnTheHost)
{
    const std::string dir = createdDevice();
    const std::string name = "probe-" + fs::path(m_temporary.path()).filename().string();
    const std::vector<std::string> paths = {"/mnt/systemrw/orvotv/" + name, "/common/" + name,
                                            "/usr/share/orvotv/" + name, "/opt/usr/data/orvotv/" + name};
    std::string script;
    for (const std::string& path : paths) {
        script += "echo written > " + path + " && ";
    }
    const ProcessResult result = tool({"run", "--device", dir, "--", "sh", "-c", script + "true"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    for (const std::string& path : paths) {
        EXPECT_EQ(readFile(dir + "/rootfs" + path), "written\n") << path;
        EXPECT_FALSE(fs::exists(path)) << path << " leaked onto the host";
    }
}

TEST_F(OrvoDevice, RunPassesTheCommandsExitStatus)
{
    const std::string dir = createdDevice();
    EXPECT_EQ(tool({"run", "--device", dir, "--", "sh", "-c", "exit 42"}).exitCode, 42);
    EXPECT_EQ(tool({"run", "--device=" + dir, "false"}).exitCode, 1);
    expectOneLineError(tool({"run", "--device", dir, "--", "/nonexistent/program"}), 127, "cannot execute");
    expectOneLineError(tool({"run", "--device", m_temporary.path(), "--", "true"}), 1, "not a device directory");
}

TEST_F(OrvoDevice, RunWithoutDeviceCreatesTheDefaultDevice)
{
    const std::map<std::string, std::string> env = {{"ORVO_DEVICE_DIR", ""}, {"XDG_STATE_HOME", m_temporary.path()}};
    const ProcessResult first = tool({"run", "--", "sh", "-c", "echo first > /mnt/backup/mark; echo $ORVO_DEVICE_DIR"}, env);
    ASSERT_EQ(first.exitCode, 0) << first.err;
    const std::string dir = m_temporary.path() + "/orvo-emulator/device";
    EXPECT_EQ(first.out, dir + "\n");
    const ProcessResult second = tool({"run", "--", "cat", "/mnt/backup/mark"}, env);
    EXPECT_EQ(second.out, "first\n") << "the default device persists between runs";
}

TEST_F(OrvoDevice, ShowsFactsSettingsAndTheMainLog)
{
    const std::string dir = createdDevice();
    const std::string message = "Text domain for Orvo translations has been set";
    appendLogRecord(dir, 0, 4, "orvotv.Orvo", message.c_str(), message.size());
    const ProcessResult result = tool({"show", dir});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("software version    \"T-KTM2DEUC-1302.5\""));
    EXPECT_THAT(result.out, HasSubstr("PANE family         false"));
    EXPECT_THAT(result.out, HasSubstr("27 /opt/usr/data"));
    EXPECT_THAT(result.out, HasSubstr("db/menu/support/softwareupdate/autoupdate = 1 (int)"));
    EXPECT_THAT(result.out, HasSubstr("I/orvotv.Orvo("));
    EXPECT_THAT(result.out, HasSubstr(message));
}

} // namespace
} // namespace Emulator
} // namespace Orvo
