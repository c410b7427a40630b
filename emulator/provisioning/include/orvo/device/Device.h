#pragma once
// Creating, rebooting and entering an emulated device.

#include <string>
#include <vector>

namespace Orvo {
namespace Emulator {

// The emulator's shipped data (profiles with their message catalogues):
// $ORVO_EMULATOR_DATA_DIR when set, else <directory of the running executable>/../share/orvo-emulator.
std::string emulatorDataDirectory();

// Names of the profiles under <dataDir>/profiles, sorted.
std::vector<std::string> listProfiles(const std::string& dataDir);

// A profile is named by a plain file name: nothing that leads out of the profiles.
bool isProfileName(const std::string& profile);

// Makes deviceDir a new device from a profile: device.conf and rootfs/ copied, empty vconf/,
// run/vconf/ and log/, the profile's settings. The device is built aside and renamed into place,
// so that deviceDir holds a whole device or none, even when the process is killed. Throws
// std::runtime_error (one-line message) when the profile is unknown or deviceDir is not empty.
void createDevice(const std::string& deviceDir, const std::string& dataDir, const std::string& profile);

// Overwrites device.conf and the contents of rootfs/ with the profile's, keeping the rootfs
// directories themselves (they may be mount points of a running sandbox). Settings and logs stay.
void resetDeviceToProfile(const std::string& deviceDir, const std::string& dataDir, const std::string& profile);

// Replaces every setting of the device by the profile's initial settings and empties its logs,
// so that the device starts afresh as after createDevice.
void resetDeviceState(const std::string& deviceDir, const std::string& dataDir, const std::string& profile);

// The device a tool works on: $ORVO_DEVICE_DIR when set, otherwise the default device directory,
// created from the default profile ("tv") on first use. Throws std::runtime_error (one line,
// saying how to make one) when $ORVO_DEVICE_DIR names no device.
std::string toolDeviceDirectory();

// Clears the volatile state, as a reboot of the television does. Throws std::runtime_error when
// there is no device or its volatile settings lie behind a link.
void rebootDevice(const std::string& deviceDir);

// The absolute paths that the sandbox maps onto <deviceDir>/rootfs/<path>: the system's fixed
// paths, whatever device.conf lists, and the system's directory under any other root it names.
std::vector<std::string> sandboxPaths(const std::string& deviceDir);

// Enters a private mount namespace (as root, or through an unprivileged user namespace) in which
// every sandbox path is the device's rootfs directory, and sets ORVO_DEVICE_DIR. The calling
// process must be single-threaded. Throws std::runtime_error with a one-line reason when there is
// no device, a rootfs directory to mount is a link, or the namespace or a mount cannot be had.
void enterSandbox(const std::string& deviceDir);

} // namespace Emulator
} // namespace Orvo
