#include "orvo/device/Device.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <map>
#include <set>

// Titles, descriptions, base ids with their PANE-family and product variants, version lines, toggles.
static const std::set<std::string> kRequiredIds = {"COM_SOFTWARE_UPDATE",
                                                   "TV_SID_MENU_VIEW_TV_SW_VERSION_UPDATE",
                                                   "COM_TV_SID_UPDATE_NOW",
                                                   "COM_UPDATE_SOFTWARE_DOWNLOADI_FILES_KR_16",
                                                   "TV_SID_UPDATE_UPDATE_CHANNELS",
                                                   "COM_TV_MODELS_SEARCH_HELP",
                                                   "COM_AUTO_UPDATE",
                                                   "TV_SID_AUTO_START_SW_UPDATE_TV_POWERED_OFF",
                                                   "COM_TV_SID_MENU_UPDATE_WITH_CELLULAR_NETWROK",
                                                   "COM_TV_SID_MENU_USE_CELLULAR_NETWORK_UPDATE",
                                                   "COM_SID_OSUPGRADE",
                                                   "COM_UPDATING_TV_SOFTWARE",
                                                   "COM_TV_OFF_ON_AUTO_AFTER_COMPLETING_UPDATE",
                                                   "TV_UPDATE_YOUR_TV_WITH_THE_NEW_VERSION_Q",
                                                   "TV_SID_TV_RESTART_PORCEED_SW_UPDATE",
                                                   "COM_UPDATE_YOUR_TV_WITH_THE_NEW_DATA",
                                                   "COM_UPDATE_LATER_TV_BE_UPDATED_AUTOMATICALLY_MSG",
                                                   "COM_UPDATE_NOW_UPDATE_START_STRAIGHT_AWAY_TV_MSG",
                                                   "PANE_SID_UPDATING_SKYPANE_SOFTWARE",
                                                   "PANE_SID_SKYPANE_OFF_ON_AUTO_AFTER_COMPLETING_UPDATE",
                                                   "PANE_SID_UPDATE_YOUR_SKYPANE_WITH_THE_NEW_VERSION_Q",
                                                   "PANE_SID_SKYPANE_RESTART_PORCEED_SW_UPDATE",
                                                   "PANE_SID_MENU_VIEW_SKYPANE_SW_VERSION_UPDATE",
                                                   "PANE_SID_AUTO_START_SW_UPDATE_SKYPANE_POWERED_OFF",
                                                   "COM_UPDATE_YOUR_PRODUCT_WITH_THE_NEW_DATA",
                                                   "COM_UPDATE_LATER_PRODUCT_BE_UPDATED_AUTOMATICALLY_MSG",
                                                   "COM_UPDATE_NOW_UPDATE_START_STRAIGHT_AWAY_PRODUCT_MSG",
                                                   "COM_UPDATING_PRODUCT_SOFTWARE",
                                                   "COM_PRODUCT_OFF_ON_AUTO_AFTER_COMPLETING_UPDATE",
                                                   "COM_LFD_UPDATE_DISPLAY_DEVICE_NEW_VERSION_Q",
                                                   "COM_SID_LFD_DEVICE_RESTART_SW_UPDATE",
                                                   "COM_BDP_UPDATE_THE_SOFTWARE_INSTALLED_ON_YOUR_PRODUCT",
                                                   "TV_SID_AUTO_SW_UPDATE_DEVICE_POWER_OFF",
                                                   "COM_MIX_CURRENT_VER",
                                                   "COM_MIX_NEW_VER",
                                                   "SID_ON",
                                                   "SID_OFF"};

// The id-to-text map of a compiled (.mo) catalogue of this machine's byte order, header left out.
static std::map<std::string, std::string> loadCatalogue(const std::string& profile, const std::string& language) {
    std::ifstream in(Orvo::Emulator::emulatorDataDirectory() + "/profiles/" + profile +
                     "/rootfs/usr/share/orvotv/res/locale/" + language + "/LC_MESSAGES/Tizen_Orvo.mo");
    const std::string mo((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const auto word = [&mo](std::size_t at) {
        std::uint32_t value = 0;
        if (at + 4 <= mo.size()) std::memcpy(&value, mo.data() + at, 4);
        return value;
    };
    std::map<std::string, std::string> messages;
    for (std::uint32_t n = 0; n < word(8); ++n) {
        const auto text = [&](std::uint32_t table) { return mo.substr(word(table + 8 * n + 4), word(table + 8 * n)); };
        messages[text(word(12))] = text(word(16));
    }
    messages.erase("");
    return messages;
}

TEST(Catalogue, EveryProfileAndLanguageTranslatesExactlyTheRequiredIds) {
    for (const char* profile : {"tv", "pane", "monitor"}) {
        for (const char* language : {"en", "de", "fr"}) {
            SCOPED_TRACE(std::string(profile) + " " + language);
            std::map<std::string, std::string> messages = loadCatalogue(profile, language);
            std::set<std::string> ids;
            for (const auto& [id, text] : messages) {
                ids.insert(id);
                EXPECT_FALSE(text.empty() || text == id) << id;
            }
            EXPECT_EQ(kRequiredIds, ids);
            for (const std::string& sentence : {messages["COM_MIX_CURRENT_VER"], messages["COM_MIX_NEW_VER"]})
                EXPECT_TRUE(sentence.find("<<A>>") != std::string::npos &&
                            sentence.find("<<A>>") == sentence.rfind("<<A>>"))
                    << "the version's tag once: " << sentence;
        }
    }
}
