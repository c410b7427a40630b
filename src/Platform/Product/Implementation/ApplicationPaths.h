#pragma once
// The application's path table: where the software-update application keeps its files.

#include <cstdint>
#include <string>

namespace Orvo {
namespace Platform {

// Platform directory variables (tzplatform_getenv indices) that the application uses.
constexpr int kRootShare = 3;
constexpr int kRootPlatform = 7;
constexpr int kRootShareApps = 10;
constexpr int kRootUserData = 27;
constexpr int kRootApps = 28;

// 18 paths and two sizes, in the order of the table.
struct ApplicationPaths {
    std::string prefix;                            // 0
    std::string pathPrefix;                        // 1
    std::string systemRwDataDirectory;             // 2
    std::string appDataDirectory;                  // 3
    std::string rootPathPrefix;                    // 4
    std::string platformRoot10Directory;           // 5
    std::string lastSearchingDateFilePath;         // 6
    std::string factoryResetFlagPath;              // 7
    std::string finalizingUpgradeFlagPath;         // 8
    std::string emulatedInfoFilePath;              // 9
    std::string pluginFailureFlagsPath;            // 10
    std::string appDirectory;                      // 11
    std::string productionKeysLibraryPath;         // 12
    std::string updateInfoFilePath;                // 13
    std::string sourcePartitionNotGenuineFlagPath; // 14
    std::string kpiDirectory;                      // 15
    std::string localeDirectory;                   // 16
    std::string certificatePath;                   // 17
    uint64_t firstSizeLimit = 0;                   // 18
    uint64_t secondSizeLimit = 0;                  // 19
};

// Composes the table from the platform's directory roots. A root that the platform does not
// know throws std::logic_error, as constructing a std::string from null does.
ApplicationPaths buildApplicationPaths();

// Platform root n (tzplatform_getenv), fetched anew on every call; throws as above when unknown.
std::string platformRoot(int index);

} // namespace Platform
} // namespace Orvo
