#pragma once
// Changing a device's facts from a tool: one device.conf entry, or one file of its rootfs.
// Every change is all or nothing (the file is replaced atomically), and device.conf changes of
// several processes are serialised (an flock on the device directory), so none is lost.

#include <string>

namespace Orvo {
namespace Emulator {

// Sets `name = value` in <deviceDir>/device.conf: the line that holds the entry is replaced in
// place (comments and other lines stay as they are), or a new line is appended. The caller
// checks that the entry is valid. Throws std::runtime_error with a one-line reason.
void setDeviceConfEntry(const std::string& deviceDir, const std::string& name, const std::string& value);

// Replaces the whole of <deviceDir>/device.conf by text, all or nothing. Throws
// std::runtime_error with a one-line reason.
void replaceDeviceConf(const std::string& deviceDir, const std::string& text);

// Writes or removes the device's file at an absolute device path (<deviceDir>/rootfs/<path>);
// removing a missing file is fine. Throws std::runtime_error with a one-line reason.
void writeRootfsFile(const std::string& deviceDir, const std::string& devicePath, const std::string& content);
void removeRootfsFile(const std::string& deviceDir, const std::string& devicePath);

} // namespace Emulator
} // namespace Orvo
