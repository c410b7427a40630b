// Creating, resetting and rebooting a device directory.

#include "orvo/device/Device.h"

#include "ProfileSettings.h"
#include "orvo/device/DeviceDirectory.h"
#include "orvo/device/DeviceEdits.h"
#include "orvo/device/SettingsStore.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace Orvo {
namespace Emulator {
namespace {

// The copied files must be on the disk before the device's name points at them: else a crash
// could leave a device whose files are empty. One syncfs covers the whole tree.
void syncFileSystemOf(const fs::path& dir) {
    const int fd = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool synced = fd >= 0 && ::syncfs(fd) == 0;
    const int error = errno;
    if (fd >= 0) ::close(fd);
    if (!synced) throw fs::filesystem_error("cannot sync", dir, std::error_code(error, std::generic_category()));
}

const char* const kDefaultProfile = "tv";

fs::path profileDirectory(const std::string& dataDir, const std::string& profile) {
    const fs::path dir = fs::path(dataDir) / "profiles" / profile;
    if (!isProfileName(profile) || !fs::is_regular_file(dir / "device.conf")) {
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
    if (!isDevice(deviceDir.c_str())) {
        throw std::runtime_error(noDeviceMessage(deviceDir));
    }
}

// Fills a new directory with the profile's device.
void buildDevice(const fs::path& target, const fs::path& source) {
    fs::create_directory(target);
    fs::create_directory(target / "rootfs");
    if (fs::is_directory(source / "rootfs")) {
        fs::copy(source / "rootfs", target / "rootfs", fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    }
    fs::create_directories(target / "vconf");
    fs::create_directories(target / "run" / "vconf");
    fs::create_directories(target / "log");
    fs::copy_file(source / "device.conf", target / "device.conf");
    applyProfileSettings(target.string(), source.string());
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
    if (error) throw fs::filesystem_error("cannot list", dir, error);
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

bool isProfileName(const std::string& profile) {
    return !profile.empty() && profile[0] != '.' && profile.find('/') == std::string::npos;
}

void createDevice(const std::string& deviceDir, const std::string& dataDir, const std::string& profile) {
    const fs::path source = profileDirectory(dataDir, profile);
    fs::path target = fs::path(deviceDir).lexically_normal();
    if (!target.has_filename()) target = target.parent_path();
    std::error_code error;
    if (fs::exists(target, error) && !fs::is_empty(target, error)) {
        throw std::runtime_error(deviceDir + " already exists and is not empty");
    }
    // A device is whole or absent, even when this process is killed: it is built aside and
    // renamed into place (rename replaces an empty directory).
    const fs::path staging =
        target.parent_path() / ("." + target.filename().string() + ".new-" + std::to_string(::getpid()));
    try {
        if (!target.parent_path().empty()) fs::create_directories(target.parent_path());
        fs::remove_all(staging);
        buildDevice(staging, source);
        syncFileSystemOf(staging);
        fs::rename(staging, target);
    } catch (const std::exception& e) {
        fs::remove_all(staging, error);
        const auto* fsError = dynamic_cast<const fs::filesystem_error*>(&e);
        if (fsError != nullptr &&
            (fsError->code() == std::errc::directory_not_empty || fsError->code() == std::errc::file_exists)) {
            throw std::runtime_error(deviceDir + " already exists and is not empty");
        }
        throw std::runtime_error("cannot create device " + deviceDir + ": " +
                                 (fsError != nullptr ? fsError->code().message() : e.what()));
    }
}

void resetDeviceToProfile(const std::string& deviceDir, const std::string& dataDir, const std::string& profile) {
    const fs::path source = profileDirectory(dataDir, profile);
    requireDevice(deviceDir);
    std::set<fs::path> keep = sandboxDirectoriesAndParents(deviceDir);
    try {
        std::ifstream profileConf(source / "device.conf", std::ios::binary);
        if (!profileConf) throw std::runtime_error("cannot read " + (source / "device.conf").string());
        replaceDeviceConf(deviceDir, std::string(std::istreambuf_iterator<char>(profileConf), {}));
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
    if (fs::is_symlink(fs::path(deviceDir) / "log")) {
        throw std::runtime_error(deviceDir + "/log leads out of the device (a symbolic link); nothing removed");
    }
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
    const std::string dir = deviceDirectory();
    if (isDevice(dir.c_str())) {
        return dir;
    }
    // Only the default device is made on first use; one named by the environment is the caller's.
    if (dir != defaultDeviceDirectory()) {
        throw std::runtime_error("ORVO_DEVICE_DIR: " + noDeviceMessage(dir));
    }
    try {
        createDevice(dir, emulatorDataDirectory(), kDefaultProfile);
    } catch (const std::exception&) {
        if (!isDevice(dir.c_str())) throw; // else a tool started at the same time made it
    }
    return dir;
}

void rebootDevice(const std::string& deviceDir) {
    requireDevice(deviceDir);
    bool cleared = false;
    try {
        cleared = clearVolatileSettings(deviceDir);
    } catch (const std::system_error& e) {
        throw std::runtime_error(std::string(e.what()));
    }
    if (!cleared && errno == ELOOP) {
        throw std::runtime_error(deviceDir + "/run/vconf leads out of the device (a symbolic link); nothing removed");
    }
    if (!cleared) {
        throw std::runtime_error("cannot clear the volatile settings of " + deviceDir + ": " + std::strerror(errno));
    }
}

} // namespace Emulator
} // namespace Orvo
