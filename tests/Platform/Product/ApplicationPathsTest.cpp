// The application's path table on the device's platform roots, and the lock and flag files.
#include "orvo/testing/LogLines.h"
#include "Platform/Product/IProductInfo.h"

#include <boost/filesystem/operations.hpp>
#include <cstdint>
#include <dlog.h>
#include <gmock/gmock.h>

#include <tuple>
#include <type_traits>

// The SW version helpers are the product layer's own, not part of IProductInfo.h: a lookup from
// inside Orvo::Platform reaches these stand-ins only when the header declares no helper of the name.
namespace StandIn {
struct NotDeclared {};
NotDeclared getSWVersionString();
NotDeclared getParsedModelAndVersion(...);
} // namespace StandIn
namespace Orvo::Platform::Probe {
using namespace StandIn;
static_assert(std::is_same_v<decltype(getSWVersionString()), StandIn::NotDeclared>);
static_assert(std::is_same_v<decltype(getParsedModelAndVersion()), StandIn::NotDeclared>);
} // namespace Orvo::Platform::Probe

namespace Orvo::Testing {
namespace {

using namespace ::testing;
using P = Platform::IProductInfo;

const std::string kData = "/mnt/systemrw/orvotv/data/tv";
const std::string kLockPath = kData + "/InstallationLock.dat";
const std::string kFlagPath = kData + "/SourcePartitionNotGenuineFlag";

const std::string kAppData = "/opt/usr/data/orvotv/data/tv";

// Every text accessor with its path on the tv profile's platform roots: 3=/usr/share 7=/opt
// 10=/opt/share 27=/opt/usr/data 28=/usr/apps.
#define PATH(accessor, expected) std::make_tuple(#accessor, P::accessor, std::string(expected))
const std::tuple<const char*, std::string (*)(), std::string> kPaths[] = {
    PATH(getPathPrefix, ""),
    PATH(getRootPathPrefix, ""),
    PATH(getSystemRwDataDirectory, kData),
    PATH(getAppDataDirectory, kAppData),
    PATH(getPostponeUpdateFlagPath, kAppData + "/PostponeUpdate"),
    PATH(getAppRootDirectory, "/usr/apps"),
    PATH(getPlatformRootDirectory, "/opt"),
    PATH(getPlatformRoot10Directory, "/opt/share"),
    PATH(getLastSearchingDateFilePath, kData + "/LastSearchingDate"),
    PATH(getFactoryResetFlagPath, kData + "/OrvoFactoryResetFlag"),
    PATH(getFinalizingUpgradeFlagPath, kData + "/OrvoFinalizingUpgradeFlag"),
    PATH(getEmulatedInfoFilePath, kData + "/EmulatedInfo.txt"),
    PATH(getPluginFailureFlagsPath, kData + "/plugin_failure_flags"),
    PATH(getAppDirectory, "/usr/apps/orvotv"),
    PATH(getBackupDirectory, "/mnt/backup"),
    PATH(getUpdateInfoFilePath, kData + "/UpdateInfo.xml"),
    PATH(getInstallationLockPath, kLockPath),
    PATH(getSourcePartitionNotGenuineFlagPath, kFlagPath),
    PATH(getKpiDirectory, kData + "/kpi"),
    PATH(getLocaleDirectory, "/usr/share/orvotv/res/locale"),
    PATH(getCertificatePath, "/usr/share/cert/tvca.pem")};

TEST(ApplicationPathsTest, TableFollowsTheDevicesPlatformRootsOnceInitialised) {
    TestDevice device;
    for (const auto& [name, get, expected] : kPaths)
        EXPECT_THROW(get(), Platform::ProductUninitializedException) << name;
    EXPECT_THROW(P::getFirstSizeLimit(), Platform::ProductUninitializedException);
    EXPECT_THROW(P::getSecondSizeLimit(), Platform::ProductUninitializedException);
    P::initializeProduct();
    for (const auto& [name, get, expected] : kPaths)
        EXPECT_EQ(get(), expected) << name;
    EXPECT_EQ(std::make_pair(P::getFirstSizeLimit(), P::getSecondSizeLimit()),
              std::make_pair(std::uint64_t{943718400}, std::uint64_t{104857600}));
}

TEST(ApplicationPathsTest, TableIsFixedAtInitialisationAndComposedRootsAreNot) {
    TestDevice device;
    device.setConf("tzplatform.27", "/data27");
    device.setConf("tzplatform.28", "/apps28/");
    P::initializeProduct();
    for (const char* root : {"tzplatform.7", "tzplatform.27", "tzplatform.28"})
        device.setConf(root, "/later");
    EXPECT_EQ(P::getPostponeUpdateFlagPath(), "/data27/orvotv/data/tv/PostponeUpdate");
    EXPECT_EQ(P::getAppDirectory(), "/apps28//orvotv"); // plain concatenation
    EXPECT_EQ(P::getAppRootDirectory() + P::getPlatformRootDirectory(), "/later/later");
}

TEST(ApplicationPathsTest, MissingPlatformRootLeavesTheProductUninitialised) {
    TestDevice device;
    for (const char* index : {"tzplatform.3", "tzplatform.10", "tzplatform.27", "tzplatform.28"}) {
        SCOPED_TRACE(index);
        device.removeConf(index);
        EXPECT_THROW(P::initializeProduct(), std::logic_error);
        EXPECT_THROW(P::getSystemRwDataDirectory(), Platform::ProductUninitializedException);
        device.setConf(index, "/restored");
    }
    // Root 7 is not in the table: it is needed only when its path is asked for.
    device.removeConf("tzplatform.7");
    P::initializeProduct();
    EXPECT_EQ(P::getLocaleDirectory(), "/restored/orvotv/res/locale");
    EXPECT_THROW(P::getPlatformRootDirectory(), std::logic_error);
}

// Each file is released when present and left, silently or with a warning, when absent; a
// directory in its place cannot be removed.
TEST(FlagFilesTest, LockAndSourcePartitionFlagAreReleased) {
    TestDevice device;
    P::initializeProduct();
    device.clearLogs();
    const struct {
        std::string path;
        bool (*present)();
        void (*release)();
    } files[] = {{kLockPath, P::isInstallationLocked, P::releaseInstallationLock},
                 {kFlagPath, P::isSourcePartitionNotGenuine, P::releaseSourcePartitionNotGenuineFlag}};
    for (const auto& file : files) {
        device.writeFile(file.path, "1");
        EXPECT_TRUE(file.present());
        file.release();
        EXPECT_FALSE(file.present());
        file.release();
        device.writeFile(file.path + "/occupied", "");
        EXPECT_THROW(file.release(), boost::filesystem::filesystem_error);
        EXPECT_TRUE(file.present());
    }
    const std::string flagReleased = "INF Releasing SourcePartitionNotGenuine flag.";
    EXPECT_THAT(loggedMessages(device, LOG_ID_MAIN),
                ElementsAre("WRN InstallationLock was not locked (checked for file:  " + kLockPath + ")", flagReleased,
                            flagReleased, flagReleased));
    EXPECT_THAT(device.logMessages(), Each(HasSubstr("] CProductInfo.cpp:")));
}

} // namespace
} // namespace Orvo::Testing
