// The plug-in as the settings-menu host sees it, on the emulated device and its message catalogue.

#include "AllocationShim.h"
#include "ProviderLibrary.h"

#include "orvo/testing/Process.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <libintl.h>
#include <vconf.h>

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <map>
#include <set>
#include <sstream>

namespace Orvo::Testing {
namespace {

TEST(ProviderRecord, FillsTheNineSlotsAndNothingElse) {
    ProviderLibrary plugin;
    ASSERT_EQ(sizeof(MenuItemDataProvider), 51 * sizeof(void*));
    void* slots[51]; // read by position, as the host does
    std::memcpy(slots, plugin.record, sizeof slots);
    const std::set<size_t> filled = {0, 8, 11, 12, 13, 14, 38, 44, 45};
    for (size_t slot = 0; slot < 51; ++slot)
        EXPECT_EQ(slots[slot] != nullptr, filled.count(slot) == 1) << slot;
}

// The television's host is 32-bit and knows the record only as byte offsets: slot k at k * 4 of
// a 204-byte allocation. Proven by calling through those offsets, not through the header's names.
TEST(ProviderRecord, OnThirtyTwoBitsSlotsSitEveryFourBytesOfTwoHundredFour) {
    if (sizeof(void*) != 4) GTEST_SKIP() << "a 64-bit build; the armhf build (scripts/test-armhf) runs this";
    ProviderLibrary plugin;
    const auto* bytes = reinterpret_cast<const unsigned char*>(plugin.record);
    const auto slotAt = [bytes](size_t offset, auto* function) {
        std::memcpy(&function, bytes + offset, sizeof function);
        return function;
    };
    int (*freeString)(void*) = nullptr;
    int (*getProviderProperty)(const char*, char**) = nullptr;
    EXPECT_EQ(slotAt(48, freeString)(nullptr), 1) << "slot 12";
    char* owner = nullptr;
    EXPECT_EQ(slotAt(176, getProviderProperty)("provider/owner", &owner), 0) << "slot 44";
    EXPECT_STREQ(owner, "a.kovacs");
    std::free(owner);
    if (orvoFailNextCallocOfSize == nullptr) return;
    MenuItemDataProvider* out = nullptr;
    orvoFailNextCallocOfSize(204);
    EXPECT_EQ(plugin.createProvider(&out), -1) << "the record is one allocation of 204 bytes";
}

TEST(ProviderRecord, FreeStringDeleteProviderAndFailedAllocationResults) {
    ProviderLibrary plugin;
    EXPECT_EQ(plugin.record->freeString(nullptr), 1);
    EXPECT_EQ(plugin.record->freeString(strdup("the host's copy")), 0);
    MenuItemDataProvider* record = nullptr;
    EXPECT_EQ(plugin.deleteProvider(nullptr), 1);
    EXPECT_EQ(plugin.deleteProvider(&record), 0);
    ASSERT_EQ(plugin.createProvider(&record), 0);
    EXPECT_EQ(plugin.deleteProvider(&record), 0);
    EXPECT_NE(record, nullptr) << "the holder is the host's to clear";
    if (orvoFailNextCallocOfSize == nullptr) return; // the sanitizer runtime owns calloc in this build
    MenuItemDataProvider* out = plugin.record;
    orvoFailNextCallocOfSize(sizeof(MenuItemDataProvider));
    EXPECT_EQ(plugin.createProvider(&out), -1);
    EXPECT_EQ(out, plugin.record);
}

TEST(ProviderRecord, TheModuleExportsOnlyTheTwoVersionedEntryPoints) {
    const ProcessResult nm = runProcess({ORVO_NM, "-D", "--defined-only", ORVO_MENU_PROVIDER_PATH});
    std::set<std::string> exports;
    std::istringstream lines(nm.out);
    for (std::string address, type, name; lines >> address >> type >> name;) {
        if (type != "A") exports.insert(name); // the version node is listed as an absolute symbol
    }
    EXPECT_EQ(exports, (std::set<std::string>{"create_provider@@ORVOMENUITEMDATAPROVIDER",
                                              "delete_provider@@ORVOMENUITEMDATAPROVIDER"}))
        << nm.err;
}

constexpr const char* kNewestVersion = "memory/menu/support/softwareupdate/newest_version";

// glibc ignores LANGUAGE in the "C" locale, and gettext forgets its lookups only on a real change.
void useLanguage(const char* language) {
    std::setlocale(LC_ALL, "C");
    setenv("LANGUAGE", language, 1);
    ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
}

// Not bound by the test: the plug-in's create_provider must have bound the text domain.
std::string catalogue(const std::string& messageId) { return dgettext("Tizen_Orvo", messageId.c_str()); }

// The lines of "T-ABCDEFG-01024.3" and the newest "T-ABCDEFG-000.9": zeros lead only in a zeros-only number.
std::string versionLine(const char* messageId, const char* number) {
    std::string sentence = catalogue(messageId);
    return sentence.replace(sentence.find("<<A>>"), 5, number);
}
std::string currentLine() { return "\n\n" + versionLine("COM_MIX_CURRENT_VER", "1024"); }
std::string newestLine() { return "\n" + versionLine("COM_MIX_NEW_VER", "000"); }

// The help (rich text; other kinds of product word two helps their own way), then the versions.
std::string description(const BranchItem& item, const std::string& profile = "tv") {
    static const std::map<std::string, std::string> variants = {
        {std::string("pane") + kBranch.id, "PANE_SID_MENU_VIEW_SKYPANE_SW_VERSION_UPDATE"},
        {std::string("pane") + kAutoUpdate.id, "PANE_SID_AUTO_START_SW_UPDATE_SKYPANE_POWERED_OFF"},
        {std::string("monitor") + kBranch.id, "COM_BDP_UPDATE_THE_SOFTWARE_INSTALLED_ON_YOUR_PRODUCT"},
        {std::string("monitor") + kAutoUpdate.id, "TV_SID_AUTO_SW_UPDATE_DEVICE_POWER_OFF"}};
    const auto variant = variants.find(profile + item.id);
    std::string text = catalogue(variant == variants.end() ? item.helpId : variant->second);
    for (size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at))
        text.replace(at, 1, "<br>");
    return text + currentLine() + newestLine();
}

class Menu : public ::testing::Test {
protected:
    explicit Menu(const char* profile = "tv") : device(profile) {
        device.setConf("system-info.128", "string T-ABCDEFG-01024.3");
        EXPECT_EQ(vconf_set_str(kNewestVersion, "T-ABCDEFG-000.9"), 0);
        useLanguage("en");
    }

    TestDevice device;
    ProviderLibrary plugin;
};

class MenuOnEachDevice : public Menu, public ::testing::WithParamInterface<const char*> {
protected:
    MenuOnEachDevice() : Menu(GetParam()) {}
};

TEST_P(MenuOnEachDevice, TitlesAndDescriptionsComeFromTheCatalogueInEachLanguageInTurn) {
    for (const char* language : {"en", "de", "fr"}) {
        useLanguage(language);
        for (const BranchItem& item : kBranchItems) {
            SCOPED_TRACE(std::string(language) + " " + item.id);
            EXPECT_NE(catalogue(item.titleId), item.titleId) << "untranslated: the text domain is not bound";
            EXPECT_EQ(plugin.take(plugin.record->getTitle, item.id), catalogue(item.titleId));
            EXPECT_EQ(plugin.description(item.id), description(item, GetParam()));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Profiles, MenuOnEachDevice, ::testing::Values("tv", "pane", "monitor"),
                         [](const auto& info) { return std::string(info.param); });

TEST_F(Menu, ForeignIdentifiersGetNoTitleButTheVersionLines) {
    for (const char* id : {"menu/support/softwareupdate/", "menu/support/softwareupdatenow", "menu/support/software"}) {
        SCOPED_TRACE(id);
        EXPECT_EQ(plugin.take(plugin.record->getTitle, id), std::nullopt);
        char hostsOwn[] = "host's text";
        char* out = hostsOwn;
        EXPECT_EQ(plugin.record->getTitle(id, &out), 0);
        EXPECT_EQ(out, hostsOwn);
        EXPECT_EQ(plugin.description(id), currentLine() + newestLine());
    }
    EXPECT_EQ(plugin.record->getTitle(kUpdateNow.id, nullptr), -1);
    EXPECT_EQ(plugin.record->getDescription(kUpdateNow.id, nullptr), -1);
}

TEST_F(Menu, VersionLinesDropWhatIsUnknownAndShowAMissingTag) {
    ASSERT_EQ(vconf_unset(kNewestVersion), 0);
    EXPECT_EQ(plugin.description(kUpdateNow.id), catalogue(kUpdateNow.helpId) + currentLine());
    device.addSetting(kNewestVersion, Emulator::SettingType::String, "T-ABCDEFG-000.9");
    device.setConf("system-info.128", "error -5");
    EXPECT_EQ(plugin.description(kUpdateNow.id), catalogue(kUpdateNow.helpId) + newestLine());
    useLanguage("xx"); // no catalogue: the sentence is its message id, which has no tag
    EXPECT_EQ(plugin.description(kUpdateNow.id), std::string(kUpdateNow.helpId) + "\nERROR_INVALID_TAG");
    ASSERT_EQ(vconf_set_str(kNewestVersion, ""), 0);
    EXPECT_EQ(plugin.description(kUpdateNow.id), kUpdateNow.helpId);
}

TEST_F(Menu, InfoKeyShowsTheDetailedBlockInTheNextDescriptionOnly) {
    device.setConf("system-info.8", "string 2024-01-02 03:04:05");
    device.writeFile("/common/version.txt", "17.040.1 2024-01-01 release/17.040\n");
    const std::string normal = description(kBranch);
    for (const char* key : {"XF86InfoX", "XF86", static_cast<const char*>(nullptr)})
        plugin.record->onKeyEvent(key);
    EXPECT_EQ(plugin.description(kBranch.id), normal) << "other keys are ignored";
    plugin.record->onKeyEvent("XF86Info");
    EXPECT_EQ(plugin.description(kBranch.id),
              "SW Version: T-ABCDEFG-01024.3\n\nBuild date: 2024-01-02 03:04:05\n"
              "Key Type: Debug\nCommon version: 17.040.1");
    EXPECT_EQ(plugin.description(kBranch.id), normal) << "once";
    plugin.record->onKeyEvent("XF86Info");
    EXPECT_EQ(plugin.description(kUpdateNow.id), description(kUpdateNow)) << "another item consumes the key";
    EXPECT_EQ(plugin.description(kBranch.id), normal);
    device.removeFile("/usr/share/orvotv/UsingOrvoDevelopmentKeys");
    device.removeFile("/common/version.txt");
    plugin.record->onKeyEvent("XF86Info");
    EXPECT_EQ(plugin.description(kBranch.id), "SW Version: T-ABCDEFG-01024.3");
}

TEST_F(Menu, TogglesAreTheSettingsOfTheirIdsAndShowTheMessageIdOfTheirState) {
    struct {
        const char* id;
        std::optional<int> stored;
        const char* written;
    } const rows[] = {{kAutoUpdate.id, 0, "SID_OFF"}, {kAutoUpdate.id, 1, "SID_ON"},
                      {kUseCellular.id, 1, "SID_ON"}, {kAutoUpdate.id, 2, nullptr},
                      {kAutoUpdate.id, -1, nullptr},  {kUseCellular.id, {}, nullptr},
                      {kUpdateNow.id, {}, nullptr},   {"db/menu/support/softwareupdate/autoupdate/", 1, nullptr}};
    device.addSetting(rows[7].id, Emulator::SettingType::Int, "0"); // a key, but no toggle's
    int value = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.id) + " = " + std::to_string(row.stored.value_or(-99)));
        if (!row.stored) vconf_unset(row.id); // behind the plug-in's back, also the use_cellular_int it wrote
        ASSERT_TRUE(!row.stored || plugin.record->setIntValue(row.id, *row.stored) == 0);
        EXPECT_EQ(plugin.record->getIntValue(row.id, &value), row.stored ? 0 : 1);
        EXPECT_EQ(value, row.stored.value_or(value));
        char buffer[255] = "host's buffer";
        char* out = buffer;
        EXPECT_EQ(plugin.record->getValueText(row.id, &out), row.written ? 1 : -1);
        EXPECT_STREQ(buffer, row.written ? row.written : "host's buffer"); // written null: untouched
        EXPECT_EQ(out, buffer);
    }
    EXPECT_EQ(plugin.record->setIntValue(kUpdateNow.id, 1), 1) << "not a settings key";
}

TEST_F(Menu, ModelSearchShowsTheModelUnderTheZoneLetter) {
    struct {
        const char *version, *zone, *submodel, *shown;
    } const rows[] = {// version null: unreadable
                      {"ABC-DEF-1234.5", "int 0", "", "ABC-DEF"},
                      {"ABCDEF", "int 0", "", "ABCDEF"},
                      {"ABC-DEF-1234.5", "int 5", "XYZ", "EYZ"},
                      {"ABC-DEF-1234.5", "int 5", "", "EBC-DEF"},
                      {nullptr, "int 5", "", ""}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shown);
        device.setConf("system-info.128", row.version ? std::string("string ") + row.version : "error -5");
        device.setConf("system-info.904", row.zone);
        ASSERT_EQ(vconf_set_str("db/menu/support/softwareupdate/selectedSubmodel", row.submodel), 0);
        EXPECT_EQ(plugin.take(plugin.record->getValueString, kSearchModels.id), row.shown);
    }
    char hostsOwn[] = "host's text";
    char* out = hostsOwn;
    EXPECT_EQ(plugin.record->getValueString(kUpdateNow.id, &out), 0) << "only the model search has a value";
    EXPECT_EQ(out, hostsOwn);
}

TEST_F(Menu, PropertiesNameTheOwnerAndOneComponent) {
    for (const auto& [key, value] :
         {std::pair("provider/owner", "a.kovacs"), std::pair("provider/main-component", "TP_SWUPDATE"),
          std::pair("provider/sub-component", "TP_SWUPDATE")})
        EXPECT_EQ(plugin.take(plugin.record->getProviderProperty, key), value);
    char hostsOwn[] = "host's text";
    char* out = hostsOwn;
    EXPECT_EQ(plugin.record->getProviderProperty("provider/unknown", &out), 0);
    EXPECT_EQ(out, hostsOwn);
}

// Counted in this executable's allocator, to which the plug-in binds.
TEST_F(Menu, PlatformTextsAreFreedAfterUse) {
    if (orvoLiveBlocks == nullptr) GTEST_SKIP() << "the sanitizer runtime owns the allocator and finds leaks itself";
    device.setConf("system-info.8", "string 2024-01-02 03:04:05");
    const auto everyRead = [this] {
        plugin.record->onKeyEvent("XF86Info");
        plugin.description(kBranch.id); // the detailed block
        plugin.description(kBranch.id);
        plugin.take(plugin.record->getValueString, kSearchModels.id);
    };
    EXPECT_EQ(blocksLeftBehindBy(everyRead), 0);
}

} // namespace
} // namespace Orvo::Testing
