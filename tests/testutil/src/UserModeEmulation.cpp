#include "orvo/testing/UserModeEmulation.h"

#include <fstream>
#include <string>

namespace Orvo::Testing {

bool runsUnderUserModeEmulation() {
#if defined(__arm__)
    // An ARM kernel describes its CPU with a "CPU architecture" line; qemu-user passes the host's
    // /proc/cpuinfo through unchanged.
    std::ifstream cpuinfo("/proc/cpuinfo");
    for (std::string line; std::getline(cpuinfo, line);)
        if (line.rfind("CPU architecture", 0) == 0) return false;
    return true;
#else
    return false;
#endif
}

} // namespace Orvo::Testing
