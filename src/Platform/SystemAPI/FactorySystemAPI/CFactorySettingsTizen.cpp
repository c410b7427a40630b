// IFactorySettings on the factory menu's values, which the platform publishes as system
// information. A failed read falls back to the built-in default of the key.

#include "Platform/SystemAPI/FactorySystemAPI/IFactorySettings.h"

#include "Common/Logging/Logging.h"
#include "Common/Utils/OrvoAssert.h"
#include "Debug/DebugAndTestParameters/DebugAndTestParameters.h"

#include <system_info.h>

#include <cstdint>
#include <map>
#include <string>
#include <utility>

namespace Orvo {
namespace Platform {

namespace {

using OrvoCommon::DebugAndTestParameters;

constexpr system_info_key_e kFastUsbBootingKey = static_cast<system_info_key_e>(869);
constexpr system_info_key_e kOtaSupportKey = static_cast<system_info_key_e>(890);
constexpr system_info_key_e kOtnOnOffKey = static_cast<system_info_key_e>(902);
constexpr system_info_key_e kOtnServerTypeKey = static_cast<system_info_key_e>(903);
constexpr system_info_key_e kZoneKey = static_cast<system_info_key_e>(904);
constexpr system_info_key_e kDurationKey = static_cast<system_info_key_e>(922);
constexpr system_info_key_e kFailTestKey = static_cast<system_info_key_e>(923);
constexpr system_info_key_e kHotelOtnUpdateKey = static_cast<system_info_key_e>(10130);

// Every key that getIntFromFactory accepts, with its name and the value used when the factory
// menu cannot be read.
const std::map<system_info_key_e, std::pair<std::string, int32_t>> defaultValuesMap = {
    {kFastUsbBootingKey, {"ID_FAST_USB_BOOTING_ONOFF", 0}},
    {kOtnOnOffKey, {"ID_OTN_ONOFF", 1}},
    {kOtnServerTypeKey, {"ID_OTN_SERVER_TYPE", 1}},
    {kZoneKey, {"ID_OTN_TESTSERVER", 0}},
    {kDurationKey, {"ID_ORVO_DURATION", 0}},
    {kFailTestKey, {"ID_ORVO_FAIL_TEST", 0}},
    {kHotelOtnUpdateKey, {"ID_HOTEL_OTN_UPDATE", 1}},
};

int getIntFromFactory(system_info_key_e key) {
    ORVO_ASSERT(defaultValuesMap.find(key) != defaultValuesMap.end());
    const std::pair<std::string, int32_t>& nameAndDefault = defaultValuesMap.at(key);
    int value = 0;
    if (system_info_get_value_int(key, &value) != SYSTEM_INFO_ERROR_NONE) {
        ORVO_LOG(INF, "Failed to fetch key %d (%s) from factory menu. Default value will be used: %d",
                 static_cast<int>(key), nameAndDefault.first.c_str(), nameAndDefault.second);
        return nameAndDefault.second;
    }
    ORVO_LOG(VERBOSE, "Factory Settings value under key %d (%s) is : %d", static_cast<int>(key),
             nameAndDefault.first.c_str(), value);
    return value;
}

// A developer's override of a factory switch from the debug-and-test parameters, if set.
boost::optional<bool> overriddenSwitch(const char* parameterName, const char* switchName) {
    const boost::optional<int32_t> value =
        DebugAndTestParameters::getDebugAndTestParameters().getCustomIntParam(parameterName);
    if (!value) {
        return boost::none;
    }
    const bool enabled = *value != 0;
    ORVO_LOG(INF, "%s overridden to: %d", switchName, enabled ? 1 : 0);
    return enabled;
}

bool isOtnEnabled(system_info_key_e key) {
    if (const boost::optional<bool> overridden =
            overriddenSwitch("IFactorySettings::overrideOTNEnabled", "OTNEnabled")) {
        return *overridden;
    }
    return getIntFromFactory(key) != 0;
}

} // namespace

bool IFactorySettings::isRetailTvOtnEnabled() {
    const bool enabled = isOtnEnabled(kOtnOnOffKey);
    ORVO_LOG(INF, "isRetailTvOtnEnabled(): %d", enabled ? 1 : 0);
    return enabled;
}

bool IFactorySettings::isB2BTvOtnEnabled() {
    const bool enabled = isOtnEnabled(kHotelOtnUpdateKey);
    ORVO_LOG(INF, "isB2BTvOtnEnabled(): %d", enabled ? 1 : 0);
    return enabled;
}

bool IFactorySettings::isOtaSupportedByFactory() {
    int value = 0;
    if (system_info_get_value_int(kOtaSupportKey, &value) == SYSTEM_INFO_ERROR_NONE && value == 1) {
        ORVO_LOG(INF, "Factory settings supports OTA");
        return true;
    }
    ORVO_LOG(INF, "Factory settings doesn't support OTA");
    return false;
}

boost::optional<char> IFactorySettings::getZoneCode() {
    const int value = getIntFromFactory(kZoneKey);
    if (value == 0) {
        return boost::none;
    }
    // Only the low byte counts for the range, so 257 is zone A; T is not a zone.
    const unsigned lowByte = static_cast<unsigned>(value) & 0xFFu;
    if (lowByte >= 1 && lowByte <= 26) {
        const char letter = static_cast<char>('@' + lowByte);
        if (letter != 'T') {
            return letter;
        }
    }
    ORVO_LOG(INF, "Invalid zone code: %d", value);
    return boost::none;
}

bool IFactorySettings::isOrvoFailTestActive() {
    if (const boost::optional<bool> overridden =
            overriddenSwitch("IFactorySettings::overrideOrvoFailTestActive", "OrvoFailTestActive")) {
        return *overridden;
    }
    const int value = getIntFromFactory(kFailTestKey);
    ORVO_LOG(INF, "IFactorySettings::isOrvoFailTestActive(): %d", value);
    return value != 0;
}

unsigned IFactorySettings::getOTNServerType() {
    // Read first in any case, so that every call logs the factory value.
    const int value = getIntFromFactory(kOtnServerTypeKey);
    if (DebugAndTestParameters::getDebugAndTestParameters().useOTNTestServer()) {
        return kDebugParametersTestServer;
    }
    if (value == 0) {
        return kRegularServer;
    }
    if (value != 1) {
        ORVO_LOG(INF, "Invalid OTN server type: %d. Using test server.", value);
    }
    return kTestServer;
}

bool IFactorySettings::isShortOtaDuration() {
    if (getIntFromFactory(kDurationKey) != 0) {
        ORVO_LOG(INF, "ID_ORVO_DURATION option is set in Factory settings. Using short OTA timeout.");
        return true;
    }
    ORVO_LOG(INF, "ID_ORVO_DURATION option is not set in Factory settings. Using normal OTA timeout.");
    return false;
}

void IFactorySettings::factoryOsUpgrade() { ORVO_LOG(INF, "Factory os upgrade api is disabled."); }

bool IFactorySettings::isFastBootInProductionMode() {
    const int value = getIntFromFactory(kFastUsbBootingKey);
    ORVO_LOG(INF, "IFactorySettings::isFastBootInProductionMode(): %d", value);
    return value != 0;
}

} // namespace Platform
} // namespace Orvo
