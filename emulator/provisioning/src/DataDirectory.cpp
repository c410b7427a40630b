// Where the emulator's shipped data lives and which profiles it offers.

#include "orvo/device/Device.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace Orvo {
namespace Emulator {

std::string emulatorDataDirectory() {
    const char* overridden = std::getenv("ORVO_EMULATOR_DATA_DIR");
    if (overridden != nullptr && *overridden != '\0') {
        return overridden;
    }
    // Tools and tests live in <prefix>/bin, both in the build tree and in an installed prefix.
    std::error_code error;
    const fs::path executable = fs::read_symlink("/proc/self/exe", error);
    if (error) {
        return "share/orvo-emulator";
    }
    return (executable.parent_path().parent_path() / "share" / "orvo-emulator").string();
}

std::vector<std::string> listProfiles(const std::string& dataDir) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator it(fs::path(dataDir) / "profiles", error), end; !error && it != end;
         it.increment(error)) {
        if (fs::is_regular_file(it->path() / "device.conf")) {
            names.push_back(it->path().filename().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace Emulator
} // namespace Orvo
