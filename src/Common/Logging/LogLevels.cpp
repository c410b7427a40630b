#include "Common/Logging/LogLevels.h"

#include "Common/Logging/Logging.h"

#include <dlog.h>

#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>

namespace Orvo {
namespace Common {
namespace Logging {
namespace {

// The irregular rows are intended: ERR goes to the system buffer at warning priority.
constexpr LevelRoute kRoutes[] = {
    {LOG_ID_MAIN, DLOG_VERBOSE, "[%s][%s][%u][VERBOSE] %s"}, {LOG_ID_MAIN, DLOG_DEBUG, "[%s][%s][%u][DBG] %s"},
    {LOG_ID_MAIN, DLOG_INFO, "[%s][%s][%u][INF] %s"},        {LOG_ID_MAIN, DLOG_WARN, "[%s][%s][%u][WRN] %s"},
    {LOG_ID_SYSTEM, DLOG_WARN, "[%s][%s][%u][ERR] %s"},      {LOG_ID_SYSTEM, DLOG_FATAL, "[%s][%s][%u][FTL] %s"},
};
constexpr LevelRoute kUnknownRoute = {LOG_ID_SYSTEM, DLOG_ERROR, "[%s][%s][%u][INF] %s"};

constexpr const char* kNames[] = {"VERBOSE", "DBG", "INF", "WRN", "ERR", "FTL"};

bool isKnown(int32_t level) { return level >= VERBOSE && level <= FTL; }

} // namespace

const LevelRoute& levelRoute(int32_t level) noexcept {
    return isKnown(level) ? kRoutes[level - VERBOSE] : kUnknownRoute;
}

const char* levelName(int32_t level) noexcept { return isKnown(level) ? kNames[level - VERBOSE] : "UNKNOWN LEVEL"; }

char levelLetter(int32_t level) noexcept { return level >= DBG && level <= FTL ? "DIWCE"[level - DBG] : 'I'; }

void formatThreadText(char (&threadText)[kThreadTextSize]) noexcept {
    char name[17] = {}; // the kernel's names hold up to 16 bytes with the terminator
    prctl(PR_GET_NAME, name, 0, 0, 0);
    std::snprintf(threadText, sizeof threadText, "%d %s", static_cast<int>(syscall(SYS_gettid)), name);
}

} // namespace Logging
} // namespace Common
} // namespace Orvo
