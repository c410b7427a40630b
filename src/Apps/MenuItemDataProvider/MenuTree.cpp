// Titles and descriptions of the software-update branch.

#include "Apps/MenuItemDataProvider/CallbackFailure.h"
#include "Apps/MenuItemDataProvider/DetailedVersionFlag.h"
#include "Apps/MenuItemDataProvider/MenuCallbacks.h"
#include "Apps/MenuItemDataProvider/MenuItems.h"
#include "Apps/MenuItemDataProvider/VersionInfo.h"
#include "Apps/Translation/CEflTranslator.h"
#include "Apps/Translation/TextDomain.h"

#include <libintl.h>

#include <cstring>
#include <string>

namespace Orvo {
namespace Apps {
namespace MenuProvider {

namespace {

// Help texts worded for a television go through the translator, which swaps in the wording of
// other product kinds; the rest come straight from the catalogue.
enum class HelpSource { Catalogue, Translator };

struct MenuItem {
    const char* id;
    const char* titleId;
    const char* descriptionId;
    HelpSource helpSource;
};

// The message ids are catalogue keys, spelt as the catalogue spells them.
constexpr MenuItem kMenuItems[] = {
    {kBranchItem, "COM_SOFTWARE_UPDATE", "TV_SID_MENU_VIEW_TV_SW_VERSION_UPDATE", HelpSource::Translator},
    {kUpdateNowItem, "COM_TV_SID_UPDATE_NOW", "COM_UPDATE_SOFTWARE_DOWNLOADI_FILES_KR_16", HelpSource::Catalogue},
    {kSearchModelsItem, "TV_SID_UPDATE_UPDATE_CHANNELS", "COM_TV_MODELS_SEARCH_HELP", HelpSource::Catalogue},
    {kAutoUpdateItem, "COM_AUTO_UPDATE", "TV_SID_AUTO_START_SW_UPDATE_TV_POWERED_OFF", HelpSource::Translator},
    {kUseCellularItem, "COM_TV_SID_MENU_UPDATE_WITH_CELLULAR_NETWROK", "COM_TV_SID_MENU_USE_CELLULAR_NETWORK_UPDATE",
     HelpSource::Catalogue},
    {kOsUpgradeItem, "COM_SID_OSUPGRADE", "COM_SID_OSUPGRADE", HelpSource::Catalogue},
};

const MenuItem* findMenuItem(const char* itemId) noexcept {
    for (const MenuItem& item : kMenuItems) {
        if (std::strcmp(item.id, itemId) == 0) return &item;
    }
    return nullptr;
}

bool isBranch(const MenuItem* item) noexcept { return item == &kMenuItems[0]; }

// Items outside the branch have no help text but still show the versions.
std::string helpText(const MenuItem* item) {
    if (item == nullptr) return std::string();
    if (item->helpSource == HelpSource::Translator) return CEflTranslator::translate(item->descriptionId);
    return dgettext(kTextDomain, item->descriptionId);
}

std::string describe(const char* itemId) {
    const MenuItem* item = findMenuItem(itemId);
    if (isBranch(item) && isDetailedVersionArmed()) return detailedVersionBlock();
    std::string description = helpText(item);
    appendVersionLines(description);
    return description;
}

} // namespace

int getTitle(const char* itemId, char** out) noexcept {
    if (out == nullptr) return -1;
    if (const MenuItem* item = findMenuItem(itemId)) {
        *out = strdup(dgettext(kTextDomain, item->titleId));
    }
    return *out != nullptr ? 0 : -1;
}

int getDescription(const char* itemId, char** out) noexcept {
    if (out == nullptr) return -1;
    try {
        *out = strdup(describe(itemId).c_str());
    } catch (...) {
        logCallbackFailure("getDescription");
        return -1;
    }
    if (*out == nullptr) return -1;
    // The Info key asks for one detailed view: whichever description comes next consumes it.
    clearDetailedVersion();
    return 0;
}

} // namespace MenuProvider
} // namespace Apps
} // namespace Orvo
