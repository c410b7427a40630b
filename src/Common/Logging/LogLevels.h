#pragma once
// How each log level reaches dlog: buffer, priority and line format. Internal to the logging.

#include <cstdint>

namespace Orvo {
namespace Common {
namespace Logging {

struct LevelRoute {
    int buffer;         // log_id_t
    int priority;       // log_priority
    const char* format; // module name, thread text, sequence number, text
};

// The route of a level; levels outside VERBOSE..FTL go to the system buffer at error priority
// with an "INF" line.
const LevelRoute& levelRoute(int32_t level) noexcept;

// "<kernel thread id> <thread name>" of the calling thread.
constexpr int kThreadTextSize = 64;
void formatThreadText(char (&threadText)[kThreadTextSize]) noexcept;

} // namespace Logging
} // namespace Common
} // namespace Orvo
