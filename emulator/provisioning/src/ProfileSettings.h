#pragma once
// The initial settings a profile gives a new device: its "settings" file, one value per line,
// "<int|bool|double|string> <key> <value>"; '#' starts a comment line, blank lines are ignored.

#include <string>

namespace Orvo {
namespace Emulator {

// Writes every setting of profileDir/settings (if present) into the device. Throws
// std::runtime_error naming the file and line for a malformed line or a rejected value.
void applyProfileSettings(const std::string& deviceDir, const std::string& profileDir);

} // namespace Emulator
} // namespace Orvo
