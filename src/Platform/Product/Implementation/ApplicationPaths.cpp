#include "Platform/Product/Implementation/ApplicationPaths.h"

#include <tzplatform_config.h>

#include <stdexcept>

namespace Orvo {
namespace Platform {

namespace {

// The whole tree can be moved under another directory by a build; this one keeps it at "/".
const std::string kPathPrefix;
const std::string kDataSubPath = "/orvotv/data/tv";
const std::string kSystemRwMount = "/mnt/systemrw";

constexpr uint64_t kFirstSizeLimit = 943718400;  // 900 MiB
constexpr uint64_t kSecondSizeLimit = 104857600; // 100 MiB

std::string systemRwData(const char* suffix) { return kPathPrefix + kSystemRwMount + kDataSubPath + suffix; }

std::string underRoot(int index, const char* suffix) { return kPathPrefix + platformRoot(index) + suffix; }

} // namespace

std::string platformRoot(int index) {
    const char* root = tzplatform_getenv(static_cast<tzplatform_variable>(index));
    if (root == nullptr) {
        // The text the standard library gives when a string is built from a null pointer.
        throw std::logic_error("basic_string::_M_construct null not valid");
    }
    return root;
}

ApplicationPaths buildApplicationPaths() {
    ApplicationPaths paths;
    paths.prefix = kPathPrefix;
    paths.pathPrefix = kPathPrefix;
    paths.systemRwDataDirectory = systemRwData("");
    paths.appDataDirectory = underRoot(kRootUserData, kDataSubPath.c_str());
    paths.rootPathPrefix = kPathPrefix;
    paths.platformRoot10Directory = underRoot(kRootShareApps, "");
    paths.lastSearchingDateFilePath = systemRwData("/LastSearchingDate");
    paths.factoryResetFlagPath = systemRwData("/OrvoFactoryResetFlag");
    paths.finalizingUpgradeFlagPath = systemRwData("/OrvoFinalizingUpgradeFlag");
    paths.emulatedInfoFilePath = systemRwData("/EmulatedInfo.txt");
    paths.pluginFailureFlagsPath = systemRwData("/plugin_failure_flags");
    paths.appDirectory = underRoot(kRootApps, "/orvotv");
    paths.productionKeysLibraryPath = underRoot(kRootShare, "/orvotv/liborvoprodkeys.so");
    paths.updateInfoFilePath = systemRwData("/UpdateInfo.xml");
    paths.sourcePartitionNotGenuineFlagPath = systemRwData("/SourcePartitionNotGenuineFlag");
    paths.kpiDirectory = systemRwData("/kpi");
    paths.localeDirectory = underRoot(kRootShare, "/orvotv/res/locale");
    paths.certificatePath = underRoot(kRootShare, "/cert/tvca.pem");
    paths.firstSizeLimit = kFirstSizeLimit;
    paths.secondSizeLimit = kSecondSizeLimit;
    return paths;
}

} // namespace Platform
} // namespace Orvo
