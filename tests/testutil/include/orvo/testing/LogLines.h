#pragma once
// Reading the application's log lines back from an emulated device.

#include "orvo/testing/TestDevice.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Orvo::Testing {

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

// The message of a line without its "<file>:<line>>" prefix.
std::string messageOf(const LogLine& line);

// The messages logged at one level ("DBG", "INF", "WRN", "ERR", "FTL"), without their prefix; errors
// and fatal lines are read from the system buffer, the others from main. Continuation lines of
// a text that the log cut are left out.
std::vector<std::string> loggedTexts(const TestDevice& device, const std::string& level);

// Every well-formed line of one buffer as "<level> <message>".
std::vector<std::string> loggedMessages(const TestDevice& device, int buffer);

// "<tid> <name>" of the calling thread, as the log writes it.
std::string currentThreadText();

} // namespace Orvo::Testing
