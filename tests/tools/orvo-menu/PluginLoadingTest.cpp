// orvo-menu against the test plug-ins: an unusable plug-in is refused in one line, and the
// contract check goes red on a careless one.

#include "orvo/testing/Process.h"

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
    for (const char* line : {
             "FAIL  freeString(nullptr): returned 0, expected 1\n",
             "FAIL  slot 20: returned a function, expected null (no such operation)\n",
             "FAIL  getTitle(\"menu/support/softwareupdatenow\", &null): returned 0, *out \"Fake\", "
             "expected -1, *out null\n",
         }) {
        EXPECT_NE(result.out.find(line), std::string::npos) << line << result.out;
    }
}

} // namespace Orvo::Testing
