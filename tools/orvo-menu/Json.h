#pragma once
// The branch as one JSON document.

#include "Branch.h"

#include <string>

namespace Orvo {
namespace Tools {
namespace MenuHost {

// A JSON string literal, quotes included. Control characters are escaped; bytes that are not
// valid UTF-8 become U+FFFD so that the document stays valid whatever the plug-in returns.
std::string jsonString(const std::string& text);

std::string branchToJson(const BranchView& view, const std::string& pluginPath);

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
