#pragma once
// The branch as one JSON document.

#include "Branch.h"
#include "JsonString.h"

#include <string>

namespace Orvo {
namespace Tools {
namespace MenuHost {

// Bytes that are not valid UTF-8 become U+FFFD, so the document stays valid whatever the
// plug-in returns.
using Tools::jsonString;

std::string branchToJson(const BranchView& view, const std::string& pluginPath);

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
