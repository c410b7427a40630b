// The message catalogue shipped in every profile: every id the software-update menu and its
// product variants look up, in every language.

#include "orvo/device/Device.h"
#include "orvo/testing/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>

namespace Orvo {
namespace Emulator {
namespace {

const std::set<std::string> kRequiredIds = {
    // Titles and descriptions of the six menu items.
    "COM_SOFTWARE_UPDATE", "TV_SID_MENU_VIEW_TV_SW_VERSION_UPDATE", "COM_TV_SID_UPDATE_NOW",
    "COM_UPDATE_SOFTWARE_DOWNLOADI_FILES_KR_16", "TV_SID_UPDATE_UPDATE_CHANNELS", "COM_TV_MODELS_SEARCH_HELP",
    "COM_AUTO_UPDATE", "TV_SID_AUTO_START_SW_UPDATE_TV_POWERED_OFF",
    "COM_TV_SID_MENU_UPDATE_WITH_CELLULAR_NETWROK", "COM_TV_SID_MENU_USE_CELLULAR_NETWORK_UPDATE",
    "COM_SID_OSUPGRADE",
    // Base ids that have product variants.
    "COM_UPDATING_TV_SOFTWARE", "COM_TV_OFF_ON_AUTO_AFTER_COMPLETING_UPDATE",
    "TV_UPDATE_YOUR_TV_WITH_THE_NEW_VERSION_Q", "TV_SID_TV_RESTART_PORCEED_SW_UPDATE",
    "COM_UPDATE_YOUR_TV_WITH_THE_NEW_DATA", "COM_UPDATE_LATER_TV_BE_UPDATED_AUTOMATICALLY_MSG",
    "COM_UPDATE_NOW_UPDATE_START_STRAIGHT_AWAY_TV_MSG",
    // PANE-family variants.
    "PANE_SID_UPDATING_SKYPANE_SOFTWARE", "PANE_SID_SKYPANE_OFF_ON_AUTO_AFTER_COMPLETING_UPDATE",
    "PANE_SID_UPDATE_YOUR_SKYPANE_WITH_THE_NEW_VERSION_Q", "PANE_SID_SKYPANE_RESTART_PORCEED_SW_UPDATE",
    "PANE_SID_MENU_VIEW_SKYPANE_SW_VERSION_UPDATE", "PANE_SID_AUTO_START_SW_UPDATE_SKYPANE_POWERED_OFF",
    // Variants of other products.
    "COM_UPDATE_YOUR_PRODUCT_WITH_THE_NEW_DATA", "COM_UPDATE_LATER_PRODUCT_BE_UPDATED_AUTOMATICALLY_MSG",
    "COM_UPDATE_NOW_UPDATE_START_STRAIGHT_AWAY_PRODUCT_MSG", "COM_UPDATING_PRODUCT_SOFTWARE",
    "COM_PRODUCT_OFF_ON_AUTO_AFTER_COMPLETING_UPDATE", "COM_LFD_UPDATE_DISPLAY_DEVICE_NEW_VERSION_Q",
    "COM_SID_LFD_DEVICE_RESTART_SW_UPDATE", "COM_BDP_UPDATE_THE_SOFTWARE_INSTALLED_ON_YOUR_PRODUCT",
    "TV_SID_AUTO_SW_UPDATE_DEVICE_POWER_OFF",
    // Version lines and toggle values.
    "COM_MIX_CURRENT_VER", "COM_MIX_NEW_VER", "SID_ON", "SID_OFF",
};

const char* const kLanguages[] = {"en", "de", "fr"};

// Reads a quoted .po string, undoing its escapes.
std::string unquote(const std::string& text)
{
    std::string result;
    const std::size_t open = text.find('"');
    for (std::size_t i = open + 1; open != std::string::npos && i < text.size() && text[i] != '"'; ++i) {
        if (text[i] == '\\' && i + 1 < text.size()) {
            const char escaped = text[++i];
            result += escaped == 'n' ? '\n' : escaped == 't' ? '\t' : escaped;
        } else {
            result += text[i];
        }
    }
    return result;
}

// The id-to-text map of a compiled catalogue, decompiled with msgunfmt.
std::map<std::string, std::string> loadCatalogue(const std::string& moFile)
{
    const Orvo::Testing::ProcessResult decompiled = Orvo::Testing::runProcess({"msgunfmt", moFile});
    EXPECT_EQ(decompiled.exitCode, 0) << decompiled.err;
    std::map<std::string, std::string> messages;
    std::istringstream in(decompiled.out);
    std::string line;
    std::string id;
    std::string* current = nullptr;
    while (std::getline(in, line)) {
        if (line.compare(0, 6, "msgid ") == 0) {
            id = unquote(line);
            current = &id;
        } else if (line.compare(0, 7, "msgstr ") == 0) {
            current = &messages[id];
            *current = unquote(line);
        } else if (!line.empty() && line[0] == '"' && current != nullptr) {
            *current += unquote(line);
        }
    }
    messages.erase("");  // the header
    return messages;
}

std::string catalogueOf(const std::string& profile, const std::string& language)
{
    return emulatorDataDirectory() + "/profiles/" + profile + "/rootfs/usr/share/orvotv/res/locale/" +
           language + "/LC_MESSAGES/Tizen_Orvo.mo";
}

std::set<std::string> idsOf(const std::map<std::string, std::string>& messages)
{
    std::set<std::string> ids;
    for (const auto& message : messages) {
        ids.insert(message.first);
    }
    return ids;
}

TEST(Catalogue, EveryLanguageHoldsExactlyTheRequiredIds)
{
    for (const char* language : kLanguages) {
        EXPECT_EQ(idsOf(loadCatalogue(catalogueOf("tv", language))), kRequiredIds) << language;
    }
}

TEST(Catalogue, EveryMessageIsTranslated)
{
    for (const char* language : kLanguages) {
        for (const auto& message : loadCatalogue(catalogueOf("tv", language))) {
            EXPECT_FALSE(message.second.empty()) << language << " " << message.first;
            EXPECT_NE(message.second, message.first) << language;
        }
    }
}

TEST(Catalogue, VersionSentencesHoldTheTagOnce)
{
    for (const char* language : kLanguages) {
        const auto messages = loadCatalogue(catalogueOf("tv", language));
        for (const char* id : {"COM_MIX_CURRENT_VER", "COM_MIX_NEW_VER"}) {
            const std::string& text = messages.at(id);
            const std::size_t first = text.find("<<A>>");
            ASSERT_NE(first, std::string::npos) << language << " " << id;
            EXPECT_EQ(text.find("<<A>>", first + 1), std::string::npos) << language << " " << id;
        }
    }
}

TEST(Catalogue, EveryProfileShipsTheSameCatalogue)
{
    for (const char* profile : {"pane", "monitor"}) {
        for (const char* language : kLanguages) {
            EXPECT_EQ(loadCatalogue(catalogueOf(profile, language)), loadCatalogue(catalogueOf("tv", language)))
                << profile << " " << language;
        }
    }
}

} // namespace
} // namespace Emulator
} // namespace Orvo
