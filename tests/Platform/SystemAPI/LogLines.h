#pragma once
// The texts that the application logged at one level, without the dlog line layout:
// "[module][tid name][7][WRN] File.cpp:42>text" gives "text". Continuation lines of a text that
// the log cut are left out.

#include "orvo/testing/TestDevice.h"

#include <dlog.h>

#include <regex>
#include <string>
#include <vector>

namespace Orvo {
namespace Testing {

// level is "DBG", "INF", "WRN" or "ERR"; errors are in the system buffer, the rest in main.
inline std::vector<std::string> loggedTexts(const TestDevice& device, const std::string& level) {
    const std::regex layout(R"(^\[[^\]]*\]\[[^\]]*\]\[[0-9]+\]\[)" + level + R"(\] [^:>\s]+:[0-9]+>([\s\S]*)$)");
    std::vector<std::string> texts;
    for (const std::string& message : device.logMessages(level == "ERR" ? LOG_ID_SYSTEM : LOG_ID_MAIN)) {
        std::smatch match;
        if (std::regex_match(message, match, layout)) {
            texts.push_back(match[1]);
        }
    }
    return texts;
}

} // namespace Testing
} // namespace Orvo
