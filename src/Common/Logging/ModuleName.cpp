#include "Common/Logging/Logging.h"

#include <atomic>
#include <deque>

namespace Orvo {
namespace Common {
namespace Logging {
namespace {

// Fixed by the build (ORVO_MODULE_VERSION, a compile definition of this file only).
constexpr const char* kVersionSuffix = "-" ORVO_MODULE_VERSION;

std::atomic<const char*> g_moduleName{""};

// Listeners of the module name would be told here; this build has none.
void notifyModuleNameChanged() {}

} // namespace

void setModuleName(const std::string& name) {
    // Every name set stays alive: lines being written may still hold an earlier one.
    static std::deque<std::string> names;
    names.push_back(name + kVersionSuffix);
    g_moduleName.store(names.back().c_str(), std::memory_order_release);
    notifyModuleNameChanged();
}

const char* moduleName() noexcept { return g_moduleName.load(std::memory_order_acquire); }

} // namespace Logging
} // namespace Common
} // namespace Orvo
