// Before initializeProduct() every guarded operation throws; the SW version helper answers.
#include "Common/Utils/ErrorInfo.h"
#include "orvo/testing/LogLines.h"
#include "Platform/Product/IProductInfo.h"

#include <dlog.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace Orvo {
namespace Testing {
namespace {

using Platform::IProductInfo;

struct GuardedOperation {
    const char* name;
    std::function<void()> call;
};

std::vector<GuardedOperation> guardedOperations() {
    return {
        {"getVersionString", [] { IProductInfo::getVersionString(); }},
        {"getModelString", [] { IProductInfo::getModelString(); }},
        {"getMajorSWVersion", [] { IProductInfo::getMajorSWVersion(); }},
        {"getMinorSWVersion", [] { IProductInfo::getMinorSWVersion(); }},
        {"getMainSoftwareVersionDate", [] { IProductInfo::getMainSoftwareVersionDate(); }},
        {"getSubmicomVersion", [] { IProductInfo::getSubmicomVersion(); }},
        {"getPlatformType", [] { IProductInfo::getPlatformType(); }},
        {"getChipsetType", [] { IProductInfo::getChipsetType(); }},
        {"getModelLine", [] { IProductInfo::getModelLine(); }},
        {"getLocalset", [] { IProductInfo::getLocalset(); }},
        {"getPartitionTxtFilePath", [] { IProductInfo::getPartitionTxtFilePath(); }},
        {"getProductType", [] { IProductInfo::getProductType(); }},
        {"getPathPrefix", [] { IProductInfo::getPathPrefix(); }},
        {"getSystemRwDataDirectory", [] { IProductInfo::getSystemRwDataDirectory(); }},
        {"getAppDataDirectory", [] { IProductInfo::getAppDataDirectory(); }},
        {"getPostponeUpdateFlagPath", [] { IProductInfo::getPostponeUpdateFlagPath(); }},
        {"getRootPathPrefix", [] { IProductInfo::getRootPathPrefix(); }},
        {"getAppRootDirectory", [] { IProductInfo::getAppRootDirectory(); }},
        {"getPlatformRootDirectory", [] { IProductInfo::getPlatformRootDirectory(); }},
        {"getPlatformRoot10Directory", [] { IProductInfo::getPlatformRoot10Directory(); }},
        {"getLastSearchingDateFilePath", [] { IProductInfo::getLastSearchingDateFilePath(); }},
        {"getFactoryResetFlagPath", [] { IProductInfo::getFactoryResetFlagPath(); }},
        {"getFinalizingUpgradeFlagPath", [] { IProductInfo::getFinalizingUpgradeFlagPath(); }},
        {"getEmulatedInfoFilePath", [] { IProductInfo::getEmulatedInfoFilePath(); }},
        {"getFirstSizeLimit", [] { IProductInfo::getFirstSizeLimit(); }},
        {"getSecondSizeLimit", [] { IProductInfo::getSecondSizeLimit(); }},
        {"getPluginFailureFlagsPath", [] { IProductInfo::getPluginFailureFlagsPath(); }},
        {"getAppDirectory", [] { IProductInfo::getAppDirectory(); }},
        {"getBackupDirectory", [] { IProductInfo::getBackupDirectory(); }},
        {"getUpdateInfoFilePath", [] { IProductInfo::getUpdateInfoFilePath(); }},
        {"getInstallationLockPath", [] { IProductInfo::getInstallationLockPath(); }},
        {"isInstallationLocked", [] { IProductInfo::isInstallationLocked(); }},
        {"releaseInstallationLock", [] { IProductInfo::releaseInstallationLock(); }},
        {"getSourcePartitionNotGenuineFlagPath", [] { IProductInfo::getSourcePartitionNotGenuineFlagPath(); }},
        {"isSourcePartitionNotGenuine", [] { IProductInfo::isSourcePartitionNotGenuine(); }},
        {"releaseSourcePartitionNotGenuineFlag", [] { IProductInfo::releaseSourcePartitionNotGenuineFlag(); }},
        {"getKpiDirectory", [] { IProductInfo::getKpiDirectory(); }},
        {"getLocaleDirectory", [] { IProductInfo::getLocaleDirectory(); }},
        {"getCertificatePath", [] { IProductInfo::getCertificatePath(); }},
    };
}

TEST(ProductInfoGuardTest, EveryGuardedOperationThrowsBeforeInitialisation) {
    TestDevice device;
    for (const GuardedOperation& operation : guardedOperations()) {
        EXPECT_THROW(operation.call(), Platform::ProductUninitializedException) << operation.name;
    }
    // The guard throws before anything is asked of the platform; only the flag release logs first.
    EXPECT_EQ(loggedMessages(device, LOG_ID_MAIN),
              std::vector<std::string>{"INF Releasing SourcePartitionNotGenuine flag."});
    EXPECT_TRUE(loggedMessages(device, LOG_ID_SYSTEM).empty());
}

TEST(ProductInfoGuardTest, GuardCarriesOnlyTheThrowLocation) {
    try {
        IProductInfo::throwIfUninitialized();
        FAIL() << "no exception";
    } catch (const Platform::ProductUninitializedException& exception) {
        EXPECT_NE(boost::get_error_info<boost::throw_function>(exception), nullptr);
        EXPECT_NE(boost::get_error_info<boost::throw_line>(exception), nullptr);
        EXPECT_EQ(boost::get_error_info<Common::Utils::errinfo_description>(exception), nullptr);
        EXPECT_EQ(boost::get_error_info<Common::Utils::errinfo_string>(exception), nullptr);
    }
}

TEST(ProductInfoGuardTest, SWVersionIsReadWithoutInitialisation) {
    TestDevice device;
    device.setConf("system-info.128", "string T-XYZ9-1302.5");
    EXPECT_EQ(Platform::getSWVersionString(), "T-XYZ9-1302.5");
    std::string model;
    uint16_t major = 0;
    uint16_t minor = 0;
    Platform::getParsedModelAndVersion(model, major, minor);
    EXPECT_EQ(model, "T-XYZ9");
    EXPECT_EQ(major, 1302);
    EXPECT_EQ(minor, 5);
}

} // namespace
} // namespace Testing
} // namespace Orvo
