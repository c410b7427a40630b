#pragma once
// Product-level conversions shared across the software-update application: upgrade types and
// software version numbers.

#include <cstdint>
#include <string>

namespace Orvo {
namespace OrvoCommon {

// How an upgrade reaches the device.
enum class UpgradeType : int32_t {
    OTA = 1,
    OTN = 2,
    USB = 3,
    POSTPONE = 4,
};

// "OTA", "OTN", "USB" or "POSTPONE"; any other value is a programming error (assertion).
std::string upgradeTypeToString(UpgradeType type);

// Splits "major[.minor]" at the first '.' and converts both parts with boost::lexical_cast<int>
// (optional sign, digits only, 32-bit range); a missing minor is 0. Throws
// boost::bad_lexical_cast on malformed input, leaving the outputs unspecified.
void parseVersion(const std::string& version, int& major, int& minor);

// The major number as shown on screen; a malformed version is logged and returned unchanged.
std::string versionStringForUI(const std::string& version);

} // namespace OrvoCommon
} // namespace Orvo
