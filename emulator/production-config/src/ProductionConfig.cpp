#pragma GCC visibility push(default)
#include "Orvo/Common/Debug/ProductionConfig.h"
#pragma GCC visibility pop

#include "orvo/device/DeviceConf.h"

namespace Orvo {
namespace Common {
namespace Debug {

// Without a readable device there is no production mode to report (the reason is on stderr).
bool isProduction() {
    Orvo::Emulator::DeviceConf conf;
    return Orvo::Emulator::DeviceConf::loadCurrent(conf) && conf.production;
}

} // namespace Debug
} // namespace Common
} // namespace Orvo
