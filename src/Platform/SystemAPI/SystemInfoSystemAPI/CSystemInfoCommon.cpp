// The submodel settings of ISystemInfo: which sibling model's software the device takes.

#include "Platform/SystemAPI/SystemInfoSystemAPI/ISystemInfo.h"

#include "Common/Logging/Logging.h"
#include "Platform/Product/IProductInfo.h"
#include "Platform/SystemAPI/FactorySystemAPI/IFactorySettings.h"
#include "Platform/SystemAPI/VconfSystemAPI/IVConfTizen.h"

#include <boost/exception/diagnostic_information.hpp>

#include <string>

namespace Orvo {
namespace Platform {

namespace {

// Accessors are made on use: loading the library builds no settings objects.
VConf<std::string> flashedSubmodel() { return VConf<std::string>("db/menu/support/softwareupdate/flashedSubmodel"); }

// Empty means the device's own model.
VConf<std::string> selectedSubmodel() { return VConf<std::string>("db/menu/support/softwareupdate/selectedSubmodel"); }

VConf<bool> anySubmodel() { return VConf<bool>("db/menu/support/softwareupdate/isAnySubmodel"); }

// Setters do not fail their caller for vconf: the failure is logged with its diagnostics.
template <typename T>
void setOrLog(const VConf<T>& setting, const T& value, const char* failureText) {
    try {
        setting.set(value);
    } catch (const VConfException& e) {
        ORVO_LOG_STREAM(ERR) << failureText << boost::diagnostic_information(e);
    }
}

} // namespace

std::string ISystemInfo::getFlashedSubmodel() {
    const std::string stored = flashedSubmodel().getOrDefault("");
    return stored.empty() ? IProductInfo::getModelString() : stored;
}

void ISystemInfo::setFlashedSubmodel(const std::string& submodel) {
    setOrLog(flashedSubmodel(), submodel, "Error while saving flashed submodel string");
}

std::string ISystemInfo::getStoredSelectedSubmodel() { return selectedSubmodel().getOrDefault(""); }

bool ISystemInfo::isSubmodelSelected() { return !getStoredSelectedSubmodel().empty(); }

std::string ISystemInfo::getSelectedSubmodel(bool raw) {
    std::string submodel = getStoredSelectedSubmodel();
    if (submodel.empty()) {
        submodel = IProductInfo::getModelString();
    }
    if (!raw && !submodel.empty()) {
        if (const boost::optional<char> zoneLetter = IFactorySettings::getZoneCode()) {
            submodel[0] = *zoneLetter;
        }
    }
    return submodel;
}

void ISystemInfo::setSelectedSubmodel(const std::string& submodel) {
    if (submodel.empty()) {
        ORVO_LOG(ERR, "Not expected submodel string, should not be empty here");
        return;
    }
    // Undo the zone letter that getSelectedSubmodel() shows, so that the stored value begins
    // with the model's own first character.
    std::string toStore = submodel;
    if (IFactorySettings::getZoneCode()) {
        toStore[0] = IProductInfo::getModelString().at(0);
    }
    if (toStore == IProductInfo::getModelString()) {
        toStore.clear();
    }
    setOrLog(selectedSubmodel(), toStore, "Error while saving selected submodel string");
}

bool ISystemInfo::isAnySubmodel() { return anySubmodel().getOrDefault(false); }

void ISystemInfo::setAnySubmodel(bool value) { setOrLog(anySubmodel(), value, "Error while saving any submodel flag"); }

} // namespace Platform
} // namespace Orvo
