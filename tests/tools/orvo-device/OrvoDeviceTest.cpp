#include "orvo/device/DeviceConf.h"
#include "orvo/device/SettingsStore.h"
#include "orvo/testing/Process.h"
#include "orvo/testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;
using namespace Orvo::Emulator;

static Orvo::Testing::ProcessResult tool(std::vector<std::string> args,
                                         const std::map<std::string, std::string>& env = {}) {
    args.insert(args.begin(), Orvo::Testing::toolPath("orvo-device"));
    return Orvo::Testing::runProcess(args, "", env);
}

static void expectOneLineError(const std::vector<std::string>& args, int exitCode, const std::string& text) {
    const auto result = tool(args);
    EXPECT_EQ(result.exitCode, exitCode) << text;
    EXPECT_NE(result.err.find(text), std::string::npos) << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
}

class OrvoDevice : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(tool({"create", tv}).exitCode, 0); } // no profile: a television

    const Orvo::Testing::TemporaryDirectory temporary;
    const std::string tv = temporary.path() + "/tv";
};

TEST_F(OrvoDevice, CreatesEachProfileAndRefusesAnExistingDeviceOrAnUnknownProfile) {
    EXPECT_EQ(DeviceConf::load(tv).systemInfo.at(77).intValue, 0) << "a television";
    for (const auto& [profile, productCode, pane] :
         {std::make_tuple("pane", 0, true), std::make_tuple("monitor", 1, false)}) {
        ASSERT_EQ(tool({"create", temporary.path() + "/" + profile, "--profile", profile}).exitCode, 0) << profile;
        const DeviceConf conf = DeviceConf::load(temporary.path() + "/" + profile);
        EXPECT_EQ(conf.systemInfo.at(77).intValue, productCode) << profile;
        EXPECT_EQ(conf.systemInfo.at(740).boolValue, pane) << profile;
    }
    expectOneLineError({"create", tv, "--profile", "pane"}, 1, "already exists");
    EXPECT_FALSE(DeviceConf::load(tv).systemInfo.at(740).boolValue) << "the existing device stays";
    // A name that leads out of the profiles is no profile either.
    expectOneLineError({"create", temporary.path() + "/new", "--profile", "../profiles/tv"}, 1,
                       "unknown profile '../profiles/tv' (available: monitor, pane, tv)");
    EXPECT_FALSE(fs::exists(temporary.path() + "/new"));
}

TEST_F(OrvoDevice, RebootClearsMemoryKeysAndKeepsDbKeys) {
    Setting setting;
    writeSetting(tv, "memory/orvo/lost", Setting{SettingType::String, "volatile"});
    EXPECT_EQ(tool({"reboot", tv}).exitCode, 0);
    EXPECT_NE(readSetting(tv, "memory/orvo/lost", setting), 0);
    EXPECT_EQ(readSetting(tv, "db/menu/support/softwareupdate/autoupdate", setting), 0) << "db/ keys stay";
}

TEST_F(OrvoDevice, RunShowsTheDevicesFilesKeepsItsWritesAndPassesTheExitStatus) {
    const std::string probe = "probe-" + fs::path(temporary.path()).filename().string();
    const std::vector<std::string> paths = {"/mnt/systemrw/orvotv/", "/common/", "/usr/share/orvotv/",
                                            "/opt/usr/data/orvotv/"};
    std::string script =
        "cmp /common/version.txt \"$ORVO_DEVICE_DIR/rootfs/common/version.txt\" && "
        "ls /usr/share/orvotv/res/locale && echo \"$ORVO_DEVICE_DIR\" && touch";
    for (const std::string& path : paths)
        script += " " + path + probe;
    const auto result = tool({"run", "--device", tv, "--", "sh", "-c", script + "; exit 42"});
    EXPECT_EQ(result.exitCode, 42) << result.err;
    EXPECT_EQ(result.out, "de\nen\nfr\n" + fs::canonical(tv).string() + "\n");
    for (const std::string& path : paths) {
        EXPECT_TRUE(fs::exists(tv + "/rootfs" + path + probe)) << path;
        EXPECT_FALSE(fs::exists(path + probe)) << path << " leaked onto the host";
    }
    expectOneLineError({"run", "--device", tv, "--", "/nonexistent/program"}, 127, "cannot execute");
}

// run leaves the options of the command it starts to that command; errors name the subcommand.
TEST_F(OrvoDevice, LeavesTheRunCommandsOptionsAloneAndNamesTheSubcommandInUsageErrors) {
    const auto run = tool({"run", "--device=" + tv, "sh", "-c", "echo $0 $ORVO_DEVICE_DIR", "-x"});
    EXPECT_EQ(run.out, "-x " + tv + "\n") << run.err;
    expectOneLineError({"show", "--profile", "tv"}, 2, "orvo-device show: unknown option --profile");
    expectOneLineError({"run", "--device"}, 2, "orvo-device run: --device needs a value");
    expectOneLineError({"reboot", "-q"}, 2, "orvo-device reboot: unknown option -q (see orvo-device reboot --help)");
    expectOneLineError({"create"}, 2, "(see orvo-device create --help)");
    EXPECT_EQ(tool({"reboot", "--", tv}).exitCode, 0);
}

TEST_F(OrvoDevice, ShowEndsWithTheLastTwentyRecordsOfTheMainLog) {
    std::ofstream log(tv + "/log/main.log");
    for (int i = 0; i < 21; ++i)
        log << "1.000000000\t7\t7\t4\tT\trecord " << i << "\n";
    log.close();
    const auto result = tool({"show", tv});
    EXPECT_NE(result.out.find("(last 20 of 21 records)\n"), std::string::npos) << result.out;
    EXPECT_EQ(result.out.find("record 0\n"), std::string::npos);
    EXPECT_NE(result.out.find("record 1\n"), std::string::npos);
}
