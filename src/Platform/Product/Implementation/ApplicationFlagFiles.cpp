// The installation lock and the source-partition-not-genuine flag: files whose presence is the
// state. They are raised elsewhere in the application; here they are tested and cleared.
#include "Platform/Product/IProductInfo.h"

#include "Common/Logging/Logging.h"

#include <boost/filesystem/operations.hpp>

namespace Orvo {
namespace Platform {

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
