// Product-wide initialisation and its guard, the application's paths, and the installation
// lock and source-partition-not-genuine flag: files whose presence is the state. The flags are
// raised elsewhere in the application; here they are tested and cleared.
#include "Platform/Product/IProductInfo.h"

#include "Common/Logging/Logging.h"
#include "Common/Utils/ErrorInfo.h"
#include "Common/Utils/OrvoAssert.h"
#include "Platform/Product/Implementation/ApplicationPaths.h"

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>

namespace Orvo {
namespace Platform {

namespace {

// Fixed by the build (ORVO_BUILD_TARGET, a compile definition of this file only).
constexpr const char* kBuildTarget = ORVO_BUILD_TARGET;

std::string join(const std::string& left, const std::string& right) {
    return (boost::filesystem::path(left) / right).string();
}

} // namespace

bool IProductInfo::m_isInitialized = false;
ApplicationPaths IProductInfo::m_paths;
std::map<int32_t, std::string> IProductInfo::m_productTypes;

void IProductInfo::initializeProduct() {
    ORVO_ASSERT(!m_isInitialized);
    ORVO_LOG(INF, "Product was build for %s", kBuildTarget);
    m_paths = buildApplicationPaths();
    // Codes 2, 6 and 7 are all audio-video products.
    m_productTypes = {
        {0, "TV"},  {1, "MONITOR"}, {2, "AV"}, {3, "PROJECTOR"}, {4, "LFD"},
        {5, "SMD"}, {6, "AV"},      {7, "AV"}, {8, "HTV"},       {9, "SPK"},
    };
    m_isInitialized = true;
}

void IProductInfo::throwIfUninitialized() {
    if (!m_isInitialized) {
        ORVO_THROW(ProductUninitializedException());
    }
}

std::string IProductInfo::getPathPrefix() {
    throwIfUninitialized();
    return m_paths.pathPrefix;
}

std::string IProductInfo::getSystemRwDataDirectory() {
    throwIfUninitialized();
    return m_paths.systemRwDataDirectory;
}

std::string IProductInfo::getAppDataDirectory() {
    throwIfUninitialized();
    return m_paths.appDataDirectory;
}

std::string IProductInfo::getPostponeUpdateFlagPath() {
    throwIfUninitialized();
    return join(m_paths.appDataDirectory, "PostponeUpdate");
}

std::string IProductInfo::getRootPathPrefix() {
    throwIfUninitialized();
    return m_paths.rootPathPrefix;
}

std::string IProductInfo::getAppRootDirectory() {
    throwIfUninitialized();
    return join(m_paths.rootPathPrefix, platformRoot(kRootApps));
}

std::string IProductInfo::getPlatformRootDirectory() {
    throwIfUninitialized();
    return join(m_paths.rootPathPrefix, platformRoot(kRootPlatform));
}

std::string IProductInfo::getPlatformRoot10Directory() {
    throwIfUninitialized();
    return m_paths.platformRoot10Directory;
}

std::string IProductInfo::getLastSearchingDateFilePath() {
    throwIfUninitialized();
    return m_paths.lastSearchingDateFilePath;
}

std::string IProductInfo::getFactoryResetFlagPath() {
    throwIfUninitialized();
    return m_paths.factoryResetFlagPath;
}

std::string IProductInfo::getFinalizingUpgradeFlagPath() {
    throwIfUninitialized();
    return m_paths.finalizingUpgradeFlagPath;
}

std::string IProductInfo::getEmulatedInfoFilePath() {
    throwIfUninitialized();
    return m_paths.emulatedInfoFilePath;
}

uint64_t IProductInfo::getFirstSizeLimit() {
    throwIfUninitialized();
    return m_paths.firstSizeLimit;
}

uint64_t IProductInfo::getSecondSizeLimit() {
    throwIfUninitialized();
    return m_paths.secondSizeLimit;
}

std::string IProductInfo::getPluginFailureFlagsPath() {
    throwIfUninitialized();
    return m_paths.pluginFailureFlagsPath;
}

std::string IProductInfo::getAppDirectory() {
    throwIfUninitialized();
    return m_paths.appDirectory;
}

std::string IProductInfo::getBackupDirectory() {
    throwIfUninitialized();
    return join(m_paths.rootPathPrefix, "/mnt/backup");
}

std::string IProductInfo::getUpdateInfoFilePath() {
    throwIfUninitialized();
    return m_paths.updateInfoFilePath;
}

std::string IProductInfo::getInstallationLockPath() {
    throwIfUninitialized();
    return join(m_paths.systemRwDataDirectory, "InstallationLock.dat");
}

std::string IProductInfo::getSourcePartitionNotGenuineFlagPath() {
    throwIfUninitialized();
    return m_paths.sourcePartitionNotGenuineFlagPath;
}

std::string IProductInfo::getKpiDirectory() {
    throwIfUninitialized();
    return m_paths.kpiDirectory;
}

std::string IProductInfo::getLocaleDirectory() {
    throwIfUninitialized();
    return m_paths.localeDirectory;
}

std::string IProductInfo::getCertificatePath() {
    throwIfUninitialized();
    return m_paths.certificatePath;
}

bool IProductInfo::isInstallationLocked() { return boost::filesystem::exists(getInstallationLockPath()); }

void IProductInfo::releaseInstallationLock() {
    const std::string lockPath = getInstallationLockPath();
    if (!boost::filesystem::remove(lockPath)) {
        ORVO_LOG(WRN, "InstallationLock was not locked (checked for file:  %s)", lockPath.c_str());
    }
}

bool IProductInfo::isSourcePartitionNotGenuine() {
    return boost::filesystem::exists(getSourcePartitionNotGenuineFlagPath());
}

void IProductInfo::releaseSourcePartitionNotGenuineFlag() {
    ORVO_LOG(INF, "Releasing SourcePartitionNotGenuine flag.");
    const std::string flagPath = getSourcePartitionNotGenuineFlagPath();
    if (boost::filesystem::exists(flagPath)) {
        boost::filesystem::remove(flagPath);
    }
}

} // namespace Platform
} // namespace Orvo
