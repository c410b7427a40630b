#pragma once
// Exercises every offered callback as a careful host would and as a careless one might, and
// reports each result against the host contract.

#include "PluginLibrary.h"

#include <iosfwd>

namespace Orvo {
namespace Tools {
namespace MenuHost {

// Prints one line per check and a summary; returns 0 when nothing violated the contract, 1
// otherwise. Settings the checks change are put back.
int runContractCheck(const PluginLibrary& library, std::ostream& out);

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
