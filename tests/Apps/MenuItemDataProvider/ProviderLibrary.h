#pragma once
// The plug-in loaded as the settings-menu host loads it, and the items of its branch.

#include "MenuItemDataProvider.h"

#include <dlfcn.h>

#include <optional>
#include <stdexcept>
#include <string>

namespace Orvo::Testing {

struct BranchItem {
    const char *id, *titleId, *helpId; // the help's id on a television
};
constexpr BranchItem kBranchItems[] = {
    {"menu/support/softwareupdate", "COM_SOFTWARE_UPDATE", "TV_SID_MENU_VIEW_TV_SW_VERSION_UPDATE"},
    {"menu/support/softwareupdate/updatenow", "COM_TV_SID_UPDATE_NOW", "COM_UPDATE_SOFTWARE_DOWNLOADI_FILES_KR_16"},
    {"menu/support/softwareupdate/searchmodels", "TV_SID_UPDATE_UPDATE_CHANNELS", "COM_TV_MODELS_SEARCH_HELP"},
    {"db/menu/support/softwareupdate/autoupdate", "COM_AUTO_UPDATE", "TV_SID_AUTO_START_SW_UPDATE_TV_POWERED_OFF"},
    {"db/menu/support/softwareupdate/use_cellular_int", "COM_TV_SID_MENU_UPDATE_WITH_CELLULAR_NETWROK",
     "COM_TV_SID_MENU_USE_CELLULAR_NETWORK_UPDATE"},
    {"menu/support/softwareupdate/osupgrade", "COM_SID_OSUPGRADE", "COM_SID_OSUPGRADE"}};
constexpr const BranchItem &kBranch = kBranchItems[0], &kUpdateNow = kBranchItems[1], &kSearchModels = kBranchItems[2],
                           &kAutoUpdate = kBranchItems[3], &kUseCellular = kBranchItems[4];

using EntryPoint = int (*)(MenuItemDataProvider**);

// An entry point under its symbol version; throws with dlerror()'s text when it or the module is missing.
inline EntryPoint entryPoint(void* module, const char* name) {
    void* symbol = module != nullptr ? dlvsym(module, name, "ORVOMENUITEMDATAPROVIDER") : nullptr;
    if (symbol == nullptr) throw std::runtime_error(dlerror());
    return reinterpret_cast<EntryPoint>(symbol);
}

// One load of the module, with one record that goes away with the object.
struct ProviderLibrary {
    ProviderLibrary() {
        if (createProvider(&record) != 0) throw std::runtime_error("create_provider failed");
    }
    ProviderLibrary(const ProviderLibrary&) = delete;
    ~ProviderLibrary() {
        deleteProvider(&record);
        dlclose(module);
    }

    // A `char** out` callback's text for a host starting from a null *out: nullopt when it fails.
    std::optional<std::string> take(int (*callback)(const char*, char**), const char* key) const {
        char* text = nullptr;
        std::optional<std::string> copy;
        if (callback(key, &text) == 0) copy = text != nullptr ? text : ""; // "": success without a text
        record->freeString(text);
        return copy;
    }
    std::optional<std::string> description(const char* itemId) const { return take(record->getDescription, itemId); }

    void* const module = dlopen(ORVO_MENU_PROVIDER_PATH, RTLD_NOW | RTLD_LOCAL);
    const EntryPoint createProvider = entryPoint(module, "create_provider");
    const EntryPoint deleteProvider = entryPoint(module, "delete_provider");
    MenuItemDataProvider* record = nullptr;
};

} // namespace Orvo::Testing
