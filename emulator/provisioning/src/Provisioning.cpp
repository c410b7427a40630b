// Creating, resetting and rebooting a device directory.

#include "orvo/device/Device.h"

#include "ProfileSettings.h"
#include "orvo/device/DeviceDirectory.h"
#include "orvo/device/SettingsStore.h"

#include <filesystem>
#include <set>
#include <stdexcept>
#include <system_error>

#include <unistd.h>

namespace fs = std::filesystem;

namespace Orvo {
namespace Emulator {
namespace {

const char* const kDefaultProfile = "tv";

fs::path profileDirectory(const std::string& dataDir, const std::string& profile) {
    const bool plainName = !profile.empty() && profile[0] != '.' && profile.find('/') == std::string::npos;
    const fs::path dir = fs::path(dataDir) / "profiles" / profile;
    if (!plainName || !fs::is_regular_file(dir / "device.conf")) {
        std::string known;
        for (const std::string& name : listProfiles(dataDir)) {
            known += (known.empty() ? "" : ", ") + name;
        }
        throw std::runtime_error("unknown profile '" + profile +
                                 "' (available: " + (known.empty() ? "none in " + dataDir : known) + ")");
    }
    return dir;
}

void requireDevice(const std::string& deviceDir) {
    if (!fs::is_regular_file(fs::path(deviceDir) / "device.conf")) {
        throw std::runtime_error(deviceDir + " is not a device directory (no device.conf)");
    }
}

void emptyDirectory(const fs::path& dir, std::error_code& error) {
    for (fs::directory_iterator it(dir, error), end; !error && it != end; it.increment(error)) {
        fs::remove_all(it->path(), error);
    }
}

// Empties the device's rootfs before the profile's files are copied in again, keeping the
// directories that are (or lead to) a sandbox mount: a running sandbox keeps seeing the device.
void clearRootfs(const fs::path& dir, const fs::path& devicePath, const std::set<fs::path>& keep) {
    std::error_code error;
    for (fs::directory_iterator it(dir, error), end; !error && it != end; it.increment(error)) {
        const fs::path onDevice = devicePath / it->path().filename();
        const bool kept = it->is_directory() && !it->is_symlink() && keep.count(onDevice) != 0;
        if (kept) {
            clearRootfs(it->path(), onDevice, keep);
        } else {
            fs::remove_all(it->path());
        }
    }
}

std::set<fs::path> sandboxDirectoriesAndParents(const std::string& deviceDir) {
    std::set<fs::path> result;
    for (const std::string& path : sandboxPaths(deviceDir)) {
        for (fs::path p = path; p != p.root_path() && !p.empty(); p = p.parent_path()) {
            result.insert(p);
        }
    }
    return result;
}

} // namespace

void createDevice(const std::string& deviceDir, const std::string& dataDir, const std::string& profile) {
    const fs::path source = profileDirectory(dataDir, profile);
    const fs::path target(deviceDir);
    std::error_code error;
    const bool existed = fs::exists(target, error);
    if (existed && !fs::is_empty(target, error)) {
        throw std::runtime_error(deviceDir + " already exists and is not empty");
    }
    // A device is whole or absent: a failure part-way removes what was made.
    try {
        fs::create_directories(target);
        fs::copy_file(source / "device.conf", target / "device.conf");
        fs::create_directory(target / "rootfs");
        if (fs::is_directory(source / "rootfs")) {
            fs::copy(source / "rootfs", target / "rootfs",
                     fs::copy_options::recursive | fs::copy_options::copy_symlinks);
        }
        fs::create_directories(target / "vconf");
        fs::create_directories(target / "run" / "vconf");
        fs::create_directories(target / "log");
        applyProfileSettings(deviceDir, source.string());
    } catch (const std::exception& e) {
        existed ? emptyDirectory(target, error) : static_cast<void>(fs::remove_all(target, error));
        const auto* fsError = dynamic_cast<const fs::filesystem_error*>(&e);
        throw std::runtime_error("cannot create device " + deviceDir + ": " +
                                 (fsError != nullptr ? fsError->code().message() : e.what()));
    }
}

void resetDeviceToProfile(const std::string& deviceDir, const std::string& dataDir, const std::string& profile) {
    const fs::path source = profileDirectory(dataDir, profile);
    requireDevice(deviceDir);
    std::set<fs::path> keep = sandboxDirectoriesAndParents(deviceDir);
    try {
        fs::copy_file(source / "device.conf", fs::path(deviceDir) / "device.conf",
                      fs::copy_options::overwrite_existing);
        const std::set<fs::path> keepAfter = sandboxDirectoriesAndParents(deviceDir);
        keep.insert(keepAfter.begin(), keepAfter.end());
        const fs::path rootfs = fs::path(deviceDir) / "rootfs";
        fs::create_directories(rootfs);
        clearRootfs(rootfs, "/", keep);
        if (fs::is_directory(source / "rootfs")) {
            fs::copy(
                source / "rootfs", rootfs,
                fs::copy_options::recursive | fs::copy_options::copy_symlinks | fs::copy_options::overwrite_existing);
        }
    } catch (const fs::filesystem_error& e) {
        throw std::runtime_error("cannot reset device " + deviceDir + ": " + e.code().message());
    }
}

void resetDeviceState(const std::string& deviceDir, const std::string& dataDir, const std::string& profile) {
    const fs::path source = profileDirectory(dataDir, profile);
    requireDevice(deviceDir);
    for (const std::string& key : listSettings(deviceDir)) {
        removeSetting(deviceDir, key);
    }
    std::error_code error;
    emptyDirectory(fs::path(deviceDir) / "log", error);
    if (error) {
        throw std::runtime_error("cannot clear the logs of " + deviceDir + ": " + error.message());
    }
    applyProfileSettings(deviceDir, source.string());
}

std::string toolDeviceDirectory() {
    // Only the default device is made on first use; one named by the environment is the caller's.
    const fs::path dir = deviceDirectory();
    if (dir != defaultDeviceDirectory() || fs::exists(dir / "device.conf")) {
        return dir.string();
    }
    // Built aside and renamed into place, so that tools started together never see half a device.
    std::error_code error;
    fs::create_directories(dir.parent_path(), error);
    const fs::path staging = dir.string() + ".new-" + std::to_string(::getpid());
    fs::remove_all(staging, error);
    createDevice(staging.string(), emulatorDataDirectory(), kDefaultProfile);
    fs::rename(staging, dir, error);
    if (error) {
        fs::remove_all(staging);
        requireDevice(dir.string());
    }
    return dir.string();
}

void rebootDevice(const std::string& deviceDir) {
    requireDevice(deviceDir);
    clearVolatileSettings(deviceDir);
}

} // namespace Emulator
} // namespace Orvo
