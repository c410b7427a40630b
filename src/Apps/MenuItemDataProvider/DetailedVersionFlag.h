#pragma once
// The one piece of plug-in state: whether the Info key asked for the detailed version block. It
// is a plain byte shared by every provider record of the process; the host calls from one thread.

namespace Orvo {
namespace Apps {
namespace MenuProvider {

void armDetailedVersion() noexcept;
bool isDetailedVersionArmed() noexcept;
void clearDetailedVersion() noexcept;

} // namespace MenuProvider
} // namespace Apps
} // namespace Orvo
