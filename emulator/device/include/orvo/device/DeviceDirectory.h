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

// Where scripts keep the device of a profile: defaultDeviceDirectory() for the default profile
// "tv", "<the same>-<profile>" for any other.
std::string profileDeviceDirectory(const std::string& profile);

// A device directory holds device.conf as a regular file (a link there is no device).
bool isDevice(const char* dir);

// The one line that says dir holds no device and how to make one.
std::string noDeviceMessage(const std::string& dir);

// Writes a line on standard error, once per process and text.
void reportOnce(const std::string& line);

// For the substitute libraries, which never make a device: deviceDirectory() into buffer when it
// holds a device. Otherwise false, after noDeviceMessage() on standard error (once per process).
// Allocates nothing.
bool findDevice(char* buffer, std::size_t size);

} // namespace Emulator
} // namespace Orvo
