#include "orvo/device/DeviceDirectory.h"

#include <cstdlib>

namespace Orvo {
namespace Emulator {
namespace {

std::string environment(const char* name)
{
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

} // namespace

std::string deviceDirectory()
{
    const std::string fromEnvironment = environment("ORVO_DEVICE_DIR");
    return fromEnvironment.empty() ? defaultDeviceDirectory() : fromEnvironment;
}

std::string defaultDeviceDirectory()
{
    std::string stateHome = environment("XDG_STATE_HOME");
    if (stateHome.empty())
        stateHome = environment("HOME") + "/.local/state";
    return stateHome + "/orvo-emulator/device";
}

} // namespace Emulator
} // namespace Orvo
