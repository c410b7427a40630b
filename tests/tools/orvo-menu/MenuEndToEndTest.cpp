// orvo-menu on the emulated device, for every shipped profile: what it prints against what the
// plug-in's callbacks return, settings written by the menu and by vconftool, the Info key and
// the contract check.

#include "Json.h"
#include "RawPlugin.h"
#include "orvo/testing/TestUtil.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Orvo {
namespace Testing {
namespace {

using Emulator::MenuHost::jsonString;

constexpr const char* kBranch = "menu/support/softwareupdate";
constexpr const char* kAutoUpdate = "db/menu/support/softwareupdate/autoupdate";
constexpr const char* kCellular = "db/menu/support/softwareupdate/use_cellular_int";
constexpr const char* kModelSearch = "menu/support/softwareupdate/searchmodels";
const std::vector<std::string> kItems = {kBranch, "menu/support/softwareupdate/updatenow", kModelSearch,
                                         kAutoUpdate, kCellular, "menu/support/softwareupdate/osupgrade"};

std::string plainText(std::string text) {
    for (std::size_t at = text.find("<br>"); at != std::string::npos; at = text.find("<br>", at)) {
        text.replace(at, 4, "\n");
    }
    return text;
}

ProcessResult menu(const std::vector<std::string>& arguments, const std::string& input = "") {
    std::vector<std::string> argv = {toolPath("orvo-menu")};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    return runProcess(argv, input);
}

int storedInt(const std::string& key) {
    const ProcessResult result = runProcess({toolPath("vconftool"), "get", key});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out.rfind(key + ", value = ", 0), 0u) << result.out;
    return std::atoi(result.out.substr(key.size() + 10).c_str());
}

class OrvoMenuOnDevice : public testing::TestWithParam<std::string> {
protected:
    TestDevice device{GetParam()};
};

TEST_P(OrvoMenuOnDevice, ShowPrintsWhatTheCallbacksReturn) {
    useLanguage("de");
    const ProcessResult shown = menu({"--language", "de", "--width", "1000", "show"});
    ASSERT_EQ(shown.exitCode, 0) << shown.err;
    const RawPlugin plugin(ORVO_MENU_PLUGIN);
    for (const std::string& id : kItems) {
        EXPECT_NE(shown.out.find(plugin.title(id)), std::string::npos) << id << "\n" << shown.out;
        const std::string description = plainText(plugin.description(id));
        for (std::size_t start = 0, end = 0; end != std::string::npos; start = end + 1) {
            end = description.find('\n', start);
            const std::string line = description.substr(start, end - start);
            if (!line.empty()) {
                EXPECT_NE(shown.out.find(" " + line + "\n"), std::string::npos) << line;
            }
        }
    }
    EXPECT_NE(shown.out.find(" " + plugin.stateText(kAutoUpdate) + "\n"), std::string::npos) << shown.out;
    EXPECT_NE(shown.out.find(kAutoUpdate + std::string(" = ") + std::to_string(plugin.intValue(kAutoUpdate))),
              std::string::npos);
    EXPECT_NE(shown.out.find(" " + plugin.valueString(kModelSearch) + "\n"), std::string::npos);
    EXPECT_NE(shown.out.find(plugin.property("provider/owner")), std::string::npos);
    EXPECT_NE(shown.out.find(plugin.property("provider/main-component")), std::string::npos);
}

TEST_P(OrvoMenuOnDevice, JsonIsValidAndCarriesTheCallbacksResults) {
    useLanguage("fr");
    const ProcessResult shown = menu({"--language", "fr", "show", "--json"});
    ASSERT_EQ(shown.exitCode, 0) << shown.err;
    const ProcessResult parsed = runProcess({"python3", "-m", "json.tool"}, shown.out);
    EXPECT_EQ(parsed.exitCode, 0) << parsed.err << shown.out;
    const RawPlugin plugin(ORVO_MENU_PLUGIN);
    for (const std::string& id : kItems) {
        const std::string expected = "{\"id\":" + jsonString(id) + ",\"kind\":";
        const std::size_t item = shown.out.find(expected);
        ASSERT_NE(item, std::string::npos) << id;
        EXPECT_EQ(shown.out.find(",\"title\":" + jsonString(plugin.title(id)), item), shown.out.find(",\"title\":", item));
        EXPECT_NE(shown.out.find("\"description\":" + jsonString(plugin.description(id)), item), std::string::npos);
    }
    for (const char* toggle : {kAutoUpdate, kCellular}) {
        const std::string setting = "\"setting\":" + std::to_string(plugin.intValue(toggle));
        EXPECT_NE(shown.out.find(setting, shown.out.find(jsonString(toggle))), std::string::npos) << toggle;
        EXPECT_NE(shown.out.find("\"stateText\":" + jsonString(plugin.stateText(toggle))), std::string::npos);
    }
    EXPECT_NE(shown.out.find("\"value\":" + jsonString(plugin.valueString(kModelSearch))), std::string::npos);
    EXPECT_NE(shown.out.find("\"provider/owner\":" + jsonString(plugin.property("provider/owner"))),
              std::string::npos);
}

TEST_P(OrvoMenuOnDevice, ToggleSetInAScriptIsPersistedAndShown) {
    useLanguage("en");
    const int before = storedInt(kAutoUpdate);
    const int after = before == 1 ? 0 : 1;
    const ProcessResult result =
        menu({"script", std::string("set ") + kAutoUpdate + " " + std::to_string(after), std::string("get ") + kAutoUpdate,
              std::string("value ") + kAutoUpdate});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(storedInt(kAutoUpdate), after);
    const RawPlugin plugin(ORVO_MENU_PLUGIN);
    EXPECT_EQ(result.out, std::to_string(after) + "\n" + plugin.stateText(kAutoUpdate) + "\n");
}

TEST_P(OrvoMenuOnDevice, SettingChangedWithVconftoolIsShownAtOnce) {
    useLanguage("en");
    const RawPlugin plugin(ORVO_MENU_PLUGIN);
    for (const char* value : {"1", "0"}) {
        ASSERT_EQ(runProcess({toolPath("vconftool"), "set", "-t", "int", kCellular, value}).exitCode, 0);
        const ProcessResult shown = menu({"script", std::string("value ") + kCellular, std::string("get ") + kCellular});
        EXPECT_EQ(shown.out, plugin.stateText(kCellular) + "\n" + value + "\n");
    }
}

TEST_P(OrvoMenuOnDevice, InfoKeyShowsTheDetailedVersionOnceThenTheNormalText) {
    useLanguage("en");
    const RawPlugin plugin(ORVO_MENU_PLUGIN);
    const std::string normal = plainText(plugin.description(kBranch));
    plugin.key("XF86Info");
    const std::string detailed = plugin.description(kBranch);
    ASSERT_EQ(detailed.rfind("SW Version: ", 0), 0u) << detailed;

    // The actions arrive from standard input, one per line.
    const ProcessResult result =
        menu({"script"}, std::string("key XF86Info\ndescription ") + kBranch + "\n# again\ndescription " + kBranch + "\n");
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, detailed + "\n" + normal + "\n");
}

TEST_P(OrvoMenuOnDevice, LanguageSwitchesInsideOneScript) {
    std::string titles[2];
    const char* languages[2] = {"en", "de"};
    for (int i = 0; i < 2; ++i) {
        useLanguage(languages[i]);
        titles[i] = RawPlugin(ORVO_MENU_PLUGIN).title(kAutoUpdate);
    }
    ASSERT_NE(titles[0], titles[1]) << "the catalogue translates the title";
    const std::string title = std::string("title ") + kAutoUpdate;
    const ProcessResult result = menu({"--language", "en", "script", title, "language de", title});
    EXPECT_EQ(result.out, titles[0] + "\n" + titles[1] + "\n") << result.err;
}

TEST_P(OrvoMenuOnDevice, CheckIsGreenOnThePluginAndPutsSettingsBack) {
    const int before = storedInt(kAutoUpdate);
    const ProcessResult result = menu({"check"});
    EXPECT_EQ(result.exitCode, 0) << result.out;
    EXPECT_EQ(result.out.find("FAIL"), std::string::npos) << result.out;
    EXPECT_NE(result.out.find(" 0 violated, 0 skipped\n"), std::string::npos) << result.out;
    EXPECT_EQ(storedInt(kAutoUpdate), before);
}

TEST_P(OrvoMenuOnDevice, BadScriptIsRejectedBeforeAnythingRuns) {
    const int before = storedInt(kAutoUpdate);
    const ProcessResult result =
        menu({"script", std::string("set ") + kAutoUpdate + " " + std::to_string(1 - before), "jump"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "orvo-menu: line 2: unknown action 'jump'\n");
    EXPECT_EQ(storedInt(kAutoUpdate), before);
}

INSTANTIATE_TEST_SUITE_P(Profiles, OrvoMenuOnDevice, testing::Values("tv", "pane", "monitor"));

} // namespace
} // namespace Testing
} // namespace Orvo
