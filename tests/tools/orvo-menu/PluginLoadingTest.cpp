// The host against the test plug-ins: loading, rejection of unusable plug-ins, and the contract
// check's verdicts.

#include "Branch.h"
#include "ContractCheck.h"
#include "Provider.h"
#include "orvo/testing/Process.h"

#include <gtest/gtest.h>

#include <sstream>

namespace Orvo {
namespace Emulator {
namespace MenuHost {
namespace {

using Testing::runProcess;
using Testing::toolPath;

std::size_t countLines(const std::string& text) {
    std::size_t lines = 0;
    for (char c : text) lines += c == '\n';
    return lines;
}

TEST(OrvoMenuPlugin, ReadsTheBranchThroughTheRecordAndReleasesEveryString) {
    const PluginLibrary library(FAKE_GOOD_PLUGIN);
    const Provider provider(library);
    const BranchView view = readBranch(provider);
    EXPECT_EQ(view.branch.title.text.value_or("?"), "Fake Update");
    ASSERT_EQ(view.items.size(), 5u);
    EXPECT_EQ(view.items[1].value.text.value_or("?"), "FAKE-MODEL");
    EXPECT_EQ(view.items[2].stateId.text.value_or("?"), "SID_ON");
    EXPECT_EQ(view.items[2].setting.value.value_or(-1), 1);
    EXPECT_EQ(view.items[3].stateId.text.value_or("?"), "SID_OFF");
    EXPECT_FALSE(view.items[0].value.offered) << "only value items are asked for a value";
    EXPECT_EQ(view.properties[2].second.text.value_or("?"), "TP_FAKE");
}

TEST(OrvoMenuPlugin, RejectsPluginsItCannotUse) {
    EXPECT_THROW(PluginLibrary("/nonexistent/plugin.so"), PluginError);
    EXPECT_THROW(PluginLibrary{FAKE_UNVERSIONED_PLUGIN}, PluginError);
    const PluginLibrary failing(FAKE_FAILING_CREATE_PLUGIN);
    EXPECT_THROW(Provider{failing}, PluginError);
}

TEST(OrvoMenuPlugin, UnusablePluginGivesOneLineAndFailure) {
    for (const char* plugin : {FAKE_UNVERSIONED_PLUGIN, FAKE_FAILING_CREATE_PLUGIN, "/nonexistent/plugin.so"}) {
        const auto result = runProcess({toolPath("orvo-menu"), "--plugin", plugin, "show"});
        EXPECT_NE(result.exitCode, 0) << plugin;
        EXPECT_EQ(result.out, "") << plugin;
        EXPECT_EQ(countLines(result.err), 1u) << result.err;
        EXPECT_EQ(result.err.rfind("orvo-menu: ", 0), 0u) << result.err;
    }
    const auto unversioned = runProcess({toolPath("orvo-menu"), "--plugin", FAKE_UNVERSIONED_PLUGIN, "check"});
    EXPECT_NE(unversioned.err.find("create_provider@ORVOMENUITEMDATAPROVIDER"), std::string::npos) << unversioned.err;
    const auto failing = runProcess({toolPath("orvo-menu"), "--plugin", FAKE_FAILING_CREATE_PLUGIN, "show"});
    EXPECT_NE(failing.err.find("create_provider failed (result -1"), std::string::npos) << failing.err;
}

TEST(OrvoMenuPlugin, CheckPassesAPluginThatKeepsTheContract) {
    const PluginLibrary library(FAKE_GOOD_PLUGIN);
    std::ostringstream out;
    EXPECT_EQ(runContractCheck(library, out), 0) << out.str();
    EXPECT_EQ(out.str().find("FAIL"), std::string::npos) << out.str();
    EXPECT_NE(out.str().find(" 0 violated, 0 skipped"), std::string::npos) << out.str();
}

TEST(OrvoMenuPlugin, CheckReportsEveryBreachOfACarelessPlugin) {
    const auto result = runProcess({toolPath("orvo-menu"), "--plugin", FAKE_CARELESS_PLUGIN, "check"});
    EXPECT_EQ(result.exitCode, 1);
    const std::string& out = result.out;
    EXPECT_NE(out.find("FAIL  freeString(nullptr): returned 0, expected 1"), std::string::npos) << out;
    EXPECT_NE(out.find("FAIL  slot 20: returned a function"), std::string::npos) << out;
    EXPECT_NE(out.find("FAIL  getTitle(\"menu/support/softwareupdatenow\", &null): returned 0, *out null, "
                       "expected -1, *out null"),
              std::string::npos) << out;
    EXPECT_NE(out.find("FAIL  getValueText(\"menu/support/softwareupdate/updatenow\", &buffer): returned -1, "
                       "buffer written"),
              std::string::npos) << out;
    EXPECT_NE(out.find("FAIL  getDescription of the branch after onKeyEvent(\"XF86Back\")"), std::string::npos) << out;
    EXPECT_NE(out.find("ok    getTitle(\"menu/support/softwareupdate\", &null)"), std::string::npos) << out;
}

} // namespace
} // namespace MenuHost
} // namespace Emulator
} // namespace Orvo
