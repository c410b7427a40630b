// The application's path table on the device's platform roots, and the lock and flag files.
#include "orvo/testing/LogLines.h"
#include "Platform/Product/IProductInfo.h"

#include <boost/filesystem/operations.hpp>
#include <dlog.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace Orvo {
namespace Testing {
namespace {

using Platform::IProductInfo;

const std::string kDataDirectory = "/mnt/systemrw/orvotv/data/tv";
const std::string kLockPath = kDataDirectory + "/InstallationLock.dat";
const std::string kFlagPath = kDataDirectory + "/SourcePartitionNotGenuineFlag";

TEST(ApplicationPathsTest, TableFollowsTheDevicesPlatformRoots) {
    TestDevice device; // tv profile: 3=/usr/share 7=/opt 10=/opt/share 27=/opt/usr/data 28=/usr/apps
    IProductInfo::initializeProduct();
    EXPECT_EQ(IProductInfo::getPathPrefix(), "");
    EXPECT_EQ(IProductInfo::getRootPathPrefix(), "");
    EXPECT_EQ(IProductInfo::getSystemRwDataDirectory(), kDataDirectory);
    EXPECT_EQ(IProductInfo::getAppDataDirectory(), "/opt/usr/data/orvotv/data/tv");
    EXPECT_EQ(IProductInfo::getPostponeUpdateFlagPath(), "/opt/usr/data/orvotv/data/tv/PostponeUpdate");
    EXPECT_EQ(IProductInfo::getAppRootDirectory(), "/usr/apps");
    EXPECT_EQ(IProductInfo::getPlatformRootDirectory(), "/opt");
    EXPECT_EQ(IProductInfo::getPlatformRoot10Directory(), "/opt/share");
    EXPECT_EQ(IProductInfo::getLastSearchingDateFilePath(), kDataDirectory + "/LastSearchingDate");
    EXPECT_EQ(IProductInfo::getFactoryResetFlagPath(), kDataDirectory + "/OrvoFactoryResetFlag");
    EXPECT_EQ(IProductInfo::getFinalizingUpgradeFlagPath(), kDataDirectory + "/OrvoFinalizingUpgradeFlag");
    EXPECT_EQ(IProductInfo::getEmulatedInfoFilePath(), kDataDirectory + "/EmulatedInfo.txt");
    EXPECT_EQ(IProductInfo::getFirstSizeLimit(), 943718400U);
    EXPECT_EQ(IProductInfo::getSecondSizeLimit(), 104857600U);
    EXPECT_EQ(IProductInfo::getPluginFailureFlagsPath(), kDataDirectory + "/plugin_failure_flags");
    EXPECT_EQ(IProductInfo::getAppDirectory(), "/usr/apps/orvotv");
    EXPECT_EQ(IProductInfo::getBackupDirectory(), "/mnt/backup");
    EXPECT_EQ(IProductInfo::getUpdateInfoFilePath(), kDataDirectory + "/UpdateInfo.xml");
    EXPECT_EQ(IProductInfo::getInstallationLockPath(), kLockPath);
    EXPECT_EQ(IProductInfo::getSourcePartitionNotGenuineFlagPath(), kFlagPath);
    EXPECT_EQ(IProductInfo::getKpiDirectory(), kDataDirectory + "/kpi");
    EXPECT_EQ(IProductInfo::getLocaleDirectory(), "/usr/share/orvotv/res/locale");
    EXPECT_EQ(IProductInfo::getCertificatePath(), "/usr/share/cert/tvca.pem");
}

TEST(ApplicationPathsTest, TableIsFixedAtInitialisationAndComposedRootsAreNot) {
    TestDevice device;
    device.setConf("tzplatform.27", "/data27");
    device.setConf("tzplatform.28", "/apps28/");
    IProductInfo::initializeProduct();
    device.setConf("tzplatform.27", "/later27");
    device.setConf("tzplatform.28", "/later28");
    device.setConf("tzplatform.7", "/later7");
    EXPECT_EQ(IProductInfo::getAppDataDirectory(), "/data27/orvotv/data/tv");
    EXPECT_EQ(IProductInfo::getPostponeUpdateFlagPath(), "/data27/orvotv/data/tv/PostponeUpdate");
    EXPECT_EQ(IProductInfo::getAppDirectory(), "/apps28//orvotv"); // plain concatenation
    EXPECT_EQ(IProductInfo::getAppRootDirectory(), "/later28");
    EXPECT_EQ(IProductInfo::getPlatformRootDirectory(), "/later7");
}

TEST(ApplicationPathsTest, MissingPlatformRootLeavesTheProductUninitialised) {
    TestDevice device;
    for (const char* index : {"tzplatform.3", "tzplatform.10", "tzplatform.27", "tzplatform.28"}) {
        device.removeConf(index);
        try {
            IProductInfo::initializeProduct();
            ADD_FAILURE() << index << ": initialised";
        } catch (const std::logic_error& error) {
            EXPECT_STREQ(error.what(), "basic_string::_M_construct null not valid");
        }
        EXPECT_THROW(IProductInfo::getSystemRwDataDirectory(), Platform::ProductUninitializedException) << index;
        device.setConf(index, "/restored");
    }
    // Root 7 is not in the table: it is needed only when its path is asked for.
    device.removeConf("tzplatform.7");
    IProductInfo::initializeProduct();
    EXPECT_EQ(IProductInfo::getLocaleDirectory(), "/restored/orvotv/res/locale");
    EXPECT_THROW(IProductInfo::getPlatformRootDirectory(), std::logic_error);
}

class FlagFilesTest : public ::testing::Test {
protected:
    void SetUp() override {
        IProductInfo::initializeProduct();
        m_device.clearLogs();
    }

    std::vector<std::string> mainLog() const { return loggedMessages(m_device, LOG_ID_MAIN); }

    TestDevice m_device;
};

TEST_F(FlagFilesTest, PresentLockIsReleased) {
    m_device.writeFile(kLockPath, "");
    EXPECT_TRUE(IProductInfo::isInstallationLocked());
    IProductInfo::releaseInstallationLock();
    EXPECT_FALSE(IProductInfo::isInstallationLocked());
    EXPECT_FALSE(boost::filesystem::exists(m_device.rootfsPath(kLockPath)));
    EXPECT_TRUE(mainLog().empty());
}

TEST_F(FlagFilesTest, ReleasingAnAbsentLockWarns) {
    EXPECT_FALSE(IProductInfo::isInstallationLocked());
    IProductInfo::releaseInstallationLock();
    EXPECT_FALSE(IProductInfo::isInstallationLocked());
    EXPECT_EQ(mainLog(), std::vector<std::string>{"WRN InstallationLock was not locked (checked for file:  " + kLockPath + ")"});
}

TEST_F(FlagFilesTest, UnremovableLockThrowsFilesystemError) {
    m_device.writeFile(kLockPath + "/occupied", "");
    EXPECT_TRUE(IProductInfo::isInstallationLocked());
    EXPECT_THROW(IProductInfo::releaseInstallationLock(), boost::filesystem::filesystem_error);
    EXPECT_TRUE(IProductInfo::isInstallationLocked());
}

TEST_F(FlagFilesTest, PresentSourcePartitionFlagIsReleased) {
    m_device.writeFile(kFlagPath, "1");
    EXPECT_TRUE(IProductInfo::isSourcePartitionNotGenuine());
    IProductInfo::releaseSourcePartitionNotGenuineFlag();
    EXPECT_FALSE(IProductInfo::isSourcePartitionNotGenuine());
    EXPECT_FALSE(boost::filesystem::exists(m_device.rootfsPath(kFlagPath)));
    EXPECT_EQ(mainLog(), std::vector<std::string>{"INF Releasing SourcePartitionNotGenuine flag."});
}

TEST_F(FlagFilesTest, ReleasingAnAbsentSourcePartitionFlagOnlyLogs) {
    EXPECT_FALSE(IProductInfo::isSourcePartitionNotGenuine());
    IProductInfo::releaseSourcePartitionNotGenuineFlag();
    EXPECT_EQ(mainLog(), std::vector<std::string>{"INF Releasing SourcePartitionNotGenuine flag."});
}

TEST_F(FlagFilesTest, UnremovableSourcePartitionFlagThrowsFilesystemError) {
    m_device.writeFile(kFlagPath + "/occupied", "");
    EXPECT_THROW(IProductInfo::releaseSourcePartitionNotGenuineFlag(), boost::filesystem::filesystem_error);
    EXPECT_TRUE(IProductInfo::isSourcePartitionNotGenuine());
}

} // namespace
} // namespace Testing
} // namespace Orvo
