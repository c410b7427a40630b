// The application's paths, readable once the product is initialised.
#include "Platform/Product/IProductInfo.h"

#include "Platform/Product/Implementation/ApplicationPaths.h"

#include <boost/filesystem/path.hpp>

namespace Orvo {
namespace Platform {

namespace {

std::string join(const std::string& left, const std::string& right) {
    return (boost::filesystem::path(left) / right).string();
}

} // namespace

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

} // namespace Platform
} // namespace Orvo
