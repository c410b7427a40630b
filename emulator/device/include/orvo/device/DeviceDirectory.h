#pragma once
// Where the emulated device's state lives.

#include <string>

namespace Orvo {
namespace Emulator {

// $ORVO_DEVICE_DIR when set and non-empty, otherwise defaultDeviceDirectory().
std::string deviceDirectory();

// ${XDG_STATE_HOME:-$HOME/.local/state}/orvo-emulator/device
std::string defaultDeviceDirectory();

} // namespace Emulator
} // namespace Orvo
