#pragma once
// Numbers as the device's text files and the tools write them: always the "C" locale, whatever
// locale the calling process has chosen, and a whole-text match (no trailing garbage).

#include <string>

namespace Orvo {
namespace Emulator {

bool parseInt(const std::string& text, int& out);
bool parseLongLong(const std::string& text, long long& out);
bool parseDouble(const std::string& text, double& out);

// "%.17g": reads back as exactly the same double.
std::string formatDouble(double value);
// The shortest "%g" text that reads back as the same double (for people: 0.1, not 0.10000000000000001).
std::string formatDoubleShort(double value);

} // namespace Emulator
} // namespace Orvo
