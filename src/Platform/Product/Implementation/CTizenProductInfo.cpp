// Device facts from the platform's system-information service. Nothing is cached: every getter
// asks the platform again.
#include "Platform/Product/IProductInfo.h"

#include "Common/Logging/Logging.h"
#include "Common/Utils/ErrorInfo.h"
#include "OrvoCommon/OrvoCommonUtils.h"
#include "Platform/Product/Implementation/SWVersion.h"
#include "Platform/SystemAPI/SystemInfoSystemAPI/ISystemInfo.h"

#include <boost/current_function.hpp>

#include <system_info.h>

#include <cstdlib>

namespace Orvo {
namespace Platform {

namespace {

// System-information keys, by the platform's numbers.
constexpr int kKeySWVersion = 128;
constexpr int kKeyMainSoftwareVersionDate = 8;
constexpr int kKeySubmicomVersion = 133;
constexpr int kKeyPlatformType = 564;
constexpr int kKeyChipsetType = 91;
constexpr int kKeyModelLine = 0;
constexpr int kKeyChinaModelLine = 620;
constexpr int kKeyLocalset = 90;
constexpr int kKeyPartitionTxtFilePath = 301;
constexpr int kKeyProductCode = 77;

// The version date and the submicom version share the SW version's failure text.
const char* const kSWVersionReadFailure = "Unable to read SW version from system-info";
// The model line whose real value is kept under a key of its own.
const char* const kChinaModelLine = "CHI_DTV";

// Logs the failure and throws it, recorded in the getter that failed.
[[noreturn]] void failSystemInfoRead(const char* message, const char* function) {
    ORVO_LOG(ERR, "%s", message);
    ORVO_THROW_IN(function, SystemInfoAPIInternalProblemException() << Common::Utils::errinfo_description(message));
}

std::string readString(int key, const char* failureMessage, const char* function) {
    char* value = nullptr;
    if (system_info_get_value_string(static_cast<system_info_key_e>(key), &value) != SYSTEM_INFO_ERROR_NONE) {
        failSystemInfoRead(failureMessage, function);
    }
    std::string text(value != nullptr ? value : "");
    std::free(value);
    return text;
}

// A guarded getter's read of one string key; a failure is recorded in `function`.
std::string readGuarded(int key, const char* failureMessage, const char* function) {
    IProductInfo::throwIfUninitialized();
    return readString(key, failureMessage, function);
}

// What the guarded getters take from getParsedModelAndVersion.
struct ParsedSWVersion {
    std::string model;
    uint16_t major = 0;
    uint16_t minor = 0;
};

ParsedSWVersion readParsedSWVersion() {
    IProductInfo::throwIfUninitialized();
    ParsedSWVersion parsed;
    getParsedModelAndVersion(parsed.model, parsed.major, parsed.minor);
    return parsed;
}

// The SW version split at its last dash into model and version part; throws GenericException
// (description "<caller>: Wrong string format - lack of dash") when there is none.
std::string::size_type lastDash(const std::string& swVersion, const char* caller, const char* function) {
    const std::string::size_type dash = swVersion.rfind('-');
    if (dash == std::string::npos) {
        const std::string description = std::string(caller) + ": Wrong string format - lack of dash";
        ORVO_LOG(ERR, "%s: %s", description.c_str(), swVersion.c_str());
        ORVO_THROW_IN(function, Common::Utils::GenericException() << Common::Utils::errinfo_description(description)
                                                                  << Common::Utils::errinfo_string(swVersion));
    }
    return dash;
}

} // namespace

std::string getSWVersionString() { return readString(kKeySWVersion, kSWVersionReadFailure, BOOST_CURRENT_FUNCTION); }

void getParsedModelAndVersion(std::string& model, uint16_t& major, uint16_t& minor) {
    const std::string swVersion = getSWVersionString();
    ORVO_LOG_STREAM(DBG) << "getParsedModelAndVersion got version string '" << swVersion << "'";
    const std::string::size_type dash = lastDash(swVersion, "getParsedModelAndVersion", BOOST_CURRENT_FUNCTION);
    model = swVersion.substr(0, dash);
    const std::string versionPart = swVersion.substr(dash + 1);
    ORVO_LOG_STREAM(DBG) << "version string: " << versionPart;
    int parsedMajor = 0;
    int parsedMinor = 0;
    OrvoCommon::parseVersion(versionPart, parsedMajor, parsedMinor);
    // The product's version numbers are 16-bit; larger values keep their low bits.
    major = static_cast<uint16_t>(parsedMajor);
    minor = static_cast<uint16_t>(parsedMinor);
    ORVO_LOG_STREAM(DBG) << "version:" << major << "." << minor;
}

std::string IProductInfo::getVersionString() {
    throwIfUninitialized();
    const std::string swVersion = getSWVersionString();
    const std::string version = swVersion.substr(lastDash(swVersion, "getVersionString", BOOST_CURRENT_FUNCTION) + 1);
    ORVO_LOG(INF, "Version string: %s.", version.c_str());
    return version;
}

std::string IProductInfo::getModelString() {
    const std::string model = readParsedSWVersion().model;
    ORVO_LOG(INF, "Model string: %s.", model.c_str());
    return model;
}

uint16_t IProductInfo::getMajorSWVersion() {
    const uint16_t major = readParsedSWVersion().major;
    ORVO_LOG(INF, "MAJOR SW VERSION: %d", major);
    return major;
}

uint16_t IProductInfo::getMinorSWVersion() {
    const uint16_t minor = readParsedSWVersion().minor;
    ORVO_LOG(INF, "MINOR SW VERSION: %d", minor);
    return minor;
}

std::string IProductInfo::getMainSoftwareVersionDate() {
    return readGuarded(kKeyMainSoftwareVersionDate, kSWVersionReadFailure, BOOST_CURRENT_FUNCTION);
}

std::string IProductInfo::getSubmicomVersion() {
    return readGuarded(kKeySubmicomVersion, kSWVersionReadFailure, BOOST_CURRENT_FUNCTION);
}

std::string IProductInfo::getPlatformType() {
    return readGuarded(kKeyPlatformType, "Unable to read platform type from system-info", BOOST_CURRENT_FUNCTION);
}

std::string IProductInfo::getChipsetType() {
    return readGuarded(kKeyChipsetType, "Unable to read chipset type from system-info", BOOST_CURRENT_FUNCTION);
}

std::string IProductInfo::getModelLine() {
    const std::string modelLine =
        readGuarded(kKeyModelLine, "Unable to read model line from system-info", BOOST_CURRENT_FUNCTION);
    if (modelLine == kChinaModelLine) {
        return readString(kKeyChinaModelLine, "Unable to read china model line from system-info",
                          BOOST_CURRENT_FUNCTION);
    }
    return modelLine;
}

std::string IProductInfo::getLocalset() {
    return readGuarded(kKeyLocalset, "Unable to read localset from system-info", BOOST_CURRENT_FUNCTION);
}

boost::filesystem::path IProductInfo::getPartitionTxtFilePath() {
    const boost::filesystem::path path(readGuarded(
        kKeyPartitionTxtFilePath, "Unable to read partition file path from system-info", BOOST_CURRENT_FUNCTION));
    ORVO_LOG(INF, "Partition.txt file path is: %s", path.string().c_str());
    return path;
}

std::string IProductInfo::getProductType() {
    throwIfUninitialized();
    int code = 0;
    if (system_info_get_value_int(static_cast<system_info_key_e>(kKeyProductCode), &code) != SYSTEM_INFO_ERROR_NONE) {
        failSystemInfoRead("Unable to read product key from system-info", BOOST_CURRENT_FUNCTION);
    }
    std::string productType;
    try {
        productType = m_productTypes[code]; // an unknown code gets a row of its own, with no text
    } catch (...) {
        ORVO_LOG(ERR, "Product type string not found for: %d", code);
    }
    ORVO_LOG(INF, "Product Type: %s.", productType.c_str());
    return productType;
}

} // namespace Platform
} // namespace Orvo
