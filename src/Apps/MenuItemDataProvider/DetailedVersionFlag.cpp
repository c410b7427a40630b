#include "Apps/MenuItemDataProvider/DetailedVersionFlag.h"

namespace Orvo {
namespace Apps {
namespace MenuProvider {

namespace {
unsigned char detailedVersionFlag = 0;
} // namespace

void armDetailedVersion() noexcept { detailedVersionFlag = 1; }

bool isDetailedVersionArmed() noexcept { return detailedVersionFlag != 0; }

void clearDetailedVersion() noexcept { detailedVersionFlag = 0; }

} // namespace MenuProvider
} // namespace Apps
} // namespace Orvo
