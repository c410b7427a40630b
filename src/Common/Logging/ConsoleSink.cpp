#include "Common/Logging/LogLevels.h"
#include "Common/Logging/Logging.h"

#include <chrono>
#include <cstdio>
#include <thread>

namespace Orvo {
namespace Common {
namespace Logging {

void consoleSink(const char* tag, int32_t level, char* text) {
    char threadText[kThreadTextSize];
    formatThreadText(threadText);
    // Standard output stays on the console from the first use on.
    if (std::freopen("/dev/console", "w", stdout) == nullptr) {
        std::fprintf(stderr, "Cannot open /dev/console\n%s: Direct [%s][%s] %s\n", tag, levelName(level), threadText,
                     text);
        return;
    }
    std::fprintf(stdout, "%s: Direct [%s][%s] %s\n", tag, levelName(level), threadText, text);
    std::fflush(stdout);
    // Lets the console drain before what usually follows (an abort).
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
}

} // namespace Logging
} // namespace Common
} // namespace Orvo
