#pragma once
// The application's log lines as the product-level tests compare them: "<level> <message>",
// without the "<file>:<line>>" prefix.

#include "LogLines.h"

#include <string>
#include <vector>

namespace Orvo {
namespace Testing {

inline std::vector<std::string> loggedMessages(const TestDevice& device, int buffer) {
    std::vector<std::string> messages;
    for (const LogLine& line : logLines(device, buffer)) {
        const std::string::size_type prefixEnd = line.text.find('>');
        messages.push_back(line.level + " " + (prefixEnd == std::string::npos ? line.text : line.text.substr(prefixEnd + 1)));
    }
    return messages;
}

} // namespace Testing
} // namespace Orvo
