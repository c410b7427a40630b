// ISystemInfo on the platform's system-information service and the identity keys in vconf.

#include "Platform/SystemAPI/SystemInfoSystemAPI/ISystemInfo.h"

#include "Common/Logging/Logging.h"
#include "Common/Utils/ErrorInfo.h"
#include "Common/Utils/OrvoAssert.h"
#include "Platform/SystemAPI/VconfSystemAPI/IVConfTizen.h"

#include <system_info.h>

#include <cstdlib>
#include <memory>
#include <string>

namespace Orvo {
namespace Platform {

using Common::Utils::errinfo_description;
using Common::Utils::errinfo_stream;
using Common::Utils::GenericException;

namespace {

// The recorded function texts are fixed so that they do not depend on the compiler's spelling.
constexpr const char* kCheckSystemInfoErrorFunction = "void Orvo::Platform::ISystemInfo::checkSystemInfoError(int)";

system_info_key_e systemInfoKey(int32_t key) { return static_cast<system_info_key_e>(key); }

// An identity value that must be present: a vconf failure propagates, an empty value throws.
std::string readMandatoryIdentity(const char* vconfKey, const char* debugLogPrefix, const char* emptyDescription,
                                  const char* functionText) {
    const std::string value = VConf<std::string>(vconfKey).get();
    ORVO_LOG(DBG, "Debug only log: %s is %s", debugLogPrefix, value.c_str());
    if (value.empty()) {
        ORVO_THROW_IN(functionText, GenericException() << errinfo_description(emptyDescription));
    }
    return value;
}

} // namespace

void ISystemInfo::checkSystemInfoError(int error) {
    switch (error) {
    case SYSTEM_INFO_ERROR_NONE:
        return;
    case SYSTEM_INFO_ERROR_INVALID_PARAMETER:
        ORVO_THROW_IN(kCheckSystemInfoErrorFunction,
                      GenericException() << errinfo_description(
                          "Error during getting system-info value: SYSTEM_INFO_ERROR_INVALID_PARAMETER"));
    case SYSTEM_INFO_ERROR_IO_ERROR:
        ORVO_THROW_IN(kCheckSystemInfoErrorFunction,
                      GenericException() << errinfo_description(
                          "Error during getting system-info value: SYSTEM_INFO_ERROR_IO_ERROR"));
    default:
        ORVO_THROW_IN(
            kCheckSystemInfoErrorFunction,
            GenericException() << errinfo_stream("Error during getting system-info value: unrecognized error value: " +
                                                 std::to_string(error)));
    }
}

int ISystemInfo::getSystemInfoInt(int32_t key) {
    int value = 0;
    checkSystemInfoError(system_info_get_value_int(systemInfoKey(key), &value));
    return value;
}

bool ISystemInfo::getSystemInfoBool(int32_t key) {
    bool value = false;
    checkSystemInfoError(system_info_get_value_bool(systemInfoKey(key), &value));
    return value;
}

std::string ISystemInfo::getSystemInfoString(int32_t key) {
    char* chValue = nullptr;
    checkSystemInfoError(system_info_get_value_string(systemInfoKey(key), &chValue));
    ORVO_ASSERT(chValue != nullptr);
    const std::unique_ptr<char, decltype(&std::free)> owned(chValue, &std::free);
    return std::string(chValue);
}

std::string ISystemInfo::getCountryCode() {
    std::string countryCode = VConf<std::string>("db/comss/countrycode").getOrDefault("");
    ORVO_LOG(DBG, "Debug only log: CountryCode is %s", countryCode.c_str());
    if (countryCode.size() != 2) {
        countryCode.clear();
        ORVO_LOG(WRN, "CountryCode value taken from vconf has not expected length");
    }
    return countryCode;
}

std::string ISystemInfo::getFirmwareVersion() {
    return readMandatoryIdentity("db/comss/corvelversion", "FIRMWARE", "Firmware value taken from vconf is empty",
                                 "std::__cxx11::string Orvo::Platform::ISystemInfo::getFirmwareVersion()");
}

std::string ISystemInfo::getAtoken() {
    return readMandatoryIdentity("db/comss/atoken", "Atoken", "Atoken value taken from vconf is empty",
                                 "std::__cxx11::string Orvo::Platform::ISystemInfo::getAtoken()");
}

std::string ISystemInfo::getDuid() {
    return readMandatoryIdentity("db/comss/hwduid", "DUID", "DUID value taken from vconf is empty",
                                 "std::__cxx11::string Orvo::Platform::ISystemInfo::getDuid()");
}

} // namespace Platform
} // namespace Orvo
