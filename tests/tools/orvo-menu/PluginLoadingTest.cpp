// orvo-menu against the test plug-ins: an unusable plug-in is refused in one line, and the
// contract check goes red on a careless one.

#include "orvo/testing/Process.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>

namespace Orvo::Testing {

TEST(OrvoMenuPlugin, UnusablePluginIsRefusedInOneLine) {
    const std::pair<std::string, const char*> rows[] = {
        {FAKE_UNVERSIONED_PLUGIN, ": no entry point create_provider@ORVOMENUITEMDATAPROVIDER\n"},
        {FAKE_FAILING_CREATE_PLUGIN, ": create_provider failed (result -1, no record)\n"}};
    for (const auto& row : rows) {
        const ProcessResult result = runProcess({toolPath("orvo-menu"), "--plugin", row.first, "show"});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.out + result.err, "orvo-menu: " + row.first + row.second);
    }
}

TEST(OrvoMenuPlugin, CheckReportsTheBreachesOfACarelessPlugin) {
    const ProcessResult result = runProcess({toolPath("orvo-menu"), "--plugin", FAKE_CARELESS_PLUGIN, "check"});
    EXPECT_EQ(result.exitCode, 1);
    for (const char* line : {"FAIL  freeString(nullptr): returned 0, expected 1\n",
                             "FAIL  slot 20: returned a function, expected null (no such operation)\n",
                             "FAIL  getTitle(\"menu/support/softwareupdatenow\", &null): returned 0, *out \"Fake\", "
                             "expected -1, *out null\n"})
        EXPECT_NE(result.out.find(line), std::string::npos) << line << result.out;
}

// Mistakes a script makes: each is one line on standard error with a non-zero status, and
// nothing on standard output.
TEST(OrvoMenuPlugin, RefusesUnknownItemsDirectoriesAsScriptsAndRunningOutsideTheSandbox) {
    const TestDevice device;
    const struct {
        std::vector<std::string> args;
        int exitCode;
        std::string error;
    } rows[] = {
        {{"show", "menu/support/nosuchitem"}, 2, "orvo-menu: unknown item 'menu/support/nosuchitem' (the items: "},
        {{"script", "--file", device.dir()}, 1, "orvo-menu: " + device.dir() + " is a directory, not a script\n"},
        {{"script", "show nosuchitem"}, 1, "orvo-menu: line 1: unknown item 'nosuchitem' (the items: "},
        // Outside the sandbox the plug-in's catalogues are not where it looks for them.
        {{"show"},
         1,
         "orvo-menu: no message catalogue in /usr/share/orvotv/res/locale (outside the device sandbox "
         "every text is a bare message id): run it as `orvo-device run -- orvo-menu ...`, as "
         "scripts/run does\n"},
        {{"script", "title menu/support/softwareupdate"}, 1, "orvo-menu: no message catalogue in "},
    };
    for (const auto& row : rows) {
        std::vector<std::string> argv = {toolPath("orvo-menu"), "--plugin", ORVO_MENU_PLUGIN};
        argv.insert(argv.end(), row.args.begin(), row.args.end());
        const ProcessResult result = runProcess(argv);
        EXPECT_EQ(result.exitCode, row.exitCode) << row.args[0];
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err.rfind(row.error, 0), 0u) << result.err;
        EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
    }
}

} // namespace Orvo::Testing
