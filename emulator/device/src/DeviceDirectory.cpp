#include "orvo/device/DeviceDirectory.h"

#include <array>
#include <cstdio>
#include <cstdlib>

namespace Orvo {
namespace Emulator {
namespace {

// A directory as pieces to join, so that the string and the allocation-free answers follow one rule.
using PathPieces = std::array<const char*, 3>;

const char kDeviceSubdirectory[] = "/orvo-emulator/device";

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

} // namespace Emulator
} // namespace Orvo
