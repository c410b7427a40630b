#pragma once
// Reading the application's log lines back from an emulated device.

#include "orvo/testing/TestDevice.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Orvo {
namespace Testing {

// One dlog record of the application, its line taken apart:
// "[<module>][<tid> <thread name>][<sequence>][<level>] <text>".
struct LogLine {
    int priority = 0;
    std::string tag;
    std::string module;
    std::string thread;
    uint32_t sequence = 0;
    std::string level;
    std::string text;
    bool wellFormed = false;
};

LogLine parseLogLine(const std::string& message);

// Every record of one buffer (a log_id_t), parsed.
std::vector<LogLine> logLines(const TestDevice& device, int buffer);

// "<tid> <name>" of the calling thread, as the log writes it.
std::string currentThreadText();

} // namespace Testing
} // namespace Orvo
