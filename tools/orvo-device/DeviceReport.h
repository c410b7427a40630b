#pragma once
// The readable account of a device that "orvo-device show" prints.

#include <ostream>
#include <string>

namespace Orvo {
namespace Emulator {

// The device's facts, its settings and the last logTail records of its main log.
void printDeviceReport(std::ostream& out, const std::string& deviceDir, std::size_t logTail);

} // namespace Emulator
} // namespace Orvo
