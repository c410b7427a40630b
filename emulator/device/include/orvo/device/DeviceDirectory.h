#pragma once
// Where the emulated device's state lives.

#include <cstddef>
#include <string>

namespace Orvo {
namespace Emulator {

// $ORVO_DEVICE_DIR when set and non-empty, otherwise defaultDeviceDirectory().
std::string deviceDirectory();

// The same written into buffer, without allocating (for dlog, which writes a record without
// touching the heap). False, with buffer holding a cut path, when it needs more than size bytes.
bool deviceDirectory(char* buffer, std::size_t size);

// ${XDG_STATE_HOME:-$HOME/.local/state}/orvo-emulator/device
std::string defaultDeviceDirectory();

} // namespace Emulator
} // namespace Orvo
