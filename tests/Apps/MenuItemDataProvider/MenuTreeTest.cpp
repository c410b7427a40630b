// Titles and descriptions of the software-update branch, through the loaded plug-in on the
// emulated device. Expected texts come from the device's message catalogue.

#include "ProviderLibrary.h"

#include "orvo/testing/Process.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <libintl.h>
#include <vconf.h>

#include <clocale>
#include <cstdlib>
#include <optional>
#include <set>
#include <string>
#include <tuple>

namespace Orvo {
namespace Testing {
namespace {

constexpr const char* kBranch = "menu/support/softwareupdate";
constexpr const char* kUpdateNow = "menu/support/softwareupdate/updatenow";
constexpr const char* kNewestVersion = "memory/menu/support/softwareupdate/newest_version";
constexpr const char* kCurrentVersionInput = "T-ABCDEFG-1024.3";
constexpr const char* kNewestVersionInput = "T-ABCDEFG-01100.0";

struct ItemTexts {
    const char* id;
    const char* titleId;
    const char* helpId;   // on a television
    bool hasVariants;     // help worded for a television, reworded for other products
};

const ItemTexts kItems[] = {
    {kBranch, "COM_SOFTWARE_UPDATE", "TV_SID_MENU_VIEW_TV_SW_VERSION_UPDATE", true},
    {kUpdateNow, "COM_TV_SID_UPDATE_NOW", "COM_UPDATE_SOFTWARE_DOWNLOADI_FILES_KR_16", false},
    {"menu/support/softwareupdate/searchmodels", "TV_SID_UPDATE_UPDATE_CHANNELS", "COM_TV_MODELS_SEARCH_HELP", false},
    {"db/menu/support/softwareupdate/autoupdate", "COM_AUTO_UPDATE", "TV_SID_AUTO_START_SW_UPDATE_TV_POWERED_OFF", true},
    {"db/menu/support/softwareupdate/use_cellular_int", "COM_TV_SID_MENU_UPDATE_WITH_CELLULAR_NETWROK",
     "COM_TV_SID_MENU_USE_CELLULAR_NETWORK_UPDATE", false},
    {"menu/support/softwareupdate/osupgrade", "COM_SID_OSUPGRADE", "COM_SID_OSUPGRADE", false},
};

// The help id a product kind's catalogue wording uses instead of the television's.
std::string helpIdOn(const std::string& profile, const ItemTexts& item) {
    if (!item.hasVariants || profile == "tv") return item.helpId;
    const bool branch = std::string(item.id) == kBranch;
    if (profile == "pane") {
        return branch ? "PANE_SID_MENU_VIEW_SKYPANE_SW_VERSION_UPDATE" : "PANE_SID_AUTO_START_SW_UPDATE_SKYPANE_POWERED_OFF";
    }
    return branch ? "COM_BDP_UPDATE_THE_SOFTWARE_INSTALLED_ON_YOUR_PRODUCT" : "TV_SID_AUTO_SW_UPDATE_DEVICE_POWER_OFF";
}

// glibc ignores LANGUAGE in the "C" locale, hence C.UTF-8. gettext forgets the previous
// language's lookups only when setlocale really changes the locale, hence the detour through "C".
void useLanguage(const std::string& language) {
    std::setlocale(LC_ALL, "C");
    setenv("LANGUAGE", language.c_str(), 1);
    ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
}

// The test does not bind the text domain itself: the plug-in's create_provider must have.
std::string catalogue(const std::string& messageId) { return dgettext("Tizen_Orvo", messageId.c_str()); }

// The translator shows line breaks as rich text.
std::string richText(std::string text) {
    for (size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at)) text.replace(at, 1, "<br>");
    return text;
}

std::string sentenceWith(const std::string& messageId, const std::string& number) {
    std::string sentence = catalogue(messageId);
    const size_t tag = sentence.find("<<A>>");
    EXPECT_NE(tag, std::string::npos) << messageId << " lacks its tag in this language";
    return tag == std::string::npos ? sentence : sentence.replace(tag, 5, number);
}

std::string currentVersionPart() { return "\n\n" + sentenceWith("COM_MIX_CURRENT_VER", "1024"); }
std::string newestVersionPart() { return "\n" + sentenceWith("COM_MIX_NEW_VER", "1100"); }

class MenuTree : public ::testing::Test {
protected:
    void SetUp() override {
        device.setConf("system-info.128", std::string("string ") + kCurrentVersionInput);
        ASSERT_EQ(vconf_set_str(kNewestVersion, kNewestVersionInput), 0);
        useLanguage("en");
    }

    std::string updateNowHelp() { return catalogue("COM_UPDATE_SOFTWARE_DOWNLOADI_FILES_KR_16"); }
    std::string branchHelp() { return richText(catalogue("TV_SID_MENU_VIEW_TV_SW_VERSION_UPDATE")); }

    TestDevice device{"tv"};
    ProviderLibrary library;
    Provider provider{library};
};

class MenuTreeOnEveryDevice : public ::testing::TestWithParam<std::tuple<std::string, std::string>> {};

TEST_P(MenuTreeOnEveryDevice, TitlesAndDescriptionsComeFromTheCatalogue) {
    const std::string& profile = std::get<0>(GetParam());
    const std::string& language = std::get<1>(GetParam());
    TestDevice device(profile);
    device.setConf("system-info.128", std::string("string ") + kCurrentVersionInput);
    ASSERT_EQ(vconf_set_str(kNewestVersion, kNewestVersionInput), 0);
    ProviderLibrary library;
    Provider provider(library);
    useLanguage(language);

    const std::string versionLines = currentVersionPart() + newestVersionPart();
    for (const ItemTexts& item : kItems) {
        SCOPED_TRACE(item.id);
        const std::string title = catalogue(item.titleId);
        EXPECT_NE(title, item.titleId) << "no translation: the plug-in did not bind its text domain";
        EXPECT_EQ(provider.title(item.id), title);
        const std::string helpId = helpIdOn(profile, item);
        const std::string help = catalogue(helpId);
        EXPECT_NE(help, helpId) << "no translation";
        EXPECT_EQ(provider.description(item.id), (item.hasVariants ? richText(help) : help) + versionLines);
    }
}

INSTANTIATE_TEST_SUITE_P(ProfilesAndLanguages, MenuTreeOnEveryDevice,
                         ::testing::Combine(::testing::Values("tv", "pane", "monitor"),
                                            ::testing::Values("en", "de", "fr")),
                         [](const auto& info) { return std::get<0>(info.param) + "_" + std::get<1>(info.param); });

TEST_F(MenuTree, IdentifiersMatchOnlyAsAWhole) {
    const char* const foreign[] = {"menu/support/softwareupdate/", "menu/support/softwareupdatenow",
                                   "menu/support/software", "menu/support/softwareupdate/updatenow/more",
                                   "MENU/SUPPORT/SOFTWAREUPDATE", ""};
    for (const char* id : foreign) {
        SCOPED_TRACE(id);
        char* out = nullptr;
        EXPECT_EQ(provider.record().getTitle(id, &out), -1);
        EXPECT_EQ(out, nullptr);

        char hostsOwn[] = "host's text";
        out = hostsOwn;
        EXPECT_EQ(provider.record().getTitle(id, &out), 0);
        EXPECT_EQ(out, hostsOwn);

        EXPECT_EQ(provider.description(id), currentVersionPart() + newestVersionPart());
    }
}

TEST_F(MenuTree, FollowsALanguageSwitchOfTheRunningHost) {
    std::set<std::string> titles;
    for (const char* language : {"en", "de", "fr"}) {
        useLanguage(language);
        const std::optional<std::string> title = provider.title(kUpdateNow);
        EXPECT_EQ(title, catalogue("COM_TV_SID_UPDATE_NOW")) << language;
        titles.insert(title.value_or(""));
    }
    EXPECT_EQ(titles.size(), 3u);
}

TEST_F(MenuTree, NullOutFailsBothCallbacks) {
    EXPECT_EQ(provider.record().getTitle(kUpdateNow, nullptr), -1);
    EXPECT_EQ(provider.record().getDescription(kUpdateNow, nullptr), -1);
}

TEST_F(MenuTree, VersionLinesFollowTheKnownVersions) {
    EXPECT_EQ(provider.description(kUpdateNow), updateNowHelp() + currentVersionPart() + newestVersionPart());

    ASSERT_EQ(vconf_unset(kNewestVersion), 0);
    EXPECT_EQ(provider.description(kUpdateNow), updateNowHelp() + currentVersionPart());

    ASSERT_EQ(vconf_set_str(kNewestVersion, kNewestVersionInput), 0);
    device.removeConf("system-info.128");
    EXPECT_EQ(provider.description(kUpdateNow), updateNowHelp() + newestVersionPart());

    device.setConf("system-info.128", "error -5");
    EXPECT_EQ(provider.description(kUpdateNow), updateNowHelp() + newestVersionPart());

    ASSERT_EQ(vconf_set_str(kNewestVersion, ""), 0);
    EXPECT_EQ(provider.description(kUpdateNow), updateNowHelp());
}

TEST_F(MenuTree, TranslationWithoutTheTagShowsTheError) {
    const std::string po = "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n\n"
                           "msgid \"COM_MIX_CURRENT_VER\"\nmsgstr \"Installed version\"\n\n"
                           "msgid \"COM_MIX_NEW_VER\"\nmsgstr \"Available: <<A>>\"\n";
    const std::string messages = "/usr/share/orvotv/res/locale/xx/LC_MESSAGES/";
    device.writeFile(messages + "Tizen_Orvo.po", po);
    const ProcessResult msgfmt = runProcess({ORVO_MSGFMT, "--check", "-o", device.rootfsPath(messages + "Tizen_Orvo.mo"),
                                             device.rootfsPath(messages + "Tizen_Orvo.po")});
    ASSERT_EQ(msgfmt.exitCode, 0) << msgfmt.err;
    useLanguage("xx");

    EXPECT_EQ(provider.description(kUpdateNow),
              "COM_UPDATE_SOFTWARE_DOWNLOADI_FILES_KR_16\n\nERROR_INVALID_TAG\nAvailable: 1100");
}

class DetailedVersion : public MenuTree {
protected:
    void SetUp() override {
        MenuTree::SetUp();
        device.setConf("system-info.8", "string 2024-01-02 03:04:05");
        device.writeFile("/common/version.txt", "17.040.1 2024-01-01 release/17.040\n");
    }

    void pressInfo() { provider.record().onKeyEvent("XF86Info"); }
};

TEST_F(DetailedVersion, InfoKeyShowsTheBlockOnceForTheBranch) {
    pressInfo();
    EXPECT_EQ(provider.description(kBranch), "SW Version: T-ABCDEFG-1024.3\n\n"
                                             "Build date: 2024-01-02 03:04:05\n"
                                             "Key Type: Debug\n"
                                             "Common version: 17.040.1");
    EXPECT_EQ(provider.description(kBranch), branchHelp() + currentVersionPart() + newestVersionPart());
}

TEST_F(DetailedVersion, WithoutMarkerAndVersionFileOnlyTheRawVersion) {
    device.removeFile("/usr/share/orvotv/UsingOrvoDevelopmentKeys");
    device.removeFile("/common/version.txt");
    pressInfo();
    EXPECT_EQ(provider.description(kBranch), "SW Version: T-ABCDEFG-1024.3");
}

TEST_F(DetailedVersion, BlockSurvivesMissingSources) {
    device.removeConf("system-info.128");
    device.setConf("system-info.8", "error -5");
    device.writeFile("/common/version.txt", "");
    pressInfo();
    EXPECT_EQ(provider.description(kBranch), "SW Version: \n\nBuild date: \nKey Type: Debug");
}

TEST_F(DetailedVersion, AnotherItemConsumesTheKeyFirst) {
    pressInfo();
    EXPECT_EQ(provider.description(kUpdateNow), updateNowHelp() + currentVersionPart() + newestVersionPart());
    EXPECT_EQ(provider.description(kBranch), branchHelp() + currentVersionPart() + newestVersionPart());
}

TEST_F(DetailedVersion, FailedRequestDoesNotConsumeTheKey) {
    pressInfo();
    EXPECT_EQ(provider.record().getDescription(kBranch, nullptr), -1);
    EXPECT_EQ(provider.description(kBranch).value_or("").rfind("SW Version: ", 0), 0u);
}

TEST_F(DetailedVersion, OtherKeysAreIgnored) {
    provider.record().onKeyEvent("XF86InfoX");
    provider.record().onKeyEvent("XF86");
    provider.record().onKeyEvent(nullptr);
    EXPECT_EQ(provider.description(kBranch), branchHelp() + currentVersionPart() + newestVersionPart());
}

TEST_F(DetailedVersion, KeyIsSharedByEveryRecordOfTheProcess) {
    Provider other(library);
    other.record().onKeyEvent("XF86Info");
    EXPECT_EQ(provider.description(kBranch).value_or("").rfind("SW Version: ", 0), 0u);
}

} // namespace
} // namespace Testing
} // namespace Orvo
