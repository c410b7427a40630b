// Product-wide initialisation and its guard.
#include "Platform/Product/IProductInfo.h"

#include "Common/Logging/Logging.h"
#include "Common/Utils/ErrorInfo.h"
#include "Common/Utils/OrvoAssert.h"
#include "Platform/Product/Implementation/ApplicationPaths.h"

namespace Orvo {
namespace Platform {

namespace {

// Fixed by the build (ORVO_BUILD_TARGET, a compile definition of this file only).
constexpr const char* kBuildTarget = ORVO_BUILD_TARGET;

} // namespace

bool IProductInfo::m_isInitialized = false;
ApplicationPaths IProductInfo::m_paths;
std::map<int32_t, std::string> IProductInfo::m_productTypes;

void IProductInfo::initializeProduct() {
    ORVO_ASSERT(!m_isInitialized);
    ORVO_LOG(INF, "Product was build for %s", kBuildTarget);
    m_paths = buildApplicationPaths();
    // Codes 2, 6 and 7 are all audio-video products.
    m_productTypes = {
        {0, "TV"},  {1, "MONITOR"}, {2, "AV"}, {3, "PROJECTOR"}, {4, "LFD"},
        {5, "SMD"}, {6, "AV"},      {7, "AV"}, {8, "HTV"},       {9, "SPK"},
    };
    m_isInitialized = true;
}

void IProductInfo::throwIfUninitialized() {
    if (!m_isInitialized) {
        ORVO_THROW(ProductUninitializedException());
    }
}

} // namespace Platform
} // namespace Orvo
