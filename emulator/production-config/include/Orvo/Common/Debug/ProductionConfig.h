#pragma once

namespace Orvo {
namespace Common {
namespace Debug {

// Whether the device runs in production mode (developer switches disabled). Asked of the
// device's configuration on every call.
bool isProduction();

} // namespace Debug
} // namespace Common
} // namespace Orvo
