#pragma once
// JSON text for the tools' machine-readable output.

#include <string>

namespace Orvo {
namespace Tools {

// `text` as a quoted JSON string: quotes, backslashes and control characters escaped, and every
// byte that does not belong to a valid UTF-8 sequence written as \ufffd.
std::string jsonString(const std::string& text);

} // namespace Tools
} // namespace Orvo
