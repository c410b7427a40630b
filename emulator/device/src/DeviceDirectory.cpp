#include "orvo/device/DeviceDirectory.h"

#include <array>
#include <atomic>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <set>

#include <sys/stat.h>

namespace Orvo {
namespace Emulator {
namespace {

// A directory as pieces to join, so that the string and the allocation-free answers follow one rule.
using PathPieces = std::array<const char*, 3>;

const char kDeviceSubdirectory[] = "/orvo-emulator/device";
const char kDefaultProfile[] = "tv";
const char kNoDeviceFormat[] = "no emulated device in %s (make one with: orvo-device create %s)";

const char* environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

PathPieces defaultDirectoryPieces() {
    const char* stateHome = environment("XDG_STATE_HOME");
    if (*stateHome != '\0') return {stateHome, "", kDeviceSubdirectory};
    return {environment("HOME"), "/.local/state", kDeviceSubdirectory};
}

PathPieces deviceDirectoryPieces() {
    const char* fromEnvironment = environment("ORVO_DEVICE_DIR");
    return *fromEnvironment != '\0' ? PathPieces{fromEnvironment, "", ""} : defaultDirectoryPieces();
}

std::string joined(const PathPieces& pieces) {
    std::string path;
    for (const char* piece : pieces)
        path += piece;
    return path;
}

} // namespace

std::string deviceDirectory() { return joined(deviceDirectoryPieces()); }

bool deviceDirectory(char* buffer, std::size_t size) {
    const PathPieces pieces = deviceDirectoryPieces();
    const int length = std::snprintf(buffer, size, "%s%s%s", pieces[0], pieces[1], pieces[2]);
    return length >= 0 && static_cast<std::size_t>(length) < size;
}

std::string defaultDeviceDirectory() { return joined(defaultDirectoryPieces()); }

std::string profileDeviceDirectory(const std::string& profile) {
    return profile == kDefaultProfile ? defaultDeviceDirectory() : defaultDeviceDirectory() + "-" + profile;
}

bool isDevice(const char* dir) {
    char conf[PATH_MAX];
    const int length = std::snprintf(conf, sizeof conf, "%s/device.conf", dir);
    struct stat status;
    return length > 0 && static_cast<std::size_t>(length) < sizeof conf && ::lstat(conf, &status) == 0 &&
           S_ISREG(status.st_mode);
}

std::string noDeviceMessage(const std::string& dir) {
    std::string message(sizeof kNoDeviceFormat + 2 * dir.size(), '\0');
    const int length = std::snprintf(&message[0], message.size(), kNoDeviceFormat, dir.c_str(), dir.c_str());
    message.resize(static_cast<std::size_t>(length));
    return message;
}

void reportOnce(const std::string& line) {
    static std::mutex mutex;
    static std::set<std::string> reported;
    {
        std::lock_guard<std::mutex> lock(mutex);
        if (!reported.insert(line).second) return;
    }
    std::fprintf(stderr, "%s\n", line.c_str());
}

bool findDevice(char* buffer, std::size_t size) {
    if (deviceDirectory(buffer, size) && isDevice(buffer)) return true;
    static std::atomic<bool> reported{false};
    if (!reported.exchange(true)) {
        std::fprintf(stderr, kNoDeviceFormat, buffer, buffer);
        std::fputc('\n', stderr);
    }
    return false;
}

} // namespace Emulator
} // namespace Orvo
