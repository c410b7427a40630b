#pragma GCC visibility push(default)
#include "Orvo/Common/Debug/ProductionConfig.h"
#pragma GCC visibility pop

#include "orvo/device/DeviceConf.h"
#include "orvo/device/DeviceDirectory.h"

namespace Orvo {
namespace Common {
namespace Debug {

bool isProduction() { return Orvo::Emulator::DeviceConf::load(Orvo::Emulator::deviceDirectory()).production; }

} // namespace Debug
} // namespace Common
} // namespace Orvo
