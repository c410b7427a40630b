#pragma once
// The branch as readable text, for `show` and the script runner.

#include "Branch.h"

#include <cstddef>
#include <string>

namespace Orvo {
namespace Tools {
namespace MenuHost {

// What the host shows for a string call: the text, or why there is none.
std::string callText(const StringCall& call);

// The short value shown beside an item's title: a toggle's translated state, a value item's
// text; empty for other items.
std::string shownValue(const ItemView& item);

std::string renderBranch(const BranchView& view, std::size_t width);
std::string renderItem(const ItemView& item, std::size_t width);

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
