// The device sandbox: a private mount namespace in which the device's rootfs directories are
// bound onto the absolute paths that the system uses on a television.

#include "orvo/device/Device.h"

#include "orvo/device/DeviceConf.h"
#include "orvo/device/DeviceDirectory.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace Orvo {
namespace Emulator {
namespace {

// The paths a television's system reads and writes: the device's whatever its device.conf says.
const char* const kDevicePaths[] = {"/common",     "/mnt/systemrw",     "/mnt/backup",          "/usr/share/orvotv",
                                    "/opt/orvotv", "/opt/share/orvotv", "/opt/usr/data/orvotv", "/usr/apps/orvotv"};

const char kNamespaceHint[] = " (the device sandbox needs root or unprivileged user namespaces)";

[[noreturn]] void fail(const std::string& what, int error) {
    throw std::runtime_error(what + ": " + std::strerror(error));
}

void writeProcFile(const std::string& path, const std::string& text) {
    std::ofstream out(path);
    out << text;
    out.flush();
    if (!out) {
        fail("cannot write " + path, errno);
    }
}

void enterMountNamespace() {
    if (::geteuid() == 0) {
        if (::unshare(CLONE_NEWNS) != 0) {
            fail(std::string("cannot create a mount namespace") + kNamespaceHint, errno);
        }
        return;
    }
    // Unprivileged: a user namespace in which the caller keeps its own uid and gid grants the
    // right to mount inside the new mount namespace.
    const uid_t uid = ::getuid();
    const gid_t gid = ::getgid();
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        fail(std::string("cannot create a user and mount namespace") + kNamespaceHint, errno);
    }
    writeProcFile("/proc/self/setgroups", "deny");
    writeProcFile("/proc/self/uid_map", std::to_string(uid) + " " + std::to_string(uid) + " 1");
    writeProcFile("/proc/self/gid_map", std::to_string(gid) + " " + std::to_string(gid) + " 1");
}

// A link in the device's rootfs would bind a directory of the host instead of the device's.
void requireNoLinkBelow(const fs::path& device, const fs::path& source) {
    fs::path walked = device;
    for (const fs::path& part : source.lexically_relative(device)) {
        walked /= part;
        if (fs::is_symlink(walked)) {
            throw std::runtime_error(walked.string() +
                                     " is a symbolic link: it may lead out of the device, so "
                                     "it is not mounted");
        }
    }
}

void bindDevicePath(const fs::path& device, const std::string& path) {
    const fs::path source = device / "rootfs" / fs::path(path).relative_path();
    requireNoLinkBelow(device, source);
    std::error_code error;
    fs::create_directories(source, error);
    if (error) {
        throw std::runtime_error("cannot create " + source.string() + ": " + error.message());
    }
    requireNoLinkBelow(device, source);
    if (!fs::is_directory(path)) {
        if (::geteuid() != 0) {
            throw std::runtime_error("mount point " + path + " is missing on this machine and only root can create it");
        }
        fs::create_directories(path, error);
        if (error) {
            throw std::runtime_error("cannot create mount point " + path + ": " + error.message());
        }
    }
    if (::mount(source.c_str(), path.c_str(), nullptr, MS_BIND | MS_REC, nullptr) != 0) {
        fail("cannot bind " + source.string() + " onto " + path, errno);
    }
}

} // namespace

std::vector<std::string> sandboxPaths(const std::string& deviceDir) {
    std::vector<std::string> paths(std::begin(kDevicePaths), std::end(kDevicePaths));
    // A device may name roots of its own; the system's directories under them are the device's too.
    for (const auto& root : DeviceConf::load(deviceDir).tzplatform) {
        // Only the system's own directory under a root: never the shared root itself.
        const fs::path rootPath = fs::path(root.second).lexically_normal();
        if (rootPath.is_absolute()) {
            paths.push_back((rootPath / "orvotv").lexically_normal().string());
        }
    }
    // Sorted, a directory comes before the paths below it, so nested mounts stay visible.
    std::sort(paths.begin(), paths.end());
    paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
    return paths;
}

void enterSandbox(const std::string& deviceDir) {
    std::error_code error;
    const fs::path device = fs::canonical(deviceDir, error);
    if (error || !isDevice(device.c_str())) {
        throw std::runtime_error(noDeviceMessage(deviceDir));
    }
    const std::vector<std::string> paths = sandboxPaths(device.string());
    enterMountNamespace();
    // Nothing mounted here may propagate back to the host's namespace.
    if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
        fail("cannot make the mount tree private", errno);
    }
    for (const std::string& path : paths) {
        bindDevicePath(device, path);
    }
    if (::setenv("ORVO_DEVICE_DIR", device.c_str(), 1) != 0) {
        fail("cannot set ORVO_DEVICE_DIR", errno);
    }
}

} // namespace Emulator
} // namespace Orvo
