// Toggle settings, the model-search value, the provider's properties and key notifications.

#include "Apps/MenuItemDataProvider/CallbackFailure.h"
#include "Apps/MenuItemDataProvider/DetailedVersionFlag.h"
#include "Apps/MenuItemDataProvider/MenuCallbacks.h"
#include "Apps/MenuItemDataProvider/MenuItemDataProvider.h"
#include "Apps/MenuItemDataProvider/MenuItems.h"
#include "Apps/MenuItemDataProvider/VersionInfo.h"
#include "Platform/SystemAPI/FactorySystemAPI/IFactorySettings.h"
#include "Platform/SystemAPI/SystemInfoSystemAPI/ISystemInfo.h"

#include <vconf.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace Orvo {
namespace Apps {
namespace MenuProvider {

namespace {

constexpr const char* kComponentName = "TP_SWUPDATE";

struct ProviderProperty {
    const char* key;
    const char* value;
};

constexpr ProviderProperty kProviderProperties[] = {
    {"provider/owner", "a.kovacs"},
    {"provider/main-component", kComponentName},
    {"provider/sub-component", kComponentName},
};

bool isToggle(const char* itemId) noexcept {
    return std::strcmp(itemId, kAutoUpdateItem) == 0 || std::strcmp(itemId, kUseCellularItem) == 0;
}

// Both toggles show their state with the same message ids; the host translates them.
const char* stateTextId(int value) noexcept {
    switch (value) {
    case 0:
        return "SID_OFF";
    case 1:
        return "SID_ON";
    default:
        return nullptr; // a stored value outside 0 and 1 is an error, not clamped
    }
}

// The software version up to its last '-' names the model family.
std::string_view modelPrefix(std::string_view softwareVersion) noexcept {
    return softwareVersion.substr(0, softwareVersion.rfind('-'));
}

// The model the search offers: the chosen submodel or the device's own model, shown with the
// factory's zone letter in front.
std::string modelSearchValue() {
    std::string value = Platform::ISystemInfo::getStoredSelectedSubmodel();
    if (value.empty()) value.assign(modelPrefix(viewOf(readSystemInfoString(kSoftwareVersionKey))));
    const boost::optional<char> zoneLetter = Platform::IFactorySettings::getZoneCode();
    if (zoneLetter && !value.empty()) value.front() = *zoneLetter;
    return value;
}

} // namespace

int setIntValue(const char* key, int value) noexcept { return vconf_set_int(key, value) == 0 ? 0 : 1; }

int getIntValue(const char* key, int* value) noexcept { return vconf_get_int(key, value) == 0 ? 0 : 1; }

int getValueText(const char* itemId, char** out) noexcept {
    if (!isToggle(itemId) || out == nullptr || *out == nullptr) return -1;
    int value = -1;
    if (vconf_get_int(itemId, &value) != 0) return -1;
    const char* textId = stateTextId(value);
    if (textId == nullptr) return -1;
    return std::snprintf(*out, MENU_ITEM_DATA_PROVIDER_VALUE_TEXT_SIZE, "%s", textId) < 0 ? -1 : 1;
}

int getValueString(const char* itemId, char** out) noexcept {
    if (out == nullptr) return -1;
    if (std::strcmp(itemId, kSearchModelsItem) == 0) {
        try {
            *out = strdup(modelSearchValue().c_str());
        } catch (...) {
            logCallbackFailure("getValueString");
            return -1;
        }
    }
    return *out != nullptr ? 0 : -1;
}

int getProviderProperty(const char* key, char** out) noexcept {
    if (out == nullptr) return 0;
    for (const ProviderProperty& property : kProviderProperties) {
        if (std::strcmp(property.key, key) != 0) continue;
        const size_t length = std::strlen(property.value);
        char* copy = static_cast<char*>(std::calloc(length + 1, 1));
        if (copy != nullptr && std::snprintf(copy, length + 1, "%s", property.value) == static_cast<int>(length)) {
            *out = copy;
        } else {
            std::free(copy);
        }
        break;
    }
    return 0;
}

void onKeyEvent(const char* keyName) noexcept {
    if (keyName != nullptr && std::strcmp(keyName, "XF86Info") == 0) armDetailedVersion();
}

} // namespace MenuProvider
} // namespace Apps
} // namespace Orvo
