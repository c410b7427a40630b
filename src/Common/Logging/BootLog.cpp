#include "Common/Logging/Logging.h"

#include <atomic>
#include <cstdio>

namespace Orvo {
namespace Common {
namespace Logging {
namespace {

std::atomic<bool> g_bootLogEnabled{false};

// The boot log has no output device in this build.
void writeBootLine(const char* /*line*/) {}

} // namespace

void setBootLogEnabled(bool enabled) noexcept { g_bootLogEnabled.store(enabled, std::memory_order_relaxed); }

void formatBootLine(char* buffer, std::size_t size, int32_t level, const char* field, const char* text) {
    if (!g_bootLogEnabled.load(std::memory_order_relaxed)) return;
    std::snprintf(buffer, size, "%c%c%c%-8.8s %8s%c%s%c", 0x91, levelLetter(level), 0x90, moduleName(), field, 0x87,
                  text, '\n');
    writeBootLine(buffer);
}

} // namespace Logging
} // namespace Common
} // namespace Orvo
