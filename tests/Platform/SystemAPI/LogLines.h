#pragma once
// The application's log lines as the tests see them, without the dlog line layout:
// "[module][tid name][7][WRN] File.cpp:42>text" is {WRN, File.cpp, text}.

#include "orvo/testing/TestDevice.h"

#include <regex>
#include <string>
#include <vector>

namespace Orvo {
namespace Testing {

struct LogLine {
    std::string level;
    std::string file;
    std::string text;
};

// The lines of the main buffer that begin a log statement (continuation lines of a text that
// the log cut are left out), in order.
inline std::vector<LogLine> logLines(const TestDevice& device) {
    static const std::regex layout(R"(^\[[^\]]*\]\[[^\]]*\]\[[0-9]+\]\[([A-Z]+)\] ([^:>\s]+):[0-9]+>([\s\S]*)$)");
    std::vector<LogLine> lines;
    for (const std::string& message : device.logMessages()) {
        std::smatch match;
        if (std::regex_match(message, match, layout)) {
            lines.push_back({match[1], match[2], match[3]});
        }
    }
    return lines;
}

// The texts logged at one level ("DBG", "INF", "WRN", "ERR"), in order.
inline std::vector<std::string> loggedTexts(const TestDevice& device, const std::string& level) {
    std::vector<std::string> texts;
    for (const LogLine& line : logLines(device)) {
        if (line.level == level) {
            texts.push_back(line.text);
        }
    }
    return texts;
}

} // namespace Testing
} // namespace Orvo
