#include "OrvoCommon/OrvoCommonUtils.h"

#include "Common/Logging/Logging.h"
#include "Common/Utils/OrvoAssert.h"

#include <boost/exception/diagnostic_information.hpp>
#include <boost/lexical_cast.hpp>

namespace Orvo {
namespace OrvoCommon {

std::string upgradeTypeToString(UpgradeType type) {
    switch (type) {
    case UpgradeType::OTA:
        return "OTA";
    case UpgradeType::OTN:
        return "OTN";
    case UpgradeType::USB:
        return "USB";
    case UpgradeType::POSTPONE:
        return "POSTPONE";
    }
    ORVO_ASSERT(false);
    return std::string(); // not reached: the assertion aborts
}

void parseVersion(const std::string& version, int& major, int& minor) {
    const std::string::size_type dot = version.find('.');
    const std::string majorText = version.substr(0, dot);
    const std::string minorText = dot == std::string::npos ? std::string("0") : version.substr(dot + 1);
    major = boost::lexical_cast<int>(majorText);
    minor = boost::lexical_cast<int>(minorText);
}

std::string versionStringForUI(const std::string& version) {
    try {
        int major = 0;
        int minor = 0;
        parseVersion(version, major, minor);
        return boost::lexical_cast<std::string>(major); // the screen shows the major number only
    } catch (...) {
        ORVO_LOG(FTL, "Exception caught in versionStringForUI. Ignoring: %s",
                 boost::current_exception_diagnostic_information().c_str());
        return version;
    }
}

} // namespace OrvoCommon
} // namespace Orvo
