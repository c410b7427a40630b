#pragma once

namespace Orvo {
namespace Apps {
namespace MenuProvider {

// Logs, from inside a catch block, that a callback gave up, with the exception's diagnostic
// text. Never throws: it runs at the boundary to the host.
void logCallbackFailure(const char* callback) noexcept;

} // namespace MenuProvider
} // namespace Apps
} // namespace Orvo
