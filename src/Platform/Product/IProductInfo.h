#pragma once
// What device the application runs on, and where it keeps its files. initializeProduct() must
// run once before any other operation; every other operation throws
// ProductUninitializedException until it has.

#include <boost/exception/exception.hpp>
#include <boost/filesystem/path.hpp>

#include <cstdint>
#include <exception>
#include <map>
#include <string>

namespace Orvo {
namespace Platform {

struct ApplicationPaths; // the path table, Implementation/ApplicationPaths.h

class ProductUninitializedException : public virtual std::exception, public virtual boost::exception {
public:
    const char* what() const noexcept override { return "Orvo::Platform::ProductUninitializedException"; }
};

class IProductInfo {
public:
    IProductInfo() = delete;

    static void initializeProduct();
    static void throwIfUninitialized();

    // Device facts (CTizenProductInfo).
    static std::string getVersionString();
    static std::string getModelString();
    static uint16_t getMajorSWVersion();
    static uint16_t getMinorSWVersion();
    static std::string getMainSoftwareVersionDate();
    static std::string getSubmicomVersion();
    static std::string getPlatformType();
    static std::string getChipsetType();
    static std::string getModelLine();
    static std::string getLocalset();
    static boost::filesystem::path getPartitionTxtFilePath();
    static std::string getProductType();

    // Application paths (CProductInfo).
    static std::string getPathPrefix();
    static std::string getSystemRwDataDirectory();
    static std::string getAppDataDirectory();
    static std::string getPostponeUpdateFlagPath();
    static std::string getRootPathPrefix();
    static std::string getAppRootDirectory();
    static std::string getPlatformRootDirectory();
    static std::string getPlatformRoot10Directory();
    static std::string getLastSearchingDateFilePath();
    static std::string getFactoryResetFlagPath();
    static std::string getFinalizingUpgradeFlagPath();
    static std::string getEmulatedInfoFilePath();
    static uint64_t getFirstSizeLimit();
    static uint64_t getSecondSizeLimit();
    static std::string getPluginFailureFlagsPath();
    static std::string getAppDirectory();
    static std::string getBackupDirectory();
    static std::string getUpdateInfoFilePath();
    static std::string getInstallationLockPath();
    static bool isInstallationLocked();
    static void releaseInstallationLock();
    static std::string getSourcePartitionNotGenuineFlagPath();
    static bool isSourcePartitionNotGenuine();
    static void releaseSourcePartitionNotGenuineFlag();
    static std::string getKpiDirectory();
    static std::string getLocaleDirectory();
    static std::string getCertificatePath();

private:
    // Product-wide state, written only by initializeProduct().
    static bool m_isInitialized;
    static ApplicationPaths m_paths;
    static std::map<int32_t, std::string> m_productTypes;
};

} // namespace Platform
} // namespace Orvo
